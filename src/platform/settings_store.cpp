#include "platform/settings_store.h"

#include "platform/registry.h"

namespace ktr {

namespace {

quint32 userRoot()
{
    return MRegistry::GetRootKey(QStringLiteral("hkey_current_user"));
}

QString keyOf(const QString &application, const QString &section)
{
    return QLatin1String("Software\\Program Settings\\") + application + u'\\' + section;
}

} // namespace

// Both go past the 8-bit code page: a file name that it cannot hold must come back at the next start.

QString SettingsStore::GetSetting(const QString &application, const QString &section, const QString &key,
                                  const QString &fallback) const
{
    QString text;
    const auto read = RegistryBackEnd::getText(userRoot(), keyOf(application, section), key, text);
    return read == MRegistry::Error::None ? text : fallback;
}

QList<SettingsStore::Section> SettingsStore::AllSettings(const QString &application) const
{
    return RegistryBackEnd::allTexts(userRoot(), QLatin1String("Software\\Program Settings\\") + application);
}

bool SettingsStore::SaveSetting(const QString &application, const QString &section, const QString &key,
                                const QString &value)
{
    return SaveSettings(application, section, {{key, value}});
}

bool SettingsStore::SaveSettings(const QString &application, const QString &section,
                                 const QList<std::pair<QString, QString>> &values)
{
    return RegistryBackEnd::setTexts(userRoot(), keyOf(application, section), values) ==
           MRegistry::Error::None;
}

} // namespace ktr
