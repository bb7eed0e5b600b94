#include "platform/text_rules.h"
#include "simulator/held_form.h"
#include "simulator/virtual_module.h"
#include "support/manual_timers.h"

#include <QTest>

#include <set>

using namespace ktr;
using namespace std::chrono_literals;

namespace {

QString holidays(const QString &first)
{
    return "F," + first + QStringLiteral(",000101").repeated(20 - first.count(u',') - 1);
}

/// Plays the module's modem: echoes every line and says OK, catches the module and hands it commands.
class Modem
{
public:
    explicit Modem(const ModuleFaults &faults = {})
        : module(timers, [this](const QByteArray &bytes) { take(bytes); }, {{}, faults, {}})
    {}

    /// Switches the module on and hands it these commands.
    void configure(const QStringList &texts)
    {
        for (const QString &text : texts) {
            commands += toWindows1252(text);
        }
        module.start();
        for (int i = 0; i < 100 && !commands.isEmpty(); ++i) {
            timers.advance(200ms);
        }
    }
    /// The module hears every byte by itself.
    void say(const QByteArray &bytes)
    {
        for (const char byte : bytes) {
            module.receive(QByteArray(1, byte));
        }
    }

    test::ManualTimers timers;
    QByteArrayList commands;
    bool answers = true;
    QByteArrayList writes;
    std::vector<Milliseconds> times; ///< of the writes
    QByteArrayList lines;            ///< with their ends
    VirtualModule module;

private:
    void take(const QByteArray &bytes)
    {
        writes += bytes;
        times.push_back(timers.now());
        for (const char byte : bytes) {
            m_line += byte;
            if (byte == '\r' || byte == '\x1A') {
                const QByteArray line = std::exchange(m_line, {});
                lines += line;
                answer(line);
            }
        }
    }
    void answer(const QByteArray &line)
    {
        QByteArray reply = line.chopped(1) + (line.contains("at+cpin?") ? "\r\nconfig\r\n" : "\r\n");
        if (line.contains("at+cmgr=") && !commands.isEmpty()) {
            reply += ",\"+IP\"\r\n" + commands.takeFirst() + "\r\n";
        }
        say(answers ? reply + "OK\r\n" : QByteArray());
    }

    QByteArray m_line;
};

} // namespace

class VirtualModuleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aCommandIsTakenWholeOrRefusedWhole_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("answer"); // or what a refusal says was expected
        const auto row = [](const QString &command, const char *answer) {
            QTest::addRow("%.60s", qUtf8Printable(command)) << command << QString(answer);
        };
        row("V,§", "V,2.1.05,,KTR");
        row("v,1.0 a,b", "OK: V");
        row("N,0123,Pumpe,+491,,,,,+496", "OK: N");
        row("G,16,1,2,30,18,2.5,0.1,7,3,63,hoch, bitte", "OK: G,16");
        row("Z,20,69,15,1,0001010000,20,60", "OK: Z,20");
        row(holidays("091224,240229"), "OK: F");
        row("e,4294967295,,0.96.169.1..255", "OK: E");

        row("", "a command's letter");
        row("X,1", "a command's letter");
        row("C5", "\",\" after the letter");
        row("G,1,1,0,,1,2,5,0,1,255", "at least 11 fields");
        row("G,01,1,0,,1,2,5,0,1,255,", "limit value from 1 to 20");
        row("G,17,1,0,30,65536,255,", "reference");
        row("D,11,1,1", "channel 1 to 4, 9, 10 or 13 to 16");
        row("S,11,2", "output value");
        row("Z,1,11,15,1,0911151405,0", "7 fields");
        row("Z,1,15,13,1,0911151405,0", "target");
        row(holidays("090229"), "a date");
        row("E,4294967296,0,", "address");
        row("E,1,2,0.96.168.1.2.3", "the maker's MAC bytes");
        row("T,09,11,15,14,05,37,1", "day of the week from 7 to 7"); // a Sunday
        row("§,3,6", "calibration code from 0 to 0");
    }
    void aCommandIsTakenWholeOrRefusedWhole()
    {
        QFETCH(const QString, command);
        QFETCH(const QString, answer);
        ModuleMemory memory;
        const Understood understood = CommandInterpreter(memory).apply(command);
        const QString refusal = "fail: " + command.section(u',', 0, 1) + ": expected " + answer;
        QVERIFY2(understood.answerText == answer || understood.answerText.startsWith(refusal),
                 qPrintable(understood.answerText));
        QCOMPARE(understood.accepted, understood.answerText == answer);
        QCOMPARE(memory.refused, understood.accepted ? 0 : 1);
        QCOMPARE(memory.configuration == Configuration(), !understood.accepted || command == "V,§");
        QVERIFY(!memory.clock.isValid() && !memory.archiveBlocked);
        QCOMPARE(understood.wantsAnswer, command.isEmpty() || !command.front().isLower());
        QCOMPARE(understood.isClosing(), command.startsWith(u'v'));
    }

    void serviceCommandsActOnTheModuleItself()
    {
        ModuleMemory memory;
        memory.notifications = QStringList{"Pegel hoch"};
        CommandInterpreter interpreter(memory);
        QCOMPARE(interpreter.apply("T,09,11,15,14,05,37,7").answerText, "OK: T");
        QCOMPARE(memory.clock, QDateTime(QDate(2009, 11, 15), QTime(14, 5, 37), Qt::UTC));
        QCOMPARE(interpreter.apply("H,0,0").answerText, "OK: H,0");
        QVERIFY(memory.archiveBlocked);
        QVERIFY(!interpreter.apply("h,0,1").wantsAnswer);
        QVERIFY(!memory.archiveBlocked);
        QCOMPARE(interpreter.apply("K").answerText, "OK: K");
        QVERIFY(memory.notifications.isEmpty());
        QCOMPARE(interpreter.apply("§,3,0").answerText, "OK: §,3,0");
        QCOMPARE(memory.calibrated, (std::array{false, false, false, true, false, false, false, false}));

        QCOMPARE(interpreter.apply("G,1" + QString(300, u'9')).answerText.size(), 160);
        interpreter.apply("v," + QString(200, u'x'));
        const QString version = interpreter.apply("V,§").answerText;
        QVERIFY(version.size() == 160 && version.endsWith("x,KTR"));
    }

    void theHeldFormShowsWhatNoCommandCarries()
    {
        Configuration meant;
        meant.limitValues[16] = {0, "Alarm", "", "", "", 1, 63, 2.5, 4, "60"};
        meant.ethernet = {"300.0.0.0", "255.255.255", "a", "zz", "0f"};
        const Configuration held = asHeld(meant, QLocale::German);
        QCOMPARE(held.limitValues[16].alarm, "63,Alarm"); // the decimal comma adds a field
        QVERIFY((held.ethernet == EthernetSettings{"", "", "0A", "", "0F"}));
    }

    void itAsksForItsModemUntilItIsCaught()
    {
        Modem modem;
        modem.answers = false;
        modem.module.start();
        modem.timers.advance(2s);
        QCOMPARE(modem.writes, QByteArrayList(3, "at+cpin?\r"));
        QCOMPARE(modem.times, (std::vector<Milliseconds>{0ms, 1000ms, 2000ms}));
        modem.answers = true;
        modem.say("at+cpin?\r\nconfig\r\n"); // not every line says OK behind it
        modem.timers.advance(600ms);
        QCOMPARE(modem.lines.mid(3), QByteArrayList(3, "at+cmgr=1\r"));
        QCOMPARE(modem.times.back(), 2600ms);
    }

    void aConfigurationEndsWithTheClosingCommand()
    {
        Modem modem;
        modem.configure({"V,§", "N,,Pümpe,,,,,,", "C", "v,stamp"});
        QVERIFY(modem.lines.contains("V,2.1.05,,KTR\x1A"));
        QVERIFY(modem.lines.contains("OK: N\x1A"));
        QVERIFY(modem.lines.contains("fail: C: expected 1 fields, found \"0\"\x1A"));
        QCOMPARE(modem.timers.now(), 0ms); // it reads the next command at once
        QCOMPARE(modem.module.memory().configuration.gsm.stationId, "Pümpe");
        QCOMPARE(modem.module.counts().boots, 2);
    }

    void onlyAnOkBehindItsOwnEchoIsTheAnswerWhoseAbsenceRestartsIt()
    {
        Modem modem;
        modem.module.start();
        modem.answers = false;
        modem.timers.advance(200ms);
        modem.say("OK\r\nat+cpin?\r\nconfig\r\nOK\r\n");
        QCOMPARE(modem.module.counts().unexpectedLines, 4);
        modem.say("at+cmgr=1\r\n,\"+IP\"\r\nOK\r\n"); // here "OK" is a command's text
        QCOMPARE(modem.module.memory().refused, 0);
        modem.say("OK\r\n");
        QCOMPARE(modem.module.memory().refused, 1);

        modem.timers.advance(4999ms);
        QVERIFY(modem.module.isCaught());
        modem.timers.advance(1ms);
        QVERIFY(!modem.module.isCaught());
        modem.answers = true;
        modem.commands = {"C,5"};
        modem.timers.advance(1s);
        QVERIFY(modem.lines.contains("OK: C\x1A"));
    }

    void theArchiveIsSentAndAFirmwareImageCounted()
    {
        Modem modem;
        modem.configure({"t,09,11,15,00,05,37,7", "§,77", "§88"});
        QCOMPARE(modem.lines.join().count("\rH,"), 3);
        QVERIFY(modem.lines.contains(
            "H,1,0911142250,100,1.0,15,101,1.5,15,102,2.0,15,103,2.5,15,104,3.0,15,105,3.5\r"));
        modem.say(QByteArray(43'007, '\n'));
        QCOMPARE(modem.module.counts().boots, 1);
        modem.say("\n");
        QCOMPARE(modem.module.counts().boots, 2);
    }

    void faultsStrikeAndKeepTheContentOfTheLines()
    {
        const auto run = [](const ModuleFaults &faults) {
            auto modem = std::make_unique<Modem>(faults);
            modem->configure({"V,§", "§,77", "C,5", "v,stamp"});
            return modem;
        };
        const auto plain = run({});
        QCOMPARE(run({.mergesStatus = true})->writes.join("|"),
                 "+CSQ: 18,0\r\n" + plain->writes.join("|+CSQ: 18,0\r\n"));
        std::set<char> noise;
        for (quint32 seed = 1; seed < 30; ++seed) {
            const ModuleFaults garbage{.garbageInFront = true, .garbageLines = true, .seed = seed};
            const QByteArrayList lines = run(garbage)->lines;
            QCOMPARE(run(garbage)->lines, lines);
            QCOMPARE(lines.size(), 2 * plain->lines.size()); // no byte of it ends a line early
            QVERIFY(lines[1].size() > 9 && lines[1].endsWith("at+cpin?\r"));
            const QByteArray all = lines.join();
            noise.insert(all.begin(), all.end());
        }
        QCOMPARE(noise.size(), 256U);
    }

    void aDelayHoldsBackEveryLine()
    {
        Modem modem({.delayBeforeLine = 6s, .chunkSize = 5, .chunkPause = 1s});
        modem.module.start();
        modem.timers.advance(14s);
        QCOMPARE(modem.writes, (QByteArrayList{"at+cp", "in?\r", "at+cm", "gr=1\r"}));
        QCOMPARE(modem.times, (std::vector<Milliseconds>{6s, 7s, 13s, 14s}));
        QCOMPARE(modem.module.counts().boots, 1); // its own delay is no missing answer
    }

    void aModuleThatHangsUpSendsNoFurtherByte()
    {
        for (int byte = 0; byte < 40; ++byte) {
            Modem modem({.hangUpAtByte = byte});
            modem.configure({"C,5"});
            modem.say("config\r\nOK\r\n");
            modem.timers.advance(60s);
            QCOMPARE(modem.writes.join(),
                     QByteArray("at+cpin?\rat+cmgr=1\rat+cmgs=\"+IP\"\rOK: C\x1A").left(byte));
            QCOMPARE(modem.module.counts().reads, byte > 9 ? 1 : 0); // nor does it hear anything
        }
    }
};

QTEST_GUILESS_MAIN(VirtualModuleTest)
#include "virtual_module_test.moc"
