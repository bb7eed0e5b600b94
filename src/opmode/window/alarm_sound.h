#pragma once

#include "opmode/alarm_centre.h"
#include "platform/sound.h"

namespace ktr {

/// Two tones for alarms that arrive, and again each minute while one is not acknowledged. Muted, it is still.
class AlarmSound : public QObject
{
    Q_OBJECT

public:
    static constexpr Milliseconds reminderInterval{60'000};

    /// Without a sound device, `play` falls back on the system's beep.
    AlarmSound(const AlarmCentre &centre, Timers &timers, QObject *parent = nullptr);
    /// As above, with another way to be heard.
    AlarmSound(const AlarmCentre &centre, Timers &timers, std::function<void()> play,
               QObject *parent = nullptr);
    ~AlarmSound() override;

    void setMuted(bool muted) { m_muted = muted; }

private:
    void sound();

    const AlarmCentre &m_centre;
    std::function<void()> m_play;
    std::unique_ptr<OneShotTimer> m_reminder;
    bool m_muted = false;
};

/// The two tones, twice, as a WAV file: 16 bits, one channel, under a second.
QByteArray alarmTones();

} // namespace ktr
