#include "opmode/window/curves/curves_picture.h"

#include "look/palettes.h"
#include "opmode/window/curves/curves_canvas.h"
#include "opmode/window/curves/curves_legend.h"

#include <QBuffer>
#include <QIcon>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>

#include <numeric>

namespace ktr {

namespace {

/// A title, the plot and the list of the curves, of which nothing is cut: it is as wide as the list's columns
/// need, and long names have several lines.
class CurvesPicture
{
public:
    static constexpr int scale = 2;

    CurvesPicture(CurvesCanvas &canvas, const CurvesLegend &legend, const QString &title)
        : m_canvas(canvas), m_legend(legend), m_title(title), m_bold(canvas.font()), m_plain(canvas.font())
    {
        m_bold.setBold(true);
        for (int row = 0; row < legend.rowCount(); ++row) {
            if (legend.index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked) {
                m_rows += row;
            }
        }
        m_plot = canvas.QWidget::size().expandedTo(leastPlot);
        measureColumns();
        m_titleHeight = heightOf(m_title, m_bold, m_plot.width() - 2 * margin);
        m_headHeight = heightOf(m_legend.title(CurvesLegend::Rise), m_bold, m_plot.width());
        for (const int row : std::as_const(m_rows)) {
            m_heights += heightOf(m_legend.cell(row, CurvesLegend::Name), m_plain, nameWidth());
        }
    }

    QSize size() const
    {
        const int list = std::accumulate(m_heights.begin(), m_heights.end(), m_headHeight);
        return {m_plot.width(), margin / 2 + m_titleHeight + m_plot.height() + list + margin};
    }

    void paint(QPainter &painter) const
    {
        painter.setPen(m_canvas.palette().color(QPalette::WindowText));
        painter.setFont(m_bold);
        int top = margin / 2;
        painter.drawText(QRect(margin, top, m_plot.width() - 2 * margin, m_titleHeight),
                         static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextWordWrap, m_title);
        top += m_titleHeight;
        painter.drawPixmap(QRect(QPoint(0, top), m_plot),
                           m_canvas.toPixmap(m_plot.width(), m_plot.height(), scale));
        top += m_plot.height();
        drawLine(painter, top, m_headHeight, [this](int column) { return m_legend.title(column); });
        top += m_headHeight;
        painter.setFont(m_plain);
        for (qsizetype i = 0; i < m_rows.size(); ++i) {
            const int row = m_rows[i];
            const QIcon sample = m_legend.index(row, 0).data(Qt::DecorationRole).value<QIcon>();
            const QSize size = CurvesLegend::sampleSize;
            sample.paint(&painter, QRect(QPoint(margin, top + (m_heights[i] - size.height()) / 2), size));
            drawLine(painter, top, m_heights[i],
                     [this, row](int column) { return m_legend.cell(row, column); });
            top += m_heights[i];
        }
    }

private:
    static constexpr int margin = 16;
    static constexpr int sampleWidth = 40;
    static constexpr int between = 20; ///< columns
    static constexpr QSize leastPlot{900, 450};

    static int widthOf(const QString &text, const QFont &font)
    {
        return QFontMetrics(font).size(0, text).width();
    }
    static int heightOf(const QString &text, const QFont &font, int width)
    {
        constexpr int room = 8;
        return QFontMetrics(font).boundingRect(QRect(0, 0, width, 0), Qt::TextWordWrap, text).height() + room;
    }
    int nameWidth() const { return m_widths[CurvesLegend::Name] - sampleWidth; }

    /// Names have what the others leave, but lines of a length that can be read.
    void measureColumns()
    {
        constexpr int leastName = 260;
        int name = 0;
        int leastOfName = widthOf(m_legend.title(CurvesLegend::Name), m_bold);
        for (const int row : std::as_const(m_rows)) {
            const QString text = m_legend.cell(row, CurvesLegend::Name);
            name = qMax(name, widthOf(text, m_plain));
            for (const QString &word : text.split(u' ')) {
                leastOfName = qMax(leastOfName, widthOf(word, m_plain));
            }
        }
        int others = 0;
        for (int column = CurvesLegend::Name + 1; column < CurvesLegend::ColumnCount; ++column) {
            int width = widthOf(m_legend.title(column), m_bold);
            for (const int row : std::as_const(m_rows)) {
                width = qMax(width, widthOf(m_legend.cell(row, column), m_plain));
            }
            m_widths[column] = width + between;
            others += m_widths[column];
        }
        const int left = m_plot.width() - 2 * margin - others;
        m_widths[CurvesLegend::Name] =
            qMax(left, qMax(leastOfName, qMin(name, leastName)) + sampleWidth + between);
        m_plot.setWidth(2 * margin + m_widths[CurvesLegend::Name] + others);
    }

    template <class TextOf> void drawLine(QPainter &painter, int top, int height, const TextOf &textOf) const
    {
        int left = margin;
        for (int column = 0; column < CurvesLegend::ColumnCount; ++column) {
            const int width = m_widths[column];
            const bool isName = column == CurvesLegend::Name;
            const QRect cell = isName ? QRect(left + sampleWidth, top, nameWidth(), height)
                                      : QRect(left + between, top, width - between, height);
            const bool isLeft = isName || column == CurvesLegend::Unit;
            const Qt::Alignment side = isLeft ? Qt::AlignLeft : Qt::AlignRight;
            painter.drawText(cell, static_cast<int>((side | Qt::AlignVCenter).toInt()) | Qt::TextWordWrap,
                             textOf(column));
            left += width;
        }
    }

    CurvesCanvas &m_canvas;
    const CurvesLegend &m_legend;
    QString m_title;
    QFont m_bold;
    QFont m_plain;
    QSize m_plot;
    QList<int> m_rows;    ///< those that are drawn
    QList<int> m_heights; ///< one for each
    QList<int> m_widths = QList<int>(CurvesLegend::ColumnCount);
    int m_titleHeight = 0;
    int m_headHeight = 0;
};

} // namespace

QImage curvesPicture(CurvesCanvas &canvas, const CurvesLegend &legend, const QString &title)
{
    const CurvesPicture picture(canvas, legend, title);
    QImage image(picture.size() * CurvesPicture::scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(CurvesPicture::scale);
    image.fill(cardColour(canvas.palette()));
    QPainter painter(&image);
    picture.paint(painter);
    return image;
}

QByteArray curvesPdf(CurvesCanvas &canvas, const CurvesLegend &legend, const QString &title)
{
    const QImage image = curvesPicture(canvas, legend, title);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setTitle(title);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setPageOrientation(QPageLayout::Landscape);
        QPainter painter(&writer);
        const QRect page = painter.viewport();
        const QSize size = image.size().scaled(page.size(), Qt::KeepAspectRatio);
        painter.drawImage(QRect(page.topLeft(), size), image);
    }
    return bytes;
}

} // namespace ktr
