#include "opmode/keeping/damaged_nodes_reader.h"

#include <QCoreApplication>

#include <algorithm>

namespace ktr {

namespace {

constexpr std::string_view space = " \t\r\n";

/// The name at the beginning of a tag.
std::string_view nameOf(std::string_view tag)
{
    return tag.substr(0, tag.find_first_of(" \t\r\n/>"));
}

/// The names that the writer gives: "item" and a number.
bool isItem(std::string_view name)
{
    constexpr std::string_view item = "item";
    return name.size() > item.size() && name.starts_with(item) &&
           name.find_first_not_of("0123456789", item.size()) == std::string_view::npos;
}

QString remarkText(const char *text)
{
    return QCoreApplication::translate("Files", text);
}

} // namespace

bool DamagedNodesReader::read(std::string_view document, ParsedNodes &nodes)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    m_text = document.starts_with(byteOrderMark) ? document.substr(byteOrderMark.size()) : document;
    while (m_at < m_text.size()) {
        const std::size_t next = std::min(m_text.find('<', m_at), m_text.size());
        takeText(m_text.substr(m_at, next - m_at));
        m_at = next;
        if (m_at < m_text.size()) {
            takeMarkup();
        }
    }
    m_harmless += m_open.size();
    if (m_isForeign || (m_nodes.empty() && (m_lost > 0 || !m_isEnded))) {
        return false;
    }
    nodes.reserve(document.size());
    std::ranges::for_each(m_nodes, [&nodes](const NodeAttributeValues &values) { nodes.add(values); });
    return true;
}

void DamagedNodesReader::takeMarkup()
{
    const std::string_view rest = m_text.substr(m_at);
    if (rest.starts_with("<!--")) {
        skipPast("-->", m_at + 4);
    } else if (rest.starts_with("<![CDATA[")) {
        takeText(rest.substr(0, 1)); // of no use wherever it stands
        skipPast("]]>", m_at + 9);
    } else if (rest.starts_with("<?")) {
        skipPast("?>", m_at + 2);
    } else if (rest.starts_with("<!")) {
        takeDeclaration();
    } else if (rest.starts_with("</")) {
        takeEndTag();
    } else {
        takeStartTag();
    }
}

void DamagedNodesReader::skipPast(std::string_view end, std::size_t from)
{
    const bool isMissing = std::ranges::count(m_missing, end) > 0;
    const std::size_t found = isMissing ? std::string_view::npos : m_text.find(end, from);
    if (found == std::string_view::npos) { // never ended: what looks like elements in it are some
        if (!isMissing) {
            m_missing.push_back(end);
        }
        lose(m_at);
        m_at = from;
    } else {
        m_at = found + end.size();
    }
}

/// A document type declaration, which may hold others in brackets.
void DamagedNodesReader::takeDeclaration()
{
    m_hasDoctype = true;
    int depth = 0;
    char quote = 0;
    const bool isMissing = std::ranges::count(m_missing, "]>") > 0;
    for (std::size_t at = m_at + 1; at < m_text.size() && !isMissing; ++at) {
        const char c = m_text[at];
        if (quote != 0) {
            quote = c == quote ? '\0' : quote;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '<' || c == '[') {
            ++depth;
        } else if (c == '>' && depth-- == 0) {
            m_at = at + 1;
            return;
        } else if (c == ']') {
            --depth;
        }
    }
    if (!isMissing) {
        m_missing.emplace_back("]>");
    }
    lose(m_at);
    m_at += 2;
}

void DamagedNodesReader::takeText(std::string_view text)
{
    if (text.find_first_not_of(space) == std::string_view::npos) {
        return;
    }
    if (m_open.empty() || m_isEnded) {
        lose(m_at); // it was an element, perhaps
    } else {
        ++m_withContent;
    }
}

void DamagedNodesReader::takeStartTag()
{
    char quote = 0;
    std::size_t end = m_at + 1;
    for (; end < m_text.size() && m_text[end] != '<' && (quote != 0 || m_text[end] != '>'); ++end) {
        const char c = m_text[end];
        if (quote != 0) {
            quote = c == quote ? '\0' : quote;
        } else if (c == '"' || c == '\'') {
            quote = c;
        }
    }
    if (end == m_text.size() || m_text[end] == '<') {
        lose(m_at);
        m_at = end;
        return;
    }
    const std::string_view tag = m_text.substr(m_at + 1, end - m_at - 1);
    if (m_isEnded) {
        lose(m_at);
    } else if (!m_hasRoot) {
        m_hasRoot = true;
        if (nameOf(tag) == "KTR") {
            m_isEnded = tag.ends_with('/');
        } else if (isItem(nameOf(tag))) { // the root itself is damaged
            lose(0);
            takeElement(tag);
        } else {
            m_isForeign = true;
            ++m_harmless;
        }
    } else {
        takeElement(tag);
    }
    m_at = end + 1;
}

void DamagedNodesReader::takeElement(std::string_view tag)
{
    const bool hasContent = !tag.ends_with('/');
    std::string element("<");
    element.append(tag.substr(0, tag.size() - (hasContent ? 0 : 1))).append("/>");
    NodeAttributeValues values;
    if (usesUnknownEntity(element) || !m_takeElement(element, values) ||
        values[KeyAttribute].data() == nullptr) {
        lose(m_at);
        return;
    }
    for (std::string_view &value : values) {
        if (value.data() != nullptr) {
            value = m_values.emplace_back(value);
        }
    }
    m_isForeign = m_isForeign && !isItem(nameOf(tag)); // then it is the root's name that is damaged
    m_nodes.push_back(values);
    if (hasContent) {
        m_open.push_back({nameOf(tag), m_nodes.size()});
    }
}

void DamagedNodesReader::takeEndTag()
{
    constexpr std::ptrdiff_t deepest = 64; // an end whose beginning is lost is not looked for everywhere
    const std::size_t end = m_text.find_first_of("<>", m_at + 2);
    const std::string_view name = nameOf(m_text.substr(m_at + 2, end - m_at - 2));
    const auto last = m_open.rbegin() + std::min(std::ssize(m_open), deepest);
    const auto found = std::find_if(m_open.rbegin(), last, [name](const Open &o) { return o.name == name; });
    if (found != last) {
        if (m_nodes.size() > found->nodes) { // elements where none belong
            m_nodes.resize(found->nodes);
            ++m_withContent;
        }
        m_open.erase(std::prev(found.base()), m_open.end());
    } else if (name == "KTR" && !m_isEnded) {
        m_isEnded = true;
    } else {
        lose(m_at);
    }
    m_at = end == std::string_view::npos ? m_text.size() : m_text[end] == '>' ? end + 1 : end;
}

/// Only a document type declaration can have given them a meaning.
bool DamagedNodesReader::usesUnknownEntity(std::string_view element) const
{
    for (std::size_t at = element.find('&'); m_hasDoctype && at != std::string_view::npos;
         at = element.find('&', at + 1)) {
        const std::string_view rest = element.substr(at + 1);
        const bool isKnown = std::ranges::any_of(std::array{"#", "amp;", "lt;", "gt;", "quot;", "apos;"},
                                                 [rest](const char *name) { return rest.starts_with(name); });
        if (!isKnown) {
            return true;
        }
    }
    return false;
}

void DamagedNodesReader::lose(std::size_t at)
{
    m_firstLost = m_lost++ == 0 ? at : m_firstLost;
    if (!m_nodes.empty()) {
        m_lostBehind.add(m_nodes.back()[KeyAttribute]);
    }
}

QStringList DamagedNodesReader::remarks() const
{
    QStringList remarks;
    if (m_hasDoctype) {
        remarks += remarkText(QT_TRANSLATE_NOOP("Files", "a document type declaration was passed over"));
    }
    if (m_lost > 0) {
        remarks +=
            remarkText(QT_TRANSLATE_NOOP(
                           "Files", "damaged places, whose elements were left out: %1, the first at byte %2"))
                .arg(m_lost)
                .arg(m_firstLost);
        if (!m_lostBehind.isEmpty()) {
            remarks += remarkText(QT_TRANSLATE_NOOP("Files", "they stand behind nodes of: %1"))
                           .arg(m_lostBehind.text());
        }
    }
    if (m_withContent > 0) {
        remarks += remarkText(QT_TRANSLATE_NOOP("Files", "what stood inside of elements was left out: %1"))
                       .arg(m_withContent);
    }
    if (m_harmless > 0) {
        remarks += remarkText(QT_TRANSLATE_NOOP("Files", "defects that cost nothing: %1")).arg(m_harmless);
    }
    if (!m_isEnded) {
        remarks +=
            remarkText(QT_TRANSLATE_NOOP("Files", "its end is missing; what stands before that is used"));
    }
    return remarks;
}

} // namespace ktr
