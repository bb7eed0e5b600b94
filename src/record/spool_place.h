#pragma once

#include "platform/file_lock.h"

#include <QStringList>

#include <memory>
#include <vector>

namespace ktr {

/// Where what a server does not take waits on this machine: in a folder, a file for each keeper of each
/// record. Nobody else uses the file as long as this program holds it. Those that programs left behind which
/// are not there any more are held, too, so that one of those that begin next hands over what is in them.
class SpoolPlace
{
public:
    /// The service manager's folder for this service's state, or else one in the user's data folder.
    static QString usualFolder(const QString &dataFolder);

    /// Makes the folder where it is missing. A failure: there is no place there.
    Status take(const QString &folder, const QString &address);

    const QString &path() const { return m_path; }
    /// Left behind by others.
    const QStringList &leftBehind() const { return m_leftBehind; }
    /// What was left behind is taken over.
    void release();

private:
    QString m_path;
    FileLock m_lock;
    QStringList m_leftBehind;
    std::vector<std::unique_ptr<FileLock>> m_locks; ///< of these
};

} // namespace ktr
