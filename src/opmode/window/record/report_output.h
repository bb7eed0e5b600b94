#pragma once

#include "opmode/window/record/record_report.h"

class QTextDocument;

namespace ktr {

/// Puts a report into a document, letter for letter; of each table at most so many rows, and how many more
/// there are.
void showReport(const Report &report, QTextDocument &document, int mostRows, const QLocale &locale);
/// As a table for a spreadsheet.
QByteArray reportCsv(const Report &report);
/// As a PDF of A4 pages.
QByteArray reportPdf(const Report &report, const QLocale &locale);

} // namespace ktr
