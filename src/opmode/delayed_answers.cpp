#include "opmode/delayed_answers.h"

namespace ktr {

DelayedAnswers::DelayedAnswers(const cStations &stations, Timers &timers)
    : m_stations(stations), m_longestWait(timers.create())
{}

void DelayedAnswers::add(const QString &kennung, quint64 changes, bool isOnServer)
{
    m_patience = isOnServer ? longestWaitForServer : longestWait;
    m_waiting.push_back({kennung, changes});
    if (!m_longestWait->isRunning()) {
        m_longestWait->start(m_patience, [this] { answerAll(); });
    }
}

void DelayedAnswers::answerUpTo(quint64 changes)
{
    m_longestWait->stop();
    while (!m_waiting.empty() && m_waiting.front().changes <= changes) {
        const QString kennung = m_waiting.front().kennung;
        m_waiting.pop_front();
        answer(kennung);
    }
    if (!m_waiting.empty()) {
        m_longestWait->start(m_patience, [this] { answerAll(); });
    }
}

void DelayedAnswers::answerAll()
{
    m_longestWait->stop();
    for (const Waiting &waiting : std::exchange(m_waiting, {})) {
        answer(waiting.kennung);
    }
}

void DelayedAnswers::clear()
{
    m_longestWait->stop();
    m_waiting.clear();
}

void DelayedAnswers::answer(const QString &kennung) const
{
    if (cStation *station = m_stations.Item(kennung)) {
        station->answer();
    }
}

} // namespace ktr
