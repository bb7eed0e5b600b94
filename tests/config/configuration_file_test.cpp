#include "config/configuration_file.h"
#include "config/document.h"
#include "config/fields.h"
#include "config/xml_document.h"
#include "platform/files.h"
#include "support/environment.h"
#include "support/random_configuration.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;
using test::fixedEnvironment;

namespace {

Configuration freshConfiguration(const Environment &environment = fixedEnvironment())
{
    Configuration configuration;
    makeNew(configuration, environment);
    return configuration;
}

/// A configuration as it reads from a document of these elements.
Configuration read(const QString &elements, const Environment &environment = fixedEnvironment())
{
    Configuration configuration = freshConfiguration(environment);
    const ReadReport report = readConfiguration(
        (QLatin1String("<KTR>") + elements + QLatin1String("</KTR>")).toUtf8(), configuration, environment);
    if (!report.document) {
        qWarning() << report.document.message();
    }
    return configuration;
}

} // namespace

class ConfigurationFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFieldHasItsOwnPlaceAndItsNewValuePasses()
    {
        // Walks every row of every table: a name twice, or a value that a field refuses, is a slip in one.
        QSet<QString> places;
        QSet<QString> controls;
        Configuration configuration;
        visitRecords(configuration, [&]<class Record>(const Group &group, Record &record, int index) {
            for (const Field<Record> &field : fieldsOf<Record>()) {
                if (!field.appliesTo(index)) {
                    continue;
                }
                const QString name = QString::fromUtf16(field.xmlName);
                const QString place = group.elementName(field.xmlName, index) + u'/' + name;
                QVERIFY2(!places.contains(place), qPrintable(place));
                places.insert(place);
                const bool arrayOfRecords = field.control.first == ControlName::noArray && index > 0;
                const QString control = field.control.forIndex(index);
                QVERIFY2(arrayOfRecords || !controls.contains(control), qPrintable(control));
                controls.insert(control);
                QVERIFY2(!labelText(field.label, TextTable()).isEmpty() && *field.meaning != 0,
                         qPrintable(place));
                const Range range = field.range.value_or(Range());
                for (const auto &[end, beyond] : {std::pair(range.lowest, range.lowest - 1),
                                                  std::pair(range.highest, range.highest + 1)}) {
                    if (std::abs(end) == Range::noEnd) {
                        continue;
                    }
                    const QString within = QString::number(end, 'f', 0);
                    const QString outside = QString::number(beyond, 'f', 0);
                    QVERIFY2(setFieldText(field, record, within), qPrintable(place));
                    QCOMPARE(fieldText(field, record, QLocale::c()), within);
                    QCOMPARE(field.fault(within), QString());
                    QVERIFY2(range.outside == Range::Outside::DependsOnOthers ||
                                 field.stored(outside) == within || !field.fault(outside).isEmpty(),
                             qPrintable(place));
                }
                for (const Preset &preset : {field.whenNew, field.whenEmpty}) {
                    if (!preset.keepsValue()) {
                        const QString text = preset.value(fixedEnvironment(), index);
                        QVERIFY2(text.isEmpty() || setFieldText(field, record, text), qPrintable(place));
                        QVERIFY2(text.isEmpty() || fieldText(field, record, QLocale::c()) == text,
                                 qPrintable(place));
                    }
                }
            }
        });
        QCOMPARE(places.size(),
                 6 + 4 + 12 + 16 * 9 + 4 * 5 + 36 + (2 * 4 + 2 * 3) + 4 + 1 + 12 + 4 + 120 + 5);
        QVERIFY(controls.contains(u"Chk_ip_bstz_1"_s));
        QVERIFY(controls.contains(u"Txt_ip_zaehler_5"_s));
        QVERIFY(controls.contains(u"Txt_Ethernet_MAC_3"_s));
    }

    void newSetsItsValuesAndLeavesWhatItMust()
    {
        Configuration c;
        c.gsm.stationType = u"NVA"_s;
        c.info.historyExportFile = u"h.csv"_s;
        c.limitValues[17] = {3, u"x"_s, u"1"_s, u"2"_s, u"3"_s, 3, 1, 5, 4, u"60"_s};
        c.versionText = u"a<b>&\"c'\t\r\n"_s;
        c.holidays.add(QDate(2027, 1, 1));
        makeNew(c, fixedEnvironment(test::german()));
        c.gsm.stationId = u"x<y>&\"z'"_s;
        c.limitValues[18].reference = 2.5;
        const QString text = QString::fromUtf8(writeConfiguration(c, fixedEnvironment(test::german())));
        // clang-format off
        const QStringList fragments{
            u"<KTR><Version Nummer=\"%1\" Datum=\"15.11.09\" Zeit=\"14:05\" Version=\"a&lt;b&gt;&amp;&quot;c'&#9;&#13;&#10;\"/>"_s.arg(programVersion()),
            u"<Info Autor=\"\" Version=\"1.0\" Datum=\"15.11.09\" Kommentar=\"\" Logfile=\"%1\" HistoryExportFile=\"h.csv\"/><Konfiguration>"_s.arg(joinPath(u"/opt/ktr"_s, u"Log.txt"_s)),
            u"<PIN></PIN><Stationstyp>NVA</Stationstyp><Stationskennung>x&lt;y&gt;&amp;\"z'</Stationskennung><Alivecycle>0</Alivecycle>"_s,
            u"<GSM-Name5>Admin 6</GSM-Name5><GSM-Nummer5>+49</GSM-Nummer5><Grenzwert0 "_s,
            u"<Grenzwert15 Alarm=\"\" Delay=\"0\" Grenzwert=\"0\" Hysterese=\"0\" IP=\"0\" Vergleich=\"1\" MSN=\"255\" Wiederholung=\"0\" Wiederholungsintervall=\"\"/>"_s,
            u"<Grenzwert17 Alarm=\"\" Bezug=\"5\" MSN=\"255\" Wiederholung=\"4\" Wiederholungsintervall=\"60\"/><Grenzwert18 Alarm=\"\" Bezug=\"2,5\""_s,
            u"<Archivierung17 Interval=\"0\" Delta=\"0\"/><Digitaleingang0 Zähler=\"0\" Teiler=\"1\" Invers=\"0\" Wert=\"0\"/>"_s,
            u"<Digitaleingang3 Invers=\"0\" Betriebsstundenzähler=\"0\" Wert=\"0\"/><BStZDigOut0 Invers=\"0\" Wert=\"0\"/><BStZDigOut1 "_s,
            u"<sendValue Wert=\"1\"/><Skalierung0 Offset=\"0\" Faktor=\"1\" Einheit=\"\"/>"_s,
            u"<Ausgangswert1 Digital=\"0\" Analog=\"0\"/><Schaltpunkt0 IP=\"0\" Periode=\"0\" Start=\"\" Typ=\"0\" Wert=\"0\" GW-Bezug=\"0\"/>"_s,
            u"<Feiertag0></Feiertag0>"_s,
            u"<Feiertag19></Feiertag19></Konfiguration><Ethernet IP=\"010.000.000.001\" Subnet=\"255.255.255.000\" MAC3=\"00\" MAC4=\"00\" MAC5=\"00\"/></KTR>"_s};
        // clang-format on
        QVERIFY(text.startsWith(fragments.first()) && text.endsWith(fragments.last()));
        qsizetype at = 0; // each behind the one before
        for (const QString &fragment : fragments) {
            at = text.indexOf(fragment, at);
            QVERIFY2(at >= 0, qPrintable(fragment));
        }
    }

    void whatIsWrittenIsReadAgain()
    {
        for (unsigned seed = 0; seed < 50; ++seed) {
            const QLocale locale = seed % 2 == 0 ? QLocale::c() : test::german();
            const Environment environment = fixedEnvironment(locale);
            Configuration meant = test::RandomConfiguration(seed).make(locale);
            meant.limitValues[19].reference = 1234.5;
            // Reading fills what is empty, so the second round must change nothing.
            Configuration once = freshConfiguration(environment);
            QVERIFY(readConfiguration(writeConfiguration(meant, environment), once, environment).document);
            Configuration again = freshConfiguration(environment);
            QVERIFY(readConfiguration(writeConfiguration(once, environment), again, environment).document);
            QCOMPARE(differences(once, again, locale), QStringList());
            QCOMPARE(again.limitValues[2].limit, meant.limitValues[2].limit);
            QCOMPARE(again.switchPoints[19].limitValue, meant.switchPoints[19].limitValue);
            QCOMPARE(again.limitValues[19].reference, 1234.5);
            QCOMPARE(again.holidays.lines(), meant.holidays.lines());
            QCOMPARE(again.versionText, meant.versionText);
        }
    }

    void charactersThatNoFileCanHoldDoNotCostTheFile()
    {
        Configuration configuration = freshConfiguration();
        configuration.info.comment = u"a\x01z"_s + QChar(0xD800) + QChar(0xFFFE) + QChar(0);
        configuration.info.author = u"Ä\U0001F600"_s;
        Configuration again;
        QVERIFY(readConfiguration(writeConfiguration(configuration, fixedEnvironment()), again,
                                  fixedEnvironment())
                    .document);
        QCOMPARE(again.info.comment, "az\uFFFD");
        QCOMPARE(again.info.author, configuration.info.author);
    }

    void aMissingFieldTakesItsFallback()
    {
        Configuration before = freshConfiguration();
        before.info.logFile = u"kept.txt"_s;
        before.limitValues[17].repetitions = 3;
        before.switchPoints[5].type = 12;
        before.switchPoints[5].target = 4;
        before.limitValues[3].recipients = 1;
        before.holidays.add(QDate(2009, 12, 24));
        Configuration configuration = before;
        QVERIFY(readConfiguration("<KTR/>", configuration, fixedEnvironment()).document);

        QCOMPARE(configuration.info.logFile, "kept.txt");
        QCOMPARE(configuration.info.version, "");
        QCOMPARE(configuration.administrators[5].name, "Admin 6");
        QCOMPARE(configuration.administrators[5].number, "");
        QCOMPARE(configuration.gsm.aliveCycle, "");
        QCOMPARE(configuration.limitValues[3].recipients, quint8(255));
        QCOMPARE(configuration.limitValues[3].delay, "0");
        QCOMPARE(configuration.limitValues[16].delay, "");
        QCOMPARE(configuration.limitValues[17].repetitions, qint16(0));
        QCOMPARE(configuration.limitValues[17].repetitionInterval, "30");
        QCOMPARE(configuration.sendValues[0].enabled, false);
        QCOMPARE(configuration.digitalInputs[0].value, "");
        QCOMPARE(configuration.digitalInputs[0].divider, "1");
        QCOMPARE(configuration.scaling[3], (Scaling{u"0"_s, u"1"_s, u"Volt"_s}));
        QCOMPARE(configuration.switchPoints[5], (SwitchPoint{4, 12, u"0911151405"_s, u"1"_s, u"0"_s, 0}));
        QCOMPARE(configuration.ethernet.ip, "010.000.000.001");
        QCOMPARE(configuration.ethernet.mac5, "80"); // the whole part of 255 × 0.5, plus 1
        QVERIFY(configuration.holidays.lines().isEmpty());
    }

    void storedTextsPassTheirRules_data()
    {
        QTest::addColumn<QString>("document");
        QTest::addColumn<QString>("place");
        QTest::addColumn<QString>("text");
        // What it is about | document | element/field | what the field holds
        for (const auto *row :
             {"PIN filled|<PIN>12</PIN>|PIN/PIN|0012", "long PIN|<PIN>123456</PIN>|PIN/PIN|123456",
              "old <|<Grenzwert3 Vergleich='0'/>|Grenzwert3/Vergleich|1",
              "old >|<Grenzwert3 Vergleich='4'/>|Grenzwert3/Vergleich|3",
              "no number|<Grenzwert3 Vergleich='x'/>|Grenzwert3/Vergleich|1",
              "recipients beyond a byte|<Grenzwert3 MSN='256'/>|Grenzwert3/MSN|255",
              "umlauts|<Stationskennung>Größe Öl</Stationskennung>|Stationskennung/Stationskennung|Groesse "
              "Öl",
              "kept umlauts|<Grenzwert3 Alarm='Größe Öl'/>|Grenzwert3/Alarm|Größe Öl",
              "clamped|<Grenzwert18 Wiederholungsintervall='2000'/>|Grenzwert18/Wiederholungsintervall|1440",
              "number with plus|<GSM-Nummer2>4917</GSM-Nummer2>|GSM-Nummer2/GSM-Nummer|+4917",
              "alive cycle|<Alivecycle>007</Alivecycle>|Alivecycle/Alivecycle|7",
              "alive cycle beyond|<Alivecycle>40000</Alivecycle>|Alivecycle/Alivecycle|40000",
              "unknown type|<Stationstyp>XYZ</Stationstyp>|Stationstyp/Stationstyp|KTR",
              "other type|<Stationstyp>NVA</Stationstyp>|Stationstyp/Stationstyp|NVA",
              "reference|<Grenzwert16 Bezug='2,5'/>|Grenzwert16/Bezug|2.5",
              "16-bit|<Schaltpunkt0 IP='40000'/>|Schaltpunkt0/IP|0",
              "check box stays|<sendValue Wert='2'/>|sendValue/Wert|1", // as "new" left it
              // Where an element stands, and what else stands in it, does not matter; the first counts.
              "elsewhere|<a><b><PIN>1111</PIN></b></a><PIN>2222</PIN>|PIN/PIN|1111",
              "first is empty|<PIN/><PIN>2222</PIN>|PIN/PIN|",
              "first text child|<PIN> <x>9</x><!-- c -->1234<y/>5</PIN>|PIN/PIN|1234",
              "white space only|<PIN>  \n </PIN>|PIN/PIN|",
              "entities|<PIN>a&amp;&#65;&lt;</PIN>|PIN/PIN|a&A<"}) {
            const QStringList parts = QString::fromUtf8(row).split(u'|');
            QTest::newRow(qPrintable(parts[0])) << parts[1] << parts[2] << parts[3];
        }
    }
    void storedTextsPassTheirRules()
    {
        QFETCH(QString, document);
        QFETCH(QString, place);
        QFETCH(QString, text);
        const Configuration configuration = read(document);
        QString found = u"(no such place)"_s;
        visitRecords(configuration, [&]<class Record>(const Group &group, const Record &record, int index) {
            for (const auto &field : fieldsOf<std::remove_const_t<Record>>()) {
                const QString name = QString::fromUtf16(field.xmlName);
                if (group.elementName(field.xmlName, index) + u'/' + name == place) {
                    found = fieldText(field, record, QLocale::c());
                }
            }
        });
        QCOMPARE(found, text);
    }

    void anUnusableTextIsTold()
    {
        Configuration configuration = freshConfiguration();
        const ReadReport report =
            readConfiguration("<KTR><Grenzwert3 IP='abc'/></KTR>", configuration, fixedEnvironment());
        QCOMPARE(report.remarks, QStringList{u"Grenzwert3 IP: \"abc\" is of no use here, \"0\" is kept"_s});
        const ReadReport none = readConfiguration("<KTR><item1/></KTR>", configuration, fixedEnvironment());
        QVERIFY(none.document && !none.isConfiguration && report.isConfiguration);
        QCOMPARE(none.remarks, QStringList{u"no element of a configuration was found in it"_s});
    }

    void whatIsNotKnownIsNamed()
    {
        const Environment environment;
        Configuration configuration;
        makeNew(configuration, environment);
        const QByteArray own = writeConfiguration(configuration, environment);
        QCOMPARE(readConfiguration(own, configuration, environment).unknown, QStringList());
        QByteArray more = own;
        more.replace("<Konfiguration>", "<Konfiguration><Later to=\"1\">x<Deeper/></Later>");
        more.replace("<Info ", "<Info Colour=\"red\" ");
        const ReadReport report = readConfiguration(more, configuration, environment);
        QCOMPARE(report.unknown, QStringList({"Deeper", "Info Colour", "Later"}));
        QVERIFY(report.remarks.isEmpty()); // all of the fields was of use
    }

    void encodingsAreReadByMarkAndDeclaration_data()
    {
        QTest::addColumn<QByteArray>("document");
        const QString elements = u"<KTR><Info Autor=\"Jörg €\"/></KTR>"_s;
        const auto declared = [](const char *encoding) {
            return QByteArrayLiteral("<?xml version=\"1.0\" encoding=\"") + encoding + "\"?>";
        };
        const auto encode = [&](QStringConverter::Encoding encoding, QStringConverter::Flags flags) {
            QStringEncoder encoder(encoding, flags);
            return QByteArray(encoder.encode(elements));
        };
        const auto withMark = QStringConverter::Flag::WriteBom;
        const auto withoutMark = QStringConverter::Flag::Default;
        QTest::newRow("UTF-8") << elements.toUtf8();
        QTest::newRow("UTF-8 with mark") << encode(QStringConverter::Utf8, withMark);
        QTest::newRow("UTF-16 little end") << encode(QStringConverter::Utf16LE, withMark);
        QTest::newRow("UTF-16 big end") << encode(QStringConverter::Utf16BE, withMark);
        QTest::newRow("UTF-16 without mark") << encode(QStringConverter::Utf16LE, withoutMark);
        QTest::newRow("windows-1252")
            << declared("windows-1252") + "<KTR><Info Autor=\"J\xF6rg \x80\"/></KTR>";
        QTest::newRow("ISO-8859-1") << declared("ISO-8859-1") +
                                           "<KTR><Info Autor=\"J\xF6rg &#8364;\"/></KTR>";
    }
    void encodingsAreReadByMarkAndDeclaration()
    {
        QFETCH(QByteArray, document);
        Configuration configuration;
        QVERIFY(readConfiguration(document, configuration, fixedEnvironment()).document);
        QCOMPARE(configuration.info.author, "Jörg €");
    }

    void aDocumentThatCannotBeLoadedGivesTheFallbacksSoon_data()
    {
        QTest::addColumn<QByteArray>("document");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("cut off") << QByteArray("<KTR><PIN>1234</PIN><Info Aut");
        QTest::newRow("two roots") << QByteArray("<KTR><PIN>1234</PIN></KTR><KTR/>");
        QTest::newRow("attribute twice") << QByteArray("<KTR><PIN>1234</PIN><a b='1' b='2'/></KTR>");
        QTest::newRow("invalid UTF-8") << QByteArray("<KTR><PIN>1234</PIN>\xF6</KTR>");
        QTest::newRow("control character") << QByteArray("<KTR><PIN>1234</PIN>\x01</KTR>");
        QTest::newRow("zero byte") << QByteArray("<KTR><PIN>1234</PIN>\0</KTR>", 27);
        QTest::newRow("zero byte in a name") << QByteArray("<KTR><PIN>1234</PIN><a\0b/></KTR>", 31);
        QTest::newRow("half a UTF-16 character") << QByteArray("\xFF\xFE<\0a\0/\0>\0\n", 11);
        QTest::newRow("lone surrogate") << QByteArray("\xFF\xFE<\0a\0>\0\0\xD8<\0/\0a\0>\0", 18);
        QTest::newRow("unknown encoding")
            << QByteArray("<?xml version='1.0' encoding='x-y'?><KTR><PIN>1234</PIN></KTR>");
        QTest::newRow("100,000 levels")
            << QByteArray("<KTR><PIN>1234</PIN>") + QByteArray("<a>").repeated(100000);
        QByteArray bomb = "<!DOCTYPE KTR [<!ENTITY a0 '1234'>";
        for (int i = 1; i < 30; ++i) {
            const QByteArray inner = "&a" + QByteArray::number(i - 1) + ';';
            bomb += "<!ENTITY a" + QByteArray::number(i) + " '" + inner.repeated(10) + "'>";
        }
        QTest::newRow("entity bomb") << bomb + "]><KTR><PIN>&a29;</PIN></KTR>";
        QTest::newRow("foreign file") << QByteArray(
            "<!DOCTYPE KTR [<!ENTITY f SYSTEM 'file:///etc/passwd'>]><KTR><PIN>&f;</PIN></KTR>");
        QByteArray attributes = "<KTR><PIN>1234</PIN><!-- don't --><a";
        for (int i = 0; i < 300000; ++i) {
            attributes += " a" + QByteArray::number(i) + "=\"=\"";
        }
        QTest::newRow("300,000 attributes") << attributes + "/></KTR>";
        QByteArray garbage(10 << 20, '\0');
        quint32 state = 1;
        for (char &byte : garbage) {
            state = state * 1664525 + 1013904223;
            byte = static_cast<char>(state >> 24);
        }
        QTest::newRow("10 MB of garbage") << garbage;
        QTest::newRow("10 MB of garbage inside") << "<KTR><PIN>1234</PIN>" + garbage;
    }
    void aDocumentThatCannotBeLoadedGivesTheFallbacksSoon()
    {
        QFETCH(QByteArray, document);
        Configuration configuration = freshConfiguration();
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!readConfiguration(document, configuration, fixedEnvironment()).document);
        QVERIFY(timer.elapsed() < 30000); // a hang, not a speed
        QCOMPARE(configuration.gsm.pin, "");
        QCOMPARE(configuration.scaling[0].unit, "Volt");
    }

    void deepButWholeDocumentsAreRead()
    {
        const int levels = 100000;
        const QByteArray document = "<KTR>" + QByteArray("<a>").repeated(levels) + "<PIN>1234</PIN>" +
                                    QByteArray("</a>").repeated(levels) + "</KTR>";
        Configuration configuration;
        QVERIFY(readConfiguration(document, configuration, fixedEnvironment()).document);
        QCOMPARE(configuration.gsm.pin, "1234");
    }

    void aHolidayListTakesTwentyDatesOnceEach()
    {
        HolidayList list;
        QCOMPARE(HolidayList::line(QDate(2009, 12, 24)), "091224\t(24.12.2009)");
        for (int day = 1; day <= 20; ++day) {
            QCOMPARE(list.add(QDate(2027, 1, day)), HolidayList::Added::Yes);
        }
        QCOMPARE(list.add(QDate(2027, 1, 20)), HolidayList::Added::Duplicate);
        QCOMPARE(list.add(QDate(2027, 1, 21)), HolidayList::Added::Full);
        list.remove(0);
        QCOMPARE(list.add(QDate(2027, 1, 21)), HolidayList::Added::Yes);
        QCOMPARE(list.lines().last(), "270121\t(21.01.2027)");
    }

    void theDocumentKeepsFileMarkAndStamp()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(u"a.xml"_s);
        Document document(fixedEnvironment());
        QVERIFY(!document.save()); // no name
        document.edit([](Configuration &c) { c.gsm.pin = u"4711"_s; });
        QVERIFY(document.isModified());
        QCOMPARE(document.configuration().versionText, "2009-11-15 14:05:35");
        QCOMPARE(document.configuration().info.version, document.configuration().versionText);
        const Configuration snapshot = document.configuration();

        document.setFileName(folder.filePath(u"missing/a.xml"_s));
        QVERIFY(!document.save());
        QVERIFY(document.isModified()); // nothing was saved, nothing may be thought saved
        document.setFileName(path);
        QVERIFY(document.save());
        QVERIFY(!document.isModified());

        document.makeNew();
        QCOMPARE(document.configuration().gsm.pin, "");
        QCOMPARE(document.fileName(), path);
        QVERIFY(!document.isModified());
        document.restore(snapshot, true);
        QVERIFY(document.configuration() == snapshot);
        QVERIFY(document.isModified());

        // A file that is not there costs nothing; one that is no configuration gives the fall-backs.
        const auto whyNot = [&](const QString &name) {
            const ReadReport unread = document.load(folder.filePath(name));
            return unread.opened ? QString("opened") : unread.document.message().section(u": "_s, 1);
        };
        QCOMPARE(whyNot(u"none.xml"_s), "is not there");
        QVERIFY(QDir(folder.path()).mkdir(u"folder.xml"_s));
        QCOMPARE(whyNot(u"folder.xml"_s), "is a folder");
        QVERIFY(document.configuration() == snapshot);
        QCOMPARE(document.fileName(), path);
        QVERIFY(document.load(path).document);
        QCOMPARE(document.configuration().gsm.pin, "4711");
        QVERIFY(!document.isModified());
        QVERIFY(replaceFile(path, "no configuration"));
        const ReadReport report = document.load(path);
        QVERIFY(report.opened && !report.document);
        QVERIFY(report.document.message().startsWith(path + u": not a configuration"_s));
        QCOMPARE(document.fileName(), "");
        QCOMPARE(document.configuration().gsm.pin, "");
        QVERIFY(replaceFile(path, QByteArray()));
        QCOMPARE(document.load(path).document.message(), path + u": is empty"_s);
    }
};

QTEST_GUILESS_MAIN(ConfigurationFileTest)
#include "configuration_file_test.moc"
