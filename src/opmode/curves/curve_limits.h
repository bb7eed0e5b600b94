#pragma once

#include <QList>
#include <QString>

namespace ktr {

/// A limit value of an input, in the unit of its values.
struct CurveLimit
{
    double value = 0;
    QString text{}; ///< what it is called
    bool operator==(const CurveLimit &) const = default;
};

} // namespace ktr
