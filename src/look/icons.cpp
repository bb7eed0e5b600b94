#include "look/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>

namespace ktr {

namespace {

// Drawings stand on a grid of 24 by 24.
constexpr double grid = 24;

/// A path written as a chain: from(…).to(…).to(…).
class Line
{
public:
    static Line from(double x, double y) { return Line().at(x, y); }

    Line &&at(double x, double y) &&
    {
        m_path.moveTo(x, y);
        return std::move(*this);
    }
    Line &&to(double x, double y) &&
    {
        m_path.lineTo(x, y);
        return std::move(*this);
    }
    Line &&bend(double cornerX, double cornerY, double x, double y) &&
    {
        m_path.quadTo(cornerX, cornerY, x, y);
        return std::move(*this);
    }
    /// Degrees count from three o'clock against the clock.
    Line &&arc(double centreX, double centreY, double radius, double start, double sweep) &&
    {
        const QRectF box(centreX - radius, centreY - radius, 2 * radius, 2 * radius);
        m_path.arcMoveTo(box, start);
        m_path.arcTo(box, start, sweep);
        return std::move(*this);
    }
    Line &&circle(double x, double y, double radius) &&
    {
        m_path.addEllipse(QPointF(x, y), radius, radius);
        return std::move(*this);
    }
    Line &&box(double x, double y, double width, double height, double radius) &&
    {
        m_path.addRoundedRect(x, y, width, height, radius, radius);
        return std::move(*this);
    }
    Line &&close() &&
    {
        m_path.closeSubpath();
        return std::move(*this);
    }
    operator QPainterPath() && { return std::move(m_path); } // NOLINT: it is one

private:
    QPainterPath m_path;
};

QPainterPath floppy(double size)
{
    return Line::from(4, 5.5)
        .bend(4, 4, 5.5, 4)
        .to(size - 4, 4)
        .to(size, 8)
        .to(size, size - 1.5)
        .bend(size, size, size - 1.5, size)
        .to(5.5, size)
        .bend(4, size, 4, size - 1.5)
        .close();
}

QPainterPath plug()
{
    return Line::from(8.5, 2.5)
        .to(8.5, 8)
        .at(15.5, 2.5)
        .to(15.5, 8)
        .at(5, 8)
        .to(19, 8)
        .at(6.5, 8)
        .to(6.5, 11.5)
        .bend(6.5, 17, 12, 17)
        .bend(17.5, 17, 17.5, 11.5)
        .to(17.5, 8)
        .at(12, 17)
        .to(12, 21.5);
}

QPainterPath page()
{
    return Line::from(14, 3)
        .to(5.5, 3)
        .to(5.5, 21)
        .to(18.5, 21)
        .to(18.5, 7.5)
        .close()
        .at(14, 3)
        .to(14, 7.5)
        .to(18.5, 7.5);
}

QPainterPath lineOf(IconName name)
{
    switch (name) {
    case IconName::New:
        return page();
    case IconName::Open:
        return Line::from(3, 18.5)
            .to(3, 5)
            .to(9, 5)
            .to(11.5, 7.5)
            .to(18.5, 7.5)
            .to(18.5, 11)
            .at(3, 19)
            .to(6.5, 11)
            .to(21.5, 11)
            .to(18.2, 19)
            .close();
    case IconName::Save: {
        QPainterPath path = floppy(20);
        path.addPath(Line::from(8, 4).to(8, 8.5).to(14.5, 8.5).to(14.5, 4));
        path.addPath(Line::from(7.5, 20).to(7.5, 13).to(16.5, 13).to(16.5, 20));
        return path;
    }
    case IconName::SaveAs:
        return Line::from(11, 20)
            .to(4, 20)
            .to(4, 4)
            .to(16, 4)
            .to(20, 8)
            .to(20, 10)
            .at(8, 4)
            .to(8, 8.5)
            .to(14.5, 8.5)
            .to(14.5, 4)
            .at(7.5, 20)
            .to(7.5, 13)
            .to(12, 13)
            .at(14, 21.5)
            .to(14.6, 18.6)
            .to(20, 13.2)
            .to(22.3, 15.5)
            .to(16.9, 20.9)
            .close();
    case IconName::Print:
        return Line::from(7, 8)
            .to(7, 3)
            .to(17, 3)
            .to(17, 8)
            .at(7, 17)
            .to(3.5, 17)
            .to(3.5, 8)
            .to(20.5, 8)
            .to(20.5, 17)
            .to(17, 17)
            .at(7, 13.5)
            .to(17, 13.5)
            .to(17, 21)
            .to(7, 21)
            .close();
    case IconName::PrintPreview:
        return Line::from(9, 21)
            .to(4.5, 21)
            .to(4.5, 3)
            .to(13, 3)
            .to(17.5, 7.5)
            .to(17.5, 9)
            .at(13, 3)
            .to(13, 7.5)
            .to(17.5, 7.5)
            .circle(15, 15.5, 3.8)
            .at(17.8, 18.3)
            .to(21, 21.5);
    case IconName::Undo:
        return Line::from(8, 4.5)
            .to(3.5, 9)
            .to(8, 13.5)
            .at(3.5, 9)
            .to(14.5, 9)
            .bend(20.5, 9, 20.5, 14.5)
            .bend(20.5, 20, 14.5, 20)
            .to(9, 20);
    case IconName::Redo:
        return Line::from(16, 4.5)
            .to(20.5, 9)
            .to(16, 13.5)
            .at(20.5, 9)
            .to(9.5, 9)
            .bend(3.5, 9, 3.5, 14.5)
            .bend(3.5, 20, 9.5, 20)
            .to(15, 20);
    case IconName::Transmit:
        return Line::from(12, 15.5)
            .to(12, 3.5)
            .at(7, 8.5)
            .to(12, 3.5)
            .to(17, 8.5)
            .at(3.5, 14.5)
            .to(3.5, 20.5)
            .to(20.5, 20.5)
            .to(20.5, 14.5);
    case IconName::Connection:
        return plug();
    case IconName::Offline: {
        QPainterPath path = plug();
        path.addPath(Line::from(3, 3).to(21, 21));
        return path;
    }
    case IconName::Settings:
        return Line::from(3, 6)
            .to(13, 6)
            .at(18, 6)
            .to(21, 6)
            .at(3, 12)
            .to(6, 12)
            .at(11, 12)
            .to(21, 12)
            .at(3, 18)
            .to(11, 18)
            .at(16, 18)
            .to(21, 18)
            .circle(15.5, 6, 2.5)
            .circle(8.5, 12, 2.5)
            .circle(13.5, 18, 2.5);
    case IconName::About:
        return Line::from(12, 11).to(12, 16.5).circle(12, 12, 9).at(12, 7.5).to(12, 7.51);
    case IconName::OperationalMode:
        return Line::from(9, 21)
            .to(15, 21)
            .at(12, 17)
            .to(12, 21)
            .box(2.5, 3.5, 19, 13.5, 1.5)
            .at(5.5, 11)
            .to(8.5, 11)
            .to(10.5, 7)
            .to(13.5, 13.5)
            .to(15.5, 10)
            .to(18.5, 10);
    case IconName::Add:
        return Line::from(12, 4.5).to(12, 19.5).at(4.5, 12).to(19.5, 12);
    case IconName::Delete:
        return Line::from(4, 6.5)
            .to(20, 6.5)
            .at(9, 6.5)
            .to(9, 3.5)
            .to(15, 3.5)
            .to(15, 6.5)
            .at(6, 6.5)
            .to(7, 20.5)
            .to(17, 20.5)
            .to(18, 6.5)
            .at(10, 10.5)
            .to(10, 16.5)
            .at(14, 10.5)
            .to(14, 16.5);
    case IconName::Search:
        return Line::from(15, 15).to(20.5, 20.5).circle(10.3, 10.3, 6.5);
    case IconName::Clear:
        return Line::from(6, 6).to(18, 18).at(18, 6).to(6, 18);
    case IconName::Recent:
        return Line::from(12, 6.8).to(12, 12).to(15.8, 14).circle(12, 12, 9);
    case IconName::Calendar:
        return Line::from(3.5, 9.5).to(20.5, 9.5).at(8, 2.5).to(8, 6.5).at(16, 2.5).to(16, 6.5).box(
            3.5, 4.5, 17, 16, 2);
    case IconName::Application:
    case IconName::Warning:
    case IconName::Information:
    case IconName::Question:
    case IconName::Error:
        break;
    }
    return {};
}

// Those with colours of their own

void drawModule(QPainter &painter)
{
    QLinearGradient sky(0, 0, 0, grid);
    sky.setColorAt(0, QColor(0x1b, 0x8a, 0x9e));
    sky.setColorAt(1, QColor(0x0d, 0x55, 0x6e));
    painter.setPen(Qt::NoPen);
    painter.setBrush(sky);
    painter.drawRoundedRect(QRectF(0.75, 0.75, 22.5, 22.5), 5, 5);

    // The module with its terminals and a lamp, and above it the arcs of its radio.
    const QColor white(0xf7, 0xfb, 0xfc);
    painter.setBrush(white);
    painter.drawRoundedRect(QRectF(4, 12.5, 13.5, 6), 1.3, 1.3);
    for (const double x : {5.6, 9.05, 12.5}) {
        painter.drawRect(QRectF(x, 18.5, 1.7, 1.9));
    }
    painter.setBrush(QColor(0xf2, 0xa6, 0x2c));
    painter.drawEllipse(QPointF(7, 15.5), 1.25, 1.25);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(white, 1.7, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(Line::from(14.5, 12.5).to(14.5, 9.5));
    painter.drawPath(Line::from(14.5, 9.5).arc(14.5, 9.3, 2.9, 25, 130));
    painter.drawPath(Line::from(14.5, 9.5).arc(14.5, 9.3, 5.7, 25, 130));
}

void drawMessage(QPainter &painter, IconName name)
{
    const bool triangle = name == IconName::Warning;
    const QColor colour = triangle                  ? QColor(0xf0, 0xa0, 0x20)
                          : name == IconName::Error ? QColor(0xc9, 0x3c, 0x37)
                                                    : QColor(0x1c, 0x7c, 0x92);
    const QColor sign = triangle ? QColor(0x2b, 0x1d, 0x00) : QColor(Qt::white);
    painter.setPen(QPen(colour, 2.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(colour);
    if (triangle) {
        painter.drawPath(Line::from(12, 3.2).to(21.8, 20).to(2.2, 20).close());
    } else {
        painter.drawEllipse(QPointF(12, 12), 9.5, 9.5);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(sign, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    switch (name) {
    case IconName::Warning:
        painter.drawPath(Line::from(12, 8.8).to(12, 13.6).at(12, 17.3).to(12, 17.31));
        break;
    case IconName::Question:
        painter.drawPath(
            Line::from(9, 9.3).arc(12, 9.3, 3, 180, -215).bend(12, 12.2, 12, 14).at(12, 17.4).to(12, 17.41));
        break;
    case IconName::Error:
        painter.drawPath(Line::from(8.5, 8.5).to(15.5, 15.5).at(15.5, 8.5).to(8.5, 15.5));
        break;
    default:
        painter.drawPath(Line::from(12, 11.2).to(12, 17).at(12, 7).to(12, 7.01));
        break;
    }
}

QColor lineColour(QIcon::Mode mode)
{
    const QPalette palette = QGuiApplication::palette();
    switch (mode) {
    case QIcon::Disabled:
        return palette.color(QPalette::Disabled, QPalette::WindowText);
    case QIcon::Selected:
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    case QIcon::Normal:
    case QIcon::Active:
        break;
    }
    return palette.color(QPalette::Active, QPalette::WindowText);
}

/// Draws on a field of 24 by 24, in the middle of whatever place there is; `side` is that field's size on the
/// screen.
class DrawnIcon : public QIconEngine
{
public:
    using Draw = std::function<void(QPainter &painter, double side, QIcon::Mode mode)>;

    explicit DrawnIcon(Draw draw) : m_draw(std::move(draw)) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const double side = std::min(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.x() + (rect.width() - side) / 2, rect.y() + (rect.height() - side) / 2);
        painter->scale(side / grid, side / grid);
        m_draw(*painter, side, mode);
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        // What window managers and task bars ask for; a menu or button takes any size.
        return {{16, 16}, {24, 24}, {32, 32}, {48, 48}, {64, 64}, {128, 128}, {256, 256}};
    }

    QIconEngine *clone() const override { return new DrawnIcon(*this); }

private:
    Draw m_draw;
};

void fade(QPainter &painter, QIcon::Mode mode)
{
    painter.setOpacity(mode == QIcon::Disabled ? 0.4 : 1.0);
}

void draw(IconName name, QPainter &painter, double side, QIcon::Mode mode)
{
    if (const QPainterPath path = lineOf(name); !path.isEmpty()) {
        // Thinner than a little over a pixel, lines turn grey.
        const double width = std::max(1.7, 1.25 * grid / side);
        painter.setPen(QPen(lineColour(mode), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(path);
    } else {
        fade(painter, mode);
        name == IconName::Application ? drawModule(painter) : drawMessage(painter, name);
    }
}

} // namespace

QIcon icon(IconName name)
{
    return QIcon(new DrawnIcon(
        [name](QPainter &painter, double side, QIcon::Mode mode) { draw(name, painter, side, mode); }));
}

QIcon drawnIcon(std::function<void(QPainter &)> draw)
{
    return QIcon(new DrawnIcon([draw = std::move(draw)](QPainter &painter, double, QIcon::Mode mode) {
        fade(painter, mode);
        draw(painter);
    }));
}

} // namespace ktr
