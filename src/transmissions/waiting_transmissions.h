#pragma once

#include "transmissions/transmission_memory.h"

namespace ktr {

// What was transmitted while the server with the record could not be reached, in a file of the user's own.

/// Writes transmissions into the file, each in place of how it stood there before.
Status keepWaiting(const QString &file, std::vector<RememberedTransmission> transmissions);

/// Brings all that waits in the file to where it belongs, and removes the file; one that another program is
/// just bringing stays. Gives the number of transmissions. Does nothing where there is no file.
Status handOverWaiting(const QString &file, TransmissionTable &to, int &count);

} // namespace ktr
