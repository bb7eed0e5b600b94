#pragma once

#include <QJsonObject>
#include <QString>

namespace ktr {

/// What a program that joined a list asks of the one that keeps it, as the record has it: a word, and what it
/// is about, in JSON. Example: "online" about {"on":true,"station":3}.
struct Request
{
    QString what{};
    QJsonObject about{};
    bool operator==(const Request &) const = default;
};

/// The words, and beside each the members of what it is about.
namespace requests {
inline constexpr QLatin1String acknowledge("acknowledge"); ///< entries (station, entry, raised), alarms
inline constexpr QLatin1String comment("comment");         ///< alarms, text
inline constexpr QLatin1String shelve("shelve");           ///< alarms, until, why
inline constexpr QLatin1String maintain("maintain");       ///< station, until, why
inline constexpr QLatin1String unshelve("unshelve");       ///< station, text
inline constexpr QLatin1String add("add");                 ///< name, address, on
inline constexpr QLatin1String remove("remove");           ///< station
inline constexpr QLatin1String rename("rename");           ///< station, name
inline constexpr QLatin1String address("address");         ///< station, address
inline constexpr QLatin1String online("online");           ///< station, on; without a station all of them
inline constexpr QLatin1String exclusive("exclusive");     ///< station, on
inline constexpr QLatin1String schedule("schedule");       ///< station, attributes
inline constexpr QLatin1String values("values");           ///< station
inline constexpr QLatin1String shift("shift");             ///< nothing: whoever asks is on duty now
inline constexpr QLatin1String set("set");                 ///< name, text: a setting of a shared list
} // namespace requests

/// The members.
namespace request_members {
inline constexpr QLatin1String
    station("station"); ///< its number in the record: its key changes at each start
inline constexpr QLatin1String name("name");
inline constexpr QLatin1String address("address");
inline constexpr QLatin1String on("on");
inline constexpr QLatin1String attributes("attributes"); ///< a text, as the table of stations has it
inline constexpr QLatin1String alarms("alarms");         ///< numbers
inline constexpr QLatin1String entries("entries");       ///< of the tree's notifications
inline constexpr QLatin1String entry("entry");           ///< its key under the notifications
inline constexpr QLatin1String raised("raised");         ///< when it became red; times are ms since 1970, UTC
inline constexpr QLatin1String until("until");
inline constexpr QLatin1String text("text");
inline constexpr QLatin1String why("why");
} // namespace request_members

inline Request settingRequest(const QString &name, const QString &value)
{
    return {requests::set, {{request_members::name, name}, {request_members::text, value}}};
}

/// Whether it changes the list or what holds for all of it, and not just how it is watched.
inline bool isAdministrative(const QString &what)
{
    return what == requests::add || what == requests::remove || what == requests::rename ||
           what == requests::address || what == requests::set;
}

/// A request about a station, by its number in the record.
inline Request stationRequest(QLatin1String what, qint64 station, QJsonObject about = {})
{
    about[request_members::station] = station;
    return {what, about};
}

} // namespace ktr
