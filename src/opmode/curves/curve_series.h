#pragma once

#include "opmode/curves/curve_limits.h"

#include <QByteArray>
#include <QLocale>

namespace ktr {

class OperationalMode;

/// An input of a station.
struct SeriesId
{
    QString kennung;
    int channel = 0; ///< 1 to 18
    bool operator==(const SeriesId &) const = default;
};

/// What is known of an input whose curve is shown.
struct CurveSeries
{
    SeriesId id;
    int slot = 0; ///< 1 to mostSeries: by it the curve has its look, and keeps that
    QString station;
    QString input; ///< what it is called
    QString unit;
    QList<CurveLimit> limits{};
    QString name() const { return station + QStringLiteral(" – ") + input; }
};

/// More would not be told from each other.
inline constexpr int mostSeries = 18;

/// What is known of it now. Its limit values are called by numbers of the locale.
CurveSeries describedSeries(const OperationalMode &mode, const SeriesId &id, int slot, const QLocale &locale);

/// Stands for the inputs of a station that are shown where the whole station is chosen, in the place of a
/// channel.
inline constexpr int usualChannels = 0;
/// The same of a station that there is.
QList<SeriesId> usualSeries(const OperationalMode &mode, const QString &kennung);
/// These inputs, of which `measured` have values in the record: at most four, or `most`. Those with values
/// come before those without; levels, temperatures and counters before states; those with a name before the
/// others, which are left out where a name says what is used.
QList<SeriesId> seriesOfStation(const OperationalMode &mode, const QString &kennung,
                                const QList<int> &measured, int most);

/// What is dragged.
inline const QString seriesMimeType = QStringLiteral("application/x-ktrconfig-series");
QByteArray seriesToDrag(const QList<SeriesId> &series);
/// What was dropped here and there is.
QList<SeriesId> draggedSeries(const OperationalMode &mode, const QByteArray &data);

/// The series as they are kept until the next run, by the names of the stations. Those of stations that are
/// not in the list are kept, too.
class KeptSeries
{
public:
    /// Takes what was kept; gives those whose stations there are.
    QList<SeriesId> restore(const OperationalMode &mode, const QString &kept);
    QString save(const OperationalMode &mode, const QList<SeriesId> &series) const;

private:
    QStringList m_others;
};

} // namespace ktr
