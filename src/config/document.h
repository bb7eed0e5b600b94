#pragma once

#include "config/configuration.h"
#include "config/configuration_file.h"
#include "platform/environment.h"
#include "platform/file_mark.h"
#include "platform/status.h"

#include <QDateTime>
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

    /// Puts a snapshot in place together with the mark and the source that belonged to it.
    void restore(const Configuration &snapshot, bool modified, const QString &source = {});

    /// Takes the names of inputs and outputs from beside the present file.
    void readNames(QStringList &remarks);

    /// The menu command "new": the file name and the mark stay as they are.
    void makeNew();

    /// Another station that is like this one (see makeAnother()), without a file, as a user's edit.
    void makeAnother();

    /// Blanks at the end of the name do not count where the file is looked for, unless one is called so:
    /// the command line leaves them there.
    const QString &fileName() const { return m_fileName; }
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
    const QString &source() const { return m_source; }

    /// Whether somebody else has changed the source since it was read or saved. One that is gone is not.
    bool isChangedOnDisk() const;

    /// Before save(): where save() would replace a file that this program has not read, or that somebody else
    /// has changed since, makes a copy beside it, with "~" behind its name, and returns the copy's name in
    /// `backup`. What this program wrote there itself since the last such copy does not take its place. After
    /// a failure that file must not be written over.
    Status backUp(QString &backup);

    /// Writes the present file, which must have a name, and the names of inputs and outputs beside it. The
    /// mark stays set when that fails. What stood in a file of names that this program has not read, or that
    /// somebody else has changed since, is kept with "~" behind its name.
    Status save();

    /// The stamp that an edit at `now` leaves: date and time, no comma (it travels in a command).
    static QString stamp(const QDateTime &now);

Q_SIGNALS:
    void changed();
    void fileNameChanged(const QString &fileName);
    void modifiedChanged(bool modified);
    void saved();

private:
    /// A file as this program last read or wrote it.
    struct KnownFile
    {
        QString path;
        FileMark mark;

        bool operator==(const KnownFile &) const = default;
    };
    static KnownFile known(const QString &path);
    Status saveNames(const QString &file);

    Environment m_environment;
    Configuration m_configuration;
    QString m_fileName;
    QString m_source;
    KnownFile m_known;
    KnownFile m_knownNames;               ///< the file of names
    QHash<QString, KnownFile> m_backedUp; ///< the files backed up in this run, as last written then or since
    bool m_modified = false;
};

} // namespace ktr
