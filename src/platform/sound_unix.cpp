#include "platform/files.h"
#include "platform/private_folder.h"
#include "platform/sound_player.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace ktr {

namespace {

struct Program
{
    QString name;
    QString path;
    QStringList arguments;
};

/// Those that are there. One whose sound service is not running fails, and another may be heard all the same.
QList<Program> programsFor(const QString &file)
{
    const Program known[] = {{QStringLiteral("pw-play"), {}, {file}},
                             {QStringLiteral("paplay"), {}, {file}},
                             {QStringLiteral("aplay"), {}, {QStringLiteral("-q"), file}}};
    QList<Program> found;
    for (Program program : known) {
        program.path = QStandardPaths::findExecutable(program.name);
        if (!program.path.isEmpty()) {
            found += program;
        }
    }
    return found;
}

class ProgramPlayer : public SoundPlayer
{
public:
    ProgramPlayer(Timers &timers, const QString &name)
        : m_fileName(QStringLiteral("/KTRconfig-") + name + QStringLiteral(".wav")),
          m_patience(timers.create())
    {
        QObject::connect(&m_process, &QProcess::finished, &m_process,
                         [this](int code, QProcess::ExitStatus status) {
                             ended(code == 0 && status == QProcess::NormalExit);
                         });
        QObject::connect(
            &m_process, &QProcess::errorOccurred, &m_process,
            [this](QProcess::ProcessError error) {
                if (error == QProcess::FailedToStart) {
                    ended(false);
                }
            },
            Qt::QueuedConnection); // it is not done with the failed start yet
    }
    ~ProgramPlayer() override
    {
        m_process.disconnect();
        m_process.kill();
    }

    bool isPlaying() const override { return m_told != nullptr; }

    void play(const QByteArray &wav, const Sound::Told &told) override
    {
        m_told = told;
        m_failures.clear();
        const QString file = written(wav);
        if (file.isEmpty()) {
            tell(Status::failed(
                QCoreApplication::translate("Sound", "the sound cannot be written into a file")));
            return;
        }
        m_programs = programsFor(file);
        if (m_programs.isEmpty()) {
            tell(Status::failed(QCoreApplication::translate(
                "Sound", "none of the programs pw-play, paplay and aplay is installed")));
            return;
        }
        tryNext();
    }

private:
    void tryNext()
    {
        if (m_programs.isEmpty()) {
            tell(Status::failed(m_failures.join(QStringLiteral("; "))));
            return;
        }
        m_program = m_programs.takeFirst();
        m_isLate = false;
        m_process.setStandardInputFile(QProcess::nullDevice());
        m_process.setStandardOutputFile(QProcess::nullDevice());
        m_process.start(m_program.path, m_program.arguments);
        m_patience->start(longest, [this] { // it waits for a service that does not answer
            m_isLate = true;
            m_process.kill(); // which its end tells
        });
    }

    void ended(bool isPlayed)
    {
        m_patience->stop();
        if (isPlayed) {
            tell(Status::done());
            return;
        }
        m_failures += m_program.name + QStringLiteral(": ") + complaint();
        tryNext();
    }

    /// The first line of what the program says about it.
    QString complaint()
    {
        constexpr qsizetype enough = 200;
        const QString said = QString::fromLocal8Bit(m_process.readAllStandardError().left(4 * enough));
        const QString line = said.trimmed().section(u'\n', 0, 0).left(enough).simplified();
        return m_isLate         ? QCoreApplication::translate("Sound", "the sound service does not answer")
               : line.isEmpty() ? QCoreApplication::translate("Sound", "it failed without a reason")
                                : line;
    }

    void tell(const Status &played)
    {
        const Sound::Told told = std::exchange(m_told, nullptr);
        told({played, played ? m_program.name : QString()});
    }

    /// One file for all instances of the user: those that are killed leave no more than that. Anew when it is
    /// not there: a folder of temporary files is swept now and then. Empty when it cannot be written.
    QString written(const QByteArray &wav) const
    {
        const QString folder = privateFolder();
        const QString path = folder + m_fileName;
        QByteArray present;
        if (folder.isEmpty() || (readFile(path, present, wav.size()) && present == wav)) {
            return folder.isEmpty() ? QString() : path;
        }
        if (!QFileInfo(path).isFile()) {
            QFile::remove(path); // a pipe would wait for its reader
        }
        return replaceFile(path, wav) ? path : QString();
    }

    static constexpr Milliseconds longest{10'000};

    QString m_fileName;
    std::unique_ptr<OneShotTimer> m_patience;
    QList<Program> m_programs; ///< that can still be tried
    Program m_program;
    QStringList m_failures;
    bool m_isLate = false;
    Sound::Told m_told; ///< while it plays
    QProcess m_process;
};

} // namespace

std::unique_ptr<SoundPlayer> SoundPlayer::create(Timers &timers, const QString &name)
{
    return std::make_unique<ProgramPlayer>(timers, name);
}

} // namespace ktr
