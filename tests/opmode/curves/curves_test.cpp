#include "opmode/curves/curve_csv.h"
#include "platform/csv.h"

#include <QTest>

#include <algorithm>

using namespace ktr;
using namespace Qt::StringLiterals;

namespace {

constexpr qint64 minute = 60'000;
constexpr qint64 hour = 60 * minute;

qint64 moment(int year, int month, int day, int hours = 0, int minutes = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hours, minutes)).toMSecsSinceEpoch();
}

CurvePoints built(HistoryLevel level, const QList<std::pair<qint64, double>> &values)
{
    CurveBuilder builder(level, {0, 1});
    for (const auto &[at, value] : values) {
        builder.add(at, value);
    }
    return builder.take();
}

CurveSeries seriesOf(const QString &station, const QString &input, const QString &unit)
{
    return {{station, 9}, 1, station, input, unit};
}

} // namespace

class CurvesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void initMain() { qputenv("TZ", "Europe/Berlin"); }

    void lengthsOfTimesAreThoseOfTheCalendar()
    {
        // Summer time ended on 25 October 2026.
        const qint64 end = moment(2026, 10, 26);
        QCOMPARE(rangeEndingAt(CurveSpan::Day, end).length(), 25 * hour);
        QCOMPARE(rangeEndingAt(CurveSpan::Hour, end).length(), hour);
        QCOMPARE(rangeEndingAt(CurveSpan::Year, end).from, moment(2025, 10, 26));
        const QDate day(2026, 2, 11); // a Wednesday
        QCOMPARE(rangeAround(CurveSpan::Week, day), (CurveRange{moment(2026, 2, 9), moment(2026, 2, 16)}));
        QCOMPARE(rangeAround(CurveSpan::Month, day), (CurveRange{moment(2026, 2, 1), moment(2026, 3, 1)}));
        QCOMPARE(steppedRange(CurveSpan::Month, rangeAround(CurveSpan::Month, day), 1),
                 (CurveRange{moment(2026, 3, 1), moment(2026, 4, 1)}));
        QCOMPARE(steppedRange(CurveSpan::Own, {100, 160}, -2), (CurveRange{-20, 40}));
        QCOMPARE(boundedRange({5'000'000, 5'000'010}).length(), shortestCurveRange);
    }

    void pointsOfALevelHaveTheLeastMeanAndGreatestValue()
    {
        const qint64 begin = moment(2026, 10, 25);
        const CurvePoints days =
            built(HistoryLevel::Day,
                  {{begin, 1}, {begin + 24 * hour, 4}, {begin + 25 * hour, 10}, {begin + 26 * hour, 20}});
        QCOMPARE(days.points.size(), 2U); // the first day has 25 hours
        QCOMPARE(days.points[0], (CurvePoint{begin, begin + 25 * hour, 1, 2.5, 4, 2}));
        QCOMPARE(days.points[1].mean, 15.);
        const CurvePoints quarters =
            built(HistoryLevel::QuarterHour, {{0, 3}, {14 * minute, 5}, {15 * minute, 7}});
        QCOMPARE(quarters.points[0].most, 5.);
        QCOMPARE(quarters.points[1], (CurvePoint{15 * minute, 30 * minute, 7, 7, 7, 1}));
        // Archived and reported at one moment: the report is what stands.
        QCOMPARE(built(HistoryLevel::Raw, {{5, 1}, {5, 2}}).points.size(), 1U);
    }

    void whereNothingWasHeardThereIsNoLineAndNoValue()
    {
        QList<std::pair<qint64, double>> values;
        for (int i = 0; i < 20; ++i) {
            values.append({(i < 10 ? i : i + 40) * 15 * minute, 20 + i});
        }
        const CurvePoints curve = built(HistoryLevel::Raw, values);
        QVERIFY(curve.joins(8) && !curve.joins(9) && curve.joins(10));
        QCOMPARE(curve.at(16 * minute)->mean, 21.);
        QCOMPARE(curve.at(29 * minute)->mean, 22.);
        QVERIFY(curve.at(30 * 15 * minute) == nullptr);
        QCOMPARE(curve.next(9 * 15 * minute, 1)->mean, 30.);
        QCOMPARE(curve.next(0, -1), nullptr);
        const CurvePoints states =
            built(HistoryLevel::Raw, {{0, 0}, {15 * minute, 1}, {30 * minute, 0}, {900 * minute, 1}});
        QVERIFY(states.areStates);
        QCOMPARE(states.at(29 * minute)->mean, 1.); // it lasts
        QVERIFY(states.at(600 * minute) == nullptr);
        QVERIFY(built(HistoryLevel::Raw, {}).at(5) == nullptr);
    }

    void whatRisesAlikeHasTheSameRisePerHour()
    {
        const CurvePoints slow = built(HistoryLevel::Raw, {{0, 1}, {hour, 1.5}, {3 * hour, 2.5}});
        const CurvePoints high = built(HistoryLevel::Raw, {{0, 101}, {2 * hour, 102}});
        const CurveRange range{0, 4 * hour};
        QCOMPARE(risePerHour(slow, range), std::optional(0.5));
        QCOMPARE(risePerHour(high, range), std::optional(0.5));
        QCOMPARE(risePerHour(slow, {0, 1}), std::nullopt);
        const CurveScale change = scaleOf(CurveForm::Change, high, range);
        QCOMPARE(change.shown(102), 1.);
        const CurveScale part = scaleOf(CurveForm::Normalised, high, range);
        QCOMPARE(part.shown(101.5), 50.);
        QCOMPARE(scaleOf(CurveForm::Normalised, built(HistoryLevel::Raw, {{0, 7}}), range).shown(7), 0.);
    }

    void aRiseIsToldOfTheTimeAroundTheCursor()
    {
        const qint64 begin = moment(2026, 2, 11);
        const CurveRange day{begin, begin + 24 * hour};
        QList<std::pair<qint64, double>> values; // rises until noon, and falls twice as fast from then on
        for (int i = 0; i <= 96; ++i) {
            values.append({begin + i * 15 * minute, i <= 48 ? i / 4. : 12 - (i - 48) / 2.});
        }
        const CurvePoints curve = built(HistoryLevel::Raw, values);
        const auto riseAt = [&](std::optional<qint64> at) {
            return *risePerHour(curve, riseRange(day, at, 15 * minute));
        };
        QVERIFY(riseAt(std::nullopt) < -0.4); // of the whole day it says something else
        QCOMPARE(riseAt(begin + 6 * hour), 1.);
        QCOMPARE(riseAt(begin), 1.); // also at the edge
        QCOMPARE(riseAt(day.to), -2.);
        QCOMPARE(riseRange(day, begin + 6 * hour, 0), (CurveRange{begin + 4 * hour, begin + 8 * hour}));
        // Where values come seldom there must be some, and no more than is shown.
        QCOMPARE(riseRange(day, begin + 12 * hour, 5 * hour).length(), 6 * hour);
        QCOMPARE(riseRange(day, begin + 12 * hour, 13 * hour), day);
        QCOMPARE(riseRange({begin, begin + minute}, begin, 0).length(), minute);
    }

    void eachUnitHasAnAxis()
    {
        const QList<CurveAxis> axes =
            axesOf({seriesOf(u"A"_s, u"Level"_s, u"m"_s), seriesOf(u"A"_s, u"Inflow"_s, u"l/s"_s),
                    seriesOf(u"B"_s, u"Level"_s, u"m"_s)});
        QCOMPARE(axes.size(), 2);
        QCOMPARE(axes[0].title, u"Level [m]"_s);
        QCOMPARE(axes[0].series, (QList<int>{0, 2}));
    }

    void theTableHasWhatIsSeen()
    {
        const qint64 at = moment(2026, 1, 5, 14);
        const auto raw = std::make_shared<CurvePoints>(
            built(HistoryLevel::Raw, {{at - 1, 9}, {at, 1.5}, {at + hour, -2}}));
        const auto hours =
            std::make_shared<CurvePoints>(built(HistoryLevel::Hour, {{at + hour, 4}, {at + hour + 1, 8}}));
        const QByteArray table = curvesCsv({{seriesOf(u"A;B"_s, u"Level"_s, u"m"_s), raw, {}, u"m"_s},
                                            {seriesOf(u"C"_s, u"Flow"_s, {}), hours, {}, {}}},
                                           {at, at + 2 * hour});
        QVERIFY(table.startsWith(csvMark));
        QCOMPARE(QString::fromUtf8(table),
                 u"Time;Zone;\"A;B – Level [m]\";C – Flow, minimum;C – Flow, mean;C – Flow, maximum\r\n"
                 "05.01.2026 14:00:00;+01:00;1,5;;;\r\n"
                 "05.01.2026 15:00:00;+01:00;-2;4;6;8\r\n"_s);
    }
};

QTEST_GUILESS_MAIN(CurvesTest)
#include "curves_test.moc"
