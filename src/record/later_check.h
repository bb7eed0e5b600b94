#pragma once

#include "platform/status.h"
#include "platform/worker_thread.h"

#include <QObject>

#include <atomic>
#include <functional>
#include <optional>

namespace ktr {

/// Looks through a record after a bad end, on a thread of its own while the record is in use: a large one
/// takes too long to be waited for.
class LaterCheck
{
public:
    /// `ended` gets, in the owner's event loop, whether the record is sound; a failure names the damage. It
    /// is not called where that could not be found out.
    LaterCheck(QString path, std::function<void(const Status &sound)> ended);
    /// Waits for the table that is being looked through, of some gigabytes for half a minute; nothing is told
    /// afterwards.
    ~LaterCheck();
    Q_DISABLE_COPY_MOVE(LaterCheck)

private:
    void run();
    std::optional<Status> look();

    QString m_path;
    std::function<void(const Status &)> m_ended;
    std::atomic<bool> m_isEnding = false;
    QObject m_receiver; ///< of the thread's report, on the owner's thread
    WorkerThread m_thread;
};

} // namespace ktr
