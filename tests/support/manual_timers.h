#pragma once

#include "platform/callback_timers.h"

#include <algorithm>
#include <vector>

namespace ktr::test {

/// Timers whose time passes when the test says so.
class ManualTimers : public Timers
{
public:
    std::unique_ptr<OneShotTimer> create() override { return std::make_unique<Manual>(*this); }

    /// Lets time pass; every timer that falls due fires at its moment, in order.
    void advance(Milliseconds by)
    {
        const Milliseconds until = m_now + by;
        while (Manual *next = nextDue(until)) {
            m_now = std::max(m_now, next->due);
            next->running = false;
            const auto fired = next->fired;
            fired();
        }
        m_now = until;
    }

    Milliseconds now() const { return m_now; }

private:
    struct Manual : OneShotTimer
    {
        explicit Manual(ManualTimers &timers) : owner(timers) { owner.m_timers.push_back(this); }
        ~Manual() override { std::erase(owner.m_timers, this); }
        void start(Milliseconds wait, std::function<void()> callback) override
        {
            due = owner.m_now + wait;
            fired = std::move(callback);
            running = true;
        }
        void stop() override { running = false; }
        bool isRunning() const override { return running; }

        ManualTimers &owner;
        Milliseconds due{0};
        std::function<void()> fired;
        bool running = false;
    };

    Manual *nextDue(Milliseconds until) const
    {
        Manual *next = nullptr;
        for (Manual *timer : m_timers) {
            if (timer->running && timer->due <= until && (next == nullptr || timer->due < next->due)) {
                next = timer;
            }
        }
        return next;
    }

    Milliseconds m_now{0};
    std::vector<Manual *> m_timers;
};

/// Callback timers that live in the manual time.
inline auto manualCallbackTimers(const ManualTimers &time)
{
    return [&time](Timers &timers) {
        return std::make_unique<QueuedCallbackTimers>(timers, [&time] { return time.now(); });
    };
}

} // namespace ktr::test
