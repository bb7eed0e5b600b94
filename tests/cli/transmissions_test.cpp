#include "link/command_sequence.h"
#include "support/module_process.h"
#include "support/test_files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using ktr::test::contentOf;
using Module = ktr::test::ModuleProcess;

namespace steps = ktr::steps;

namespace {

const QString sample = QStringLiteral(KTR_SOURCE_DIR "/samples/pumping-station.xml");
const QString sampleVersion = u"2026-11-16 09:30:00"_s;

struct Result
{
    int code;
    QString output;
    QString errors;
};

/// A saved configuration but for the time at which it was saved.
QByteArray withoutTime(QByteArray document)
{
    const qsizetype start = document.indexOf(" Nummer=");
    return document.remove(start, document.indexOf(" Version=", start) - start);
}

} // namespace

/// What ktrcli remembers of transmissions, and tells of them.
class TransmissionsTest : public QObject
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
        environment.insert(u"USER"_s, u"technician"_s);
        environment.remove(u"KTR_RECORD"_s);
        return environment;
    }

    Result ktrcli(const QStringList &words) const
    {
        QProcess process;
        process.setProcessEnvironment(environment());
        process.start(QStringLiteral(KTRCLI), words);
        if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit) {
            return {-1, u"(crashed or hung)"_s, {}};
        }
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    Result transmit(const QString &file) const
    {
        return ktrcli({u"transmit"_s, file, u"--serial"_s, path(u"module"_s), u"--answer"_s});
    }

    QList<QJsonObject> listed() const
    {
        QList<QJsonObject> rows;
        for (const QString &line : ktrcli({u"transmissions"_s, u"--json"_s}).output.split(u'\n')) {
            if (!line.isEmpty()) {
                rows += QJsonDocument::fromJson(line.toUtf8()).object();
            }
        }
        return rows;
    }

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void wrongUsageIsToldInOneLine()
    {
        for (const QString &line :
             {u"look"_s, u"show"_s, u"show x"_s, u"show 0"_s, u"show 1 a"_s, u"export 1"_s, u"list 1"_s,
              u"thin"_s, u"thin --older-than long"_s, u"list --older-than 5y"_s, u"show 1 --station a"_s,
              u"--since noon"_s, u"thin --older-than 5y --json"_s, u"--record here"_s}) {
            const Result result = ktrcli(u"transmissions "_s.append(line).split(u' '));
            QVERIFY2(result.code == 2 && result.errors.count(u'\n') == 1, qPrintable(line));
        }
        QCOMPARE(ktrcli({u"transmissions"_s}).output, u"no transmissions\n"_s);
        QCOMPARE(ktrcli({u"transmissions"_s, u"show"_s, u"1"_s}).code, 1);
        QVERIFY(!QFileInfo::exists(path(u"home"_s))); // looking makes nothing
    }

    void onlyChangesAreSentToAModuleThatProvesWhatItHolds()
    {
        const auto variant = [this](const QString &name, const QByteArray &number, const QByteArray &alive,
                                    const QByteArray &version) {
            QByteArray content = contentOf(sample);
            content.replace("+447700900147", number);
            content.replace("<Alivecycle>1440", "<Alivecycle>" + alive);
            content.replace(sampleVersion.toUtf8(), version);
            QFile file(path(name));
            return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
        };
        QVERIFY(variant(u"b.xml"_s, "+491711", "1440", "2026-12-01 08:00:00"));
        QVERIFY(variant(u"c.xml"_s, "+491711", "99", "2026-12-01 09:00:00"));
        Module module({u"simulate"_s, u"--serial"_s, path(u"module"_s), u"--save"_s, path(u"held.xml"_s)});
        const auto changes = [this](const QString &file, const QStringList &how) {
            return ktrcli(QStringList{u"transmit"_s, path(file), u"--serial"_s, path(u"module"_s)} + how);
        };
        const auto holds = [this](const QString &file) {
            return ktrcli({u"compare"_s, file, path(u"held.xml"_s)}).code == 0;
        };
        const Result unknown = changes(u"b.xml"_s, {u"--changes"_s});
        QCOMPARE(unknown.code, 1);
        QVERIFY(unknown.errors.contains("no transmission of that version is remembered"_L1));
        QVERIFY(listed().isEmpty());

        QCOMPARE(transmit(sample).code, 0);
        const Result first = changes(u"b.xml"_s, {u"--changes"_s});
        QVERIFY2(first.code == 0, qPrintable(first.errors));
        QVERIFY(first.output.contains("1 command differs\n"_L1));
        QVERIFY(first.output.contains("4 commands sent, 0 refused"_L1)); // version, numbers, clock, closing
        QTRY_VERIFY_WITH_TIMEOUT(holds(path(u"b.xml"_s)), 60000);
        // What the first one did not send is known from the one before.
        const Result second = changes(u"c.xml"_s, {u"--changes"_s, u"--answer"_s});
        QVERIFY2(second.code == 0, qPrintable(second.errors));
        QVERIFY2(second.output.contains("1 command differs\n"_L1), qPrintable(second.output));
        QTRY_VERIFY_WITH_TIMEOUT(holds(path(u"c.xml"_s)), 60000);

        // A file that it does not hold is no base, and nothing is sent.
        const Result refused = ktrcli({u"transmit"_s, path(u"b.xml"_s), u"--serial"_s, path(u"module"_s),
                                       u"--changes-from"_s, sample, u"--anyway"_s});
        QCOMPARE(refused.code, 1);
        QVERIFY(refused.errors.contains("does not hold what the changes were made from"_L1));
        QVERIFY(refused.errors.contains("2026-12-01 09:00:00"_L1));
        QVERIFY(holds(path(u"c.xml"_s)));
        const Result back = changes(u"b.xml"_s, {u"--changes-from"_s, path(u"c.xml"_s), u"--anyway"_s});
        QVERIFY2(back.code == 0, qPrintable(back.errors));
        QTRY_VERIFY_WITH_TIMEOUT(holds(path(u"b.xml"_s)), 60000);
        for (const QStringList &wrong : {QStringList{u"--changes"_s, u"--changes-from"_s, sample},
                                         QStringList{u"--changes"_s, u"--resume"_s, u"3"_s}}) {
            QCOMPARE(changes(u"b.xml"_s, wrong).code, 2);
        }
    }

    void aCommandSentAloneSpoilsTheProof()
    {
        const Module module({u"simulate"_s, u"--serial"_s, path(u"module"_s)});
        const auto send = [this](const QString &command) {
            return ktrcli({u"send"_s, command, u"--serial"_s, path(u"module"_s)}).code;
        };
        const auto changes = [this] {
            return ktrcli({u"transmit"_s, sample, u"--serial"_s, path(u"module"_s), u"--changes"_s});
        };
        QCOMPARE(transmit(sample).code, 0);
        QCOMPARE(send(u"H,0,0"_s), 0);
        QCOMPARE(send(u"V,§"_s), 0);
        QCOMPARE(listed().size(), 1); // neither changes the configuration
        QCOMPARE(send(u"C,none,too many"_s), 1);
        QCOMPARE(listed().size(), 2);
        const Result afterRefusal = changes();
        QVERIFY2(afterRefusal.code == 0, qPrintable(afterRefusal.errors));

        QCOMPARE(send(u"C,77"_s), 0);
        const Result spoilt = changes();
        QCOMPARE(spoilt.code, 1);
        QVERIFY2(spoilt.errors.contains(u"transmission 4 may have changed it since"_s),
                 qPrintable(spoilt.errors));
        const QJsonObject row = listed().first();
        QCOMPARE(row.value("verdict"_L1).toString(), u"single command"_s);
        QCOMPARE(row.value("line"_L1).toString(), path(u"module"_s));
        QVERIFY(ktrcli({u"transmissions"_s, u"show"_s, u"4"_s}).output.contains(u"confirmed  C,77\n"_s));
        QCOMPARE(ktrcli({u"transmissions"_s, u"export"_s, u"4"_s, path(u"none.xml"_s)}).code, 1);
        QVERIFY(!QFileInfo::exists(path(u"none.xml"_s)));

        QCOMPARE(transmit(sample).code, 0);
        const Result proved = changes();
        QVERIFY2(proved.code == 0, qPrintable(proved.errors));
        QCOMPARE(send(u"v,"_s + sampleVersion), 0); // any module can be given the text
        QVERIFY(changes().errors.contains(u"different configurations with that version"_s));
    }

    void whatWasTransmittedIsListedShownAndExported()
    {
        const Module module({u"simulate"_s, u"--serial"_s, path(u"module"_s)});
        const Result sent = transmit(sample);
        QVERIFY2(sent.code == 0 && sent.errors.isEmpty(), qPrintable(sent.errors));
        QCOMPARE(ktrcli({u"new"_s, path(u"other.xml"_s)}).code, 0);
        const Result another = ktrcli({u"transmit"_s, path(u"other.xml"_s), u"--serial"_s, path(u"module"_s),
                                       u"--answer"_s, u"--anyway"_s}); // its identifier is another one
        QVERIFY2(another.code == 0, qPrintable(another.errors));

        const QList<QJsonObject> rows = listed();
        QCOMPARE(rows.size(), 2);
        const QJsonObject newest = rows.first();
        QCOMPARE(newest.value("version_before"_L1).toString(), sampleVersion); // as the module told
        QCOMPARE(newest.value("verdict"_L1).toString(), u"whole"_s);
        const QJsonObject row = rows.last();
        QCOMPARE(row.value("file"_L1).toString(), QFileInfo(sample).absoluteFilePath());
        QCOMPARE(row.value("line"_L1).toString(), path(u"module"_s));
        QCOMPARE(row.value("version_sent"_L1).toString(), sampleVersion);
        QCOMPARE(row.value("user"_L1).toString(), u"technician"_s);
        QVERIFY(row.value("resume_step"_L1).isNull());
        const QString number = QString::number(row.value("n"_L1).toInt());
        const QString station = row.value("station"_L1).toString();
        QVERIFY(!station.isEmpty());

        const Result list = ktrcli({u"transmissions"_s, u"--station"_s, station});
        QVERIFY2(list.output.count(u'\n') == 2 && list.output.contains(station + u"  "_s),
                 qPrintable(list.output));
        QCOMPARE(ktrcli({u"transmissions"_s, u"--since"_s, u"2999-01-01"_s}).output, u"no transmissions\n"_s);
        QCOMPARE(ktrcli({u"transmissions"_s, u"-o"_s, path(u"list.csv"_s)}).code, 0);
        QCOMPARE(contentOf(path(u"list.csv"_s)).count("\r\n"), 3);

        const QByteArray shown = ktrcli({u"transmissions"_s, u"show"_s, number, u"--json"_s}).output.toUtf8();
        const QJsonArray commands = QJsonDocument::fromJson(shown).object().value("commands"_L1).toArray();
        QCOMPARE(commands.size(), steps::last + 1);
        for (const QJsonValue &command : commands) { // over a serial line nobody confirms the closing one
            QCOMPARE(command["outcome"_L1].toString(),
                     command["step"_L1] == steps::last ? u"sent"_s : u"confirmed"_s);
        }
        QCOMPARE(commands.last()["command"_L1].toString(), u"v,"_s + sampleVersion);
        const QString words = ktrcli({u"transmissions"_s, u"show"_s, number}).output;
        QVERIFY(words.contains(u"N,****,"_s) && words.contains(u"\n78    sent       v,"_s));

        const QString exported = path(u"exported.xml"_s);
        const Result done = ktrcli({u"transmissions"_s, u"export"_s, number, exported});
        QVERIFY2(done.code == 0 && done.errors.isEmpty(), qPrintable(done.errors));
        QCOMPARE(ktrcli({u"convert"_s, sample, path(u"saved.xml"_s)}).code, 0);
        QCOMPARE(withoutTime(contentOf(exported)), withoutTime(contentOf(path(u"saved.xml"_s))));
        QVERIFY(contentOf(exported).startsWith("<KTR>"));
        QCOMPARE(QFile::permissions(exported) & QFile::ReadOther, QFile::Permissions()); // it has the PIN

        QCOMPARE(ktrcli({u"transmissions"_s, u"thin"_s, u"--older-than"_s, u"1d"_s}).code, 0);
        QCOMPARE(listed().size(), 2);
    }

    void whatIsKnownNotToFitIsSentOnlyOnRequest()
    {
        const auto stamped = [this](const QString &name, const QByteArray &version) {
            QByteArray file = contentOf(sample);
            file.replace(sampleVersion.toLatin1(), version);
            QVERIFY(ktr::test::writeFile(path(name), file));
        };
        stamped(u"newer.xml"_s, "2027-01-02 10:00:00");
        stamped(u"older.xml"_s, "2020-01-02 10:00:00");
        const Module module({u"simulate"_s, u"--serial"_s, path(u"module"_s)});
        const Result newer = transmit(path(u"newer.xml"_s));
        QVERIFY2(newer.code == 0 && newer.errors.isEmpty(), qPrintable(newer.errors));
        QVERIFY2(newer.output.contains(u"(module: not known)\nLine: "_s), qPrintable(newer.output));
        const Result older = transmit(path(u"older.xml"_s));
        QCOMPARE(older.code, 1);
        QVERIFY2(older.errors.contains(u"A newer version, 2027-01-02 10:00:00, was transmitted"_s) &&
                     older.errors.endsWith(u"ktrcli: nothing was sent; --anyway transmits all the same\n"_s),
                 qPrintable(older.errors));
        QCOMPARE(listed().size(), 1);

        // Where nothing is remembered, the module itself tells before anything changes.
        QVERIFY(QDir(path(u"home"_s)).removeRecursively());
        const Result told = transmit(path(u"older.xml"_s));
        QCOMPARE(told.code, 1);
        QVERIFY2(told.errors.contains(u"The module holds a newer version, 2027-01-02 10:00:00"_s),
                 qPrintable(told.errors));
        QCOMPARE(listed().first().value("last_step"_L1).toInt(-1), 0);
        const Result anyway =
            ktrcli({u"transmit"_s, path(u"older.xml"_s), u"--serial"_s, path(u"module"_s), u"--anyway"_s});
        QVERIFY2(anyway.code == 0, qPrintable(anyway.errors));
        QCOMPARE(listed().first().value("version_before"_L1).toString(), u"2027-01-02 10:00:00"_s);
    }

    void aReceiptTellsEachCommandAndHidesThePin()
    {
        const Module module({u"simulate"_s, u"--serial"_s, path(u"module"_s)});
        const QStringList words{u"transmit"_s,     sample,        u"--serial"_s,
                                path(u"module"_s), u"--answer"_s, u"--receipt"_s};
        QCOMPARE(ktrcli(words + QStringList{path(u"receipt.txt"_s)}).code, 2);
        QVERIFY(listed().isEmpty());
        const Result sent = ktrcli(words + QStringList{path(u"receipt.json"_s)});
        QVERIFY2(sent.code == 0, qPrintable(sent.errors));
        const QJsonObject receipt = QJsonDocument::fromJson(contentOf(path(u"receipt.json"_s))).object();
        QCOMPARE(receipt.value("n"_L1).toInt(), 1);
        QCOMPARE(receipt.value("verdict"_L1).toString(), u"whole"_s);
        QCOMPARE(receipt.value("commands"_L1).toArray().size(), steps::last + 1);
        QVERIFY(receipt.value("configuration"_L1).toString().contains(u"<PIN></PIN>"_s));
        const QByteArray pin = contentOf(sample).mid(contentOf(sample).indexOf("<PIN>") + 5, 4);
        QVERIFY(!contentOf(path(u"receipt.json"_s)).contains("N," + pin));
        const Result again = ktrcli({u"transmissions"_s, u"receipt"_s, u"1"_s, path(u"receipt.pdf"_s),
                                     u"--language"_s, u"deutsch"_s});
        QVERIFY2(again.code == 0, qPrintable(again.errors));
        const QByteArray title = QStringEncoder(QStringConverter::Utf16BE)(u"bertragung an "_s);
        QVERIFY(contentOf(path(u"receipt.pdf"_s)).startsWith("%PDF"));
        QVERIFY(contentOf(path(u"receipt.pdf"_s)).contains(title));
        QCOMPARE(ktrcli({u"transmissions"_s, u"receipt"_s, u"1"_s, path(u"no/such/receipt.json"_s)}).code, 1);
        QCOMPARE(ktrcli({u"transmissions"_s, u"receipt"_s, u"1"_s, path(u"receipt"_s)}).code, 2);
    }

    void aDamagedMemoryIsToldByWhoeverOpensIt()
    {
        const QString memory = path(u"home/KTRconfig/transmissions.sqlite"_s);
        const Module module({u"simulate"_s, u"--serial"_s, path(u"module"_s)});
        QVERIFY(transmit(sample).code == 0 && QFile::exists(memory));
        for (int copy = 1; copy <= 2; ++copy) {
            QVERIFY(ktr::test::writeFile(memory, "no database, but some bytes"));
            const Result told = copy == 1 ? ktrcli({u"transmissions"_s}) : transmit(sample);
            QCOMPARE(told.code, 0);
            QVERIFY2(told.errors.contains(u"transmissions (%1).sqlite"_s.arg(copy)), qPrintable(told.errors));
        }
        QCOMPARE(listed().size(), 1);
    }

    void whatAServerThatIsAwayWasToRememberIsKept()
    {
        const Module module({u"simulate"_s, u"--serial"_s, path(u"module"_s)});
        const Result sent = ktrcli({u"transmit"_s, sample, u"--serial"_s, path(u"module"_s), u"--record"_s,
                                    u"postgresql://127.0.0.1:1/nowhere"_s});
        QCOMPARE(sent.code, 0);
        const QString file = path(u"home/KTRconfig/transmissions-waiting.sqlite"_s);
        QVERIFY2(sent.errors.contains(u"is kept in "_s + file), qPrintable(sent.errors));
        QVERIFY(QFile::exists(file));
    }

    /// It is tried before anything is sent, and what proves another transmission is not written over.
    void aReceiptThatCannotBeWrittenIsToldBefore()
    {
        const Module module({u"simulate"_s, u"--serial"_s, path(u"module"_s)});
        QVERIFY(QDir(m_folder->path()).mkpath(u"folder.json"_s));
        QVERIFY(ktr::test::writeFile(path(u"there.json"_s), "older"));
        const auto words = [this](const QString &receipt) {
            return QStringList{u"transmit"_s, sample,         u"--serial"_s, path(u"module"_s),
                               u"--answer"_s, u"--receipt"_s, path(receipt)};
        };
        for (const QString &receipt :
             {u"no/such.json"_s, u"no/such.pdf"_s, u"folder.json"_s, u"there.json"_s}) {
            const Result result = ktrcli(words(receipt));
            QVERIFY2(result.code == 1 && result.errors.contains(path(receipt)) &&
                         result.errors.contains("nothing was sent"_L1),
                     qPrintable(result.errors));
        }
        QVERIFY(listed().isEmpty());
        QCOMPARE(contentOf(path(u"there.json"_s)), "older");
        QCOMPARE(ktrcli(words(u"there.json"_s) + QStringList{u"--overwrite"_s}).code, 0);
        const QByteArray receipt = contentOf(path(u"there.json"_s));
        QVERIFY(receipt.startsWith('{'));
        for (const QString &action : {u"receipt"_s, u"export"_s}) {
            const QStringList again{u"transmissions"_s, action, u"1"_s, path(u"there.json"_s)};
            QCOMPARE(ktrcli(again).code, 1);
            QCOMPARE(contentOf(path(u"there.json"_s)), receipt);
            QCOMPARE(ktrcli(again + QStringList{u"--overwrite"_s}).code, 0);
        }
    }

    /// A text that no command can hold is refused; forced in, it is told to be missing in the module.
    void whatNoCommandHoldsIsNowhereTakenForTransmitted()
    {
        const QString file = path(u"long.xml"_s);
        QVERIFY(QFile::copy(sample, file));
        const QByteArray before = contentOf(file);
        const QString notification = u"LV 1/Notification="_s + QString(300, u'x');
        const QString station = u"Station ID="_s + QString(32'767, u's');
        for (const QString &assignment : {notification, station}) {
            const Result refused = ktrcli({u"set"_s, file, assignment});
            QVERIFY2(refused.code == 1 && refused.errors.contains("characters of 160 at most"_L1) &&
                         refused.errors.size() < 600,
                     qPrintable(refused.errors));
        }
        QCOMPARE(contentOf(file), before);
        QCOMPARE(ktrcli({u"set"_s, file, u"LV 1/Notification="_s + QString(60, u'x')}).code, 0);
        const Result forced = ktrcli({u"set"_s, file, notification, station, u"--anyway"_s});
        QCOMPARE(forced.code, 0);
        QCOMPARE(forced.errors.count(u"at most"_s), 2);
        QCOMPARE(ktrcli({u"set"_s, file, u"LV 2/Delay=5"_s}).code, 0); // it makes nothing worse

        const Module module({u"simulate"_s, u"--serial"_s, path(u"module"_s)});
        const auto send = [&](const QStringList &how) {
            return ktrcli(QStringList{u"transmit"_s, file, u"--serial"_s, path(u"module"_s), u"--answer"_s} +
                          how);
        };
        const Result sent = send({u"--receipt"_s, path(u"receipt.json"_s)});
        QVERIFY2(sent.code == 1 && sent.output.contains("transmitted in part"_L1) &&
                     sent.errors.contains("Too long: step"_L1),
                 qPrintable(sent.errors));
        const QJsonObject receipt = QJsonDocument::fromJson(contentOf(path(u"receipt.json"_s))).object();
        QCOMPARE(receipt.value("verdict"_L1).toString(), u"in part"_s);
        int refused = 0;
        for (const QJsonValue &command : receipt.value("commands"_L1).toArray()) {
            refused += command["outcome"_L1] == u"refused"_s ? 1 : 0;
        }
        QCOMPARE(refused, 2);
        const Result unproved = send({u"--changes"_s});
        QVERIFY2(unproved.code == 1 && listed().size() == 1, qPrintable(unproved.output));
        const Result ofFile = send({u"--changes-from"_s, file}); // whose version the module tells
        QVERIFY2(ofFile.code == 1 && ofFile.output.contains("2 refused"_L1), qPrintable(ofFile.output));

        // One long text does not push the others off the table.
        for (const QStringList &table :
             {QStringList{u"transmissions"_s}, {u"transmissions"_s, u"show"_s, u"1"_s}}) {
            const QStringList lines = ktrcli(table).output.split(u'\n');
            for (const QString &line : lines) {
                QVERIFY2(line.size() < 500, qPrintable(line.left(100)));
            }
        }
        QCOMPARE(listed().first().value("station"_L1).toString().size(), 32'767);
    }

    void oneThatBrokeOffOrWasKilledIsThereAsFarAsItCame_data()
    {
        QTest::addColumn<bool>("isKilled");
        QTest::newRow("broke off") << false;
        QTest::newRow("killed") << true;
    }
    void oneThatBrokeOffOrWasKilledIsThereAsFarAsItCame()
    {
        QFETCH(bool, isKilled);
        // The module does not read on after step 6.
        Module module({u"simulate"_s, u"--serial"_s, path(u"module"_s), u"--silent-after"_s, u"10"_s});
        QProcess process;
        process.setProcessEnvironment(environment());
        process.start(QStringLiteral(KTRCLI), {u"transmit"_s, sample, u"--serial"_s, path(u"module"_s),
                                               u"--timeout"_s, isKilled ? u"600"_s : u"1"_s});
        const auto resumeStep = [this] {
            const QList<QJsonObject> rows = listed();
            return rows.isEmpty() ? -1 : rows.first().value("resume_step"_L1).toInt(-1);
        };
        if (isKilled) {
            QTRY_COMPARE_WITH_TIMEOUT(resumeStep(), 6, 60000);
            ::kill(static_cast<pid_t>(process.processId()), SIGKILL);
        }
        QVERIFY(process.waitForFinished(60000));
        QCOMPARE(resumeStep(), 6);
        const QJsonObject row = listed().first();
        QCOMPARE(row.value("verdict"_L1).toString(), isKilled ? u"not ended"_s : u"broken off"_s);
        QCOMPARE(row.value("last_step"_L1).toInt(), 6);
        QCOMPARE(row.value("ended"_L1).isNull(), isKilled);
        QVERIFY(ktrcli({u"transmissions"_s}).output.contains(u"broken off before step 6"_s));
        QCOMPARE(ktrcli({u"transmissions"_s, u"show"_s, u"1"_s}).output.count(u"  sent  "_s), 7);
    }

    void aMemoryThatCannotBeWrittenDisturbsNoTransmission_data()
    {
        QTest::addColumn<QString>("record");
        QTest::newRow("no folder") << QString();
        QTest::newRow("no server") << u"postgresql://127.0.0.1:1/nowhere"_s;
    }
    void aMemoryThatCannotBeWrittenDisturbsNoTransmission()
    {
        QFETCH(QString, record);
        QVERIFY(ktr::test::writeFile(path(u"home"_s), "a file"));
        const Module module({u"simulate"_s, u"--serial"_s, path(u"module"_s)});
        QStringList words{u"transmit"_s, sample, u"--serial"_s, path(u"module"_s)};
        words += record.isEmpty() ? QStringList() : QStringList{u"--record"_s, record};
        const Result sent = ktrcli(words);
        QVERIFY2(sent.code == 0, qPrintable(sent.errors));
        QVERIFY2(sent.errors.startsWith(u"ktrcli: the transmission is not remembered: "_s) &&
                     sent.errors.count(u'\n') == 1,
                 qPrintable(sent.errors));
    }
};

QTEST_GUILESS_MAIN(TransmissionsTest)
#include "transmissions_test.moc"
