#include "opmode/watch_alarms.h"

#include "platform/time_texts.h"

namespace ktr {

namespace {

constexpr int ticksOf(Milliseconds time)
{
    return static_cast<int>(time / WatchAlarms::tick);
}

constexpr int told = -1;

/// Of the kinds that always say the same.
QString textOf(AlarmKind kind)
{
    return kind == AlarmKind::Silent  ? WatchAlarms::tr("The station is silent")
           : kind == AlarmKind::Flood ? WatchAlarms::tr("More arrives from the station than can be taken")
           : kind == AlarmKind::Puk   ? WatchAlarms::tr("The module's SIM asks for its PUK")
                                      : QString();
}

} // namespace

QString WatchAlarms::shownText(const AlarmRow &alarm)
{
    const QString text = textOf(alarm.kind);
    return text.isEmpty() ? alarm.text : text;
}

WatchAlarms::WatchAlarms(AlarmBook &book, Timers &timers, const Environment &environment)
    : m_book(book), m_environment(environment), m_tick(timers.create()), m_soon(timers.create())
{}

WatchAlarms::~WatchAlarms() = default;

void WatchAlarms::setLongestSilence(int minutes)
{
    const int before = silenceTicks();
    m_longestSilence = minutes;
    for (auto [station, waiting] : m_silent.asKeyValueRange()) {
        if (waiting.alarm == 0) { // what it has waited for already counts
            waiting.ticks = minutes == 0 ? told : std::max(0, waiting.ticks + silenceTicks() - before);
        }
    }
}

/// A station is called silent once it was so for an announcement and more.
int WatchAlarms::silenceTicks() const
{
    const Milliseconds silence = std::chrono::minutes(m_longestSilence);
    return ticksOf(silence - std::min(silence, Milliseconds(cStation::announceInterval)));
}

void WatchAlarms::start(const std::function<bool(qint64 station)> &isWatched)
{
    m_silent.clear();
    QList<qint64> over;
    for (const auto &[id, alarm] : m_book.standing()) {
        if (alarm.kind == AlarmKind::Silent && alarm.over == 0 && isWatched(alarm.station)) {
            m_silent.insert(alarm.station, {told, id});
        } else if (alarm.kind != AlarmKind::Module && alarm.over == 0) {
            over += id;
        }
    }
    for (const qint64 id : over) {
        m_book.end(id, moment());
    }
    m_isRunning = true;
    showDisk();
    m_lastTick = moment();
    awaitTick();
}

void WatchAlarms::stop()
{
    m_isRunning = false;
    m_tick->stop();
    m_soon->stop();
    m_silent.clear();
    m_flooding.clear();
    m_puk.clear();
    m_diskTrouble.clear();
    m_roomTrouble.clear();
    m_diskAlarm = m_roomAlarm = m_unkeptAlarm = 0;
}

void WatchAlarms::awaitTick()
{
    m_tick->start(tick, [this] { onTick(); });
}

void WatchAlarms::onTick()
{
    const qint64 now = moment();
    if (now - m_lastTick > (tick + longestGap).count()) {
        tellUnwatched(m_lastTick, now, tr("The program stood still, or the clock was set"));
    }
    m_lastTick = now;
    count(m_silent, AlarmKind::Silent);
    count(m_flooding, AlarmKind::Flood);
    awaitTick();
}

void WatchAlarms::count(Stations &stations, AlarmKind kind)
{
    for (auto [station, waiting] : stations.asKeyValueRange()) {
        if (waiting.ticks >= 0 && --waiting.ticks < 0) {
            waiting.alarm = m_book.begin(kind, station, textOf(kind), moment());
        }
    }
}

void WatchAlarms::begin(Stations &stations, qint64 station, int ticks)
{
    if (!stations.contains(station)) {
        stations.insert(station, {ticks});
    }
}

void WatchAlarms::end(Stations &stations, qint64 station, const QString &why)
{
    m_book.end(stations.take(station).alarm, moment(), why);
}

void WatchAlarms::onStationChanged(qint64 station, StationChange what,
                                   const std::optional<DatagramLoss> &loss)
{
    switch (what) {
    case StationChange::Alive:
        end(m_silent, station);
        break;
    case StationChange::Silent:
        begin(m_silent, station, m_longestSilence == 0 ? told : silenceTicks());
        break;
    case StationChange::PukNeeded:
        if (!m_puk.contains(station)) {
            m_puk.insert(station, m_book.begin(AlarmKind::Puk, station, textOf(AlarmKind::Puk), moment(),
                                               AlarmPriority::High));
        }
        break;
    case StationChange::PukCleared:
        m_book.end(m_puk.take(station), moment());
        break;
    case StationChange::LossBegan:
    case StationChange::LossGoesOn:
        if (loss && loss->isFlood) {
            begin(m_flooding, station, ticksOf(longestFlood));
        }
        break;
    case StationChange::LossOver:
        end(m_flooding, station);
        break;
    case StationChange::Quality:
    case StationChange::TextDelivered:
        break;
    }
}

void WatchAlarms::letGo(qint64 station)
{
    const QString why = tr("it is not watched any more");
    end(m_silent, station, why);
    end(m_flooding, station, why);
    m_book.end(m_puk.take(station), moment(), why);
}

void WatchAlarms::takeOver(const QList<AlarmRow> &standing)
{
    for (const AlarmRow &alarm : standing) {
        if (alarm.over != 0) {
            continue;
        }
        if (alarm.kind == AlarmKind::Silent) {
            m_silent.insert(alarm.station, {told, alarm.id});
        } else if (alarm.kind == AlarmKind::Puk) {
            m_puk.insert(alarm.station, alarm.id);
        } else if (alarm.kind == AlarmKind::Flood) {
            m_book.end(alarm.id, moment());
        }
    }
}

void WatchAlarms::handOver(qint64 station)
{
    m_silent.remove(station);
    m_flooding.remove(station);
    m_puk.remove(station);
}

void WatchAlarms::setDiskTrouble(const QString &trouble)
{
    m_diskTrouble = trouble;
    // It is told in the middle of the writing, which an alarm goes to as well.
    m_soon->start(Milliseconds(0), [this] { showDisk(); });
}

void WatchAlarms::setRoomTrouble(const QString &trouble)
{
    m_roomTrouble = trouble;
    showDisk();
}

void WatchAlarms::showDisk()
{
    if (m_isRunning) {
        setTrouble(m_diskAlarm, AlarmKind::Disk, m_diskTrouble);
        setTrouble(m_roomAlarm, AlarmKind::Disk, m_roomTrouble);
    }
}

void WatchAlarms::setUnkeptTrouble(const QString &trouble)
{
    setTrouble(m_unkeptAlarm, AlarmKind::Watcher, trouble);
}

void WatchAlarms::setTrouble(qint64 &alarm, AlarmKind kind, const QString &text)
{
    if (text.isEmpty()) {
        m_book.end(std::exchange(alarm, 0), moment());
    } else if (alarm == 0) {
        alarm = m_book.begin(kind, 0, text, moment(), AlarmPriority::High);
    }
}

/// What is over at once, and yet to be acknowledged.
void WatchAlarms::tell(AlarmKind kind, const QString &text, AlarmPriority priority)
{
    const qint64 now = moment();
    m_book.end(m_book.begin(kind, 0, text, now, priority), now);
}

void WatchAlarms::tellList(const QString &what)
{
    tell(AlarmKind::List, what, AlarmPriority::Medium);
}

void WatchAlarms::tellRecord(const QString &what)
{
    tell(AlarmKind::Disk, what, AlarmPriority::High);
}

void WatchAlarms::renumber(const QHash<qint64, qint64> &numbers)
{
    for (Stations *stations : {&m_silent, &m_flooding}) {
        for (Waiting &waiting : *stations) {
            waiting.alarm = numbers.value(waiting.alarm);
        }
    }
    for (qint64 &alarm : m_puk) {
        alarm = numbers.value(alarm);
    }
    m_diskAlarm = numbers.value(m_diskAlarm);
    m_roomAlarm = numbers.value(m_roomAlarm);
}

void WatchAlarms::beginListTrouble(const QString &what)
{
    (void)m_book.begin(AlarmKind::List, 0, what, moment(), AlarmPriority::High);
}

void WatchAlarms::tellUnwatched(qint64 from, qint64 to, const QString &why)
{
    tell(AlarmKind::Watcher,
         tr("%1: nobody watched from %2 to %3").arg(why, wallClockText(from), wallClockText(to)),
         AlarmPriority::High);
}

} // namespace ktr
