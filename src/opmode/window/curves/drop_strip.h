#pragma once

#include "opmode/curves/curve_series.h"

#include <QLabel>

#include <functional>

namespace ktr {

/// A strip that is there while something is dragged, and takes it for the curves.
class DropStrip : public QLabel
{
public:
    DropStrip(const OperationalMode &mode, std::function<void(const QList<SeriesId> &)> dropped,
              QWidget *parent = nullptr);
    /// To be called when a drag begins and when it is over.
    void setDragging(bool isDragging);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    const OperationalMode &m_mode;
    std::function<void(const QList<SeriesId> &)> m_dropped;
};

} // namespace ktr
