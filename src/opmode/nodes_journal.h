#pragma once

#include "opmode/station_tree.h"
#include "platform/append_file.h"
#include "platform/timers.h"

namespace ktr {

/// What changed in the tree since `nodes.xml` was written, so that a crash loses neither an alarm nor its
/// acknowledgement. It names the file that it goes on from, and holds records of a length, a checksum and a
/// change each; one that is damaged is dropped, as the last one is when it was torn.
class NodesJournal
{
public:
    /// A change is on the disk this long after it was made, at the latest.
    static constexpr Milliseconds longestDelay{500};

    /// `told` hears why changes cannot be kept, once until that is over; then an empty text.
    NodesJournal(QString path, Timers &timers, std::function<void(const QString &)> told);
    ~NodesJournal();

    struct Replayed
    {
        Status status = Status::done(); ///< why the journal could not be used; it is kept aside then
        qsizetype changes = 0;
        qint64 dropped = 0; ///< bytes that were no whole record
    };
    /// Carries out the changes of the last run, when they go on from the file of this checksum, and goes on
    /// behind them.
    Replayed replay(quint64 base, const std::function<void(const NodeChange &)> &carryOut);

    /// Begins anew, after the file of this checksum was written with all changes.
    Status restart(quint64 base);

    /// Takes a change down; flush() follows by itself. Fit for StationTree::setObserver.
    void add(const NodeChange &change);
    /// Puts what was taken down on the disk. After a failure it is tried again.
    void flush();

private:
    Status begin();

    QString m_path;
    std::function<void(const QString &)> m_told;
    std::unique_ptr<OneShotTimer> m_timer;
    AppendFile m_file;
    quint64 m_base = 0;
    bool m_isUsable = false; ///< nothing of another run is in the way
    QByteArray m_waiting;
    QString m_trouble;
};

} // namespace ktr
