#pragma once

#include <QString>
#include <QStringList>

namespace ktr {

/// What a report has beside what the system itself tells.
struct ReportSources
{
    QString version;      ///< the program's name and version
    QString language;     ///< of its texts
    QStringList logFiles; ///< of these the ends; the first of each name alone
    QStringList facts;    ///< lines about what the program is doing
    QString events;       ///< what the status bar told, a line each
};

/// A report of the program for whoever is to find a fault: versions, system, settings, ends of logs; plain
/// text in which all secrets are masked (withoutSecrets()). `happened` is what the user says about it.
QString problemReport(const ReportSources &sources, const QString &happened);

} // namespace ktr
