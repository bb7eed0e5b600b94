#include "opmode/window/history/history_picture.h"

#include "look/palettes.h"
#include "opmode/tree/station_tree.h"
#include "opmode/window/history/history_canvas.h"
#include "opmode/window/history/series_style.h"
#include "opmode/window/input_caption.h"

namespace ktr {

QImage historyPicture(HistoryCanvas &canvas, const QString &title, const QFont &font, const QPalette &palette)
{
    constexpr int scale = 2;
    constexpr int margin = 16;
    constexpr int sample = 30;
    constexpr QSize least(800, 450);
    const QFontMetrics metrics(font);
    const int line = metrics.height() + 8;
    const QSize plot = canvas.size().expandedTo(least);

    struct LegendItem
    {
        QPoint at;
        int channel;
    };
    std::vector<LegendItem> legend;
    QPoint at(margin, margin + line + plot.height());
    for (const int channel : canvas.channels()) {
        if (!canvas.isShown(channel)) {
            continue;
        }
        const int width =
            sample + 3 * margin / 2 + metrics.horizontalAdvance(inputCaption(channel, canvas.names()));
        if (at.x() > margin && at.x() + width > plot.width()) {
            at = {margin, at.y() + line};
        }
        legend.push_back({at, channel});
        at.rx() += width;
    }

    QImage image(QSize(plot.width(), at.y() + line + margin) * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(cardColour(palette));
    QPainter painter(&image);
    QFont bold = font;
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(palette.color(QPalette::WindowText));
    painter.drawText(QRect(margin, margin / 2, plot.width() - 2 * margin, line),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, title);
    canvas.pointAway();
    const QPixmap curves = canvas.toPixmap(plot.width(), plot.height(), scale);
    painter.drawPixmap(QRect(QPoint(0, margin + line), plot), curves);
    painter.setFont(font);
    for (const LegendItem &item : legend) {
        const QRect row(item.at, QSize(sample, line));
        drawSeriesSample(painter, row, item.channel, canvas.isSteps(item.channel), palette);
        painter.drawText(QRect(row.right() + margin / 2, row.top(), plot.width(), line),
                         Qt::AlignLeft | Qt::AlignVCenter, inputCaption(item.channel, canvas.names()));
    }
    return image;
}

} // namespace ktr
