#pragma once

#include "app/trial/trial_run.h"

#include <QObject>
#include <QProcess>
#include <QStringList>

#include <array>
#include <memory>

namespace ktr {

class TrialFolder;

/// Starts the program a second time for a trial (TrialRun), in a folder of its own, and ends it with this
/// one. There is one run of each kind at a time; its folder goes when it ends.
class TrialLauncher : public QObject
{
    Q_OBJECT

public:
    /// `program` is what is started; empty where there is nothing to start.
    explicit TrialLauncher(QString program);
    ~TrialLauncher() override;

    bool isAvailable() const { return !m_program.isEmpty(); }
    /// Puts what the run needs into its folder, and the arguments for the program into the list.
    using Prepare = std::function<Status(const QString &folder, QStringList &arguments)>;
    /// One that runs comes to the front instead. `looks` are those of this program.
    void start(TrialKind kind, const TrialLooks &looks, const Prepare &prepare);
    bool isRunning(TrialKind kind) const;

Q_SIGNALS:
    /// A line for the status bar.
    void statusMessage(const QString &line);
    /// There is no trial, or it ended by itself in an unexpected way.
    void failed(const QString &why);

private:
    struct Run
    {
        std::unique_ptr<TrialFolder> folder;
        std::unique_ptr<QProcess> process;
    };
    static void end(Run &run);
    Run &run(TrialKind kind) { return m_runs[static_cast<std::size_t>(kind)]; }
    void connectProcess(TrialKind kind);

    QString m_program;
    std::array<Run, 2> m_runs;
};

} // namespace ktr
