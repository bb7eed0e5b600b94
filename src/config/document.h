#pragma once

#include "config/configuration.h"
#include "config/configuration_file.h"
#include "platform/environment.h"
#include "platform/file_mark.h"
#include "platform/status.h"

#include <QHash>
#include <QObject>
#include <QString>

#include <functional>

namespace ktr {

/// The one configuration that is being edited, with its file. Snapshots are copies of the configuration:
/// an undo stack keeps what configuration() gives and hands it back to restore().
class Document : public QObject
{
    Q_OBJECT

public:
    explicit Document(Environment environment, QObject *parent = nullptr);

    const Configuration &configuration() const { return m_configuration; }
    const Environment &environment() const { return m_environment; }

    /// A user's edit: marks the configuration modified and stamps it with the present time.
    void edit(const std::function<void(Configuration &)> &change);

    /// A change that does not count as an edit, such as a holiday removed: mark and stamp stay as they are.
    void adjust(const std::function<void(Configuration &)> &change);

    /// The file that a configuration was read from or last saved to, and what stood there and in the names
    /// beside it then. Without a path: none.
    struct Source
    {
        QString path;
        FileMark configuration;
        FileMark names;

        bool operator==(const Source &) const = default;
    };

    /// Puts a snapshot in place together with the mark and the source that belonged to it.
    void restore(const Configuration &snapshot, bool modified, const Source &source);
    void restore(const Configuration &snapshot, bool modified) { restore(snapshot, modified, Source()); }

    /// The menu command "new": the file name and the mark stay as they are.
    void makeNew();

    /// Another station that is like this one (see makeAnother()), without a file, as a user's edit.
    void makeAnother();

    /// Blanks at the end of the name do not count where the file is looked for, unless one is called so:
    /// the command line leaves them there.
    const QString &fileName() const { return m_fileName; }
    /// The path that a file name stands for.
    static QString fileCalled(const QString &name);
    void setFileName(const QString &fileName);

    bool isModified() const { return m_modified; }
    void setModified(bool modified);

    /// Opens a file: it must exist, else nothing changes. Pipes and devices, which may never end, are none.
    /// Becomes the present file and is read; when it cannot be loaded, the fall-backs stand in the editor and
    /// there is no present file.
    ReadReport load(const QString &fileName);

    /// Reads the present file, whether it exists or not, and the names beside it.
    ReadReport readPresentFile();

    /// The file that the configuration was read from or last saved to; empty for a new one.
    const QString &source() const { return m_source.path; }
    const Source &wholeSource() const { return m_source; }

    /// Whether somebody else has changed the source or the names beside it since they were read or saved.
    /// What is gone is not changed.
    bool isChangedOnDisk() const { return isChangedOnDisk(m_source); }
    static bool isChangedOnDisk(const Source &source);

    /// Before save(): where save() would replace a file that this configuration was not read from, or that
    /// somebody else has changed since, keeps what stands there beside it (see keepBeside()) and returns the
    /// copy's name in `backup`. What this program wrote there itself since the last such copy is not kept so.
    /// After a failure that file must not be written over.
    Status backUp(QString &backup);

    /// Writes the present file, which must have a name, and the names of inputs and outputs beside it. The
    /// mark stays set when that fails. What stood in a file of names that does not belong to this
    /// configuration, or that somebody else has changed since, is kept in the same way.
    Status save();

    /// The stamp that an edit at `now` leaves: date and time, no comma (it travels in a command).
    static QString stamp(const QDateTime &now);

Q_SIGNALS:
    void changed();
    void fileNameChanged(const QString &fileName);
    void modifiedChanged(bool modified);
    void saved();

private:
    /// A copy that this run has kept, and what it has written over that file since.
    struct Kept
    {
        QString copy;
        FileMark written;
    };
    Status keep(const QString &path, bool isOwn, QString &copy);
    void noteWritten(const QString &path, const FileMark &mark);
    Status saveNames(const QString &file);

    Environment m_environment;
    Configuration m_configuration;
    QString m_fileName;
    Source m_source;
    QHash<QString, Kept> m_kept; ///< by the path of the file that was replaced
    bool m_modified = false;
};

} // namespace ktr
