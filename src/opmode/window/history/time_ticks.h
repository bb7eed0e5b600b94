#pragma once

#include "opmode/window/history/qcustomplot_header.h"

namespace ktr {

/// Round steps of time, named by time and date below each other. There are at most tickCount(). Times are
/// taken for UTC, as those of a module's wall clock are, or shown as they are on the wall.
class TimeTicks : public QCPAxisTicker
{
public:
    explicit TimeTicks(Qt::TimeSpec times) : m_times(times) {}

protected:
    double getTickStep(const QCPRange &range) override
    {
        constexpr double minute = 60;
        constexpr double hour = 60 * minute;
        constexpr double day = 24 * hour;
        // Each at most twice the one before: there are more than half as many as there is room for.
        static constexpr std::array steps = {
            minute,      2 * minute, 3 * minute, 5 * minute, 10 * minute, 15 * minute, 20 * minute,
            30 * minute, hour,       2 * hour,   3 * hour,   4 * hour,    6 * hour,    8 * hour,
            12 * hour,   day,        2 * day,    3 * day,    5 * day,     10 * day,    20 * day,
            30 * day,    50 * day,   100 * day,  200 * day,  300 * day,   500 * day,   1000 * day};
        const auto step =
            std::ranges::find_if(steps, [&](double each) { return each * tickCount() > range.size(); });
        m_isDays = step == steps.end() || *step >= day;
        if (m_times == Qt::LocalTime) { // so that they begin with a day
            const QDate first = QDateTime::fromSecsSinceEpoch(qRound64(range.lower)).date();
            setTickOrigin(double(first.startOfDay().toSecsSinceEpoch()));
        }
        return step == steps.end() ? 5000 * day : *step;
    }
    int getSubTickCount(double) override { return 1; }
    QString getTickLabel(double tick, const QLocale &, QChar, int) override
    {
        // Where summer time begins or ends in between, a day begins an hour beside the tick.
        const qint64 withinDay = m_isDays && m_times == Qt::LocalTime ? 6 * 3600 : 0;
        const QDateTime moment = QDateTime::fromSecsSinceEpoch(qRound64(tick) + withinDay, m_times);
        return moment.toString(m_isDays ? QStringLiteral("dd.MM.\nyyyy") : QStringLiteral("HH:mm\ndd.MM."));
    }

private:
    Qt::TimeSpec m_times;
    bool m_isDays = false;
};

} // namespace ktr
