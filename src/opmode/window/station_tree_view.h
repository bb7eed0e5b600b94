#pragma once

#include "opmode/tree/station_tree.h"
#include "opmode/window/station_filter.h"

#include <QTimer>
#include <QTreeView>

#include <vector>

namespace ktr {

class ViewActivity;

/// The tree of all stations. Rows come, go and change places only where that moves nothing away from under
/// the user's hand; else it waits, or the tree scrolls along.
class StationTreeView : public QTreeView
{
    Q_OBJECT

public:
    explicit StationTreeView(StationTree &tree, QWidget *parent = nullptr);

    /// What the user's filter hides is no longer chosen. What a station's change would hide stays in sight
    /// while it is chosen.
    void setFilter(StationFilter filter);
    /// Hides and shows at once what a filter that was set a moment ago will.
    void settleFilter();
    int shownStations() const { return m_shown; }
    /// The keys of those that are shown, in the order of the tree.
    QStringList shownKeys() const;

    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;

    /// Carries out a change of which rows there are, and scrolls by as much as it moved the row that is to
    /// stay where it is.
    void changeInPlace(const std::function<void()> &change);
    /// Whether some of it is to be seen.
    bool isSeen(const QModelIndex &node) const;
    /// From now on the rows stand no longer further up than they would by themselves.
    void endHold();
    using QTreeView::scheduleDelayedItemsLayout;

    // What is chosen is shown, also where the filter would hide it.

    enum class Chooser { User, Program };
    /// Makes a node the current and the only chosen one; an invalid one: nothing is chosen.
    void choose(const QModelIndex &node, Chooser chooser = Chooser::User);
    /// The first station that is shown, if there is one.
    void chooseFirst();
    /// The same, but where several stations are chosen and the node is of one of them they stay so.
    void goTo(const QModelIndex &node);
    /// Chooses these stations alone; the current one becomes the node of this station, or stays under it.
    /// Without any nothing is chosen, until chooseAgain().
    void chooseStations(const QStringList &stations, const QString &current);
    /// Where nothing is chosen because a filter or the overview hid it: what is to be seen of that again.
    void chooseAgain();
    /// The key of the shown station behind the last of these, or else before it, that is none of them; empty
    /// for none.
    QString besideOf(const QStringList &stations) const;
    /// That of the current node, but the only one that is chosen where one alone is.
    QModelIndex chosenStation() const;
    /// The keys of the stations that are chosen, or of which something is, in the order of the tree;
    /// that of the current node where none is.
    QStringList chosenStations() const;
    int chosenCount() const { return static_cast<int>(chosenRows().size()); }
    /// All stations that are shown.
    void selectAll() override;

    /// What stands above stations that are the first of a section; each has its own line then.
    void setSections(const QHash<NodeStore::Id, QString> &sections);
    /// Empty where a node is the first of none.
    QString sectionAt(const QModelIndex &node) const;
    int sectionHeight() const;

    /// The station that a node belongs to.
    static QModelIndex stationOf(QModelIndex index);

    const ViewActivity &activity() const { return *m_activity; }

    /// Why the tree refused a name.
    static QString refusalOf(const QString &name);

Q_SIGNALS:
    /// A name that the user gave was not taken.
    void nameRefused(const QString &name);
    void currentNodeChanged(const QModelIndex &index);
    /// Other nodes are chosen.
    void choiceChanged();
    /// The rows stand further up than they would by themselves, until endHold() is called.
    void rowsHeld();
    void filtered();
    /// A menu is wanted at a place on the screen: about the chosen station, or for a right click where there
    /// is none.
    void menuWanted(const QPoint &place, bool isAboutStation);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void rowsInserted(const QModelIndex &parent, int start, int end) override;
    void rowsAboutToBeRemoved(const QModelIndex &parent, int start, int end) override;
    void drawBranches(QPainter *painter, const QRect &rect, const QModelIndex &index) const override;
    bool viewportEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void updateGeometries() override;

private:
    std::vector<int> chosenRows() const;
    void keepOneChosen();
    void refreshTip();
    bool isStationHidden(int row) const;
    void setStationHidden(int row, bool isHidden);
    void filterSoon();
    QModelIndex heldNode() const;
    void applyFilter();
    enum class Hiding { None, AllButChosen, All };
    void showPassing(Hiding hiding);
    void dropHidden();
    void bringToSight(const std::vector<int> &rows);
    int shownBeside(int first, int last, const std::function<bool(int)> &stays) const;
    void refresh();

    StationTree &m_tree;
    ViewActivity *m_activity;
    StationFilter m_filter;
    int m_shown = 0;
    QSet<NodeStore::Id> m_hidden; ///< stations
    struct Choice
    {
        QStringList stations;
        QString current;
    };
    Choice m_hiddenChoice; ///< was chosen before nothing was
    QHash<NodeStore::Id, QString> m_sections;
    bool m_isFilterChosen = false; ///< by the user, just now
    QTimer m_filterTimer;
    QTimer m_layoutTimer;
    QTimer m_tipTimer;
    /// How far it is scrolled although the rows end before, in rows; 0 for no further than they go. Example:
    /// of ten rows the last five are to be seen, and three of them close. The scroll bar would end at two
    /// now, and the row under the mouse would move down by three.
    int m_heldAt = 0;
};

} // namespace ktr
