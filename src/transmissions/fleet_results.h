#pragma once

#include "transmissions/fleet_list.h"
#include "transmissions/station_transmission.h"

namespace ktr {

/// What became of a station, as it stands in the table of results.
struct FleetResult
{
    QString station{};
    QString file{};
    QString address{};
    QString verdict{}; ///< a word: that of the transmission, or "not begun"
    int commands = 0;
    double seconds = 0;
    QString trouble{};
    std::optional<int> step{}; ///< where it can go on
    QString versionBefore{};
    QString transmission{}; ///< its uid in the memory
    QString checksum{};     ///< of the file as it was sent

    bool isWhole() const;
};

/// The result of a station to which nothing was sent.
FleetResult resultOf(const FleetEntry &entry);
FleetResult resultOf(const FleetEntry &entry, const StationOutcome &outcome);

/// Writes the table: UTF-8, ";" between the cells, as spreadsheets take it.
Status writeResults(const QString &path, const QList<FleetResult> &results);

/// Reads a table that was written before.
Status readResults(const QString &path, QList<FleetResult> &results);

/// A name for the receipt of a file's transmission in a folder, which no file has: one that is there proves
/// an earlier transmission, or is that of a file of the same name in another folder.
QString freeReceiptPath(const QString &folder, const QString &file);

} // namespace ktr
