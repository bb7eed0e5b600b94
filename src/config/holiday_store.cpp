#include "config/holiday_store.h"

#include "platform/settings_store.h"

namespace ktr {

namespace {

const QString application = QStringLiteral("KTR_Config");
const QString section = QStringLiteral("Feiertage");

QString lineKey(int index)
{
    return QStringLiteral("free%1").arg(index);
}

} // namespace

void loadHolidays(HolidayList &holidays, const SettingsStore &store)
{
    holidays.clear();
    for (int index = 0; index < HolidayList::capacity; ++index) {
        holidays.append(store.GetSetting(application, section, lineKey(index)));
    }
}

bool saveHolidays(const HolidayList &holidays, SettingsStore &store)
{
    for (int index = 0; index < HolidayList::capacity; ++index) {
        // The unused keys are written too, or a shorter list would keep the tail of a longer one.
        if (!store.SaveSetting(application, section, lineKey(index), holidays.lines().value(index))) {
            return false;
        }
    }
    return true;
}

} // namespace ktr
