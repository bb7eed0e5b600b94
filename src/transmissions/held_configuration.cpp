#include "transmissions/held_configuration.h"

#include "config/configuration_file.h"
#include "link/command_sequence.h"
#include "link/conversation_log.h"
#include "platform/files.h"

#include <QStringList>

#include <algorithm>
#include <utility>

namespace ktr {

namespace {

constexpr int clockStep = 77; // of the same configuration each time another command

/// What a module is given of a configuration but for its PIN, which a record on a server leaves out.
QStringList commandsOf(const TransmissionRow &row, const Environment &environment)
{
    Configuration configuration;
    (void)configurationOf(row, configuration, environment);
    configuration.gsm.pin.clear();
    QStringList commands;
    CommandSequence sequence;
    sequence.start();
    while (const auto next = sequence.next(configuration, {false, QLocale::c(), QDateTime()})) {
        commands += next->command;
    }
    return commands;
}

QMap<int, QString> sentCommands(const QList<TransmissionStepRow> &steps)
{
    QMap<int, QString> commands;
    for (const TransmissionStepRow &step : steps) {
        if (step.outcome != StepOutcome::Refused && step.step != clockStep && !step.command.isEmpty()) {
            commands[step.step] = step.step == steps::last
                                      ? step.command
                                      : step.command.front().toUpper() + step.command.sliced(1);
        }
    }
    return commands;
}

/// Whether the steps that both have sent the same.
bool haveSameCommands(const QMap<int, QString> &one, const QMap<int, QString> &other)
{
    return std::ranges::all_of(
        one.keys(), [&](int step) { return !other.contains(step) || other.value(step) == one.value(step); });
}

/// One that sent only what differs is completed by the one that it was based on.
Status readCommands(TransmissionTable &table, qint64 id, QMap<int, QString> &commands)
{
    Status read = Status::done();
    while (read && id > 0) {
        std::optional<TransmissionRow> row;
        QList<TransmissionStepRow> steps;
        read = table.read(id, row, steps);
        const QMap<int, QString> sent = sentCommands(steps);
        for (auto command = sent.begin(); command != sent.end(); ++command) {
            if (!commands.contains(command.key())) {
                commands.insert(command.key(), command.value());
            }
        }
        id = row && row->basedOn < id ? row->basedOn : 0;
    }
    return read;
}

bool isProof(const TransmissionRow &row)
{
    return row.verdict == TransmissionVerdict::Whole && row.lastStep == steps::last &&
           row.basedOn != TransmissionRow::onNothingKnown &&
           (row.firstStep == steps::first || row.basedOn != 0);
}

/// Whether a later transmission with another version text may have changed the module that had `held`.
bool disturbs(const TransmissionRow &later, const TransmissionRow &held)
{
    constexpr int firstChange = 1; // the step before it only asks
    if (later.lastStep.value_or(0) < firstChange) {
        return false;
    }
    if (later.station == held.station) {
        return true;
    }
    // One with another identifier is known by what the module told. Without that a line is shared by many
    // modules, but one that was given the closing command would not tell this version text any more.
    return later.lastStep != steps::last &&
           (later.versionBefore ? *later.versionBefore == held.versionSent : later.line == held.line);
}

} // namespace

Changes changesSince(const HeldConfiguration &held, const Configuration &wanted,
                     const CommandContext &context)
{
    constexpr int numbersStep = 1; // the only one with the PIN, which is not among the commands
    const QString &pin = wanted.gsm.pin;
    const bool isSamePin =
        held.transmission.hasPin ? !pin.isEmpty() && pin == held.configuration.gsm.pin : pin.isEmpty();
    return changesSince(
        [&](int step, const QString &command) {
            const QString given = held.commands.value(step);
            const bool isSame = given == logText(command.front().toUpper() + command.sliced(1));
            return isSame && (step != numbersStep || isSamePin);
        },
        wanted, context);
}

Status configurationOf(const TransmissionRow &row, Configuration &configuration,
                       const Environment &environment)
{
    configuration = {};
    const ReadReport report = readConfiguration(row.configuration.toUtf8(), configuration, environment);
    return report.document;
}

bool lacksPin(const TransmissionRow &row)
{
    return row.hasPin && withoutPinElement(row.configuration) == row.configuration;
}

Status exportTransmission(const TransmissionRow &row, const QString &path)
{
    return replaceFile(path, row.configuration.toUtf8(),
                       row.hasPin && !lacksPin(row) ? Readers::Owner : Readers::AsUsual);
}

HeldConfiguration whatHolds(TransmissionTable &table, const QString &station, const QString &version,
                            const Environment &environment)
{
    HeldConfiguration held;
    QList<TransmissionRow> rows; // the newest first
    held.status = table.find(
        {.station = station, .versionSent = version}, [&rows](const TransmissionRow &row) { rows += row; },
        true);
    if (!held.status) {
        held.proof = HeldConfiguration::Proof::Failed;
        return held;
    }
    for (const TransmissionRow &row : std::as_const(rows)) {
        if (!held.stations.contains(row.station)) {
            held.stations += row.station;
        }
    }
    if (rows.isEmpty()) {
        return held;
    }
    const auto proof = std::ranges::find_if(rows, &isProof);
    held.transmission = proof != rows.end() ? *proof : rows.first();
    held.proof = proof != rows.end() ? HeldConfiguration::Proof::Whole : HeldConfiguration::Proof::InPart;
    const auto failedBy = [&held](const Status &why) {
        held.proof = HeldConfiguration::Proof::Failed;
        held.status = why;
        return held;
    };
    const QStringList commands = commandsOf(held.transmission, environment);
    if (const Status read = readCommands(table, held.transmission.id, held.commands); !read) {
        return failedBy(read);
    }
    for (const TransmissionRow &row : std::as_const(rows)) {
        QMap<int, QString> sent;
        if (const Status read = readCommands(table, row.id, sent); !read) {
            return failedBy(read);
        }
        if (commandsOf(row, environment) != commands || !haveSameCommands(sent, held.commands)) {
            held.proof = HeldConfiguration::Proof::Ambiguous;
            return held;
        }
    }
    if (const Status read = configurationOf(held.transmission, held.configuration, environment); !read) {
        return failedBy(read);
    }
    // A later one with another version text that reached its end would have left that text.
    Status read = table.find({.since = held.transmission.begun}, [&](const TransmissionRow &later) {
        const bool isLater = later.begun > held.transmission.begun ||
                             (later.begun == held.transmission.begun && later.id > held.transmission.id);
        if (isLater && later.versionSent != version && disturbs(later, held.transmission)) {
            held.disturbedBy = later.id;
        }
    });
    if (!read) {
        return failedBy(read);
    }
    if (held.disturbedBy != 0 && held.proof == HeldConfiguration::Proof::Whole) {
        held.proof = HeldConfiguration::Proof::InPart;
    }
    return held;
}

} // namespace ktr
