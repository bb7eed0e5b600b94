#include "opmode/plain_nodes.h"

#include <QUtf8StringView>

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

constexpr std::array<std::string_view, NodeAttributes> beginnings = {" exclusiveMode=\"",
                                                                     " exclusive_day_on=\"",
                                                                     " exclusive_day_off=\"",
                                                                     " exclusive_hour_on=\"",
                                                                     " exclusive_hour_off=\"",
                                                                     " hostAddress=\"",
                                                                     " online=\"",
                                                                     " key=\"",
                                                                     " text=\"",
                                                                     " ForeColor=\""};

constexpr std::array<std::pair<std::string_view, char>, 6> references = {
    {{"&amp;", '&'}, {"&lt;", '<'}, {"&quot;", '"'}, {"&#09;", '\t'}, {"&#10;", '\n'}, {"&#13;", '\r'}}};

} // namespace

bool PlainNodes::read(std::string_view document, NodeRecords &records)
{
    m_at = document.data();
    m_end = m_at + document.size();
    if (!takeLiteral("<KTR>")) {
        return false;
    }
    records.reserve(document.size());
    while (takeLiteral("<item")) {
        if (!takeElement(records)) {
            return false;
        }
    }
    return takeLiteral("</KTR>") && m_at == m_end;
}

inline bool PlainNodes::takeLiteral(std::string_view literal)
{
    const bool found = static_cast<std::size_t>(m_end - m_at) >= literal.size() &&
                       std::memcmp(m_at, literal.data(), literal.size()) == 0;
    m_at += found ? literal.size() : 0;
    return found;
}

bool PlainNodes::takeElement(NodeRecords &records)
{
    while (m_at != m_end && *m_at >= '0' && *m_at <= '9') {
        ++m_at;
    }
    NodeAttributeValues values;
    std::size_t which = ExclusiveAttribute;
    if (takeLiteral(beginnings[KeyAttribute])) {
        which = KeyAttribute;
    } else if (!takeLiteral(beginnings[ExclusiveAttribute])) {
        return false;
    }
    while (takeValue(values[which])) {
        if (++which == NodeAttributes) {
            records.add(values);
            return takeLiteral("/>");
        }
        if (!takeLiteral(beginnings[which])) {
            return false;
        }
    }
    return false;
}

bool PlainNodes::takeValue(std::string_view &value)
{
    const char *const begin = m_at;
    const char *at = m_at;
    while (at != m_end && !isSpecial[static_cast<unsigned char>(*at)]) {
        ++at;
    }
    m_at = at;
    if (at == m_end || *at != '"') {
        return takeLongWay(begin, value);
    }
    value = {begin, static_cast<std::size_t>(at - begin)};
    ++m_at;
    return true;
}

/// A value with references or characters beyond ASCII. Only one with references is copied.
bool PlainNodes::takeLongWay(const char *begin, std::string_view &value)
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
    if (!isAscii &&
        (!QUtf8StringView(begin, m_at).isValidUtf8() || raw.find("\xEF\xBF\xBE") != std::string_view::npos ||
         raw.find("\xEF\xBF\xBF") != std::string_view::npos)) {
        return false;
    }
    value = rest == begin ? raw : m_decoded.emplace_back(decoded.append(rest, m_at));
    ++m_at;
    return true;
}

} // namespace ktr
