#pragma once

namespace ktr {

/// What must be so before a thread is begun. Cheap.
void setUpThreads();

} // namespace ktr
