#pragma once

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
    QList<int> channels{}; ///< whose values are shown of its stations; empty for what all show
    bool operator==(const StationGroup &) const = default;
};

/// The groups that the user has made, in their order. A station is in the first that has it.
class StationGroups
{
public:
    static constexpr int none = -1;
    static constexpr int mostChannels = 4;

    /// Of text in UTF-8 with a line for each: "[NAME]" begins a group, "= 9, 10" says which values are shown
    /// of its stations, each other line is a member of it. What cannot be understood is told in a remark.
    static StationGroups parse(const QByteArray &text, QStringList &remarks);

    /// The text with other channels for a group, and all else as it stands there.
    static QByteArray withChannels(const QByteArray &text, const QString &group, const QList<int> &channels);

    const QList<StationGroup> &list() const { return m_list; }
    /// The place of the group in list(), or none.
    int groupOf(const QString &station) const;

    bool operator==(const StationGroups &) const = default;

private:
    QList<StationGroup> m_list;
};

/// Where the groups of a list are kept: see fileBesideList().
QString groupsFileOf(const QString &list);

} // namespace ktr
