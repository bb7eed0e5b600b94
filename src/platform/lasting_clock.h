#pragma once

#include "platform/timers.h"

namespace ktr {

/// Time since some moment in the past, whatever the clock is set to. It runs on while the machine sleeps.
Milliseconds lastingTime();

} // namespace ktr
