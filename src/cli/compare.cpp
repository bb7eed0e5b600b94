#include "cli/commands.h"
#include "cli/console.h"
#include "cli/loading.h"
#include "config/comparison.h"
#include "config/fields.h"
#include "link/changes.h"
#include "link/conversation_log.h"
#include "platform/csv.h"
#include "simulator/held_form.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace ktr::cli {

namespace {

const QString heldOption = QStringLiteral("held");
const QString filesOption = QStringLiteral("files");
const QString asCommandsOption = QStringLiteral("commands");
const QString asCsvOption = QStringLiteral("csv");
const QString baseOption = QStringLiteral("base");
const QString mergeIntoOption = QStringLiteral("merge");

// With what a module holds

/// The configuration as a module holds it and a file of that reads: an empty text becomes its fall-back.
Configuration throughAModule(const Configuration &meant, const Environment &environment)
{
    Configuration expected;
    readConfiguration(writeConfiguration(asHeld(meant, environment.locale), environment), expected,
                      environment);
    return expected;
}

/// Fall-backs that depend on time or chance are the same for all files, so that they can be recognized.
Environment fixedEnvironment(double random)
{
    Environment environment = systemEnvironment();
    environment.now = [now = QDateTime::currentDateTime()] { return now; };
    environment.random = [random] { return random; };
    return environment;
}

/// Whether a file has nothing of what only people know: a virtual module wrote it, not the program.
bool isHeldForm(const Configuration &read)
{
    const auto isUnnamed = [index = 0](const Administrator &administrator) mutable {
        return administrator.name == QStringLiteral("Admin %1").arg(++index);
    };
    return read.info == FileInfo() && std::ranges::all_of(read.administrators, isUnnamed);
}

int compareWithHeld(const QString &fileName, const Configuration &held)
{
    const Environment environment = fixedEnvironment(0.0);
    Environment later = environment;
    later.now = [now = environment.now().addDays(1)] { return now; };
    later.random = [] { return 0.5; };
    Document meant(environment);
    Document meantLater(later);
    if (!load(meant, fileName)) {
        return failed;
    }
    meantLater.load(fileName);
    Configuration found = held;
    const Configuration expected = throughAModule(meant.configuration(), environment);
    takeWhatIsNeverSent(found, expected, throughAModule(meantLater.configuration(), environment));
    const QStringList lines = differences(expected, found, environment.locale);
    for (const QString &line : lines) {
        print(line);
    }
    if (lines.isEmpty()) {
        print(QStringLiteral("no difference: the module holds what %1 means").arg(fileName));
    }
    return lines.isEmpty() ? done : fail(QStringLiteral("%1 fields differ").arg(lines.size()));
}

// Two files

struct Compared
{
    Configuration mine;
    Configuration theirs;
    std::optional<Configuration> base;
    QLocale locale;
    QList<ComparedField> fields;
    QList<CommandDifference> commands;
};

QString changeName(ComparedField::Change change)
{
    using Change = ComparedField::Change;
    switch (change) {
    case Change::Unknown:
        return {};
    case Change::Mine:
        return QStringLiteral("file");
    case Change::Theirs:
        return QStringLiteral("other");
    case Change::Both:
        return QStringLiteral("both");
    case Change::Conflict:
        break;
    }
    return QStringLiteral("conflict");
}

QString shown(const QString &value)
{
    return value.trimmed().isEmpty() ? QStringLiteral("–") : logText(value);
}

QString placeWords(const ComparedField &field)
{
    QStringList parts{field.page, field.entry, field.label};
    parts.removeAll(QString());
    return parts.join(QLatin1String(", "));
}

void printFields(const QList<ComparedField> &fields)
{
    for (const ComparedField &field : fields) {
        const QString change = changeName(field.change);
        const QString values = change.isEmpty()
                                   ? QStringLiteral("%1 -> %2").arg(shown(field.mine), shown(field.theirs))
                                   : QStringLiteral("base %1, file %2, other %3")
                                         .arg(shown(field.base), shown(field.mine), shown(field.theirs));
        print((change.isEmpty() ? QString() : change + u'\t') + (field.isStamp ? u"stamp\t" : u"") +
              placeWords(field) + QLatin1String(": ") + values);
    }
}

void printCommands(const QList<CommandDifference> &commands)
{
    for (const CommandDifference &difference : commands) {
        const QString step = QString::number(difference.step);
        if (difference.mine) {
            print(step + u"\t- " + logText(*difference.mine));
        }
        if (difference.theirs) {
            print(step + u"\t+ " + logText(*difference.theirs));
        }
    }
}

void printCsv(const Compared &compared, bool withCommands)
{
    const auto row = [](const QStringList &cells) {
        print(QString::fromUtf8(csvLine(cells)).chopped(2)); // its end is printed
    };
    if (withCommands) {
        row({QStringLiteral("step"), QStringLiteral("file"), QStringLiteral("other")});
        for (const CommandDifference &each : compared.commands) {
            row({QString::number(each.step), logText(each.mine.value_or(QString())),
                 logText(each.theirs.value_or(QString()))});
        }
        return;
    }
    row({QStringLiteral("page"), QStringLiteral("entry"), QStringLiteral("field"), QStringLiteral("base"),
         QStringLiteral("file"), QStringLiteral("other"), QStringLiteral("change"), QStringLiteral("stamp"),
         QStringLiteral("place")});
    for (const ComparedField &field : compared.fields) {
        row({field.page, field.entry, field.label, field.base, field.mine, field.theirs,
             changeName(field.change), field.isStamp ? QStringLiteral("1") : QStringLiteral("0"), field.key});
    }
}

QJsonValue optionalText(const std::optional<QString> &text)
{
    return text ? QJsonValue(logText(*text)) : QJsonValue();
}

void printJson(const Compared &compared, bool withCommands)
{
    QJsonArray fields;
    for (const ComparedField &field : compared.fields) {
        QJsonObject object{{QStringLiteral("page"), field.page},    {QStringLiteral("entry"), field.entry},
                           {QStringLiteral("field"), field.label},  {QStringLiteral("file"), field.mine},
                           {QStringLiteral("other"), field.theirs}, {QStringLiteral("stamp"), field.isStamp},
                           {QStringLiteral("place"), field.key}};
        if (field.change != ComparedField::Change::Unknown) {
            object[QStringLiteral("base")] = field.base;
            object[QStringLiteral("change")] = changeName(field.change);
        }
        fields += object;
    }
    QJsonObject result{{QStringLiteral("fields"), fields}};
    if (withCommands) {
        QJsonArray commands;
        for (const CommandDifference &each : compared.commands) {
            commands += QJsonObject{{QStringLiteral("step"), each.step},
                                    {QStringLiteral("file"), optionalText(each.mine)},
                                    {QStringLiteral("other"), optionalText(each.theirs)}};
        }
        result[QStringLiteral("commands")] = commands;
    }
    QString json;
    for (const QChar c : QString::fromUtf8(QJsonDocument(result).toJson(QJsonDocument::Compact))) {
        // JSON takes it, and a terminal obeys it.
        json += c.category() == QChar::Other_Control
                    ? QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'))
                    : QString(c);
    }
    print(json);
}

void printComparison(const Arguments &arguments, const Compared &compared)
{
    const bool withCommands = arguments.isSet(asCommandsOption);
    if (arguments.isSet(jsonOption)) {
        printJson(compared, withCommands);
    } else if (arguments.isSet(asCsvOption)) {
        printCsv(compared, withCommands);
    } else if (withCommands) {
        printCommands(compared.commands);
    } else {
        printFields(compared.fields);
    }
}

/// The result is stamped as a new edit, unless it is what one of the two was already.
int writeMerge(const Arguments &arguments, const Compared &compared, const Environment &environment)
{
    const TextTable texts;
    const ComparisonWords words{texts, compared.locale};
    const Merge merge = mergeConfigurations(compared.mine, compared.theirs, *compared.base, words);
    if (!merge.conflicts.isEmpty()) {
        printFields(merge.conflicts);
        return fail(merge.conflicts.size() == 1
                        ? QStringLiteral("1 conflict: nothing was written")
                        : QStringLiteral("%1 conflicts: nothing was written").arg(merge.conflicts.size()));
    }
    const auto isSame = [&](const Configuration &one) {
        return !differInMoreThanStamps(compareConfigurations(one, merge.configuration, words));
    };
    Document document(environment);
    if (isSame(compared.mine)) {
        document.restore(compared.mine, true);
    } else if (isSame(compared.theirs)) {
        document.restore(compared.theirs, true);
    } else {
        document.edit([&merge](Configuration &configuration) { configuration = merge.configuration; });
    }
    document.setFileName(arguments.value(mergeIntoOption));
    const Status saved = document.save();
    return saved ? done : fail(saved.message());
}

int compareFiles(const Arguments &arguments)
{
    const Environment environment = fixedEnvironment(systemEnvironment().random());
    const auto read = [&environment](const QString &fileName) -> std::optional<Configuration> {
        Document document(environment);
        return load(document, fileName) ? std::optional(document.configuration()) : std::nullopt;
    };
    const auto mine = read(arguments.positional(0));
    const auto theirs = mine ? read(arguments.positional(1)) : std::nullopt;
    const bool hasBase = arguments.isSet(baseOption);
    const auto base = theirs && hasBase ? read(arguments.value(baseOption)) : std::nullopt;
    if (!theirs || (hasBase && !base)) {
        return failed;
    }
    Compared compared{*mine, *theirs, base, environment.locale, {}, {}};
    if (arguments.isSet(mergeIntoOption)) {
        return writeMerge(arguments, compared, environment);
    }
    const TextTable texts;
    const ComparisonWords words{texts, compared.locale};
    compared.fields = base ? compareConfigurations(*mine, *theirs, *base, words)
                           : compareConfigurations(*mine, *theirs, words);
    compared.commands = commandDifferences(*mine, *theirs, {false, compared.locale, environment.now()});
    printComparison(arguments, compared);
    const QList<ComparedField> differing = compareConfigurations(*mine, *theirs, words);
    const auto count = std::ranges::count(differing, false, &ComparedField::isStamp);
    if (count > 0) {
        return fail(count == 1 ? QStringLiteral("1 field differs")
                               : QStringLiteral("%1 fields differ").arg(count));
    }
    if (!arguments.isSet(jsonOption) && !arguments.isSet(asCsvOption)) {
        print(differing.isEmpty() ? QStringLiteral("no difference")
                                  : QStringLiteral("no difference but the stamps"));
    }
    return done;
}

bool isAnySet(const Arguments &arguments, std::initializer_list<QString> options)
{
    return std::ranges::any_of(options, [&](const QString &option) { return arguments.isSet(option); });
}

} // namespace

void describeCompare(Arguments &arguments)
{
    arguments.setSummary(QStringLiteral(
        "Compares the configurations FILE and OTHER and prints a line for each field in which they differ: "
        "its page, entry and name, and both values. Stamps, which tell when a configuration was edited, are "
        "told and do not count. Exit codes: 0 the same, 1 different or unreadable, 2 wrong usage.\n\n"
        "Where OTHER was written by a virtual module (ktrcli simulate --save), the question is whether the "
        "module has what FILE means. Left out are then fields that are never sent, the start of switch "
        "points without a target, and what FILE leaves to time or chance."));
    arguments.addOption({filesOption, QStringLiteral("OTHER is a file like any other, whoever wrote it.")});
    arguments.addOption({heldOption, QStringLiteral("OTHER is what a module holds, whoever wrote it.")});
    arguments.addOption({asCommandsOption, QStringLiteral("Tells the commands of a transmission that differ, "
                                                          "by their steps, in place of the fields.")});
    arguments.addOption({jsonOption, QStringLiteral("Prints one JSON object.")});
    arguments.addOption({asCsvOption, QStringLiteral("Prints a table, separated by \";\".")});
    arguments.addOption({baseOption,
                         QStringLiteral("Tells who changed what since BASE, from which both were made: file, "
                                        "other, both (in the same way) or conflict."),
                         QStringLiteral("BASE")});
    arguments.addOption(
        {mergeIntoOption,
         QStringLiteral("With --base: writes what both made of it as OUT, stamped anew. Where "
                        "they are in conflict, that is told and nothing is written."),
         QStringLiteral("OUT")});
}

std::optional<int> checkCompare(const Arguments &arguments)
{
    if (arguments.isSet(mergeIntoOption) && !arguments.isSet(baseOption)) {
        return arguments.wrong(QStringLiteral("--merge needs --base"));
    }
    if (arguments.isSet(jsonOption) && arguments.isSet(asCsvOption)) {
        return arguments.wrong(QStringLiteral("--json and --csv exclude each other"));
    }
    if (arguments.isSet(mergeIntoOption) &&
        isAnySet(arguments, {asCommandsOption, jsonOption, asCsvOption})) {
        return arguments.wrong(QStringLiteral("--merge prints nothing but conflicts"));
    }
    if (arguments.isSet(heldOption) &&
        isAnySet(arguments, {filesOption, asCommandsOption, jsonOption, asCsvOption, baseOption})) {
        return arguments.wrong(QStringLiteral("--held goes with no other option"));
    }
    return std::nullopt;
}

int compare(const Arguments &arguments)
{
    if (isAnySet(arguments, {filesOption, asCommandsOption, jsonOption, asCsvOption, baseOption})) {
        return compareFiles(arguments);
    }
    Document held(fixedEnvironment(0.0));
    held.restore(Configuration(), false); // as a module's memory begins: without the values of "new"
    const ReadReport report = held.load(arguments.positional(1));
    const bool isHeld = arguments.isSet(heldOption) ||
                        (report.document && report.isConfiguration && isHeldForm(held.configuration()));
    if (!isHeld) {
        return compareFiles(arguments); // which also tells what is wrong with the file
    }
    if (!load(held, arguments.positional(1))) {
        return failed;
    }
    return compareWithHeld(arguments.positional(0), held.configuration());
}

} // namespace ktr::cli
