#include "platform/callback_timers.h"

#include <limits>

namespace ktr {

Milliseconds QueuedCallbackTimers::steadyTime()
{
    return std::chrono::duration_cast<Milliseconds>(std::chrono::steady_clock::now().time_since_epoch());
}

QueuedCallbackTimers::QueuedCallbackTimers(Timers &timers, Clock now)
    : m_now(std::move(now)), m_wake(timers.create())
{}

quint32 QueuedCallbackTimers::set(Milliseconds interval)
{
    if (m_running.size() == std::numeric_limits<quint32>::max()) {
        return 0;
    }
    do {
        ++m_lastId;
    } while (m_lastId == 0 || m_running.contains(m_lastId));
    interval = std::max(interval, resolution);
    const Running timer{m_now() + interval, interval, m_turns++};
    m_queue.insert({timer.due, timer.turn, m_lastId});
    m_running.emplace(m_lastId, timer);
    const quint32 id = m_lastId;
    wakeForFirst();
    return id;
}

bool QueuedCallbackTimers::kill(quint32 id)
{
    const auto timer = m_running.find(id);
    if (timer == m_running.end()) {
        return false;
    }
    m_queue.erase({timer->second.due, timer->second.turn, id});
    m_running.erase(timer);
    if (m_queue.empty()) {
        m_wake->stop(); // otherwise it wakes once for nothing, which is cheaper than setting it again
    }
    return true;
}

void QueuedCallbackTimers::tick()
{
    const Milliseconds now = m_now();
    while (!m_queue.empty() && m_queue.begin()->due <= now) {
        auto place = m_queue.extract(m_queue.begin());
        const quint32 id = place.value().id;
        Running &timer = m_running.at(id);
        timer.due += timer.interval * ((now - timer.due) / timer.interval + 1);
        place.value().due = timer.due;
        m_queue.insert(std::move(place));
        wakeForFirst(); // where a modal question is asked, the others go on
        m_callback(id); // may end this timer and start others, which are due later
    }
    m_wake->stop();
    wakeForFirst();
}

void QueuedCallbackTimers::wakeForFirst()
{
    if (m_queue.empty()) {
        return;
    }
    // On a grid, so that thousands of timers that are due nearly together wake the program once.
    const Milliseconds at = (m_queue.begin()->due + resolution - Milliseconds{1}) / resolution * resolution;
    if (m_wake->isRunning() && m_wakeAt <= at) {
        return;
    }
    m_wakeAt = at;
    m_wake->start(std::max(at - m_now(), Milliseconds{0}), [this] { tick(); });
}

} // namespace ktr
