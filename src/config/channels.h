#pragma once

#include <QString>
#include <QStringList>

namespace ktr {

/// The module's input and output points are numbered 1 to 18; 0 means that none is chosen.
inline constexpr int channelCount = 18;

/// The list text of a channel 0..18, empty outside. The blank in "10 Analog In 2" belongs there.
QString channelText(int channel);

/// A switch point acts on an output or on an administrator's number: positions 0..10 of the target list.
inline constexpr int targetCount = 11;
inline constexpr int firstAdministratorTarget = 5;

/// The list text of a target position 0..10, empty outside.
QString targetText(int position);

/// The number by which the module knows the target at a list position; 0 for a position outside the list.
int targetCode(int position);

/// The list position of a target that the module knows by `code`, 0 for a code of no target.
int targetPosition(int code);

/// Station types that the module may be: "KTR" and "NVA".
QStringList stationTypes();
bool isStationType(const QString &text);

} // namespace ktr
