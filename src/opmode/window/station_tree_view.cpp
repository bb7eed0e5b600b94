#include "opmode/window/station_tree_view.h"

#include "opmode/window/list_rows.h"
#include "opmode/window/station_tree_delegate.h"
#include "opmode/window/view_activity.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QCursor>
#include <QHelpEvent>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>

namespace ktr {

namespace {

constexpr int filterMs = 100;
constexpr int layoutMs = 250;
constexpr int tipMs = 100;

} // namespace

StationTreeView::StationTreeView(StationTree &tree, QWidget *parent)
    : QTreeView(parent),
      m_tree(tree),
      m_activity(new ViewActivity(*this, [this] { return state() == EditingState; }))
{
    setObjectName(QStringLiteral("TreeView_KTR_Nodes"));
    setModel(&tree);
    auto *delegate = new StationTreeDelegate(*this);
    setItemDelegate(delegate);
    connect(delegate, &StationTreeDelegate::nameRefused, this, &StationTreeView::nameRefused);
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setVerticalScrollMode(ScrollPerItem);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectItems); // of rows assistive tools would choose others where branches are open
    setEditTriggers(EditKeyPressed | SelectedClicked);
    setTextElideMode(Qt::ElideRight);
    viewport()->setMouseTracking(true);
    m_filterTimer.setSingleShot(true);
    m_filterTimer.setInterval(filterMs);
    connect(&m_filterTimer, &QTimer::timeout, this, &StationTreeView::applyFilter);
    m_layoutTimer.setSingleShot(true);
    m_layoutTimer.setInterval(layoutMs);
    connect(&m_layoutTimer, &QTimer::timeout, this, &StationTreeView::refresh);
    m_tipTimer.setSingleShot(true);
    m_tipTimer.setInterval(tipMs);
    connect(&m_tipTimer, &QTimer::timeout, this, &StationTreeView::refreshTip);
    connect(m_activity, &ViewActivity::mouseRested, this, &StationTreeView::refresh);
    const auto ofStations = [this](const QModelIndex &above) {
        if (!above.isValid()) {
            filterSoon();
        }
    };
    connect(&tree, &QAbstractItemModel::rowsInserted, this, ofStations);
    connect(&tree, &QAbstractItemModel::rowsRemoved, this, ofStations);
    connect(&tree, &QAbstractItemModel::modelReset, this, [this] {
        m_hidden.clear();
        m_shown = m_tree.rowCount();
        filterSoon();
    });
    connect(&tree, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex &, const QModelIndex &, const QList<int> &roles) {
                if (QToolTip::isVisible() && !m_tipTimer.isActive()) {
                    m_tipTimer.start();
                }
                if (!m_filter.isOfAnyKind() && !roles.contains(Qt::DisplayRole)) {
                    filterSoon();
                }
            });
}

/// What an open tool tip tells of a row may have changed.
void StationTreeView::refreshTip()
{
    if (QToolTip::isVisible() && QApplication::widgetAt(QCursor::pos()) == viewport()) {
        const QPoint place = viewport()->mapFromGlobal(QCursor::pos());
        QHelpEvent again(QEvent::ToolTip, place, QCursor::pos());
        QApplication::sendEvent(viewport(), &again);
    }
}

// Which stations are shown

void StationTreeView::setFilter(StationFilter filter)
{
    m_filter = std::move(filter);
    m_isFilterChosen = true;
    m_filterTimer.start();
}

void StationTreeView::settleFilter()
{
    if (m_isFilterChosen) {
        m_filterTimer.stop();
        applyFilter();
    }
}

QStringList StationTreeView::shownKeys() const
{
    QStringList keys;
    for (int row = 0; row < m_tree.rowCount(); ++row) {
        if (!isStationHidden(row)) {
            keys += m_tree.index(row, 0).data(StationTree::KeyRole).toString();
        }
    }
    return keys;
}

/// The toolkit knows it, too, but makes an index that lasts of each row that it is asked for.
bool StationTreeView::isStationHidden(int row) const
{
    return !m_hidden.isEmpty() && m_hidden.contains(StationTree::idOf(m_tree.index(row, 0)));
}

void StationTreeView::setStationHidden(int row, bool isHidden)
{
    const NodeStore::Id id = StationTree::idOf(m_tree.index(row, 0));
    if (isHidden) {
        m_hidden.insert(id);
    } else {
        m_hidden.remove(id);
    }
    setRowHidden(row, {}, isHidden);
}

void StationTreeView::filterSoon()
{
    if (!m_filterTimer.isActive()) {
        m_filterTimer.start();
    }
}

void StationTreeView::applyFilter()
{
    if (std::exchange(m_isFilterChosen, false)) {
        showPassing(Hiding::All);
        dropHidden();
        chooseAgain();
    } else if (m_activity->isAboutToChoose()) {
        m_filterTimer.start();
    } else {
        changeInPlace([this] { showPassing(m_activity->isInUse() ? Hiding::None : Hiding::AllButChosen); });
    }
}

/// Hides the others as well, or leaves that for later: what is below would move up.
void StationTreeView::showPassing(Hiding hiding)
{
    m_shown = 0;
    std::vector<int> kept;
    if (hiding == Hiding::AllButChosen) {
        kept = chosenRows();
        kept.push_back(stationOf(currentIndex()).row());
        std::ranges::sort(kept);
    }
    for (int row = 0; row < m_tree.rowCount(); ++row) {
        const bool isShown = !isStationHidden(row);
        bool shows = m_filter.isOff() || m_filter.passes(m_tree.index(row, 0));
        if (isShown && !shows && hiding == Hiding::None) {
            m_filterTimer.start();
            shows = true;
        }
        shows = shows || std::ranges::binary_search(kept, row);
        if (shows != isShown) {
            setStationHidden(row, !shows);
        }
        m_shown += shows ? 1 : 0;
    }
    Q_EMIT filtered();
}

/// Nobody means what is not seen.
void StationTreeView::dropHidden()
{
    std::vector<int> hidden;
    std::vector<int> left;
    for (const int row : chosenRows()) {
        (isStationHidden(row) ? hidden : left).push_back(row);
    }
    const QModelIndex station = stationOf(currentIndex());
    const bool isCurrentHidden = station.isValid() && isStationHidden(station.row());
    if (isCurrentHidden && left.empty()) {
        chooseStations({}, {});
        return;
    }
    if (isCurrentHidden) {
        selectionModel()->setCurrentIndex(m_tree.index(left.front(), 0), QItemSelectionModel::NoUpdate);
    }
    if (!hidden.empty()) {
        selectionModel()->select(selectionOf(m_tree, hidden), QItemSelectionModel::Deselect);
    }
}

void StationTreeView::bringToSight(const std::vector<int> &rows)
{
    int more = 0;
    for (const int row : rows) {
        if (row >= 0 && isStationHidden(row)) {
            setStationHidden(row, false);
            ++more;
        }
    }
    if (more > 0) {
        m_shown += more;
        Q_EMIT filtered();
    }
}

// Sections

void StationTreeView::setSections(const QHash<NodeStore::Id, QString> &sections)
{
    if (m_sections != sections) {
        m_sections = sections;
        setUniformRowHeights(m_sections.isEmpty());
        scheduleDelayedItemsLayout();
    }
}

QString StationTreeView::sectionAt(const QModelIndex &node) const
{
    return m_sections.isEmpty() || node.parent().isValid() ? QString()
                                                           : m_sections.value(StationTree::idOf(node));
}

int StationTreeView::sectionHeight() const
{
    return fontMetrics().height() + fontMetrics().height() / 2;
}

/// The arrow stands beside the name, not beside the section's line.
void StationTreeView::drawBranches(QPainter *painter, const QRect &rect, const QModelIndex &index) const
{
    const int top = sectionAt(index).isEmpty() ? 0 : sectionHeight();
    QTreeView::drawBranches(painter, rect.adjusted(0, top, 0, 0), index);
}

// What is chosen

/// The keys that are held meanwhile mean nothing.
void StationTreeView::choose(const QModelIndex &node, Chooser chooser)
{
    if (chooser == Chooser::User) {
        m_activity->noteChoice();
    }
    if (!node.isValid()) {
        selectionModel()->clearCurrentIndex();
        selectionModel()->clearSelection();
        return;
    }
    bringToSight({stationOf(node).row()});
    selectionModel()->setCurrentIndex(node, QItemSelectionModel::ClearAndSelect);
}

void StationTreeView::chooseFirst()
{
    const int first = shownBeside(0, m_tree.rowCount() - 1, [](int) { return true; });
    if (first >= 0) {
        choose(m_tree.index(first, 0));
    }
}

void StationTreeView::goTo(const QModelIndex &node)
{
    const std::vector<int> rows = chosenRows();
    if (rows.size() > 1 && std::ranges::binary_search(rows, stationOf(node).row())) {
        bringToSight({stationOf(node).row()});
        selectionModel()->setCurrentIndex(node, QItemSelectionModel::Select);
    } else {
        choose(node);
    }
}

void StationTreeView::chooseStations(const QStringList &stations, const QString &current)
{
    if (stations.isEmpty() && current.isEmpty()) {
        if (currentIndex().isValid()) {
            m_hiddenChoice = {chosenStations(), chosenStation().data(StationTree::KeyRole).toString()};
        }
        choose({}, Chooser::Program);
        return;
    }
    std::vector<int> rows;
    rows.reserve(static_cast<std::size_t>(stations.size()));
    for (const QString &kennung : stations) {
        if (const QModelIndex station = m_tree.find(kennung); station.isValid()) {
            rows.push_back(station.row());
        }
    }
    const QModelIndex station = m_tree.find(current);
    if (rows.empty() && station.isValid()) {
        rows = {station.row()};
    }
    std::ranges::sort(rows);
    bringToSight(rows);
    selectionModel()->select(selectionOf(m_tree, rows), QItemSelectionModel::ClearAndSelect);
    if (station.isValid() && stationOf(currentIndex()) != station) {
        selectionModel()->setCurrentIndex(station, QItemSelectionModel::NoUpdate);
    }
}

void StationTreeView::chooseAgain()
{
    const Choice choice = m_hiddenChoice; // it is forgotten once something is chosen
    const QModelIndex current = m_tree.find(choice.current);
    if (currentIndex().isValid() || !current.isValid() || isStationHidden(current.row())) {
        return;
    }
    QStringList stations = choice.stations;
    stations.removeIf([this](const QString &kennung) {
        const QModelIndex station = m_tree.find(kennung);
        return !station.isValid() || isStationHidden(station.row());
    });
    chooseStations(stations, choice.current);
}

QString StationTreeView::besideOf(const QStringList &stations) const
{
    const QSet<QString> going(stations.cbegin(), stations.cend());
    const auto keyAt = [this](int row) { return m_tree.index(row, 0).data(StationTree::KeyRole).toString(); };
    int last = -1;
    for (const QString &kennung : stations) {
        last = std::max(last, m_tree.find(kennung).row());
    }
    const int row = shownBeside(last, last, [&](int at) { return !going.contains(keyAt(at)); });
    return row < 0 ? QString() : keyAt(row);
}

/// The shown row behind some rows, or these, or else before them; -1: there is none.
int StationTreeView::shownBeside(int first, int last, const std::function<bool(int)> &stays) const
{
    return rowBeside(m_tree.rowCount(), first, last,
                     [&](int row) { return !isStationHidden(row) && stays(row); });
}

/// The toolkit would go on at a row that is hidden.
void StationTreeView::rowsAboutToBeRemoved(const QModelIndex &above, int start, int end)
{
    for (int row = start; !above.isValid() && row <= end; ++row) {
        m_shown -= m_hidden.remove(StationTree::idOf(m_tree.index(row, 0))) ? 0 : 1;
    }
    const int row = stationOf(currentIndex()).row();
    if (!above.isValid() && row >= start && row <= end) {
        const auto stays = [=](int at) { return at < start || at > end; };
        const std::vector<int> rows = chosenRows();
        const auto other = std::ranges::find_if(rows, stays);
        if (other != rows.end()) {
            selectionModel()->setCurrentIndex(m_tree.index(*other, 0), QItemSelectionModel::NoUpdate);
        } else {
            choose(m_tree.index(shownBeside(end, start, stays), 0), Chooser::Program);
        }
    }
    QTreeView::rowsAboutToBeRemoved(above, start, end);
}

/// In growing order.
std::vector<int> StationTreeView::chosenRows() const
{
    std::vector<int> rows;
    for (const QItemSelectionRange &range : selectionModel()->selection()) {
        if (range.parent().isValid()) {
            rows.push_back(stationOf(range.parent()).row());
            continue;
        }
        for (int row = range.top(); row <= range.bottom(); ++row) {
            rows.push_back(row);
        }
    }
    std::ranges::sort(rows);
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

QModelIndex StationTreeView::chosenStation() const
{
    const std::vector<int> rows = chosenRows();
    return rows.size() == 1 ? m_tree.index(rows.front(), 0) : stationOf(currentIndex());
}

QStringList StationTreeView::chosenStations() const
{
    QStringList stations;
    std::vector<int> rows = chosenRows();
    if (rows.empty() && currentIndex().isValid()) {
        rows = {stationOf(currentIndex()).row()};
    }
    for (const int row : rows) {
        stations += m_tree.index(row, 0).data(StationTree::KeyRole).toString();
    }
    return stations;
}

void StationTreeView::selectAll()
{
    std::vector<int> rows;
    for (int row = 0; row < m_tree.rowCount(); ++row) {
        if (!isStationHidden(row)) {
            rows.push_back(row);
        }
    }
    selectionModel()->select(selectionOf(m_tree, rows), QItemSelectionModel::ClearAndSelect);
}

void StationTreeView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QTreeView::selectionChanged(selected, deselected);
    if (chosenCount() < 2 && currentIndex().isValid()) {
        QMetaObject::invokeMethod(this, &StationTreeView::keepOneChosen, Qt::QueuedConnection);
    }
    if (!m_filter.isOff()) {
        filterSoon(); // what was shown as it was chosen
    }
    Q_EMIT choiceChanged();
}

/// Pages are about the current one, menus about what is chosen. With Ctrl one goes to another before choosing
/// that, too.
void StationTreeView::keepOneChosen()
{
    const std::vector<int> rows = chosenRows();
    if (rows.empty() && currentIndex().isValid()) {
        selectionModel()->select(currentIndex(), QItemSelectionModel::Select);
    } else if (rows.size() == 1 && rows.front() != stationOf(currentIndex()).row() &&
               (QGuiApplication::keyboardModifiers() & Qt::ControlModifier) == 0) {
        selectionModel()->setCurrentIndex(m_tree.index(rows.front(), 0), QItemSelectionModel::NoUpdate);
    }
}

// Nothing is to be moved away from under the user's hand.

/// What is to stay where it is: the node under the mouse, the current one, or the topmost that is seen.
QModelIndex StationTreeView::heldNode() const
{
    const QModelIndex pointed =
        underMouse() ? indexAt(viewport()->mapFromGlobal(m_activity->pointer())) : QModelIndex();
    if (pointed.isValid()) {
        return pointed;
    }
    return isSeen(currentIndex()) ? currentIndex() : indexAt({0, 0});
}

bool StationTreeView::isSeen(const QModelIndex &node) const
{
    return viewport()->rect().intersects(visualRect(node));
}

void StationTreeView::changeInPlace(const std::function<void()> &change)
{
    const QPersistentModelIndex held = heldNode();
    const QRect before = visualRect(held);
    change();
    scheduleDelayedItemsLayout();
    executeDelayedItemsLayout();
    const QRect after = visualRect(held);
    if (!before.isValid() || !after.isValid()) {
        return;
    }
    QScrollBar &bar = *verticalScrollBar();
    const int wanted = bar.value() + (after.top() - before.top()) / after.height(); // it counts rows
    if (wanted > bar.maximum() && m_activity->isInUse()) {
        m_heldAt = wanted;
        updateGeometries();
        Q_EMIT rowsHeld();
    }
    bar.setValue(wanted);
}

void StationTreeView::endHold()
{
    if (std::exchange(m_heldAt, 0) > 0) {
        updateGeometries();
    }
}

/// Leaves room to scroll further than the rows go, as long as a row is to stay where it is.
void StationTreeView::updateGeometries()
{
    QScrollBar &bar = *verticalScrollBar();
    const int before = bar.value();
    QTreeView::updateGeometries();
    if (m_heldAt > 0) { // a bar that hides and shows itself thereby has been here in between
        bar.setMaximum(std::max(bar.maximum(), m_heldAt));
        bar.setValue(before);
    }
}

/// The toolkit's scrolls back to where the rows end, also when there is nothing to be scrolled to.
void StationTreeView::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    if (m_heldAt > 0 && hint == EnsureVisible && viewport()->rect().contains(visualRect(index))) {
        return;
    }
    m_heldAt = 0;
    QTreeView::scrollTo(index, hint);
}

void StationTreeView::refresh()
{
    if (m_activity->isAboutToChoose()) {
        m_layoutTimer.start();
    } else {
        changeInPlace([] {});
    }
}

QModelIndex StationTreeView::stationOf(QModelIndex index)
{
    while (index.parent().isValid()) {
        index = index.parent();
    }
    return index;
}

/// Each layout goes through all rows that are to be seen, so many entries share one.
void StationTreeView::rowsInserted(const QModelIndex &above, int start, int end)
{
    if (!above.isValid()) { // they are shown until the filter had its turn
        m_shown += end - start + 1;
    }
    const bool isOpen = above.isValid() && isExpanded(above);
    if (isOpen && !m_layoutTimer.isActive()) {
        m_layoutTimer.start();
    } else if (!isOpen && (!above.isValid() || start == 0)) {
        QTreeView::rowsInserted(above, start, end);
    }
}

bool StationTreeView::viewportEvent(QEvent *event)
{
    m_activity->noteViewportEvent(*event);
    return QTreeView::viewportEvent(event);
}

void StationTreeView::keyPressEvent(QKeyEvent *event)
{
    m_activity->noteKeys();
    QTreeView::keyPressEvent(event);
}

void StationTreeView::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isAboutStation = currentIndex().isValid() && (event->reason() != QContextMenuEvent::Mouse ||
                                                             indexAt(event->pos()).isValid());
    Q_EMIT menuWanted(event->globalPos(), isAboutStation);
}

void StationTreeView::focusInEvent(QFocusEvent *event)
{
    if (event->reason() != Qt::OtherFocusReason && event->reason() != Qt::ActiveWindowFocusReason) {
        m_activity->noteKeys(); // the user wants it here
    }
    QTreeView::focusInEvent(event);
}

QString StationTreeView::refusalOf(const QString &name)
{
    return name.trimmed().isEmpty() ? tr("A station needs a name")
           : name.contains(u'/')    ? tr("A name must not hold a \"/\"")
                                    : tr("Another station is called \"%1\" already").arg(name.trimmed());
}

void StationTreeView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTreeView::currentChanged(current, previous);
    if (current.isValid()) {
        m_hiddenChoice = {};
        if (!selectionModel()->hasSelection()) { // the focus came, for example
            QMetaObject::invokeMethod(this, &StationTreeView::keepOneChosen, Qt::QueuedConnection);
        }
    }
    Q_EMIT currentNodeChanged(current);
}

} // namespace ktr
