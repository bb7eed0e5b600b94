#pragma once

#include "platform/timers.h"

#include <QByteArray>

namespace ktr {

// What started the program as a service and looks after it: systemd, where the system has it. Nothing happens
// where nothing did.

/// Whether standard error goes to its journal, which reads urgencies such as "<4>" in front of lines.
bool errorsGoToJournal();

/// Tells it something, in its own words: "READY=1", "STATUS=3 stations".
void tellServiceManager(const QByteArray &what);

/// It ends the program unless it is told "WATCHDOG=1" at least once in this time; 0 when it does not.
Milliseconds serviceWatchdogTime();

} // namespace ktr
