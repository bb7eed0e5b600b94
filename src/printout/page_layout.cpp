#include "printout/page_layout.h"

#include <QFontMetricsF>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace ktr {

namespace {

constexpr double mm = layoutUnitsPerMm;
constexpr double point = layoutUnitsPerPoint;

constexpr double pageWidth = 210 * mm;
constexpr double pageHeight = 297 * mm;
constexpr double margin = 15 * mm;
constexpr double right = pageWidth - margin;
constexpr double contentTop = margin + 9 * mm;
constexpr double contentBottom = pageHeight - margin - 8 * mm;
constexpr double cellPadding = 1.2 * mm;
constexpr double rowPadding = 0.75 * mm;
constexpr double thinRule = 0.4 * point;
constexpr double strongRule = 0.8 * point;

const QColor ink(0x1c, 0x23, 0x2b);
const QColor quietInk(0x5b, 0x66, 0x72);
const QColor accent(0x1f, 0x4e, 0x79);
const QColor ruleColor(0xd3, 0xd9, 0xdf);
const QColor headFill(0xee, 0xf2, 0xf6);

/// A font at a size, and how its lines are set.
struct Face
{
    QFont font;
    QColor color;
    double leading; ///< from line to line

    Face(double points, QFont::Weight weight, const QColor &textColor)
        : color(textColor), leading(points * point * 1.25)
    {
        // The first three share their metrics: a configuration breaks into the same pages on most systems.
        font.setFamilies({QStringLiteral("Liberation Sans"), QStringLiteral("Arial"),
                          QStringLiteral("Helvetica"), QStringLiteral("DejaVu Sans")});
        font.setStyleHint(QFont::SansSerif);
        font.setPixelSize(static_cast<int>(points * point));
        font.setWeight(weight);
        font.setHintingPreference(QFont::PreferNoHinting);
        // Too little to be seen, but it keeps ligatures away: who searches a PDF for "Configuration" is not
        // to miss the one with the joined "fi".
        font.setLetterSpacing(QFont::AbsoluteSpacing, 0.05);
    }

    /// Where the baseline of a line lies below the line's top.
    double ascent() const
    {
        const QFontMetricsF metrics(font);
        return (leading - metrics.height()) / 2 + metrics.ascent();
    }
};

/// Control characters have no shape; a line feed begins a new line.
QString printable(QString text)
{
    for (QChar &character : text) {
        if (character == u'\n') {
            character = QChar::LineSeparator;
        } else if (character.category() == QChar::Other_Control) {
            character = u' ';
        }
    }
    return text;
}

/// A text in lines no wider than `width`; words too long for a line are broken.
QStringList wrapped(const QString &content, const Face &face, double width)
{
    const QString text = printable(content);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    // In pieces: breaking a word takes time that grows with the square of its length. What may go on in the
    // next piece, the last line, is broken anew with it.
    constexpr qsizetype longestPiece = 4096;
    QStringList lines;
    for (qsizetype start = 0; start < text.size();) {
        QTextLayout layout(text.mid(start, longestPiece), face.font);
        layout.setTextOption(option);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(width);
        }
        layout.endLayout();
        const bool last = start + layout.text().size() == text.size();
        const int count = last ? layout.lineCount() : std::max(1, layout.lineCount() - 1);
        for (int at = 0; at < count; ++at) {
            const QTextLine line = layout.lineAt(at);
            QString shown = layout.text().mid(line.textStart(), line.textLength());
            lines += shown.remove(QChar::LineSeparator).trimmed();
        }
        const QTextLine end = layout.lineAt(count - 1);
        start += end.textStart() + end.textLength();
    }
    return lines;
}

class Typesetter
{
public:
    QList<PrintedPage> set(const QString &title, const QList<PrintSection> &sections, const PageFrame &frame)
    {
        newPage();
        if (!title.isEmpty()) {
            put(elided(title, m_title, right - margin), margin, m_y, m_title);
            m_y += m_title.leading + 1 * mm;
        }
        for (const PrintSection &section : sections) {
            setSection(section);
        }
        for (qsizetype page = 0; page < m_pages.size(); ++page) {
            setFrame(m_pages[page], frame, QStringLiteral("%1 / %2").arg(page + 1).arg(m_pages.size()));
        }
        return m_pages;
    }

private:
    /// The cells of a row, each in lines.
    struct Row
    {
        QList<QStringList> cells;
        qsizetype lines = 1;
    };

    struct Measured
    {
        QList<PrintColumn> columns;
        QList<double> widths;
        Row head;
        QList<Row> rows;
        double headHeight = 0; ///< 0: there is no head
        double rowsHeight = 0;
        bool hasGroups = false;
    };

    static QString elided(const QString &text, const Face &face, double width)
    {
        return QFontMetricsF(face.font).elidedText(printable(text).simplified(), Qt::ElideMiddle, width);
    }

    void newPage()
    {
        m_pages.append(PrintedPage());
        m_y = contentTop;
    }

    void put(const QString &text, double x, double top, const Face &face)
    {
        if (!text.isEmpty()) {
            m_pages.back().texts.append({{x, top + face.ascent()}, text, face.font, face.color});
        }
    }

    void fill(const QRectF &area, const QColor &color) { m_pages.back().fills.append({area, color}); }

    void setFrame(PrintedPage &page, const PageFrame &frame, const QString &number)
    {
        const auto face = m_running;
        const double width = right - margin;
        const auto text = [&](const QString &what, bool atRight, double top) {
            const QString shown = elided(what, face, width * (atRight ? 0.35 : 0.6));
            const double advance = QFontMetricsF(face.font).horizontalAdvance(shown);
            page.texts.append(
                {{atRight ? right - advance : margin, top + face.ascent()}, shown, face.font, face.color});
        };
        const double footer = pageHeight - margin - face.leading;
        text(frame.header, false, margin);
        text(number, true, margin);
        text(frame.footerLeft, false, footer);
        text(frame.footerRight, true, footer);
        page.fills.append({QRectF(margin, margin + face.leading + 1 * mm, width, strongRule), accent});
        page.fills.append({QRectF(margin, footer - 1.2 * mm, width, thinRule), ruleColor});
    }

    const Face &faceOf(const PrintColumn &column) const
    {
        return column.style == PrintColumn::Style::Caption ? m_label : m_body;
    }

    /// The widths of a table's columns: those asked for, but the longest word of each title fits, and the
    /// wide columns give what that takes.
    QList<double> widthsOf(const QList<PrintColumn> &columns) const
    {
        constexpr double wide = 30;
        const QFontMetricsF metrics(m_head.font);
        QList<double> spare; // negative where a word needs more
        double missing = 0;
        double given = 0;
        for (const PrintColumn &column : columns) {
            double longest = 0;
            for (const QString &word : column.title.split(u' ')) {
                longest = std::max(longest, std::ceil(metrics.horizontalAdvance(word)));
            }
            const double left = column.width * mm - 2 * cellPadding - longest;
            spare += left < 0 || column.width >= wide ? left : 0;
            (left < 0 ? missing : given) += std::abs(spare.back());
        }
        const double share = missing <= given && given > 0 ? missing / given : 0;
        QList<double> widths;
        for (qsizetype at = 0; at < columns.size(); ++at) {
            const double change = spare[at] > 0 ? -spare[at] * share : share > 0 ? -spare[at] : 0;
            widths += columns[at].width * mm + change;
        }
        return widths;
    }

    Row rowOf(const Measured &table, const QStringList &texts, const Face *face = nullptr) const
    {
        Row row;
        for (qsizetype at = 0; at < texts.size(); ++at) {
            const Face &cellFace = face != nullptr ? *face : faceOf(table.columns[at]);
            row.cells += wrapped(texts[at], cellFace, table.widths[at] - 2 * cellPadding);
            row.lines = std::max(row.lines, row.cells.back().size());
        }
        return row;
    }

    Measured measured(const PrintTable &table) const
    {
        Measured result{table.columns, widthsOf(table.columns), {}, {}};
        QStringList titles;
        for (const PrintColumn &column : table.columns) {
            titles += column.title;
            result.hasGroups |= !column.group.isEmpty();
        }
        if (!titles.join(QString()).isEmpty()) {
            result.head = rowOf(result, titles, &m_head);
            result.headHeight = heightOf(result.head.lines, m_head) + (result.hasGroups ? groupHeight() : 0);
        }
        for (const QStringList &texts : table.rows) {
            result.rows += rowOf(result, texts);
            result.rowsHeight += heightOf(result.rows.back().lines, m_body);
        }
        return result;
    }

    static double heightOf(qsizetype lines, const Face &face)
    {
        return static_cast<double>(lines) * face.leading + 2 * rowPadding;
    }
    double groupHeight() const { return m_head.leading + rowPadding; }
    double room() const { return contentBottom - m_y; }

    /// Sets `count` lines of each cell, from the line `first` on, at the present height.
    void setCells(const Measured &table, const Row &row, qsizetype first, qsizetype count,
                  const Face *face = nullptr)
    {
        double x = margin;
        for (qsizetype at = 0; at < row.cells.size(); ++at) {
            const PrintColumn &column = table.columns[at];
            const double width = table.widths[at];
            const Face &cellFace = face != nullptr ? *face : faceOf(column);
            double top = m_y + rowPadding;
            for (const QString &line : row.cells[at].mid(first, count)) {
                const double advance = QFontMetricsF(cellFace.font).horizontalAdvance(line);
                const bool atRight = column.style == PrintColumn::Style::Number;
                put(line, atRight ? x + width - cellPadding - advance : x + cellPadding, top, cellFace);
                top += cellFace.leading;
            }
            x += width;
        }
    }

    void setHead(const Measured &table)
    {
        if (table.headHeight == 0) {
            return;
        }
        const double bottom = m_y + table.headHeight;
        fill({margin, m_y, right - margin, table.headHeight}, headFill);
        if (table.hasGroups) {
            setGroups(table);
            m_y += groupHeight();
        }
        setCells(table, table.head, 0, table.head.lines, &m_head);
        m_y = bottom;
        fill({margin, m_y, right - margin, strongRule}, quietInk);
    }

    void setGroups(const Measured &table)
    {
        double x = margin;
        for (qsizetype at = 0; at < table.columns.size();) {
            const QString &group = table.columns[at].group;
            double end = x;
            while (at < table.columns.size() && table.columns[at].group == group) {
                end += table.widths[at++];
            }
            if (!group.isEmpty()) {
                const double inner = end - x - 2 * cellPadding;
                put(elided(group, m_head, inner), x + cellPadding, m_y + rowPadding, m_head);
                fill({x + cellPadding, m_y + groupHeight(), inner, thinRule}, quietInk);
            }
            x = end;
        }
    }

    void setRow(const Measured &table, const Row &row)
    {
        const double height = heightOf(row.lines, m_body);
        const bool fitsNowhere = height > contentBottom - contentTop - table.headHeight;
        if (height > room() && (!fitsNowhere || room() < heightOf(1, m_body))) {
            newPage();
            setHead(table);
        }
        // Once, but for a row that is higher than a page.
        for (qsizetype first = 0; first < row.lines;) {
            if (first > 0) {
                newPage();
                setHead(table);
            }
            const auto fitting = static_cast<qsizetype>((room() - 2 * rowPadding) / m_body.leading);
            const qsizetype count = std::min(row.lines - first, std::max<qsizetype>(fitting, 1));
            setCells(table, row, first, count);
            m_y += heightOf(count, m_body);
            first += count;
        }
        fill({margin, m_y, right - margin, thinRule}, ruleColor);
    }

    /// The height that must be left on a page for a table to begin there: a small table stays in one piece.
    double startOf(const Measured &table) const
    {
        constexpr double small = 40 * mm;
        const double first = table.rows.isEmpty() ? 0 : heightOf(table.rows.front().lines, m_body);
        return table.headHeight + (table.rowsHeight <= small ? table.rowsHeight : std::min(first, small));
    }

    void setSection(const PrintSection &section)
    {
        constexpr double gapAbove = 5 * mm;
        constexpr double gapBetween = 3 * mm;
        const double heading = m_heading.leading + 1.2 * mm;
        for (bool first = true; const PrintTable &content : section.tables) {
            const Measured table = measured(content);
            const double gap = first ? gapAbove : gapBetween;
            if (gap + (first ? heading : 0) + startOf(table) > room()) {
                newPage();
            } else if (m_y > contentTop) {
                m_y += gap;
            }
            if (first) {
                put(section.title, margin, m_y, m_heading);
                m_y += heading;
                first = false;
            }
            setHead(table);
            for (const Row &row : table.rows) {
                setRow(table, row);
            }
        }
    }

    const Face m_title{16, QFont::Bold, accent};
    const Face m_heading{11, QFont::Bold, accent};
    const Face m_head{7.5, QFont::Bold, quietInk};
    const Face m_body{8.5, QFont::Normal, ink};
    const Face m_label{8.5, QFont::Normal, quietInk};
    const Face m_running{8, QFont::Normal, quietInk};
    QList<PrintedPage> m_pages;
    double m_y = 0;
};

} // namespace

QList<PrintedPage> layOut(const QString &title, const QList<PrintSection> &sections, const PageFrame &frame)
{
    return Typesetter().set(title, sections, frame);
}

} // namespace ktr
