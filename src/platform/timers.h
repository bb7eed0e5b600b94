#pragma once

#include <QDateTime>

#include <chrono>
#include <functional>
#include <memory>

namespace ktr {

using Milliseconds = std::chrono::milliseconds;

/// A timer that fires once for each start. Destroying it stops it.
class OneShotTimer
{
public:
    virtual ~OneShotTimer() = default;

    /// Starts, or starts again, the wait; `fired` runs on the thread that called, at its end.
    virtual void start(Milliseconds wait, std::function<void()> fired) = 0;
    virtual void stop() = 0;
    virtual bool isRunning() const = 0;
};

/// Where timers come from, so that a test's 20 s pass at once.
class Timers
{
public:
    virtual ~Timers() = default;
    virtual std::unique_ptr<OneShotTimer> create() = 0;
};

/// Timers of the thread's event loop.
class EventLoopTimers : public Timers
{
public:
    std::unique_ptr<OneShotTimer> create() override;
};

} // namespace ktr
