#pragma once

#include "config/configuration.h"
#include "config/neighbours.h"
#include "link/command_sequence.h"
#include "transmissions/transmission_memory.h"

#include <QHash>

namespace ktr {

/// What a transmission is about to do, looked at before it begins: what the file is, what is known of the
/// module, and whether something is known not to fit. What is not known is told as such; nothing is asked of
/// the module for this.
struct TransmissionLook
{
    // What is to be transmitted.
    QString station{};
    QString version{}; ///< as the closing command says it
    QString line{};    ///< the port, or the module's address
    bool isAddress = false;
    int commands = 0;
    int problems = 0;
    QStringList overwritten{}; ///< counters and outputs that are set

    /// What the module told over this line; nothing while it told nothing.
    std::optional<QString> moduleVersion{};

    // What the memory knows; nothing where it cannot be read.
    bool isRemembered = false;
    QHash<QString, QStringList> stationsOf{};       ///< of each version text the stations that were given it
    std::optional<TransmissionRow> lastOfStation{}; ///< the newest that was closed
    std::optional<TransmissionRow> lastOverLine{};

    /// What is known not to fit, in words for the user; mostly none.
    QStringList misfits() const;
    /// All of it: a name and a value each.
    QList<std::pair<QString, QString>> facts() const;
    /// The same in a line.
    QString summary() const;
};

/// What the configuration itself, and those beside it, tell of it.
TransmissionLook lookAt(const Configuration &configuration, const CommandContext &context,
                        const QList<Neighbour> &neighbours);

/// Adds what was transmitted to this station, and over this line, before.
TransmissionLook withMemory(TransmissionLook look, TransmissionTable &table);

} // namespace ktr
