#pragma once

#include "opmode/window/list_banner.h"

namespace ktr {

class StationConfigurations;

/// Tells, until they can be used again, that the groups of the stations or the choices of their
/// configurations cannot be used as their files are.
class BesideBanner : public ListBanner
{
    Q_OBJECT

public:
    /// `configurations` must outlive it.
    explicit BesideBanner(StationConfigurations &configurations, QWidget *parent = nullptr);

    /// What of the groups cannot be used, as a sentence; empty when all can.
    void setGroupsTrouble(const QString &trouble);

Q_SIGNALS:
    /// The user wants the groups to be read again.
    void groupsWanted();

private:
    void refresh();

    const StationConfigurations &m_configurations;
    QString m_groupsTrouble;
    QStringList m_told; ///< what was noted is not told again
};

} // namespace ktr
