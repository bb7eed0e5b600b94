#include "config/xml_document.h"

#include "platform/text_rules.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QXmlStreamReader>

#include <algorithm>
#include <array>
#include <string_view>

namespace ktr {

namespace {

/// The encoding that an 8-bit document declares, in lower case; "utf-8" when it declares none.
QByteArray declaredEncoding(const QByteArray &document)
{
    const auto *const start =
        std::ranges::find_if_not(document, [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); });
    if (start == document.end() || *start != '<' ||
        !std::string_view(start, document.end()).starts_with("<?xml")) {
        return QByteArrayLiteral("utf-8"); // the usual file, without looking for more
    }
    static const QRegularExpression declaration(
        QStringLiteral("^\\s*<\\?xml[^>]*?\\sencoding\\s*=\\s*[\"']([A-Za-z0-9._-]+)[\"']"));
    const auto match = declaration.match(QString::fromLatin1(document.left(512)));
    return match.hasMatch() ? match.captured(1).toLower().toLatin1() : QByteArrayLiteral("utf-8");
}

std::optional<QString> decode(QStringConverter::Encoding encoding, QByteArrayView bytes)
{
    QStringDecoder decoder(encoding,
                           QStringConverter::Flag::Stateless); // half a character at the end is an error
    QString text = decoder.decode(bytes);
    const bool isWide = encoding != QStringConverter::Utf8; // which may hold halves of characters
    const bool isHalf = isWide && (bytes.size() % 2 != 0 || !text.isValidUtf16());
    return decoder.hasError() || isHalf ? std::nullopt : std::optional(std::move(text));
}

/// More attributes than any element of a configuration has. The reader compares each with all others of its
/// element, so that a million of them would keep it busy for hours.
constexpr int mostAttributes = 1000;

/// Where the tag that begins at `start` ends, nothing when it does not; counts its attributes on the way.
std::optional<qsizetype> tagEnd(QStringView text, qsizetype start, int &attributes)
{
    attributes = 0;
    for (qsizetype at = start; at < text.size(); ++at) {
        const QChar c = text[at];
        if (c == u'>') {
            return at;
        }
        if (c == u'"' || c == u'\'') {
            ++attributes;
            at = text.indexOf(c, at + 1);
            if (at < 0) {
                break;
            }
        }
    }
    return std::nullopt;
}

bool isUnreadable(QChar c)
{
    return (c < u' ' || c > QChar(0xFFFD)) && !isXmlCharacter(c.unicode());
}

/// Refuses what the reader would accept or be held up by: characters that XML does not know, document type
/// declarations, elements of endless attributes. Other faults are left to the reader.
Status isReadable(const QString &text)
{
    if (const auto *const c = std::ranges::find_if(text, isUnreadable); c != text.end()) {
        return Status::failed(
            QCoreApplication::translate("Files", "there is a character of number %1").arg(c->unicode()));
    }
    struct Section
    {
        QLatin1String start;
        QLatin1String end;
    };
    constexpr std::array sections = {Section{QLatin1String("<!--"), QLatin1String("-->")},
                                     Section{QLatin1String("<![CDATA["), QLatin1String("]]>")},
                                     Section{QLatin1String("<?"), QLatin1String("?>")}};
    const QStringView view = text;
    for (qsizetype at = view.indexOf(u'<'); at >= 0; at = view.indexOf(u'<', at + 1)) {
        const QStringView rest = view.mid(at);
        const bool isTag = rest.size() < 2 || (rest[1] != u'!' && rest[1] != u'?');
        const auto section = std::ranges::find_if(
            sections, [&](const Section &candidate) { return !isTag && rest.startsWith(candidate.start); });
        if (section != sections.end()) {
            const qsizetype end = text.indexOf(section->end, at + section->start.size());
            if (end < 0) {
                return Status::done(); // cut off: the reader says where
            }
            at = end + section->end.size() - 1;
        } else if (!isTag) {
            return Status::failed(
                QCoreApplication::translate("Files", "a document type declaration is not accepted"));
        } else {
            int attributes = 0;
            const std::optional<qsizetype> end = tagEnd(view, at + 1, attributes);
            if (attributes > mostAttributes) {
                return Status::failed(
                    QCoreApplication::translate("Files", "an element has more than %1 attributes")
                        .arg(mostAttributes));
            }
            if (!end) {
                return Status::done();
            }
            at = *end;
        }
    }
    return Status::done();
}

/// The document's characters, by its byte-order mark, its first bytes or its declaration.
Status toText(const QByteArray &document, QString &text)
{
    const auto startsWith = [&document](QByteArrayView start) {
        return QByteArrayView(document).startsWith(start);
    };
    std::optional<QString> decoded;
    if (startsWith(QByteArrayView("\xFF\xFE", 2)) || startsWith(QByteArrayView("<\0", 2))) {
        decoded = decode(QStringConverter::Utf16LE, document);
    } else if (startsWith(QByteArrayView("\xFE\xFF", 2)) || startsWith(QByteArrayView("\0<", 2))) {
        decoded = decode(QStringConverter::Utf16BE, document);
    } else {
        const QByteArray encoding =
            startsWith("\xEF\xBB\xBF") ? QByteArrayLiteral("utf-8") : declaredEncoding(document);
        if (encoding == "utf-8") {
            decoded = decode(QStringConverter::Utf8, document);
        } else if (encoding == "windows-1252" || encoding == "cp1252") {
            decoded = fromWindows1252(document);
        } else if (encoding == "iso-8859-1" || encoding == "latin1" || encoding == "us-ascii") {
            decoded = QString::fromLatin1(document);
        } else {
            return Status::failed(QCoreApplication::translate("Files", "the encoding \"%1\" is not known")
                                      .arg(QLatin1String(encoding)));
        }
    }
    if (!decoded) {
        return Status::failed(
            QCoreApplication::translate("Files", "the bytes are not in the encoding of the document"));
    }
    text = decoded->startsWith(QChar::ByteOrderMark) ? decoded->mid(1) : *decoded;
    return isReadable(text);
}

enum class Context { Text, Attribute };

QByteArray escaped(const QString &text, Context context)
{
    const bool attribute = context == Context::Attribute;
    QString out;
    out.reserve(text.size());
    for (const char32_t c : text.toUcs4()) {
        if (!isXmlCharacter(c)) {
            continue; // a single such character would make the whole file unreadable
        }
        if (c == U'&') {
            out += QLatin1String("&amp;");
        } else if (c == U'<') {
            out += QLatin1String("&lt;");
        } else if (c == U'>') {
            out += QLatin1String("&gt;");
        } else if (c == U'"' && attribute) {
            out += QLatin1String("&quot;");
        } else if (c == U'\r' || ((c == U'\n' || c == U'\t') && attribute)) {
            out +=
                QStringLiteral("&#%1;").arg(static_cast<int>(c)); // else reading would turn it into another
        } else {
            out += QChar::fromUcs4(c);
        }
    }
    return out.toUtf8();
}

} // namespace

bool isMeantAsUtf8(const QByteArray &document)
{
    const bool isWide =
        document.startsWith("\xFF\xFE") || document.startsWith("\xFE\xFF") || document.left(2).contains('\0');
    return document.startsWith("\xEF\xBB\xBF") || (!isWide && declaredEncoding(document) == "utf-8");
}

Status xmlToUtf8(const QByteArray &document, QByteArray &utf8)
{
    const bool isUtf8 = isMeantAsUtf8(document);
    // The usual case, without the detour: such a document may have millions of elements.
    const std::string_view bytes(document.constData(), static_cast<std::size_t>(document.size()));
    if (isUtf8 && document.isValidUtf8() && !hasNonCharacter(bytes)) {
        utf8 = document;
        return Status::done();
    }
    QString characters;
    Status read = toText(document, characters);
    utf8 = characters.toUtf8();
    return read;
}

Status XmlDocument::load(const QByteArray &document)
{
    m_elements.clear();
    QString characters;
    if (Status read = toText(document, characters); !read) {
        return read;
    }

    QHash<QString, Element> elements;
    QStringList open; // the names of the elements around the present place; empty where one is not the first
    QXmlStreamReader reader(characters);
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            QString name = reader.qualifiedName().toString();
            const bool first = !elements.contains(name);
            if (first) {
                elements.insert(name, {QString(), reader.attributes()});
            }
            open.append(first ? std::move(name) : QString());
            break;
        }
        case QXmlStreamReader::Characters:
            if (!open.last().isEmpty() && !reader.isWhitespace()) {
                if (QString &text = elements[open.last()].text; text.isNull()) {
                    text = reader.text().toString();
                }
            }
            break;
        case QXmlStreamReader::EndElement:
            open.removeLast();
            break;
        default:
            break;
        }
    }
    if (reader.hasError()) {
        return Status::failed(QCoreApplication::translate("Files", "line %1, column %2: %3")
                                  .arg(reader.lineNumber())
                                  .arg(reader.columnNumber())
                                  .arg(reader.errorString().simplified()));
    }
    m_elements = std::move(elements);
    return Status::done();
}

QStringList XmlDocument::names() const
{
    QStringList names;
    for (auto element = m_elements.cbegin(); element != m_elements.cend(); ++element) {
        names += element.key();
        for (const QXmlStreamAttribute &attribute : element->attributes) {
            names += element.key() + u' ' + attribute.qualifiedName();
        }
    }
    names.sort();
    return names;
}

QString XmlDocument::text(const QString &element) const
{
    const auto found = m_elements.constFind(element);
    return found == m_elements.constEnd() ? QString() : found->text;
}

QString XmlDocument::attribute(const QString &element, QStringView name) const
{
    const auto found = m_elements.constFind(element);
    if (found == m_elements.constEnd()) {
        return {};
    }
    const auto attribute = std::ranges::find(found->attributes, name, &QXmlStreamAttribute::qualifiedName);
    return attribute == found->attributes.end() ? QString() : attribute->value().toString();
}

void XmlWriter::open(const QString &element)
{
    m_document += '<' + element.toUtf8() + '>';
}

void XmlWriter::close(const QString &element)
{
    m_document += "</" + element.toUtf8() + '>';
}

void XmlWriter::textElement(const QString &element, const QString &text)
{
    open(element);
    m_document += escaped(text, Context::Text);
    close(element);
}

void XmlWriter::attributesElement(const QString &element,
                                  const QList<std::pair<QString, QString>> &attributes)
{
    m_document += '<' + element.toUtf8();
    for (const auto &[name, value] : attributes) {
        m_document += ' ' + name.toUtf8() + "=\"" + escaped(value, Context::Attribute) + '"';
    }
    m_document += "/>";
}

} // namespace ktr
