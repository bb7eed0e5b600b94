#include "config/fields.h"
#include "platform/text_rules.h"
#include "simulator/held_form.h"
#include "simulator/virtual_module.h"
#include "support/manual_timers.h"

#include <QRegularExpression>
#include <QTest>

#include <deque>
#include <set>

using namespace ktr;
using namespace std::chrono_literals;

namespace {

/// "field=value" for everything in which a memory differs from a new module's.
QStringList changes(const Configuration &held)
{
    static const QRegularExpression line(QStringLiteral("^(.*): expected \".*\", found \"(.*)\"$"));
    QStringList result;
    for (const QString &difference : differences(ModuleMemory().configuration, held, QLocale::c())) {
        const auto match = line.match(difference);
        result += match.captured(1) + u'=' + match.captured(2);
    }
    return result;
}

/// Plays the module's modem: echoes every line and says OK, catches the module and hands it commands.
class Modem
{
public:
    explicit Modem(ModuleOptions options = {})
        : module(
              timers, [this](const QByteArray &bytes) { take(bytes); }, std::move(options))
    {
        module.onCommand([this](const QString &, const Understood &understood) {
            accepted += understood.accepted ? 1 : 0;
        });
        module.onConfigured([this](const ModuleMemory &) { ++configured; });
        module.onHangUp([this] { ++hangUps; });
    }

    /// Hands the module these commands, from being switched on.
    void configure(const QStringList &texts)
    {
        for (const QString &text : texts) {
            commands.push_back(toWindows1252(text));
        }
        module.start();
        for (int i = 0; i < 100 && !commands.empty(); ++i) {
            timers.advance(200ms);
        }
    }

    void say(const QByteArray &bytes)
    {
        if (!inSingleBytes) {
            module.receive(bytes);
            return;
        }
        for (const char byte : bytes) {
            module.receive(QByteArray(1, byte));
        }
    }

    test::ManualTimers timers;
    std::deque<QByteArray> commands;
    bool catches = true;
    bool saysOkAfterConfig = true;
    bool answers = true;
    bool inSingleBytes = false;
    QByteArrayList writes;
    QByteArrayList lines;            ///< with their ends
    QStringList messages;            ///< the module's SMS texts
    std::vector<Milliseconds> times; ///< of the writes
    int accepted = 0;
    int configured = 0;
    int hangUps = 0;
    VirtualModule module;

private:
    void take(const QByteArray &bytes)
    {
        writes += bytes;
        times.push_back(timers.now());
        m_heard += bytes;
        for (;;) {
            const auto end = std::ranges::find_if(m_heard, [](char c) { return c == '\r' || c == '\x1A'; });
            if (end == m_heard.end()) {
                return;
            }
            const QByteArray line = m_heard.left(end - m_heard.begin() + 1);
            m_heard.remove(0, line.size());
            lines += line;
            if (answers) {
                answer(line.chopped(1), line.back());
            }
        }
    }

    void answer(const QByteArray &line, char end)
    {
        QByteArray reply = line + "\r\n";
        const bool caught = line.contains("at+cpin?") && catches;
        if (caught) {
            reply += "config\r\n";
        }
        if (line.contains("at+cmgr=") && !commands.empty()) {
            reply += ",\"+IP\"\r\n" + commands.front() + "\r\n";
            commands.pop_front();
        }
        if (end == '\x1A') {
            messages += fromWindows1252(line);
        }
        say(!caught || saysOkAfterConfig ? reply + "OK\r\n" : reply);
    }

    QByteArray m_heard;
};

QString holidays(const QString &first)
{
    return QStringLiteral("F,") + first + QStringLiteral(",000101").repeated(20 - first.count(u',') - 1);
}

} // namespace

class VirtualModuleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anAcceptedCommandChangesWhatItNames_data();
    void anAcceptedCommandChangesWhatItNames();
    void aMalformedCommandIsRefusedAndChangesNothing_data();
    void aMalformedCommandIsRefusedAndChangesNothing();
    void serviceCommandsActOnTheModuleItself();
    void theHeldFormIsWhatTheCommandsLeave();

    void itAsksForItsModemUntilItIsCaught();
    void aLineWithoutOkAfterConfigCatchesItToo();
    void aConfigurationEndsWithTheClosingCommand();
    void bytesMayArriveOneByOne();
    void onlyAnOkBehindItsOwnEchoCounts();
    void anAnswerThatNeverComesRestartsIt();
    void theArchiveComesLineByLine();
    void aFirmwareImageIsCountedAndRestartsIt();
    void aLineWithoutEndIsDropped();

    void faultsKeepTheContentOfTheLines();
    void aDelayHoldsBackEveryLine();
    void aSilentModuleSendsNoFurtherLine();
    void aModuleThatHangsUpSendsNoFurtherByte();
};

void VirtualModuleTest::anAcceptedCommandChangesWhatItNames_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QStringList>("changed");
    QTest::addColumn<QString>("answer"); // empty: none is wanted

    const auto row = [](const char *command, const QStringList &changed, const char *answer = "") {
        QTest::addRow("%.40s", command) << QString::fromUtf8(command) << changed << QString::fromUtf8(answer);
    };
    row("V,§", {}, "V,2.1.05,,KTR");
    row("v,1.0 a,b", {"Version Version=1.0 a,b"});
    row("v,", {});
    row("N,0123,Pumpe,+491,+492,+493,+494,+495,+496",
        {"PIN=0123", "Stationskennung=Pumpe", "GSM-Nummer0=+491", "GSM-Nummer1=+492", "GSM-Nummer2=+493",
         "GSM-Nummer3=+494", "GSM-Nummer4=+495", "GSM-Nummer5=+496"},
        "OK: N");
    row("n,,,,,,,,", {});
    row("G,1,1,2,30,9,2.5,0.1,7,3,63,Pegel hoch, bitte kommen",
        {"Grenzwert0 Alarm=Pegel hoch, bitte kommen", "Grenzwert0 Delay=7", "Grenzwert0 Grenzwert=2.5",
         "Grenzwert0 Hysterese=0.1", "Grenzwert0 IP=9", "Grenzwert0 Vergleich=3", "Grenzwert0 MSN=63",
         "Grenzwert0 Wiederholung=2", "Grenzwert0 Wiederholungsintervall=30"},
        "OK: G,1");
    row("g,16,1,0,,18,,,,1,255,", {"Grenzwert15 IP=18"});
    row("G,20,1,15,1440,65535,1,a,b",
        {"Grenzwert19 Alarm=a,b", "Grenzwert19 Bezug=65535", "Grenzwert19 MSN=1",
         "Grenzwert19 Wiederholung=15", "Grenzwert19 Wiederholungsintervall=1440"},
        "OK: G,20");
    row("D,2,1,0,12.5,10",
        {"Digitaleingang1 Zähler=1", "Digitaleingang1 Teiler=10", "Digitaleingang1 Wert=12.5"}, "OK: D,2");
    row("d,3,1,1,", {"Digitaleingang2 Invers=1", "Digitaleingang2 Betriebsstundenzähler=1"});
    row("d,9,-1,0.5", {"Skalierung0 Offset=-1", "Skalierung0 Faktor=0.5"});
    row("d,10,1,2", {"Skalierung1 Offset=1", "Skalierung1 Faktor=2"});
    row("d,13,3,4", {"Skalierung2 Offset=3", "Skalierung2 Faktor=4"});
    row("d,14,5,6", {"Skalierung3 Offset=5", "Skalierung3 Faktor=6"});
    row("D,16,1,100", {"BStZDigOut1 Invers=1", "BStZDigOut1 Wert=100"}, "OK: D,16");
    row("S,12,1", {"sendValue Wert=1", "Ausgangswert1 Digital=1"}, "OK: S,12");
    row("s,11,0", {"sendValue Wert=1"});
    row("s,13,7.5", {"sendValue Wert=1", "Ausgangswert0 Analog=7.5"});
    row("H,18,15,0.5", {"Archivierung17 Interval=15", "Archivierung17 Delta=0.5"}, "OK: H,18");
    row("Z,1,64,13,1,0911151405,0",
        {"Schaltpunkt0 IP=5", "Schaltpunkt0 Periode=0", "Schaltpunkt0 Start=0911151405",
         "Schaltpunkt0 Typ=13", "Schaltpunkt0 Wert=1"},
        "OK: Z,1");
    row("z,20,11,15,1,0001010000,20,60",
        {"Schaltpunkt19 IP=1", "Schaltpunkt19 Periode=60", "Schaltpunkt19 Start=0001010000",
         "Schaltpunkt19 Typ=15", "Schaltpunkt19 Wert=1", "Schaltpunkt19 GW-Bezug=19"});
    row(qPrintable(holidays("091224,000101,240229")),
        {"Feiertag0=091224\t(24.12.2009)", "Feiertag1=240229\t(29.02.2024)"}, "OK: F");
    row("C,-5", {"Alivecycle=-5"}, "OK: C");
    row("E,3232235777,4294967040,0.96.169.1.160.255",
        {"Ethernet IP=192.168.001.001", "Ethernet Subnet=255.255.255.000", "Ethernet MAC3=01",
         "Ethernet MAC4=A0", "Ethernet MAC5=FF"},
        "OK: E");
    row("e,,0,0.96.169..5.", {"Ethernet Subnet=000.000.000.000", "Ethernet MAC4=05"});
    row("e,,,", {});
}

void VirtualModuleTest::anAcceptedCommandChangesWhatItNames()
{
    QFETCH(const QString, command);
    QFETCH(const QString, answer);
    ModuleMemory memory;
    const Understood understood = CommandInterpreter(memory).apply(command);
    QVERIFY2(understood.accepted, qPrintable(understood.answerText));
    QTEST(changes(memory.configuration), "changed");
    QCOMPARE(understood.wantsAnswer, !answer.isEmpty());
    if (understood.wantsAnswer) {
        QCOMPARE(understood.answerText, answer);
    }
    QCOMPARE(understood.isClosing(), command.startsWith(u'v'));
}

void VirtualModuleTest::aMalformedCommandIsRefusedAndChangesNothing_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *command, const char *expected) {
        QTest::addRow("%.60s", command) << QString::fromUtf8(command) << QString::fromUtf8(expected);
    };
    row("", "a command's letter");
    row("X,1", "a command's letter");
    row("C5", "\",\" after the letter");
    row("V,1", "\"§\"");
    row("N,0123,A,B,+491,+492,+493,+494,+495,+496", "8 fields");
    row("G,1,1,0,,1,2,5,0,1,255", "at least 11 fields");
    row("G,0,1,0,,1,2,5,0,1,255,", "limit value from 1 to 20");
    row("G,1,1,0,,19,2,5,0,1,255,", "channel from 0 to 18");
    row("G,1,1,16,,1,2,5,0,1,255,", "repetitions");
    row("G,1,1,0,,1,2,5,0,4,255,", "comparison");
    row("G,1,1,0,,1,2,5,0,1,256,", "recipients");
    row("G,01,1,0,,1,2,5,0,1,255,", "limit value");
    row("G,17,1,0,30,65536,255,", "reference");
    row("D,1,1,0,5", "5 fields");
    row("D,3,1,0,5,1", "4 fields");
    row("D,4,2,0,5", "counter flag");
    row("D,11,1,1", "channel 1 to 4, 9, 10 or 13 to 16");
    row("S,15,1", "output from 11 to 14");
    row("S,11,2", "output value");
    row("H,19,1,1", "channel from 1 to 18");
    row("H,1,1,5,0", "3 fields");
    row("H,0,2", "archive flag");
    row("Z,1,11,13,1,0911151405,1,0", "6 fields");
    row("Z,1,11,15,1,0911151405,0", "7 fields");
    row("Z,1,11,15,1,0911151405,21,0", "limit value from 1 to 20");
    row("Z,1,15,13,1,0911151405,0", "target");
    row("Z,21,11,13,1,0911151405,0", "switch point");
    row("Z,1,11,17,1,0911151405,0", "type");
    row(qPrintable(holidays("090229")), "a date");
    row("F,091224", "20 fields");
    row("E,4294967296,0,", "address");
    row("E,1,2,0.96.169.1.2", "a MAC address of six numbers");
    row("E,1,2,0.96.168.1.2.3", "the maker's MAC bytes");
    row("E,1,2,0.96.169.1.2.256", "MAC byte");
    row("T,09,11,15,14,05,37,1", "day of the week from 7 to 7"); // a Sunday
    row("T,9,11,15,14,05,37,7", "year of two digits");
    row("T,09,02,29,14,05,37,7", "a date and a time");
    row("K,1", "0 fields");
    row("§,8,0", "reference point");
    row("§,3,6", "calibration code from 0 to 0");
}

void VirtualModuleTest::aMalformedCommandIsRefusedAndChangesNothing()
{
    QFETCH(const QString, command);
    QFETCH(const QString, expected);
    ModuleMemory memory;
    const Understood understood = CommandInterpreter(memory).apply(command);
    QVERIFY(!understood.accepted);
    QCOMPARE(memory.refused, 1);
    QCOMPARE(changes(memory.configuration), QStringList());
    QVERIFY(!memory.clock.isValid() && !memory.archiveBlocked);
    QVERIFY2(understood.answerText.startsWith(QLatin1String("fail: ")) &&
                 understood.answerText.contains(QStringLiteral("expected ") + expected),
             qPrintable(understood.answerText));
    QVERIFY(CommandInterpreter(memory).apply(QStringLiteral("G,1") + QString(300, u'9')).answerText.size() <=
            160);
}

void VirtualModuleTest::serviceCommandsActOnTheModuleItself()
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
    QCOMPARE(std::ranges::count(memory.calibrated, true), 1);
    QVERIFY(memory.calibrated[3]);
    QCOMPARE(memory.accepted, 5);
    QCOMPARE(changes(memory.configuration), QStringList());

    interpreter.apply(QStringLiteral("v,") + QString(200, u'x'));
    const QString version = interpreter.apply("V,§").answerText;
    QCOMPARE(version.size(), 160);
    QVERIFY(version.endsWith(QLatin1String("x,KTR")));
}

void VirtualModuleTest::theHeldFormIsWhatTheCommandsLeave()
{
    struct Case
    {
        const char *record; ///< only its fields are compared
        void (*mean)(Configuration &);
        const char *command;
    };
    const Case cases[] = {
        {"Schaltpunkt0", [](Configuration &c) { c.switchPoints[0] = {2, 14, "", "525600", "0,5", 7}; },
         "Z,1,12,14,1,0001010000,525600"},
        {"Schaltpunkt0", [](Configuration &c) { c.switchPoints[0] = {10, 16, "1", "525599.9", "0,5", 7}; },
         "Z,1,69,16,0.5,1,8,525599.9"},
        {"Digitaleingang0",
         [](Configuration &c) {
             c.digitalInputs[0] = {true, "2,5", true, true, "9,5"};
         },
         "D,1,1,1,,2.5"},
        {"Digitaleingang2",
         [](Configuration &c) {
             c.sendValues[0].enabled = true;
             c.digitalInputs[2] = {true, "7", true, true, "9,5"};
         },
         "D,3,1,1,9.5"},
        {"BStZDigOut0",
         [](Configuration &c) {
             c.outputHours[0] = {true, "9,5"};
         },
         "D,15,1,9.5"},
        {"Ausgangswert",
         [](Configuration &c) {
             c.outputValues.fill({true, "5"});
         },
         "C,0"},
        {"Skalierung3",
         [](Configuration &c) {
             c.scaling[3] = {"1,5", "2", "Volt"};
         },
         "D,14,1.5,2"},
        {"GSM-N",
         [](Configuration &c) {
             c.administrators[1] = {"Eva", "+4917"};
         },
         "N,,,,+4917,,,,"},
        {"Grenzwert0",
         [](Configuration &c) { c.limitValues[0] = {3, "Ω, €", "1,5", "0,5", "", 2, 3, 9, 4, "1,5"}; },
         "G,1,1,4,1.5,3,1.5,0.5,,2,3,?, €"},
        {"Grenzwert16",
         [](Configuration &c) { c.limitValues[16] = {3, "Alarm", "1", "1", "1", 2, 63, 9, 4, "60"}; },
         "G,17,1,4,60,9,63,Alarm"},
        {"Grenzwert16", // the decimal comma adds a field
         [](Configuration &c) { c.limitValues[16] = {0, "Alarm", "", "", "", 1, 63, 2.5, 4, "60"}; },
         "G,17,1,4,60,2,5,63,Alarm"},
        {"Feiertag",
         [](Configuration &c) {
             c.holidays.append("000101\t(01.01.2000)");
             c.holidays.append("240229");
         },
         "F,000101,240229,000101,000101,000101,000101,000101,000101,000101,000101,000101,000101,000101,"
         "000101,000101,000101,000101,000101,000101,000101"},
        {"Ethernet",
         [](Configuration &c) {
             c.ethernet = {"192.168.1.7", "255.255.255", "a", "zz", "0f"};
         },
         "E,3232235783,,0.96.169.10..15"},
        {"Autor", [](Configuration &c) { c.info.author = "Eva"; }, "C,0"},
    };
    const QLocale german(QLocale::German);
    for (const Case &one : cases) {
        Configuration meant;
        one.mean(meant);
        ModuleMemory memory;
        QVERIFY(CommandInterpreter(memory).apply(QString::fromUtf8(one.command)).accepted);
        const QStringList all = differences(asHeld(meant, german), memory.configuration, german);
        QCOMPARE(all.filter(QRegularExpression(u'^' + QString::fromLatin1(one.record))), QStringList());
    }

    // What no module would take stays visible.
    Configuration meant;
    meant.ethernet.ip = "300.0.0.0";
    meant.holidays.append("holiday");
    QCOMPARE(asHeld(meant, german).ethernet.ip, "300.0.0.0");
    QCOMPARE(asHeld(meant, german).holidays.lines(), QStringList{"holiday"});
}

void VirtualModuleTest::itAsksForItsModemUntilItIsCaught()
{
    Modem modem;
    modem.catches = false;
    modem.module.start();
    modem.timers.advance(2s);
    QCOMPARE(modem.writes, QByteArrayList(3, "at+cpin?\r"));
    QCOMPARE(modem.times, (std::vector<Milliseconds>{0ms, 1000ms, 2000ms}));
    QVERIFY(!modem.module.isCaught());

    modem.catches = true;
    modem.timers.advance(1s);
    QVERIFY(modem.module.isCaught());
    modem.timers.advance(400ms);
    QCOMPARE(modem.lines.mid(3), (QByteArrayList{"at+cpin?\r", "at+cmgr=1\r", "at+cmgr=1\r", "at+cmgr=1\r"}));
    QCOMPARE(modem.times.back(), 3400ms);
    QCOMPARE(modem.module.counts().unexpectedLines, 0);
}

void VirtualModuleTest::aLineWithoutOkAfterConfigCatchesItToo()
{
    Modem modem;
    modem.saysOkAfterConfig = false;
    modem.module.start();
    QCOMPARE(modem.lines.last(), "at+cpin?\r");
    modem.timers.advance(200ms);
    QCOMPARE(modem.lines.last(), "at+cmgr=1\r");
}

void VirtualModuleTest::aConfigurationEndsWithTheClosingCommand()
{
    Modem modem;
    modem.configure({"V,§", "C,5", "c,6", "C", "v,stamp"});
    QCOMPARE(modem.messages,
             (QStringList{"V,2.1.05,,KTR", "OK: C", "fail: C: expected 1 fields, found \"0\""}));
    QCOMPARE(modem.lines.mid(2, 4),
             (QByteArrayList{"at+cmgs=\"+IP\"\r", "V,2.1.05,,KTR\x1A", "at+cmgr=1\r", "at+cmgs=\"+IP\"\r"}));
    QCOMPARE(modem.timers.now(), 0ms); // it reads the next command at once
    QCOMPARE(modem.accepted, 4);
    QCOMPARE(modem.configured, 1);
    QCOMPARE(changes(modem.module.memory().configuration),
             (QStringList{"Alivecycle=6", "Version Version=stamp"}));
    QCOMPARE(modem.module.counts().boots, 2);
}

void VirtualModuleTest::bytesMayArriveOneByOne()
{
    Modem modem;
    modem.inSingleBytes = true;
    modem.configure({"N,1,Pümpe,,,,,,", "§,0,6", "v,stamp"});
    QCOMPARE(modem.messages, (QStringList{"OK: N", "OK: §,0,6"}));
    QCOMPARE(modem.module.memory().configuration.gsm.stationId, "Pümpe");
    QCOMPARE(modem.configured, 1);
}

void VirtualModuleTest::onlyAnOkBehindItsOwnEchoCounts()
{
    Modem modem;
    modem.module.start();
    modem.answers = false;
    modem.timers.advance(200ms);
    modem.say("OK\r\nat+cpin?\r\nconfig\r\nOK\r\n");
    QCOMPARE(modem.module.counts().unexpectedLines, 4);
    modem.say("at+cmgr=1\r\n,\"+IP\"\r\nOK\r\n"); // here "OK" is a command's text
    QCOMPARE(modem.accepted + modem.module.memory().refused, 0);
    modem.say("OK\r\n");
    QCOMPARE(modem.module.memory().refused, 1);
}

void VirtualModuleTest::anAnswerThatNeverComesRestartsIt()
{
    Modem modem;
    modem.module.start();
    modem.answers = false;
    modem.timers.advance(200ms + 4999ms);
    QVERIFY(modem.module.isCaught());
    modem.timers.advance(1ms);
    QVERIFY(!modem.module.isCaught());
    QCOMPARE(modem.lines.last(), "at+cpin?\r");

    modem.answers = true;
    modem.configure({"C,5"});
    QCOMPARE(modem.messages, QStringList{"OK: C"});
}

void VirtualModuleTest::theArchiveComesLineByLine()
{
    Modem modem;
    modem.configure({"t,09,11,15,00,05,37,7", "§,77", "C,5"});
    QByteArrayList history;
    std::ranges::copy_if(modem.lines, std::back_inserter(history),
                         [](const QByteArray &line) { return line.startsWith("H,"); });
    QCOMPARE(history.size(), 3);
    QCOMPARE(history.first(),
             "H,1,0911142250,100,1.0,15,101,1.5,15,102,2.0,15,103,2.5,15,104,3.0,15,105,3.5\r");
    QVERIFY(history.last().startsWith("H,17,"));
    QCOMPARE(modem.messages, QStringList{"OK: C"});
}

void VirtualModuleTest::aFirmwareImageIsCountedAndRestartsIt()
{
    Modem modem;
    modem.configure({"§88"});
    QVERIFY(modem.module.memory().firmwareRequested);
    modem.timers.advance(4s);
    modem.say("at+cmgr=1\r\nOK\r\n" + QByteArray(43'007 - 15, '\n'));
    QCOMPARE(modem.module.counts().firmwareBytes, 43'007);
    QCOMPARE(modem.module.counts().boots, 1);
    modem.say("\n");
    QCOMPARE(modem.module.counts().boots, 2);

    modem.configure({"§88"});
    modem.timers.advance(5s);
    QCOMPARE(modem.module.counts().boots, 4); // no image came
}

void VirtualModuleTest::aLineWithoutEndIsDropped()
{
    Modem modem;
    modem.catches = false;
    modem.module.start();
    for (int i = 0; i < 65; ++i) {
        modem.say(QByteArray(1024, 'x'));
    }
    QCOMPARE(modem.module.counts().overlongLines, 1);
    modem.say("\r\nconfig\r\n");
    QVERIFY(modem.module.isCaught());
}

void VirtualModuleTest::faultsKeepTheContentOfTheLines()
{
    const auto run = [](const ModuleFaults &faults) {
        auto modem = std::make_unique<Modem>(ModuleOptions{.times = {}, .faults = faults, .memory = {}});
        modem->configure({"V,§", "§,77", "C,5", "v,stamp"});
        return modem;
    };
    const auto plain = run({});

    const auto chunked = run({.chunkSize = 3});
    QCOMPARE(chunked->writes.join(), plain->writes.join());
    QVERIFY(std::ranges::all_of(chunked->writes, [](const QByteArray &w) { return w.size() <= 3; }));
    QCOMPARE(chunked->writes.first(3), (QByteArrayList{"at+", "cpi", "n?\r"}));

    const auto merged = run({.mergesStatus = true});
    QVERIFY(std::ranges::all_of(
        merged->writes, [](const QByteArray &w) { return w.startsWith("+CSQ: 18,0\r\n") && w.size() > 12; }));
    QCOMPARE(merged->writes.join().replace("+CSQ: 18,0\r\n", ""), plain->writes.join());
    QCOMPARE(merged->configured, 1);

    const ModuleFaults garbage{.garbageInFront = true, .garbageLines = true, .seed = 7};
    const auto noisy = run(garbage);
    QCOMPARE(noisy->configured, 1);
    QCOMPARE(noisy->lines.size(), 2 * plain->lines.size());
    for (qsizetype i = 0; i < plain->lines.size(); ++i) {
        const QByteArray &line = noisy->lines[2 * i + 1];
        QVERIFY(line.endsWith(plain->lines[i]) && line.size() > plain->lines[i].size());
    }
    QCOMPARE(run(garbage)->writes, noisy->writes);
    QVERIFY(run({.garbageInFront = true, .garbageLines = true, .seed = 8})->writes != noisy->writes);

    QByteArray noise;
    for (quint32 seed = 1; seed < 30; ++seed) {
        const auto modem = run({.garbageLines = true, .seed = seed});
        QCOMPARE(modem->lines.size(), 2 * plain->lines.size()); // no byte of them ends a line early
        noise += modem->lines.join();
    }
    QCOMPARE(std::set<char>(noise.begin(), noise.end()).size(), 256U);
}

void VirtualModuleTest::aDelayHoldsBackEveryLine()
{
    Modem modem(
        {.times = {}, .faults = {.delayBeforeLine = 6s, .chunkSize = 5, .chunkPause = 1s}, .memory = {}});
    modem.module.start();
    modem.timers.advance(14s);
    QCOMPARE(modem.writes, (QByteArrayList{"at+cp", "in?\r", "at+cm", "gr=1\r"}));
    QCOMPARE(modem.times, (std::vector<Milliseconds>{6s, 7s, 13s, 14s}));
    QCOMPARE(modem.module.counts().boots, 1); // its own delay is no missing answer
}

void VirtualModuleTest::aSilentModuleSendsNoFurtherLine()
{
    Modem modem({.times = {}, .faults = {.silentAfterLines = 3}, .memory = {}});
    modem.configure({"C,5"});
    modem.timers.advance(60s);
    QCOMPARE(modem.lines, (QByteArrayList{"at+cpin?\r", "at+cmgr=1\r", "at+cmgs=\"+IP\"\r"}));
}

void VirtualModuleTest::aModuleThatHangsUpSendsNoFurtherByte()
{
    for (int byte = 0; byte < 40; ++byte) {
        Modem modem({.times = {}, .faults = {.hangUpAtByte = byte}, .memory = {}});
        modem.configure({"C,5"});
        modem.say("config\r\nOK\r\n");
        modem.timers.advance(60s);
        QCOMPARE(modem.writes.join(),
                 QByteArray("at+cpin?\rat+cmgr=1\rat+cmgs=\"+IP\"\rOK: C\x1A").left(byte));
        QCOMPARE(modem.hangUps, 1);
    }
}

QTEST_GUILESS_MAIN(VirtualModuleTest)
#include "virtual_module_test.moc"
