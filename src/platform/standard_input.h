#pragma once

namespace ktr {

/// Reads what comes on standard input, and drops it, until there is no more. The process may end meanwhile.
void readInputToItsEnd();

} // namespace ktr
