#include "link/paced_sender.h"

namespace ktr {

PacedSender::PacedSender(Timers &timers, Send send) : m_send(std::move(send)), m_pause(timers.create()) {}

bool PacedSender::send(const QByteArray &line)
{
    if (m_waitingBytes >= longestQueue) {
        return false;
    }
    m_waiting.push_back(line);
    m_waitingBytes += line.size();
    if (!m_isLeaving && !m_pause->isRunning()) {
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
    m_isLeaving = true;
    m_send(line + "\r\n", [this, run = m_run, pause = pauseAfter(line)] {
        if (run == m_run) {
            m_isLeaving = false;
            m_pause->start(pause, [this] { sendNext(); });
        }
    });
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
    m_isLeaving = false;
    ++m_run;
    m_pause->stop();
    m_sent = nullptr;
}

} // namespace ktr
