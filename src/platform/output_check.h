#pragma once

#include "platform/status.h"

#include <QString>

namespace ktr {

// Looks whether results can be written before what they are of is begun.

/// Whether replaceFile() could write a file of this name; nothing of it is changed.
Status checkOutputFile(const QString &path);

/// Makes a folder where there is none, and tries whether files can be made in it.
Status makeOutputFolder(const QString &folder);

} // namespace ktr
