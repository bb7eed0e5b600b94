#pragma once

#include "platform/status.h"
#include "platform/worker_thread.h"
#include "record/record_database.h"
#include "record/record_rows.h"

#include <QObject>

#include <functional>
#include <vector>

namespace ktr {

/// Writes requests into a record that somebody else keeps, on a thread of its own, so that the caller does
/// not wait for the disk.
class RequestWriter
{
public:
    /// The number that the request got, or why it could not be written.
    using Written = std::function<void(const Status &status, qint64 id)>;

    explicit RequestWriter(QString path) : m_path(std::move(path)) {}
    /// Waits for what is being written; what waits is written, too, but told no more. A server that does not
    /// answer is not waited for.
    ~RequestWriter();
    Q_DISABLE_COPY_MOVE(RequestWriter)

    void write(RequestRow request, Written written);

private:
    struct Job
    {
        RequestRow request;
        Written written;
        Status status = Status::done();
        qint64 id = 0;
    };

    void begin();
    void collect();
    void carryOut(std::vector<Job> &jobs);

    QString m_path;
    std::vector<Job> m_waiting;
    bool m_isBusy = false;
    std::vector<Job> m_inHand; ///< while busy the thread's alone
    RecordDatabase m_database; ///< likewise
    QObject m_receiver;        ///< of the thread's reports, on the owner's thread
    WorkerThread m_thread;
};

} // namespace ktr
