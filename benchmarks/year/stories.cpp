#include "year/stories.h"

#include <QDateTime>

#include <array>

namespace ktr::year {

namespace {

using namespace Qt::StringLiterals;
using What = Step::What;

/// The same for the same numbers; those that follow each other differ from the first bit on.
quint64 mixed(quint64 a, quint64 b, quint64 c = 0)
{
    quint64 x = a * 0x9E37'79B9'7F4A'7C15ULL + b * 0xC2B2'AE3D'27D4'EB4FULL + c * 0x1656'67B1'9E37'79F9ULL;
    x = (x ^ (x >> 30)) * 0xBF58'476D'1CE4'E5B9ULL;
    x = (x ^ (x >> 27)) * 0x94D0'49BB'1331'11EBULL;
    return x ^ (x >> 31);
}

QString numberOf(qint64 station, int which)
{
    return u"+49170%1%2"_s.arg(which).arg(station, 5, 10, QChar(u'0'));
}

/// Tells a story step by step, and beside it what must be known of it.
class Telling
{
public:
    Telling(qint64 station, qint64 begin, quint64 chance)
        : m_station(station),
          m_at(begin),
          m_chance(chance),
          m_numbers{numberOf(station, 1), numberOf(station, 2)}
    {}

    void wait(qint64 time) { m_at += time; }

    void comes(const QString &text, int to = 0)
    {
        m_story.occurrences += {{.station = m_station,
                                 .kind = AlarmKind::Module,
                                 .text = text,
                                 .priority = 1,
                                 .first = m_at,
                                 .last = m_at,
                                 .count = 1,
                                 .recipients = {m_numbers[to]}},
                                1};
        say(text, to);
    }
    /// To a number that was told already, or to another one; `isCounted`: it came once more.
    void comesAgain(int to, bool isCounted)
    {
        Occurrence &occurrence = m_story.occurrences.last();
        AlarmRow &row = occurrence.row;
        row.count += isCounted ? 1 : 0;
        if (!row.recipients.contains(m_numbers[to])) {
            row.recipients += m_numbers[to];
        }
        row.last = m_at;
        row.over = 0;
        row.overWhy.clear();
        ++occurrence.told;
        say(row.text, to);
    }
    void isOver(const QString &text)
    {
        AlarmRow &row = m_story.occurrences.last().row;
        row.over = m_at;
        row.overWhy = text;
        say(text, 0);
    }
    /// The one before ends with one of the same text that comes after it was acknowledged.
    void endsWithTheNext()
    {
        AlarmRow &row = m_story.occurrences.last().row;
        row.over = m_at;
        row.overWhy = row.text;
    }
    void fallsSilent()
    {
        m_story.occurrences += {{.station = m_station,
                                 .kind = AlarmKind::Silent,
                                 .text = silenceText(),
                                 .priority = 2,
                                 .first = m_at,
                                 .last = m_at,
                                 .count = 1},
                                0};
        m_story.steps += {m_at, m_station, What::FallSilent, silenceText()};
    }
    void isHeard()
    {
        m_story.occurrences.last().row.over = m_at;
        m_story.steps += {m_at, m_station, What::IsHeard};
    }
    void comments(const QString &text)
    {
        AlarmRow &row = m_story.occurrences.last().row;
        row.comment = text;
        m_story.steps += {m_at, m_station, What::Comment, text, {}, by(), row.text};
    }
    void acknowledges()
    {
        AlarmRow &row = m_story.occurrences.last().row;
        row.acknowledged = m_at;
        row.acknowledgedBy = by();
        m_story.steps += {m_at, m_station, What::Acknowledge, {}, {}, by(), row.text};
    }
    Story take() { return std::move(m_story); }

private:
    QString by() const { return operatorOf(static_cast<qint64>(m_chance % 97)); }
    void say(const QString &text, int to)
    {
        m_story.steps += {m_at, m_station, What::Say, u"M,"_s + text, m_numbers[to]};
    }

    qint64 m_station;
    qint64 m_at;
    quint64 m_chance;
    QStringList m_numbers;
    Story m_story;
};

QString value(quint64 chance)
{
    return u"%1.%2"_s.arg(chance % 90).arg(chance / 97 % 10);
}

} // namespace

QString stationName(qint64 station)
{
    return u"Station %1"_s.arg(station, 4, 10, QChar(u'0'));
}

QString operatorOf(qint64 chance)
{
    static const QStringList names{u"A. Berger"_s, u"C. Krüger"_s, u"M. Öztürk"_s, u"S. Lang"_s,
                                   u"T. Weiß"_s};
    return names.at(chance % names.size());
}

QString silenceText()
{
    return u"The station is silent"_s;
}

std::optional<Story> storyOf(qint64 station, int day, int days)
{
    constexpr int pumps = 20; // one text comes again after forty days
    const quint64 chance = mixed(static_cast<quint64>(station), static_cast<quint64>(day));
    if ((day + station) % 2 != 0 || day + longestStory >= days) {
        return std::nullopt;
    }
    const int pump = day / 2 % pumps;
    const QString fail = u"Pump %1 fail"_s.arg(pump);
    const QString ok = u"Pump %1 ok"_s.arg(pump);
    const QString comment = u"seen to on site, order %1"_s.arg(chance % 100'000);
    // Half a second keeps it apart from what stations say all the time.
    Telling story(
        station, firstDay + day * aDay + static_cast<qint64>(chance / 7 % (20 * 60)) * aMinute + 500, chance);
    const qint64 minutes = static_cast<qint64>(1 + chance / 31 % 600) * aMinute;
    switch (chance % 10) {
    case 0: // again and again, before anybody sees to it
        story.comes(fail);
        for (quint64 i = 0; i <= chance / 11 % 4; ++i) {
            story.wait(10 * aMinute);
            story.comesAgain(0, true);
        }
        story.wait(minutes);
        story.comments(comment);
        story.acknowledges();
        story.wait(minutes);
        story.isOver(ok);
        break;
    case 1: // to two numbers
        story.comes(fail);
        story.wait(5'000);
        story.comesAgain(1, false);
        story.wait(minutes);
        story.comesAgain(1, true);
        story.acknowledges();
        story.wait(minutes);
        story.isOver(ok);
        break;
    case 2: // over before it is acknowledged
        story.comes(fail);
        story.wait(minutes);
        story.isOver(ok);
        story.wait(aDay);
        story.comments(comment);
        story.acknowledges();
        break;
    case 3: // once more after it was acknowledged
        story.comes(fail);
        story.wait(minutes);
        story.acknowledges();
        story.wait(minutes);
        story.endsWithTheNext();
        story.comes(fail, 1);
        story.wait(minutes);
        story.comments(comment);
        story.acknowledges();
        story.wait(minutes);
        story.isOver(ok);
        break;
    case 4: // over, and here again
        story.comes(fail);
        story.wait(minutes);
        story.isOver(ok);
        story.wait(minutes);
        story.comesAgain(0, true);
        story.wait(minutes);
        story.acknowledges();
        story.wait(minutes);
        story.isOver(ok);
        break;
    case 5: // not heard for a while
        story.fallsSilent();
        story.wait(minutes);
        story.acknowledges();
        story.wait(minutes);
        story.isHeard();
        break;
    case 6: // for ever, now and then
        if (chance / 13 % 20 == 0) {
            story.comes(u"Door %1 fail"_s.arg(day));
            story.wait(minutes);
            story.comments(comment);
            break;
        }
        [[fallthrough]];
    default:
        story.comes(fail);
        story.wait(minutes);
        story.acknowledges();
        story.comments(comment);
        story.wait(minutes);
        story.isOver(ok);
        break;
    }
    return story.take();
}

QList<Step> everydayOf(qint64 station, int day)
{
    QList<Step> steps;
    const qint64 begin = firstDay + day * aDay;
    const auto chance = [&](int a) {
        return mixed(static_cast<quint64>(station), static_cast<quint64>(day), static_cast<quint64>(a) + 1);
    };
    const QString number = numberOf(station, 1);
    const auto say = [&](qint64 after, const QString &text) {
        steps += {begin + after, station, What::Say, text, number};
    };
    // The archive: four inputs each hour and one each third one, as many records as an SMS takes.
    for (int hour = 0; hour < 24; hour += 3) {
        const qint64 at = begin + hour * anHour;
        QString text = u"H,9,"_s + QDateTime::fromMSecsSinceEpoch(at).toString(u"yyMMddhhmm"_s);
        for (int record = 0; record < 13; ++record) {
            static constexpr std::array inputs = {1, 2, 9, 10, 17};
            const bool isSlow = record == 12;
            text += (record == 0                  ? QString()
                     : record % 4 == 0 && !isSlow ? u",60"_s
                                                  : u",0"_s) +
                    u',' + QString::number(inputs[isSlow ? 4 : static_cast<std::size_t>(record % 4)]) + u',' +
                    value(chance(100 + hour * 13 + record));
        }
        say((hour + 3) * anHour + station % 3600 * 997 - 2 * anHour, text);
    }
    QString all = u"R"_s;
    for (int input = 1; input <= 18; ++input) {
        all += u',' + value(chance(500 + input));
    }
    say(6 * anHour + station * 1009 % (12 * anHour), all);
    for (int i = 0; i < 6; ++i) {
        say(static_cast<qint64>(chance(600 + i) % aDay),
            u"R,%1,%2"_s.arg(1 + i * 3).arg(value(chance(700 + i))));
    }
    static const QStringList notes{u"Tür Schaltschrank geöffnet"_s, u"Weekly test run ended"_s,
                                   u"Service on site"_s, u"Level %1 cm"_s};
    const quint64 note = chance(800);
    const QString text = notes.at(static_cast<qsizetype>(note % 4));
    const qint64 after = static_cast<qint64>(note / 5 % aDay);
    say(after, u"M,"_s + (text.contains(u'%') ? text.arg(note % 400) : text) +
                   QDateTime::fromMSecsSinceEpoch(begin + after).toString(u" (dd.MM. hh:mm)"_s));
    return steps;
}

} // namespace ktr::year
