#pragma once

#include "platform/status.h"
#include "printout/page_layout.h"

#include <QDateTime>

class QPainter;

namespace ktr {

struct PrintoutOptions
{
    QString fileName; ///< of the configuration; its folder is not printed
    QLocale locale = QLocale::c();
    QDateTime now;
    PrintedEntries entries = PrintedEntries::InUse;
    QString title{};             ///< empty: that of a configuration
    QList<PrintSection> front{}; ///< what stands before the configuration
};

/// A whole configuration as A4 pages, for paper, preview and PDF: all break into the same pages. Needs an
/// application object that knows fonts (QGuiApplication), a display not.
class Printout
{
public:
    Printout(const Configuration &configuration, const TextTable &texts, const PrintoutOptions &options);

    int pageCount() const { return static_cast<int>(m_pages.size()); }

    /// Draws a page, 0 to pageCount() - 1, in a painter whose unit is a point (1/72 inch) and whose origin is
    /// the sheet's corner. Outside that range nothing is drawn.
    void paintPage(QPainter &painter, int page) const;

    /// The texts of a page, blanks between them; empty outside 0 to pageCount() - 1.
    QString pageText(int page) const;

    /// Writes all pages into a PDF whose texts can be searched. Fails, and leaves what stands at `path`, when
    /// it cannot be written or when the system has no font at all.
    Status writePdf(const QString &path) const;

private:
    QString m_title;
    QList<PrintedPage> m_pages;
};

} // namespace ktr
