#pragma once

#include "config/configuration.h"
#include "lang/text_table.h"
#include "platform/environment.h"
#include "transmissions/transmission_memory.h"

namespace ktr {

/// Whether a receipt can be written under this name: it ends in ".pdf" or ".json".
bool isReceiptName(const QString &path);

class Printout;

/// The pages of a receipt: what is known of the transmission, its commands, the configuration.
Printout receiptPages(const RememberedTransmission &transmission, const Configuration &configuration,
                      const TextTable &texts, const Environment &environment);

/// Writes what a transmission brought to a module, as proof of the work: what is known of it, each command
/// and what became of it, and the configuration as it was sent, without its PIN. A PDF has all of that as
/// pages and needs an application object that knows fonts; JSON has the configuration as its file's text.
Status writeReceipt(const QString &path, const RememberedTransmission &transmission, const TextTable &texts,
                    const Environment &environment);

} // namespace ktr
