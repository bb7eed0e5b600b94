#include "platform/text_rules.h"

#include <QRegularExpression>
#include <QStringConverter>

#include <algorithm>
#include <array>
#include <cfenv>
#include <cmath>

namespace ktr {

namespace {

// Bytes 0x80 to 0x9F; all others equal their code points.
constexpr std::array<char16_t, 32> upperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// Length of the number at the start of a text: sign, digits, one point, an exponent with digits.
qsizetype numberLength(QStringView text)
{
    qsizetype at = 0;
    const auto digits = [&] {
        const qsizetype before = at;
        while (at < text.size() && isDecimalDigit(text[at])) {
            ++at;
        }
        return at - before;
    };
    if (at < text.size() && (text[at] == u'-' || text[at] == u'+')) {
        ++at;
    }
    qsizetype mantissa = digits();
    if (at < text.size() && text[at] == u'.') {
        ++at;
        mantissa += digits();
    }
    if (mantissa == 0) {
        return 0;
    }
    const qsizetype withoutExponent = at;
    if (at < text.size() && (text[at] == u'e' || text[at] == u'E')) {
        ++at;
        if (at < text.size() && (text[at] == u'-' || text[at] == u'+')) {
            ++at;
        }
        if (digits() == 0) {
            at = withoutExponent;
        }
    }
    return at;
}

/// The number of a text that is nothing but a few digits, as most are; nothing of any other text.
std::optional<double> plainNumber(QStringView text)
{
    constexpr qsizetype mostDigits = 9;
    if (text.isEmpty() || text.size() > mostDigits) {
        return std::nullopt;
    }
    int number = 0;
    for (const QChar c : text) {
        if (!isDecimalDigit(c)) {
            return std::nullopt;
        }
        number = 10 * number + (c.unicode() - u'0');
    }
    return number;
}

} // namespace

bool isDecimalDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isHexadecimalDigit(QChar c)
{
    return isDecimalDigit(c) || (c.toUpper() >= u'A' && c.toUpper() <= u'F');
}

double leadingNumber(QStringView text)
{
    if (const auto plain = plainNumber(text)) {
        return *plain;
    }
    QString packed;
    packed.reserve(text.size());
    for (const QChar c : text) {
        if (c != u' ' && c != u'\t' && c != u'\n' && c != u'\r') {
            packed += c;
        }
    }
    const qsizetype length = numberLength(packed);
    return length == 0 ? 0.0 : QStringView(packed).left(length).toDouble();
}

std::optional<double> toNumber(QStringView text)
{
    if (const auto number = plainNumber(text)) {
        return number;
    }
    QString plain = text.trimmed().toString();
    plain.replace(u',', u'.');
    if (plain.isEmpty() || numberLength(plain) != plain.size()) {
        return std::nullopt;
    }
    bool ok = false;
    const double value = plain.toDouble(&ok);
    if (!ok || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::optional<int> toWholeNumber(QStringView text, int lowest, int highest)
{
    const std::optional<double> value = toNumber(text);
    if (!value) {
        return std::nullopt;
    }
    const double rounded = std::nearbyint(*value); // half to even in the default rounding mode
    if (rounded < lowest || rounded > highest) {
        return std::nullopt;
    }
    return static_cast<int>(rounded);
}

QString numberText(double value, const QLocale &locale)
{
    QString text = QString::number(value, 'G', 15);
    const QString point = locale.decimalPoint();
    if (point != QLatin1String(".")) {
        text.replace(QLatin1String("."), point);
    }
    return text;
}

QString withDecimalPoint(QString text)
{
    text.replace(u',', u'.');
    return text;
}

QString withoutUmlauts(QString text)
{
    if (std::ranges::all_of(text, [](QChar c) { return c < QChar(0x80); })) {
        return text;
    }
    text.replace(QStringLiteral("ö"), QStringLiteral("oe"));
    text.replace(QStringLiteral("ä"), QStringLiteral("ae"));
    text.replace(QStringLiteral("ü"), QStringLiteral("ue"));
    text.replace(QStringLiteral("ß"), QStringLiteral("ss"));
    return text;
}

namespace {

/// A year of two digits is one of this century: no module is older.
QDate inThisCentury(int year, int month, int day)
{
    return QDate(year < 100 ? 2000 + year : year, month, day);
}

/// Three numbers: with dots day.month.year, with the year first the other way round, else in the locale's
/// order, or day and month exchanged where that order makes no date.
std::optional<QDate> numericDate(const QString &text, const QLocale &locale)
{
    static const QRegularExpression form(
        QStringLiteral("^([0-9]{1,2}|[0-9]{4})\\s*([./-])\\s*([0-9]{1,2})\\s*\\2\\s*([0-9]{1,2}|[0-9]{4})$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const int first = match.captured(1).toInt();
    const int second = match.captured(3).toInt();
    const int third = match.captured(4).toInt();
    const QString order = locale.dateFormat(QLocale::ShortFormat);
    const bool dots = match.captured(2) == u".";
    const bool yearFirst = match.capturedLength(1) == 4 || (!dots && order.startsWith(u'y'));
    const bool monthFirst = !dots && order.indexOf(u'M') < order.indexOf(u'd');
    QDate date = yearFirst    ? inThisCentury(first, second, third)
                 : monthFirst ? inThisCentury(third, first, second)
                              : inThisCentury(third, second, first);
    if (!date.isValid() && monthFirst && !yearFirst) {
        date = inThisCentury(third, second, first);
    }
    return date.isValid() ? std::optional(date) : std::nullopt;
}

} // namespace

std::optional<QDate> toDate(const QString &text, const QLocale &locale)
{
    const QString plain = text.trimmed();
    if (const auto date = numericDate(plain, locale)) {
        return date;
    }
    const QStringList worded = {locale.dateFormat(QLocale::ShortFormat),
                                locale.dateFormat(QLocale::LongFormat),
                                QStringLiteral("d. MMMM yyyy"),
                                QStringLiteral("d MMMM yyyy"),
                                QStringLiteral("MMMM d, yyyy"),
                                QStringLiteral("d. MMM yyyy"),
                                QStringLiteral("d MMM yyyy"),
                                QStringLiteral("MMM d, yyyy")};
    for (const QString &format : worded) {
        const QDate date = locale.toDate(plain, format);
        if (date.isValid()) {
            const bool shortYear = format.count(u'y') <= 2;
            return inThisCentury(shortYear ? date.year() % 100 : date.year(), date.month(), date.day());
        }
    }
    return std::nullopt;
}

std::optional<QDateTime> toMinute(const QString &text)
{
    if (text.size() != 10 || !std::ranges::all_of(text, isDecimalDigit)) {
        return std::nullopt;
    }
    const QDate date(2000 + text.left(2).toInt(), text.mid(2, 2).toInt(), text.mid(4, 2).toInt());
    const QTime time(text.mid(6, 2).toInt(), text.mid(8, 2).toInt());
    return date.isValid() && time.isValid() ? std::optional(QDateTime(date, time, Qt::UTC)) : std::nullopt;
}

QByteArray toWindows1252(QStringView text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) {
            bytes += static_cast<char>(c);
            continue;
        }
        char byte = '?';
        for (std::size_t k = 0; k < upperControls.size(); ++k) {
            if (upperControls[k] == c) {
                byte = static_cast<char>(0x80 + k);
            }
        }
        bytes += byte;
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            ++i; // one character, one byte
        }
    }
    return bytes;
}

QString fromWindows1252(QByteArrayView bytes)
{
    QString text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        const bool upper = code >= 0x80 && code <= 0x9F;
        text += QChar(upper ? upperControls[code - 0x80U] : char16_t{code});
    }
    return text;
}

QString textOfFile(const QByteArray &bytes)
{
    const auto encoding = QStringConverter::encodingForData(bytes);
    const QString text = encoding ? QString(QStringDecoder(*encoding)(bytes)) : fromWindows1252(bytes);
    return text.isValidUtf16() ? text : QString::fromUtf8(text.toUtf8());
}

bool isLineBreak(QChar c)
{
    return (c >= u'\n' && c <= u'\r') || c == u'\x85' || c == QChar::LineSeparator ||
           c == QChar::ParagraphSeparator;
}

QString pastedLine(const QString &text)
{
    const auto breaks = [](QChar c) { return c == u'\t' || isLineBreak(c); };
    if (std::ranges::none_of(text, breaks)) {
        return text;
    }
    qsizetype end = text.size();
    while (end > 0 && breaks(text[end - 1])) {
        --end;
    }
    QString line;
    for (qsizetype at = 0; at < end; ++at) {
        if (!breaks(text[at])) {
            line += text[at];
        } else if (!breaks(text[at + 1])) { // the last one of a run
            line += u' ';
        }
    }
    return line;
}

QString onOneLine(const QString &text)
{
    const auto breaks = [](QChar c) { return c == u'\t' || isLineBreak(c); };
    const auto isUnseen = [](QChar c) {
        return c.category() == QChar::Other_Control || (c >= u'\u202A' && c <= u'\u202E') ||
               (c >= u'\u2066' && c <= u'\u2069');
    };
    if (std::ranges::none_of(text, [&](QChar c) { return breaks(c) || isUnseen(c); })) {
        return text;
    }
    QString line;
    bool wasBreak = false;
    for (const QChar c : text) {
        const bool isBreak = breaks(c);
        if (isBreak ? !wasBreak : !isUnseen(c)) {
            line += isBreak ? QChar(u' ') : c;
        }
        wasBreak = isBreak;
    }
    return line;
}

QString firstCharacters(const QString &text, qsizetype limit)
{
    QString first = text.left(std::max<qsizetype>(limit, 0));
    if (!first.isEmpty() && first.back().isHighSurrogate()) {
        first.chop(1);
    }
    return first;
}

QString quotedInRemark(const QString &text)
{
    constexpr qsizetype enough = 200;
    const QString shown = text.size() > enough ? firstCharacters(text, enough) + u'…' : text;
    return u'"' + onOneLine(shown) + QLatin1String("\" ");
}

} // namespace ktr
