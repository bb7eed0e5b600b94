#include "opmode/window/station_filter.h"

namespace ktr {

std::span<const StationFilter::Kind> StationFilter::kinds()
{
    using Line = StationStatus::Line;
    static constexpr Kind table[] = {
        {[](const TextTable &) { return tr("All"); }, nullptr},
        {[](const TextTable &) { return tr("In alarm"); },
         [](const StationStatus &, int alarms) { return alarms > 0; }},
        {[](const TextTable &) { return tr("Not heard"); },
         [](const StationStatus &status, int) {
             return status.line != Line::Alive && status.line != Line::Offline;
         }},
        {[](const TextTable &) { return tr("Offline"); },
         [](const StationStatus &status, int) { return status.line == Line::Offline; }},
        {[](const TextTable &texts) { return texts.text(Text::ExclusiveMode); },
         [](const StationStatus &status, int) { return status.exclusive; }},
        {[](const TextTable &texts) { return texts.text(Text::PukNeeded); },
         [](const StationStatus &status, int) { return status.pukNeeded; }}};
    return table;
}

bool StationFilter::passes(const QModelIndex &station) const
{
    if (!isOfAnyKind() && !kind->holds(station.data(StationTree::StatusRole).value<StationStatus>(),
                                       station.data(StationTree::AlarmCountRole).toInt())) {
        return false;
    }
    const auto holds = [this](const QString &where) { return where.contains(text, Qt::CaseInsensitive); };
    return text.isEmpty() || holds(station.data().toString()) ||
           (addressOf && holds(addressOf(station.data(StationTree::KeyRole).toString())));
}

} // namespace ktr
