#pragma once

#include <QList>
#include <QLocale>
#include <QString>

#include <optional>

class QTranslator;

namespace ktr {

class TextTable;

/// A language beside English and German. All its texts, those of the text table included, stand in one file,
/// `ktrconfig_CODE.qm`, made of `ktrconfig_CODE.ts` by the toolkit's lrelease.
struct AddedLanguage
{
    QString code; ///< as the registry and the command line name it: "fr", "pt_BR"
    QString file;

    /// In the language itself, "Français"; the code where the system knows none of this code.
    QString name() const;
};

/// Those whose files stand in the folder `languages` of the program folder, or beside the executable; by
/// code.
QList<AddedLanguage> addedLanguages(const QString &programFolder);

/// Nothing for English, German and what is no language.
std::optional<AddedLanguage> addedLanguage(const QString &code, const QString &programFolder);

/// The language's own locale; `language` is its name in `language.ini`, or the code of an added one.
QLocale localeOf(const QString &language);
/// By which numbers and times are shown beside texts of a language: the system's where it speaks that
/// ("de_AT"), else the language's own, so that German texts have decimal commas on an English system.
QLocale shownLocale(const QString &language, const QLocale &system);

/// Fills the table with the texts of such a file; English is where it has none.
void takeTexts(TextTable &table, const QTranslator &texts);

} // namespace ktr
