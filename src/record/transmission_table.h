#pragma once

#include "record/record_database.h"
#include "record/transmission_rows.h"

#include <functional>

namespace ktr {

/// The transmissions that a record holds. It must be open, and belongs to the same thread.
class TransmissionTable
{
public:
    explicit TransmissionTable(RecordDatabase &database) : m_database(database) {}

    /// Writes a transmission as it stands, in one commit: a new one gets its number, of one that is there
    /// already (by its uid) what changed is replaced. Of its steps these are new or changed. A server's
    /// record is read by others: there the configuration is kept without its PIN.
    Status write(TransmissionRow &row, const QList<TransmissionStepRow> &steps);

    /// The newest first, without their configurations unless `whole`.
    Status find(const TransmissionFilter &filter, const std::function<void(const TransmissionRow &)> &take,
                bool whole = false);
    /// Nothing in `row` where there is no such number.
    Status read(qint64 id, std::optional<TransmissionRow> &row, QList<TransmissionStepRow> &steps);

    /// Removes those that began before a time, but of each station the newest whole one stays.
    Status thin(qint64 before, qint64 &removed);

private:
    bool insert(TransmissionRow &row);
    bool update(const TransmissionRow &row, bool &isThere);
    bool writeSteps(qint64 transmission, const QList<TransmissionStepRow> &steps);
    Status rolledBack();

    RecordDatabase &m_database;
};

/// Opens a record for transmissions. A file is made where there is none, brought forward, and where it is
/// damaged replaced by what can be read of it; programs that begin at the same time wait for each other. On a
/// server the tables must be there.
Status openForTransmissions(RecordDatabase &database, const QString &record, QStringList *told = nullptr);

/// Puts a file of one's own that was found to be damaged aside and takes what can be read of it into a new
/// one, which is told, a line each. The connection is closed. Nothing is done with a server.
Status mendForTransmissions(RecordDatabase &database, const QString &record, QStringList &told);

/// A configuration's text without its PIN.
QString withoutPinElement(QString configuration);

} // namespace ktr
