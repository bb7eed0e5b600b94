#include "opmode/window/quality_bars.h"

#include "look/palettes.h"

#include <QPainter>

#include <array>

namespace ktr {

namespace {

constexpr QSize sizeOfAll(44, 28);
constexpr int best = 31;

/// 0 (-113 dBm or less) to 31 (-51 dBm or more).
std::optional<int> strength(const QString &csq)
{
    bool isNumber = false;
    const int number = csq.section(u',', 0, 0).trimmed().toInt(&isNumber);
    return isNumber && number >= 0 && number <= best ? std::optional(number) : std::nullopt;
}

} // namespace

QualityBars::QualityBars(QWidget *parent) : QWidget(parent)
{
    setFixedSize(sizeOfAll);
}

std::optional<int> QualityBars::filled(const QString &csq)
{
    // Below 2 no module holds a connection, below 10 it is doubtful, from 20 on nothing is to be won.
    constexpr std::array<int, bars> from = {2, 6, 10, 15, 20};
    const std::optional<int> number = strength(csq);
    return number ? std::optional(static_cast<int>(
                        std::ranges::count_if(from, [&](int bound) { return *number >= bound; })))
                  : std::nullopt;
}

QString QualityBars::decibels(const QString &csq)
{
    const std::optional<int> number = strength(csq);
    return number ? QStringLiteral("%1 dBm").arg(2 * *number - 113) : QString();
}

void QualityBars::show(const QString &csq)
{
    m_filled = filled(csq);
    setAccessibleName(tr("Signal: %1").arg(m_filled ? decibels(csq) : tr("not known")));
    update();
}

void QualityBars::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double step = double(width()) / bars;
    for (int bar = 0; bar < bars; ++bar) {
        const double barHeight = height() * (bar + 1.5) / (bars + 0.5);
        const QRectF where(bar * step + 1, height() - barHeight, step - 3, barHeight - 1);
        const bool isFilled = m_filled && bar < *m_filled;
        const QColor colour = m_filled.value_or(0) <= 2 ? doubtText(palette()) : wellText(palette());
        painter.setPen(isFilled ? colour : fieldBorder(palette()));
        painter.setBrush(isFilled ? QBrush(colour) : Qt::NoBrush);
        painter.drawRoundedRect(where, 1.5, 1.5);
    }
}

} // namespace ktr
