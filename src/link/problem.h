#pragma once

#include <QString>

namespace ktr {

/// Something wrong with a configuration: the file or the module would choke on it, it has no effect, or a
/// dangerous one.
struct Problem
{
    QString place;   ///< the file's element and field, or the transmission's step
    QString control; ///< the control that shows it; empty when there is no single one
    int entry = 0;   ///< of its record in the array of records
    QString message; ///< for the user, after the place

    bool operator==(const Problem &) const = default;
};

} // namespace ktr
