#include "simulator/field_texts.h"

#include "config/channels.h"

#include <array>
#include <span>

namespace ktr {

namespace {

constexpr qsizetype longestSms = 160;

struct Alarm
{
    const char16_t *bad;
    const char16_t *good;
};

constexpr std::array alarms = {
    Alarm{u"Alarm DI1 fail", u"DI1 ok"},
    Alarm{u"Störung Pumpe 1 fail", u"Pumpe 1 läuft wieder"},
    Alarm{u"Störung Pumpe 2 fail", u"Pumpe 2 läuft wieder"},
    Alarm{u"Hochwasser Rückhaltebecken fail", u"Rückhaltebecken Wasserstand normal"},
    Alarm{u"Netzausfall, Batteriebetrieb, fail", u"Netz zurück"},
    Alarm{u"Druck Leitung Süd zu niedrig, fail", u"Druck Leitung Süd ok"},
    Alarm{u"Mains power fail", u"Mains power ok"},
    Alarm{u"Level too high, overflow, fail", u"Level normal"},
    Alarm{u"Cabinet temperature above 45 °C, fail", u"Cabinet temperature ok"},
    Alarm{u"Dry run protection pump 2 fail", u"Dry run protection pump 2 ok"},
    Alarm{u"Trübung über Grenzwert fail", u"Trübung wieder unter Grenzwert"},
};

constexpr std::array englishAlarms = {
    Alarm{u"Alarm DI1 fail", u"DI1 ok"},
    Alarm{u"Fault of pump 1 fail", u"Pump 1 runs again"},
    Alarm{u"Fault of pump 2 fail", u"Pump 2 runs again"},
    Alarm{u"High water in the retention basin fail", u"Retention basin level normal"},
    Alarm{u"Mains failure, on battery, fail", u"Mains back"},
    Alarm{u"Pressure of the southern line too low, fail", u"Pressure of the southern line ok"},
    Alarm{u"Level too high, overflow, fail", u"Level normal"},
    Alarm{u"Cabinet temperature above 45 °C, fail", u"Cabinet temperature ok"},
    Alarm{u"Dry run protection pump 2 fail", u"Dry run protection pump 2 ok"},
    Alarm{u"Turbidity above its limit fail", u"Turbidity below its limit again"},
};

constexpr std::array englishNotes = {
    u"Cabinet door opened", u"Cabinet door closed", u"Pump 1 on",
    u"Pump 1 off",          u"Pump 2 started",      u"Weekly test run ended",
    u"Service on site",     u"Gate valve A open",   u"Daily report: no faults",
};

constexpr std::array notes = {
    u"Tür Schaltschrank geöffnet",
    u"Tür Schaltschrank geschlossen",
    u"Pumpe 1 ein",
    u"Pumpe 1 aus",
    u"Pump 2 started",
    u"Wöchentlicher Probelauf beendet",
    u"Service on site",
    u"Schieber A auf",
    u"Tagesmeldung: keine Störungen",
};

std::span<const Alarm> alarmsIn(FieldLanguage language)
{
    return language == FieldLanguage::English ? std::span<const Alarm>(englishAlarms)
                                              : std::span<const Alarm>(alarms);
}

std::span<const char16_t *const> notesIn(FieldLanguage language)
{
    return language == FieldLanguage::English ? std::span<const char16_t *const>(englishNotes)
                                              : std::span<const char16_t *const>(notes);
}

} // namespace

QStringList FieldTexts::history(const QDateTime &now, int hours) const
{
    constexpr std::array channels = {9, 10, 17};
    constexpr int everyHours = 2;
    const QDateTime end(now.date(), QTime(now.time().hour(), 0));
    QStringList texts;
    QString text;
    for (int ago = hours; ago >= 0; ago -= everyHours) {
        const QDateTime at = end.addSecs(-3600LL * ago);
        for (const int channel : channels) {
            const QString record = QStringLiteral(",%1,%2").arg(channel).arg(m_values.value(channel, at));
            const bool isNextHour = channel == channels.front();
            const QLatin1String minutes(isNextHour ? ",120" : ",0");
            static_assert(everyHours == 2);
            if (text.isEmpty() || text.size() + minutes.size() + record.size() > longestSms) {
                texts += text;
                text = QLatin1String("H,9,") + at.toString(QStringLiteral("yyMMddHHmm"));
            } else {
                text += minutes;
            }
            text += record;
        }
    }
    texts += text;
    texts.removeFirst(); // the empty one before the first record
    return texts;
}

QString FieldTexts::notification(const QDateTime &now)
{
    const auto known = alarmsIn(m_language);
    const auto said = notesIn(m_language);
    const char16_t *what = nullptr;
    if (m_alarm >= 0 && chance(3) == 0) {
        what = known[static_cast<std::size_t>(m_alarm)].good;
        m_alarm = -1;
    } else if (m_alarm < 0 && chance(3) == 0) {
        m_alarm = chance(static_cast<int>(known.size()));
        what = known[static_cast<std::size_t>(m_alarm)].bad;
    } else {
        what = said[static_cast<std::size_t>(chance(static_cast<int>(said.size())))];
    }
    // With its time, since a text that was there before is no new notification.
    return QLatin1String("M,") + QString::fromUtf16(what) + now.toString(QStringLiteral(" (dd.MM. HH:mm)"));
}

QStringList FieldTexts::next(const QDateTime &now)
{
    const int kind = chance(100);
    if (kind < 3) {
        return history(now, 4);
    }
    if (kind < 15) {
        return {allValues(now)};
    }
    if (kind < 45) {
        return {notification(now)};
    }
    const int channel = 1 + chance(channelCount);
    return {QStringLiteral("R,%1,%2").arg(channel).arg(m_values.value(channel, now))};
}

QString FieldTexts::counted(int number)
{
    constexpr int alarmEvery = 20;
    return number % alarmEvery == 0 ? QStringLiteral("M,Pumpe 1 fail %1").arg(number)
                                    : QStringLiteral("R,%1,%2").arg(1 + number % channelCount).arg(number);
}

} // namespace ktr
