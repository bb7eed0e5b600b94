#include "opmode/lists/station_import.h"
#include "opmode/tree/station_tree.h"
#include "platform/files.h"
#include "platform/table_file.h"

#include <QTemporaryDir>
#include <QTest>

using namespace ktr;

class StationImportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesBecomeStations_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("stations"); // name@address, or the number of the line that is left out
        QTest::newRow("semicolons") << "a;10.0.0.1\r\n\r\n b ; pump.example:4711 \n"
                                    << "a@10.0.0.1 b@pump.example:4711";
        QTest::newRow("commas") << "\"a, left\",::1\rb,[::1]:5"
                                << "a, left@::1 b@[::1]:5";
        QTest::newRow("tabs") << "a;b\t10.0.0.1\nc;d\t"
                              << "a;b@10.0.0.1 c;d@";
        QTest::newRow("one with a tab") << "a b\t10.0.0.1"
                                        << "a b@10.0.0.1";
        QTest::newRow("one with a comma") << "a b,pump"
                                          << "a b@pump";
        QTest::newRow("mixed") << "a;10.0.0.1\nb,10.0.0.2\nc\t10.0.0.3\nd, left;10.0.0.4\ne;"
                               << "a@10.0.0.1 b@10.0.0.2 c@10.0.0.3 d, left@10.0.0.4 e@";
        QTest::newRow("quoted") << "\"a \"\"x\"\"\nb\";10.0.0.1\nc;no address!"
                                << "a \"x\" b@10.0.0.1 3";
        QTest::newRow("never closed") << "\"a;10.0.0.1\nb;10.0.0.2"
                                      << "1 b@10.0.0.2";
        QTest::newRow("closed too late") << "\"a;10.0.0.1\n\"b\";10.0.0.2\nc;10.0.0.3"
                                         << "1 c@10.0.0.3";
        QTest::newRow("header") << "Adresse;Kennung\n10.0.0.1;a"
                                << "a@10.0.0.1";
        QTest::newRow("twice") << "old;\na;\na;\na (1);\na;"
                               << "old (1)@ a@ a (1)@ a (1) (1)@ a (2)@";
        QTest::newRow("unusable") << ";10.0.0.1\na/b;10.0.0.1\na;1.2.3\na;300.1.1.1\nb;host:0"
                                  << "1 2 3 4 5";
        QTest::newRow("nothing") << " \n;;\n"
                                 << "";
    }
    void linesBecomeStations()
    {
        QFETCH(const QString, text);
        StationTree tree({"Notifications", "History", "IP"});
        tree.addStation("old");
        QStringList stations;
        for (const StationImportLine &station :
             readStationImport(text, [&](const QString &name) { return tree.freeName(name); }).lines) {
            stations += station.isUsable ? QString(station.name + '@' + station.address)
                                         : QString::number(station.line);
            QVERIFY(station.isUsable || !station.remark.isEmpty());
        }
        QTEST(stations.join(' '), "stations");
    }

    void anAddressOfTwoIsRemarked()
    {
        const QStringList remarks = [] {
            QStringList all;
            for (const StationImportLine &line :
                 readStationImport(
                     u"a;10.0.0.1\nb;Pump.example\nc;10.0.0.1\nd;10.0.0.1:5\ne;10.0.0.9\nf;pump.EXAMPLE",
                     [](const QString &name) { return name; }, {{"10.0.0.9", "old"}})
                     .lines) {
                all += line.isUsable ? line.remark : "unusable";
            }
            return all;
        }();
        QCOMPARE(remarks.size(), 6);
        QVERIFY(remarks[0].isEmpty() && remarks[1].isEmpty() && remarks[3].isEmpty());
        QVERIFY(remarks[2].contains("\"a\""));
        QVERIFY(remarks[4].contains("\"old\""));
        QVERIFY(remarks[5].contains("\"b\""));
    }

    void aListHasItsLimit()
    {
        const StationImport list = readStationImport(QString("a\n").repeated(StationImport::mostLines + 1),
                                                     [](const QString &name) { return name; });
        QCOMPARE(list.lines.size(), StationImport::mostLines);
        QCOMPARE(list.lines.constLast().name, "a (19999)");
        QVERIFY(list.isCut);
    }

    void aFileMayHaveAnyEncoding_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("UTF-8") << QByteArray("\xC3\x96l;h\xC3\x96");
        QTest::newRow("UTF-8 with a mark") << QByteArray("\xEF\xBB\xBF\xC3\x96l;h\xC3\x96");
        QTest::newRow("Windows-1252") << QByteArray("\xD6l;h\xD6");
        QTest::newRow("UTF-16") << QByteArray("\xFF\xFE\xD6\0l\0;\0h\0\xD6\0", 12);
    }
    void aFileMayHaveAnyEncoding()
    {
        QFETCH(const QByteArray, bytes);
        const QTemporaryDir folder;
        QVERIFY(replaceFile(folder.filePath("list.csv"), bytes));
        QString text;
        QVERIFY(readTableText(folder.filePath("list.csv"), text));
        QCOMPARE(text, QString::fromUtf8("Öl;hÖ"));
    }
};

QTEST_GUILESS_MAIN(StationImportTest)
#include "station_import_test.moc"
