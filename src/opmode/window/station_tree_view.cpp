#include "opmode/window/station_tree_view.h"

#include "look/outside_texts.h"
#include "look/palettes.h"
#include "opmode/window/station_mark.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QLineEdit>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QToolTip>

#include <tuple>

namespace ktr {

namespace {

constexpr int markSide = 14;
constexpr int gap = 6;
constexpr int refreshMs = 100;
constexpr int layoutMs = 250;
constexpr int closeMs = 3'000;
constexpr int quietMs = 60'000;
constexpr int restMs = 10'000; ///< so long who has moved the mouse over rows may be about to choose one
constexpr Milliseconds handRest{1000}; ///< so long after the user's last move here nothing changes its place
constexpr Milliseconds keysRest{60'000}; ///< the same for who has put the focus here
constexpr Milliseconds keysPause{
    10'000}; ///< the same for what merely closes: it keeps the user's row in place

/// Of the nodes that a node stands under.
QSet<QString> keysAbove(const QModelIndex &node)
{
    QSet<QString> keys;
    for (QModelIndex above = node.parent(); above.isValid(); above = above.parent()) {
        keys.insert(above.data(StationTree::KeyRole).toString());
    }
    return keys;
}

class NodeDelegate : public QStyledItemDelegate
{
public:
    explicit NodeDelegate(StationTreeView *view) : QStyledItemDelegate(view), m_view(*view) {}

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyleOptionViewItem item = option;
        initStyleOption(&item, index);
        const bool isRed = index.data(StationTree::ColourRole).toInt() == StationTree::alarmColour;
        const bool isSelected = (item.state & QStyle::State_Selected) != 0;
        if (isRed && !isSelected) {
            item.palette.setColor(QPalette::Text, alarmText(item.palette));
        }
        const QVariant status = index.data(StationTree::StatusRole);
        if (!status.isValid()) {
            item.font.setBold(isRed);
            drawItem(*painter, item);
            return;
        }
        item.font.setBold(true);
        QStringList badges;
        const auto station = status.value<StationStatus>();
        const int alarms = index.data(StationTree::AlarmCountRole).toInt();
        if (station.pukNeeded) {
            badges += QStringLiteral("PUK");
        }
        if (station.exclusive) {
            badges += QCoreApplication::translate("StationTreeView", "excl.");
        }
        if (station.loss) {
            badges += station.loss->isFlood ? QCoreApplication::translate("StationTreeView", "floods")
                                            : QCoreApplication::translate("StationTreeView", "losses");
        }
        if (alarms > 0) {
            badges += QString::number(alarms) + u'!';
        }
        QStyleOptionViewItem background = item;
        background.text.clear();
        drawItem(*painter, background);
        QRect rest = item.rect.adjusted(gap / 2, 0, -gap / 2, 0);
        const QRect mark(rest.left(), rest.center().y() - markSide / 2, markSide, markSide);
        if (isSelected) { // its colours are for a plain ground
            painter->save();
            painter->setRenderHint(QPainter::Antialiasing);
            painter->setPen(Qt::NoPen);
            painter->setBrush(item.palette.color(QPalette::Base));
            painter->drawEllipse(QRectF(mark).adjusted(-1, -1, 1, 1));
            painter->restore();
        }
        paintStationMark(*painter, mark, station, item.palette);
        rest.setLeft(rest.left() + markSide + gap);
        for (auto badge = badges.crbegin(); badge != badges.crend(); ++badge) {
            rest.setRight(drawBadge(*painter, rest, *badge, badge->endsWith(u'!'), item));
        }
        painter->save();
        painter->setFont(item.font);
        painter->setPen(item.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
        painter->drawText(rest, Qt::AlignVCenter | Qt::TextSingleLine,
                          QFontMetrics(item.font).elidedText(item.text, Qt::ElideRight, rest.width()));
        painter->restore();
    }

    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &,
                   const QModelIndex &index) override
    {
        const QVariant status = index.data(StationTree::StatusRole); // of a station
        QToolTip::showText(
            event->globalPos(),
            foldedTip(status.isValid() ? statusText(status.value<StationStatus>()) : index.data().toString()),
            view);
        return true;
    }

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        auto *editor = new QLineEdit(parent);
        editor->setAutoFillBackground(true); // the row's own text must not shine through
        return editor;
    }

    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &) const override
    {
        editor->setGeometry(option.rect.adjusted(markSide + gap, 0, 0, 0));
    }

    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override
    {
        const QString name = static_cast<QLineEdit *>(editor)->text();
        if (name != index.data(Qt::EditRole).toString() && !model->setData(index, name)) {
            Q_EMIT m_view.nameRefused(name);
        }
    }

private:
    static void drawItem(QPainter &painter, const QStyleOptionViewItem &item)
    {
        item.widget->style()->drawControl(QStyle::CE_ItemViewItem, &item, &painter, item.widget);
    }

    /// Gives where what stands left of it ends.
    static int drawBadge(QPainter &painter, const QRect &rest, const QString &text, bool isAlarm,
                         const QStyleOptionViewItem &item)
    {
        QFont font = item.font;
        font.setPointSizeF(font.pointSizeF() * 0.85);
        const QFontMetrics metrics(font);
        const QSize size(metrics.horizontalAdvance(text) + 2 * gap, metrics.height() + 2);
        const QRect badge(QPoint(rest.right() - size.width(), rest.center().y() - size.height() / 2), size);
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(isAlarm ? QPen(Qt::NoPen) : QPen(fieldBorder(item.palette)));
        painter.setBrush(isAlarm ? alarmGround(item.palette) : cardColour(item.palette));
        const double radius = size.height() / 2.0;
        painter.drawRoundedRect(QRectF(badge).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
        painter.setFont(font);
        painter.setPen(isAlarm ? QColor(Qt::white) : item.palette.color(QPalette::Text));
        painter.drawText(badge, Qt::AlignCenter, text);
        painter.restore();
        return badge.left() - gap;
    }

    StationTreeView &m_view;
};

} // namespace

StationTreeView::StationTreeView(StationTree &tree, QWidget *parent) : QTreeView(parent), m_tree(tree)
{
    setObjectName(QStringLiteral("TreeView_KTR_Nodes"));
    setModel(&tree);
    setItemDelegate(new NodeDelegate(this));
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setVerticalScrollMode(ScrollPerItem);
    setEditTriggers(EditKeyPressed | SelectedClicked);
    setTextElideMode(Qt::ElideRight);
    viewport()->setMouseTracking(true);
    const std::tuple<QTimer *, const char *, int, void (StationTreeView::*)()> timers[] = {
        {&m_filterTimer, "Timer_filter", refreshMs, &StationTreeView::applyFilter},
        {&m_layoutTimer, "Timer_layout", layoutMs, &StationTreeView::refresh},
        {&m_closeTimer, "Timer_close", closeMs, &StationTreeView::closeAcknowledged},
        {&m_quietTimer, "Timer_quiet", quietMs, &StationTreeView::closeOthers},
        {&m_restTimer, "Timer_rest", restMs, &StationTreeView::refresh},
        {&Timer_doView, "Timer_doView", refreshMs, &StationTreeView::revealNow}};
    for (const auto &[timer, name, interval, fired] : timers) {
        timer->setParent(this);
        timer->setObjectName(QLatin1String(name));
        timer->setSingleShot(true);
        timer->setInterval(interval);
        connect(timer, &QTimer::timeout, this, fired);
    }
    const auto isUsers = [this](const QModelIndex &branch) {
        if (!m_isOpening) {
            m_opened.remove(branch.data(StationTree::KeyRole).toString());
        }
    };
    connect(this, &QTreeView::expanded, this, isUsers);
    connect(this, &QTreeView::collapsed, this, isUsers);
    connect(&tree, &StationTree::alarmCountChanged, this, [this] {
        if (!m_opened.isEmpty()) {
            m_quietTimer.start();
            closeSoon();
        }
    });
    const auto filterSoon = [this] {
        if (!m_filterTimer.isActive()) {
            m_filterTimer.start();
        }
    };
    const auto ofStations = [filterSoon](const QModelIndex &above) {
        if (!above.isValid()) {
            filterSoon();
        }
    };
    connect(&tree, &QAbstractItemModel::rowsInserted, this, ofStations);
    connect(&tree, &QAbstractItemModel::rowsRemoved, this, ofStations);
    connect(&tree, &QAbstractItemModel::modelReset, this, filterSoon);
    connect(&tree, &QAbstractItemModel::dataChanged, this,
            [this, filterSoon](const QModelIndex &, const QModelIndex &, const QList<int> &roles) {
                if (m_kind != Kind::All && !roles.contains(Qt::DisplayRole)) {
                    filterSoon();
                }
            });
}

void StationTreeView::setAddressSource(std::function<QString(const QString &)> addressOf)
{
    m_addressOf = std::move(addressOf);
}

void StationTreeView::filter(const QString &text, Kind kind)
{
    m_text = text.trimmed();
    m_kind = kind;
    m_isFilterChosen = true;
    m_filterTimer.start();
}

bool StationTreeView::isWanted(const QModelIndex &station) const
{
    const auto status = station.data(StationTree::StatusRole).value<StationStatus>();
    using Line = StationStatus::Line;
    const auto isOf = [&] {
        switch (m_kind) {
        case Kind::All:
            return true;
        case Kind::InAlarm:
            return station.data(StationTree::AlarmCountRole).toInt() > 0;
        case Kind::NotHeard:
            return status.line != Line::Alive && status.line != Line::Offline;
        case Kind::Offline:
            return status.line == Line::Offline;
        case Kind::Exclusive:
            return status.exclusive;
        case Kind::PukNeeded:
            return status.pukNeeded;
        }
        return true;
    };
    const bool isOfKind = isOf();
    if (!isOfKind || m_text.isEmpty()) {
        return isOfKind;
    }
    const QString kennung = station.data(StationTree::KeyRole).toString();
    return station.data().toString().contains(m_text, Qt::CaseInsensitive) ||
           (m_addressOf && m_addressOf(kennung).contains(m_text, Qt::CaseInsensitive));
}

void StationTreeView::applyFilter()
{
    if (std::exchange(m_isFilterChosen, false)) {
        showWanted(true);
    } else if (isAboutToChoose()) {
        m_filterTimer.start();
    } else {
        changeInPlace([this] { showWanted(!isInUse()); });
    }
}

/// Hides the others as well, or leaves that for later: what is below would move up.
void StationTreeView::showWanted(bool mayHide)
{
    const bool isAll = m_kind == Kind::All && m_text.isEmpty();
    m_shown = 0;
    for (int row = 0; row < m_tree.rowCount(); ++row) {
        const bool isShown = !isRowHidden(row, {});
        bool shows = isAll || isWanted(m_tree.index(row, 0));
        if (isShown && !shows && !mayHide) {
            m_filterTimer.start();
            shows = true;
        }
        if (shows != isShown) {
            setRowHidden(row, {}, !shows);
        }
        m_shown += shows ? 1 : 0;
    }
    Q_EMIT filtered();
}

void StationTreeView::reveal(const QModelIndex &entry)
{
    if (!entry.isValid()) {
        return;
    }
    m_branchesToReveal.insert(entry.parent().data(StationTree::KeyRole).toString());
    m_toReveal = entry;
    if (!Timer_doView.isActive()) {
        Timer_doView.start();
    }
}

void StationTreeView::revealNow()
{
    if (isInUse()) {
        Timer_doView.start();
        return;
    }
    if (std::exchange(m_heldAt, 0) > 0) {
        updateGeometries();
    }
    if (!m_toReveal.isValid()) {
        return;
    }
    scheduleDelayedItemsLayout(); // once for all branches
    for (const QString &key : std::exchange(m_branchesToReveal, {})) {
        const QModelIndex branch = m_tree.find(key);
        open(branch.parent());
        open(branch);
    }
    scrollTo(m_toReveal);
    m_revealed = std::exchange(m_toReveal, {});
    m_quietTimer.start();
    closeSoon(); // of an alarm that is acknowledged already
}

void StationTreeView::open(const QModelIndex &branch)
{
    if (branch.isValid() && !isExpanded(branch)) {
        const QScopedValueRollback opening(m_isOpening, true);
        expand(branch);
        m_opened.insert(branch.data(StationTree::KeyRole).toString());
    }
}

/// Not put off by each alarm that is acknowledged or comes meanwhile.
void StationTreeView::closeSoon()
{
    if (!m_closeTimer.isActive() && !m_opened.isEmpty()) {
        m_closeTimer.start();
    }
}

void StationTreeView::closeAcknowledged()
{
    if (isInUse(keysPause)) {
        m_closeTimer.start();
        return;
    }
    QSet<QString> branches;
    for (const QString &key : std::as_const(m_opened)) {
        if (stationOf(m_tree.find(key)).data(StationTree::AlarmCountRole).toInt() == 0) {
            branches.insert(key);
        }
    }
    closeBranches(branches);
}

void StationTreeView::closeOthers()
{
    if (isInUse()) {
        m_quietTimer.start();
        return;
    }
    QSet<QString> branches = m_opened;
    if (m_revealed.data(StationTree::ColourRole).toInt() == StationTree::alarmColour) {
        branches -= keysAbove(m_revealed);
    }
    closeBranches(branches);
}

/// Closes what was opened here; what the user is at stays open until that is elsewhere.
void StationTreeView::closeBranches(QSet<QString> branches)
{
    branches -= keysAbove(currentIndex());
    if (branches.isEmpty()) {
        return;
    }
    m_opened -= branches;
    changeInPlace([&] {
        scheduleDelayedItemsLayout();
        for (const QString &key : std::as_const(branches)) {
            collapse(m_tree.find(key));
        }
    });
}

// Nothing is to be moved away from under the user's hand.

bool StationTreeView::isWithin(const QElapsedTimer &last, Milliseconds time)
{
    return last.isValid() && !last.hasExpired(time.count());
}

/// Whether the user is just moving the mouse here, pressing a button, choosing from a menu or typing.
bool StationTreeView::isHandled() const
{
    return state() == EditingState || QApplication::activePopupWidget() != nullptr ||
           (underMouse() && QApplication::mouseButtons() != Qt::NoButton) || isWithin(m_lastInput, handRest);
}

/// Whether the user points at the tree or has put the focus there.
bool StationTreeView::isInUse() const
{
    return isInUse(keysRest);
}

bool StationTreeView::isInUse(Milliseconds rest) const
{
    return isHandled() || underMouse() || (hasFocus() && isWithin(m_lastUse, rest));
}

/// Whether the user points at a row, and has done so for no longer than it takes to read it: then the rows
/// around it stay as well. A mouse that just lies there does not keep new ones out of sight.
bool StationTreeView::isAboutToChoose() const
{
    return isHandled() || (underMouse() && m_restTimer.isActive());
}

/// What is to stay where it is: the node under the mouse, that of the keys, or the topmost that is seen.
QModelIndex StationTreeView::heldNode() const
{
    const QModelIndex pointed = underMouse() ? indexAt(viewport()->mapFromGlobal(m_pointer)) : QModelIndex();
    if (pointed.isValid()) {
        return pointed;
    }
    const bool isSeen = viewport()->rect().intersects(visualRect(currentIndex()));
    return hasFocus() && isSeen ? currentIndex() : indexAt({0, 0});
}

/// Carries out a change of which rows there are, and scrolls by as much as it moved the held one.
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
    if (wanted > bar.maximum() && isInUse()) {
        m_heldAt = wanted;
        updateGeometries();
        Timer_doView.start();
    }
    bar.setValue(wanted);
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
    if (isAboutToChoose()) {
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
    if (event->isSinglePointEvent()) { // entering, moving, pressing
        m_pointer = static_cast<QSinglePointEvent *>(event)->globalPosition().toPoint();
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        m_lastUse.start(); // passing by with the mouse is none
        [[fallthrough]];
    case QEvent::MouseMove:
    case QEvent::Wheel:
        m_lastInput.start();
        m_restTimer.start();
        break;
    default:
        break;
    }
    return QTreeView::viewportEvent(event);
}

void StationTreeView::keyPressEvent(QKeyEvent *event)
{
    m_lastInput.start();
    m_lastUse.start();
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
        m_lastInput.start(); // the user wants it here
        m_lastUse.start();
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
    closeSoon();
    Q_EMIT currentNodeChanged(current);
}

} // namespace ktr
