#pragma once

#include "lang/text_table.h"

#include <QString>

#include <optional>

namespace ktr {

/// The message for an address that is not four numbers from 0 to 255 with dots between them; nothing for a
/// sound one. Leading zeros are sound.
std::optional<Text> addressProblem(const QString &address);

} // namespace ktr
