#pragma once

#include "config/document.h"

#include <QDateTime>
#include <QList>
#include <QString>

namespace ktr {

/// Recovery copies of unsaved edits, one for each run. A copy is written before anything that may end the
/// program, and removed when the edits are saved or declined. So the next start finds them, whatever ends the
/// program in between.
///
/// A copy is an ordinary configuration file, `unsaved-20261122-103011.xml`, with the name of the edited file
/// in a comment at its end. Only its owner can read it, because it may hold the SIM's PIN.
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
    /// The copies of earlier runs, the newest first.
    QList<Copy> found() const;

    /// Writes this run's copy, replacing its former one: into the user's data folder or, if that is
    /// impossible, the program's.
    Status keep(const Configuration &configuration, const QString &fileName);
    /// This run's copy; empty when there is none.
    const QString &present() const { return m_present; }
    /// Makes a copy that was found this run's own.
    void adopt(const QString &path) { m_present = path; }
    /// The edits of this run are saved or declined: removes its copy.
    void drop();
    /// The editor holds something else now: the copy stays for the next start.
    void leave() { m_present.clear(); }

private:
    QStringList folders() const;

    const Environment &m_environment;
    QString m_present;
};

} // namespace ktr
