#include "config/xml_document.h"
#include "opmode/keeping/damaged_nodes_reader.h"
#include "opmode/keeping/nodes_file.h"
#include "opmode/keeping/parsed_nodes.h"
#include "opmode/keeping/plain_nodes_reader.h"
#include "opmode/keeping/station_names.h"
#include "platform/text_rules.h"

#include <QCoreApplication>
#include <QUtf8StringView>

#include <algorithm>
#include <array>
#include <charconv>
#include <pugixml.hpp>

namespace ktr {

namespace {

QString readerText(const char *text)
{
    return QCoreApplication::translate("Files", text);
}

/// Whether a character reference, what follows "&#", names a character of XML.
bool isCharacterReference(std::string_view digits)
{
    const bool hexadecimal = digits.starts_with('x');
    digits.remove_prefix(hexadecimal ? 1 : 0);
    std::uint32_t code = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), code, hexadecimal ? 16 : 10);
    const bool complete = error == std::errc() && end != digits.data() + digits.size() && *end == ';';
    return complete && isXmlCharacter(code);
}

/// Refuses what the parser would take: characters, and references to characters, that XML does not know.
Status checkCharacters(std::string_view utf8)
{
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 && c != '\n' && c != '\r' && c != '\t') {
            return Status::failed(
                readerText(QT_TRANSLATE_NOOP("Files", "there is a character of number %1")).arg(int{byte}));
        }
    }
    for (std::size_t at = utf8.find("&#"); at != std::string_view::npos; at = utf8.find("&#", at + 2)) {
        if (!isCharacterReference(utf8.substr(at + 2, 12))) {
            return Status::failed(readerText(
                QT_TRANSLATE_NOOP("Files", "there is a reference to a character that does not exist")));
        }
    }
    return Status::done();
}

/// Whether what follows an "&" is one of the references that XML knows.
bool isReference(std::string_view rest)
{
    return std::ranges::any_of(std::array<std::string_view, 6>{"#", "amp;", "lt;", "gt;", "quot;", "apos;"},
                               [rest](std::string_view known) { return rest.starts_with(known); });
}

/// Whether an attribute has what must not stand there as it is. The parser takes it for text.
bool hasRawMarkup(std::string_view text)
{
    char quote = 0; // of the value that `at` is in
    bool isInTag = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (quote != 0) {
            if (c == '<' || (c == '&' && !isReference(text.substr(at + 1, 5)))) {
                return true;
            }
            quote = c == quote ? '\0' : quote;
        } else if (isInTag) {
            quote = c == '"' || c == '\'' ? c : '\0';
            isInTag = c != '>';
        } else if (c == '<') {
            const std::string_view end = text.substr(at).starts_with("<!--") ? "-->"
                                         : text.substr(at).starts_with("<?") ? "?>"
                                                                             : std::string_view();
            isInTag = end.empty();
            at = isInTag ? at : std::min(text.find(end, at), text.size());
        }
    }
    return false;
}

/// Gives false when an attribute stands twice.
bool takeAttributes(const pugi::xml_node &element, NodeAttributeValues &values)
{
    values.fill({});
    for (const pugi::xml_attribute &attribute : element.attributes()) {
        const auto name = std::ranges::find(nodeAttributeNames, std::string_view(attribute.name()));
        if (name != nodeAttributeNames.end()) {
            std::string_view &value = values[static_cast<std::size_t>(name - nodeAttributeNames.begin())];
            if (value.data() != nullptr) {
                return false;
            }
            value = attribute.value();
        }
    }
    return true;
}

/// The elements, when the document is sound: one element `KTR` whose elements hold no others.
Status takeElements(const pugi::xml_document &document, ParsedNodes &nodes)
{
    pugi::xml_node root;
    for (const pugi::xml_node &node : document.children()) {
        if (node.type() == pugi::node_doctype) {
            return Status::failed(
                readerText(QT_TRANSLATE_NOOP("Files", "a document type declaration is not accepted")));
        }
        if (node.type() == pugi::node_element) {
            if (!root.empty() || std::string_view(node.name()) != "KTR") {
                return Status::failed(
                    readerText(QT_TRANSLATE_NOOP("Files", "the document is not a single element \"KTR\"")));
            }
            root = node;
        }
    }
    NodeAttributeValues values;
    for (const pugi::xml_node &element : root.children()) {
        if (!takeAttributes(element, values)) {
            return Status::failed(
                readerText(QT_TRANSLATE_NOOP("Files", "an attribute of \"%1\" stands twice"))
                    .arg(QString::fromUtf8(element.name())));
        }
        if (!element.first_child().empty()) {
            return Status::failed(readerText(QT_TRANSLATE_NOOP("Files", "\"%1\" is not empty"))
                                      .arg(QString::fromUtf8(element.name())));
        }
        if (element.type() == pugi::node_pcdata || element.type() == pugi::node_cdata) {
            return Status::failed(
                readerText(QT_TRANSLATE_NOOP("Files", "there is text between the elements")));
        }
        if (element.type() == pugi::node_element) {
            nodes.add(values);
        }
    }
    return Status::done();
}

constexpr unsigned asWritten = pugi::parse_escapes | pugi::parse_wconv_attribute | pugi::parse_eol |
                               pugi::parse_cdata | pugi::parse_doctype;

/// The attributes of one element, by the same rules as in a document that is sound.
bool takeLoneElement(pugi::xml_document &parsed, const std::string &element, NodeAttributeValues &values)
{
    return QUtf8StringView(element.data(), std::ssize(element)).isValidUtf8() && !hasNonCharacter(element) &&
           checkCharacters(element) &&
           parsed.load_buffer(element.data(), element.size(), asWritten, pugi::encoding_utf8) &&
           takeAttributes(parsed.first_child(), values);
}

/// What the parser, which speaks English only, could not read.
QString parserFault(pugi::xml_parse_status status)
{
    switch (status) {
    case pugi::status_no_document_element:
        return readerText(QT_TRANSLATE_NOOP("Files", "there is no element"));
    case pugi::status_bad_comment:
    case pugi::status_bad_cdata:
    case pugi::status_bad_pi:
        return readerText(QT_TRANSLATE_NOOP("Files", "a comment or another section has no end"));
    case pugi::status_bad_doctype:
        return readerText(QT_TRANSLATE_NOOP("Files", "a document type declaration is not accepted"));
    case pugi::status_bad_attribute:
        return readerText(QT_TRANSLATE_NOOP("Files", "an attribute cannot be read"));
    case pugi::status_bad_end_element:
    case pugi::status_end_element_mismatch:
        return readerText(QT_TRANSLATE_NOOP("Files", "an element has no end, or another one's"));
    case pugi::status_out_of_memory:
        return readerText(QT_TRANSLATE_NOOP("Files", "the memory does not suffice"));
    default:
        return readerText(QT_TRANSLATE_NOOP("Files", "what stands there is no element"));
    }
}

/// Any document. What the nodes refer to is kept in `utf8`.
Status parseNodes(const QByteArray &document, QByteArray &utf8, pugi::xml_document &parsed,
                  ParsedNodes &nodes, QStringList &remarks)
{
    if (Status decoded = xmlToUtf8(document, utf8); !decoded) {
        return decoded;
    }
    const std::string_view text(utf8.constData(), static_cast<std::size_t>(utf8.size()));
    if (Status characters = checkCharacters(text); !characters) {
        return characters;
    }
    const bool isRaw = hasRawMarkup(text);
    const pugi::xml_parse_result result =
        parsed.load_buffer_inplace(utf8.data(), text.size(), asWritten, pugi::encoding_utf8);
    if (!result) {
        return Status::failed(readerText(QT_TRANSLATE_NOOP("Files", "at byte %1: %2"))
                                  .arg(result.offset)
                                  .arg(parserFault(result.status)));
    }
    if (isRaw) {
        remarks += readerText(
            QT_TRANSLATE_NOOP("Files", "an \"&\" or \"<\" that stands for itself was taken as text"));
    }
    return takeElements(parsed, nodes);
}

} // namespace

Status readNodes(const QByteArray &document, QStringList &remarks,
                 const std::function<void(const StoredNode &)> &take,
                 const std::function<void(std::size_t nodes, std::size_t bytes)> &expect)
{
    const std::string_view bytes(document.constData(), static_cast<std::size_t>(document.size()));
    ParsedNodes nodes;
    PlainNodesReader plain;
    QByteArray utf8;
    pugi::xml_document parsed;
    DamagedNodesReader damaged([&parsed](const std::string &element, NodeAttributeValues &values) {
        return takeLoneElement(parsed, element, values);
    });
    if (!plain.read(bytes, nodes)) {
        nodes = {};
        if (Status read = parseNodes(document, utf8, parsed, nodes, remarks); !read) {
            nodes = {};
            // The parser changed what it read; and what is no text at all is read byte by byte.
            if (!xmlToUtf8(document, utf8) && utf8.isEmpty() && isMeantAsUtf8(document)) {
                utf8 = document;
            }
            if (!damaged.read({utf8.constData(), static_cast<std::size_t>(utf8.size())}, nodes)) {
                return read;
            }
            remarks = damaged.remarks();
        }
    }
    if (!nodes.unreadable().empty()) {
        StationNames stations;
        std::ranges::for_each(nodes.unreadable(), [&](std::string_view key) { stations.add(key); });
        remarks +=
            readerText(QT_TRANSLATE_NOOP(
                           "Files", "nodes with a value that cannot be read, which was left out: %1 (%2)"))
                .arg(QString::number(nodes.unreadable().size()), stations.text());
    }
    if (expect) {
        expect(nodes.nodes().size(), nodes.bytes());
    }
    const ParsedNodes::Nodes &all = nodes.nodes();
    auto station = nodes.stations().cbegin();
    for (std::size_t at = 0; at < all.size(); ++at) {
        const ParsedNodes::Node &node = all[at];
        take({node.key, node.text, node.colour, node.isStation ? &*station++ : nullptr,
              at + nodesAhead < all.size() ? all[at + nodesAhead].key : std::string_view()});
    }
    return Status::done();
}

} // namespace ktr
