#include "look/style.h"

#include "look/icons.h"
#include "look/palettes.h"
#include "look/radio_focus.h"
#include "look/rounded.h"
#include "platform/text_rules.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QGroupBox>
#include <QHeaderView>
#include <QPainter>
#include <QRadioButton>
#include <QStyleFactory>
#include <QStyleOption>

#include <optional>

namespace ktr {

namespace {

constexpr int cardRadius = 8;
constexpr int fieldRadius = 5;
constexpr int fieldHeight = 28;
constexpr int cardMargin = 12;
constexpr int titleTop = 9;
constexpr int arrowWidth = 24;
constexpr int indicatorSize = 22;
constexpr int markGap = 5;   ///< between a mark and its text
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

/// The frame and ground of all that takes a value: accent ring while it has the focus.
void drawField(QPainter *painter, const QStyleOption *option, const QColor &fill)
{
    const bool enabled = has(option, QStyle::State_Enabled);
    const bool focus = enabled && has(option, QStyle::State_HasFocus);
    const QPalette &palette = option->palette;
    const QColor border = focus ? accent(palette) : enabled ? fieldBorder(palette) : hairline(palette);
    drawRounded(painter, option->rect, fieldRadius, border, fill, focus ? 2 : 1);
}

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

/// A group box within another is a caption with what belongs to it, not a card on a card.
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

/// A ring of accent colour around what has the focus.
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

/// The item of a view when its text is longer than any view shows: the toolkit would measure all of it.
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

} // namespace

CalmStyle::CalmStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void CalmStyle::polish(QWidget *widget)
{
    QProxyStyle::polish(widget);
    if (auto *header = qobject_cast<QHeaderView *>(widget)) {
        // Bold captions over the selected cells would only be restless.
        header->setHighlightSections(false);
        if (header->orientation() == Qt::Horizontal) {
            header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        }
    } else if (auto *radio = qobject_cast<QRadioButton *>(widget)) {
        letTabFindTheChosen(radio);
    }
}

QIcon CalmStyle::standardIcon(StandardPixmap which, const QStyleOption *option, const QWidget *widget) const
{
    switch (which) {
    case SP_MessageBoxWarning:
        return icon(IconName::Warning);
    case SP_MessageBoxInformation:
        return icon(IconName::Information);
    case SP_MessageBoxQuestion:
        return icon(IconName::Question);
    case SP_MessageBoxCritical:
        return icon(IconName::Error);
    case SP_LineEditClearButton:
    case SP_TitleBarCloseButton:
        return icon(IconName::Clear);
    default:
        return QProxyStyle::standardIcon(which, option, widget);
    }
}

int CalmStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
{
    switch (metric) {
    case PM_LayoutLeftMargin:
    case PM_LayoutRightMargin:
    case PM_LayoutBottomMargin:
    case PM_LayoutTopMargin: {
        if (qobject_cast<const QGroupBox *>(widget) == nullptr || !isNested(widget)) {
            return metric == PM_LayoutTopMargin && qobject_cast<const QGroupBox *>(widget) != nullptr
                       ? 8
                       : cardMargin;
        }
        return metric == PM_LayoutTopMargin ? 4 : 0;
    }
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing:
        return 8;
    case PM_DefaultFrameWidth:
    case PM_ToolTipLabelFrameWidth:
        return 1;
    case PM_ScrollBarExtent:
        return 12;
    case PM_ScrollBarSliderMin:
        return 36;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return indicatorSize;
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
        return markGap;
    case PM_TabBarTabHSpace:
        return 28;
    case PM_TabBarTabVSpace:
        return 16;
    case PM_TabBarTabShiftVertical:
    case PM_TabBarTabShiftHorizontal:
    case PM_TabBarTabOverlap:
    case PM_TabBarBaseOverlap:
    case PM_ToolBarFrameWidth:
    case PM_MenuBarPanelWidth:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    case PM_ToolBarItemMargin:
        return 4;
    case PM_ToolBarItemSpacing:
        return 2;
    case PM_ToolBarIconSize:
        return 20;
    case PM_MenuBarHMargin:
        return 4;
    case PM_MenuBarVMargin:
        return 2;
    case PM_HeaderMargin:
        return 6;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int CalmStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                         QStyleHintReturn *returnData) const
{
    switch (hint) {
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
    case SH_ScrollBar_Transient:
        return 0;
    case SH_Table_GridLineColor:
        return static_cast<int>(
            hairline(option != nullptr ? option->palette : QApplication::palette()).rgba());
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

QSize CalmStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                                  const QWidget *widget) const
{
    if (const auto item = shortenedItem(option)) {
        return sizeFromContents(type, &*item, contents, widget);
    }
    QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    switch (type) {
    case CT_LineEdit: {
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        const bool framed = frame != nullptr && frame->lineWidth > 0;
        return framed ? QSize(size.width() + 8, std::max(size.height(), fieldHeight)) : size;
    }
    case CT_ComboBox:
        return {size.width() + 8, std::max(size.height(), fieldHeight)};
    case CT_SpinBox:
    case CT_ToolButton:
        return size.expandedTo({fieldHeight, fieldHeight});
    case CT_PushButton:
        return {size.width() + 8, std::max(size.height(), fieldHeight)};
    case CT_CheckBox:
    case CT_RadioButton:
        return size.expandedTo({0, 22});
    case CT_ItemViewItem:
        return size.expandedTo({0, 26});
    case CT_HeaderSection:
        return size.expandedTo({0, fieldHeight});
    case CT_MenuBarItem:
        return size + QSize(4, 4);
    case CT_MenuItem: {
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        const bool separator = item != nullptr && item->menuItemType == QStyleOptionMenuItem::Separator;
        return separator ? size : size.expandedTo({0, fieldHeight});
    }
    case CT_GroupBox: {
        const auto *box = qstyleoption_cast<const QStyleOptionGroupBox *>(option);
        if (box == nullptr) {
            return size;
        }
        const int title = QFontMetrics(titleFont(widget)).size(Qt::TextShowMnemonic, box->text).width();
        return size.expandedTo(
            {title + 2 * cardMargin +
                 (box->subControls.testFlag(SC_GroupBoxCheckBox) ? indicatorSize + markGap : 0),
             0});
    }
    default:
        return size;
    }
}

QRect CalmStyle::subElementRect(SubElement element, const QStyleOption *option, const QWidget *widget) const
{
    if (const auto item = shortenedItem(option)) {
        return subElementRect(element, &*item, widget);
    }
    switch (element) {
    case SE_LineEditContents: {
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        const bool framed = frame != nullptr && frame->lineWidth > 0;
        return framed ? option->rect.adjusted(5, 1, -5, -1) : option->rect;
    }
    case SE_TabWidgetTabContents: {
        const QRect pane = QProxyStyle::subElementRect(SE_TabWidgetTabPane, option, widget);
        return pane.adjusted(0, 1, 0, 0);
    }
    default:
        return QProxyStyle::subElementRect(element, option, widget);
    }
}

QRect CalmStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                                const QWidget *widget) const
{
    switch (control) {
    case CC_GroupBox:
        if (const auto *box = qstyleoption_cast<const QStyleOptionGroupBox *>(option)) {
            return groupBoxPart(*box, part, *this, widget);
        }
        break;
    case CC_ScrollBar:
        if (const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option)) {
            return scrollBarPart(*bar, part, *this, widget);
        }
        break;
    case CC_ComboBox:
        if (part == SC_ComboBoxArrow || part == SC_ComboBoxEditField) {
            const QRect rect = option->rect;
            const QRect inside = part == SC_ComboBoxArrow
                                     ? QRect(rect.right() - arrowWidth, rect.top(), arrowWidth, rect.height())
                                     : rect.adjusted(6, 2, -arrowWidth, -2);
            return visualRect(option->direction, rect, inside);
        }
        break;
    case CC_SpinBox:
        if (part == SC_SpinBoxEditField) {
            return QProxyStyle::subControlRect(control, option, part, widget).adjusted(2, 0, 0, 0);
        }
        break;
    default:
        break;
    }
    return QProxyStyle::subControlRect(control, option, part, widget);
}

void CalmStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const
{
    const QPalette &palette = option->palette;
    switch (element) {
    case PE_PanelLineEdit:
        if (const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option)) {
            if (frame->lineWidth > 0) {
                const bool fixed = has(option, State_ReadOnly) && has(option, State_Enabled);
                drawField(painter, option, fixed ? veil(palette) : palette.color(QPalette::Base));
            }
        }
        return;
    case PE_FrameLineEdit:
        drawField(painter, option, Qt::transparent);
        return;
    case PE_Frame:
        painter->save();
        painter->setPen(hairline(palette));
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        painter->restore();
        return;
    case PE_FrameFocusRect:
        drawFocus(painter, option);
        return;
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
        drawIndicator(painter, option, false);
        return;
    case PE_IndicatorRadioButton:
        drawIndicator(painter, option, true);
        return;
    case PE_PanelButtonCommand:
        drawButton(painter, option);
        return;
    case PE_FrameDefaultButton:
    case PE_FrameStatusBarItem:
    case PE_PanelMenuBar:
        return;
    case PE_PanelButtonTool:
        if (has(option, State_Enabled) &&
            (has(option, State_Sunken) || has(option, State_On) || isHovered(option))) {
            const bool down = has(option, State_Sunken) || has(option, State_On);
            drawRounded(painter, option->rect, fieldRadius, QColor(), veil(palette, down ? 3 : 1));
        }
        return;
    case PE_FrameTabWidget:
        painter->fillRect(QRect(option->rect.topLeft(), QSize(option->rect.width(), 1)), hairline(palette));
        return;
    case PE_FrameTabBarBase:
        painter->fillRect(QRect(option->rect.bottomLeft(), QSize(option->rect.width(), 1)),
                          hairline(palette));
        return;
    case PE_PanelStatusBar:
        painter->fillRect(option->rect, palette.color(QPalette::Window));
        painter->fillRect(QRect(option->rect.topLeft(), QSize(option->rect.width(), 1)), hairline(palette));
        return;
    case PE_IndicatorToolBarSeparator: {
        const QPoint centre = option->rect.center();
        const bool horizontal = has(option, State_Horizontal);
        painter->fillRect(horizontal
                              ? QRect(centre.x(), option->rect.top() + 5, 1, option->rect.height() - 10)
                              : QRect(option->rect.left() + 5, centre.y(), option->rect.width() - 10, 1),
                          hairline(palette));
        return;
    }
    case PE_IndicatorArrowDown:
        drawChevron(painter, option->rect, Qt::DownArrow, palette.color(QPalette::ButtonText));
        return;
    case PE_IndicatorArrowUp:
        drawChevron(painter, option->rect, Qt::UpArrow, palette.color(QPalette::ButtonText));
        return;
    case PE_IndicatorArrowLeft:
        drawChevron(painter, option->rect, Qt::LeftArrow, palette.color(QPalette::ButtonText));
        return;
    case PE_IndicatorArrowRight:
        drawChevron(painter, option->rect, Qt::RightArrow, palette.color(QPalette::ButtonText));
        return;
    case PE_IndicatorHeaderArrow:
        if (const auto *header = qstyleoption_cast<const QStyleOptionHeader *>(option)) {
            const bool up = header->sortIndicator == QStyleOptionHeader::SortUp;
            drawChevron(painter, option->rect, up ? Qt::UpArrow : Qt::DownArrow, accent(palette));
        }
        return;
    case PE_IndicatorBranch:
        if (has(option, State_Children)) {
            const Qt::ArrowType closed =
                option->direction == Qt::RightToLeft ? Qt::LeftArrow : Qt::RightArrow;
            drawChevron(painter, option->rect, has(option, State_Open) ? Qt::DownArrow : closed,
                        palette.color(QPalette::Text));
        }
        return;
    case PE_PanelTipLabel:
        painter->fillRect(option->rect, palette.color(QPalette::ToolTipBase));
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void CalmStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                            const QWidget *widget) const
{
    if (const auto item = shortenedItem(option)) {
        drawControl(element, &*item, painter, widget);
        return;
    }
    const QPalette &palette = option->palette;
    switch (element) {
    case CE_PushButtonBevel:
        if (const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option)) {
            drawButton(painter, option);
            if (button->features.testFlag(QStyleOptionButton::HasMenu)) {
                const QRect place(option->rect.right() - 20, option->rect.top(), 16, option->rect.height());
                drawChevron(painter, visualRect(option->direction, option->rect, place), Qt::DownArrow,
                            palette.color(QPalette::ButtonText));
            }
        }
        return;
    case CE_PushButtonLabel:
        if (const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option)) {
            QStyleOptionButton label(*button);
            if (button->features.testFlag(QStyleOptionButton::DefaultButton)) {
                label.palette.setColor(QPalette::Active, QPalette::ButtonText, accentText(palette));
                label.palette.setColor(QPalette::Inactive, QPalette::ButtonText, accentText(palette));
            }
            label.state.setFlag(State_HasFocus, false); // the bevel has drawn the ring
            QProxyStyle::drawControl(element, &label, painter, widget);
        }
        return;
    case CE_CheckBox:
    case CE_RadioButton:
        if (const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option)) {
            // The ring goes around the mark, where it is seen without a text too.
            QStyleOptionButton plain(*button);
            plain.state.setFlag(State_HasFocus, false);
            const QRect room = subElementRect(
                element == CE_RadioButton ? SE_RadioButtonContents : SE_CheckBoxContents, option, widget);
            plain.text = option->fontMetrics.elidedText(plain.text, Qt::ElideRight, room.width(),
                                                        Qt::TextShowMnemonic);
            QProxyStyle::drawControl(element, &plain, painter, widget);
            if (has(option, State_HasFocus)) {
                const bool round = element == CE_RadioButton;
                const QRect mark =
                    subElementRect(round ? SE_RadioButtonIndicator : SE_CheckBoxIndicator, option, widget);
                drawRounded(painter, mark, round ? indicatorSize / 2.0 : fieldRadius, accent(palette),
                            Qt::NoBrush, 2);
            }
        }
        return;
    case CE_TabBarTabShape:
        if (const auto *tab = qstyleoption_cast<const QStyleOptionTab *>(option)) {
            drawTab(*tab, painter);
        }
        return;
    case CE_TabBarTabLabel:
        if (const auto *tab = qstyleoption_cast<const QStyleOptionTab *>(option)) {
            QStyleOptionTab label(*tab);
            if (has(option, State_Selected) && has(option, State_Enabled)) {
                label.palette.setColor(QPalette::WindowText, accent(palette));
            }
            label.state.setFlag(State_HasFocus, false); // the shape has drawn the ring
            QProxyStyle::drawControl(element, &label, painter, widget);
        }
        return;
    case CE_HeaderSection:
        if (const auto *header = qstyleoption_cast<const QStyleOptionHeader *>(option)) {
            drawHeaderSection(*header, painter);
        }
        return;
    case CE_HeaderEmptyArea:
        painter->fillRect(option->rect, palette.color(QPalette::Button));
        painter->fillRect(QRect(option->rect.bottomLeft(), QSize(option->rect.width(), 1)),
                          hairline(palette));
        return;
    case CE_ToolBar:
        painter->fillRect(option->rect, palette.color(QPalette::Window));
        painter->fillRect(QRect(option->rect.bottomLeft(), QSize(option->rect.width(), 1)),
                          hairline(palette));
        return;
    case CE_MenuBarEmptyArea:
        painter->fillRect(option->rect, palette.color(QPalette::Window));
        return;
    case CE_MenuBarItem:
        if (const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option)) {
            drawMenuBarItem(*item, painter, *this);
        }
        return;
    case CE_Splitter:
        return;
    case CE_DockWidgetTitle:
        if (const auto *dock = qstyleoption_cast<const QStyleOptionDockWidget *>(option)) {
            painter->fillRect(option->rect, palette.color(QPalette::Window));
            const QFont before = painter->font();
            painter->setFont(titleFont(widget));
            drawItemText(
                painter, subElementRect(SE_DockWidgetTitleBarText, option, widget).adjusted(4, 0, 0, 0),
                static_cast<int>(visualAlignment(option->direction, Qt::AlignLeft)) | Qt::AlignVCenter,
                palette, has(option, State_Enabled), dock->title, QPalette::WindowText);
            painter->setFont(before);
        }
        return;
    case CE_MenuItem:
        if (const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option)) {
            // A tint, on which texts and icons keep their colour.
            QStyleOptionMenuItem tinted(*item);
            tinted.palette.setColor(QPalette::Highlight, tint(palette));
            tinted.palette.setColor(QPalette::HighlightedText, palette.color(QPalette::Text));
            QProxyStyle::drawControl(element, &tinted, painter, widget);
        }
        return;
    case CE_ProgressBarLabel:
        if (const auto *bar = qstyleoption_cast<const QStyleOptionProgressBar *>(option)) {
            QStyleOptionProgressBar label(*bar);
            label.palette.setColor(QPalette::HighlightedText, accentText(palette));
            QProxyStyle::drawControl(element, &label, painter, widget);
        }
        return;
    case CE_ProgressBarGroove:
        drawRounded(painter, option->rect, 4, QColor(), veil(palette, 2));
        return;
    case CE_ProgressBarContents:
        if (const auto *bar = qstyleoption_cast<const QStyleOptionProgressBar *>(option)) {
            drawProgress(*bar, painter);
        }
        return;
    default:
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void CalmStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                   QPainter *painter, const QWidget *widget) const
{
    const QPalette &palette = option->palette;
    switch (control) {
    case CC_GroupBox:
        if (const auto *box = qstyleoption_cast<const QStyleOptionGroupBox *>(option)) {
            drawGroupBox(*box, painter, *this, widget);
        }
        return;
    case CC_ScrollBar:
        if (const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option)) {
            drawScrollBar(*bar, painter, *this, widget);
        }
        return;
    case CC_ComboBox:
        if (const auto *box = qstyleoption_cast<const QStyleOptionComboBox *>(option)) {
            if (box->frame) {
                drawField(painter, option, palette.color(QPalette::Base));
            }
            drawChevron(painter, subControlRect(CC_ComboBox, option, SC_ComboBoxArrow, widget), Qt::DownArrow,
                        palette.color(isHovered(option) ? QPalette::Highlight : QPalette::Text));
        }
        return;
    case CC_SpinBox:
        if (const auto *box = qstyleoption_cast<const QStyleOptionSpinBox *>(option)) {
            if (box->frame) {
                drawField(painter, option, palette.color(QPalette::Base));
            }
            if (box->buttonSymbols == QAbstractSpinBox::NoButtons) {
                return;
            }
            const auto arrow = [&](SubControl part, Qt::ArrowType direction,
                                   QAbstractSpinBox::StepEnabledFlag step) {
                const bool possible = has(option, State_Enabled) && box->stepEnabled.testFlag(step);
                drawChevron(painter, subControlRect(CC_SpinBox, option, part, widget), direction,
                            palette.color(possible ? QPalette::Active : QPalette::Disabled, QPalette::Text));
            };
            arrow(SC_SpinBoxUp, Qt::UpArrow, QAbstractSpinBox::StepUpEnabled);
            arrow(SC_SpinBoxDown, Qt::DownArrow, QAbstractSpinBox::StepDownEnabled);
        }
        return;
    default:
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
}

void applyAppearance(QApplication &application, Appearance appearance)
{
    if (qobject_cast<CalmStyle *>(QApplication::style()) == nullptr) {
        application.setStyle(new CalmStyle);
    }
    bool dark = appearance == Appearance::Dark;
    if (appearance == Appearance::System) {
        QApplication::setPalette(QPalette()); // brings back the platform's
        dark = isDark(QApplication::palette());
    }
    QApplication::setPalette(dark ? darkPalette() : lightPalette());
}

} // namespace ktr
