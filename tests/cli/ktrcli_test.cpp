#include "link/command_sequence.h"
#include "platform/pseudo_terminal.h"
#include "record/record_writer.h"
#include "support/bad_proxy.h"
#include "support/module_process.h"
#include "support/test_files.h"
#include "support/udp_peer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using ktr::test::contentOf;
using Module = ktr::test::ModuleProcess;

namespace steps = ktr::steps;

namespace {

/// What a transmission tells that sends a whole configuration.
const QString allSent = u"%1 commands sent, 0 refused"_s.arg(steps::last + 1);

struct Result
{
    int code;
    QString output;
    QString errors;
};

/// What the manual's tables have of each command: its options, and the actions of "record" and the like.
QMap<QString, QStringList> commandsOfTheManual(const QString &language)
{
    static const QRegularExpression row(
        u"^\\| \\*\\*`([a-z]+)(?: ([a-z]+))?[^`]*`\\*\\* \\||^\\| (`--[^|]*) \\|"_s,
        QRegularExpression::MultilineOption);
    static const QRegularExpression option(u"`(--[a-z-]+)"_s);
    const QString chapter = QString::fromUtf8(
        contentOf(QStringLiteral(KTR_SOURCE_DIR "/docs/manual/%1/command-line.md").arg(language)));
    QMap<QString, QStringList> told;
    QString command;
    for (const auto &found : row.globalMatch(chapter)) {
        if (found.hasCaptured(1)) {
            command = found.captured(1);
            told[command] +=
                found.hasCaptured(2) ? QStringList{command + u' ' + found.captured(2)} : QStringList();
        }
        for (const auto &each : option.globalMatch(found.captured(3))) {
            told[command] += u"  "_s + each.captured(1);
        }
    }
    return told;
}

} // namespace

class KtrcliTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QString path(const QString &name) const { return m_folder.filePath(name); }

    /// The words of a command line; "@name" is a file of the test's folder, "@sample" the sample.
    QStringList words(const QString &line) const
    {
        QStringList words = line.split(u' ', Qt::SkipEmptyParts);
        for (QString &word : words) {
            if (word == "@sample"_L1) {
                word = QStringLiteral(KTR_SOURCE_DIR "/samples/pumping-station.xml");
            } else if (word.startsWith(u'@')) {
                word = path(word.mid(1));
            }
        }
        return words;
    }

    Result ktrcli(const QString &line, const QString &locale = u"C"_s) const
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"LC_ALL"_s, locale);
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(KTRCLI), words(line));
        if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit) {
            return {-1, u"(crashed or hung)"_s, {}};
        }
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    void write(const QString &name, const QByteArray &content) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

private Q_SLOTS:
    /// What other runs transmitted is not remembered.
    void initTestCase() { qputenv("XDG_DATA_HOME", QFile::encodeName(path(u"data"_s))); }

    void wrongUsageIsToldInOneLineWithCode2()
    {
        for (const auto *line : {"",
                                 "frobnicate",
                                 "new",
                                 "new @a @b",
                                 "convert @a",
                                 "commands @a --loud",
                                 "transmit @sample",
                                 "transmit @sample --serial @b --ethernet c",
                                 "transmit @sample --serial @b --timeout soon",
                                 "transmit @sample --serial @b --timeout 0",
                                 "transmit @sample --serial @b --resume -1",
                                 "transmit @sample --serial @b --resume last",
                                 "transmit @sample --ethernet c --answer --unconfirmed",
                                 "simulate --serial @a --replay @b --merge",
                                 "simulate",
                                 "simulate --fleet 0",
                                 "simulate --fleet 2 --serial @a",
                                 "monitor",
                                 "monitor @a --for x",
                                 "keep @a --json",
                                 "record look @a",
                                 "record backup @a",
                                 "record export @a",
                                 "record export @a -o @b --from noon",
                                 "record export @a -o @b --kind values --text x",
                                 "--bogus",
                                 "--serial",
                                 "transmit @sample --ethernet 127.0.0.1:0",
                                 "transmit @sample --ethernet=",
                                 "transmit @sample --serial=",
                                 "send k --ethernet 300.1.1.1",
                                 "send k --ethernet 1.2.3:49111",
                                 "history --ethernet 1.2.3.4:65536",
                                 "firmware --image @a --ethernet [::1",
                                 "simulate --ethernet here",
                                 "simulate --ethernet 300.1.1.1:0",
                                 "simulate --serial=",
                                 "simulate --serial @a --split 0",
                                 "send --serial @a",
                                 "send \xA7\x38\x38 --serial @a",
                                 "send G,1,\xA7\x38\x38 --serial @a",
                                 "send k\x1A --serial @a",
                                 "history",
                                 "history @a --serial @b",
                                 "history @a @b",
                                 "firmware --serial @a",
                                 "firmware --image @a",
                                 "print @sample",
                                 "print @sample @a.pdf --language klingon",
                                 "fields @sample",
                                 "fields --page test",
                                 "fields --language klingon"}) {
            const Result result = ktrcli(QString::fromLatin1(line));
            QVERIFY2(result.code == 2 && result.output.isEmpty(), line);
            QVERIFY2(result.errors.startsWith("ktrcli: "_L1) && result.errors.count(u'\n') == 1, line);
        }
        for (const QString &command : {QString(161, u'k'), u"k\u0416"_s}) {
            QCOMPARE(ktrcli(u"send --serial @a "_s + command).code, 2);
        }
        QCOMPARE(ktrcli(u"transmit @sample --serial @b --resume %1"_s.arg(steps::last + 1)).code, 2);
    }

    void noFileIsReadAndWritten()
    {
        write(u"both"_s, "com <---- H,1,0911151400,1,2\n");
        QVERIFY(QFile::link(path(u"both"_s), path(u"link"_s)));
        QCOMPARE(::link(qPrintable(path(u"both"_s)), qPrintable(path(u"hard"_s))), 0);
        for (const auto *line :
             {"history @both -o @both", "history @both -o @link", "history @link -o @hard",
              "history --serial @a -o @new --log @new", "transmit @both --serial @a --log @hard",
              "firmware --image @link --serial @a --log @both", "print @both @link"}) {
            const Result result = ktrcli(QString::fromLatin1(line));
            QVERIFY2(result.code == 2 &&
                         result.errors.endsWith(" is named twice (see ktrcli "_L1 +
                                                words(QString::fromLatin1(line)).first() + " --help)\n"_L1),
                     line);
        }
        QCOMPARE(contentOf(path(u"both"_s)), "com <---- H,1,0911151400,1,2\n");
        QVERIFY(!QFileInfo::exists(path(u"new"_s)));
        QCOMPARE(ktrcli(u"history @both -o @other --log @none"_s).code, 0);
        QVERIFY(contentOf(path(u"other"_s)).endsWith("1;15.11.2009 14:00;1;2\r\n"));
    }

    void everyCommandHelps()
    {
        const QString overview = ktrcli(u"--help"_s).output;
        for (const QString &word : {u"-h"_s, u"-help"_s}) {
            QVERIFY(!overview.isEmpty() && ktrcli(word).output == overview);
            QCOMPARE(ktrcli(u"send "_s + word).code, 0);
        }
        QVERIFY(ktrcli(u"-version"_s).output == ktrcli(u"--version"_s).output);
        static const QRegularExpression row(u"^  ([a-z]+) "_s, QRegularExpression::MultilineOption);
        QSet<QString> commands;
        for (const auto &found : row.globalMatch(overview)) {
            commands += found.captured(1);
        }
        QMap<QString, QString> helps;
        for (const QString &command : std::as_const(commands)) {
            const Result help = ktrcli(command + u" --help"_s);
            QVERIFY2(help.code == 0 && help.output.contains(command + u" [options]"_s), qPrintable(command));
            helps.insert(command, help.output);
        }
        for (const QString &language : {u"en"_s, u"de"_s}) {
            const QMap<QString, QStringList> told = commandsOfTheManual(language);
            QCOMPARE(QSet<QString>(told.keyBegin(), told.keyEnd()), commands);
            for (auto each = told.begin(); each != told.end(); ++each) {
                for (const QString &word : each.value()) {
                    QVERIFY2(helps[each.key()].contains(word + u' '),
                             qPrintable(u"%1: \"%2\" of ktrcli %3"_s.arg(language, word, each.key())));
                }
            }
        }
    }

    void fieldsAreToldInEitherLanguage()
    {
        const Result all = ktrcli(u"fields"_s);
        QCOMPARE(all.code, 0);
        QVERIFY(all.output.startsWith("<!-- gsm -->\n\n| Field | "_L1) &&
                all.output.contains("\n<!-- ip -->\n"_L1));
        const Result page = ktrcli(u"fields --page ethernet --language deutsch"_s);
        QCOMPARE(page.code, 0);
        QVERIFY(page.output.startsWith("| Feld | "_L1) &&
                page.output.contains("[Subnetz](#Txt_Ethernet_Subnet)"_L1));
        QVERIFY(!page.output.contains("<!--"_L1));
    }

    void theLocaleDecidesTheDecimalSeparator()
    {
        write(u"reference.xml"_s, "<KTR><Grenzwert16 Bezug='2.5' Alarm='\xC3\x84'/></KTR>");
        const QString point = u"18\tg,17,1,0,30,2.5,255,Ä\n"_s;
        QVERIFY(ktrcli(u"commands @reference.xml"_s).output.contains(point));
        QVERIFY(ktrcli(u"commands @reference.xml"_s, u"en_US.UTF-8"_s).output.contains(point));
        QVERIFY(ktrcli(u"commands @reference.xml --answer"_s, u"de_DE.UTF-8"_s)
                    .output.contains(u"18\tG,17,1,0,30,2,5,255,Ä\n"_s));
    }

    void convertingTwiceGivesTheSameFileButForDateAndTime()
    {
        const auto withoutTime = [](QByteArray document) {
            const qsizetype start = document.indexOf(" Nummer=");
            return document.remove(start, document.indexOf(" Version=", start) - start);
        };
        QCOMPARE(ktrcli(u"convert @sample @1.xml"_s).code, 0);
        QCOMPARE(ktrcli(u"convert @1.xml @2.xml"_s).code, 0);
        const QByteArray sample = withoutTime(contentOf(words(u"@sample"_s).first()));
        QCOMPARE(withoutTime(contentOf(path(u"1.xml"_s))), sample);
        QCOMPARE(ktrcli(u"compare @sample @1.xml"_s).code, 0); // names and units are told to no module
        QCOMPARE(withoutTime(contentOf(path(u"2.xml"_s))), sample);
    }

    void whatCannotBeDoneIsToldInOneLineWithCode1()
    {
        write(u"garbage.xml"_s, "<KTR><PIN>");
        write(u"orphans.xml"_s, "<KTR><item1 key='S/ip' text='IP'/></KTR>");
        QCOMPARE(::mkfifo(QFile::encodeName(path(u"pipe"_s)).constData(), 0600), 0);
        write(u"x.xml"_s, "<x/>");
        for (const auto *line : {"convert @none.xml @x",
                                 "convert @garbage.xml @x",
                                 "convert @x.xml @x",
                                 "check @orphans.xml",
                                 "commands @x.xml",
                                 "print @x.xml @x.pdf",
                                 "compare @x.xml @x.xml",
                                 "compare @sample @x.xml",
                                 "transmit @x.xml --serial /dev/null",
                                 "convert @sample /dev/full",
                                 "new @no/such/folder.xml",
                                 "print @garbage.xml @x.pdf",
                                 "print @sample /dev/full",
                                 "transmit @garbage.xml --serial /dev/null",
                                 "transmit @sample --serial @none",
                                 "transmit @sample --ethernet no-such-module.invalid",
                                 "history @none",
                                 "history @garbage.xml",
                                 "history --serial @none",
                                 "history --serial @m -o @no/such/folder.csv",
                                 "firmware --image @none --serial @none",
                                 "firmware --image /dev/null --serial @none",
                                 "simulate --serial @garbage.xml",
                                 "simulate --serial @m --save @no/such/folder.xml",
                                 "simulate --serial @m --hold @garbage.xml",
                                 "simulate --serial @m --replay @none",
                                 "simulate --serial @m --replay @garbage.xml",
                                 "monitor @none",
                                 "monitor @garbage.xml",
                                 "monitor @orphans.xml",
                                 "monitor @pipe",
                                 "monitor /dev/zero",
                                 "keep @none",
                                 "keep @garbage.xml",
                                 "record check @none",
                                 "record check @garbage.xml",
                                 "record backup @none @x",
                                 "record export @none -o @x",
                                 "firmware --image @pipe --serial @none",
                                 "check @pipe"}) {
            const Result result = ktrcli(QString::fromLatin1(line));
            QVERIFY2(result.code == 1, line);
            QVERIFY2(result.errors.startsWith("ktrcli: "_L1) && result.errors.count(u'\n') == 1, line);
        }
        QCOMPARE(contentOf(path(u"garbage.xml"_s)), "<KTR><PIN>"); // not replaced by a link
        QVERIFY(!QFileInfo::exists(path(u"x"_s))); // nobody means a configuration of fall-backs
    }

    void twoFilesAreComparedInTheUsersWordsAndMerged()
    {
        const QByteArray sample = contentOf(words(u"@sample"_s).first());
        const auto variant = [&](const QString &name, const QByteArray &number, const QByteArray &alive) {
            QByteArray content = sample;
            content.replace("+447700900147", number);
            content.replace("<Alivecycle>1440", "<Alivecycle>" + alive);
            write(name, content);
        };
        variant(u"a.xml"_s, "+491711", "1440");
        variant(u"b.xml"_s, "+447700900147", "99");
        variant(u"c.xml"_s, "+491722", "1440");
        const Result same = ktrcli(u"compare @sample @sample"_s);
        QCOMPARE(same.code, 0);
        QCOMPARE(same.output, u"no difference\n"_s);
        const Result differ = ktrcli(u"compare @sample @a.xml"_s);
        QCOMPARE(differ.code, 1);
        QCOMPARE(differ.output, u"GSM, Admin 2, Phone Number: +447700900147 -> +491711\n"_s);
        QCOMPARE(differ.errors, u"ktrcli: 1 field differs\n"_s);
        const Result commands = ktrcli(u"compare @sample @b.xml --commands"_s);
        QCOMPARE(commands.output, u"75\t- c,1440\n75\t+ c,99\n"_s);
        QVERIFY(ktrcli(u"compare @sample @a.xml --csv"_s)
                    .output.contains(
                        u"GSM;Admin 2;Phone Number;;\"'+447700900147\";\"'+491711\";;0;GSM-Nummer1\n"_s));
        const auto json = QJsonDocument::fromJson(ktrcli(u"compare @sample @a.xml --json"_s).output.toUtf8());
        QCOMPARE(json[u"fields"_s][0][u"other"_s].toString(), u"+491711"_s);

        // Three of them: who changed what, and both together.
        QCOMPARE(ktrcli(u"compare @a.xml @b.xml --base @sample"_s).output,
                 u"other\tGSM, Alive Cycle: base 1440, file 1440, other 99\n"
                 "file\tGSM, Admin 2, Phone Number: base +447700900147, file +491711, other "
                 "+447700900147\n"_s);
        QCOMPARE(ktrcli(u"compare @a.xml @b.xml --base @sample --merge @m.xml"_s).code, 0);
        const Result merged = ktrcli(u"compare @m.xml @a.xml"_s);
        QVERIFY(merged.output.contains(u"GSM, Alive Cycle: 99 -> 1440\n"_s));
        QCOMPARE(merged.errors, u"ktrcli: 1 field differs\n"_s); // the stamps do not count
        QVERIFY(merged.output.contains(u"stamp\t"_s));
        const Result conflict = ktrcli(u"compare @a.xml @c.xml --base @sample --merge @n.xml"_s);
        QCOMPARE(conflict.code, 1);
        QVERIFY(conflict.output.startsWith(u"conflict\tGSM, Admin 2"_s));
        QVERIFY(!QFileInfo::exists(path(u"n.xml"_s)));
        for (const auto *wrong :
             {"compare @a.xml @b.xml --merge @n.xml", "compare @a.xml @b.xml --json --csv",
              "compare @a.xml @b.xml --held --base @sample"}) {
            QCOMPARE(ktrcli(QString::fromLatin1(wrong)).code, 2);
        }
    }

    void aConfigurationIsCheckedWithoutBeingChanged()
    {
        QByteArray sample = contentOf(words(u"@sample"_s).first());
        sample.replace("2703150900", "9903150900"); // what lies in the future of any clock
        sample.replace("<Feiertag19>", "<Feiertag19>991231");
        write(u"sound.xml"_s, sample);
        const Result sound = ktrcli(u"check @sound.xml"_s);
        QVERIFY2(sound.code == 0, qPrintable(sound.output));
        write(
            u"faulty.xml"_s,
            "<KTR><PIN>12x4</PIN><Stationskennung>a,b</Stationskennung><Alivecycle>x</"
            "Alivecycle><GSM-Nummer1>+4 9</GSM-Nummer1><Feiertag3>x</Feiertag3>"
            "<Grenzwert2 Alarm='\xD0\x96' Grenzwert='low'/><Schaltpunkt0 IP='1' Typ='12' Start='2613010000'/>"
            "<Schaltpunkt1 IP='1' Typ='15' Start='soon'/><Ethernet IP='1.2.3.256' Subnet='255.255.255.0' "
            "MAC3='0'/></KTR>");
        const Result result = ktrcli(u"check @faulty.xml"_s);
        QCOMPARE(result.code, 1);
        QStringList places;
        for (const QString &line : result.output.split(u'\n', Qt::SkipEmptyParts)) {
            places += line.section(u'\t', 0, 0);
        }
        QCOMPARE(places,
                 (QStringList{u"GSM/PIN"_s, u"GSM/Station ID"_s, u"GSM/Alive Cycle"_s,
                              u"GSM/Admin 2/Phone Number"_s, u"Limit Value/LV 3/Notification"_s,
                              u"Limit Value/LV 3/Limit Value"_s, u"Switchpoint/Switchpoint 1/Start"_s,
                              u"Ethernet/IP"_s, u"Ethernet/MAC 4"_s, u"Limit Value/LV 3/Channel"_s,
                              u"Switchpoint/Switchpoint 2/Limit Value"_s, u"Switchpoint/Holidays/1"_s}));
        QVERIFY(!result.output.contains("12x4"_L1));
    }

    void aModuleHoldsWhatWasTransmittedAndNoLogTellsThePin_data()
    {
        QTest::addColumn<QString>("faults");
        QTest::addColumn<QString>("options");
        QTest::newRow("plain") << QString() << QString();
        QTest::newRow("bad line, answered") << u" --garbage 7 --merge --split 5"_s << u" --answer"_s;
    }
    void aModuleHoldsWhatWasTransmittedAndNoLogTellsThePin()
    {
        QFETCH(QString, faults);
        QFETCH(QString, options);
        QFile::remove(path(u"log.txt"_s));
        Module module(words(u"simulate --serial @module --save @held.xml"_s + faults));
        const Result sent = ktrcli(u"transmit @sample --serial @module --log @log.txt"_s + options);
        QVERIFY2(sent.code == 0, qPrintable(sent.errors));
        QVERIFY(sent.output.contains(allSent));
        QVERIFY(module.await(u"saved"_s));
        const Result compared = ktrcli(u"compare @sample @held.xml"_s);
        QVERIFY2(compared.code == 0, qPrintable(compared.output));
        QCOMPARE(ktrcli(u"new @other.xml"_s).code, 0);
        QVERIFY(ktrcli(u"compare @sample @other.xml"_s).errors.contains("fields differ"_L1));

        // What a file leaves open, and what is never sent, is no difference; what is meant is one.
        const QByteArray values = "<sendValue Wert='0'/><Ausgangswert0 Digital='1' Analog='7'/>"
                                  "<Digitaleingang0 Wert='9'/>";
        const QByteArray point = "<Schaltpunkt0 IP='1' Typ='2' Wert='1' GW-Bezug='3' Start='";
        write(u"open.xml"_s, "<KTR>" + values + point + "2701010000'/></KTR>");
        write(u"given.xml"_s,
              "<KTR><sendValue Wert='1'/><Ausgangswert0 Digital='0' Analog='3'/>" + point +
                  "2701010000'/><Schaltpunkt1 Start='2611220641'/><Ethernet MAC3='77'/></KTR>");
        const Result open = ktrcli(u"compare @open.xml @given.xml"_s);
        QVERIFY2(open.code == 0, qPrintable(open.output));
        QVERIFY(ktrcli(u"compare @given.xml @open.xml"_s).output.contains("MAC3"_L1));
        write(u"other.xml"_s, "<KTR>" + point + "2701010001'/></KTR>");
        QCOMPARE(ktrcli(u"compare @open.xml @other.xml"_s).output.count(u'\n'), 1);

        const QByteArray sample = contentOf(words(u"@sample"_s).first());
        const QString pin = QString::fromLatin1(sample.mid(sample.indexOf("<PIN>") + 5, 4));
        const QRegularExpression numbers(u"(?i)\\bn,"_s + pin);
        const QString logged = QString::fromUtf8(contentOf(path(u"log.txt"_s)));
        QVERIFY(logged.contains("com ----> config"_L1));
        QVERIFY(!logged.contains(numbers) && !sent.output.contains(numbers));

        const Result answered = ktrcli(u"send V,§ --serial @module"_s);
        QVERIFY2(answered.output.contains("V,2.1.05,2026-11-16 09:30:00,KTR\n"_L1),
                 qPrintable(answered.output));
        QCOMPARE(ktrcli(u"send h,0,1 --serial @module"_s).code, 0);
        QVERIFY(module.terminate());
        QVERIFY(!QFileInfo(path(u"module"_s)).isSymLink());
    }

    void aModuleBehindEthernetHoldsWhatWasTransmitted()
    {
        Module module(words(u"simulate --ethernet 0 --save @ethernet.xml --double 20"_s));
        const QString at = u" --ethernet "_s + module.address();
        const Result sent = ktrcli(u"transmit @sample --log @ethernet.txt"_s + at);
        QVERIFY2(sent.code == 0, qPrintable(sent.errors));
        QVERIFY(sent.output.contains(allSent + u", %1 answered"_s.arg(steps::last)));
        QVERIFY(module.await(u"saved"_s));
        const Result compared = ktrcli(u"compare @sample @ethernet.xml"_s);
        QVERIFY2(compared.code == 0, qPrintable(compared.output));
        QVERIFY(contentOf(path(u"ethernet.txt"_s)).contains("eth ----> N,****,"));
        const Result unconfirmed = ktrcli(u"transmit @sample --unconfirmed --log @ethernet.txt"_s + at);
        QVERIFY2(unconfirmed.code == 3, qPrintable(unconfirmed.errors));
        QVERIFY(unconfirmed.output.contains(allSent + u", 0 answered"_s));
        QVERIFY(contentOf(path(u"ethernet.txt"_s)).contains("eth ----> n,****,"));

        const Result answered = ktrcli(u"send V,§"_s + at);
        QVERIFY2(answered.output.contains("V,2.1.05,2026-11-16 09:30:00,KTR\n"_L1),
                 qPrintable(answered.errors));
        QVERIFY(module.terminate());
        ktr::test::Peer silent("127.0.0.1"); // at a port that no other program can have
        const Result nobody =
            ktrcli(u"transmit @sample --timeout 1 --ethernet 127.0.0.1:%1"_s.arg(silent.port()));
        QCOMPARE(nobody.errors, "ktrcli: nothing was heard from the module for 1 s; stopped at step 0\n");
    }

    /// A module that was left in the middle goes on talking to the ports of a program that was killed.
    void noRunTakesThePortsOfTheOneBefore()
    {
        QSet<quint16> ports;
        for (int run = 0; run < 2; ++run) {
            ktr::test::Peer silent("127.0.0.1");
            QCOMPARE(ktrcli(u"send V,§ --timeout 1 --ethernet 127.0.0.1:%1"_s.arg(silent.port())).code, 1);
            QVERIFY(!silent.await().isEmpty());
            ports.insert(silent.senderPort());
        }
        QCOMPARE(ports.size(), 2);
    }

    void aModuleThatIsSwitchedOnLaterIsReached()
    {
        const QString address = Module(words(u"simulate --ethernet 0"_s)).address();
        for (const auto *job : {"transmit @sample --resume 77", "send V,\xA7"}) {
            QFile::remove(path(u"late.txt"_s));
            QProcess process;
            process.start(QStringLiteral(KTRCLI),
                          words(QString::fromLatin1(job) + u" --log @late.txt --ethernet "_s + address));
            QTRY_VERIFY(contentOf(path(u"late.txt"_s)).contains("eth ----> config")); // nobody hears it
            const Module late(words(u"simulate --ethernet "_s + address));
            QVERIFY(process.waitForFinished(60000));
            QVERIFY2(process.exitCode() == 0, process.readAllStandardError());
        }
    }

    /// A module that starts anew behind the closing command is not caught, and one that still reads is not
    /// waited for in vain.
    void aProgramThatLeavesCatchesNoModule()
    {
        ktr::PseudoTerminal terminal;
        QVERIFY(terminal.open());
        const int port = ::open(terminal.slavePath().toLocal8Bit(), O_RDWR | O_NOCTTY);
        QByteArray heard;
        connect(&terminal, &ktr::PseudoTerminal::readyRead, &terminal, [&] { heard += terminal.readAll(); });
        QTimer timer;
        connect(&timer, &QTimer::timeout, &timer, [&] { terminal.write("at+cpas\r"); });
        timer.start(20);
        QProcess process;
        process.start(
            QStringLiteral(KTRCLI),
            words(u"transmit @sample --resume 78 --log @leaving.txt --serial "_s + terminal.slavePath()));
        const auto isLogged = [this](const char *text) {
            return contentOf(path(u"leaving.txt"_s)).contains(text);
        };
        QTRY_VERIFY(heard.contains("at+cpas"));
        timer.stop();
        terminal.write("at+cmgr=1\r");
        QTRY_VERIFY(heard.contains("at+cmgr"));
        QCOMPARE(::tcflow(port, TCOOFF), 0); // as a line that is slow to carry what it was given
        terminal.write("at+cmgr=1\r");
        QTRY_VERIFY(isLogged("----> v,"));
        terminal.write("at+cpin?\r");
        QTRY_VERIFY(isLogged("<---- at+cpin?"));
        QCOMPARE(::tcflow(port, TCOON), 0);
        QTRY_VERIFY_WITH_TIMEOUT(process.state() == QProcess::NotRunning, 60000);
        ::close(port);
        QVERIFY2(process.exitCode() == 0, process.readAllStandardError());
        QVERIFY(heard.contains("\r\nv,") && !heard.contains("config"));
    }

    void aCommandThatTheModuleRefusesOrThatNobodyConfirmedIsNotDone()
    {
        const Module module(words(u"simulate --ethernet 0"_s));
        const QString at = u" --ethernet "_s + module.address();
        const Result refused = ktrcli(u"send G,99"_s + at);
        QCOMPARE(refused.code, 1);
        QVERIFY2(refused.errors.startsWith("ktrcli: the module says: fail: G"_L1),
                 qPrintable(refused.errors));
        QCOMPARE(ktrcli(u"send h,0,1"_s + at).code, 3);
        QCOMPARE(ktrcli(u"send H,0,1"_s + at).code, 0);
        for (const auto *job : {"transmit @sample", "send K", "history", "firmware --image @sample"}) {
            const Result unlogged = ktrcli(QString::fromLatin1(job) + u" --log @no/such/log.txt"_s + at);
            QVERIFY2(unlogged.code == 1 && unlogged.errors.contains("log.txt: "_L1), job);
        }
    }

    void anAlarmIsNoAnswerToACommand()
    {
        write(u"alarm.txt"_s, "com <---- at+cmgr=1\ncom ----> ,\"+IP\"\ncom ----> K\ncom ----> OK\n"
                              "com <---- at+cmgs=\"+4917012345\"\ncom ----> OK\n"
                              "com <---- M,Pump 1 fail\\x1a\ncom ----> OK\n"
                              "com <---- at+cmgs=\"+IP\"\ncom ----> OK\n"
                              "com <---- M,Pump 2 fail\\x1a\ncom ----> OK\n"
                              "com <---- at+cmgs=\"+IP\"\ncom ----> OK\n"
                              "com <---- OK: Z,1\\x1a\ncom ----> OK\n"
                              "com <---- at+cmgs=\"+IP\"\ncom ----> OK\n"
                              "com <---- fail: K\\x1a\ncom ----> OK\n");
        Module module(words(u"simulate --serial @module --replay @alarm.txt"_s));
        const Result answered = ktrcli(u"send K --serial @module"_s);
        QCOMPARE(answered.output, "+4917012345 <-- M,Pump 1 fail\n+IP <-- M,Pump 2 fail\n+IP <-- OK: Z,1\n");
        QCOMPARE(answered.errors, "ktrcli: the module says: fail: K\n");
        QCOMPARE(answered.code, 1);
    }

    void theArchiveIsFetchedOrTakenOutOfALog()
    {
        Module module(words(u"simulate --serial @module"_s));
        const Result fetched = ktrcli(u"history --serial @module --log @archive.txt"_s);
        QVERIFY2(fetched.code == 0, qPrintable(fetched.errors));
        QCOMPARE(fetched.output.count("\r\n"_L1), 18);
        QVERIFY(fetched.output.endsWith("17;01.01.2000 01:15;1705;19,5\r\n"_L1));
        QCOMPARE(ktrcli(u"history --serial @module -o @archive.csv"_s).code, 0);
        QCOMPARE(contentOf(path(u"archive.csv"_s)), "\xEF\xBB\xBF" + fetched.output.toUtf8());
        QCOMPARE(ktrcli(u"history @archive.txt"_s).output, fetched.output);
    }

    void whatHadArrivedOfAnArchiveIsKept()
    {
        Module module(words(u"simulate --serial @module --hang-up-at 120"_s));
        const Result broken = ktrcli(u"history --serial @module"_s);
        QCOMPARE(broken.code, 1);
        QVERIFY(broken.errors.startsWith("ktrcli: the line is lost"_L1));
        QVERIFY2(broken.output.startsWith("1;01.01.2000 "_L1), qPrintable(broken.output));
    }

    void anImageGoesToTheModule_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("serial") << u"--serial @module"_s;
        QTest::newRow("Ethernet") << u"--ethernet 0"_s;
    }
    void anImageGoesToTheModule()
    {
        QFETCH(QString, line);
        write(u"image.bin"_s, QByteArray(40000, 'f'));
        QFile::remove(path(u"firmware.txt"_s));
        Module module(words(u"simulate "_s + line));
        line.replace(u"--ethernet 0"_s, u"--ethernet "_s + module.address());
        const Result sent = ktrcli(u"firmware --image @image.bin --log @firmware.txt "_s + line);
        const int notKnown = line.startsWith(u"--ethernet"_s) ? 3 : 0;
        QVERIFY2(sent.code == notKnown, qPrintable(sent.errors));
        QVERIFY(sent.errors.contains("image.bin has 40000 bytes; it is filled up to 43008"_L1));
        QVERIFY2(sent.output.endsWith("\n43008 bytes sent\n"_L1), qPrintable(sent.output));
        QVERIFY(module.await(u"43008 bytes of firmware taken"_s));
        QVERIFY(contentOf(path(u"firmware.txt"_s))
                    .contains("----> \xC2\xA7"
                              "88\n"));
    }

    void anEndBeforeTheEndNamesTheStep_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("reason");
        // A line asks for the modem, two answer the version query, all others read a message. The module did
        // not read on after step 6.
        QTest::newRow("silence") << u" --silent-after 10"_s << u"nothing was heard from the module for 1 s"_s;
        QTest::newRow("hang-up") << u" --hang-up-at 109"_s << u"the line is lost"_s;
    }
    void anEndBeforeTheEndNamesTheStep()
    {
        QFETCH(QString, fault);
        QFETCH(QString, reason);
        Module module(words(u"simulate --serial @module"_s + fault));
        const Result result = ktrcli(u"transmit @sample --serial @module --timeout 1"_s);
        QCOMPARE(result.code, 1);
        QVERIFY2(result.errors.startsWith(u"ktrcli: "_s + reason), qPrintable(result.errors));
        QVERIFY2(result.errors.endsWith("; stopped at step 6\n"_L1), qPrintable(result.errors));
    }

    void anInterruptedTransmissionGoesOnAtTheStepThatWasTold_data()
    {
        QTest::addColumn<int>("byte");
        QTest::newRow("in the first reading") << 15;
        QTest::newRow("in the module's answer") << 40;
        QTest::newRow("in a reading") << 334;
        // The command for this reading meets a module that is gone.
        QTest::newRow("behind a reading") << 337;
    }
    void anInterruptedTransmissionGoesOnAtTheStepThatWasTold()
    {
        QFETCH(int, byte);
        QString step;
        {
            Module module(words(u"simulate --serial @module --save @half.xml --hang-up-at %1"_s.arg(byte)));
            const Result broken = ktrcli(u"transmit @sample --serial @module"_s);
            QCOMPARE(broken.code, 1);
            step = broken.errors.trimmed().section(u"stopped at step "_s, 1);
            QVERIFY(module.await(u"saved"_s));
        }
        QCOMPARE(ktrcli(u"compare @sample @half.xml"_s).code, 1);
        Module module(words(u"simulate --serial @module --hold @half.xml --save @whole.xml"_s));
        const Result resumed = ktrcli(u"transmit @sample --serial @module --resume "_s + step);
        QVERIFY2(resumed.code == 0, qPrintable(resumed.errors));
        const QString summary =
            u"\n%1 commands sent, 0 refused, 0 answered\n"_s.arg(steps::last + 1 - step.toInt());
        QVERIFY2(resumed.output.contains(summary), qPrintable(step + resumed.output));
        QVERIFY(module.await(u"saved"_s));
        const Result compared = ktrcli(u"compare @sample @whole.xml"_s);
        QVERIFY2(compared.code == 0, qPrintable(compared.output));
    }

    void whatIsHeardIsNoProgress_data()
    {
        QTest::addColumn<QString>("job");
        QTest::addColumn<QByteArray>("noise");
        QTest::addColumn<QString>("told");
        const QString step = u"; stopped at step 0"_s;
        const QByteArray alarm = "at+cmgs=\"+49170\"\rM,Pump fail\x1a";
        const QByteArray archive = "H,9,2611221100,1,2\r"; // of which nobody asked anything
        QTest::newRow("a module that hears nothing")
            << u"transmit @sample"_s << QByteArray("at+cpin?\r")
            << QString(u" lines, the last one \"at+cpin?\""_s + step);
        QTest::newRow("noise") << u"transmit @sample"_s << QByteArray("x")
                               << QString(u" bytes without a line end"_s + step);
        QTest::newRow("alarms, transmit") << u"transmit @sample"_s << alarm << step;
        QTest::newRow("alarms, send") << u"send V,\xA7"_s << alarm << u" lines, the last one "_s;
        QTest::newRow("archive, send") << u"send \xA7,77"_s << archive << u" lines, the last one "_s;
        QTest::newRow("archive, history") << u"history"_s << archive << u" lines, the last one "_s;
        QTest::newRow("alarms, firmware")
            << u"firmware --image @sample"_s << alarm << u"; nothing of the image was sent"_s;
    }
    void whatIsHeardIsNoProgress()
    {
        QFETCH(QString, job);
        QFETCH(QByteArray, noise);
        QFETCH(QString, told);
        ktr::PseudoTerminal terminal;
        QVERIFY(terminal.open());
        QTimer timer;
        connect(&timer, &QTimer::timeout, &timer, [&] {
            terminal.readAll();
            terminal.write(noise);
        });
        timer.start(100);
        QProcess process;
        process.start(QStringLiteral(KTRCLI),
                      words(job + u" --timeout 1 --serial "_s + terminal.slavePath()));
        QTRY_VERIFY_WITH_TIMEOUT(process.state() == QProcess::NotRunning, 60000);
        QCOMPARE(process.exitCode(), 1);
        const QString errors = QString::fromUtf8(process.readAllStandardError());
        QVERIFY2(errors.contains("ktrcli: no progress for 1 s; heard: "_L1), qPrintable(errors));
        QVERIFY2(errors.contains(told), qPrintable(errors));
    }

    void overABadNetworkNoModuleLooksWholeThatIsNot()
    {
        if (!qEnvironmentVariableIsSet("KTR_THOROUGH")) {
            QSKIP(
                "takes minutes, most of them the module's waits; line_faults_test does the same in no time");
        }
        constexpr unsigned runs = 12; // at the same time
        struct Run
        {
            std::unique_ptr<Module> module;
            std::unique_ptr<ktr::test::BadProxy> proxy;
            QProcess transmitting;
        };
        std::array<Run, runs> all;
        for (unsigned i = 0; i < runs; ++i) {
            all[i].module =
                std::make_unique<Module>(words(u"simulate --ethernet 0 --save @bad%1.xml"_s.arg(i)));
            const quint16 port = all[i].module->address().section(u':', 1).toUShort();
            all[i].proxy = std::make_unique<ktr::test::BadProxy>(i * 2, port);
            all[i].transmitting.start(QStringLiteral(KTRCLI),
                                      words(u"transmit @sample --ethernet "_s + all[i].proxy->address()));
        }
        int whole = 0;
        for (unsigned i = 0; i < runs; ++i) {
            QVERIFY(all[i].transmitting.waitForFinished(30 * 60 * 1000));
            const Result held = ktrcli(u"compare @sample @bad%1.xml"_s.arg(i));
            const int code = all[i].transmitting.exitCode();
            QVERIFY2(code == 1 || (code == 0 && held.code == 0), qPrintable(held.output));
            whole += code == 0 ? 1 : 0;
        }
        QVERIFY2(whole > 0, "none arrived");
    }

    void aLogIsReplayedAndTheProgramComparedWithIt()
    {
        {
            Module module(words(u"simulate --serial @module --garbage 3 --merge"_s));
            QCOMPARE(ktrcli(u"transmit @sample --serial @module --log @replayed.txt"_s).code, 0);
        }
        // Whether the module is heard once more before the program ends is a matter of chance.
        QByteArray recorded = contentOf(path(u"replayed.txt"_s));
        const qsizetype lastOk = recorded.indexOf("com ----> OK", recorded.indexOf("com ----> v,"));
        recorded.truncate(recorded.indexOf('\n', lastOk) + 1);
        write(u"replayed.txt"_s, recorded);
        {
            Module module(words(u"simulate --serial @module --replay @replayed.txt"_s));
            QCOMPARE(ktrcli(u"transmit @sample --serial @module"_s).code, 0);
            QVERIFY(module.await(u"as in the log"_s));
            QCOMPARE(module.exitCode(), 0);
        }
        QByteArray log = contentOf(path(u"replayed.txt"_s));
        const qsizetype station = log.indexOf("PS Mill Lane");
        log[station] = 'Q';
        write(u"replayed.txt"_s, log);
        Module module(words(u"simulate --serial @module --replay @replayed.txt"_s));
        QCOMPARE(ktrcli(u"transmit @sample --serial @module"_s).code, 0);
        QVERIFY(module.await(
            u"differs at line %1: expected \"n,****,QS Mill Lane"_s.arg(log.left(station).count('\n') + 1)));
        QCOMPARE(module.exitCode(), 1);
    }

    void aFleetIsWatched()
    {
        Module fleet(words(u"simulate --fleet 3 --port 0 --nodes @nodes.xml --every 1"_s));
        const QByteArray before = contentOf(path(u"nodes.xml"_s));
        {
            Module monitor(words(u"monitor @nodes.xml"_s), u"\"kind\":\"alive\""_s);
            for (const QString &kind : {u"history"_s, u"values"_s, u"csq"_s}) {
                QVERIFY2(monitor.await(u"\"kind\":\""_s + kind), qPrintable(kind));
            }
            QVERIFY(monitor.await(u",\"station\":\"Hochbehälter Süd\",\"kind\":\""_s));
            QVERIFY(monitor.terminate());
        }
        QCOMPARE(contentOf(path(u"nodes.xml"_s)), before);
        QVERIFY(fleet.terminate());
    }

    void aRecordInUseIsBackedUpAndExported()
    {
        using namespace ktr;
        const QString used = path(u"record.sqlite"_s);
        const qint64 noon = QDateTime({2026, 3, 29}, {12, 0}, Qt::UTC).toMSecsSinceEpoch(); // beside a change
        constexpr int events = 4500;
        {
            EventLoopTimers timers;
            RecordWriter writer(used, openRecord(used), timers, [](const QString &) {});
            writer.add(StationRow{1, u"S;1"_s});
            writer.add(StationRow{2, u"T"_s});
            for (int i = 1; i <= events; ++i) {
                EventRow row{i, noon + i, 1 + i % 2, EventKind::Note, u"=text "_s + QString::number(i)};
                if (i == 3) {
                    row.kind = EventKind::StationRenamed;
                    row.detail = u"{\"before\":\"Old\"}"_s;
                }
                writer.add(row);
            }
            writer.add(HistoryRow{1, 18, noon, u"-1.5"_s, u"2"_s});
            writer.add(ValueRow{2, 1, noon, u"on"_s});
            writer.add(
                AlarmRow{.id = 7, .station = 2, .text = u"fail"_s, .first = noon, .recipients = {u"+49"_s}});
            QVERIFY(writer.flushNow());
            QCOMPARE(ktrcli(u"record backup @nodes.xml @copy.sqlite"_s).code, 0);
            QCOMPARE(ktrcli(u"record backup @nodes.xml @copy.sqlite"_s).code, 1); // nothing is written over
            const Result check = ktrcli(u"record check @nodes.xml"_s);
            QVERIFY2(check.code == 0 && check.output.contains(u" 4500\n"_s), qPrintable(check.output));
        }
        const auto exported = [this](const QString &options) {
            const Result result =
                ktrcli(u"record export @copy.sqlite -o @out.csv "_s + options, u"de_DE.UTF-8"_s);
            const QByteArray csv = contentOf(path(u"out.csv"_s));
            return result.code == 0 && csv.startsWith("\xEF\xBB\xBF") ? csv.split('\n').mid(1)
                                                                      : QByteArrayList();
        };
        const QByteArrayList all = exported({});
        QCOMPARE(all.size(), events + 1);
        QVERIFY2(all[0].startsWith("2026-03-29T") &&
                     all[0].endsWith(";4500;\"S;1\";note;\"'=text 4500\";;;\r"),
                 all[0].constData());
        const QString shown = QString::fromUtf8(all[0].left(all[0].indexOf(';')));
        QCOMPARE(QDateTime::fromString(shown, Qt::ISODateWithMs).toMSecsSinceEpoch(), noon + events);
        QCOMPARE(
            exported(u"--station T --from 2026-03-29T12:00:00.010Z --to 2026-03-29T12:00:00.020Z"_s).size(),
            6);
        QCOMPARE(exported(u"--text 4499"_s).size(), 2);
        QCOMPARE(exported(u"--from 2026-03-31"_s).size(), 1);
        QVERIFY(exported(u"--kind history"_s)[0].endsWith(";-1.5;2\r"));
        for (const QString &name : {u"T"_s, u"Old"_s}) {
            QVERIFY(exported(u"--kind values --station "_s + name)[0].startsWith("T;1;2026-"));
        }
        QVERIFY(exported(u"--kind alarms"_s)[0].contains(";7;T;module;2;fail;0;\"'+49\";"));
        QCOMPARE(ktrcli(u"record export @copy.sqlite -o @out.csv --station nobody"_s).code, 1);
        QByteArray copy = contentOf(path(u"copy.sqlite"_s));
        copy.replace(copy.size() / 2, 4096, QByteArray(4096, 'x'));
        write(u"copy.sqlite"_s, copy);
        QCOMPARE(ktrcli(u"record check @copy.sqlite"_s).code, 1);
        QVERIFY(QFile::remove(used));
    }

    void aReaderThatStandsStillStopsNothing()
    {
        Module fleet(words(u"simulate --fleet 3 --port 0 --nodes @nodes.xml --every 1"_s));
        const QByteArray name = QFile::encodeName(path(u"reader"_s));
        QCOMPARE(::mkfifo(name.constData(), 0600), 0);
        const int pipe = ::open(name.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
        while (::write(pipe, "\n", 1) == 1) {
        }
        QProcess monitor;
        monitor.setStandardOutputFile(path(u"reader"_s), QIODevice::Append);
        monitor.start(QStringLiteral(KTRCLI), words(u"monitor @nodes.xml --for 3"_s));
        QVERIFY(monitor.waitForFinished(60000));
        QCOMPARE(monitor.exitStatus(), QProcess::NormalExit);
        QCOMPARE(monitor.exitCode(), 1); // nobody has read it
        QVERIFY(monitor.readAllStandardError().contains("stands still; lines lost: "));
        QVERIFY(fleet.terminate() && QFile::remove(path(u"nodes.xml"_s)));

        Module module(words(u"simulate --serial @module --save @unread.xml"_s));
        QProcess transmit;
        transmit.setStandardOutputFile(path(u"reader"_s), QIODevice::Append);
        transmit.start(QStringLiteral(KTRCLI), words(u"transmit @sample --serial @module"_s));
        QVERIFY(module.await(u"saved"_s)); // in the end the reader goes
        ::close(pipe);
        QVERIFY(transmit.waitForFinished(60000));
        QCOMPARE(transmit.exitCode(), 1);
        QVERIFY(transmit.readAllStandardError().contains("; lines lost: 8"));
        QCOMPARE(ktrcli(u"compare @sample @unread.xml"_s).code, 0);
    }

    void aListThatIsWatchedIsNotWatchedTwiceUnlessThatIsWanted()
    {
        Module fleet(words(u"simulate --fleet 1 --port 0 --nodes @nodes.xml --every 1"_s));
        const QString alive = u"\"kind\":\"alive\""_s;
        {
            const Module monitor(words(u"monitor @nodes.xml"_s), alive);
            for (const QString &job :
                 {u"monitor @nodes.xml"_s, u"simulate --fleet 1 --port 0 --nodes @nodes.xml"_s}) {
                const Result refused = ktrcli(job);
                QCOMPARE(refused.code, 1);
                QCOMPARE(refused.errors.count(u'\n'), 1);
                QVERIFY2(refused.errors.contains(u"in use by"_s) && refused.errors.contains(u"ktrcli ("_s) &&
                             refused.errors.contains(QSysInfo::machineHostName()),
                         qPrintable(refused.errors));
            }
            const Result anyway = ktrcli(u"monitor @nodes.xml --even-if-watched --for 0"_s);
            QCOMPARE(anyway.code, 0);
            QVERIFY2(anyway.errors.contains(u"who announced last"_s), qPrintable(anyway.errors));
        }
        QVERIFY(!QFileInfo::exists(path(u"nodes.lock"_s)));
        QVERIFY(QDir().mkdir(path(u"nodes.lock"_s))); // as in a folder that cannot be written
        const Result unlocked = ktrcli(u"monitor @nodes.xml --for 0"_s);
        QVERIFY2(unlocked.code == 0 && unlocked.errors.contains(u"nodes.lock"_s),
                 qPrintable(unlocked.errors));
        QVERIFY(QDir().rmdir(path(u"nodes.lock"_s)) && QFile::remove(path(u"nodes.xml"_s)));
        QVERIFY(fleet.terminate());
    }

    void whatMayHoldAPinIsItsOwners()
    {
        const auto readers = [this](const QString &name) {
            return QFile::permissions(path(name)) & (QFileDevice::ReadGroup | QFileDevice::ReadOther);
        };
        const mode_t mask = ::umask(022);
        Module module(words(u"simulate --serial @module"_s));
        QCOMPARE(ktrcli(u"transmit @sample --serial @module --log @owners.txt"_s).code, 0);
        QCOMPARE(ktrcli(u"new @usual.xml"_s).code, 0);
        QCOMPARE(ktrcli(u"convert @sample @pin.xml"_s).code, 0);
        ::umask(mask);
        QVERIFY(contentOf(path(u"pin.xml"_s)).contains("<PIN>") && !readers(u"pin.xml"_s));
        QVERIFY(!readers(u"owners.txt"_s));
        QCOMPARE(readers(u"usual.xml"_s), QFileDevice::ReadGroup | QFileDevice::ReadOther);
    }

    void ctrlCEndsCleanly()
    {
        Module module(words(u"simulate --serial @module --silent-after 7"_s));
        QProcess process;
        process.start(QStringLiteral(KTRCLI), words(u"transmit @sample --serial @module"_s));
        QByteArray output;
        while (!output.contains("  3/" + QByteArray::number(steps::last))) {
            QVERIFY(process.waitForReadyRead(60000));
            output += process.readAllStandardOutput();
        }
        ::kill(static_cast<pid_t>(process.processId()), SIGINT);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 1);
        QCOMPARE(process.readAllStandardError(), "ktrcli: interrupted; stopped at step 3\n");
    }
};

QTEST_GUILESS_MAIN(KtrcliTest)
#include "ktrcli_test.moc"
