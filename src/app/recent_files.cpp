#include "app/recent_files.h"

namespace ktr {

namespace {

const QString application = QStringLiteral("KTR_Config");
const QString section = QStringLiteral("Recent");

QString key(int index)
{
    return QStringLiteral("file%1").arg(index);
}

} // namespace

RecentFiles::RecentFiles()
{
    for (int index = 0; index < longest; ++index) {
        const QString name = m_store.GetSetting(application, section, key(index));
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
    const QStringList before = m_names;
    m_names.removeAll(fileName);
    m_names.prepend(fileName);
    m_names.resize(std::min<qsizetype>(m_names.size(), longest));
    bool kept = true;
    for (int index = 0; index < longest; ++index) {
        if (m_names.value(index) != before.value(index)) {
            kept = m_store.SaveSetting(application, section, key(index), m_names.value(index)) && kept;
        }
    }
    return kept;
}

} // namespace ktr
