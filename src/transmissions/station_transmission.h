#pragma once

#include "config/configuration.h"
#include "link/module_session.h"
#include "link/udp_transport.h"
#include "transmissions/held_configuration.h"
#include "transmissions/transmission_keeper.h"

#include <QElapsedTimer>
#include <QObject>

#include <memory>
#include <optional>

namespace ktr {

/// What one station of many is to be given, over Ethernet.
struct StationOrder
{
    QString file{};
    QString address{}; ///< "host" or "host:port"
    Configuration configuration{};
    bool changesOnly = false; ///< where the memory proves what the module holds
    /// An earlier transmission of the same configuration that was broken off: its uid, where it stopped and
    /// the version that the module told before. Goes on there where nothing speaks against it.
    QString brokenOff{};
    int step = steps::first;
    QString versionBefore{};
    bool mayBeBegun = false; ///< by a program that was killed: the memory may know how far it came
};

/// What became of it.
struct StationOutcome
{
    TransmissionVerdict verdict = TransmissionVerdict::NotEnded;
    int commands = 0; ///< handed over, each counted once
    double seconds = 0;
    QString trouble{}; ///< what went wrong, in words for the user
    QString note{};    ///< why more was sent than was asked for
    QString uid{};     ///< of the transmission in the memory; empty where none began
    /// Where it can go on, and the version by which the module is known then.
    std::optional<int> step{};
    QString versionBefore{};
    RememberedTransmission transmission{};
};

/// Transmits a configuration to one station over a pair of ports of its own, each command confirmed, and
/// remembers it. It ends in any case: when nothing gets on, after the time-out.
class StationTransmission : public QObject
{
    Q_OBJECT

public:
    struct Means
    {
        IoThread &io;
        Timers &timers;
        const Environment &environment;
        TransmissionMemory &memory;
        Milliseconds timeout;
        QString operatorName{}; ///< who is on duty; empty where that is not known
    };

    /// All of them must outlive it.
    StationTransmission(const Means &means, StationOrder order, QObject *parent = nullptr);
    ~StationTransmission() override;

    void start();
    /// Ends it before its next command.
    void cancel(const QString &why);

    bool hasEnded() const { return m_hasEnded; }
    const StationOutcome &outcome() const { return m_outcome; }

Q_SIGNALS:
    /// The command of a step, perhaps once more.
    void handedOver(int step);
    void ended();

private:
    /// What the module needs not be given if it tells a version.
    struct Basis
    {
        StepSet leftOut;
        QString version;
        qint64 basedOn = 0;
        int firstStep = steps::first;
    };

    void lookForBasis();
    void lookForVersion(const QString &version);
    void open(const std::optional<Basis> &basis);
    void transmit(const std::optional<Basis> &basis);
    void noteTransmitted();
    void finish(const QString &trouble);
    std::optional<Basis> basisOf(const HeldConfiguration &held, const QString &version) const;

    Means m_means;
    StationOrder m_order;
    Configuration m_asGiven;
    UdpTransport m_line;
    ModuleSession m_session;
    TransmissionKeeper m_keeper;
    StationOutcome m_outcome;
    QElapsedTimer m_clock;
    QString m_hint; ///< why nothing can be sent at the moment
    bool m_hasBegun = false;
    bool m_isLeaving = false; ///< everything is handed over, and on its way out
    bool m_hasEnded = false;
};

} // namespace ktr
