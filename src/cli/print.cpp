#include "cli/commands.h"
#include "cli/console.h"
#include "cli/loading.h"
#include "lang/load_texts.h"
#include "platform/terminal.h"
#include "printout/printout.h"

#include <QGuiApplication>

namespace ktr::cli {

std::unique_ptr<QCoreApplication> drawingApplication(int &argc, char **argv)
{
    drawWithoutDisplay();
    return std::make_unique<QGuiApplication>(argc, argv);
}

void describePrintFile(Arguments &arguments)
{
    arguments.setSummary(
        QStringLiteral("Prints the configuration FILE into OUT.pdf, on A4. The PIN is masked."));
    arguments.addOption({QStringLiteral("all"),
                         QStringLiteral("Prints limit values and switch points that are not in use, too.")});
    arguments.addOption({QStringLiteral("language"),
                         QStringLiteral("The titles' language: english or deutsch (english)."),
                         QStringLiteral("LANGUAGE"), QStringLiteral("english")});
}

std::optional<int> checkPrintFile(const Arguments &arguments)
{
    const QString language = arguments.value(QStringLiteral("language"));
    if (language != QLatin1String("english") && language != QLatin1String("deutsch")) {
        return arguments.wrong(QStringLiteral("\"%1\" is no language").arg(language));
    }
    return arguments.distinctFiles({QStringLiteral("FILE"), QStringLiteral("OUT.pdf")});
}

int printFile(const Arguments &arguments)
{
    Document document(systemEnvironment());
    if (!load(document, arguments.positional(0))) {
        return failed;
    }
    TextTable texts;
    const LoadedTexts loaded = LoadTexts(texts, arguments.value(QStringLiteral("language")),
                                         deliveredFile(QStringLiteral("language.ini")));
    if (!loaded.message.isEmpty()) {
        complain(loaded.message);
        texts.fillEnglish();
    }
    const Environment &environment = document.environment();
    const PrintedEntries entries =
        arguments.isSet(QStringLiteral("all")) ? PrintedEntries::All : PrintedEntries::InUse;
    const Printout printout(document.configuration(), texts,
                            {document.fileName(), environment.locale, environment.now(), entries});
    const Status written = printout.writePdf(arguments.positional(1));
    return written ? done : fail(written.message());
}

} // namespace ktr::cli
