#include "link/module_text.h"

#include <QRegularExpression>
#include <QString>

#include <algorithm>
#include <array>

namespace ktr {

namespace {

const QString byItself = QStringLiteral("--> ");
const QString answer = QStringLiteral("<-- ");
/// Is part of what a module says when it cannot carry out a command.
const QString failWord = QStringLiteral("fail");

/// Calls `find` with each line, without the line feeds in front of it, until it returns a place in the line;
/// returns that place in `lines`.
template <class Find> qsizetype findInLines(QStringView lines, Find find)
{
    for (qsizetype at = 0; at < lines.size(); at += endOfLine(lines.sliced(at))) {
        while (at < lines.size() && lines[at] == u'\n') {
            ++at;
        }
        const QStringView line = lines.sliced(at, endOfLine(lines.sliced(at)));
        if (const qsizetype found = find(line); found >= 0) {
            return at + found;
        }
    }
    return -1;
}

bool beginsWithLetter(QStringView text, QStringView letters)
{
    return text.size() > 1 && letters.contains(text[0]) && text[1] == u',';
}

QStringView withoutLineFeed(QStringView line)
{
    return line.startsWith(u'\n') ? line.sliced(1) : line;
}

} // namespace

qsizetype endOfLine(QStringView lines)
{
    constexpr std::array<QChar, 2> ends{u'\r', u'\x1A'};
    const auto *end = std::ranges::find_first_of(lines, ends);
    return std::min<qsizetype>(end - lines.begin() + 1, lines.size());
}

QStringView withoutPrompt(QStringView line)
{
    while (line.startsWith(u' ') || line.startsWith(u'>')) {
        line = line.sliced(1);
    }
    return line;
}

std::optional<Direction> markerOf(QStringView line)
{
    line = withoutPrompt(line);
    if (line.startsWith(byItself)) {
        return Direction::ByItself;
    }
    return line.startsWith(answer) ? std::optional(Direction::Answer) : std::nullopt;
}

QStringView plainText(QStringView line)
{
    const QStringView text = withoutPrompt(line);
    return markerOf(text) ? withoutPrompt(text.sliced(byItself.size())) : text;
}

qsizetype leadingMarker(QStringView lines)
{
    return findInLines(lines, [](QStringView line) -> qsizetype {
        return markerOf(line) ? line.size() - withoutPrompt(line).size() : -1;
    });
}

qsizetype insideMarker(QStringView lines)
{
    return findInLines(lines, [](QStringView line) -> qsizetype {
        const qsizetype blank = markerOf(line) ? -1 : line.indexOf(QStringLiteral(" --> "));
        return blank < 0 ? -1 : blank + 1;
    });
}

bool isReport(QStringView line)
{
    return beginsWithLetter(plainText(withoutLineFeed(line)), reportLetters);
}

bool reportsFailure(QStringView line)
{
    return !isReport(line) && !beginsWithLetter(plainText(withoutLineFeed(line)), u"V") &&
           line.contains(failWord, Qt::CaseInsensitive);
}

QString namedInAnswer(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("(?:OK|%1): (.*)").arg(failWord));
    return form.match(text).captured(1);
}

} // namespace ktr
