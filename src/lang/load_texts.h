#pragma once

#include <QString>

namespace ktr {

class ProfileFile;
class TextTable;

/// Where a table's texts came from, and what the user is to be told about it.
struct LoadedTexts
{
    enum class Source {
        File,
        UnreadableFile, ///< it is there, but all texts are empty
        BuiltIn,        ///< there is no such file
    };

    Source source;
    QString message; ///< empty for a file that was read, languageFileMissing() for a missing one
};

/// The message to show in a box with an OK button whenever the file is missing; CR LF between its two lines.
QString languageFileMissing();

/// Fills the table with the section `language` of a profile file, "Text1" to "Text200", 127 characters of
/// each at most. A text or section that is missing there leaves empty texts. Without the file the built-in
/// English texts are used, and the numbers beyond them keep what they hold.
LoadedTexts LoadTexts(TextTable &table, const QString &language, const QString &path);

/// The same from a file that was read.
void takeTexts(TextTable &table, const ProfileFile &file, const QString &language);

} // namespace ktr
