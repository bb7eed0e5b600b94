#include "forward/alarm_command.h"
#include "support/kept_stations.h"
#include "support/test_files.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>

using namespace ktr;
using test::KeptStations;

class AlarmCommandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void cleanup() { m_folder.reset(); }

    void eachAlarmIsAnnouncedOnceAlsoByTheNextRun()
    {
        {
            KeptStations list(m_folder->path());
            list.add(QStringLiteral("S"));
            AlarmCommand command(*list.mode, list.timers, script("cat >> alarms; exit 0"));
            list.say(0, "M,Alarm DI1 fail");
            QTRY_COMPARE_WITH_TIMEOUT(notes(list).size(), 1, 30'000);
            QCOMPARE(notes(list)[0].text, "announced: exit code 0");
            QCOMPARE(notes(list)[0].alarm, 1);
        }
        {
            KeptStations list(m_folder->path()); // nothing announces
            list.say(0, "M,Alarm DI2 fail");
        }
        KeptStations list(m_folder->path());
        AlarmCommand command(*list.mode, list.timers, script("cat >> alarms; exit 0"));
        QTRY_COMPARE_WITH_TIMEOUT(announced().size(), 2, 30'000);
        QTRY_COMPARE_WITH_TIMEOUT(command.running(), std::size_t{0}, 30'000);
        QCOMPARE(announced(),
                 (QStringList{QStringLiteral("Alarm DI1 fail"), QStringLiteral("Alarm DI2 fail")}));
    }

    void whatFailsIsNotedAndTriedAgain_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("told");
        QTest::newRow("exit code") << "echo no line >&2; exit 3"
                                   << "not announced: exit code 3: no line";
        QTest::newRow("a signal") << "kill -9 $$"
                                  << "not announced: ended by signal 9";
        QTest::newRow("too long") << "sleep 1000 | cat"
                                  << "not announced: killed after 0.3 s";
        QTest::newRow("no program") << ""
                                    << "not announced: /no/such/program: ";
    }
    void whatFailsIsNotedAndTriedAgain()
    {
        QFETCH(QString, script);
        QFETCH(QString, told);
        AlarmCommand::Options options = this->script(script);
        options.longest = Milliseconds(300);
        options.retry = Milliseconds(1);
        if (script.isEmpty()) {
            options.program = QStringLiteral("/no/such/program");
        }
        KeptStations list(m_folder->path());
        list.add(QStringLiteral("S"));
        AlarmCommand command(*list.mode, list.timers, options);
        QSignalSpy failures(&command, &AlarmCommand::failed);
        list.say(0, "M,Alarm DI1 fail");
        QTRY_VERIFY_WITH_TIMEOUT(failures.size() >= 2, 30'000);
        QVERIFY2(failures[0][0].toString().startsWith(told), qPrintable(failures[0][0].toString()));
        QTRY_VERIFY_WITH_TIMEOUT(!notes(list).isEmpty(), 30'000);
        QVERIFY(notes(list).last().text.startsWith(told));
        QVERIFY(list.mode->acknowledgeAlarms({1}));
        QTRY_COMPARE_WITH_TIMEOUT(command.running(), std::size_t{0}, 30'000);
    }

    void aStormRunsAFewAtATime()
    {
        constexpr int count = 30;
        KeptStations list(m_folder->path());
        list.add(QStringLiteral("S"));
        std::size_t most = 0;
        AlarmCommand::Options options = script("cat >> alarms; exit 0");
        options.again = Milliseconds(1);
        AlarmCommand command(*list.mode, list.timers, options);
        for (int i = 0; i < count; ++i) {
            list.say(0, "M,Alarm " + QByteArray::number(i) + " fail");
        }
        const auto areAllAnnounced = [&] {
            most = std::max(most, command.running());
            const QStringList texts = announced();
            return QSet<QString>(texts.begin(), texts.end()).size() == count && texts.size() > count;
        };
        QTRY_VERIFY_WITH_TIMEOUT(areAllAnnounced(), 60'000); // and then some of them again
        QVERIFY(most > 1 && most <= options.mostAtOnce);
    }

private:
    AlarmCommand::Options script(const QString &text) const
    {
        return {QStringLiteral("/bin/sh"),
                {QStringLiteral("-c"), QStringLiteral("cd '%1'; %2").arg(m_folder->path(), text)}};
    }
    /// The texts of the alarms that the script got.
    QStringList announced() const
    {
        QStringList texts;
        for (const QByteArray &line :
             test::contentOf(m_folder->filePath(QStringLiteral("alarms"))).split('\n')) {
            if (!line.isEmpty()) {
                texts += QJsonDocument::fromJson(line).object()[QLatin1String("text")].toString();
            }
        }
        return texts;
    }
    static QList<EventRow> notes(KeptStations &list)
    {
        RecordReader reader(list.mode->recordPath());
        EventFilter filter;
        filter.kinds = {EventKind::Note};
        filter.ofAlarms = true;
        return reader.findEvents(filter, {}, 1'000).rows;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(AlarmCommandTest)
#include "alarm_command_test.moc"
