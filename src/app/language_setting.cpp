#include "app/language_setting.h"

#include "platform/registry.h"

namespace ktr {

namespace {

const QLatin1String root("hkey_current_user");
const QLatin1String registryKey("Software\\Korvane\\KTRconfig");
const QLatin1String valueName("Language");

} // namespace

QString languageSetting()
{
    return MRegistry::GetRegistryString(root, registryKey, valueName);
}

void setLanguageSetting(const QString &language)
{
    MRegistry::SetRegistryString(root, registryKey, valueName, language);
}

QString languageAtStart()
{
    if (languageSetting().isEmpty()) {
        MRegistry::CreateRegistryKey(root, registryKey);
        setLanguageSetting(englishLanguage);
    }
    const QString language = languageSetting();
    return language.isEmpty() ? QString(englishLanguage) : language; // a registry that cannot be written
}

} // namespace ktr
