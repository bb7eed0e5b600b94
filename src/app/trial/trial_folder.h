#pragma once

#include "platform/file_lock.h"
#include "platform/status.h"

#include <QDir>
#include <QString>

namespace ktr {

/// The folder of a trial, among what is temporary, with two locks in it: that of the program that started the
/// trial and that of the trial's own process. While one of them is held the folder is in use, however the
/// other process ended.
class TrialFolder
{
public:
    /// Makes one, for the program that starts a trial.
    explicit TrialFolder(const QString &place = QDir::tempPath());
    /// Removes it.
    ~TrialFolder();
    Q_DISABLE_COPY_MOVE(TrialFolder)

    /// Why there is none.
    const Status &made() const { return m_made; }
    const QString &path() const { return m_path; }

    /// The lock of the trial's own process.
    static QString lockOfRun(const QString &folder);
    /// Whether the program that made the folder has ended, and left it.
    static bool isStarterGone(const QString &folder);
    /// The registry of the trial.
    static QString registryIn(const QString &folder);

    /// Removes a folder with all that is in it. What links in it lead to stays.
    static void remove(const QString &folder);
    /// Removes what trials of this user have left whose processes are gone; returns how many. Folders of
    /// others, links, and folders that are in use or just being made are left alone.
    static int removeAbandoned(const QString &place = QDir::tempPath());

private:
    QString m_path;
    Status m_made = Status::done();
    FileLock m_lock;
};

} // namespace ktr
