#pragma once

#include "record/record_file.h"

#include <QStringList>

namespace ktr {

/// What became of a record that was damaged, removed or replaced, a line each; none where it was not.
QStringList damageTold(const QString &path, const OpenedRecord &opened);

} // namespace ktr
