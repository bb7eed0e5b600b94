#include "transmissions/waiting_transmissions.h"

#include "platform/file_lock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <optional>
#include <utility>

namespace ktr {

namespace {

/// One program at a time writes into the file, or empties it.
bool takeTurn(FileLock &lock, const QString &file)
{
    return lock.take(file + QStringLiteral(".turn")) == FileLock::Outcome::Taken;
}

Status readWaiting(RecordDatabase &database, std::vector<RememberedTransmission> &found)
{
    TransmissionTable table(database);
    QList<qint64> numbers;
    Status read = table.find({}, [&numbers](const TransmissionRow &row) { numbers += row.id; });
    for (const qint64 number : std::as_const(numbers)) {
        std::optional<TransmissionRow> row;
        RememberedTransmission each;
        read = read ? table.read(number, row, each.steps) : read;
        if (read && row) {
            each.row = *row;
            found.insert(found.begin(), each); // the oldest first
        }
    }
    return read;
}

} // namespace

Status keepWaiting(const QString &file, std::vector<RememberedTransmission> transmissions)
{
    FileLock lock;
    RecordDatabase database;
    if (!QDir().mkpath(QFileInfo(file).absolutePath()) || !takeTurn(lock, file)) {
        return Status::failed(file);
    }
    Status kept = openForTransmissions(database, file);
    TransmissionTable table(database);
    for (RememberedTransmission &each : transmissions) {
        kept = kept ? table.write(each.row, each.steps) : kept;
    }
    return kept;
}

Status handOverWaiting(const QString &file, TransmissionTable &to, int &count)
{
    count = 0;
    FileLock lock;
    if (file.isEmpty() || !QFileInfo::exists(file) || !takeTurn(lock, file)) {
        return Status::done();
    }
    std::vector<RememberedTransmission> waiting;
    Status brought = Status::done();
    {
        RecordDatabase database;
        brought = openForTransmissions(database, file);
        brought = brought ? readWaiting(database, waiting) : brought;
    }
    for (RememberedTransmission &each : waiting) {
        brought = brought ? to.write(each.row, each.steps) : brought;
        count += brought ? 1 : 0;
    }
    if (brought) {
        for (const QString &end : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")}) {
            QFile::remove(file + end);
        }
    }
    return brought;
}

} // namespace ktr
