#include "platform/sound.h"

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
        int beeps = 0;
        Sound another("of another version", [&beeps] { ++beeps; });
        another.play();
        const auto content = [&played] {
            QFile file(played);
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        QTRY_COMPARE(content(), "of another version");
        Sound sound("tones", [&beeps] { ++beeps; });
        sound.play();
        QTRY_COMPARE(content(), "tones");
        QCOMPARE(beeps, 0);
        // The one file that stays of any number of programs that are killed now.
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files, QDir::Name | QDir::IgnoreCase),
                 QStringList({"aplay", "KTRconfig-alarm.wav", "played"}));
    }

    void whereNothingCanBeHeardTheFallbackRuns()
    {
        int beeps = 0;
        Sound sound("tones", [&beeps] { ++beeps; });
        sound.play();
        QCOMPARE(beeps, 1); // no program
        addProgram("paplay", "exit 1");
        sound.play();
        QTRY_COMPARE(beeps, 2); // no device
        sound.play();           // and it is tried again
        QTRY_COMPARE(beeps, 3);
    }

private:
    void addProgram(const QString &name, const QString &commands)
    {
        QFile file(m_folder->filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + commands.toUtf8() + "\n");
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(SoundTest)
#include "sound_test.moc"
