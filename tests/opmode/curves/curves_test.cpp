#include "opmode/curves/curve_csv.h"
#include "opmode/curves/telling_names.h"
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

    void thereIsNoLineWhereNobodyHeardTheStation()
    {
        // Three values in a usual distance from each other, and silence between the first two of them.
        CurvePoints curve =
            built(HistoryLevel::Raw, {{0, 10}, {20 * minute, 14}, {40 * minute, 18}, {60 * minute, 20}});
        curve.gaps = {{5 * minute, 15 * minute}, {16 * minute, 17 * minute}};
        const auto placesOf = [&curve] {
            QList<std::pair<qint64, std::optional<double>>> places;
            for (const CurvePoints::LinePlace &each : curve.line(&CurvePoint::mean)) {
                places.append({each.value ? each.at / minute : -1, each.value}); // -1: the line ends
            }
            return places;
        };
        using Places = QList<std::pair<qint64, std::optional<double>>>;
        const std::pair<qint64, std::optional<double>> end{-1, std::nullopt};
        QCOMPARE(placesOf(), (Places{{0, 10.},
                                     {5, 11.},
                                     end,
                                     {15, 13.},
                                     {16, 13.2},
                                     end,
                                     {17, 13.4},
                                     {20, 14.},
                                     {40, 18.},
                                     {60, 20.}}));
        QCOMPARE(curve.at(4 * minute)->mean, 10.);
        QVERIFY(curve.at(10 * minute) == nullptr);
        QCOMPARE(curve.at(18 * minute)->mean, 14.);
        QVERIFY(curve.at(15 * minute + 1) == nullptr); // what comes later is behind another silence
        curve.gaps = {{-hour, 5 * minute}, {35 * minute, 45 * minute}, {50 * minute, hour}};
        QCOMPARE(placesOf(), (Places{{0, 10.},
                                     end,
                                     {5, 11.},
                                     {20, 14.},
                                     {35, 17.},
                                     end,
                                     {40, 18.},
                                     end,
                                     {45, 18.5},
                                     {50, 19.},
                                     end,
                                     {60, 20.}}));
        // Behind it a state is not known until the next one comes.
        curve = built(HistoryLevel::Raw, {{0, 1}, {20 * minute, 0}});
        curve.gaps = {{5 * minute, 15 * minute}};
        QCOMPARE(placesOf(), (Places{{0, 1.}, {5, 1.}, end, {20, 0.}}));
        QCOMPARE(curve.at(4 * minute)->mean, 1.);
        QVERIFY(curve.at(16 * minute) == nullptr);
        // Days whose silence is shorter than a day.
        curve = built(HistoryLevel::Day, {{moment(2026, 2, 11, 1), 2}, {moment(2026, 2, 12, 1), 4}});
        curve.gaps = {{moment(2026, 2, 11, 18), moment(2026, 2, 12, 6)}};
        const std::vector<CurvePoints::LinePlace> days = curve.line(&CurvePoint::mean);
        QCOMPARE(days.size(), 5U);
        QCOMPARE(days[1].value, std::optional(2.5));
        QCOMPARE(days[3].at, moment(2026, 2, 12, 6));
    }

    void narrowNamesKeepWhatTheyDifferIn()
    {
        const auto upTo = [](qsizetype length) {
            return [length](const QString &text) { return text.size() <= length; };
        };
        QCOMPARE(tellingNames({u"Pump"_s, u"Well"_s}, upTo(10)), (QStringList{u"Pump"_s, u"Well"_s}));
        QCOMPARE(tellingNames({u"Hochbehälter Nord"_s, u"Hochbehälter Süd"_s}, upTo(11)),
                 (QStringList{u"Hochbe…Nord"_s, u"Hochb…r Süd"_s}));
        // What differs in the middle would be lost.
        const QStringList middle = tellingNames(
            {u"Hochbehälter Oberndorf Kammer 1 Zulauf"_s, u"Hochbehälter Oberndorf Kammer 2 Zulauf"_s,
             u"Tiefbrunnen"_s, u"Hochbehälter Oberndorf Kammer 1 Zulauf"_s},
            upTo(14));
        QCOMPARE(middle, (QStringList{u"Hochbehälte…1…"_s, u"Hochbehälte…2…"_s, u"Tiefbrunnen"_s,
                                      u"Hochbehälte…1…"_s}));
        QCOMPARE(tellingNames({u"Level of tank A in the east"_s, u"Level of tank B in the east"_s}, upTo(3)),
                 (QStringList{u"…A…"_s, u"…B…"_s}));
        QCOMPARE(tellingNames({u"Level"_s}, upTo(0)), QStringList{u"…"_s});
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
