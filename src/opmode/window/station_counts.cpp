#include "opmode/window/station_counts.h"

#include "opmode/operational_mode.h"
#include "opmode/watch_summary.h"
#include "opmode/window/station_tree_view.h"

namespace ktr {

StationCounts::StationCounts(OperationalMode &mode, const StationTreeView &tree, QWidget *parent)
    : QLabel(parent), m_mode(mode), m_tree(tree)
{
    constexpr int soonMs = 250;
    setObjectName(QStringLiteral("lbl_counts"));
    setContentsMargins(0, 0, 8, 0); // maximised, the corner has no grip
    m_soon.setSingleShot(true);
    m_soon.setInterval(soonMs);
    connect(&m_soon, &QTimer::timeout, this, &StationCounts::showNow);
    connect(&mode, &OperationalMode::stationChanged, this, [this] {
        if (!m_soon.isActive()) {
            m_soon.start();
        }
    });
    connect(&tree, &StationTreeView::filtered, this, &StationCounts::showNow);
}

void StationCounts::showNow()
{
    const WatchSummary summary = summaryOf(m_mode);
    const int all = summary.stations();
    QString counts = tr("Stations: %1, alive %2, silent %3, offline %4")
                         .arg(all)
                         .arg(summary.alive)
                         .arg(summary.silent)
                         .arg(summary.offline);
    if (summary.unheard > 0) {
        counts += tr(", not heard yet %1").arg(summary.unheard);
    }
    if (m_tree.shownStations() != all) {
        counts = tr("shown %1").arg(m_tree.shownStations()) + QStringLiteral("  –  ") + counts;
    }
    setText(counts);
    setToolTip(tr("Datagrams of strangers, not looked at: %1").arg(m_mode.foreignDatagrams()));
}

} // namespace ktr
