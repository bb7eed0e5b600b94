#pragma once

#include "platform/status.h"
#include "platform/worker_thread.h"
#include "record/transmission_table.h"

#include <QHash>
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

    /// Where transmissions wait while the place is a server that cannot be reached; without it they wait in
    /// this program alone.
    void setWaitingFile(const QString &file) { m_waitingFile = file; }

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
    /// It waits in this file until the server can be reached, which now it cannot.
    void postponed(const QString &file, const QString &why);
    /// So many that had waited there are remembered by the server now.
    void handedOver(int count);
    /// It was damaged and put aside; what could be read of it was brought over. A line each.
    void mended(const QStringList &told);
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
    // Of the thread: writes m_inHand and asks m_jobs.
    void work(const QString &place);
    bool workOnce(const QString &place);
    void takeNews();

    QString m_place;
    QString m_waitingFile;
    std::vector<RememberedTransmission> m_waiting; ///< of each transmission the newest state
    std::deque<Job> m_asked;
    bool m_isBusy = false;
    QTimer m_pause;
    QString m_trouble;

    // While busy the thread's alone.
    std::vector<RememberedTransmission> m_inHand;
    std::deque<Job> m_jobs;
    Status m_written = Status::done();
    bool m_isPostponed = false; ///< it was not written, and waits in its file
    int m_handedOver = 0;
    QStringList m_told; ///< of damage
    /// The commands of each transmission that runs, as they were written last: many may run in turns.
    QHash<QString, QList<TransmissionStepRow>> m_steps;

    QObject m_receiver; ///< of the thread's reports, on the owner's thread
    WorkerThread m_thread;
};

} // namespace ktr
