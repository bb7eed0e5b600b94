#pragma once

// What the style draws of its controls, and where their parts are. Colours come from the palette of the
// option.

#include <QStyleOption>

#include <optional>

class QPainter;

namespace ktr {

inline constexpr int fieldRadius = 5;
inline constexpr int cardMargin = 12;
inline constexpr int indicatorSize = 22;
inline constexpr int markGap = 5; ///< between a mark and its text

void drawChevron(QPainter *painter, const QRect &rect, Qt::ArrowType direction, const QColor &colour);
bool has(const QStyleOption *option, QStyle::StateFlag state);
bool isHovered(const QStyleOption *option);
/// The frame and ground of all that takes a value: accent ring while it has the focus.
void drawField(QPainter *painter, const QStyleOption *option, const QColor &fill);
void drawIndicator(QPainter *painter, const QStyleOption *option, bool round);
void drawButton(QPainter *painter, const QStyleOption *option);
/// A group box within another is a caption with what belongs to it, not a card on a card.
bool isNested(const QWidget *box);
QFont titleFont(const QWidget *widget);
QRect groupBoxPart(const QStyleOptionGroupBox &box, QStyle::SubControl part, const QStyle &style,
                   const QWidget *widget);
void drawGroupBox(const QStyleOptionGroupBox &box, QPainter *painter, const QStyle &style,
                  const QWidget *widget);
void drawScrollBar(const QStyleOptionSlider &bar, QPainter *painter, const QStyle &style,
                   const QWidget *widget);
QRect scrollBarPart(const QStyleOptionSlider &bar, QStyle::SubControl part, const QStyle &style,
                    const QWidget *widget);
/// A groove, filled up to a round handle; the handle is filled while it has the focus.
void drawSlider(const QStyleOptionSlider &slider, QPainter *painter, const QStyle &style,
                const QWidget *widget);
void drawTab(const QStyleOptionTab &tab, QPainter *painter);
void drawHeaderSection(const QStyleOptionHeader &header, QPainter *painter);
void drawProgress(const QStyleOptionProgressBar &bar, QPainter *painter);
/// A ring of accent colour around what has the focus.
void drawFocus(QPainter *painter, const QStyleOption *option);
void drawMenuBarItem(const QStyleOptionMenuItem &item, QPainter *painter, const QStyle &style);
/// The item of a view when its text is longer than any view shows: the toolkit would measure all of it.
std::optional<QStyleOptionViewItem> shortenedItem(const QStyleOption *option);

} // namespace ktr
