#pragma once

#include "opmode/alarm_centre.h"
#include "platform/sound.h"

namespace ktr {

/// Sounds for alarms that arrive, and again each minute while one is not acknowledged; as the most urgent one
/// does that waits, whichever arrived. Those whose rule has no sound are left out. Muted, it is still.
/// Whether anything can be heard here is a state: it is tried with silence at the beginning, and each minute
/// while it is not so. What cannot be played is the system's beep, the same for all.
class AlarmSound : public QObject
{
    Q_OBJECT

public:
    static constexpr Milliseconds reminderInterval{60'000};
    static constexpr Milliseconds firstTry{1'000};
    // In percent. Silence for a while is for the mute alone, which ends by itself.
    static constexpr int leastVolume = 10;
    static constexpr int usualVolume = 70;
    static constexpr int mostVolume = 100;

    /// Plays the tones of a priority, or silence, and tells what became of it.
    using Play = std::function<void(std::optional<AlarmPriority> tones, int volume, const Sound::Told &told)>;

    AlarmSound(const AlarmCentre &centre, Timers &timers, QObject *parent = nullptr);
    /// As above, with another way to be heard.
    AlarmSound(const AlarmCentre &centre, Timers &timers, Play play, QObject *parent = nullptr);
    ~AlarmSound() override;

    void setMuted(bool muted) { m_muted = muted; }

    int volume() const { return m_volume; }
    /// Holds from now on, and in programs that start later.
    void setVolume(int volume);
    /// Plays a priority as an alarm would, muted or not.
    void test(AlarmPriority priority, const Sound::Told &told);

    /// Why the last sound could not be played; empty when it was, or none was tried yet.
    const QString &trouble() const { return m_trouble; }

Q_SIGNALS:
    void troubleChanged();

private:
    void sound();
    void play(std::optional<AlarmPriority> tones, const Sound::Told &told);
    void tryWhetherHeard();

    const AlarmCentre &m_centre;
    Play m_play;
    std::unique_ptr<OneShotTimer> m_reminder;
    std::unique_ptr<OneShotTimer> m_try;
    int m_volume;
    bool m_muted = false;
    QString m_trouble;
};

/// One low tone, two, or three high ones, the more urgent the more, or silence, as a WAV file: 16 bits, one
/// channel, under a second. The volume is in percent.
QByteArray alarmTones(std::optional<AlarmPriority> priority, int volume);

} // namespace ktr
