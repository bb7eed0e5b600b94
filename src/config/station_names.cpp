#include "config/station_names.h"

#include "config/configuration_file.h"

#include <QDir>

namespace ktr {

void StationNames::look(const QStringList &folders)
{
    QHash<QString, Known> known;
    QStringList looked;
    for (const QString &name : folders) {
        const QDir folder(name);
        if (name.isEmpty() || looked.contains(folder.absolutePath())) {
            continue;
        }
        looked += folder.absolutePath();
        const QFileInfoList files =
            folder.entryInfoList({QStringLiteral("*.names")}, QDir::Files, QDir::Name);
        for (const QFileInfo &names : files.mid(0, mostFiles)) {
            const QFileInfo configuration(names.path() + u'/' + names.completeBaseName() +
                                          QLatin1String(".xml"));
            if (!configuration.isFile()) {
                continue;
            }
            const Known before = m_known.value(configuration.filePath());
            const bool same =
                before.configurationOf.stillHolds(configuration) && before.namesOf.stillHolds(names);
            known.insert(configuration.filePath(), same ? before : read(configuration, names));
        }
    }
    m_known = known;
    m_names.clear();
    for (const Known &each : std::as_const(m_known)) {
        const auto other = m_names.constFind(each.station);
        if (!each.station.isEmpty() &&
            (other == m_names.constEnd() || other->namesOf.modified() < each.namesOf.modified())) {
            m_names.insert(each.station, each);
        }
    }
}

StationNames::Known StationNames::read(const QFileInfo &configuration, const QFileInfo &names)
{
    constexpr qint64 longest = qint64{1} << 20;
    Known known{FileStamp(configuration), FileStamp(names), {}, {}};
    if (configuration.size() <= longest) {
        Configuration content;
        const ReadReport report = readConfigurationFile(configuration.filePath(), content, Environment());
        if (report.opened && report.document && report.isConfiguration) {
            QStringList remarks; // told when that configuration is opened
            known.station = content.gsm.stationId.trimmed();
            known.names = readNamesBeside(configuration.filePath(), remarks);
        }
    }
    return known;
}

ChannelNames StationNames::of(const QString &station) const
{
    return m_names.value(station.trimmed()).names;
}

} // namespace ktr
