#pragma once

#include "config/configuration.h"

#include <QLocale>
#include <QString>

namespace ktr {

/// The configuration that a neutral module holds once it was given every command for `meant`: texts in the
/// wire's character set, numbers with a decimal point, what no command carries at its neutral value. The
/// program's locale writes the combined limit values' references. A field that no module would take
/// stays as meant, so that comparing shows it.
Configuration asHeld(const Configuration &meant, const QLocale &locale);

/// Copies from `meant` into `held` what no command sends to a module, so that a file which was never in a
/// module can be compared, too: who made the file, the administrators' names, the units, values that are not
/// to be sent, the start of a switch point without a target, and what the file of `meant` leaves to time or
/// chance: that is where `meantLater`, the same file read at another time, differs.
void takeWhatIsNeverSent(Configuration &held, const Configuration &meant, const Configuration &meantLater);

/// An address in the form that the configuration keeps: "010.000.000.001".
QString addressForm(quint32 address);

/// The holiday list's line for a slot of the form "YYMMDD"; empty when that is no date of this century.
QString holidayLine(QStringView slot);

/// The slot of a holiday that was not given.
inline constexpr char16_t emptyHolidaySlot[] = u"000101";

} // namespace ktr
