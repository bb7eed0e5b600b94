#pragma once

#include "platform/timers.h"

#include <QByteArray>

#include <deque>
#include <functional>
#include <memory>

namespace ktr {

/// Sends lines one after the other, each followed by a pause of (its characters + 10) ms, since a module
/// behind Ethernet passes them on slowly and loses what comes too fast.
class PacedSender
{
public:
    /// More waiting bytes than that mean that lines come in faster than they can be answered.
    static constexpr qsizetype longestQueue = qsizetype{2} * 1024;

    /// `send` gets each line with CR LF; it and the timers must outlive the sender.
    PacedSender(Timers &timers, std::function<void(const QByteArray &)> send);

    static Milliseconds pauseAfter(const QByteArray &line) { return Milliseconds(line.size() + 10); }

    /// Queues a line without its line end. False when too much waits already; the line is then dropped.
    bool send(const QByteArray &line);

    /// Lines that wait for their turn.
    bool isWaiting() const { return !m_waiting.empty(); }
    /// Calls back once, when no line waits.
    void whenSent(std::function<void()> sent);

    /// Drops what waits, the pause and the call.
    void clear();

private:
    void sendNext();

    std::function<void(const QByteArray &)> m_send;
    std::unique_ptr<OneShotTimer> m_pause;
    std::deque<QByteArray> m_waiting;
    qsizetype m_waitingBytes = 0;
    std::function<void()> m_sent;
};

} // namespace ktr
