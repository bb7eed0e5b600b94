#include "lang/load_texts.h"

#include "lang/text_table.h"
#include "platform/profile_file.h"

#include <QFileInfo>

namespace ktr {

QString languageFileMissing()
{
    return QStringLiteral("The File language.ini doesn't exists.\r\nUsing Standard Language (english).");
}

LoadedTexts LoadTexts(TextTable &table, const QString &language, const QString &path)
{
    if (!QFileInfo(path).isFile()) {
        table.fillEnglish();
        return {LoadedTexts::Source::BuiltIn, languageFileMissing()};
    }
    ProfileFile file;
    const Status read = file.load(path);
    takeTexts(table, file, language);
    if (!read) {
        return {LoadedTexts::Source::UnreadableFile, read.message()};
    }
    return {LoadedTexts::Source::File, QString()};
}

void takeTexts(TextTable &table, const ProfileFile &file, const QString &language)
{
    constexpr int longestText = 127;

    for (int number = 1; number <= TextTable::count; ++number) {
        const QString key = QLatin1String("Text") + QString::number(number);
        table.setText(number, file.value(language, key, longestText));
    }
}

} // namespace ktr
