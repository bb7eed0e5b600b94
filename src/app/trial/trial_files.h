#pragma once

#include "config/configuration.h"

#include <QHash>
#include <QString>

namespace ktr {

/// Where a configuration's log and archive are written while it is in a trial: into the trial's folder. What
/// is saved to a file of the user's has the names that the configuration came with.
class TrialFiles
{
public:
    /// `own` is the user's folder for what a new configuration names.
    TrialFiles(QString folder, QString own);

    /// Leads both names into the folder.
    void take(Configuration &configuration);
    /// Puts the names back that lead there.
    void giveBack(Configuration &configuration) const;
    /// Whether a path leads into the folder, which vanishes.
    bool isInside(const QString &path) const;

private:
    void takeName(QString &name);
    void giveNameBack(QString &name) const;

    QString m_folder;
    QString m_own;
    QHash<QString, QString> m_meant; ///< by the name in the folder
};

} // namespace ktr
