#include "opmode/window/station_counts.h"

#include "opmode/operational_mode.h"
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
    int alive = 0;
    int silent = 0;
    int offline = 0;
    m_mode.stations().forEach([&](const cStation &station) {
        offline += station.online() ? 0 : 1;
        alive += station.liveness() == cStation::Liveness::Alive ? 1 : 0;
        silent += station.liveness() == cStation::Liveness::Silent ? 1 : 0;
    });
    const int all = m_mode.stations().Count();
    QString counts =
        tr("Stations: %1, alive %2, silent %3, offline %4").arg(all).arg(alive).arg(silent).arg(offline);
    if (const int waiting = all - alive - silent - offline; waiting > 0) {
        counts += tr(", not heard yet %1").arg(waiting);
    }
    if (m_tree.shownStations() != all) {
        counts = tr("shown %1").arg(m_tree.shownStations()) + QStringLiteral("  –  ") + counts;
    }
    setText(counts);
    setToolTip(tr("Datagrams of strangers, not looked at: %1").arg(m_mode.foreignDatagrams()));
}

} // namespace ktr
