#include "opmode/window/alarms/alarm_commands.h"

#include "opmode/operational_mode.h"
#include "opmode/window/alarms/alarm_limits_dialog.h"
#include "opmode/window/alarms/alarm_rules_dialog.h"
#include "opmode/window/alarms/maintenance.h"
#include "opmode/window/alarms/sound_dialog.h"
#include "opmode/window/opmode_menus.h"

#include <QAction>
#include <QWidget>

namespace ktr {

AlarmCommands::AlarmCommands(const Services &services, QWidget &window)
    : QObject(&window), m_services(services)
{
    const auto opens = [this](QAction *action, const std::function<void()> &open) {
        connect(action, &QAction::triggered, this, [this, open] { m_services.whileBusy(open); });
    };
    opens(services.menus.mnu_rules,
          [this, &window] { AlarmRulesDialog(m_services.mode, m_services.texts, &window).exec(); });
    opens(services.menus.mnu_limits,
          [this, &window] { AlarmLimitsDialog(m_services.mode, m_services.texts, &window).exec(); });
    opens(services.menus.mnu_sound,
          [this, &window] { SoundDialog(m_services.sound, m_services.texts, &window).exec(); });
    opens(services.menus.mnu_maintenance, [this, &window] {
        askForMaintenance(m_services.mode, m_services.texts, m_services.chosen(), &window);
    });
    connect(services.menus.mnu_maintenance_end, &QAction::triggered, this, &AlarmCommands::endMaintenance);
}

void AlarmCommands::endMaintenance()
{
    AlarmActions &actions = m_services.mode.alarmActions();
    actions.unshelve(actions.numberOf(m_services.chosen()), {});
}

} // namespace ktr
