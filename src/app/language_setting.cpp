#include "app/language_setting.h"

#include "platform/registry.h"

namespace ktr {

namespace {

const QLatin1String root("hkey_current_user");
const QLatin1String key("Software\\Korvane\\KTRconfig");
const QLatin1String valueName("Language");

} // namespace

QString languageSetting()
{
    return MRegistry::GetRegistryString(root, key, valueName);
}

void setLanguageSetting(const QString &language)
{
    MRegistry::SetRegistryString(root, key, valueName, language);
}

QString languageAtStart()
{
    if (languageSetting().isEmpty()) {
        MRegistry::CreateRegistryKey(root, key);
        setLanguageSetting(englishLanguage);
    }
    const QString language = languageSetting();
    return language.isEmpty() ? QString(englishLanguage) : language; // a registry that cannot be written
}

} // namespace ktr
