#pragma once

#include "config/document.h"

#include <QString>

namespace ktr::cli {

enum class Loaded {
    Whole,     ///< the document was read; there were complaints about unusable fields
    Fallbacks, ///< it is no configuration: every field has its fall-back
    NotOpened, ///< there is no such file
};

/// Opens a file as the menu does, and complains about what the menu does not mention.
Loaded load(Document &document, const QString &fileName);

/// Complains that a command is too long to be sent.
void complainTooLong(std::optional<int> step, const QString &command);

} // namespace ktr::cli
