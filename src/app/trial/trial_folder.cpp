#include "app/trial/trial_folder.h"

#include "platform/environment.h"
#include "platform/private_folder.h"
#include "platform/registry.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <chrono>

namespace ktr {

namespace {

const QString nameBegins = QStringLiteral("KTRconfig-trial-");
constexpr std::chrono::hours makingTakes(1); ///< at most, until a new folder has its lock

QString lockOfStarter(const QString &folder)
{
    return joinPath(folder, QStringLiteral("starter.lock"));
}

/// What is no folder of this one, but leads elsewhere, is removed itself.
void removeTree(const QFileInfo &folder)
{
    const auto all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    for (const QFileInfo &entry : QDir(folder.filePath()).entryInfoList(all)) {
        const bool leadsElsewhere = entry.isSymLink() || entry.isJunction();
        if (entry.isDir() && !leadsElsewhere) {
            removeTree(entry);
        } else if (!QFile::remove(entry.filePath())) {
            QDir().rmdir(entry.filePath()); // a junction
        }
    }
    QDir().rmdir(folder.filePath());
}

bool isAbandoned(const QFileInfo &folder)
{
    if (!isPrivateFolder(folder.filePath())) {
        return false;
    }
    const QString starter = lockOfStarter(folder.filePath());
    const bool isBeingMade = !QFileInfo::exists(starter) &&
                             folder.lastModified() > QDateTime::currentDateTime().addSecs(
                                                         -std::chrono::seconds(makingTakes).count());
    return !isBeingMade && !FileLock::heldBy(starter) &&
           !FileLock::heldBy(TrialFolder::lockOfRun(folder.filePath()));
}

} // namespace

TrialFolder::TrialFolder(const QString &place)
{
    QTemporaryDir folder(QDir(place).filePath(nameBegins + QLatin1String("XXXXXX")));
    if (!folder.isValid()) {
        m_made = Status::failed(QDir::toNativeSeparators(place) + QLatin1String(": ") + folder.errorString());
        return;
    }
    if (m_lock.take(lockOfStarter(folder.path())) != FileLock::Outcome::Taken) {
        m_made = m_lock.trouble() ? Status::failed(folder.path()) : m_lock.trouble();
        return;
    }
    folder.setAutoRemove(false);
    m_path = folder.path();
}

TrialFolder::~TrialFolder()
{
    m_lock.release();
    if (!m_path.isEmpty()) {
        remove(m_path);
    }
}

QString TrialFolder::lockOfRun(const QString &folder)
{
    return joinPath(folder, QStringLiteral("run.lock"));
}

bool TrialFolder::isStarterGone(const QString &folder)
{
    const QString lock = lockOfStarter(folder);
    return QFileInfo::exists(lock) && !FileLock::heldBy(lock);
}

QString TrialFolder::registryIn(const QString &folder)
{
    return joinPath(folder, QStringLiteral("registry.json"));
}

void TrialFolder::remove(const QString &folder)
{
    MRegistry::forgetRegistryFile(registryIn(folder));
    if (isPrivateFolder(folder)) {
        removeTree(QFileInfo(folder));
    }
}

int TrialFolder::removeAbandoned(const QString &place)
{
    int removed = 0;
    for (const QFileInfo &folder :
         QDir(place).entryInfoList({nameBegins + u'*'}, QDir::Dirs | QDir::Hidden)) {
        if (isAbandoned(folder)) {
            remove(folder.filePath());
            ++removed;
        }
    }
    return removed;
}

} // namespace ktr
