#include "opmode/window/curves/curves_picture.h"

#include "look/palettes.h"
#include "opmode/window/curves/curves_canvas.h"
#include "opmode/window/curves/curves_legend.h"

#include <QBuffer>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>

namespace ktr {

namespace {

class CurvesPicture
{
public:
    static constexpr int scale = 2;

    CurvesPicture(CurvesCanvas &canvas, const CurvesLegend &legend)
        : m_canvas(canvas),
          m_legend(legend),
          m_metrics(canvas.font()),
          m_line(m_metrics.height() + 8),
          m_plot(canvas.QWidget::size().expandedTo(leastPlot))
    {
        for (int row = 0; row < legend.rowCount(); ++row) {
            if (legend.index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked) {
                m_rows += row;
            }
        }
    }

    QSize size() const
    {
        const int lines = static_cast<int>(m_rows.size()) + 3; // the title, the list's titles and room
        return {m_plot.width(), m_plot.height() + lines * m_line + margin};
    }

    void paint(QPainter &painter, const QString &title)
    {
        QFont bold = m_canvas.font();
        bold.setBold(true);
        painter.setPen(m_canvas.palette().color(QPalette::WindowText));
        painter.setFont(bold);
        painter.drawText(QRect(margin, margin / 2, m_plot.width() - 2 * margin, m_line),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, title);
        painter.drawPixmap(QRect(QPoint(0, margin / 2 + m_line), m_plot),
                           m_canvas.toPixmap(m_plot.width(), m_plot.height(), scale));
        int top = margin / 2 + m_line + m_plot.height();
        for (int column = 0; column < CurvesLegend::ColumnCount; ++column) {
            drawCell(painter, top, column, m_legend.headerData(column, Qt::Horizontal).toString());
        }
        painter.setFont(m_canvas.font());
        for (const int row : std::as_const(m_rows)) {
            top += m_line;
            const QPixmap sample = m_legend.index(row, 0).data(Qt::DecorationRole).value<QPixmap>();
            const QSize size = sample.deviceIndependentSize().toSize();
            painter.drawPixmap(QRect(QPoint(margin, top + (m_line - size.height()) / 2), size), sample);
            for (int column = 0; column < CurvesLegend::ColumnCount; ++column) {
                drawCell(painter, top, column, m_legend.cell(row, column));
            }
        }
    }

private:
    static constexpr int margin = 16;
    static constexpr QSize leastPlot{900, 450};

    /// The first column has what the others leave.
    void drawCell(QPainter &painter, int top, int column, const QString &text) const
    {
        constexpr int sampleWidth = 40;
        const int width = m_metrics.horizontalAdvance(QStringLiteral("00.00.0000 00:00:00 "));
        const int others = (CurvesLegend::ColumnCount - 1) * width;
        const int first = qMax(width, m_plot.width() - 2 * margin - others);
        QRect cell(margin, top, first, m_line);
        if (column == 0) {
            cell.setLeft(margin + sampleWidth);
        } else {
            cell = QRect(margin + first + (column - 1) * width, top, width - margin / 2, m_line);
        }
        const bool isLeft = column == CurvesLegend::Name || column == CurvesLegend::Unit;
        const Qt::Alignment side = isLeft ? Qt::AlignLeft : Qt::AlignRight;
        painter.drawText(cell, static_cast<int>((side | Qt::AlignVCenter).toInt()),
                         m_metrics.elidedText(text, Qt::ElideRight, cell.width()));
    }

    CurvesCanvas &m_canvas;
    const CurvesLegend &m_legend;
    QFontMetrics m_metrics;
    int m_line;
    QSize m_plot;
    QList<int> m_rows; ///< those that are drawn
};

} // namespace

QImage curvesPicture(CurvesCanvas &canvas, const CurvesLegend &legend, const QString &title)
{
    CurvesPicture picture(canvas, legend);
    QImage image(picture.size() * CurvesPicture::scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(CurvesPicture::scale);
    image.fill(cardColour(canvas.palette()));
    QPainter painter(&image);
    picture.paint(painter, title);
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
