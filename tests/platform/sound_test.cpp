#include "platform/sound.h"
#include "support/manual_timers.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace ktr;

/// Programs that play sounds are scripts here.
class SoundTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        for (const char *name : {"PATH", "XDG_RUNTIME_DIR"}) {
            qputenv(name, QFile::encodeName(m_folder->path()));
        }
    }

    void aSoundIsPlayedByTheProgramThatIsThere()
    {
        const QString played = m_folder->filePath("played");
        addProgram("aplay", "/bin/cp \"$2\" '" + played + "'");
        QCOMPARE(QProcess::execute("/usr/bin/mkfifo", {m_folder->filePath("KTRconfig-alarm.wav")}), 0);
        const auto content = [&played] {
            QFile file(played);
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        QCOMPARE(outcomeOf("of another version"), "by aplay");
        QCOMPARE(content(), "of another version");
        QCOMPARE(outcomeOf("tones"), "by aplay");
        QCOMPARE(content(), "tones");
        // The one file that stays of any number of programs that are killed now.
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files, QDir::Name | QDir::IgnoreCase),
                 QStringList({"aplay", "KTRconfig-alarm.wav", "played"}));
    }

    void whereNothingCanBeHeardTheReasonIsTold()
    {
        QCOMPARE(outcomeOf("tones"), "none of the programs pw-play, paplay and aplay is installed");
        addProgram("pw-play", "echo 'cannot connect' >&2; echo 'more' >&2; exit 1");
        addProgram("paplay", "exit 1");
        QCOMPARE(outcomeOf("tones"), "pw-play: cannot connect; paplay: it failed without a reason");
        QFile::remove(m_folder->filePath("paplay"));
        addProgram("paplay", "exit 0");
        QCOMPARE(outcomeOf("tones"), "by paplay"); // though the first one still fails
    }

    void aServiceThatDoesNotAnswerIsNotWaitedForForEver()
    {
        addProgram("aplay", "exec /bin/sleep 1000");
        QStringList told;
        Sound sound(m_timers, "alarm", "tones");
        const auto take = [&told](const SoundOutcome &outcome) { told += textOf(outcome); };
        sound.play(take);
        sound.play(take); // is the same sound
        QVERIFY(sound.isPlaying() && told.isEmpty());
        m_timers.advance(Milliseconds(10'000));
        QTRY_COMPARE(told, QStringList(2, "aplay: the sound service does not answer"));
        QVERIFY(!sound.isPlaying());
    }

private:
    static QString textOf(const SoundOutcome &outcome)
    {
        return outcome.played ? "by " + outcome.by : outcome.played.message();
    }

    QString outcomeOf(const QByteArray &wav)
    {
        QString told;
        Sound sound(m_timers, "alarm", wav);
        sound.play([&told](const SoundOutcome &outcome) { told = textOf(outcome); });
        (void)QTest::qWaitFor([&told] { return !told.isEmpty(); }, 60'000);
        return told;
    }

    void addProgram(const QString &name, const QString &commands)
    {
        QFile file(m_folder->filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + commands.toUtf8() + "\n");
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    test::ManualTimers m_timers;
};

QTEST_GUILESS_MAIN(SoundTest)
#include "sound_test.moc"
