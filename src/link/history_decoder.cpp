#include "link/history_decoder.h"

#include "platform/module_minutes.h"
#include "platform/text_rules.h"

#include <QDate>

#include <optional>

namespace ktr {

namespace {

/// The fields of a line one after the other.
class Fields
{
public:
    explicit Fields(QStringView text) : m_text(text) {}

    /// Nothing after the last field.
    std::optional<QStringView> next()
    {
        if (m_at > m_text.size()) {
            return std::nullopt;
        }
        qsizetype end = m_text.indexOf(u',', m_at);
        end = end < 0 ? m_text.size() : end;
        const QStringView field = m_text.sliced(m_at, end - m_at);
        m_at = end + 1;
        return field;
    }

    /// Where the next field begins.
    qsizetype position() const { return qMin(m_at, m_text.size()); }

private:
    QStringView m_text;
    qsizetype m_at = 0;
};

/// The time within a line. It is counted as wall time: daylight saving neither repeats nor skips a minute.
class RunningTime
{
public:
    bool isKnown() const { return m_minutes >= 0; }

    bool start(QStringView stamp)
    {
        constexpr qsizetype digits = 10;
        const std::optional<qint64> number = stamp.size() == digits ? whole(stamp) : std::nullopt;
        if (!number) {
            return false;
        }
        const auto pair = [&number](qint64 unit) { return static_cast<int>(*number / unit % 100); };
        const QDate date(2000 + pair(100'000'000), pair(1'000'000), pair(10'000));
        const int hour = pair(100);
        const int minute = pair(1);
        if (!date.isValid() || hour > 23 || minute > 59) {
            return false;
        }
        m_minutes = moduleMinutes(date, hour, minute);
        return true;
    }

    bool add(QStringView minutes)
    {
        const bool back = minutes.startsWith(u'-');
        const std::optional<qint64> number = whole(back ? minutes.sliced(1) : minutes);
        if (!number) {
            return false;
        }
        const qint64 sum = m_minutes + (back ? -*number : *number);
        if (sum < 0 || sum >= days() * minutesPerDay) {
            return false;
        }
        m_minutes = sum;
        return true;
    }

    void forget() { m_minutes = -1; }

    QString text()
    {
        if (!isKnown()) {
            return {};
        }
        const qint64 day = m_minutes / minutesPerDay;
        if (day != m_day) { // most records are of the same day as the previous one
            m_day = day;
            m_text = firstModuleDay.addDays(day).toString(QStringLiteral("dd.MM.yyyy 00:00"));
        }
        const int minute = static_cast<int>(m_minutes % minutesPerDay);
        QString text(m_text.constData(), m_text.size());
        QChar *time = text.data() + text.size() - 5;
        time[0] = digit(minute / 600);
        time[1] = digit(minute / 60 % 10);
        time[3] = digit(minute % 60 / 10);
        time[4] = digit(minute % 10);
        return text;
    }

private:
    static qint64 days() { return firstModuleDay.daysTo(QDate(2100, 1, 1)); }
    static QChar digit(int value) { return QChar(char16_t(u'0' + value)); }

    /// A number of one to ten digits.
    static std::optional<qint64> whole(QStringView text)
    {
        constexpr qsizetype most = 10;
        if (text.isEmpty() || text.size() > most) {
            return std::nullopt;
        }
        qint64 number = 0;
        for (const QChar c : text) {
            if (!isDecimalDigit(c)) {
                return std::nullopt;
            }
            number = number * 10 + (c.unicode() - u'0');
        }
        return number;
    }

    qint64 m_minutes = -1; ///< since the first day
    qint64 m_day = -1;     ///< that m_text names
    QString m_text;
};

} // namespace

ArchiveLine decodeArchiveLine(QStringView text)
{
    ArchiveLine line;
    Fields fields(text);
    line.key = fields.next()->toString(); // there is always a first one
    RunningTime time;
    bool isFirst = true;
    bool timeLost = false;
    while (true) {
        const qsizetype start = fields.position();
        const auto moment = fields.next();
        const auto first = fields.next();
        const auto second = fields.next();
        if (!second) {
            const QStringView rest = text.sliced(start);
            // After a comma at the end there is nothing left to report.
            line.incomplete = rest.trimmed().isEmpty() ? QString() : rest.toString();
            return line;
        }
        const QStringView told = moment->trimmed();
        if (!timeLost && !(isFirst ? time.start(told) : time.add(told))) {
            timeLost = true;
            time.forget();
            line.badTime = moment->isEmpty() ? QStringLiteral("\"\"") : moment->toString();
        }
        isFirst = false;
        line.records.append({time.text(), first->toString(), second->toString().replace(u'.', u',')});
    }
}

} // namespace ktr
