#pragma once

#include "cli/arguments.h"
#include "lang/text_table.h"
#include "lang/translations.h"
#include "transmissions/transmission_memory.h"

#include <QCoreApplication>

#include <memory>
#include <optional>

namespace ktr::cli {

// The titles' language of what is printed.
void addLanguageOption(Arguments &arguments);
inline const QString languageOption = QStringLiteral("language");
std::optional<int> checkLanguage(const Arguments &arguments);
/// In English, after a complaint, where the texts of that language cannot be read.
void loadTitles(const Arguments &arguments, TextTable &texts);
/// Installs what is no title, for as long as it lives.
void useLanguage(const Arguments &arguments, Translations &translations);

/// Complains about a language that is none, or a name of neither a PDF nor JSON.
std::optional<int> checkReceipt(const Arguments &arguments, const QString &path);
/// Lets --overwrite replace a receipt, or another file, that is there.
void addOverwriteOption(Arguments &arguments);
/// Fails where the file exists, unless --overwrite is given.
Status mayBeOverwritten(const Arguments &arguments, const QString &path);
/// Before what the receipt is of: it fails also where no file of this name can be written.
Status checkReceiptFile(const Arguments &arguments, const QString &path);
Status writeReceiptFile(const QString &path, const Arguments &arguments,
                        const RememberedTransmission &transmission);

/// One that knows fonts where a PDF, or a folder for receipts, is named in the command line.
std::unique_ptr<QCoreApplication> applicationForReceipts(int &argc, char **argv);

} // namespace ktr::cli
