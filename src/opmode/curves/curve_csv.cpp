#include "opmode/curves/curve_csv.h"

#include "platform/csv.h"

#include <QCoreApplication>
#include <QDateTime>

#include <map>

namespace ktr {

namespace {

struct CurveCsv
{
    Q_DECLARE_TR_FUNCTIONS(ktr::CurveCsv)
};

bool isRaw(const ShownCurve &curve)
{
    return curve.points == nullptr || curve.points->level == HistoryLevel::Raw;
}

QString timeText(qint64 at)
{
    return QDateTime::fromMSecsSinceEpoch(at).toString(QStringLiteral("dd.MM.yyyy HH:mm:ss"));
}

/// "+01:00"
QString zoneText(qint64 at)
{
    constexpr int secondsOfAMinute = 60;
    constexpr int minutesOfAnHour = 60;
    const int minutes = QDateTime::fromMSecsSinceEpoch(at).offsetFromUtc() / secondsOfAMinute;
    return QStringLiteral("%1%2:%3")
        .arg(QLatin1Char(minutes < 0 ? '-' : '+'))
        .arg(std::abs(minutes) / minutesOfAnHour, 2, 10, QLatin1Char('0'))
        .arg(std::abs(minutes) % minutesOfAnHour, 2, 10, QLatin1Char('0'));
}

} // namespace

QByteArray curvesCsv(const QList<ShownCurve> &curves, const CurveRange &range)
{
    QStringList titles{CurveCsv::tr("Time"), CurveCsv::tr("Zone")};
    std::map<qint64, QStringList> lines;
    qsizetype columns = 0;
    for (const ShownCurve &curve : curves) {
        const QString name = curve.series.name() +
                             (curve.unit.isEmpty() ? QString() : QStringLiteral(" [%1]").arg(curve.unit));
        if (isRaw(curve)) {
            titles += name;
        } else {
            for (const QString &kind :
                 {CurveCsv::tr("minimum"), CurveCsv::tr("mean"), CurveCsv::tr("maximum")}) {
                titles += name + QLatin1String(", ") + kind;
            }
        }
        const auto [first, end] =
            curve.points == nullptr ? std::pair<std::size_t, std::size_t>() : curve.points->within(range);
        for (std::size_t i = first; i < end; ++i) {
            const CurvePoint &point = curve.points->points[i];
            QStringList &line = lines[point.at];
            line.resize(columns);
            if (!isRaw(curve)) {
                line += csvNumber(curve.scale.shown(point.least));
            }
            line += csvNumber(curve.scale.shown(point.mean));
            if (!isRaw(curve)) {
                line += csvNumber(curve.scale.shown(point.most));
            }
        }
        columns += isRaw(curve) ? 1 : 3;
    }
    QByteArray table = csvMark + csvLine(titles);
    for (auto &[at, cells] : lines) {
        cells.resize(columns);
        table += (timeText(at) + u';' + zoneText(at) + u';').toUtf8() + csvLine(cells);
    }
    return table;
}

} // namespace ktr
