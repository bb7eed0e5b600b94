#include "app/trial/trial_run.h"

#include "app/appearance_setting.h"
#include "app/language_setting.h"
#include "app/trial/trial_folder.h"
#include "lang/text_table.h"
#include "link/transmitter.h"
#include "opmode/keeping/nodes_file.h"
#include "opmode/tree/station_tree.h"
#include "platform/files.h"
#include "platform/instances.h"
#include "platform/registry.h"
#include "platform/standard_input.h"
#include "simulator/fleet.h"
#include "simulator/module_on_udp.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <QSettings>

#include <array>
#include <thread>
#include <utility>

namespace ktr {

namespace {

constexpr quint16 anyPort = 0; ///< where another program has the usual one at all addresses

const QString kindVariable = QStringLiteral("KTR_TRIAL");
const QString folderVariable = QStringLiteral("KTR_TRIAL_FOLDER");
const QString languageVariable = QStringLiteral("KTR_TRIAL_LANGUAGE");
const QString darkVariable = QStringLiteral("KTR_TRIAL_DARK");

constexpr std::array kinds = {TrialKind::Module, TrialKind::Fleet};

QString nameOf(TrialKind kind)
{
    return kind == TrialKind::Fleet ? QStringLiteral("fleet") : QStringLiteral("module");
}

/// The second number of an address of this machine alone; others may have taken some.
int someNetwork()
{
    constexpr int first = 10;
    constexpr int behindLast = 250;
    return QRandomGenerator::global()->bounded(first, behindLast);
}

QByteArray trialNodes(const Fleet &fleet, const FleetOptions &options)
{
    NodeStore nodes;
    QHash<QString, QString> addresses;
    for (int module = 0; module < options.modules; ++module) {
        const QString name = Fleet::name(module, options.language);
        const std::string text = storedText(name);
        nodes.add(NodeStore::root, text, text, StationTree::normalColour);
        const QString address = Fleet::address(module, options.network);
        const quint16 port = fleet.port(module);
        addresses.insert(name, port == TrialRun::usualPort ? address
                                                           : QString(address + u':' + QString::number(port)));
    }
    return writeNodes(nodes, [&addresses](const QString &kennung) {
        StationAttributes station;
        station.hostAddress = addresses.value(kennung);
        station.online = true;
        return station;
    });
}

Status noAddress(const Status &why)
{
    return Status::failed(
        QCoreApplication::translate("TrialRun", "No address of this machine is free for them. (%1)")
            .arg(why.message()));
}

} // namespace

QList<std::pair<QString, QString>> TrialRun::variablesOf(const Request &request)
{
    return {{kindVariable, nameOf(request.kind)},
            {folderVariable, request.folder},
            {languageVariable, request.looks.language},
            {darkVariable, QString::number(request.looks.isDark ? 1 : 0)}};
}

std::optional<TrialRun::Request> TrialRun::takeRequest()
{
    const auto take = [](const QString &variable) {
        const QByteArray name = variable.toLatin1();
        QString value = qEnvironmentVariable(name.constData());
        qunsetenv(name.constData());
        return value;
    };
    const QString kind = take(kindVariable);
    const QString folder = take(folderVariable);
    const TrialLooks looks{take(languageVariable), take(darkVariable) == u"1"};
    for (const TrialKind each : kinds) {
        if (kind == nameOf(each) && !folder.isEmpty()) {
            return Request{each, folder, looks};
        }
    }
    return std::nullopt;
}

QString TrialRun::configurationIn(const QString &folder)
{
    return joinPath(folder, QStringLiteral("trial.xml"));
}

QString TrialRun::instanceNameIn(const QString &folder)
{
    return socketNameIn(folder, QStringLiteral("instance"));
}

/// The toolkit's own dialogs keep settings, too.
TrialRun::TrialRun(Request request, IoThread &io, Timers &timers)
    : m_request(std::move(request)), m_io(io), m_timers(timers)
{
    (void)m_lock.take(TrialFolder::lockOfRun(m_request.folder)); // without it the starter's says enough
    MRegistry::setRegistryFile(TrialFolder::registryIn(m_request.folder));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_request.folder);
    languageAtStart(); // makes the key
    if (!m_request.looks.language.isEmpty()) {
        setLanguageSetting(m_request.looks.language);
    }
    setAppearanceSetting(m_request.looks.isDark ? Appearance::Dark : Appearance::Light);
}

TrialRun::~TrialRun()
{
    m_lock.release();
    if (TrialFolder::isStarterGone(m_request.folder)) {
        MRegistry::setRegistryFile({});
        TrialFolder::remove(m_request.folder);
    }
}

Environment TrialRun::environment(Environment usual) const
{
    usual.programFolder = m_request.folder;
    usual.dataFolder = joinPath(m_request.folder, QStringLiteral("data"));
    return usual;
}

Status TrialRun::begin(quint16 firstPort)
{
    const bool isFleet = m_request.kind == TrialKind::Fleet;
    Status begun = Status::done();
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const quint16 port = attempt < attempts / 2 ? firstPort : anyPort;
        begun = isFleet ? beginFleet(port) : beginModule(port);
        if (begun) {
            return isFleet ? replaceFile(joinPath(m_request.folder, QStringLiteral("nodes.xml")), m_nodes)
                           : begun;
        }
    }
    return noAddress(begun);
}

Status TrialRun::beginModule(quint16 port)
{
    ModuleOptions options;
    options.tellsEnd = true;
    m_module = std::make_unique<ModuleOnUdp>(m_timers, options);
    const QString address = QStringLiteral("127.%1.0.1").arg(someNetwork());
    Status opened = m_module->open(address + u':' + QString::number(port));
    if (opened) {
        m_moduleAddress = port == TrialRun::usualPort ? address : m_module->address();
    }
    return opened;
}

Status TrialRun::beginFleet(quint16 port)
{
    FleetOptions options;
    options.modules = fleetSize;
    options.network = QStringLiteral("127.%1").arg(someNetwork());
    options.port = port;
    options.every = Fleet::livelyInterval(fleetSize);
    options.language =
        m_request.looks.language == germanLanguage ? FieldLanguage::German : FieldLanguage::English;
    m_fleet = std::make_unique<Fleet>(m_io, m_timers, options);
    Status opened = m_fleet->open();
    if (opened) {
        m_nodes = trialNodes(*m_fleet, options);
    }
    return opened;
}

void TrialRun::deliverWith(const Configuration &configuration)
{
    if (m_module != nullptr && m_module->module().memory().accepted == 0) {
        Configuration &held = m_module->module().memory().configuration;
        held.versionText = Transmitter::versionOnLine(configuration);
        held.gsm.stationType = configuration.gsm.stationType;
    }
}

/// Who started this process holds the other end of its standard input, also when it is killed.
void TrialRun::whenStarterEnds(std::function<void()> gone)
{
    std::thread([gone = std::move(gone)] {
        readInputToItsEnd();
        QMetaObject::invokeMethod(qApp, gone, Qt::QueuedConnection);
    }).detach();
}

} // namespace ktr
