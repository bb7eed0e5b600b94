#include "record/background_work.h"

#include "record/record_sql.h"

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

constexpr int rowsOfAStep = 500;
constexpr qint64 eventsOfAStep = 10'000;

/// The rows that a statement gives.
bool rowsOf(RecordDatabase &database, const QString &statement, const QVariantList &values,
            QList<QVariantList> &rows, int columns)
{
    QSqlQuery *query = database.carriedOut(statement, values);
    if (query == nullptr) {
        return false;
    }
    while (query->next()) {
        QVariantList row;
        for (int column = 0; column < columns; ++column) {
            row += query->value(column);
        }
        rows += row;
    }
    const bool isWhole = database.wasReadToItsEnd(*query);
    query->finish();
    return isWhole;
}

} // namespace

void BackgroundWork::setRetention(const Retention &retention)
{
    m_thinning.clear();
    if (retention.values != 0) {
        m_thinning.push_back({u"value"_s, retention.values});
    }
    if (retention.history != 0) {
        m_thinning.push_back({u"history"_s, retention.history});
    }
    for (const auto &[kind, before] : retention.events) {
        if (before != 0) {
            m_thinning.push_back({u"event"_s, before, static_cast<int>(kind)});
        }
    }
    if (retention.alarms != 0) {
        m_thinning.push_back({u"alarm"_s, retention.alarms});
    }
}

bool BackgroundWork::step(RecordDatabase &database, Status &status)
{
    bool hasMore = false;
    bool isDone = database.begin() && sortKinds(database, hasMore);
    if (isDone && !hasMore) {
        isDone = indexTexts(database, hasMore);
    }
    std::deque<Table> thinning = m_thinning;
    if (isDone && !hasMore && !thinning.empty()) {
        bool tableHasMore = false;
        isDone = thinOut(database, thinning.front(), tableHasMore);
        if (!tableHasMore) {
            thinning.pop_front();
        }
        hasMore = !thinning.empty();
    }
    isDone = isDone && database.commit();
    if (!isDone) {
        status = database.failure();
        database.rollBack();
        return true;
    }
    m_thinning = std::move(thinning);
    status = Status::done();
    return hasMore;
}

bool BackgroundWork::indexTexts(RecordDatabase &database, bool &hasMore)
{
    QList<QVariantList> numbers;
    if (!rowsOf(database, u"SELECT coalesce("_s + searchableUpto + u", 0), coalesce(max(id), 0) FROM event"_s,
                {}, numbers, 2)) {
        return false;
    }
    const qint64 begin = numbers[0][0].toLongLong();
    const qint64 last = numbers[0][1].toLongLong();
    if (begin >= last) {
        return true;
    }
    // Most events have no searchable text; skipping them costs little.
    const QString searchable = u"id > ? AND id <= ? AND kind IN "_s + listOf(searchableKinds());
    qint64 end = std::min(begin + eventsOfAStep, last);
    QList<QVariantList> texts;
    if (!rowsOf(database,
                u"SELECT id FROM event WHERE "_s + searchable +
                    u" ORDER BY id LIMIT 1 OFFSET %1"_s.arg(rowsOfAStep - 1),
                {begin, end}, texts, 1)) {
        return false;
    }
    end = texts.isEmpty() ? end : texts[0][0].toLongLong();
    hasMore = end < last;
    return database.carriedOut(u"INSERT INTO event_text(rowid, text) SELECT id, text FROM event WHERE "_s +
                                   searchable,
                               {begin, end}) != nullptr &&
           database.carriedOut(settingStatement(u"'searchable', ?"_s), {QString::number(end)}) != nullptr;
}

bool BackgroundWork::sortKinds(RecordDatabase &database, bool &hasMore)
{
    QList<QVariantList> numbers;
    if (!rowsOf(database, u"SELECT coalesce("_s + sortedUpto + u", 0), coalesce(max(id), 0) FROM event"_s, {},
                numbers, 2)) {
        return false;
    }
    const qint64 begin = numbers[0][0].toLongLong();
    const qint64 last = numbers[0][1].toLongLong();
    if (begin >= last) {
        return true;
    }
    const qint64 end = std::min(begin + eventsOfAStep, last);
    hasMore = end < last;
    const QString rows = u", at, id, station FROM event WHERE id > ? AND id <= ?"_s;
    return database.carriedOut(u"INSERT OR IGNORE INTO event_kind(kind, at, id, station) SELECT kind"_s +
                                   rows + u" UNION ALL SELECT 0"_s + rows + u" AND alarm IS NOT NULL"_s,
                               {begin, end, begin, end}) != nullptr &&
           database.carriedOut(settingStatement(u"'sorted', ?"_s), {QString::number(end)}) != nullptr;
}

bool BackgroundWork::thinOut(RecordDatabase &database, Table &table, bool &hasMore)
{
    return table.name == u"event"   ? thinEvents(database, table, hasMore)
           : table.name == u"alarm" ? thinAlarms(database, table, hasMore)
                                    : thinChannels(database, table, hasMore);
}

/// By the order of its kind, which is whole by then.
bool BackgroundWork::thinEvents(RecordDatabase &database, Table &table, bool &hasMore)
{
    if (table.at.isEmpty()) {
        table.at = {qint64{0}, qint64{0}};
    }
    // Events that a list file does not hold yet are needed to bring it up to date.
    QList<QVariantList> rows;
    if (!rowsOf(database,
                u"SELECT event.at, event.id, text, event.id <= coalesce("_s + searchableUpto +
                    u", 0), event.id <= coalesce((SELECT upto FROM list_file ORDER BY id DESC LIMIT 1), "_s +
                    // On a server there may be no list file that brings itself up to date by events.
                    (database.isServer() ? u"event.id"_s : u"0"_s) +
                    u") AND NOT EXISTS (SELECT 1 FROM alarm WHERE alarm.id = event.alarm AND"
                    " (acknowledged IS NULL OR over IS NULL)) FROM event_kind"_s +
                    database.sql().inThisOrder +
                    u"event USING(id) WHERE event_kind.kind = ? AND (event_kind.at, event_kind.id) > (?, ?)"
                    " AND event_kind.at < ? ORDER BY event_kind.at, event_kind.id LIMIT ?"_s,
                QVariantList{table.kind} + table.at + QVariantList{table.before, rowsOfAStep}, rows, 5)) {
        return false;
    }
    hasMore = rows.size() == rowsOfAStep;
    for (const QVariantList &row : rows) {
        if (!row[4].toBool()) {
            continue;
        }
        const bool isIndexed = !database.isServer() && row[3].toBool(); // a server's indexes follow
        if (isIndexed && searchableKinds().contains(static_cast<EventKind>(table.kind)) &&
            database.carriedOut(u"INSERT INTO event_text(event_text, rowid, text) VALUES('delete', ?, ?)"_s,
                                {row[1], row[2]}) == nullptr) {
            return false;
        }
        if (database.carriedOut(u"DELETE FROM event WHERE id = ?"_s, {row[1]}) == nullptr ||
            (!database.isServer() &&
             database.carriedOut(u"DELETE FROM event_kind WHERE kind IN (0, ?) AND at = ? AND id = ?"_s,
                                 {table.kind, row[0], row[1]}) == nullptr)) {
            return false;
        }
    }
    if (!rows.isEmpty()) {
        table.at = {rows.last()[0], rows.last()[1]};
    }
    return true;
}

bool BackgroundWork::thinAlarms(RecordDatabase &database, Table &table, bool &hasMore)
{
    QSqlQuery *query =
        database.carriedOut(u"DELETE FROM alarm WHERE id IN (SELECT id FROM alarm WHERE first < ? AND"
                            " acknowledged IS NOT NULL AND over IS NOT NULL ORDER BY first LIMIT ?)"_s,
                            {table.before, rowsOfAStep});
    hasMore = query != nullptr && query->numRowsAffected() == rowsOfAStep;
    return query != nullptr;
}

/// Channel by channel, because that is the order of the rows.
bool BackgroundWork::thinChannels(RecordDatabase &database, Table &table, bool &hasMore)
{
    const auto withName = [&](const QString &statement) -> QString { return statement.arg(table.name); };
    if (table.at.isEmpty()) {
        table.at = {qint64{-1}, 0};
        QList<QVariantList> dropped;
        if (database.isServer()) { // who reads keeps months from being dropped: another time, then
            const bool isDropped =
                database.execute({u"SAVEPOINT months"_s, u"SET LOCAL lock_timeout TO 1000"_s}) &&
                rowsOf(database, withName(u"SELECT drop_months('%1', ?)"_s), {table.before}, dropped, 1);
            if (!isDropped && (database.isLost() || !database.execute(u"ROLLBACK TO months"_s))) {
                return false;
            }
            if (!database.execute({u"RELEASE months"_s, RecordDatabase::lockPatience()})) {
                return false;
            }
        }
    }
    QList<QVariantList> next;
    if (!rowsOf(database,
                withName(u"SELECT station, channel FROM %1 WHERE (station, channel) > (?, ?)"
                         " ORDER BY station, channel LIMIT 1"_s),
                table.at, next, 2)) {
        return false;
    }
    if (next.isEmpty()) {
        return true;
    }
    hasMore = true;
    QSqlQuery *query = database.carriedOut(
        withName(u"DELETE FROM %1 WHERE station = ? AND channel = ? AND at IN (SELECT at FROM %1"
                 " WHERE station = ? AND channel = ? AND at < ? ORDER BY at LIMIT ?)"_s),
        next[0] + next[0] + QVariantList{table.before, rowsOfAStep});
    if (query != nullptr && query->numRowsAffected() < rowsOfAStep) {
        table.at = next[0];
    }
    return query != nullptr;
}

} // namespace ktr
