#pragma once

#include "platform/status.h"

#include <QDateTime>
#include <QString>

#include <memory>
#include <optional>

namespace ktr {

/// Keeps a thing that programs share, on one machine or on a network share, to one of them at a time: a lock
/// of the system on a file beside it. It ends with its holder, however that ends, so there is none to be
/// cleared away after a crash or a power cut. The file names the holder for the others, and goes with the
/// lock.
class FileLock
{
public:
    FileLock();
    ~FileLock(); ///< releases it
    Q_DISABLE_COPY_MOVE(FileLock)

    enum class Outcome {
        Taken,
        Held,      ///< by another program
        Impossible ///< the folder is not writable, or locks are not known there
    };
    /// Takes the lock of this file, which is made where it does not exist; does not wait.
    Outcome take(const QString &path);
    void release();
    /// What the file of a lock says of its holder, for lockHolderText(); nothing when nobody holds it. Takes
    /// nothing, so that nobody who begins meanwhile finds it held.
    static std::optional<QByteArray> heldBy(const QString &path);

    /// What the file says of this program, after Taken.
    const QByteArray &record() const { return m_record; }
    /// After Held: the user, the machine, the program and since when, in words for the user.
    const QString &holder() const { return m_holder; }
    /// After Impossible: why.
    const Status &trouble() const { return m_trouble; }

private:
    struct Held;
    std::unique_ptr<Held> m_held;
    QByteArray m_record;
    QString m_holder;
    Status m_trouble = Status::done();
};

/// Who holds a lock, as its file says. The texts are printable, and not long.
struct LockHolder
{
    QString user;
    QString machine;
    QString program; ///< with its process: "ktrcli (4711)"
    QDateTime since;
};

/// What a lock's file says of this program, and what others make of that; nothing, or "another program", when
/// its holder is about to write it, or could not.
QByteArray lockHolderRecord(const QString &user);
std::optional<LockHolder> lockHolder(const QByteArray &record);
QString lockHolderText(const QByteArray &record);

} // namespace ktr
