#pragma once

#include "opmode/window/history/qcustomplot_header.h"

namespace ktr {

/// Colours and fonts of a plot, from the palette that the program has at the moment: of the curve of a
/// channel, and of one part of the plot with its axes.
void applySeriesLook(QCPGraph &graph, int channel, bool isSteps, const QPalette &palette);
void applyAxesLook(const QCPAxisRect &part, const QPalette &palette, const QFont &font);

} // namespace ktr
