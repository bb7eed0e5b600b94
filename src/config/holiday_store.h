#pragma once

#include "config/holiday_list.h"

namespace ktr {

class SettingsStore;

// The user's own copy of the holiday list, apart from any file, so that one list serves several modules.

/// Replaces the list by the stored one, which may be empty.
void loadHolidays(HolidayList &holidays, const SettingsStore &store);

/// Stores the list in place of the one before. Gives false at the first line that could not be stored.
bool saveHolidays(const HolidayList &holidays, SettingsStore &store);

} // namespace ktr
