#pragma once

#include "opmode/tree/station_tree_loader.h"
#include "platform/status.h"

#include <QByteArray>

namespace ktr {

/// The file `nodes.times` beside `nodes.xml`: when notifications arrived, became red and were acknowledged,
/// and how often they arrived, by their keys; the attributes of `nodes.xml` itself are fixed. It is written
/// before `nodes.xml` and has to fit the old one and the new one, since the program may end between the two:
/// of a station "A" that the user renamed to "B" it has both "A/meldung/..." and "B/meldung/...". It is read
/// after `nodes.xml`.
class NotificationTimes
{
public:
    /// `nodesPath` is the path of `nodes.xml`.
    explicit NotificationTimes(const QString &nodesPath);

    /// Gives the notifications of a tree that is being loaded their times; without the file they are not
    /// known. A failure says that not all of the file could be used; it is then kept aside before it is
    /// replaced.
    Status load(StationTreeLoader &tree);
    /// Whether all of the file that was loaded is of other notifications than the list has.
    bool fitsNothing() const { return !m_keepAside && m_known > 0 && m_fitting == 0; }
    /// Keeps the file aside before it is replaced; the failure says so.
    Status mustKeepAside();
    bool isToBeKeptAside() const { return m_keepAside; }
    /// What save() is to write: the times of each notification, once for each key that an old or new
    /// `nodes.xml` may have for it.
    static QByteArray document(const StationTree &tree);
    /// Replaces the file whole or not at all.
    Status save(const QByteArray &document);
    const QString &path() const { return m_path; }

private:
    QString m_path;
    quint64 m_known = 0;   ///< records of the file
    quint64 m_fitting = 0; ///< those of notifications that the list has
    bool m_keepAside = false;
};

} // namespace ktr
