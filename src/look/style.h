#pragma once

#include "look/appearance.h"

#include <QProxyStyle>

class QApplication;

namespace ktr {

/// The program's look over the toolkit's Fusion: group boxes as cards, flat tabs, headers and bars, rounded
/// fields, one accent colour, a focus ring that is seen and that Tab brings to a group's chosen radio button.
/// Colours come from the palette alone, so light and dark are two palettes (see applyAppearance); there is no
/// style sheet.
class ProgramStyle : public QProxyStyle
{
    Q_OBJECT

public:
    ProgramStyle();

    using QProxyStyle::polish;
    void polish(QWidget *widget) override;
    [[nodiscard]] QIcon standardIcon(StandardPixmap which, const QStyleOption *option,
                                     const QWidget *widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                                         const QWidget *widget) const override;
    [[nodiscard]] QRect subElementRect(SubElement element, const QStyleOption *option,
                                       const QWidget *widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                         const QWidget *widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override;
};

/// Gives the application the style, once, and the palette of the appearance. System takes dark where the
/// platform's own palette is dark. Can be called again at any time; open windows follow.
void applyAppearance(QApplication &application, Appearance appearance);

} // namespace ktr
