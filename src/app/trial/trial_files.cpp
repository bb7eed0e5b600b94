#include "app/trial/trial_files.h"

#include "platform/environment.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace ktr {

TrialFiles::TrialFiles(QString folder, QString own) : m_folder(std::move(folder)), m_own(std::move(own)) {}

bool TrialFiles::isInside(const QString &path) const
{
    const QString clean = QDir::cleanPath(QDir::fromNativeSeparators(path));
    const QString folder = QDir::cleanPath(m_folder);
    return clean == folder || clean.startsWith(folder + u'/');
}

void TrialFiles::take(Configuration &configuration)
{
    takeName(configuration.info.logFile);
    takeName(configuration.info.historyExportFile);
}

void TrialFiles::giveBack(Configuration &configuration) const
{
    giveNameBack(configuration.info.logFile);
    giveNameBack(configuration.info.historyExportFile);
}

/// Two that are called the same in different folders stay apart.
void TrialFiles::takeName(QString &name)
{
    if (name.isEmpty() || isInside(name)) {
        return;
    }
    const QFileInfo file(QDir::fromNativeSeparators(name));
    QString taken = joinPath(m_folder, file.fileName());
    for (int number = 2; m_meant.value(taken, name) != name; ++number) {
        taken = joinPath(m_folder, QString::number(number) + u'-' + file.fileName());
    }
    m_meant.insert(taken, name);
    name = taken;
}

void TrialFiles::giveNameBack(QString &name) const
{
    if (m_meant.contains(name)) {
        name = m_meant.value(name);
    } else if (isInside(name)) {
        name = joinPath(m_own, QFileInfo(QDir::fromNativeSeparators(name)).fileName());
    }
}

} // namespace ktr
