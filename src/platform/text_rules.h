#pragma once

// How texts become numbers and numbers texts, wherever the user, a file or the module brings them.

#include <QByteArray>
#include <QDateTime>
#include <QLocale>
#include <QString>

#include <optional>

namespace ktr {

/// The digits that numbers are written with here; other scripts' digits are none.
bool isDecimalDigit(QChar c);
bool isHexadecimalDigit(QChar c);

/// The number that a text begins with, 0 when it begins with none. Blanks are skipped wherever they
/// stand, the decimal separator is always "."; what follows the number is ignored ("12abc" is 12).
double leadingNumber(QStringView text);

/// Whether XML knows the character; a file that holds another cannot be read. Halves of characters are none.
constexpr bool isXmlCharacter(char32_t c)
{
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
           (c >= 0x10000 && c <= 0x10FFFF);
}

/// The number that the whole text is, blanks around it allowed. Both "." and "," count as the decimal
/// separator, so that a file written under another locale reads as it was meant; digit grouping is refused.
std::optional<double> toNumber(QStringView text);

/// As toNumber, rounded half to even; nothing when the result lies outside lowest..highest.
std::optional<int> toWholeNumber(QStringView text, int lowest, int highest);

/// A number in its general form: up to 15 significant digits, the locale's decimal separator, no grouping.
QString numberText(double value, const QLocale &locale);

/// Every "," becomes ".": the module separates fields by "," and knows the decimal point only.
QString withDecimalPoint(QString text);

/// "ö", "ä", "ü", "ß" become "oe", "ae", "ue", "ss", as the module's SMS texts need it; capitals stay.
QString withoutUmlauts(QString text);

/// A date as the user writes it: in the locale's order or forms, as day.month.year or as year-month-day, with
/// the month as a number or, in the locale's language, as a word. A year of two digits is one of this
/// century.
std::optional<QDate> toDate(const QString &text, const QLocale &locale);

/// The time that ten digits YYMMDDhhmm name, in this century. It is given as UTC, which has every hour of
/// every day: the module's clock knows no summer time.
std::optional<QDateTime> toMinute(const QString &text);

/// The bytes on the wire and in 8-bit files: Windows-1252, one byte a character. A character that has no
/// place there becomes "?". The five bytes that the code page leaves open stand for themselves.
QByteArray toWindows1252(QStringView text);
QString fromWindows1252(QByteArrayView bytes);

/// The text of a file: a byte-order mark tells of UTF-8, UTF-16 or UTF-32, otherwise it is Windows-1252.
/// What UTF-32 names beyond Unicode is replaced.
QString textOfFile(const QByteArray &bytes);

/// A text from outside as it is shown on one line: each run of line breaks and tabs becomes a blank; other
/// control characters and those that turn the direction of what follows are left out.
QString onOneLine(const QString &text);

/// Whether a character begins another line wherever it is shown; a tab does not.
bool isLineBreak(QChar c);

/// What is typed or pasted into a field of one line, as from a spreadsheet: line breaks and tabs at its end
/// are dropped, each run of those within it becomes a blank.
QString pastedLine(const QString &text);

/// At most `limit` code units of a text, and no half of a character at their end.
QString firstCharacters(const QString &text, qsizetype limit);

/// A text as a remark about it shows it: in quotes, followed by a blank; of a long one the beginning and "…".
QString quotedInRemark(const QString &text);

} // namespace ktr
