#pragma once

#include "platform/timers.h"
#include "platform/worker_thread.h"
#include "record/duties.h"

#include <QObject>
#include <QSet>

#include <atomic>
#include <optional>

namespace ktr {

/// The share of the stations of a server's record that this program talks to. Each station belongs to one
/// keeper at most, each keeper has its time by the server's clock, which it must renew; the stations of one
/// whose time is over are shared by the others. Nobody may talk to a station beyond isHeld().
class Leases
{
public:
    struct Times
    {
        Milliseconds lease{9'000};  ///< so long a keeper that says nothing keeps its stations
        Milliseconds period{2'000}; ///< in which each renews, and looks for stations without a keeper
        /// What the clocks of two machines may differ within a lease, and what a message may be late.
        Milliseconds reserve{1'000};
    };
    struct Listener
    {
        /// These are this keeper's from now on.
        std::function<void(const QList<qint64> &stations)> gained;
        /// Nothing more may be sent to these. Once that is so, call released(), unless the time is over.
        std::function<void(const QList<qint64> &stations)> lost;
        /// Why the server cannot be asked, once; an empty text when it can again.
        std::function<void(const QString &reason)> trouble;
        /// After each turn with the server, and when the time is over.
        std::function<void()> turned = [] {};
        /// Instead of lost() when the time is over because the server cannot be asked, and nobody stood
        /// still: of all stations, which others may have from now on.
        std::function<void()> lapsed{};
        /// The server can be asked again after lapsed(): nobody else has had these since. They are among
        /// those that gained() tells next.
        std::function<void(const QList<qint64> &stations)> returned = [](const QList<qint64> &) {};
        /// Whether stations and duties may be taken that others had: not before the record has what was said
        /// meanwhile.
        std::function<bool()> mayTake = [] { return true; };
    };
    /// What the server said last of all keepers.
    struct Overview
    {
        qint64 now = 0; ///< by the server's clock; 0: it has said nothing yet
        int keepers = 0;
        int stations = 0;
        int unkept = 0; ///< of these, without a keeper that is there
    };

    /// `name` is what others see of this keeper, `block` that of its alarms' numbers. Begins with the first
    /// turn of the event loop.
    Leases(QString address, QString name, Timers &timers, Listener listener, const Times &times,
           qint64 block = 0);
    /// Gives back what is held, if the server answers within a moment; nothing may be sent any more.
    ~Leases();
    Q_DISABLE_COPY_MOVE(Leases)

    /// Whether nobody else can have these stations by now. To be asked before each datagram: it may be that
    /// this program stood still.
    bool isHeld() const;
    /// Nothing is sent to these any more, and what they said is written: others may have them.
    void released(const QList<qint64> &stations);
    /// Its number among the keepers of the record; 0 before it has one.
    qint64 keeper() const { return m_number; }
    /// How long it will be so, without another word of the server; negative when it is over.
    Milliseconds left() const;
    const Overview &overview() const { return m_overview; }

    /// This keeper does such a thing, too, when it is its turn; see has().
    void want(const QString &duty) { m_duties.want(duty); }
    /// Whether it is this keeper's, and nobody else can have it by now. To be asked before each thing that is
    /// done.
    bool has(const QString &duty) const { return isHeld() && m_duties.has(duty); }
    /// How far who had it before has come, or what was noted here.
    QString noted(const QString &duty) const { return m_duties.noted(duty); }
    /// Is written with the next turn, if the duty is still this keeper's by then.
    void note(const QString &duty, const QString &text) { m_duties.note(duty, text); }
    /// Whether whoever follows would know what was noted.
    bool isWritten(const QString &duty) const { return m_duties.isWritten(duty); }

private:
    /// What one turn with the server gave.
    struct Turn
    {
        Status status = Status::done();
        Milliseconds asked{0}; ///< when it was begun
        bool isAnew = false;   ///< the time was over: duties and stations may have been others' since
        qint64 keeper = 0;
        QList<qint64> kept{}; ///< then, those that were nobody else's
        QSet<qint64> mine;
        QList<qint64> tooMany; ///< to be given to others
        bool isFirst = false;  ///< no other shares at this moment
        QHash<QString, QString> duties{};
        Overview overview{};
    };

    void begin();
    void collect();
    void check();
    void lose(bool isForSure);
    // On the thread:
    void giveBack(const DutyWork &duties);
    void take(const QList<qint64> &released, const DutyWork &duties, bool mayTake, Turn &turn);
    bool renew(Turn &turn);
    bool renewLate();
    bool enter();
    bool share(Turn &turn);
    bool lookOver(Overview &overview);
    bool numbers(const QString &statement, QList<qint64> &numbers);
    bool number(const QString &statement, qint64 &number);

    QString m_address;
    QString m_name;
    Listener m_listener;
    Times m_times;
    std::unique_ptr<OneShotTimer> m_timer;
    std::unique_ptr<OneShotTimer> m_checkTimer;
    QSet<qint64> m_held;
    QSet<qint64> m_leaving; ///< of these; not released yet
    QList<qint64> m_released;
    QList<qint64> m_inHand; ///< of these, what the present turn tells the server
    Milliseconds m_until{-1};
    qint64 m_number = 0;
    bool m_isKeptUnknown = false; ///< a turn gave stations, and came too late to be believed
    bool m_isOver = true;         ///< the time was over, and nothing came of the server since
    QString m_trouble;
    Duties m_duties;
    Overview m_overview;
    qint64 m_block;

    // The thread's while it works:
    RecordDatabase m_database;
    qint64 m_keeper = 0;
    Turn m_turn;
    QObject m_receiver; ///< of the thread's reports
    WorkerThread m_thread;
};

} // namespace ktr
