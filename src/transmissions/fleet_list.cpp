#include "transmissions/fleet_list.h"

#include "config/address.h"
#include "config/configuration_file.h"
#include "config/fields.h"
#include "link/conversation_log.h"
#include "link/module_address.h"
#include "link/udp_pair.h"
#include "platform/files.h"
#include "platform/table_file.h"
#include "transmissions/transmission_texts.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <array>
#include <utility>

namespace ktr {

namespace {

constexpr std::array<QStringView, 3> fileTitles = {u"file", u"datei", u"configuration"};
constexpr std::array<QStringView, 6> addressTitles = {u"address", u"adresse",    u"host",
                                                      u"ip",      u"ip address", u"ip-adresse"};
constexpr std::array<QStringView, 4> stationTitles = {u"station", u"identifier", u"kennung",
                                                      u"stationskennung"};

QString inListWords(const char *text)
{
    return QCoreApplication::translate("FleetList", text);
}

struct Columns
{
    qsizetype file = -1;
    qsizetype address = -1;
    qsizetype station = -1;
};

Columns columnsOf(const QStringList &titles)
{
    Columns columns;
    for (qsizetype at = 0; at < titles.size(); ++at) {
        const QString title = titles[at].toLower();
        const auto take = [&](const auto &names, qsizetype &column) {
            if (column < 0 && std::ranges::find(names, QStringView(title)) != names.end()) {
                column = at;
            }
        };
        take(fileTitles, columns.file);
        take(addressTitles, columns.address);
        take(stationTitles, columns.station);
    }
    return columns;
}

void readTableRows(const QString &path, FleetList &list)
{
    Table table;
    if (const Status read = readTable(path, table); !read) {
        list.faults += read.message();
        return;
    }
    const Columns columns = columnsOf(table.titles);
    if (columns.file < 0) {
        list.faults +=
            fileFailure(path, inListWords(QT_TRANSLATE_NOOP("FleetList", "has no column \"file\"")))
                .message();
        return;
    }
    const QDir folder = QFileInfo(path).absoluteDir();
    for (const Table::Row &row : table.rows) {
        FleetEntry entry;
        entry.place = inListWords(QT_TRANSLATE_NOOP("FleetList", "row %1")).arg(row.line);
        const QString file = row.cells.value(columns.file);
        if (file.isEmpty()) {
            list.faults += inListWords(QT_TRANSLATE_NOOP("FleetList", "%1: names no file")).arg(entry.place);
            continue;
        }
        entry.file = QDir::cleanPath(folder.absoluteFilePath(file));
        entry.address = columns.address < 0 ? QString() : row.cells.value(columns.address);
        entry.station = columns.station < 0 ? QString() : row.cells.value(columns.station);
        list.entries += entry;
    }
}

void readFolder(const QString &path, FleetList &list)
{
    const QDir folder(path);
    for (const QFileInfo &file : folder.entryInfoList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name)) {
        list.entries += FleetEntry{.place = file.fileName(), .file = file.absoluteFilePath()};
    }
    if (list.entries.isEmpty()) {
        list.faults +=
            fileFailure(path, inListWords(QT_TRANSLATE_NOOP("FleetList", "has no *.xml"))).message();
    }
}

/// By which the same address is known in any notation; empty for what is none.
QString keyOfAddress(const QString &text)
{
    const auto address = moduleAddress(text, UdpPair::modulePort);
    return !address ? QString()
                    : QString::fromStdString(address->literal ? address->literal->to_string() : address->host)
                              .toLower() +
                          u' ' + QString::number(address->port);
}

/// Empty for one that is not filled in.
QString macOf(const EthernetSettings &ethernet)
{
    const QString mac = macBytes(ethernet).join(u'-').toUpper();
    return mac.endsWith(u"00-00-00") ? QString() : mac;
}

/// An entry in messages: its place and its file.
QString nameOf(const FleetEntry &entry)
{
    const QString file = QFileInfo(entry.file).fileName();
    return file == entry.place ? file : QStringLiteral("%1 (%2)").arg(entry.place, file);
}

/// Of a file that exists the one that links lead to.
QString keyOfFile(const QString &path)
{
    const QString real = QFileInfo(path).canonicalFilePath();
    return real.isEmpty() ? path : real;
}

} // namespace

void loadEntry(FleetEntry &entry, const Environment &environment)
{
    const auto refuse = [&entry](const QString &why) {
        entry.trouble = entry.file + QLatin1String(": ") + why;
    };
    QByteArray bytes;
    if (const Status read = readFile(entry.file, bytes); !read) {
        entry.trouble = read.message();
        return;
    }
    entry.checksum = QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
    makeNew(entry.configuration, environment);
    const ReadReport report = readConfiguration(bytes, entry.configuration, environment);
    const QString expected = std::exchange(entry.station, entry.configuration.gsm.stationId);
    if (!report.document) {
        refuse(report.document.message());
    } else if (!report.isConfiguration) {
        refuse(inListWords(QT_TRANSLATE_NOOP("FleetList", "is no configuration")));
    } else if (!report.remarks.isEmpty()) { // nobody looks at the fall-backs of many files
        refuse(report.remarks.join(QLatin1String("; ")));
    } else if (!expected.isEmpty() && expected != entry.station) {
        refuse(inListWords(QT_TRANSLATE_NOOP("FleetList", "is the configuration of \"%1\" and not of \"%2\""))
                   .arg(shortText(logText(entry.station)), shortText(logText(expected))));
    } else if (entry.address.isEmpty()) {
        entry.address = withoutLeadingZeros(entry.configuration.ethernet.ip);
    }
}

/// Two stations at one address would both be transmitted to one module; one identifier is known to the memory
/// as one station; of two modules with one MAC address neither can be reached.
QStringList faultsOfEntries(const QList<FleetEntry> &entries)
{
    QStringList faults;
    QHash<QString, QString> places;
    for (const FleetEntry &entry : entries) {
        const auto takeOnce = [&](const QString &key, const QString &fault, const QString &shown) {
            const QString earlier = places.value(key);
            if (!earlier.isEmpty()) {
                faults += nameOf(entry) + QLatin1String(": ") + fault.arg(earlier, logText(shown));
            }
            places.insert(key, nameOf(entry));
        };
        if (!entry.trouble.isEmpty()) {
            continue;
        }
        const QString address = keyOfAddress(entry.address);
        if (address.isEmpty()) {
            faults += inListWords(QT_TRANSLATE_NOOP("FleetList", "%1: \"%2\" is no address of a module"))
                          .arg(entry.place, shortText(logText(entry.address)));
            continue;
        }
        takeOnce(u'a' + address,
                 inListWords(QT_TRANSLATE_NOOP("FleetList", "the address %2 is that of %1, too")),
                 entry.address);
        takeOnce(u'f' + keyOfFile(entry.file),
                 inListWords(QT_TRANSLATE_NOOP("FleetList", "the file %2 is that of %1, too")), entry.file);
        if (!entry.station.isEmpty()) {
            takeOnce(u's' + entry.station,
                     inListWords(QT_TRANSLATE_NOOP("FleetList", "the identifier \"%2\" is that of %1, too")),
                     shortText(entry.station));
        }
        if (const QString mac = macOf(entry.configuration.ethernet); !mac.isEmpty()) {
            takeOnce(u'm' + mac,
                     inListWords(QT_TRANSLATE_NOOP("FleetList", "the MAC address %2 is that of %1, too")),
                     mac);
        }
    }
    return faults;
}

QStringList doubtsAboutEntries(const QList<FleetEntry> &entries)
{
    QStringList addresses; // in the order of the list
    QHash<QString, QStringList> names;
    for (const FleetEntry &entry : entries) {
        const QString address = withoutLeadingZeros(entry.configuration.ethernet.ip);
        if (entry.trouble.isEmpty() && !address.isEmpty()) {
            addresses += names.contains(address) ? QStringList() : QStringList{address};
            names[address] += nameOf(entry);
        }
    }
    QStringList doubts;
    for (const QString &address : std::as_const(addresses)) {
        constexpr qsizetype most = 4;
        const QStringList all = names.value(address);
        if (all.size() > 1) {
            const QString shown = all.first(std::min(most, all.size())).join(QLatin1String(", ")) +
                                  (all.size() > most ? QStringLiteral(", …") : QString());
            doubts += inListWords(
                          QT_TRANSLATE_NOOP("FleetList", "%1 files give their modules the IP address %2: %3"))
                          .arg(QString::number(all.size()), shortText(logText(address)), shown);
        }
    }
    return doubts;
}

FleetList readFleetList(const QString &path, const Environment &environment)
{
    FleetList list;
    if (QFileInfo(path).isDir()) {
        readFolder(path, list);
    } else {
        readTableRows(path, list);
    }
    for (FleetEntry &entry : list.entries) {
        loadEntry(entry, environment);
    }
    list.faults += faultsOfEntries(list.entries);
    return list;
}

} // namespace ktr
