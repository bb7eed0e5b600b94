#include "transmissions/transmission_look.h"

#include "config/channels.h"
#include "link/conversation_log.h"
#include "link/problems.h"
#include "link/transmitter.h"
#include "transmissions/transmission_texts.h"

#include <QCoreApplication>
#include <QDateTime>

#include <utility>

namespace ktr {

namespace {

/// The time that the stamp of an edit tells; invalid for another text.
QDateTime stampOf(const QString &version)
{
    return QDateTime::fromString(version, QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

bool isNewer(const QString &version, const QString &than)
{
    const QDateTime one = stampOf(version);
    const QDateTime other = stampOf(than);
    return one.isValid() && other.isValid() && one > other;
}

/// Counters that get a start value, and outputs that are set.
QStringList overwrittenBy(const Configuration &configuration)
{
    QStringList channels;
    constexpr int firstOutput = 11;
    constexpr int firstHours = 15;
    if (configuration.sendValues.front().enabled) {
        for (std::size_t i = 0; i < configuration.digitalInputs.size(); ++i) {
            if (!configuration.digitalInputs[i].value.isEmpty()) {
                channels += namedChannel(static_cast<int>(i) + 1, configuration.names);
            }
        }
        for (int channel = firstOutput; channel < firstHours; ++channel) {
            channels += namedChannel(channel, configuration.names);
        }
    }
    for (int channel = firstHours; channel < firstHours + 2; ++channel) {
        channels += namedChannel(channel, configuration.names);
    }
    return channels;
}

} // namespace

TransmissionLook lookAt(const Configuration &configuration, const CommandContext &context,
                        const QList<Neighbour> &neighbours)
{
    TransmissionLook look{.station = configuration.gsm.stationId,
                          .version = Transmitter::versionOnLine(configuration),
                          .overwritten = overwrittenBy(configuration)};
    Configuration walked = configuration;
    CommandSequence sequence;
    sequence.start();
    while (sequence.next(walked, context)) {
        ++look.commands;
    }
    look.problems = static_cast<int>(findProblems(configuration, context, neighbours).size());
    return look;
}

TransmissionLook withMemory(TransmissionLook look, TransmissionTable &table)
{
    const Status read = table.find({}, [&look](const TransmissionRow &row) { // the newest first
        if (row.lastStep == steps::last && row.verdict != TransmissionVerdict::Alone) {
            QStringList &stations = look.stationsOf[row.versionSent];
            if (!row.station.isEmpty() && !stations.contains(row.station)) {
                stations += row.station;
            }
            if (!look.lastOfStation && row.station == look.station) {
                look.lastOfStation = row;
            }
            if (!look.lastOverLine && row.line == look.line) {
                look.lastOverLine = row;
            }
        }
    });
    look.isRemembered = static_cast<bool>(read);
    return look;
}

QStringList TransmissionLook::misfits() const
{
    QStringList found;
    if (moduleVersion) {
        const QStringList stations = stationsOf.value(*moduleVersion);
        if (!stations.isEmpty() && !stations.contains(station)) {
            found += QCoreApplication::translate(
                         "Transmissions", "The module holds version %1, which was transmitted to station %2")
                         .arg(shortText(logText(*moduleVersion)),
                              shortText(logText(stations.join(QLatin1String(", ")))));
        }
        if (isNewer(*moduleVersion, version)) {
            found += QCoreApplication::translate("Transmissions",
                                                 "The module holds a newer version, %1, than this one, %2")
                         .arg(shortText(logText(*moduleVersion)), shortText(logText(version)));
        }
    } else if (isAddress && lastOverLine && !lastOverLine->station.isEmpty() &&
               lastOverLine->station != station) {
        found +=
            QCoreApplication::translate("Transmissions", "At %1 is station %2, as transmitted on %3")
                .arg(line, shortText(logText(lastOverLine->station)), transmissionTime(lastOverLine->begun));
    }
    if (lastOfStation && !station.isEmpty() && isNewer(lastOfStation->versionSent, version)) {
        found +=
            QCoreApplication::translate("Transmissions",
                                        "A newer version, %1, was transmitted to this station on %2")
                .arg(shortText(logText(lastOfStation->versionSent)), transmissionTime(lastOfStation->begun));
    }
    return found;
}

QList<std::pair<QString, QString>> TransmissionLook::facts() const
{
    const QString notKnown = QCoreApplication::translate("Transmissions", "not known");
    QString moduleStation = notKnown;
    QString held = notKnown;
    if (moduleVersion) {
        const QStringList stations = stationsOf.value(*moduleVersion);
        held = shortText(logText(*moduleVersion));
        moduleStation =
            stations.isEmpty() ? notKnown : shortText(logText(stations.join(QLatin1String(", "))));
    } else if (lastOfStation) {
        held =
            QCoreApplication::translate("Transmissions", "last transmitted: %1 on %2")
                .arg(shortText(logText(lastOfStation->versionSent)), transmissionTime(lastOfStation->begun));
    }
    if (!moduleVersion && lastOverLine && !lastOverLine->station.isEmpty()) {
        moduleStation = QCoreApplication::translate("Transmissions", "last over this line: %1")
                            .arg(shortText(logText(lastOverLine->station)));
    }
    const QString ofModule = QCoreApplication::translate("Transmissions", "%1 (module: %2)");
    return {
        {QCoreApplication::translate("Transmissions", "Station"),
         ofModule.arg(shortText(logText(station)), moduleStation)},
        {QCoreApplication::translate("Transmissions", "Version"),
         ofModule.arg(shortText(logText(version)), held)},
        {QCoreApplication::translate("Transmissions", "Line"), line.isEmpty() ? notKnown : logText(line)},
        {QCoreApplication::translate("Transmissions", "Commands"), QString::number(commands)},
        {QCoreApplication::translate("Transmissions", "Problems"),
         problems == 0 ? QCoreApplication::translate("Transmissions", "none") : QString::number(problems)},
        {QCoreApplication::translate("Transmissions", "Overwrites"), overwritten.join(QLatin1String(", "))},
    };
}

QString TransmissionLook::summary() const
{
    QStringList parts;
    for (const auto &[name, value] : facts()) {
        parts += name + QLatin1String(": ") + value;
    }
    return parts.join(QStringLiteral("  ·  "));
}

} // namespace ktr
