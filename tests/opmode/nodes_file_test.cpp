#include "opmode/keeping/checksum.h"
#include "opmode/keeping/nodes_file.h"
#include "opmode/tree/acknowledgement.h"
#include "opmode/tree/station_tree_loader.h"
#include "platform/files.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <pugixml.hpp>
#include <sstream>

using namespace ktr;

namespace {

struct Read
{
    QStringList nodes; ///< key|text|colour
    QList<StationAttributes> stations;
    QStringList remarks;
    QString failure;
};

Read read(const QByteArray &document)
{
    Read result;
    result.failure = readNodes(document, result.remarks, [&result](const StoredNode &element) {
                         result.nodes += QStringLiteral("%1|%2|%3")
                                             .arg(QString::fromStdString(std::string(element.key)),
                                                  QString::fromStdString(std::string(element.text)))
                                             .arg(element.colour);
                         if (element.station != nullptr) {
                             result.stations += *element.station;
                         }
                     }).message();
    return result;
}

} // namespace

class NodesFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void aTreeComesBackAsItWasWithItsNewNames()
    {
        StationTree tree({"Meldungen", "Historie", "IP"});
        tree.addStation("new");
        tree.addStation("x");
        const QString text = QStringLiteral("a \"<&>'\t\r\n/\u00e4\U0001F600 fail");
        tree.apply("new", NotificationMessage{{text, text}, true}, QDateTime());
        QVERIFY(tree.setData(tree.find("new"), "Pumpwerk & Co"));
        const StationAttributes station{true, {"7:05", 2, "x\"", 10}, "10.0.0.7", true};
        const QByteArray document = writeNodes(tree.nodes(), [&](const QString &kennung) {
            return kennung == u"new" ? station : StationAttributes();
        });
        QVERIFY(document.startsWith(
            "<KTR><item1 exclusiveMode=\"True\" exclusive_day_on=\"2\" exclusive_day_off=\"10\" "
            "exclusive_hour_on=\"7:05\" exclusive_hour_off=\"x&quot;\" hostAddress=\"10.0.0.7\" "
            "online=\"True\" "
            "key=\"Pumpwerk &amp; Co\" text=\"Pumpwerk &amp; Co\" ForeColor=\"255\"/><item2 key="));
        QVERIFY(document.contains("<item45 key=\"Pumpwerk &amp; Co/meldung/"));

        StationTree again({"", "", ""});
        QList<StationAttributes> stations;
        std::optional<StationTreeLoader> loader(std::in_place, again);
        QStringList remarks;
        QVERIFY(readNodes(document, remarks, [&](const StoredNode &element) {
            QVERIFY(loader->load(element.key, element.text, element.colour));
            if (element.station != nullptr) {
                stations += *element.station;
            }
        }));
        loader.reset();
        QCOMPARE(stations, (QList<StationAttributes>{station, {}}));
        QCOMPARE(again.find("Pumpwerk & Co/meldung/" + text).data(Qt::EditRole), text);
        QCOMPARE(again.find("Pumpwerk & Co/meldung").data(StationTree::AlarmCountRole), 1);
        QCOMPARE(writeNodes(
                     again.nodes(),
                     [&](const QString &kennung) { return kennung == u"x" ? StationAttributes() : station; }),
                 document);
        QCOMPARE(writeNodes(StationTree({}).nodes(), {}), "<KTR/>");
    }

    /// Writer and quick reader against the parser, over texts of everything that needs care.
    void whatIsWrittenIsWhatTheParserWouldWriteAndReadsTheSame()
    {
        const std::array<QString, 12> pieces = {"a",
                                                "/",
                                                "&",
                                                "<",
                                                ">",
                                                "\"",
                                                "'",
                                                "\t\r\n",
                                                QString(QChar(0xE4)),
                                                QString::fromUcs4(U"\U0001F600"),
                                                " -- ",
                                                "]]>"};
        QRandomGenerator chance(7);
        StationTree tree({"N", "H", "IP"});
        for (int station = 0; station < 4; ++station) {
            const QString name = QString::number(station) + pieces[static_cast<std::size_t>(station) + 2];
            tree.addStation(name);
            for (int entry = 0; entry < 300; ++entry) {
                QString text;
                for (int piece = chance.bounded(9); piece >= 0; --piece) {
                    text += pieces[chance.bounded(static_cast<quint32>(pieces.size()))];
                }
                tree.apply(name,
                           NotificationMessage{{text, text + (entry % 2 == 0 ? "" : "&")}, entry % 3 == 0},
                           {});
            }
            tree.remove(tree.index(5, 0, tree.find(name + "/meldung")));
        }
        tree.setData(tree.find("1<"), QStringLiteral("\"new\""));
        const QByteArray written = writeNodes(tree.nodes(), [](const QString &) {
            return StationAttributes{true, {"\t<", 3, "&", -4}, QString(QChar(0xFC)), false};
        });
        pugi::xml_document parsed;
        QVERIFY(parsed.load_buffer(written.constData(), static_cast<std::size_t>(written.size())));
        std::ostringstream saved;
        parsed.save(saved, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
        QCOMPARE(written, QByteArray::fromStdString(saved.str()));

        QByteArray other = written; // the same in a form that only the parser takes
        other.replace("<KTR>", "<KTR >");
        const Read quick = read(written);
        const Read slow = read(other);
        QCOMPARE(quick.nodes, slow.nodes);
        QCOMPARE(quick.stations, slow.stations);
        QCOMPARE(quick.nodes.size(), static_cast<qsizetype>(tree.nodes().count()));
        for (int change = 0; change < 2000; ++change) { // never other nodes than the parser would give
            const qsizetype at = 5 + chance.bounded(6000);
            QByteArray damaged = written.first(written.indexOf("<item", at + 1)) + "</KTR>";
            damaged[at] = "\"<>&/ =\x01\xE4k;'"[chance.bounded(12)];
            QByteArray parsedOnly = damaged;
            const Read damagedQuick = read(damaged);
            const Read damagedSlow = read(parsedOnly.replace("<KTR>", "<KTR >"));
            QCOMPARE(damagedQuick.nodes, damagedSlow.nodes);
            QCOMPARE(damagedQuick.failure.isEmpty(), damagedSlow.failure.isEmpty());
        }
    }

    void valuesAreReadInEveryFormThatWasEverWritten()
    {
        const Read result = read("<?xml version='1.0' encoding='windows-1252'?><KTR>\r\n"
                                 "<item9 key='W\xE4sche' text='W\xE4sche' online='-1' exclusiveMode='0' "
                                 "exclusive_day_on='x' ForeColor='' other='1'/><!-- -->"
                                 "<a key='W\xE4sche/ip/ip1' text='\x80' ForeColor='255'/></KTR>");
        QCOMPARE(result.failure, "");
        QCOMPARE(result.nodes, (QStringList{QStringLiteral("W\u00e4sche|W\u00e4sche|-2147483640"),
                                            QStringLiteral("W\u00e4sche/ip/ip1|\u20ac|255")}));
        QCOMPARE(result.stations, (QList<StationAttributes>{{false, {}, "", true}}));
    }

    void oneDefectCostsOneElementAtMost_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::addColumn<QString>("left");
        const QByteArray begin = "<KTR><item1 key='A' text='A'/>";
        const QByteArray end = "<item3 key='C' text='C'/></KTR>";
        const auto row = [&](const char *name, const QByteArray &between, const char *left = "AC") {
            QTest::newRow(name) << begin + between + end << QString::fromLatin1(left);
        };
        row("not UTF-8", "<item2 key='B\xE4'/>");
        row("control character", "<item2 key='B\x01'/>");
        row("zero", QByteArray("<item2 key='B\0'/>", 17));
        row("reference to zero", "<item2 key='B&#0;'/>");
        row("reference to a half", "<item2 key='B&#xD800;'/>");
        row("no character", "<item2 key='B\xEF\xBF\xBF'/>");
        row("twice the same", "<item2 key='B' key='B'/>");
        row("no quote", "<item2 key='B text='B'/>");
        row("no beginning", " item2 key='B' text='B'/>");
        row("no end", "<item2 key='B' text='B'/");
        row("another slash", "<item2 key='B' text='B'?>");
        row("an end alone", "</item2>");
        row("no slash", "<item2 key='B' text='B'>", "ABC");
        row("text inside", "<item2 key='B' text='B'>text</item2>", "ABC");
        row("element inside", "<item2 key='B' text='B'><item9 key='D' text='D'/></item2>", "ABC");
        row("endless comment", "<!-- <item2 key='B' text='B'/>", "ABC");
        row("section", "<![CDATA[<item2 key='B' text='B'/>]]>");
        row("very deep", QByteArray("<a key='B'>").repeated(200'000) + QByteArray("</a>").repeated(200'000),
            "ABC");
        row("endless comments", QByteArray("<!--").repeated(200'000));
        const auto whole = [](const char *name, const QByteArray &document, const char *left = "AC") {
            QTest::newRow(name) << document << QString::fromLatin1(left);
        };
        whole("document type",
              "<!DOCTYPE KTR [<!ENTITY e 'B'><!-- ] > -->]>" + begin + "<item2 key='&e;'/>" + end);
        whole("document type alone", "<!DOCTYPE KTR SYSTEM 'file:///etc/passwd'>" + begin + end);
        whole("cut off", begin + "<item2 key='B", "A");
        whole("cut off behind an element", begin, "A");
        whole("two roots", begin + end + "<KTR><item1 key='D' text='D'/></KTR>");
        whole("another root", QByteArray(begin + end).replace("<KTR>", "<KTS>"));
        whole("no root", QByteArray(begin + end).replace("<KTR>", ""));
    }
    void oneDefectCostsOneElementAtMost()
    {
        QFETCH(const QByteArray, document);
        QFETCH(const QString, left);
        const Read result = read(document);
        QCOMPARE(result.failure, "");
        QVERIFY(!result.remarks.isEmpty());
        QString names;
        for (const QString &node : result.nodes) {
            names += node.section(u'|', 0, 0);
        }
        QCOMPARE(names, left);
    }

    void whatIsNoListGivesNoNode_data()
    {
        QTest::addColumn<QByteArray>("document");
        const auto row = [](const char *name, const QByteArray &document) {
            QTest::newRow(name) << document;
        };
        row("empty", "");
        row("nothing sound", "<KTR><a key='\x01'/></KTR>");
        row("another root", "<X/>");
        row("another document", "<html><a key='b' text='b'/></html>");
        row("a word", "torn");
        row("unknown encoding", "<?xml version='1.0' encoding='koi8-r'?><KTR><a key='b' text='b'/></KTR>");
    }
    void whatIsNoListGivesNoNode()
    {
        QFETCH(const QByteArray, document);
        const Read result = read(document);
        QVERIFY(!result.failure.isEmpty());
        QVERIFY(!result.failure.contains("No document element")); // the parser's own words have no German
        QCOMPARE(result.nodes, QStringList());
    }

    void whatCouldNotBeReadIsKeptAside()
    {
        const QString path = m_folder->filePath("nodes.xml");
        const auto all = [](const StoredNode &) { return true; };
        const auto none = [](const StoredNode &) { return false; };
        NodesFile file(path);
        QVERIFY(file.load(all)); // no file
        QVERIFY(file.save("<KTR/>"));
        QVERIFY(file.load(all));
        QVERIFY(file.save("torn"));
        QCOMPARE(files(), QStringList{"nodes.xml"});

        const Status torn = NodesFile(path).load(all);
        QVERIFY(torn.message().startsWith(path));
        QVERIFY(!file.load(all));
        QVERIFY(file.checksum() != checksum("torn") && file.checksum() != checksum({}));
        QVERIFY(file.save("<KTR><a key='a'/><a key='b'/></KTR>"));
        QVERIFY(!file.load(none)); // of no use, as a torn one
        const auto first = [](const StoredNode &element) { return element.key == "a"; };
        QVERIFY(file.load(first) && file.remarks().join(u' ').contains("(b)")); // not lost either
        QVERIFY(file.save("<KTR/>"));
        QVERIFY(file.save("<KTR/>"));
        QCOMPARE(files(), (QStringList{"nodes (1).xml", "nodes (2).xml", "nodes.xml"}));
        QByteArray aside;
        QVERIFY(readFile(m_folder->filePath("nodes (1).xml"), aside, 100));
        QCOMPARE(aside, "torn");
    }

private:
    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files, QDir::Name); }
    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(NodesFileTest)
#include "nodes_file_test.moc"
