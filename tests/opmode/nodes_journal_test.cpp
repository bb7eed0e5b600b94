#include "opmode/keeping/nodes_file.h"
#include "opmode/keeping/nodes_journal.h"
#include "opmode/tree/acknowledgement.h"
#include "opmode/tree/station_tree_loader.h"
#include "platform/files.h"
#include "support/manual_timers.h"
#include "support/test_files.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;
using namespace ktr::test;

namespace {

constexpr quint64 base = 7;
const QDateTime at(QDate(2009, 12, 24), QTime(14, 5, 33));

StationMessage alarm(const QString &text)
{
    return NotificationMessage{{text, text}, true};
}

} // namespace

class NodesJournalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_told.clear();
    }

    void aCrashLosesNeitherAnAlarmNorItsAcknowledgement()
    {
        StationTree tree(captions());
        ManualTimers timers;
        NodesJournal journal = opened(timers);
        QVERIFY(journal.replay(base, {}).status);
        tree.setObserver([&journal](const NodeChange &change) { journal.add(change); });
        tree.addStation("a");
        tree.addStation("gone");
        tree.apply("a", alarm("1/2 fail"), {});
        tree.apply("a", alarm("2 fail"), {});
        tree.apply("a", interpretStationMessage("+49 --> H,7,0911152359,1,12.5"), {});
        tree.apply("a", interpretStationMessage("+49 --> R,5,12.3"), QDateTime::currentDateTime());
        const auto acknowledged = acknowledgementOf({tree.find("a/meldung/2 fail")}, tree, at);
        for (const NodeChange &change : acknowledged) {
            journal.add(change);
        }
        QVERIFY(journal.flushNow());
        tree.carryOut(acknowledged);
        tree.apply("a", alarm("1/2 fail"), at);
        tree.remove(tree.find("gone"));
        QVERIFY(tree.setData(tree.find("a"), QStringLiteral("Pumpwerk")));
        const NodeChange station{
            NodeChange::What::Station, "a", {}, 0, 0, 0, {true, {"7:05", 2, "9", 10}, "10.0.0.7", true}};
        journal.add(station);
        timers.advance(NodesJournal::longestDelay);

        // Another run finds it on the disk while this one never ends.
        QTRY_VERIFY(content().contains("10.0.0.7"));
        StationTree again(captions());
        const auto replayed = replayInto(again);
        QCOMPARE(replayed.dropped, 0);
        QCOMPARE(replayed.unfit, 0);
        QCOMPARE(m_attributes, QList<StationAttributes>{station.station});
        const auto document = [](const StationTree &of) {
            return writeNodes(of.nodes(), [](const QString &) { return StationAttributes(); });
        };
        // The numbers of the elements may differ, for what was removed.
        QCOMPARE(document(again), document(tree));
        QCOMPARE(again.find("a/meldung").data(StationTree::AlarmCountRole), 1);
        for (const char *key : {"a/meldung/1/2 fail", "a/meldung/2 fail"}) {
            for (const int role : {StationTree::ReceivedRole, StationTree::CountRole,
                                   StationTree::AcknowledgedRole, StationTree::RaisedRole}) {
                QCOMPARE(again.find(key).data(role), tree.find(key).data(role));
            }
        }
    }

    void valuesThatChangeForMonthsDoNotFillTheDisk()
    {
        ManualTimers timers;
        StationTree tree(captions());
        {
            NodesJournal journal = opened(timers);
            QVERIFY(journal.restart(base));
            tree.setObserver([&journal](const NodeChange &change) { journal.add(change); });
            tree.addStation("a");
            tree.apply("a", alarm("1 fail"), at);
            const std::string padding(4096, 'x');
            for (int round = 0; round < 3000; ++round) { // 12 MB
                const QString text = QString::number(round) + QString::fromStdString(padding);
                tree.apply("a", InputValuesMessage{{{round % 18 + 1, text}}}, at);
                if (round % 300 == 0) {
                    QVERIFY(journal.flushNow());
                }
            }
            tree.apply("a", alarm("2 fail"), at);
        }
        QVERIFY(QFileInfo(path()).size() < 9'000'000);
        StationTree again(captions());
        QCOMPARE(replayInto(again).unfit, 0);
        QCOMPARE(again.find("a/ip/ip18").data(), tree.find("a/ip/ip18").data());
        QCOMPARE(again.find("a/meldung").data(StationTree::AlarmCountRole), 2);
    }

    void aTornOrDamagedRecordIsDroppedAlone()
    {
        ManualTimers timers;
        {
            NodesJournal journal = opened(timers);
            QVERIFY(journal.replay(base, {}).status);
            for (const char *key : {"a", "b", "c"}) {
                journal.add({NodeChange::What::Added, key, key, 0});
            }
        }
        const QByteArray whole = content();
        constexpr qsizetype mark = 37; // the record that names the file once more
        const qsizetype record = (whole.size() - 16 - mark) / 3;
        for (qsizetype size = 0; size <= whole.size(); ++size) {
            QVERIFY(replaceFile(path(), whole.first(size)));
            StationTree tree(captions());
            const auto replayed = replayInto(tree, "d");
            QVERIFY(replayed.status);
            QCOMPARE(replayed.changes, qMax<qsizetype>(0, (size - 16 - mark) / record));
            StationTree next(captions());
            QCOMPARE(replayInto(next).changes, replayed.changes + 1); // it went on behind the last whole one
            QVERIFY(next.find("d").isValid());
        }
        QVERIFY2(files() == QStringList("nodes.journal"),
                 qPrintable(files().join(u' '))); // a tear is no damage
        for (qsizetype at = 0; at < whole.size(); ++at) {
            QByteArray damaged = whole;
            damaged[at] = static_cast<char>(damaged[at] ^ 0x10);
            QVERIFY(replaceFile(path(), damaged));
            StationTree tree(captions());
            const auto replayed = replayInto(tree);
            QVERIFY(replayed.status);
            QCOMPARE(replayed.changes, at < 16 + mark ? 3 : 2);
            StationTree next(captions());
            QCOMPARE(replayInto(next).changes, replayed.changes);
            // The header may as well name another file, and a longer last record is one that was torn.
            const qsizetype last = whole.size() - record;
            const bool isKnown = (at >= 8 && at < 16) || (at > last && at < last + 4);
            QCOMPARE(contentOf(m_folder->filePath("nodes (1).journal")), isKnown ? QByteArray() : damaged);
            QVERIFY(isKnown || QFile::remove(m_folder->filePath("nodes (1).journal")));
        }
    }

    void aJournalOfAnotherFileIsKeptAside()
    {
        ManualTimers timers;
        {
            NodesJournal journal = opened(timers);
            QVERIFY(journal.restart(base + 1));
            journal.add({NodeChange::What::Added, "a", "a", 0});
        }
        StationTree tree(captions());
        const auto replayed = replayInto(tree, "b");
        QVERIFY(!replayed.status);
        QCOMPARE(tree.nodes().count(), 0U);
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), 2);
        QCOMPARE(replayInto(tree).changes, 1); // b
    }

    void aWrittenFileEmptiesTheJournal()
    {
        ManualTimers timers;
        NodesJournal journal = opened(timers);
        journal.add({NodeChange::What::Added, "a", "a", 0});
        QVERIFY(journal.restart(base));
        timers.advance(NodesJournal::longestDelay);
        StationTree tree(captions());
        QCOMPARE(replayInto(tree).changes, 0);
    }

    void troubleIsToldOnceAndNothingOfItIsLost()
    {
        ManualTimers timers;
        const QString folder = m_folder->filePath("later");
        NodesJournal journal(folder + "/nodes.journal", timers,
                             [this](const QString &text) { m_told += text; });
        QVERIFY(!journal.replay(base, {}).status);
        journal.add({NodeChange::What::Added, "a", "a", 0});
        timers.advance(NodesJournal::longestDelay);
        QTRY_COMPARE(m_told.size(), 1);
        QVERIFY(!journal.flushNow());
        QCOMPARE(m_told.size(), 1);
        QVERIFY(m_told.first().startsWith(folder));
        QVERIFY(QDir().mkdir(folder));
        timers.advance(NodesJournal::retryDelay);
        QTRY_COMPARE(m_told.size(), 2);
        QCOMPARE(m_told.last(), "");
        qsizetype changes = NodesJournal(folder + "/nodes.journal", timers, {})
                                .replay(base, [](const NodeChange &) { return true; })
                                .changes;
        QCOMPARE(changes, 1);
    }

private:
    static StationCaptions captions() { return {"Notifications", "History", "IP"}; }
    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files); }
    QString path() const { return m_folder->filePath("nodes.journal"); }
    QByteArray content() const { return contentOf(path()); }
    NodesJournal opened(Timers &timers)
    {
        return NodesJournal(path(), timers, [this](const QString &text) { m_told += text; });
    }
    /// What a run finds; it adds a station when it is given one.
    NodesJournal::Replayed replayInto(StationTree &tree, const char *added = nullptr)
    {
        ManualTimers timers;
        NodesJournal journal = opened(timers);
        StationTreeLoader loader(tree);
        const auto replayed = journal.replay(base, [&](const NodeChange &change) {
            if (change.what == NodeChange::What::Station) {
                m_attributes += change.station;
            }
            return loader.replay(change);
        });
        if (added != nullptr) {
            journal.add({NodeChange::What::Added, added, added, 0});
        }
        return replayed;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QStringList m_told;
    QList<StationAttributes> m_attributes;
};

QTEST_GUILESS_MAIN(NodesJournalTest)
#include "nodes_journal_test.moc"
