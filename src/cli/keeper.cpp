#include "cli/keeper.h"

#include "cli/console.h"
#include "record/record_address.h"
#include "record/spool_place.h"

namespace ktr::cli {

Keeper::Keeper(KeepOptions options, const Environment &environment)
    : m_options(std::move(options)),
      m_watching(environment, m_options.spoolFolder.isEmpty()
                                  ? SpoolPlace::usualFolder(environment.dataFolder)
                                  : m_options.spoolFolder),
      m_mode(m_watching.mode()),
      m_pulse(m_watching.timers(), m_watching.io(),
              {[this] { return m_mode.recordWorkInHand(); }, [this] { return state(); }})
{
    QObject::connect(&m_mode, &OperationalMode::recovered, &m_mode,
                     [](const QString &line) { logLine(Urgency::Warning, line); });
    QObject::connect(&m_mode, &OperationalMode::shareChanged, &m_mode, [](int stations) {
        logLine(Urgency::Info, QStringLiteral("stations watched here: %1").arg(stations));
    });
}

int Keeper::run()
{
    if (!open()) {
        return failed;
    }
    const AlarmBook &alarms = m_mode.alarms();
    logLine(Urgency::Info,
            QStringLiteral("%1: watching; stations: %2, alarms that stand: %3, not acknowledged: %4")
                .arg(m_options.list)
                .arg(m_mode.stations().Count())
                .arg(alarms.standing().size())
                .arg(alarms.waitingCount()));
    QObject::connect(&alarms, &AlarmBook::changed, &m_mode,
                     [this](const AlarmRow &alarm, AlarmBook::Change change) { tellAlarm(alarm, change); });
    std::optional<PassingOn> passingOn(std::in_place, m_options.passOn, m_watching);
    if (const Status listens = passingOn->listen(); !listens) { // stations matter more
        logLine(Urgency::Error, QStringLiteral("no figures are told: ") + listens.message());
    }
    m_pulse.start();
    const int code = m_watching.run();
    m_pulse.stop();
    passingOn.reset();
    return std::max(code, close());
}

/// What keeps it from being opened is told.
Status Keeper::open()
{
    Status opened = m_mode.open(m_options.list, OperationalMode::Use::Keep);
    if (!opened && isServerAddress(m_options.list)) {
        complain(opened.message());
        return opened;
    }
    if (m_mode.hindrance() == OperationalMode::Hindrance::InUse) {
        complain(opened.message());
    } else if (!opened) {
        m_mode.closeWithoutFile();
    }
    return opened;
}

void Keeper::tellAlarm(const AlarmRow &alarm, AlarmBook::Change change) const
{
    QString what;
    Urgency urgency = Urgency::Info;
    switch (change) {
    case AlarmBook::Change::Came:
        what = QStringLiteral("alarm");
        urgency = alarm.kind == AlarmKind::Disk || alarm.kind == AlarmKind::List ? Urgency::Error
                                                                                 : Urgency::Warning;
        break;
    case AlarmBook::Change::Acknowledged:
        what = QStringLiteral("acknowledged");
        break;
    case AlarmBook::Change::Over:
        what = QStringLiteral("over");
        break;
    default: // the first of many is enough
        return;
    }
    const QString station = m_mode.tree().find(m_mode.stationOf(alarm)).data(Qt::EditRole).toString();
    logLine(urgency, what + QStringLiteral(": ") +
                         (station.isEmpty() ? alarm.text : station + QStringLiteral(": ") + alarm.text));
}

int Keeper::close()
{
    const Status closed = m_mode.close();
    if (!closed) {
        complain(closed.message());
        m_mode.closeWithoutFile(); // the record has what the file lacks
    }
    m_watching.tellForeignDatagrams();
    logLine(Urgency::Info, m_options.list + QStringLiteral(": not watched any more"));
    return closed ? done : failed;
}

/// A line for who asks the service manager.
QString Keeper::state() const
{
    const std::optional<UnkeptChanges> unkept = m_mode.unkeptChanges();
    QString state = textOf(summaryOf(m_mode));
    if (unkept && m_mode.record().isOpen() && m_mode.record().writer().isSafe()) {
        state += QStringLiteral("; database away since ") + unkept->since.toString(Qt::ISODate);
    } else if (unkept) {
        state += QStringLiteral("; not recorded: ") + unkept->reason;
    }
    const auto spooled = m_mode.record().isOpen() ? m_mode.record().writer().spooled() : std::nullopt;
    if (spooled && spooled->rows > 0) {
        state += QStringLiteral("; rows kept in %1: %2").arg(spooled->path).arg(spooled->rows);
    }
    return state;
}

QString textOf(const WatchSummary &summary)
{
    return QStringLiteral(
               "stations: %1 alive, %2 silent, %3 not heard yet, %4 offline; alarms: %5 standing, %6 not "
               "acknowledged, %7 put aside")
        .arg(summary.alive)
        .arg(summary.silent)
        .arg(summary.unheard)
        .arg(summary.offline)
        .arg(summary.standing)
        .arg(summary.unacknowledged)
        .arg(summary.shelved);
}

} // namespace ktr::cli
