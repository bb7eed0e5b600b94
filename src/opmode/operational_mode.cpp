#include "opmode/operational_mode.h"

#include "opmode/keeping/list_replay.h"
#include "opmode/late_record.h"
#include "opmode/leased_line.h"
#include "opmode/list_opener.h"
#include "opmode/standing_alarms.h"
#include "opmode/watch_summary.h"
#include "record/record_address.h"

#include <QFileInfo>
#include <QJsonArray>

namespace ktr {

namespace {

constexpr Milliseconds aMinute{60'000};

const QString operatorSetting = QStringLiteral("operator");

namespace member = request_members;

} // namespace

OperationalMode::OperationalMode(const Services &services, const StationCaptions &captions, QObject *parent)
    : QObject(parent),
      m_services(services),
      m_callbacks(services.callbackTimers(services.timers)),
      m_liteTimers(*m_callbacks),
      m_tree(captions),
      m_stations(m_tree, m_liteTimers, [this] { return createLine(); }),
      m_scheduler(m_stations, m_services.environment),
      m_minute(services.timers.create()),
      m_keepingTrouble(services.timers, m_services.environment, [this] { return m_record.waitingCount(); }),
      m_record(services.timers, [this](const QString &trouble) { Q_EMIT m_list.recordTrouble(trouble); }),
      m_alarms([this] { return m_record.isOpen() ? m_record.writer().nextAlarmId() : ++m_lastAlarm; }),
      m_alarmActions(
          m_alarms, m_record, [this] { return moment(); },
          [this](const Request &request) { return isTooEarly() || asks(request); }),
      m_watchAlarms(m_alarms, services.timers, m_services.environment),
      m_parts{m_tree,   m_stations, m_scheduler,     m_trends,
              m_record, m_alarms,   services.timers, m_services.environment},
      m_list(
          m_parts, [this](const QString &kennung) { return m_stationActions.attributes(kennung); },
          services.filesInBetween),
      m_stationActions(m_parts, m_watchAlarms),
      m_stationRemoval(m_parts, m_stationActions, m_watchAlarms),
      m_acknowledger(m_parts),
      m_intake(m_parts),
      m_removal(m_parts),
      m_thinning(m_tree, services.timers, m_removal),
      m_desk(m_parts, m_stationActions, m_acknowledger, m_alarmActions),
      m_beat(m_parts),
      m_configurations(services.timers)
{
    m_stations.setClock(m_services.environment.now);
    connect(&m_alarms, &AlarmBook::changed, this, [this](const AlarmRow &alarm) { m_record.add(alarm); });
    connect(&m_tree, &StationTree::stationRenamed, this, &OperationalMode::rename);
    connect(&m_configurations, &StationConfigurations::statusMessage, this, &OperationalMode::statusMessage);
    connect(&m_stationActions, &StationActions::changed, this,
            [this](const QString &kennung) { showStatus(*station(kennung)); });
    connect(&m_intake, &MessageIntake::statusMessage, this, &OperationalMode::statusMessage);
    connect(&m_intake, &MessageIntake::happened, this, &OperationalMode::happened);
    connect(&m_intake, &MessageIntake::alarmRaised, this, &OperationalMode::alarmRaised);
    connect(&m_list, &KeptList::statusMessage, this, &OperationalMode::statusMessage);
    connect(&m_list, &KeptList::recovered, this, &OperationalMode::recovered);
    connect(&m_list, &KeptList::recordTrouble, this, &OperationalMode::setKeepingTrouble);
    connect(&m_list, &KeptList::recordOpened, this, &OperationalMode::takeUpLate);
    connect(&m_list, &KeptList::recordMended, this,
            [this](const QString &what) { m_watchAlarms.tellRecord(what); });
    connect(&m_list, &KeptList::settled, &m_intake, &MessageIntake::settled);
    connect(&m_keepingTrouble, &KeepingTrouble::statusMessage, this, &OperationalMode::statusMessage);
    connect(&m_keepingTrouble, &KeepingTrouble::changed, this, &OperationalMode::unkeptChangesChanged);
    m_desk.setHeard([this](const QString &kennung, const HeardText &heard) {
        m_intake.handleLate(kennung, heard.text, heard.at);
    });
    m_desk.setSettingsChanged([this](const QHash<QString, QString> &changed) {
        QHash<QString, QString> settings = m_record.settings();
        settings.insert(changed);
        m_record.knowSettings(settings);
        takeSettings(settings);
    });
    m_stations.setAnswersLater([this](const QString &kennung) { return m_intake.answersLater(kennung); });
    connect(&m_stations, &cStations::message, &m_intake, &MessageIntake::handle);
    connect(&m_stations, &cStations::changed, this, &OperationalMode::onStationChanged);
    connect(&m_stations, &cStations::trouble, this, [this](const QString &kennung, const QString &text) {
        Q_EMIT statusMessage(kennung + QLatin1String(": ") + text);
        Q_EMIT stationChanged(kennung);
    });
}

OperationalMode::~OperationalMode()
{
    m_stations.setAnswersLater({});
    m_stations.disconnect(this); // what they still say when they go has nowhere to be kept
    m_alarms.disconnect(this);
    m_desk.stop();
    m_beat.stop();
    if (m_shared) { // its stations may go to others once what they said is written
        closeWithoutFile();
    }
    m_list.end(); // the record may still be refused by the disk: nobody is left to be told
}

Status OperationalMode::open(const QString &nodesPath, Use use)
{
    clearTree();
    m_states.clear();
    if (isServerAddress(nodesPath) && use != Use::Look) {
        return keepShared(nodesPath, use);
    }
    if (use == Use::Look && isServerAddress(nodesPath)) {
        RecordReader reader(nodesPath);
        return join(nodesPath, readSharedState(reader));
    }
    if (use == Use::Look) {
        Status joined = joinList(nodesPath, nullptr);
        m_hindrance = joined ? Hindrance::None : Hindrance::InUse;
        return joined;
    }
    if (Status locked = m_list.lock(nodesPath, use == Use::WatchAnyway); !locked) {
        m_hindrance = Hindrance::InUse;
        return locked;
    }
    ListOpener list(m_list.file(), m_tree);
    Status loaded = m_list.load(list, use == Use::Keep);
    m_hindrance = loaded ? Hindrance::None : Hindrance::Unusable;
    takeUp(list);
    createStations(list.takeAttributes());
    m_isOpen = true;
    if (m_list.isKept()) {
        m_desk.start();
        m_beat.start();
    }
    beginWatchAlarms(loaded, list.unwatchedSince());
    return loaded;
}

Status OperationalMode::join(const QString &address, const SharedState &state)
{
    clearTree();
    m_states.clear();
    Status joined = state.status ? joinList(address, &state) : state.status;
    m_hindrance = joined ? Hindrance::None : Hindrance::InUse;
    return joined;
}

/// The stations come one by one, as far as they are this keeper's.
Status OperationalMode::keepShared(const QString &address, Use use)
{
    if (use != Use::Keep) {
        m_hindrance = Hindrance::InUse;
        return Status::failed(tr("%1: the stations are shared by keepers").arg(address));
    }
    (void)m_list.look(address);
    const OpenedRecord opened = m_record.open();
    QHash<QString, QString> settings;
    Status read = opened.status;
    if (read) {
        read = RecordReader(address).settings(settings);
    }
    m_hindrance = read ? Hindrance::None : Hindrance::Unusable;
    if (!read) {
        return read;
    }
    m_record.begin(opened, {}, opened.lastAlarm, m_services.spoolFolder);
    m_record.writer().setRemarked([this](const QString &what) {
        m_record.add(EventKind::Trouble, {}, moment(), what, ListRecord::By::Program);
        Q_EMIT statusMessage(what);
    });
    if (!m_record.spoolTrouble().isEmpty()) {
        Q_EMIT statusMessage(
            tr("What the server does not take can wait in memory alone: %1").arg(m_record.spoolTrouble()));
    }
    m_record.knowSettings(settings);
    takeSettings(m_record.settings());
    m_alarms.load({}, {}); // those of each station come with it
    m_record.add(EventKind::Started, {}, moment(), m_services.name, ListRecord::By::Program);
    m_isOpen = true;
    m_desk.start();
    m_scheduler.start();
    beginWatchAlarms(Status::done(), 0);
    awaitNextMinute();
    m_shared = std::make_unique<SharedList>(m_parts, m_stationActions, m_watchAlarms, m_services.name,
                                            m_services.leaseTimes, opened.lastAlarm / numbersOfABlock);
    m_duty = std::make_unique<ListDuty>(m_parts, m_watchAlarms, m_shared->leases());
    connect(m_shared.get(), &SharedList::turned, this, [this] {
        m_duty->turned();
        Q_EMIT dutiesChanged();
    });
    m_record.writer().setSettled([this] {
        m_intake.settled();
        m_shared->settled();
    });
    connect(m_shared.get(), &SharedList::statusMessage, this, &OperationalMode::statusMessage);
    connect(m_shared.get(), &SharedList::trouble, this, [this](const QString &reason) {
        Q_EMIT statusMessage(reason.isEmpty() ? tr("The record can be asked for stations again") : reason);
    });
    connect(m_shared.get(), &SharedList::shareChanged, this, &OperationalMode::shareChanged);
    connect(m_shared.get(), &SharedList::begun, this,
            [this](const QString &kennung) { showStatus(*station(kennung)); });
    return read;
}

/// Only who has the station's lease may use its line.
std::unique_ptr<StationLine> OperationalMode::createLine()
{
    std::unique_ptr<StationLine> line = m_services.createLine();
    if (!isServerAddress(m_record.path())) {
        return line;
    }
    return std::make_unique<LeasedLine>(
        std::move(line), LeasedLine::May{[this] { return m_shared && m_shared->isHeld(); },
                                         [this] { return m_shared && m_shared->mayAnswer(); }});
}

/// What the record has of the list's settings and alarms.
void OperationalMode::takeUp(const ListOpener &list)
{
    takeSettings(list.settings());
    takeUpAlarms(m_parts, m_acknowledger, list.standing(), AlarmActions::shelves(list.settings()));
    m_alarmActions.minute();
}

void OperationalMode::takeSettings(const QHash<QString, QString> &settings)
{
    m_thinning.setRules(retentionRules(settings.value(retentionSetting())));
    m_watchAlarms.setLongestSilence(
        settings.value(silenceSetting(), QString::number(WatchAlarms::usualSilence)).toInt());
    m_alarmActions.load(settings);
    m_lastOperator = settings.value(operatorSetting);
}

/// The record of a list that was watched without it so far.
void OperationalMode::takeUpLate(const OpenedRecord &opened)
{
    m_stationRemoval.forget(); // their numbers are others from now on
    LateRecord late(m_parts, m_list.path(), m_tree.captions());
    if (const Status taken = late.takeUp(opened); !taken) {
        setKeepingTrouble(taken.message());
        m_list.openRecordLater();
        return;
    }
    m_watchAlarms.renumber(late.renumbered());
    takeSettings(late.settings());
    if (late.changesTree()) {
        copyTree(late.tree(), m_tree);
        followStations(late.attributes());
    }
    QList<AlarmRow> standing;
    for (const auto &[id, alarm] : late.alarms().standing()) {
        standing += alarm;
    }
    m_alarms.load(standing, late.alarms().shelves());
    m_list.goOnWith(late.list());
    if (const qint64 since = late.list().unwatchedSince(); since != 0) {
        m_watchAlarms.tellUnwatched(since, late.begun(), tr("The program did not end properly last time"));
    }
    m_alarmActions.minute();
}

/// Stations become what a list says that was brought up to date while they were watched.
void OperationalMode::followStations(const QHash<QString, StationAttributes> &attributes)
{
    QStringList gone;
    m_stations.forEach([&](const cStation &station) {
        if (!m_tree.find(station.kennung()).isValid()) {
            gone += station.kennung();
        }
    });
    for (const QString &kennung : std::as_const(gone)) {
        m_stations.Remove(kennung);
        m_scheduler.remove(kennung);
        m_trends.remove(kennung);
    }
    for (int row = 0; row < m_tree.rowCount(); ++row) {
        const QString kennung = m_tree.index(row, 0).data(StationTree::KeyRole).toString();
        const StationAttributes wanted = attributes.value(kennung);
        m_stations.addStation(kennung, wanted.hostAddress);
        cStation &station = *m_stations.Item(kennung);
        if (station.online() && (!wanted.online || station.hostAddress() != wanted.hostAddress)) {
            station.disconnect();
        }
        station.setHostAddress(wanted.hostAddress);
        station.setExclusiveMode(wanted.exclusiveMode);
        m_scheduler.setSchedule(kennung, wanted.schedule);
        if (wanted.online && !station.online() && !isLent(kennung)) {
            station.connectStation();
        }
        showStatus(station);
    }
}

/// With what was found at the opening.
void OperationalMode::beginWatchAlarms(const Status &loaded, qint64 unwatchedSince)
{
    m_watchAlarms.start([this](qint64 number) {
        const cStation *station = m_stations.Item(m_record.kennung(number));
        return station != nullptr && station->online();
    });
    if (unwatchedSince != 0) {
        m_watchAlarms.tellUnwatched(unwatchedSince, moment(),
                                    tr("The program did not end properly last time"));
    }
    if (!loaded) {
        m_watchAlarms.beginListTrouble(tr("The list of stations cannot be used: %1").arg(loaded.message()));
    } else if (!defects().isEmpty()) {
        m_watchAlarms.tellList(
            tr("Not all of the list of stations is as it was: %1").arg(defects().constFirst()));
    }
}

void OperationalMode::setRetention(const RetentionRules &rules)
{
    if (!asks(settingRequest(retentionSetting(), toJson(rules)))) {
        m_thinning.setRules(rules);
        m_record.add(SettingRow{retentionSetting(), toJson(rules)});
    }
}

std::optional<DiskRoom> OperationalMode::diskRoom() const
{
    return m_services.diskRoom(QFileInfo(m_list.path()).absolutePath());
}

/// A large disk has room enough with less than a twentieth of it.
void OperationalMode::checkDiskRoom()
{
    constexpr qint64 gibibyte = qint64{1} << 30;
    const std::optional<DiskRoom> room = diskRoom();
    const bool isLow =
        room && (room->free < gibibyte || room->free < std::min(room->all / 20, 10 * gibibyte));
    m_watchAlarms.setRoomTrouble(isLow ? tr("The disk with the record is nearly full") : QString());
}

void OperationalMode::setLongestSilence(int minutes)
{
    if (!asks(settingRequest(silenceSetting(), QString::number(minutes)))) {
        m_watchAlarms.setLongestSilence(minutes);
        m_record.add(SettingRow{silenceSetting(), QString::number(minutes)});
    }
}

Status OperationalMode::joinList(const QString &nodesPath, const SharedState *state)
{
    NodesFile &file = m_list.look(nodesPath);
    m_joined = std::make_unique<JoinedList>(m_parts, nodesPath);
    connect(m_joined.get(), &JoinedList::happened, this, &OperationalMode::happened);
    connect(m_joined.get(), &JoinedList::statusMessage, this, &OperationalMode::statusMessage);
    connect(m_joined.get(), &JoinedList::alarmRaised, this, &OperationalMode::alarmRaised);
    connect(m_joined.get(), &JoinedList::stationChanged, this,
            [this](const QString &kennung) { showStatus(*m_stations.Item(kennung)); });
    connect(m_joined.get(), &JoinedList::keeperChanged, this, [this] {
        Q_EMIT keeperChanged();
        m_stations.forEach([this](const cStation &station) { // what can be done with them is another thing
            Q_EMIT stationChanged(station.kennung());
        });
    });
    connect(m_joined.get(), &JoinedList::replaced, this, &OperationalMode::joinAgain,
            Qt::QueuedConnection); // not from inside its own call
    connect(m_joined.get(), &JoinedList::settingsChanged, this, &OperationalMode::takeSettings);
    Status joined = Status::done();
    if (state != nullptr) {
        m_joined->openShared(*state);
    } else {
        joined = m_joined->open(file);
    }
    if (!joined) {
        m_joined.reset();
        clearTree();
        return joined;
    }
    for (const QString &defect : m_joined->defects()) {
        m_list.tellDefect(defect);
    }
    m_isOpen = true;
    return joined;
}

/// Of a list that was edited or replaced, which who keeps it follows.
void OperationalMode::joinAgain()
{
    const qint64 told = m_joined->lastEvent();
    closeWithoutFile();
    const Status joined = open(m_list.path(), Use::Look);
    if (joined) {
        m_joined->tellWhatCameAfter(told);
    } else {
        Q_EMIT statusMessage(joined.message());
    }
    Q_EMIT joinedAgain(joined);
}

std::optional<QDateTime> OperationalMode::unwatchedSince() const
{
    return m_joined ? m_joined->unkeptSince() : std::nullopt;
}

QString OperationalMode::whyNot(Deed deed) const
{
    if (!m_joined) {
        return {};
    }
    const RecordRights &rights = m_joined->rights();
    return unreachableSince()   ? tr("The record cannot be reached")
           : unwatchedSince()   ? tr("Nobody watches the stations")
           : !rights.mayOperate ? tr("The database lets this user look on only")
           : deed == Deed::Administer && !rights.mayAdminister
               ? tr("The database lets administrators do that only")
               : QString();
}

QString OperationalMode::whyNotForAll() const
{
    return m_joined && !isServerAddress(m_record.path()) ? tr("Done in the program that watches the stations")
                                                         : whyNot(Deed::Administer);
}

/// What is asked for here is another program's to do.
bool OperationalMode::asks(const Request &request)
{
    if (m_joined) {
        m_joined->ask(request);
    }
    return m_joined != nullptr;
}

/// The record has alarms, rules and shelves that are not known yet.
bool OperationalMode::isTooEarly()
{
    if (m_record.isAwaited()) {
        Q_EMIT statusMessage(mayAcknowledge().message());
    }
    return m_record.isAwaited();
}

Status OperationalMode::openEmpty()
{
    if (Status aside = m_list.putAside(); !aside) {
        return aside;
    }
    closeWithoutFile();
    return open(QString(m_list.path()), Use::Keep);
}

void OperationalMode::setKeepingTrouble(const QString &trouble)
{
    m_watchAlarms.setDiskTrouble(
        trouble.isEmpty() ? QString() : tr("What happens cannot be written to the record: %1").arg(trouble));
    m_keepingTrouble.set(trouble);
}

/// The stations of the tree come to life.
void OperationalMode::createStations(const QHash<QString, StationAttributes> &attributes)
{
    for (int row = 0; row < m_tree.rowCount(); ++row) {
        const QString kennung = m_tree.index(row, 0).data(StationTree::KeyRole).toString();
        m_stationActions.begin(kennung, attributes.value(kennung));
    }
    m_scheduler.start();
    m_stations.forEach([&](const cStation &station) {
        m_stationActions.goOn(station.kennung());
        showStatus(station);
    });
    awaitNextMinute();
    m_list.begin();
}

qint64 OperationalMode::moment() const
{
    return m_services.environment.now().toMSecsSinceEpoch();
}

void OperationalMode::mendRecord()
{
    if (m_record.isOpen()) {
        m_record.writer().mend();
    }
}

QString OperationalMode::recordPath() const
{
    return m_record.isOpen() || m_joined ? m_record.path() : QString();
}

void OperationalMode::setOperator(const QString &name)
{
    if (name == operatorName()) {
        return;
    }
    m_record.setOperator(name);
    if (!name.isEmpty()) {
        m_lastOperator = name;
        m_record.add(SettingRow{operatorSetting, name});
    }
    if (!m_joined) {
        m_record.addShift(moment());
    } else if (!isIdle()) {
        m_joined->ask({requests::shift, {}});
    }
}

void OperationalMode::rename(const QString &kennung, const QString &before)
{
    if (!m_isOpen) { // it is being loaded
        return;
    }
    m_configurations.rename(before, m_tree.find(kennung).data(Qt::EditRole).toString());
    if (!m_joined) {
        m_stationActions.keepName(kennung, before);
    } else if (!m_joined->isCarryingOut()) {
        const QString name = m_tree.find(kennung).data(Qt::EditRole).toString();
        m_joined->showName(kennung, before);
        m_joined->ask(stationRequest(requests::rename, m_record.number(kennung), {{member::name, name}}));
    }
}

StationConfiguration OperationalMode::configuration(const QString &kennung) const
{
    const cStation *known = station(kennung);
    return m_configurations.of(m_tree.find(kennung).data(Qt::EditRole).toString(),
                               known == nullptr ? QString() : known->hostAddress());
}

QString OperationalMode::addStation(const QString &name, const QString &hostAddress, bool online)
{
    const QJsonObject about{{member::name, name}, {member::address, hostAddress}, {member::on, online}};
    return asks({requests::add, about}) ? m_tree.freeName(name)
                                        : m_stationActions.add(name, hostAddress, online);
}

void OperationalMode::removeStation(const QString &kennung)
{
    if (!asks(stationRequest(requests::remove, m_record.number(kennung)))) {
        m_stationActions.remove(kennung);
    }
}

QString OperationalMode::whyNotBack() const
{
    return m_joined               ? tr("The program that watches the stations removes them for good")
           : m_record.isAwaited() ? tr("The record cannot be opened yet")
                                  : QString();
}

void OperationalMode::settleRestored()
{
    m_stationRemoval.settle();
    m_list.saveSoon(); // a file that was written meanwhile has none of their entries
}

void OperationalMode::setHostAddress(const QString &kennung, const QString &hostAddress)
{
    if (!m_joined) {
        m_stationActions.setHostAddress(kennung, hostAddress);
    } else if (const cStation *shown = station(kennung);
               shown != nullptr && shown->hostAddress() != hostAddress) {
        asks(stationRequest(requests::address, m_record.number(kennung), {{member::address, hostAddress}}));
        Q_EMIT stationChanged(kennung); // as it is until that is done
    }
}

void OperationalMode::setOnline(const QString &kennung, bool online)
{
    if (asks(stationRequest(requests::online, m_record.number(kennung), {{member::on, online}}))) {
        Q_EMIT stationChanged(kennung);
    } else {
        m_stationActions.setOnline(kennung, online);
    }
}

void OperationalMode::setAllOnline(bool online)
{
    if (!asks({requests::online, {{member::on, online}}})) {
        m_stationActions.setAllOnline(online);
    }
}

void OperationalMode::setExclusive(const QString &kennung, bool exclusive)
{
    if (asks(stationRequest(requests::exclusive, m_record.number(kennung), {{member::on, exclusive}}))) {
        Q_EMIT stationChanged(kennung);
    } else {
        m_stationActions.setExclusive(kennung, exclusive);
    }
}

void OperationalMode::setSchedule(const QString &kennung, const ExclusiveSchedule &schedule)
{
    StationAttributes wanted;
    wanted.schedule = schedule;
    if (asks(stationRequest(requests::schedule, m_record.number(kennung),
                            {{member::attributes, toJson(wanted)}}))) {
        Q_EMIT stationChanged(kennung);
    } else {
        m_stationActions.setSchedule(kennung, schedule);
    }
}

bool OperationalMode::requestValues(const QString &kennung)
{
    return asks(stationRequest(requests::values, m_record.number(kennung))) ||
           m_stationActions.requestValues(kennung);
}

QString OperationalMode::stationAt(const QString &hostAddress) const
{
    return m_joined ? QString() : m_stationActions.stationAt(hostAddress); // there is none to let go of
}

void OperationalMode::takeArrived()
{
    if (m_joined) {
        m_joined->takeArrived();
        return;
    }
    m_stations.forEach([](cStation &station) { station.handleWaiting(); });
}

/// To those who look on, and to the record.
void OperationalMode::onStationChanged(const QString &kennung, StationChange what)
{
    const cStation &station = *m_stations.Item(kennung);
    m_watchAlarms.onStationChanged(m_record.number(kennung), what, station.loss());
    if (what != StationChange::TextDelivered) {
        const StationEvent told = stateEvent(station, what, moment());
        if (std::optional<EventRow> event = m_states.news(station, what, told)) {
            m_record.add(event->kind, kennung, told.at, event->text, ListRecord::By::Program, event->detail);
        }
        if (what == StationChange::PukNeeded) {
            m_services.beep();
        } else if (what == StationChange::LossBegan || what == StationChange::LossOver) {
            Q_EMIT statusMessage(kennung + QLatin1String(": ") + ktr::textOf(*station.loss()));
        }
        Q_EMIT happened(told);
    }
    showStatus(station);
}

Status OperationalMode::close()
{
    if (m_list.isKept()) {
        takeArrived();
        if (Status written = m_list.save(); !written) {
            return written;
        }
    }
    removeAll();
    return Status::done();
}

void OperationalMode::closeWithoutFile()
{
    removeAll();
}

void OperationalMode::removeAll()
{
    if (m_joined) { // their states are not this program's, and nothing of them is told
        m_stations.forEach([](cStation &station) { station.show({}); });
        m_joined.reset();
    }
    if (m_isOpen) {
        m_record.add(EventKind::Stopped, {}, moment(), m_list.path(), ListRecord::By::Program);
        if (!m_shared) {
            m_record.add(SettingRow{keeperSetting(), {}});
        }
    }
    m_isOpen = false;
    m_stationRemoval.forget();
    m_minute->stop();
    m_desk.stop();
    m_beat.stop();
    m_thinning.stop();
    m_intake.clear();
    QStringList keys;
    m_stations.forEach([&keys](const cStation &station) { keys.prepend(station.kennung()); });
    for (const QString &kennung : keys) {
        m_stations.Remove(kennung);
    }
    m_list.release();
    m_duty.reset();
    m_shared.reset();     // nothing is left to be said or written of its stations: others may have them
    m_watchAlarms.stop(); // what the stations and the record said at their end is taken
    m_keepingTrouble.clear();
}

/// Of what stayed when a list was closed.
void OperationalMode::clearTree()
{
    while (m_tree.rowCount() > 0) {
        m_tree.remove(m_tree.index(m_tree.rowCount() - 1, 0));
    }
    m_scheduler.clear();
    m_stationActions.clear();
}

QString OperationalMode::stationOf(const AlarmRow &alarm) const
{
    return m_record.kennung(alarm.station);
}

/// Why nothing can be acknowledged.
Status OperationalMode::mayAcknowledge() const
{
    if (isIdle()) {
        return Status::failed(whyNot(Deed::Operate));
    }
    if (m_list.isKept() && !m_record.isOpen()) {
        return Status::failed(tr("The record cannot be opened yet, which is tried again all the time: %1")
                                  .arg(m_keepingTrouble.reason()));
    }
    return Status::done();
}

Status OperationalMode::acknowledge(const QModelIndexList &entries)
{
    Status may = mayAcknowledge();
    if (!may || !m_joined) {
        return may ? m_acknowledger.acknowledge(entries) : may;
    }
    QJsonArray wanted;
    const NodeStore &nodes = m_tree.nodes();
    for (const QModelIndex &entry : entries) {
        const NodeStore::Id id = StationTree::idOf(entry);
        const qint64 station = m_record.number(textOf(nodes.name(nodes.parent(nodes.parent(id)))));
        wanted += QJsonObject{{member::station, station},
                              {member::entry, textOf(nodes.name(id))},
                              {member::raised, m_tree.arrivals().value(id).raised}};
    }
    asks({requests::acknowledge, {{member::entries, wanted}}});
    return may;
}

Status OperationalMode::acknowledgeAlarms(const QList<qint64> &alarms)
{
    Status may = mayAcknowledge();
    if (!may || !m_joined) {
        return may ? m_acknowledger.acknowledgeAlarms(alarms) : may;
    }
    QJsonArray wanted;
    for (const qint64 alarm : alarms) {
        wanted += alarm;
    }
    asks({requests::acknowledge, {{member::alarms, wanted}}});
    return may;
}

void OperationalMode::awaitNextMinute()
{
    const Milliseconds time(m_services.environment.now().time().msecsSinceStartOfDay());
    m_minute->start(aMinute - time % aMinute, [this] {
        if (!m_shared || m_shared->isHeld()) { // others may have the stations
            m_scheduler.evaluate([this](const cStation &station) {
                m_stationActions.keep(station.kennung(), ListRecord::By::Program);
                showStatus(station);
            });
        }
        m_alarmActions.minute();
        if (m_list.isKept()) {
            m_list.check();
            checkDiskRoom();
        }
        if (m_list.isKept() || m_shared) {
            m_thinning.check(now(), m_record,
                             m_duty && !m_duty->isHeld() ? Thinning::Of::Tree : Thinning::Of::All);
        }
        awaitNextMinute();
    });
}

void OperationalMode::showStatus(const cStation &station)
{
    StationStatus status;
    status.line = lineOf(station.online(), station.liveness());
    status.exclusive = station.exclusiveMode();
    status.pukNeeded = station.pukNeeded();
    if (station.loss() && !station.loss()->isOver) {
        status.loss = station.loss();
    }
    m_tree.setStatus(station.kennung(), status);
    Q_EMIT stationChanged(station.kennung());
}

} // namespace ktr
