#include "look/palettes.h"

#include <algorithm>
#include <cmath>

namespace ktr {

namespace {

struct Colours
{
    QRgb window, card, base, alternate, button, text, faintText, disabledText, hint, accent, accentText, tint,
        highlight, link, toolTip, toolTipText, hairline, fieldBorder, alarm, doubt, well, alarmGround;
};

constexpr Colours light = {.window = 0xfff2f4f6,
                           .card = 0xffffffff,
                           .base = 0xffffffff,
                           .alternate = 0xfff7f9fa,
                           .button = 0xfff7f8fa,
                           .text = 0xff1d262d,
                           .faintText = 0xff56636e,
                           .disabledText = 0xff7d868e,
                           .hint = 0xff6b7780,
                           .accent = 0xff0e7490,
                           .accentText = 0xffffffff,
                           .tint = 0xffd5e8ee,
                           .highlight = 0xff0e7490,
                           .link = 0xff0b6783,
                           .toolTip = 0xff26323a,
                           .toolTipText = 0xfff4f7f9,
                           .hairline = 0xffdde2e6,
                           .fieldBorder = 0xff7f8a94,
                           .alarm = 0xffb3171d,
                           .doubt = 0xff8a5200,
                           .well = 0xff0b7a3b,
                           .alarmGround = 0xffb3171d};

constexpr Colours dark = {.window = 0xff181c20,
                          .card = 0xff21272c,
                          .base = 0xff191e22,
                          .alternate = 0xff1e2429,
                          .button = 0xff2c343a,
                          .text = 0xffe3e8ec,
                          .faintText = 0xffa7b2bb,
                          .disabledText = 0xff808b94,
                          .hint = 0xff8d99a3,
                          .accent = 0xff45b3cf,
                          .accentText = 0xff06222b,
                          .tint = 0xff214552,
                          .highlight = 0xff14697f,
                          .link = 0xff6cc5dc,
                          .toolTip = 0xff38434b,
                          .toolTipText = 0xffeef2f5,
                          .hairline = 0xff333b42,
                          .fieldBorder = 0xff6c7882,
                          .alarm = 0xffff8a84,
                          .doubt = 0xfff0b35a,
                          .well = 0xff5fd08d,
                          .alarmGround = 0xffa3191f};

const Colours &coloursOf(const QPalette &palette)
{
    return isDark(palette) ? dark : light;
}

QPalette paletteOf(const Colours &colours)
{
    const QColor text(colours.text);
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(colours.window));
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, QColor(colours.base));
    palette.setColor(QPalette::AlternateBase, QColor(colours.alternate));
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, QColor(colours.button));
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, QColor(Qt::white));
    palette.setColor(QPalette::ToolTipBase, QColor(colours.toolTip));
    palette.setColor(QPalette::ToolTipText, QColor(colours.toolTipText));
    palette.setColor(QPalette::PlaceholderText, QColor(colours.hint));
    palette.setColor(QPalette::Highlight, QColor(colours.highlight));
    palette.setColor(QPalette::HighlightedText, QColor(Qt::white));
    palette.setColor(QPalette::Link, QColor(colours.link));
    palette.setColor(QPalette::LinkVisited, QColor(colours.faintText));
    // For what Fusion still shades by itself.
    palette.setColor(QPalette::Light, QColor(colours.card));
    palette.setColor(QPalette::Midlight, QColor(colours.alternate));
    palette.setColor(QPalette::Mid, QColor(colours.hairline));
    palette.setColor(QPalette::Dark, QColor(colours.fieldBorder));
    palette.setColor(QPalette::Shadow, QColor(Qt::black));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                                           QPalette::PlaceholderText, QPalette::Link}) {
        palette.setColor(QPalette::Disabled, role, QColor(colours.disabledText));
    }
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(colours.window));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(colours.hairline));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, text);
    return palette;
}

} // namespace

QPalette lightPalette()
{
    return paletteOf(light);
}

QPalette darkPalette()
{
    return paletteOf(dark);
}

bool isDark(const QPalette &palette)
{
    const auto brightness = [&palette](QPalette::ColorRole role) {
        return qGray(palette.color(QPalette::Active, role).rgb());
    };
    return brightness(QPalette::Window) < brightness(QPalette::WindowText);
}

QColor cardColour(const QPalette &palette)
{
    return QColor(coloursOf(palette).card);
}

QColor hairline(const QPalette &palette)
{
    return QColor(coloursOf(palette).hairline);
}

QColor fieldBorder(const QPalette &palette)
{
    return QColor(coloursOf(palette).fieldBorder);
}

QColor accent(const QPalette &palette)
{
    return QColor(coloursOf(palette).accent);
}

QColor accentText(const QPalette &palette)
{
    return QColor(coloursOf(palette).accentText);
}

QColor tint(const QPalette &palette)
{
    return QColor(coloursOf(palette).tint);
}

QColor alarmText(const QPalette &palette)
{
    return QColor(coloursOf(palette).alarm);
}

QColor doubtText(const QPalette &palette)
{
    return QColor(coloursOf(palette).doubt);
}

QColor wellText(const QPalette &palette)
{
    return QColor(coloursOf(palette).well);
}

QColor alarmGround(const QPalette &palette)
{
    return QColor(coloursOf(palette).alarmGround);
}

QColor veil(const QPalette &palette, int strength)
{
    QColor colour(coloursOf(palette).text);
    colour.setAlpha(18 * strength);
    return colour;
}

double contrast(const QColor &one, const QColor &other)
{
    const auto luminance = [](const QColor &colour) {
        const auto linear = [](double part) {
            return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
               0.0722 * linear(colour.blueF());
    };
    const auto [low, high] = std::minmax({luminance(one), luminance(other)});
    constexpr double glare = 0.05;
    return (high + glare) / (low + glare);
}

} // namespace ktr
