#include "opmode/keeping/plain_nodes_reader.h"

#include "config/xml_document.h"

#include <QUtf8StringView>
#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace ktr {

namespace {

/// What a value is ended or interrupted by: its closing quote, references, control characters, which the
/// parser would replace, and what is not ASCII.
consteval std::array<bool, 256> specialBytes()
{
    std::array<bool, 256> result{};
    for (std::size_t c = 0; c < result.size(); ++c) {
        result[c] = c < 0x20 || c >= 0x80 || c == '"' || c == '&' || c == '<';
    }
    return result;
}
constexpr std::array<bool, 256> isSpecial = specialBytes();

/// The first special byte before `end`, or `end`.
const char *findSpecial(const char *at, const char *end)
{
    constexpr std::uint64_t ones = ~std::uint64_t{0} / 0xFF;
    for (; end - at >= 8; at += 8) {
        const auto bytes = qFromLittleEndian<std::uint64_t>(at);
        // The highest bit of the first special byte becomes 1 in one of these; before it all stay 0.
        const auto lessThan = [](std::uint64_t all, std::uint64_t limit) { return all - limit * ones; };
        constexpr std::uint64_t difference = '"' ^ '&'; // a single bit
        const std::uint64_t quotes = (bytes | difference * ones) ^ ('"' | difference) * ones;
        const std::uint64_t special = (bytes | lessThan(bytes, 0x20) | lessThan(quotes, 1) |
                                       lessThan(bytes ^ std::uint64_t{'<'} * ones, 1)) &
                                      0x80 * ones;
        if (special != 0) {
            return at + std::countr_zero(special) / 8;
        }
    }
    return std::find_if(at, end, [](char c) { return isSpecial[static_cast<unsigned char>(c)]; });
}

constexpr std::array<std::string_view, KeyAttribute> beginningsOfStations = {" exclusiveMode=\"",
                                                                             " exclusive_day_on=\"",
                                                                             " exclusive_day_off=\"",
                                                                             " exclusive_hour_on=\"",
                                                                             " exclusive_hour_off=\"",
                                                                             " hostAddress=\"",
                                                                             " online=\""};

constexpr std::array<std::pair<std::string_view, char>, 6> references = {
    {{"&amp;", '&'}, {"&lt;", '<'}, {"&quot;", '"'}, {"&#09;", '\t'}, {"&#10;", '\n'}, {"&#13;", '\r'}}};

} // namespace

/// Always in line, so that a literal's length is known where it is compared.
[[gnu::always_inline]] inline bool PlainNodesReader::takeLiteral(std::string_view literal)
{
    const bool found = static_cast<std::size_t>(m_end - m_at) >= literal.size() &&
                       std::memcmp(m_at, literal.data(), literal.size()) == 0;
    m_at += found ? literal.size() : 0;
    return found;
}

bool PlainNodesReader::read(std::string_view document, ParsedNodes &nodes)
{
    m_at = document.data();
    m_end = m_at + document.size();
    if (!takeLiteral("<KTR>")) {
        return false;
    }
    nodes.reserve(document.size());
    while (takeLiteral("<item")) {
        if (!takeElement(nodes)) {
            return false;
        }
    }
    return takeLiteral("</KTR>") && m_at == m_end;
}

bool PlainNodesReader::takeElement(ParsedNodes &nodes)
{
    while (m_at != m_end && *m_at >= '0' && *m_at <= '9') {
        ++m_at;
    }
    const bool isOfStation = !takeLiteral(" key=\"");
    if (isOfStation && !(takeStation() && takeLiteral(" key=\""))) {
        return false;
    }
    const bool isWhole = takeValue(m_values[KeyAttribute]) && takeLiteral(" text=\"") &&
                         takeValue(m_values[TextAttribute]) && takeLiteral(" ForeColor=\"") &&
                         takeValue(m_values[ColourAttribute]) && takeLiteral("/>");
    if (isWhole) {
        nodes.add(m_values);
    }
    if (isOfStation) {
        m_values.fill({}); // the other nodes have none of these
    }
    return isWhole;
}

/// What stands before the key of a station alone.
bool PlainNodesReader::takeStation()
{
    for (std::size_t which = 0; which < beginningsOfStations.size(); ++which) {
        if (!takeLiteral(beginningsOfStations[which]) || !takeValue(m_values[which])) {
            return false;
        }
    }
    return true;
}

bool PlainNodesReader::takeValue(std::string_view &value)
{
    const char *const begin = m_at;
    const char *const at = findSpecial(begin, m_end);
    m_at = at;
    if (at == m_end || *at != '"') {
        return takeLongWay(begin, value);
    }
    value = {begin, static_cast<std::size_t>(at - begin)};
    ++m_at;
    return true;
}

/// A value with references or characters beyond ASCII. Only one with references is copied.
bool PlainNodesReader::takeLongWay(const char *begin, std::string_view &value)
{
    std::string decoded;
    const char *rest = begin; // what is not decoded yet
    bool isAscii = true;
    while (m_at != m_end && *m_at != '"') {
        const auto c = static_cast<unsigned char>(*m_at);
        if (c == '&') {
            decoded.append(rest, m_at);
            const auto *const reference = std::ranges::find_if(
                references, [this](const auto &candidate) { return takeLiteral(candidate.first); });
            if (reference == references.end()) {
                return false;
            }
            decoded += reference->second;
            rest = m_at;
        } else if (c < 0x80 && isSpecial[c]) {
            return false;
        } else {
            isAscii = isAscii && c < 0x80;
            ++m_at;
        }
    }
    if (m_at == m_end) {
        return false;
    }
    const std::string_view raw(begin, static_cast<std::size_t>(m_at - begin));
    if (!isAscii && (!QUtf8StringView(begin, m_at).isValidUtf8() || hasNonCharacter(raw))) {
        return false;
    }
    value = rest == begin ? raw : m_decoded.emplace_back(decoded.append(rest, m_at));
    ++m_at;
    return true;
}

} // namespace ktr
