#include "platform/thread_set_up.h"

namespace ktr {

void setUpThreads() {}

} // namespace ktr
