#include "cli/receipts.h"

#include "cli/commands.h"
#include "cli/console.h"
#include "lang/load_texts.h"
#include "lang/translations.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/output_check.h"
#include "printout/receipt.h"

#include <QFileInfo>

#include <algorithm>
#include <span>

namespace ktr::cli {

namespace {

const QString replaceOption = QStringLiteral("overwrite");

} // namespace

void addLanguageOption(Arguments &arguments)
{
    arguments.addOption({languageOption,
                         QStringLiteral("The language of what is printed: english or deutsch (english)."),
                         QStringLiteral("LANGUAGE"), QStringLiteral("english")});
}

std::optional<int> checkLanguage(const Arguments &arguments)
{
    const QString language = arguments.value(languageOption);
    return language == QLatin1String("english") || language == QLatin1String("deutsch")
               ? std::nullopt
               : std::optional(arguments.wrong(QStringLiteral("\"%1\" is no language").arg(language)));
}

void loadTitles(const Arguments &arguments, TextTable &texts)
{
    const LoadedTexts loaded =
        LoadTexts(texts, arguments.value(languageOption), deliveredFile(QStringLiteral("language.ini")));
    if (!loaded.message.isEmpty()) {
        complain(loaded.message);
        texts.fillEnglish();
    }
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
    translations.use(arguments.value(languageOption));
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
