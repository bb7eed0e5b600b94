#include "cli/commands.h"
#include "cli/console.h"
#include "cli/known_fields.h"
#include "cli/loading.h"
#include "config/configuration_file.h"
#include "config/fields.h"
#include "link/command_room.h"
#include "link/conversation_log.h"
#include "platform/files.h"
#include "platform/table_file.h"
#include "platform/text_rules.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace ktr::cli {

namespace {

const QString nameOption = QStringLiteral("name");
const QString overwriteOption = QStringLiteral("overwrite");

const QString numberPlaceholder = QStringLiteral("n");
const QString usualPattern = QStringLiteral("KTR_{Stationskennung}");
// What tells stations apart.
const QString identifierKey = QStringLiteral("Stationskennung");
const QString addressKey = QStringLiteral("Ethernet IP");
const QString macKey = QStringLiteral("Ethernet MAC");
const QString suffix = QStringLiteral(".xml");

/// A placeholder of a pattern with its braces.
const QRegularExpression &placeholder()
{
    static const QRegularExpression braces(QStringLiteral("\\{([^{}]*)\\}"));
    return braces;
}

/// A text as part of a file's name on all systems.
QString fileNamePart(QString text)
{
    constexpr QStringView forbidden = u"/\\:*?\"<>|";
    std::ranges::replace_if(
        text, [forbidden](QChar c) { return forbidden.contains(c) || c.category() == QChar::Other_Control; },
        u'_');
    return text.trimmed();
}

/// The configurations that a template and a table make, a row each.
class Series
{
public:
    Series(const Arguments &arguments, Configuration pattern)
        : m_arguments(arguments),
          m_template(std::move(pattern)),
          m_folder(arguments.value(toOption)),
          m_pattern(arguments.value(nameOption))
    {}

    /// Reads the table and looks at all of it; complains about each fault and counts them.
    int check()
    {
        if (const Status read = readTable(m_arguments.positional(1), m_table); !read) {
            fault(read.message());
            return m_faults;
        }
        takeTitles();
        checkPattern();
        if (m_faults == 0) {
            checkRows();
        }
        return m_faults;
    }

    /// Writes the files; the exit code.
    int write() const
    {
        if (!QDir().mkpath(m_folder)) {
            return fail(m_folder + QStringLiteral(": the folder cannot be made"));
        }
        int written = 0;
        for (const Made &made : m_made) {
            Document document(m_environment);
            document.restore(m_template, false);
            document.edit([&made](Configuration &configuration) { configuration = made.configuration; });
            document.setFileName(made.path);
            if (const Status saved = saveKeeping(document); !saved) {
                return fail(QStringLiteral("%1; written before: %2 of %3 files")
                                .arg(saved.message())
                                .arg(written)
                                .arg(m_made.size()));
            }
            print(document.fileName());
            ++written;
        }
        tellOfMacs();
        return done;
    }

private:
    struct Column
    {
        NamedField field;
        QString title;
    };
    /// A configuration of the series.
    struct Made
    {
        Configuration configuration;
        QString path;
    };
    struct Fault
    {
        QString title;
        QString value;
        QString text;
        bool isStored;
    };

    void fault(const QString &text)
    {
        complain(text);
        ++m_faults;
    }
    void fault(const Table::Row &row, const QString &text)
    {
        fault(QStringLiteral("row %1: %2").arg(row.line).arg(text));
    }

    void takeTitles()
    {
        for (const QString &title : m_table.titles) {
            const FieldNames::Found found = title.isEmpty() ? FieldNames::Found() : fieldNames().find(title);
            if (found.field == nullptr) {
                m_columns += {NamedField(), title};
                if (!title.isEmpty()) {
                    fault(QStringLiteral("column %1: %2").arg(m_columns.size()).arg(found.complaint));
                }
            } else if (found.field->isStamp) {
                fault(QStringLiteral("column %1: %2 is written by every edit")
                          .arg(m_columns.size() + 1)
                          .arg(found.field->path()));
                m_columns += {NamedField(), title};
            } else {
                const auto isSame = [&](const Column &other) { return other.field.key == found.field->key; };
                if (std::ranges::any_of(m_columns, isSame)) {
                    fault(QStringLiteral("column %1: %2 stands there twice")
                              .arg(m_columns.size() + 1)
                              .arg(found.field->path()));
                }
                m_columns += {*found.field, title};
            }
        }
    }

    void checkPattern()
    {
        for (auto all = placeholder().globalMatch(m_pattern); all.hasNext();) {
            const QString name = all.next().captured(1);
            const FieldNames::Found found = fieldNames().find(name);
            if (name != numberPlaceholder && found.field == nullptr) {
                fault(QStringLiteral("--name: ") + found.complaint);
            } else if (found.field != nullptr && found.field->isSecret) {
                fault(QStringLiteral("--name: the PIN is not to be seen in a file's name"));
            }
        }
    }

    /// What is wrong with the cells of a row. An empty cell leaves the template's value.
    QList<Fault> fill(Configuration &configuration, const Table::Row &row) const
    {
        QList<Fault> faults;
        QStringList keys;
        const qsizetype cells = std::min(row.cells.size(), m_columns.size());
        for (qsizetype at = 0; at < cells; ++at) {
            const Column &column = m_columns[at];
            if (row.cells[at].isEmpty() || column.field.key.isEmpty()) {
                continue;
            }
            const FieldSetting set = setFieldValue(configuration, column.field.key, row.cells[at],
                                                   m_arguments.isSet(anywayOption));
            if (!set.fault.isEmpty()) {
                const QString shown = column.field.isSecret ? QStringLiteral("****") : logText(row.cells[at]);
                faults += {column.title, shown, set.fault, set.isStored};
            }
            keys += column.field.key;
        }
        const auto tooLong = fieldsWithoutRoom(m_template, configuration, keys, {});
        for (qsizetype at = 0; at < cells; ++at) {
            const Column &column = m_columns[at];
            if (const QString fault = tooLong.value(column.field.key); !fault.isEmpty()) {
                const QString shown = column.field.isSecret ? QStringLiteral("****") : logText(row.cells[at]);
                faults += {column.title, shown, fault, m_arguments.isSet(anywayOption)};
            }
        }
        return faults;
    }

    QString pathOf(const Table::Row &row, const Configuration &configuration) const
    {
        QString name;
        qsizetype at = 0;
        for (auto all = placeholder().globalMatch(m_pattern); all.hasNext();) {
            const QRegularExpressionMatch match = all.next();
            name += QStringView(m_pattern).sliced(at, match.capturedStart() - at);
            at = match.capturedEnd();
            const QString title = match.captured(1);
            name += title == numberPlaceholder
                        ? QString::number(rowNumber(row))
                        : fileNamePart(fieldValue(configuration, fieldNames().find(title).field->key));
        }
        name += QStringView(m_pattern).sliced(at);
        name = fileNamePart(name);
        return QDir(m_folder).filePath(name.endsWith(suffix, Qt::CaseInsensitive) ? name : name + suffix);
    }

    qsizetype rowNumber(const Table::Row &row) const
    {
        return std::ranges::lower_bound(m_table.rows, row.line, {}, &Table::Row::line) -
               m_table.rows.begin() + 1;
    }

    void checkRows()
    {
        m_macs.insert(macOf(m_template));
        for (const Table::Row &row : m_table.rows) {
            Configuration given = m_template;
            (void)fill(given, row);
            m_macs.insert(macOf(given));
        }
        for (const Table::Row &row : m_table.rows) {
            const auto isFilled = [](const QString &cell) { return !cell.isEmpty(); };
            for (qsizetype at = 0; at < row.cells.size(); ++at) {
                const bool hasTitle = at < m_columns.size() && !m_columns[at].title.isEmpty();
                if (isFilled(row.cells[at]) && !hasTitle) {
                    fault(row, QStringLiteral("cell %1 has no title above it").arg(at + 1));
                }
            }
            Configuration configuration = m_template;
            for (const Fault &each : fill(configuration, row)) {
                const QString text =
                    QStringLiteral("%1: %2%3").arg(each.title, quotedInRemark(each.value), each.text);
                if (each.isStored) { // as was asked for
                    complain(QStringLiteral("row %1: %2").arg(row.line).arg(text));
                } else {
                    fault(row, text);
                }
            }
            checkUnique(row, configuration);
            const QString path = pathOf(row, configuration);
            if (macOf(configuration) == macOf(m_template) && !givesMac(row)) {
                giveMac(configuration, path);
            }
            m_made += {configuration, pathOf(row, configuration)};
            checkFile(row, m_made.constLast().path);
        }
        tellOfCommon();
    }

    // MAC addresses

    static QString macOf(const Configuration &configuration)
    {
        return fieldValue(configuration, macKey).toUpper();
    }

    bool givesMac(const Table::Row &row) const
    {
        const qsizetype cells = std::min(row.cells.size(), m_columns.size());
        for (qsizetype at = 0; at < cells; ++at) {
            if (m_columns[at].field.key.startsWith(macKey) && !row.cells[at].isEmpty()) {
                return true;
            }
        }
        return false;
    }

    /// A station whose file is replaced keeps its address; any other gets one by chance, as by the menu's
    /// command for another station.
    void giveMac(Configuration &configuration, const QString &path)
    {
        Configuration before;
        const ReadReport report =
            QFileInfo::exists(path) ? readConfigurationFile(path, before, m_environment) : ReadReport();
        if (report.document && report.isConfiguration &&
            before.gsm.stationId == configuration.gsm.stationId && !m_macs.contains(macOf(before))) {
            (void)setFieldValue(configuration, macKey, macOf(before));
            ++m_keptMacs;
        } else {
            while (m_macs.contains(macOf(configuration))) {
                makeOtherMac(configuration.ethernet, m_environment);
            }
            ++m_newMacs;
        }
        m_macs.insert(macOf(configuration));
    }

    void tellOfMacs() const
    {
        if (m_newMacs > 0) {
            print(QStringLiteral("%1 of %2 files have a new MAC address, since the table gives them none")
                      .arg(m_newMacs)
                      .arg(m_made.size()));
        }
        if (m_keptMacs > 0) {
            print(QStringLiteral(
                      "%1 of %2 files keep the MAC address that the replaced file of their station has")
                      .arg(m_keptMacs)
                      .arg(m_made.size()));
        }
    }

    /// What tells stations apart and is the template's in several of them.
    void tellOfCommon() const
    {
        for (const QString &key : {identifierKey, addressKey}) {
            const QString value = fieldValue(m_template, key);
            const auto count = std::ranges::count_if(
                m_made, [&](const Made &made) { return fieldValue(made.configuration, key) == value; });
            if (count > 1 && !value.isEmpty()) {
                complain(QStringLiteral("%1 files have the template's %2, \"%3\"")
                             .arg(count)
                             .arg(fieldNames().find(key).field->path(), logText(value)));
            }
        }
    }

    /// What tells stations apart must not be in two rows.
    void checkUnique(const Table::Row &row, const Configuration &configuration)
    {
        for (const QString &key : {identifierKey, addressKey, macKey}) {
            const auto sets = [&key](const Column &column) { return column.field.key.startsWith(key); };
            const auto column = std::ranges::find_if(m_columns, sets);
            if (column == m_columns.end() || (key == macKey && !givesMac(row))) {
                continue;
            }
            const QString value = fieldValue(configuration, key);
            const int earlier = m_values.value({key, value}, 0);
            if (earlier == 0) {
                m_values.insert({key, value}, row.line);
                continue;
            }
            const QString text = QStringLiteral("%1: \"%2\" stands in row %3, too")
                                     .arg(column->title, logText(value))
                                     .arg(earlier);
            if (m_arguments.isSet(anywayOption)) {
                complain(QStringLiteral("row %1: %2").arg(row.line).arg(text));
            } else {
                fault(row, text);
            }
        }
    }

    void checkFile(const Table::Row &row, const QString &path)
    {
        const QFileInfo file(path);
        if (file.completeBaseName().isEmpty() || file.fileName().startsWith(u'.')) {
            fault(row, QStringLiteral("\"%1\" is no name for a file").arg(logText(file.fileName())));
        }
        const int earlier = m_values.value({QString(), path.toLower()}, 0);
        if (earlier != 0) {
            fault(row,
                  QStringLiteral("the file of row %1 has the same name, %2").arg(earlier).arg(logText(path)));
        }
        m_values.insert({QString(), path.toLower()}, row.line);
        if (file.exists() && !m_arguments.isSet(overwriteOption)) {
            fault(row, QStringLiteral("%1 exists already; --overwrite replaces it").arg(logText(path)));
        }
        if (isSameFile(path, m_arguments.positional(0)) || isSameFile(path, m_arguments.positional(1))) {
            fault(row, QStringLiteral("%1 is what the series is made from").arg(logText(path)));
        }
    }

    const Arguments &m_arguments;
    Environment m_environment = systemEnvironment();
    Configuration m_template;
    QString m_folder;
    QString m_pattern;
    Table m_table;
    QList<Column> m_columns;
    QList<Made> m_made;
    QSet<QString> m_macs; ///< that no further file is to get by chance
    int m_newMacs = 0;
    int m_keptMacs = 0;
    QHash<std::pair<QString, QString>, int>
        m_values; ///< the line in which a key, or a file, has a value first
    int m_faults = 0;
};

} // namespace

void describeSeries(Arguments &arguments)
{
    arguments.setSummary(QStringLiteral(
        "Makes a configuration of each row of TABLE: TEMPLATE with the row's values. The first row names the "
        "fields as \"get\" does, or as identifier, address, subnet, mac, pin, \"number 1\" to \"number 6\", "
        "\"name 1\" to \"name 6\". An empty cell leaves TEMPLATE's value, but for the MAC address: each file "
        "gets a new one unless the table gives it. When anything is wrong in the "
        "table, "
        "all of that is told and nothing is written."));
    arguments.addOption({toOption, QStringLiteral("The folder of the new files; made where it is missing."),
                         QStringLiteral("FOLDER")});
    arguments.addOption({nameOption,
                         QStringLiteral("The files' name; {FIELD} stands for a field's value, {n} for the "
                                        "number of the row (KTR_{Stationskennung})."),
                         QStringLiteral("PATTERN"), usualPattern});
    arguments.addOption(
        {overwriteOption, QStringLiteral("Replaces files that exist, keeping each as NAME~.")});
    arguments.addOption(
        {anywayOption, QStringLiteral("Takes faulty values and stations that are there twice.")});
}

std::optional<int> checkSeries(const Arguments &arguments)
{
    if (arguments.value(toOption).isEmpty()) {
        return arguments.wrong(QStringLiteral("--to is missing, the folder of the new files"));
    }
    return std::nullopt;
}

int series(const Arguments &arguments)
{
    Document document(systemEnvironment());
    if (!load(document, arguments.positional(0))) {
        return failed;
    }
    Series series(arguments, document.configuration());
    if (const int faults = series.check(); faults > 0) {
        return fail(faults == 1 ? QStringLiteral("1 fault: nothing was written")
                                : QStringLiteral("%1 faults: nothing was written").arg(faults));
    }
    return series.write();
}

} // namespace ktr::cli
