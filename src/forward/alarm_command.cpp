#include "forward/alarm_command.h"

#include "forward/forward_messages.h"
#include "forward/forward_target.h"
#include "platform/helper_program.h"
#include "record/json_text.h"

#include <QElapsedTimer>
#include <QProcess>

#include <tuple>

namespace ktr {

namespace {

const QLatin1String announcedMember("announced");
constexpr qsizetype longestOutput = 300; // letters that an event tells
constexpr int rowsOfPage = 500;

/// The last attempts for alarms that came at this time or later, as earlier runs noted them.
EventPage attemptsSince(RecordReader &reader, qint64 from)
{
    EventPage all;
    EventFilter filter;
    filter.from = from;
    filter.kinds = {EventKind::Note};
    filter.ofAlarms = true;
    std::optional<RecordKey> after;
    do {
        const EventPage page = reader.findEvents(filter, after, rowsOfPage);
        all.status = page.status;
        all.rows += page.rows;
        after = page.next;
    } while (all.status && after);
    return all;
}

} // namespace

struct AlarmCommand::Running
{
    qint64 station = 0;
    QProcess process;
    std::unique_ptr<OneShotTimer> limit;
    QByteArray output; ///< the beginning of it
    bool isKilled = false;
};

AlarmCommand::AlarmCommand(OperationalMode &mode, Timers &timers, Options options, QObject *parent)
    : QObject(parent),
      m_mode(mode),
      m_leases(mode.leases()),
      m_timers(timers),
      m_options(std::move(options)),
      m_timer(timers.create())
{
    if (m_leases != nullptr) {
        m_leases->want(duty(m_options));
        look();
        return;
    }
    connect(&mode.alarms(), &AlarmBook::changed, this, [this](const AlarmRow &, AlarmBook::Change change) {
        if (change == AlarmBook::Change::Came) { // not from inside a change of the book
            QMetaObject::invokeMethod(this, &AlarmCommand::pump, Qt::QueuedConnection);
        }
    });
    takeUp();
    look();
}

AlarmCommand::~AlarmCommand()
{
    m_timer->stop();
    QElapsedTimer time;
    time.start();
    while (!m_running.empty()) {
        const auto &[alarm, running] = *m_running.begin();
        const qint64 left = longestEnd.count() - time.elapsed();
        if (left <= 0 || !running->process.waitForFinished(static_cast<int>(left))) {
            running->process.disconnect(this); // not noted: it is tried again in the next run
            killWithItsOwn(running->process);
            running->process.waitForFinished();
            m_running.erase(alarm);
        } else {
            ended(alarm);
        }
    }
}

QString AlarmCommand::duty(const Options &options)
{
    return QStringLiteral("on-alarm ") + (QStringList(options.program) + options.arguments).join(u' ');
}

/// This program may have stood still until now.
bool AlarmCommand::mayRun() const
{
    return m_isKnown && (m_leases == nullptr || m_leases->has(duty(m_options)));
}

QString AlarmCommand::stationName(const AlarmRow &alarm) const
{
    const QString kennung = m_followed ? QString() : m_mode.stationOf(alarm);
    return m_followed          ? m_followed->stationName(alarm.station)
           : kennung.isEmpty() ? QString()
                               : m_mode.tree().find(kennung).data(Qt::EditRole).toString();
}

/// What runs when another keeper takes over goes on to its end.
void AlarmCommand::follow()
{
    if (!m_leases->has(duty(m_options))) {
        m_queries.reset();
        m_followed.reset();
        m_attempts.clear();
        m_isKnown = false;
        return;
    }
    if (!m_followed) {
        m_followed = std::make_unique<RecordAlarms>(m_mode.recordPath());
    }
    m_followed->look();
    if (!m_isKnown && m_followed->isKnown() && !(m_queries && m_queries->isWaitedFor(this))) {
        takeUp();
    }
}

/// A record that cannot be opened yet does not keep alarms from being announced.
void AlarmCommand::takeUp()
{
    const auto &waiting = alarms().waiting();
    m_isKnown = !m_mode.record().isOpen() || waiting.empty();
    if (m_isKnown) {
        return;
    }
    m_queries = std::make_unique<RecordQueries>(m_mode.recordPath());
    m_queries->ask(
        this,
        [from = alarms().alarm(*waiting.begin())->first](RecordReader &reader) {
            return attemptsSince(reader, from);
        },
        [this](const EventPage &found) {
            if (m_leases != nullptr && !found.status) {
                return; // it is asked again, or all would be announced anew
            }
            for (const EventRow &event : found.rows) { // the newest first
                if (const QJsonObject detail = jsonOf(event.detail).object();
                    detail.contains(announcedMember)) {
                    m_attempts.try_emplace(event.alarm, Attempt{event.at, detail[announcedMember].toBool()});
                }
            }
            m_isKnown = true;
            pump();
        });
}

void AlarmCommand::look()
{
    m_timer->start(period, [this] { look(); });
    if (m_leases != nullptr) {
        follow();
    }
    if (m_isKnown) {
        std::erase_if(m_attempts,
                      [this](const auto &attempt) { return !alarms().waiting().contains(attempt.first); });
    }
    pump();
}

void AlarmCommand::pump()
{
    while (mayRun() && m_running.size() < m_options.mostAtOnce) {
        const AlarmRow *const alarm = nextDue();
        if (alarm == nullptr) {
            return;
        }
        run(*alarm);
    }
}

/// What was not announced yet goes before what is announced again, then the most urgent one, then the one
/// that waits longest.
const AlarmRow *AlarmCommand::nextDue()
{
    const qint64 now = m_mode.now().toMSecsSinceEpoch();
    const auto rank = [this](const AlarmRow &alarm) {
        const auto last = m_attempts.find(alarm.id);
        const qint64 at = last == m_attempts.end() ? 0 : last->second.at;
        return std::tuple(at != 0, alarm.priority, at, alarm.id);
    };
    const AlarmRow *next = nullptr;
    for (const qint64 id : alarms().waiting()) {
        const AlarmRow *const alarm = alarms().alarm(id);
        if (isDue(*alarm, now) && (next == nullptr || rank(*alarm) < rank(*next))) {
            next = alarm;
        }
    }
    return next;
}

bool AlarmCommand::isDue(const AlarmRow &alarm, qint64 now) const
{
    if (m_running.contains(alarm.id)) {
        return false;
    }
    const auto last = m_attempts.find(alarm.id);
    if (last == m_attempts.end()) {
        return true;
    }
    const qint64 passed = now - last->second.at;
    return last->second.hasSucceeded ? m_options.again.count() > 0 && passed >= m_options.again.count()
                                     : passed >= m_options.retry.count();
}

void AlarmCommand::run(const AlarmRow &alarm)
{
    const qint64 id = alarm.id;
    Running &running = *m_running.emplace(id, std::make_unique<Running>()).first->second;
    running.station = alarm.station;
    QProcess &process = running.process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(forwardPasswordVariable());
    process.setProcessEnvironment(environment);
    process.setProgram(m_options.program);
    process.setArguments(m_options.arguments);
    process.setProcessChannelMode(QProcess::MergedChannels);
    standApart(process);
    connect(&process, &QProcess::readyRead, this, [&running] {
        running.output += running.process.readAll();
        running.output.truncate(4 * longestOutput);
    });
    // Queued: what runs now goes with the process.
    connect(
        &process, &QProcess::finished, this, [this, id] { ended(id); }, Qt::QueuedConnection);
    connect(
        &process, &QProcess::errorOccurred, this,
        [this, id](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart) {
                ended(id);
            }
        },
        Qt::QueuedConnection);
    running.limit = m_timers.create();
    running.limit->start(m_options.longest, [&running] {
        running.isKilled = true;
        killWithItsOwn(running.process);
    });
    process.start();
    process.write(alarmJson(alarm, stationName(alarm)) + '\n');
    process.closeWriteChannel();
}

void AlarmCommand::ended(qint64 alarm)
{
    const auto found = m_running.find(alarm);
    if (found == m_running.end()) {
        return;
    }
    const std::unique_ptr<Running> running = std::move(found->second);
    m_running.erase(found);
    QProcess &process = running->process;
    running->output += process.readAll();
    const bool hasStarted = process.error() != QProcess::FailedToStart;
    const bool hasExited = hasStarted && process.exitStatus() == QProcess::NormalExit;
    const bool hasSucceeded = hasExited && process.exitCode() == 0;
    QString text =
        hasSucceeded ? QStringLiteral("announced: exit code 0") : QStringLiteral("not announced: ");
    if (!hasStarted) {
        text += m_options.program + QStringLiteral(": ") + process.errorString();
    } else if (!hasSucceeded) {
        text += running->isKilled ? QStringLiteral("killed after %1 s")
                                        .arg(static_cast<double>(m_options.longest.count()) / 1e3)
                : hasExited ? QStringLiteral("exit code %1").arg(process.exitCode())
                            : QStringLiteral("ended by signal %1").arg(process.exitCode());
    }
    if (const QString said = QString::fromUtf8(running->output).simplified().left(longestOutput);
        !said.isEmpty()) {
        text += QStringLiteral(": ") + said;
    }
    const qint64 now = m_mode.now().toMSecsSinceEpoch();
    QJsonObject detail{{announcedMember, hasSucceeded}};
    if (hasExited) {
        detail.insert(QStringLiteral("exit"), process.exitCode());
    }
    m_attempts[alarm] = {now, hasSucceeded};
    if (ListRecord &record = m_mode.record(); m_leases != nullptr || alarms().alarm(alarm) != nullptr) {
        record.add(EventRow{
            record.nextEvent(), now, running->station, EventKind::Note, text, jsonText(detail), {}, alarm});
    }
    if (!hasSucceeded) {
        Q_EMIT failed(text);
    }
    pump();
}

} // namespace ktr
