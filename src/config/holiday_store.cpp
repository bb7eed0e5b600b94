#include "config/holiday_store.h"

#include "platform/settings_store.h"

namespace ktr {

namespace {

QString lineKey(int index)
{
    return QStringLiteral("free%1").arg(index);
}

} // namespace

void loadHolidays(HolidayList &holidays, const SettingsStore &store)
{
    holidays.clear();
    for (int index = 0; index < HolidayList::capacity; ++index) {
        holidays.append(store.GetSetting(settingsOwner, settings_sections::holidays, lineKey(index)));
    }
}

bool saveHolidays(const HolidayList &holidays, SettingsStore &store)
{
    QList<std::pair<QString, QString>> lines;
    // The unused keys are written too, or a shorter list would keep the tail of a longer one.
    for (int index = 0; index < HolidayList::capacity; ++index) {
        lines.emplace_back(lineKey(index), holidays.lines().value(index));
    }
    return store.SaveSettings(settingsOwner, settings_sections::holidays, lines);
}

} // namespace ktr
