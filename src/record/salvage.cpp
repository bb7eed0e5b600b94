#include "record/salvage.h"

#include "platform/files.h"
#include "record/record_sql.h"
#include "record/schema.h"

#include <QCoreApplication>
#include <QSqlError>

#include <optional>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

/// A table and the columns by which its rows are in order, the last ones of numbers unless told otherwise.
struct SalvagedTable
{
    QString name;
    QStringList key;
    bool endsWithText = false;
    bool isLater = false; ///< older records have no such table
    /// A text that may stand in pages of its own: where these cannot be read, the rest of the row is saved.
    QString longText{};
};

const QList<SalvagedTable> &salvagedTables()
{
    static const QList<SalvagedTable> tables{
        {u"setting"_s, {u"name"_s}, true},
        {u"station"_s, {u"id"_s}},
        {u"alarm"_s, {u"id"_s}},
        {u"notification"_s, {u"station"_s, u"entry"_s}, true},
        {u"list_file"_s, {u"id"_s}},
        {u"event"_s, {u"id"_s}},
        {u"history"_s, {u"station"_s, u"channel"_s, u"at"_s}},
        {u"value"_s, {u"station"_s, u"channel"_s, u"at"_s}},
        {u"transmission"_s, {u"id"_s}, false, true, u"configuration"_s},
        {u"transmission_step"_s, {u"transmission"_s, u"step"_s}, false, true},
    };
    return tables;
}

/// Whether this place cannot be read, and not just now: for want of room or memory, say.
bool tellsOfDamage(const QSqlError &error)
{
    constexpr int readError = 10;
    constexpr int damagedFile = 11;
    constexpr int noDatabase = 26;
    const int code = error.nativeErrorCode().toInt() & 0xff;
    return code == readError || code == damagedFile || code == noDatabase;
}

/// Copies one table. Rows are read in the order of its key from the front to the first place that cannot be
/// read, from the back likewise, and what lies between is halved again and again.
class TableCopy
{
public:
    TableCopy(RecordDatabase &from, RecordDatabase &to, const SalvagedTable &table)
        : m_from(from), m_to(to), m_table(table)
    {}

    /// A failure: the new record cannot be written, or the old one cannot be read at the moment.
    Status run()
    {
        if (findColumns()) {
            copy({}, {}, {}, 0);
            if (!m_isWhole && m_columns.removeAll(m_table.longText) > 0) {
                prepareInsert(m_table.longText);
                m_reads = 0;
                copy({}, {}, {}, 0);
            }
        } else {
            m_isWhole = m_table.isLater && m_canWrite && m_canRead && m_columns.isEmpty();
        }
        return m_canWrite ? m_canRead : m_to.failure();
    }
    qint64 rows() const { return m_rows; }
    bool isWhole() const { return m_isWhole; }

private:
    /// How often a stretch without a readable row is halved, and how many reads are tried in all.
    static constexpr int mostHalvings = 8;
    static constexpr int mostReads = 50'000;
    static constexpr qint64 rowsOfACommit = 50'000;
    /// Beyond all numbers and times that a record has.
    static constexpr qint64 farthest = qint64{1} << 44;

    /// The columns that both files have.
    bool findColumns()
    {
        const auto columns = [this](RecordDatabase &database, QStringList &names) {
            QSqlQuery *query =
                database.prepared(u"SELECT name FROM pragma_table_info('%1')"_s.arg(m_table.name));
            if (query == nullptr || !database.run(*query)) {
                return false;
            }
            while (query->next()) {
                names += query->value(0).toString();
            }
            query->finish();
            return true;
        };
        QStringList old;
        QStringList present;
        if (!columns(m_to, present)) {
            m_canWrite = false;
            return false;
        }
        if (!columns(m_from, old)) {
            m_canRead = m_from.isDamaged() ? Status::done() : m_from.failure();
            return false;
        }
        for (const QString &name : present) {
            if (old.contains(name)) {
                m_columns += name;
            }
        }
        prepareInsert({});
        return !m_columns.isEmpty();
    }

    /// A column that is not read is left empty.
    void prepareInsert(const QString &empty)
    {
        QStringList names = m_columns;
        QStringList values(m_columns.size(), u"?"_s);
        if (!empty.isEmpty()) {
            names += empty;
            values += u"''"_s;
        }
        m_insert = u"INSERT OR IGNORE INTO %1(%2) VALUES(%3)"_s.arg(m_table.name, names.join(u','),
                                                                    values.join(u','));
    }

    /// Reads the rows that begin with `prefix` and whose next column lies between the two, and writes them.
    /// Gives whether all were read, and the last value of that column.
    bool read(const QVariantList &prefix, std::optional<qint64> above, std::optional<qint64> below,
              bool isForward, std::optional<qint64> &last)
    {
        const QString column = m_table.key[prefix.size()];
        QStringList conditions{u"1"_s};
        for (qsizetype i = 0; i < prefix.size(); ++i) {
            conditions += m_table.key[i] + u" = ?"_s;
        }
        if (above) {
            conditions += column + u" > %1"_s.arg(*above);
        }
        if (below) {
            conditions += column + u" < %1"_s.arg(*below);
        }
        QString order = m_table.key.join(isForward ? u","_s : u" DESC,"_s);
        order += isForward ? QString() : u" DESC"_s;
        QSqlQuery query(m_from.handle());
        query.setForwardOnly(true);
        query.prepare(u"SELECT %1 FROM %2 WHERE %3 ORDER BY %4"_s.arg(m_columns.join(u','), m_table.name,
                                                                      conditions.join(u" AND "_s), order));
        for (const QVariant &value : prefix) {
            query.addBindValue(value);
        }
        ++m_reads;
        if (!query.exec()) {
            return isRead(query);
        }
        const int place = static_cast<int>(m_columns.indexOf(column));
        while (m_canWrite && query.next()) {
            last = query.value(place).toLongLong();
            write(query);
        }
        return isRead(query);
    }

    bool isRead(const QSqlQuery &query)
    {
        const QSqlError error = query.lastError();
        if (error.isValid() && !tellsOfDamage(error)) {
            m_canRead = fileFailure(m_from.path(), error.databaseText());
        }
        return !error.isValid();
    }

    void write(const QSqlQuery &row)
    {
        QSqlQuery *insert = m_to.prepared(m_insert);
        if (insert == nullptr) {
            m_canWrite = false;
            return;
        }
        for (int i = 0; i < m_columns.size(); ++i) {
            insert->bindValue(i, row.value(i));
        }
        m_canWrite = m_to.run(*insert);
        m_rows += insert->numRowsAffected() > 0 ? 1 : 0;
        if (m_canWrite && m_rows % rowsOfACommit == 0) {
            m_canWrite = m_to.commit() && m_to.begin();
        }
    }

    /// Copies what lies between; `halvings` counts how often in succession nothing was found.
    void copy(const QVariantList &prefix, std::optional<qint64> above, std::optional<qint64> below,
              int halvings)
    {
        if (!m_canWrite || !m_canRead || m_reads > mostReads) {
            return;
        }
        std::optional<qint64> front;
        std::optional<qint64> back;
        if (read(prefix, above, below, true, front) || !m_canWrite) {
            return;
        }
        m_isWhole = false;
        (void)read(prefix, above, below, false, back);
        const bool isLast = prefix.size() + 1 == m_table.key.size();
        if (isLast && m_table.endsWithText) {
            return; // there is no middle of texts
        }
        if (!isLast) { // what was read of these two may be a part
            for (const std::optional<qint64> &value : {front, back}) {
                if (value) {
                    copy(prefix + QVariantList{*value}, {}, {}, 0);
                }
            }
        }
        const qint64 low = front.value_or(above.value_or(-1));
        const qint64 high = back.value_or(below.value_or(farthest));
        const int next = front || back ? 0 : halvings + 1;
        if (high - low < 2 || next > mostHalvings) {
            return;
        }
        const qint64 middle = low + (high - low) / 2;
        copy(prefix, low, middle + 1, next);
        copy(prefix, middle, high, next);
    }

    RecordDatabase &m_from;
    RecordDatabase &m_to;
    const SalvagedTable &m_table;
    QStringList m_columns;
    QString m_insert;
    qint64 m_rows = 0;
    int m_reads = 0;
    bool m_isWhole = true;
    Status m_canRead = Status::done();
    bool m_canWrite = true;
};

} // namespace

Salvaged salvage(const QString &damaged, const QString &fresh)
{
    Salvaged result;
    RecordDatabase to;
    result.status = to.open(fresh, RecordDatabase::Use::Create);
    if (result.status) {
        result.status = bringForward(to);
    }
    RecordDatabase from;
    if (!result.status) {
        return result;
    }
    result.status = from.open(damaged, RecordDatabase::Use::Salvage);
    if (result.status) {
        result.status = from.execute(u"SELECT count(*) FROM sqlite_master"_s);
    }
    if (!result.status && !from.isDamaged()) { // it may be read another time
        return result;
    }
    if (!result.status) {
        result.status = to.endLog();
        result.lost += QCoreApplication::translate("Record", "nothing of it could be read");
        return result;
    }
    for (const SalvagedTable &table : salvagedTables()) {
        TableCopy copy(from, to, table);
        result.status = to.begin() ? copy.run() : to.failure();
        if (result.status && !to.commit()) {
            result.status = to.failure();
        }
        if (!result.status) {
            return result;
        }
        result.rows += copy.rows();
        if (!copy.isWhole()) {
            result.lost +=
                QCoreApplication::translate("Record", "some rows of \"%1\", of which %2 could be read")
                    .arg(table.name)
                    .arg(copy.rows());
        }
    }
    // Of the new one: its index of texts and its table of kinds are empty, and nobody has it open.
    result.status =
        to.execute({u"DELETE FROM setting WHERE name IN ('open', 'unchecked', 'searchable', 'sorted')"_s,
                    settingStatement(u"'schema', '%1'"_s.arg(newestSchema(to)))});
    if (result.status) {
        result.status = to.endLog();
    }
    return result;
}

} // namespace ktr
