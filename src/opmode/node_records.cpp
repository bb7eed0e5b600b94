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

std::int32_t colourOf(std::string_view text)
{
    constexpr std::string_view usual = "-2147483640";
    static_assert(StationTree::normalColour == -2147483640);
    return text == usual ? StationTree::normalColour : number(text, StationTree::normalColour);
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
    std::string_view text = values[TextAttribute];
    m_bytes += text.size();
    if (key.ends_with(text)) {
        text = key.substr(key.size() - text.size()); // the very bytes of the name, as with most nodes
    } else {
        m_bytes += usualName;
    }
    const bool isStation = key.find('/') == std::string_view::npos;
    m_nodes.push_back({key, text, colourOf(values[ColourAttribute]), isStation});
    if (isStation) {
        m_stations.push_back(stationOf(values));
    }
}

} // namespace ktr
