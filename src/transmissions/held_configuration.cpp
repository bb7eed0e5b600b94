#include "transmissions/held_configuration.h"

#include "config/configuration_file.h"
#include "link/command_sequence.h"
#include "link/conversation_log.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <utility>
#include <vector>

namespace ktr {

namespace {

static_assert(TransmissionRow::closingStep == steps::last);
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

Status noConfiguration()
{
    return Status::failed(
        QCoreApplication::translate("Transmissions", "A single command was sent, and no configuration"));
}

bool isProof(const TransmissionRow &row)
{
    return row.verdict == TransmissionVerdict::Whole && row.lastStep == steps::last &&
           row.basedOn != TransmissionRow::onNothingKnown &&
           (row.firstStep == steps::first || row.basedOn != 0);
}

/// Of serial ports, many modules are at one, and one at many, in turn.
bool isSerialPort(const QString &line)
{
    static const QRegularExpression form(QStringLiteral("[/\\\\]|^COM[0-9]+$"),
                                         QRegularExpression::CaseInsensitiveOption);
    return line.contains(form);
}

/// Whether a later transmission with another version text may have changed the module that had `held`; of a
/// single command it is not known which station's it was.
bool disturbs(const TransmissionRow &later, const TransmissionRow &held)
{
    constexpr int firstChange = 1; // the step before it only asks
    const bool isAllNoted = later.verdict != TransmissionVerdict::NotEnded;
    if (isAllNoted && later.lastStep.value_or(0) < firstChange) {
        return false;
    }
    if (later.verdict == TransmissionVerdict::Alone) {
        return !later.versionBefore || *later.versionBefore == held.versionSent;
    }
    if (later.station == held.station) {
        return true;
    }
    // One with another identifier is known by what the module told. Without that a line is shared by many
    // modules, but one that was given the closing command would not tell this version text any more.
    return later.lastStep != steps::last &&
           (later.versionBefore ? *later.versionBefore == held.versionSent : later.line == held.line);
}

/// Whether something was sent to an address at which another station is, as was transmitted there before. The
/// modules of a series tell one and the same version text.
Status isAtOther(TransmissionTable &table, const TransmissionRow &later, const TransmissionRow &held,
                 bool &isOther)
{
    isOther = false;
    const bool isOfStation = later.verdict != TransmissionVerdict::Alone && later.station == held.station;
    if (isOfStation || later.line == held.line || isSerialPort(later.line)) {
        return Status::done();
    }
    std::optional<TransmissionRow> before; // the newest one
    Status read = table.find({.line = later.line}, [&](const TransmissionRow &row) {
        const bool isBefore = row.begun <= later.begun && row.id != later.id &&
                              row.verdict != TransmissionVerdict::Alone && row.lastStep == steps::last;
        before = isBefore && !before ? std::optional(row) : before;
    });
    isOther = before && !before->station.isEmpty() && before->station != held.station &&
              (!later.versionBefore || *later.versionBefore == before->versionSent);
    return read;
}

/// What a later transmission may have left; nothing where that is not known. On a serial line a command may
/// have been cut off where it ended.
std::optional<HeldConfiguration::Later> whatMayBeLeft(TransmissionTable &table, const TransmissionRow &later,
                                                      const QString &version, const Environment &environment)
{
    const bool isForeign = later.versionBefore && *later.versionBefore != version;
    if (later.verdict == TransmissionVerdict::Alone || isForeign || isSerialPort(later.line)) {
        return std::nullopt;
    }
    std::optional<TransmissionRow> row;
    QList<TransmissionStepRow> steps;
    HeldConfiguration::Later left{.configuration = {}, .hasPin = later.hasPin, .commands = {}};
    if (!table.read(later.id, row, steps) || !row ||
        !configurationOf(*row, left.configuration, environment)) {
        return std::nullopt;
    }
    left.commands = sentCommands(steps);
    return left;
}

bool isSamePin(const Configuration &held, bool hasPin, const QString &wanted)
{
    return hasPin ? !wanted.isEmpty() && wanted == held.gsm.pin : wanted.isEmpty();
}

} // namespace

HeldConfiguration newestHeld(TransmissionTable &table, const QString &station, const Environment &environment)
{
    std::optional<QString> version;
    HeldConfiguration none;
    none.status = table.find({.station = station}, [&version](const TransmissionRow &row) {
        if (!version && row.verdict == TransmissionVerdict::Whole) {
            version = row.versionSent;
        }
    });
    return version ? whatHolds(table, station, *version, environment) : none;
}

Changes changesSince(const HeldConfiguration &held, const Configuration &wanted,
                     const CommandContext &context)
{
    constexpr int numbersStep = 1; // the only one with the PIN, which is not among the commands
    const QString &pin = wanted.gsm.pin;
    const auto inForm = [](const QString &command) {
        return logText(command.front().toUpper() + command.sliced(1));
    };
    struct May
    {
        const HeldConfiguration::Later &later;
        StepCommands commands;
    };
    std::vector<May> may;
    for (const HeldConfiguration::Later &later : held.later) {
        may.push_back({later, commandsOf(later.configuration, context)});
    }
    return changesSince(
        [&](int step, const QString &command) {
            const QString wantedCommand = inForm(command);
            const bool isPinHeld =
                step != numbersStep || isSamePin(held.configuration, held.transmission.hasPin, pin);
            const bool isHeld = held.commands.value(step) == wantedCommand && isPinHeld;
            return isHeld && std::ranges::all_of(may, [&](const May &each) {
                       const std::optional<QString> &meant = each.commands[static_cast<std::size_t>(step)];
                       return (!meant || inForm(*meant) == wantedCommand) &&
                              each.later.commands.value(step, wantedCommand) == wantedCommand &&
                              (step != numbersStep ||
                               isSamePin(each.later.configuration, each.later.hasPin, pin));
                   });
        },
        wanted, context);
}

bool mayBeOthers(TransmissionTable &table, const HeldConfiguration &held, const QString &line)
{
    const TransmissionRow &proof = held.transmission;
    if (proof.line == line) {
        return false;
    }
    bool isOthers = false;
    const Status read = table.find({.versionSent = proof.versionSent}, [&](const TransmissionRow &row) {
        isOthers = isOthers || row.station != proof.station;
    });
    return isOthers || !read;
}

Status configurationOf(const TransmissionRow &row, Configuration &configuration,
                       const Environment &environment)
{
    configuration = {};
    if (row.verdict == TransmissionVerdict::Alone) {
        return noConfiguration();
    }
    const ReadReport report = readConfiguration(row.configuration.toUtf8(), configuration, environment);
    return report.document;
}

bool lacksPin(const TransmissionRow &row)
{
    return row.hasPin && withoutPinElement(row.configuration) == row.configuration;
}

Status exportTransmission(const TransmissionRow &row, const QString &path)
{
    if (row.verdict == TransmissionVerdict::Alone) {
        return noConfiguration();
    }
    return replaceFile(path, row.configuration.toUtf8(),
                       row.hasPin && !lacksPin(row) ? Readers::Owner : Readers::AsUsual);
}

HeldConfiguration whatHolds(TransmissionTable &table, const QString &station, const QString &version,
                            const Environment &environment)
{
    HeldConfiguration held;
    QList<TransmissionRow> rows; // the newest first
    bool isGivenAlone = false;   // then any module may tell it
    const auto take = [&](const TransmissionRow &row) {
        isGivenAlone = isGivenAlone || row.verdict == TransmissionVerdict::Alone;
        if (station.isEmpty() || row.station == station) {
            rows += row;
        }
    };
    held.status = table.find({.versionSent = version}, take, true);
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
        if (isGivenAlone || commandsOf(row, environment) != commands ||
            !haveSameCommands(sent, held.commands)) {
            held.proof = HeldConfiguration::Proof::Ambiguous;
            return held;
        }
    }
    if (const Status read = configurationOf(held.transmission, held.configuration, environment); !read) {
        return failedBy(read);
    }
    // A later one with another version text that reached its end would have left that text.
    QList<TransmissionRow> disturbing;
    Status read = table.find({.since = held.transmission.begun}, [&](const TransmissionRow &later) {
        const bool isLater = later.begun > held.transmission.begun ||
                             (later.begun == held.transmission.begun && later.id > held.transmission.id);
        if (isLater && later.versionSent != version && disturbs(later, held.transmission)) {
            disturbing += later;
        }
    });
    bool isKnown = held.proof == HeldConfiguration::Proof::Whole;
    for (const TransmissionRow &later : std::as_const(disturbing)) {
        bool isOther = false;
        read = read ? isAtOther(table, later, held.transmission, isOther) : read;
        if (isOther) {
            continue;
        }
        held.disturbedBy = later.id;
        const auto left = isKnown ? whatMayBeLeft(table, later, version, environment) : std::nullopt;
        isKnown = left.has_value();
        if (left) {
            held.later += *left;
        }
    }
    if (!read) {
        return failedBy(read);
    }
    if (!isKnown) {
        held.later.clear();
    }
    if (held.disturbedBy != 0 && held.proof == HeldConfiguration::Proof::Whole) {
        held.proof = HeldConfiguration::Proof::InPart;
    }
    return held;
}

} // namespace ktr
