#include "opmode/keeping/nodes_file.h"
#include "opmode/tree/node_texts.h"

#include <array>
#include <charconv>
#include <cstring>

namespace ktr {

namespace {

/// What stands in an attribute's value for a character that cannot stand there; empty for all others.
constexpr std::string_view reference(unsigned char c)
{
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '"':
        return "&quot;";
    case '\t':
        return "&#09;";
    case '\n':
        return "&#10;";
    case '\r':
        return "&#13;";
    default:
        return {};
    }
}
constexpr std::size_t longestReference = 6;

consteval std::array<bool, 256> referencesNeeded()
{
    std::array<bool, 256> result{};
    for (std::size_t c = 0; c < result.size(); ++c) {
        result[c] = !reference(static_cast<unsigned char>(c)).empty();
    }
    return result;
}
constexpr std::array<bool, 256> needsReference = referencesNeeded();

/// The document while it grows. Room is made before many bytes are put.
class Output
{
public:
    explicit Output(std::size_t expected) : m_bytes(static_cast<qsizetype>(expected), Qt::Uninitialized) {}

    void makeRoom(std::size_t bytes)
    {
        const qsizetype needed = m_size + static_cast<qsizetype>(bytes);
        if (needed > m_bytes.size()) {
            m_bytes.resize(needed + needed / 2);
        }
        m_at = m_bytes.data() + m_size;
    }
    void done() { m_size = m_at - m_bytes.constData(); }

    void put(std::string_view text)
    {
        std::memcpy(m_at, text.data(), text.size());
        m_at += text.size();
    }
    std::string_view putEscaped(std::string_view text)
    {
        const char *const begin = m_at;
        for (const char c : text) {
            if (!needsReference[static_cast<unsigned char>(c)]) [[likely]] {
                *m_at++ = c;
            } else {
                put(reference(static_cast<unsigned char>(c)));
            }
        }
        return {begin, static_cast<std::size_t>(m_at - begin)};
    }
    template <class Number> void putNumber(Number number)
    {
        m_at = std::to_chars(m_at, m_at + 20, number).ptr;
    }

    QByteArray bytes() &&
    {
        m_bytes.resize(m_size);
        m_bytes.squeeze();
        return std::move(m_bytes);
    }

private:
    QByteArray m_bytes;
    qsizetype m_size = 0;
    char *m_at = nullptr;
};

std::string escaped(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        const std::string_view instead = reference(static_cast<unsigned char>(c));
        result.append(instead.empty() ? std::string_view(&c, 1) : instead);
    }
    return result;
}

std::string attributesOf(const StationAttributes &station)
{
    const auto truth = [](bool value) { return std::string(value ? "True" : "False"); };
    const auto text = [](const QString &value) { return escaped(storedText(value)); };
    return " exclusiveMode=\"" + truth(station.exclusiveMode) + "\" exclusive_day_on=\"" +
           std::to_string(station.schedule.dayOn) + "\" exclusive_day_off=\"" +
           std::to_string(station.schedule.dayOff) + "\" exclusive_hour_on=\"" +
           text(station.schedule.hourOn) + "\" exclusive_hour_off=\"" + text(station.schedule.hourOff) +
           "\" hostAddress=\"" + text(station.hostAddress) + "\" online=\"" + truth(station.online) + '"';
}

/// The beginnings of the keys of nodes under others, made once for each node that has some.
class KeyBeginnings
{
public:
    explicit KeyBeginnings(const NodeStore &nodes) : m_nodes(nodes), m_of(nodes.end()) { m_texts.resize(1); }

    /// The key of the node above and "/", escaped; nothing above a station.
    const std::string &of(NodeStore::Id parent)
    {
        if (m_of[parent] == 0 && parent != NodeStore::root) {
            m_nodes.getKeyInNextRun(parent, m_key);
            m_of[parent] = static_cast<std::uint32_t>(m_texts.size());
            m_texts.push_back(escaped(m_key) + '/');
        }
        return m_texts[m_of[parent]];
    }

private:
    const NodeStore &m_nodes;
    std::vector<std::uint32_t> m_of; ///< by node: which of the texts, 0 for none yet
    std::vector<std::string> m_texts;
    std::string m_key;
};

} // namespace

QByteArray writeNodes(const NodeStore &nodes,
                      const std::function<StationAttributes(const QString &kennung)> &attributes)
{
    if (nodes.count() == 0) {
        return QByteArrayLiteral("<KTR/>");
    }
    constexpr std::size_t markup = 80; // "<item" to "/>" with the numbers and the usual beginning of a key
    Output out(2 * nodes.arenaSize() + markup * nodes.count());
    KeyBeginnings beginnings(nodes);
    out.makeRoom(markup);
    out.put("<KTR>");
    out.done();
    std::size_t index = 0;
    for (NodeStore::Id id = NodeStore::root + 1; id < nodes.end(); ++id) {
        if (!nodes.isAlive(id)) {
            continue;
        }
        const bool isStation = nodes.parent(id) == NodeStore::root;
        const auto [name, text, size] = nodes.texts(id);
        const std::string &beginning = beginnings.of(nodes.parent(id));
        const std::string own = isStation ? attributesOf(attributes(textOf(name))) : std::string();
        const std::string_view last = isStation ? text : name;
        out.makeRoom(markup + own.size() + beginning.size() + longestReference * (last.size() + text.size()));
        out.put("<item");
        out.putNumber(++index);
        out.put(own);
        out.put(" key=\"");
        out.put(beginning);
        const std::string_view written = out.putEscaped(last);
        out.put("\" text=\"");
        if (text.data() == last.data()) {
            out.put(written);
        } else {
            out.putEscaped(text);
        }
        out.put("\" ForeColor=\"");
        out.putNumber(nodes.colour(id));
        out.put("\"/>");
        out.done();
    }
    out.makeRoom(markup);
    out.put("</KTR>");
    out.done();
    return std::move(out).bytes();
}

} // namespace ktr
