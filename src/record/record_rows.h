#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <variant>

namespace ktr {

// The rows of the record. All times are milliseconds since 1970 UTC; 0 is a time that is not known or has not
// come. Numbers of stations, events and alarms begin at 1; 0 is none.

/// What an event tells. The numbers stand in records for ever: new kinds get new ones.
enum class EventKind {
    // What stations said
    Notification = 1,
    Values = 2,
    History = 3,
    OtherMessage = 4,
    // What became of their connections
    Alive = 10,
    Silent = 11,
    Quality = 12,
    Puk = 13,
    Flood = 14,
    // The list of stations
    StationAdded = 20,
    StationRemoved = 21,
    StationRenamed = 22,
    Attributes = 23, ///< address, online, exclusive, schedule
    EntryRemoved = 24,
    // Alarms
    Acknowledged = 30,
    Commented = 31,
    Shelved = 32,
    Unshelved = 33,
    AlarmOver = 34,
    // What operators sent
    Sent = 40,
    // The program
    Started = 50,
    Stopped = 51,
    ListFollowed = 52, ///< the list of stations was edited or replaced by somebody, and is followed
    Trouble = 53,
    Note = 54,
};

inline constexpr std::array allEventKinds = {
    EventKind::Notification, EventKind::Values,       EventKind::History,        EventKind::OtherMessage,
    EventKind::Alive,        EventKind::Silent,       EventKind::Quality,        EventKind::Puk,
    EventKind::Flood,        EventKind::StationAdded, EventKind::StationRemoved, EventKind::StationRenamed,
    EventKind::Attributes,   EventKind::EntryRemoved, EventKind::Acknowledged,   EventKind::Commented,
    EventKind::Shelved,      EventKind::Unshelved,    EventKind::AlarmOver,      EventKind::Sent,
    EventKind::Started,      EventKind::Stopped,      EventKind::ListFollowed,   EventKind::Trouble,
    EventKind::Note};

/// What somebody may search for in events: what was said, done and written, not measured values.
inline const QList<EventKind> &searchableKinds()
{
    static const QList<EventKind> kinds{EventKind::Notification,   EventKind::OtherMessage,
                                        EventKind::StationAdded,   EventKind::StationRemoved,
                                        EventKind::StationRenamed, EventKind::EntryRemoved,
                                        EventKind::Acknowledged,   EventKind::Commented,
                                        EventKind::Shelved,        EventKind::Unshelved,
                                        EventKind::AlarmOver,      EventKind::Sent,
                                        EventKind::Trouble,        EventKind::Note};
    return kinds;
}

/// Something that happened; never changed afterwards.
struct EventRow
{
    qint64 id = 0; ///< the order
    qint64 at = 0;
    qint64 station = 0;
    EventKind kind = EventKind::Note;
    QString text{};   ///< as received or written
    QString detail{}; ///< JSON; may be empty
    QString operatorName{};
    qint64 alarm = 0; ///< that it belongs to
    bool operator==(const EventRow &) const = default;
};

/// A station's present state.
struct StationRow
{
    qint64 id = 0;
    QString name{};       ///< the text of its node
    bool listed = true;   ///< or removed from the list
    QString attributes{}; ///< JSON
    bool operator==(const StationRow &) const = default;
};

/// The state of an entry under a station's notifications.
struct NotificationRow
{
    qint64 station = 0;
    QString entry{}; ///< "+49170 --> M,1 fail"
    qint64 first = 0;
    qint64 last = 0;
    qint64 count = 0;
    qint64 raised = 0; ///< when it became red
    qint64 acknowledged = 0;
    bool listed = true; ///< or removed from the list
    bool operator==(const NotificationRow &) const = default;
};

/// What an alarm is about. The numbers stand in records for ever.
enum class AlarmKind {
    Module = 1,  ///< a module raised it
    Silent = 2,  ///< a module is not heard any more
    Puk = 3,     ///< a module's SIM asks for its PUK
    Flood = 4,   ///< more arrives than can be dealt with
    Disk = 5,    ///< what happens cannot be written down
    List = 6,    ///< something about the list of stations
    Watcher = 7, ///< something about the program that watches
};

/// One occurrence of an alarm: what comes again after it was acknowledged is another.
struct AlarmRow
{
    qint64 id = 0;
    qint64 station = 0;
    AlarmKind kind = AlarmKind::Module;
    QString text{};
    int priority = 2; ///< 1, the most urgent, to 3
    qint64 first = 0;
    qint64 last = 0;
    qint64 count = 0;
    QStringList recipients{};
    qint64 acknowledged = 0;
    QString acknowledgedBy{};
    QString comment{};
    qint64 over = 0;
    QString overWhy{};
    qint64 shelvedUntil = 0;
    QString shelvedBy{};
    QString shelvedWhy{};
    bool operator==(const AlarmRow &) const = default;
};

/// A record of a module's archive. One that is reported again stands once.
struct HistoryRow
{
    qint64 station = 0;
    int channel = 0; ///< 1 to 18
    qint64 at = 0;
    QString first{}; ///< the two values as received
    QString second{};
    bool operator==(const HistoryRow &) const = default;
};

/// An input value that was reported.
struct ValueRow
{
    qint64 station = 0;
    int channel = 0; ///< 1 to 18
    qint64 at = 0;
    QString value{}; ///< as received
    bool operator==(const ValueRow &) const = default;
};

/// A list of stations as a file: a file of this checksum holds the events up to one.
struct ListFileRow
{
    QString checksum{};
    qint64 upto = 0; ///< number of an event
    qint64 at = 0;   ///< when it was written
    bool operator==(const ListFileRow &) const = default;
};

struct SettingRow
{
    QString name{};
    QString value{};
    bool operator==(const SettingRow &) const = default;
};

/// A request of a program that joined the list to the one that keeps it.
struct RequestRow
{
    qint64 id = 0; ///< the order; the record gives it
    qint64 at = 0;
    QString operatorName{};
    QString what{};
    QString detail{}; ///< JSON
    QString login{};  ///< the database's user who asked; the server gives it
    bool mayAdminister = true;
    bool mayKeep = true;
    /// How long ago a server got it, by its own clock; in a file, which one machine writes, `at` tells.
    std::optional<qint64> age{};
    bool operator==(const RequestRow &) const = default;
};

/// What became of a request; one that has an answer is done with.
struct RequestAnswerRow
{
    qint64 id = 0; ///< of the request
    qint64 at = 0;
    QString result{}; ///< why it was not carried out; empty when it was
    bool operator==(const RequestAnswerRow &) const = default;
};

/// What can be written. Stations, notifications, alarms and settings take the place of the row that has
/// their key; a history record or value that is there already stays.
using RecordRow = std::variant<EventRow, StationRow, NotificationRow, AlarmRow, HistoryRow, ValueRow,
                               ListFileRow, SettingRow, RequestRow, RequestAnswerRow>;

} // namespace ktr
