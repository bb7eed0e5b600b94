#pragma once

#include "opmode/alarms/alarm_book.h"
#include "platform/timers.h"

#include <QModelIndex>

#include <memory>
#include <optional>

namespace ktr {

class OperationalMode;

/// An alarm as the user is told of it.
struct Alarm
{
    qint64 id = 0;
    AlarmPriority priority = AlarmPriority::Medium;
    QString kennung;
    QString station; ///< its name; empty when it is about none
    QString message;
    qint64 received = 0; ///< the latest time, in milliseconds since 1970, UTC; 0 when not known
    qint64 raised = 0;   ///< when it came
    QModelIndex entry;   ///< in the tree; none for what is not said by a module
};

/// As an alarm is shown, with what the list of stations knows about it.
Alarm alarmOf(const OperationalMode &mode, const AlarmRow &row);

/// Alarms that arrived since the user was told last.
struct AlarmNews
{
    int arrived = 0;
    int unacknowledged = 0;                      ///< these and older ones
    bool sounds = false;                         ///< the rule of one of them says so
    AlarmPriority priority = AlarmPriority::Low; ///< of the most urgent one
    Alarm first;
    Alarm latest;
};

/// Watches the alarms that wait for somebody. What arrives in quick succession is announced together, so that
/// none is missed.
class AlarmCentre : public QObject
{
    Q_OBJECT

public:
    static constexpr Milliseconds pauseBetweenNews{250};
    using Describe = std::function<Alarm(const AlarmRow &)>;

    AlarmCentre(const AlarmBook &book, Describe describe, Timers &timers, QObject *parent = nullptr);
    ~AlarmCentre() override;

    /// How many wait, which changed() may not have told yet.
    int unacknowledged() const { return m_book.waitingCount(); }
    /// The one that came first of those that wait, and the one that arrived last; nothing when none waits.
    std::optional<Alarm> first() const;
    std::optional<Alarm> latest() const;
    /// How urgent the most urgent one is of those that wait and whose rule lets them sound; nothing when
    /// there is none. Goes through all that wait, unless an urgent one is among them.
    std::optional<AlarmPriority> sounding() const;

Q_SIGNALS:
    /// Something for the ear: at once for the first alarm, then at most once in `pauseBetweenNews`.
    void attention(const ktr::AlarmNews &news);
    /// The number of alarms, the first or the latest is another one; as often at most.
    void changed();

private:
    void onAlarmChanged(const AlarmRow &alarm, AlarmBook::Change change);
    void addNews(const AlarmRow &alarm);
    bool sounds(const AlarmRow &alarm) const;
    void recount();
    void takeLoaded();
    void update();
    void tell();
    std::optional<Alarm> described(qint64 id) const;

    const AlarmBook &m_book;
    Describe m_describe;
    std::unique_ptr<OneShotTimer> m_pause;
    std::unique_ptr<OneShotTimer> m_soon;
    int m_told = 0; ///< how many, by changed()
    qint64 m_latest = 0;
    AlarmNews m_news; ///< not told yet
    qint64 m_firstNew = 0;
    bool m_isStale = false; ///< something is to be told when the pause ends
};

} // namespace ktr
