#pragma once

#include "opmode/tree/station_tree.h"
#include "platform/timers.h"

#include <QElapsedTimer>
#include <QSet>
#include <QTimer>
#include <QTreeView>

namespace ktr {

/// The tree of all stations, with the state of each in front of its name and what needs attention behind it.
class StationTreeView : public QTreeView
{
    Q_OBJECT

public:
    explicit StationTreeView(StationTree &tree, QWidget *parent = nullptr);

    /// Shows the stations whose name, key or address contains a text, and which are of a kind.
    enum class Kind { All, InAlarm, NotHeard, Offline, Exclusive, PukNeeded };
    void filter(const QString &text, Kind kind);
    /// What address() a station has, for the filter.
    void setAddressSource(std::function<QString(const QString &kennung)> addressOf);
    int shownStations() const { return m_shown; }

    /// Makes an entry visible: expands its branch and scrolls to it. Of many in a moment the last is
    /// scrolled to. It waits while the user points at the tree or works in it with keys. What was expanded
    /// here is collapsed again a few seconds after all alarms of its station are acknowledged, and when it
    /// has been quiet for a minute, but for the latest alarm while it is red; in both cases not while the
    /// user is at it, and never what the user expanded.
    void reveal(const QModelIndex &entry);

    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;

    /// The station that a node belongs to.
    static QModelIndex stationOf(QModelIndex index);

    /// Why the tree refused a name.
    static QString refusalOf(const QString &name);

Q_SIGNALS:
    /// A name that the user gave was not taken.
    void nameRefused(const QString &name);
    void currentNodeChanged(const QModelIndex &index);
    void filtered();
    /// A menu is wanted at a place on the screen: about the chosen station, or for a right click where there
    /// is none.
    void menuWanted(const QPoint &place, bool isAboutStation);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void rowsInserted(const QModelIndex &parent, int start, int end) override;
    bool viewportEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void updateGeometries() override;

private:
    static bool isWithin(const QElapsedTimer &last, Milliseconds time);
    bool isHandled() const;
    bool isInUse() const;
    bool isInUse(Milliseconds rest) const;
    bool isAboutToChoose() const;
    QModelIndex heldNode() const;
    void changeInPlace(const std::function<void()> &change);
    bool isWanted(const QModelIndex &station) const;
    void applyFilter();
    void showWanted(bool mayHide);
    void refresh();
    void revealNow();
    void open(const QModelIndex &branch);
    void closeSoon();
    void closeAcknowledged();
    void closeOthers();
    void closeBranches(QSet<QString> branches);

    StationTree &m_tree;
    std::function<QString(const QString &)> m_addressOf;
    QString m_text;
    Kind m_kind = Kind::All;
    int m_shown = 0;
    bool m_isFilterChosen = false; ///< by the user, just now
    QTimer m_filterTimer;
    QTimer m_layoutTimer;
    QTimer m_closeTimer;
    QTimer m_quietTimer;
    QTimer m_restTimer;        ///< runs while the mouse was moved here a moment ago
    QElapsedTimer m_lastInput; ///< of the user, in this tree
    QElapsedTimer m_lastUse;   ///< the same, but for mere moves of the mouse
    QPoint m_pointer;          ///< where it was last here, on the screen
    QTimer Timer_doView;
    QSet<QString> m_branchesToReveal; ///< keys: nodes come and go until the timer fires
    QPersistentModelIndex m_toReveal;
    QPersistentModelIndex m_revealed; ///< the latest
    QSet<QString> m_opened;           ///< keys of what is expanded here, not by the user
    bool m_isOpening = false;
    int m_heldAt =
        0; ///< how far it is to be scrolled although the rows end before, 0 for no further than they go
};

} // namespace ktr
