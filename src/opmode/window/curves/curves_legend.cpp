#include "opmode/window/curves/curves_legend.h"

#include "opmode/window/curves/curve_look.h"
#include "opmode/window/history/series_style.h"
#include "platform/time_texts.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

namespace ktr {

namespace {

constexpr QSize legendSampleSize(30, 14);

const QString shownDayForm = QStringLiteral("dd.MM.yyyy");

bool isOfDays(const ShownCurve &curve)
{
    return curve.points != nullptr && curve.points->level == HistoryLevel::Day;
}

QPixmap legendSample(const ShownCurve &curve)
{
    const qreal scale = qApp->devicePixelRatio();
    QPixmap sample(legendSampleSize * scale);
    sample.setDevicePixelRatio(scale);
    sample.fill(Qt::transparent);
    QPainter painter(&sample);
    drawSeriesSample(painter, QRectF(QPointF(), QSizeF(legendSampleSize)), lookOfSlot(curve.series.slot),
                     curve.points != nullptr && curve.points->areStates, QApplication::palette());
    return sample;
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
    m_rises.clear();
    for (const ShownCurve &curve : std::as_const(m_curves)) {
        const std::optional<double> rise = curve.points == nullptr || curve.points->areStates
                                               ? std::nullopt
                                               : risePerHour(*curve.points, range);
        constexpr int hoursOfADay = 24;
        const double length = isPerDay() ? hoursOfADay : 1;
        m_rises += rise ? std::optional(*rise * curve.scale.factor * length) : std::nullopt;
    }
    Q_EMIT headerDataChanged(Qt::Horizontal, Rise, Rise);
    if (!m_curves.isEmpty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
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

QString CurvesLegend::number(double value) const
{
    constexpr int digits = 5;
    QLocale plain = m_locale;
    plain.setNumberOptions(QLocale::OmitGroupSeparator);
    return plain.toString(value == 0 ? 0 : value, 'g', digits);
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
        return point == nullptr ? none : number(curve.scale.shown(point->mean));
    case Least:
        return point == nullptr ? none : number(curve.scale.shown(point->least));
    case Most:
        return point == nullptr ? none : number(curve.scale.shown(point->most));
    case Time:
        return point == nullptr         ? none
               : isOfDays(curve)        ? QDateTime::fromMSecsSinceEpoch(point->at).toString(shownDayForm)
               : point->end > point->at ? QDateTime::fromMSecsSinceEpoch(point->at).toString(shownMinuteForm)
                                        : wallClockText(point->at);
    case Rise: {
        const std::optional<double> rise = m_rises.value(row);
        constexpr int digits = 3;
        return !rise ? none
                     : (*rise > 0 ? QStringLiteral("+") : QString()) + m_locale.toString(*rise, 'g', digits);
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
        return index.column() == Name ? QVariant(curve.series.name()) : QVariant();
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
        return isPerDay() ? tr("By how much the values rise in a day, over the time that is shown")
                          : tr("By how much the values rise in an hour, over the time that is shown");
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
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
        return isPerDay() ? tr("Rise per day") : tr("Rise per hour");
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
