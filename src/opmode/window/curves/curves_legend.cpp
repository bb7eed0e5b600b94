#include "opmode/window/curves/curves_legend.h"

#include "opmode/window/curves/curve_look.h"
#include "opmode/window/history/series_style.h"
#include "platform/time_texts.h"

#include <QApplication>
#include <QIcon>
#include <QPalette>

#include <cmath>

namespace ktr {

namespace {

constexpr int valueDigits = 5;
constexpr int riseDigits = 3;

const QString shownDayForm = QStringLiteral("dd.MM.yyyy");

bool isOfDays(const ShownCurve &curve)
{
    return curve.points != nullptr && curve.points->level == HistoryLevel::Day;
}

/// "4 h"
QString lengthText(qint64 length, const QLocale &locale)
{
    constexpr qint64 aMinute = 60'000;
    const auto number = [&locale, length](qint64 unit) {
        constexpr double tenths = 10;
        const double count = static_cast<double>(length) / static_cast<double>(unit);
        return locale.toString(std::round(count * tenths) / tenths, 'g', 6);
    };
    return length < 2 * curveHourMs  ? CurvesLegend::tr("%1 min").arg(number(aMinute))
           : length < 2 * curveDayMs ? CurvesLegend::tr("%1 h").arg(number(curveHourMs))
                                     : CurvesLegend::tr("%1 d").arg(number(curveDayMs));
}

QIcon legendSample(const ShownCurve &curve)
{
    return seriesIcon(CurvesLegend::sampleSize, qApp->devicePixelRatio(), lookOfSlot(curve.series.slot),
                      curve.points != nullptr && curve.points->areStates, QApplication::palette());
}

} // namespace

void CurvesLegend::setCurves(const QList<ShownCurve> &curves, const QList<SeriesId> &hidden)
{
    const bool isAnew = curves.size() != m_curves.size();
    if (isAnew) {
        beginResetModel();
    }
    m_curves = curves;
    m_hidden = hidden;
    if (isAnew) {
        endResetModel();
    }
    setMoment(m_moment, m_range);
}

void CurvesLegend::setMoment(std::optional<qint64> moment, const CurveRange &range)
{
    m_moment = moment;
    m_range = range;
    measureRises();
    Q_EMIT headerDataChanged(Qt::Horizontal, Rise, Rise);
    if (!m_curves.isEmpty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
    }
}

/// All in the same time, or they could not be compared.
void CurvesLegend::measureRises()
{
    const auto rises = [](const ShownCurve &curve) {
        return curve.points != nullptr && !curve.points->areStates;
    };
    qint64 step = 0;
    for (const ShownCurve &curve : std::as_const(m_curves)) {
        if (rises(curve) && curve.points->longestStep < m_range.length()) {
            step = qMax(step, curve.points->longestStep - 1);
        }
    }
    m_riseRange = riseRange(m_range, m_moment, step);
    m_rises.clear();
    constexpr int hoursOfADay = 24;
    const double length = isPerDay() ? hoursOfADay : 1;
    for (const ShownCurve &curve : std::as_const(m_curves)) {
        const std::optional<double> rise =
            rises(curve) ? risePerHour(*curve.points, m_riseRange) : std::nullopt;
        m_rises += rise ? std::optional(*rise * curve.scale.factor * length) : std::nullopt;
    }
}

void CurvesLegend::setLocale(const QLocale &locale)
{
    m_locale = locale;
    setMoment(m_moment, m_range);
}

/// Over some days the rise in an hour would be a small number.
bool CurvesLegend::isPerDay() const
{
    return levelOf(m_range) != HistoryLevel::Raw;
}

int CurvesLegend::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_curves.size());
}

int CurvesLegend::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

const CurvePoint *CurvesLegend::pointOf(const ShownCurve &curve) const
{
    if (curve.points == nullptr) {
        return nullptr;
    }
    if (m_moment) {
        return curve.points->at(*m_moment);
    }
    const auto [first, end] = curve.points->within(m_range);
    return end > first ? &curve.points->points[end - 1] : nullptr;
}

/// Of large numbers all digits before the decimal mark stand there.
QString CurvesLegend::number(double value, int digits) const
{
    constexpr int mostDigits = 15;
    QLocale plain = m_locale;
    plain.setNumberOptions(QLocale::OmitGroupSeparator);
    const double size = std::abs(value);
    const int before = size < 1 ? 1 : static_cast<int>(std::log10(size)) + 1;
    return plain.toString(value == 0 ? 0 : value, 'g', qBound(digits, before, mostDigits));
}

QString CurvesLegend::cell(int row, int column) const
{
    const ShownCurve &curve = m_curves[row];
    const CurvePoint *point = pointOf(curve);
    static const QString none = QStringLiteral("–");
    switch (column) {
    case Name:
        return curve.series.name();
    case Unit:
        return curve.unit;
    case Value:
        return point == nullptr ? none : number(curve.scale.shown(point->mean), valueDigits);
    case Least:
        return point == nullptr ? none : number(curve.scale.shown(point->least), valueDigits);
    case Most:
        return point == nullptr ? none : number(curve.scale.shown(point->most), valueDigits);
    case Time:
        return point == nullptr         ? none
               : isOfDays(curve)        ? QDateTime::fromMSecsSinceEpoch(point->at).toString(shownDayForm)
               : point->end > point->at ? QDateTime::fromMSecsSinceEpoch(point->at).toString(shownMinuteForm)
                                        : wallClockText(point->at);
    case Rise: {
        const std::optional<double> rise = m_rises.value(row);
        return !rise ? none : (*rise > 0 ? QStringLiteral("+") : QString()) + number(*rise, riseDigits);
    }
    default:
        return {};
    }
}

QVariant CurvesLegend::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const ShownCurve &curve = m_curves[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        return cell(index.row(), index.column());
    case Qt::ToolTipRole:
        return index.column() == Name    ? QVariant(curve.series.name())
               : index.column() == Rise  ? QVariant(riseDescription())
               : index.column() == Value ? QVariant(cell(index.row(), Time))
                                         : QVariant();
    case StationRole:
        return curve.series.station;
    case InputRole:
        return curve.series.input;
    case Qt::DecorationRole:
        return index.column() == Name ? QVariant(legendSample(curve)) : QVariant();
    case Qt::CheckStateRole:
        return index.column() == Name
                   ? QVariant(m_hidden.contains(curve.series.id) ? Qt::Unchecked : Qt::Checked)
                   : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() == Name || index.column() == Unit ? QVariant(Qt::AlignLeft | Qt::AlignVCenter)
                                                                : QVariant(Qt::AlignRight | Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant CurvesLegend::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal) {
        return {};
    }
    if (role == Qt::TextAlignmentRole) {
        return QVariant((section == Name || section == Unit ? Qt::AlignLeft : Qt::AlignRight) |
                        Qt::AlignVCenter);
    }
    if (role == Qt::ToolTipRole && section == Rise) {
        return riseDescription();
    }
    return role == Qt::DisplayRole ? QVariant(title(section)) : QVariant();
}

/// A rise is nothing without the time that it is of.
QString CurvesLegend::riseTitle() const
{
    const QString length = lengthText(m_riseRange.length(), m_locale);
    return (isPerDay() ? tr("Rise per day") : tr("Rise per hour")) + u'\n' +
           (m_moment ? tr("%1 at the cursor").arg(length) : tr("over %1").arg(length));
}

QString CurvesLegend::riseDescription() const
{
    const auto text = [](qint64 at) { return QDateTime::fromMSecsSinceEpoch(at).toString(shownMinuteForm); };
    const QString words =
        isPerDay()
            ? tr("By how much the values rise in a day: the slope of the straight line that is nearest "
                 "to those from %1 to %2. It is of the time around the cursor, or of all that is shown; "
                 "of the same time for all curves.")
            : tr("By how much the values rise in an hour: the slope of the straight line that is "
                 "nearest to those from %1 to %2. It is of the time around the cursor, or of all that "
                 "is shown; of the same time for all curves.");
    return words.arg(text(m_riseRange.from), text(m_riseRange.to));
}

QString CurvesLegend::title(int column) const
{
    switch (column) {
    case Name:
        return tr("Curve");
    case Value:
        return tr("Value");
    case Unit:
        return tr("Unit");
    case Least:
        return tr("Minimum");
    case Most:
        return tr("Maximum");
    case Time:
        return tr("Time");
    default:
        return riseTitle();
    }
}

Qt::ItemFlags CurvesLegend::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags plain = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return index.column() == Name ? plain | Qt::ItemIsUserCheckable : plain;
}

bool CurvesLegend::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || index.column() != Name) {
        return false;
    }
    Q_EMIT shownChosen(index.row(), value.toInt() == Qt::Checked);
    return true;
}

} // namespace ktr
