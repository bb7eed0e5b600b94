#include "transmissions/fleet_look.h"

#include "config/address.h"
#include "config/configuration_file.h"
#include "link/problems.h"
#include "transmissions/held_configuration.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <algorithm>

namespace ktr {

namespace {

int countOf(const StepCommands &commands, const StepSet &leftOut)
{
    int count = 0;
    for (std::size_t step = 0; step < commands.size(); ++step) {
        count += commands[step] && !leftOut.test(step) ? 1 : 0;
    }
    return count;
}

CommandContext contextOf(const Environment &environment)
{
    return {true, environment.locale, environment.now()};
}

} // namespace

StationLook lookAtStation(const Configuration &configuration, const QList<Neighbour> &neighbours,
                          const Environment &environment)
{
    const CommandContext context = contextOf(environment);
    return {.commands = countOf(commandsOf(configuration, context), {}),
            .problems = static_cast<int>(findProblems(configuration, context, neighbours).size())};
}

StationLook withMemory(StationLook look, const Configuration &configuration, TransmissionTable &table,
                       const Environment &environment)
{
    const QString &station = configuration.gsm.stationId;
    if (station.isEmpty()) {
        return look;
    }
    const HeldConfiguration held = newestHeld(table, station, environment);
    const QString &version = held.transmission.versionSent;
    if (held.isKnown() && isProvedBy(held.configuration, version)) {
        const CommandContext context = contextOf(environment);
        const Changes changes = changesSince(held, configuration, context);
        look.changes = countOf(commandsOf(configuration, context), changes.leftOut);
        look.held = held.configuration;
        look.version = version;
    }
    return look;
}

QList<FileOfStation> filesOfStations(const QList<FleetStation> &stations, const QString &folder,
                                     const Environment &environment)
{
    QHash<QString, QStringList> byName;
    QHash<QString, QStringList> byAddress;
    for (const QFileInfo &file :
         QDir(folder).entryInfoList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name)) {
        Configuration configuration;
        const ReadReport report = readConfigurationFile(file.absoluteFilePath(), configuration, environment);
        if (report.document && report.isConfiguration) {
            byName[configuration.gsm.stationId] += file.absoluteFilePath();
            byAddress[withoutLeadingZeros(configuration.ethernet.ip)] += file.absoluteFilePath();
        }
    }
    QList<FileOfStation> found;
    for (const FleetStation &station : stations) {
        QStringList files = byName.value(station.name);
        if (files.isEmpty()) {
            files = byAddress.value(station.address.section(u':', 0, 0));
        }
        if (files.size() == 1) {
            found += FileOfStation{files.first(), {}};
        } else if (files.isEmpty()) {
            found += FileOfStation{
                {}, QCoreApplication::translate("FleetLook", "no file has its name or address")};
        } else {
            QStringList names;
            for (const QString &file : files) {
                names += QFileInfo(file).fileName();
            }
            found += FileOfStation{{},
                                   QCoreApplication::translate("FleetLook", "several files are its: %1")
                                       .arg(names.join(QLatin1String(", ")))};
        }
    }
    return found;
}

QHash<QString, QString> filesByLine(TransmissionTable &table)
{
    constexpr qint64 most = 20'000;
    QHash<QString, QString> files;
    (void)table.find({.limit = most}, [&files](const TransmissionRow &row) { // the newest first
        if (!row.file.isEmpty() && !files.contains(row.line)) {
            files.insert(row.line, row.file);
        }
    });
    return files;
}

QList<FileOfStation> filesTransmittedTo(const QList<FleetStation> &stations, TransmissionTable &table)
{
    const QHash<QString, QString> files = filesByLine(table);
    QList<FileOfStation> found;
    for (const FleetStation &station : stations) {
        const QString file = files.value(station.address);
        if (!file.isEmpty() && QFileInfo(file).isFile()) {
            found += FileOfStation{file, {}};
        } else {
            found += FileOfStation{{}, QCoreApplication::translate("FleetLook", "no file is known")};
        }
    }
    return found;
}

} // namespace ktr
