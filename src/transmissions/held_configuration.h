#pragma once

#include "config/configuration.h"
#include "link/changes.h"
#include "platform/environment.h"
#include "record/transmission_table.h"

#include <QMap>

namespace ktr {

/// What a module that told its version text is known to hold.
struct HeldConfiguration
{
    /// What a later transmission that did not reach its end may have left of another configuration.
    struct Later
    {
        Configuration configuration;
        bool hasPin;
        QMap<int, QString>
            commands; ///< as they were sent, as far as that is known; in the form of those below
    };

    enum class Proof {
        Failed,    ///< the memory could not be read: see `status`
        None,      ///< nothing with this version text was transmitted
        Ambiguous, ///< different configurations have this version text
        InPart,    ///< it may have only some of it, or something else was sent to it since
        Whole,
    };

    Proof proof = Proof::None;
    Status status = Status::done();
    /// The newest transmission of this version text, of InPart and Whole.
    TransmissionRow transmission{};
    Configuration configuration{};
    /// Its commands by their steps, and those of the transmissions that it was based on, as they were sent,
    /// but with a letter in upper case and without the PIN. A file does not tell an empty text from its
    /// fall-back; these do.
    QMap<int, QString> commands{};
    /// A later one that did not reach its end and makes it InPart; 0 for none.
    qint64 disturbedBy = 0;
    /// All later ones that make it InPart, where it is Whole but for what these may have sent.
    QList<Later> later{};
    /// The stations to which this version text was transmitted; more than one where it is Ambiguous.
    QStringList stations{};

    /// Whether changesSince() tells what need not be sent: the rest is held, or may be.
    bool isKnown() const { return proof == Proof::Whole || (proof == Proof::InPart && !later.isEmpty()); }
};

/// Looks for what a module holds that told `version`. `station` is its identifier; empty where that is not
/// known. The stamp in a version text has a second's resolution, and a text of another form may stand in many
/// files, so one alone proves nothing when configurations with different commands have it.
HeldConfiguration whatHolds(TransmissionTable &table, const QString &station, const QString &version,
                            const Environment &environment);

/// What a module holds to which the newest whole transmission for a station was sent, if nothing happened to
/// it since; its version text has to prove that.
HeldConfiguration newestHeld(TransmissionTable &table, const QString &station,
                             const Environment &environment);

/// Whether a module at `line` may be another station's that tells the same version text, as those of a series
/// do: where the proof was over another line, and other stations were given that text, too.
bool mayBeOthers(TransmissionTable &table, const HeldConfiguration &held, const QString &line);

/// What need not be sent to a module of which it is known what it holds, and which is to hold another
/// configuration: the commands that it holds whatever became of later transmissions.
Changes changesSince(const HeldConfiguration &held, const Configuration &wanted,
                     const CommandContext &context);

/// The configuration of a transmission as it was sent.
Status configurationOf(const TransmissionRow &row, Configuration &configuration,
                       const Environment &environment);

/// Writes it as a file, with the bytes that the program would have saved when the transmission began. One
/// with a PIN is readable for its owner only.
Status exportTransmission(const TransmissionRow &row, const QString &path);
/// Whether what was sent had a PIN that the record does not keep.
bool lacksPin(const TransmissionRow &row);

} // namespace ktr
