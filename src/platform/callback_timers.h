#pragma once

#include "platform/timers.h"

#include <set>
#include <unordered_map>

namespace ktr {

/// Timers that call back again and again, known by their ids: what a system may have of its own.
class CallbackTimers
{
public:
    using Callback = std::function<void(quint32 id)>;

    virtual ~CallbackTimers() = default;

    /// Starts a timer that calls back after every `interval`; its id, or 0 when there are no more timers.
    virtual quint32 set(Milliseconds interval) = 0;

    /// Ends a timer; false when there is none of that id.
    virtual bool kill(quint32 id) = 0;

    /// What every timer calls, on the thread that started it. It may set and kill timers.
    void onCallback(Callback callback) { m_callback = std::move(callback); }

protected:
    Callback m_callback;
};

/// Any number of callback timers behind a single one of the event loop. They keep their rhythm, are never
/// early and up to `resolution` late; ticks that a busy program missed are called once.
class QueuedCallbackTimers : public CallbackTimers
{
public:
    using Clock = std::function<Milliseconds()>;

    static constexpr Milliseconds resolution{10}; ///< and the shortest interval

    /// The time since some moment, which nobody sets back.
    static Milliseconds steadyTime();

    explicit QueuedCallbackTimers(Timers &timers, Clock now = &steadyTime);

    quint32 set(Milliseconds interval) override;
    bool kill(quint32 id) override;

private:
    struct Running
    {
        Milliseconds due;
        Milliseconds interval;
        quint64 turn; ///< of two that are due together, the one started first goes first
    };
    struct Place
    {
        Milliseconds due;
        quint64 turn;
        quint32 id;
        auto operator<=>(const Place &) const = default;
    };

    void tick();
    void wakeForFirst();

    Clock m_now;
    std::unordered_map<quint32, Running> m_running;
    std::set<Place> m_queue;
    quint64 m_turns = 0;
    quint32 m_lastId = 0;
    Milliseconds m_wakeAt{0};
    std::unique_ptr<OneShotTimer> m_wake;
};

/// The callback timers to use on this system: its own where it has such timers, otherwise queued ones.
std::unique_ptr<CallbackTimers> systemCallbackTimers(Timers &timers);

} // namespace ktr
