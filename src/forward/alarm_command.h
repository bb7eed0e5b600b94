#pragma once

#include "forward/record_alarms.h"
#include "opmode/operational_mode.h"

#include <map>

class QProcess;

namespace ktr {

/// Runs a command of the user's for each new alarm, with the alarm as a JSON object on its standard input.
/// One that does not succeed is tried again, and where that is wanted an alarm that nobody acknowledges is
/// announced again. What waits is the book of alarms itself: the most urgent ones go first, so many processes
/// run at a time, and never two for one alarm. Each attempt is an event of the record, by which the next run
/// knows what was announced. Of keepers that share a list one at a time does so for all alarms, which has the
/// duty.
class AlarmCommand : public QObject
{
    Q_OBJECT

public:
    struct Options
    {
        QString program{};
        QStringList arguments{};
        Milliseconds again{0}; ///< without acknowledgement; 0: never
        Milliseconds longest{60'000};
        Milliseconds retry{60'000}; ///< after a failure
        std::size_t mostAtOnce = 4;
    };
    static constexpr Milliseconds period{1'000};
    /// So long the end waits for processes, which are killed then.
    static constexpr Milliseconds longestEnd{2'000};

    /// What the keepers of a shared list call it.
    static QString duty(const Options &options);

    /// The list is kept by this program. It must outlive this and stay open.
    AlarmCommand(OperationalMode &mode, Timers &timers, Options options, QObject *parent = nullptr);
    ~AlarmCommand() override;

    std::size_t running() const { return m_running.size(); }

Q_SIGNALS:
    /// An attempt ended like that.
    void failed(const QString &what);

private:
    struct Attempt
    {
        qint64 at = 0; ///< milliseconds since 1970, UTC
        bool hasSucceeded = false;
    };
    struct Running;

    void look();
    void follow();
    AlarmBook &alarms() { return m_followed ? m_followed->book() : m_mode.alarms(); }
    bool mayRun() const;
    QString stationName(const AlarmRow &alarm) const;
    void takeUp();
    void pump();
    const AlarmRow *nextDue();
    bool isDue(const AlarmRow &alarm, qint64 now) const;
    void run(const AlarmRow &alarm);
    void ended(qint64 alarm);

    OperationalMode &m_mode;
    Leases *const m_leases; ///< null where the list is not shared
    Timers &m_timers;
    Options m_options;
    std::unique_ptr<OneShotTimer> m_timer;
    std::unique_ptr<RecordAlarms> m_followed; ///< of a shared list, while the duty is this keeper's
    std::unique_ptr<RecordQueries> m_queries; ///< while the attempts of earlier runs are looked for
    bool m_isKnown = false;                   ///< what was announced before
    std::map<qint64, Attempt> m_attempts;     ///< the last ones, of alarms that wait
    std::map<qint64, std::unique_ptr<Running>> m_running;
};

} // namespace ktr
