#include "app/trial/trial_launcher.h"

#include "app/single_instance.h"
#include "app/trial/trial_folder.h"

#include <QProcessEnvironment>

#include <utility>

namespace ktr {

namespace {

constexpr int endWait = 4000; ///< ms, until one that does not end by itself is killed

QProcessEnvironment surroundings(const TrialRun::Request &request)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("KTR_RECORD"));
    for (const auto &[variable, value] : TrialRun::variablesOf(request)) {
        environment.insert(variable, value);
    }
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

void TrialLauncher::start(TrialKind kind, const TrialLooks &looks, const Prepare &prepare)
{
    Run &run = this->run(kind);
    if (isRunning(kind)) {
        SingleInstance::bringToFront(TrialRun::instanceNameIn(run.folder->path()));
        Q_EMIT statusMessage(tr("It is open already, in a window of its own"));
        return;
    }
    end(run);
    run.folder = std::make_unique<TrialFolder>();
    QStringList arguments;
    Status prepared = run.folder->made();
    if (prepared) {
        prepared = prepare(run.folder->path(), arguments);
    }
    if (!prepared) {
        run.folder.reset();
        Q_EMIT failed(tr("There is no trial, since its files have no place: %1").arg(prepared.message()));
        return;
    }
    run.process = std::make_unique<QProcess>();
    run.process->setProcessEnvironment(surroundings({kind, run.folder->path(), looks}));
    run.process->setWorkingDirectory(run.folder->path()); // for files that are named without a folder
    run.process->setProcessChannelMode(QProcess::ForwardedChannels);
    connectProcess(kind);
    run.process->start(m_program, arguments);
}

void TrialLauncher::connectProcess(TrialKind kind)
{
    QProcess *process = run(kind).process.get();
    connect(process, &QProcess::errorOccurred, this, [this, kind, process](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            run(kind).folder.reset();
            Q_EMIT failed(tr("The trial could not be started: %1").arg(process->errorString()));
        }
    });
    connect(process, &QProcess::finished, this, [this, kind](int code, QProcess::ExitStatus status) {
        run(kind).folder.reset();
        if (status == QProcess::CrashExit || code != 0) {
            Q_EMIT failed(tr("The trial ended by itself, which it should not. It can be started again; your "
                             "own files and settings are as they were."));
        }
    });
}

} // namespace ktr
