#pragma once

#include "platform/environment.h"

#include <QString>

namespace ktr {

/// Where transmissions are remembered: in the record on a server where there is one (`server`, or else
/// KTR_RECORD, or else that of the operational mode's settings), or in a file of the user's own. Empty where
/// nothing is to be left.
QString transmissionsPlace(const QString &server, const Environment &environment);

/// Where transmissions wait that a server is to remember which cannot be reached; empty where there is no
/// folder for it.
QString waitingTransmissionsPlace(const Environment &environment);

} // namespace ktr
