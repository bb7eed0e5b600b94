#pragma once

#include "opmode/watch_summary.h"
#include "record/leases.h"
#include "record/record_writer.h"

#include <QByteArray>

namespace ktr {

/// What a program that collects figures is told of a keeper.
struct Metrics
{
    QString version{};
    WatchSummary summary{};
    quint64 events = 0; ///< since the start
    RecordWriter::CommitTimes commits{};
    quint64 rowsWaiting = 0;
    std::optional<RecordWriter::Spooled> spooled{}; ///< nothing where no file takes what the server does not
    double spoolAge = 0;                            ///< of the oldest row in it, in seconds
    std::optional<qint64> forwardBacklog{};         ///< nothing where nothing is forwarded

    /// Of a list that several keepers share.
    std::optional<Leases::Overview> shared{};
    double leaseLeft = 0;                     ///< of this keeper, in seconds
    QList<std::pair<QString, bool>> duties{}; ///< that it wants, and whether it has them
};

Metrics metricsOf(OperationalMode &mode);

/// In the usual text format, version 0.0.4. The names stand for ever.
QByteArray metricsText(const Metrics &metrics);

} // namespace ktr
