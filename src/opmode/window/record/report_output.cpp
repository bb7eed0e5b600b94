#include "opmode/window/record/report_output.h"

#include "platform/csv.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QCoreApplication>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>

#include <algorithm>

namespace ktr {

namespace {

constexpr int mostPrinted = 2000;

/// Widths of the columns, by the longest text of each; very long ones are wrapped.
QList<QTextLength> widthsOf(const Report::Table &table, qsizetype rows)
{
    constexpr qsizetype least = 6;
    constexpr qsizetype most = 28;
    QList<qsizetype> lengths;
    qsizetype all = 0;
    for (qsizetype column = 0; column < table.titles.size(); ++column) {
        qsizetype length = std::max(least, table.titles.at(column).size() + 2); // bold
        for (const QStringList &row : table.rows.first(rows)) {
            length = std::max(length, std::min(most, row.at(column).size()));
        }
        lengths += length + 1;
        all += lengths.last();
    }
    QList<QTextLength> widths;
    for (const qsizetype length : lengths) {
        widths += QTextLength(QTextLength::PercentageLength,
                              100.0 * static_cast<double>(length) / static_cast<double>(all));
    }
    return widths;
}

} // namespace

void showReport(const Report &report, QTextDocument &document, int mostRows, const QLocale &locale)
{
    document.clear();
    document.setUndoRedoEnabled(false);
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    QTextCharFormat plain;
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    QTextCharFormat large = bold;
    large.setProperty(QTextFormat::FontSizeAdjustment, 2);
    QTextCharFormat heading = bold;
    heading.setProperty(QTextFormat::FontSizeAdjustment, 1);
    cursor.insertText(report.title, large);
    for (const QString &line : report.lines) {
        cursor.insertBlock();
        cursor.insertText(line, plain);
    }
    QTextTableFormat form;
    form.setCellPadding(3);
    form.setCellSpacing(0);
    form.setBorder(1);
    form.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    form.setBorderBrush(QColor(128, 128, 128));
    form.setBorderCollapse(true);
    form.setHeaderRowCount(1);
    form.setWidth(QTextLength(QTextLength::PercentageLength, 100));
    for (const Report::Table &table : report.tables) {
        cursor.insertBlock();
        cursor.insertBlock();
        cursor.insertText(table.heading + QStringLiteral(" (%1)").arg(locale.toString(table.rows.size())),
                          heading);
        if (table.rows.isEmpty()) {
            continue;
        }
        const int rows = static_cast<int>(std::min(table.rows.size(), qsizetype{mostRows}));
        const int columns = static_cast<int>(table.titles.size());
        form.setColumnWidthConstraints(widthsOf(table, rows));
        QTextTable *cells = cursor.insertTable(rows + 1, columns, form);
        for (int column = 0; column < columns; ++column) {
            cells->cellAt(0, column).firstCursorPosition().insertText(table.titles.at(column), bold);
            for (int row = 0; row < rows; ++row) {
                cells->cellAt(row + 1, column)
                    .firstCursorPosition()
                    .insertText(table.rows.at(row).at(column), plain);
            }
        }
        cursor.movePosition(QTextCursor::End);
        if (rows < table.rows.size()) {
            cursor.insertText(QCoreApplication::translate("Report", "%1 more are in the CSV table")
                                  .arg(locale.toString(table.rows.size() - rows)),
                              plain);
        }
    }
    cursor.endEditBlock();
}

QByteArray reportCsv(const Report &report)
{
    QByteArray bytes = csvMark + csvLine({report.title});
    for (const QString &line : report.lines) {
        bytes += csvLine({line});
    }
    for (const Report::Table &table : report.tables) {
        bytes += "\r\n" + csvLine({table.heading}) + csvLine(table.titles);
        for (const QStringList &row : table.rows) {
            bytes += csvLine(row);
        }
    }
    return bytes;
}

QByteArray reportPdf(const Report &report, const QLocale &locale)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    constexpr int dotsAnInch = 1200; // with fewer of them letters are spaced unevenly
    constexpr qreal margin = 0.6 * dotsAnInch;
    constexpr qreal footer = 0.3 * dotsAnInch;
    constexpr qreal letters = 8;
    writer.setResolution(dotsAnInch);
    writer.setTitle(report.title);
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape, QMarginsF()));
    QTextDocument document;
    QFont font = document.defaultFont();
    font.setPointSizeF(letters);
    document.setDefaultFont(font);
    document.documentLayout()->setPaintDevice(&writer);
    document.setDocumentMargin(0);
    const QSizeF sheet(writer.width(), writer.height());
    const QSizeF body(sheet.width() - 2 * margin, sheet.height() - 2 * margin - footer);
    document.setPageSize(body);
    showReport(report, document, mostPrinted, locale);
    QPainter painter(&writer);
    const int pages = document.pageCount();
    for (int page = 0; page < pages; ++page) {
        if (page > 0) {
            writer.newPage();
        }
        painter.save();
        painter.translate(margin, margin - page * body.height());
        QAbstractTextDocumentLayout::PaintContext context;
        context.palette.setColor(QPalette::Text, Qt::black);
        context.clip = QRectF(0, page * body.height(), body.width(), body.height());
        painter.setClipRect(context.clip);
        document.documentLayout()->draw(&painter, context);
        painter.restore();
        painter.setFont(font);
        painter.drawText(QRectF(margin, sheet.height() - margin - footer, body.width(), footer),
                         Qt::AlignRight | Qt::AlignBottom,
                         QCoreApplication::translate("Report", "Page %1 of %2")
                             .arg(locale.toString(page + 1), locale.toString(pages)));
    }
    painter.end();
    return bytes;
}

} // namespace ktr
