#pragma once

#include "transmissions/transmission_memory.h"

namespace ktr::cli {

/// Gives the memory a file for what waits, and complains when `what` ("the transmission") is not remembered,
/// waits for its server, or the memory was damaged.
void setUpMemory(TransmissionMemory &memory, const QString &what);

/// Of those that waited.
void tellHandedOver(int count);

} // namespace ktr::cli
