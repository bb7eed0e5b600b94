#pragma once

#include "opmode/curves/curve_reading.h"
#include "opmode/curves/curve_series.h"
#include "record/record_queries.h"

#include <QObject>

#include <map>
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
    /// Tells the inputs that are shown where whole stations are chosen and there is room for so many, now or
    /// later. Each station has its share, at least one.
    void usualOf(const QStringList &kennungen, int room,
                 const std::function<void(const QList<SeriesId> &)> &tell);

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
        RecordQueries *connection = nullptr; ///< that it was asked of
        QString trouble;
    };
    Held &held(const SeriesId &id);
    void openRecord();
    void ask(Held &curve, const CurveRange &range, HistoryLevel level);
    void askMarks(const QList<SeriesId> &series, const CurveRange &range, bool anew);
    void askGaps(const QList<SeriesId> &series, const CurveRange &range, bool anew);
    std::shared_ptr<const CurvePoints> withGaps(const SeriesId &id, CurvePoints points) const;
    RecordQueries &freeConnection();
    void withdraw(const void *asker);

    OperationalMode &m_mode;
    QString m_path;                                            ///< of the record that is asked
    std::vector<std::unique_ptr<RecordQueries>> m_connections; ///< curves are read beside each other
    std::vector<std::unique_ptr<Held>> m_curves;
    ReadMarks m_marks;
    CurveRange m_marksAsked;
    QList<qint64> m_marksOf;
    bool m_areGapsAsked = false;
    QList<SeriesId> m_gapsOf;
    CurveRange m_gapsAsked;
    ReadGaps m_gaps;                        ///< of each of them
    std::map<QString, char> m_channelAsker; ///< the addresses are who asks for the inputs of a station
    const char m_usualAsker = 0;            ///< its address is who asks for those of several
    const char m_gapsAsker = 0;             ///< and for the gaps
};

} // namespace ktr
