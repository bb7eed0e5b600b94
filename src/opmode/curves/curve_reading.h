#pragma once

#include "opmode/curves/curve_points.h"
#include "opmode/tree/station_tree.h"

namespace ktr {

/// The curve of an input as it was read.
struct ReadCurve
{
    Status status = Status::done();
    CurvePoints curve{};
};
/// From the record, on the thread that asks it.
ReadCurve readCurve(RecordReader &reader, qint64 station, int channel, const CurveRange &range,
                    HistoryLevel level);
/// From the tree, which has what it was sent; where nothing is recorded.
ReadCurve treeCurve(const StationTree &tree, const QString &kennung, int channel, const CurveRange &range,
                    HistoryLevel level);
/// The inputs that treeCurve() has anything of.
QList<int> treeChannels(const StationTree &tree, const QString &kennung);

/// A notification of a station.
struct CurveMark
{
    qint64 at = 0;
    qint64 station = 0; ///< its number in the record
    QString text{};
    bool isAlarm = false;
    bool operator==(const CurveMark &) const = default;
};
struct ReadMarks
{
    Status status = Status::done();
    QList<CurveMark> marks{}; ///< the newest first
    bool areAll = true;
};
/// The notifications of these stations, if there are very many the newest. What went to several numbers is
/// told once.
ReadMarks readMarks(RecordReader &reader, const QList<qint64> &stations, const CurveRange &range);

} // namespace ktr
