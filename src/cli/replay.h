#pragma once

#include <QString>

namespace ktr::cli {

/// Plays the module of a conversation log behind a pseudo-terminal linked at `linkPath` until the log ends.
/// Gives the exit code: done when the program said what it says in the log.
int replay(const QString &logPath, const QString &linkPath);

} // namespace ktr::cli
