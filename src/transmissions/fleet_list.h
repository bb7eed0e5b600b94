#pragma once

#include "config/configuration.h"
#include "platform/environment.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace ktr {

/// A station of a fleet with the configuration that it is to be given.
struct FleetEntry
{
    QString place{}; ///< where the list has it, for messages: "row 3"
    QString file{};
    QString address{};
    QString station{};  ///< the configuration's identifier
    QString checksum{}; ///< of the file
    Configuration configuration{};
    QString trouble{}; ///< why nothing can be transmitted to it; empty when all is well
};

struct FleetList
{
    QList<FleetEntry> entries;
    QStringList faults; ///< of the list itself; with any of them nothing is to be begun
};

/// Reads a table with the columns "file" and "address" (which may be left out: then that of the configuration
/// counts) and perhaps "station", which the configuration's identifier has to be; files are looked for beside
/// the table. Or a folder: all its configurations, each at its own address. Two entries with one address, one
/// file, one identifier or one MAC address are faults.
FleetList readFleetList(const QString &path, const Environment &environment);

/// Reads the entry's file into its configuration. What keeps it from being transmitted becomes its trouble:
/// also another identifier than the entry has already. Without an address it gets the configuration's.
void loadEntry(FleetEntry &entry, const Environment &environment);

/// What is wrong with the entries together, a text each, which names both: addresses, files, identifiers and
/// MAC addresses that are there twice, and what is no address. Entries with a trouble of their own do not
/// count.
QStringList faultsOfEntries(const QList<FleetEntry> &entries);

/// What may be wrong with them: several are given one IP address, which modules of different networks may
/// have. A text for each address.
QStringList doubtsAboutEntries(const QList<FleetEntry> &entries);

} // namespace ktr
