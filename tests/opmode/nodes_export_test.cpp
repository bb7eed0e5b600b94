#include "opmode/lists/nodes_export.h"
#include "opmode/tree/station_tree_loader.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;

namespace {

QDateTime at(int day, int hour, int minute, int second = 0)
{
    return QDateTime(QDate(2026, 11, day), QTime(hour, minute, second));
}

} // namespace

class NodesExportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_tree = std::make_unique<StationTree>(StationCaptions{"Notifications", "History", "IP"});
        for (const QString &name : m_all) {
            m_tree->addStation(name);
        }
        const auto say = [this](const QString &kennung, const QString &text, const QDateTime &now) {
            m_tree->apply(kennung, interpretStationMessage("+4917012345 --> " + text), now);
        };
        say(m_all[0], "M,tank 3 fail", at(21, 14, 0));
        say(m_all[0], "M,=HYPERLINK(1)\tx", at(20, 0, 0));
        say(m_all[0], "M,tank 3 fail", at(21, 14, 5, 59));
        say("b", "H,1,2611211405,9,-12.5", {});
        say("b", "H,1,2611211406,17,+4.0", {});
        std::optional<StationTreeLoader> loader(std::in_place, *m_tree);
        loader->load("b/history/x", "? : IP20 = on", StationTree::normalColour);
        loader->load("b/history/y", "-1+2", StationTree::normalColour);
        const char *old = "b/meldung/+4917012345 --> M,old fail";
        loader->load(old, "+4917012345 --> M,old fail", StationTree::normalColour);
        loader->loadArrival(old, {0, at(21, 15, 0, 1).toMSecsSinceEpoch(), 1});
        loader.reset();
    }

    void notificationsAreATable()
    {
        QCOMPARE(
            exported({ExportChoice::Kind::Notifications, m_all, {}, {}, false}),
            "\xEF\xBB\xBFStation;Received;Recipient;Text;Count;State;Acknowledged\r\n"
            "\"Pump; \"\"A\"\"\";21.11.2026 14:05:59;\"'+4917012345\";tank 3 fail;2;not acknowledged;\r\n"
            "\"Pump; \"\"A\"\"\";20.11.2026 00:00:00;\"'+4917012345\";\"'=HYPERLINK(1) x\";1;no alarm;\r\n"
            "b;;\"'+4917012345\";old fail;1;acknowledged;21.11.2026 15:00:01\r\n");
    }

    void historyIsATable()
    {
        QCOMPARE(exported({ExportChoice::Kind::History, m_all, {}, {}, false}),
                 "\xEF\xBB\xBFStation;Time;Input;Input name;Value\r\n"
                 "b;21.11.2026 14:05;9;Analog In 1;-12,5\r\n"
                 "b;21.11.2026 14:06;17;PT 1000 In 1;4,0\r\n"
                 "b;;20;;on\r\n"
                 "b;;;;\"'-1+2\"\r\n");
    }

    void onlyWhatIsChosenIsThere_data()
    {
        using Kind = ExportChoice::Kind;
        const std::optional<QDateTime> none;
        QTest::addColumn<ExportChoice>("choice");
        QTest::addColumn<int>("lines");
        QTest::addColumn<int>("withoutTime");
        QTest::newRow("one station") << ExportChoice{Kind::Notifications, {"b"}, none, none, false} << 1 << 0;
        QTest::newRow("no such one") << ExportChoice{Kind::History, {"c"}, none, none, false} << 0 << 0;
        QTest::newRow("red") << ExportChoice{Kind::Notifications, m_all, none, none, true} << 1 << 0;
        QTest::newRow("last minute") << ExportChoice{Kind::Notifications, m_all, at(21, 14, 5, 30),
                                                     at(21, 14, 5), false}
                                     << 1 << 1;
        QTest::newRow("until") << ExportChoice{Kind::Notifications, m_all, none, at(21, 14, 4), false} << 1
                               << 1;
        QTest::newRow("midnight") << ExportChoice{Kind::Notifications, m_all, at(20, 0, 0), at(20, 0, 0),
                                                  false}
                                  << 1 << 1;
        QTest::newRow("history") << ExportChoice{Kind::History, m_all, at(21, 14, 6), none, false} << 1 << 2;
        QTest::newRow("both ends") << ExportChoice{Kind::History, m_all, at(21, 14, 5), at(21, 14, 6), false}
                                   << 2 << 2;
    }
    void onlyWhatIsChosenIsThere()
    {
        QFETCH(const ExportChoice, choice);
        const QByteArray content = exported(choice);
        QTEST(int(content.count('\n')) - 1, "lines");
        QTEST(int(m_withoutTime), "withoutTime");
    }

    void theFileIsThereWholeOrNotAtAll()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("a.csv");
        const ExportChoice choice{ExportChoice::Kind::History, m_all, {}, {}, false};
        QVERIFY(replaceFile(file, "before"));
        {
            NodesExport broken(*m_tree, choice);
            QVERIFY(broken.open(file));
            QVERIFY(broken.step(2));
            QVERIFY(!broken.isDone());
        }
        QByteArray content;
        QVERIFY(readFile(file, content, 100));
        QCOMPARE(content, "before");
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"a.csv"});
        const QString nowhere = folder.filePath("none/a.csv");
        QVERIFY(NodesExport(*m_tree, choice).open(nowhere).message().contains(nowhere));
        QVERIFY(!QFileInfo::exists(folder.filePath("none")));
    }

private:
    /// Written in small parts.
    QByteArray exported(const ExportChoice &choice)
    {
        NodesExport csv(*m_tree, choice);
        Status status = csv.open(m_folder.filePath("out.csv"));
        while (status && !csv.isDone()) {
            status = csv.step(1);
        }
        m_withoutTime = csv.withoutTime();
        QByteArray content;
        const bool isThere = status && readFile(m_folder.filePath("out.csv"), content, 10'000);
        return isThere && content.count('\n') - 1 == csv.lines() ? content : status.message().toUtf8();
    }

    const QStringList m_all{"Pump; \"A\"", "b"};
    QTemporaryDir m_folder;
    std::unique_ptr<StationTree> m_tree;
    qint64 m_withoutTime = 0;
};

QTEST_GUILESS_MAIN(NodesExportTest)
#include "nodes_export_test.moc"
