#pragma once

#include "opmode/alarms/alarm_book.h"
#include "opmode/station/station.h"
#include "platform/environment.h"

#include <QCoreApplication>

#include <memory>

namespace ktr {

/// Under this name the record has for how many minutes a station may be silent.
inline QString silenceSetting()
{
    return QStringLiteral("silentAfter");
}

/// Makes alarms of what keeps stations from being watched: they are silent, flood or need a PUK, the disk or
/// the list is in trouble, the program stood still. An alarm is over when what it tells of is.
class WatchAlarms
{
    Q_DECLARE_TR_FUNCTIONS(WatchAlarms)

public:
    static constexpr Milliseconds tick{10'000};
    /// From the first datagram that was dropped.
    static constexpr Milliseconds longestFlood{60'000};
    /// What the clock may go on between two ticks beyond their distance.
    static constexpr Milliseconds longestGap{60'000};
    static constexpr int usualSilence = 5;

    /// What an alarm says, in the language that is spoken now where this class always says the same of such a
    /// kind; the record keeps what was said when it came. Other alarms say what they said then.
    static QString shownText(const AlarmRow &alarm);

    /// All must outlive it.
    WatchAlarms(AlarmBook &book, Timers &timers, const Environment &environment);
    ~WatchAlarms();
    Q_DISABLE_COPY_MOVE(WatchAlarms)

    /// Stations may be silent for so many minutes; 0: for ever.
    void setLongestSilence(int minutes);
    int longestSilence() const { return m_longestSilence; }

    /// The book has the alarms of an earlier run. Of those all are over but the silence of stations that are
    /// watched.
    void start(const std::function<bool(qint64 station)> &isWatched);
    void stop();

    void onStationChanged(qint64 station, StationChange what, const std::optional<DatagramLoss> &loss);
    /// It is watched no longer.
    void letGo(qint64 station);
    /// The alarms of stations that another program watched until now, or that are back in the list, and that
    /// are watched here; those of a flood are over.
    void takeOver(const QList<AlarmRow> &standing);
    /// Another program watches it from now on, or it leaves the list: what is so stays so.
    void handOver(qint64 station);
    /// Whether an alarm of it stands that its module asks for the PUK.
    bool needsPuk(qint64 station) const { return m_puk.contains(station); }
    /// Why the disk does not take what happens, or empty when it does.
    void setDiskTrouble(const QString &trouble);
    /// The disk has little room left, or nothing to be told of it.
    void setRoomTrouble(const QString &trouble);
    /// Stations of a shared list that nobody watches, or nothing to be told of them.
    void setUnkeptTrouble(const QString &trouble);
    /// Something of the list was lost; it has been dealt with.
    void tellList(const QString &what);
    /// The same of the record.
    void tellRecord(const QString &what);
    /// The alarms that it began have other numbers from now on.
    void renumber(const QHash<qint64, qint64> &numbers);
    /// The list cannot be watched, until start() the next time.
    void beginListTrouble(const QString &what);
    /// Nobody watched in this time; milliseconds since 1970, UTC.
    void tellUnwatched(qint64 from, qint64 to, const QString &why);

private:
    struct Waiting
    {
        int ticks;        ///< until it is an alarm; less than 0: it was told, or is none
        qint64 alarm = 0; ///< that it is
    };
    using Stations = QHash<qint64, Waiting>;

    void awaitTick();
    void onTick();
    void count(Stations &stations, AlarmKind kind);
    void begin(Stations &stations, qint64 station, int ticks);
    void end(Stations &stations, qint64 station, const QString &why = {});
    void tell(AlarmKind kind, const QString &text, AlarmPriority priority);
    void setTrouble(qint64 &alarm, AlarmKind kind, const QString &text);
    void showDisk();
    int silenceTicks() const;
    qint64 moment() const { return m_environment.now().toMSecsSinceEpoch(); }

    AlarmBook &m_book;
    const Environment &m_environment;
    std::unique_ptr<OneShotTimer> m_tick;
    std::unique_ptr<OneShotTimer> m_soon;
    int m_longestSilence = usualSilence;
    bool m_isRunning = false;
    qint64 m_lastTick = 0;
    Stations m_silent;
    Stations m_flooding;
    QHash<qint64, qint64> m_puk; ///< alarms by station
    QString m_diskTrouble;
    QString m_roomTrouble;
    qint64 m_diskAlarm = 0;
    qint64 m_roomAlarm = 0;
    qint64 m_unkeptAlarm = 0;
};

} // namespace ktr
