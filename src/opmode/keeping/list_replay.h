#pragma once

#include "opmode/tree/station_tree.h"
#include "record/record_rows.h"

namespace ktr {

/// What is kept of a station beside its nodes, as the record has it: a JSON object.
QString toJson(const StationAttributes &attributes);
/// What cannot be read takes its value of a new station.
StationAttributes stationAttributes(const QString &json);

/// Carries out on a tree what the record says happened to its stations: what came after the list's file was
/// written, or what another program that watches them writes just now.
class ListReplay
{
public:
    /// `names` are the keys of the stations in the tree by their numbers in the record; both must outlive
    /// this. What becomes of the stations' attributes goes to `attributes`.
    ListReplay(StationTree &tree, QHash<qint64, QString> &names,
               QHash<QString, StationAttributes> &attributes)
        : m_tree(tree), m_names(names), m_attributes(attributes)
    {}
    ~ListReplay();
    Q_DISABLE_COPY_MOVE(ListReplay)

    /// False when it changes nothing of the tree, or does not fit.
    bool carryOut(const EventRow &event);

private:
    bool addStation(const EventRow &event);
    bool acknowledge(const QString &kennung, const EventRow &event);
    bool removeEntry(const QString &kennung, const EventRow &event);

    StationTree &m_tree;
    QHash<qint64, QString> &m_names;
    QHash<QString, StationAttributes> &m_attributes;
    QHash<qint64, NodeStore::Id> m_removed; ///< stations that may be brought back, by their numbers
};

} // namespace ktr
