#include "app/recent_files.h"

namespace ktr {

namespace {

QString recentKey(int index)
{
    return QStringLiteral("file%1").arg(index);
}

} // namespace

RecentFiles::RecentFiles()
{
    for (int index = 0; index < longest; ++index) {
        const QString name =
            m_store.GetSetting(settingsOwner, settings_sections::recentFiles, recentKey(index));
        if (!name.isEmpty() && !m_names.contains(name)) {
            m_names += name;
        }
    }
}

bool RecentFiles::add(const QString &fileName)
{
    if (!m_names.isEmpty() && m_names.front() == fileName) {
        return true;
    }
    m_names.removeAll(fileName);
    m_names.prepend(fileName);
    m_names.resize(std::min<qsizetype>(m_names.size(), longest));
    QList<std::pair<QString, QString>> entries;
    for (int index = 0; index < longest; ++index) {
        entries.emplace_back(recentKey(index), m_names.value(index));
    }
    return m_store.SaveSettings(settingsOwner, settings_sections::recentFiles, entries);
}

} // namespace ktr
