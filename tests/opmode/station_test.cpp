#include "opmode/station/station.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"

#include <QTest>

using namespace ktr;
using test::RecordedLine;

namespace {

struct RecordingOwner : StationOwner
{
    void station_message(const QString &kennung, const QString &text) override
    {
        messages += kennung + QLatin1Char(':') + text;
        if (during) {
            during();
        }
    }
    void stationChanged(const QString &, StationChange what) override
    {
        puks += what == StationChange::PukNeeded ? 1 : 0;
        changes += what;
    }
    void stationTrouble(const QString &, const QString &text) override { troubles += text; }

    QStringList messages;
    QStringList troubles;
    QList<StationChange> changes;
    int puks = 0;
    std::function<void()> during;
};

/// A connected station, and what its module says to it.
struct Fixture
{
    Fixture()
    {
        station.setHostAddress(QStringLiteral("10.0.0.7"));
        station.connectStation();
        line.sent.clear();
    }
    /// What is sent at once to one datagram of the module.
    QByteArrayList say(const QByteArray &data)
    {
        line.sent.clear();
        station.DataArrival(data);
        return line.sent;
    }
    QByteArrayList wait(int milliseconds)
    {
        line.sent.clear();
        time.advance(Milliseconds(milliseconds));
        return line.sent;
    }
    void openDialogue(const QString &text)
    {
        QVERIFY(station.send(text));
        QCOMPARE(say("at+cpin?\r"), QByteArrayList{"config\r\n"});
    }

    test::ManualTimers time;
    QueuedCallbackTimers timers{time, [this] { return time.now(); }};
    MLiteTimer registry{timers};
    RecordedLine line;
    RecordingOwner owner;
    cStation station{QStringLiteral("A"), line, registry, owner};
};

const QByteArrayList nothing;

} // namespace

class StationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theStationAnnouncesItselfEvery20Seconds()
    {
        Fixture f;
        f.station.disconnect();
        f.station.connectStation();
        QVERIFY(f.station.online());
        QCOMPARE(f.line.opened.last(), "10.0.0.7");
        QCOMPARE(f.line.sent, QByteArrayList{"config\r\n"});
        f.say("at+cpin?\r");
        QCOMPARE(f.station.state(), 7);
        QCOMPARE(f.wait(19'990), nothing);
        QCOMPARE(f.station.state(), 7);
        QCOMPARE(f.wait(20'010), (QByteArrayList{"config\r\n", "config\r\n"}));
        QCOMPARE(f.station.state(), 0);
        f.station.disconnect();
        QVERIFY(!f.station.online() && !f.line.isOpened);
        QCOMPARE(f.registry.count(), 0U);
    }

    void aLineThatCannotBeOpenedIsToldOnceAndTriedAgain()
    {
        Fixture f;
        f.station.disconnect();
        f.line.failure = QStringLiteral("no port");
        QVERIFY(f.station.connectStation());
        QVERIFY(f.station.online());
        f.wait(40'000);
        QCOMPARE(f.owner.troubles, QStringList{"no port"});
        f.line.failure.clear();
        QCOMPARE(f.wait(20'000), QByteArrayList{"config\r\n"});
    }

    void aDialogueIsOpenedOnlyWhenSomethingWaits()
    {
        Fixture f;
        QCOMPARE(f.say("at+cpin?\r"), nothing);
        QCOMPARE(f.say("at+cmgr=1\r"), nothing);
        QVERIFY(!f.station.dialogueOpen());
        f.station.setExclusiveMode(true);
        QCOMPARE(f.say("at+cpin?\r"), QByteArrayList{"config\r\n"});
        QCOMPARE(f.say("at+cpin?\r"), (QByteArrayList{"at+cpin?\r\n", "config\r\n"}));
        QCOMPARE(f.say("at+cpin=\"1234\"\r"), (QByteArrayList{"at+cpin=\"1234\"\r\n", "config\r\n"}));
        QCOMPARE(f.say("at+csq\r"), (QByteArrayList{"at+csq\r\n", "OK\r\n"}));
    }

    void aDatagramWithoutLineEndIsJoinedWithTheNext()
    {
        Fixture f;
        f.openDialogue("x");
        QCOMPARE(f.say("at+"), nothing);
        QCOMPARE(f.say("csq\r"), (QByteArrayList{"at+csq\r\n", "OK\r\n"}));
        QCOMPARE(f.say("\n"), nothing); // stays, and is no report's beginning
        QCOMPARE(f.say("+CSQ: 18,0\r\n"), (QByteArrayList{"\n+CSQ: 18,0\r\r\n", "OK\r\n"}));
        QCOMPARE(f.station.csq(), "99,99");
        QCOMPARE(f.say("\xC4h\r"), (QByteArrayList{"\xC4h\r\n", "OK\r\n"}));
    }

    void aWaitingTextIsDeliveredAfterItsHeader()
    {
        Fixture f;
        f.openDialogue(QStringLiteral("ä1"));
        QVERIFY(!f.station.send(QStringLiteral("second")));
        QCOMPARE(f.say("at+cmgr=1\r"), (QByteArrayList{"at+cmgr=1\r\n", ",\"+IP\"\r\n"}));
        QCOMPARE(f.wait(240), nothing);
        QVERIFY(!f.station.send(QStringLiteral("second")));
        QCOMPARE(f.wait(10), QByteArrayList{"\xE4"
                                            "1\r\n"});
        QCOMPARE(f.wait(1000), nothing); // no OK
        QVERIFY(f.station.send(QStringLiteral("second")));
    }

    void whatArrivesInThePauseIsHandledOnceAfterIt()
    {
        Fixture f;
        f.openDialogue("first");
        f.say("at+cmgr=1\r");
        QCOMPARE(f.say("at+cmgs=\"+49\"\r"), nothing);
        QCOMPARE(f.say("al"), nothing);
        QCOMPARE(f.say("arm\x1A"), nothing);
        QCOMPARE(f.say("at+cmgr=2\r"), nothing);
        QCOMPARE(f.say("+CSQ: 7,0\r\n"), nothing);
        QVERIFY(f.owner.messages.isEmpty());
        f.owner.during = [&] { f.station.send("second"); }; // so that the pause follows a pause
        QCOMPARE(f.wait(250), (QByteArrayList{"first\r\n", "at+cmgs=\"+49\"\r\n", "OK\r\n", "alarm\r\n",
                                              "OK\r\n", "at+cmgr=2\r\n", ",\"+IP\"\r\n"}));
        QCOMPARE(f.owner.messages, QStringList{"A:+49 --> alarm"});
        QCOMPARE(f.station.csq(), "99,99");
        QCOMPARE(f.wait(250), QByteArrayList{"second\r\n"});
        QCOMPARE(f.station.csq(), "7,0");
    }

    void aTextWhoseDeliveryIsBrokenOffWaitsAgain()
    {
        Fixture f;
        f.openDialogue("text");
        f.say("at+cmgr=1\r");
        f.say("at+cmgs=\"+49\"\r");
        f.say("alarm\x1A");
        f.station.disconnect();
        QCOMPARE(f.owner.messages, QStringList{"A:+49 --> alarm"});
        QCOMPARE(f.station.state(), 0);
        QCOMPARE(f.station.msgText(), "text");
        f.station.connectStation();
        QCOMPARE(f.wait(1000), nothing);
        f.say("at+cmgr=1\r");
        QCOMPARE(f.wait(250), QByteArrayList{"text\r\n"});

        f.say("at+cmgr=1\r"); // nothing waits: the dialogue ends 15 s later, here within the pause
        f.station.send("late");
        f.wait(14'900);
        f.say("at+cmgr=1\r");
        QCOMPARE(f.wait(250), nothing);
        QCOMPARE(f.station.msgText(), "late");
    }

    void theDialogueEnds15SecondsAfterNothingWasRead()
    {
        Fixture f;
        f.openDialogue("x");
        f.say("at+cmgr=1\r");
        f.wait(250);
        QCOMPARE(f.say("at+cmgr=1\r"), (QByteArrayList{"at+cmgr=1\r\n", "OK\r\n"}));
        f.wait(10'000);
        f.say("at+cmgr=1\r"); // does not begin the 15 s anew
        f.wait(4'990);
        QVERIFY(f.station.dialogueOpen());
        f.wait(10);
        QVERIFY(!f.station.dialogueOpen());

        f.station.setExclusiveMode(true);
        f.say("at+cpin?\r");
        f.say("at+cmgr=1\r");
        f.wait(60'000);
        QVERIFY(f.station.dialogueOpen());
    }

    void textsOfTheModuleAreReportedWithTheirNumbers()
    {
        Fixture f; // no dialogue: nothing is answered
        f.say("at+cmgs=\"+4917\"\r");
        QCOMPARE(f.say("--> A,1\x1A"), nothing);
        f.say("at+cmgs=oops\r"); // no number: the last one stays
        f.say("--> A,2\x1A");
        QCOMPARE(f.owner.messages, (QStringList{"A:+4917 --> --> A,1", "A:+4917 --> --> A,2"}));
        f.owner.messages.clear();

        f.openDialogue("x");
        f.say("at+cmgr=1\r");
        f.wait(250);
        f.say("at+cmgr=2\r");
        f.say("cmgr: 1,\"+4917\",1\r"); // the sender's line goes in front of the next, once
        f.say("E,1\r");
        f.say("E,2\r");
        QCOMPARE(f.owner.messages, QStringList{"A:cmgr: 1,\"+4917\",1 <-- E,1\r"});
    }

    void aQuestionInTheOwnerKeepsTheOrder()
    {
        Fixture f;
        f.say("at+cmgs=\"1\"\r");
        f.owner.during = [&] {
            f.owner.during = nullptr;
            f.station.DataArrival("at+cmgs=\"2\"\r");
            f.station.DataArrival("b\x1A");
        };
        f.say("a\x1A");
        QCOMPARE(f.owner.messages, (QStringList{"A:1 --> a", "A:2 --> b"}));
    }

    void reportsOfTheModemAreOnlyLookedAt()
    {
        Fixture f;
        f.openDialogue("x");
        QStringList lines;
        f.station.traced = [&](const QString &line) { lines += line; };
        for (const char *report : {"OK\r\n", "ERROR\r\n", "+CMS ERROR: 321\r\n", "+CMS ERROR: 500\r\n"}) {
            QCOMPARE(f.say(report), nothing);
        }
        QCOMPARE(lines, (QStringList{"gsm <---- OK\r\n", "gsm <---- ERROR", "gsm <---- +CMS NO SMS",
                                     "gsm <---- +CMS ERROR: 500"}));
        QCOMPARE(f.say("OK\r"), (QByteArrayList{"OK\r\n", "OK\r\n"})); // a line of the module itself
    }

    void pukAndSignalQualityAreKept()
    {
        Fixture f;
        f.say("+CPIN: SIM PUK\r\n");
        QVERIFY(f.station.pukNeeded());
        QCOMPARE(f.owner.puks, 1);
        f.say("+CPIN: READY\r\n");
        QVERIFY(!f.station.pukNeeded());
        f.say("+CPIN: SIM PUK\r\n");
        f.say("+CPIN: SIM PIN\r\n");
        QVERIFY(!f.station.pukNeeded());

        f.say("+CSQ: 18,0\r\n");
        QCOMPARE(f.station.csq(), "18,0");
        f.station.setExclusiveMode(false);
        QCOMPARE(f.station.csq(), "18,0");
        f.station.setExclusiveMode(true);
        f.say("+CSQ: 18,0\r\n");
        QCOMPARE(f.station.csq(), "99,99");
    }

    void sendingSettlesAfter50MillisecondsOrWithALine()
    {
        Fixture f;
        f.station.setSendSettling(true);
        f.station.socket_SendComplete();
        f.wait(40);
        f.say("+CSQ: 1,0\r\n");
        QVERIFY(f.station.sendSettling());
        f.wait(10);
        QVERIFY(!f.station.sendSettling());
        f.station.setSendSettling(true);
        f.say("at\r");
        QVERIFY(!f.station.sendSettling());
    }

    void aLineWithoutEndIsDroppedAndTold()
    {
        Fixture f;
        for (int i = 0; i < 70; ++i) {
            f.station.DataArrival(QByteArray(1000, 'x'));
        }
        QCOMPARE(f.owner.troubles.size(), 1);
        f.openDialogue("x");
    }
};

QTEST_GUILESS_MAIN(StationTest)
#include "station_test.moc"
