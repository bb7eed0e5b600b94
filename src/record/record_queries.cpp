#include "record/record_queries.h"

#include <algorithm>

namespace ktr {

RecordQueries::RecordQueries(QString path) : m_path(std::move(path)) {}

RecordQueries::~RecordQueries()
{
    constexpr std::chrono::milliseconds patience{100};
    if (!m_thread.waitFor(patience)) {
        const std::lock_guard lock(m_guard);
        m_isEnding = true;
        if (m_reader) {
            m_reader->giveUp();
        }
    }
    m_thread.wait();
    if (!m_reader) {
        return;
    }
    m_thread.start([this] { m_reader->close(); }); // where the connection was made
    if (!m_thread.waitFor(patience)) {             // for the server's word, too
        m_reader->giveUp();
        m_thread.wait();
    }
}

void RecordQueries::withdraw(const void *asker)
{
    std::erase_if(m_waiting, [asker](const Question &question) { return question.asker == asker; });
    if (m_asker == asker) {
        m_asker = nullptr;
    }
}

bool RecordQueries::isWaitedFor(const void *asker) const
{
    return m_asker == asker ||
           std::ranges::any_of(m_waiting, [asker](const Question &each) { return each.asker == asker; });
}

void RecordQueries::put(const void *asker, Work work)
{
    withdraw(asker);
    m_waiting.push_back({asker, std::move(work)});
    if (!m_isAsking) {
        begin();
    }
}

void RecordQueries::begin()
{
    Question question = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_isAsking = true;
    m_asker = question.asker;
    m_thread.start([this, work = std::move(question.work)]() mutable {
        renewReader();
        m_answer = work(*m_reader);
        m_isDamaged = m_reader->foundDamage() && !m_reader->isStale();
        if (m_reader->foundDamage()) { // it may be mended by the next question
            const std::lock_guard lock(m_guard);
            m_reader.reset();
        }
        QMetaObject::invokeMethod(
            &m_receiver, [this] { ended(); }, Qt::QueuedConnection);
    });
}

void RecordQueries::renewReader()
{
    const std::lock_guard lock(m_guard);
    if (!m_reader || m_reader->isStale()) {
        m_reader = std::make_unique<RecordReader>(m_path);
    }
    if (m_isEnding) {
        m_reader->giveUp();
    }
}

void RecordQueries::ended()
{
    m_thread.wait(); // it has reported, but may not be free for the next question yet
    m_isAsking = false;
    const std::function<void()> answer = std::exchange(m_answer, {});
    if (std::exchange(m_isDamaged, false) && m_foundDamage) {
        m_foundDamage();
    }
    const bool isWanted = std::exchange(m_asker, nullptr) != nullptr;
    if (!m_waiting.empty()) {
        begin();
    }
    if (isWanted) {
        answer(); // which may ask again
    }
}

} // namespace ktr
