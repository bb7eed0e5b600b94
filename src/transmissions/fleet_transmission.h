#pragma once

#include "transmissions/station_transmission.h"

#include <deque>
#include <vector>

namespace ktr {

/// Transmits to many stations, several at a time. What becomes of one does not matter to the others.
class FleetTransmission : public QObject
{
    Q_OBJECT

public:
    /// All that `means` names must outlive it.
    FleetTransmission(const StationTransmission::Means &means, int atOnce, QObject *parent = nullptr);

    /// To be called before start(). `index` tells the station apart.
    void add(int index, StationOrder order);
    void start();
    /// Ends all; those that have not begun never will.
    void cancel(const QString &why);

Q_SIGNALS:
    /// Before anything of it is done: its module may be let go of by others.
    void stationBegins(int index);
    void stationHandedOver(int index, int step);
    void stationEnded(int index, const ktr::StationOutcome &outcome);
    /// All that began have ended, and no more will begin.
    void ended();

private:
    struct Waiting
    {
        int index;
        StationOrder order;
    };
    void fill();
    void takeEnd(int index, StationTransmission *station);

    StationTransmission::Means m_means;
    int m_atOnce;
    std::deque<Waiting> m_waiting;
    std::vector<StationTransmission *> m_running;
    bool m_isFilling = false;
    bool m_hasEnded = false;
};

} // namespace ktr
