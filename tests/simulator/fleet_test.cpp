#include "config/channels.h"
#include "link/io_thread.h"
#include "opmode/station/station.h"
#include "opmode/station/station_messages.h"
#include "opmode/station/station_sockets.h"
#include "platform/text_rules.h"
#include "simulator/fleet.h"
#include "support/manual_timers.h"
#include "support/udp_peer.h"

#include <QDeadlineTimer>
#include <QSet>
#include <QTest>

using namespace ktr;

namespace {

const QDateTime noon(QDate(2009, 11, 15), QTime(12, 5));

struct RecordingOwner : StationOwner
{
    void station_message(const QString &kennung, const QString &text) override
    {
        messages[kennung] += interpretStationMessage(text);
        texts += text;
    }
    void stationChanged(const QString &, StationChange) override {}
    void stationTrouble(const QString &, const QString &text) override { texts += text; }

    QMap<QString, QList<StationMessage>> messages;
    QStringList texts;
};

struct Watched
{
    Watched(const QString &name, const QString &address, StationSockets &sockets, MLiteTimer &timers,
            RecordingOwner &owner)
        : line(sockets.createLine()), station(name, *line, timers, owner)
    {
        station.setHostAddress(address);
        station.connectStation();
    }

    std::unique_ptr<StationLine> line;
    cStation station;
};

} // namespace

class FleetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void modulesReportByThemselvesAndAnswerACommandOverTheNetwork()
    {
        if (!test::loopbackAddressesDiffer()) {
            QSKIP("all loopback addresses are the same here");
        }
        Fleet fleet(
            m_io, m_time, options(4), [this] { return m_time.now(); }, [] { return noon; });
        const Status opened = fleet.open();
        QVERIFY2(opened, qPrintable(opened.message()));
        RecordingOwner owner;
        StationSockets sockets(m_io);
        std::vector<std::unique_ptr<Watched>> all;
        for (int i = 0; i < 4; ++i) {
            const QString address = Fleet::address(i) + u':' + QString::number(fleet.port(i));
            all.push_back(std::make_unique<Watched>(QString::number(i), address, sockets, m_registry, owner));
        }
        QVERIFY(all[0]->station.send("A*"));
        all[1]->station.setExclusiveMode(true);
        QVERIFY(all[1]->station.send("A*"));
        QVERIFY(passUntil([&] { return fleet.commandsTaken() == 2; }));
        const auto answer = [&owner](const QString &name) {
            return std::ranges::count_if(owner.messages[name], [](const StationMessage &message) {
                const auto *values = std::get_if<InputValuesMessage>(&message);
                return values != nullptr && values->values.size() == channelCount &&
                       values->values.last().text.toDouble() > 0;
            });
        };
        // All values once at first, and once more for the command.
        QVERIFY(passUntil([&] { return answer("0") >= 2 && answer("1") >= 2; }));
        QVERIFY(std::holds_alternative<HistoryMessage>(owner.messages["0"].first()));
        QVERIFY(all[0]->station.msgText().isEmpty());
        QCOMPARE(all[0]->station.state(), cStation::alive);
        // The program took no dialogue of the third over: it is sent a copy.
        QVERIFY(passUntil([&] { return answer("2") >= 1; }));
        QVERIFY(all[2]->station.csq() != "99,99");
        QCOMPARE(all[3]->station.state(), 0); // the silent one
        QVERIFY(!owner.messages.contains("3"));
    }

    void aCountedTextIsRepeatedUntilItIsAnswered()
    {
        QByteArrayList said;
        QStringList told;
        FieldModule module(
            {.isCounted = true}, [&said](const QByteArray &line) { said += line; }, [] { return noon; },
            [&told](const QString &text, bool isAnswered) {
                told += (isAnswered ? "answered " : "sent ") + text;
            });
        const auto answer = [&] { module.receive(said.last().chopped(1) + "\r\nOK\r\n"); };
        module.receive("config\r\n");
        for (int i = 0; i < 2; ++i) {
            module.wake();
            QCOMPARE(said.last(), "at+cpin?\r");
            module.receive("OK\r\n"); // late, to what was said before
            module.receive("config\r\n");
            answer(); // that it looked for an SMS
            answer(); // the number that it sends to
            QCOMPARE(said.last(), "R,2,1\x1A");
            if (i == 0) {
                module.wake(); // the program fell silent
            }
        }
        module.receive("OK\r\n");
        QCOMPARE(told, (QStringList{"sent R,2,1", "sent R,2,1"}));
        answer();
        QCOMPARE(told.last(), "answered R,2,1");
    }

    void everyTextIsUnderstoodAndFitsAnSms()
    {
        FieldTexts texts(7);
        int alarms = 0;
        int umlauts = 0;
        QList<HistoryMessage> histories;
        QStringList all = texts.history(noon, FieldModule::hoursOfHistory);
        QDateTime now = noon;
        for (int i = 0; i < 1000; ++i, now = now.addSecs(20)) {
            all += texts.next(now);
        }
        all += {FieldTexts::counted(1), FieldTexts::counted(20)};
        for (const QString &text : all) {
            QVERIFY2(text.size() <= 160, qPrintable(text));
            QCOMPARE(fromWindows1252(toWindows1252(text)), text);
            const StationMessage message = interpretStationMessage(QLatin1String("+49170 --> ") + text);
            if (const auto *notification = std::get_if<NotificationMessage>(&message)) {
                alarms += notification->alarm ? 1 : 0;
                umlauts += text.contains(u'ü') ? 1 : 0;
            } else if (const auto *history = std::get_if<HistoryMessage>(&message)) {
                QVERIFY2(history->unusable.isEmpty(), qPrintable(text));
                histories += *history;
            } else {
                QVERIFY2(std::holds_alternative<InputValuesMessage>(message), qPrintable(text));
            }
        }
        QVERIFY(alarms > 10 && umlauts > 10);
        QVERIFY(histories.first().entries.first().text.startsWith("13.11.2009 12:00 : IP9 = "));

        const FieldValues values(7);
        QVERIFY(values.value(7, now).toLongLong() > values.value(7, noon).toLongLong());
        QCOMPARE(values.allValues(noon), FieldValues(7).allValues(noon));
    }

    void everyModuleHasANameAndAnAddressOfItsOwn()
    {
        QSet<QString> names;
        QSet<QString> addresses;
        for (int i = 0; i < FleetOptions::mostModules; ++i) {
            names += Fleet::name(i);
            const QString address = Fleet::address(i);
            addresses += address;
            QVERIFY(!address.endsWith(".0") && !address.endsWith(".255"));
        }
        QCOMPARE(names.size(), FleetOptions::mostModules);
        QCOMPARE(addresses.size(), FleetOptions::mostModules);
    }

private:
    /// Lets time pass for modules and stations, and the network carry what they say.
    bool passUntil(const std::function<bool()> &isTrue)
    {
        QDeadlineTimer end(60'000);
        while (!isTrue() && !end.hasExpired()) {
            m_time.advance(Milliseconds(20));
            m_io.run([] {});
            QTest::qWait(1);
        }
        return isTrue();
    }
    static FleetOptions options(int modules)
    {
        FleetOptions options;
        options.modules = modules;
        options.port = 0;
        options.silent = 1;
        return options;
    }

    IoThread m_io;
    test::ManualTimers m_time;
    QueuedCallbackTimers m_timers{m_time, [this] { return m_time.now(); }};
    MLiteTimer m_registry{m_timers};
};

QTEST_GUILESS_MAIN(FleetTest)
#include "fleet_test.moc"
