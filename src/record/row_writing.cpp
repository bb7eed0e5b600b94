#include "record/row_writing.h"

#include "record/bound_values.h"
#include "record/json_text.h"

#include <QDateTime>

#include <algorithm>
#include <utility>

namespace ktr {

namespace {

constexpr std::size_t eventSlot = 0;
constexpr std::size_t historySlot = 4;
constexpr std::size_t valueSlot = 5;

QString textInJson(const QString &text)
{
    return jsonText(QJsonArray{withoutNul(text)}).chopped(1).sliced(1);
}

QString textOrNullInJson(const QString &text)
{
    return text.isEmpty() ? QStringLiteral("null") : textInJson(text);
}

QString numberInJson(qint64 number)
{
    return number == 0 ? QStringLiteral("null") : QString::number(number);
}

QString jsonRow(std::initializer_list<std::pair<const char *, QString>> members)
{
    QString row;
    for (const auto &[name, value] : members) {
        row += (row.isEmpty() ? QLatin1String("{\"") : QLatin1String(",\"")) + QLatin1String(name) +
               QLatin1String("\":") + value;
    }
    return row + u'}';
}

/// With the number of the change, by which those that follow the record see that there is one.
QByteArray alarmStatement(const QByteArray &changed)
{
    const QByteArrayList columns{
        "id",   "station",  "kind",          "text",         "priority",        "first",
        "last", "count",    "recipients",    "acknowledged", "acknowledged_by", "comment",
        "over", "over_why", "shelved_until", "shelved_by",   "shelved_why"};
    QByteArrayList again;
    for (const QByteArray &column : columns.mid(1)) {
        again += column + " = excluded." + column;
    }
    return "INSERT INTO alarm(" + columns.join(", ") + ", changed) VALUES(" +
           QByteArrayList(columns.size(), "?").join(", ") + ", " + changed +
           ") ON CONFLICT(id) DO UPDATE SET " + again.join(", ") + ", changed = excluded.changed";
}

} // namespace

bool RowWriting::write(const std::vector<RecordRow> &rows)
{
    return std::ranges::all_of(rows, [this](const RecordRow &row) { return add(row); }) && sendAll();
}

bool RowWriting::sendAll()
{
    return send(eventSlot) && send(historySlot) && send(valueSlot);
}

/// Of one kind they stay in their order.
bool RowWriting::gather(std::size_t slot, const QString &row)
{
    constexpr int mostAtOnce = 500;
    Gathered &gathered = m_gathered[slot];
    gathered.rows += (gathered.count == 0 ? u'[' : u',') + row;
    return ++gathered.count < mostAtOnce || send(slot);
}

bool RowWriting::send(std::size_t slot)
{
    if (m_gathered[slot].count == 0) {
        return true;
    }
    const Gathered gathered = std::exchange(m_gathered[slot], {});
    const char *const statement =
        slot == eventSlot
            ? "INSERT INTO event(at, station, kind, text, detail, operator, alarm) SELECT * FROM"
              " json_to_recordset(CAST(? AS json)) AS row(at bigint, station bigint, kind integer, text text,"
              " detail text, operator text, alarm bigint)"
        : slot == historySlot
            ? "INSERT INTO history(station, channel, at, first, second) SELECT * FROM"
              " json_to_recordset(CAST(? AS json)) AS row(station bigint, channel integer, at bigint,"
              " first text, second text) ON CONFLICT DO NOTHING"
            : "INSERT INTO value(station, channel, at, value) SELECT * FROM"
              " json_to_recordset(CAST(? AS json)) AS row(station bigint, channel integer, at bigint,"
              " value text) ON CONFLICT DO NOTHING";
    return (slot != eventSlot || m_database.beginNumbers()) &&
           carryOut(slot, statement, QString(gathered.rows + u']'));
}

bool RowWriting::add(const RecordRow &row)
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
    const auto bind = [&](QVariant value) {
        if (m_isServer && value.typeId() == QMetaType::QString) {
            value = withoutNul(value.toString());
        }
        query->bindValue(place++, value);
    };
    (bind(bound(values)), ...);
    return m_database.run(*query);
}

/// Times that a module's clock can have reached in earnest have partitions; the rest stands together.
bool RowWriting::needMonth(const QString &table, qint64 at, QSet<qint64> &months)
{
    constexpr qint64 since = 1'262'304'000'000; // 2010
    constexpr qint64 ahead = qint64{2} * 366 * 86'400'000;
    if (!m_isServer || at < since || at > QDateTime::currentMSecsSinceEpoch() + ahead) {
        return true;
    }
    const QDate day = QDateTime::fromMSecsSinceEpoch(at, Qt::UTC).date();
    const qint64 month = 12 * day.year() + day.month();
    if (months.contains(month)) {
        return true;
    }
    months.insert(month); // should the transaction fail, others are made from here on
    // Who reads keeps it from being made; then the rows stand with the others until one is made later.
    if (!m_database.execute(
            {QStringLiteral("SAVEPOINT month"), QStringLiteral("SET LOCAL lock_timeout TO 500")})) {
        return false;
    }
    if (!m_database.execute(QStringLiteral("SELECT add_month('%1', %2)").arg(table).arg(at)) &&
        (m_database.isLost() || !m_database.execute(QStringLiteral("ROLLBACK TO month")))) {
        return false;
    }
    return static_cast<bool>(
        m_database.execute({QStringLiteral("RELEASE month"), m_database.lockPatience()}));
}

bool RowWriting::put(const EventRow &row)
{
    const QVariant station = numberOrNull(row.station);
    const int kind = static_cast<int>(row.kind);
    const QVariant detail = textOrNull(row.detail);
    const QVariant by = textOrNull(row.operatorName);
    const QVariant alarm = numberOrNull(row.alarm);
    if (m_isServer) {
        return gather(eventSlot, jsonRow({{"at", QString::number(row.at)},
                                          {"station", numberInJson(row.station)},
                                          {"kind", QString::number(kind)},
                                          {"text", textInJson(row.text)},
                                          {"detail", textOrNullInJson(row.detail)},
                                          {"operator", textOrNullInJson(row.operatorName)},
                                          {"alarm", numberInJson(row.alarm)}}));
    }
    return carryOut(eventSlot,
                    m_again
                        ? "INSERT OR IGNORE INTO event(id, at, station, kind, text, detail, operator, alarm)"
                          " VALUES(?, ?, ?, ?, ?, ?, ?, ?)"
                        : "INSERT INTO event(id, at, station, kind, text, detail, operator, alarm)"
                          " VALUES(?, ?, ?, ?, ?, ?, ?, ?)",
                    row.id, row.at, station, kind, row.text, detail, by, alarm);
}

bool RowWriting::put(const StationRow &row)
{
    return carryOut(1,
                    "INSERT INTO station(id, name, listed, attributes) VALUES(?, ?, ?, ?) ON CONFLICT(id) DO"
                    " UPDATE SET name = excluded.name, listed = excluded.listed,"
                    " attributes = excluded.attributes",
                    row.id, row.name, int{row.listed}, row.attributes);
}

bool RowWriting::put(const NotificationRow &row)
{
    return carryOut(
        2,
        "INSERT INTO notification(station, entry, first, last, count, raised, acknowledged, listed)"
        " VALUES(?, ?, ?, ?, ?, ?, ?, ?) ON CONFLICT(station, entry) DO UPDATE SET"
        " first = excluded.first, last = excluded.last, count = excluded.count,"
        " raised = excluded.raised, acknowledged = excluded.acknowledged,"
        " listed = excluded.listed",
        row.station, row.entry, row.first, row.last, row.count, row.raised, row.acknowledged,
        int{row.listed});
}

bool RowWriting::put(const AlarmRow &row)
{
    static const QByteArray inFile = alarmStatement("max((SELECT coalesce(max(changed), 0) + 1 FROM alarm),"
                                                    " (SELECT coalesce(max(id), 0) FROM event))");
    static const QByteArray onServer = alarmStatement("nextval('alarm_change')");
    const QString recipients = jsonText(QJsonArray::fromStringList(row.recipients));
    return m_database.beginNumbers() &&
           carryOut(3, m_isServer ? onServer : inFile, row.id, numberOrNull(row.station),
                    static_cast<int>(row.kind), row.text, row.priority, row.first, row.last, row.count,
                    recipients, numberOrNull(row.acknowledged), textOrNull(row.acknowledgedBy),
                    textOrNull(row.comment), numberOrNull(row.over), textOrNull(row.overWhy),
                    numberOrNull(row.shelvedUntil), textOrNull(row.shelvedBy), textOrNull(row.shelvedWhy));
}

bool RowWriting::put(const HistoryRow &row)
{
    if (m_isServer) {
        return needMonth(QStringLiteral("history"), row.at, m_historyMonths) &&
               gather(historySlot, jsonRow({{"station", QString::number(row.station)},
                                            {"channel", QString::number(row.channel)},
                                            {"at", QString::number(row.at)},
                                            {"first", textInJson(row.first)},
                                            {"second", textInJson(row.second)}}));
    }
    return carryOut(historySlot,
                    "INSERT INTO history(station, channel, at, first, second) VALUES(?, ?, ?, ?, ?)"
                    " ON CONFLICT DO NOTHING",
                    row.station, row.channel, row.at, row.first, row.second);
}

bool RowWriting::put(const ValueRow &row)
{
    if (m_isServer) {
        return needMonth(QStringLiteral("value"), row.at, m_valueMonths) &&
               gather(valueSlot, jsonRow({{"station", QString::number(row.station)},
                                          {"channel", QString::number(row.channel)},
                                          {"at", QString::number(row.at)},
                                          {"value", textInJson(row.value)}}));
    }
    return carryOut(
        valueSlot, "INSERT INTO value(station, channel, at, value) VALUES(?, ?, ?, ?) ON CONFLICT DO NOTHING",
        row.station, row.channel, row.at, row.value);
}

bool RowWriting::put(const ListFileRow &row)
{
    return carryOut(6, "INSERT INTO list_file(checksum, upto, written_at) VALUES(?, ?, ?)", row.checksum,
                    row.upto, row.at);
}

bool RowWriting::put(const SettingRow &row)
{
    return carryOut(7,
                    "INSERT INTO setting(name, value) VALUES(?, ?) ON CONFLICT(name) DO UPDATE SET"
                    " value = excluded.value",
                    row.name, row.value);
}

bool RowWriting::put(const RequestRow &row)
{
    // Keepers of a server's record look for those that are open, in whatever order they come.
    return (m_isServer
                ? static_cast<bool>(m_database.execute(QStringLiteral("NOTIFY ") + RecordDatabase::committed))
                : m_database.beginNumbers()) &&
           carryOut(8, "INSERT INTO request(at, operator, what, detail) VALUES(?, ?, ?, ?)", row.at,
                    textOrNull(row.operatorName), row.what, row.detail);
}

bool RowWriting::put(const RequestAnswerRow &row)
{
    return carryOut(9, "UPDATE request SET taken = ?, result = ? WHERE id = ?", row.at, row.result, row.id);
}

} // namespace ktr
