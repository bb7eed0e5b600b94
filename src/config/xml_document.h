#pragma once

#include "platform/status.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QXmlStreamAttributes>

#include <string_view>

namespace ktr {

/// A document as UTF-8, by its byte-order mark, its first bytes or its declaration. A failure when it is not
/// valid in its encoding or the encoding is not known.
Status xmlToUtf8(const QByteArray &document, QByteArray &utf8);

/// Whether a document is UTF-8 by its byte-order mark or its declaration, or says nothing of another
/// encoding.
bool isMeantAsUtf8(const QByteArray &document);

/// Whether UTF-8 has U+FFFE or U+FFFF, which XML does not know. What else isXmlCharacter() refuses is a
/// control character, or no UTF-8.
inline bool hasNonCharacter(std::string_view utf8)
{
    return utf8.find("\xEF\xBF\xBE") != std::string_view::npos ||
           utf8.find("\xEF\xBF\xBF") != std::string_view::npos;
}

/// What the reader asks of a document: of each element name, the first element anywhere in it.
class XmlDocument
{
public:
    /// Takes a document apart. Nothing outside it is read whatever it says, and nothing in it expands: a
    /// document type declaration is refused. After a failure the document is empty.
    Status load(const QByteArray &document);

    bool has(const QString &element) const { return m_elements.contains(element); }

    /// The names of its elements, and "Element Attribute" for their attributes; sorted.
    QStringList names() const;

    /// The value of the first text in the first element of this name, empty when there is none or only
    /// white space.
    QString text(const QString &element) const;

    /// An attribute of the first element of this name, empty when there is none.
    QString attribute(const QString &element, QStringView name) const;

private:
    struct Element
    {
        QString text;
        QXmlStreamAttributes attributes; ///< as the reader has them: nothing is copied
    };
    QHash<QString, Element> m_elements;
};

/// Writes elements as a document object model saves them: no white space between them, an empty text as
/// <a></a>, an element without content as <a/>.
class XmlWriter
{
public:
    void open(const QString &element);
    void close(const QString &element);
    void textElement(const QString &element, const QString &text);
    void attributesElement(const QString &element, const QList<std::pair<QString, QString>> &attributes);

    const QByteArray &document() const { return m_document; }

private:
    QByteArray m_document;
};

} // namespace ktr
