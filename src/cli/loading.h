#pragma once

#include "config/document.h"
#include "simulator/replay.h"

#include <QString>

namespace ktr::cli {

/// Opens a file as the menu does, and complains about what the menu does not mention. False when there is no
/// such file or it is no configuration: nobody means one of fall-backs.
bool load(Document &document, const QString &fileName);

/// Saves as the menu does: what the document was not read from and stands in its place is kept, which is
/// told.
Status saveKeeping(Document &document);

/// Reads what was said from a conversation log, which may be a pipe. A failure names the file.
Status loadLog(const QString &fileName, RecordedConversation &conversation);

/// Complains that a command is too long to be sent.
void complainTooLong(std::optional<int> step, const QString &command);

} // namespace ktr::cli
