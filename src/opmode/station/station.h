#pragma once

#include "opmode/station/lite_timer.h"
#include "opmode/station/station_line.h"

#include <QByteArrayList>
#include <QStringList>

#include <optional>

namespace ktr {

/// What of a station changed; PukNeeded and Quality are told with every report of the module.
enum class StationChange {
    Alive,
    Silent,
    Quality,
    PukNeeded,
    PukCleared,
    TextDelivered,
    LossBegan,
    LossGoesOn,
    LossOver
};

/// Is informed of what a station learns. It may disconnect the station meanwhile, not destroy it.
class StationOwner
{
public:
    virtual ~StationOwner() = default;

    /// A text of the module: number, " --> " or " <-- ", and the text.
    virtual void station_message(const QString &kennung, const QString &text) = 0;
    /// Asked after each text of the module: true when the module is to hear its "OK" only once answer() is
    /// called.
    virtual bool answersLater(const QString &) { return false; }
    virtual void stationChanged(const QString &kennung, StationChange what) = 0;
    /// The station is not reached, or something of it was dropped; told when it changes.
    virtual void stationTrouble(const QString &kennung, const QString &text) = 0;
    /// In ms since the epoch; 0 when it is not known.
    virtual qint64 moment() const { return 0; }
};

/// The conversation with one watched module, in which the program stands in the place of its GSM modem.
///
///     module                 program
///     +..., OK, ERROR    ->  nothing: a report of the module's own modem
///     at+cpin?           ->  config                    a dialogue is opened: when a text waits, or exclusive
///     at+cmgr=1          ->  echo; ,"+IP"; text        an incoming SMS, 250 ms after its header
///     any other          ->  echo, OK
///
/// Outside a dialogue nothing is answered, but texts are still taken. The "OK" to a text may wait for the
/// owner. What arrives in one piece with a line end anywhere in it is one line. What arrives before a line is
/// dealt with waits for its turn.
class cStation : public StationLineListener
{
public:
    static constexpr qint32 settleTime = 50;
    static constexpr qint32 announceInterval = 20'000;
    static constexpr qint32 dialogueTime = 15'000;
    static constexpr qint32 textDelay = 250;
    static constexpr qint16 alive = 7;
    /// So many datagrams wait for their turn; what comes beyond is dropped and told.
    static constexpr qsizetype mostArrivals = 20'000;

    cStation(const QString &kennung, StationLine &line, MLiteTimer &timers, StationOwner &stations);
    ~cStation() override;
    Q_DISABLE_COPY_MOVE(cStation)

    const QString &kennung() const { return m_kennung; }
    const QString &hostAddress() const { return m_hostAddress; }
    /// Counts from the next connection on.
    void setHostAddress(const QString &hostAddress) { m_hostAddress = hostAddress; }

    bool exclusiveMode() const { return m_exclusiveMode; }
    void setExclusiveMode(bool exclusiveMode);

    /// Lets a text wait for the module's next look for an SMS; false, and nothing is changed, when one waits.
    bool send(const QString &text);

    /// A text that waits stays; one whose header is out is not sent any more and waits again.
    void disconnect();
    /// Always true: a line that cannot be opened is told to the owner and tried again with each announcement.
    bool connectStation();

    void socket_Connect() {} ///< UDP has no connection
    void socket_SendComplete() override;
    void DataArrival(const QByteArray &data) override;
    void lineTrouble(const QString &text) override;
    void linesLost(const DatagramLoss &loss) override;

    /// Deals at once with what has arrived or waits for its turn, for an owner that is about to let it go.
    void handleWaiting();
    /// Says "OK" to the text whose owner answers later, and goes on with what came meanwhile.
    void answer();

    void Tmr_sendSettle_Timer();
    void Tmr_eth_brokenConnection_Timer();
    void Tmr_pause_Timer();
    void Tmr_gsm_reset_Timer();

    bool online() const { return m_online; }
    /// 7 when the module was heard since the last announcement, else 0.
    qint16 state() const { return m_state; }
    /// Silent after a whole period between two announcements without a word.
    enum class Liveness { Unknown, Alive, Silent };
    Liveness liveness() const { return m_liveness; }
    /// When the module was heard last in this run, in ms since the epoch; 0 when it was not.
    qint64 lastHeard() const { return m_lastHeard; }
    /// Why the module is not reached, or what was dropped; empty once it is heard again.
    const QString &trouble() const { return m_trouble; }
    /// Of its datagrams; nothing when it is over and that was told.
    const std::optional<DatagramLoss> &loss() const { return m_loss; }
    const QString &msgText() const { return m_msgText; }
    /// As the module reports it ("18,0"); "99,99" is unknown.
    const QString &csq() const { return m_csq; }
    bool pukNeeded() const { return m_pukNeeded; }
    bool dialogueOpen() const { return m_dialogueOpen; }
    bool sendSettling() const { return m_sendSettling; }
    /// Set by who sends; the station only clears it.
    void setSendSettling(bool sendSettling) { m_sendSettling = sendSettling; }

    /// What another program that talks with the module says of it; this one does not.
    struct Seen
    {
        bool online = false;
        Liveness liveness = Liveness::Unknown;
        QString csq = QStringLiteral("99,99");
        bool pukNeeded = false;
        std::optional<DatagramLoss> loss = {};
        qint64 lastHeard = 0;
    };
    void show(const Seen &seen);
    Seen seen() const { return {m_online, m_liveness, m_csq, m_pukNeeded, m_loss, m_lastHeard}; }
    /// It was let go for moments by mistake: until its module is heard, or is not, all but losses is as it
    /// was seen then. Whether it is online stays.
    void resume(const Seen &seen);

    /// Gets every line with its direction in front; nobody listens at first.
    std::function<void(const QString &line)> traced;

private:
    void openLine();
    void announce();
    void sendToModule(const QString &text);
    void report(const QString &text);
    void trace(QLatin1String direction, const QString &text) const;

    void handleArrivals(bool inPausesToo = false);
    void handle(const QByteArray &data);
    void handleReport(QString report);
    void handleLine(const QString &line);
    void handleCommand(const QString &line);
    void takeReplyFrom(const QString &line);
    /// Whether nothing more is answered to the line.
    bool handleReadRequest();

    QString m_kennung;
    StationLine &m_line;
    StationOwner &m_stations;
    QString m_hostAddress;
    QString m_openedFor;
    bool m_online = false;
    qint16 m_state = 0;
    Liveness m_liveness = Liveness::Unknown;
    qint64 m_lastHeard = 0;
    bool m_exclusiveMode = false;
    QString m_msgText;
    QString m_csq;
    bool m_pukNeeded = false;
    bool m_dialogueOpen = false;
    bool m_sendSettling = false;
    bool m_afterReadRequest = false;
    QString m_smsNumber;
    QString m_replyFrom;
    QString m_receiveBuffer;
    QString m_trouble;
    std::optional<DatagramLoss> m_loss;

    QByteArrayList m_arrivals;
    bool m_isHandling = false;
    bool m_owesAnswer = false;

    CLiteTimer Tmr_sendSettle;
    CLiteTimer Tmr_eth_brokenConnection;
    CLiteTimer Tmr_pause;
    CLiteTimer Tmr_gsm_reset;
};

} // namespace ktr
