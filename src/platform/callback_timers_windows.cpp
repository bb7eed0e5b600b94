#include "platform/callback_timers.h"

#include <algorithm>
#include <windows.h>

namespace ktr {

namespace {

/// The system's timers without a window. It has some 32,000 ids for all of them and walks them one by one:
/// what goes beyond a quarter of these is queued.
class SystemCallbackTimers : public CallbackTimers
{
public:
    explicit SystemCallbackTimers(Timers &timers) : m_queued(timers)
    {
        m_queued.onCallback([this](quint32 id) { m_callback(id | queuedBit); });
    }
    ~SystemCallbackTimers() override
    {
        std::erase_if(owners(), [this](const auto &timer) {
            if (timer.second == this) {
                ::KillTimer(nullptr, timer.first);
            }
            return timer.second == this;
        });
    }
    Q_DISABLE_COPY_MOVE(SystemCallbackTimers)

    quint32 set(Milliseconds interval) override
    {
        if (owners().size() >= most) {
            return m_queued.set(interval) | queuedBit;
        }
        const auto wait =
            static_cast<UINT>(std::clamp<qint64>(interval.count(), USER_TIMER_MINIMUM, USER_TIMER_MAXIMUM));
        const UINT_PTR id = ::SetTimer(nullptr, 0, wait, &TimerProc);
        if (id == 0 || id >= queuedBit) {
            ::KillTimer(nullptr, id);
            return m_queued.set(interval) | queuedBit;
        }
        owners()[id] = this;
        return static_cast<quint32>(id);
    }

    bool kill(quint32 id) override
    {
        if ((id & queuedBit) != 0) {
            return m_queued.kill(id & ~queuedBit);
        }
        if (!owners().contains(id) || ::KillTimer(nullptr, id) == 0) {
            return false;
        }
        owners().erase(id);
        return true;
    }

private:
    static constexpr std::size_t most = 8'000;
    static constexpr quint32 queuedBit = 0x80000000; ///< tells a queued timer's id from the system's

    /// The system knows no more of a timer than its id. Its timers belong to the thread that set them.
    static std::unordered_map<UINT_PTR, SystemCallbackTimers *> &owners()
    {
        thread_local std::unordered_map<UINT_PTR, SystemCallbackTimers *> map;
        return map;
    }

    static void CALLBACK TimerProc(HWND, UINT message, UINT_PTR id, DWORD)
    {
        const auto owner = owners().find(id);
        if (message == WM_TIMER && owner != owners().end()) { // one that was killed may still be on its way
            owner->second->m_callback(static_cast<quint32>(id));
        }
    }

    QueuedCallbackTimers m_queued;
};

} // namespace

std::unique_ptr<CallbackTimers> systemCallbackTimers(Timers &timers)
{
    return std::make_unique<SystemCallbackTimers>(timers);
}

} // namespace ktr
