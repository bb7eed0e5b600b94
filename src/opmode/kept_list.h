#pragma once

#include "opmode/keeping/nodes_keeper.h"
#include "opmode/list_parts.h"
#include "platform/file_lock.h"

#include <QObject>

namespace ktr {

class ListOpener;

/// The list of stations that is open as this program keeps it: its lock, its file, and who writes file and
/// record.
class KeptList : public QObject
{
    Q_OBJECT

public:
    /// `attributes` gives those of a station.
    KeptList(const ListParts &parts, NodesKeeper::Attributes attributes, const NodesKeeper::Limits &limits,
             QObject *parent = nullptr);
    ~KeptList() override;

    /// Nobody else keeps the list from now on, until release(). A failure: somebody does; taken for the same
    /// with `evenIfHeld`, which is told.
    Status lock(const QString &nodesPath, bool evenIfHeld);
    /// After this time a record that could not be opened is tried again.
    static constexpr Milliseconds openDelay{30'000};

    /// The list's file is read; another program keeps it.
    NodesFile &look(const QString &nodesPath);
    const QString &path() const { return m_path; }
    NodesFile &file() { return *m_file; }

    /// The tree becomes what the file says and, when the list is to be kept, what the record says happened
    /// since; the record is written from now on. A failure: the list cannot be used.
    Status load(ListOpener &list, bool isToBeKept);
    bool isKept() const { return m_keeper.has_value(); }
    /// The same once a record that could not be opened at first was taken up.
    void goOnWith(const ListOpener &list);
    /// Tries again after a while to open the record, until recordOpened() or release().
    void openRecordLater();
    /// The file is to be written soon when it has not what was taken over.
    void begin();
    /// To be called once a minute.
    void check();
    /// Writes it as soon as that can be: it has to hold more than its record could bring back.
    void saveSoon();
    /// Writes the file with all that the tree has.
    Status save();
    /// Lets go of the list; the record keeps what changed.
    void release();
    /// What is told no more, since nobody is left who listens.
    void end();

    /// Puts the list aside, with what belongs to it.
    Status putAside() const;
    /// The name that putAside() would give it.
    QString asideName() const;

    /// What of the list and of what belongs to it was lost, or rebuilt and has to be looked at by the user.
    const QStringList &defects() const { return m_defects; }
    /// Adds it to the defects, and to the lines of the status bar.
    void tellDefect(const QString &defect);
    /// Why it would not be noticed when another program watched the list, too; empty when it would.
    const QString &lockTrouble() const { return m_lockTrouble; }

Q_SIGNALS:
    void statusMessage(const QString &line);
    /// The last run ended badly, and what it had shown was brought back.
    void recovered(const QString &line);
    /// Why nothing is recorded, or an empty text.
    void recordTrouble(const QString &trouble);
    /// The disk has more of the record, or has refused it.
    void settled();
    /// A record that could not be opened has been by now: it is to be taken up.
    void recordOpened(const ktr::OpenedRecord &opened);
    /// The record was damaged, removed or replaced while it was written, and has been dealt with.
    void recordMended(const QString &what);

private:
    void takeUp(ListOpener &list);
    void beginKeeper(qint64 upto);
    void openRecordAgain();
    void recordTried();
    void takeMended(const OpenedRecord &mended);
    void keepState();
    void nameStations();

    ListParts m_parts;
    NodesKeeper::Attributes m_attributes;
    NodesKeeper::Limits m_limits;
    QString m_path;
    FileLock m_lock;
    std::optional<NodesFile> m_file;
    std::optional<NodesKeeper> m_keeper; ///< when the file is to be written
    QStringList m_defects;
    QString m_lockTrouble;
    bool m_savesSoon = false; ///< the file is not what the list is
    std::unique_ptr<OneShotTimer> m_again;
    OpenedRecord m_opened; ///< of the thread while m_isTrying is set
    bool m_isTrying = false;
    WorkerThread m_thread;
};

} // namespace ktr
