#include "cli/receipts.h"

#include "cli/commands.h"
#include "cli/console.h"
#include "lang/languages.h"
#include "lang/load_texts.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/output_check.h"
#include "printout/receipt.h"

#include <QFileInfo>
#include <QTranslator>

#include <algorithm>
#include <span>

namespace ktr::cli {

namespace {

const QString replaceOption = QStringLiteral("overwrite");

std::optional<AddedLanguage> added(const QString &language)
{
    return addedLanguage(language, programFolder());
}

} // namespace

void addLanguageOption(Arguments &arguments)
{
    arguments.addOption(
        {languageOption,
         QStringLiteral("The language of what is printed: english, deutsch or the code of one that was "
                        "added, such as fr (english)."),
         QStringLiteral("LANGUAGE"), QStringLiteral("english")});
}

std::optional<int> checkLanguage(const Arguments &arguments)
{
    const QString language = arguments.value(languageOption);
    const bool isKnown = language == u"english" || language == u"deutsch" || added(language).has_value();
    return isKnown ? std::nullopt
                   : std::optional(arguments.wrong(QStringLiteral("\"%1\" is no language").arg(language)));
}

void loadTitles(const Arguments &arguments, TextTable &texts)
{
    if (const std::optional<AddedLanguage> language = added(arguments.value(languageOption))) {
        if (QTranslator translator; translator.load(language->file)) {
            takeTexts(texts, translator);
        } else {
            complain(QStringLiteral("%1 cannot be read").arg(language->file));
        }
        return;
    }
    const LoadedTexts loaded =
        LoadTexts(texts, arguments.value(languageOption), deliveredFile(QStringLiteral("language.ini")));
    if (!loaded.message.isEmpty()) {
        complain(loaded.message);
        texts.fillEnglish();
    }
}

void useLanguage(const Arguments &arguments, Translations &translations)
{
    const QString language = arguments.value(languageOption);
    const std::optional<AddedLanguage> other = added(language);
    translations.use(language, other ? other->file : QString());
}

std::optional<int> checkReceipt(const Arguments &arguments, const QString &path)
{
    if (!isReceiptName(path)) {
        return arguments.wrong(
            QStringLiteral("a receipt is a PDF or JSON: \"%1\" ends neither in .pdf nor in .json").arg(path));
    }
    return checkLanguage(arguments);
}

void addOverwriteOption(Arguments &arguments)
{
    arguments.addOption({replaceOption, QStringLiteral("Replaces the file of a receipt or an export.")});
}

Status mayBeOverwritten(const Arguments &arguments, const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() && !arguments.isSet(replaceOption)
               ? fileFailure(path, QStringLiteral("exists already; --overwrite replaces it"))
               : Status::done();
}

Status checkReceiptFile(const Arguments &arguments, const QString &path)
{
    const Status isFree = mayBeOverwritten(arguments, path);
    return isFree ? checkOutputFile(path) : isFree;
}

Status writeReceiptFile(const QString &path, const Arguments &arguments,
                        const RememberedTransmission &transmission)
{
    TextTable texts;
    loadTitles(arguments, texts);
    Translations translations; // what is told on the terminal stays English
    useLanguage(arguments, translations);
    return writeReceipt(path, transmission, texts, systemEnvironment());
}

std::unique_ptr<QCoreApplication> applicationForReceipts(int &argc, char **argv)
{
    const std::span words(argv, static_cast<std::size_t>(argc));
    const bool draws = std::ranges::any_of(words, [](const char *word) {
        const QString given = QString::fromLocal8Bit(word);
        return given.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive) ||
               given.startsWith(QLatin1String("--receipts"));
    });
    return draws ? drawingApplication(argc, argv) : std::make_unique<QCoreApplication>(argc, argv);
}

} // namespace ktr::cli
