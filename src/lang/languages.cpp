#include "lang/languages.h"

#include "lang/text_table.h"
#include "platform/environment.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QTranslator>

namespace ktr {

namespace {

const QLatin1String prefix("ktrconfig_");

QDir languageFolder(const QString &programFolder)
{
    const QString name = QStringLiteral("languages");
    const QString own = joinPath(programFolder, name);
    return {QFileInfo(own).isDir() ? own : deliveredFile(name)};
}

} // namespace

QString AddedLanguage::name() const
{
    const QLocale locale(code);
    QString name = locale.language() == QLocale::C ? code : locale.nativeLanguageName();
    name.replace(0, 1, name.left(1).toUpper());
    return name;
}

QList<AddedLanguage> addedLanguages(const QString &programFolder)
{
    QList<AddedLanguage> found;
    const QStringList patterns{prefix + QStringLiteral("*.qm")};
    for (const QFileInfo &file :
         languageFolder(programFolder).entryInfoList(patterns, QDir::Files, QDir::Name)) {
        found += {file.completeBaseName().mid(prefix.size()), file.absoluteFilePath()};
    }
    return found;
}

std::optional<AddedLanguage> addedLanguage(const QString &code, const QString &programFolder)
{
    for (const AddedLanguage &language : addedLanguages(programFolder)) {
        if (language.code == code) {
            return language;
        }
    }
    return std::nullopt;
}

QLocale localeOf(const QString &language)
{
    return language == u"deutsch"   ? QLocale(QLocale::German)
           : language == u"english" ? QLocale(QLocale::English)
                                    : QLocale(language);
}

QLocale shownLocale(const QString &language, const QLocale &system)
{
    const QLocale own = localeOf(language);
    return own.language() == system.language() ? system : own;
}

void takeTexts(TextTable &table, const QTranslator &texts)
{
    table.fillEnglish();
    for (int number = 1; number <= TextTable::count; ++number) {
        const QByteArray place = "Text" + QByteArray::number(number);
        const QString text = texts.translate("language.ini", table.text(number).toUtf8(), place);
        if (!text.isEmpty()) {
            table.setText(number, text);
        }
    }
}

} // namespace ktr
