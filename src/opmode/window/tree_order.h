#pragma once

#include "opmode/overview/overview_model.h"

namespace ktr {

class StationTreeView;

/// In which order the tree shows the stations, and what stands together there. The list, and so its file,
/// keeps its own. Rows change their places a few times a second at most, and none while the user is about to
/// choose one.
class TreeOrder : public QObject
{
    Q_OBJECT

public:
    /// The tree must outlive it.
    TreeOrder(OperationalMode &mode, Timers &timers, const QLocale &locale, StationTreeView &view);

    void setOrder(OverviewModel::Order order);
    void setGrouping(OverviewModel::Grouping grouping);
    void setGroups(const StationGroups &groups) { m_model.setGroups(groups); }
    void applyTexts() { showSections(); }
    OverviewModel::Order order() const { return m_model.order(); }
    OverviewModel::Grouping grouping() const { return m_model.grouping(); }

private:
    void begin();
    void arrange();
    void showSections();
    QString sectionName(int section) const;
    OverviewModel::Numbers worthTelling(OverviewModel::Numbers numbers) const;

    OperationalMode &m_mode;
    StationTreeView &m_view;
    OverviewModel m_model;                 ///< active while the order is not the list's
    std::vector<NodeStore::Id> m_stations; ///< as they are arranged
};

} // namespace ktr
