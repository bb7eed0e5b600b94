#pragma once

#include "platform/status.h"

#include <QString>
#include <QStringList>

namespace ktr {

/// What openRecord() found, and made of it.
struct OpenedRecord
{
    Status status = Status::done(); ///< why the record cannot be used
    bool isNew = false;
    bool endedBadly = false;  ///< the last run did not close it
    bool isUnchecked = false; ///< and it is too large to be looked through here: see LaterCheck

    bool isPutBack = false; ///< it was whole, but somebody had removed or replaced it

    // Of a record that was damaged:
    QString keptAside;  ///< where it is now; empty: it was sound
    qint64 saved = 0;   ///< rows that were copied out of it
    QStringList lost{}; ///< what of it could not be read, a line for each table

    qint64 lastEvent = 0; ///< the highest numbers given so far
    qint64 lastAlarm = 0;
};

/// On a server whoever needs numbers of alarms or stations has so many for itself.
inline constexpr qint64 numbersOfABlock = 1'000'000'000;

/// The setting that is "1" while a check is due.
QString uncheckedSetting();

/// So many bytes are looked through within a moment.
inline constexpr qint64 mostCheckedAtOnce = qint64{64} << 20;

/// Makes a record, for its owner alone, or brings one to the newest tables. After a bad end it is checked; of
/// a damaged one, which is kept aside under a number, what can be read is taken into a new one. Nobody else
/// may use it meanwhile. RecordWriter and RecordReader open it for themselves afterwards. On a server (see
/// isServerAddress()) the tables must be there, others may use them, and lastAlarm begins a block of numbers
/// that nobody else has.
OpenedRecord openRecord(const QString &path, qint64 mostChecked = mostCheckedAtOnce);

class RecordDatabase;

/// The same for a record that is in use and was found to be damaged, or to have been removed or replaced by
/// somebody. `used` is the connection of whoever writes it, which is closed. While that has the whole of a
/// record that is no longer there, it is put back. Which numbers were given is not looked up.
OpenedRecord repairRecord(const QString &path, RecordDatabase &used);

} // namespace ktr
