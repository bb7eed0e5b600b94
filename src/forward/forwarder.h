#pragma once

#include "forward/forward_reading.h"
#include "forward/forward_target.h"
#include "opmode/operational_mode.h"
#include "record/record_queries.h"

namespace ktr {

/// What keeps events from a broker, as the record tells it of its keeper.
struct ForwardTrouble
{
    QString text{}; ///< with the broker's name
    qint64 since = 0;
};
QList<ForwardTrouble> forwardTroubles(const QHash<QString, QString> &settings);
/// The same of keepers that share a list: what goes with a duty says.
std::optional<ForwardTrouble> forwardTrouble(const DutyRow &duty);

/// Publishes what the record of a list gets at an MQTT broker. The record is the outbox: a setting holds how
/// far the broker has confirmed it, and what is behind that is read by pages and published in order. So
/// neither a broker that is away nor an end of this program loses anything; what was confirmed and not noted
/// yet comes twice. Beside that the broker keeps the present state of each station, of the alarms that stand
/// and of this keeper.
/// Of keepers that share a list one at a time does so, which has the duty; how far it has come goes with
/// that.
class Forwarder : public QObject
{
    Q_OBJECT

public:
    struct Options
    {
        ForwardTarget target{};
        QByteArray password{};
        QString caFile{}; ///< as in MqttLine
    };
    /// So much is published and not confirmed at a time.
    static constexpr std::size_t mostInFlight = 200;
    static constexpr Milliseconds period{250};
    /// What the broker has confirmed is noted so often.
    static constexpr int looksUntilNoted = 4;

    /// What the keepers of a shared list call it.
    static QString duty(const ForwardTarget &target) { return QStringLiteral("forward ") + target.name(); }

    /// The list is kept by this program, or the duty is its own. It must outlive this, and stay open until
    /// finish().
    Forwarder(OperationalMode &mode, Timers &timers, Options options, QObject *parent = nullptr);
    ~Forwarder() override; ///< as finish()

    /// Tells the broker that this keeper has ended, waits for it for at most two seconds, and notes what it
    /// has.
    void finish();
    /// Hangs up at once, since another keeper may forward by now.
    void abandon();
    const ForwardTarget &target() const { return m_options.target; }
    bool isConnected() const { return m_line.isConnected(); }
    /// Why the broker gets nothing; empty when it does.
    const QString &trouble() const { return m_trouble; }
    /// How many events the broker has not confirmed.
    qint64 backlog() const;

Q_SIGNALS:
    /// Once for each trouble, and once when it is over. A text that cannot be published is told, too.
    void troubleChanged(const QString &trouble);
    void leftOut(const QString &what);

private:
    struct Flight
    {
        quint64 tag;
        std::optional<ForwardPosition> upTo;
        bool isConfirmed = false;
    };

    bool mayForward() const;
    void look();
    void begin();
    void keepStates();
    void takeUp(ForwardPosition end);
    void readMore();
    void take(ForwardPage page);
    void pump();
    std::optional<ForwardItem> next();
    std::optional<ForwardItem> nextState();
    std::optional<ForwardItem> nextStanding();
    void onConnected();
    void tellStanding();
    void onConfirmed(const QList<quint64> &tags);
    void onLost(const QString &why);
    void setTrouble(const QString &trouble);
    void note();
    QByteArray keeperJson(const QString &state) const;
    QString nameOfStation(const QString &kennung) const;

    OperationalMode &m_mode;
    Leases *const m_leases; ///< null where the list is not shared
    Options m_options;
    ForwardTopics m_topics;
    std::unique_ptr<OneShotTimer> m_timer;
    quint64 m_looks = 0;
    QString m_trouble;
    qint64 m_troubleSince = 0;
    bool m_hasEnded = false;

    std::shared_ptr<ForwardReading> m_reading; ///< of the queries' thread
    std::unique_ptr<RecordQueries> m_queries;
    bool m_isBeginSure = false;    ///< whoever follows would know where this one began
    bool m_isBegun = false;        ///< the positions are known
    ForwardPosition m_confirmed{}; ///< by the broker
    ForwardPosition m_noted{};     ///< in the record
    ForwardPosition m_read{};
    qint64 m_lastEvent = 0;              ///< of a record that others write, too
    bool m_isPresentDue = false;         ///< of such a one, for a new line
    std::optional<quint64> m_seenOnDisk; ///< of the writer's rows, when it was read last
    std::deque<ForwardItem> m_ready;
    std::deque<Flight> m_flights;
    quint64 m_lastTag = 0;

    bool m_isKeeperDue = false;
    QSet<QString> m_changed;             ///< keys of stations whose state may be another
    QHash<QString, QByteArray> m_states; ///< what the broker was told, by topics
    std::deque<qint64> m_standing;       ///< alarms that a new line tells of
    MqttLine m_line;
};

} // namespace ktr
