#pragma once

#include <QString>
#include <QStringList>

namespace ktr {

/// What the command line asks for. Options are found anywhere in it, in any case, even as part of a word;
/// only those in "quotes" below must be words of their own.
struct CommandLine
{
    bool design = false;
    bool debug = false;
    bool english = false;
    bool german = false; ///< wins over english
    bool expert = false;
    bool load = false;
    bool operationalMode =
        false;            ///< "-operational", after a file name, too: opens the operational mode at once
    QString language{};   ///< "-language CODE": wins over the two above
    QString record{};     ///< "-record ADDRESS": the operational mode's stations are those of this record
    bool help = false;    ///< "--help", "-help" or "-h"
    bool version = false; ///< "--version" or "-version"

    /// The file to load, lower-case as the whole line is read, with the blank that stands before an option
    /// that follows it. Meaningless without `load`.
    QString fileName;
    /// The same part of the line as it was written, for systems on which "a.xml" and "A.xml" are two files.
    QString fileNameAsWritten;

    /// Without `load`: the file that the first word without a hyphen names, exactly as written.
    QString bareFileName;

    /// Words with a hyphen that are no options, and words without one that do not name a file.
    QStringList notUnderstood;
    /// There is more than one word after "-load"; together they are one name.
    bool loadTakesSeveralWords = false;

    /// Whether a file, a record or the operational mode is asked for.
    bool namesWork() const { return operationalMode || load || !record.isEmpty() || !bareFileName.isEmpty(); }

    static CommandLine parse(const QStringList &arguments);

    /// The arguments without the toolkit's own options, which it would remove when it starts.
    static QStringList withoutToolkitOptions(const QStringList &arguments);

    /// Remarks for the terminal, one in each line.
    QStringList remarks() const;

    /// The answer to "--help".
    static QString helpText();

private:
    void takeWords(const QStringList &words);
};

} // namespace ktr
