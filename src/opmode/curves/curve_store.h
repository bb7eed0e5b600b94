#pragma once

#include "opmode/curves/curve_reading.h"
#include "opmode/curves/curve_series.h"
#include "record/record_queries.h"

#include <QObject>

#include <memory>

namespace ktr {

/// Holds the curves of the chosen series for the time that is shown, read at its level without keeping
/// anybody waiting; what was read before stays until then.
class CurveStore : public QObject
{
    Q_OBJECT

public:
    explicit CurveStore(OperationalMode &mode, QObject *parent = nullptr);
    ~CurveStore() override;

    /// Reads what is missing of these series in this time; `anew` what is there, too, since there may be
    /// more.
    void want(const QList<SeriesId> &series, const CurveRange &range, bool anew = false);
    /// Null while it was not read. What is read later takes its place and leaves it as it is.
    std::shared_ptr<const CurvePoints> points(const SeriesId &series) const;
    const QList<CurveMark> &marks() const { return m_marks.marks; }
    /// Or only the newest of them.
    bool areAllMarks() const { return m_marks.areAll; }
    /// Something that was asked for is not there yet.
    bool isReading() const;
    /// Why something could not be read; empty when all could.
    QString trouble() const;
    /// Forgets all, since the stations are others.
    void clear();

    /// Tells the inputs of a station that have any values, now or later.
    void channelsOf(const QString &kennung, const std::function<void(const QList<int> &)> &tell);

Q_SIGNALS:
    void changed();

private:
    struct Held
    {
        SeriesId id;
        std::shared_ptr<const CurvePoints> points; ///< null while it was not read
        bool isAsked = false;
        CurveRange asked;
        HistoryLevel askedLevel = HistoryLevel::Raw;
        QString trouble;
    };
    Held &held(const SeriesId &id);
    void openRecord();
    void ask(Held &curve, const CurveRange &range, HistoryLevel level);
    void askMarks(const QList<SeriesId> &series, const CurveRange &range, bool anew);

    OperationalMode &m_mode;
    QString m_path; ///< of the record that is asked
    std::unique_ptr<RecordQueries> m_queries;
    std::vector<std::unique_ptr<Held>> m_curves;
    ReadMarks m_marks;
    CurveRange m_marksAsked;
    QList<qint64> m_marksOf;
};

} // namespace ktr
