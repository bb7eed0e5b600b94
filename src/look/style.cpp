#include "look/style.h"

#include "look/icons.h"
#include "look/palettes.h"
#include "look/radio_focus.h"
#include "look/rounded.h"
#include "look/style_parts.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QGroupBox>
#include <QHeaderView>
#include <QPainter>
#include <QRadioButton>
#include <QStyleFactory>
#include <QStyleOption>
#include <QToolButton>

namespace ktr {

namespace {

constexpr int fieldHeight = 28;
constexpr int arrowWidth = 24;
constexpr int menuArrowRoom = 14;

/// A button that is nothing but the way to its menu.
bool opensMenu(const QWidget *widget)
{
    const auto *button = qobject_cast<const QToolButton *>(widget);
    return button != nullptr && button->menu() != nullptr && button->popupMode() == QToolButton::InstantPopup;
}

} // namespace

ProgramStyle::ProgramStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void ProgramStyle::polish(QWidget *widget)
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

QIcon ProgramStyle::standardIcon(StandardPixmap which, const QStyleOption *option,
                                 const QWidget *widget) const
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

int ProgramStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
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

int ProgramStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
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

QSize ProgramStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
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
        return size.expandedTo({fieldHeight, fieldHeight});
    case CT_ToolButton:
        return (size + QSize(opensMenu(widget) ? menuArrowRoom : 0, 0))
            .expandedTo({fieldHeight, fieldHeight});
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
        const bool isHeading =
            separator && !item->text.isEmpty(); // the toolkit cuts what is longer than items
        return isHeading
                   ? size.expandedTo({option->fontMetrics.horizontalAdvance(item->text) + fieldHeight, 0})
               : separator ? size
                           : size.expandedTo({0, fieldHeight});
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

QRect ProgramStyle::subElementRect(SubElement element, const QStyleOption *option,
                                   const QWidget *widget) const
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

QRect ProgramStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
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

void ProgramStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
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

void ProgramStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
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
    case CE_ToolButtonLabel:
        if (const auto *button = qstyleoption_cast<const QStyleOptionToolButton *>(option);
            button != nullptr && opensMenu(widget)) {
            QStyleOptionToolButton label(*button);
            label.rect.adjust(0, 0, -menuArrowRoom, 0);
            QProxyStyle::drawControl(element, &label, painter, widget);
            return;
        }
        QProxyStyle::drawControl(element, option, painter, widget);
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
    case CE_HeaderLabel:
        if (const auto *header = qstyleoption_cast<const QStyleOptionHeader *>(option)) {
            // The margin is for the sides: rows are drawn closer than it likes, and would lose a text's lower
            // end.
            QStyleOptionHeader label = *header;
            const int margin = pixelMetric(PM_HeaderMargin, option, widget);
            label.rect.adjust(0, -margin, 0, margin - 1);
            QProxyStyle::drawControl(element, &label, painter, widget);
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

void ProgramStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                      QPainter *painter, const QWidget *widget) const
{
    const QPalette &palette = option->palette;
    switch (control) {
    case CC_GroupBox:
        if (const auto *box = qstyleoption_cast<const QStyleOptionGroupBox *>(option)) {
            drawGroupBox(*box, painter, *this, widget);
        }
        return;
    case CC_ToolButton:
        if (const auto *button = qstyleoption_cast<const QStyleOptionToolButton *>(option);
            button != nullptr && opensMenu(widget)) {
            QStyleOptionToolButton plain(*button);
            plain.features.setFlag(QStyleOptionToolButton::HasMenu,
                                   false); // its arrow stands in a lower corner
            QProxyStyle::drawComplexControl(control, &plain, painter, widget);
            const QRect place(option->rect.right() - menuArrowRoom - 2, option->rect.top(), menuArrowRoom,
                              option->rect.height());
            drawChevron(painter, visualRect(option->direction, option->rect, place), Qt::DownArrow,
                        palette.color(has(option, State_Enabled) ? QPalette::Active : QPalette::Disabled,
                                      QPalette::ButtonText));
            return;
        }
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    case CC_ScrollBar:
        if (const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option)) {
            drawScrollBar(*bar, painter, *this, widget);
        }
        return;
    case CC_Slider:
        if (const auto *slider = qstyleoption_cast<const QStyleOptionSlider *>(option)) {
            drawSlider(*slider, painter, *this, widget);
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
    if (qobject_cast<ProgramStyle *>(QApplication::style()) == nullptr) {
        application.setStyle(new ProgramStyle);
    }
    bool dark = appearance == Appearance::Dark;
    if (appearance == Appearance::System) {
        QApplication::setPalette(QPalette()); // brings back the platform's
        dark = isDark(QApplication::palette());
    }
    QApplication::setPalette(dark ? darkPalette() : lightPalette());
}

} // namespace ktr
