#pragma once

#include "platform/worker_thread.h"
#include "record/record_reader.h"

#include <QObject>

#include <deque>
#include <mutex>

namespace ktr {

/// Asks the record on a thread of its own, for those who must not wait. Answers arrive on the owner's thread,
/// in its event loop.
class RecordQueries
{
public:
    explicit RecordQueries(QString path);
    /// Waits for the question that is being answered, for a server but a moment. No answer arrives
    /// afterwards.
    ~RecordQueries();
    Q_DISABLE_COPY_MOVE(RecordQueries)

    /// Asks `question(reader)`, on the thread, and hands its result to `answer`. A question that the same
    /// asker put before is withdrawn: only the newest one is answered. `question` must hold by value what it
    /// needs.
    template <class Question, class Answer> void ask(const void *asker, Question question, Answer answer)
    {
        put(asker, [question = std::move(question),
                    answer = std::move(answer)](RecordReader &reader) mutable {
            return std::function<void()>([result = question(reader), answer = std::move(answer)]() mutable {
                answer(std::move(result));
            });
        });
    }
    const QString &path() const { return m_path; }
    /// No answer arrives for this asker any more.
    void withdraw(const void *asker);
    bool isWaitedFor(const void *asker) const;
    /// How many questions are to be answered before the next one.
    std::size_t waiting() const { return m_waiting.size() + (m_isAsking ? 1 : 0); }
    /// Is called when the record turned out to be damaged.
    void setFoundDamage(std::function<void()> foundDamage) { m_foundDamage = std::move(foundDamage); }

private:
    /// Gives what is to be done with the result, on the owner's thread.
    using Work = std::function<std::function<void()>(RecordReader &)>;
    struct Question
    {
        const void *asker;
        Work work;
    };

    void put(const void *asker, Work work);
    void begin();
    void ended();
    void renewReader();

    QString m_path;
    std::deque<Question> m_waiting;
    bool m_isAsking = false;
    const void *m_asker = nullptr;          ///< of the question in work; none: nobody waits for it any more
    std::mutex m_guard;                     ///< while the reader becomes another one
    std::unique_ptr<RecordReader> m_reader; ///< of the thread
    bool m_isEnding = false;                ///< under the guard
    std::function<void()> m_answer;         ///< of the thread while m_isAsking is set
    bool m_isDamaged = false;               ///< likewise
    std::function<void()> m_foundDamage;
    QObject m_receiver;
    WorkerThread m_thread;
};

} // namespace ktr
