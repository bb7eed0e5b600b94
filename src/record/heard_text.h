#pragma once

#include "record/record_rows.h"

#include <QSet>

#include <optional>
#include <vector>

namespace ktr {

/// A notification that a keeper heard while it could not reach the server, of a station that another keeper
/// has had since: what becomes of it is that one's to say, who knows what stands there by now. It is asked
/// for as operators ask for things.
struct HeardText
{
    qint64 station = 0;
    qint64 at = 0;
    QString text{}; ///< as received

    static QString request() { return QStringLiteral("heard"); }
    RequestRow row() const;
    /// Nothing where it is no such request.
    static std::optional<HeardText> of(const RequestRow &row);
};

/// What of rows is to be written late when these stations have been another keeper's since: what was said,
/// but no state of stations, alarms and connections, of which the record has a newer one.
struct OthersStations
{
    QSet<qint64> all{};
    QSet<qint64> gone{}; ///< of these, out of the list by now: nobody can be asked about them
};
std::vector<RecordRow> withoutStates(const std::vector<RecordRow> &rows, const OthersStations &others);

/// The stations whose states rows tell.
QSet<qint64> stationsOf(const std::vector<RecordRow> &rows);

} // namespace ktr
