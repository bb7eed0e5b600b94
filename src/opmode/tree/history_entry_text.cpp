#include "opmode/tree/history_entry_text.h"

#include "platform/module_minutes.h"
#include "platform/text_rules.h"

#include <QDate>

namespace ktr {

namespace {

/// A number that is all digits; -1 where it is none.
int digits(QStringView text)
{
    constexpr qsizetype most = 4;
    if (text.isEmpty() || text.size() > most) {
        return -1;
    }
    int number = 0;
    for (const QChar c : text) {
        if (!isDecimalDigit(c)) {
            return -1;
        }
        number = number * 10 + (c.unicode() - u'0');
    }
    return number;
}

std::optional<qint32> minuteOf(QStringView stamp)
{
    constexpr QStringView form = u"DD.MM.YYYY HH:MM";
    if (stamp.size() != form.size() || stamp[2] != u'.' || stamp[5] != u'.' || stamp[10] != u' ' ||
        stamp[13] != u':') {
        return std::nullopt;
    }
    const int year = digits(stamp.mid(6, 4));
    const QDate date(year, digits(stamp.mid(3, 2)), digits(stamp.first(2)));
    const int hour = digits(stamp.mid(11, 2));
    const int minute = digits(stamp.mid(14, 2));
    if (year < 2000 || year > 2099 || !date.isValid() || hour < 0 || hour > 23 || minute < 0 || minute > 59) {
        return std::nullopt;
    }
    return static_cast<qint32>(moduleMinutes(date, hour, minute));
}

} // namespace

std::optional<HistoryEntryText> splitHistoryEntry(QStringView text)
{
    constexpr QStringView behindTime = u" : IP";
    constexpr QStringView behindInput = u" = ";
    const qsizetype first = text.indexOf(behindTime);
    const qsizetype second = first < 0 ? -1 : text.indexOf(behindInput, first + behindTime.size());
    if (second < 0) {
        return std::nullopt;
    }
    const qsizetype inputAt = first + behindTime.size();
    HistoryEntryText entry{{},
                           text.first(first),
                           digits(text.sliced(inputAt, second - inputAt)),
                           text.sliced(second + behindInput.size())};
    entry.minute = minuteOf(entry.time);
    if (entry.input < 0 || (!entry.minute && entry.time != u"?")) {
        return std::nullopt;
    }
    return entry;
}

} // namespace ktr
