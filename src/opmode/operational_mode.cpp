#include "opmode/operational_mode.h"

#include "config/address.h"
#include "link/conversation_log.h"
#include "link/udp_pair.h"
#include "opmode/keeping/list_replay.h"
#include "opmode/list_opener.h"
#include "opmode/tree/acknowledgement.h"
#include "opmode/tree/notifications.h"
#include "platform/files.h"
#include "platform/overloaded.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace ktr {

namespace {

/// The module sends all its input values for it.
const QString allValues = QStringLiteral("A*");

constexpr Milliseconds aMinute{60'000};
constexpr Milliseconds aSecond{1000};

const QString operatorSetting = QStringLiteral("operator");
const QString retentionSetting = QStringLiteral("retention");
const QString silenceSetting = QStringLiteral("silentAfter");

/// Addresses that name the same module are the same text.
QString comparable(const QString &hostAddress)
{
    static const QString port = u':' + QString::number(UdpPair::modulePort);
    const QString address = hostAddress.trimmed().toLower();
    return withoutLeadingZeros(address.endsWith(port) ? address.chopped(port.size()) : address);
}

/// What is shown and searched for of a station's attributes.
QString summaryOf(const StationAttributes &attributes)
{
    QStringList parts{attributes.online ? QStringLiteral("online") : QStringLiteral("offline")};
    if (attributes.exclusiveMode) {
        parts += QStringLiteral("exclusive");
    }
    if (!attributes.hostAddress.isEmpty()) {
        parts += attributes.hostAddress;
    }
    return parts.join(QLatin1String(", "));
}

/// The list itself is the last.
QStringList filesOf(const QString &nodesPath)
{
    const EarlierFiles earlier(nodesPath);
    return {earlier.journal(), earlier.times(), nodesPath};
}

} // namespace

OperationalMode::OperationalMode(const Services &services, const StationCaptions &captions, QObject *parent)
    : QObject(parent),
      m_services(services),
      m_callbacks(services.callbackTimers(services.timers)),
      m_liteTimers(*m_callbacks),
      m_tree(captions),
      m_stations(m_tree, m_liteTimers, services.createLine),
      m_scheduler(m_stations, m_services.environment),
      m_answers(m_stations, services.timers),
      m_minute(services.timers.create()),
      m_tellAgain(services.timers.create()),
      m_record(services.timers, [this](const QString &trouble) { setKeepingTrouble(trouble); }),
      m_alarms([this] { return m_record.isOpen() ? m_record.writer().nextAlarmId() : ++m_lastAlarm; }),
      m_alarmActions(
          m_alarms, m_record, [this] { return moment(); }, [this] { return isDoneElsewhere(); }),
      m_watchAlarms(m_alarms, services.timers, m_services.environment),
      m_thinning(
          m_tree, services.timers, [this](NodeStore::Id notification) { return mayGo(notification); },
          [this](NodeStore::Id entry) { removeEntry(entry, ListRecord::By::Program); })
{
    connect(&m_alarms, &AlarmBook::changed, this, &OperationalMode::keepAlarm);
    connect(&m_tree, &StationTree::stationRenamed, this, &OperationalMode::rename);
    m_stations.setAnswersLater([this](const QString &kennung) { return answersLater(kennung); });
    connect(&m_stations, &cStations::message, this, &OperationalMode::applyMessage);
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
    m_keeper.reset();
    m_isEnding = true; // the record may still be refused by the disk: nobody is left to be told
    m_record.end();
}

Status OperationalMode::open(const QString &nodesPath, Use use)
{
    clearTree();
    m_defects.clear();
    m_states.clear();
    m_path = nodesPath;
    if (use == Use::Look) {
        Status joined = join();
        m_hindrance = joined ? Hindrance::None : Hindrance::InUse;
        return joined;
    }
    if (Status locked = takeLock(use); !locked) {
        m_hindrance = Hindrance::InUse;
        return locked;
    }
    m_file.emplace(nodesPath);
    QHash<QString, StationAttributes> attributes;
    Status loaded = load(use, attributes);
    m_hindrance = loaded ? Hindrance::None : Hindrance::Unusable;
    createStations(attributes);
    m_isOpen = true;
    beginWatchAlarms(loaded);
    return loaded;
}

/// With what was found at the opening.
void OperationalMode::beginWatchAlarms(const Status &loaded)
{
    m_watchAlarms.start([this](qint64 number) {
        const cStation *station = m_stations.Item(m_record.kennung(number));
        return station != nullptr && station->online();
    });
    if (const qint64 since = std::exchange(m_unwatchedSince, 0); since != 0) {
        m_watchAlarms.tellUnwatched(since, moment(), tr("The program did not end properly last time"));
    }
    if (!loaded) {
        m_watchAlarms.beginListTrouble(tr("The list of stations cannot be used: %1").arg(loaded.message()));
    } else if (!m_defects.isEmpty()) {
        m_watchAlarms.tellList(
            tr("Not all of the list of stations is as it was: %1").arg(m_defects.constFirst()));
    }
}

void OperationalMode::setRetention(const RetentionRules &rules)
{
    m_thinning.setRules(rules);
    m_record.add(SettingRow{retentionSetting, toJson(rules)});
}

/// What stands in the book must be found in the tree.
bool OperationalMode::mayGo(NodeStore::Id notification) const
{
    const NodeStore &nodes = m_tree.nodes();
    const NodeStore::Id station = nodes.parent(nodes.parent(notification));
    return !isAlarm(m_tree, notification) &&
           m_alarms.find(m_record.number(textOf(nodes.name(station))),
                         splitNotification(textOf(nodes.text(notification))).message) == nullptr;
}

int OperationalMode::removeEntries(const QModelIndexList &entries)
{
    QList<NodeStore::Id> removed;
    for (const QModelIndex &entry : entries) {
        const NodeStore::Id id = StationTree::idOf(entry);
        if (m_tree.nodes().kind(id) == NodeKind::Notification && mayGo(id) && !removed.contains(id)) {
            removed += id;
        }
    }
    for (const NodeStore::Id id : std::as_const(removed)) {
        removeEntry(id, ListRecord::By::Operator);
    }
    return static_cast<int>(removed.size());
}

void OperationalMode::removeEntry(NodeStore::Id entry, ListRecord::By by)
{
    const NodeStore &nodes = m_tree.nodes();
    const NodeStore::Id branch = nodes.parent(entry);
    const QString kennung = textOf(nodes.name(nodes.parent(branch)));
    const QString name = textOf(nodes.name(entry));
    if (nodes.kind(entry) == NodeKind::Notification) {
        NotificationRow row =
            m_record.notification(m_record.number(kennung), name, m_tree.arrivals().value(entry));
        row.listed = false;
        m_record.add(row);
    }
    m_record.add(EventKind::EntryRemoved, kennung, moment(), textOf(nodes.name(branch)) + u'/' + name, by);
    m_tree.remove(nodeIndex(m_tree, entry));
}

std::optional<DiskRoom> OperationalMode::diskRoom() const
{
    return m_services.diskRoom(QFileInfo(m_path).absolutePath());
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
    m_watchAlarms.setLongestSilence(minutes);
    m_record.add(SettingRow{silenceSetting, QString::number(minutes)});
}

Status OperationalMode::join()
{
    m_lockTrouble.clear();
    m_file.emplace(m_path);
    m_record.setList(m_path);
    m_joined =
        std::make_unique<JoinedList>(JoinedList::Parts{m_tree, m_stations, m_scheduler, m_trends, m_record,
                                                       m_alarms, m_services.timers, m_services.environment},
                                     m_path);
    connect(m_joined.get(), &JoinedList::happened, this, &OperationalMode::happened);
    connect(m_joined.get(), &JoinedList::statusMessage, this, &OperationalMode::statusMessage);
    connect(m_joined.get(), &JoinedList::alarmRaised, this, &OperationalMode::alarmRaised);
    connect(m_joined.get(), &JoinedList::stationChanged, this,
            [this](const QString &kennung) { showStatus(*m_stations.Item(kennung)); });
    connect(m_joined.get(), &JoinedList::keeperChanged, this, &OperationalMode::keeperChanged);
    connect(m_joined.get(), &JoinedList::replaced, this, &OperationalMode::joinAgain,
            Qt::QueuedConnection); // not from inside its own call
    Status joined = m_joined->open(*m_file);
    if (!joined) {
        m_joined.reset();
        clearTree();
        return joined;
    }
    for (const QString &defect : m_joined->defects()) {
        tellDefect(defect);
    }
    if (const std::optional<QString> rules = m_joined->rules()) {
        m_alarms.setRules(AlarmRules::fromJson(*rules).value_or(AlarmRules()));
    }
    m_isOpen = true;
    return joined;
}

/// Of a list that was edited or replaced, which who keeps it follows.
void OperationalMode::joinAgain()
{
    const qint64 told = m_joined->lastEvent();
    closeWithoutFile();
    const Status joined = open(m_path, Use::Look);
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

/// What is asked for here is another program's to do.
bool OperationalMode::isDoneElsewhere()
{
    if (m_joined) {
        Q_EMIT statusMessage(tr("Another program watches the stations; it is done there"));
    }
    return m_joined != nullptr;
}

Status OperationalMode::takeLock(Use use)
{
    m_lockTrouble.clear();
    switch (m_lock.take(listLockPath(m_path))) {
    case FileLock::Outcome::Taken:
        break;
    case FileLock::Outcome::Held:
        if (use != Use::WatchAnyway) {
            return Status::failed(tr("%1: the list is in use by %2").arg(m_path, m_lock.holder()));
        }
        Q_EMIT statusMessage(
            tr("%1: the list is in use by %2. Modules answer who announced last: what is told here is "
               "missing there, and the other way round")
                .arg(m_path, m_lock.holder()));
        break;
    case FileLock::Outcome::Impossible:
        m_lockTrouble = tr("%1; another program that uses the list at the same time is not noticed")
                            .arg(m_lock.trouble().message());
        Q_EMIT statusMessage(m_lockTrouble);
        break;
    }
    return Status::done();
}

Status OperationalMode::openEmpty()
{
    const QString path = m_path;
    if (Status aside = keepAside(filesOf(path)); !aside) {
        return aside;
    }
    closeWithoutFile();
    return open(path, Use::Keep);
}

Status OperationalMode::load(Use use, QHash<QString, StationAttributes> &attributes)
{
    ListOpener list(*m_file, m_tree);
    Status loaded = list.loadFile();
    m_record.setList(m_path);
    if (use == Use::Keep && loaded) { // else nothing is written over what cannot be read
        takeUp(list);
    }
    attributes = list.takeAttributes();
    for (const QString &defect : list.defects()) {
        tellDefect(defect);
    }
    for (const QString &remark : list.remarks()) {
        Q_EMIT statusMessage(remark);
    }
    if (list.takenUp() > 0) {
        Q_EMIT recovered(
            tr("The program did not end properly last time; changes taken up from the record: %1")
                .arg(list.takenUp()));
    }
    for (int row = 0; row < m_tree.rowCount(); ++row) { // alarms tell stations apart by their numbers
        const QString kennung = m_tree.index(row, 0).data(StationTree::KeyRole).toString();
        if (m_record.number(kennung) == 0) {
            m_record.addStation(kennung);
        }
    }
    if (loaded && use == Use::Keep) {
        tellWhereKept();
    }
    m_unwatchedSince = list.unwatchedSince();
    m_alarmActions.load([&list](const QString &name) { return list.setting(name); });
    m_lastOperator = list.setting(operatorSetting).value_or(QString());
    takeUpAlarms(list.standing(), AlarmActions::shelves(list.setting(AlarmActions::shelvesSetting)));
    return loaded;
}

/// The list that could not be read whole: it stands where it is until it is written.
void OperationalMode::tellWhereKept()
{
    if (m_file->isToBeKeptAside()) {
        tellDefect(tr("%1: as it is now it is kept as \"%2\" beside it when the list is written")
                       .arg(m_path, QFileInfo(asideName({m_path})).fileName()));
    }
}

QString OperationalMode::unusableKeptAs() const
{
    return asideName(filesOf(m_path));
}

/// From the list as its file has it to the list as the record has it.
void OperationalMode::takeUp(ListOpener &list)
{
    const EarlierFiles earlier(m_path);
    list.takeUp(m_record, earlier, moment());
    setKeepingTrouble(list.recordStatus().message());
    m_keeper.emplace(
        m_tree, *m_file, m_record, list.upto(), m_services.environment,
        [this](const QString &kennung) { return this->attributes(kennung); },
        [this](const QString &trouble) { Q_EMIT statusMessage(trouble); }, m_services.filesInBetween);
    if (m_record.isOpen()) {
        m_record.writer().setSettled([this] { recordSettled(); });
        m_record.add(SettingRow{keeperSetting(), QString::fromUtf8(m_lock.record())});
        m_record.add(EventKind::Started, {}, moment(), m_path, ListRecord::By::Program);
    }
    m_savesSoon = list.mustSave();
    m_thinning.setRules(retentionRules(list.setting(retentionSetting).value_or(QString())));
    m_watchAlarms.setLongestSilence(
        list.setting(silenceSetting).value_or(QString::number(WatchAlarms::usualSilence)).toInt());
}

/// What stood at the end of the last run, and what else is red: of a list that has no record yet, or that was
/// edited.
void OperationalMode::takeUpAlarms(const QList<AlarmRow> &standing, const QList<Shelf> &shelves)
{
    m_alarms.load(standing, shelves);
    eachNotification(m_tree, [this](NodeStore::Id id) {
        const NodeStore &nodes = m_tree.nodes();
        if (isAlarm(m_tree, id)) {
            const NodeStore::Id station = nodes.parent(nodes.parent(id));
            const qint64 number = m_record.number(textOf(nodes.name(station)));
            const NotificationText parts = splitNotification(textOf(nodes.text(id)));
            const AlarmRow *known = m_alarms.find(number, parts.message);
            if (known == nullptr || known->acknowledged != 0 || !known->recipients.contains(parts.number)) {
                const Arrival arrival = m_tree.arrivals().value(id);
                m_alarms.take(number, parts.number, parts.message,
                              arrival.raised != 0 ? arrival.raised : arrival.received);
            }
        }
    });
    QList<qint64> acknowledged; // by whoever edited the list
    for (const auto &[id, alarm] : m_alarms.standing()) {
        if (alarm.kind == AlarmKind::Module && alarm.acknowledged == 0 && isAlarmText(alarm.text)) {
            const QModelIndexList entries = entriesOf(alarm);
            if (std::ranges::none_of(entries, [this](const QModelIndex &entry) {
                    return isAlarm(m_tree, StationTree::idOf(entry));
                })) {
                acknowledged += id;
            }
        }
    }
    m_alarms.acknowledge(acknowledged, moment(), {});
    m_alarmActions.minute();
}

/// In the status bar's list, and for who shows what is not to be missed.
void OperationalMode::tellDefect(const QString &defect)
{
    m_defects += defect;
    Q_EMIT statusMessage(defect);
}

/// The line is told once at the beginning and once at the end, also when the reason changes in between.
void OperationalMode::setKeepingTrouble(const QString &trouble)
{
    if (m_isEnding) {
        return;
    }
    const bool isOver = trouble.isEmpty();
    if (m_keepingTrouble.isEmpty() != isOver) {
        m_unkeptSince = m_services.environment.now();
        Q_EMIT statusMessage(isOver ? tr("What happens is written to the record again") : trouble);
    }
    m_keepingTrouble = trouble;
    m_watchAlarms.setDiskTrouble(
        isOver ? QString() : tr("What happens cannot be written to the record: %1").arg(trouble));
    tellUnkept();
}

/// Again each second, since changes are added all the time.
void OperationalMode::tellUnkept()
{
    m_tellAgain->stop();
    if (!m_keepingTrouble.isEmpty()) {
        m_tellAgain->start(aSecond, [this] { tellUnkept(); });
    }
    Q_EMIT unkeptChangesChanged();
}

std::optional<UnkeptChanges> OperationalMode::unkeptChanges() const
{
    if (m_keepingTrouble.isEmpty()) {
        return std::nullopt;
    }
    const quint64 count =
        m_record.isOpen() ? m_record.writer().addedCount() - m_record.writer().onDiskCount() : 0;
    return UnkeptChanges{m_keepingTrouble, m_unkeptSince, count};
}

/// The stations of the tree come to life.
void OperationalMode::createStations(const QHash<QString, StationAttributes> &attributes)
{
    for (int row = 0; row < m_tree.rowCount(); ++row) {
        const QString kennung = m_tree.index(row, 0).data(StationTree::KeyRole).toString();
        const StationAttributes station = attributes.value(kennung);
        m_stations.addStation(kennung, station.hostAddress);
        m_scheduler.setSchedule(kennung, station.schedule);
        cStation &created = *m_stations.Item(kennung);
        created.setExclusiveMode(station.exclusiveMode);
        if (station.online) {
            created.connectStation();
        }
    }
    m_scheduler.start();
    m_stations.forEach([&](cStation &station) {
        if (station.online() && station.exclusiveMode()) {
            station.send(allValues);
        }
        m_scheduler.switchToPresentState(station);
        showStatus(station);
    });
    awaitNextMinute();
    if (std::exchange(m_savesSoon, false)) {
        m_keeper->begin();
    }
}

qint64 OperationalMode::moment() const
{
    return m_services.environment.now().toMSecsSinceEpoch();
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
    m_record.add(EventKind::Note, {}, moment(), QStringLiteral("operator: ") + name,
                 ListRecord::By::Operator);
}

StationRow OperationalMode::rowOf(const QString &kennung) const
{
    return {m_record.number(kennung), m_tree.find(kennung).data(Qt::EditRole).toString(), true,
            toJson(attributes(kennung))};
}

QString OperationalMode::addStation(const QString &name, const QString &hostAddress)
{
    if (isDoneElsewhere()) {
        return {};
    }
    const QString wanted = QString::fromStdString(storedText(name)).trimmed();
    if (wanted.isEmpty() || wanted.contains(u'/')) {
        return {};
    }
    QString kennung = m_tree.freeName(wanted);
    if (!m_stations.addStation(kennung, hostAddress)) {
        return {};
    }
    m_record.addStation(kennung);
    const StationRow row = rowOf(kennung);
    m_record.add(row);
    m_record.add(EventKind::StationAdded, kennung, moment(), kennung, ListRecord::By::Operator,
                 row.attributes);
    return kennung;
}

void OperationalMode::removeStation(const QString &kennung)
{
    if (isDoneElsewhere()) {
        return;
    }
    m_stations.Remove(kennung);
    m_scheduler.remove(kennung);
    m_trends.remove(kennung);
    m_lent.remove(kennung);
    StationRow row = rowOf(kennung);
    row.listed = false;
    m_watchAlarms.letGo(row.id);
    m_record.add(row);
    m_record.add(EventKind::StationRemoved, kennung, moment(), row.name, ListRecord::By::Operator);
    m_alarms.forget(row.id, moment(), tr("the station was removed"));
    m_tree.remove(m_tree.find(kennung));
    m_record.removeStation(kennung);
}

void OperationalMode::rename(const QString &kennung, const QString &before)
{
    if (!m_isOpen) { // it is being loaded
        return;
    }
    if (m_joined) {
        if (!m_joined->isCarryingOut() && isDoneElsewhere()) {
            m_joined->showName(kennung, before);
        }
        return;
    }
    const StationRow row = rowOf(kennung);
    m_record.add(row);
    const QJsonObject detail{{QLatin1String("before"), before}};
    m_record.add(EventKind::StationRenamed, kennung, moment(), row.name, ListRecord::By::Operator,
                 QString::fromUtf8(QJsonDocument(detail).toJson(QJsonDocument::Compact)));
}

void OperationalMode::setHostAddress(const QString &kennung, const QString &hostAddress)
{
    if (isDoneElsewhere()) {
        return;
    }
    cStation *station = m_stations.Item(kennung);
    if (station == nullptr || station->hostAddress() == hostAddress) {
        return;
    }
    station->setHostAddress(hostAddress);
    if (station->online()) { // what the old address said last is no word of the new one
        letGo(*station);
        station->connectStation();
    }
    keep(kennung);
    showStatus(*station);
}

void OperationalMode::setOnline(const QString &kennung, bool online)
{
    if (isDoneElsewhere()) {
        return;
    }
    cStation *station = m_stations.Item(kennung);
    if (station == nullptr) {
        return;
    }
    m_lent.remove(kennung);
    if (online) {
        station->connectStation();
    } else {
        letGo(*station);
    }
    keep(kennung);
    showStatus(*station);
}

/// What it has said by now is still heard.
void OperationalMode::letGo(cStation &station)
{
    station.handleWaiting();
    station.disconnect();
    m_watchAlarms.letGo(m_record.number(station.kennung()));
}

void OperationalMode::takeArrived()
{
    if (m_joined) {
        m_joined->takeArrived();
        return;
    }
    m_stations.forEach([](cStation &station) { station.handleWaiting(); });
}

void OperationalMode::setAllOnline(bool online)
{
    m_stations.forEach([&](cStation &station) {
        if (station.online() != online || m_lent.contains(station.kennung())) {
            setOnline(station.kennung(), online);
        }
    });
}

void OperationalMode::setExclusive(const QString &kennung, bool exclusive)
{
    if (isDoneElsewhere()) {
        return;
    }
    if (cStation *station = m_stations.Item(kennung)) {
        station->setExclusiveMode(exclusive);
        keep(kennung);
        showStatus(*station);
    }
}

void OperationalMode::setSchedule(const QString &kennung, const ExclusiveSchedule &schedule)
{
    if (isDoneElsewhere()) {
        return;
    }
    if (cStation *station = m_stations.Item(kennung)) {
        m_scheduler.setSchedule(kennung, schedule);
        m_scheduler.switchToPresentState(*station);
        keep(kennung);
        showStatus(*station);
    }
}

StationAttributes OperationalMode::attributes(const QString &kennung) const
{
    const cStation *station = m_stations.Item(kennung);
    return station == nullptr
               ? StationAttributes()
               : StationAttributes{station->exclusiveMode(), m_scheduler.schedule(kennung),
                                   station->hostAddress(), station->online() || m_lent.contains(kennung)};
}

bool OperationalMode::requestValues(const QString &kennung)
{
    if (isDoneElsewhere()) {
        return false;
    }
    cStation *station = m_stations.Item(kennung);
    return station != nullptr && station->send(allValues);
}

QString OperationalMode::stationAt(const QString &hostAddress) const
{
    const QString wanted = comparable(hostAddress);
    QString found;
    if (m_joined) { // there is none to let go of
        return found;
    }
    m_stations.forEach([&](const cStation &station) {
        if (found.isEmpty() && station.online() && comparable(station.hostAddress()) == wanted) {
            found = station.kennung();
        }
    });
    return found;
}

void OperationalMode::lend(const QString &kennung)
{
    cStation *station = m_stations.Item(kennung);
    if (station != nullptr && station->online()) {
        letGo(*station);
        m_lent.insert(kennung);
        showStatus(*station);
    }
}

void OperationalMode::takeBack()
{
    for (const QString &kennung : std::exchange(m_lent, {})) {
        setOnline(kennung, true);
    }
}

void OperationalMode::applyMessage(const QString &kennung, const QString &text)
{
    using Kind = StationEvent::Kind;
    const StationMessage message = interpretStationMessage(text);
    const QDateTime now = m_services.environment.now();
    const qint64 at = now.toMSecsSinceEpoch();
    const StationTree::Outcome outcome = m_tree.apply(kennung, message, now);
    if (const auto *report = std::get_if<InputValuesMessage>(&message)) {
        m_trends.add(kennung, report->values, now);
    }
    const Kind kind = std::visit(Overloaded{[](const NotificationMessage &) { return Kind::Notification; },
                                            [](const InputValuesMessage &) { return Kind::Values; },
                                            [](const HistoryMessage &) { return Kind::History; },
                                            [](const UnusableMessage &) { return Kind::Values; },
                                            [](const NoStationMessage &) { return Kind::Message; }},
                                 message);
    const bool isUrgent = keepMessage(kennung, text, message, outcome, at) != 0 || outcome.alarm;
    Q_EMIT happened({kennung, kind, kind == Kind::Message ? withoutPin(text) : withoutMark(text), at});
    if (!outcome.unusable.isEmpty()) {
        Q_EMIT statusMessage(tr("%1: not understood: %2").arg(kennung, outcome.unusable));
    }
    m_isAlarm = isUrgent;
    if (isUrgent && m_record.isOpen()) {
        m_record.writer().flush();
    }
    if (outcome.alarm) {
        Q_EMIT alarmRaised(outcome.entry);
    }
}

/// The message, what it makes of its notification and of the alarm, and what it reports. Gives the alarm's
/// number, 0 where there is none.
qint64 OperationalMode::keepMessage(const QString &kennung, const QString &text,
                                    const StationMessage &message, const StationTree::Outcome &outcome,
                                    qint64 at)
{
    qint64 alarm = 0;
    EventKind kind = EventKind::OtherMessage;
    if (const auto *notification = std::get_if<NotificationMessage>(&message)) {
        kind = EventKind::Notification;
        const qint64 station = m_record.number(kennung);
        const NotificationText parts = splitNotification(notification->entry.text);
        alarm = m_alarms.take(station, parts.number, parts.message, at);
        m_record.add(m_record.notification(station, notification->entry.key,
                                           m_tree.arrivals().value(StationTree::idOf(outcome.entry))));
    } else if (std::holds_alternative<HistoryMessage>(message)) {
        kind = EventKind::History;
    } else if (!std::holds_alternative<NoStationMessage>(message)) {
        kind = EventKind::Values;
    }
    m_record.add(kind, kennung, at, kind == EventKind::OtherMessage ? withoutPin(text) : text,
                 ListRecord::By::Program, {}, alarm);
    m_record.addContent(kennung, at, message);
    return alarm;
}

void OperationalMode::keepAlarm(const AlarmRow &alarm)
{
    m_record.add(alarm);
}

/// A module that has its "OK" forgets the alarm: it gets it when the disk has the alarm.
bool OperationalMode::answersLater(const QString &kennung)
{
    if (!std::exchange(m_isAlarm, false) || !m_record.isOpen() || m_record.writer().isFailing()) {
        return false;
    }
    m_answers.add(kennung, m_record.writer().addedCount());
    return true;
}

void OperationalMode::recordSettled()
{
    if (m_record.writer().isFailing()) {
        m_answers.answerAll();
    } else {
        m_answers.answerUpTo(m_record.writer().onDiskCount());
    }
    m_keeper->settled();
}

/// To those who look on, and to the record.
void OperationalMode::onStationChanged(const QString &kennung, StationChange what)
{
    const cStation &station = *m_stations.Item(kennung);
    m_watchAlarms.take(m_record.number(kennung), what, station.loss());
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

void OperationalMode::keep(const QString &kennung, ListRecord::By by)
{
    const StationRow row = rowOf(kennung);
    m_record.add(row);
    m_record.add(EventKind::Attributes, kennung, moment(), summaryOf(attributes(kennung)), by,
                 row.attributes);
}

Status OperationalMode::close()
{
    if (m_keeper) {
        takeArrived();
        if (Status written = m_keeper->save(); !written) {
            return written;
        }
        const EarlierFiles earlier(m_path); // what they had is in the list and in the record
        if (const Status aside = keepAside({earlier.journal(), earlier.times()}); !aside) {
            Q_EMIT statusMessage(aside.message());
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
        m_record.add(EventKind::Stopped, {}, moment(), m_path, ListRecord::By::Program);
        m_record.add(SettingRow{keeperSetting(), {}});
    }
    m_isOpen = false;
    m_minute->stop();
    m_thinning.stop();
    m_answers.clear();
    QStringList keys;
    m_stations.forEach([&keys](const cStation &station) { keys.prepend(station.kennung()); });
    for (const QString &kennung : keys) {
        m_stations.Remove(kennung);
    }
    m_keeper.reset();
    m_record.setList(m_path);
    m_lock.release();
    m_keepingTrouble.clear();
    m_watchAlarms.stop(); // what the stations and the record said at their end is taken
    tellUnkept();
}

/// Of what stayed when a list was closed.
void OperationalMode::clearTree()
{
    while (m_tree.rowCount() > 0) {
        m_tree.remove(m_tree.index(m_tree.rowCount() - 1, 0));
    }
    m_scheduler.clear();
    m_lent.clear();
}

QModelIndexList OperationalMode::entriesOf(const AlarmRow &alarm) const
{
    QModelIndexList entries;
    const QString branch = stationOf(alarm) + u'/' + QString::fromLatin1(branches::notifications) + u'/';
    for (const QString &number : alarm.recipients) {
        const QModelIndex entry = m_tree.find(branch + notificationText({number, alarm.text}));
        if (entry.isValid()) {
            entries += entry;
        }
    }
    return entries;
}

QString OperationalMode::stationOf(const AlarmRow &alarm) const
{
    return m_record.kennung(alarm.station);
}

Status OperationalMode::acknowledge(const QModelIndexList &entries)
{
    return acknowledge(entries, {});
}

Status OperationalMode::acknowledgeAlarms(const QList<qint64> &alarms)
{
    QModelIndexList entries;
    QList<qint64> wanted;
    for (const qint64 id : alarms) {
        if (const AlarmRow *alarm = m_alarms.alarm(id); alarm != nullptr && alarm->acknowledged == 0) {
            entries += entriesOf(*alarm);
            wanted += id;
        }
    }
    return acknowledge(entries, wanted);
}

Status OperationalMode::acknowledge(const QModelIndexList &entries, QList<qint64> alarms)
{
    if (m_joined) {
        return Status::failed(tr("Another program watches the stations; it is done there"));
    }
    const QDateTime now = m_services.environment.now();
    const qint64 at = now.toMSecsSinceEpoch();
    const QList<NodeChange> changes = acknowledgementOf(entries, m_tree, now);
    const NodeStore &nodes = m_tree.nodes();
    std::vector<RecordRow> rows;
    QSet<NodeStore::Id> acknowledged;
    QSet<qint64> concerned;
    const auto add = [&](qint64 station, const QString &text, qint64 alarm) {
        rows.emplace_back(EventRow{m_record.nextEvent(),
                                   at,
                                   station,
                                   EventKind::Acknowledged,
                                   text,
                                   {},
                                   m_record.operatorName(),
                                   alarm});
    };
    for (const NodeChange &change : changes) {
        const std::optional<NodeStore::Id> id = nodes.find(change.key);
        if (!id || nodes.kind(*id) != NodeKind::Notification) {
            continue;
        }
        acknowledged.insert(*id);
        const qint64 station = m_record.number(textOf(nodes.name(nodes.parent(nodes.parent(*id)))));
        const AlarmRow *alarm = m_alarms.find(station, splitNotification(textOf(nodes.text(*id))).message);
        if (alarm != nullptr && alarm->acknowledged == 0) {
            concerned.insert(alarm->id);
        }
        Arrival arrival = m_tree.arrivals().value(*id);
        arrival.acknowledged = at;
        rows.emplace_back(m_record.notification(station, textOf(nodes.name(*id)), arrival));
        add(station, textOf(nodes.name(*id)), alarm != nullptr ? alarm->id : 0);
    }
    for (const qint64 id : concerned) {
        const auto stays = [&](const QModelIndex &entry) {
            const NodeStore::Id node = StationTree::idOf(entry);
            return isAlarm(m_tree, node) && !acknowledged.contains(node);
        };
        if (!alarms.contains(id) && std::ranges::none_of(entriesOf(*m_alarms.alarm(id)), stays)) {
            alarms += id;
        }
    }
    for (const qint64 id : std::as_const(alarms)) {
        AlarmRow alarm = *m_alarms.alarm(id);
        alarm.acknowledged = at;
        alarm.acknowledgedBy = m_record.operatorName();
        if (!concerned.contains(id)) { // nothing in the tree tells of it
            add(alarm.station, alarm.text, id);
        }
        rows.emplace_back(std::move(alarm));
    }
    if (m_record.isOpen()) {
        if (Status kept = m_record.writer().commit(std::move(rows)); !kept) {
            return kept;
        }
    } else if (m_keeper) { // there should be a record
        return Status::failed(m_keepingTrouble);
    }
    m_tree.carryOut(changes);
    m_alarms.acknowledge(alarms, at, m_record.operatorName());
    return Status::done();
}

void OperationalMode::awaitNextMinute()
{
    const Milliseconds time(m_services.environment.now().time().msecsSinceStartOfDay());
    m_minute->start(aMinute - time % aMinute, [this] {
        m_scheduler.evaluate([this](const cStation &station) {
            keep(station.kennung(), ListRecord::By::Program);
            showStatus(station);
        });
        m_alarmActions.minute();
        if (m_keeper) {
            m_keeper->check();
            m_thinning.check(now(), m_record);
            checkDiskRoom();
        }
        awaitNextMinute();
    });
}

void OperationalMode::showStatus(const cStation &station)
{
    StationStatus status;
    using Line = StationStatus::Line;
    if (station.online()) {
        status.line = station.liveness() == cStation::Liveness::Alive    ? Line::Alive
                      : station.liveness() == cStation::Liveness::Silent ? Line::Silent
                                                                         : Line::Connecting;
    }
    status.exclusive = station.exclusiveMode();
    status.pukNeeded = station.pukNeeded();
    if (station.loss() && !station.loss()->isOver) {
        status.loss = station.loss();
    }
    m_tree.setStatus(station.kennung(), status);
    Q_EMIT stationChanged(station.kennung());
}

} // namespace ktr
