#pragma once

#include "opmode/keeping/list_replay.h"
#include "opmode/keeping/nodes_file.h"
#include "opmode/list_follower.h"
#include "opmode/list_parts.h"
#include "opmode/request_sender.h"
#include "opmode/station_event.h"

#include <QObject>

namespace ktr {

class ListOpener;

/// A list that another program keeps, as it is shown here: tree, stations, trends and alarms become what that
/// program's record says, as soon as it says so. Nothing is written, and no module is talked to.
class JoinedList : public QObject
{
    Q_OBJECT

public:
    /// The list is shown in these parts.
    JoinedList(const ListParts &parts, const QString &nodesPath, QObject *parent = nullptr);

    /// Makes the empty parts what file and record say. A failure: who holds the list writes no record of it
    /// (yet), or one of the two cannot be read.
    Status open(NodesFile &file);
    /// The same of a record on a server, which has no file.
    void openShared(const SharedState &state);
    /// Tells what is there by now.
    void takeArrived();
    /// The last event that was told, or that was there when it was opened.
    qint64 lastEvent() const { return m_follower.lastEvent(); }
    /// Tells what stations said between such an event and the opening, which the tree has already.
    void tellWhatCameAfter(qint64 event);

    /// Asks who keeps the list. What does not come of it is told in a line.
    void ask(const Request &request);

    /// What happens to the tree is what the other program did.
    bool isCarryingOut() const { return m_isCarryingOut; }
    /// Gives a station its name of before.
    void showName(const QString &kennung, const QString &name);

    /// Who keeps the list, in words; empty: nobody does.
    QString keeper() const { return m_follower.isOfRecord() ? m_follower.holder() : QString(); }
    /// Since when nobody keeps it, as far as is known here.
    const std::optional<QDateTime> &unkeptSince() const { return m_unkeptSince; }
    /// Since when nothing came of who keeps it, after a while in which something should have.
    const std::optional<QDateTime> &unheardSince() const { return m_unheardSince; }
    /// Since when the record cannot be read, or its server does not answer, and why.
    const std::optional<QDateTime> &unreachableSince() const { return m_unreachableSince; }
    const QString &trouble() const { return m_trouble; }
    const RecordRights &rights() const { return m_rights; }
    /// What the tree had when it was opened.
    const QStringList &defects() const { return m_defects; }

Q_SIGNALS:
    void happened(const ktr::StationEvent &event);
    void statusMessage(const QString &line);
    void alarmRaised(const QModelIndex &entry);
    /// A station's state is to be shown anew.
    void stationChanged(const QString &kennung);
    /// The settings that the record has, or has now.
    void settingsChanged(const QHash<QString, QString> &settings);
    /// Somebody keeps the list no more, or is not heard, or the record cannot be reached, or is so again; or
    /// other things may be asked for.
    void keeperChanged();
    /// The list is no more the one that was opened: it is to be opened again.
    void replaced();

private:
    QList<Request> perStation(const Request &request) const;
    void begin(const QList<AlarmRow> &standing, const QHash<QString, QString> &settings);
    void take(const EventRow &event);
    void takeMessage(const EventRow &event, const QString &kennung);
    void takeListEvent(const EventRow &event, const QString &kennung);
    void takeSettings(const QHash<QString, QString> &settings);
    void takeBeat(const QString &beat);
    void tell(const EventRow &event, const QString &kennung);
    void looked();
    bool isUnheard() const;
    void showStation(const QString &kennung);
    void showState(cStation &station) const;
    void showKeeper();
    void takeTrouble(const QString &trouble);

    ListParts m_parts;
    QHash<qint64, QString> m_names;
    QHash<QString, StationAttributes> m_attributes;
    QHash<QString, cStation::Seen> m_seen;
    ListReplay m_replay;
    ListFollower m_follower;
    RequestSender m_sender;
    std::optional<QDateTime> m_unkeptSince;
    std::optional<QDateTime> m_unheardSince;
    std::optional<QDateTime> m_unreachableSince;
    std::optional<QDateTime> m_lastLook; ///< at a server's record
    std::optional<QDateTime> m_lastSign; ///< of a keeper of it
    QString m_trouble;
    RecordRights m_rights;
    QString m_beat;
    QString m_keeper;
    QStringList m_defects;
    bool m_isShared; ///< by several keepers, which come and go
    bool m_isCarryingOut = false;
    QHash<QString, QString> m_settings;
    bool m_isReplaced = false;
    bool m_isChanged = false; ///< what may be asked for
};

} // namespace ktr
