#include "opmode/nodes_file.h"

#include "config/xml_document.h"
#include "opmode/checksum.h"
#include "opmode/station_tree.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <array>
#include <charconv>
#include <pugixml.hpp>

namespace ktr {

namespace {

constexpr qint64 longestFile = qint64{1} << 30;

QString translated(const char *text)
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
    return complete && (code == 0x9 || code == 0xA || code == 0xD || (code >= 0x20 && code <= 0xD7FF) ||
                        (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF));
}

bool isControlCharacter(char c)
{
    return static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\r' && c != '\t';
}

/// -1 when there is none.
int firstControlCharacter(QByteArrayView utf8)
{
    // In pieces without a way out of their middle: the compiler takes many characters at once.
    constexpr qsizetype piece = 4096;
    for (qsizetype at = 0; at < utf8.size(); at += piece) {
        const QByteArrayView part = utf8.sliced(at, std::min(piece, utf8.size() - at));
        unsigned char found = 0;
        for (const char c : part) {
            found |= static_cast<unsigned char>(isControlCharacter(c));
        }
        if (found != 0) {
            return *std::ranges::find_if(part, isControlCharacter);
        }
    }
    return -1;
}

/// Refuses what the parser would take: characters, and references to characters, that XML does not know.
Status checkCharacters(const QByteArray &utf8)
{
    if (const int c = firstControlCharacter(utf8); c >= 0) {
        return Status::failed(translated("there is a character of number %1").arg(c));
    }
    const std::string_view text(utf8.constData(), static_cast<std::size_t>(utf8.size()));
    for (std::size_t at = text.find("&#"); at != std::string_view::npos; at = text.find("&#", at + 2)) {
        if (!isCharacterReference(text.substr(at + 2, 12))) {
            return Status::failed(translated("there is a reference to a character that does not exist"));
        }
    }
    return Status::done();
}

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

QString toText(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// The attributes of an element, each at most once.
class Attributes
{
public:
    enum Name { Exclusive, DayOn, DayOff, HourOn, HourOff, Host, Online, Key, Text, Colour, Count };

    /// Gives false when one stands twice.
    bool take(const pugi::xml_node &element)
    {
        m_values.fill({});
        std::size_t expected = Key; // of all elements but stations, in the order in which they are written
        for (const pugi::xml_attribute &attribute : element.attributes()) {
            const std::string_view name = attribute.name();
            const std::size_t which =
                expected < Count && names[expected] == name ? expected++ : indexOf(name);
            if (which == Count) {
                continue;
            }
            if (m_values[which].data() != nullptr) {
                return false;
            }
            m_values[which] = attribute.value();
        }
        return true;
    }
    std::string_view operator[](Name name) const { return m_values[name]; }

private:
    static constexpr std::array<std::string_view, Count> names = {"exclusiveMode",
                                                                  "exclusive_day_on",
                                                                  "exclusive_day_off",
                                                                  "exclusive_hour_on",
                                                                  "exclusive_hour_off",
                                                                  "hostAddress",
                                                                  "online",
                                                                  "key",
                                                                  "text",
                                                                  "ForeColor"};
    static std::size_t indexOf(std::string_view name)
    {
        return static_cast<std::size_t>(std::ranges::find(names, name) - names.begin());
    }

    std::array<std::string_view, Count> m_values;
};

StationAttributes stationOf(const Attributes &attributes)
{
    StationAttributes station;
    station.exclusiveMode = truth(attributes[Attributes::Exclusive]);
    station.schedule = {toText(attributes[Attributes::HourOn]), number(attributes[Attributes::DayOn], 0),
                        toText(attributes[Attributes::HourOff]), number(attributes[Attributes::DayOff], 0)};
    station.hostAddress = toText(attributes[Attributes::Host]);
    station.online = truth(attributes[Attributes::Online]);
    return station;
}

/// An element in few bytes: the parser's own are far apart in memory and read only once.
struct Record
{
    std::string_view key;
    std::string_view text;
    std::int32_t colour;
};

struct Records
{
    std::vector<Record> nodes;
    std::vector<StationAttributes> stations; ///< of the keys without "/"
    std::size_t bytes = 0;                   ///< of the texts, and the names that differ from them, about
};

bool isStation(std::string_view key)
{
    return key.find('/') == std::string_view::npos;
}

Status takeElement(const pugi::xml_node &element, Records &records)
{
    Attributes attributes;
    if (!attributes.take(element)) {
        return Status::failed(
            translated("an attribute of \"%1\" stands twice").arg(QString::fromUtf8(element.name())));
    }
    if (!element.first_child().empty()) {
        return Status::failed(translated("\"%1\" is not empty").arg(QString::fromUtf8(element.name())));
    }
    if (element.type() == pugi::node_element) {
        constexpr std::size_t usualName = 4;
        const std::string_view key = attributes[Attributes::Key];
        const std::string_view text = attributes[Attributes::Text];
        records.nodes.push_back(
            {key, text, number(attributes[Attributes::Colour], StationTree::normalColour)});
        records.bytes += key.ends_with(text) ? text.size() : text.size() + usualName;
        if (isStation(key)) {
            records.stations.push_back(stationOf(attributes));
        }
    }
    return Status::done();
}

/// The elements, when the document is sound: one element `KTR` whose elements hold no others.
Status takeElements(const pugi::xml_document &document, Records &records)
{
    pugi::xml_node root;
    for (const pugi::xml_node &node : document.children()) {
        if (node.type() == pugi::node_doctype) {
            return Status::failed(translated("a document type declaration is not accepted"));
        }
        if (node.type() == pugi::node_element) {
            if (!root.empty() || std::string_view(node.name()) != "KTR") {
                return Status::failed(translated("the document is not a single element \"KTR\""));
            }
            root = node;
        }
    }
    for (const pugi::xml_node &element : root.children()) {
        if (Status taken = takeElement(element, records); !taken) {
            return taken;
        }
    }
    return Status::done();
}

} // namespace

Status readNodes(QByteArray document, const std::function<void(const NodeElement &)> &take,
                 const std::function<void(std::size_t nodes, std::size_t bytes)> &expect)
{
    QByteArray utf8;
    if (Status decoded = xmlToUtf8(document, utf8); !decoded) {
        return decoded;
    }
    const auto size = static_cast<std::size_t>(document.size());
    document.clear(); // mostly the same bytes, which are then parsed where they are
    if (Status characters = checkCharacters(utf8); !characters) {
        return characters;
    }
    pugi::xml_document parsed;
    const pugi::xml_parse_result result =
        parsed.load_buffer_inplace(utf8.data(), static_cast<std::size_t>(utf8.size()),
                                   pugi::parse_escapes | pugi::parse_wconv_attribute | pugi::parse_eol |
                                       pugi::parse_cdata | pugi::parse_doctype,
                                   pugi::encoding_utf8);
    if (!result) {
        return Status::failed(
            translated("at byte %1: %2").arg(result.offset).arg(QString::fromLatin1(result.description())));
    }
    Records records;
    constexpr std::size_t fewestBytesOfOurs = 96;
    records.nodes.reserve(size / fewestBytesOfOurs);
    if (Status sound = takeElements(parsed, records); !sound) {
        return sound;
    }
    if (expect) {
        expect(records.nodes.size(), records.bytes);
    }
    auto station = records.stations.cbegin();
    for (const Record &record : records.nodes) {
        take({record.key, record.text, record.colour, isStation(record.key) ? &*station++ : nullptr});
    }
    return Status::done();
}

Status NodesFile::load(const std::function<bool(const NodeElement &)> &take,
                       const std::function<void(std::size_t nodes, std::size_t bytes)> &expect)
{
    m_checksum = ktr::checksum({});
    m_keepAside = false;
    constexpr quint64 ofNoDocument = ~quint64{0};
    if (!QFileInfo::exists(m_path)) {
        return Status::done();
    }
    m_keepAside = true;
    m_checksum = ofNoDocument;
    QByteArray document;
    if (Status read = readFile(m_path, document, longestFile); !read) {
        return read;
    }
    const quint64 found = ktr::checksum(document);
    qsizetype leftOut = 0;
    const Status read = readNodes(
        std::move(document), [&](const NodeElement &element) { leftOut += take(element) ? 0 : 1; }, expect);
    if (!read) {
        return Status::failed(m_path + QLatin1String(": ") + read.message());
    }
    m_checksum = found;
    if (leftOut > 0) {
        return Status::failed(m_path + QLatin1String(": ") +
                              translated("nodes that belong nowhere were left out: %1").arg(leftOut));
    }
    m_keepAside = false;
    return Status::done();
}

Status NodesFile::save(const QByteArray &document)
{
    if (m_keepAside && QFileInfo::exists(m_path)) {
        if (Status aside = keepAside(m_path); !aside) {
            return aside;
        }
    }
    if (Status written = replaceFile(m_path, document); !written) {
        return written;
    }
    m_keepAside = false;
    m_checksum = ktr::checksum(document);
    return Status::done();
}

Status keepAside(const QString &path)
{
    const QFileInfo info(path);
    QString aside;
    int n = 1;
    do {
        aside = info.absolutePath() + u'/' + info.completeBaseName() + QStringLiteral(" (%1).").arg(n++) +
                info.suffix();
    } while (QFileInfo::exists(aside));
    QFile file(path);
    return file.rename(aside) ? Status::done()
                              : Status::failed(path + QLatin1String(": ") + file.errorString());
}

} // namespace ktr
