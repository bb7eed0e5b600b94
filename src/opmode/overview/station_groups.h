#pragma once

#include "platform/status.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace ktr {

/// A part of the stations, by their names.
struct StationGroup
{
    QString name;
    /// Whole names, upper or lower case; "*" stands for any letters, "?" for one, "\" before one of them,
    /// before
    /// "[" or before another "\" takes its meaning away.
    QStringList members;
    bool operator==(const StationGroup &) const = default;
};

/// The groups that the user has made, in their order. A station is in the first that has it.
class StationGroups
{
public:
    static constexpr int none = -1;

    /// Of text in UTF-8 with a line for each: "[NAME]" begins a group, each other line is a member of it.
    /// What cannot be understood is told in a remark.
    static StationGroups parse(const QByteArray &text, QStringList &remarks);
    QByteArray text() const;

    const QList<StationGroup> &list() const { return m_list; }
    /// The place of the group in list(), or none.
    int groupOf(const QString &station) const;

    bool operator==(const StationGroups &) const = default;

private:
    QList<StationGroup> m_list;
};

/// Where the groups of a list are kept: "nodes.groups" beside "nodes.xml", and for a record on a server a
/// file in the user's folder for data.
QString groupsFileOf(const QString &list);

/// The text of such a file, empty where there is none. After a failure it is not to be written over.
Status readGroups(const QString &path, QByteArray &text);
Status writeGroups(const QString &path, const QByteArray &text);

} // namespace ktr
