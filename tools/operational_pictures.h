#pragma once

#include "lang/text_table.h"

#include <QDir>
#include <QSize>

namespace ktr {

/// Pictures of all pages of the operational mode, with 3 and with 1,000 stations of a make-believe water
/// works, of the window over its record and of somebody else's window over the same stations. `suffix` ends
/// their names. Gives the name of a file that cannot be written, empty when all are.
QString takeOperationalPictures(const QDir &pictures, const TextTable &texts, const QLocale &locale,
                                QSize size, const QString &suffix);

} // namespace ktr
