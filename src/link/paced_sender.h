#pragma once

#include "platform/timers.h"

#include <QByteArray>

#include <deque>
#include <functional>
#include <memory>

namespace ktr {

/// Sends lines no faster than a module behind Ethernet can pass them on; what comes faster, it loses. After
/// each line there is a pause of (its characters + 10) ms, counted from when the line has left the machine.
///
/// Example: send("at+cpin?") and send("config") in a row. "at+cpin?" CR LF goes out at once. When it has
/// left, the pause of 18 ms begins; then "config" CR LF goes out, followed by a pause of 16 ms.
class PacedSender
{
public:
    /// While this many bytes are waiting, further lines are dropped: the module asks faster than it can be
    /// answered.
    static constexpr qsizetype longestQueue = qsizetype{2} * 1024;

    /// Is given each line with CR LF, and has to call `left` once it has left the machine.
    using Send = std::function<void(const QByteArray &line, std::function<void()> left)>;

    /// The timers and what `send` needs must outlive the sender.
    PacedSender(Timers &timers, Send send);

    static Milliseconds pauseAfter(const QByteArray &line) { return Milliseconds(line.size() + 10); }

    /// Queues a line, given without its line end. False when it was dropped because too much is waiting.
    bool send(const QByteArray &line);

    /// Whether lines are waiting for their turn.
    bool isWaiting() const { return !m_waiting.empty(); }
    /// Calls back once, as soon as no line is waiting.
    void whenSent(std::function<void()> sent);

    /// Drops the waiting lines, the pause and the callback.
    void clear();

private:
    void sendNext();

    Send m_send;
    std::unique_ptr<OneShotTimer> m_pause;
    std::deque<QByteArray> m_waiting;
    qsizetype m_waitingBytes = 0;
    bool m_isLeaving = false; ///< a line was sent and has not left yet
    int m_run = 0;            ///< grows with each clear(): calls of `left` from before it are ignored
    std::function<void()> m_sent;
};

} // namespace ktr
