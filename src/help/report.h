#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace ktr {

/// Lines of the program's own, below a heading of the report.
struct ReportExcerpt
{
    QString title; ///< in English, as all headings
    QString text;  ///< a line each
};

/// What a report has beside what the system itself tells.
struct ReportSources
{
    QString version;               ///< the program's name and version
    QString language;              ///< of its texts
    QStringList logFiles;          ///< of these the ends; the first of each name alone
    QStringList facts;             ///< lines about what the program is doing
    QList<ReportExcerpt> excerpts; ///< what windows told, the newest last
};

/// A report of the program for whoever is to find a fault: versions, system, settings, ends of logs; plain
/// text in which all secrets are masked (withoutSecrets()). `happened` is what the user says about it.
QString problemReport(const ReportSources &sources, const QString &happened);

} // namespace ktr
