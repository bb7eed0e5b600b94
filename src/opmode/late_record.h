#pragma once

#include "opmode/list_opener.h"
#include "opmode/list_parts.h"

namespace ktr {

/// Takes up the record of a list that was watched for a while before the record could be opened: what it
/// holds comes first, and behind it what happened since and has waited. Both are carried out on a tree and a
/// book of alarms beside those that are shown.
class LateRecord
{
public:
    /// `live` is what is shown.
    LateRecord(const ListParts &live, const QString &nodesPath, const StationCaptions &captions);

    /// Begins to write the record. After a failure nothing is changed and all goes on waiting.
    Status takeUp(const OpenedRecord &opened);

    const ListOpener &list() const { return m_list; }
    /// Whether the record had something that the tree on the screen lacks.
    bool changesTree() const { return m_list.takenUp() > 0; }
    const StationTree &tree() const { return m_tree; }
    const QHash<QString, StationAttributes> &attributes() const { return m_attributes; }
    const AlarmBook &alarms() const { return m_alarms; }
    /// New numbers of the alarms about the watching that stand, by their old ones.
    const QHash<qint64, qint64> &renumbered() const { return m_renumbered; }
    QHash<QString, QString> settings() const;
    /// When the list was opened.
    qint64 begun() const { return m_begun; }

private:
    void takeAlarms(const QList<AlarmRow> &watching, const ListRecord::Awaited &awaited);
    qint64 numberOf(const ListRecord::Awaited &awaited, qint64 station);
    void takeRow(const ListRecord::Awaited &awaited, RecordRow row);
    void takeEvent(EventRow event, const QString &kennung);

    ListParts m_live;
    NodesFile m_file;
    StationTree m_tree;
    AlarmBook m_alarms;
    ListParts m_parts; ///< the live ones, but for these two
    ListOpener m_list;
    QHash<qint64, QString> m_names;
    QHash<QString, StationAttributes> m_attributes;
    QHash<qint64, qint64> m_renumbered;
    QHash<QString, QString> m_waitingSettings;
    qint64 m_begun = 0;
};

/// Makes a tree equal to another one.
void copyTree(const StationTree &from, StationTree &to);

} // namespace ktr
