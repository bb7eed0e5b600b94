#pragma once

#include "platform/status.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace ktr {

/// Makes the tables in a server's database, or brings older ones forward; needs the right to make a schema.
Status initRecord(const QString &address);

/// Writes what a record holds at this moment into a new file, for its owner alone, while it may be in use. A
/// file that is there already is not touched. Takes a while; fit for any thread.
Status backUpRecord(const QString &path, const QString &to);

class RecordDatabase;

/// Writes what a connection has, be its file removed by now, into a new file; fails when it is there.
Status copyRecord(RecordDatabase &from, const QString &to);

struct RecordCheck
{
    Status status = Status::done(); ///< why it could not be looked at
    QStringList faults{};           ///< none: it is sound
    int schema = 0;
    int newest = 0;                           ///< that this program knows
    QList<std::pair<QString, qint64>> rows{}; ///< of each table
};

/// Looks through a whole record, while it may be in use.
RecordCheck checkRecord(const QString &path);

} // namespace ktr
