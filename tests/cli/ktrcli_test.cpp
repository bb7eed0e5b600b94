#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

namespace {

struct Result
{
    int code;
    QString output;
    QString errors;
};

void setLocale(QProcess &process, const QString &locale)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), locale);
    process.setProcessEnvironment(environment);
}

Result ktrcli(const QStringList &words, const QString &locale = QStringLiteral("C"))
{
    QProcess process;
    setLocale(process, locale);
    process.start(QStringLiteral(KTRCLI), words);
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit) {
        process.kill();
        process.waitForFinished();
        return {-1, QStringLiteral("(crashed or hung)"), {}};
    }
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

/// A virtual module in a process of its own.
class Module
{
public:
    explicit Module(const QString &link, const QStringList &options = {})
    {
        m_process.start(QStringLiteral(KTRCLI),
                        QStringList{QStringLiteral("simulate"), QStringLiteral("--serial"), link} + options);
        await(QStringLiteral("listening"));
    }
    ~Module()
    {
        m_process.terminate();
        m_process.waitForFinished();
    }
    bool await(const QString &event)
    {
        while (!m_output.contains(event)) {
            if (!m_process.waitForReadyRead(60000)) {
                return false;
            }
            m_output += QString::fromUtf8(m_process.readAllStandardOutput());
        }
        return true;
    }
    int terminate()
    {
        m_process.terminate();
        m_process.waitForFinished();
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

private:
    QProcess m_process;
    QString m_output;
};

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("(none)");
}

const QString sample = QStringLiteral(KTR_SOURCE_DIR "/samples/pumping-station.xml");

} // namespace

class KtrcliTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QString path(const QString &name) const { return m_folder.filePath(name); }

private Q_SLOTS:
    void wrongUsageIsToldInOneLineWithCode2_data()
    {
        QTest::addColumn<QStringList>("words");
        const auto row = [](const char *line) {
            QTest::newRow(line) << QString::fromUtf8(line).split(u' ', Qt::SkipEmptyParts);
        };
        row("");
        row("frobnicate");
        row("new");
        row("new a b");
        row("convert a");
        row("commands a --loud");
        row("transmit a");
        row("transmit a --serial b --ethernet c");
        row("transmit a --serial b --timeout soon");
        row("transmit a --serial b --timeout 0");
        row("simulate");
        row("simulate --serial a --split 0");
        row("send --serial a");
    }
    void wrongUsageIsToldInOneLineWithCode2()
    {
        QFETCH(QStringList, words);
        if (words.contains(QStringLiteral("a"))) {
            words.replaceInStrings(QRegularExpression(QStringLiteral("^a$")), sample);
        }
        const Result result = ktrcli(words);
        QCOMPARE(result.code, 2);
        QCOMPARE(result.output, "");
        QVERIFY2(result.errors.startsWith(QStringLiteral("ktrcli: ")), qPrintable(result.errors));
        QCOMPARE(result.errors.count(u'\n'), 1);
    }

    void everyCommandHelps()
    {
        const Result overview = ktrcli({QStringLiteral("--help")});
        QCOMPARE(overview.code, 0);
        for (const QString command :
             {"new", "convert", "commands", "compare", "transmit", "send", "simulate", "ports"}) {
            QVERIFY(overview.output.contains(QStringLiteral("\n  ") + command + u' '));
            const Result help = ktrcli({command, QStringLiteral("--help")});
            QCOMPARE(help.code, 0);
            QVERIFY2(help.output.contains(command + QStringLiteral(" [options]")), qPrintable(help.output));
        }
    }

    void theLocaleDecidesTheDecimalSeparator()
    {
        const QString file = path(QStringLiteral("reference.xml"));
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write("<KTR><Grenzwert16 Bezug='2.5' Alarm='\xC3\x84'/></KTR>");
        out.close();
        const QString point = QStringLiteral("18\tg,17,1,0,30,2.5,255,Ä\n");
        QVERIFY(ktrcli({QStringLiteral("commands"), file}).output.contains(point));
        QVERIFY(
            ktrcli({QStringLiteral("commands"), file}, QStringLiteral("en_US.UTF-8")).output.contains(point));
        QVERIFY(ktrcli({QStringLiteral("commands"), file, QStringLiteral("--answer")},
                       QStringLiteral("de_DE.UTF-8"))
                    .output.contains(QStringLiteral("18\tG,17,1,0,30,2,5,255,Ä\n")));
    }

    void convertingTwiceGivesTheSameFileButForDateAndTime()
    {
        const auto withoutTime = [](QByteArray document) {
            const qsizetype start = document.indexOf(" Nummer=");
            return document.remove(start, document.indexOf(" Version=", start) - start);
        };
        QCOMPARE(ktrcli({QStringLiteral("convert"), sample, path(QStringLiteral("1.xml"))}).code, 0);
        QCOMPARE(
            ktrcli({QStringLiteral("convert"), path(QStringLiteral("1.xml")), path(QStringLiteral("2.xml"))})
                .code,
            0);
        QCOMPARE(withoutTime(contentOf(path(QStringLiteral("1.xml")))), withoutTime(contentOf(sample)));
        QCOMPARE(withoutTime(contentOf(path(QStringLiteral("2.xml")))), withoutTime(contentOf(sample)));
    }

    void whatCannotBeDoneIsToldInOneLineWithCode1()
    {
        const QString garbage = path(QStringLiteral("garbage.xml"));
        QFile out(garbage);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write("<KTR><PIN>");
        out.close();
        for (const QStringList &words :
             {QStringList{QStringLiteral("convert"), path(QStringLiteral("none.xml")),
                          path(QStringLiteral("x"))},
              QStringList{QStringLiteral("convert"), sample, QStringLiteral("/dev/full")},
              QStringList{QStringLiteral("new"), path(QStringLiteral("no/such/folder.xml"))},
              QStringList{QStringLiteral("transmit"), garbage, QStringLiteral("--serial"),
                          QStringLiteral("/dev/null")},
              QStringList{QStringLiteral("transmit"), sample, QStringLiteral("--serial"),
                          path(QStringLiteral("none"))},
              QStringList{QStringLiteral("transmit"), sample, QStringLiteral("--ethernet"),
                          QStringLiteral("127.0.0.1")},
              QStringList{QStringLiteral("simulate"), QStringLiteral("--serial"), garbage}}) {
            const Result result = ktrcli(words);
            QVERIFY2(result.code == 1, qPrintable(words.join(u' ') + result.errors));
            QVERIFY2(result.errors.startsWith(QStringLiteral("ktrcli: ")), qPrintable(result.errors));
            QCOMPARE(result.errors.count(u'\n'), 1);
        }
        QCOMPARE(contentOf(garbage), "<KTR><PIN>"); // not replaced by a link
        // A file that is no configuration reads as the fall-backs, and that is told.
        const Result converted =
            ktrcli({QStringLiteral("convert"), garbage, path(QStringLiteral("fallback.xml"))});
        QCOMPARE(converted.code, 0);
        QCOMPARE(converted.errors.count(u'\n'), 1);
        QVERIFY(contentOf(path(QStringLiteral("fallback.xml"))).contains("Einheit=\"Volt\""));
    }

    void aModuleHoldsWhatWasTransmittedAndNoLogTellsThePin_data()
    {
        QTest::addColumn<QStringList>("faults");
        QTest::addColumn<QStringList>("options");
        const QString answer = QStringLiteral("--answer");
        QTest::newRow("plain") << QStringList{} << QStringList{};
        QTest::newRow("bad line, answered")
            << QStringList{QStringLiteral("--garbage"), QStringLiteral("7"), QStringLiteral("--merge"),
                           QStringLiteral("--split"), QStringLiteral("5")}
            << QStringList{answer};
    }
    void aModuleHoldsWhatWasTransmittedAndNoLogTellsThePin()
    {
        QFETCH(QStringList, faults);
        QFETCH(QStringList, options);
        const QString link = path(QStringLiteral("module"));
        const QString held = path(QStringLiteral("held.xml"));
        const QString log = path(QStringLiteral("log.txt"));
        QFile::remove(held);
        QFile::remove(log);
        Module module(link, QStringList{QStringLiteral("--save"), held} + faults);
        const Result sent = ktrcli(QStringList{QStringLiteral("transmit"), sample, QStringLiteral("--serial"),
                                               link, QStringLiteral("--log"), log} +
                                   options);
        QVERIFY2(sent.code == 0, qPrintable(sent.errors));
        QVERIFY(sent.output.contains(QStringLiteral("79 commands sent, 0 refused")));
        QVERIFY(module.await(QStringLiteral("saved")));
        const Result compared = ktrcli({QStringLiteral("compare"), sample, held});
        QVERIFY2(compared.code == 0, qPrintable(compared.output));
        QVERIFY(ktrcli({QStringLiteral("compare"), path(QStringLiteral("fallback.xml")), held}).code == 1);

        const QRegularExpression pinElement(QStringLiteral("<PIN>([0-9]{4})</PIN>"));
        const QString pin = pinElement.match(QString::fromUtf8(contentOf(sample))).captured(1);
        QCOMPARE(pin.size(), 4);
        const QString numbers = QStringLiteral("(?i)\\bn,") + pin;
        const QString logged = QString::fromUtf8(contentOf(log));
        QVERIFY(logged.contains(QStringLiteral("com ----> config")));
        QVERIFY(!logged.contains(QRegularExpression(numbers)));
        QVERIFY(!sent.output.contains(QRegularExpression(numbers)));

        const Result answered =
            ktrcli({QStringLiteral("send"), QStringLiteral("V,§"), QStringLiteral("--serial"), link});
        QCOMPARE(answered.code, 0);
        QVERIFY2(answered.output.contains(QStringLiteral("V,2.1.05,2026-11-16 09:30:00,KTR\n")),
                 qPrintable(answered.output));
        QCOMPARE(
            ktrcli({QStringLiteral("send"), QStringLiteral("h,0,1"), QStringLiteral("--serial"), link}).code,
            0);
        QCOMPARE(module.terminate(), 0);
        QVERIFY(!QFileInfo(link).isSymLink());
    }

    void anEndBeforeTheEndNamesTheStep_data()
    {
        QTest::addColumn<QStringList>("faults");
        QTest::addColumn<QString>("reason");
        // A line asks for the modem, two answer the version query, all others read a message.
        QTest::newRow("silence") << QStringList{QStringLiteral("--silent-after"), QStringLiteral("10")}
                                 << QStringLiteral("nothing was heard from the module for 1 s");
        QTest::newRow("hang-up") << QStringList{QStringLiteral("--hang-up-at"), QStringLiteral("109")}
                                 << QStringLiteral("the line is lost");
    }
    void anEndBeforeTheEndNamesTheStep()
    {
        QFETCH(QStringList, faults);
        QFETCH(QString, reason);
        const QString link = path(QStringLiteral("module"));
        Module module(link, faults);
        const Result result = ktrcli({QStringLiteral("transmit"), sample, QStringLiteral("--serial"), link,
                                      QStringLiteral("--timeout"), QStringLiteral("1")});
        QCOMPARE(result.code, 1);
        QVERIFY2(result.errors.startsWith(QStringLiteral("ktrcli: ") + reason), qPrintable(result.errors));
        QVERIFY2(result.errors.contains(QStringLiteral("; stopped at step 7")), qPrintable(result.errors));
        QCOMPARE(result.errors.count(u'\n'), 1);
    }

    void ctrlCEndsCleanly()
    {
        const QString link = path(QStringLiteral("module"));
        Module module(link, {QStringLiteral("--silent-after"), QStringLiteral("7")});
        QProcess process;
        process.start(QStringLiteral(KTRCLI),
                      {QStringLiteral("transmit"), sample, QStringLiteral("--serial"), link});
        QByteArray output;
        while (!output.contains("  3/78")) {
            QVERIFY(process.waitForReadyRead(60000));
            output += process.readAllStandardOutput();
        }
        ::kill(static_cast<pid_t>(process.processId()), SIGINT);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 1);
        QCOMPARE(process.readAllStandardError(), "ktrcli: interrupted; stopped at step 4\n");
    }
};

QTEST_GUILESS_MAIN(KtrcliTest)
#include "ktrcli_test.moc"
