#include "opmode/joined_list.h"

#include "opmode/alarm_actions.h"
#include "opmode/keeper_beat.h"
#include "opmode/list_opener.h"
#include "opmode/recorded_tree.h"
#include "opmode/station_states.h"
#include "record/record_address.h"

#include <QJsonArray>

#include <map>

namespace ktr {

namespace {

/// What is still known of a station that is let go of.
cStation::Seen keptOffline(const cStation::Seen &seen)
{
    cStation::Seen kept;
    kept.pukNeeded = seen.pukNeeded;
    kept.lastHeard = seen.lastHeard;
    return kept;
}

} // namespace

JoinedList::JoinedList(const ListParts &parts, const QString &nodesPath, QObject *parent)
    : QObject(parent),
      m_parts(parts),
      m_replay(parts.tree, m_names, m_attributes),
      m_follower(nodesPath, parts.timers,
                 {[this](const EventRow &event) { take(event); },
                  [this](const AlarmRow &alarm) { m_parts.alarms.follow(alarm); },
                  [this](const QHash<QString, QString> &settings) { takeSettings(settings); },
                  [this] { looked(); },
                  [this](const QHash<qint64, QString> &answers) { m_sender.take(answers); },
                  [this](const RecordRights &rights) {
                      m_isChanged = m_isChanged || rights != m_rights;
                      m_rights = rights;
                  },
                  [this](const QString &trouble) { takeTrouble(trouble); }}),
      m_sender(ListRecord::pathFor(nodesPath), parts.environment),
      m_isShared(isServerAddress(nodesPath))
{
    connect(&m_sender, &RequestSender::statusMessage, this, &JoinedList::statusMessage);
    m_follower.await([this] { return m_sender.awaited(); });
}

Status JoinedList::open(NodesFile &file)
{
    if (!m_follower.isOfRecord()) {
        return Status::failed(tr("%1: the list is in use by %2").arg(file.path(), m_follower.holder()));
    }
    ListOpener list(file, m_parts.tree);
    Status opened = list.loadFile();
    m_defects = list.defects();
    RecordReader &reader = m_follower.reader();
    if (opened) {
        opened = reader.beginSnapshot();
    }
    qint64 lastAlarmChange = 0;
    QList<EventRow> states;
    if (opened) {
        opened = list.join(reader);
        if (opened) {
            opened = reader.lastAlarmChange(lastAlarmChange);
        }
        if (opened) {
            opened = reader.statesOfRun(stateKinds(), [&](const EventRow &event) { states += event; });
        }
        reader.endSnapshot();
    }
    if (!opened) {
        return opened;
    }
    m_names = list.names();
    m_attributes = list.takeAttributes();
    for (const EventRow &event : std::as_const(states)) {
        takeState(m_seen[m_names.value(event.station)], event);
    }
    begin(list.standing(), list.settings());
    m_follower.start(list.lastEvent(), lastAlarmChange);
    showKeeper();
    return Status::done();
}

void JoinedList::openShared(const SharedState &state)
{
    m_names = loadStations(m_parts.tree, state.stations);
    for (const StationRow &row : state.stations.stations) {
        if (const QString kennung = m_names.value(row.id); !kennung.isEmpty()) {
            m_attributes.insert(kennung, stationAttributes(row.attributes));
        }
    }
    for (const EventRow &event : state.latest) {
        const QString kennung = m_names.value(event.station);
        const QDateTime at = QDateTime::fromMSecsSinceEpoch(event.at);
        if (event.kind == EventKind::History || event.kind == EventKind::Values) {
            const StationMessage message = interpretStationMessage(event.text);
            (void)m_parts.tree.apply(kennung, message, at);
            if (const auto *report = std::get_if<InputValuesMessage>(&message)) {
                m_parts.trends.add(kennung, report->values, at);
            }
        }
        takeState(m_seen[kennung], event);
    }
    for (auto seen = m_seen.begin(); seen != m_seen.end(); ++seen) {
        if (!m_attributes.value(seen.key()).online) { // what it said is over
            *seen = keptOffline(*seen);
        }
    }
    m_rights = state.rights;
    begin(state.stations.alarms, state.settings);
    m_follower.start(state);
    m_lastLook = m_parts.environment.now();
    if (state.lastEventAt != 0) { // the last keeper wrote that it ended, or less
        m_lastSign = QDateTime::fromMSecsSinceEpoch(state.lastEventAt);
    }
    showKeeper();
}

/// The stations of the tree are there, with what is known of them.
void JoinedList::begin(const QList<AlarmRow> &standing, const QHash<QString, QString> &settings)
{
    m_parts.record.know(m_names);
    for (int row = 0; row < m_parts.tree.rowCount(); ++row) {
        const QString kennung = m_parts.tree.index(row, 0).data(StationTree::KeyRole).toString();
        m_parts.stations.addStation(kennung, {});
        showStation(kennung);
    }
    m_parts.alarms.load(standing, AlarmActions::shelves(settings));
    takeSettings(settings);
}

void JoinedList::takeArrived()
{
    m_follower.drain();
}

void JoinedList::tellWhatCameAfter(qint64 event)
{
    (void)m_follower.reader().eventsAfter(event, [&](const EventRow &row) {
        if (row.id <= lastEvent()) {
            tell(row, m_names.value(row.station));
        }
        return row.id < lastEvent();
    });
}

void JoinedList::tell(const EventRow &event, const QString &kennung)
{
    if (const auto told = toldAs(event, kennung)) {
        Q_EMIT happened(*told);
    }
}

void JoinedList::take(const EventRow &event)
{
    const QString kennung = m_names.value(event.station);
    switch (event.kind) {
    case EventKind::Notification:
    case EventKind::Values:
    case EventKind::History:
    case EventKind::OtherMessage:
        takeMessage(event, kennung);
        break;
    case EventKind::Alive:
    case EventKind::Silent:
    case EventKind::Quality:
    case EventKind::Puk:
    case EventKind::Flood:
        takeState(m_seen[kennung], event);
        tell(event, kennung);
        showStation(kennung);
        break;
    case EventKind::Started: // it knows nothing of the stations' states, and renamed ones by other keys
    case EventKind::ListFollowed:
        m_isReplaced = !m_isShared;
        break;
    default:
        takeListEvent(event, kennung);
    }
}

void JoinedList::takeMessage(const EventRow &event, const QString &kennung)
{
    const StationMessage message = interpretStationMessage(event.text);
    const QDateTime at = QDateTime::fromMSecsSinceEpoch(event.at);
    const StationTree::Outcome outcome = m_parts.tree.apply(kennung, message, at);
    if (const auto *report = std::get_if<InputValuesMessage>(&message)) {
        m_parts.trends.add(kennung, report->values, at);
    }
    takeState(m_seen[kennung], event);
    tell(event, kennung);
    if (!outcome.unusable.isEmpty()) {
        Q_EMIT statusMessage(tr("%1: not understood: %2").arg(kennung, outcome.unusable));
    }
    if (outcome.alarm) {
        Q_EMIT alarmRaised(outcome.entry);
    }
    showStation(kennung);
}

/// What operators do, and the list of stations.
void JoinedList::takeListEvent(const EventRow &event, const QString &kennung)
{
    if (event.kind == EventKind::StationRemoved) {
        m_parts.stations.Remove(kennung);
        m_parts.scheduler.remove(kennung);
        m_parts.trends.remove(kennung);
        m_seen.remove(kennung);
    }
    const StationAttributes before = m_attributes.value(kennung);
    m_isCarryingOut = true;
    const bool isCarriedOut = m_replay.carryOut(event);
    m_isCarryingOut = false;
    if (!isCarriedOut) {
        return;
    }
    m_parts.record.know(m_names);
    if (event.kind == EventKind::StationAdded) {
        const QString added = m_names.value(event.station);
        m_parts.stations.addStation(added, {});
        showStation(added);
    } else if (event.kind == EventKind::Attributes) {
        const StationAttributes now = m_attributes.value(kennung);
        cStation::Seen &seen = m_seen[kennung];
        if (now.online != before.online || now.hostAddress != before.hostAddress) { // what it said is over
            seen = keptOffline(seen);
        }
        showStation(kennung);
    }
}

void JoinedList::showName(const QString &kennung, const QString &name)
{
    m_isCarryingOut = true;
    (void)m_parts.tree.setData(m_parts.tree.find(kennung), name);
    m_isCarryingOut = false;
}

void JoinedList::showStation(const QString &kennung)
{
    cStation *station = m_parts.stations.Item(kennung);
    if (station == nullptr) {
        return;
    }
    const StationAttributes attributes = m_attributes.value(kennung);
    station->setHostAddress(attributes.hostAddress);
    station->setExclusiveMode(attributes.exclusiveMode);
    showState(*station);
    m_parts.scheduler.setSchedule(kennung, attributes.schedule);
    Q_EMIT stationChanged(kennung);
}

void JoinedList::showState(cStation &station) const
{
    const StationAttributes attributes = m_attributes.value(station.kennung());
    cStation::Seen seen = m_seen.value(station.kennung());
    seen.online = attributes.online;
    if (attributes.exclusiveMode) {
        seen.csq = cStation::Seen().csq;
    }
    station.show(seen);
}

/// Nobody is told: when a station was heard is shown by the second.
void JoinedList::takeBeat(const QString &beat)
{
    const QHash<qint64, qint64> heard = heardBy(beat);
    for (auto station = heard.cbegin(); station != heard.cend(); ++station) {
        const QString kennung = m_names.value(station.key());
        cStation *shown = m_parts.stations.Item(kennung);
        if (shown != nullptr && shown->lastHeard() < *station) {
            m_seen[kennung].lastHeard = *station;
            showState(*shown);
        }
    }
}

bool JoinedList::isUnheard() const
{
    return !keeper().isEmpty() && m_follower.unheard() >= KeeperBeat::patience;
}

void JoinedList::showKeeper()
{
    const QString keeper = this->keeper();
    m_unkeptSince = !keeper.isEmpty() ? std::nullopt
                    : m_unkeptSince   ? m_unkeptSince
                                      : std::optional(m_lastSign.value_or(m_parts.environment.now()));
    m_unheardSince = !isUnheard() ? std::nullopt
                     : m_unheardSince
                         ? m_unheardSince
                         : std::optional(m_parts.environment.now().addMSecs(-m_follower.unheard().count()));
    m_keeper = keeper;
}

void JoinedList::takeTrouble(const QString &trouble)
{
    Q_EMIT statusMessage(trouble.isEmpty() ? tr("The record can be read again") : trouble);
    m_trouble = trouble;
    if (trouble.isEmpty()) {
        m_unreachableSince.reset();
    } else if (!m_unreachableSince) {
        m_unreachableSince = m_lastLook.value_or(m_parts.environment.now());
    }
    Q_EMIT keeperChanged();
}

void JoinedList::ask(const Request &request)
{
    if (m_unreachableSince) {
        Q_EMIT statusMessage(tr("The record cannot be reached: nobody can be asked"));
    } else if (keeper().isEmpty()) {
        Q_EMIT statusMessage(tr("Nobody watches the stations: nobody can be asked"));
    } else if (!m_rights.mayOperate || (isAdministrative(request.what) && !m_rights.mayAdminister)) {
        Q_EMIT statusMessage(tr("The database does not let this user do that"));
    } else if (request.what.isEmpty() || (request.what == requests::set && !m_isShared)) {
        Q_EMIT statusMessage(tr("Another program watches the stations; it is done there"));
    } else {
        for (const Request &part : m_isShared ? perStation(request) : QList<Request>{request}) {
            m_sender.send(part, m_parts.record.operatorName());
        }
    }
}

/// Stations have different keepers: each gets what is about its own.
QList<Request> JoinedList::perStation(const Request &request) const
{
    namespace member = request_members;
    std::map<qint64, QJsonObject> parts;
    const auto put = [&](qint64 station, const QLatin1String &array, const QJsonValue &value) {
        const auto [part, isNew] = parts.try_emplace(station, request.about);
        QJsonArray values = isNew ? QJsonArray() : part->second[array].toArray();
        values += value;
        part->second[array] = values;
    };
    const QJsonArray entries = request.about[member::entries].toArray();
    for (const auto &entry : entries) {
        put(entry[member::station].toInteger(), member::entries, entry);
    }
    const QJsonArray alarms = request.about[member::alarms].toArray();
    for (const auto &number : alarms) {
        const AlarmRow *alarm = m_parts.alarms.alarm(number.toInteger());
        put(alarm == nullptr ? 0 : alarm->station, member::alarms, number);
    }
    QList<Request> requests;
    for (const auto &[station, about] : parts) {
        requests += {request.what, about};
    }
    if (request.what == requests::online && !request.about.contains(member::station)) {
        for (auto name = m_names.cbegin(); name != m_names.cend(); ++name) {
            requests += stationRequest(requests::online, name.key(), request.about);
        }
    }
    return requests.isEmpty() ? QList<Request>{request} : requests;
}

void JoinedList::takeSettings(const QHash<QString, QString> &settings)
{
    QHash<QString, QString> known = settings;
    for (const QString &name : {QStringLiteral("searchable"), QStringLiteral("sorted"), beatSetting(),
                                keeperSetting()}) { // which change all the time
        known.remove(name);
    }
    if (const QString beat = settings.value(beatSetting()); beat != m_beat) {
        m_beat = beat;
        takeBeat(beat);
    }
    if (known != m_settings) {
        m_settings = known;
        m_parts.alarms.follow(AlarmActions::shelves(settings));
        Q_EMIT settingsChanged(settings);
    }
}

void JoinedList::looked()
{
    m_sender.take({});
    if (m_isShared && m_trouble.isEmpty()) {
        m_lastLook = m_parts.environment.now();
        if (const std::optional<Milliseconds> ago = m_follower.lastSign()) {
            m_lastSign = m_lastLook->addMSecs(-ago->count());
        }
    }
    if (std::exchange(m_isChanged, false) || m_keeper != keeper() ||
        m_unheardSince.has_value() != isUnheard()) {
        showKeeper();
        Q_EMIT keeperChanged();
    }
    if (std::exchange(m_isReplaced, false)) {
        Q_EMIT replaced();
    }
}

} // namespace ktr
