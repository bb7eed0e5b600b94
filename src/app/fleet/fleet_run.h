#pragma once

#include "app/fleet/fleet_model.h"
#include "transmissions/fleet_transmission.h"

#include <QElapsedTimer>

#include <memory>

namespace ktr {

class OperationalMode;
class TextTable;

/// Transmits to the stations of a model, and notes there what becomes of each. The operational mode lets go
/// of each station that it watches while that is transmitted to.
class FleetRun : public QObject
{
    Q_OBJECT

public:
    struct Means
    {
        OperationalMode &mode;
        TransmissionMemory &memory;
        IoThread &io;
        Timers &timers;
        const Environment &environment;
        const TextTable &texts;
    };
    struct Options
    {
        bool changesOnly = true;
        int atOnce = 50;
        QString receipts{}; ///< the folder for a receipt of each; empty for none
    };

    /// All of them must outlive it.
    FleetRun(const Means &means, FleetModel &model, QObject *parent = nullptr);
    /// Ends what runs.
    ~FleetRun() override;

    /// Begins with rows whose configurations can be sent. What broke off in an earlier run goes on where it
    /// stopped if its module is as it was.
    void start(const QList<int> &rows, const Options &options);
    void cancel();

    bool isRunning() const { return m_fleet != nullptr; }
    int ended() const { return m_ended; }
    int all() const { return m_all; }
    double seconds() const;

Q_SIGNALS:
    void progressed();
    void finished();
    /// Something beside the modules went wrong.
    void troubled(const QString &why);

private:
    void noteEnd(int row, const StationOutcome &outcome);
    void writeReceiptOf(const FleetRow &row, const StationOutcome &outcome);
    void end();

    /// A station that does not get on for so long is given up.
    static constexpr Milliseconds patience{60'000};

    Means m_means;
    FleetModel &m_model;
    Options m_options;
    std::unique_ptr<FleetTransmission> m_fleet;
    QElapsedTimer m_clock;
    double m_seconds = 0;

    int m_ended = 0;
    int m_all = 0;
};

} // namespace ktr
