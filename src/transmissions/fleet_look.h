#pragma once

#include "config/configuration.h"
#include "config/neighbours.h"
#include "platform/environment.h"
#include "record/transmission_table.h"

#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace ktr {

/// What a transmission would send to a station, before anything is asked of its module.
struct StationLook
{
    int commands = 0; ///< of a whole transmission
    int problems = 0; ///< of the configuration
    /// Commands of a transmission of the changes; nothing where the memory proves nothing.
    std::optional<int> changes{};
    /// What the module holds if it tells `version`; nothing where the memory proves nothing.
    std::optional<Configuration> held{};
    QString version{};
};

StationLook lookAtStation(const Configuration &configuration, const QList<Neighbour> &neighbours,
                          const Environment &environment);
/// Adds what the memory knows of the station.
StationLook withMemory(StationLook look, const Configuration &configuration, TransmissionTable &table,
                       const Environment &environment);

/// A station that is to get a configuration.
struct FleetStation
{
    QString name{};
    QString address{};
};

/// The file that is a station's, or why none is.
struct FileOfStation
{
    QString file{};
    QString trouble{};
};

/// For each station the configuration of a folder that has its name as identifier or, where there is none,
/// its address.
QList<FileOfStation> filesOfStations(const QList<FleetStation> &stations, const QString &folder,
                                     const Environment &environment);

/// For each address, or serial port, the file that was transmitted last to it; whether it is still there is
/// not looked at.
QHash<QString, QString> filesByLine(TransmissionTable &table);

/// For each station the file that was transmitted last to its address, as far as it is still there.
QList<FileOfStation> filesTransmittedTo(const QList<FleetStation> &stations, TransmissionTable &table);

} // namespace ktr
