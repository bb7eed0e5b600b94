#include "config/configuration_file.h"
#include "config/fields.h"
#include "config/neighbours.h"
#include "link/problems.h"
#include "support/environment.h"

#include <QTemporaryDir>
#include <QTest>

#include <functional>

using namespace ktr;
using namespace ktr::test;
using namespace Qt::StringLiterals;

using Change = std::function<void(Configuration &)>;

class ProblemsTest : public QObject
{
    Q_OBJECT

    /// "control entry: message", a line each.
    static QStringList problemsOf(const Configuration &configuration)
    {
        QStringList lines;
        for (const Problem &problem :
             findProblems(configuration, {false, QLocale::c(), fixedEnvironment().now()}, {})) {
            lines += u"%1 %2: %3"_s.arg(problem.control).arg(problem.entry).arg(problem.message);
        }
        return lines;
    }

    /// Three limit values, one of them combined, and a switch point of each kind: nothing is wrong with it.
    static Configuration sound()
    {
        Configuration c;
        makeNew(c, fixedEnvironment());
        c.gsm.stationId = u"Werk 7"_s;
        c.administrators[0].number = u"+491711234567"_s;
        c.administrators[1].number = u"+491711234568"_s;
        c.ethernet.mac5 = u"01"_s;
        c.holidays.add(QDate(2009, 12, 24));
        c.limitValues[0] = {5, u"Pump 1 fail, Ä"_s, u"1"_s, u"0"_s, u"10"_s, 2, 3, 0, 2, u"30"_s};
        c.limitValues[1] = {9, QString(), u"3.2"_s, u"0.1"_s, u"0"_s, 3, 0, 0, 0, u"30"_s};
        c.limitValues[16] = {0, u"both"_s, QString(), QString(), QString(), 1, 193, 3, 0, u"30"_s};
        c.switchPoints[0] = {1, 13, u"0911151406"_s, u"0"_s, u"1"_s, 0};
        c.switchPoints[1] = {3, 14, u"0101010000"_s, u"60"_s, u"4,5"_s, 0};
        c.switchPoints[2] = {5, 15, QString(), u"0"_s, u"7"_s, 1};
        c.switchPoints[3] = {2, 11, u"1003280230"_s, u"0"_s, u"0"_s, 0}; // when summer time begins
        return c;
    }

private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3"); }

    void whatIsSoundIsNotTold()
    {
        QCOMPARE(problemsOf(sound()), QStringList());
        Configuration alone = sound();
        alone.ethernet.subnet = u"255.255.255.255"_s; // it reaches others by a route of its own
        QCOMPARE(problemsOf(alone), QStringList());
        Configuration configuration;
        makeNew(configuration, fixedEnvironment());
        QCOMPARE(problemsOf(configuration), QStringList());
        const QList<std::function<void(Configuration &)>> entered = {
            [](Configuration &c) { c.gsm.pin = u"0815"_s; },
            [](Configuration &c) { c.administrators[2].number = u"+491711234567"_s; },
            [](Configuration &c) { c.limitValues[3].alarm = u"Pump 1"_s; },
            [](Configuration &c) { c.switchPoints[0].target = 11; },
        };
        for (const auto &enter : entered) { // without a station's name
            Configuration begun = configuration;
            enter(begun);
            QVERIFY(!problemsOf(begun).filter(u"txt_gsm_id"_s).isEmpty());
        }
        readConfiguration("<KTR/>", configuration, fixedEnvironment());
        QCOMPARE(problemsOf(configuration), QStringList());
        QVERIFY(readConfigurationFile(QStringLiteral(KTR_SOURCE_DIR "/samples/pumping-station.xml"),
                                      configuration, fixedEnvironment())
                    .document);
        QCOMPARE(problemsOf(configuration), QStringList());
    }

    void aMacAddressOfAnotherStationInTheFolderIsAProblem()
    {
        const QTemporaryDir folder;
        const auto write = [&folder](const QString &name, const QString &stationId, const QString &mac5) {
            Configuration c = sound();
            c.gsm.stationId = stationId;
            c.ethernet.mac5 = mac5;
            QVERIFY(writeConfigurationFile(folder.filePath(name), c, fixedEnvironment()));
        };
        const QString own = folder.filePath(u"own.xml"_s);
        Neighbours neighbours;
        const auto found = [&](const QString &stationId) {
            Configuration c = sound();
            c.gsm.stationId = stationId;
            return findProblems(c, {false, QLocale::c(), fixedEnvironment().now()}, neighbours.of(own));
        };
        QVERIFY(found(u"Werk 7"_s).isEmpty());
        write(u"own.xml"_s, u"Werk 1"_s, u"01"_s);  // itself
        write(u"copy.xml"_s, u"Werk 7"_s, u"01"_s); // the same station, as it was
        write(u"Werk 8.xml"_s, u"Werk 8"_s, u"02"_s);
        write(u"zeros.xml"_s, u"Werk 9"_s, u"00"_s);
        QFile list(folder.filePath(u"nodes.xml"_s));
        QVERIFY(list.open(QIODevice::WriteOnly) && list.write("<nodes/>") > 0);
        QVERIFY(found(u"Werk 7"_s).isEmpty());
        QCOMPARE(found(u"Werk 8"_s).size(), 1); // what is a copy for one is another station for the other
        write(u"Werk 8.xml"_s, u"Werk 8"_s, u"10"_s);
        QVERIFY(found(u"Werk 7"_s).isEmpty());
        write(u"Werk 8.xml"_s, u"Werk 8 by the weir"_s, u"01"_s);
        const QList<Problem> problems = found(u"Werk 7"_s);
        QCOMPARE(problems.size(), 1);
        QCOMPARE(problems[0].place, u"Ethernet MAC3"_s);
        QCOMPARE(problems[0].control, u"Txt_Ethernet_MAC_3"_s);
        QVERIFY(problems[0].message.contains(u"Werk 8.xml"_s));
        QVERIFY(neighbours.of(QString()).isEmpty()); // not saved yet
    }

    void whatMeansNothingOrHarmIsToldOfItsField_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QStringList>("told");
        const auto row = [](const char *name, const Change &change, const QString &told) {
            QTest::newRow(name) << change << told.split(u'|');
        };
        using C = Configuration;

        row(
            "country code", [](C &c) { c.administrators[1].number = u"+49"_s; },
            u"txt_gsm_num_1 1: *recipient of limit value 1"_s);
        row(
            "no number", [](C &c) { c.administrators[0].number.clear(); },
            u"txt_gsm_num_0 0: *recipient of limit value 1, 17|txt_gsm_num_0 0: *called by switch point 3"_s);
        row(
            "national number", [](C &c) { c.administrators[5].number = u"+0171"_s; },
            u"txt_gsm_num_5 5: *no country code"_s);
        row(
            "short number", [](C &c) { c.administrators[5].number = u"+49170"_s; },
            u"txt_gsm_num_5 5: *too short"_s);
        row(
            "long number", [](C &c) { c.administrators[5].number = u"+491701234567890123"_s; },
            u"txt_gsm_num_5 5: *15 digits"_s);
        row(
            "blanks",
            [](C &c) {
                c.gsm.stationId = u" "_s, c.administrators[0].name = c.limitValues[0].alarm = u"  "_s;
            },
            u"txt_gsm_id 0: *only of blanks|txt_gsm_name_0 0: *only of blanks|Txt_gw_meldung 0: *only of blanks"_s);
        row(
            "no station", [](C &c) { c.gsm.stationId.clear(), c.gsm.pin.clear(); },
            u"txt_gsm_id 0: *does not tell its station"_s); // a SIM may have no PIN
        row(
            "no cycle", [](C &c) { c.gsm.aliveCycle.clear(); }, u"txt_gsm_alive 0: *no cycle"_s);
        row(
            "line breaks",
            [](C &c) {
                c.gsm.stationId = u"Werk\r\n7"_s, c.administrators[5].number = u"+491711234569\n"_s;
                c.scaling[0].unit = u"l\ns"_s, c.info.comment = u"may\nhave them"_s;
            },
            u"txt_gsm_id 0: \"Werk 7\" *line break|txt_gsm_num_5 5: *line break|Txt_ip_einheit_0 0: \"l s\" *line break"_s);
        row(
            "one number twice", [](C &c) { c.administrators[1].number = c.administrators[0].number; },
            u"txt_gsm_num_1 1: *administrator 1, too: limit value 1"_s);
        row(
            "alive cycle", [](C &c) { c.gsm.aliveCycle = u"40000"_s; }, u"txt_gsm_alive 0: *0 to 32767"_s);

        row(
            "no text", [](C &c) { c.limitValues[0].alarm.clear(); }, u"Txt_gw_meldung 0: *no text"_s);
        row(
            "no recipient", [](C &c) { c.limitValues[0].recipients = 192; },
            u"chk_gw_msn 0: *no recipient"_s);
        row(
            "no channel", [](C &c) { c.limitValues[0].channel = 0; },
            u"Cbo_gw_ip 0: *no channel|Check_gw_Bezug 16: *limit value 1, which"_s);
        row(
            "nothing at all", [](C &c) { c.limitValues[7].channel = 10, c.limitValues[7].recipients = 0; },
            u"Txt_gw_meldung 7: *neither text nor recipients"_s);
        row(
            "combination of nothing", [](C &c) { c.limitValues[16].reference = 0; },
            u"Check_gw_Bezug 16: *no combined"_s);
        row(
            "beyond 1", [](C &c) { c.limitValues[0].limit = u"2"_s; }, u"Txt_gw_gw 0: *neither 0 nor 1"_s);
        row(
            "never less", [](C &c) { c.limitValues[0].comparison = 1, c.limitValues[0].limit = u"0.0"_s; },
            u"Opt_gw_vergleich 0: *never < 0.0"_s);
        row(
            "never greater", [](C &c) { c.limitValues[0].comparison = 3; },
            u"Opt_gw_vergleich 0: *never > 1"_s);
        row(
            "two states", [](C &c) { c.limitValues[0].hysteresis = u"1"_s; },
            u"Txt_gw_hysterese 0: *two states"_s);
        row(
            "counter",
            [](C &c) {
                c.limitValues[0].channel = 1, c.limitValues[0].limit = u"-5"_s;
                c.digitalInputs[0].countsPulses = true;
            },
            u"Txt_gw_gw 0: *below 0"_s);
        row(
            "no interval", [](C &c) { c.limitValues[0].repetitionInterval.clear(); },
            u"Text_gw_wiederholungsintervall 0: *no interval"_s);
        row(
            "delay", [](C &c) { c.limitValues[1].delay = u"-1"_s; }, u"Txt_gw_delay 1: *below 0"_s);
        row(
            "archiving",
            [](C &c) {
                c.archiving[17] = {u"1.5"_s, u"-1"_s};
            },
            u"Txt_ip_interval_17 17: *whole number|Txt_ip_delta_17 17: *below 0"_s);
        row(
            "factor", [](C &c) { c.scaling[3].factor = u"0,0"_s; }, u"Txt_ip_faktor_3 3: *the same"_s);

        row(
            "umlaut of a file", [](C &c) { c.limitValues[0].alarm = u"zu groß"_s; },
            u"Txt_gw_meldung 0: *\"ß\" at place 7; write \"ss\""_s);
        row(
            "letter beyond SMS", [](C &c) { c.limitValues[0].alarm = u"95 °C"_s; },
            u"Txt_gw_meldung 0: *\"°\" at place 4, which"_s);
        row(
            "letter beyond all", [](C &c) { c.gsm.stationId = u"a𝄞"_s; },
            u"txt_gsm_id 0: *\"𝄞\" at place 2"_s);
        row(
            "line end", [](C &c) { c.limitValues[0].alarm = u"a\nb"_s; }, u"Txt_gw_meldung 0: *line break"_s);
        row(
            "tab", [](C &c) { c.limitValues[0].alarm = u"a\tb"_s; },
            u"Txt_gw_meldung 0: *tab at place 2, which no SMS"_s);
        row(
            "letter elsewhere", [](C &c) { c.versionText = u"Ж"_s; }, u"txt_info_version 0: *\"Ж\""_s);
        row(
            "order", [](C &c) { c.limitValues[0].alarm = u"go §88 on"_s; }, u"Txt_gw_meldung 0: *\"§88\""_s);
        row(
            "order of a file", [](C &c) { c.versionText = u"§,77"_s; }, u"txt_info_version 0: *\"§,77\""_s);
        row(
            "too long", [](C &c) { c.limitValues[16].alarm = QString(150, u'x'); },
            u"Txt_gw_meldung 16: *too long"_s);

        row(
            "digital output", [](C &c) { c.switchPoints[0].value = u"2"_s; },
            u"Txt_swtch_wert 0: *neither 0 nor 1"_s);
        row(
            "once in the past", [](C &c) { c.switchPoints[0].start = u"0911151405"_s; },
            u"Txt_swtch_start 0: *past"_s);
        row(
            "once without a start", [](C &c) { c.switchPoints[0].start.clear(); },
            u"Txt_swtch_start 0: *past"_s);
        row(
            "no such day", [](C &c) { c.switchPoints[1].start = u"3102310000"_s; },
            u"Txt_swtch_start 1: *no date"_s);
        row(
            "no period", [](C &c) { c.switchPoints[1].period = u"0"_s; },
            u"Txt_swtch_periode 1: *less than a minute"_s);
        row(
            "a year", [](C &c) { c.switchPoints[1].period = u"525600"_s; },
            u"Txt_swtch_periode 1: *becomes 1"_s);
        row(
            "limit value not in use", [](C &c) { c.switchPoints[2].limitValue = 9; },
            u"Cmb_swtch_gw 2: *limit value 10 is not in use"_s);
        row(
            "past holidays", [](C &c) { c.holidays.remove(0), c.holidays.add(QDate(2009, 11, 14)); },
            u"Cmb_swtch_typ 3: *no holidays to come"_s);
        row(
            "same again", [](C &c) { c.switchPoints[9] = c.switchPoints[1]; },
            u"Cmb_swtch_ip 9: *switch point 2 does the same"_s);
        row(
            "contradiction",
            [](C &c) {
                c.switchPoints[9] = c.switchPoints[3];
                c.switchPoints[9].start = u"0912240230"_s, c.switchPoints[9].value = u"1"_s;
            },
            u"Txt_swtch_wert 9: *switch point 4 sets"_s);
        row(
            "holiday twice", [](C &c) { c.holidays.append(u"091224"_s); }, u"lst_swtch_frei 1: *twice"_s);

        for (const char *address : {"0.0.0.0", "127.0.0.1", "224.0.0.1", "10.0.0.0", "10.0.0.255"}) {
            row(
                address, [address](C &c) { c.ethernet.ip = QLatin1String(address); },
                u"Txt_Ethernet_IP 0: *no address that a module"_s);
        }
        for (const char *mask : {"255.0.255.0", "0.0.0.0", "0.255.255.255"}) {
            row(
                mask, [mask](C &c) { c.ethernet.subnet = QLatin1String(mask); },
                u"Txt_Ethernet_Subnet 0: *no mask"_s);
        }
        row(
            "MAC as new", [](C &c) { c.ethernet.mac5 = u"00"_s; }, u"Txt_Ethernet_MAC_3 0: *MAC"_s);
    }
    void whatMeansNothingOrHarmIsToldOfItsField()
    {
        QFETCH(const Change, change);
        QFETCH(const QStringList, told);
        Configuration configuration = sound();
        change(configuration);
        const QStringList found = problemsOf(configuration);
        QVERIFY2(found.size() == told.size(), qPrintable(found.join(u'\n')));
        for (qsizetype i = 0; i < told.size(); ++i) {
            const QString field = told[i].section(u'*', 0, 0);
            const QString words = told[i].section(u'*', 1);
            QVERIFY2(found[i].startsWith(field) && found[i].contains(words), qPrintable(found.join(u'\n')));
        }
    }
};

QTEST_GUILESS_MAIN(ProblemsTest)
#include "problems_test.moc"
