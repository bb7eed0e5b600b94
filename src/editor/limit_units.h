#pragma once

#include "config/configuration.h"
#include "lang/text_table.h"

namespace ktr {

/// In what a channel's limit and hysteresis count; "0/1" and "0" where the channel has two states only.
struct LimitUnits
{
    QString limit;
    QString hysteresis;
};
LimitUnits limitUnits(const Configuration &configuration, int channel, const TextTable &texts);

} // namespace ktr
