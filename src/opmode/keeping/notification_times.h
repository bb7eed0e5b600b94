#pragma once

#include "opmode/tree/station_tree_loader.h"
#include "platform/status.h"

#include <QByteArray>

namespace ktr {

/// When the notifications of `nodes.xml` arrived and were acknowledged: `nodes.times` beside it, whose own
/// attributes are fixed. Written before it, for the keys that it will have, and read after it.
class NotificationTimes
{
public:
    /// `nodesPath` is the path of `nodes.xml`.
    explicit NotificationTimes(const QString &nodesPath);

    /// Gives the notifications of a tree that is being loaded their times; without the file they are not
    /// known. A failure says that not all of the file could be used; it is then kept aside before it is
    /// replaced.
    Status load(StationTreeLoader &tree);
    /// What save() is to write: the times for each key that the file of nodes can have, that of now included,
    /// so that they fit whether or not it is replaced after them.
    static QByteArray document(const StationTree &tree);
    /// Replaces the file whole or not at all.
    Status save(const QByteArray &document);
    const QString &path() const { return m_path; }

private:
    QString m_path;
    bool m_keepAside = false;
};

} // namespace ktr
