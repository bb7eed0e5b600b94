#include "support/module_process.h"
#include "support/test_files.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using ktr::test::contentOf;
using ktr::test::writeFile;
using Module = ktr::test::ModuleProcess;

namespace {

const QString sample = QStringLiteral(KTR_SOURCE_DIR "/samples/pumping-station.xml");

struct Result
{
    int code;
    QString output;
    QString errors;
};

} // namespace

/// Fields of files, series of files, and transmissions to many modules, by ktrcli.
class ManyStationsTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString path(const QString &name) const { return m_folder->filePath(name); }

    QProcessEnvironment environment() const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_DATA_HOME"_s, path(u"home"_s));
        environment.insert(u"LC_ALL"_s, u"C"_s);
        environment.remove(u"KTR_RECORD"_s);
        return environment;
    }

    Result ktrcli(const QStringList &words) const
    {
        QProcess process;
        process.setProcessEnvironment(environment());
        process.start(QStringLiteral(KTRCLI), words);
        if (!process.waitForFinished(240'000) || process.exitStatus() != QProcess::NormalExit) {
            return {-1, u"(crashed or hung)"_s, {}};
        }
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    Result get(const QString &file, const QString &field) const { return ktrcli({u"get"_s, file, field}); }

    /// Where the modules of a process listen.
    static QStringList addressesOf(const Module &modules)
    {
        QStringList addresses;
        for (const QString &line : modules.output().split(u'\n')) {
            if (line.startsWith("listening at "_L1)) {
                addresses += line.section(u' ', 2);
            }
        }
        return addresses;
    }

    /// A file for each address, and the list of both.
    QString makeFleet(const QStringList &addresses) const
    {
        QByteArray table = "identifier,mac\n";
        QByteArray list = "file;address\n";
        for (qsizetype i = 0; i < addresses.size(); ++i) {
            table += "S" + QByteArray::number(i) + ",01-02-" + QByteArray::number(i + 10) + "\n";
            list += "files/S" + QByteArray::number(i) + ".xml;" + addresses[i].toUtf8() + "\n";
        }
        const bool isMade = writeFile(path(u"table.csv"_s), table) && writeFile(path(u"list.csv"_s), list) &&
                            ktrcli({u"series"_s, sample, path(u"table.csv"_s), u"--to"_s, path(u"files"_s),
                                    u"--name"_s, u"{identifier}"_s, u"--overwrite"_s})
                                    .code == 0;
        return isMade ? path(u"list.csv"_s) : QString();
    }

    struct Row
    {
        QString station;
        QString verdict;
        int commands;
        QString trouble;
        QString step;
    };
    QList<Row> results() const
    {
        QList<Row> rows;
        for (const QByteArray &line : contentOf(path(u"result.csv"_s)).split('\n').mid(1)) {
            const QStringList cells = QString::fromUtf8(line).split(u';');
            if (cells.size() > 7) {
                rows += {cells[0], cells[3], cells[4].toInt(), cells[6], cells[7]};
            }
        }
        return rows;
    }

    bool holds(const QString &address, const QString &file) const
    {
        const QString held = path(u"held/%1.xml"_s.arg(address.section(u':', 0, 0)));
        return ktrcli({u"compare"_s, path(u"files/"_s + file), held}).code == 0;
    }

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void wrongUsageIsToldInOneLine()
    {
        const QString file = path(u"a.xml"_s);
        QVERIFY(QFile::copy(sample, file));
        const QByteArray before = contentOf(file);
        for (const QStringList &words :
             QList<QStringList>{{u"get"_s},
                                {u"get"_s, file},
                                {u"get"_s, file, u"--names"_s},
                                {u"get"_s, file, u"PIN"_s, u"--all"_s},
                                {u"get"_s, file, u"Label"_s},
                                {u"get"_s, file, u"Meldung"_s},
                                {u"set"_s, file},
                                {u"set"_s, file, u"PIN"_s},
                                {u"set"_s, file, u"=1"_s},
                                {u"set"_s, file, u"Pni=1234"_s},
                                {u"set"_s, file, u"Info Version=1"_s},
                                {u"set"_s, file, u"PIN=1"_s, u"--also"_s, file, u"--to"_s, path(u"b.xml"_s)},
                                {u"series"_s, file, file},
                                {u"transmit"_s, u"--ethernet"_s, u"127.0.0.1"_s},
                                {u"transmit"_s, file, u"--fleet"_s, path(u"list.csv"_s)},
                                {u"transmit"_s, u"--fleet"_s, path(u"l.csv"_s), u"--answer"_s},
                                {u"transmit"_s, file, u"--ethernet"_s, u"::1"_s, u"--jobs"_s, u"5"_s},
                                {u"transmit"_s, u"--fleet"_s, file, u"--jobs"_s, u"0"_s},
                                {u"simulate"_s, u"--modules"_s, u"3"_s},
                                {u"simulate"_s, u"--modules"_s, u"3"_s, u"--serial"_s, u"x"_s}}) {
            const Result result = ktrcli(words);
            QVERIFY2(result.code == 2 && result.errors.count(u'\n') == 1, qPrintable(words.join(u' ')));
        }
        QCOMPARE(contentOf(file), before);
    }

    void fieldsAreToldAndSet()
    {
        const QString file = path(u"a.xml"_s);
        QVERIFY(QFile::copy(sample, file));
        const Result set =
            ktrcli({u"set"_s, file, u"LV 4/Notification=Flow fail"_s, u"number 1=+447700900999"_s});
        QVERIFY2(set.code == 0 && set.errors.isEmpty() && set.output.count(u'\n') == 2,
                 qPrintable(set.errors));
        QCOMPARE(get(file, u"Grenzwert3.Alarm"_s).output, u"Flow fail\n"_s);
        QCOMPARE(get(file, u"number 1"_s).output, u"+447700900999\n"_s);
        const QString stamp = get(file, u"Info Version"_s).output.trimmed();
        QVERIFY(stamp != get(sample, u"Info Version"_s).output.trimmed());
        QVERIFY(ktrcli({u"commands"_s, file}).output.endsWith(u"v,"_s + stamp + u'\n'));
        const Result compared = ktrcli({u"compare"_s, sample, file});
        QCOMPARE(compared.output.count(u'\n'), 4); // two fields and two stamps
        QVERIFY(!QFileInfo::exists(file + u'~'));

        QCOMPARE(get(file, u"PIN"_s).output, u"****\n"_s);
        QCOMPARE(ktrcli({u"get"_s, file, u"PIN"_s, u"--secrets"_s}).output, u"4739\n"_s);
        const Result pin = ktrcli({u"set"_s, file, u"PIN=98765"_s});
        QVERIFY(pin.code == 0 && !pin.output.contains("98765"_L1) && !pin.output.contains("4739"_L1));

        const QByteArray json = ktrcli({u"get"_s, file, u"--all"_s, u"--json"_s}).output.toUtf8();
        const QJsonArray fields = QJsonDocument::fromJson(json).array();
        const Result listed = ktrcli({u"get"_s, file, u"--all"_s});
        QCOMPARE(fields.size(), listed.output.count(u'\n'));
        QVERIFY(listed.output.contains("Limit Value/LV 4/Notification = Flow fail\n"_L1));
        QVERIFY(!json.contains("98765") && !listed.output.contains("98765"_L1));
    }

    /// With one fault nothing is saved anywhere.
    void severalFilesAreSetTogetherOrNotAtAll()
    {
        const QString one = path(u"1.xml"_s);
        const QString two = path(u"2.xml"_s);
        QVERIFY(QFile::copy(sample, one) && QFile::copy(sample, two));
        const QByteArray before = contentOf(one);
        const auto set = [&](const QStringList &more) { return ktrcli(QStringList{u"set"_s, one} + more); };
        for (const QStringList &faulty :
             QList<QStringList>{{u"--also"_s, two, u"LV 1/Delay=5"_s, u"LV 2/Delay=soon"_s},
                                {u"--also"_s, path(u"missing.xml"_s), u"LV 1/Delay=5"_s},
                                {u"--also"_s, one, u"LV 1/Delay=5"_s}}) {
            QCOMPARE(set(faulty).code, 1);
            QCOMPARE(contentOf(one), before);
            QCOMPARE(contentOf(two), before);
        }
        QCOMPARE(set({u"--also"_s, two, u"LV 1/Delay=soon"_s, u"--anyway"_s}).code, 0);
        QCOMPARE(get(two, u"LV 1/Delay"_s).output, u"soon\n"_s);
        QCOMPARE(set({u"LV 1/Delay=6"_s, u"--to"_s, two}).code, 0); // what stands there is not what was read
        QCOMPARE(get(two + u'~', u"LV 1/Delay"_s).output, u"soon\n"_s);
        QCOMPARE(get(one, u"LV 1/Delay"_s).output, u"soon\n"_s);
    }

    /// As bash calls it: the words as they were typed, with quotation marks and backslashes.
    void theShellCompletesNames_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QStringList>("completed");
        QTest::newRow("command") << QStringList{u"ser"_s} << QStringList{u"series"_s};
        QTest::newRow("as on the page") << QStringList{u"get"_s, u"a.xml"_s, u"limit\\ value/lv\\ 4/hyst"_s}
                                        << QStringList{u"Limit\\ Value/LV\\ 4/Hysteresis"_s};
        QTest::newRow("in German, quoted") << QStringList{u"get"_s, u"a.xml"_s, u"\"Grenzwert/GW 4/Hyst"_s}
                                           << QStringList{u"\"Grenzwert/GW 4/Hysterese"_s};
        QTest::newRow("to be set") << QStringList{u"set"_s, u"a.xml"_s, u"GSM-Nummer5"_s}
                                   << QStringList{u"GSM-Nummer5="_s};
        QTest::newRow("none") << QStringList{u"get"_s, u"a.xml"_s, u"nothing"_s} << QStringList();
    }
    void theShellCompletesNames()
    {
        QFETCH(QStringList, words);
        QFETCH(QStringList, completed);
        const QString script =
            u". '%1'; COMP_WORDS=('%2' \"$@\"); COMP_CWORD=$#; _ktrcli; "
            "printf '%s\\n' \"${COMPREPLY[@]}\""_s.arg(
                QStringLiteral(KTR_SOURCE_DIR "/data/completions/ktrcli"), QStringLiteral(KTRCLI));
        QProcess bash;
        bash.start(u"bash"_s, QStringList{u"-c"_s, script, u"bash"_s} + words);
        QVERIFY(bash.waitForFinished());
        QCOMPARE(QString::fromUtf8(bash.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts), completed);
    }

    void aSeriesIsMadeOfATable()
    {
        const QByteArray table = "\xEF\xBB\xBF"
                                 "Kennung\tadresse\tPIN\tnumber 1\tGW 1/Meldung\r\n"
                                 "\"Werk \"\"Süd\"\"\"\t10.0.0.1\t1234\t'+49170111111\t\"a\tb; c\"\r\n"
                                 "Werk/Nord\t10.0.0.2\t\t\t\r\n";
        QVERIFY(writeFile(path(u"t.csv"_s), table));
        const Result made = ktrcli({u"series"_s, sample, path(u"t.csv"_s), u"--to"_s, path(u"out/deep"_s)});
        QVERIFY2(made.code == 1 && made.errors.contains("tab"_L1), qPrintable(made.errors)); // no SMS has one
        QVERIFY(!QFileInfo::exists(path(u"out"_s)));

        QVERIFY(writeFile(path(u"t.csv"_s), QByteArray(table).replace("a\tb; c", "a b; c")));
        const Result all = ktrcli({u"series"_s, sample, path(u"t.csv"_s), u"--to"_s, path(u"out/deep"_s)});
        QVERIFY2(all.code == 0 && all.output.contains("2 of 2 files have a new MAC"_L1),
                 qPrintable(all.errors));
        QCOMPARE(QDir(path(u"out/deep"_s)).entryList(QDir::Files),
                 (QStringList{u"KTR_Werk _Sued_.xml"_s, u"KTR_Werk_Nord.xml"_s}));
        const QString first = path(u"out/deep/KTR_Werk _Sued_.xml"_s);
        QCOMPARE(get(first, u"identifier"_s).output, u"Werk \"Sued\"\n"_s);
        QCOMPARE(get(first, u"number 1"_s).output, u"+49170111111\n"_s);
        QCOMPARE(get(first, u"LV 1/Notification"_s).output, u"a b; c\n"_s);
        const QString second = path(u"out/deep/KTR_Werk_Nord.xml"_s);
        QCOMPARE(get(second, u"number 1"_s).output, get(sample, u"number 1"_s).output); // an empty cell
        const QStringList macs{get(sample, u"MAC"_s).output, get(first, u"MAC"_s).output,
                               get(second, u"MAC"_s).output};
        QCOMPARE(QSet<QString>(macs.begin(), macs.end()).size(), 3);

        QCOMPARE(ktrcli({u"series"_s, sample, path(u"t.csv"_s), u"--to"_s, path(u"out/deep"_s)}).code, 1);
        QCOMPARE(
            ktrcli({u"series"_s, sample, path(u"t.csv"_s), u"--to"_s, path(u"out/deep"_s), u"--overwrite"_s})
                .code,
            0);
        QVERIFY(QFileInfo::exists(first + u'~'));
        QCOMPARE(get(first, u"MAC"_s).output, macs[1]); // it is the same station
    }

    /// What tells stations apart is not taken from the template in silence.
    void stationsOfASeriesAreToldApart()
    {
        const auto series = [&](const QByteArray &table) {
            return writeFile(path(u"t.csv"_s), table)
                       ? ktrcli({u"series"_s, sample, path(u"t.csv"_s), u"--to"_s, path(u"out"_s),
                                 u"--name"_s, u"{n}"_s, u"--overwrite"_s})
                       : Result{};
        };
        const Result alike = series("PIN\n1234\n4321\n");
        QCOMPARE(alike.code, 0);
        for (const QString &label : {u"Station ID"_s, u"Ethernet/IP"_s}) {
            QVERIFY2(alike.errors.contains(label) && alike.errors.contains("2 files"_L1),
                     qPrintable(alike.errors));
        }
        const Result some = series("identifier;address;mac\nA;10.0.0.1;01-02-03\nB;10.0.0.2;\nC;10.0.0.3;\n");
        QVERIFY2(some.code == 0 && some.errors.isEmpty() && some.output.contains("2 of 3"_L1),
                 qPrintable(some.errors));
        QVERIFY(get(path(u"out/1.xml"_s), u"MAC"_s).output.endsWith("01-02-03\n"_L1));
        QVERIFY(get(path(u"out/2.xml"_s), u"MAC"_s).output != get(path(u"out/3.xml"_s), u"MAC"_s).output);
    }

    /// A neighbour's MAC address counts before a transmission as it does for the check.
    void theLookBeforeATransmissionCountsWhatTheCheckFinds()
    {
        for (const QString &name : {u"a.xml"_s, u"b.xml"_s}) {
            QVERIFY(QFile::copy(sample, path(name)));
        }
        QCOMPARE(ktrcli({u"set"_s, path(u"b.xml"_s), u"identifier=B"_s}).code, 0);
        const Result check = ktrcli({u"check"_s, path(u"a.xml"_s)});
        QVERIFY2(check.output.contains("Ethernet/MAC 4\tb.xml"_L1), qPrintable(check.output));
        const Result sent = ktrcli({u"transmit"_s, path(u"a.xml"_s), u"--serial"_s, path(u"no-port"_s)});
        QVERIFY2(sent.output.contains(u"Problems: %1\n"_s.arg(check.output.count(u'\n'))),
                 qPrintable(sent.output));
    }

    void ofAFaultyTableNothingIsWritten_data()
    {
        QTest::addColumn<QByteArray>("table");
        QTest::addColumn<QStringList>("told");
        const auto row = [](const char *name, const QByteArray &table, const QStringList &told) {
            QTest::newRow(name) << table << told;
        };
        row("nothing", "", {u"no row"_s});
        row("titles alone", "identifier;address\n", {u"no row"_s});
        row("unknown title", "identifier;adress\nA;10.0.0.1\n", {u"column 2"_s, u"Ethernet IP"_s});
        row("one title for two", "PIN;pin\n1234;1234\n", {u"column 2"_s, u"twice"_s});
        row("all faults", "identifier;LV 1/Delay;PIN\nA;x;1234\nB;5;12\n",
            {u"row 2: LV 1/Delay: \"x\""_s, u"row 3: PIN: \"****\""_s, u"2 faults"_s});
        row("too long", "identifier;LV 1/Notification\nA;" + QByteArray(300, 'x') + "\nB;ok\n",
            {u"row 2: LV 1/Notification: \"xx"_s, u"of 160 at most"_s, u"1 fault"_s});
        row("without title", "identifier;\nA;x\n", {u"row 2: cell 2"_s});
        row("too many cells", "identifier\nA;x\n", {u"cell 2"_s});
        row("twice", "identifier;address;mac\nA;10.0.0.1;1\nA;10.0.0.1;1\n",
            {u"row 3: identifier: \"A\" stands in row 2"_s, u"address"_s});
        row("same but for case", "identifier\nwerk\nWerk\n", {u"same name"_s});
        row("the stamp", "identifier;Info Version\nA;1\n", {u"every edit"_s});
        row("unclosed quote", "identifier;PIN\nA;1234\n\"B;12\n", {u"t.csv: line 3"_s});
        row("quote closed too late", "identifier;PIN\n\"A;1234\nB;\"12\"\nC;1\n", {u"t.csv: line 2"_s});
        row("zeros", "identifier;PIN\nA\0B;1\n"_ba, {u"PIN"_s});
    }
    void ofAFaultyTableNothingIsWritten()
    {
        QFETCH(QByteArray, table);
        QFETCH(QStringList, told);
        QVERIFY(writeFile(path(u"t.csv"_s), table));
        const Result result = ktrcli({u"series"_s, sample, path(u"t.csv"_s), u"--to"_s, path(u"out"_s)});
        QCOMPARE(result.code, 1);
        for (const QString &words : told) {
            QVERIFY2(result.errors.contains(words), qPrintable(result.errors));
        }
        QVERIFY(!result.errors.contains("\"12\""_L1)); // the PIN
        QVERIFY(!QFileInfo::exists(path(u"out"_s)));
    }

    void ofAFaultyListNothingIsSent()
    {
        for (const QString &name : {u"a.xml"_s, u"b.xml"_s, u"c.xml"_s}) { // with one identifier
            QVERIFY(QFile::copy(sample, path(name)));
        }
        QCOMPARE(ktrcli({u"set"_s, path(u"b.xml"_s), u"identifier=B"_s}).code, 0);
        QDir().mkpath(path(u"empty"_s));
        const auto transmit = [&](const QByteArray &list) {
            return writeFile(path(u"list.csv"_s), list)
                       ? ktrcli({u"transmit"_s, u"--fleet"_s, path(u"list.csv"_s)})
                       : Result{};
        };
        for (const QByteArray &list :
             {QByteArray("file;address\n"), QByteArray("name;address\na.xml;127.0.0.1\n"),
              QByteArray("file;address\n;127.0.0.1\n"), QByteArray("file;address\na.xml;127.0.0.1:x\n"),
              QByteArray("file;address\na.xml;127.0.0.1\nb.xml;127.000.000.001:49111\n"),
              QByteArray("file;address\na.xml;127.0.0.1\n./a.xml;127.0.0.2\n"),
              QByteArray("file;address\nb.xml;127.0.0.1\n\"c.xml;127.0.0.2\n"),
              QByteArray("\xEF\xBB\xBF\"file\",address\n\"a.xml\",127.0.0.1\nc.xml,127.0.0.2\n")}) {
            const Result result = transmit(list);
            QVERIFY2(result.code == 1 && result.errors.contains("nothing was sent"_L1), list.constData());
        }
        QCOMPARE(ktrcli({u"transmit"_s, u"--fleet"_s, path(u"empty"_s)}).code, 1);
        const Result oneMac = transmit("file;address\na.xml;127.0.0.1\nb.xml;127.0.0.2\n");
        QVERIFY2(oneMac.code == 1 && oneMac.errors.contains("nothing was sent"_L1) &&
                     oneMac.errors.contains("(b.xml): the MAC address"_L1) &&
                     oneMac.errors.contains("(a.xml), too"_L1),
                 qPrintable(oneMac.errors));
        // A file that is of no use costs its station alone; here there is no other.
        const Result result = transmit("file;address;station\nd.xml;127.0.0.1;\na.xml;127.0.0.2;Other\n");
        QVERIFY(result.code == 1 && result.output.contains("0 of 2 stations"_L1));
        QVERIFY2(result.errors.contains("d.xml"_L1) && result.errors.contains("not of \"Other\""_L1),
                 qPrintable(result.errors));
    }

    /// One that is silent and one without a file do not stop the others.
    void aFleetIsTransmittedAndItsChangesAfterwards()
    {
        Module modules(
            {u"simulate"_s, u"--modules"_s, u"4"_s, u"--ethernet"_s, u"0"_s, u"--save"_s, path(u"held"_s)},
            u"all are listening"_s);
        const Module silent({u"simulate"_s, u"--ethernet"_s, u"0"_s, u"--silent-after"_s, u"0"_s});
        const QStringList addresses = addressesOf(modules);
        QCOMPARE(addresses.size(), 4);
        const QString list = makeFleet(addresses + QStringList{silent.address()});
        QVERIFY(!list.isEmpty());
        QFile listFile(list);
        QVERIFY(listFile.open(QIODevice::Append) && listFile.write("missing.xml;127.0.9.9\n") > 0);
        listFile.close();
        const QStringList words{u"transmit"_s,         u"--fleet"_s,   list,   u"--result"_s,
                                path(u"result.csv"_s), u"--timeout"_s, u"30"_s};
        const Result nowhere = ktrcli(words + QStringList{u"--receipts"_s, list}); // no folder
        QVERIFY2(nowhere.code == 1 && nowhere.errors.contains("nothing was sent"_L1),
                 qPrintable(nowhere.errors));
        QVERIFY(!QFileInfo::exists(path(u"result.csv"_s)));
        QVERIFY(QDir().mkpath(path(u"receipts"_s)) &&
                writeFile(path(u"receipts/S1.pdf"_s), "of another transmission"));
        const Result sent = ktrcli(words + QStringList{u"--receipts"_s, path(u"receipts"_s)});
        QCOMPARE(sent.code, 1);
        QVERIFY2(sent.output.contains("4 of 6 stations are whole (0"_L1), qPrintable(sent.output));
        QVERIFY2(sent.errors.contains("S4 ("_L1) && sent.errors.contains("missing.xml"_L1),
                 qPrintable(sent.errors));
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(results()[i].verdict, u"whole"_s);
            QVERIFY(results()[i].commands > 70);
            QVERIFY(holds(addresses[i], u"S%1.xml"_s.arg(i)));
            const QString receipt = i == 1 ? u"receipts/S1-2.pdf"_s : u"receipts/S%1.pdf"_s.arg(i);
            QVERIFY(contentOf(path(receipt)).startsWith("%PDF"));
        }
        QCOMPARE(results()[4].verdict, u"broken off"_s);
        QCOMPARE(results()[5].verdict, u"not begun"_s);

        // One number in all of them: only what differs is sent, and who has it already is left alone.
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(ktrcli({u"set"_s, path(u"files/S%1.xml"_s.arg(i)), u"number 2=+44123456789"_s}).code, 0);
        }
        QVERIFY(writeFile(list, contentOf(list).split('\n').first(5).join('\n')));
        const Result changed =
            ktrcli({u"transmit"_s, u"--fleet"_s, list, u"--changes"_s, u"--resume"_s, path(u"result.csv"_s)});
        QVERIFY2(changed.code == 0, qPrintable(changed.errors));
        QVERIFY2(changed.output.contains("4 of 4 stations are whole (1 of them"_L1),
                 qPrintable(changed.output));
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(results()[i].verdict, u"whole"_s);
            QCOMPARE(results()[i].commands, i < 3 ? 4 : 79); // version, numbers, clock, closing
            QVERIFY(holds(addresses[i], u"S%1.xml"_s.arg(i)));
        }

        // A module that somebody else has changed meanwhile gets all of it.
        QVERIFY(QFile::copy(sample, path(u"foreign.xml"_s)));
        QCOMPARE(ktrcli({u"set"_s, path(u"foreign.xml"_s), u"LV 1/Delay=77"_s}).code, 0);
        QProcess other; // whose memory is another one
        QProcessEnvironment elsewhere = environment();
        elsewhere.insert(u"XDG_DATA_HOME"_s, path(u"elsewhere"_s));
        other.setProcessEnvironment(elsewhere);
        other.start(QStringLiteral(KTRCLI),
                    {u"transmit"_s, path(u"foreign.xml"_s), u"--ethernet"_s, addresses[0], u"--anyway"_s});
        QVERIFY(other.waitForFinished(240'000));
        QCOMPARE(other.exitCode(), 0);
        QVERIFY(!holds(addresses[0], u"S0.xml"_s));
        const Result again =
            ktrcli({u"transmit"_s, u"--fleet"_s, list, u"--changes"_s, u"--result"_s, path(u"result.csv"_s)});
        QVERIFY2(again.code == 0 && again.output.contains("another version"_L1), qPrintable(again.output));
        QVERIFY(results()[0].commands > 70);
        QVERIFY(holds(addresses[0], u"S0.xml"_s));
        QCOMPARE(results()[1].commands, 3);
        QVERIFY(modules.terminate());
    }

    /// Ended in the middle, by Ctrl+C and by kill: the next run has only the rest to do.
    void aBrokenRunGoesOn_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("Ctrl+C") << SIGINT;
        QTest::newRow("kill") << SIGKILL;
    }
    void aBrokenRunGoesOn()
    {
        QFETCH(int, signal);
        QVERIFY(QFile::copy(sample, path(u"start.xml"_s))); // with a version, by which they are known again
        QCOMPARE(ktrcli({u"set"_s, path(u"start.xml"_s), u"LV 1/Delay=77"_s}).code, 0);
        const Module modules({u"simulate"_s, u"--modules"_s, u"3"_s, u"--ethernet"_s, u"0"_s, u"--hold"_s,
                              path(u"start.xml"_s), u"--save"_s, path(u"held"_s)},
                             u"all are listening"_s);
        const QStringList addresses = addressesOf(modules);
        const QString list = makeFleet(addresses);
        QVERIFY(!list.isEmpty());
        const QStringList words{u"transmit"_s,         u"--fleet"_s, list,  u"--result"_s,
                                path(u"result.csv"_s), u"--jobs"_s,  u"1"_s};
        Module first(words, u" 1/3  "_s, environment()); // the first has ended, the second is begun
        QVERIFY(first.await(u"1/3"_s));
        const QString before = ktrcli({u"transmissions"_s}).output;
        // Until the memory knows some commands of the second.
        QTRY_VERIFY_WITH_TIMEOUT(
            ktrcli({u"transmissions"_s, u"show"_s, u"2"_s, u"--json"_s}).output.count("\"step\""_L1) > 8,
            60'000);
        QCOMPARE(::kill(static_cast<pid_t>(first.id()), signal), 0);
        QCOMPARE(first.exitCode() == 1, signal == SIGINT);
        QList<Row> rows = results();
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows[0].verdict, u"whole"_s);
        if (signal == SIGINT) {
            QCOMPARE(rows[1].verdict, u"broken off"_s);
            QVERIFY2(rows[1].step.toInt() > 2, contentOf(path(u"result.csv"_s)));
            QVERIFY(rows[1].trouble.contains("interrupted"_L1));
        }
        QCOMPARE(rows[2].verdict, u"not begun"_s);
        const QByteArray killed =
            ktrcli({u"transmissions"_s, u"show"_s, u"2"_s, u"--json"_s}).output.toUtf8();
        const int stopped = signal == SIGINT
                                ? rows[1].step.toInt()
                                : QJsonDocument::fromJson(killed).object()["resume_step"_L1].toInt();
        QVERIFY(stopped > 5);

        const Result rest = ktrcli({u"transmit"_s, u"--fleet"_s, list, u"--resume"_s, path(u"result.csv"_s)});
        QVERIFY2(rest.code == 0 && rest.output.contains("3 of 3 stations are whole (1 of"_L1),
                 qPrintable(rest.output + rest.errors));
        rows = results();
        QCOMPARE(rows[1].commands, 79 - (stopped - 1)); // from there on, and its version
        QCOMPARE(rows[2].commands, 79);
        for (int i = 0; i < 3; ++i) {
            QVERIFY(holds(addresses[i], u"S%1.xml"_s.arg(i)));
        }
    }

    /// Files that were made and set together have one stamp, so one station's broken transmission tells the
    /// same version before as all others hold.
    void whatAKilledRunDidNotTouchGetsItsChangesAlone()
    {
        const Module modules(
            {u"simulate"_s, u"--modules"_s, u"3"_s, u"--ethernet"_s, u"0"_s, u"--save"_s, path(u"held"_s)},
            u"all are listening"_s);
        QStringList addresses = addressesOf(modules);
        QCOMPARE(addresses.size(), 3);
        auto halting = std::make_unique<Module>(
            QStringList{u"simulate"_s, u"--ethernet"_s, u"0"_s, u"--save"_s, path(u"S1"_s)});
        const QString line = halting->address();
        addresses.insert(1, line);
        const QString list = makeFleet(addresses);
        QVERIFY(!list.isEmpty());
        const QStringList words{u"transmit"_s, u"--fleet"_s, list, u"--result"_s, path(u"result.csv"_s)};
        const Result whole = ktrcli(words + QStringList{u"--jobs"_s, u"4"_s});
        QVERIFY2(whole.code == 0, qPrintable(whole.output + whole.errors));
        const auto file = [&](int i) { return path(u"files/S%1.xml"_s.arg(i)); };
        QCOMPARE(ktrcli({u"set"_s, file(0), u"--also"_s, file(1), u"--also"_s, file(2), u"--also"_s, file(3),
                         u"number 2=+44123456789"_s})
                     .code,
                 0);
        halting.reset(); // and then it falls silent after its version
        halting = std::make_unique<Module>(QStringList{u"simulate"_s, u"--ethernet"_s, line, u"--hold"_s,
                                                       path(u"S1"_s), u"--silent-after"_s, u"6"_s});
        const QStringList changes = words + QStringList{u"--changes"_s, u"--jobs"_s, u"1"_s};
        Module killed(changes, u" 1/4  "_s, environment());
        // The first one is whole again, the second in flight; the others are never begun.
        QTRY_VERIFY_WITH_TIMEOUT(
            ktrcli({u"transmissions"_s, u"show"_s, u"6"_s, u"--json"_s}).output.count("\"step\""_L1) > 1,
            60'000);
        QCOMPARE(::kill(static_cast<pid_t>(killed.id()), SIGKILL), 0);
        (void)killed.exitCode();
        halting.reset();
        const Module again({u"simulate"_s, u"--ethernet"_s, line, u"--hold"_s, path(u"S1"_s)});
        QVERIFY2(again.address() == line, qPrintable(again.output()));
        const Result rest = ktrcli(changes);
        QVERIFY2(rest.code == 0, qPrintable(rest.output + rest.errors));
        QCOMPARE(results()[0].commands, 3);
        for (int i = 1; i < 4; ++i) {
            QCOMPARE(results()[i].commands, 4);
        }
        QVERIFY(holds(addresses[0], u"S0.xml"_s) && holds(addresses[2], u"S2.xml"_s) &&
                holds(addresses[3], u"S3.xml"_s));

        // One stamp for all tells no module from another.
        QByteArray swapped = contentOf(list);
        swapped.replace(addresses[2].toUtf8(), "*").replace(addresses[3].toUtf8(), addresses[2].toUtf8());
        QVERIFY(writeFile(list, swapped.replace("*", addresses[3].toUtf8())));
        QCOMPARE(ktrcli(changes).code, 0);
        QCOMPARE(results()[2].commands, 79);
        QVERIFY(holds(addresses[3], u"S2.xml"_s));
    }
};

QTEST_GUILESS_MAIN(ManyStationsTest)
#include "many_stations_test.moc"
