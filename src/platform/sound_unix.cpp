#include "platform/files.h"
#include "platform/private_folder.h"
#include "platform/sound_player.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace ktr {

namespace {

struct Program
{
    QString path; ///< empty when there is none
    QStringList arguments;
};

Program soundProgram(const QString &file)
{
    const Program known[] = {{QStringLiteral("pw-play"), {file}},
                             {QStringLiteral("paplay"), {file}},
                             {QStringLiteral("aplay"), {QStringLiteral("-q"), file}}};
    for (const Program &program : known) {
        if (const QString path = QStandardPaths::findExecutable(program.path); !path.isEmpty()) {
            return {path, program.arguments};
        }
    }
    return {};
}

class ProgramPlayer : public SoundPlayer
{
public:
    ProgramPlayer()
    {
        QObject::connect(&m_process, &QProcess::finished, &m_process,
                         [this](int code, QProcess::ExitStatus status) {
                             if (code != 0 || status != QProcess::NormalExit) {
                                 m_fallback();
                             }
                         });
        QObject::connect(&m_process, &QProcess::errorOccurred, &m_process,
                         [this](QProcess::ProcessError error) {
                             if (error == QProcess::FailedToStart) {
                                 m_fallback();
                             }
                         });
    }
    ~ProgramPlayer() override
    {
        m_process.disconnect();
        m_process.kill();
    }

    void play(const QByteArray &wav, const std::function<void()> &fallback) override
    {
        if (m_process.state() != QProcess::NotRunning) {
            if (m_started.hasExpired(longestMs)) { // it waits for a service that does not answer
                m_process.kill();                  // which its end tells
            }
            return;
        }
        m_fallback = fallback;
        const QString file = written(wav);
        const Program program = file.isEmpty() ? Program() : soundProgram(file);
        if (program.path.isEmpty()) {
            fallback();
            return;
        }
        m_process.setStandardInputFile(QProcess::nullDevice());
        m_process.setStandardOutputFile(QProcess::nullDevice());
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_started.start();
        m_process.start(program.path, program.arguments);
    }

private:
    /// One file for all instances of the user: those that are killed leave no more than that. Anew when it is
    /// not there: a folder of temporary files is swept now and then. Empty when it cannot be written.
    static QString written(const QByteArray &wav)
    {
        const QString folder = privateFolder();
        const QString path = folder + QLatin1String("/KTRconfig-alarm.wav");
        QByteArray present;
        if (folder.isEmpty() || (readFile(path, present, wav.size()) && present == wav)) {
            return folder.isEmpty() ? QString() : path;
        }
        if (!QFileInfo(path).isFile()) {
            QFile::remove(path); // a pipe would wait for its reader
        }
        return replaceFile(path, wav) ? path : QString();
    }

    static constexpr qint64 longestMs = 10'000;

    QElapsedTimer m_started;
    std::function<void()> m_fallback;
    QProcess m_process;
};

} // namespace

std::unique_ptr<SoundPlayer> SoundPlayer::create()
{
    return std::make_unique<ProgramPlayer>();
}

} // namespace ktr
