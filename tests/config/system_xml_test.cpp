#include "config/configuration_file.h"
#include "platform/files.h"
#include "support/environment.h"
#include "support/random_configuration.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

#include <windows.h>
// after windows.h
#include <msxml.h>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

/// An element as a list: its name, its attributes in their order, its text.
struct Element
{
    QString name;
    QList<std::pair<QString, QString>> attributes;
    QString text;
    int depth = 0;
};

QString taken(BSTR text)
{
    const QString result = QString::fromWCharArray(text, static_cast<qsizetype>(::SysStringLen(text)));
    ::SysFreeString(text);
    return result;
}

/// The value as it stands; a node's "text" would be without blanks around it.
QString valueOf(IXMLDOMNode *node)
{
    VARIANT value;
    ::VariantInit(&value);
    const bool isText = node->get_nodeValue(&value) == S_OK && value.vt == VT_BSTR;
    return isText ? taken(value.bstrVal) : QString();
}

/// A text in the system's form for the time of a call.
class SystemText
{
public:
    explicit SystemText(const QString &text)
        : m_text(::SysAllocStringLen(reinterpret_cast<const OLECHAR *>(text.utf16()),
                                     static_cast<UINT>(text.size())))
    {}
    ~SystemText() { ::SysFreeString(m_text); }
    Q_DISABLE_COPY_MOVE(SystemText)
    operator BSTR() const { return m_text; }
    VARIANT variant() const
    {
        VARIANT value;
        ::VariantInit(&value);
        value.vt = VT_BSTR;
        value.bstrVal = m_text;
        return value;
    }

private:
    BSTR m_text;
};

/// The document object model of the system.
class SystemDocument
{
public:
    SystemDocument()
    {
        CLSID id;
        if (::CLSIDFromProgID(L"Msxml2.DOMDocument.3.0", &id) == S_OK) {
            ::CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IXMLDOMDocument,
                               reinterpret_cast<void **>(&m_document));
        }
    }
    ~SystemDocument()
    {
        if (m_document != nullptr) {
            m_document->Release();
        }
    }
    Q_DISABLE_COPY_MOVE(SystemDocument)
    bool isThere() const { return m_document != nullptr; }

    bool load(const QString &path)
    {
        VARIANT_BOOL loaded = VARIANT_FALSE;
        m_document->put_async(VARIANT_FALSE);
        m_document->put_preserveWhiteSpace(VARIANT_TRUE); // blanks around a text are the user's
        return m_document->load(SystemText(path).variant(), &loaded) == S_OK && loaded == VARIANT_TRUE;
    }

    QList<Element> elements()
    {
        QList<Element> found;
        IXMLDOMElement *root = nullptr;
        if (m_document->get_documentElement(&root) == S_OK) {
            collect(root, 0, found);
            root->Release();
        }
        return found;
    }

    /// Makes the elements anew, each below the last one of less depth, and saves them.
    bool save(const QList<Element> &elements, const QString &path)
    {
        QList<IXMLDOMNode *> open;
        for (const Element &each : elements) {
            IXMLDOMElement *element = nullptr;
            m_document->createElement(SystemText(each.name), &element);
            for (const auto &[name, value] : each.attributes) {
                element->setAttribute(SystemText(name), SystemText(value).variant());
            }
            if (each.attributes.isEmpty() && each.depth > 0 && each.name != u"Konfiguration"_s) {
                IXMLDOMText *text = nullptr;
                m_document->createTextNode(SystemText(each.text), &text);
                element->appendChild(text, nullptr);
                text->Release();
            }
            while (open.size() > each.depth) {
                open.takeLast()->Release();
            }
            IXMLDOMNode *const parent = open.isEmpty() ? m_document : open.last();
            parent->appendChild(element, nullptr);
            open += element;
        }
        while (!open.isEmpty()) {
            open.takeLast()->Release();
        }
        return m_document->save(SystemText(path).variant()) == S_OK;
    }

private:
    static void collect(IXMLDOMNode *node, int depth, QList<Element> &found)
    {
        Element element;
        element.depth = depth;
        BSTR name = nullptr;
        node->get_nodeName(&name);
        element.name = taken(name);
        IXMLDOMNamedNodeMap *attributes = nullptr;
        if (node->get_attributes(&attributes) == S_OK) {
            IXMLDOMNode *attribute = nullptr;
            while (attributes->nextNode(&attribute) == S_OK) {
                BSTR key = nullptr;
                attribute->get_nodeName(&key);
                element.attributes += {taken(key), valueOf(attribute)};
                attribute->Release();
            }
            attributes->Release();
        }
        const qsizetype place = found.size();
        found += element;
        IXMLDOMNode *child = nullptr;
        node->get_firstChild(&child);
        while (child != nullptr) {
            DOMNodeType type = NODE_INVALID;
            child->get_nodeType(&type);
            if (type == NODE_ELEMENT) {
                collect(child, depth + 1, found);
            } else if (type == NODE_TEXT) {
                found[place].text += valueOf(child);
            }
            IXMLDOMNode *next = nullptr;
            child->get_nextSibling(&next);
            child->Release();
            child = next;
        }
    }

    IXMLDOMDocument *m_document = nullptr;
};

/// The elements of a document as the toolkit reads it.
QList<Element> elementsOf(const QByteArray &document)
{
    QList<Element> found;
    QList<qsizetype> open;
    QXmlStreamReader reader(document);
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            Element element;
            element.name = reader.name().toString();
            element.depth = static_cast<int>(open.size());
            for (const QXmlStreamAttribute &attribute : reader.attributes()) {
                element.attributes += {attribute.name().toString(), attribute.value().toString()};
            }
            open += found.size();
            found += element;
            break;
        }
        case QXmlStreamReader::Characters:
            found[open.last()].text += reader.text();
            break;
        case QXmlStreamReader::EndElement:
            open.removeLast();
            break;
        default:
            break;
        }
    }
    return found;
}

/// The system writes a carriage return in a text as it is, which every reader takes for a line feed.
QByteArray withoutReturnsInTexts(const QByteArray &document)
{
    QByteArray result;
    for (const QByteArray &part : document.split('<')) {
        const qsizetype tag = part.indexOf('>') + 1;
        result += '<' + part.left(tag) + part.mid(tag).replace("&#13;", " ");
    }
    return result.mid(1);
}

QStringList described(const QList<Element> &elements)
{
    QStringList lines;
    for (const Element &element : elements) {
        lines += u"%1 %2 = %3"_s.arg(element.depth).arg(element.name, element.text);
        for (const auto &[name, value] : element.attributes) {
            lines += u"    %1 = %2"_s.arg(name, value);
        }
    }
    return lines;
}

} // namespace

/// The configuration file, exchanged with the document object model of the system, which other programs use.
class SystemXmlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(SUCCEEDED(::CoInitialize(nullptr)));
        QVERIFY(SystemDocument().isThere());
    }
    void cleanupTestCase() { ::CoUninitialize(); }

    void theSystemReadsWhatIsWritten_data() { configurations(); }
    void theSystemReadsWhatIsWritten()
    {
        QFETCH(Configuration, configuration);
        const QByteArray document = writeConfiguration(configuration, m_environment);
        QVERIFY(replaceFile(m_path, document));
        SystemDocument system;
        QVERIFY(system.load(m_path));
        QCOMPARE(described(system.elements()), described(elementsOf(document)));
    }

    void whatTheSystemWritesIsRead_data() { configurations(); }
    void whatTheSystemWritesIsRead()
    {
        QFETCH(Configuration, configuration);
        const QByteArray document = withoutReturnsInTexts(writeConfiguration(configuration, m_environment));
        Configuration expected;
        readConfiguration(document, expected, m_environment);
        QVERIFY(SystemDocument().save(elementsOf(document), m_path));
        QByteArray saved;
        QVERIFY(readFile(m_path, saved, 1 << 20));
        QCOMPARE(described(elementsOf(saved)), described(elementsOf(document)));
        QCOMPARE(saved.trimmed(), document); // the system ends the file with a line end

        Configuration read;
        QVERIFY(readConfigurationFile(m_path, read, m_environment).document);
        QCOMPARE(writeConfiguration(read, m_environment), writeConfiguration(expected, m_environment));
    }

private:
    void configurations()
    {
        QTest::addColumn<Configuration>("configuration");
        QTest::newRow("empty") << Configuration();
        for (unsigned seed = 1; seed <= 20; ++seed) {
            QTest::addRow("random %u", seed) << test::RandomConfiguration(seed).make(m_environment.locale);
        }
    }

    const Environment m_environment = test::fixedEnvironment(test::german());
    QTemporaryDir m_folder;
    QString m_path = QDir::toNativeSeparators(m_folder.filePath(u"Pumpwerk Mühle €.xml"_s));
};

QTEST_GUILESS_MAIN(SystemXmlTest)
#include "system_xml_test.moc"
