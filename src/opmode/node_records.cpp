#include "opmode/node_records.h"

#include "opmode/node_texts.h"
#include "opmode/station_tree.h"

#include <charconv>

namespace ktr {

namespace {

bool truth(std::string_view text)
{
    return text == "-1" || text == "True" || text == "true" || text == "1";
}

template <class Number> Number number(std::string_view text, Number otherwise)
{
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? value : otherwise;
}

StationAttributes stationOf(const NodeAttributeValues &values)
{
    StationAttributes station;
    station.exclusiveMode = truth(values[ExclusiveAttribute]);
    station.schedule = {textOf(values[HourOnAttribute]), number(values[DayOnAttribute], 0),
                        textOf(values[HourOffAttribute]), number(values[DayOffAttribute], 0)};
    station.hostAddress = textOf(values[HostAttribute]);
    station.online = truth(values[OnlineAttribute]);
    return station;
}

} // namespace

void NodeRecords::reserve(std::size_t bytes)
{
    constexpr std::size_t usualElement = 96;
    m_nodes.reserve(bytes / usualElement);
}

void NodeRecords::add(const NodeAttributeValues &values)
{
    constexpr std::size_t usualName = 4;
    const std::string_view key = values[KeyAttribute];
    const std::string_view text = values[TextAttribute];
    m_nodes.push_back({key, text, number(values[ColourAttribute], StationTree::normalColour)});
    m_bytes += key.ends_with(text) ? text.size() : text.size() + usualName;
    if (isStation(key)) {
        m_stations.push_back(stationOf(values));
    }
}

} // namespace ktr
