#include "opmode/lists/station_import.h"

#include "link/udp_pair.h"
#include "opmode/tree/node_texts.h"
#include "platform/csv.h"
#include "platform/table_file.h"
#include "platform/text_rules.h"

#include <QCoreApplication>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <array>

namespace ktr {

namespace {

/// Where the columns are, which a header line tells.
struct Columns
{
    qsizetype name = 0;
    qsizetype address = 1;
};

constexpr std::array<QStringView, 6> nameTitles = {u"name",    u"station",     u"station name",
                                                   u"kennung", u"bezeichnung", u"stationsname"};
constexpr std::array<QStringView, 9> addressTitles = {u"address",    u"host address", u"hostaddress",
                                                      u"ip address", u"host",         u"ip",
                                                      u"adresse",    u"ip-adresse",   u"hostadresse"};

/// Nothing when the cells are a station's.
std::optional<Columns> headerOf(const QStringList &cells)
{
    Columns columns{-1, -1};
    for (qsizetype at = 0; at < cells.size(); ++at) {
        const QString title = cells[at].toLower();
        if (columns.name < 0 && std::ranges::find(nameTitles, title) != nameTitles.end()) {
            columns.name = at;
        } else if (columns.address < 0 && std::ranges::find(addressTitles, title) != addressTitles.end()) {
            columns.address = at;
        }
    }
    return columns.name >= 0 && columns.address >= 0 ? std::optional(columns) : std::nullopt;
}

/// Lines of several origins in one list: where the list's separator took nothing apart, another one does when
/// an address stands behind it. A name alone may hold a comma.
QStringList takenApart(const QStringList &cells)
{
    if (cells.size() != 1) {
        return cells;
    }
    for (const QChar separator : {u'\t', u';', u','}) {
        const qsizetype at = cells[0].lastIndexOf(separator);
        const QString address = cells[0].sliced(at + 1).trimmed();
        if (at > 0 && (address.contains(u'.') || address.contains(u':')) && UdpPair::isAddress(address)) {
            return {cells[0].first(at).trimmed(), address};
        }
    }
    return cells;
}

/// The names of a list, in the order they are given.
class Names
{
public:
    explicit Names(const std::function<QString(const QString &)> &freeName) : m_freeName(freeName) {}

    QString take(const QString &base)
    {
        int &next = m_next[base]; // a list of one name only is not searched from its start each time
        QString name = next == 0 ? base : numbered(base, next);
        while (m_used.contains(name) || m_freeName(name) != name) {
            name = numbered(base, ++next);
        }
        m_used.insert(name);
        return name;
    }

private:
    static QString numbered(const QString &base, int n) { return base + QStringLiteral(" (%1)").arg(n); }

    const std::function<QString(const QString &)> &m_freeName;
    QHash<QString, int> m_next;
    QSet<QString> m_used;
};

/// Empty when a station can be made of it.
QString complaint(const StationImportLine &station)
{
    if (station.name.isEmpty()) {
        return QCoreApplication::translate("StationImport", "There is no name");
    }
    if (station.name.contains(u'/')) {
        return QCoreApplication::translate("StationImport", "A name must not hold a \"/\"");
    }
    if (!station.address.isEmpty() && !UdpPair::isAddress(station.address)) {
        return QCoreApplication::translate("StationImport", "This is no address of a module");
    }
    return {};
}

/// What is worth knowing of one that can be used; from now on it has its address.
void remark(StationImportLine &station, const QString &wanted, QHash<QString, QString> &stationsAt)
{
    QStringList remarks;
    if (station.name != wanted) {
        remarks += QCoreApplication::translate("StationImport", "There is a \"%1\" already").arg(wanted);
    }
    if (station.address.isEmpty()) {
        remarks += QCoreApplication::translate("StationImport", "Without an address");
    } else if (const QString other = stationsAt.value(station.address.toLower()); !other.isEmpty()) {
        remarks += QCoreApplication::translate("StationImport", "\"%1\" has this address, too").arg(other);
    } else {
        stationsAt.insert(station.address.toLower(), station.name);
    }
    station.remark = remarks.join(QLatin1String("; "));
}

/// What is in quotation marks there may not be what was meant; further lines may be among it.
void refuseUnbalanced(StationImport &list, int at)
{
    const auto line = std::ranges::find_if(list.lines.rbegin(), list.lines.rend(),
                                           [at](const StationImportLine &each) { return each.line <= at; });
    if (line != list.lines.rend()) {
        list.usable -= line->isUsable ? 1 : 0;
        line->isUsable = false;
        line->remark = unbalancedQuote(at);
    }
}

} // namespace

StationImport readStationImport(QStringView text, const std::function<QString(const QString &)> &freeName,
                                QHash<QString, QString> stationsAt)
{
    StationImport list;
    Names names(freeName);
    Columns columns;
    bool isFirst = true;
    const std::optional<int> unbalanced =
        readCsv(text, csvSeparator(text), [&](const QStringList &read, int line) {
            const QStringList cells = takenApart(read);
            if (const auto header = std::exchange(isFirst, false) ? headerOf(cells) : std::nullopt) {
                columns = *header;
                return true;
            }
            if (list.lines.size() == StationImport::mostLines) {
                list.isCut = true;
                return false;
            }
            StationImportLine station{
                line,
                QString::fromStdString(storedText(cells.value(columns.name))).simplified(),
                cells.value(columns.address),
                {},
                false};
            station.remark = complaint(station);
            station.isUsable = station.remark.isEmpty();
            if (station.isUsable) {
                ++list.usable;
                const QString wanted = std::exchange(station.name, names.take(station.name));
                remark(station, wanted, stationsAt);
            }
            list.lines.append(station);
            return true;
        });
    if (unbalanced) {
        refuseUnbalanced(list, *unbalanced);
    }
    return list;
}

} // namespace ktr
