#pragma once

#include <QJsonObject>
#include <QString>

namespace ktr {

/// What who looks on a list asks of who keeps it, as the record's requests have it: a word, and what it is
/// about, in JSON.
struct Request
{
    QString what{};
    QJsonObject about{};
    bool operator==(const Request &) const = default;
};

/// The words. A station is named by its number in the record: its key is another one after each start.
namespace requests {
inline constexpr char acknowledge[] = "acknowledge"; ///< entries (station, entry, raised) and alarms (numbers)
inline constexpr char comment[] = "comment";         ///< alarms, text
inline constexpr char shelve[] = "shelve";           ///< alarms, until, why
inline constexpr char maintain[] = "maintain";       ///< station, until, why
inline constexpr char unshelve[] = "unshelve";       ///< station, text
inline constexpr char add[] = "add";                 ///< name, address, on
inline constexpr char remove[] = "remove";           ///< station
inline constexpr char rename[] = "rename";           ///< station, name
inline constexpr char address[] = "address";         ///< station, address
inline constexpr char online[] = "online";           ///< station, on; without a station all of them
inline constexpr char exclusive[] = "exclusive";     ///< station, on
inline constexpr char schedule[] = "schedule";       ///< station, attributes
inline constexpr char values[] = "values";           ///< station
inline constexpr char shift[] = "shift";             ///< nothing: whoever asks is on duty now
} // namespace requests

/// A request about a station, by its number in the record.
inline Request stationRequest(const char *what, qint64 station, QJsonObject about = {})
{
    about[QLatin1String("station")] = station;
    return {QString::fromLatin1(what), about};
}

} // namespace ktr
