#include "opmode/late_record.h"

#include "opmode/acknowledger.h"
#include "opmode/alarm_actions.h"
#include "opmode/keeping/list_replay.h"
#include "opmode/message_intake.h"
#include "opmode/standing_alarms.h"
#include "opmode/tree/notifications.h"

#include <QCoreApplication>

namespace ktr {

namespace {

bool isMessage(EventKind kind)
{
    return kind == EventKind::Notification || kind == EventKind::Values || kind == EventKind::History ||
           kind == EventKind::OtherMessage;
}

void copyNodes(const NodeStore &nodes, NodeStore::Id parent, StationTreeLoader &loader)
{
    for (const NodeStore::Id id : nodes.children(parent)) {
        loader.load(nodes.key(id), nodes.text(id), nodes.colour(id));
        copyNodes(nodes, id, loader);
    }
}

} // namespace

void copyTree(const StationTree &from, StationTree &to)
{
    while (to.rowCount() > 0) {
        to.remove(to.index(to.rowCount() - 1, 0));
    }
    StationTreeLoader loader(to);
    copyNodes(from.nodes(), NodeStore::root, loader);
    eachNotification(
        from, [&](NodeStore::Id id) { loader.loadArrival(from.nodes().key(id), from.arrivals().value(id)); });
}

LateRecord::LateRecord(const ListParts &live, const QString &nodesPath, const StationCaptions &captions)
    : m_live(live),
      m_file(nodesPath),
      m_tree(captions),
      m_alarms([this] { return m_live.record.writer().nextAlarmId(); }),
      m_parts{m_tree,      live.stations, live.scheduler, live.trends,
              live.record, m_alarms,      live.timers,    live.environment},
      m_list(m_file, m_tree)
{
    QObject::connect(&m_alarms, &AlarmBook::changed, &m_alarms,
                     [this](const AlarmRow &alarm) { m_live.record.add(alarm); });
}

QHash<QString, QString> LateRecord::settings() const
{
    QHash<QString, QString> settings = m_list.settings();
    settings.insert(m_waitingSettings);
    return settings;
}

Status LateRecord::takeUp(const OpenedRecord &opened)
{
    if (Status loaded = m_list.loadFile(); !loaded) {
        return loaded;
    }
    ListRecord &record = m_live.record;
    m_waitingSettings = record.settings();
    m_waitingSettings.remove(AlarmActions::shelvesSetting); // nothing was shelved yet
    const ListRecord::Awaited awaited = record.takeAwaited();
    QList<AlarmRow> watching;
    for (const auto &[id, alarm] : m_live.alarms.standing()) {
        if (alarm.kind != AlarmKind::Module) {
            watching += alarm;
        }
    }
    m_list.takeUp(record, opened, EarlierFiles(m_file.path()), m_live.moment());
    m_names = m_list.names();
    m_attributes = m_list.takeAttributes();
    takeAlarms(watching, awaited);
    for (const RecordRow &row : awaited.rows) {
        takeRow(awaited, row);
    }
    if (awaited.leftOut > 0) {
        record.add(
            EventKind::Trouble, {}, m_live.moment(),
            QCoreApplication::translate("Record", "rows left out before the record could be opened: %1")
                .arg(awaited.leftOut),
            ListRecord::By::Program);
    }
    return Status::done();
}

/// What stood before the list was opened, and what about the watching came since.
void LateRecord::takeAlarms(const QList<AlarmRow> &watching, const ListRecord::Awaited &awaited)
{
    m_alarms.setRules(AlarmActions::rules(settings().value(AlarmActions::rulesSetting)));
    takeUpAlarms(m_parts, Acknowledger(m_parts), m_list.standing(), AlarmActions::shelves(settings()));
    for (const AlarmRow &alarm : watching) {
        const qint64 id = m_alarms.begin(alarm.kind, numberOf(awaited, alarm.station), alarm.text,
                                         alarm.first, static_cast<AlarmPriority>(alarm.priority));
        m_renumbered.insert(alarm.id, id);
        if (alarm.over != 0) {
            m_alarms.end(id, alarm.over, alarm.overWhy);
        }
    }
    QList<qint64> over; // what the run before told of
    for (const auto &[id, alarm] : m_alarms.standing()) {
        if (alarm.kind != AlarmKind::Module && alarm.over == 0 &&
            std::ranges::find(m_renumbered, id) == m_renumbered.end()) {
            over += id;
        }
    }
    for (const qint64 id : std::as_const(over)) {
        m_alarms.end(id, m_live.moment());
    }
}

/// The number that a station has in the record; a new one is given one.
qint64 LateRecord::numberOf(const ListRecord::Awaited &awaited, qint64 station)
{
    const QString kennung = awaited.names.value(station);
    const qint64 known = m_live.record.number(kennung);
    return kennung.isEmpty() || known != 0 ? known : m_live.record.addStation(kennung);
}

void LateRecord::takeRow(const ListRecord::Awaited &awaited, RecordRow row)
{
    if (auto *event = std::get_if<EventRow>(&row)) {
        m_begun = m_begun == 0 ? event->at : m_begun;
        event->station = numberOf(awaited, event->station);
        takeEvent(*event, m_live.record.kennung(event->station));
    } else if (auto *station = std::get_if<StationRow>(&row)) {
        station->id = numberOf(awaited, station->id);
        m_live.record.add(*station);
    } else if (auto *notification = std::get_if<NotificationRow>(&row)) {
        if (!notification->listed) { // the others are told anew by the messages
            notification->station = numberOf(awaited, notification->station);
            m_live.record.add(*notification);
        }
    } else if (const auto *setting = std::get_if<SettingRow>(&row)) {
        if (setting->name != AlarmActions::shelvesSetting) {
            m_live.record.add(row);
        }
    }
}

void LateRecord::takeEvent(EventRow event, const QString &kennung)
{
    if (isMessage(event.kind)) {
        MessageIntake(m_parts).handleAgain(kennung, event.text, event.at);
        return;
    }
    event.id = m_live.record.nextEvent();
    event.alarm = 0;
    m_live.record.add(event);
    (void)ListReplay(m_tree, m_names, m_attributes).carryOut(event);
    if (event.kind == EventKind::StationRemoved) {
        m_alarms.forget(event.station, event.at);
        m_live.record.removeStation(kennung);
    }
}

} // namespace ktr
