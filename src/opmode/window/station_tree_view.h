#pragma once

#include "opmode/station_tree.h"

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
    /// scrolled to. Nothing moves while the user is at work in the tree.
    void reveal(const QModelIndex &entry);

    /// The station that a node belongs to.
    static QModelIndex stationOf(QModelIndex index);

    /// Why the tree refused a name.
    static QString refusalOf(const QString &name);

Q_SIGNALS:
    /// A name that the user gave was not taken.
    void nameRefused(const QString &name);
    void currentNodeChanged(const QModelIndex &index);
    void filtered();

protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void rowsInserted(const QModelIndex &parent, int start, int end) override;
    bool viewportEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    bool isWanted(const QModelIndex &station) const;
    void applyFilter();
    void revealNow();

    StationTree &m_tree;
    std::function<QString(const QString &)> m_addressOf;
    QString m_text;
    Kind m_kind = Kind::All;
    int m_shown = 0;
    QTimer m_filterTimer;
    QTimer m_layoutTimer;
    QElapsedTimer m_lastInput; ///< of the user, in this tree
    QTimer Timer_doView;
    QSet<QString> m_branchesToReveal; ///< keys: nodes come and go until the timer fires
    QPersistentModelIndex m_toReveal;
};

} // namespace ktr
