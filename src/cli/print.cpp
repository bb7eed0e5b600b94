#include "cli/commands.h"
#include "cli/console.h"
#include "cli/loading.h"
#include "cli/receipts.h"
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
    addLanguageOption(arguments);
}

std::optional<int> checkPrintFile(const Arguments &arguments)
{
    if (const std::optional<int> code = checkLanguage(arguments)) {
        return code;
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
    loadTitles(arguments, texts);
    Translations translations;
    useLanguage(arguments, translations);
    const Environment &environment = document.environment();
    const PrintedEntries entries =
        arguments.isSet(QStringLiteral("all")) ? PrintedEntries::All : PrintedEntries::InUse;
    const Printout printout(document.configuration(), texts,
                            {document.fileName(), environment.locale, environment.now(), entries});
    const Status written = printout.writePdf(arguments.positional(1));
    return written ? done : fail(written.message());
}

} // namespace ktr::cli
