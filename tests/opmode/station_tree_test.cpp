#include "opmode/tree/acknowledgement.h"
#include "opmode/tree/station_tree_loader.h"

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

const QDateTime now(QDate(2009, 12, 24), QTime(14, 5, 33));

StationMessage said(const char *text)
{
    return interpretStationMessage(QStringLiteral("+49 --> ") + QString::fromUtf8(text));
}

} // namespace

class StationTreeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_tree = std::make_unique<StationTree>(StationCaptions{"Notifications", "History", "IP"});
        m_tester = std::make_unique<QAbstractItemModelTester>(m_tree.get());
    }
    void cleanup() { m_tester.reset(); }

    void aStationHasItsTwentyTwoNodesInOrder()
    {
        const QModelIndex station = m_tree->addStation("Station 1");
        QCOMPARE(m_tree->nodes().count(), 22U);
        QStringList texts;
        for (int row = 0; row < 3; ++row) {
            texts += m_tree->index(row, 0, station).data().toString();
        }
        QCOMPARE(texts, (QStringList{"Notifications", "History", "IP"}));
        const QModelIndex seventh = m_tree->index(6, 0, m_tree->index(2, 0, station));
        QCOMPARE(seventh.data(StationTree::KeyRole), "Station 1/ip/ip7");
        QCOMPARE(seventh.data(), "Digital In 7      IP7 = ?");
        QVERIFY(!m_tree->addStation("Station 1").isValid());
        QVERIFY(!m_tree->addStation("a/b").isValid());
        QVERIFY(!m_tree->addStation("").isValid());
    }

    void captionsFollowTheLanguageAndTextsStayOnTheirLineWhileTheirFileKeepsThem()
    {
        const StationCaptions german{"Meldungen", "Historie", "IP"};
        m_tree->knowCaptions(german);
        const QModelIndex station = m_tree->addStation("Pump");
        std::optional<StationTreeLoader> loader(std::in_place, *m_tree);
        QVERIFY(loader->load("Pump/meldung", "Meldungen", 255) && loader->load("Pump/history", "Mine", 0));
        QVERIFY(loader->load("Pump/history/1",
                             "a\n\xE2\x80\xAE"
                             "b",
                             0));
        loader.reset();
        const QModelIndex entry = m_tree->find("Pump/history/1");
        QCOMPARE(m_tree->find("Pump/meldung").data(), "Notifications");
        QCOMPARE(m_tree->find("Pump/history").data(), "Mine");
        QCOMPARE(entry.data(), "a b");
        QCOMPARE(entry.data(Qt::EditRole), u"a\n\u202Eb"_s);
        QVERIFY(m_tree->setData(station, u"a\nb"_s));
        QCOMPARE(m_tree->find("Pump").data(), "a b");
        m_tree->setCaptions(german);
        QCOMPARE(m_tree->find("Pump/meldung").data(), "Meldungen");
        QCOMPARE(m_tree->find("Pump/meldung").data(Qt::EditRole), "Meldungen");
        m_tree->addStation("Tank");
        m_tree->setCaptions({"Notifications", "History", "IP"});
        QCOMPARE(m_tree->find("Tank/history").data(), "History");
        QCOMPARE(m_tree->find("Tank/history").data(Qt::EditRole), "Historie");
    }

    void newNamesAreCounted()
    {
        for (const char *expected : {"new", "new (1)", "new (2)"}) {
            const QString name = m_tree->freeName("new");
            QCOMPARE(name, expected);
            m_tree->addStation(name);
        }
        QVERIFY(m_tree->setData(m_tree->find("new"), "pump"));
        QCOMPARE(m_tree->freeName("pump"), "pump (1)"); // its key in the next run
        QCOMPARE(m_tree->freeName("new"), "new (3)");   // still a key in this one
        QVERIFY(!m_tree->setData(m_tree->find("new (1)"), "pump"));
        QVERIFY(!m_tree->setData(m_tree->find("new (1)"), "a/b"));
        QVERIFY(!m_tree->setData(m_tree->find("new/ip"), "x"));
    }

    void messagesChangeTheirBranchOnly()
    {
        m_tree->addStation("a");
        m_tree->addStation("b");
        StationTree::Outcome outcome = m_tree->apply("b", said(">M,Pump 1/2 fail"), now);
        QVERIFY(outcome.alarm);
        QCOMPARE(outcome.entry.data(StationTree::KeyRole), "b/meldung/+49 --> M,Pump 1/2 fail");
        QCOMPARE(m_tree->find("b/meldung/+49 --> M,Pump 1/2 fail"), outcome.entry);
        QCOMPARE(outcome.entry.data(StationTree::ColourRole), 255);
        QCOMPARE(m_tree->find("b/meldung").data(StationTree::ColourRole), 255);
        QCOMPARE(m_tree->find("b").data(StationTree::ColourRole), 255);
        QCOMPARE(m_tree->find("a").data(StationTree::ColourRole), StationTree::normalColour);
        m_tree->apply("b", said("M,all well"), now);
        QCOMPARE(m_tree->rowCount(m_tree->find("b/meldung")), 2);
        QCOMPARE(m_tree->find("b/meldung").data(StationTree::AlarmCountRole), 1);
        m_tree->remove(outcome.entry);
        QCOMPARE(m_tree->find("b/meldung").data(StationTree::AlarmCountRole), 0);
        QCOMPARE(m_tree->find("b").data(StationTree::ColourRole), StationTree::normalColour);

        m_tree->apply("b", said("R,5,12.3"), now);
        QCOMPARE(m_tree->find("b/ip").data(), "IP (14:05 24.12.2009)");
        QCOMPARE(m_tree->find("b/ip/ip5").data(), "Digital In 5      IP5 = 12.3");
        QCOMPARE(m_tree->find("b/ip/ip6").data(), "Digital In 6      IP6 = ?");
        m_tree->apply("b", said("H,7,0911152359,1,12.5,15,2,3"), now);
        QCOMPARE(m_tree->index(1, 0, m_tree->find("b/history")).data(), "16.11.2009 00:14 : IP2 = 3");
        m_tree->apply("nobody", said("M,x"), now);
        QCOMPARE(m_tree->nodes().count(), 2 * 22U + 3);
        QCOMPARE(m_tree->rowCount(m_tree->find("a/meldung")), 0);
    }

    void anAcknowledgedAlarmThatComesBackIsRedAgain()
    {
        const QSignalSpy counts(m_tree.get(), &StationTree::alarmCountChanged);
        m_tree->addStation("a");
        const auto first = m_tree->apply("a", said("M,1 fail"), now).entry;
        const auto second = m_tree->apply("a", said("M,2 fail"), now).entry;
        const QModelIndex branch = m_tree->find("a/meldung");
        const QModelIndex station = m_tree->find("a");
        const auto colours = [&] {
            QList<int> result;
            for (const QModelIndex &index : {first, second, branch, station}) {
                result += index.data(StationTree::ColourRole).toInt();
            }
            return result;
        };
        constexpr int normal = StationTree::normalColour;

        const auto one = acknowledgementOf({first, first, station.siblingAtRow(7)}, *m_tree, now.addSecs(1));
        QCOMPARE(one.size(), 1);
        QCOMPARE(colours(), (QList<int>{255, 255, 255, 255})); // not before it is carried out
        m_tree->carryOut(one);
        QCOMPARE(colours(), (QList<int>{normal, 255, 255, 255}));
        QCOMPARE(first.data(StationTree::AcknowledgedRole), now.addSecs(1).toMSecsSinceEpoch());
        QCOMPARE(acknowledgementOf({first}, *m_tree, now), QList<NodeChange>());

        const auto rest = acknowledgementOf({station}, *m_tree, now);
        QCOMPARE(rest.size(), 3);
        const auto again = m_tree->apply("a", said(">M,2 fail"), now.addSecs(5)); // before it was carried out
        QVERIFY(again.alarm && again.entry == second);
        m_tree->carryOut(rest);
        QCOMPARE(colours(), (QList<int>{normal, 255, 255, 255}));
        m_tree->carryOut(acknowledgementOf({branch}, *m_tree, now));
        QCOMPARE(colours(), (QList<int>{normal, normal, normal, normal}));
        QCOMPARE(m_tree->alarmCount(), 0);

        const auto back = m_tree->apply("a", said("M,1 fail"), now.addSecs(9));
        QVERIFY(back.alarm && back.entry == first);
        QCOMPARE(colours(), (QList<int>{255, normal, 255, 255}));
        QCOMPARE(first.data(StationTree::AcknowledgedRole), 0);
        QCOMPARE(first.data(StationTree::ReceivedRole), now.addSecs(9).toMSecsSinceEpoch());
        QCOMPARE(first.data(StationTree::CountRole), 2);
        QCOMPARE(m_tree->rowCount(branch), 2);
        QCOMPARE(station.data(StationTree::AlarmCountRole), 1);
        m_tree->remove(station);
        QCOMPARE(m_tree->alarmCount(), 0);
        QCOMPARE(counts.size(), 6); // 1, 2, 1, 0, 1, 0
    }

    void entriesStayFoundWhileOthersComeAndGo()
    {
        QRandomGenerator chance(5);
        QStringList kept;
        m_tree->addStation("a");
        const QPersistentModelIndex branch = m_tree->find("a/meldung");
        QPersistentModelIndex witness;
        for (int step = 0; step < 1500; ++step) {
            if (chance.bounded(3) > 0 || kept.isEmpty()) {
                const QString text = QStringLiteral("%1/%2").arg(chance.bounded(2000)).arg(step);
                const auto entry = m_tree->apply("a", NotificationMessage{{text, text}, false}, now).entry;
                kept.append(text);
                if (!witness.isValid()) {
                    witness = entry;
                }
            } else {
                const qsizetype at = chance.bounded(static_cast<int>(kept.size()));
                m_tree->remove(m_tree->index(static_cast<int>(at), 0, branch));
                kept.removeAt(at);
            }
            QVERIFY(!witness.isValid() || witness.data() == kept[witness.row()]);
        }
        QCOMPARE(m_tree->rowCount(branch), kept.size());
        for (qsizetype row = 0; row < kept.size(); ++row) {
            QCOMPARE(m_tree->find("a/meldung/" + kept[row]).row(), row);
        }
        m_tree->remove(m_tree->find("a"));
        QCOMPARE(m_tree->nodes().count(), 0U);
    }

    void textsThatGrowAndShrinkDoNotPileUp()
    {
        NodeStore store;
        const auto station = store.add(NodeStore::root, "a", "a", 0);
        const auto other = store.add(NodeStore::root, "b", "text of b", 0);
        for (std::size_t round = 0; round < 2000; ++round) { // 10 MB, unless room is used again
            QVERIFY(store.setText(*station, std::string(1000 + round % 7 * 1000, 'x')));
        }
        QVERIFY(store.setText(*station, ""));
        QVERIFY(store.setText(*station, "a"));
        QCOMPARE(store.text(*station), "a");
        QCOMPARE(store.text(*other), "text of b");
        QVERIFY(store.arenaSize() < 200'000);
    }

    void aFileIsLoadedAsOneChange()
    {
        const QSignalSpy resets(m_tree.get(), &QAbstractItemModel::modelReset);
        std::optional<StationTreeLoader> loader(std::in_place, *m_tree);
        QVERIFY(loader->load("a", "a", 1));
        QVERIFY(loader->load("a/ip", "IP (now)", 0));
        QVERIFY(loader->load("a/meldung/x", "x", 255));
        QVERIFY(loader->load("a/meldung/x/y", "x/y", 0)); // an entry beside "x"
        QVERIFY(!loader->load("b/meldung", "no station", 0));
        QVERIFY(!loader->load("", "", 0));
        loader.reset();
        QCOMPARE(resets.size(), 1);
        QCOMPARE(m_tree->nodes().count(), 24U);
        QCOMPARE(m_tree->find("a/meldung").data(StationTree::AlarmCountRole), 1);
        QCOMPARE(m_tree->find("a/ip").data(), "IP (now)");
    }

private:
    std::unique_ptr<StationTree> m_tree;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

QTEST_GUILESS_MAIN(StationTreeTest)
#include "station_tree_test.moc"
