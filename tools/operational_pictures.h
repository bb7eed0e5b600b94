#pragma once

#include "lang/text_table.h"

#include <QDir>

namespace ktr {

/// Pictures of all pages of the operational mode, with 3 and with 1,000 stations of a make-believe water
/// works. `suffix` ends their names. Gives the name of a file that cannot be written, empty when all are.
QString takeOperationalPictures(const QDir &pictures, const TextTable &texts, const QLocale &locale,
                                const QString &suffix);

} // namespace ktr
