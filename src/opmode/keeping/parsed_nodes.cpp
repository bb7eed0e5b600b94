#include "opmode/keeping/parsed_nodes.h"

#include "opmode/tree/node_texts.h"
#include "opmode/tree/station_tree.h"

#include <charconv>

namespace ktr {

namespace {

/// Reads the values of one node, and keeps in mind whether all of them could be read.
class ValueReader
{
public:
    bool truth(std::string_view text)
    {
        const bool isTrue = text == "-1" || text == "True" || text == "true" || text == "1";
        m_isSound =
            m_isSound && (isTrue || text.empty() || text == "0" || text == "False" || text == "false");
        return isTrue;
    }

    template <class Number> Number number(std::string_view text, Number otherwise)
    {
        Number value{};
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        const bool isNumber = error == std::errc() && end == text.data() + text.size();
        m_isSound = m_isSound && (isNumber || text.empty());
        return isNumber ? value : otherwise;
    }

    std::int32_t colour(std::string_view text)
    {
        constexpr std::string_view usual = "-2147483640";
        static_assert(StationTree::normalColour == -2147483640);
        return text == usual ? StationTree::normalColour : number(text, StationTree::normalColour);
    }

    StationAttributes station(const NodeAttributeValues &values)
    {
        StationAttributes station;
        station.exclusiveMode = truth(values[ExclusiveAttribute]);
        station.schedule = {textOf(values[HourOnAttribute]), number(values[DayOnAttribute], 0),
                            textOf(values[HourOffAttribute]), number(values[DayOffAttribute], 0)};
        station.hostAddress = textOf(values[HostAttribute]);
        station.online = truth(values[OnlineAttribute]);
        return station;
    }

    bool isSound() const { return m_isSound; }

private:
    bool m_isSound = true;
};

} // namespace

void ParsedNodes::reserve(std::size_t bytes)
{
    constexpr std::size_t usualElement = 96;
    m_nodes.reserve(bytes / usualElement);
}

void ParsedNodes::add(const NodeAttributeValues &values)
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
    ValueReader reader;
    m_nodes.push_back({key, text, reader.colour(values[ColourAttribute]), isStation});
    if (isStation) {
        m_stations.push_back(reader.station(values));
    }
    if (!reader.isSound()) {
        m_unreadable.push_back(key);
    }
}

} // namespace ktr
