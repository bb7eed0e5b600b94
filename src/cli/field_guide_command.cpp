#include "cli/commands.h"
#include "cli/console.h"
#include "cli/receipts.h"
#include "config/field_guide.h"
#include "lang/translations.h"

namespace ktr::cli {

namespace {

const QString pageOption = QStringLiteral("page");

} // namespace

void describeFields(Arguments &arguments)
{
    arguments.setSummary(QStringLiteral(
        "Tells all fields of a configuration as tables in Markdown, one for each page: what "
        "each means, what it may be, what \"new\" sets and where the file keeps it. The manual "
        "has its tables from here."));
    arguments.addOption(
        {pageOption,
         QStringLiteral("Only the table of this page: %1.").arg(guidePages().join(QLatin1String(", "))),
         QStringLiteral("PAGE")});
    addLanguageOption(arguments);
}

std::optional<int> checkFields(const Arguments &arguments)
{
    const QString page = arguments.value(pageOption);
    if (arguments.isSet(pageOption) && !guidePages().contains(page)) {
        return arguments.wrong(QStringLiteral("\"%1\" is no page with fields").arg(page));
    }
    return checkLanguage(arguments);
}

int fields(const Arguments &arguments)
{
    TextTable texts;
    loadTitles(arguments, texts);
    Translations translations;
    useLanguage(arguments, translations);
    if (arguments.isSet(pageOption)) {
        print(guideTable(arguments.value(pageOption), texts).trimmed());
        return done;
    }
    for (const QString &page : guidePages()) {
        print(QStringLiteral("<!-- %1 -->\n\n%2").arg(page, guideTable(page, texts)));
    }
    return done;
}

} // namespace ktr::cli
