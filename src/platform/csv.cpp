#include "platform/csv.h"

#include "platform/text_rules.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ktr {

namespace {

/// The full-width forms count as well: East Asian editions of spreadsheets take them for the others.
constexpr QStringView formulaSigns = u"=+-@\uFF1D\uFF0B\uFF0D\uFF20";

bool isFormula(QStringView text)
{
    QStringView plain = text.trimmed();
    while (!plain.isEmpty() && plain.front().category() == QChar::Other_Format) { // nothing is seen of them
        plain = plain.sliced(1).trimmed();
    }
    return !plain.isEmpty() && formulaSigns.contains(plain.front()) &&
           (plain.front() != u'-' || !toNumber(plain));
}

bool isControl(QChar c)
{
    return c < u' ' || (c >= QChar(0x7F) && c <= QChar(0x9F)) || c == QChar::LineSeparator ||
           c == QChar::ParagraphSeparator;
}

/// A line ends with CR LF, LF or CR.
qsizetype endOfLine(QStringView text, qsizetype from)
{
    while (from < text.size() && text[from] != u'\n' && text[from] != u'\r') {
        ++from;
    }
    return from;
}

qsizetype behindEndOfLine(QStringView text, qsizetype end)
{
    const bool isPair = end + 1 < text.size() && text[end] == u'\r' && text[end + 1] == u'\n';
    return std::min(text.size(), end + (isPair ? 2 : 1));
}

/// The quoted cell that begins at a quotation mark: its text, and where it ends behind its closing mark. An
/// end of -1 when there is no such mark.
std::pair<QString, qsizetype> quoted(QStringView text, qsizetype at)
{
    QString cell;
    for (++at; at < text.size(); ++at) {
        if (text[at] == u'"' && (at + 1 >= text.size() || text[at + 1] != u'"')) {
            return {cell, at + 1};
        }
        cell += text[at];
        at += text[at] == u'"' ? 1 : 0;
    }
    return {{}, -1};
}

/// Whether nothing but blanks follows in the cell.
bool isEndOfCell(QStringView text, qsizetype at, QChar separator)
{
    while (at < text.size() && text[at].isSpace() && text[at] != separator && text[at] != u'\n' &&
           text[at] != u'\r') {
        ++at;
    }
    return at >= text.size() || text[at] == separator || text[at] == u'\n' || text[at] == u'\r';
}

} // namespace

QString csvCell(const QString &text)
{
    QString cell = text;
    if (std::ranges::any_of(text, isControl)) { // most cells are not copied
        std::ranges::replace_if(cell, isControl, u' ');
    }
    const bool guarded = isFormula(cell);
    if (guarded || cell.contains(u';') || cell.contains(u'"')) {
        cell.replace(u'"', QLatin1String("\"\""));
        cell = (guarded ? QStringView(u"\"'") : QStringView(u"\"")) + cell + u'"';
    }
    return cell;
}

QString csvValue(const QString &text)
{
    return toNumber(text) ? text : csvCell(text);
}

QByteArray csvLine(const QStringList &cells)
{
    QString line;
    constexpr qsizetype usual = 120;
    line.reserve(usual);
    for (const QString &cell : cells) {
        line += csvCell(cell);
        line += u';';
    }
    line.chop(1);
    return (line += QLatin1String("\r\n")).toUtf8();
}

QString csvNumber(double value)
{
    return csvNumber(numberText(value, QLocale::c()));
}

QString csvNumber(QStringView received)
{
    QString text = received.toString();
    if (toNumber(text)) {
        text = text.trimmed();
        text.replace(u'.', u',');
        if (text.startsWith(u'+')) {
            text.remove(0, 1);
        }
    }
    return text;
}

std::optional<int> readCsv(QStringView text, QChar separator,
                           const std::function<bool(const QStringList &cells, int line)> &take)
{
    std::optional<int> unbalanced;
    const auto note = [&unbalanced](int line) { unbalanced = unbalanced.value_or(line); };
    const auto isPart = [](QChar c) { return c != u'\n' && c != u'\r'; };
    bool anyClosed = true; // without a closing mark ahead, none is looked for again
    int line = 1;
    for (qsizetype at = 0; at < text.size();) {
        const int first = line;
        QStringList cells;
        bool isBlank = true;
        for (bool more = true; more;) {
            while (at < text.size() && text[at].isSpace() && isPart(text[at]) && text[at] != separator) {
                ++at;
            }
            QString cell;
            if (anyClosed && at < text.size() && text[at] == u'"') {
                const auto [content, end] = quoted(text, at);
                anyClosed = end >= 0;
                const int begin = line;
                if (!anyClosed) {
                    note(begin);
                } else {
                    const QStringView lines = text.sliced(at, end - at);
                    line += static_cast<int>(std::max(lines.count(u'\n'), lines.count(u'\r')));
                    cell = content;
                    at = end;
                    if (!isEndOfCell(text, at, separator)) {
                        note(begin);
                    }
                }
            }
            const qsizetype from = at;
            while (at < text.size() && isPart(text[at]) && text[at] != separator) {
                ++at;
            }
            cell += text.sliced(from, at - from);
            cells += cell.trimmed();
            more = at < text.size() && text[at] == separator;
            at += more ? 1 : 0;
            isBlank = isBlank && cells.constLast().isEmpty();
        }
        at = behindEndOfLine(text, at);
        ++line;
        if (!isBlank && !take(cells, first)) {
            break;
        }
    }
    return unbalanced;
}

QChar csvSeparator(QStringView text)
{
    constexpr int lookedAt = 100;
    constexpr std::array<QChar, 3> candidates = {u'\t', u';', u','};
    std::array<int, 3> lines = {};
    qsizetype at = 0;
    for (int line = 0; line < lookedAt && at < text.size(); ++line) {
        const qsizetype end = endOfLine(text, at);
        std::array<bool, 3> found = {};
        bool isQuoted = false;
        for (const QChar c : text.sliced(at, end - at)) {
            isQuoted = isQuoted != (c == u'"');
            const auto which = std::ranges::find(candidates, c) - candidates.begin();
            if (!isQuoted && which < 3) {
                found[static_cast<std::size_t>(which)] = true;
            }
        }
        for (std::size_t i = 0; i < found.size(); ++i) {
            lines[i] += found[i] ? 1 : 0;
        }
        at = behindEndOfLine(text, end);
    }
    return candidates[static_cast<std::size_t>(std::ranges::max_element(lines) - lines.begin())];
}

} // namespace ktr
