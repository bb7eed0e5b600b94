#include "opmode/window/beside_banner.h"

#include "opmode/station_configurations.h"

#include <utility>

namespace ktr {

BesideBanner::BesideBanner(StationConfigurations &configurations, QWidget *parent)
    : ListBanner(parent), m_configurations(configurations)
{
    setObjectName(QStringLiteral("BesideBanner"));
    connect(&configurations, &StationConfigurations::linksTroubleChanged, this, &BesideBanner::refresh);
    connect(this, &ListBanner::retryWanted, &configurations, &StationConfigurations::look);
    connect(this, &ListBanner::retryWanted, this, &BesideBanner::groupsWanted);
}

void BesideBanner::setGroupsTrouble(const QString &trouble)
{
    m_groupsTrouble = trouble;
    refresh();
}

void BesideBanner::refresh()
{
    QStringList troubles;
    if (!m_groupsTrouble.isEmpty()) {
        troubles += tr("Groups of stations: %1").arg(m_groupsTrouble);
    }
    if (const QString &trouble = m_configurations.linksTrouble(); !trouble.isEmpty()) {
        troubles += tr("Configurations of stations: %1").arg(trouble);
    }
    if (std::exchange(m_told, troubles) == troubles) {
        return;
    }
    if (troubles.isEmpty()) {
        hide();
        return;
    }
    troubles += tr("What can be read of it is used; the file stays as it is.");
    tellBeside(troubles.join(u'\n'));
}

} // namespace ktr
