#include "record/spool_place.h"

#include "platform/environment.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

constexpr int mostKeepers = 100; // of one record on one machine

const QString lockEnd = u".lock"_s;

/// The same for the same address.
QString beginOfNames(const QString &address)
{
    const QByteArray hash = QCryptographicHash::hash(address.toUtf8(), QCryptographicHash::Sha256);
    return u"spool-"_s + QString::fromLatin1(hash.toHex().first(12));
}

QString fileName(const QString &address, int number)
{
    return beginOfNames(address) + u"-%1.sqlite"_s.arg(number);
}

} // namespace

QString SpoolPlace::usualFolder(const QString &dataFolder)
{
    const QString service = qEnvironmentVariable("STATE_DIRECTORY").section(u':', 0, 0);
    return !service.isEmpty() ? service : dataFolder.isEmpty() ? QString() : joinPath(dataFolder, u"spool"_s);
}

Status SpoolPlace::take(const QString &folder, const QString &address)
{
    if (folder.isEmpty() || !QDir().mkpath(folder)) {
        return fileFailure(folder, QCoreApplication::translate("SpoolPlace", "the folder cannot be made"));
    }
    for (int number = 1; number <= mostKeepers; ++number) {
        const QString path = joinPath(folder, fileName(address, number));
        if (!m_path.isEmpty() && !QFileInfo::exists(path)) {
            continue;
        }
        auto lock = std::make_unique<FileLock>();
        FileLock &held = m_path.isEmpty() ? m_lock : *lock;
        const FileLock::Outcome outcome = held.take(path + lockEnd);
        if (outcome == FileLock::Outcome::Impossible) {
            return held.trouble();
        }
        if (outcome == FileLock::Outcome::Held) {
            continue;
        }
        if (m_path.isEmpty()) {
            m_path = path;
        } else {
            m_leftBehind += path;
            m_locks.push_back(std::move(lock));
        }
    }
    return m_path.isEmpty()
               ? fileFailure(folder, QCoreApplication::translate("SpoolPlace", "too many keepers use it"))
               : Status::done();
}

void SpoolPlace::release()
{
    m_leftBehind.clear();
    m_locks.clear();
}

} // namespace ktr
