#include "opmode/request_desk.h"

#include "opmode/keeping/list_replay.h"
#include "opmode/request_sender.h"
#include "opmode/tree/notifications.h"
#include "platform/text_rules.h"
#include "record/json_text.h"
#include "record/record_address.h"

namespace ktr {

namespace {

namespace member = request_members;

/// What one may ask to be set, and what the event that tells of it says; some are not worth one.
const QHash<QString, QString> &settable()
{
    static const QHash<QString, QString> settings{
        {AlarmActions::rulesSetting, QStringLiteral("alarm rules")},
        {AlarmActions::chatterSetting, QStringLiteral("chattering alarms")},
        {silenceSetting(), {}},
        {retentionSetting(), {}}};
    return settings;
}

/// Both names of who asked; anybody may have written them.
QString signatureOf(const RequestRow &row)
{
    return onOneLine(row.login.isEmpty() || row.login == row.operatorName ? row.operatorName
                     : row.operatorName.isEmpty()
                         ? row.login
                         : row.operatorName + QLatin1String(" (") + row.login + u')');
}

QList<qint64> alarmsOf(const QJsonObject &about)
{
    QList<qint64> alarms;
    for (const auto &alarm : about[member::alarms].toArray()) {
        alarms += alarm.toInteger();
    }
    return alarms;
}

} // namespace

RequestDesk::RequestDesk(const ListParts &parts, StationActions &stationActions, Acknowledger &acknowledger,
                         AlarmActions &alarmActions)
    : m_parts(parts),
      m_stationActions(stationActions),
      m_acknowledger(acknowledger),
      m_alarmActions(alarmActions),
      m_timer(parts.timers.create())
{}

void RequestDesk::start()
{
    m_start = m_parts.moment();
    m_last = 0;
    if (isServerAddress(m_parts.record.path())) {
        m_queries.emplace(m_parts.record.path());
        m_deeds.emplace(m_parts.record.path());
        m_settings.clear();
        m_inHand.clear();
        m_notices = std::make_unique<RecordNotices>(m_parts.record.path(), [this] { noticed(); });
    }
    m_timer->start(period, [this] { look(); });
}

void RequestDesk::stop()
{
    m_timer->stop();
    m_reader.reset();
    m_notices.reset();
    m_queries.reset();
    m_deeds.reset();
}

/// What a busy record commits is noticed hundreds of times a second.
void RequestDesk::noticed()
{
    if (!std::exchange(m_isNoticed, true)) { // else the look is on its way
        m_timer->start(leastPeriod, [this] { look(); });
    }
}

void RequestDesk::look()
{
    m_isNoticed = false;
    m_timer->start(period, [this] { look(); });
    if (m_queries) {
        if (!m_queries->isWaitedFor(this)) {
            m_queries->ask(
                this,
                [version = m_version, last = m_last](RecordReader &reader) {
                    return find(reader, version, last);
                },
                [this](const Found &found) { take(found); });
        }
        return;
    }
    if (!m_parts.record.isOpen()) {
        m_reader.reset(); // another one may take its place
        return;
    }
    if (!m_reader || m_reader->isStale()) {
        m_reader = std::make_unique<RecordReader>(m_parts.record.path());
        m_version = 0;
    }
    take(find(*m_reader, m_version, m_last));
}

RequestDesk::Found RequestDesk::find(RecordReader &reader, qint64 version, qint64 last)
{
    Found found;
    found.version = reader.dataVersion();
    found.isNew = found.version != version || version == 0;
    if (found.isNew) {
        found.status = reader.openRequests(last, [&](const RequestRow &row) { found.rows += row; });
        if (found.status && isServerAddress(reader.path())) {
            found.status = reader.settings(settable().keys(), found.settings);
        }
    }
    return found;
}

void RequestDesk::take(const Found &found)
{
    if (!found.status) {
        m_reader.reset(); // the next look has a new connection
        return;
    }
    if (!found.isNew) {
        return; // what is in hand still is
    }
    if (m_queries && found.settings != m_settings) {
        m_settings = found.settings;
        m_settingsChanged(m_settings);
    }
    m_version = found.version;
    if (m_queries) {
        takeShared(found.rows);
        return;
    }
    for (const RequestRow &row : found.rows) {
        handle(row);
        m_last = row.id;
    }
}

/// All that are open, each time: a station may be another keeper's by now, which does what was asked for.
void RequestDesk::takeShared(const QList<RequestRow> &rows)
{
    constexpr qint64 lateMs = 2'000; // nobody has it who still could
    QSet<qint64> inHand;
    for (const RequestRow &row : rows) {
        inHand.insert(row.id);
        if (m_inHand.contains(row.id)) {
            continue;
        }
        if (const std::optional<HeardText> heard = HeardText::of(row)) {
            if (!takeHeard(row, *heard)) {
                inHand.remove(row.id);
            }
        } else if (isOfAll(row)) {
            doForAll(row);
        } else if (isOwn(row)) {
            handle(row);
        } else if (row.age.value_or(0) > RequestSender::patienceMs + lateMs) {
            m_deeds->carryOut({row.id, m_parts.moment(), signatureOf(row),
                               tr("no keeper has what it is about, or it did not answer in time")});
        } else {
            inHand.remove(row.id);
        }
    }
    m_inHand = inHand;
}

/// However late that is; whoever has the station some time does it.
bool RequestDesk::takeHeard(const RequestRow &row, const HeardText &heard)
{
    const QString kennung = m_parts.record.kennung(heard.station);
    if (kennung.isEmpty()) {
        return false;
    }
    if (row.mayKeep) {
        m_heard(kennung, heard);
    }
    m_parts.record.add(RequestAnswerRow{row.id, m_parts.moment(),
                                        row.mayKeep ? QString() : tr("%1 is no keeper").arg(row.login)});
    m_parts.record.writer().flush();
    return true;
}

/// Of those who share the list: each request is about one station.
bool RequestDesk::isOwn(const RequestRow &row) const
{
    const QJsonObject about = jsonOf(row.detail).object();
    const QJsonArray entries = about[member::entries].toArray();
    const QList<qint64> alarms = alarmsOf(about);
    const AlarmRow *alarm = alarms.isEmpty() ? nullptr : m_parts.alarms.alarm(alarms.constFirst());
    const qint64 station = !entries.isEmpty() ? entries.first()[member::station].toInteger()
                                              : about[member::station].toInteger();
    return alarm != nullptr || !m_parts.record.kennung(station).isEmpty();
}

/// It is about none of the stations, and any keeper may do it.
bool RequestDesk::isOfAll(const RequestRow &row)
{
    return row.what == requests::add || row.what == requests::set || row.what == requests::shift;
}

void RequestDesk::doForAll(const RequestRow &row)
{
    SharedDeed deed{row.id, m_parts.moment(), signatureOf(row)};
    const QJsonObject about = jsonOf(row.detail).object();
    const auto note = [&](const QString &text, const QString &detail) {
        deed.note = EventRow{.at = deed.at,
                             .kind = EventKind::Note,
                             .text = text,
                             .detail = detail,
                             .operatorName = deed.operatorName};
    };
    Status may = mayDo(row);
    if (may && row.what == requests::add) {
        const QString name = StationActions::nameFor(about[member::name].toString());
        StationAttributes attributes;
        attributes.hostAddress = about[member::address].toString();
        attributes.online = about[member::on].toBool();
        deed.station = StationRow{0, name, true, toJson(attributes)};
        may = name.isEmpty() ? Status::failed(tr("no station can be called that")) : may;
    } else if (may && row.what == requests::set) {
        const SettingRow setting{about[member::name].toString(), about[member::text].toString()};
        const auto known = settable().constFind(setting.name);
        if (known == settable().cend() ||
            (setting.name == AlarmActions::rulesSetting && !AlarmRules::fromJson(setting.value))) {
            may = Status::failed(tr("\"%1\" is not known to the program that watches").arg(setting.name));
        } else {
            deed.setting = setting;
            if (!known->isEmpty()) {
                note(*known, setting.value);
            }
        }
    } else if (may) {
        note(QStringLiteral("operator: ") + row.operatorName, {});
    }
    if (!may) {
        deed = {row.id, deed.at, deed.operatorName, may.message()};
    }
    m_deeds->carryOut(std::move(deed));
}

Status RequestDesk::mayDo(const RequestRow &row) const
{
    const qint64 now = m_parts.moment();
    const qint64 asked = row.age ? now - *row.age : row.at;
    return asked < m_start && !m_queries // which another keeper could have done
               ? Status::failed(tr("it was asked for before the stations were watched"))
               : now - asked > RequestSender::patienceMs
                     ? Status::failed(tr("the program that watches the stations was held up for too long"))
                 : isAdministrative(row.what) && !row.mayAdminister
                     ? Status::failed(tr("%1 is no administrator of the database").arg(row.login))
                     : Status::done();
}

void RequestDesk::handle(const RequestRow &row)
{
    const qint64 now = m_parts.moment();
    const Status may = mayDo(row);
    const Status done = may ? carryOut(row) : may;
    m_parts.record.add(RequestAnswerRow{row.id, now, done.message()});
    m_parts.record.writer().flush();
}

Status RequestDesk::carryOut(const RequestRow &row)
{
    const QString before = m_parts.record.operatorName();
    m_parts.record.setOperator(signatureOf(row));
    Status done = carryOut(row.what, jsonOf(row.detail).object());
    m_parts.record.setOperator(before);
    return done;
}

Status RequestDesk::carryOut(const QString &what, const QJsonObject &about)
{
    if (what == requests::acknowledge) {
        return acknowledge(about);
    }
    if (what == requests::add) {
        return add(about);
    }
    if (what == requests::shift) {
        m_parts.record.addShift(m_parts.moment());
        return Status::done();
    }
    bool isKnown = true;
    Status done = onAlarms(what, about, isKnown);
    if (!isKnown) {
        isKnown = true;
        done = onStation(what, about, isKnown);
    }
    return isKnown ? done : Status::failed(tr("\"%1\" is not known to the program that watches").arg(what));
}

/// What came anew since it was seen stays.
Status RequestDesk::acknowledge(const QJsonObject &about)
{
    QModelIndexList entries;
    qsizetype changed = 0;
    const QJsonArray wanted = about[member::entries].toArray();
    for (const auto &value : wanted) {
        const QJsonObject entry = value.toObject();
        const QString kennung = m_parts.record.kennung(entry[member::station].toInteger());
        const QModelIndex found =
            m_parts.tree.find(entryKey(kennung, branches::notifications, entry[member::entry].toString()));
        const bool isSame =
            found.isValid() && m_parts.tree.arrivals().value(StationTree::idOf(found)).raised ==
                                   entry[member::raised].toInteger();
        if (isSame) {
            entries += found;
        } else {
            ++changed;
        }
    }
    Status done = entries.isEmpty() ? Status::done() : m_acknowledger.acknowledge(entries);
    const QList<qint64> alarms = alarmsOf(about);
    if (done && !alarms.isEmpty()) {
        done = m_acknowledger.acknowledgeAlarms(alarms);
    }
    return done && changed > 0 ? Status::failed(tr("alarms that came anew meanwhile: %1").arg(changed))
                               : done;
}

Status RequestDesk::onAlarms(const QString &what, const QJsonObject &about, bool &isKnown)
{
    const qint64 station = about[member::station].toInteger();
    const qint64 until = about[member::until].toInteger();
    const QString why = about[member::why].toString();
    if ((what == requests::shelve || what == requests::maintain) && until <= m_parts.moment()) {
        return Status::failed(tr("it is over by now, or without an end"));
    }
    if (what == requests::comment) {
        m_alarmActions.comment(alarmsOf(about), about[member::text].toString());
    } else if (what == requests::shelve) {
        m_alarmActions.shelve(alarmsOf(about), until, why);
    } else if (what == requests::maintain) {
        m_alarmActions.shelveStation(station, until, why);
    } else if (what == requests::unshelve) {
        m_alarmActions.unshelve(station, about[member::text].toString());
    } else {
        isKnown = false;
    }
    return Status::done();
}

Status RequestDesk::add(const QJsonObject &about)
{
    const QString kennung = m_stationActions.add(
        about[member::name].toString(), about[member::address].toString(), about[member::on].toBool());
    return kennung.isEmpty() ? Status::failed(tr("no station can be called that")) : Status::done();
}

Status RequestDesk::onStation(const QString &what, const QJsonObject &about, bool &isKnown)
{
    const QString kennung = m_parts.record.kennung(about[member::station].toInteger());
    const bool on = about[member::on].toBool();
    if ((what == requests::online || what == requests::exclusive) && !about[member::on].isBool()) {
        return Status::failed(tr("whether on or off is missing"));
    }
    if (what == requests::online && !about.contains(member::station)) {
        m_stationActions.setAllOnline(on);
        return Status::done();
    }
    if (m_parts.stations.Item(kennung) == nullptr) {
        return Status::failed(tr("the station is no longer in the list"));
    }
    if (what == requests::online) {
        m_stationActions.setOnline(kennung, on);
    } else if (what == requests::exclusive) {
        m_stationActions.setExclusive(kennung, on);
    } else if (what == requests::schedule) {
        m_stationActions.setSchedule(kennung,
                                     stationAttributes(about[member::attributes].toString()).schedule);
    } else if (what == requests::address) {
        m_stationActions.setHostAddress(kennung, about[member::address].toString());
    } else if (what == requests::remove) {
        m_stationActions.remove(kennung);
    } else if (what == requests::rename) {
        return m_parts.tree.setData(m_parts.tree.find(kennung), about[member::name].toString())
                   ? Status::done()
                   : Status::failed(tr("no station can be called that"));
    } else if (what == requests::values) {
        return m_stationActions.requestValues(kennung)
                   ? Status::done()
                   : Status::failed(tr("%1 has a text to deliver already").arg(kennung));
    } else {
        isKnown = false;
    }
    return Status::done();
}

} // namespace ktr
