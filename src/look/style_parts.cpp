#include "look/style_parts.h"

#include "look/palettes.h"
#include "look/rounded.h"
#include "platform/text_rules.h"

#include <QApplication>
#include <QGroupBox>
#include <QPainter>

namespace ktr {

namespace {

constexpr int cardRadius = 8;
constexpr int titleTop = 9;
constexpr int focusRoom = 3; ///< around a check mark's box, for the focus ring

/// Saves the painter, and draws smoothly as long as it lives.
class Smooth
{
public:
    explicit Smooth(QPainter *painter) : m_painter(painter)
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
    }
    Smooth(const Smooth &) = delete;
    Smooth &operator=(const Smooth &) = delete;
    ~Smooth() { m_painter->restore(); }

private:
    QPainter *m_painter;
};

void drawTick(QPainter *painter, const QRect &rect, const QColor &colour, bool partly)
{
    const Smooth smooth(painter);
    painter->translate(rect.topLeft());
    painter->scale(rect.width() / 16.0, rect.height() / 16.0);
    painter->setPen(QPen(colour, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const std::array tick = {QPointF(4, 8.4), QPointF(6.8, 11.2), QPointF(12, 5.2)};
    const std::array dash = {QPointF(4.5, 8), QPointF(8, 8), QPointF(11.5, 8)};
    painter->drawPolyline(partly ? dash.data() : tick.data(), 3);
}

bool hasTitle(const QStyleOptionGroupBox &box)
{
    return !box.text.isEmpty() || box.subControls.testFlag(QStyle::SC_GroupBoxCheckBox);
}

int titleHeight(const QStyleOptionGroupBox &box, const QStyle &style, const QWidget *widget)
{
    const bool checkable = box.subControls.testFlag(QStyle::SC_GroupBoxCheckBox);
    const int indicator = checkable ? style.pixelMetric(QStyle::PM_IndicatorHeight, &box, widget) : 0;
    return std::max(box.fontMetrics.height(), indicator);
}

} // namespace

void drawChevron(QPainter *painter, const QRect &rect, Qt::ArrowType direction, const QColor &colour)
{
    const Smooth smooth(painter);
    constexpr double size = 3.5;
    painter->translate(QRectF(rect).center());
    painter->rotate(direction == Qt::UpArrow      ? 180
                    : direction == Qt::LeftArrow  ? 90
                    : direction == Qt::RightArrow ? -90
                                                  : 0);
    painter->setPen(QPen(colour, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const std::array points = {QPointF(-size, -size / 2), QPointF(0, size / 2), QPointF(size, -size / 2)};
    painter->drawPolyline(points.data(), static_cast<int>(points.size()));
}

bool has(const QStyleOption *option, QStyle::StateFlag state)
{
    return option->state.testFlag(state);
}

bool isHovered(const QStyleOption *option)
{
    return has(option, QStyle::State_MouseOver) && has(option, QStyle::State_Enabled);
}

void drawField(QPainter *painter, const QStyleOption *option, const QColor &fill)
{
    const bool enabled = has(option, QStyle::State_Enabled);
    const bool focus = enabled && has(option, QStyle::State_HasFocus);
    const QPalette &palette = option->palette;
    const QColor border = focus ? accent(palette) : enabled ? fieldBorder(palette) : hairline(palette);
    drawRounded(painter, option->rect, fieldRadius, border, fill, focus ? 2 : 1);
}

void drawIndicator(QPainter *painter, const QStyleOption *option, bool round)
{
    const QPalette &palette = option->palette;
    const bool enabled = has(option, QStyle::State_Enabled);
    const bool partly = has(option, QStyle::State_NoChange);
    const bool chosen = has(option, QStyle::State_On) || partly;
    const int room = std::min(option->rect.width(), option->rect.height());
    const int side = room < indicatorSize ? room : room - 2 * focusRoom; // menus have less room
    QRect box(0, 0, side, side);
    box.moveCenter(option->rect.center());
    const QColor filled = enabled ? accent(palette) : palette.color(QPalette::Disabled, QPalette::WindowText);
    const QColor border = chosen ? filled : enabled ? fieldBorder(palette) : hairline(palette);
    const bool onSelection = has(option, QStyle::State_Selected); // in a list
    const QColor hover = onSelection         ? palette.color(QPalette::HighlightedText)
                         : isHovered(option) ? accent(palette)
                                             : border;
    const QColor ground = chosen && !round ? filled : palette.color(QPalette::Base);
    const QColor mark = enabled ? accentText(palette) : palette.color(QPalette::Window);
    if (!round) {
        drawRounded(painter, box, 4, hover, ground, 1.3);
        if (chosen) {
            drawTick(painter, box, mark, partly);
        }
        return;
    }
    drawRounded(painter, box, side / 2.0, hover, ground, chosen ? 1.8 : 1.3);
    if (chosen) {
        const int inset = side / 4;
        drawRounded(painter, box.adjusted(inset, inset, -inset, -inset), side, QColor(), filled);
    }
}

void drawButton(QPainter *painter, const QStyleOption *option)
{
    const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
    const QPalette &palette = option->palette;
    const bool enabled = has(option, QStyle::State_Enabled);
    const bool pressed = has(option, QStyle::State_Sunken) || has(option, QStyle::State_On);
    const bool preset =
        enabled && button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton);
    if (button != nullptr && button->features.testFlag(QStyleOptionButton::Flat) && !pressed &&
        !isHovered(option) && !has(option, QStyle::State_HasFocus)) {
        return;
    }
    const QColor border = preset ? accent(palette) : enabled ? fieldBorder(palette) : hairline(palette);
    drawRounded(painter, option->rect, fieldRadius, border,
                preset ? accent(palette) : palette.color(QPalette::Button));
    if (enabled && (pressed || isHovered(option))) {
        drawRounded(painter, option->rect, fieldRadius, QColor(), veil(palette, pressed ? 3 : 1));
    }
    if (enabled && has(option, QStyle::State_HasFocus)) {
        drawRounded(painter, option->rect, fieldRadius, accent(palette), Qt::NoBrush, 2);
        if (preset) {
            drawRounded(painter, option->rect.adjusted(3, 3, -3, -3), fieldRadius - 2, accentText(palette),
                        Qt::NoBrush);
        }
    }
}

bool isNested(const QWidget *box)
{
    const QWidget *parent = box != nullptr ? box->parentWidget() : nullptr;
    while (parent != nullptr && qobject_cast<const QGroupBox *>(parent) == nullptr) {
        parent = parent->isWindow() ? nullptr : parent->parentWidget();
    }
    return parent != nullptr;
}

QFont titleFont(const QWidget *widget)
{
    QFont font = widget != nullptr ? widget->font() : QApplication::font();
    font.setWeight(QFont::DemiBold);
    return font;
}

QRect groupBoxPart(const QStyleOptionGroupBox &box, QStyle::SubControl part, const QStyle &style,
                   const QWidget *widget)
{
    const bool nested = isNested(widget);
    const int left = nested ? 0 : cardMargin;
    const int top = nested ? 0 : titleTop;
    const int height = titleHeight(box, style, widget);
    QRect title(box.rect.left() + left, box.rect.top() + top, box.rect.width() - 2 * left, height);
    const bool checkable = box.subControls.testFlag(QStyle::SC_GroupBoxCheckBox);
    const int indicator = style.pixelMetric(QStyle::PM_IndicatorWidth, &box, widget);
    switch (part) {
    case QStyle::SC_GroupBoxContents:
        return hasTitle(box) ? box.rect.adjusted(0, top + height, 0, 0) : box.rect;
    case QStyle::SC_GroupBoxCheckBox:
        title.setWidth(indicator);
        break;
    case QStyle::SC_GroupBoxLabel:
        if (checkable) {
            title.setLeft(title.left() + indicator + markGap);
        }
        break;
    default:
        return box.rect;
    }
    return QStyle::visualRect(box.direction, box.rect, title);
}

void drawGroupBox(const QStyleOptionGroupBox &box, QPainter *painter, const QStyle &style,
                  const QWidget *widget)
{
    if (!isNested(widget) && !box.features.testFlag(QStyleOptionFrame::Flat)) {
        drawRounded(painter, box.rect, cardRadius, hairline(box.palette), cardColour(box.palette));
    }
    if (!box.text.isEmpty()) {
        const QRect label = groupBoxPart(box, QStyle::SC_GroupBoxLabel, style, widget);
        const QFont before = painter->font();
        painter->setFont(titleFont(widget));
        const int flags = Qt::TextShowMnemonic |
                          static_cast<int>(QStyle::visualAlignment(box.direction, Qt::AlignLeft)) |
                          Qt::AlignVCenter;
        style.drawItemText(painter, label, flags, box.palette, has(&box, QStyle::State_Enabled), box.text,
                           QPalette::WindowText);
        if (has(&box, QStyle::State_HasFocus)) {
            QStyleOptionFocusRect focus;
            focus.QStyleOption::operator=(box);
            focus.rect = QRect(label.topLeft(),
                               QSize(painter->fontMetrics().size(Qt::TextShowMnemonic, box.text).width(),
                                     label.height()))
                             .adjusted(-4, -1, 4, 1);
            style.drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter, widget);
        }
        painter->setFont(before);
    }
    if (box.subControls.testFlag(QStyle::SC_GroupBoxCheckBox)) {
        QStyleOptionButton check;
        check.QStyleOption::operator=(box);
        check.rect = groupBoxPart(box, QStyle::SC_GroupBoxCheckBox, style, widget);
        style.drawPrimitive(QStyle::PE_IndicatorCheckBox, &check, painter, widget);
    }
}

void drawScrollBar(const QStyleOptionSlider &bar, QPainter *painter, const QStyle &style,
                   const QWidget *widget)
{
    painter->fillRect(bar.rect, bar.palette.color(QPalette::Window));
    if (bar.minimum == bar.maximum) {
        return;
    }
    QRect thumb = style.subControlRect(QStyle::CC_ScrollBar, &bar, QStyle::SC_ScrollBarSlider, widget);
    const bool held = bar.activeSubControls.testFlag(QStyle::SC_ScrollBarSlider) &&
                      (has(&bar, QStyle::State_MouseOver) || has(&bar, QStyle::State_Sunken));
    const int inset = held ? 2 : 3;
    thumb = bar.orientation == Qt::Horizontal ? thumb.adjusted(2, inset, -2, -inset)
                                              : thumb.adjusted(inset, 2, -inset, -2);
    QColor colour = fieldBorder(bar.palette);
    colour.setAlpha(held ? 255 : 170);
    drawRounded(painter, thumb, std::min(thumb.width(), thumb.height()) / 2.0, QColor(), colour);
}

QRect scrollBarPart(const QStyleOptionSlider &bar, QStyle::SubControl part, const QStyle &style,
                    const QWidget *widget)
{
    const bool horizontal = bar.orientation == Qt::Horizontal;
    const int length = horizontal ? bar.rect.width() : bar.rect.height();
    const qint64 range = static_cast<qint64>(bar.maximum) - bar.minimum;
    int thumb = length;
    if (range > 0) {
        thumb = static_cast<int>(static_cast<qint64>(bar.pageStep) * length / (range + bar.pageStep));
        thumb =
            std::min(std::max(thumb, style.pixelMetric(QStyle::PM_ScrollBarSliderMin, &bar, widget)), length);
    }
    const int start = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                      length - thumb, bar.upsideDown);
    const auto piece = [&](int from, int size) {
        const QRect rect = horizontal ? QRect(bar.rect.left() + from, bar.rect.top(), size, bar.rect.height())
                                      : QRect(bar.rect.left(), bar.rect.top() + from, bar.rect.width(), size);
        return QStyle::visualRect(bar.direction, bar.rect, rect);
    };
    switch (part) {
    case QStyle::SC_ScrollBarSlider:
        return piece(start, thumb);
    case QStyle::SC_ScrollBarSubPage:
        return piece(0, start);
    case QStyle::SC_ScrollBarAddPage:
        return piece(start + thumb, length - start - thumb);
    case QStyle::SC_ScrollBarGroove:
        return bar.rect;
    default:
        return {}; // no buttons at the ends
    }
}

void drawSlider(const QStyleOptionSlider &slider, QPainter *painter, const QStyle &style,
                const QWidget *widget)
{
    constexpr int thickness = 4;
    constexpr int mostHandle = 16;
    const bool horizontal = slider.orientation == Qt::Horizontal;
    const QRect handle = style.subControlRect(QStyle::CC_Slider, &slider, QStyle::SC_SliderHandle, widget);
    const QPoint middle = handle.center();
    QRect groove = slider.rect;
    QRect before;
    if (horizontal) {
        groove.setRect(groove.left(), middle.y() - thickness / 2, groove.width(), thickness);
        before = groove;
        slider.upsideDown ? before.setLeft(middle.x()) : before.setRight(middle.x());
    } else {
        groove.setRect(middle.x() - thickness / 2, groove.top(), thickness, groove.height());
        before = groove;
        slider.upsideDown ? before.setTop(middle.y()) : before.setBottom(middle.y());
    }
    const bool enabled = has(&slider, QStyle::State_Enabled);
    const QColor border = fieldBorder(slider.palette);
    const QColor colour = enabled ? accent(slider.palette) : border;
    drawRounded(painter, groove, thickness / 2.0, QColor(), hairline(slider.palette));
    drawRounded(painter, before, thickness / 2.0, QColor(), colour);
    const int size = std::min({mostHandle, handle.width(), handle.height()});
    QRect round(0, 0, size, size);
    round.moveCenter(middle);
    const bool isFilled =
        enabled && (has(&slider, QStyle::State_HasFocus) || has(&slider, QStyle::State_Sunken));
    drawRounded(painter, round, size / 2.0, colour, isFilled ? colour : slider.palette.color(QPalette::Base),
                2);
}

void drawTab(const QStyleOptionTab &tab, QPainter *painter)
{
    const bool chosen = has(&tab, QStyle::State_Selected);
    if (!chosen && isHovered(&tab)) {
        drawRounded(painter, tab.rect.adjusted(2, 3, -2, -3), fieldRadius, QColor(), veil(tab.palette));
    }
    if (chosen) {
        const QRect line(tab.rect.left() + 8, tab.rect.bottom() - 2, tab.rect.width() - 16, 3);
        drawRounded(painter, line, 1.5, QColor(), accent(tab.palette));
    }
    if (has(&tab, QStyle::State_HasFocus)) {
        drawRounded(painter, tab.rect.adjusted(3, 3, -3, -5), fieldRadius, accent(tab.palette), Qt::NoBrush,
                    2);
    }
}

void drawHeaderSection(const QStyleOptionHeader &header, QPainter *painter)
{
    const QPalette &palette = header.palette;
    painter->fillRect(header.rect, palette.color(QPalette::Button));
    if (has(&header, QStyle::State_MouseOver) || has(&header, QStyle::State_Sunken)) {
        painter->fillRect(header.rect, veil(palette));
    }
    const QRect rect = header.rect;
    const QColor line = hairline(palette);
    painter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), line);
    painter->fillRect(QRect(rect.right(), rect.top(), 1, rect.height()), line);
}

void drawProgress(const QStyleOptionProgressBar &bar, QPainter *painter)
{
    const double part = bar.maximum > bar.minimum ? (static_cast<double>(bar.progress) - bar.minimum) /
                                                        (static_cast<double>(bar.maximum) - bar.minimum)
                                                  : 0;
    QRect done = bar.rect;
    done.setWidth(static_cast<int>(bar.rect.width() * std::clamp(part, 0.0, 1.0)));
    if (done.width() > 0) {
        const bool enabled = has(&bar, QStyle::State_Enabled);
        drawRounded(painter, QStyle::visualRect(bar.direction, bar.rect, done), 4, QColor(),
                    enabled ? accent(bar.palette) : fieldBorder(bar.palette));
    }
}

void drawFocus(QPainter *painter, const QStyleOption *option)
{
    // On a selected row the accent would not be seen.
    const QPalette &palette = option->palette;
    const auto *focus = qstyleoption_cast<const QStyleOptionFocusRect *>(option);
    const bool onSelection =
        focus != nullptr && focus->backgroundColor == palette.color(QPalette::Active, QPalette::Highlight);
    const QColor ring = onSelection ? palette.color(QPalette::HighlightedText) : accent(palette);
    drawRounded(painter, option->rect, 4, ring, Qt::NoBrush, 2);
}

void drawMenuBarItem(const QStyleOptionMenuItem &item, QPainter *painter, const QStyle &style)
{
    painter->fillRect(item.rect, item.palette.color(QPalette::Window));
    if (has(&item, QStyle::State_Selected) && has(&item, QStyle::State_Enabled)) {
        drawRounded(painter, item.rect.adjusted(1, 2, -1, -2), fieldRadius, QColor(),
                    veil(item.palette, has(&item, QStyle::State_Sunken) ? 3 : 2));
    }
    style.drawItemText(painter, item.rect, Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine,
                       item.palette, has(&item, QStyle::State_Enabled), item.text, QPalette::WindowText);
}

std::optional<QStyleOptionViewItem> shortenedItem(const QStyleOption *option)
{
    constexpr qsizetype most = 1000;
    const auto *item = qstyleoption_cast<const QStyleOptionViewItem *>(option);
    if (item == nullptr || item->text.size() <= most) {
        return std::nullopt;
    }
    QStyleOptionViewItem shortened(*item);
    shortened.text = firstCharacters(item->text, most);
    return shortened;
}

} // namespace ktr
