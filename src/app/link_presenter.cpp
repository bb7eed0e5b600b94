#include "app/link_presenter.h"

#include "app/main_menu.h"
#include "app/status_line.h"
#include "config/document.h"
#include "editor/calibration_page.h"
#include "editor/connection_page.h"
#include "editor/info_page.h"
#include "editor/test_page.h"
#include "lang/text_table.h"
#include "link/service_commands.h"
#include "link/udp_transport.h"
#include "platform/serial_device.h"
#include "platform/settings_store.h"

#include <QAction>
#include <QFileInfo>
#include <QNetworkInterface>

namespace ktr {

namespace {

// What messages are about.
const QString connectionTopic = QStringLiteral("connection");
const QString firmwareTopic = QStringLiteral("firmware");
const QString versionsTopic = QStringLiteral("versions");

const QString portKey = QStringLiteral("port");
const QString addressKey = QStringLiteral("address");

QString lastLine(const QString &key)
{
    return SettingsStore().GetSetting(settingsOwner, settings_sections::connection, key);
}

/// Those that are up and not this computer's own.
QList<NetworkAdapter> networkAdapters()
{
    QList<NetworkAdapter> adapters;
    for (const QNetworkInterface &interface : QNetworkInterface::allInterfaces()) {
        const QNetworkInterface::InterfaceFlags flags = interface.flags();
        if (!flags.testFlag(QNetworkInterface::IsRunning) || flags.testFlag(QNetworkInterface::IsLoopBack)) {
            continue;
        }
        for (const QNetworkAddressEntry &entry : interface.addressEntries()) {
            if (entry.ip().protocol() == QAbstractSocket::IPv4Protocol) {
                adapters += {interface.humanReadableName(), entry.ip().toString(), entry.prefixLength()};
            }
        }
    }
    return adapters;
}

} // namespace

LinkPresenter::LinkPresenter(ModuleLink &link, Timers &timers, Document &document, const TextTable &texts,
                             MainMenu &menu, StatusLine &status)
    : m_link(link),
      m_line(link.line()),
      m_transmitter(link.transmitter()),
      m_waiting(link.waitingCommand()),
      m_document(document),
      m_texts(texts),
      m_menu(menu),
      m_status(status),
      m_log(document),
      m_versions(link, document, texts),
      m_replies(timers, [&document] { return document.configuration().info.historyExportFile; })
{
    connectLink();
    connectReplies();
    connectUpload();
    connectMenu();
}

void LinkPresenter::connectLink()
{
    connect(&m_link, &ModuleLink::changed, this, &LinkPresenter::show);
    connect(&m_link, &ModuleLink::changed, this, &LinkPresenter::withdrawPassed);
    connect(&m_link, &ModuleLink::changed, this, &LinkPresenter::forgetOtherModule);
    connect(&m_link, &ModuleLink::changed, this, &LinkPresenter::rememberLine);
    connect(&m_link, &ModuleLink::changed, this, &LinkPresenter::showUsedLine);
    connect(&m_link, &ModuleLink::statusMessage, this, &LinkPresenter::statusMessage);
    connect(&m_link, &ModuleLink::refused, this, [this](const Status &why) {
        Q_EMIT statusMessage(why.message());
        if (why.is(Failure::NoPortFree)) {
            Q_EMIT messageWanted(m_texts.text(Text::PortInUse), portTopic);
        }
    });
    connect(&m_link, &ModuleLink::commandTooLong, this, [this](const QString &command) {
        Q_EMIT lineWanted(m_texts.text(Text::MessageTooLong), logText(command));
    });
    connect(&m_waiting, &WaitingCommand::changed, this, [this] { m_status.showWaiting(m_waiting.text()); });
    connect(&m_status, &StatusLine::takeBackWanted, &m_waiting, &WaitingCommand::takeBack);
    connect(&m_link, &ModuleLink::interrupted, this,
            [this] { Q_EMIT messageWanted(m_texts.text(Text::ConnectionInterrupted), connectionTopic); });
    connect(&m_link, &ModuleLink::logged, &m_log, &LinkLog::write);
    connect(&m_log, &LinkLog::statusMessage, this, &LinkPresenter::statusMessage);
    connect(&m_transmitter, &Transmitter::started, this, [this] {
        Q_EMIT overwritingPassed();
        Q_EMIT messagePassed(m_texts.text(Text::MessageTooLong));
        showProgress(0);
        showState([] { return tr("Waiting until the module reads its SMS"); });
    });
    connect(&m_transmitter, &Transmitter::configured, this, [this](const QString &version) {
        m_versions.takeConfigured(version);
        m_hasTold = m_isRestartDue = true;
        Q_EMIT messagePassed(versionsTopic);
        Q_EMIT overwritingPassed(); // what it told of is no more
    });
    connect(&m_transmitter, &Transmitter::stepDone, this, [this](int step) {
        showProgress(step);
        if (isStateShown()) { // nothing newer is shown
            showState([] { return tr("The configuration is being transmitted"); });
        }
    });
    connect(&m_link, &ModuleLink::stalled, this,
            [this](const QString &reason) { showState([reason] { return reason; }); });
    connect(&m_transmitter, &Transmitter::ended, this, &LinkPresenter::showEnd);
}

void LinkPresenter::showEnd()
{
    showProgress(0);
    const TransmissionReport &report = m_transmitter.report();
    if (!report.brokenAt) {
        takeOverTransmitted();
    }
    showState([this] {
        const TransmissionReport &last = m_transmitter.report();
        return QString(last.title() + QLatin1String(": ") + last.counts());
    });
}

/// Shows how the transmission stands, or what became of it.
void LinkPresenter::showState(const std::function<QString()> &line)
{
    const QString before = std::exchange(m_stateLine, line());
    m_stateText = line;
    if (m_stateLine != before || m_status.lastEvent() != before) {
        Q_EMIT statusMessage(m_stateLine);
    }
}

bool LinkPresenter::isStateShown() const
{
    return m_stateText && m_status.lastEvent() == m_stateLine;
}

/// An open message must not say what is no longer so.
void LinkPresenter::withdrawPassed()
{
    if (!m_line.port().isEmpty()) {
        Q_EMIT messagePassed(portTopic);
    }
    if (m_link.isConnected()) {
        Q_EMIT messagePassed(connectionTopic);
    }
}

/// What a module told stays when its line closes, and goes when another line opens.
void LinkPresenter::forgetOtherModule()
{
    if (m_line.port().isEmpty() || m_line.name() == m_lineName) {
        return;
    }
    m_lineName = m_line.name();
    m_hasTold = m_isRestartDue = false;
    m_versions.forget();
    if (m_calibration != nullptr) {
        m_calibration->clear();
    }
}

/// The line that the user chose, or at which a module was found, is proposed at the next start.
void LinkPresenter::rememberLine()
{
    if (m_line.kind() == ModuleLine::Kind::Offline) { // or the port that is tried at the start
        return;
    }
    const bool isSerial = m_line.kind() == ModuleLine::Kind::Serial;
    const bool isChosen =
        !isSerial || !m_line.wantedPort().isEmpty() || m_link.state() == ModuleLink::State::Caught;
    const QString line = isChosen ? m_line.name() : QString();
    if (!line.isEmpty() && line != m_lastLine) {
        m_lastLine = line;
        SettingsStore().SaveSetting(settingsOwner, settings_sections::connection,
                                    isSerial ? portKey : addressKey, line);
    }
}

void LinkPresenter::connectReplies()
{
    connect(&m_link, &ModuleLink::replied, &m_replies, &ReplyHandler::handle);
    connect(&m_waiting, &WaitingCommand::sent, &m_replies, &ReplyHandler::commandLeft);
    connect(&m_link, &ModuleLink::changed, this, [this] {
        if (!m_link.isConnected()) {
            m_replies.disconnected();
        }
    });
    connect(&m_replies, &ReplyHandler::statusMessage, this, &LinkPresenter::statusMessage);
    connect(&m_replies, &ReplyHandler::versionReported, &m_versions, &VersionCheck::handleVersion);
    connect(&m_replies, &ReplyHandler::versionReported, this, [this] { m_hasTold = true; });
    for (const ModuleSession *session : m_line.sessions()) {
        // The first start behind the closing command is that of the module that was given it.
        connect(session, &ModuleSession::caught, this,
                [this] { m_hasTold = std::exchange(m_isRestartDue, false) && m_hasTold; });
    }
    connect(&m_versions, &VersionCheck::changed, this, &LinkPresenter::showVersion);
    connect(&m_versions, &VersionCheck::changed, this, &LinkPresenter::versionChanged);
    connect(&m_versions, &VersionCheck::statusMessage, this, &LinkPresenter::statusMessage);
    connect(&m_versions, &VersionCheck::differenceFound, this, [this](const QString &text) {
        Q_EMIT overwritingPassed();
        Q_EMIT messageWanted(text, versionsTopic);
    });
    connect(&m_versions, &VersionCheck::overwritingFound, this, [this](const QString &text) {
        Q_EMIT overwritingPassed();
        Q_EMIT messagePassed(versionsTopic);
        Q_EMIT overwritingFound(text);
    });
}

void LinkPresenter::connectUpload()
{
    connect(&m_line, &ModuleLine::uploadProgressed, this, [this](qint64 sent, qint64 total) {
        m_status.showProgress(static_cast<int>(sent), static_cast<int>(total));
        m_status.tell(tr("Firmware: %1 of %2 bytes sent").arg(sent).arg(total));
    });
    connect(&m_line, &ModuleLine::uploadEnded, this, [this](bool complete) {
        m_status.showProgress(0);
        Q_EMIT statusMessage(complete ? tr("The firmware was sent")
                                      : tr("The sending of the firmware was broken off"));
    });
}

void LinkPresenter::connectMenu()
{
    connect(m_menu.transmitConfiguration, &QAction::triggered, this, &LinkPresenter::transmit);
    connect(m_menu.sendFirmware, &QAction::triggered, this, &LinkPresenter::sendFirmware);
    connect(m_menu.searchPorts, &QAction::triggered, this, [this] { m_link.connectSerial(QString()); });
    connect(&m_menu, &MainMenu::portChosen, &m_link, &ModuleLink::connectSerial);
    connect(&m_menu, &MainMenu::portsWanted, this, &LinkPresenter::findPorts);
    connect(m_menu.connectEthernet, &QAction::triggered, this, [this] {
        tickLine(); // until an address is given
        Q_EMIT addressWanted(false);
    });
    connect(m_menu.connectExclusively, &QAction::triggered, this, [this] {
        tickLine();
        Q_EMIT addressWanted(true);
    });
    connect(m_menu.goOffline, &QAction::triggered, &m_link, &ModuleLink::goOffline);
    connect(m_menu.openOperationalMode, &QAction::triggered, this, [this] {
        m_link.goOffline();
        Q_EMIT operationalModeWanted();
    });
}

void LinkPresenter::attach(TestPage &page)
{
    m_test = &page;
    connect(&page, &TestPage::commandPlaced, this, &LinkPresenter::place);
    connect(&page, &TestPage::clockPlaced, this, &LinkPresenter::placeClock);
    connect(&m_link, &ModuleLink::logged, &page, &TestPage::appendLog);
    connect(&m_link, &ModuleLink::replied, &page,
            [&page](const ModemDialogue::Reply &reply) { page.showReply(reply.shown()); });
    connect(&m_waiting, &WaitingCommand::sent, &page, &TestPage::clearInput);
    connect(&page, &TestPage::answerWantedChanged, &m_transmitter, &Transmitter::setAnswer);
    page.setIdle(!m_transmitter.isTransmitting());
    page.setAnswerWanted(m_confirmsAtFirst);
}

void LinkPresenter::attach(ConnectionPage &page)
{
    m_connection = &page;
    connect(&page, &ConnectionPage::serialWanted, &m_link, &ModuleLink::connectSerial);
    connect(&page, &ConnectionPage::ethernetWanted, this, &LinkPresenter::ethernetWanted);
    connect(&page, &ConnectionPage::offlineWanted, &m_link, &ModuleLink::goOffline);
    connect(this, &LinkPresenter::statusMessage, &page, &ConnectionPage::addEvent);
    connectTasks(page.tasks());
    findPorts();
    const QString port = lastLine(portKey); // an adapter that is not there now is no proposal
    page.setLast(m_line.ports().contains(port) || QFileInfo::exists(port) ? port : QString(),
                 lastLine(addressKey));
    m_asked = askedLine();
    show();
}

void LinkPresenter::connectTasks(ServiceTasks &tasks)
{
    connect(&tasks, &ServiceTasks::wanted, this, [this, &tasks](ServiceTasks::Task task) {
        if (task == ServiceTasks::Task::Clock) {
            placeClock();
        } else {
            place(serviceCommands::version);
        }
        tasks.showWaiting(m_waiting.text()); // it may have been refused
    });
    connect(&m_waiting, &WaitingCommand::sent, &tasks, &ServiceTasks::commandLeft);
    connect(&m_waiting, &WaitingCommand::changed, &tasks,
            [this, &tasks] { tasks.showWaiting(m_waiting.text()); });
    connect(&m_link, &ModuleLink::replied, &tasks, &ServiceTasks::showReply);
    connect(&m_link, &ModuleLink::logged, &tasks, &ServiceTasks::showLine);
}

void LinkPresenter::attach(CalibrationPage &page)
{
    m_calibration = &page;
    const auto showWaiting = [this, &page] { page.showWaiting(m_waiting.text()); };
    connect(&page, &CalibrationPage::commandPlaced, this, [this, showWaiting](const QString &command) {
        place(command);
        showWaiting(); // it may have been refused
    });
    connect(&m_waiting, &WaitingCommand::sent, &page, &CalibrationPage::commandLeft);
    connect(&m_waiting, &WaitingCommand::changed, &page, showWaiting);
    connect(&m_link, &ModuleLink::serviceConfirmed, &page, &CalibrationPage::confirm);
    connect(&m_link, &ModuleLink::replied, &page, [&page](const ModemDialogue::Reply &reply) {
        if (reply.refuses()) {
            page.showFailure(reply.text);
        }
    });
}

void LinkPresenter::attach(InfoPage &page)
{
    m_info = &page;
    connect(&page, &InfoPage::versionWanted, this, [this] { place(serviceCommands::version); });
    page.setIdle(!m_transmitter.isTransmitting());
    showVersion();
}

void LinkPresenter::applyTexts()
{
    show();
    if (isStateShown()) {
        m_stateLine = m_stateText();
        m_status.tell(m_stateLine);
    }
}

void LinkPresenter::tellAnew()
{
    if (!isStateShown()) {
        m_status.tell(m_link.state() == ModuleLink::State::Searching ? m_line.searchText() : QString());
    }
}

void LinkPresenter::show()
{
    QString text;
    switch (m_link.state()) {
    case ModuleLink::State::Offline:
        text = m_texts.text(Text::Offline);
        break;
    case ModuleLink::State::Searching:
        text = m_line.port().isEmpty() ? tr("searching") : tr("listening on %1").arg(m_line.port());
        break;
    case ModuleLink::State::Caught:
        text = m_line.port();
        break;
    }
    m_status.showLink(text, m_link.isConnected());
    if (m_connection != nullptr) {
        m_connection->setState(text, m_link.isConnected());
        m_connection->tasks().setOpen(m_link.state() != ModuleLink::State::Offline &&
                                      !m_line.port().isEmpty());
    }
    tickLine();
}

/// Only when the ports are about to be shown: finding them takes a while.
void LinkPresenter::findPorts()
{
    QStringList ports = m_line.ports();
    const QString &wanted = m_line.wantedPort();
    if (!wanted.isEmpty() && !ports.contains(wanted)) {
        ports += wanted;
    }
    QList<ConnectionPage::Port> known;
    QStringList adapters;
    for (const QString &port : ports) {
        known += {port, serialAdapter(port)};
        adapters += known.last().adapter;
    }
    m_menu.showPorts(ports, adapters);
    tickLine();
    if (m_connection != nullptr) {
        m_connection->setPorts(known);
        m_connection->setAdapters(networkAdapters());
    }
}

/// Ticks the line in use in the connection menu.
void LinkPresenter::tickLine()
{
    QAction *line = nullptr;
    switch (m_line.kind()) {
    case ModuleLine::Kind::Offline:
        line = m_menu.goOffline;
        break;
    case ModuleLine::Kind::Serial:
        line = m_line.wantedPort().isEmpty() ? m_menu.searchPorts : m_menu.portAction(m_line.wantedPort());
        break;
    case ModuleLine::Kind::Ethernet:
        line = m_menu.connectEthernet;
        break;
    case ModuleLine::Kind::EthernetExclusive:
        line = m_menu.connectExclusively;
        break;
    }
    if (line != nullptr) {
        line->setChecked(true);
    }
}

void LinkPresenter::showProgress(int step)
{
    m_status.showProgress(step, steps::last);
    if (m_test != nullptr) {
        m_test->setIdle(!m_transmitter.isTransmitting());
    }
    if (m_info != nullptr) {
        m_info->setIdle(!m_transmitter.isTransmitting());
    }
}

/// Which line the user asked for.
QString LinkPresenter::askedLine() const
{
    const QString name = m_line.kind() == ModuleLine::Kind::Serial ? m_line.wantedPort() : m_line.port();
    return QString::number(static_cast<int>(m_line.kind())) + name;
}

/// The page shows what is in use. A port that is proposed stays until a module is heard at another one.
void LinkPresenter::showUsedLine()
{
    if (m_connection == nullptr) {
        return;
    }
    const QString before = std::exchange(m_asked, askedLine());
    const bool isAskedAnew = m_asked != before; // and no search goes on
    if (isAskedAnew) {
        m_connection->forgetTyped();
    }
    switch (m_line.kind()) {
    case ModuleLine::Kind::Offline:
        break;
    case ModuleLine::Kind::Serial:
        if (isAskedAnew) {
            m_connection->showUsedPort(m_line.wantedPort());
        } else if (m_link.isConnected() && !m_connection->chosenPort().isEmpty()) {
            m_connection->showUsedPort(m_line.name());
        }
        break;
    case ModuleLine::Kind::Ethernet:
    case ModuleLine::Kind::EthernetExclusive:
        m_connection->showUsedAddress(m_line.port());
        break;
    }
}

/// Nothing is sent over another line than the page Connection shows: what was typed there and not connected
/// to yet is connected to first. False, and the user is told, when that cannot be.
bool LinkPresenter::useShown()
{
    if (m_connection == nullptr || m_transmitter.isTransmitting()) {
        return true;
    }
    const QString port = m_connection->chosenPort();
    if (m_line.port().isEmpty() && (port.isEmpty() || !m_connection->isPortTyped())) {
        return true; // there is none to be wrong
    }
    const bool isSerial =
        m_line.kind() == ModuleLine::Kind::Serial || m_line.kind() == ModuleLine::Kind::Offline;
    const QString address = m_connection->address();
    const bool isOtherPort =
        !isSerial        ? m_connection->isPortTyped() && !port.isEmpty()
        : port.isEmpty() ? m_connection->isPortTyped() && !m_line.wantedPort().isEmpty()
                         : port != m_line.name() && (m_connection->isPortTyped() || !m_link.isConnected());
    const bool isOtherAddress =
        m_connection->isAddressTyped() && !address.isEmpty() && (isSerial || address != m_line.port());
    if ((isOtherPort && !isSerial) || (isOtherAddress && isSerial)) {
        return refuseUnused(isOtherPort ? port : address); // over which of the two, the user must say
    }
    if (isOtherPort) {
        m_link.connectSerial(port);
    } else if (isOtherAddress) {
        Q_EMIT ethernetWanted(address, m_line.kind() == ModuleLine::Kind::EthernetExclusive);
    } else {
        return true;
    }
    const QString wanted = isOtherPort ? port : address;
    return !m_line.port().isEmpty() && (wanted.isEmpty() || wanted == m_line.name()) ? true
                                                                                     : refuseUnused(wanted);
}

bool LinkPresenter::refuseUnused(const QString &name)
{
    Q_EMIT messageWanted(tr("Nothing is sent: %1, which stands on the page Connection, is not connected. "
                            "Connect to it there, or to what is to be used.")
                             .arg(name),
                         portTopic);
    return false;
}

bool LinkPresenter::hasLine()
{
    if (m_line.port().isEmpty()) {
        Q_EMIT messageWanted(m_texts.text(Text::EstablishConnection), portTopic);
        return false;
    }
    return true;
}

void LinkPresenter::transmit()
{
    transmitBy(toldVersion(), [this](const Configuration &configuration, bool answer) {
        m_transmitter.transmit(configuration, answer);
    });
}

void LinkPresenter::transmitChanges(const StepSet &leftOut, const QString &version, qint64 basis)
{
    // It is the version that the module has to tell before anything is changed in it.
    transmitBy(version, [=, this](const Configuration &configuration, bool answer) {
        m_transmitter.transmitChanges(configuration, leftOut, version, basis, answer);
    });
}

void LinkPresenter::transmitSteps(const StepSet &steps)
{
    transmitBy(toldVersion(), [this, steps](const Configuration &configuration, bool answer) {
        m_transmitter.transmitSteps(configuration, steps, answer);
    });
}

void LinkPresenter::transmitBy(
    const std::optional<QString> &version,
    const std::function<void(const Configuration &configuration, bool answer)> &start)
{
    if (!useShown() || !hasLine()) {
        return;
    }
    m_gate(
        [this, start] {
            if (hasLine()) { // it may have gone meanwhile
                start(m_document.configuration(),
                      m_test != nullptr ? m_test->answerWanted() : m_confirmsAtFirst);
            }
        },
        version);
}

/// The image is checked before anything is sent, and nothing is sent before the user agrees.
void LinkPresenter::sendFirmware()
{
    if (!useShown()) {
        return;
    }
    if (m_line.port().isEmpty()) {
        Q_EMIT messageWanted(m_texts.text(Text::EstablishConnection), portTopic);
        return;
    }
    FirmwareImage image;
    if (const Status read = readFirmware(m_line.firmwareFile(), image); !read) {
        Q_EMIT statusMessage(read.message());
        Q_EMIT messageWanted(read.message(), firmwareTopic);
        return;
    }
    Q_EMIT messagePassed(firmwareTopic);
    const QString &file = m_line.firmwareFile();
    const qint64 length = image.fileLength;
    Q_EMIT firmwareReady(
        length == firmwareImageSize
            ? tr("%1 is sent to the module as its new application: %2 bytes.").arg(file).arg(length)
        : length < firmwareImageSize
            ? tr("%1 is sent to the module as its new application: %2 bytes, filled up to %3.")
                  .arg(file)
                  .arg(length)
                  .arg(firmwareImageSize)
            : tr("%1 is sent to the module as its new application, cut off: the first %2 of its %3 bytes.")
                  .arg(file)
                  .arg(firmwareImageSize)
                  .arg(length));
}

void LinkPresenter::place(const QString &command)
{
    if (!useShown()) {
        return;
    }
    const bool mayBePlaced = m_link.state() != ModuleLink::State::Offline && !m_transmitter.isTransmitting();
    if (command == serviceCommands::archive &&
        mayBePlaced) { // otherwise the records would arrive and be lost
        const QString &path = m_document.configuration().info.historyExportFile;
        if (const Status usable = HistoryExport::check(path); !usable) {
            Q_EMIT statusMessage(usable.message());
            Q_EMIT exportFileWanted();
            return;
        }
    }
    const QString replaced = m_waiting.text();
    reportPlacing(m_waiting.place(command), command, replaced);
}

void LinkPresenter::placeClock()
{
    if (!useShown()) {
        return;
    }
    const QString replaced = m_waiting.text();
    const WaitingCommand::Placing placing = m_waiting.placeClock();
    reportPlacing(placing,
                  placing == WaitingCommand::Placing::Waits ? m_waiting.text() : QStringLiteral("T,…"),
                  replaced);
}

void LinkPresenter::reportPlacing(WaitingCommand::Placing placing, const QString &command,
                                  const QString &replaced)
{
    const QString shown = logText(command);
    switch (placing) {
    case WaitingCommand::Placing::Waits:
        Q_EMIT statusMessage(
            replaced.isEmpty() || replaced == m_waiting.text()
                ? tr("%1 is sent when the module next reads an SMS").arg(shown)
                : tr("%1 is sent when the module next reads an SMS, in place of %2, which is not sent")
                      .arg(shown, logText(replaced)));
        break;
    case WaitingCommand::Placing::NoConnection:
        Q_EMIT messageWanted(m_texts.text(Text::EstablishConnection), portTopic);
        break;
    case WaitingCommand::Placing::Transmitting:
        Q_EMIT statusMessage(tr("%1 is not sent: a configuration is being transmitted").arg(shown));
        break;
    }
}

/// The command sequence may have set a value; the user sees what the module got.
void LinkPresenter::takeOverTransmitted()
{
    m_document.adjust([this](Configuration &configuration) {
        const Configuration &sent = m_transmitter.transmitted();
        for (std::size_t i = 0; i < configuration.switchPoints.size(); ++i) {
            SwitchPoint asSent = sent.switchPoints[i];
            asSent.value = configuration.switchPoints[i].value;
            if (asSent == configuration.switchPoints[i]) {
                configuration.switchPoints[i] = sent.switchPoints[i];
            }
        }
    });
}

std::optional<QString> LinkPresenter::toldVersion() const
{
    return m_hasTold ? std::optional(m_versions.module().configuration) : std::nullopt;
}

void LinkPresenter::showVersion()
{
    if (m_info != nullptr) {
        m_info->setApplicationVersion(m_versions.module().application);
        m_info->setModuleVersion(m_versions.module().configuration);
    }
}

} // namespace ktr
