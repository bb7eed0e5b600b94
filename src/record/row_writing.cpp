#include "record/row_writing.h"

#include "record/json_text.h"

namespace ktr {

namespace {

QVariant bound(qint64 number)
{
    return number;
}

QVariant bound(int number)
{
    return number;
}

/// Never NULL, which an empty text would be bound as.
QVariant bound(const QString &text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

QVariant numberOrNull(qint64 number)
{
    return number == 0 ? QVariant() : QVariant(number);
}

QVariant textOrNull(const QString &text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

const QVariant &bound(const QVariant &value)
{
    return value;
}

} // namespace

bool RowWriting::write(const RecordRow &row)
{
    return std::visit([this](const auto &kind) { return put(kind); }, row);
}

template <class... Values>
bool RowWriting::carryOut(std::size_t slot, const char *statement, const Values &...values)
{
    QSqlQuery *&query = m_queries[slot];
    if (query == nullptr) {
        query = m_database.prepared(QString::fromLatin1(statement));
    }
    if (query == nullptr) {
        return false;
    }
    int place = 0;
    (query->bindValue(place++, bound(values)), ...);
    return m_database.run(*query);
}

bool RowWriting::put(const EventRow &row)
{
    return carryOut(0,
                    m_again
                        ? "INSERT OR IGNORE INTO event(id, at, station, kind, text, detail, operator, alarm)"
                          " VALUES(?, ?, ?, ?, ?, ?, ?, ?)"
                        : "INSERT INTO event(id, at, station, kind, text, detail, operator, alarm)"
                          " VALUES(?, ?, ?, ?, ?, ?, ?, ?)",
                    row.id, row.at, numberOrNull(row.station), static_cast<int>(row.kind), row.text,
                    textOrNull(row.detail), textOrNull(row.operatorName), numberOrNull(row.alarm));
}

bool RowWriting::put(const StationRow &row)
{
    return carryOut(1, "INSERT OR REPLACE INTO station(id, name, listed, attributes) VALUES(?, ?, ?, ?)",
                    row.id, row.name, int{row.listed}, row.attributes);
}

bool RowWriting::put(const NotificationRow &row)
{
    return carryOut(2,
                    "INSERT OR REPLACE INTO notification(station, entry, first, last, count, raised,"
                    " acknowledged, listed) VALUES(?, ?, ?, ?, ?, ?, ?, ?)",
                    row.station, row.entry, row.first, row.last, row.count, row.raised, row.acknowledged,
                    int{row.listed});
}

bool RowWriting::put(const AlarmRow &row)
{
    const QString recipients = jsonText(QJsonArray::fromStringList(row.recipients));
    return carryOut(
        3,
        "INSERT OR REPLACE INTO alarm(id, station, kind, text, priority, first, last, count,"
        " recipients, acknowledged, acknowledged_by, comment, over, over_why, shelved_until,"
        " shelved_by, shelved_why, changed) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?,"
        " max((SELECT coalesce(max(changed), 0) + 1 FROM alarm), (SELECT coalesce(max(id), 0) FROM event)))",
        row.id, numberOrNull(row.station), static_cast<int>(row.kind), row.text, row.priority, row.first,
        row.last, row.count, recipients, numberOrNull(row.acknowledged), textOrNull(row.acknowledgedBy),
        textOrNull(row.comment), numberOrNull(row.over), textOrNull(row.overWhy),
        numberOrNull(row.shelvedUntil), textOrNull(row.shelvedBy), textOrNull(row.shelvedWhy));
}

bool RowWriting::put(const HistoryRow &row)
{
    return carryOut(4,
                    "INSERT OR IGNORE INTO history(station, channel, at, first, second)"
                    " VALUES(?, ?, ?, ?, ?)",
                    row.station, row.channel, row.at, row.first, row.second);
}

bool RowWriting::put(const ValueRow &row)
{
    return carryOut(5, "INSERT OR IGNORE INTO value(station, channel, at, value) VALUES(?, ?, ?, ?)",
                    row.station, row.channel, row.at, row.value);
}

bool RowWriting::put(const ListFileRow &row)
{
    return carryOut(6, "INSERT INTO list_file(checksum, upto, written_at) VALUES(?, ?, ?)", row.checksum,
                    row.upto, row.at);
}

bool RowWriting::put(const SettingRow &row)
{
    return carryOut(7, "INSERT OR REPLACE INTO setting(name, value) VALUES(?, ?)", row.name, row.value);
}

bool RowWriting::put(const RequestRow &row)
{
    return carryOut(8, "INSERT INTO request(at, operator, what, detail) VALUES(?, ?, ?, ?)", row.at,
                    textOrNull(row.operatorName), row.what, row.detail);
}

bool RowWriting::put(const RequestAnswerRow &row)
{
    return carryOut(9, "UPDATE request SET taken = ?, result = ? WHERE id = ?", row.at, row.result, row.id);
}

} // namespace ktr
