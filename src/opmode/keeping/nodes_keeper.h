#pragma once

#include "opmode/keeping/nodes_file.h"
#include "opmode/keeping/nodes_journal.h"
#include "opmode/keeping/notification_times.h"

namespace ktr {

/// Writes the files of a tree that is kept: at the end, and in the middle of the run when the journal has
/// become long, which would otherwise grow for months. A thread of its own writes then; changes that come
/// meanwhile are in the journal, which fits the files before and after.
class NodesKeeper
{
public:
    /// From when on the files are written in the middle of the run.
    struct Limits
    {
        qint64 journal = qint64{64} << 20; ///< bytes, and
        qint64 timesTheFile = 2;           ///< so many times the size of the file of nodes
        int pauseAfterFailure = 15;        ///< checks that are left out
    };
    using Attributes = std::function<StationAttributes(const QString &kennung)>;

    /// All must outlive the keeper. `failed` gets the reason when the files could not be written in the
    /// middle of the run.
    NodesKeeper(StationTree &tree, NodesFile &file, NotificationTimes &times, NodesJournal &journal,
                Attributes attributes, std::function<void(const QString &)> failed, const Limits &limits);
    /// Waits for files that are being written.
    ~NodesKeeper();
    Q_DISABLE_COPY_MOVE(NodesKeeper)

    /// Begins to write the files when it is time. To be called now and then, when the tree has all that the
    /// journal has.
    void check();
    /// Writes the files with all that the tree has and waits for it. After a failure they fit the journal.
    Status save();

private:
    struct Documents
    {
        QByteArray times;
        QByteArray nodes;
    };
    Documents documents();
    Status write(const Documents &documents);
    void begin();
    void collect();
    void fail(const Status &why);

    StationTree &m_tree;
    NodesFile &m_file;          ///< while m_isWriting is set, the thread alone uses it
    NotificationTimes &m_times; ///< likewise
    NodesJournal &m_journal;
    Attributes m_attributes;
    std::function<void(const QString &)> m_failed;
    Limits m_limits;
    int m_pause = 0; ///< checks that are still left out
    bool m_isWriting = false;
    Status m_written = Status::done();
    QObject m_receiver; ///< of the thread's reports, on the owner's thread
    WorkerThread m_thread;
};

} // namespace ktr
