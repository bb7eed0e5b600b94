#include "platform/ending_signals.h"

namespace ktr {

struct EndingSignals::Private
{};

// The end of a session comes to the windows.
EndingSignals::EndingSignals(std::function<void()>) {}

EndingSignals::~EndingSignals() = default;

} // namespace ktr
