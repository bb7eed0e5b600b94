#pragma once

#include "opmode/keeping/nodes_file.h"
#include "opmode/keeping/station_names.h"
#include "opmode/tree/station_tree_loader.h"

namespace ktr {

/// Loads the stations of a list, what they have in the tree and their attributes, and rebuilds those that are
/// damaged. When the element "Pump 1" of a damaged file is lost and "Pump 1/meldung/..." is there, the
/// station "Pump 1" is made anew: without its address and schedule, which the user has to check.
class ListLoader
{
public:
    using Attributes = QHash<QString, StationAttributes>; ///< by the keys of stations

    /// Both must outlive it.
    ListLoader(NodesFile &file, StationTreeLoader &tree);

    Status load();
    Attributes takeAttributes() { return std::move(m_attributes); }
    /// What was left out or rebuilt; what of the file could not be read, its remarks tell.
    const QStringList &defects() const { return m_defects; }

private:
    bool load(const StoredNode &element);
    bool loadStation(const StoredNode &element);
    bool rebuild(std::string_view name);

    NodesFile &m_file;
    StationTreeLoader &m_tree;
    Attributes m_attributes;
    Attributes m_unnamed; ///< of stations whose text is not their key: another, or of no use
    QSet<QString> m_rebuilt;
    StationNames m_rebuiltNames; ///< for the message
    QStringList m_defects;
};

} // namespace ktr
