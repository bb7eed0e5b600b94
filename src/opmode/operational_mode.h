#pragma once

#include "opmode/acknowledger.h"
#include "opmode/alarm_actions.h"
#include "opmode/disk_room.h"
#include "opmode/entry_removal.h"
#include "opmode/joined_list.h"
#include "opmode/keeper_beat.h"
#include "opmode/keeping_trouble.h"
#include "opmode/kept_list.h"
#include "opmode/list_duty.h"
#include "opmode/message_intake.h"
#include "opmode/request_desk.h"
#include "opmode/shared_list.h"
#include "opmode/station_actions.h"
#include "opmode/station_configurations.h"
#include "opmode/station_removal.h"
#include "opmode/station_states.h"
#include "opmode/thinning.h"

namespace ktr {

class ListOpener;

/// The operational mode without its window: the stations of a `nodes.xml`, their tree, what their messages
/// make of it, their schedules, and how all of it outlives the end and a crash.
class OperationalMode : public QObject
{
    Q_OBJECT

public:
    struct Services
    {
        Environment environment;
        Timers &timers;
        cStations::LineFactory createLine;
        std::function<void()> beep = [] {};
        std::function<std::unique_ptr<CallbackTimers>(Timers &)> callbackTimers = &systemCallbackTimers;
        /// How many datagrams were dropped because they came from no module's address.
        std::function<qint64()> foreignDatagrams = [] { return 0; };
        NodesKeeper::Limits filesInBetween = {};
        /// Of the disk that a folder is on; nothing when it is not known.
        std::function<std::optional<DiskRoom>(const QString &folder)> diskRoom = [](const QString &) {
            return std::nullopt;
        };
        /// What other keepers of a shared list see of this one.
        QString name = {};
        Leases::Times leaseTimes = {};
        /// Where it waits on this machine what the server of a shared list does not take; empty: in memory.
        QString spoolFolder = {};
    };
    enum class Use {
        Keep,        ///< what happens is kept in the record, and in the file at the end
        Watch,       ///< the file is read only
        WatchAnyway, ///< also while another program watches these stations: modules answer who announced last
        Look         ///< what another program keeps is shown and followed; no module is talked to
    };
    /// What keeps a list from being watched.
    enum class Hindrance {
        None,
        InUse,   ///< another program watches it; there is no tree
        Unusable ///< the file is damaged or cannot be read; nothing is kept, and the file stays as it is
    };

    OperationalMode(const Services &services, const StationCaptions &captions, QObject *parent = nullptr);
    ~OperationalMode() override; ///< without close() the record keeps what changed

    /// Builds the tree from the file, connects the stations that were online and evaluates all schedules. No
    /// other program does so with this list until close(). A failure leaves the tree empty; hindrance() tells
    /// more. To be tried again after closeWithoutFile().
    /// The list may be the address of a record on a server, whose stations several keepers share: they come
    /// and go as shareChanged() tells. To be kept alone, Use::Keep.
    Status open(const QString &nodesPath, Use use);
    /// Shows what was read of a record on a server, and follows it: Use::Look without waiting for the server.
    Status join(const QString &address, const SharedState &state);
    Hindrance hindrance() const { return m_hindrance; }
    /// What of the list and of what belongs to it was lost, or rebuilt and has to be looked at by the user.
    const QStringList &defects() const { return m_list.defects(); }
    /// Why it would not be noticed when another program watched the list, too; empty when it would.
    const QString &lockTrouble() const { return m_list.lockTrouble(); }
    /// Whether another program keeps the list that is shown, or did: Use::Look.
    bool isJoined() const { return m_joined != nullptr; }
    /// Who keeps the list that was joined, in words; empty: nobody does any more.
    QString keeper() const { return m_joined ? m_joined->keeper() : QString(); }
    /// Since when nobody watches the stations of the list that was joined.
    std::optional<QDateTime> unwatchedSince() const;
    /// Since when nothing came of who keeps the list that was joined: it may be that nobody watches.
    std::optional<QDateTime> unheardSince() const
    {
        return m_joined ? m_joined->unheardSince() : std::nullopt;
    }
    /// Since when the record that was joined cannot be reached: somebody may be watching all the same.
    std::optional<QDateTime> unreachableSince() const
    {
        return m_joined ? m_joined->unreachableSince() : std::nullopt;
    }
    /// Why it cannot be reached.
    QString unreachableReason() const { return m_joined ? m_joined->trouble() : QString(); }
    enum class Deed {
        Operate,   ///< acknowledge, comment, switch, ask for values
        Administer ///< change the list of stations
    };
    /// Why nothing of that kind can be done now; empty when it can.
    QString whyNot(Deed deed) const;
    /// The same of what holds for all stations: rules, limits, how long what happened is kept.
    QString whyNotForAll() const;
    /// Whether nothing can be done with the stations.
    bool isIdle() const { return !whyNot(Deed::Operate).isEmpty(); }
    /// Nothing while all is written, or is about to be.
    std::optional<UnkeptChanges> unkeptChanges() const { return m_keepingTrouble.unkept(); }
    /// Puts a list that is unusable aside, with what belongs to it, and begins an empty one in its place.
    Status openEmpty();
    /// The name that openEmpty() would give to the list that is unusable.
    QString unusableKeptAs() const { return m_list.asideName(); }

    /// Writes the file and removes the stations. After a failure everything is as before.
    Status close();
    /// Removes the stations and leaves the file as it is; the record keeps what changed.
    void closeWithoutFile();
    bool isOpen() const { return m_isOpen; }
    /// Takes what of the stations has arrived by now, before the end.
    void takeArrived();
    /// Whether all that changed is in the record.
    bool keepsChanges() { return m_record.isOpen() && m_record.writer().flushNow(); }
    /// RecordWriter::workInHand() of the record; 0 where none is written.
    quint64 recordWorkInHand() const { return m_record.isOpen() ? m_record.writer().workInHand() : 0; }
    /// Somebody who reads the record found it damaged.
    void mendRecord();
    /// The path of the record; empty when nothing is recorded.
    QString recordPath() const;
    /// For what keeps something of its own there.
    ListRecord &record() { return m_record; }
    /// Who else shares the list, and for what one keeper alone does; null where it is not shared.
    Leases *leases() { return m_shared ? &m_shared->leases() : nullptr; }

    StationTree &tree() { return m_tree; }
    const StationTree &tree() const { return m_tree; }
    const ValueTrends &trends() const { return m_trends; }
    const cStations &stations() const { return m_stations; }
    /// Null when there is none.
    const cStation *station(const QString &kennung) const { return m_stations.Item(kennung); }

    // Where the list was joined, the following are requests to the program that keeps it. One that is not
    // carried out is reported in the status bar.

    /// Adds a station; the name becomes "name (1)", "name (2)", ... where one has it. Gives its key,
    /// empty when no station can be called that.
    QString addStation(const QString &name, const QString &hostAddress = {}, bool online = false);
    void removeStation(const QString &kennung);
    /// Stations that can be brought back are removed here; not where whyNotBack() says why.
    StationRemoval &removal() { return m_stationRemoval; }
    const StationRemoval &removal() const { return m_stationRemoval; }
    /// Why stations that are removed now cannot be brought back; empty when they can.
    QString whyNotBack() const;
    /// To be called when all that can be are brought back.
    void settleRestored();
    /// Takes effect at once for a station that is online.
    void setHostAddress(const QString &kennung, const QString &hostAddress);
    void setOnline(const QString &kennung, bool online);
    void setAllOnline(bool online);
    void setExclusive(const QString &kennung, bool exclusive);
    /// Also puts the station into the state that the schedule would have given it by now.
    void setSchedule(const QString &kennung, const ExclusiveSchedule &schedule);
    ExclusiveSchedule schedule(const QString &kennung) const { return m_scheduler.schedule(kennung); }
    StationAttributes attributes(const QString &kennung) const
    {
        return m_stationActions.attributes(kennung);
    }

    /// Asks a station for all input values. False when it has a text to deliver already.
    bool requestValues(const QString &kennung);

    /// The alarms that stand.
    const AlarmBook &alarms() const { return m_alarms; }
    AlarmBook &alarms() { return m_alarms; }
    /// For how many minutes a station may be silent before that is an alarm; 0: for ever.
    int longestSilence() const { return m_watchAlarms.longestSilence(); }
    void setLongestSilence(int minutes);
    /// What else operators do about them.
    AlarmActions &alarmActions() { return m_alarmActions; }
    const AlarmActions &alarmActions() const { return m_alarmActions; }
    /// How long what happened is kept; takes effect within a minute.
    const RetentionRules &retention() const { return m_thinning.rules(); }
    void setRetention(const RetentionRules &rules);
    /// How many entries of the tree came more than so many days ago; goes through all.
    qint64 entriesOlderThan(int days) const { return m_thinning.countOlder(now(), days); }
    /// Removes entries from the tree, and so from the list's file; the record keeps what they said. Those
    /// that wait to be acknowledged stay. Gives how many were removed.
    int removeEntries(const QModelIndexList &entries) { return m_removal.remove(entries); }
    /// Of the disk with the list.
    std::optional<DiskRoom> diskRoom() const;
    /// Acknowledges alarms: on the disk first, then in the tree. After a failure nothing is acknowledged. An
    /// alarm that went to several numbers is acknowledged with the last of its entries.
    Status acknowledge(const QModelIndexList &entries);
    Status acknowledgeAlarms(const QList<qint64> &alarms);
    /// The entries in the tree that an alarm has made, one for each number it was sent to.
    QModelIndexList entriesOf(const AlarmRow &alarm) const { return m_acknowledger.entriesOf(alarm); }
    /// The key of an alarm's station; empty when it is about none, or that is gone.
    QString stationOf(const AlarmRow &alarm) const;

    /// By the clock that everything here goes by.
    QDateTime now() const { return m_services.environment.now(); }

    /// Whose name is kept with what is done from now on; empty for nobody's.
    void setOperator(const QString &name);
    const QString &operatorName() const { return m_record.operatorName(); }
    /// The last one of this list's operators, for a proposal.
    QString lastOperator() const { return m_lastOperator; }

    /// The key of the online station at an address, empty when there is none.
    QString stationAt(const QString &hostAddress) const;
    /// Lets go of a station for a while; it counts as online, and takeBack() makes it so again.
    void lend(const QString &kennung) { m_stationActions.lend(kennung); }
    void takeBack() { m_stationActions.takeBack(); }
    void takeBack(const QString &kennung) { m_stationActions.takeBack(kennung); }
    /// Which configuration files are the stations'. Whoever shows them has to open() it: who only watches
    /// needs none.
    StationConfigurations &configurations() { return m_configurations; }
    const StationConfigurations &configurations() const { return m_configurations; }
    /// That of a station; configurations() tells when it has changed.
    StationConfiguration configuration(const QString &kennung) const;
    ChannelNames channelNames(const QString &kennung) const { return configuration(kennung).names(); }
    qint64 foreignDatagrams() const { return m_services.foreignDatagrams(); }
    bool isLent(const QString &kennung) const { return m_stationActions.isLent(kennung); }

Q_SIGNALS:
    /// A line for the status bar.
    void statusMessage(const QString &line);
    /// The last run ended badly, and what it had shown was brought back.
    void recovered(const QString &line);
    /// Changes cannot be written, there are more of them, or they are written again.
    void unkeptChangesChanged();
    void happened(const ktr::StationEvent &event);
    /// Nobody keeps the list that was joined any more, or who does is not heard, or its record cannot be
    /// reached; or that is over, or something else may be done.
    void keeperChanged();
    /// The list that was joined is shown anew, or, where hindrance() tells of one, no more.
    void joinedAgain(const ktr::Status &status);
    /// An alarm arrived; the entry is in the tree and red.
    void alarmRaised(const QModelIndex &entry);
    /// So many stations of a shared list are this program's now.
    void shareChanged(int stations);
    /// Another keeper may have what one alone does, or this one: see Leases::has().
    void dutiesChanged();
    /// Something of a station that is no node of the tree changed.
    void stationChanged(const QString &kennung);

private:
    void onStationChanged(const QString &kennung, StationChange what);
    Status keepShared(const QString &address, Use use);
    std::unique_ptr<StationLine> createLine();
    Status joinList(const QString &nodesPath, const SharedState *state);
    void takeUp(const ListOpener &list);
    void takeUpLate(const OpenedRecord &opened);
    void followStations(const QHash<QString, StationAttributes> &attributes);
    void joinAgain();
    bool isTooEarly();
    bool asks(const Request &request);
    void takeSettings(const QHash<QString, QString> &settings);
    void setKeepingTrouble(const QString &trouble);
    void checkDiskRoom();
    void beginWatchAlarms(const Status &loaded, qint64 unwatchedSince);
    Status mayAcknowledge() const;
    void rename(const QString &kennung, const QString &before);
    qint64 moment() const;
    void createStations(const QHash<QString, StationAttributes> &attributes);
    void awaitNextMinute();
    void showStatus(const cStation &station);
    void removeAll();
    void clearTree();

    Services m_services;
    std::unique_ptr<CallbackTimers> m_callbacks;
    MLiteTimer m_liteTimers;
    StationTree m_tree;
    ValueTrends m_trends;
    cStations m_stations;
    ExclusiveScheduler m_scheduler;
    std::unique_ptr<OneShotTimer> m_minute;
    Hindrance m_hindrance = Hindrance::None;
    KeepingTrouble m_keepingTrouble;
    ListRecord m_record;    ///< while a list is kept it is open
    StationStates m_states; ///< that the record has
    AlarmBook m_alarms;
    AlarmActions m_alarmActions;
    WatchAlarms m_watchAlarms;
    ListParts m_parts;
    KeptList m_list;
    StationActions m_stationActions;
    StationRemoval m_stationRemoval;
    Acknowledger m_acknowledger;
    MessageIntake m_intake;
    EntryRemoval m_removal;
    Thinning m_thinning;
    RequestDesk m_desk;
    KeeperBeat m_beat;
    std::unique_ptr<JoinedList> m_joined;
    std::unique_ptr<SharedList> m_shared;
    std::unique_ptr<ListDuty> m_duty; ///< of that
    qint64 m_lastAlarm = 0;           ///< where there is no record
    QString m_lastOperator;
    bool m_isOpen = false;
    StationConfigurations m_configurations;
};

} // namespace ktr
