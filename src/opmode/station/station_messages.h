#pragma once

#include <QList>
#include <QString>

#include <variant>

namespace ktr {

/// An entry to be made under a station's notifications or history.
struct MessageEntry
{
    QString key; ///< of the entry under its branch; an entry whose key is there already is not made again
    QString text;
    bool operator==(const MessageEntry &) const = default;
};

struct NotificationMessage
{
    MessageEntry entry;
    bool alarm = false; ///< to be shown in red until it is acknowledged
    bool operator==(const NotificationMessage &) const = default;
};

/// The input values that a station reported; the time of the report is the time of its arrival.
struct InputValuesMessage
{
    struct Value
    {
        int channel;  ///< 1 to 18
        QString text; ///< as received
        bool operator==(const Value &) const = default;
    };
    QList<Value> values;
    bool operator==(const InputValuesMessage &) const = default;
};

struct HistoryMessage
{
    /// What the entries say, for the record.
    struct Record
    {
        int archive;   ///< the number that the report begins with; 0 for none
        QString stamp; ///< "DD.MM.YYYY HH:MM"
        QString input; ///< the two values as received
        QString value;
        bool operator==(const Record &) const = default;
    };
    QList<MessageEntry> entries;
    QString unusable;           ///< the part of the report that is no record or has no time, as received
    QList<Record> records = {}; ///< of the entries with a time
    bool operator==(const HistoryMessage &) const = default;
};

/// A report that cannot be understood, whole.
struct UnusableMessage
{
    QString text;
    bool operator==(const UnusableMessage &) const = default;
};

/// A text that changes nothing in the tree.
struct NoStationMessage
{
    bool operator==(const NoStationMessage &) const = default;
};

using StationMessage =
    std::variant<NoStationMessage, NotificationMessage, InputValuesMessage, HistoryMessage, UnusableMessage>;

/// Whether a notification tells of an alarm, to be shown in red until it is acknowledged.
bool isAlarmText(const QString &notification);

/// What a station's text, number + " --> " + the text of the SMS, says. Every report of the history stands
/// for itself: it begins with the time of its first record.
StationMessage interpretStationMessage(const QString &message);

/// The message without the ">" that may stand in front of its kind.
QString withoutMark(const QString &message);

} // namespace ktr
