#pragma once

#include "opmode/keeping/parsed_nodes.h"
#include "opmode/keeping/station_names.h"

#include <QStringList>

#include <deque>
#include <functional>
#include <string>
#include <utility>

namespace ktr {

/// Reads what can be used of a document of nodes that is not sound, so that one defect costs the element it
/// stands in and not the list: a damaged tag, a character that does not exist, an attribute that stands
/// twice, content where none belongs, an end that is missing. A document type declaration is passed over;
/// what it declares stays unknown. Takes many times as long as the parser, which therefore comes first.
class DamagedNodesReader
{
public:
    /// Takes the attributes of one element, "<" to "/>", when it is sound.
    using TakeElement = std::function<bool(const std::string &element, NodeAttributeValues &values)>;

    explicit DamagedNodesReader(TakeElement takeElement) : m_takeElement(std::move(takeElement)) {}

    /// UTF-8, or what should be. Gives false when nothing of it is a list. The nodes refer to this object.
    bool read(std::string_view document, ParsedNodes &nodes);
    /// What could not be used.
    QStringList remarks() const;

private:
    void takeMarkup();
    void takeDeclaration();
    void takeStartTag();
    void takeEndTag();
    void takeText(std::string_view text);
    void takeElement(std::string_view tag);
    void skipPast(std::string_view end, std::size_t from);
    void lose(std::size_t at);
    bool usesUnknownEntity(std::string_view element) const;

    struct Open ///< an element whose end has not come
    {
        std::string_view name;
        std::size_t nodes; ///< that stood before its content
    };

    TakeElement m_takeElement;
    std::string_view m_text;
    std::size_t m_at = 0;
    std::deque<std::string> m_values;
    std::vector<NodeAttributeValues> m_nodes;
    std::vector<Open> m_open;
    std::vector<std::string_view> m_missing; ///< ends that do not come any more
    bool m_hasRoot = false;
    bool m_isForeign = false; ///< the first element is none of ours
    bool m_isEnded = false;
    bool m_hasDoctype = false;
    std::size_t m_lost = 0;
    std::size_t m_firstLost = 0;
    StationNames m_lostBehind; ///< of what stood before the damaged places
    std::size_t m_withContent = 0;
    std::size_t m_harmless = 0; ///< defects that cost nothing
};

} // namespace ktr
