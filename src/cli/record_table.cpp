#include "cli/record_table.h"

#include "cli/console.h"
#include "cli/event_names.h"
#include "config/channels.h"
#include "opmode/keeping/list_record.h"
#include "platform/csv.h"
#include "platform/files.h"
#include "record/record_reader.h"

#include <QDateTime>
#include <QHash>

#include <algorithm>
#include <limits>
#include <utility>

namespace ktr::cli {

namespace {

constexpr int rowsOfPage = 2000;

/// "2026-11-20T10:00:00.250+01:00"; empty for a time that is not known or has not come.
QString timeText(qint64 at)
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(at);
    return at == 0 ? QString() : time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

/// Empty for 0, which stands for none.
QString numberText(qint64 number)
{
    return number == 0 ? QString() : QString::number(number);
}

QString line(std::initializer_list<QString> cells)
{
    return QStringList(cells).join(u';') + QLatin1String("\r\n");
}

class RecordTable
{
public:
    RecordTable(const QString &path, const RecordChoice &choice)
        : m_reader(path), m_from(choice.from), m_to(choice.to), m_text(choice.text), m_station(choice.station)
    {}

    Status run(const QString &kind, const QString &to)
    {
        Status status = m_reader.stations([this](const StationRow &station) {
            m_names.insert(station.id, station.name);
            if (station.name == m_station) { // one that was removed may have had the same name
                m_stations += station.id;
            }
        });
        if (status && !m_station.isEmpty() && m_stations.isEmpty()) {
            status = findRenamed();
        }
        if (status && !m_station.isEmpty() && m_stations.isEmpty()) {
            status = Status::failed(
                QStringLiteral("%1: the record has no station \"%2\"").arg(m_reader.path(), m_station));
        }
        if (status) {
            status = m_file.open(to);
        }
        if (status) {
            status = kind == QLatin1String("alarms")    ? alarms()
                     : kind == QLatin1String("history") ? history()
                     : kind == QLatin1String("values")  ? values()
                                                        : events();
        }
        if (status) {
            status = flush();
        }
        return status ? m_file.commit() : status;
    }

    qint64 rows() const { return m_rows; }

private:
    QString stationName(qint64 station) const { return csvCell(m_names.value(station)); }

    template <class Filter> Filter chosen() const
    {
        Filter filter;
        filter.from = m_from;
        filter.to = m_to;
        filter.stations = m_stations;
        filter.text = m_text;
        return filter;
    }

    /// Those that had the name once.
    Status findRenamed()
    {
        std::optional<RecordKey> after;
        do {
            const EventPage page =
                m_reader.findEvents({.kinds = {EventKind::StationRenamed}}, after, rowsOfPage);
            if (!page.status) {
                return page.status;
            }
            for (const EventRow &renaming : page.rows) {
                if (nameBefore(renaming) == m_station && !m_stations.contains(renaming.station)) {
                    m_stations += renaming.station;
                    complain(QStringLiteral("\"%1\" is called \"%2\" now")
                                 .arg(m_station, m_names.value(renaming.station)));
                }
            }
            after = page.next;
        } while (after);
        return Status::done();
    }

    Status events()
    {
        begin({QStringLiteral("time"), QStringLiteral("number"), QStringLiteral("station"),
               QStringLiteral("kind"), QStringLiteral("text"), QStringLiteral("operator"),
               QStringLiteral("alarm"), QStringLiteral("detail")});
        const auto filter = chosen<EventFilter>();
        if (passesOverKinds(filter)) {
            complain(
                QStringLiteral("the text is not searched for in events of the kinds values, history, alive, "
                               "silent, csq, puk, flood, attributes, started, stopped and list followed, "
                               "unless --station and --from are given"));
        }
        return pages([&](const auto &after) { return m_reader.findEvents(filter, after, rowsOfPage); },
                     [this](const EventRow &event) {
                         return line({timeText(event.at), QString::number(event.id),
                                      stationName(event.station), nameOf(event.kind), csvCell(event.text),
                                      csvCell(event.operatorName), numberText(event.alarm),
                                      csvCell(event.detail)});
                     });
    }

    Status alarms()
    {
        begin({QStringLiteral("came"), QStringLiteral("latest"), QStringLiteral("number"),
               QStringLiteral("station"), QStringLiteral("kind"), QStringLiteral("priority"),
               QStringLiteral("text"), QStringLiteral("count"), QStringLiteral("recipients"),
               QStringLiteral("acknowledged"), QStringLiteral("by"), QStringLiteral("comment"),
               QStringLiteral("over"), QStringLiteral("why over"), QStringLiteral("shelved until"),
               QStringLiteral("shelved by"), QStringLiteral("why shelved")});
        const auto filter = chosen<AlarmFilter>();
        return pages([&](const auto &after) { return m_reader.findAlarms(filter, after, rowsOfPage); },
                     [this](const AlarmRow &alarm) {
                         return line({timeText(alarm.first), timeText(alarm.last), QString::number(alarm.id),
                                      stationName(alarm.station), nameOf(alarm.kind),
                                      QString::number(alarm.priority), csvCell(alarm.text),
                                      QString::number(alarm.count),
                                      csvCell(alarm.recipients.join(QLatin1String(", "))),
                                      timeText(alarm.acknowledged), csvCell(alarm.acknowledgedBy),
                                      csvCell(alarm.comment), timeText(alarm.over), csvCell(alarm.overWhy),
                                      timeText(alarm.shelvedUntil), csvCell(alarm.shelvedBy),
                                      csvCell(alarm.shelvedWhy)});
                     });
    }

    Status history()
    {
        begin({QStringLiteral("station"), QStringLiteral("channel"), QStringLiteral("time"),
               QStringLiteral("value"), QStringLiteral("second value")});
        return eachChannel([this](qint64 station, int channel) {
            return m_reader.history(station, channel, m_from, end(), [&](const HistoryRow &row) {
                take(line({stationName(station), QString::number(channel), timeText(row.at),
                           csvValue(row.first), csvValue(row.second)}));
            });
        });
    }

    Status values()
    {
        begin({QStringLiteral("station"), QStringLiteral("channel"), QStringLiteral("time"),
               QStringLiteral("value")});
        return eachChannel([this](qint64 station, int channel) {
            return m_reader.values(station, channel, m_from, end(), [&](const ValueRow &row) {
                take(line(
                    {stationName(station), QString::number(channel), timeText(row.at), csvValue(row.value)}));
            });
        });
    }

    qint64 end() const { return m_to == 0 ? std::numeric_limits<qint64>::max() : m_to; }

    template <class Page, class ToLine> Status pages(const Page &page, const ToLine &toLine)
    {
        std::optional<RecordKey> after;
        do {
            const auto found = page(after);
            if (!found.status) {
                return found.status;
            }
            for (const auto &row : found.rows) {
                take(toLine(row));
            }
            after = found.next;
        } while (after && m_written);
        return m_written;
    }

    template <class Channel> Status eachChannel(const Channel &each)
    {
        QList<qint64> stations = m_station.isEmpty() ? m_names.keys() : m_stations;
        std::ranges::sort(stations);
        for (const qint64 station : std::as_const(stations)) {
            for (int channel = 1; channel <= channelCount && m_written; ++channel) {
                if (Status read = each(station, channel); !read) {
                    return read;
                }
            }
        }
        return m_written;
    }

    void begin(std::initializer_list<QString> header) { m_bytes = csvMark + line(header).toUtf8(); }

    void take(const QString &row)
    {
        constexpr qsizetype enough = qsizetype{1} << 18;
        m_bytes += row.toUtf8();
        ++m_rows;
        if (m_bytes.size() >= enough && m_written) {
            m_written = flush();
        }
    }

    Status flush() { return m_file.write(std::exchange(m_bytes, QByteArray())); }

    RecordReader m_reader;
    qint64 m_from;
    qint64 m_to; ///< 0: no end
    QString m_text;
    QString m_station;
    QHash<qint64, QString> m_names;
    QList<qint64> m_stations;
    FileReplacement m_file;
    QByteArray m_bytes;
    Status m_written = Status::done();
    qint64 m_rows = 0;
};

} // namespace

Status writeRecordTable(const QString &path, const QString &kind, const RecordChoice &choice,
                        const QString &to, qint64 &rows)
{
    RecordTable table(path, choice);
    Status written = table.run(kind, to);
    rows = table.rows();
    return written;
}

} // namespace ktr::cli
