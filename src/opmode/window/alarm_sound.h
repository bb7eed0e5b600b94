#pragma once

#include "opmode/alarm_centre.h"
#include "platform/sound.h"

namespace ktr {

/// Sounds for alarms that arrive, and again each minute while one is not acknowledged; as the most urgent one
/// does that waits, whichever arrived. Those whose rule has no sound are left out. Muted, it is still.
class AlarmSound : public QObject
{
    Q_OBJECT

public:
    static constexpr Milliseconds reminderInterval{60'000};

    using Play = std::function<void(AlarmPriority)>;

    /// Without a sound device it falls back on the system's beep, the same for all.
    AlarmSound(const AlarmCentre &centre, Timers &timers, QObject *parent = nullptr);
    /// As above, with another way to be heard.
    AlarmSound(const AlarmCentre &centre, Timers &timers, Play play, QObject *parent = nullptr);
    ~AlarmSound() override;

    void setMuted(bool muted) { m_muted = muted; }

private:
    void sound();

    const AlarmCentre &m_centre;
    Play m_play;
    std::unique_ptr<OneShotTimer> m_reminder;
    bool m_muted = false;
};

/// One low tone, two, or three high ones, the more urgent the more, as a WAV file: 16 bits, one channel,
/// under a second.
QByteArray alarmTones(AlarmPriority priority);

} // namespace ktr
