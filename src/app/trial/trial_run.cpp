#include "app/trial/trial_run.h"

#include "opmode/keeping/nodes_file.h"
#include "opmode/tree/station_tree.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "simulator/fleet.h"
#include "simulator/module_on_udp.h"

#include <QCoreApplication>
#include <QRandomGenerator>

#include <cstdio>
#include <thread>
#include <utility>

namespace ktr {

namespace {

constexpr int modulePort = 49'111;

/// The second number of an address of this machine alone; others may have taken some.
int someNetwork()
{
    constexpr int first = 10;
    constexpr int behindLast = 250;
    return QRandomGenerator::global()->bounded(first, behindLast);
}

QByteArray trialNodes(const QString &network)
{
    NodeStore nodes;
    QHash<QString, QString> addresses;
    for (int module = 0; module < TrialRun::fleetSize; ++module) {
        const QString name = Fleet::name(module);
        const std::string text = storedText(name);
        nodes.add(NodeStore::root, text, text, StationTree::normalColour);
        addresses.insert(name, Fleet::address(module, network));
    }
    return writeNodes(nodes, [&addresses](const QString &kennung) {
        StationAttributes station;
        station.hostAddress = addresses.value(kennung);
        station.online = true;
        return station;
    });
}

} // namespace

const char *TrialRun::kindVariable = "KTR_TRIAL";
const char *TrialRun::folderVariable = "KTR_TRIAL_FOLDER";

QString TrialRun::kindName(TrialKind kind)
{
    return kind == TrialKind::Fleet ? QStringLiteral("fleet") : QStringLiteral("module");
}

std::optional<TrialRun::Request> TrialRun::requested()
{
    const QString kind = qEnvironmentVariable(kindVariable);
    const QString folder = qEnvironmentVariable(folderVariable);
    for (const TrialKind each : {TrialKind::Module, TrialKind::Fleet}) {
        if (kind == kindName(each) && !folder.isEmpty()) {
            return Request{each, folder};
        }
    }
    return std::nullopt;
}

Configuration TrialRun::copyFor(const QString &folder, Configuration configuration)
{
    configuration.info.logFile = joinPath(folder, QStringLiteral("Log.txt"));
    configuration.info.historyExportFile = joinPath(folder, QStringLiteral("history.csv"));
    return configuration;
}

TrialRun::TrialRun(Request request, IoThread &io, Timers &timers)
    : m_request(std::move(request)), m_io(io), m_timers(timers)
{
    MRegistry::setRegistryFile(joinPath(m_request.folder, QStringLiteral("registry.json")));
}

TrialRun::~TrialRun() = default;

Environment TrialRun::environment(Environment usual) const
{
    usual.programFolder = m_request.folder;
    usual.dataFolder = joinPath(m_request.folder, QStringLiteral("data"));
    return usual;
}

QString TrialRun::instanceName() const
{
    return joinPath(m_request.folder, QStringLiteral("instance"));
}

Status TrialRun::begin()
{
    return m_request.kind == TrialKind::Fleet ? beginFleet() : beginModule();
}

Status TrialRun::beginModule()
{
    Status opened = Status::done();
    for (int attempt = 0; attempt < attempts; ++attempt) {
        ModuleOptions options;
        options.tellsEnd = true;
        m_module = std::make_unique<ModuleOnUdp>(m_timers, options);
        const QString address = QStringLiteral("127.%1.0.1").arg(someNetwork());
        opened = m_module->open(address + u':' + QString::number(modulePort));
        if (opened) {
            m_moduleAddress = address;
            return opened;
        }
    }
    return opened;
}

Status TrialRun::beginFleet()
{
    Status opened = Status::done();
    for (int attempt = 0; attempt < attempts; ++attempt) {
        FleetOptions options;
        options.modules = fleetSize;
        options.network = QStringLiteral("127.%1").arg(someNetwork());
        options.every = Fleet::livelyInterval(fleetSize);
        m_fleet = std::make_unique<Fleet>(m_io, m_timers, options);
        opened = m_fleet->open();
        if (opened) {
            return replaceFile(joinPath(m_request.folder, QStringLiteral("nodes.xml")),
                               trialNodes(options.network));
        }
    }
    return opened;
}

/// Who started this process holds the other end of its standard input, also when it is killed.
void TrialRun::whenStarterEnds(std::function<void()> gone)
{
    std::thread([gone = std::move(gone)] {
        while (std::fgetc(stdin) != EOF) {
        }
        QMetaObject::invokeMethod(qApp, gone, Qt::QueuedConnection);
    }).detach();
}

} // namespace ktr
