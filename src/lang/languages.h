#pragma once

#include <QList>
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

/// Fills the table with the texts of such a file; English is where it has none.
void takeTexts(TextTable &table, const QTranslator &texts);

} // namespace ktr
