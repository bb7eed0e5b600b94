#include "config/edit_history.h"
#include "config/entry_texts.h"
#include "platform/files.h"
#include "support/environment.h"
#include "support/test_files.h"

#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace ktr::test;

class ChannelNamesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsWrittenIsRead()
    {
        ChannelNames names;
        names.channels[0] = storedChannelName(" Pump 1; left\tside = \"A\"\n", "");
        names.channels[8] = storedChannelName("Füllstand Ü", "m;³");
        names.channels[17] = storedChannelName("", QString(40, u'k'));
        QCOMPARE(names.of(1).name, "Pump 1; left side = \"A\"");
        QCOMPARE(names.of(9).unit, QStringLiteral("m ³"));
        QCOMPARE(names.of(18).unit.size(), 12);
        QStringList remarks;
        QVERIFY(readChannelNames(writeChannelNames(names), remarks) == names);
        QVERIFY(readChannelNames("\xEF\xBB\xBF" + writeChannelNames(names).replace("\n", "\r\n"), remarks) ==
                names);
        QCOMPARE(remarks, QStringList());
        QCOMPARE(names.of(0), ChannelName());
        QCOMPARE(names.of(19), ChannelName());
        QCOMPARE(namedChannel(10, names), "10 Analog In 2");
        QCOMPARE(namedChannel(9, names), QStringLiteral("9 AnalogIn 1 – Füllstand Ü"));
    }

    void whatIsNotUnderstoodIsToldAndCostsItselfAlone()
    {
        QStringList remarks;
        const ChannelNames names = readChannelNames("0=a;\n\nhello\n3=Door\n19=b;\n4 = Gate ; \n", remarks);
        QCOMPARE(remarks.size(), 3);
        QVERIFY2(remarks[1].contains("line 3, \"hello\""), qPrintable(remarks[1]));
        QCOMPARE(names.of(3).name, "Door");
        QCOMPARE(names.of(4).name, "Gate");
    }

    void theFileOfNamesIsBesideTheConfigurations()
    {
        QCOMPARE(namesFileOf("/a/north.xml"), "/a/north.names");
        QCOMPARE(namesFileOf("/a/b.c/north.v2.XML"), "/a/b.c/north.v2.names");
        QCOMPARE(namesFileOf("/a/north"), "/a/north.names");
        QCOMPARE(namesFileOf("/a/north.names"), "/a/north.names.names");
        QCOMPARE(namesFileOf("north.xml"), "north.names");
    }

    void theyGoWithTheFile()
    {
        m_document.setFileName(path("a.xml"));
        QVERIFY(m_document.save());
        QVERIFY(!QFile::exists(path("a.names"))); // none where there are no names
        const QByteArray without = contentOf(path("a.xml"));
        name("Pump 1");
        QVERIFY(m_document.save());
        QCOMPARE(contentOf(path("a.names")), "1=Pump 1;\n");
        QCOMPARE(contentOf(path("a.xml")), without);

        m_document.setFileName(path("b.xml")); // save as
        QVERIFY(m_document.save());
        QCOMPARE(contentOf(path("b.names")), "1=Pump 1;\n");
        m_history.makeNew();
        QVERIFY(m_document.configuration().names.isEmpty());
        m_history.undo();
        QCOMPARE(shown(), "1 DigIn 1 – Pump 1");
        m_history.makeAnother();
        QCOMPARE(shown(), "1 DigIn 1 – Pump 1");
        QVERIFY(m_history.load(path("a.xml")).opened);
        QCOMPARE(shown(), "1 DigIn 1 – Pump 1");
        QFile::remove(path("b.names"));
        QVERIFY(m_history.load(path("b.xml")).opened);
        QCOMPARE(shown(), "1 DigIn 1");
    }

    void whatSomebodyElseWroteThereIsKept()
    {
        m_document.setFileName(path("c.xml"));
        name("Pump 1");
        QVERIFY(m_document.save());
        QVERIFY(replaceFile(path("c.names"), "2=Pump 2;\n"));
        name("Pump 3");
        QVERIFY(m_document.save());
        QCOMPARE(contentOf(path("c.names")), "1=Pump 3;\n");
        QCOMPARE(contentOf(path("c.names~")), "2=Pump 2;\n");

        QFile::remove(path("c.names~"));
        QVERIFY(replaceFile(path("c.names"), "1=Pump 4;\nsomething else\n"));
        const ReadReport report = m_document.load(path("c.xml"));
        QCOMPARE(report.remarks.size(), 1);
        QVERIFY(m_document.save()); // nothing to write but what it could not read
        QCOMPARE(contentOf(path("c.names~")), "1=Pump 4;\nsomething else\n");
    }

    void aFileOfNamesThatCannotBeWrittenIsTold()
    {
        m_document.setFileName(path("d.xml"));
        QVERIFY(QDir(m_folder.path()).mkdir("d.names"));
        name("Pump 1");
        m_document.setModified(true);
        const Status saved = m_document.save();
        QVERIFY(!saved);
        QVERIFY2(saved.message().contains("d.names"), qPrintable(saved.message()));
        QVERIFY(m_document.isModified());
    }

    void theirUnitStandsInForOneThatTheScalingLacks()
    {
        const TextTable texts;
        Configuration configuration;
        configuration.names.channels[8].unit = "bar";
        QCOMPARE(limitUnits(configuration, 9, texts).limit, "bar");
        configuration.scaling[0].unit = "Volt";
        QCOMPARE(limitUnits(configuration, 9, texts).limit, "Volt");
    }

private:
    QString path(const QString &file) const { return m_folder.filePath(file); }
    QString shown() const { return namedChannel(1, m_document.configuration().names); }
    void name(const QString &text)
    {
        m_history.adjust({}, [&text](Configuration &c) { c.names.channels[0].name = text; });
    }

    QTemporaryDir m_folder;
    Document m_document{fixedEnvironment()};
    EditHistory m_history{m_document};
};

QTEST_GUILESS_MAIN(ChannelNamesTest)
#include "channel_names_test.moc"
