#include "platform/display_awake.h"

namespace ktr {

// Each desktop has a service of its own for it.
DisplayAwake::DisplayAwake() = default;
DisplayAwake::~DisplayAwake() = default;

} // namespace ktr
