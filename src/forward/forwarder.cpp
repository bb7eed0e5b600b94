#include "forward/forwarder.h"

#include "record/json_text.h"
#include "record/record_address.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QSysInfo>

#include <algorithm>

namespace ktr {

namespace {

constexpr int longestEnd = 2'000; // milliseconds

QString eventSetting(const ForwardTarget &target)
{
    return QStringLiteral("forwarded:") + target.name();
}

QString alarmSetting(const ForwardTarget &target)
{
    return QStringLiteral("forwarded alarms:") + target.name();
}

const QLatin1String troublePrefix("forward trouble:");
const QLatin1String troubleMember("trouble");
const QLatin1String sinceMember("since");
const QLatin1String eventMember("event");
const QLatin1String alarmMember("alarm");

QString troubleSetting(const ForwardTarget &target)
{
    return troublePrefix + target.name();
}

QByteArray keeperState(const QString &state, const QJsonObject &more = {})
{
    QJsonObject keeper = more;
    keeper.insert(QStringLiteral("state"), state);
    keeper.insert(QStringLiteral("machine"), QSysInfo::machineHostName());
    keeper.insert(QStringLiteral("process"), QCoreApplication::applicationPid());
    return jsonText(keeper).toUtf8();
}

/// The same for the same list, so that the broker lets go of a line that hangs, be it of another keeper that
/// shares it; of at most 23 letters, which every broker takes.
QString clientId(const QString &record)
{
    const QByteArray place =
        (isServerAddress(record) ? QByteArray() : QSysInfo::machineUniqueId()) + record.toUtf8();
    return QStringLiteral("ktr-") +
           QString::fromLatin1(QCryptographicHash::hash(place, QCryptographicHash::Sha256).toHex().first(16));
}

MqttLine::Options lineOptions(const Forwarder::Options &options, const ForwardTopics &topics,
                              const QString &record)
{
    const ForwardTarget &target = options.target;
    return {target.host,        target.port,
            target.isEncrypted, options.caFile,
            target.user,        options.password,
            clientId(record),   {topics.keeper(), keeperState(QStringLiteral("lost")), true}};
}

} // namespace

QList<ForwardTrouble> forwardTroubles(const QHash<QString, QString> &settings)
{
    QList<ForwardTrouble> troubles;
    for (auto setting = settings.cbegin(); setting != settings.cend(); ++setting) {
        const QJsonObject state = jsonOf(*setting).object();
        if (setting.key().startsWith(troublePrefix) && !state.isEmpty()) {
            troubles += {state[troubleMember].toString(), state[sinceMember].toInteger()};
        }
    }
    return troubles;
}

std::optional<ForwardTrouble> forwardTrouble(const DutyRow &duty)
{
    const QJsonObject state = jsonOf(duty.state).object();
    return state.contains(troubleMember) && !duty.keeper.isEmpty()
               ? std::optional(
                     ForwardTrouble{state[troubleMember].toString(), state[sinceMember].toInteger()})
               : std::nullopt;
}

Forwarder::Forwarder(OperationalMode &mode, Timers &timers, Options options, QObject *parent)
    : QObject(parent),
      m_mode(mode),
      m_leases(mode.leases()),
      m_options(std::move(options)),
      m_topics(m_options.target.prefix),
      m_timer(timers.create()),
      m_reading(std::make_shared<ForwardReading>(m_topics)),
      m_line(lineOptions(m_options, m_topics, mode.record().path()))
{
    connect(&m_line, &MqttLine::connected, this, &Forwarder::onConnected);
    connect(&m_line, &MqttLine::confirmed, this, &Forwarder::onConfirmed);
    connect(&m_line, &MqttLine::lost, this, &Forwarder::onLost);
    connect(&m_line, &MqttLine::refused, this, [this](quint64 tag, const QString &why) {
        Q_EMIT leftOut(QStringLiteral("a message cannot be published: %1").arg(why));
        onConfirmed({tag});
    });
    if (m_leases == nullptr) {
        keepStates();
    }
    look();
}

/// Of a shared list the record tells them, since each keeper knows some.
void Forwarder::keepStates()
{
    const auto stationChanged = [this](const QString &kennung) { m_changed.insert(kennung); };
    connect(&m_mode, &OperationalMode::stationChanged, this, stationChanged);
    connect(&m_mode, &OperationalMode::happened, this,
            [stationChanged](const StationEvent &event) { stationChanged(event.kennung); });
}

Forwarder::~Forwarder()
{
    finish();
}

void Forwarder::finish()
{
    if (std::exchange(m_hasEnded, true)) {
        return;
    }
    m_timer->stop();
    if (m_line.isConnected()) {
        m_line.publish(++m_lastTag, {m_topics.keeper(), keeperJson(QStringLiteral("stopped")), true});
    }
    m_line.finish(longestEnd);
    note();
}

void Forwarder::abandon()
{
    if (!std::exchange(m_hasEnded, true)) {
        m_timer->stop();
        m_line.drop();
    }
}

qint64 Forwarder::backlog() const
{
    const qint64 last = m_leases == nullptr ? m_mode.record().lastEvent() : m_lastEvent;
    return m_isBegun ? std::max(last - m_confirmed.event, qint64{0}) : 0;
}

/// This program may have stood still until now.
bool Forwarder::mayForward() const
{
    return !m_hasEnded && (m_leases == nullptr || m_leases->has(duty(m_options.target)));
}

void Forwarder::look()
{
    m_timer->start(period, [this] { look(); });
    if (!m_mode.record().isOpen()) { // it is tried again by its owner
        return;
    }
    if (!m_queries) {
        begin();
    }
    if (++m_looks % looksUntilNoted == 0) {
        note();
    }
    readMore();
    pump();
}

/// A target that is new to a list of this keeper's own gets what happens from here on: what happens while
/// another thread asks for the record's end would be left out.
void Forwarder::begin()
{
    m_queries = std::make_unique<RecordQueries>(m_mode.recordPath());
    m_queries->setFoundDamage([this] { m_mode.mendRecord(); });
    if (m_leases == nullptr) {
        RecordReader reader(m_mode.recordPath());
        if (ForwardPosition end; ForwardReading::end(reader, end)) {
            takeUp(end);
        }
    }
}

/// A target that the record does not know gets what happens from now on. A record of which the end was lost
/// has less than the broker.
void Forwarder::takeUp(ForwardPosition end)
{
    const QHash<QString, QString> &settings = m_mode.record().settings();
    const QJsonObject state =
        m_leases ? jsonOf(m_leases->noted(duty(m_options.target))).object() : QJsonObject();
    const auto position = [&](const QString &name, QLatin1String member, qint64 last) {
        return m_leases ? state[member].toInteger(last)
                        : settings.value(name, QString::number(last)).toLongLong();
    };
    const ForwardPosition known{position(eventSetting(m_options.target), eventMember, end.event),
                                position(alarmSetting(m_options.target), alarmMember, end.change)};
    if (known.event > end.event || known.change > end.change) {
        const QString what =
            QStringLiteral("%1: it has got events up to %2, and the record ends at %3: forwarding "
                           "goes on behind that")
                .arg(m_options.target.name())
                .arg(known.event)
                .arg(end.event);
        // Whoever makes this is told, too.
        QMetaObject::invokeMethod(
            this, [this, what] { Q_EMIT leftOut(what); }, Qt::QueuedConnection);
    }
    m_confirmed = {std::min(known.event, end.event), std::min(known.change, end.change)};
    m_lastEvent = end.event;
    m_noted = {-1, -1}; // so that a new target is known from now on
    m_read = m_confirmed;
    m_isBegun = true;
    note();
    if (m_leases == nullptr && m_line.isConnected()) { // alarms got their numbers meanwhile
        tellStanding();
    }
    pump();
}

void Forwarder::readMore()
{
    if (!m_queries || m_queries->isWaitedFor(this)) {
        return;
    }
    if (!m_isBegun) {
        m_queries->ask(
            this,
            [](RecordReader &reader) {
                ForwardPosition end;
                const Status read = ForwardReading::end(reader, end);
                return std::pair(read, end);
            },
            [this](const std::pair<Status, ForwardPosition> &found) {
                if (found.first && m_mode.record().isOpen()) {
                    takeUp(found.second);
                    readMore();
                }
            });
        return;
    }
    m_isBeginSure = m_isBeginSure || m_leases == nullptr || m_leases->isWritten(duty(m_options.target));
    const quint64 onDisk = m_leases                   ? m_looks // others write, too
                           : m_mode.record().isOpen() ? m_mode.record().writer().inRecordCount()
                                                      : 0;
    if (!m_isBeginSure || !m_line.isConnected() || !m_ready.empty() || m_seenOnDisk == onDisk) {
        return;
    }
    m_seenOnDisk = onDisk;
    m_queries->ask(
        this,
        [reading = m_reading, from = m_read, isPresent = m_isPresentDue](RecordReader &reader) {
            return isPresent ? reading->present(reader, from) : reading->page(reader, from);
        },
        [this](ForwardPage page) { take(std::move(page)); });
}

void Forwarder::take(ForwardPage page)
{
    if (!page.status || !page.items.empty()) {
        m_seenOnDisk.reset(); // there may be more
    }
    if (page.status) {
        m_isPresentDue = false;
        m_lastEvent = page.lastEvent;
        m_read = page.upTo;
        m_ready = std::move(page.items);
        pump();
    }
}

void Forwarder::pump()
{
    while (mayForward() && m_line.isConnected() && m_flights.size() < mostInFlight) {
        std::optional<ForwardItem> item = next();
        if (!item) {
            break;
        }
        m_flights.push_back({++m_lastTag, item->upTo});
        m_line.publish(m_lastTag, std::move(item->message));
    }
    if (m_ready.empty() && mayForward()) {
        readMore();
    }
}

std::optional<ForwardItem> Forwarder::next()
{
    // Whoever hears that it watches may rely on what follows.
    if (m_isKeeperDue && (m_isBegun || !m_mode.record().isOpen())) {
        m_isKeeperDue = false;
        return ForwardItem{{m_topics.keeper(), keeperJson(QStringLiteral("watching")), true}};
    }
    if (std::optional<ForwardItem> state = nextState()) {
        return state;
    }
    if (std::optional<ForwardItem> standing = nextStanding()) {
        return standing;
    }
    if (m_ready.empty()) {
        return std::nullopt;
    }
    ForwardItem item = std::move(m_ready.front());
    m_ready.pop_front();
    if (item.endsState && m_leases == nullptr) { // another station may have the name by now
        m_states.remove(item.message.topic);
        m_mode.stations().forEach([&](const cStation &station) {
            if (m_topics.state(nameOfStation(station.kennung())) == item.message.topic) {
                m_changed.insert(station.kennung());
            }
        });
    }
    return item;
}

/// Of a station of which something changed since it was told.
std::optional<ForwardItem> Forwarder::nextState()
{
    while (!m_changed.isEmpty()) {
        const QString kennung = *m_changed.cbegin();
        m_changed.erase(m_changed.cbegin());
        const cStation *const station = m_mode.station(kennung);
        if (station == nullptr) {
            continue;
        }
        const QString name = nameOfStation(kennung);
        const QByteArray json = stateJson(*station, name);
        QByteArray &told = m_states[m_topics.state(name)];
        if (told != json) {
            told = json;
            return ForwardItem{
                {m_topics.state(name), withTime(json, m_mode.now().toMSecsSinceEpoch()), true}};
        }
    }
    return std::nullopt;
}

/// A broker that was started anew may have forgotten them.
std::optional<ForwardItem> Forwarder::nextStanding()
{
    while (!m_standing.empty()) {
        const qint64 id = m_standing.front();
        m_standing.pop_front();
        if (const AlarmRow *const alarm = m_mode.alarms().alarm(id)) {
            return ForwardItem{
                {m_topics.standing(id), alarmJson(*alarm, nameOfStation(m_mode.stationOf(*alarm))), true}};
        }
    }
    return std::nullopt;
}

void Forwarder::onConnected()
{
    m_isKeeperDue = true;
    setTrouble({});
    if (m_leases != nullptr) {
        m_isPresentDue = true;
        m_seenOnDisk.reset();
        pump();
        return;
    }
    m_states.clear();
    m_mode.stations().forEach([this](const cStation &station) { m_changed.insert(station.kennung()); });
    tellStanding();
    pump();
}

void Forwarder::tellStanding()
{
    m_standing.clear();
    for (const auto &[id, alarm] : m_mode.alarms().standing()) {
        m_standing.push_back(id);
    }
}

void Forwarder::onConfirmed(const QList<quint64> &tags)
{
    for (const quint64 tag : tags) { // brokers confirm in order
        const auto flight = std::ranges::lower_bound(m_flights, tag, {}, &Flight::tag);
        if (flight != m_flights.end() && flight->tag == tag) {
            flight->isConfirmed = true;
        }
    }
    while (!m_flights.empty() && m_flights.front().isConfirmed) {
        m_confirmed = m_flights.front().upTo.value_or(m_confirmed);
        m_flights.pop_front();
    }
    pump();
}

/// What was not confirmed is read anew.
void Forwarder::onLost(const QString &why)
{
    m_flights.clear();
    m_ready.clear();
    m_read = m_confirmed;
    m_seenOnDisk.reset();
    if (m_isBegun && m_queries) {
        m_queries->withdraw(this);
    }
    if (m_trouble.isEmpty()) {
        setTrouble(m_options.target.name() + QLatin1String(": ") + why);
    }
}

void Forwarder::setTrouble(const QString &trouble)
{
    if (trouble == std::exchange(m_trouble, trouble)) {
        return;
    }
    if (m_leases == nullptr && m_mode.record().isOpen()) {
        const QJsonObject state{{troubleMember, trouble}, {sinceMember, m_mode.now().toMSecsSinceEpoch()}};
        m_mode.record().add(
            SettingRow{troubleSetting(m_options.target), trouble.isEmpty() ? QString() : jsonText(state)});
    }
    m_troubleSince = m_mode.now().toMSecsSinceEpoch();
    note();
    Q_EMIT troubleChanged(trouble);
}

void Forwarder::note()
{
    ListRecord &record = m_mode.record();
    if (m_leases != nullptr && m_isBegun) {
        QJsonObject state{{eventMember, m_confirmed.event}, {alarmMember, m_confirmed.change}};
        if (!m_trouble.isEmpty()) {
            state.insert(troubleMember, m_trouble);
            state.insert(sinceMember, m_troubleSince);
        }
        m_leases->note(duty(m_options.target), jsonText(state));
        return;
    }
    if (!m_isBegun || !record.isOpen() || m_noted == m_confirmed) {
        return;
    }
    if (m_noted.event != m_confirmed.event) {
        record.add(SettingRow{eventSetting(m_options.target), QString::number(m_confirmed.event)});
    }
    if (m_noted.change != m_confirmed.change) {
        record.add(SettingRow{alarmSetting(m_options.target), QString::number(m_confirmed.change)});
    }
    m_noted = m_confirmed;
}

/// A station that was renamed keeps its key in this run.
QString Forwarder::nameOfStation(const QString &kennung) const
{
    return kennung.isEmpty() ? QString() : m_mode.tree().find(kennung).data(Qt::EditRole).toString();
}

QByteArray Forwarder::keeperJson(const QString &state) const
{
    return keeperState(state, {{QStringLiteral("time"), utcText(m_mode.now().toMSecsSinceEpoch())},
                               {QStringLiteral("program"), QCoreApplication::applicationName()}});
}

} // namespace ktr
