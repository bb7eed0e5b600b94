#include "app/command_line.h"

namespace ktr {

CommandLine CommandLine::parse(const QStringList &arguments)
{
    // Character by character, so that both spellings keep the same positions.
    QString written = arguments.join(u' ');
    QString line = written;
    for (QChar &c : line) {
        c = c.toLower();
    }
    CommandLine options;
    const QLatin1String design("-design");
    for (qsizetype at = line.indexOf(design); at >= 0; at = line.indexOf(design)) {
        options.design = true;
        line.remove(at, design.size());
        written.remove(at, design.size());
    }
    const auto has = [&line](const char *option) { return line.contains(QLatin1String(option)); };
    options.debug = has("-debug");
    options.english = has("-english");
    options.german = has("-deutsch");
    options.expert = has("-expert");
    options.operationalMode = has("-operational");

    const QLatin1String load("-load");
    if (const qsizetype at = line.indexOf(load); at >= 0) {
        options.load = true;
        options.fileName = line.mid(at + load.size() + 1);
        // German is not cut off, and neither is the blank before an option.
        for (const char *option : {"-debug", "-expert", "-english"}) {
            const qsizetype end = options.fileName.indexOf(QLatin1String(option));
            options.fileName.truncate(end >= 0 ? end : options.fileName.size());
        }
        options.fileNameAsWritten = written.mid(at + load.size() + 1, options.fileName.size());
    }
    return options;
}

} // namespace ktr
