#pragma once

#include "config/document.h"

#include <QDateTime>
#include <QList>
#include <QString>

namespace ktr {

/// Copies of edits that their own file does not have, one a run. A copy is written as soon as the program may
/// end without them, and stays until they are saved or not wanted any more, so that whatever ends the program
/// in between, the next start finds them.
///
/// A copy is a configuration file like any other, `unsaved-20261122-103011.xml`, with the name of the file
/// that it was meant for in a comment at its end. It is its owner's alone, for it may hold the SIM's PIN.
class KeptEdits
{
public:
    explicit KeptEdits(const Environment &environment);

    struct Copy
    {
        QString path;
        QString fileName; ///< empty when the edits had no file yet
        QDateTime when;
    };
    /// What earlier runs left, the newest first.
    QList<Copy> found() const;

    /// Writes this run's copy anew: into the user's data folder, or where that cannot be, into the program's.
    Status keep(const Configuration &configuration, const QString &fileName);
    /// This run's copy; empty when there is none.
    const QString &present() const { return m_present; }
    /// From now on a copy that was found is this run's.
    void adopt(const QString &path) { m_present = path; }
    /// The edits of this run are saved, or not wanted.
    void drop();
    /// The editor holds something else now: the copy stays for the next start.
    void leave() { m_present.clear(); }

private:
    QStringList folders() const;

    const Environment &m_environment;
    QString m_present;
};

} // namespace ktr
