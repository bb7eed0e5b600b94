#pragma once

#include "opmode/alarms/alarm_book.h"
#include "opmode/window/record/record_table.h"

#include <QLocale>

namespace ktr {

enum class ReportKind {
    Shift,     ///< what came, stands and was done in a time
    Figures,   ///< how many alarms came, and how they were dealt with
    Overlooked ///< what has stood for longer than it should
};

/// What is to be reported, and what of it the record does not hold.
struct ReportQuestion
{
    ReportKind kind = ReportKind::Shift;
    qint64 from = 0;                  ///< this time and later
    qint64 to = 0;                    ///< before this time
    bool sinceOperatorChange = false; ///< begins there; at `from` only when there was none
    qint64 now = 0;
    int operators = 1;    ///< how many people share the alarms
    QStringList silent{}; ///< names of the stations that are online and not heard
    QStringList offline{};
    QList<Shelf> shelves{};
    bool isMuted = false;
};

/// What the record holds about it.
struct ReportAnswer
{
    Status status = Status::done();
    qint64 from = 0;
    qint64 begun = 0; ///< from when the record holds anything; for figures
    RecordStations stations{};
    QList<AlarmRow> came{};
    QList<AlarmRow> standing{};
    QList<EventRow> done{};
    bool isCut = false; ///< the record has more rows than a report takes
    AlarmFigures figures{};
    QHash<QString, qint64> heard{}; ///< when a station that is silent or offline said something last
};

/// Reads that, on whichever thread the reader belongs to.
ReportAnswer readReport(RecordReader &reader, const ReportQuestion &question);

/// A report as it is shown, printed and written.
struct Report
{
    struct Table
    {
        QString heading;
        QStringList titles;
        QList<QStringList> rows{};
    };
    QString title;
    QStringList lines{};
    QList<Table> tables{};
};

Report reportOf(const ReportQuestion &question, const ReportAnswer &answer, TimeForm form,
                const QLocale &locale);

} // namespace ktr
