#pragma once

#include "platform/worker_thread.h"
#include "record/row_spool.h"
#include "record/spool_place.h"

#include <QObject>

#include <atomic>
#include <functional>

namespace ktr {

/// Puts batches into a spool on a thread of its own: the one that talks with the server may be waiting for
/// it.
class SpoolWriter
{
public:
    using Batches = std::vector<std::shared_ptr<const RowBatch>>;

    /// Takes over what was left behind in that place. `ended` is called in the owner's event loop each time
    /// that batches are there, or cannot be.
    SpoolWriter(std::unique_ptr<SpoolPlace> place, std::function<void()> ended);
    ~SpoolWriter();
    Q_DISABLE_COPY_MOVE(SpoolWriter)

    const QString &path() const { return m_place->path(); }
    /// What there was, and why it could not be looked at; a line for the user where something was damaged.
    const RowSpool::Content &found() const { return m_found; }
    const Status &opened() const { return m_opened; }
    const QString &remark() const { return m_remark; }

    /// Only when it is not busy.
    void append(Batches batches);
    bool isBusy() const { return m_isBusy; }
    /// Waits until what was begun has ended.
    void wait() { m_thread.wait(); }
    /// What append() gave, once it has ended; nothing before, and nothing a second time.
    struct Outcome
    {
        Status status = Status::done();
        Batches batches{};
    };
    std::optional<Outcome> takeOutcome();

    /// The end: a spool that is empty goes.
    void end();

private:
    void open();

    std::unique_ptr<SpoolPlace> m_place;
    std::function<void()> m_ended;
    bool m_isBusy = false;
    // While busy the thread's:
    RowSpool m_spool;
    RowSpool::Content m_found;
    Status m_opened = Status::done();
    QString m_remark;
    Outcome m_outcome;
    std::atomic<bool> m_hasEnded = false;
    QObject m_receiver; ///< of the thread's reports
    WorkerThread m_thread;
};

} // namespace ktr
