#pragma once

#include "platform/timers.h"

#include <QByteArray>

#include <deque>
#include <functional>
#include <memory>

namespace ktr {

/// Sends lines one after the other, each followed by a pause of (its characters + 10) ms, since a module
/// behind Ethernet passes them on slowly and loses what comes too fast. The pause begins when the line has
/// left the machine.
class PacedSender
{
public:
    /// Lines are dropped while so many bytes or more wait: they come in faster than they can be answered.
    static constexpr qsizetype longestQueue = qsizetype{2} * 1024;

    /// Gets each line with CR LF, and calls `left` back once it has left the machine.
    using Send = std::function<void(const QByteArray &line, std::function<void()> left)>;

    /// The timers and what `send` needs must outlive the sender.
    PacedSender(Timers &timers, Send send);

    static Milliseconds pauseAfter(const QByteArray &line) { return Milliseconds(line.size() + 10); }

    /// Queues a line of any length without its line end. False when too much waits already; the line is then
    /// dropped.
    bool send(const QByteArray &line);

    /// Lines that wait for their turn.
    bool isWaiting() const { return !m_waiting.empty(); }
    /// Calls back once, when no line waits.
    void whenSent(std::function<void()> sent);

    /// Drops what waits, the pause and the call.
    void clear();

private:
    void sendNext();

    Send m_send;
    std::unique_ptr<OneShotTimer> m_pause;
    std::deque<QByteArray> m_waiting;
    qsizetype m_waitingBytes = 0;
    bool m_isLeaving = false; ///< a line was sent and has not left yet
    int m_run = 0;            ///< tells what comes back from before clear()
    std::function<void()> m_sent;
};

} // namespace ktr
