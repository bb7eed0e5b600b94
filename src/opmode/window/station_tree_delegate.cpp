#include "opmode/window/station_tree_delegate.h"

#include "look/outside_texts.h"
#include "look/palettes.h"
#include "opmode/tree/station_tree.h"
#include "opmode/window/station_mark.h"
#include "opmode/window/station_tree_view.h"
#include "platform/text_rules.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QLineEdit>
#include <QPainter>
#include <QToolTip>

namespace ktr {

namespace {

constexpr int markSide = 14;
constexpr int gap = 6;
constexpr qsizetype mostCharacters = 1000; // of a name that are measured

struct Badge
{
    QString text;
    bool isAlarm = false;
};

void drawItem(QPainter &painter, const QStyleOptionViewItem &item)
{
    item.widget->style()->drawControl(QStyle::CE_ItemViewItem, &item, &painter, item.widget);
}

/// Draws it at the right end of `rest`. Gives where what stands left of it ends.
int drawBadge(QPainter &painter, const QRect &rest, const Badge &badge, const QStyleOptionViewItem &item)
{
    QFont font = item.font;
    font.setPointSizeF(font.pointSizeF() * 0.85);
    const QFontMetrics metrics(font);
    const QSize size(metrics.horizontalAdvance(badge.text) + 2 * gap, metrics.height() + 2);
    const QRect place(QPoint(rest.right() - size.width(), rest.center().y() - size.height() / 2), size);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(badge.isAlarm ? QPen(Qt::NoPen) : QPen(fieldBorder(item.palette)));
    painter.setBrush(badge.isAlarm ? alarmGround(item.palette) : cardColour(item.palette));
    const double radius = size.height() / 2.0;
    painter.drawRoundedRect(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.setFont(font);
    painter.setPen(badge.isAlarm ? QColor(Qt::white) : item.palette.color(QPalette::Text));
    painter.drawText(place, Qt::AlignCenter, badge.text);
    painter.restore();
    return place.left() - gap;
}

} // namespace

StationTreeDelegate::StationTreeDelegate(StationTreeView &view) : QStyledItemDelegate(&view), m_view(view) {}

void StationTreeDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                const QModelIndex &index) const
{
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    if (const QString section = m_view.sectionAt(index); !section.isEmpty()) {
        paintSection(*painter, item, section);
        item.rect.setTop(item.rect.top() + m_view.sectionHeight());
    }
    const bool isRed = index.data(StationTree::ColourRole).toInt() == StationTree::alarmColour;
    if (isRed && (item.state & QStyle::State_Selected) == 0) {
        item.palette.setColor(QPalette::Text, alarmText(item.palette));
    }
    const bool isStation = index.data(StationTree::StatusRole).isValid();
    item.font.setBold(isStation || isRed);
    if (isStation) {
        paintStation(*painter, item, index);
    } else {
        drawItem(*painter, item);
    }
}

/// From the left end of the view on.
void StationTreeDelegate::paintSection(QPainter &painter, const QStyleOptionViewItem &item,
                                       const QString &section) const
{
    const QRect line(0, item.rect.top(), item.rect.right(), m_view.sectionHeight());
    painter.save();
    painter.fillRect(line.adjusted(0, 0, 1, 0), cardColour(item.palette));
    QFont font = item.font;
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 0.9);
    painter.setFont(font);
    painter.setPen(item.palette.color(QPalette::PlaceholderText));
    const QRect text = line.adjusted(gap, 0, -gap, 0);
    painter.drawText(text, Qt::AlignVCenter | Qt::TextSingleLine,
                     QFontMetrics(font).elidedText(section, Qt::ElideRight, text.width()));
    painter.restore();
}

QSize StationTreeDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const QSize usual = QStyledItemDelegate::sizeHint(option, index);
    return m_view.sectionAt(index).isEmpty() ? usual : usual + QSize(0, m_view.sectionHeight());
}

void StationTreeDelegate::paintStation(QPainter &painter, QStyleOptionViewItem item,
                                       const QModelIndex &index) const
{
    const auto status = index.data(StationTree::StatusRole).value<StationStatus>();
    const int alarms = index.data(StationTree::AlarmCountRole).toInt();
    std::vector<Badge> badges; // from the left
    if (status.pukNeeded) {
        badges.push_back({QStringLiteral("PUK")});
    }
    if (status.exclusive) {
        badges.push_back({tr("excl.")});
    }
    if (status.loss) {
        badges.push_back({status.loss->isFlood ? tr("floods") : tr("losses")});
    }
    if (alarms > 0) {
        badges.push_back({QString::number(alarms) + u'!', true});
    }

    const QString name = std::exchange(item.text, {});
    drawItem(painter, item); // the background alone
    const bool isSelected = (item.state & QStyle::State_Selected) != 0;
    QRect rest = item.rect.adjusted(gap / 2, 0, -gap / 2, 0);
    const QRect mark(rest.left(), rest.center().y() - markSide / 2, markSide, markSide);
    if (isSelected) { // the mark's colours are for a plain ground
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(item.palette.color(QPalette::Base));
        painter.drawEllipse(QRectF(mark).adjusted(-1, -1, 1, 1));
        painter.restore();
    }
    paintStationMark(painter, mark, status, item.palette);
    rest.setLeft(rest.left() + markSide + gap);
    for (auto badge = badges.crbegin(); badge != badges.crend(); ++badge) {
        rest.setRight(drawBadge(painter, rest, *badge, item));
    }
    painter.save();
    painter.setFont(item.font);
    painter.setPen(item.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
    painter.drawText(rest, Qt::AlignVCenter | Qt::TextSingleLine,
                     QFontMetrics(item.font).elidedText(firstCharacters(name, mostCharacters), Qt::ElideRight,
                                                        rest.width()));
    painter.restore();
}

bool StationTreeDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &,
                                    const QModelIndex &index)
{
    const QVariant status = index.data(StationTree::StatusRole); // of a station
    QToolTip::showText(
        event->globalPos(),
        foldedTip(status.isValid() ? statusText(status.value<StationStatus>()) : index.data().toString()),
        view);
    return true;
}

QWidget *StationTreeDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                           const QModelIndex &) const
{
    auto *editor = new QLineEdit(parent);
    editor->setAutoFillBackground(true); // the row's own text must not shine through
    return editor;
}

void StationTreeDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                               const QModelIndex &index) const
{
    const int top = m_view.sectionAt(index).isEmpty() ? 0 : m_view.sectionHeight();
    editor->setGeometry(option.rect.adjusted(markSide + gap, top, 0, 0));
}

/// Each message of a station changes its node while the user edits the name: what is typed and what is
/// selected to be typed over stays.
void StationTreeDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    const auto &line = *static_cast<QLineEdit *>(editor);
    if (!line.isModified() && line.text() != index.data(Qt::EditRole).toString()) {
        QStyledItemDelegate::setEditorData(editor, index);
    }
}

void StationTreeDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                       const QModelIndex &index) const
{
    const QString name = static_cast<QLineEdit *>(editor)->text();
    if (name != index.data(Qt::EditRole).toString() && !model->setData(index, name)) {
        Q_EMIT nameRefused(name);
    }
}

} // namespace ktr
