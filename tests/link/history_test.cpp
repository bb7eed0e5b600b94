#include "link/history_decoder.h"
#include "link/history_export.h"
#include "link/reply_handler.h"
#include "link/service_commands.h"
#include "platform/csv.h"
#include "platform/files.h"
#include "simulator/module_memory.h"
#include "support/manual_timers.h"

#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace ktr::test;

class HistoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void aLineGivesItsRecords_data()
    {
        QTest::addColumn<QString>("fields");
        QTest::addColumn<QString>("records");
        QTest::addColumn<QString>("badTime");
        QTest::addColumn<QString>("incomplete");
        const auto row = [](const char *fields, const char *records, const char *badTime = "",
                            const char *incomplete = "") {
            QTest::newRow(fields) << QString(fields) << QString(records) << QString(badTime)
                                  << QString(incomplete);
        };
        row("7,0911151405,112,12.5", "7;15.11.2009 14:05;112;12,5");
        row("7,0912312350,1.5,2.5.1,15,3,4,1440,5,6,",
            "7;31.12.2009 23:50;1.5;2,5,1 7;01.01.2010 00:05;3;4 7;02.01.2010 00:05;5;6");
        row("7,0002290000,1,2,-1,3,4", "7;29.02.2000 00:00;1;2 7;28.02.2000 23:59;3;4");
        row("7,9912312359,1,2,0,3,4", "7;31.12.2099 23:59;1;2 7;31.12.2099 23:59;3;4");
        row("7", "");

        row("7,0902290000,1,2,15,3,4", "7;;1;2 7;;3;4", "0902290000");
        row("7,091115140,1,2", "7;;1;2", "091115140");
        row("7,0911152400,1,2", "7;;1;2", "0911152400");
        row("7,9912312359,1,2,1,3,4,-5,5,6", "7;31.12.2099 23:59;1;2 7;;3;4 7;;5;6", "1");
        row("7,0911151405,1,2,99999999999999999999,3,4", "7;15.11.2009 14:05;1;2 7;;3;4",
            "99999999999999999999");
        row("7,0911151405,1,2,,3,4", "7;15.11.2009 14:05;1;2 7;;3;4", "\"\"");
        row("7,0911151405,1,2,15,3", "7;15.11.2009 14:05;1;2", "", "15,3");
        row("7,0911151405", "", "", "0911151405");
    }
    void aLineGivesItsRecords()
    {
        QFETCH(const QString, fields);
        QFETCH(const QString, records);
        const ArchiveLine line = decodeArchiveLine(fields);
        QStringList lines;
        for (const ArchiveRecord &record : line.records) {
            lines += QStringList{line.key, record.stamp, record.first, record.second}.join(u';');
        }
        // The date and the time of a stamp are one word here.
        QCOMPARE(lines.join(u' '), records);
        QTEST(line.badTime, "badTime");
        QTEST(line.incomplete, "incomplete");
    }

    void aCellIsNoFormula_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("cell");
        QTest::newRow("number") << "-12,5"
                                << "-12,5";
        QTest::newRow("phone number") << "+4917012345"
                                      << "\"'+4917012345\"";
        QTest::newRow("formula") << "=1+1"
                                 << "\"'=1+1\"";
        QTest::newRow("behind a tab") << "\t@SUM(A1)"
                                      << "\"' @SUM(A1)\"";
        QTest::newRow("behind what is not seen") << "\u200B\uFEFF=1"
                                                 << "\"'\u200B\uFEFF=1\"";
        QTest::newRow("carriage return") << "\r=1"
                                         << "\"' =1\"";
        QTest::newRow("minus") << "-2+3"
                               << "\"'-2+3\"";
        QTest::newRow("quoted") << "+a;\"b\""
                                << "\"'+a;\"\"b\"\"\"";
        QTest::newRow("plain") << "a-b"
                               << "a-b";
    }
    void aCellIsNoFormula()
    {
        QFETCH(const QString, text);
        QTEST(csvCell(text), "cell");
    }

    void aValueIsANumberWhateverItsSign()
    {
        QCOMPARE(historyCsv(decodeArchiveLine(u"7,0911151405,+7,+7.25,1,-3.5,-2+3,1,=1,+a")),
                 "7;15.11.2009 14:05;+7;+7,25\r\n"
                 "7;15.11.2009 14:06;-3.5;\"'-2+3\"\r\n"
                 "7;15.11.2009 14:07;\"'=1\";\"'+a\"\r\n");
    }

    void aFileIsTriedWithoutATrace()
    {
        QVERIFY(HistoryExport::check(path()) && !QFileInfo::exists(path()));
        QVERIFY(replaceFile(path(), "kept"));
        QVERIFY(HistoryExport::check(path()));
        QCOMPARE(content(), "kept");
        QVERIFY(!HistoryExport::check({}) && !HistoryExport::check(m_folder->path()) &&
                !HistoryExport::check(m_folder->filePath("missing/history.csv")));
    }

    void theFileGrowsLineByLine()
    {
        HistoryExport file;
        QCOMPARE(file.append(path(), "a\r\n"), "");
        QCOMPARE(file.append(path(), "b\r\n"), "");
        QCOMPARE(content(), "\xEF\xBB\xBF"
                            "a\r\nb\r\n");
        QVERIFY(replaceFile(path(), "edited by hand"));
        QCOMPARE(file.append(path(), "c\r\n"), "");
        QCOMPARE(content(), "edited by hand\r\nc\r\n");
    }

    void troubleIsToldOnceUntilItChanges()
    {
        HistoryExport file;
        const QString missing = m_folder->filePath("missing/history.csv");
        QCOMPARE(file.append({}, "a\r\n"), "The history is not exported: no file is chosen for it");
        QCOMPARE(file.append({}, "a\r\n"), "");
        QVERIFY(file.append(missing, "a\r\n").contains(missing));
        QCOMPARE(file.append(missing, "a\r\n"), "");
        QVERIFY(file.append(m_folder->path(), "a\r\n").contains("is not a file"));
        QVERIFY(file.append(path(), "b\r\n").startsWith("The history is exported again"));
        QVERIFY(content().endsWith("b\r\n") && !content().contains('a'));
    }

    void answersAreExportedDuringAFastExportOnly()
    {
        ManualTimers timers;
        ReplyHandler handler(timers, [this] { return path(); });
        const QSignalSpy told(&handler, &ReplyHandler::statusMessage);
        const QString line = "H,%1,0911151405,1,12.5";
        const auto hear = [&](int key) {
            handler.handle({ModemDialogue::ReplyKind::History, {}, line.arg(key)});
        };
        hear(1);
        hear(2);
        QCOMPARE(told.size(), 1);
        handler.handle({ModemDialogue::ReplyKind::Message, {}, "--> " + line.arg(3)});
        handler.commandLeft("H,0,1");
        hear(4);
        handler.commandLeft("§,77");
        for (int key = 5; key <= 7; ++key) {
            timers.advance(FastExport::longestSilence - Milliseconds(1));
            hear(key); // and the wait begins anew
        }
        timers.advance(FastExport::longestSilence);
        hear(8);
        handler.commandLeft("§,77");
        handler.disconnected();
        hear(9);
        QByteArray expected = "\xEF\xBB\xBF";
        for (const char key : {'3', '5', '6', '7'}) {
            expected += QByteArray(1, key) + ";15.11.2009 14:05;1;12,5\r\n";
        }
        QCOMPARE(content(), expected);
        QCOMPARE(told.size(), 2); // once a connection
    }

    void theVirtualModulesArchiveIsExportedWhole()
    {
        ManualTimers timers;
        ReplyHandler handler(timers, [this] { return path(); });
        const QSignalSpy told(&handler, &ReplyHandler::statusMessage);
        handler.commandLeft(serviceCommands::archive);
        for (const QString &line : archiveLines({})) {
            handler.handle({ModemDialogue::ReplyKind::History, {}, line});
        }
        QCOMPARE(told.size(), 0);
        QCOMPARE(content().count("\r\n"), 18);
        QVERIFY(content().endsWith("17;01.01.2000 01:15;1705;19,5\r\n"));
    }

private:
    QString path() const { return m_folder->filePath("history.csv"); }
    QByteArray content() const
    {
        QByteArray bytes;
        return readFile(path(), bytes, 1 << 20) ? bytes : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(HistoryTest)
#include "history_test.moc"
