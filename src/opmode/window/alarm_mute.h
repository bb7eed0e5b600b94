#pragma once

#include "platform/timers.h"

#include <QDateTime>
#include <QObject>

#include <functional>
#include <memory>

namespace ktr {

/// Alarms are still for a while, at most a day: who mutes them and goes home deafens nobody for long. It
/// outlives the program.
class AlarmMute : public QObject
{
    Q_OBJECT

public:
    enum class Length { QuarterHour, Hour, FourHours, Shift };
    static constexpr int lengths = 4;

    AlarmMute(Timers &timers, std::function<QDateTime()> now, QObject *parent = nullptr);
    ~AlarmMute() override;

    bool isMuted() const { return m_until.isValid(); }
    /// Not valid while they sound.
    const QDateTime &until() const { return m_until; }
    /// Mutes them for the chosen length from now on, or lets them sound again.
    void setMuted(bool muted);
    Length length() const { return m_length; }
    /// Counts from now on where they are muted.
    void setLength(Length length);

Q_SIGNALS:
    void changed();

private:
    QDateTime end() const;
    void check();
    void keep() const;

    std::function<QDateTime()> m_now;
    std::unique_ptr<OneShotTimer> m_timer;
    Length m_length = Length::Hour;
    QDateTime m_until;
};

} // namespace ktr
