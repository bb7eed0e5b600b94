#include "app/appearance_setting.h"

#include "platform/settings_store.h"

#include <array>

namespace ktr {

namespace {

const QString appearanceKey = QStringLiteral("appearance");

constexpr std::array names = {QLatin1StringView("system"), QLatin1StringView("light"),
                              QLatin1StringView("dark")};

} // namespace

Appearance appearanceSetting()
{
    const QString name =
        SettingsStore().GetSetting(settingsOwner, settings_sections::mainWindow, appearanceKey);
    const auto found = std::ranges::find(names, name);
    return found == names.end() ? Appearance::System : static_cast<Appearance>(found - names.begin());
}

void setAppearanceSetting(Appearance appearance)
{
    SettingsStore().SaveSetting(settingsOwner, settings_sections::mainWindow, appearanceKey,
                                names[static_cast<std::size_t>(appearance)]);
}

} // namespace ktr
