#pragma once

#include "config/document.h"

#include <QString>

namespace ktr::cli {

enum class Loaded {
    Whole,     ///< the document was read; fields that were of no use are told
    Fallbacks, ///< it is no configuration: every field has its fall-back
    NotOpened, ///< there is no such file
};

/// Opens a file as the menu does, and tells on stderr what the menu keeps to itself.
Loaded load(Document &document, const QString &fileName);

/// Tells that a command is too long to be sent.
void complainTooLong(std::optional<int> step, const QString &command);

} // namespace ktr::cli
