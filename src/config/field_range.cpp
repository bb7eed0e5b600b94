#include "config/field_range.h"

#include "platform/text_rules.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace ktr {

namespace {

QString end(double number)
{
    return numberText(number, QLocale::c());
}

QString inWords(const char *text)
{
    return QCoreApplication::translate("Fields", text);
}

bool isChoice(const QString &text, const Range &range)
{
    return std::ranges::all_of(text, isDecimalDigit) &&
           toWholeNumber(text, static_cast<int>(range.lowest), static_cast<int>(range.highest));
}

QString choiceFault(const QString &text, const Range &range)
{
    return isChoice(text, range) ? QString()
                                 : problemText(QT_TRANSLATE_NOOP("Problems", "is none of the choices"));
}

QString wholeNumberFault(const QString &text, const Range &range, Unit unit)
{
    const std::optional<double> number = toNumber(text);
    if (number && *number == std::floor(*number) && *number >= range.lowest && *number <= range.highest) {
        return {};
    }
    if (range.highest < Range::noEnd) {
        return problemText(QT_TRANSLATE_NOOP("Problems", "is no whole number from %1 to %2"))
            .arg(end(range.lowest), end(range.highest));
    }
    return unit == Unit::Minutes ? problemText(QT_TRANSLATE_NOOP("Problems", "is no whole number of minutes"))
                                 : problemText(QT_TRANSLATE_NOOP("Problems", "is no whole number from %1"))
                                       .arg(end(range.lowest));
}

QString numberFault(const QString &text, const Range &range)
{
    const std::optional<double> number = toNumber(text);
    if (!number) {
        return problemText(QT_TRANSLATE_NOOP("Problems", "is no number"));
    }
    if (range.outside != Range::Outside::IsAFault) {
        return {};
    }
    if (*number < range.lowest) {
        return problemText(QT_TRANSLATE_NOOP("Problems", "is below %1")).arg(end(range.lowest));
    }
    return *number > range.highest && range.highest < Range::noEnd
               ? problemText(QT_TRANSLATE_NOOP("Problems", "is above %1")).arg(end(range.highest))
               : QString();
}

} // namespace

QString Range::stored(const QString &text) const
{
    const double value = leadingNumber(text);
    if (outside != Outside::IsClamped || text.isEmpty() || (value >= lowest && value <= highest)) {
        return text;
    }
    return end(value < lowest ? lowest : highest);
}

QString Range::fault(const QString &text, Unit unit) const
{
    if (mayBeEmpty && text.isEmpty()) {
        return {};
    }
    switch (kind) {
    case Kind::Choice:
        return choiceFault(text, *this);
    case Kind::WholeNumber:
        return wholeNumberFault(text, *this, unit);
    case Kind::Number:
        break;
    }
    return numberFault(text, *this);
}

QString Range::words(Unit unit) const
{
    if (kind == Kind::Choice) {
        return {};
    }
    const bool isWhole = kind == Kind::WholeNumber;
    QString words;
    if (highest < noEnd) {
        words = inWords(isWhole ? QT_TRANSLATE_NOOP("Fields", "whole number from %1 to %2")
                                : QT_TRANSLATE_NOOP("Fields", "number from %1 to %2"))
                    .arg(end(lowest), end(highest));
    } else if (lowest > -noEnd) {
        words = inWords(isWhole ? QT_TRANSLATE_NOOP("Fields", "whole number from %1")
                                : QT_TRANSLATE_NOOP("Fields", "number from %1"))
                    .arg(end(lowest));
    } else {
        words = inWords(QT_TRANSLATE_NOOP("Fields", "number"));
    }
    switch (unit) {
    case Unit::None:
        return words;
    case Unit::Minutes:
        return words + inWords(QT_TRANSLATE_NOOP("Fields", ", in minutes"));
    case Unit::OfChannel:
        break;
    }
    return words + inWords(QT_TRANSLATE_NOOP("Fields", ", in the unit of the channel"));
}

QString problemText(const char *text)
{
    return QCoreApplication::translate("Problems", text);
}

} // namespace ktr
