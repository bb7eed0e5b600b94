#include "opmode/window/station_tree_view.h"

#include "look/outside_texts.h"
#include "look/palettes.h"
#include "opmode/window/station_mark.h"

#include <QCoreApplication>
#include <QHelpEvent>
#include <QLineEdit>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QToolTip>

namespace ktr {

namespace {

constexpr int markSide = 14;
constexpr int gap = 6;
constexpr int refreshMs = 100;
constexpr int layoutMs = 250;
constexpr int userRestMs = 4000;

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
        if (name != index.data().toString() && !model->setData(index, name)) {
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
    setEditTriggers(EditKeyPressed | SelectedClicked);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    setTextElideMode(Qt::ElideRight);
    viewport()->setMouseTracking(true);
    m_filterTimer.setSingleShot(true);
    m_filterTimer.setInterval(refreshMs);
    connect(&m_filterTimer, &QTimer::timeout, this, &StationTreeView::applyFilter);
    m_layoutTimer.setSingleShot(true);
    m_layoutTimer.setInterval(layoutMs);
    connect(&m_layoutTimer, &QTimer::timeout, this, [this] { scheduleDelayedItemsLayout(); });
    Timer_doView.setObjectName(QStringLiteral("Timer_doView"));
    Timer_doView.setSingleShot(true);
    Timer_doView.setInterval(refreshMs);
    connect(&Timer_doView, &QTimer::timeout, this, &StationTreeView::revealNow);
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
    const bool isAll = m_kind == Kind::All && m_text.isEmpty();
    m_shown = 0;
    for (int row = 0; row < m_tree.rowCount(); ++row) {
        const bool hidden = !isAll && !isWanted(m_tree.index(row, 0));
        if (hidden != isRowHidden(row, {})) {
            setRowHidden(row, {}, hidden);
        }
        m_shown += hidden ? 0 : 1;
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
    if (state() == EditingState || (m_lastInput.isValid() && !m_lastInput.hasExpired(userRestMs))) {
        Timer_doView.start(); // nothing runs away from under the mouse
        return;
    }
    scheduleDelayedItemsLayout(); // once for all branches
    for (const QString &key : std::exchange(m_branchesToReveal, {})) {
        const QModelIndex branch = m_tree.find(key);
        expand(branch.parent());
        expand(branch);
    }
    scrollTo(m_toReveal);
    m_toReveal = QPersistentModelIndex();
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
    if (!above.isValid() || start == 0) {
        QTreeView::rowsInserted(above, start, end);
    } else if (isExpanded(above) && !m_layoutTimer.isActive()) { // at the end of what is there
        m_layoutTimer.start();
    }
}

bool StationTreeView::viewportEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
        m_lastInput.start();
        break;
    default:
        break;
    }
    return QTreeView::viewportEvent(event);
}

void StationTreeView::keyPressEvent(QKeyEvent *event)
{
    m_lastInput.start();
    QTreeView::keyPressEvent(event);
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
