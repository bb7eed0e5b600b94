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
/// The times of a range in which stations were not heard and nothing was measured, not even by an archive
/// that was sent later. Shorter ones than can be seen are left out.
struct GapsQuestion
{
    QList<std::pair<qint64, int>> inputs{}; ///< stations and their inputs
    CurveRange range;
    qint64 now = 0;
    bool hasOneKeeper = true; ///< as UnheardTimes has it
};
struct ReadGaps
{
    Status status = Status::done();
    QList<std::vector<CurveRange>> gaps{}; ///< of each of the inputs, one after the other
};
ReadGaps readGaps(RecordReader &reader, const GapsQuestion &question);

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
