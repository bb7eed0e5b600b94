#include "app/trial/trial_launcher.h"

#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <utility>

namespace ktr {

namespace {

constexpr int endWait = 4000; ///< ms, until one that does not end by itself is killed

/// Where the system lets folders be chosen, those of the run are in its own.
QProcessEnvironment surroundings(TrialKind kind, const QString &folder)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
        environment.insert(QLatin1String(variable), folder + u'/' + QLatin1String(variable).mid(4));
    }
    environment.remove(QStringLiteral("KTR_RECORD"));
    environment.insert(QLatin1String(TrialRun::kindVariable), TrialRun::kindName(kind));
    environment.insert(QLatin1String(TrialRun::folderVariable), folder);
    return environment;
}

} // namespace

TrialLauncher::TrialLauncher(QString program) : m_program(std::move(program)) {}

TrialLauncher::~TrialLauncher()
{
    for (Run &each : m_runs) {
        end(each);
    }
}

/// It ends when its standard input does.
void TrialLauncher::end(Run &run)
{
    if (run.process != nullptr) {
        run.process->disconnect();
        run.process->closeWriteChannel();
        if (run.process->state() != QProcess::NotRunning && !run.process->waitForFinished(endWait)) {
            run.process->kill();
            run.process->waitForFinished(endWait);
        }
    }
    run.process.reset();
    run.folder.reset();
}

bool TrialLauncher::isRunning(TrialKind kind) const
{
    const Run &run = m_runs[static_cast<std::size_t>(kind)];
    return run.process != nullptr && run.process->state() != QProcess::NotRunning;
}

void TrialLauncher::start(TrialKind kind, const Prepare &prepare)
{
    if (isRunning(kind)) {
        Q_EMIT statusMessage(tr("It is open already, in a window of its own"));
        return;
    }
    Run &run = this->run(kind);
    end(run);
    run.folder = std::make_unique<QTemporaryDir>();
    if (!run.folder->isValid()) {
        Q_EMIT statusMessage(tr("There is no folder for a trial: %1").arg(run.folder->errorString()));
        return;
    }
    const QStringList arguments = prepare(run.folder->path());
    run.process = std::make_unique<QProcess>();
    run.process->setProcessEnvironment(surroundings(kind, run.folder->path()));
    run.process->setWorkingDirectory(run.folder->path()); // for files that are named without a folder
    run.process->setProcessChannelMode(QProcess::ForwardedChannels);
    connect(run.process.get(), &QProcess::errorOccurred, this, [this, kind](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            Q_EMIT statusMessage(
                tr("The trial could not be started: %1").arg(this->run(kind).process->errorString()));
        }
    });
    run.process->start(m_program, arguments);
}

} // namespace ktr
