#pragma once

#include "app/trial/trial_run.h"

#include <QObject>
#include <QProcess>
#include <QStringList>

#include <array>
#include <memory>

class QTemporaryDir;

namespace ktr {

/// Starts the program a second time for a trial (TrialRun), in a folder of its own, and ends it with this
/// one. There is one run of each kind at a time.
class TrialLauncher : public QObject
{
    Q_OBJECT

public:
    /// `program` is what is started; empty where there is nothing to start.
    explicit TrialLauncher(QString program);
    ~TrialLauncher() override;

    bool isAvailable() const { return !m_program.isEmpty(); }
    /// Puts what the run needs into its folder, and gives the arguments for the program.
    using Prepare = std::function<QStringList(const QString &folder)>;
    void start(TrialKind kind, const Prepare &prepare);
    bool isRunning(TrialKind kind) const;

Q_SIGNALS:
    /// A line for the status bar.
    void statusMessage(const QString &line);

private:
    struct Run
    {
        std::unique_ptr<QTemporaryDir> folder;
        std::unique_ptr<QProcess> process;
    };
    static void end(Run &run);
    Run &run(TrialKind kind) { return m_runs[static_cast<std::size_t>(kind)]; }

    QString m_program;
    std::array<Run, 2> m_runs;
};

} // namespace ktr
