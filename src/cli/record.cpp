#include "cli/commands.h"
#include "cli/console.h"
#include "cli/record_table.h"
#include "opmode/keeping/list_record.h"
#include "opmode/keeping/list_replay.h"
#include "opmode/list_loader.h"
#include "platform/files.h"
#include "record/record_address.h"
#include "record/record_care.h"
#include "record/record_reader.h"
#include "record/record_writer.h"

#include <QDateTime>
#include <QFileInfo>

namespace ktr::cli {

namespace {

const QString kindOption = QStringLiteral("kind");
const QString fromOption = QStringLiteral("from");
const QString textOption = QStringLiteral("text");

/// The record that is meant: a list of stations stands for the one beside it.
QString recordOf(const QString &path)
{
    return path.endsWith(QLatin1String(".xml"), Qt::CaseInsensitive) ? ListRecord::pathFor(path) : path;
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
    qint64 bytes = QFileInfo(path).size();
    if (isServerAddress(path)) {
        (void)RecordReader(path).size(bytes);
    }
    print(QStringLiteral("tables of version %1, %2 bytes").arg(found.schema).arg(bytes));
    for (const auto &[table, count] : found.rows) {
        print(QStringLiteral("  %1 %2").arg(table.leftJustified(16)).arg(count));
    }
    for (const QString &fault : found.faults) {
        complain(path + QLatin1String(": ") + fault);
    }
    if (!found.faults.isEmpty()) {
        return fail(path + QLatin1String(": damaged"));
    }
    if (found.schema > found.newest) {
        return fail(path +
                    QLatin1String(": sound, but of a newer version of the program, which alone opens it"));
    }
    if (found.schema < found.newest) {
        print(QStringLiteral("of an older version; the tables are brought forward when a list is opened"));
    }
    print(QStringLiteral("sound"));
    return done;
}

int exportRecord(const Arguments &arguments, const QString &path)
{
    const RecordChoice choice{moment(arguments.value(fromOption), false).value_or(0),
                              moment(arguments.value(toOption), true).value_or(0),
                              arguments.value(textOption), arguments.value(stationOption)};
    qint64 rows = 0;
    const Status done =
        writeRecordTable(path, arguments.value(kindOption), choice, arguments.value(outputOption), rows);
    if (!done) {
        return fail(done.message());
    }
    print(QStringLiteral("%1 rows written to %2").arg(rows).arg(arguments.value(outputOption)));
    return cli::done;
}

int makeRecord(const QString &address)
{
    const Status made = initRecord(address);
    if (!made) {
        return fail(made.message());
    }
    print(address + QLatin1String(": has its tables"));
    return cli::done;
}

/// Stations that the record has, by their names, stay as they are there.
int importStations(const QString &address, const QString &list)
{
    if (!isServerAddress(address)) {
        return fail(
            address +
            QLatin1String(": is no address of a database server; a record in a file follows its list"));
    }
    NodesFile file(list);
    StationTree tree({});
    QHash<QString, StationAttributes> attributes;
    Status read = Status::done();
    {
        StationTreeLoader loader(tree);
        ListLoader stations(file, loader);
        read = stations.load();
        attributes = stations.takeAttributes();
        for (const QString &defect : stations.defects()) {
            complain(defect);
        }
    }
    QSet<QString> known;
    if (read) {
        read = RecordReader(address).stations([&](const StationRow &row) {
            if (row.listed) {
                known += row.name;
            }
        });
    }
    if (!read) {
        return fail(read.message());
    }
    const OpenedRecord opened = openRecord(address);
    if (!opened.status) {
        return fail(opened.status.message());
    }
    EventLoopTimers timers;
    RecordWriter writer(address, opened, timers, [](const QString &) {});
    qint64 number = opened.lastAlarm;
    std::vector<RecordRow> rows;
    for (int row = 0; row < tree.rowCount(); ++row) {
        const QString name = tree.index(row, 0).data(StationTree::KeyRole).toString();
        if (!known.contains(name)) {
            const StationRow station{++number, name, true, toJson(attributes.value(name))};
            rows.emplace_back(station);
            rows.emplace_back(EventRow{.at = QDateTime::currentMSecsSinceEpoch(),
                                       .station = station.id,
                                       .kind = EventKind::StationAdded,
                                       .text = name,
                                       .detail = station.attributes});
        }
    }
    const std::size_t added = rows.size() / 2;
    if (const Status written = writer.commit(std::move(rows)); !written) {
        return fail(written.message());
    }
    print(QStringLiteral("%1: stations added: %2, there already: %3")
              .arg(address)
              .arg(added)
              .arg(static_cast<std::size_t>(tree.rowCount()) - added));
    return done;
}

const QString importAction = QStringLiteral("import");
const QString initAction = QStringLiteral("init");
const QString backupAction = QStringLiteral("backup");
const QString checkAction = QStringLiteral("check");
const QString exportAction = QStringLiteral("export");

} // namespace

void describeRecord(Arguments &arguments)
{
    arguments.setSummary(QStringLiteral(
        "What stations said and operators did, from RECORD (or from the record beside a list, nodes.xml), "
        "also while it is in use.\n\n"
        "RECORD may stand in a PostgreSQL database: postgresql://[USER@][HOST[:PORT]]/DATABASE[?sslmode=…]; "
        "the "
        "password comes from its password file.\n\n"
        "  record init ADDRESS           makes the tables in such a database, or brings them forward\n"
        "  record import ADDRESS LIST    takes the stations of a list into it, with addresses and schedules\n"
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
    if (!QStringList{initAction, importAction, backupAction, checkAction, exportAction}.contains(action)) {
        return arguments.wrong(
            QStringLiteral("\"%1\" is none of init, import, backup, check, export").arg(action));
    }
    const bool hasTwo = action == backupAction || action == importAction;
    if (arguments.positional(2).isEmpty() == hasTwo) {
        return arguments.wrong(
            hasTwo ? QStringLiteral("the name of the %1 is missing")
                         .arg(action == backupAction ? QStringLiteral("copy") : QStringLiteral("list"))
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
    if (arguments.positional(0) == initAction) {
        return makeRecord(arguments.positional(1));
    }
    if (arguments.positional(0) == importAction) {
        return importStations(arguments.positional(1), arguments.positional(2));
    }
    const QString path = recordOf(arguments.positional(1));
    if (arguments.positional(0) == backupAction) {
        return backUp(path, arguments.positional(2));
    }
    return arguments.positional(0) == checkAction ? checkFile(path) : exportRecord(arguments, path);
}

} // namespace ktr::cli
