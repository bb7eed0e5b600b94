#pragma once

#include "config/configuration.h"
#include "platform/environment.h"
#include "platform/file_lock.h"
#include "platform/status.h"

#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace ktr {

class Fleet;
class IoThread;
class ModuleOnUdp;
class Timers;

enum class TrialKind { Module, Fleet };

/// As the program that starts a trial looks; the trial looks the same.
struct TrialLooks
{
    QString language; ///< as InterfaceLanguage::use() takes it; empty for that of a first start
    bool isDark = false;
};

/// A run of the program to try things out: its modules are virtual, at addresses of this machine alone, and
/// its settings, list of stations and memory of transmissions stand in a folder that goes with it. Nothing of
/// the user's is read or written.
class TrialRun
{
public:
    static constexpr int fleetSize = 12;
    static constexpr int attempts = 20; ///< to find addresses that are free
    static constexpr quint16 usualPort = 49'111;

    /// What this process was started for, by the variables of the environment that TrialLauncher sets. They
    /// are removed: what the trial starts is none.
    struct Request
    {
        TrialKind kind = TrialKind::Module;
        QString folder; ///< exists, and belongs to this run
        TrialLooks looks{};
    };
    static std::optional<Request> takeRequest();
    static QList<std::pair<QString, QString>> variablesOf(const Request &request);
    /// What a trial of a module begins with, in its folder.
    static QString configurationIn(const QString &folder);
    static QString instanceNameIn(const QString &folder);

    /// Turns this process away from the user's settings. Both must outlive it.
    TrialRun(Request request, IoThread &io, Timers &timers);
    /// Removes the folder if who started this process has ended, and cannot.
    ~TrialRun();
    Q_DISABLE_COPY_MOVE(TrialRun)

    /// Starts the virtual modules, and writes the list that has them. The failure is for the user.
    /// Where all addresses of this machine are taken at a port, it takes any other.
    Status begin(quint16 firstPort = usualPort);
    /// The same surroundings with the folder of this run in place of the user's.
    Environment environment(Environment usual) const;
    QString instanceName() const { return instanceNameIn(m_request.folder); }

    TrialKind kind() const { return m_request.kind; }
    const QString &folder() const { return m_request.folder; }
    /// Where the main window reaches the module; empty for a fleet.
    QString moduleAddress() const { return m_moduleAddress; }
    /// Until something is transmitted to it the module tells that it has this configuration's version: one
    /// that was delivered with it, so that nobody is warned of overwriting what nobody has put there.
    void deliverWith(const Configuration &configuration);

    /// Calls `gone` once who started this process has ended, or ends this run.
    static void whenStarterEnds(std::function<void()> gone);

private:
    Status beginModule(quint16 port);
    Status beginFleet(quint16 port);

    Request m_request;
    IoThread &m_io;
    Timers &m_timers;
    FileLock m_lock;
    QString m_moduleAddress;
    QByteArray m_nodes; ///< the list of the fleet
    std::unique_ptr<ModuleOnUdp> m_module;
    std::unique_ptr<Fleet> m_fleet;
};

} // namespace ktr
