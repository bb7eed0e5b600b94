#pragma once

#include "opmode/curves/curve_csv.h"

#include <QAbstractTableModel>
#include <QSize>

namespace ktr {

/// The chosen series as a list, with their values at a moment.
class CurvesLegend : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// Of a line, the two parts of the curve's name.
    enum Role { StationRole = Qt::UserRole, InputRole };
    enum Column { Name, Value, Unit, Rise, Least, Most, Time, ColumnCount };

    static constexpr QSize sampleSize{30, 14}; ///< of the pieces of the curves

    using QAbstractTableModel::QAbstractTableModel;

    /// The series in their order; `hidden` are those of them that are not drawn.
    void setCurves(const QList<ShownCurve> &curves, const QList<SeriesId> &hidden);
    /// Without a moment the last values in the time that is shown, and its rise.
    void setMoment(std::optional<qint64> moment, const CurveRange &range);
    void setLocale(const QLocale &locale);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

    /// What stands above a column, in one line or two.
    QString title(int column) const;
    /// A cell's text; those of the values without a point are dashes.
    QString cell(int row, int column) const;

Q_SIGNALS:
    /// The user lets a series be drawn, or not.
    void shownChosen(int row, bool isShown);

private:
    const CurvePoint *pointOf(const ShownCurve &curve) const;
    QString number(double value, int digits) const;
    bool isPerDay() const;
    void measureRises();
    QString riseTitle() const;
    QString riseDescription() const;

    QList<ShownCurve> m_curves;
    QList<SeriesId> m_hidden;
    QList<std::optional<double>> m_rises; ///< in an hour or a day
    CurveRange m_riseRange;               ///< in which they were found
    std::optional<qint64> m_moment;
    CurveRange m_range;
    QLocale m_locale;
};

} // namespace ktr
