#include "opmode/alarm_actions.h"

#include "record/json_text.h"
#include "record/record_address.h"

#include <map>

namespace ktr {

namespace {

namespace member = request_members;

// The members of a shelf, and of a limit, as settings and events have them.
const QString stationKey = QStringLiteral("station");
const QString textKey = QStringLiteral("text");
const QString untilKey = QStringLiteral("until");
const QString byKey = QStringLiteral("by");
const QString whyKey = QStringLiteral("why");
const QString timesKey = QStringLiteral("times");
const QString minutesKey = QStringLiteral("minutes");

QJsonArray toJson(const QList<qint64> &numbers)
{
    QJsonArray array;
    for (const qint64 number : numbers) {
        array += number;
    }
    return array;
}

QJsonObject toJson(const Shelf &shelf)
{
    return {{stationKey, shelf.station},
            {textKey, shelf.text},
            {untilKey, shelf.until},
            {byKey, shelf.by},
            {whyKey, shelf.why}};
}

} // namespace

const QString AlarmActions::shelvesSetting = QStringLiteral("shelves");
const QString AlarmActions::rulesSetting = QStringLiteral("rules");
const QString AlarmActions::chatterSetting = QStringLiteral("chatter");

AlarmActions::AlarmActions(AlarmBook &book, ListRecord &record, std::function<qint64()> now, Asks asks,
                           QObject *parent)
    : QObject(parent),
      m_book(book),
      m_record(record),
      m_now(std::move(now)),
      m_asks(std::move(asks)),
      m_chatter(book)
{
    connect(&book, &AlarmBook::shelvesChanged, this, &AlarmActions::keepShelves);
}

void AlarmActions::load(const QHash<QString, QString> &settings)
{
    m_book.setRules(rules(settings.value(rulesSetting)));
    const QJsonObject limit = jsonOf(settings.value(chatterSetting)).object();
    const ChatterLimit standard;
    m_chatter.setLimit({limit[timesKey].toInt(standard.times), limit[minutesKey].toInt(standard.minutes)});
}

AlarmRules AlarmActions::rules(const QString &setting)
{
    return AlarmRules::fromJson(setting).value_or(AlarmRules());
}

QList<Shelf> AlarmActions::shelves(const QHash<QString, QString> &settings)
{
    QList<Shelf> shelves;
    for (auto setting = settings.cbegin(); setting != settings.cend(); ++setting) {
        if (setting.key() != shelvesSetting && !setting.key().startsWith(shelvesSetting + u':')) {
            continue;
        }
        for (const auto &value : jsonOf(*setting).array()) {
            const QJsonObject shelf = value.toObject();
            shelves += Shelf{shelf[stationKey].toInteger(), shelf[textKey].toString(),
                             shelf[untilKey].toInteger(), shelf[byKey].toString(), shelf[whyKey].toString()};
        }
    }
    std::ranges::stable_sort(shelves, {}, &Shelf::station);
    return shelves;
}

/// Those of each station that is this keeper's.
void AlarmActions::keepSharedShelves()
{
    std::map<qint64, QJsonArray> shelves;
    for (auto kept = m_keptShelves.cbegin(); kept != m_keptShelves.cend(); ++kept) {
        shelves[kept.key()] = {};
    }
    for (const Shelf &shelf : m_book.shelves()) {
        shelves[shelf.station] += toJson(shelf);
    }
    for (const auto &[station, ofStation] : shelves) {
        const QString text = jsonText(ofStation);
        if (station != 0 && m_record.kennung(station).isEmpty()) {
            m_keptShelves.remove(station);
        } else if (m_keptShelves.value(station) != text) {
            m_keptShelves.insert(station, text);
            m_record.add(SettingRow{shelvesSetting + u':' + QString::number(station), text});
        }
    }
}

void AlarmActions::keepShelves()
{
    if (isServerAddress(m_record.path())) {
        keepSharedShelves();
        return;
    }
    QJsonArray shelves;
    for (const Shelf &shelf : m_book.shelves()) {
        shelves += toJson(shelf);
    }
    m_record.add(SettingRow{shelvesSetting, jsonText(shelves)});
}

void AlarmActions::add(EventKind kind, qint64 station, const QString &text, ListRecord::By by,
                       const QString &detail, qint64 alarm)
{
    m_record.add(kind, m_record.kennung(station), m_now(), text, by, detail, alarm);
}

void AlarmActions::comment(const QList<qint64> &alarms, const QString &text)
{
    if (m_asks({requests::comment, {{member::alarms, toJson(alarms)}, {member::text, text}}})) {
        return;
    }
    for (const qint64 id : alarms) {
        if (const AlarmRow *alarm = m_book.alarm(id); alarm != nullptr && alarm->comment != text) {
            add(EventKind::Commented, alarm->station, text, ListRecord::By::Operator, {}, id);
            m_book.comment(id, text);
        }
    }
}

void AlarmActions::shelve(const QList<qint64> &alarms, qint64 until, const QString &why)
{
    if (m_asks({requests::shelve,
                {{member::alarms, toJson(alarms)}, {member::until, until}, {member::why, why}}})) {
        return;
    }
    for (const qint64 id : alarms) {
        if (const AlarmRow *alarm = m_book.alarm(id)) {
            shelve(Shelf{alarm->station, alarm->text, until, {}, why}, id);
        }
    }
}

void AlarmActions::shelveStation(qint64 station, qint64 until, const QString &why)
{
    if (station != 0 && // that would be all alarms about the watching itself
        !m_asks(stationRequest(requests::maintain, station, {{member::until, until}, {member::why, why}}))) {
        shelve(Shelf{station, {}, until, {}, why}, 0);
    }
}

void AlarmActions::shelve(Shelf shelf, qint64 alarm)
{
    shelf.by = m_record.operatorName();
    const QString text = shelf.text.isEmpty() ? shelf.why : shelf.text + QLatin1String(": ") + shelf.why;
    add(EventKind::Shelved, shelf.station, text, ListRecord::By::Operator, jsonText(toJson(shelf)), alarm);
    m_book.shelve(shelf);
}

void AlarmActions::unshelve(qint64 station, const QString &text)
{
    if (m_asks(stationRequest(requests::unshelve, station, {{member::text, text}}))) {
        return;
    }
    const auto is = [&](const Shelf &shelf) { return shelf.station == station && shelf.text == text; };
    if (std::ranges::any_of(m_book.shelves(), is)) {
        add(EventKind::Unshelved, station, text, ListRecord::By::Operator);
        m_book.unshelve(station, text);
    }
}

const Shelf *AlarmActions::maintenanceOf(qint64 station) const
{
    const QList<Shelf> &shelves = m_book.shelves();
    const auto found = std::ranges::find_if(
        shelves, [&](const Shelf &shelf) { return shelf.station == station && shelf.text.isEmpty(); });
    return found == shelves.end() ? nullptr : &*found;
}

void AlarmActions::setRules(const AlarmRules &rules)
{
    const QString kept = m_record.settings().value(rulesSetting);
    const bool isDamaged =
        !kept.isEmpty() && !AlarmRules::fromJson(kept); // those in use are not the record's
    if ((rules == m_book.rules() && !isDamaged) || m_asks(settingRequest(rulesSetting, rules.toJson()))) {
        return;
    }
    m_book.setRules(rules);
    m_record.add(SettingRow{rulesSetting, rules.toJson()});
    add(EventKind::Note, 0, QStringLiteral("alarm rules"), ListRecord::By::Operator, rules.toJson());
}

void AlarmActions::setChatterLimit(const ChatterLimit &limit)
{
    const QString kept = jsonText(QJsonObject{{timesKey, limit.times}, {minutesKey, limit.minutes}});
    if (limit == m_chatter.limit() || m_asks(settingRequest(chatterSetting, kept))) {
        return;
    }
    m_chatter.setLimit(limit);
    m_record.add(SettingRow{chatterSetting, kept});
    add(EventKind::Note, 0, QStringLiteral("chattering alarms"), ListRecord::By::Operator, kept);
    Q_EMIT minutePassed();
}

void AlarmActions::minute()
{
    for (const Shelf &shelf : m_book.shelves()) {
        if (shelf.until <= m_now()) {
            add(EventKind::Unshelved, shelf.station, shelf.text, ListRecord::By::Program);
        }
    }
    m_book.unshelveUntil(m_now());
    Q_EMIT minutePassed();
}

} // namespace ktr
