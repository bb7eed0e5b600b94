#include "platform/display_awake.h"

namespace ktr {

/// Each desktop has a service of its own for it.
void setDisplayAwake(bool) {}

} // namespace ktr
