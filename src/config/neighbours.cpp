#include "config/neighbours.h"

#include "config/configuration_file.h"
#include "config/fields.h"

#include <QDir>

namespace ktr {

namespace {

/// Nothing for what is no configuration, or has no MAC address: the reader would make one up.
Neighbour readNeighbour(const QFileInfo &file)
{
    Configuration configuration;
    const ReadReport report = readConfigurationFile(file.filePath(), configuration, Environment());
    const EthernetSettings &ethernet = configuration.ethernet;
    const bool isUsable = report.opened && report.document && report.isConfiguration &&
                          !(ethernet.mac3 == u"00" && ethernet.mac4 == u"00" && ethernet.mac5 == u"00");
    return isUsable ? Neighbour{file.fileName(), file.canonicalFilePath(), configuration.gsm.stationId,
                                macBytes(ethernet)}
                    : Neighbour();
}

} // namespace

QList<Neighbour> Neighbours::of(const QString &fileName, const std::function<bool()> &goesOn)
{
    if (fileName.isEmpty()) {
        return {};
    }
    return beside(fileName, in(QFileInfo(fileName).absolutePath(), goesOn));
}

QList<Neighbour> Neighbours::beside(const QString &fileName, QList<Neighbour> all)
{
    const QString own = QFileInfo(fileName).canonicalFilePath();
    all.removeIf([&own](const Neighbour &each) { return each.path == own; });
    return all;
}

QList<Neighbour> Neighbours::in(const QString &folder, const std::function<bool()> &goesOn)
{
    const QFileInfoList files =
        QDir(folder).entryInfoList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name);
    QHash<QString, Known> known;
    QList<Neighbour> neighbours;
    for (const QFileInfo &file : files.mid(0, mostFiles)) {
        if (!goesOn()) {
            break;
        }
        if (file.size() > longestFile) {
            continue;
        }
        Known each = m_known.value(file.filePath());
        if (!each.stamp.stillHolds(file)) {
            each.stamp = FileStamp(file); // before it is read
            each.neighbour = readNeighbour(file);
        }
        if (!each.neighbour.fileName.isEmpty()) {
            neighbours += each.neighbour;
        }
        known.insert(file.filePath(), each);
    }
    m_known = known;
    return neighbours;
}

} // namespace ktr
