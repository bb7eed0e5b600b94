#pragma once

#include "platform/settings_store.h"

#include <QStringList>

namespace ktr {

/// The files used last, the latest first, kept in the user's settings store.
class RecentFiles
{
public:
    static constexpr int longest = 8;

    RecentFiles();

    const QStringList &names() const { return m_names; }

    /// Puts a file in front. Gives false when the list could not be kept for the next start.
    bool add(const QString &fileName);

private:
    SettingsStore m_store;
    QStringList m_names;
};

} // namespace ktr
