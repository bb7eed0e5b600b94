#pragma once

#include <QString>
#include <QStringList>

namespace ktr {

/// What the command line asks of the program. Options are found anywhere in it, whatever the case, as parts
/// of words too.
struct CommandLine
{
    bool design = false;
    bool debug = false;
    bool english = false;
    bool german = false; ///< wins over english
    bool expert = false;
    bool load = false;
    bool operationalMode = false; ///< "-operational": the operational mode is opened at once

    /// The file to load, lower-case as the whole line is read, with the blank that stands before an option
    /// that follows it. Meaningless without `load`.
    QString fileName;
    /// The same part of the line as it was written, for systems on which "a.xml" and "A.xml" are two files.
    QString fileNameAsWritten;

    static CommandLine parse(const QStringList &arguments);
};

} // namespace ktr
