#pragma once

#include "lang/text_table.h"

#include <QString>

#include <optional>

namespace ktr {

/// The message for an address that is not four numbers from 0 to 255 with dots between them; nothing for a
/// sound one. Leading zeros are sound.
std::optional<Text> addressProblem(const QString &address);

/// "010.000.000.001" as the address that the operating system takes for it: 10.0.0.1.
QString withoutLeadingZeros(const QString &address);

} // namespace ktr
