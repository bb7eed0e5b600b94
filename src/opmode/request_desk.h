#pragma once

#include "opmode/acknowledger.h"
#include "opmode/alarm_actions.h"
#include "opmode/request.h"
#include "opmode/station_actions.h"
#include "opmode/thinning.h"
#include "opmode/watch_alarms.h"
#include "record/heard_text.h"
#include "record/record_notices.h"
#include "record/record_queries.h"
#include "record/shared_deeds.h"

#include <QCoreApplication>

namespace ktr {

/// Carries out the requests of programs that joined the list, in the names of their operators, and answers
/// each in the record. Looks for new ones four times a second. Of a list that keepers share it does what is
/// about the stations that are this program's.
class RequestDesk
{
    Q_DECLARE_TR_FUNCTIONS(RequestDesk)

public:
    static constexpr Milliseconds period{250};
    /// Between two looks, however many notices of a server come.
    static constexpr Milliseconds leastPeriod{50};

    /// All must outlive it.
    RequestDesk(const ListParts &parts, StationActions &stationActions, Acknowledger &acknowledger,
                AlarmActions &alarmActions);

    /// `settingsChanged` gets those of a shared list whenever one of them is another one.
    void setSettingsChanged(std::function<void(const QHash<QString, QString> &)> settingsChanged)
    {
        m_settingsChanged = std::move(settingsChanged);
    }
    /// `heard` gets what another keeper heard of a station that is this one's.
    void setHeard(std::function<void(const QString &kennung, const HeardText &text)> heard)
    {
        m_heard = std::move(heard);
    }
    /// The list is kept from now on. Requests from before are answered: they came too early.
    void start();
    void stop();

private:
    struct Found
    {
        Status status = Status::done();
        qint64 version = 0;
        bool isNew = false; ///< else the version is the last one's, and nothing was asked
        QList<RequestRow> rows{};
        QHash<QString, QString> settings{}; ///< those that one may ask to be set
    };

    static Found find(RecordReader &reader, qint64 version, qint64 last);
    void noticed();
    void look();
    void take(const Found &found);
    bool isOwn(const RequestRow &row) const;
    static bool isOfAll(const RequestRow &row);
    Status mayDo(const RequestRow &row) const;
    void doForAll(const RequestRow &row);
    void handle(const RequestRow &row);
    bool takeHeard(const RequestRow &row, const HeardText &heard);
    void takeShared(const QList<RequestRow> &rows);
    Status carryOut(const RequestRow &row);
    Status carryOut(const QString &what, const QJsonObject &about);
    Status acknowledge(const QJsonObject &about);
    Status onAlarms(const QString &what, const QJsonObject &about, bool &isKnown);
    Status onStation(const QString &what, const QJsonObject &about, bool &isKnown);
    Status add(const QJsonObject &about);

    ListParts m_parts;
    StationActions &m_stationActions;
    Acknowledger &m_acknowledger;
    AlarmActions &m_alarmActions;
    std::unique_ptr<OneShotTimer> m_timer;
    std::unique_ptr<RecordReader> m_reader;   ///< while the record is written
    std::optional<RecordQueries> m_queries;   ///< likewise, of one on a server: nobody waits for that
    std::optional<SharedDeeds> m_deeds;       ///< likewise
    std::unique_ptr<RecordNotices> m_notices; ///< likewise
    std::function<void(const QHash<QString, QString> &)> m_settingsChanged;
    std::function<void(const QString &, const HeardText &)> m_heard;
    QHash<QString, QString> m_settings;
    qint64 m_start = 0;
    qint64 m_version = 0;
    qint64 m_last = 0;        ///< number of the request that was taken last
    bool m_isNoticed = false; ///< since the last look began
    QSet<qint64> m_inHand;    ///< of a server's record: carried out here, and not seen as answered yet
};

} // namespace ktr
