#include "opmode/overview/station_glance.h"

#include "opmode/operational_mode.h"

#include <tuple>

namespace ktr {

namespace {

Urgency urgencyOf(const StationGlance &glance, const AlarmRow *worst)
{
    using Line = StationStatus::Line;
    const StationStatus &status = glance.status;
    if (glance.waiting > 0) {
        switch (static_cast<AlarmPriority>(worst->priority)) {
        case AlarmPriority::High:
            return Urgency::HighAlarm;
        case AlarmPriority::Medium:
            return Urgency::MediumAlarm;
        case AlarmPriority::Low:
            return Urgency::LowAlarm;
        }
    }
    return status.line == Line::Silent       ? Urgency::Silent
           : glance.standing > 0             ? Urgency::Standing
           : status.line == Line::Offline    ? Urgency::Offline
           : status.pukNeeded || status.loss ? Urgency::Doubtful
           : status.line == Line::Connecting ? Urgency::Unheard
                                             : Urgency::Quiet;
}

} // namespace

StationGlance glanceAt(const OperationalMode &mode, const QString &kennung, std::set<qint64> &alarms)
{
    const QModelIndex node = mode.tree().find(kennung);
    StationGlance glance{kennung, node.data().toString()};
    glance.status = node.data(StationTree::StatusRole).value<StationStatus>();
    const AlarmBook &book = mode.alarms();
    const AlarmRow *worst = nullptr;
    const auto rank = [&book](const AlarmRow &alarm) {
        return std::tuple(!book.isWaiting(alarm), alarm.priority, alarm.id);
    };
    for (auto id = alarms.begin(); id != alarms.end();) {
        const AlarmRow *alarm = book.alarm(*id);
        if (alarm == nullptr) {
            id = alarms.erase(id);
            continue;
        }
        ++glance.standing;
        glance.waiting += book.isWaiting(*alarm) ? 1 : 0;
        if (worst == nullptr || rank(*alarm) < rank(*worst)) {
            glance.newest = worst == nullptr || alarm->priority < worst->priority ||
                                    book.isWaiting(*alarm) != book.isWaiting(*worst)
                                ? 0
                                : glance.newest;
            worst = alarm;
        }
        if (book.isWaiting(*alarm) && alarm->priority == worst->priority) {
            glance.newest = std::max(glance.newest, alarm->first);
        }
        ++id;
    }
    glance.worst = worst == nullptr ? 0 : worst->id;
    glance.urgency = urgencyOf(glance, worst);
    return glance;
}

} // namespace ktr
