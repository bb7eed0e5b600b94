#include "config/xml_document.h"

#include "platform/text_rules.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QXmlStreamReader>

namespace ktr {

namespace {

/// The encoding that an 8-bit document declares, in lower case; "utf-8" when it declares none.
QByteArray declaredEncoding(const QByteArray &document)
{
    static const QRegularExpression declaration(
        QStringLiteral("^\\s*<\\?xml[^>]*?\\sencoding\\s*=\\s*[\"']([A-Za-z0-9._-]+)[\"']"));
    const auto match = declaration.match(QString::fromLatin1(document.left(512)));
    return match.hasMatch() ? match.captured(1).toLower().toLatin1() : QByteArrayLiteral("utf-8");
}

std::optional<QString> decode(QStringDecoder decoder, QByteArrayView bytes)
{
    QString text = decoder.decode(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

/// The document's characters, by its byte-order mark, its first bytes or its declaration.
Status toText(const QByteArray &document, QString &text)
{
    const auto startsWith = [&document](QByteArrayView start) {
        return QByteArrayView(document).startsWith(start);
    };
    std::optional<QString> decoded;
    if (startsWith(QByteArrayView("\xFF\xFE", 2)) || startsWith(QByteArrayView("<\0", 2))) {
        decoded = decode(QStringDecoder(QStringDecoder::Utf16LE), document);
    } else if (startsWith(QByteArrayView("\xFE\xFF", 2)) || startsWith(QByteArrayView("\0<", 2))) {
        decoded = decode(QStringDecoder(QStringDecoder::Utf16BE), document);
    } else {
        const QByteArray encoding =
            startsWith("\xEF\xBB\xBF") ? QByteArrayLiteral("utf-8") : declaredEncoding(document);
        if (encoding == "utf-8") {
            decoded = decode(QStringDecoder(QStringDecoder::Utf8), document);
        } else if (encoding == "windows-1252" || encoding == "cp1252") {
            decoded = fromWindows1252(document);
        } else if (encoding == "iso-8859-1" || encoding == "latin1" || encoding == "us-ascii") {
            decoded = QString::fromLatin1(document);
        } else {
            return Status::failed(
                QStringLiteral("the encoding \"%1\" is not known").arg(QLatin1String(encoding)));
        }
    }
    if (!decoded) {
        return Status::failed(QStringLiteral("the bytes are not in the encoding of the document"));
    }
    text = decoded->startsWith(QChar::ByteOrderMark) ? decoded->mid(1) : *decoded;
    return Status::done();
}

bool isXmlCharacter(char32_t c)
{
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
           (c >= 0x10000 && c <= 0x10FFFF);
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
        case QXmlStreamReader::DTD:
            return Status::failed(QStringLiteral("a document type declaration is not accepted"));
        case QXmlStreamReader::StartElement: {
            const QString name = reader.qualifiedName().toString();
            const bool first = !elements.contains(name);
            if (first) {
                Element &element = elements[name];
                for (const QXmlStreamAttribute &attribute : reader.attributes()) {
                    element.attributes.insert(attribute.qualifiedName().toString(),
                                              attribute.value().toString());
                }
            }
            open.append(first ? name : QString());
            break;
        }
        case QXmlStreamReader::Characters:
            if (!open.last().isEmpty() && !reader.isWhitespace() && elements[open.last()].text.isNull()) {
                elements[open.last()].text = reader.text().toString();
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
        return Status::failed(QStringLiteral("line %1, column %2: %3")
                                  .arg(reader.lineNumber())
                                  .arg(reader.columnNumber())
                                  .arg(reader.errorString().simplified()));
    }
    m_elements = std::move(elements);
    return Status::done();
}

QString XmlDocument::text(const QString &element) const
{
    return m_elements.value(element).text;
}

QString XmlDocument::attribute(const QString &element, const QString &name) const
{
    const auto found = m_elements.constFind(element);
    return found == m_elements.constEnd() ? QString() : found->attributes.value(name);
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
