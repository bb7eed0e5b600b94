#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString sample = QStringLiteral(KTR_SOURCE_DIR "/samples/pumping-station.xml");

struct Result
{
    int code;
    QString output;
    QString errors;
};

} // namespace

class ForetellTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;

    static Result foretell(const QStringList &words, const QString &zone = u"UTC"_s)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"LC_ALL"_s, u"C"_s);
        environment.insert(u"TZ"_s, zone);
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(KTRCLI), QStringList{u"foretell"_s} + words);
        if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit) {
            return {-1, {}, {}};
        }
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    QString table(const QByteArray &content)
    {
        const QString path = m_folder.filePath(u"values.csv"_s);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("the table cannot be written");
        }
        return path;
    }

private Q_SLOTS:
    void wrongUsageIsToldInOneLine()
    {
        for (const QString &line :
             {u"--days 0"_s, u"--days 93"_s, u"--days x"_s, u"--from noon"_s, u"--from 2026-02-30"_s,
              u"--station a"_s, u"more"_s, u"--assume delay-in-seconds"_s, u"--assume module-clock=no"_s,
              u"--assume none=no"_s}) {
            const Result result = foretell(QStringList{sample} + line.split(u' '));
            QVERIFY2(result.code == 2 && result.errors.count(u'\n') == 1, qPrintable(line));
        }
        QCOMPARE(foretell({}).code, 2);
    }

    void filesThatCannotBeReadAreTold()
    {
        QCOMPARE(foretell({m_folder.filePath(u"none.xml"_s)}).code, 1);
        for (const QString &path : {m_folder.path(), table("hello;world\n")}) {
            const Result result = foretell({sample, u"--values"_s, path});
            QVERIFY2(result.code == 1 && result.errors.contains(path), qPrintable(result.errors));
        }
    }

    void whatIsAssumedIsReadOtherwise()
    {
        const QStringList words{sample, u"--from"_s, u"2026-12-31"_s, u"--days"_s, u"3"_s, u"--json"_s};
        const Result usual = foretell(words);
        const Result otherwise = foretell(words + QStringList{u"--assume"_s, u"order-at-equal-times=no"_s,
                                                              u"--assume"_s, u"start-date-holds=no"_s});
        QCOMPARE(usual.code, 0);
        QCOMPARE(otherwise.code, 0);
        QVERIFY(usual.output.contains(u"\"holds\":true"_s) && !usual.output.contains(u"\"holds\":false"_s));
        QVERIFY2(otherwise.output.contains(u"on any date"_s) &&
                     otherwise.output.contains(u"\"holds\":false"_s),
                 qPrintable(otherwise.output));
        QCOMPARE(foretell(words + QStringList{u"--assume"_s, u"start-date-holds=yes"_s}).output,
                 usual.output);
    }

    void switchingsAndTheirAssumptionsAreListed()
    {
        const Result result = foretell({sample, u"--from"_s, u"2026-12-31"_s, u"--days"_s, u"3"_s});
        QCOMPARE(result.code, 0);
        QCOMPARE(result.errors, QString());
        const QStringList lines = result.output.split(u'\n');
        QCOMPARE(lines.front(), u"31.12.2026 00:00 to 03.01.2027 00:00"_s);
        QVERIFY(lines.contains(
            u"Fri 01.01.2027 08:00  calls Duty desk Ashby works, value 1  switch point 13: 11 on holidays  [2, 8]"_s));
        QVERIFY(lines.contains(
            u"Sat 02.01.2027 09:00  13 AnalogOut 1 = 38.5  switch point 10: 8 weekend  [2, 3]"_s));
        QVERIFY(lines.contains(u"  Fri 01.01.2027"_s));
        QVERIFY(lines.contains(u"  switch point 15: 13 once: switches on 15.03.2027 09:00"_s));
        // Each number that is named has its sentence.
        for (const QString &number : {u"  [2] "_s, u"  [3] "_s, u"  [8] "_s}) {
            QVERIFY2(result.output.contains(u'\n' + number), qPrintable(number));
        }
    }

    void valuesGiveNotificationsAsJson()
    {
        const QString path =
            table("time;channel;value\n2026-12-31 06:00;9;3,5\n2026-12-31 06:40;9;3\nx;9;1\n");
        const Result result =
            foretell({sample, u"--values"_s, path, u"--notifications"_s, u"--json"_s, u"--days"_s, u"1"_s});
        QCOMPARE(result.code, 0);
        QVERIFY(result.errors.contains(u"line 4: \"x\" is no time"_s));
        QList<QJsonObject> notified;
        QStringList assumed;
        for (const QString &line : result.output.split(u'\n', Qt::SkipEmptyParts)) {
            const QJsonObject object = QJsonDocument::fromJson(line.toUtf8()).object();
            const QString kind = object[u"kind"].toString();
            QVERIFY2(!kind.isEmpty() && kind != u"switched", qPrintable(line));
            if (kind == u"notified" || kind == u"repeated") {
                notified += object;
            } else if (kind == u"assumption") {
                assumed += object[u"name"].toString();
            }
        }
        QCOMPARE(notified.size(), 2);
        QCOMPARE(notified[0][u"time"].toString(), u"2026-12-31T06:01:00"_s);
        QCOMPARE(notified[0][u"limitValue"].toInt(), 1);
        const QJsonArray recipients = notified[0][u"recipients"].toArray();
        QCOMPARE(recipients.size(), 2);
        QCOMPARE(recipients[1].toObject()[u"number"].toString(), u"+447700900147"_s);
        QCOMPARE(notified[1][u"time"].toString(), u"2026-12-31T06:31:00"_s);
        QCOMPARE(notified[1][u"repetition"].toInt(), 1);
        for (const QJsonValue &name : notified[1][u"restsOn"].toArray()) {
            QVERIFY(assumed.contains(name.toString()));
        }
    }

    void aChangeOfTheClocksIsTold()
    {
        const Result result =
            foretell({sample, u"--from"_s, u"2027-03-27"_s, u"--days"_s, u"2"_s}, u"Europe/London"_s);
        QVERIFY(result.output.contains(
            u"28.03.2027 01:00 by the module's clock: from then on it is 02:00 here"_s));
        QVERIFY(result.output.contains(u"Sun 28.03.2027 05:00  (06:00 here)"_s));
        QVERIFY(result.output.contains(u"\n  [1] "_s));
    }
};

QTEST_GUILESS_MAIN(ForetellTest)

#include "foretell_test.moc"
