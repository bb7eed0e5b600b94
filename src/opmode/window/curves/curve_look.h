#pragma once

namespace ktr {

/// The channel whose colour, line and mark a curve has; `slot` is 1 to mostSeries. The first ones are told
/// from each other most easily.
int lookOfSlot(int slot);

} // namespace ktr
