#pragma once

#include "look/appearance.h"

namespace ktr {

/// The appearance that the user chose, kept in the settings store; System where none is kept.
Appearance appearanceSetting();
void setAppearanceSetting(Appearance appearance);

} // namespace ktr
