#pragma once

#include <QString>

namespace ktr::serviceCommands {

/// The module says which application and which configuration it holds.
inline const QString version = QStringLiteral("V,§");

/// The module takes a firmware image next.
inline const QString firmware = QStringLiteral("§88");

/// The module sends its archive, one line for each channel.
inline const QString archive = QStringLiteral("§,77");

/// One of the two steps at a reference point of an analog output.
inline QString calibration(int button, int code)
{
    return QStringLiteral("§,%1,%2").arg(button).arg(code);
}

} // namespace ktr::serviceCommands
