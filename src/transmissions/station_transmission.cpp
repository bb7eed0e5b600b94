#include "transmissions/station_transmission.h"

#include "link/changes.h"
#include "transmissions/broken_off.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace ktr {

namespace {

constexpr int firstChange = 1;
constexpr double msOfASecond = 1000.0;

QString inWords(const char *text)
{
    return QCoreApplication::translate("StationTransmission", text);
}

/// Whether a transmission is the last one that may have changed this station's module.
bool isNewest(TransmissionTable &table, const QString &station, const QString &uid)
{
    QString newest;
    const Status found = table.find({.station = station}, [&newest](const TransmissionRow &row) {
        const bool mayHaveChanged = row.lastStep.value_or(0) >= firstChange ||
                                    row.verdict == TransmissionVerdict::NotEnded; // not all may be noted
        if (newest.isEmpty() && mayHaveChanged) {
            newest = row.uid;
        }
    });
    return found && newest == uid;
}

StepSet stepsBetween(int first, int end)
{
    StepSet all;
    for (int step = first; step < end; ++step) {
        all.set(static_cast<std::size_t>(step));
    }
    return all;
}

QStringList linesOfFindings(const TransmissionReport &report)
{
    QStringList texts;
    for (const TransmissionReport::Finding &finding : report.findings()) {
        QStringList steps;
        for (const int step : finding.steps) {
            steps += QString::number(step);
        }
        texts += steps.isEmpty() ? finding.text : finding.text + u' ' + steps.join(QLatin1String(", "));
    }
    return texts;
}

} // namespace

StationTransmission::StationTransmission(const Means &means, StationOrder order, QObject *parent)
    : QObject(parent),
      m_means(means),
      m_order(std::move(order)),
      m_asGiven(m_order.configuration),
      m_line(means.io),
      m_session(m_line, means.timers, means.environment, LineKind::Ethernet),
      m_keeper(means.memory, means.environment)
{
    connect(&m_line, &Transport::statusMessage, this, [this](const QString &text) { m_hint = text; });
    connect(&m_line, &Transport::lost, this, [this](const QString &reason, bool) { finish(reason); });
    connect(&m_session, &ModuleSession::stalled, this, [this] {
        const QString reason = m_session.stallReason();
        finish(m_hint.isEmpty() ? reason : reason + QLatin1String("; ") + m_hint);
    });
    connect(&m_session, &ModuleSession::commandSent, this, [this](std::optional<int> step) {
        if (step) {
            Q_EMIT handedOver(*step);
        }
    });
    connect(&m_session, &ModuleSession::transmitted, this, &StationTransmission::noteTransmitted);
}

StationTransmission::~StationTransmission()
{
    m_line.disconnect(this);
    m_session.close();
}

void StationTransmission::start()
{
    m_clock.start();
    if (!m_order.brokenOff.isEmpty() || m_order.changesOnly || m_order.mayBeBegun) {
        lookForBasis();
    } else {
        open(std::nullopt);
    }
}

void StationTransmission::cancel(const QString &why)
{
    finish(why);
}

std::optional<StationTransmission::Basis> StationTransmission::basisOf(const HeldConfiguration &held,
                                                                       const QString &version) const
{
    if (!held.isKnown() || !isProvedBy(held.configuration, version)) {
        return std::nullopt;
    }
    const CommandContext context{true, m_means.environment.locale, m_means.environment.now()};
    return Basis{changesSince(held, m_asGiven, context).leftOut, version, held.transmission.id};
}

/// What the memory knows of the station before it is heard.
void StationTransmission::lookForBasis()
{
    struct Known
    {
        std::optional<BrokenOff> brokenOff;
        HeldConfiguration held;
    };
    const auto look = [order = m_order, environment = m_means.environment](TransmissionTable &table) {
        Known known;
        const QString &station = order.configuration.gsm.stationId;
        if (!order.brokenOff.isEmpty() && isNewest(table, station, order.brokenOff)) {
            known.brokenOff = {order.step, order.versionBefore};
        } else if (order.mayBeBegun) {
            known.brokenOff = brokenOffBefore(table, order.configuration, order.address, environment);
        }
        if (order.changesOnly && !station.isEmpty()) {
            const HeldConfiguration held = newestHeld(table, station, environment);
            known.held = mayBeOthers(table, held, order.address) ? HeldConfiguration() : held;
        }
        return known;
    };
    m_means.memory.ask<Known>(
        this, look, [](const Status &) { return Known(); },
        [this](const Known &known) {
            if (m_hasEnded) {
                return;
            }
            std::optional<Basis> basis;
            if (m_order.changesOnly) {
                basis = basisOf(known.held, known.held.transmission.versionSent);
            }
            if (known.brokenOff) {
                const int step = known.brokenOff->step;
                const Basis rest{stepsBetween(firstChange, step), known.brokenOff->versionBefore, 0, step};
                // What is based on a whole one proves what the module holds afterwards.
                basis = basis && basis->leftOut.count() >= rest.leftOut.count() ? basis : rest;
            }
            if (!basis && m_order.changesOnly) {
                m_outcome.note = inWords(QT_TRANSLATE_NOOP(
                    "StationTransmission", "all was sent: the memory does not prove what it held"));
            }
            open(basis);
        });
}

void StationTransmission::open(const std::optional<Basis> &basis)
{
    if (const Status opened = m_session.open(m_order.address); !opened) {
        finish(opened.message());
        return;
    }
    m_session.setTimeout(m_means.timeout);
    transmit(basis);
}

void StationTransmission::transmit(const std::optional<Basis> &basis)
{
    m_order.configuration = m_asGiven;
    Transmission transmission(m_order.configuration, true);
    TransmissionKeeper::About about{
        .file = m_order.file, .line = m_order.address, .operatorName = m_means.operatorName, .answers = true};
    if (basis) {
        transmission.leaveOut(basis->leftOut);
        transmission.expectVersion(basis->version);
        about.basedOn = basis->basedOn;
        about.firstStep = basis->firstStep;
    }
    m_hasBegun = true;
    m_session.startTransmission(transmission);
    m_keeper.begin(m_session, m_order.configuration, about);
}

void StationTransmission::noteTransmitted()
{
    const TransmissionReport &report = m_session.transmission().report();
    if (report.otherVersion && !m_hasEnded) {
        m_keeper.end();
        lookForVersion(*report.otherVersion);
        return;
    }
    m_isLeaving = true;
    m_session.setQuiet(true); // a module that starts anew is not to be caught any more
    m_session.setTimeout(Milliseconds{0});
    m_session.whenDrained([this] { finish({}); });
}

/// The module holds something else than was expected, and nothing of it was changed.
void StationTransmission::lookForVersion(const QString &version)
{
    const auto look = [version, isWanted = m_order.changesOnly, station = m_asGiven.gsm.stationId,
                       address = m_order.address,
                       environment = m_means.environment](TransmissionTable &table) {
        const HeldConfiguration held = isWanted && !station.isEmpty()
                                           ? whatHolds(table, station, version, environment)
                                           : HeldConfiguration();
        return mayBeOthers(table, held, address) ? HeldConfiguration() : held;
    };
    m_means.memory.ask<HeldConfiguration>(
        this, look, [](const Status &) { return HeldConfiguration(); },
        [this, version](const HeldConfiguration &held) {
            if (m_hasEnded) {
                return;
            }
            const std::optional<Basis> basis = basisOf(held, version);
            if (!basis) {
                m_outcome.note = inWords(QT_TRANSLATE_NOOP("StationTransmission",
                                                           "all was sent: the module told another version"));
            }
            transmit(basis);
        });
}

void StationTransmission::finish(const QString &trouble)
{
    if (std::exchange(m_hasEnded, true)) {
        return;
    }
    m_outcome.verdict = TransmissionVerdict::BrokenOff;
    QStringList troubles;
    if (m_hasBegun) {
        m_session.stopTransmission();
        if (m_isLeaving && !trouble.isEmpty()) {
            m_session.loseLastCommand(); // it was still in the machine
        }
        m_keeper.end();
        const TransmissionReport &report = m_session.transmission().report();
        m_outcome.verdict = verdictOf(report);
        m_outcome.commands = report.sent;
        troubles = linesOfFindings(report);
        m_outcome.transmission = m_keeper.transmission();
        m_outcome.uid = m_outcome.transmission.row.uid;
        m_outcome.versionBefore = m_outcome.transmission.row.versionBefore.value_or(QString());
        const int brokenAt = report.brokenAt.value_or(0);
        const bool areOthersWhole =
            report.failed.isEmpty() && report.refused.isEmpty() &&
            std::ranges::none_of(report.unconfirmed, [brokenAt](int step) { return step < brokenAt; });
        if (brokenAt > firstChange && areOthersWhole && !m_outcome.versionBefore.isEmpty()) {
            m_outcome.step = brokenAt;
        }
    }
    if (!trouble.isEmpty()) {
        troubles.prepend(trouble);
    }
    m_outcome.trouble = troubles.join(QLatin1String("; "));
    m_outcome.seconds = static_cast<double>(m_clock.elapsed()) / msOfASecond;
    m_session.close();
    Q_EMIT ended();
}

} // namespace ktr
