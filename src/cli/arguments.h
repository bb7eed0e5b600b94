#pragma once

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <optional>

namespace ktr::cli {

/// The command line of one of ktrcli's commands: its options, and the named arguments it must have.
class Arguments
{
public:
    /// `names` are the positional arguments, needed but for those in brackets: "[LOG]".
    Arguments(const QString &command, const QStringList &names);

    /// What the help text says of the command.
    void setSummary(const QString &summary) { m_parser.setApplicationDescription(summary); }
    void addOption(const QCommandLineOption &option) { m_parser.addOption(option); }

    /// Takes the words behind the command. Gives the exit code when there is nothing left to do: after the
    /// help text, or after a complaint about wrong usage.
    std::optional<int> parse(const QStringList &words);

    QString positional(int index) const { return m_parser.positionalArguments().value(index); }
    bool isSet(const QString &option) const { return m_parser.isSet(option); }
    QString value(const QString &option) const { return m_parser.value(option); }

    /// An option's whole number within lowest..highest; a complaint and nothing when it is none.
    std::optional<int> number(const QString &option, int lowest, int highest) const;

    /// The exit code after a complaint when a file would be written that is read, or written twice. Each name
    /// is that of a positional argument or of an option.
    std::optional<int> distinctFiles(const QStringList &names) const;

    /// A complaint about this command's usage and its exit code.
    int wrong(const QString &message) const;

private:
    QString m_command;
    QStringList m_names;
    QCommandLineParser m_parser;
};

} // namespace ktr::cli
