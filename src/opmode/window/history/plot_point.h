#pragma once

#include <QtGlobal>

namespace ktr {

/// A value of an input at a moment.
struct PlotPoint
{
    int channel; ///< 1 to 18
    qint64 time; ///< seconds of wall time since 1970
    double value;
};

} // namespace ktr
