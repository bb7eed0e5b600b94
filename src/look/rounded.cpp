#include "look/rounded.h"

#include <QHash>
#include <QImage>
#include <QPaintEngine>
#include <QPainter>

#include <array>
#include <cmath>
#include <span>

namespace ktr {

namespace {

/// What a rounded rectangle looks like whatever its size.
struct Look
{
    double radius;
    double width;
    QRgb border; ///< 0 for none
    QRgb fill;   ///< 0 for none

    bool operator==(const Look &) const = default;
};

void drawSmoothly(QPainter &painter, const QRectF &rect, const Look &look)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(look.border != 0 ? QPen(QColor::fromRgba(look.border), look.width) : QPen(Qt::NoPen));
    painter.setBrush(look.fill != 0 ? QBrush(QColor::fromRgba(look.fill)) : QBrush(Qt::NoBrush));
    const double inset = look.width / 2;
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), look.radius, look.radius);
    painter.restore();
}

/// A rounded rectangle as a picture, which larger ones are put together of.
struct Tile
{
    Look look;
    QSize size;
    int ratio; ///< of the device's pixels

    bool operator==(const Tile &) const = default;
};

size_t qHash(const Tile &tile, size_t seed)
{
    return qHashMulti(seed, tile.look.radius, tile.look.width, tile.look.border, tile.look.fill,
                      tile.size.width(), tile.size.height(), tile.ratio);
}

const QImage &pictureOf(const Tile &tile)
{
    static QHash<Tile, QImage> pictures;
    constexpr qsizetype most = 500; // far more than one look of the program needs
    if (pictures.size() > most) {
        pictures.clear();
    }
    QImage &picture = pictures[tile];
    if (picture.isNull()) {
        picture = QImage(tile.size * tile.ratio, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.scale(tile.ratio, tile.ratio);
        drawSmoothly(painter, QRectF(QPointF(), QSizeF(tile.size)), tile.look);
    }
    return picture;
}

/// A stretch of one direction: where it lies in the picture, and where it goes.
struct Stretch
{
    int from;
    int fromLength;
    int to;
    int toLength;

    bool isPulled() const { return toLength != fromLength; }
};

/// The two ends as they are, and what is straight between them pulled; or all of it as it is.
struct Stretches
{
    std::array<Stretch, 3> all;
    std::size_t count;

    Stretches(int corner, int tile, int start, int length) : all{Stretch{0, tile, start, length}}, count(1)
    {
        if (length > tile) {
            all = {Stretch{0, corner, start, corner}, Stretch{corner, 1, start + corner, length - 2 * corner},
                   Stretch{corner + 1, corner, start + length - corner, corner}};
            count = all.size();
        }
    }
    std::span<const Stretch> each() const { return {all.data(), count}; }
};

/// What is pulled has one colour along that direction: bands, which are filled much faster than a picture is
/// scaled. Of what is pulled both ways there is one.
void fillPulled(QPainter &painter, const QRect &place, const QImage &picture, const QRect &source,
                bool isPulledAcross)
{
    const int depth = isPulledAcross ? source.height() : source.width();
    const auto pixelAt = [&](int at) {
        return isPulledAcross ? picture.pixel(source.left(), source.top() + at)
                              : picture.pixel(source.left() + at, source.top());
    };
    const double step = double(isPulledAcross ? place.height() : place.width()) / depth;
    for (int first = 0; first < depth;) {
        const QRgb colour = pixelAt(first);
        int end = first + 1;
        while (end < depth && pixelAt(end) == colour) {
            ++end;
        }
        const double from = first * step;
        const double length = (end - first) * step;
        if (qAlpha(colour) != 0) {
            painter.fillRect(isPulledAcross
                                 ? QRectF(place.left(), place.top() + from, place.width(), length)
                                 : QRectF(place.left() + from, place.top(), length, place.height()),
                             QColor::fromRgba(qUnpremultiply(colour)));
        }
        first = end;
    }
}

void putTogether(QPainter &painter, const QRect &rect, const Look &look)
{
    const int corner = static_cast<int>(std::ceil(look.radius + look.width)); // beyond it all is straight
    const int longest = 2 * corner + 1;
    const Tile tile{look, rect.size().boundedTo(QSize(longest, longest)),
                    static_cast<int>(painter.device()->devicePixelRatio())};
    const QImage &picture = pictureOf(tile);
    const Stretches columns(corner, tile.size.width(), rect.left(), rect.width());
    const Stretches rows(corner, tile.size.height(), rect.top(), rect.height());
    for (const Stretch &row : rows.each()) {
        for (const Stretch &column : columns.each()) {
            const QRect place(column.to, row.to, column.toLength, row.toLength);
            const QRect source(column.from * tile.ratio, row.from * tile.ratio,
                               column.fromLength * tile.ratio, row.fromLength * tile.ratio);
            if (column.isPulled() || row.isPulled()) {
                fillPulled(painter, place, picture, source, column.isPulled());
            } else {
                painter.drawImage(place, picture, source);
            }
        }
    }
}

/// Whether what is painted on takes pictures pixel by pixel.
bool takesPictures(const QPainter &painter)
{
    const auto isWhole = [](double number) { return number == std::floor(number); };
    const QTransform &transform = painter.worldTransform();
    return painter.paintEngine()->type() == QPaintEngine::Raster &&
           isWhole(painter.device()->devicePixelRatio()) && transform.type() <= QTransform::TxTranslate &&
           isWhole(transform.dx()) && isWhole(transform.dy());
}

} // namespace

void drawRounded(QPainter *painter, const QRect &rect, double radius, const QColor &border,
                 const QBrush &fill, double width)
{
    const Look look{radius, width, border.isValid() ? border.rgba() : 0,
                    fill.style() == Qt::SolidPattern ? fill.color().rgba() : 0};
    if (rect.isEmpty()) {
        return;
    }
    if (takesPictures(*painter)) {
        putTogether(*painter, rect, look); // smooth curves would be half the time that a page takes
    } else {
        drawSmoothly(*painter, rect, look);
    }
}

} // namespace ktr
