#include "link/paced_sender.h"

namespace ktr {

PacedSender::PacedSender(Timers &timers, std::function<void(const QByteArray &)> send)
    : m_send(std::move(send)), m_pause(timers.create())
{}

bool PacedSender::send(const QByteArray &line)
{
    if (m_waitingBytes + line.size() > longestQueue) {
        return false;
    }
    m_waiting.push_back(line);
    m_waitingBytes += line.size();
    if (!m_pause->isRunning()) {
        sendNext();
    }
    return true;
}

void PacedSender::sendNext()
{
    if (m_waiting.empty()) {
        return;
    }
    const QByteArray line = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_waitingBytes -= line.size();
    m_pause->start(pauseAfter(line), [this] { sendNext(); });
    m_send(line + "\r\n");
    if (m_waiting.empty() && m_sent) {
        std::exchange(m_sent, nullptr)();
    }
}

void PacedSender::whenSent(std::function<void()> sent)
{
    if (m_waiting.empty()) {
        sent();
    } else {
        m_sent = std::move(sent);
    }
}

void PacedSender::clear()
{
    m_waiting.clear();
    m_waitingBytes = 0;
    m_pause->stop();
    m_sent = nullptr;
}

} // namespace ktr
