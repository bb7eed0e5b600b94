#pragma once

#include "config/configuration.h"
#include "platform/environment.h"
#include "platform/status.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace ktr {

class Fleet;
class IoThread;
class ModuleOnUdp;
class Timers;

enum class TrialKind { Module, Fleet };

/// A run of the program to try things out: its modules are virtual, at addresses of this machine alone, and
/// its settings, list of stations and memory of transmissions stand in a folder that goes with it. Nothing of
/// the user's is read or written.
class TrialRun
{
public:
    static constexpr int fleetSize = 12;
    static constexpr int attempts = 20; ///< to find addresses that are free

    /// What this process was started for, by the variables of the environment that TrialLauncher sets.
    struct Request
    {
        TrialKind kind = TrialKind::Module;
        QString folder; ///< exists, and belongs to this run
    };
    static std::optional<Request> requested();
    static const char *kindVariable;
    static const char *folderVariable;
    static QString kindName(TrialKind kind);

    /// A configuration whose log and archive are written into this folder, not where the user has them.
    static Configuration copyFor(const QString &folder, Configuration configuration);

    /// Turns this process away from the user's settings. Both must outlive it.
    TrialRun(Request request, IoThread &io, Timers &timers);
    ~TrialRun();
    Q_DISABLE_COPY_MOVE(TrialRun)

    /// Starts the virtual modules, and writes the list that has them.
    Status begin();
    /// The same surroundings with the folder of this run in place of the user's.
    Environment environment(Environment usual) const;
    QString instanceName() const;

    TrialKind kind() const { return m_request.kind; }
    /// Where the main window reaches the module; empty for a fleet.
    QString moduleAddress() const { return m_moduleAddress; }

    /// Calls `gone` once who started this process has ended, or ends this run.
    static void whenStarterEnds(std::function<void()> gone);

private:
    Status beginModule();
    Status beginFleet();

    Request m_request;
    IoThread &m_io;
    Timers &m_timers;
    QString m_moduleAddress;
    std::unique_ptr<ModuleOnUdp> m_module;
    std::unique_ptr<Fleet> m_fleet;
};

} // namespace ktr
