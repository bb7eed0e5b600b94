#pragma once

#include "opmode/tree/station_tree_loader.h"
#include "platform/status.h"

#include <functional>

namespace ktr {

/// What the version before kept beside `nodes.xml` in place of the record, and wrote no more since: its
/// journal, what changed since the list was written, and the file of times, when notifications arrived,
/// became red and were acknowledged.
class EarlierFiles
{
public:
    explicit EarlierFiles(const QString &nodesPath);

    bool isThere() const;
    const QString &journal() const { return m_journal; }
    const QString &times() const { return m_times; }

    /// Gives the notifications of a tree that is being loaded their times. A failure says that not all of the
    /// file could be used.
    Status loadTimes(StationTreeLoader &tree) const;

    struct Replayed
    {
        Status status = Status::done(); ///< why not all of the journal could be used
        qsizetype changes = 0;          ///< carried out
    };
    /// Hands over the changes of the journal, when it belongs to the list of this checksum; `carryOut` gives
    /// false for one that does not fit.
    Replayed replay(quint64 nodesChecksum, const std::function<bool(const NodeChange &)> &carryOut) const;

private:
    QString m_journal;
    QString m_times;
};

} // namespace ktr
