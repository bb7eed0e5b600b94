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

/// Refuses what the parser would take: characters, and references to characters, that XML does not know.
Status checkCharacters(const QByteArray &utf8)
{
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 && c != '\n' && c != '\r' && c != '\t') {
            return Status::failed(translated("there is a character of number %1").arg(int{byte}));
        }
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
        m_values.fill({});
        for (const pugi::xml_attribute &attribute : element.attributes()) {
            const auto name = std::ranges::find(names, std::string_view(attribute.name()));
            if (name != names.end()) {
                std::string_view &value = m_values[static_cast<std::size_t>(name - names.begin())];
                if (value.data() != nullptr) {
                    return false;
                }
                value = attribute.value();
            }
        }
        return true;
    }
    std::string_view operator[](Name name) const { return m_values[name]; }

private:
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

/// The root, when the document is sound: one element `KTR` whose elements hold no others.
Status rootOf(const pugi::xml_document &document, pugi::xml_node &root)
{
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
    Attributes attributes;
    for (const pugi::xml_node &element : root.children()) {
        if (!attributes.take(element)) {
            return Status::failed(
                translated("an attribute of \"%1\" stands twice").arg(QString::fromUtf8(element.name())));
        }
        if (!element.first_child().empty()) {
            return Status::failed(translated("\"%1\" is not empty").arg(QString::fromUtf8(element.name())));
        }
    }
    return Status::done();
}

} // namespace

Status readNodes(const QByteArray &document, const std::function<void(const NodeElement &)> &take)
{
    QByteArray utf8;
    if (Status decoded = xmlToUtf8(document, utf8); !decoded) {
        return decoded;
    }
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
    pugi::xml_node root;
    if (Status sound = rootOf(parsed, root); !sound) {
        return sound;
    }
    Attributes attributes;
    for (const pugi::xml_node &element : root.children()) {
        if (element.type() != pugi::node_element) {
            continue;
        }
        attributes.take(element);
        const std::string_view key = attributes[Attributes::Key];
        const bool isStation = key.find('/') == std::string_view::npos;
        const StationAttributes station = isStation ? stationOf(attributes) : StationAttributes();
        take({key, attributes[Attributes::Text],
              number(attributes[Attributes::Colour], StationTree::normalColour),
              isStation ? &station : nullptr});
    }
    return Status::done();
}

QByteArray writeNodes(const NodeStore &nodes,
                      const std::function<StationAttributes(const QString &kennung)> &attributes)
{
    pugi::xml_document document;
    pugi::xml_node root = document.append_child("KTR");
    const auto append = [](pugi::xml_node &element, const char *name, const std::string &value) {
        element.append_attribute(name).set_value(value.c_str());
    };
    std::size_t index = 0;
    std::string key;
    for (NodeStore::Id id = NodeStore::root + 1; id < nodes.end(); ++id) {
        if (!nodes.isAlive(id)) {
            continue;
        }
        pugi::xml_node element = root.append_child(("item" + std::to_string(++index)).c_str());
        if (nodes.parent(id) == NodeStore::root) {
            const StationAttributes station = attributes(toText(nodes.name(id)));
            append(element, "exclusiveMode", station.exclusiveMode ? "True" : "False");
            append(element, "exclusive_day_on", std::to_string(station.schedule.dayOn));
            append(element, "exclusive_day_off", std::to_string(station.schedule.dayOff));
            append(element, "exclusive_hour_on", storedText(station.schedule.hourOn));
            append(element, "exclusive_hour_off", storedText(station.schedule.hourOff));
            append(element, "hostAddress", storedText(station.hostAddress));
            append(element, "online", station.online ? "True" : "False");
        }
        nodes.keyInNextRun(id, key);
        append(element, "key", key);
        append(element, "text", std::string(nodes.text(id)));
        element.append_attribute("ForeColor").set_value(nodes.colour(id));
    }
    struct Writer : pugi::xml_writer
    {
        void write(const void *data, std::size_t size) override
        {
            bytes.append(static_cast<const char *>(data), static_cast<qsizetype>(size));
        }
        QByteArray bytes;
    } writer;
    document.save(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
    return writer.bytes;
}

Status NodesFile::load(const std::function<bool(const NodeElement &)> &take)
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
    qsizetype leftOut = 0;
    const Status read =
        readNodes(document, [&](const NodeElement &element) { leftOut += take(element) ? 0 : 1; });
    if (!read) {
        return Status::failed(m_path + QLatin1String(": ") + read.message());
    }
    m_checksum = ktr::checksum(document);
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
