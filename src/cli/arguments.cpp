#include "cli/arguments.h"

#include "cli/console.h"
#include "platform/files.h"

namespace ktr::cli {

Arguments::Arguments(const QString &command, const QStringList &names) : m_command(command), m_names(names)
{
    m_parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Shows this text.")});
    m_parser.addPositionalArgument(command, QString(), command);
    for (const QString &name : names) {
        m_parser.addPositionalArgument(name, QString(), name);
    }
}

std::optional<int> Arguments::parse(const QStringList &words)
{
    QStringList line{QStringLiteral("ktrcli")};
    for (const QString &word : words) { // with one hyphen, too
        line += word == QLatin1String("-help") ? QStringLiteral("--help") : word;
    }
    if (!m_parser.parse(line)) {
        return wrong(m_parser.errorText());
    }
    if (m_parser.isSet(QStringLiteral("help"))) {
        QString help = m_parser.helpText();
        help.replace(QLatin1String("[options] ") + m_command, m_command + QLatin1String(" [options]"));
        const qsizetype arguments = help.indexOf(QLatin1String("\nArguments:"));
        print(help.left(arguments < 0 ? help.size() : arguments).trimmed());
        return done;
    }
    const QStringList given = m_parser.positionalArguments();
    if (given.size() < m_names.size() && !m_names[given.size()].startsWith(u'[')) {
        return wrong(m_names[given.size()] + QLatin1String(" is missing"));
    }
    const bool isEndless = !m_names.isEmpty() && m_names.last().contains(QLatin1String("..."));
    if (given.size() > m_names.size() && !isEndless) {
        return wrong(QStringLiteral("\"%1\" is one argument too many").arg(given[m_names.size()]));
    }
    return std::nullopt;
}

std::optional<int> Arguments::number(const QString &option, int lowest, int highest) const
{
    bool ok = false;
    const int number = value(option).toInt(&ok);
    if (!ok || number < lowest || number > highest) {
        complain(QStringLiteral("--%1: \"%2\" is no whole number from %3 to %4")
                     .arg(option, value(option))
                     .arg(lowest)
                     .arg(highest));
        return std::nullopt;
    }
    return number;
}

std::optional<int> Arguments::distinctFiles(const QStringList &names) const
{
    const auto path = [this](const QString &name) {
        const qsizetype index = m_names.indexOf(name);
        return index < 0 ? value(name) : positional(static_cast<int>(index));
    };
    for (qsizetype i = 0; i < names.size(); ++i) {
        for (const QString &other : names.sliced(i + 1)) {
            if (isSameFile(path(names[i]), path(other))) {
                return wrong(QStringLiteral("%1 is named twice").arg(path(other)));
            }
        }
    }
    return std::nullopt;
}

int Arguments::wrong(const QString &message) const
{
    complain(QStringLiteral("%1: %2 (see ktrcli %1 --help)").arg(m_command, message));
    return wrongUsage;
}

} // namespace ktr::cli
