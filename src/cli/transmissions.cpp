#include "cli/columns.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/memory_troubles.h"
#include "cli/receipts.h"
#include "cli/shared_record.h"
#include "link/conversation_log.h"
#include "platform/csv.h"
#include "platform/files.h"
#include "record/json_text.h"
#include "record/record_address.h"
#include "transmissions/held_configuration.h"
#include "transmissions/memory_place.h"
#include "transmissions/transmission_texts.h"
#include "transmissions/waiting_transmissions.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace ktr::cli {

namespace {

const QString sinceOption = QStringLiteral("since");
const QString olderOption = QStringLiteral("older-than");

const QString listAction = QStringLiteral("list");
const QString showAction = QStringLiteral("show");
const QString configurationExport = QStringLiteral("export");
const QString receiptExport = QStringLiteral("receipt");
const QString thinAction = QStringLiteral("thin");

QString actionOf(const Arguments &arguments)
{
    const QString action = arguments.positional(0);
    return action.isEmpty() ? listAction : action;
}

QString placeOf(const Arguments &arguments)
{
    return transmissionsPlace(arguments.value(recordOption), systemEnvironment());
}

/// A date, or a moment with or without an offset.
std::optional<qint64> momentOf(const QString &text)
{
    const QDate date = QDate::fromString(text, QStringLiteral("yyyy-MM-dd"));
    if (date.isValid()) {
        return date.startOfDay().toMSecsSinceEpoch();
    }
    const QDateTime time = QDateTime::fromString(text, Qt::ISODateWithMs);
    return time.isValid() ? std::optional(time.toMSecsSinceEpoch()) : std::nullopt;
}

/// The moment so long ago: "5y", "6m", "30d"; nothing for another text.
std::optional<qint64> ageOf(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("^([1-9][0-9]{0,4})([ymd])$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const int number = match.captured(1).toInt();
    const QDateTime now = QDateTime::currentDateTime();
    const QChar unit = match.captured(2).front();
    const QDateTime then = unit == u'y'   ? now.addYears(-number)
                           : unit == u'm' ? now.addMonths(-number)
                                          : now.addDays(-number);
    return then.isValid() ? std::optional(then.toMSecsSinceEpoch()) : std::nullopt;
}

std::optional<qint64> numberOf(const QString &text)
{
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber);
    return isNumber && number > 0 ? std::optional(number) : std::nullopt;
}

/// "2026-11-20T10:00:00+01:00"
QString isoTime(qint64 at)
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(at);
    return at == 0 ? QString() : time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODate);
}

Status writeCsv(const QString &path, const QList<TransmissionRow> &rows)
{
    QByteArray table =
        QByteArrayLiteral("n;begun;ended;station;version before;version sent;verdict;last step;"
                          "resume step;line;file;user;operator;program\r\n");
    for (const TransmissionRow &row : rows) {
        const QStringList cells{QString::number(row.id),
                                isoTime(row.begun),
                                isoTime(row.ended),
                                row.station,
                                row.versionBefore.value_or(QString()),
                                row.versionSent,
                                wordOf(row.verdict),
                                row.lastStep ? QString::number(*row.lastStep) : QString(),
                                row.resumeStep ? QString::number(*row.resumeStep) : QString(),
                                row.line,
                                row.file,
                                row.user,
                                row.operatorName,
                                row.program};
        table += csvLine(cells);
    }
    return replaceFile(path, csvMark + table);
}

/// A new memory has nothing to tell; it is not made for that.
bool isMissing(const QString &place)
{
    return !isServerAddress(place) && !QFileInfo::exists(place);
}

/// Without a table there are none.
int list(const Arguments &arguments, TransmissionTable *table)
{
    TransmissionFilter filter{.station = arguments.value(stationOption)};
    filter.since = momentOf(arguments.value(sinceOption)).value_or(0);
    QList<TransmissionRow> rows;
    const Status read = table != nullptr
                            ? table->find(filter, [&rows](const TransmissionRow &row) { rows += row; })
                            : Status::done();
    if (!read) {
        return fail(read.message());
    }
    if (arguments.isSet(outputOption)) {
        const QString path = arguments.value(outputOption);
        const Status written = writeCsv(path, rows);
        if (written) {
            print(QStringLiteral("%1 rows written to %2").arg(rows.size()).arg(path));
        }
        return written ? done : fail(written.message());
    }
    if (arguments.isSet(jsonOption)) {
        for (const TransmissionRow &row : rows) {
            print(jsonText(transmissionJson(row)));
        }
        return done;
    }
    QList<QStringList> lines{{QStringLiteral("N"), QStringLiteral("begun"), QStringLiteral("station"),
                              QStringLiteral("version"), QStringLiteral("outcome"), QStringLiteral("line"),
                              QStringLiteral("user"), QStringLiteral("file")}};
    for (const TransmissionRow &row : rows) {
        lines += QStringList{QString::number(row.id),
                             transmissionTime(row.begun),
                             logText(row.station),
                             logText(row.versionSent),
                             verdictText(row),
                             logText(row.line),
                             logText(row.operatorName.isEmpty() ? row.user : row.operatorName),
                             logText(row.file)};
    }
    if (rows.isEmpty()) {
        print(QStringLiteral("no transmissions"));
    } else {
        printTable(lines);
    }
    return done;
}

int show(const Arguments &arguments, const RememberedTransmission &transmission)
{
    if (arguments.isSet(jsonOption)) {
        print(jsonText(transmissionJson(transmission)));
        return done;
    }
    QList<QStringList> head;
    for (const auto &[name, value] : transmissionFacts(transmission)) {
        head += QStringList{name, value};
    }
    printTable(head);
    QList<QStringList> lines{{QStringLiteral("step"), QStringLiteral("outcome"), QStringLiteral("command")}};
    for (const TransmissionStepRow &step : transmission.steps) {
        const QString times = step.attempts > 1 ? QStringLiteral(", %1 times").arg(step.attempts) : QString();
        lines +=
            QStringList{QString::number(step.step), outcomeText(step.outcome) + times, logText(step.command)};
    }
    print(QString());
    printTable(lines);
    return done;
}

int receipt(const Arguments &arguments, const RememberedTransmission &transmission)
{
    const QString path = arguments.positional(2);
    if (const Status usable = checkReceiptFile(arguments, path); !usable) {
        return fail(usable.message());
    }
    const Status written = writeReceiptFile(path, arguments, transmission);
    if (!written) {
        return fail(written.message());
    }
    print(QStringLiteral("%1: the receipt of transmission %2").arg(path).arg(transmission.row.id));
    return done;
}

int exportConfiguration(const Arguments &arguments, const TransmissionRow &row)
{
    const QString path = arguments.positional(2);
    if (const Status usable = mayBeOverwritten(arguments, path); !usable) {
        return fail(usable.message());
    }
    if (const Status written = exportTransmission(row, path); !written) {
        return fail(written.message());
    }
    if (lacksPin(row)) {
        complain(QStringLiteral("the PIN of the SIM is not in it: a record on a server does not keep it"));
    }
    print(QStringLiteral("%1: the configuration of transmission %2").arg(path).arg(row.id));
    return done;
}

int thin(const Arguments &arguments, TransmissionTable &table)
{
    qint64 removed = 0;
    const Status thinned = table.thin(*ageOf(arguments.value(olderOption)), removed);
    if (!thinned) {
        return fail(thinned.message());
    }
    print(
        QStringLiteral("%1 transmissions removed; the newest whole one of each station stays").arg(removed));
    return done;
}

} // namespace

void describeTransmissions(Arguments &arguments)
{
    arguments.setSummary(QStringLiteral(
        "What was transmitted from here to which module, the newest first: the main window and \"ktrcli "
        "transmit\" remember each transmission in a file of this user's (transmissions.sqlite), or in the "
        "record on a server where there is one.\n\n"
        "  transmissions                     lists them\n"
        "  transmissions show N              one, with each command and what became of it\n"
        "  transmissions export N FILE.xml   writes the configuration as it was sent\n"
        "  transmissions receipt N FILE       writes a receipt, as FILE.pdf or FILE.json\n"
        "  transmissions thin --older-than 5y\n"
        "                                    removes old ones; the newest whole one of each station stays"));
    addMemoryOption(arguments);
    addLanguageOption(arguments);
    addOverwriteOption(arguments);
    const auto add = [&](const QString &name, const char *description, const char *value) {
        arguments.addOption(QCommandLineOption(name, QLatin1String(description), QLatin1String(value)));
    };
    add(stationOption, "Of the station with this identifier alone.", "ID");
    add(sinceOption, "From this time on: 2026-11-20 or 2026-11-20T10:00:00, with or without an offset.",
        "TIME");
    add(olderOption, "What began longer ago: so many years, months or days (5y, 6m, 30d).", "AGE");
    arguments.addOption({jsonOption, QStringLiteral("As JSON, a line for each transmission.")});
    arguments.addOption({{QStringLiteral("o"), outputOption},
                         QStringLiteral("Writes the list as a CSV file."),
                         QStringLiteral("OUT.csv")});
}

std::optional<int> checkTransmissions(const Arguments &arguments)
{
    const QString action = actionOf(arguments);
    const bool isList = action == listAction;
    const bool needsFile = action == configurationExport || action == receiptExport;
    const bool needsNumber = action == showAction || needsFile;
    if (!isList && !needsNumber && action != thinAction) {
        return arguments.wrong(
            QStringLiteral("\"%1\" is none of list, show, export, receipt, thin").arg(action));
    }
    const QString number = arguments.positional(1);
    if (needsNumber && !numberOf(number)) {
        return arguments.wrong(number.isEmpty()
                                   ? QStringLiteral("the number of the transmission is missing")
                                   : QStringLiteral("\"%1\" is no number of a transmission").arg(number));
    }
    const QString file = arguments.positional(2);
    if (needsFile && file.isEmpty()) {
        return arguments.wrong(QStringLiteral("the name of the file is missing"));
    }
    if (action == receiptExport) {
        if (const std::optional<int> code = checkReceipt(arguments, file)) {
            return code;
        }
    }
    const QString tooMuch = !needsNumber ? number : action == showAction ? file : QString();
    if (!tooMuch.isEmpty()) {
        return arguments.wrong(QStringLiteral("\"%1\" is too much").arg(tooMuch));
    }
    for (const QString &option : {stationOption, sinceOption, outputOption}) {
        if (arguments.isSet(option) && !isList) {
            return arguments.wrong(QStringLiteral("--%1 goes with the list only").arg(option));
        }
    }
    if (arguments.isSet(jsonOption) && !isList && action != showAction) {
        return arguments.wrong(QStringLiteral("--json goes with the list and show only"));
    }
    if (arguments.isSet(sinceOption) && !momentOf(arguments.value(sinceOption))) {
        return arguments.wrong(
            QStringLiteral("--since: \"%1\" is no time").arg(arguments.value(sinceOption)));
    }
    if (arguments.isSet(olderOption) != (action == thinAction)) {
        return arguments.wrong(action == thinAction ? QStringLiteral("--older-than is missing")
                                                    : QStringLiteral("--older-than goes with thin only"));
    }
    if (action == thinAction && !ageOf(arguments.value(olderOption))) {
        return arguments.wrong(QStringLiteral("--older-than: \"%1\" is no age such as 5y, 6m or 30d")
                                   .arg(arguments.value(olderOption)));
    }
    return checkRecordAddress(arguments, arguments.value(recordOption));
}

namespace {

void complainOf(const QStringList &damage)
{
    for (const QString &line : damage) {
        complain(line);
    }
}

/// Those of this user that wait for the server.
void bringWaiting(TransmissionTable &table)
{
    int count = 0;
    const Status brought = handOverWaiting(waitingTransmissionsPlace(systemEnvironment()), table, count);
    if (count > 0) {
        tellHandedOver(count);
    }
    if (!brought) {
        complain(brought.message());
    }
}

int act(const Arguments &arguments, const QString &place, RecordDatabase &database)
{
    const QString action = actionOf(arguments);
    const std::optional<qint64> number = numberOf(arguments.positional(1));
    const bool isNew = isMissing(place);
    if (!isNew) {
        QStringList damage;
        const Status opened = openForTransmissions(database, place, &damage);
        complainOf(damage);
        if (!opened) {
            return fail(opened.message());
        }
    }
    TransmissionTable table(database);
    if (isServerAddress(place)) {
        bringWaiting(table);
    }
    if (action == listAction) {
        return list(arguments, isNew ? nullptr : &table);
    }
    if (action == thinAction) {
        if (isNew) {
            print(QStringLiteral("no transmissions"));
            return done;
        }
        return thin(arguments, table);
    }
    std::optional<TransmissionRow> row;
    RememberedTransmission transmission;
    if (!isNew) {
        if (const Status read = table.read(*number, row, transmission.steps); !read) {
            return fail(read.message());
        }
    }
    if (!row) {
        return fail(QStringLiteral("%1: has no transmission %2").arg(place).arg(*number));
    }
    transmission.row = *row;
    return action == showAction      ? show(arguments, transmission)
           : action == receiptExport ? receipt(arguments, transmission)
                                     : exportConfiguration(arguments, *row);
}

} // namespace

int transmissions(const Arguments &arguments)
{
    const QString place = placeOf(arguments);
    RecordDatabase database;
    const int code = act(arguments, place, database);
    if (code == done || !database.isDamaged() || isServerAddress(place)) {
        return code;
    }
    QStringList damage;
    const Status mended = mendForTransmissions(database, place, damage);
    complainOf(damage);
    return mended ? act(arguments, place, database) : fail(mended.message());
}

} // namespace ktr::cli
