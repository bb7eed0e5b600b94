#include "opmode/window/overview/overview_view.h"

#include "look/outside_texts.h"
#include "opmode/operational_mode.h"
#include "opmode/overview/input_reading.h"
#include "opmode/overview/overview_model.h"
#include "opmode/window/alarm_look.h"
#include "opmode/window/input_caption.h"
#include "opmode/window/quality_bars.h"
#include "opmode/window/station_mark.h"
#include "opmode/window/value_text.h"
#include "opmode/window/view_activity.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>
#include <cmath>

namespace ktr {

namespace {

class TileDelegate : public QStyledItemDelegate
{
public:
    explicit TileDelegate(OverviewView &view) : QStyledItemDelegate(&view), m_view(view) {}

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        m_view.paintTile(*painter, option.rect, index, (option.state & QStyle::State_MouseOver) != 0);
    }
    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        return m_view.tileSize();
    }

private:
    const OverviewView &m_view;
};

} // namespace

OverviewView::OverviewView(const OperationalMode &mode, OverviewModel &model, QWidget *parent)
    : QListView(parent),
      m_mode(mode),
      m_model(model),
      m_activity(new ViewActivity(*this, [] { return false; }))
{
    setObjectName(QStringLiteral("List_overview"));
    setFlow(LeftToRight);
    setWrapping(true);
    setUniformItemSizes(true);
    setResizeMode(Adjust);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // else tiles would change their width when it comes
    setFrameShape(QFrame::NoFrame);
    viewport()->setBackgroundRole(QPalette::Window);
    viewport()->setMouseTracking(true);
    setItemDelegate(new TileDelegate(*this));
    setModel(&model);
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
        m_chosen = chosen();
        m_chosenStations = chosenStations();
    });
    connect(&model, &QAbstractItemModel::modelReset, this, [this] {
        chooseStations(m_chosenStations, m_chosen);
        fit();
    });
    connect(this, &QAbstractItemView::activated, this, [this](const QModelIndex &index) {
        Q_EMIT stationWanted(index.data(OverviewModel::KeyRole).toString());
    });
    fitTiles();
}

void OverviewView::follow()
{
    m_model.setHold([this] { return isInUse(); });
    m_model.setDescription([this](const StationGlance &glance) { return description(glance); });
    connect(m_activity, &ViewActivity::mouseRested, &m_model, &OverviewModel::update);
}

void OverviewView::setOnWall(bool isOnWall)
{
    if (isOnWall == m_isOnWall) {
        return;
    }
    m_isOnWall = isOnWall;
    setSelectionMode(isOnWall ? SingleSelection : ExtendedSelection);
    setVerticalScrollBarPolicy(isOnWall ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAlwaysOn);
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
    constexpr TileLevel nameAndState{13, 2.6};
    return m_isStrip ? nameAndState : tileLevels()[static_cast<std::size_t>(m_level)];
}

bool OverviewView::showsCells() const
{
    return tiles().isCell();
}

void OverviewView::setRows(int rows)
{
    m_isFitting = false;
    m_isStrip = true;
    fitTiles();
    setFixedHeight(rows * m_tile.height());
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

void OverviewView::chooseStations(const QStringList &stations, const QString &current)
{
    std::vector<int> rows;
    for (const QString &kennung : stations) {
        if (const int row = m_model.rowOf(kennung); row >= 0) {
            rows.push_back(row);
        }
    }
    std::ranges::sort(rows);
    QItemSelection selection;
    for (std::size_t first = 0; first < rows.size();) {
        std::size_t last = first;
        while (last + 1 < rows.size() && rows[last + 1] == rows[last] + 1) {
            ++last;
        }
        selection.append({m_model.index(rows[first]), m_model.index(rows[last])});
        first = last + 1;
    }
    const QScopedValueRollback choosing(m_isChoosing, true);
    setAutoScroll(false);
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (const int row = m_model.rowOf(current); row >= 0 && row != currentIndex().row()) {
        selectionModel()->setCurrentIndex(m_model.index(row), QItemSelectionModel::NoUpdate);
    }
    setAutoScroll(true);
}

QStringList OverviewView::chosenStations() const
{
    QStringList stations;
    QItemSelection selection = selectionModel()->selection();
    std::ranges::sort(selection, {}, &QItemSelectionRange::top);
    for (const QItemSelectionRange &range : std::as_const(selection)) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            stations += m_model.glance(row).kennung;
        }
    }
    return stations;
}

void OverviewView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QListView::currentChanged(current, previous);
    if (current.isValid() && !m_isChoosing) {
        Q_EMIT choiceChanged();
    }
}

void OverviewView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QListView::selectionChanged(selected, deselected);
    const QItemSelection chosen = selectionModel()->selection();
    const bool areSeveral = chosen.size() > 1 || (chosen.size() == 1 && chosen.constFirst().height() > 1);
    if (std::exchange(m_areSeveralChosen, areSeveral) != areSeveral) {
        viewport()->update();
    }
    if (!m_isChoosing && selectionModel()->hasSelection()) {
        Q_EMIT choiceChanged();
    }
}

// How large tiles are

void OverviewView::setLevel(int level)
{
    m_isFitting = false;
    takeLevel(qBound(0, level, smallestLevel()));
}

void OverviewView::setFitting(bool isFitting)
{
    m_isFitting = isFitting;
    takeLevel(isFitting ? fittingLevel() : m_level);
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
    if (m_isFitting && fittingLevel() != m_level) {
        takeLevel(fittingLevel());
    }
}

int OverviewView::columnsAt(const TileLevel &level) const
{
    const double width = level.width * fontMetrics().height();
    return std::max(1, static_cast<int>(viewport()->width() / width));
}

int OverviewView::fittingLevel() const
{
    constexpr int readable = 3;
    for (int level = 0; level <= smallestLevel(); ++level) {
        const TileLevel &tiles = tileLevels()[static_cast<std::size_t>(level)];
        const int columns = columnsAt(tiles);
        const int rows = (m_model.rowCount() + columns - 1) / columns;
        if (rows * std::ceil(tiles.height * fontMetrics().height()) <= viewport()->height()) {
            return level;
        }
        if (!m_isOnWall && tileLevels()[static_cast<std::size_t>(level) + 1].isCell()) {
            return readable;
        }
    }
    return smallestLevel();
}

/// Whose cells can still be told apart and hit.
int OverviewView::smallestLevel() const
{
    constexpr double leastSide = 9;
    const auto levels = tileLevels();
    const auto tooSmall = std::ranges::find_if(levels, [this](const TileLevel &level) {
        return std::min(level.width, level.height) * fontMetrics().height() < leastSide;
    });
    return std::max(0, static_cast<int>(tooSmall - levels.begin()) - 1);
}

void OverviewView::fitTiles()
{
    const TileLevel level = tiles();
    m_painter.reset();
    m_columns = columnsAt(level);
    const QSize tile((viewport()->width() - 1) / m_columns,
                     static_cast<int>(std::ceil(level.height * fontMetrics().height())));
    if (tile != m_tile) {
        m_tile = tile;
        setGridSize(tile);
        verticalScrollBar()->setSingleStep(std::max(1, tile.height() / 2));
    }
}

void OverviewView::resizeEvent(QResizeEvent *event)
{
    const int before = m_columns;
    fitTiles();
    fit();
    QListView::resizeEvent(event);
    if (m_isStrip && m_columns != before) {
        Q_EMIT levelChanged(); // other rows are needed
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
    m_channels = channels;
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
    return QListView::viewportEvent(event);
}

void OverviewView::keyPressEvent(QKeyEvent *event)
{
    m_activity->noteKeys();
    const bool isPlain = (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
    const QString text = event->text();
    if (isPlain && !text.isEmpty() && text.front().isPrint() && text != u" ") {
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
    if (currentIndex().isValid() && isOnTile && !m_isOnWall) {
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
    const int page = std::max(1, viewport()->height() / m_tile.height()) * m_columns;
    const int column = row % m_columns;
    const int lowest = (count - 1 - column) / m_columns * m_columns + column;
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
        return m_model.index(row >= m_columns ? row - m_columns : row);
    case MoveDown:
        return m_model.index(row + m_columns < count ? row + m_columns : row);
    case MovePageUp:
        return m_model.index(std::max(column, row - page));
    case MovePageDown:
        return m_model.index(std::min(lowest, row + page));
    }
    return {};
}

// What tiles show

QString OverviewView::stateOf(const StationGlance &glance) const
{
    const AlarmRow *alarm = m_mode.alarms().alarm(glance.worst);
    if (m_mode.isLent(glance.kennung)) {
        return tr("being configured in the main window");
    }
    if (alarm != nullptr) {
        const QString text = shortenedLine(alarm->text);
        return alarm->acknowledged == 0 && alarm->shelvedUntil == 0 ? text
               : alarm->shelvedUntil != 0                           ? tr("put aside: %1").arg(text)
                                                                    : tr("acknowledged: %1").arg(text);
    }
    QString state = statusText(glance.status);
    if (glance.status.pukNeeded) {
        state += QLatin1String(", PUK");
    }
    return state;
}

TileTexts OverviewView::textsOf(const StationGlance &glance) const
{
    const TileLevel level = tiles();
    TileTexts texts;
    texts.state = stateOf(glance);
    if (!level.hasFoot()) {
        return texts;
    }
    if (const cStation *station = m_mode.station(glance.kennung)) {
        texts.bars = QualityBars::filled(station->csq());
        if (const qint64 heard = station->lastHeard(); heard > 0) {
            const QDateTime moment = QDateTime::fromMSecsSinceEpoch(heard);
            const bool isToday = moment.date() == m_mode.now().toLocalTime().date();
            texts.heard = locale().toString(moment, isToday ? QStringLiteral("HH:mm:ss")
                                                            : QStringLiteral("dd.MM. HH:mm"));
        }
    }
    if (level.values() == 0) {
        return texts;
    }
    const ChannelNames names = m_mode.channelNames(glance.kennung);
    for (const int channel : shownChannels(m_mode, glance.kennung, names, m_channels, level.values())) {
        const InputReading reading = readingOf(m_mode, glance.kennung, channel, names);
        TileTexts::Value value{shortInputCaption(channel, names),
                               shortenedLine(localValue(reading.value, locale())),
                               reading.unit,
                               reading.state,
                               {}};
        for (const ValueTrends::Point &point : reading.trend) {
            value.trend.append({double(point.time), double(point.value)});
        }
        texts.values += value;
    }
    return texts;
}

QString OverviewView::description(const StationGlance &glance) const
{
    QStringList lines{glance.name + QLatin1String(": ") + stateOf(glance)};
    if (glance.waiting > 0) {
        lines += tr("Alarms not acknowledged: %1").arg(glance.waiting);
    }
    if (glance.worst != 0) {
        lines += statusText(glance.status);
    }
    const cStation *station = m_mode.station(glance.kennung);
    if (station != nullptr && station->lastHeard() > 0) {
        lines += tr("Last heard %1").arg(shownMoment(station->lastHeard()));
    }
    return lines.join(u'\n');
}

void OverviewView::paintTile(QPainter &painter, const QRect &where, const QModelIndex &index,
                             bool isPointed) const
{
    const TileLevel level = tiles();
    if (!m_painter) {
        m_painter.emplace(level, font(), palette());
    }
    const TilePainter &tile = *m_painter;
    const StationGlance &glance = m_model.glance(index.row());
    const TilePainter::Place place{QRectF(where), index == currentIndex() && hasFocus() && !m_isOnWall,
                                   isPointed};
    if (level.isCell()) {
        tile.paintCell(painter, place, glance);
    } else {
        tile.paint(painter, place, glance, textsOf(glance));
    }
    if (m_areSeveralChosen && !m_isOnWall && selectionModel()->isSelected(index)) {
        tile.paintChosen(painter, place.rect);
    }
}

} // namespace ktr
