#pragma once

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <optional>

namespace ktr::cli {

// Options that several commands have.
inline const QString jsonOption = QStringLiteral("json");
inline const QString stationOption = QStringLiteral("station");

// Options that several commands have.
inline const QString serialOption = QStringLiteral("serial");
inline const QString ethernetOption = QStringLiteral("ethernet");
inline const QString outputOption = QStringLiteral("output");
inline const QString anywayOption = QStringLiteral("anyway");
inline const QString changesOption = QStringLiteral("changes");
inline const QString resumeOption = QStringLiteral("resume");
inline const QString saveOption = QStringLiteral("save");
inline const QString timeoutOption = QStringLiteral("timeout");
inline const QString toOption = QStringLiteral("to");

/// The command line of one of ktrcli's commands: its options, and the named arguments it must have.
class Arguments
{
public:
    /// `names` are the positional arguments. All are required except those in brackets: "[LOG]". The last one
    /// may be given several times when it ends in dots: "FIELD...", "[FIELD...]".
    Arguments(const QString &command, const QStringList &names);

    /// What the help text says about the command.
    void setSummary(const QString &summary) { m_parser.setApplicationDescription(summary); }
    void addOption(const QCommandLineOption &option) { m_parser.addOption(option); }

    /// Parses the words after the command. Returns the exit code if there is nothing left to do: after the
    /// help text, or after a complaint about wrong usage.
    std::optional<int> parse(const QStringList &words);

    QString positional(int index) const { return m_parser.positionalArguments().value(index); }
    QStringList positionals() const { return m_parser.positionalArguments(); }
    bool isSet(const QString &option) const { return m_parser.isSet(option); }
    QString value(const QString &option) const { return m_parser.value(option); }
    /// Of one that may be given several times.
    QStringList values(const QString &option) const { return m_parser.values(option); }

    /// An option's whole number within lowest..highest; nothing, after a complaint, when it is not one.
    std::optional<int> number(const QString &option, int lowest, int highest) const;

    /// Complains and returns the exit code if the same file would be read and written, or written twice. The
    /// names are those of positional arguments or options.
    std::optional<int> distinctFiles(const QStringList &names) const;

    /// Complains about wrong usage of this command and returns the exit code.
    int wrong(const QString &message) const;

private:
    QString m_command;
    QStringList m_names;
    QCommandLineParser m_parser;
};

} // namespace ktr::cli
