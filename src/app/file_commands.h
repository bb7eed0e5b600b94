#pragma once

#include "app/disk_watch.h"
#include "app/file_dialogs.h"
#include "app/kept_edits.h"
#include "app/recent_files.h"
#include "config/edit_history.h"
#include "lang/text_table.h"

#include <QObject>
#include <QTimer>

#include <functional>

class QWidget;

namespace ktr {

class TrialFiles;

/// What the file menu does with the document.
class FileCommands : public QObject
{
    Q_OBJECT

public:
    FileCommands(QWidget &window, Document &document, EditHistory &history, const TextTable &texts);

    /// This run is a trial: what is saved has the user's names for log and archive, and no dialog starts in
    /// the trial's folder. It must outlive this.
    void setTrial(const TrialFiles *trial);

    FileDialogs &dialogs() { return m_dialogs; }
    const QStringList &recent() const { return m_recent.names(); }
    /// Those of the recent files.
    QStringList folders() const;

    void makeNew();
    /// Another station that is like the present one.
    void makeAnother();
    /// What undo or redo led to.
    void reportPresentFile();
    void save() { saveBeside(QString()); }
    void saveAs();
    /// Asks for a file and loads it.
    void loadChosen();
    void load(const QString &fileName);
    /// Loads a file for a module that is to be configured, and asks before whether to save what is edited.
    /// One that is open already stays as it is.
    void openFor(const QString &fileName);
    /// Shows a configuration that stands in no file, under a name for the user. Undo takes it back.
    void openUnsaved(const Configuration &configuration, const QString &name);

    /// Reads the present file at the start; without one all fields silently take their fall-backs.
    void readPresent();
    /// Loads the file of the command line, whose name may start from the present folder, and gives false when
    /// it cannot be opened under either spelling.
    bool loadFirst(const QString &fileName, const QString &asWritten);

    /// Before the program ends: asks whether to save a modified configuration. The program ends whatever the
    /// answer; edits that could not be saved are kept for the next start, and the user is told so.
    void askToSave();
    /// Keeps a modified configuration for the next start, in case this run ends abruptly.
    void keepEdits();
    /// The user wants nothing of them to be kept.
    void declineEdits();
    /// Offers the edits that earlier runs kept, in a box that does not block.
    void offerKept();
    /// Tells, likewise and once, that somebody else has changed the present file.
    void lookAtDisk() { m_disk.look(); }

    /// What is amiss with the files until it is no longer, in a few words and in all of them; empty for
    /// nothing.
    struct Notice
    {
        QString text;
        QString details;
    };
    Notice notice() const;

    /// The file name of the last start, and of this one for the next.
    static QString lastFileName();
    void keepFileName() const;

Q_SIGNALS:
    /// A line for the status bar.
    void statusMessage(const QString &line);
    /// The pages show another configuration.
    void replaced();
    /// The window title has to name another file.
    void titleChanged();
    void recentChanged();
    /// The user wants to see what somebody else has changed.
    void comparisonWanted();
    void noticeChanged();

private:
    void keepLater();
    void saveBeside(const QString &presentFile);
    Status writePresent(QString &backup);
    void reportReading(const ReadReport &report, const QString &fileName);
    void addRecent();
    void noteUnread(const QString &why);
    void noteKeeping(const Status &kept);
    QString sinceThen(const KeptEdits::Copy &copy) const;
    void openKept(const KeptEdits::Copy &copy);

    QWidget &m_window;
    Document &m_document;
    EditHistory &m_history;
    const TextTable &m_texts;
    FileDialogs m_dialogs;
    RecentFiles m_recent;
    KeptEdits m_kept;
    DiskWatch m_disk;
    const TrialFiles *m_trial = nullptr;
    QTimer m_keepTimer;    ///< runs from an edit until that is kept
    QString m_unread;      ///< why a file was not read that should have been
    QString m_keepFailure; ///< why edits cannot be kept, as told
    QString m_failure;     ///< why the last save failed, empty when it did not
    /// The present file, and where what others had written there was kept since it was loaded; empty: nowhere
    std::pair<QString, QString> m_backup;
};

} // namespace ktr
