#pragma once

#include <QString>
#include <QStringList>

namespace ktr {

/// What the command line asks of the program. Options are found anywhere in it, whatever the case, as parts
/// of words too; those whose names are set in "quotes" below are words of their own.
struct CommandLine
{
    bool design = false;
    bool debug = false;
    bool english = false;
    bool german = false; ///< wins over english
    bool expert = false;
    bool load = false;
    bool operationalMode =
        false;            ///< "-operational", behind a file too: the operational mode is opened at once
    bool help = false;    ///< "--help", "-help" or "-h"
    bool version = false; ///< "--version" or "-version"

    /// The file to load, lower-case as the whole line is read, with the blank that stands before an option
    /// that follows it. Meaningless without `load`.
    QString fileName;
    /// The same part of the line as it was written, for systems on which "a.xml" and "A.xml" are two files.
    QString fileNameAsWritten;

    /// Without `load`: the file that the first word without a hyphen names, exactly as written.
    QString bareFileName;

    /// Words with a hyphen that are no options, and words without one that name no file to open.
    QStringList notUnderstood;
    /// Behind "-load" stands more than one word: all of them are one name.
    bool loadTakesSeveralWords = false;

    static CommandLine parse(const QStringList &arguments);

    /// A program's arguments without the options of the toolkit, which it takes out of them when it starts.
    static QStringList withoutToolkitOptions(const QStringList &arguments);

    /// What is to be told on the terminal, a line each.
    QStringList remarks() const;

    /// What "--help" answers.
    static QString helpText();

private:
    void takeWords(const QStringList &words);
};

} // namespace ktr
