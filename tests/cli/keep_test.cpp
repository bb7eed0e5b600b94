#include "cli/service_pulse.h"
#include "opmode/keeping/list_record.h"
#include "record/record_reader.h"
#include "support/manual_timers.h"
#include "support/module_process.h"
#include "support/notify_socket.h"
#include "support/test_files.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <asio/io_context.hpp>
#include <asio/post.hpp>

#include <csignal>
#include <future>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ktr::test::contentOf;
using ktr::test::ModuleProcess;
using ktr::test::NotifySocket;

/// `ktrcli keep` as a process of its own, with a fleet of virtual modules.
class KeepTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QString m_list = m_folder.filePath(u"north.xml"_s);
    QStringList m_fleet{u"simulate"_s, u"--fleet"_s, u"3"_s,       u"--port"_s, u"0"_s,
                        u"--nodes"_s,  m_list,       u"--every"_s, u"1"_s};

    struct Told
    {
        int code;
        QJsonObject state;
        QString words;
    };
    Told status() const
    {
        ModuleProcess words({u"keep"_s, m_list, u"--status"_s}, u"alarms: "_s);
        ModuleProcess object({u"keep"_s, m_list, u"--status"_s, u"--json"_s}, u"}\n"_s);
        const QJsonObject state = QJsonDocument::fromJson(object.output().toUtf8()).object();
        return {object.exitCode() == words.exitCode() ? object.exitCode() : -1, state, words.output()};
    }

private Q_SLOTS:
    void aListIsKeptUntilItsEndIsAskedFor()
    {
        ModuleProcess fleet(m_fleet);
        const QByteArray before = contentOf(m_list);
        const Told untouched = status();
        QVERIFY(untouched.code == 1 && !untouched.state.contains("keeper"_L1));
        ModuleProcess keeper({u"keep"_s, m_list}, u"watching; stations: 3, "_s);
        QVERIFY2(keeper.await(u"ktrcli: alarm: "_s), qPrintable(keeper.output()));
        ModuleProcess second({u"keep"_s, m_list}, u"the list is in use by"_s);
        QCOMPARE(second.exitCode(), 1);

        Told during{};
        QTRY_VERIFY2_WITH_TIMEOUT((during = status()).state["stations"_L1]["alive"_L1].toInt() == 3,
                                  qPrintable(during.words), 60'000);
        QCOMPARE(during.code, 0);
        QCOMPARE(during.state["keeper"_L1]["process"_L1].toInteger(), keeper.id());
        QVERIFY(during.state["alarms"_L1]["unacknowledged"_L1].toInt() > 0);
        QVERIFY(during.words.contains(u"ktrcli (%1)"_s.arg(keeper.id())) &&
                during.words.contains(u": 3 alive"));
        QVERIFY2(keeper.terminate(), qPrintable(keeper.output()));

        const Told after = status();
        QVERIFY2(after.code == 1 && after.words.contains(u"nobody watches"), qPrintable(after.words));
        QCOMPARE(after.state["stations"_L1].toObject(), QJsonObject({{u"all"_s, 3}}));
        QVERIFY(!QFileInfo::exists(m_folder.filePath(u"north.lock"_s)));
        QVERIFY(contentOf(m_list) != before && contentOf(m_list).contains("fail"));
        ktr::RecordReader record(ktr::ListRecord::pathFor(m_list));
        const ktr::AlarmPage alarms = record.findAlarms({}, {}, 100);
        QVERIFY2(alarms.status && !alarms.rows.isEmpty(), qPrintable(alarms.status.message()));
        std::optional<qint64> upto;
        QVERIFY(record.lastListFile({}, upto) && upto.has_value());
    }

    void theServiceManagerHearsHowItStands()
    {
        ModuleProcess fleet(m_fleet);
        NotifySocket manager(m_folder.filePath(u"notify"_s));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"NOTIFY_SOCKET"_s, QString::fromUtf8(manager.path()));
        environment.insert(u"WATCHDOG_USEC"_s, u"200000"_s);
        environment.remove(u"WATCHDOG_PID"_s);
        ModuleProcess keeper({u"keep"_s, m_list}, u"watching"_s, environment);
        QCOMPARE(manager.await("READY="), "READY=1");
        QVERIFY(manager.await("STATUS=").contains("stations: "));
        QCOMPARE(manager.await("WATCHDOG="), "WATCHDOG=1");

        const auto process = static_cast<pid_t>(keeper.id());
        ::kill(process, SIGSTOP);
        QTRY_VERIFY(contentOf(u"/proc/%1/stat"_s.arg(process)).contains(") T "));
        manager.clear();
        QCOMPARE(manager.await("WATCHDOG=", 1'000), ""); // none that is due comes
        ::kill(process, SIGCONT);
        QCOMPARE(manager.await("WATCHDOG="), "WATCHDOG=1");
        QVERIFY(keeper.terminate());
        QCOMPARE(manager.await("STOPPING="), "STOPPING=1");
    }

    void theJournalGetsUrgencies()
    {
        QProcess keeper;
        keeper.start(u"sh"_s,
                     {u"-c"_s, u"JOURNAL_STREAM=$(stat -Lc %d:%i /dev/stderr) exec \"$0\" keep none.xml"_s,
                      QStringLiteral(KTRCLI)});
        QVERIFY(keeper.waitForFinished(60'000));
        QCOMPARE(keeper.readAllStandardError(), "<3>none.xml: there is no such file\n");
    }

    void theServiceIsUnderstood()
    {
        const QString analyse = QStandardPaths::findExecutable(u"systemd-analyze"_s);
        if (analyse.isEmpty()) {
            QSKIP("systemd-analyze is not installed");
        }
        const QString name = u"ktrconfig-keep@.service"_s;
        QFile copy(m_folder.filePath(name));
        QVERIFY(copy.open(QIODevice::WriteOnly));
        copy.write(contentOf(QStringLiteral(KTR_SOURCE_DIR "/data/") + name)
                       .replace("/usr/bin/ktrcli", KTRCLI)); // which is not installed
        copy.close();
        QProcess verify;
        verify.setProcessChannelMode(QProcess::MergedChannels);
        verify.start(analyse, {u"verify"_s, copy.fileName()});
        QVERIFY(verify.waitForFinished(60'000));
        QCOMPARE(verify.readAll(), "");
        QCOMPARE(verify.exitCode(), 0);
    }

    /// One that the event loop does not see would go on for ever.
    void aThreadThatStandsStillEndsTheSignsOfLife()
    {
        NotifySocket manager(m_folder.filePath(u"hung"_s));
        qputenv("NOTIFY_SOCKET", manager.path());
        qputenv("WATCHDOG_USEC", "30000000");
        ktr::test::ManualTimers timers;
        ktr::IoThread io;
        quint64 work = 0;
        ktr::cli::ServicePulse pulse(timers, io, {[&] { return work; }, [] { return QString(); }});
        const auto isAlive = [&] {
            manager.clear();
            timers.advance(15s);
            const bool told = !manager.await("WATCHDOG=", 0).isEmpty();
            io.run([] {}); // what it was asked has been answered
            return told;
        };
        pulse.start();
        io.run([] {});
        QVERIFY(isAlive());
        {
            std::promise<void> hung;
            asio::post(io.context(), [&] { hung.get_future().wait(); });
            timers.advance(15s); // asks
            manager.clear();
            timers.advance(60s);
            const QByteArray told = manager.await("WATCHDOG=", 0);
            hung.set_value();
            io.run([] {});
            QCOMPARE(told, "");
        }
        QVERIFY(isAlive());
        for (work = 1; work < 100; ++work) { // many pieces in a row are no standstill
            QVERIFY(isAlive());
        }
        int beats = 0;
        while (isAlive() && beats < 1000) {
            ++beats;
        }
        QCOMPARE(beats, ktr::cli::ServicePulse::longestWork / 15s);
        work = 0;
        QVERIFY(isAlive());
        qunsetenv("NOTIFY_SOCKET");
        qunsetenv("WATCHDOG_USEC");
    }
};

QTEST_GUILESS_MAIN(KeepTest)
#include "keep_test.moc"
