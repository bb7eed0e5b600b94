#include "cli/commands.h"
#include "cli/console.h"
#include "opmode/keeping/list_record.h"
#include "platform/csv.h"
#include "platform/files.h"
#include "record/record_care.h"
#include "record/record_reader.h"
#include "record/schema.h"

#include <QDateTime>
#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace ktr::cli {

namespace {

const QString kindOption = QStringLiteral("kind");
const QString fromOption = QStringLiteral("from");
const QString toOption = QStringLiteral("to");
const QString stationOption = QStringLiteral("station");
const QString textOption = QStringLiteral("text");

constexpr int rowsOfPage = 2000;
constexpr int channels = 18;

/// The record that is meant: a list of stations stands for the one beside it.
QString recordOf(const QString &path)
{
    return path.endsWith(QLatin1String(".xml"), Qt::CaseInsensitive) ? ListRecord::pathFor(path) : path;
}

QString nameOf(EventKind kind)
{
    switch (kind) {
    case EventKind::Notification:
        return QStringLiteral("notification");
    case EventKind::Values:
        return QStringLiteral("values");
    case EventKind::History:
        return QStringLiteral("history");
    case EventKind::OtherMessage:
        return QStringLiteral("message");
    case EventKind::Alive:
        return QStringLiteral("alive");
    case EventKind::Silent:
        return QStringLiteral("silent");
    case EventKind::Quality:
        return QStringLiteral("csq");
    case EventKind::Puk:
        return QStringLiteral("puk");
    case EventKind::Flood:
        return QStringLiteral("flood");
    case EventKind::StationAdded:
        return QStringLiteral("station added");
    case EventKind::StationRemoved:
        return QStringLiteral("station removed");
    case EventKind::StationRenamed:
        return QStringLiteral("station renamed");
    case EventKind::Attributes:
        return QStringLiteral("attributes");
    case EventKind::EntryRemoved:
        return QStringLiteral("entry removed");
    case EventKind::Acknowledged:
        return QStringLiteral("acknowledged");
    case EventKind::Commented:
        return QStringLiteral("commented");
    case EventKind::Shelved:
        return QStringLiteral("shelved");
    case EventKind::Unshelved:
        return QStringLiteral("unshelved");
    case EventKind::AlarmOver:
        return QStringLiteral("alarm over");
    case EventKind::Sent:
        return QStringLiteral("sent");
    case EventKind::Started:
        return QStringLiteral("started");
    case EventKind::Stopped:
        return QStringLiteral("stopped");
    case EventKind::ListFollowed:
        return QStringLiteral("list followed");
    case EventKind::Trouble:
        return QStringLiteral("trouble");
    case EventKind::Note:
        return QStringLiteral("note");
    }
    return QString::number(static_cast<int>(kind)); // of a newer version
}

QString nameOf(AlarmKind kind)
{
    constexpr std::array names = {"module", "silent", "puk", "flood", "disk", "list", "watcher"};
    const auto index = static_cast<std::size_t>(kind) - 1;
    return index < names.size() ? QString::fromLatin1(names[index]) : QString();
}

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

/// A date alone means its first moment, or as an end the first one of the next day.
std::optional<qint64> moment(const QString &text, bool isEnd)
{
    const QDate date =
        QDate::fromString(text, QStringLiteral("yyyy-MM-dd")); // ISODate would accept a time behind it
    if (date.isValid()) {
        return date.addDays(isEnd ? 1 : 0).startOfDay().toMSecsSinceEpoch();
    }
    const QDateTime time = QDateTime::fromString(text, Qt::ISODateWithMs);
    return time.isValid() ? std::optional(time.toMSecsSinceEpoch()) : std::nullopt;
}

/// Writes what is chosen of a record as CSV, page by page.
class RecordExport
{
public:
    RecordExport(const Arguments &arguments, const QString &path)
        : m_reader(path),
          m_from(moment(arguments.value(fromOption), false).value_or(0)),
          m_to(moment(arguments.value(toOption), true).value_or(0)),
          m_text(arguments.value(textOption)),
          m_station(arguments.value(stationOption))
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
            for (int channel = 1; channel <= channels && m_written; ++channel) {
                if (Status read = each(station, channel); !read) {
                    return read;
                }
            }
        }
        return m_written;
    }

    void begin(std::initializer_list<QString> header) { m_bytes = "\xEF\xBB\xBF" + line(header).toUtf8(); }

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

int backUp(const QString &path, const QString &to)
{
    const Status done = backUpRecord(path, to);
    if (!done) {
        return fail(done.message());
    }
    print(QStringLiteral("%1: %L2 bytes").arg(to).arg(QFileInfo(to).size()));
    return cli::done;
}

int checkFile(const QString &path)
{
    const RecordCheck found = ktr::checkRecord(path);
    if (!found.status) {
        return fail(found.status.message());
    }
    print(QStringLiteral("tables of version %1, %2 bytes").arg(found.schema).arg(QFileInfo(path).size()));
    for (const auto &[table, count] : found.rows) {
        print(QStringLiteral("  %1 %2").arg(table.leftJustified(16)).arg(count));
    }
    for (const QString &fault : found.faults) {
        complain(path + QLatin1String(": ") + fault);
    }
    if (!found.faults.isEmpty()) {
        return fail(path + QLatin1String(": damaged"));
    }
    if (found.schema > newestSchema()) {
        return fail(path +
                    QLatin1String(": sound, but of a newer version of the program, which alone opens it"));
    }
    if (found.schema < newestSchema()) {
        print(QStringLiteral("of an older version; the tables are brought forward when a list is opened"));
    }
    print(QStringLiteral("sound"));
    return done;
}

int exportRecord(const Arguments &arguments, const QString &path)
{
    RecordExport job(arguments, path);
    const Status done = job.run(arguments.value(kindOption), arguments.value(outputOption));
    if (!done) {
        return fail(done.message());
    }
    print(QStringLiteral("%1 rows written to %2").arg(job.rows()).arg(arguments.value(outputOption)));
    return cli::done;
}

const QString backupAction = QStringLiteral("backup");
const QString checkAction = QStringLiteral("check");
const QString exportAction = QStringLiteral("export");

} // namespace

void describeRecord(Arguments &arguments)
{
    arguments.setSummary(QStringLiteral(
        "What stations said and operators did, from RECORD (or from the record beside a list, nodes.xml), "
        "also while it is in use.\n\n"
        "  record backup RECORD TO       copies it; the copy may take its place\n"
        "  record check RECORD           looks through all of it; exit code 1 when it is damaged\n"
        "  record export RECORD -o OUT   writes a table as CSV; events and alarms the newest first"));
    const auto add = [&](const QString &name, const char *description, const char *value) {
        arguments.addOption(QCommandLineOption(name, QLatin1String(description), QLatin1String(value)));
    };
    arguments.addOption({kindOption, QStringLiteral("What to export: events, alarms, history or values."),
                         QStringLiteral("KIND"), QStringLiteral("events")});
    add(fromOption, "From this time on: 2026-11-20 or 2026-11-20T10:00:00, with or without an offset.",
        "TIME");
    add(toOption, "Before this time; of a date alone the whole day.", "TIME");
    add(stationOption, "Of this station alone; an earlier name will do when no other has it.", "NAME");
    add(textOption,
        "Events or alarms with this in their text, in either case. Without --station and --from measured "
        "values, "
        "connections, attributes and the program's starts are not searched for it.",
        "TEXT");
    arguments.addOption(
        {{QStringLiteral("o"), outputOption}, QStringLiteral("The CSV file."), QStringLiteral("OUT.csv")});
}

std::optional<int> checkRecord(const Arguments &arguments)
{
    const QString action = arguments.positional(0);
    const bool isExport = action == exportAction;
    if (!QStringList{backupAction, checkAction, exportAction}.contains(action)) {
        return arguments.wrong(QStringLiteral("\"%1\" is none of backup, check, export").arg(action));
    }
    if (arguments.positional(2).isEmpty() == (action == backupAction)) {
        return arguments.wrong(action == backupAction
                                   ? QStringLiteral("the name of the copy is missing")
                                   : QStringLiteral("\"%1\" is too much").arg(arguments.positional(2)));
    }
    for (const QString &option :
         {kindOption, fromOption, toOption, stationOption, textOption, outputOption}) {
        if (arguments.isSet(option) && !isExport) {
            return arguments.wrong(QStringLiteral("--%1 goes with export only").arg(option));
        }
    }
    if (!isExport) {
        return std::nullopt;
    }
    const QString kind = arguments.value(kindOption);
    const bool hasTexts = kind == QLatin1String("events") || kind == QLatin1String("alarms");
    if (!hasTexts && kind != QLatin1String("history") && kind != QLatin1String("values")) {
        return arguments.wrong(
            QStringLiteral("--kind: \"%1\" is none of events, alarms, history, values").arg(kind));
    }
    if (!hasTexts && arguments.isSet(textOption)) {
        return arguments.wrong(QStringLiteral("--text: measured values have none"));
    }
    for (const QString &option : {fromOption, toOption}) {
        if (arguments.isSet(option) && !moment(arguments.value(option), false)) {
            return arguments.wrong(
                QStringLiteral("--%1: \"%2\" is no time").arg(option, arguments.value(option)));
        }
    }
    if (arguments.value(outputOption).isEmpty()) {
        return arguments.wrong(QStringLiteral("--output is missing"));
    }
    return isSameFile(recordOf(arguments.positional(1)), arguments.value(outputOption))
               ? std::optional(arguments.wrong(QStringLiteral("the record would be written over")))
               : std::nullopt;
}

int record(const Arguments &arguments)
{
    const QString path = recordOf(arguments.positional(1));
    if (arguments.positional(0) == backupAction) {
        return backUp(path, arguments.positional(2));
    }
    return arguments.positional(0) == checkAction ? checkFile(path) : exportRecord(arguments, path);
}

} // namespace ktr::cli
