#pragma once

#include "platform/status.h"
#include "platform/worker_thread.h"
#include "record/transmission_table.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace ktr {

/// A transmission as it is remembered.
struct RememberedTransmission
{
    TransmissionRow row;
    QList<TransmissionStepRow> steps;
};

/// Writes transmissions into a record and looks into it, on a thread of its own: neither a module nor a user
/// waits for a disk or a server. What cannot be written waits, and is tried again.
class TransmissionMemory : public QObject
{
    Q_OBJECT

public:
    /// What could not be written is tried again after this time.
    static constexpr int pauseMs = 30'000;

    /// An empty place remembers nothing.
    explicit TransmissionMemory(QString place, QObject *parent = nullptr);
    /// Waits for what is being written and asked; what waits is written, too.
    ~TransmissionMemory() override;

    const QString &place() const { return m_place; }
    bool isThere() const { return !m_place.isEmpty(); }
    /// Another one, from now on. What waits goes there.
    void setPlace(const QString &place);

    /// Writes a transmission as it stands now, in place of how it stood before.
    void keep(const RememberedTransmission &transmission);
    /// Writes what waits before it returns, for a program that ends.
    Status flush();

    /// Asks `question(table)` on the thread and hands its result to `answer` here, in the event loop, unless
    /// `asker` is gone by then. `failed` is the result where the memory cannot be opened.
    template <class Result>
    void ask(QObject *asker, std::function<Result(TransmissionTable &)> question,
             std::function<Result(const Status &)> failed, std::function<void(const Result &)> answer)
    {
        auto result = std::make_shared<Result>();
        put({[=](TransmissionTable &table) { *result = question(table); },
             [=](const Status &why) { *result = failed(why); }, [=] { answer(*result); }, asker});
    }

Q_SIGNALS:
    /// This could not be written; an empty text: it is written now.
    void troubled(const QString &why);
    /// A transmission was written; its number in the record.
    void kept(const QString &uid, qint64 id);

private:
    struct Job
    {
        std::function<void(TransmissionTable &)> work;
        std::function<void(const Status &)> failed;
        std::function<void()> told;
        QPointer<QObject> asker;
    };

    void put(Job job);
    void begin();
    void collect();
    /// Of the thread: writes m_inHand and asks m_jobs.
    void work(const QString &place);
    void takeNews();

    QString m_place;
    std::vector<RememberedTransmission> m_waiting; ///< of each transmission the newest state
    std::deque<Job> m_asked;
    bool m_isBusy = false;
    QTimer m_pause;
    QString m_trouble;

    // While busy the thread's alone.
    std::vector<RememberedTransmission> m_inHand;
    std::deque<Job> m_jobs;
    Status m_written = Status::done();
    RememberedTransmission m_last; ///< as it was written last

    QObject m_receiver; ///< of the thread's reports, on the owner's thread
    WorkerThread m_thread;
};

} // namespace ktr
