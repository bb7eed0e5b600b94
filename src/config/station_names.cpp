#include "config/station_names.h"

#include "config/configuration_file.h"

#include <QDir>

#include <algorithm>
#include <utility>

namespace ktr {

bool StationNames::look(const QStringList &folders)
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
    const QHash<QString, Known> before = std::exchange(m_names, {});
    for (const Known &each : std::as_const(m_known)) {
        const auto other = m_names.constFind(each.station);
        if (!each.station.isEmpty() &&
            (other == m_names.constEnd() || other->namesOf.modified() < each.namesOf.modified())) {
            m_names.insert(each.station, each);
        }
    }
    const auto isKnown = [&before](const Known &each) {
        const auto found = before.constFind(each.station);
        return found != before.constEnd() && found->names == each.names;
    };
    return m_names.size() != before.size() || !std::ranges::all_of(m_names, isKnown);
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
