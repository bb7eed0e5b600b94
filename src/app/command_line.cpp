#include "app/command_line.h"

#include <algorithm>
#include <initializer_list>

namespace ktr {

namespace {

bool isOption(const QString &word)
{
    return word.startsWith(u'-');
}

bool contains(const QString &word, const char *option)
{
    return word.contains(QLatin1String(option), Qt::CaseInsensitive);
}

bool isLoad(const QString &word)
{
    return isOption(word) && contains(word, "-load");
}

bool isOperational(const QString &word)
{
    return word.compare(u"-operational", Qt::CaseInsensitive) == 0 ||
           word.compare(u"--operational", Qt::CaseInsensitive) == 0;
}

/// Takes an option out of the words, and what stands behind it, which it gives.
QString takeValue(QStringList &words, const char *option, QStringList::iterator end)
{
    const auto is = [option](const QString &word) {
        const QString name = word.startsWith(u"--")  ? word.mid(2)
                             : word.startsWith(u'-') ? word.mid(1)
                                                     : QString();
        return name.compare(QLatin1String(option), Qt::CaseInsensitive) == 0;
    };
    const auto found = std::find_if(words.begin(), end, is);
    if (found == end) {
        return {};
    }
    const qsizetype at = found - words.begin();
    QString value = words.value(at + 1);
    words.remove(at, std::min(qsizetype{2}, words.size() - at));
    return value;
}

bool isOneOf(const QString &word, std::initializer_list<const char *> names)
{
    return std::ranges::any_of(names, [&word](const char *name) { return word == QLatin1String(name); });
}

bool isKnown(const QString &word)
{
    const auto known = {"-design", "-debug", "-english", "-deutsch", "-expert"};
    return std::ranges::any_of(known, [&word](const char *option) { return contains(word, option); });
}

} // namespace

CommandLine CommandLine::parse(const QStringList &arguments)
{
    CommandLine options;
    QStringList words = arguments;
    options.operationalMode =
        words.removeIf(isOperational) > 0; // otherwise it would be part of the file name
    options.record = takeValue(words, "record", words.end());
    options.language = takeValue(words, "language", std::ranges::find_if(words, isLoad)); // no file's name
    options.takeWords(words);

    // Character by character, so that positions are the same in both spellings.
    QString written = words.join(u' ');
    QString line = written;
    for (QChar &c : line) {
        c = c.toLower();
    }
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

    const QLatin1String load("-load");
    const qsizetype at = options.bareFileName.isEmpty() ? line.indexOf(load) : -1;
    if (at >= 0) {
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

/// Everything after "-load" is the file name, whatever it looks like.
void CommandLine::takeWords(const QStringList &words)
{
    const auto end = std::ranges::find_if(words, isLoad);
    for (auto word = words.begin(); word != end; ++word) {
        if (isOneOf(*word, {"--help", "-help", "-h"})) {
            help = true;
        } else if (isOneOf(*word, {"--version", "-version"})) {
            version = true;
        } else if (!isOption(*word) && end == words.end() && bareFileName.isEmpty()) {
            bareFileName = *word;
        } else if (!isOption(*word) || !isKnown(*word)) {
            notUnderstood += *word;
        }
    }
    const auto isNoOption = [](const QString &word) { return !isOption(word) || !isKnown(word); };
    loadTakesSeveralWords = end != words.end() && std::count_if(end + 1, words.end(), isNoOption) > 1;
}

QStringList CommandLine::withoutToolkitOptions(const QStringList &arguments)
{
    QStringList rest;
    for (auto word = arguments.begin(); word != arguments.end(); ++word) {
        const QString name = word->startsWith(u"--") ? word->mid(1) : *word;
        if (isOneOf(name, {"-platform", "-platformpluginpath", "-platformtheme", "-plugin",
                           "-qwindowgeometry", "-qwindowicon", "-qwindowtitle", "-geometry", "-icon",
                           "-title", "-name", "-display", "-session", "-style", "-stylesheet"})) {
            if (word + 1 != arguments.end()) {
                ++word; // its value
            }
        } else if (!isOneOf(name, {"-reverse", "-nograb", "-dograb", "-widgetcount"}) &&
                   !name.startsWith(u"-style=") && !name.startsWith(u"-stylesheet=")) {
            rest += *word;
        }
    }
    return rest;
}

QStringList CommandLine::remarks() const
{
    QStringList lines;
    for (const QString &word : notUnderstood) {
        lines += QLatin1String("not understood and left out: ") + word +
                 QLatin1String("; --help tells the options");
    }
    if (loadTakesSeveralWords) {
        lines += QLatin1String("what follows -load is taken as one name: ") + fileNameAsWritten;
    }
    return lines;
}

QString CommandLine::helpText()
{
    return QStringLiteral(
        "Usage: KTRconfig [OPTION...] [FILE]\n"
        "       KTRconfig [OPTION...] -load FILE\n"
        "\n"
        "Configures and watches telemetry modules.\n"
        "\n"
        "  FILE          the configuration to open, its name exactly as written\n"
        "  -load FILE    the same with the rest of the line, in lower case; a name that is not found is\n"
        "                looked for as written\n"
        "  -operational  opens the operational mode at once\n"
        "  -record ADDRESS  the operational mode's stations are those of this record on a server,\n"
        "                postgresql://[USER@][HOST[:PORT]]/DATABASE; otherwise those of the variable "
        "KTR_RECORD\n"
        "                or of what was chosen in the window last\n"
        "  -english      English texts in this run\n"
        "  -deutsch      German texts in this run\n"
        "  -language CODE  the texts of a language that was added, such as fr, in this run\n"
        "  -expert       lets the MAC address be edited\n"
        "  -debug        offers the debug option of the test page\n"
        "  --help, -h    tells this\n"
        "  --version     tells the version\n"
        "\n"
        "A word that is not understood is told on standard error and left out. Where no window can be\n"
        "opened, as without a display, the program tells why and ends with 1.\n");
}

} // namespace ktr
