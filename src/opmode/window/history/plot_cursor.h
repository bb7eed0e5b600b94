#pragma once

#include "opmode/window/history/plot_places.h"

#include <array>

namespace ktr {

/// The place under the mouse, or that the keys went to: a line at its time through all parts of the plot, and
/// a ring around the entry if there is one.
class PlotCursor
{
public:
    explicit PlotCursor(const std::array<QCPAxisRect *, 2> &parts);
    PlotCursor(const PlotCursor &) = delete; // its marks are the plot's
    PlotCursor &operator=(const PlotCursor &) = delete;

    /// Where it is, null for nowhere.
    const std::optional<PlotPlace> &place() const { return m_place; }
    /// Puts it there; `graph` is that of the place's channel, null without one.
    void show(const std::optional<PlotPlace> &place, QCPGraph *graph);
    void applyLook(const QPalette &palette);

private:
    std::array<QCPItemStraightLine *, 2> m_lines;
    QCPItemTracer *m_ring;
    std::optional<PlotPlace> m_place;
};

} // namespace ktr
