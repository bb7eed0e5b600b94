#include "platform/service_manager.h"

namespace ktr {

bool errorsGoToJournal()
{
    return false;
}

void tellServiceManager(const QByteArray &) {}

Milliseconds serviceWatchdogTime()
{
    return Milliseconds(0);
}

} // namespace ktr
