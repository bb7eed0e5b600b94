#include "transmissions/broken_off.h"

#include "link/changes.h"
#include "transmissions/held_configuration.h"

#include <algorithm>

namespace ktr {

std::optional<BrokenOff> brokenOffBefore(TransmissionTable &table, const Configuration &configuration,
                                         const QString &line, const Environment &environment)
{
    const QString &station = configuration.gsm.stationId;
    std::optional<TransmissionRow> newest;
    if (station.isEmpty() || !table.find({.station = station}, [&newest](const TransmissionRow &row) {
            const bool changes = row.lastStep.value_or(0) > steps::first ||
                                 row.verdict == TransmissionVerdict::NotEnded; // not all may be noted
            newest = newest || !changes ? newest : std::optional(row);
        })) {
        return std::nullopt;
    }
    if (!newest || newest->verdict != TransmissionVerdict::NotEnded || newest->line != line ||
        newest->firstStep != steps::first || newest->basedOn != 0 || !newest->resumeStep ||
        newest->versionBefore.value_or(QString()).isEmpty()) {
        return std::nullopt;
    }
    QList<TransmissionStepRow> done;
    Configuration sent;
    if (!table.read(newest->id, newest, done) || !newest || !configurationOf(*newest, sent, environment) ||
        !commandDifferences(sent, configuration, {}).isEmpty()) {
        return std::nullopt;
    }
    const int step = *newest->resumeStep;
    const auto isDoubtful = [step](const TransmissionStepRow &row) {
        return row.step < step && row.outcome != StepOutcome::Confirmed;
    };
    return step > steps::first + 1 && std::ranges::none_of(done, isDoubtful)
               ? std::optional(BrokenOff{step, *newest->versionBefore})
               : std::nullopt;
}

} // namespace ktr
