#include "opmode/window/station_tree_view.h"

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

/// Of rows in growing order; those that follow each other are one range.
QItemSelection selectionOf(const StationTree &tree, const std::vector<int> &rows)
{
    QItemSelection selection;
    for (std::size_t first = 0; first < rows.size();) {
        std::size_t last = first;
        while (last + 1 < rows.size() && rows[last + 1] <= rows[last] + 1) {
            ++last;
        }
        selection.append({tree.index(rows[first], 0), tree.index(rows[last], 0)});
        first = last + 1;
    }
    return selection;
}

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
    connect(&tree, &QAbstractItemModel::modelReset, this, &StationTreeView::filterSoon);
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

void StationTreeView::filterSoon()
{
    if (!m_filterTimer.isActive()) {
        m_filterTimer.start();
    }
}

void StationTreeView::applyFilter()
{
    if (std::exchange(m_isFilterChosen, false)) {
        showPassing(true);
    } else if (m_activity->isAboutToChoose()) {
        m_filterTimer.start();
    } else {
        changeInPlace([this] { showPassing(!m_activity->isInUse()); });
    }
}

/// Hides the others as well, or leaves that for later: what is below would move up.
void StationTreeView::showPassing(bool mayHide)
{
    m_shown = 0;
    const bool isSeveral = chosenCount() > 1;
    std::vector<int> hidden;
    for (int row = 0; row < m_tree.rowCount(); ++row) {
        const bool isShown = !isRowHidden(row, {});
        bool shows = m_filter.isOff() || m_filter.passes(m_tree.index(row, 0));
        if (isShown && !shows && !mayHide) {
            m_filterTimer.start();
            shows = true;
        }
        if (shows != isShown) {
            setRowHidden(row, {}, !shows);
        }
        if (!shows && isSeveral) { // nobody means what is not seen
            hidden.push_back(row);
        }
        m_shown += shows ? 1 : 0;
    }
    if (!hidden.empty()) {
        selectionModel()->select(selectionOf(m_tree, hidden), QItemSelectionModel::Deselect);
    }
    Q_EMIT filtered();
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
void StationTreeView::choose(const QModelIndex &node)
{
    selectionModel()->setCurrentIndex(node, QItemSelectionModel::ClearAndSelect);
}

void StationTreeView::goTo(const QModelIndex &node)
{
    const std::vector<int> rows = chosenRows();
    if (rows.size() > 1 && std::ranges::binary_search(rows, stationOf(node).row())) {
        selectionModel()->setCurrentIndex(node, QItemSelectionModel::Select);
    } else {
        choose(node);
    }
}

void StationTreeView::chooseStations(const QStringList &stations, const QString &current)
{
    std::vector<int> rows;
    rows.reserve(static_cast<std::size_t>(stations.size()));
    for (const QString &kennung : stations) {
        if (const QModelIndex station = m_tree.find(kennung); station.isValid()) {
            rows.push_back(station.row());
        }
    }
    std::ranges::sort(rows);
    selectionModel()->select(selectionOf(m_tree, rows), QItemSelectionModel::ClearAndSelect);
    const QModelIndex station = m_tree.find(current);
    if (station.isValid() && stationOf(currentIndex()) != station) {
        selectionModel()->setCurrentIndex(station, QItemSelectionModel::NoUpdate);
    }
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
        if (!isRowHidden(row, {})) {
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

/// What is to stay where it is: the node under the mouse, that of the keys, or the topmost that is seen.
QModelIndex StationTreeView::heldNode() const
{
    const QModelIndex pointed =
        underMouse() ? indexAt(viewport()->mapFromGlobal(m_activity->pointer())) : QModelIndex();
    if (pointed.isValid()) {
        return pointed;
    }
    const bool isSeen = viewport()->rect().intersects(visualRect(currentIndex()));
    return hasFocus() && isSeen ? currentIndex() : indexAt({0, 0});
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
    Q_EMIT currentNodeChanged(current);
}

} // namespace ktr
