#pragma once

#include "opmode/keeping/list_record.h"
#include "opmode/keeping/nodes_file.h"
#include "opmode/tree/station_tree.h"
#include "platform/environment.h"

namespace ktr {

/// Writes the file of a tree that is kept: at the end, and in the middle of the run when much has happened
/// since, which the next start would otherwise have to carry out again after a crash. A mark in the record
/// comes first: it says up to which event a file of this content holds what happened.
class NodesKeeper
{
public:
    /// From when on the file is written in the middle of the run.
    struct Limits
    {
        qint64 events = 100'000;    ///< since it was written last, and
        qint64 timesTheNodes = 2;   ///< so many times the number of nodes
        int pauseAfterFailure = 15; ///< checks that are left out
    };
    using Attributes = std::function<StationAttributes(const QString &kennung)>;

    /// All must outlive the keeper; the file holds what happened up to an event. `failed` gets the reason
    /// when the file could not be written in the middle of the run.
    NodesKeeper(StationTree &tree, NodesFile &file, ListRecord &record, qint64 upto,
                const Environment &environment, Attributes attributes,
                std::function<void(const QString &)> failed, const Limits &limits);
    /// Waits for a file that is being written.
    ~NodesKeeper();
    Q_DISABLE_COPY_MOVE(NodesKeeper)

    /// Begins to write the file when it is time. To be called now and then.
    void check();
    /// Begins to write it at once.
    void begin();
    bool mayBegin() const { return m_state == State::Idle && m_record.isOpen(); }
    /// The disk has more of the record.
    void settled();
    /// Writes the file with all that the tree has and waits for it.
    Status save();

private:
    enum class State { Idle, MarkWaits, Writing };

    QByteArray document() const;
    void mark(const QByteArray &document);
    void collect();
    void fail(const Status &why);

    StationTree &m_tree;
    NodesFile &m_file; ///< while the state is Writing, the thread alone uses it
    ListRecord &m_record;
    qint64 m_upto;
    const Environment &m_environment;
    Attributes m_attributes;
    std::function<void(const QString &)> m_failed;
    Limits m_limits;
    int m_pause = 0; ///< checks that are still left out
    State m_state = State::Idle;
    QByteArray m_document;   ///< that is being written
    quint64 m_markCount = 0; ///< rows of the record up to its mark
    Status m_written = Status::done();
    QObject m_receiver; ///< of the thread's reports, on the owner's thread
    WorkerThread m_thread;
};

} // namespace ktr
