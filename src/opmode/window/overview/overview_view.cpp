#include "opmode/window/overview/overview_view.h"

#include "opmode/operational_mode.h"
#include "opmode/overview/overview_model.h"
#include "opmode/window/list_rows.h"
#include "opmode/window/overview/shown_rows.h"
#include "opmode/window/view_activity.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>

namespace ktr {

namespace {

constexpr int tileAgesMs = 60'000; ///< they are told in minutes

} // namespace

OverviewView::OverviewView(const OperationalMode &mode, OverviewModel &model, QWidget *parent)
    : QListView(parent),
      m_mode(mode),
      m_model(model),
      m_contents(mode, model),
      m_activity(new ViewActivity(*this, [] { return false; }))
{
    setObjectName(QStringLiteral("List_overview"));
    setFlow(LeftToRight);
    setWrapping(true);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // else tiles would change their width when it comes
    setFrameShape(QFrame::NoFrame);
    viewport()->setBackgroundRole(QPalette::Window);
    viewport()->setMouseTracking(true);
    const auto placeAnew = [this] { m_arePlacesStale = true; }; // before the toolkit's own looks at them
    connect(&model, &QAbstractItemModel::modelReset, this, placeAnew);
    connect(&model, &QAbstractItemModel::layoutChanged, this, placeAnew);
    setModel(&model);
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this, &OverviewView::noteChoice);
    connect(&model, &QAbstractItemModel::modelReset, this, [this] {
        chooseNoted();
        fit();
    });
    connect(this, &QAbstractItemView::clicked, this, [this](const QModelIndex &index) {
        if (const std::optional<int> group = m_model.headingAt(index.row())) {
            fold(*group, !m_model.isFolded(*group));
        }
    });
    const auto showAges = [this] {
        if (isVisible() && tiles().values() > 0) {
            viewport()->update();
        }
    };
    connect(&model.times(), &ValueTimes::found, this, showAges);
    connect(&mode.configurations(), &StationConfigurations::changed, this, showAges);
    auto *ageing = new QTimer(this);
    ageing->start(tileAgesMs);
    connect(ageing, &QTimer::timeout, this, showAges);
    connect(this, &QAbstractItemView::activated, this, [this](const QModelIndex &index) {
        if (m_model.headingAt(index.row())) {
            return;
        }
        Q_EMIT stationWanted(index.data(OverviewModel::KeyRole).toString());
    });
    fitTiles();
}

void OverviewView::follow()
{
    m_model.setHold([this] { return isInUse(); });
    m_model.setDescription(
        [this](const StationGlance &glance) { return m_contents.description(glance, tiles(), locale()); },
        [this](int group) { return m_contents.headingDescription(group); });
    connect(m_activity, &ViewActivity::mouseRested, &m_model, &OverviewModel::update);
}

void OverviewView::setOnWall(bool isOnWall)
{
    if (isOnWall == m_isOnWall) {
        return;
    }
    m_isOnWall = isOnWall;
    setSelectionMode(isOnWall ? SingleSelection : ExtendedSelection);
    const bool isWithoutBar = isOnWall || m_isStrip; // while it is hidden a change would not be taken
    setVerticalScrollBarPolicy(isWithoutBar ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAlwaysOn);
    if (isOnWall) {
        m_wasFitting = m_isFitting;
        m_levelInWindow = m_level;
        m_isFitting = true;
        scrollToTop();
    } else {
        m_isFitting = m_wasFitting;
        takeLevel(m_levelInWindow);
    }
    fitTiles();
    fit();
}

TileLevel OverviewView::tiles() const
{
    constexpr TileLevel nameAndState{13, 3.3}; // in two lines
    return m_isStrip     ? nameAndState
           : m_isFitting ? sizes().contents(m_level, m_measures.tile)
                         : tileLevels()[static_cast<std::size_t>(m_level)];
}

bool OverviewView::showsCells() const
{
    return tiles().isCell();
}

bool OverviewView::showsAll() const
{
    return places().height() <= viewport()->height();
}

void OverviewView::showFirst(int tiles, int mostRows)
{
    m_isFitting = false;
    m_isStrip = true;
    m_mostColumns = 0;
    const int room = sizes().measures(this->tiles()).columns;
    const int rows = std::min(mostRows, (tiles + room - 1) / room);
    m_mostColumns = std::min(room, (tiles + rows - 1) / rows);
    fitTiles();
    setFixedHeight(rows * m_measures.tile.height());
}

/// Somebody may be about to choose a tile, or goes through them with keys.
bool OverviewView::isInUse() const
{
    return m_activity->isAboutToChoose() ||
           (!underMouse() && m_activity->isInUse(ViewActivity::keysRestForClosing));
}

QString OverviewView::chosen() const
{
    return currentIndex().data(OverviewModel::KeyRole).toString();
}

void OverviewView::noteChoice()
{
    m_chosen = {chosenStations(), chosen()};
    m_chosenHeading = chosenHeading();
    m_pointed = -1;
}

/// As far as it is still shown. Nobody means what is not seen: the others are no longer chosen.
void OverviewView::chooseNoted()
{
    const Choice &before = m_chosen;
    chooseStations(before.stations, before.current);
    for (const int row : m_chosenHeading ? m_model.headings() : std::vector<int>()) {
        if (m_model.headingAt(row) == m_chosenHeading) {
            const QScopedValueRollback choosing(m_isChoosing, true);
            setCurrentIndex(m_model.index(row));
        }
    }
    const bool wasChosen = !before.stations.isEmpty() || !before.current.isEmpty();
    if (wasChosen && !currentIndex().isValid()) {
        m_hiddenChoice = before;
    } else if (!wasChosen && !currentIndex().isValid()) {
        const Choice hidden = m_hiddenChoice; // it is forgotten once something is chosen
        chooseStations(hidden.stations, hidden.current);
    }
    if (chosen() != before.current || chosenStations().size() != before.stations.size()) {
        Q_EMIT choiceChanged();
    }
}

void OverviewView::chooseStations(const QStringList &stations, const QString &current)
{
    const std::vector<int> rows = rowsOf(m_model, stations);
    const QScopedValueRollback choosing(m_isChoosing, true);
    setAutoScroll(false);
    selectionModel()->select(selectionOf(m_model, rows), QItemSelectionModel::ClearAndSelect);
    int row = m_model.rowOf(current);
    if (row < 0 && !rows.empty()) {
        row = rows.front();
    }
    if (row < 0) {
        selectionModel()->clearCurrentIndex();
    } else if (row != currentIndex().row()) {
        selectionModel()->setCurrentIndex(m_model.index(row), QItemSelectionModel::NoUpdate);
    }
    setAutoScroll(true);
}

void OverviewView::chooseFirst()
{
    for (int row = 0; row < m_model.rowCount(); ++row) {
        if (!m_model.headingAt(row)) {
            setCurrentIndex(m_model.index(row));
            return;
        }
    }
}

QStringList OverviewView::chosenStations() const
{
    QStringList stations;
    QItemSelection selection = selectionModel()->selection();
    std::ranges::sort(selection, {}, &QItemSelectionRange::top);
    for (const QItemSelectionRange &range : std::as_const(selection)) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            if (!m_model.headingAt(row)) {
                stations += m_model.glance(row).kennung;
            }
        }
    }
    return stations;
}

void OverviewView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): what a list view does for its own layout is not wanted
    QAbstractItemView::currentChanged(current, previous);
    if (QAccessible::isActive() && current.isValid() && hasFocus()) {
        QAccessibleEvent focused(this, QAccessible::Focus);
        focused.setChild(current.row());
        QAccessible::updateAccessibility(&focused);
    }
    if (current.isValid()) {
        m_hiddenChoice = {};
    }
    if (!m_isChoosing) {
        Q_EMIT choiceChanged();
    }
}

void OverviewView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): what a list view does for its own layout is not wanted
    QAbstractItemView::selectionChanged(selected, deselected);
    const QItemSelection chosen = selectionModel()->selection();
    const bool areSeveral = chosen.size() > 1 || (chosen.size() == 1 && chosen.constFirst().height() > 1);
    if (std::exchange(m_areSeveralChosen, areSeveral) != areSeveral) {
        viewport()->update();
    }
    if (!m_isChoosing) {
        Q_EMIT choiceChanged();
    }
}

// How large tiles are

void OverviewView::setLevel(int level)
{
    const bool wasFitting = std::exchange(m_isFitting, false);
    takeLevel(qBound(0, level, sizes().smallestLevel()));
    if (wasFitting) { // they are stretched no longer
        fitTiles();
    }
}

void OverviewView::setFitting(bool isFitting)
{
    m_isFitting = isFitting;
    takeLevel(isFitting ? fittingLevel() : m_level);
    fitTiles();
}

void OverviewView::takeLevel(int level)
{
    if (level != m_level) {
        const bool isSeen = viewport()->rect().intersects(visualRect(currentIndex()));
        m_level = level;
        fitTiles();
        if (isSeen) {
            scrollTo(currentIndex());
        }
    }
    Q_EMIT levelChanged();
}

void OverviewView::fit()
{
    if (!m_isFitting) {
        return;
    }
    if (const int level = fittingLevel(); level != m_level) {
        takeLevel(level);
    } else {
        fitTiles();
    }
}

TileSizes OverviewView::sizes() const
{
    return {fontMetrics().height(), viewport()->size(), m_isOnWall, m_mostColumns};
}

TileSizes::Rows OverviewView::rows() const
{
    return {m_model.rowCount(), m_model.headings()};
}

int OverviewView::fittingLevel() const
{
    return sizes().fittingLevel(rows());
}

void OverviewView::fitTiles()
{
    m_painter.reset();
    m_measures = m_isFitting && !m_isStrip ? sizes().fitted(m_level, rows()) : sizes().measures(tiles());
    m_arePlacesStale = true;
    verticalScrollBar()->setSingleStep(std::max(1, m_measures.tile.height() / 2));
    scheduleDelayedItemsLayout();
}

// Where they are

const TileLayout &OverviewView::places() const
{
    if (m_arePlacesStale) {
        m_arePlacesStale = false;
        m_places.arrange(m_model.rowCount(), m_model.headings(), m_measures);
    }
    return m_places;
}

void OverviewView::doItemsLayout()
{
    m_arePlacesStale = true;
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): what a list view does for its own layout is not wanted
    QAbstractItemView::doItemsLayout(); // the list view's own would place 10,000 items for nothing
}

void OverviewView::updateGeometries()
{
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): what a list view does for its own layout is not wanted
    QAbstractItemView::updateGeometries();
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setRange(0, std::max(0, places().height() - viewport()->height()));
    horizontalScrollBar()->setRange(0, 0);
}

int OverviewView::verticalOffset() const
{
    return verticalScrollBar()->value();
}

QRect OverviewView::visualRect(const QModelIndex &index) const
{
    return index.isValid() ? places().rectOf(index.row()).translated(0, -verticalOffset()) : QRect();
}

QModelIndex OverviewView::indexAt(const QPoint &point) const
{
    const int row = places().rowAt(point + QPoint(0, verticalOffset()));
    return row < 0 ? QModelIndex() : m_model.index(row);
}

void OverviewView::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    const QRect place = visualRect(index);
    if (!place.isValid()) {
        return;
    }
    updateGeometries(); // rows may have come since
    const int room = viewport()->height();
    const int top = hint == PositionAtBottom                   ? place.bottom() + 1 - room
                    : hint == PositionAtCenter                 ? place.center().y() - room / 2
                    : hint == PositionAtTop || place.top() < 0 ? place.top()
                    : place.bottom() >= room                   ? place.bottom() + 1 - room
                                                               : 0;
    verticalScrollBar()->setValue(verticalOffset() + top);
}

void OverviewView::scrollContentsBy(int x, int y)
{
    scrollDirtyRegion(x, y);
    viewport()->scroll(0, y);
}

void OverviewView::setSelection(const QRect &where, QItemSelectionModel::SelectionFlags flags)
{
    const QRect area = where.normalized();
    const int offset = verticalOffset();
    QItemSelection selection;
    if (state() == DragSelectingState) { // whatever the band touches
        const auto [first, end] = places().rowsBetween(area.top() + offset, area.bottom() + 1 + offset);
        for (int row = first; row < end; ++row) {
            if (places().rectOf(row).translated(0, -offset).intersects(area)) {
                selection.select(m_model.index(row), m_model.index(row));
            }
        }
    } else { // from one tile to another one, in their order
        const QModelIndex one = indexAt(where.topLeft());
        const QModelIndex other = indexAt(where.bottomRight());
        if (one.isValid() && other.isValid()) {
            selection.select(one.row() < other.row() ? one : other, one.row() < other.row() ? other : one);
        }
    }
    selectionModel()->select(selection, flags);
}

QRegion OverviewView::visualRegionForSelection(const QItemSelection &selection) const
{
    QRegion region;
    for (const QModelIndex &index : selection.indexes()) {
        region += visualRect(index);
    }
    return region;
}

void OverviewView::resizeEvent(QResizeEvent *event)
{
    fitTiles();
    fit();
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): what a list view does for its own layout is not wanted
    QAbstractItemView::resizeEvent(event);
    if (m_isStrip && event->size().width() != event->oldSize().width()) {
        Q_EMIT levelChanged(); // other rows may be needed
    }
}

void OverviewView::changeEvent(QEvent *event)
{
    QListView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange) {
        fitTiles();
    }
}

void OverviewView::setChannels(const QList<int> &channels)
{
    m_contents.setChannels(channels);
    viewport()->update();
}

void OverviewView::wheelEvent(QWheelEvent *event)
{
    if ((event->modifiers() & Qt::ControlModifier) != 0) {
        setLevel(m_level + (event->angleDelta().y() > 0 ? -1 : 1));
        event->accept();
    } else {
        QListView::wheelEvent(event);
    }
}

// What the user does

bool OverviewView::viewportEvent(QEvent *event)
{
    m_activity->noteViewportEvent(*event);
    if (event->type() == QEvent::HoverMove || event->type() == QEvent::HoverEnter) {
        m_pointed = indexAt(static_cast<QHoverEvent *>(event)->position().toPoint()).row();
    } else if (event->type() == QEvent::HoverLeave || event->type() == QEvent::Leave) {
        m_pointed = -1;
    }
    return QListView::viewportEvent(event);
}

/// Where nothing is chosen the toolkit would choose the first one, though nobody asked for it.
void OverviewView::focusInEvent(QFocusEvent *event)
{
    if (currentIndex().isValid()) {
        QListView::focusInEvent(event);
    } else {
        QWidget::focusInEvent(event); // NOLINT(bugprone-parent-virtual-call)
    }
}

void OverviewView::keyPressEvent(QKeyEvent *event)
{
    m_activity->noteKeys();
    if (foldByKey(*event)) {
        event->accept();
        return;
    }
    const bool isPlain = (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
    const QString text = event->text();
    if (isPlain && !isOnWall() && !text.isEmpty() && text.front().isPrint() && text != u" ") {
        Q_EMIT typed(text);
        event->accept();
    } else {
        QListView::keyPressEvent(event);
    }
}

/// On a wall there are no menus.
void OverviewView::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isOnTile = event->reason() != QContextMenuEvent::Mouse || indexAt(event->pos()).isValid();
    if (!chosen().isEmpty() && isOnTile && !m_isOnWall) {
        Q_EMIT menuWanted(event->globalPos());
    }
}

QModelIndex OverviewView::moveCursor(CursorAction action, Qt::KeyboardModifiers)
{
    const int count = m_model.rowCount();
    if (count == 0) {
        return {};
    }
    const int row = currentIndex().row();
    if (row < 0) {
        return m_model.index(0);
    }
    const auto paged = [this, row](int lines) {
        const QPoint from = places().rectOf(row).center();
        return places().rowNear(from +
                                QPoint(0, lines * std::max(m_measures.tile.height(),
                                                           viewport()->height() - m_measures.tile.height())));
    };
    switch (action) {
    case MoveHome:
        return m_model.index(0);
    case MoveEnd:
        return m_model.index(count - 1);
    case MoveLeft:
    case MovePrevious:
        return m_model.index(std::max(0, row - 1));
    case MoveRight:
    case MoveNext:
        return m_model.index(std::min(count - 1, row + 1));
    case MoveUp:
        return m_model.index(places().above(row));
    case MoveDown:
        return m_model.index(places().below(row));
    case MovePageUp:
        return m_model.index(paged(-1));
    case MovePageDown:
        return m_model.index(paged(1));
    }
    return {};
}

// Headings

std::optional<int> OverviewView::chosenHeading() const
{
    const QModelIndex current = currentIndex();
    return current.isValid() ? m_model.headingAt(current.row()) : std::nullopt;
}

void OverviewView::fold(int group, bool isFolded)
{
    if (m_model.isFolded(group) != isFolded) {
        m_model.setFolded(group, isFolded);
        Q_EMIT foldingChanged();
    }
}

/// Space and Enter fold and unfold, the arrows as in a tree.
bool OverviewView::foldByKey(const QKeyEvent &event)
{
    const std::optional<int> group = chosenHeading();
    const bool isPlain = (event.modifiers() & ~Qt::KeypadModifier) == 0;
    if (!group || !isPlain) {
        return false;
    }
    switch (event.key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        fold(*group, !m_model.isFolded(*group));
        return true;
    case Qt::Key_Left:
        fold(*group, true);
        return true;
    case Qt::Key_Right:
        if (m_model.isFolded(*group)) {
            fold(*group, false);
            return true;
        }
        return false;
    default:
        return false;
    }
}

// Painting

void OverviewView::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    const int offset = verticalOffset();
    const QRect &where = event->rect();
    const auto [first, end] = places().rowsBetween(where.top() + offset, where.bottom() + 1 + offset);
    for (int row = first; row < end; ++row) {
        const QRect place = places().rectOf(row).translated(0, -offset);
        if (place.intersects(where)) {
            paintRow(painter, place, row);
        }
    }
}

void OverviewView::paintRow(QPainter &painter, const QRect &where, int row) const
{
    const TileLevel level = tiles();
    if (!m_painter) {
        m_painter.emplace(level, font(), palette());
    }
    const TilePainter &tile = *m_painter;
    const bool isChosen = row == currentIndex().row() && hasFocus() && !m_isOnWall;
    const TilePainter::Place place{QRectF(where), isChosen, row == m_pointed};
    if (const std::optional<int> group = m_model.headingAt(row)) {
        tile.paintHeading(painter, place, m_contents.headingOf(*group, locale()));
        return;
    }
    const StationGlance &glance = m_model.glance(row);
    if (level.isCell()) {
        tile.paintCell(painter, place, glance);
    } else {
        tile.paint(painter, place, glance, m_contents.textsOf(glance, level, locale()));
    }
    if (m_areSeveralChosen && !m_isOnWall && selectionModel()->isSelected(m_model.index(row))) {
        tile.paintChosen(painter, place.rect, glance.urgency);
    }
}

} // namespace ktr
