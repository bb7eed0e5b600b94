#pragma once

#include "config/document.h"
#include "platform/file_lock.h"
#include "platform/worker_thread.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>

#include <atomic>

namespace ktr {

/// Recovery copies of unsaved edits, one for each run. A copy is written some seconds after an edit and
/// before anything that may end the program, and removed when the edits are saved or declined. So the next
/// start finds them, whatever ends the program in between. While its run goes on a copy is locked, and nobody
/// else's.
///
/// A copy is an ordinary configuration file, `unsaved-20261122-103011.xml`, with the name of the edited file,
/// and what that was, in comments at its end. Only its owner can read it, because it may hold the SIM's PIN.
class KeptEdits : public QObject
{
    Q_OBJECT

public:
    explicit KeptEdits(const Environment &environment);

    struct Copy
    {
        QString path;
        QString fileName; ///< empty when the edits had no file yet
        ChannelNames names;
        Document::Source source; ///< that file as the edits began from it; none where that is not known
        QDateTime when;
    };
    /// The copies of runs that have ended, the newest first.
    QList<Copy> found() const;

    static void discard(const Copy &copy);

    /// Writes this run's copy, replacing its former one: into the user's data folder or, if that is
    /// impossible, the program's.
    Status keep(const Document &document, const QString &fileName);
    /// The same without waiting for the disk; false when it is still busy with the last one.
    bool beginToKeep(const Document &document);
    /// This run's copy; empty when there is none.
    const QString &present() const;
    /// Makes a copy that was found this run's own.
    void adopt(const QString &path);
    /// The edits of this run are saved or declined: removes its copy.
    void drop();
    /// The edits were undone: removes a copy that this run made. An adopted one is offered again.
    void forget();
    /// The editor holds something else now: the copy stays for the next start.
    void leave();

Q_SIGNALS:
    /// A copy was written, or why it could not be.
    void tried(const ktr::Status &written);

private:
    QStringList folders() const;
    Status write(const QByteArray &document);
    QByteArray copyOf(const Document &document, const QString &fileName) const;

    const Environment &m_environment;
    QString m_present; ///< the thread's while it works
    bool m_isAdopted = false;
    FileLock m_lock; ///< of that one, likewise
    std::atomic<bool> m_isBusy = false;
    mutable WorkerThread m_thread; // the last: it uses the others
};

} // namespace ktr
