#include "app/fleet/fleet_run.h"

#include "opmode/operational_mode.h"
#include "printout/receipt.h"
#include "transmissions/transmission_texts.h"

namespace ktr {

namespace {

constexpr double msOfASecond = 1000.0;

StationOrder orderOf(const FleetRow &row, bool changesOnly)
{
    StationOrder order{.file = row.entry.file,
                       .address = row.entry.address,
                       .configuration = row.entry.configuration,
                       .changesOnly = changesOnly};
    const bool isSame = row.result.checksum == row.entry.checksum && row.result.address == row.entry.address;
    if (row.hasFailed() && isSame && row.result.step) {
        order.brokenOff = row.result.transmission;
        order.step = *row.result.step;
        order.versionBefore = row.result.versionBefore;
    }
    return order;
}

} // namespace

FleetRun::FleetRun(const Means &means, FleetModel &model, QObject *parent)
    : QObject(parent), m_means(means), m_model(model)
{}

FleetRun::~FleetRun()
{
    cancel();
}

double FleetRun::seconds() const
{
    return isRunning() ? static_cast<double>(m_clock.elapsed()) / msOfASecond : m_seconds;
}

void FleetRun::start(const QList<int> &rows, const Options &options)
{
    m_options = options;
    m_clock.start();
    m_ended = 0;
    m_all = static_cast<int>(rows.size());
    m_fleet = std::make_unique<FleetTransmission>(
        StationTransmission::Means{m_means.io, m_means.timers, m_means.environment, m_means.memory, patience,
                                   m_means.mode.operatorName()},
        options.atOnce);
    connect(m_fleet.get(), &FleetTransmission::stationBegins, this, [this](int row) {
        m_means.mode.lend(m_model.at(row).key);
        m_model.change(row, [](FleetRow &each) { each.state = FleetRow::State::Running; });
    });
    connect(m_fleet.get(), &FleetTransmission::stationHandedOver, this,
            [this](int row, int step) { m_model.change(row, [step](FleetRow &each) { each.step = step; }); });
    connect(m_fleet.get(), &FleetTransmission::stationEnded, this, &FleetRun::noteEnd);
    connect(m_fleet.get(), &FleetTransmission::ended, this, &FleetRun::end, Qt::QueuedConnection);
    for (const int row : rows) {
        m_fleet->add(row, orderOf(m_model.at(row), options.changesOnly));
        m_model.change(row, [](FleetRow &each) {
            each.state = FleetRow::State::Waiting;
            each.step = 0;
        });
    }
    m_fleet->start();
    Q_EMIT progressed();
}

/// Those that have not begun keep what became of them before.
void FleetRun::cancel()
{
    if (m_fleet == nullptr) {
        return;
    }
    m_fleet->cancel(tr("cancelled"));
    for (int row = 0; row < m_model.rowCount(); ++row) {
        if (m_model.at(row).isIn(FleetRow::State::Waiting)) {
            m_model.change(row, [](FleetRow &each) {
                each.state = FleetRow::State::Ended;
                if (each.outcome.isEmpty()) {
                    each.result = resultOf(each.entry);
                    each.outcome = tr("not begun");
                }
            });
        }
    }
}

void FleetRun::noteEnd(int row, const StationOutcome &outcome)
{
    m_means.mode.takeBack(m_model.at(row).key);
    m_model.change(row, [&outcome](FleetRow &each) {
        each.state = FleetRow::State::Ended;
        each.result = resultOf(each.entry, outcome);
        QStringList words{outcome.uid.isEmpty() ? tr("not begun") : verdictText(outcome.transmission.row)};
        if (outcome.commands > 0) {
            words += tr("%1 commands in %2 s")
                         .arg(QString::number(outcome.commands), QLocale().toString(outcome.seconds, 'f', 1));
        }
        if (!each.result.trouble.isEmpty()) {
            words += each.result.trouble;
        }
        each.outcome = words.join(QLatin1String(", "));
    });
    if (!m_options.receipts.isEmpty() && !outcome.uid.isEmpty()) {
        writeReceiptOf(m_model.at(row), outcome);
    }
    ++m_ended;
    Q_EMIT progressed();
}

void FleetRun::writeReceiptOf(const FleetRow &row, const StationOutcome &outcome)
{
    const Status written = writeReceipt(freeReceiptPath(m_options.receipts, row.entry.file),
                                        outcome.transmission, m_means.texts, m_means.environment);
    if (!written) {
        Q_EMIT troubled(written.message());
    }
}

void FleetRun::end()
{
    m_seconds = static_cast<double>(m_clock.elapsed()) / msOfASecond;
    m_fleet.reset();
    Q_EMIT finished();
}

} // namespace ktr
