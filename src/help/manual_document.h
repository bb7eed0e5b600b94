#pragma once

#include <QString>

class QPalette;
class QTextDocument;

namespace ktr {

class TextTable;

/// Fills a document with a chapter's Markdown: `{#anchor}` behind a heading or a bracket becomes an anchor
/// that QTextBrowser::scrollToAnchor() finds, and each `<!-- fields: PAGE -->` the table of that page's
/// fields. Headings, tables and code have the look of the palette.
void fillManualDocument(QTextDocument &document, const QString &markdown, const TextTable &texts,
                        const QPalette &palette);

} // namespace ktr
