#pragma once

#include "opmode/keeping/parsed_nodes.h"

#include <deque>
#include <string>

namespace ktr {

/// Reads a file of nodes in exactly the form in which writeNodes() writes it, several times faster than a
/// parser that knows all of XML. Whatever differs from that form, sound or not, is left to the parser.
class PlainNodesReader
{
public:
    /// Gives false, and nodes of no use, when the document has another form. The nodes refer to the
    /// document and to this object.
    bool read(std::string_view document, ParsedNodes &nodes);

private:
    bool takeLiteral(std::string_view literal);
    bool takeElement(ParsedNodes &nodes);
    bool takeStation();
    bool takeValue(std::string_view &value);
    bool takeLongWay(const char *begin, std::string_view &value);

    const char *m_at = nullptr;
    const char *m_end = nullptr;
    NodeAttributeValues m_values;      ///< of the present element; empty where it has none
    std::deque<std::string> m_decoded; ///< values with references
};

} // namespace ktr
