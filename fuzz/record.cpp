// Any rows in the tables of a record from elsewhere, whatever their columns may hold: an alien program or a
// careless hand made them. Taken up beside a list, followed and searched.
//
//     g s e n a h v f    a row of settings, stations, events, notifications, alarms, history, values or list
//     files, its columns between "="; "~" is NULL, "#3" a text of 3000 letters, digits are a number

#include "opmode/operational_mode.h"
#include "record/record_reader.h"
#include "record/schema.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"
#include "support/require.h"
#include "support/script.h"

#include <QTemporaryDir>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

const QByteArray document =
    "<items><item1 key=\"A\" text=\"A\" ForeColor=\"-2147483640\"/><item1 key=\"A/meldung\" "
    "text=\"N\" ForeColor=\"-2147483640\"/></items>";

const std::vector<std::pair<char, QString>> tables{
    {'g', u"setting"_s}, {'s', u"station"_s}, {'e', u"event"_s}, {'n', u"notification"_s},
    {'a', u"alarm"_s},   {'h', u"history"_s}, {'v', u"value"_s}, {'f', u"list_file"_s}};

/// A list and its record, whose tables take anything.
struct Place
{
    Place()
    {
        QFile file(nodes);
        fuzz::require(file.open(QIODevice::WriteOnly) && file.write(document) > 0, "the list is there");
        file.close();
        NodesFile list(nodes);
        const Status loaded =
            list.load([](const StoredNode &) { return true; }, [](std::size_t, std::size_t) {});
        fuzz::require(static_cast<bool>(loaded), "the list can be read");
        mark = listFileMark(list.checksum(), list.size());
        QStringList statements;
        {
            RecordDatabase strict;
            fuzz::require(strict.open(folder.filePath(u"strict"_s), RecordDatabase::Use::Create) &&
                              bringForward(strict),
                          "a record is made");
            QSqlQuery *query = strict.prepared(
                u"SELECT sql FROM sqlite_master WHERE sql IS NOT NULL AND name NOT LIKE 'event_text_%'"
                " AND name NOT LIKE 'sqlite%'"_s);
            fuzz::require(query != nullptr && strict.run(*query), "its tables are known");
            while (query->next()) {
                QString made = query->value(0).toString();
                if (made.startsWith(u"CREATE TABLE"_s)) {
                    made.remove(u" NOT NULL"_s).remove(u" WITHOUT ROWID"_s);
                }
                statements += made;
            }
        }
        Status made = database.open(record, RecordDatabase::Use::Create);
        if (made) {
            made = database.execute(statements);
        }
        fuzz::require(static_cast<bool>(made), qPrintable(made.message()));
        (void)database.execute(u"PRAGMA synchronous=OFF"_s);
    }

    QTemporaryDir folder{u"/dev/shm/fuzz_record-"_s};
    QString nodes = folder.filePath(u"nodes.xml"_s);
    QString record = ListRecord::pathFor(nodes);
    QString mark;
    RecordDatabase database;
};

QVariant columnOf(const QByteArray &bytes)
{
    bool isNumber = false;
    const qlonglong number = bytes.toLongLong(&isNumber);
    if (bytes == "~") {
        return {};
    }
    if (isNumber) {
        return number;
    }
    if (bytes.startsWith('#')) {
        return QString(1000 * bytes.mid(1).toInt() % 200'000, u'M');
    }
    return QString::fromUtf8(bytes);
}

void fill(Place &place, const std::vector<fuzz::Step> &steps)
{
    bool isDone = place.database.begin();
    for (const auto &[letter, table] : tables) {
        isDone = isDone && place.database.execute(u"DELETE FROM "_s + table);
    }
    fuzz::require(
        isDone &&
            place.database.execute(
                {u"INSERT INTO setting(name, value) VALUES('schema', '%1')"_s.arg(
                     newestSchema(place.database)),
                 u"INSERT INTO list_file(checksum, upto, written_at) VALUES('%1', 0, 0)"_s.arg(place.mark)}),
        "the tables are empty");
    for (const fuzz::Step &step : steps) {
        for (const auto &[letter, table] : tables) {
            if (letter != step.what) {
                continue;
            }
            const QByteArrayList columns = step.bytes.split('=');
            QSqlQuery *info =
                place.database.prepared(u"SELECT name FROM pragma_table_info('%1')"_s.arg(table));
            fuzz::require(info != nullptr && place.database.run(*info), "the columns are known");
            QStringList names;
            while (info->next() && names.size() < columns.size()) {
                names += info->value(0).toString();
            }
            info->finish();
            QSqlQuery *insert = place.database.prepared(u"INSERT OR IGNORE INTO %1(%2) VALUES(%3)"_s.arg(
                table, names.join(u','), QStringList(names.size(), u"?"_s).join(u',')));
            for (int i = 0; insert != nullptr && i < names.size(); ++i) {
                insert->bindValue(i, columnOf(columns[i]));
            }
            if (insert != nullptr) {
                (void)place.database.run(*insert);
            }
        }
    }
    fuzz::require(place.database.commit(), "the rows are there");
}

void search(const QString &path)
{
    RecordReader reader(path);
    for (const QString &text : {u""_s, u"M,"_s, u"fail"_s}) {
        EventFilter events;
        events.text = text;
        std::optional<RecordKey> next;
        for (int pages = 0; pages < 20; ++pages) {
            const EventPage page = reader.findEvents(events, next, 10);
            next = page.next;
            if (!page.status || !next) {
                break;
            }
        }
        AlarmFilter alarms;
        alarms.text = text;
        (void)reader.findAlarms(alarms, std::nullopt, 10);
    }
    AlarmFigures figures;
    (void)reader.alarmFigures(0, 1'000'000'000, 2'000'000'000, figures);
    QStringList names;
    (void)reader.operators(names);
    qint64 at = 0;
    (void)reader.lastOperatorChange(at);
    QHash<qint64, qint64> heard;
    (void)reader.lastHeard({1, 2}, heard);
    for (const HistoryLevel level : {HistoryLevel::Raw, HistoryLevel::Hour, HistoryLevel::Day}) {
        (void)reader.curve(1, 1, 0, 1'000'000'000'000, level, [](const HistoryPoint &) {});
    }
    (void)reader.values(1, 1, 0, 1'000'000'000'000, [](const ValueRow &) {});
}

void show(const Place &place)
{
    test::ManualTimers timers;
    OperationalMode mode({test::fixedEnvironment(), timers,
                          [] { return std::make_unique<test::RecordedLine>(); }, [] {},
                          test::manualCallbackTimers(timers)},
                         stationCaptions({}));
    const Status opened = mode.open(place.nodes, OperationalMode::Use::Look);
    fuzz::require(opened || !opened.message().isEmpty(), "what keeps it from being shown is told");
    mode.takeArrived();
    timers.advance(Milliseconds(1000));
    const QByteArray written =
        writeNodes(mode.tree().nodes(), [&mode](const QString &kennung) { return mode.attributes(kennung); });
    std::size_t nodes = 0;
    QStringList remarks;
    const Status read = readNodes(written, remarks, [&nodes](const StoredNode &) { ++nodes; });
    fuzz::require(read && remarks.isEmpty() && nodes == mode.tree().nodes().count(), "the tree can be saved");
    for (const auto &[id, alarm] : mode.alarms().standing()) {
        fuzz::require(mode.alarms().alarm(id) != nullptr && mode.entriesOf(alarm).size() >= 0, "it stands");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static Place place;
    fill(place, fuzz::stepsOf(data, size));
    show(place);
    search(place.record);
    return 0;
}
