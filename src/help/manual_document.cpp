#include "help/manual_document.h"

#include "config/field_guide.h"
#include "look/palettes.h"

#include <QFontInfo>
#include <QPalette>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>

#include <array>

namespace ktr {

namespace {

// An anchor travels through the reader of Markdown as one character of the private area, which no text has.
constexpr char16_t firstMark = 0xE000;
constexpr char16_t lastMark = 0xF8FF;

/// The text with marks in place of `{#anchor}`, and the anchors in the order of the marks.
QString markAnchors(const QString &markdown, QStringList &anchors)
{
    static const QRegularExpression place(
        QStringLiteral("^(#{1,6} )(.*?) *\\{#([\\w-]+)\\}$|\\[([^\\[\\]]*)\\]\\{#([\\w-]+)\\}"),
        QRegularExpression::MultilineOption);
    QString marked;
    qsizetype end = 0;
    for (const QRegularExpressionMatch &match : place.globalMatch(markdown)) {
        const bool isHeading = match.hasCaptured(3);
        const auto mark = QChar(static_cast<char16_t>(firstMark + anchors.size()));
        marked += markdown.mid(end, match.capturedStart() - end);
        marked += (isHeading ? match.captured(1) : QString()) + mark + match.captured(isHeading ? 2 : 4);
        anchors += match.captured(isHeading ? 3 : 5);
        end = match.capturedEnd();
    }
    return marked + markdown.mid(end);
}

QString withFieldTables(const QString &markdown, const TextTable &texts)
{
    static const QRegularExpression comment(QStringLiteral("<!-- fields: ([\\w-]+) -->"));
    QString whole;
    qsizetype end = 0;
    for (const QRegularExpressionMatch &match : comment.globalMatch(markdown)) {
        whole += markdown.mid(end, match.capturedStart() - end) + guideTable(match.captured(1), texts);
        end = match.capturedEnd();
    }
    return whole + markdown.mid(end);
}

/// Takes the marks out again; the character behind each is the anchor.
void setAnchors(QTextDocument &document, const QStringList &anchors)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QString text = block.text();
        for (qsizetype at = text.size() - 1; at >= 0; --at) { // from the end, since each is removed
            const char16_t mark = text[at].unicode();
            if (mark < firstMark || mark > lastMark) {
                continue;
            }
            QTextCursor cursor(block);
            cursor.setPosition(block.position() + static_cast<int>(at));
            cursor.deleteChar();
            cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
            QTextCharFormat format;
            format.setAnchor(true);
            format.setAnchorNames({anchors.value(mark - firstMark)});
            cursor.mergeCharFormat(format);
        }
    }
}

/// By steps of the toolkit, which scale with the document's letters.
void styleHeading(const QTextBlock &block, int level, qreal size)
{
    constexpr std::array<int, 6> steps{2, 1, 1, 0, 0, 0};
    QTextCursor cursor(block);
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    QTextCharFormat format;
    format.setFontWeight(QFont::DemiBold);
    format.setProperty(QTextFormat::FontSizeAdjustment,
                       steps[static_cast<std::size_t>(qBound(1, level, 6) - 1)]);
    cursor.mergeCharFormat(format);
    QTextBlockFormat shape = block.blockFormat();
    shape.setTopMargin(level == 1 ? 0 : size);
    shape.setBottomMargin(size / 2);
    cursor.setBlockFormat(shape);
}

bool isCode(const QTextBlock &block)
{
    return block.blockFormat().hasProperty(QTextFormat::BlockCodeFence);
}

void styleBlocks(QTextDocument &document, const QPalette &palette)
{
    const qreal size = QFontInfo(document.defaultFont()).pointSizeF();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextBlockFormat shape = block.blockFormat();
        if (shape.nonBreakableLines() && !isCode(block)) { // the reader goes on so behind code
            QTextCursor cursor(block);
            QTextBlockFormat plain = shape;
            plain.clearProperty(QTextFormat::BlockNonBreakableLines);
            cursor.setBlockFormat(plain);
        }
        if (shape.headingLevel() > 0) {
            styleHeading(block, shape.headingLevel(), size);
        } else if (isCode(block)) {
            QTextCursor cursor(block);
            QTextBlockFormat code = shape;
            code.setBackground(tint(palette));
            code.setLeftMargin(size);
            cursor.setBlockFormat(code);
        }
    }
}

void styleTable(QTextTable &table, const QPalette &palette)
{
    constexpr int manyColumns = 5;
    const qreal padding = table.columns() < manyColumns ? 5 : 3; // those of fields fill a small window
    QTextTableFormat format = table.format();
    format.setBorder(1);
    format.setBorderCollapse(true);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setBorderBrush(hairline(palette));
    format.setCellPadding(padding);
    format.setCellSpacing(0);
    format.setTopMargin(padding);
    format.setBottomMargin(2 * padding);
    format.setHeaderRowCount(1);
    constexpr qreal nearlyAll = 99; // per cent: the border stands partly outside
    format.setWidth(QTextLength(QTextLength::PercentageLength, nearlyAll));
    table.setFormat(format);
    for (int column = 0; column < table.columns(); ++column) {
        QTextTableCell cell = table.cellAt(0, column);
        QTextCharFormat head = cell.format();
        head.setBackground(tint(palette));
        cell.setFormat(head);
    }
}

void styleTables(QTextFrame &frame, const QPalette &palette)
{
    for (QTextFrame *child : frame.childFrames()) {
        if (auto *table = qobject_cast<QTextTable *>(child)) {
            styleTable(*table, palette);
        }
        styleTables(*child, palette);
    }
}

} // namespace

void fillManualDocument(QTextDocument &document, const QString &markdown, const TextTable &texts,
                        const QPalette &palette)
{
    QStringList anchors;
    const QString marked = markAnchors(withFieldTables(markdown, texts), anchors);
    document.setUndoRedoEnabled(false);
    document.setMarkdown(marked, QTextDocument::MarkdownDialectGitHub);
    setAnchors(document, anchors);
    styleBlocks(document, palette);
    styleTables(*document.rootFrame(), palette);
}

} // namespace ktr
