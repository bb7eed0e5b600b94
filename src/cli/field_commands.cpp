#include "cli/commands.h"
#include "cli/console.h"
#include "cli/known_fields.h"
#include "cli/loading.h"
#include "config/fields_in_files.h"
#include "link/command_room.h"
#include "link/conversation_log.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace ktr::cli {

namespace {

const QString allOption = QStringLiteral("all");
const QString namesOption = QStringLiteral("names");
const QString secretsOption = QStringLiteral("secrets");
const QString alsoOption = QStringLiteral("also");

/// Those of the command line; nothing, after a complaint for each that is none.
std::optional<QList<NamedField>> wantedFields(const Arguments &arguments)
{
    QList<NamedField> fields;
    if (arguments.isSet(allOption)) {
        for (const NamedField &field : fieldNames().fields()) {
            if (!field.isWhole) {
                fields += field;
            }
        }
        return fields;
    }
    bool areAll = true;
    for (const QString &name : arguments.positionals().sliced(1)) {
        const FieldNames::Found found = fieldNames().find(name);
        if (found.field == nullptr) {
            complain(found.complaint);
            areAll = false;
        } else {
            fields += *found.field;
        }
    }
    return areAll ? std::optional(fields) : std::nullopt;
}

std::optional<QList<FieldAssignment>> assignments(const Arguments &arguments)
{
    QList<FieldAssignment> wanted;
    bool areAll = true;
    for (const QString &word : arguments.positionals().sliced(1)) {
        const qsizetype sign = word.indexOf(u'=');
        const FieldNames::Found found = fieldNames().find(word.first(sign));
        if (found.field == nullptr) {
            complain(found.complaint);
            areAll = false;
        } else if (found.field->isStamp) {
            complain(QStringLiteral("%1 is written by every edit").arg(found.field->path()));
            areAll = false;
        } else {
            wanted += {*found.field, word.sliced(sign + 1)};
        }
    }
    return areAll ? std::optional(wanted) : std::nullopt;
}

} // namespace

void describeGet(Arguments &arguments)
{
    arguments.setSummary(QStringLiteral(
        "Tells the values of fields of the configuration FILE, a line each. A FIELD is named as in the file "
        "(\"Grenzwert3 Alarm\", entries counted from 0) or as on the pages in English or German (\"LV "
        "4/Notification\", \"GW 4/Meldung\", entries counted from 1); the label alone is enough where there "
        "is "
        "only one. The PIN is masked."));
    arguments.addOption({allOption, QStringLiteral("Lists all fields as page/entry/label = value.")});
    arguments.addOption({jsonOption, QStringLiteral("Prints a JSON array.")});
    arguments.addOption(
        {namesOption, QStringLiteral("Lists the names of all fields, which a shell completes; "
                                     "goes without FILE.")});
    arguments.addOption({secretsOption, QStringLiteral("Tells the PIN.")});
}

std::optional<int> checkGet(const Arguments &arguments)
{
    if (arguments.isSet(namesOption)) {
        return arguments.positionals().isEmpty()
                   ? std::nullopt
                   : std::optional(arguments.wrong(QStringLiteral("--names goes without FILE")));
    }
    if (arguments.positionals().isEmpty()) {
        return arguments.wrong(QStringLiteral("FILE is missing"));
    }
    const bool namesAny = arguments.positionals().size() > 1;
    if (arguments.isSet(allOption) == namesAny) {
        return arguments.wrong(namesAny ? QStringLiteral("--all goes without FIELD")
                                        : QStringLiteral("FIELD is missing, or --all"));
    }
    return wantedFields(arguments) ? std::nullopt : std::optional(wrongUsage);
}

int get(const Arguments &arguments)
{
    if (arguments.isSet(namesOption)) {
        for (const QString &name : fieldNames().all()) {
            print(name);
        }
        return done;
    }
    Document document(systemEnvironment());
    if (!load(document, arguments.positional(0))) {
        return failed;
    }
    const bool showsSecrets = arguments.isSet(secretsOption);
    QJsonArray objects;
    const QList<NamedField> fields = *wantedFields(arguments);
    for (const NamedField &field : fields) {
        const QString held = fieldValue(document.configuration(), field.key);
        const QString value = showsSecrets ? held : shownValue(field, held);
        if (arguments.isSet(jsonOption)) {
            objects += QJsonObject{{QStringLiteral("place"), field.key},
                                   {QStringLiteral("page"), field.page},
                                   {QStringLiteral("entry"), field.entry},
                                   {QStringLiteral("field"), field.label},
                                   {QStringLiteral("value"), value}};
        } else {
            const bool isListed = arguments.isSet(allOption);
            print((isListed ? field.path() + QLatin1String(" = ") : QString()) + logText(value));
        }
    }
    if (arguments.isSet(jsonOption)) {
        print(QString::fromUtf8(QJsonDocument(objects).toJson(QJsonDocument::Compact)));
    }
    return done;
}

void describeSet(Arguments &arguments)
{
    arguments.setSummary(QStringLiteral(
        "Sets fields of the configuration FILE, which are named as for \"get\", and saves it. A value passes "
        "the field's own rule and check; a faulty one is refused with the range, and then nothing is saved. "
        "The configuration is stamped as by an edit in the window. \"ktrcli set a.xml --also b.xml --also "
        "c.xml FIELD=VALUE\" sets it in several files: in all or, where a value is faulty, in none."));
    arguments.addOption({alsoOption, QStringLiteral("Another file."), QStringLiteral("FILE")});
    arguments.addOption(
        {toOption, QStringLiteral("Saves it as OUT instead. What stands there already is kept as OUT~."),
         QStringLiteral("OUT")});
    arguments.addOption({anywayOption, QStringLiteral("Stores faulty values, too.")});
}

std::optional<int> checkSet(const Arguments &arguments)
{
    for (const QString &word : arguments.positionals().sliced(1)) {
        if (word.indexOf(u'=') <= 0) {
            return arguments.wrong(QStringLiteral("\"%1\" is not of the form FIELD=VALUE").arg(word));
        }
    }
    if (arguments.isSet(toOption) && arguments.isSet(alsoOption)) {
        return arguments.wrong(QStringLiteral("--to goes with one file only"));
    }
    return assignments(arguments) ? std::nullopt : std::optional(wrongUsage);
}

int set(const Arguments &arguments)
{
    FieldsInFiles fields(systemEnvironment(), *assignments(arguments), roomCheck(),
                         arguments.isSet(anywayOption));
    bool areSound = true;
    for (const QString &file : arguments.positionals().first(1) + arguments.values(alsoOption)) {
        areSound = fields.add(file) && areSound;
    }
    const Status saved = areSound ? fields.save(arguments.value(toOption))
                                  : Status::failed(QStringLiteral("nothing was saved"));
    for (const QString &line : fields.told()) {
        complain(logText(line));
    }
    if (!saved) {
        return fail(saved.message());
    }
    for (const QString &change : fields.changes()) {
        print(logText(change));
    }
    return done;
}

} // namespace ktr::cli
