#pragma once

#include "record/record_rows.h"

#include <QVariant>

#include <cstdio>
#include <cstdlib>
#include <sqlite3.h>

/// The database library alone, as the least that a question or a row could cost.
class BareDatabase
{
public:
    explicit BareDatabase(const QString &path, bool isWritten = false)
    {
        const int flags = isWritten ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
        check(sqlite3_open_v2(path.toUtf8().constData(), &m_database, flags, nullptr) == SQLITE_OK);
        carryOut("PRAGMA cache_size=-32768");
        carryOut(isWritten ? "PRAGMA synchronous=FULL" : "PRAGMA query_only=1");
    }
    ~BareDatabase()
    {
        sqlite3_finalize(m_insert);
        sqlite3_close(m_database);
    }
    Q_DISABLE_COPY_MOVE(BareDatabase)

    /// Reads all rows, with their texts; gives how many there are.
    qint64 ask(const char *statement, const QVariantList &values = {}) const
    {
        sqlite3_stmt *query = prepared(statement);
        for (int i = 0; i < values.size(); ++i) {
            if (values[i].typeId() == QMetaType::QString) {
                const QByteArray text = values[i].toString().toUtf8();
                sqlite3_bind_text(query, i + 1, text.constData(), -1, SQLITE_TRANSIENT);
            } else {
                sqlite3_bind_int64(query, i + 1, values[i].toLongLong());
            }
        }
        qint64 rows = 0;
        int step = sqlite3_step(query);
        for (; step == SQLITE_ROW; step = sqlite3_step(query)) {
            for (int column = 0; column < sqlite3_column_count(query); ++column) {
                (void)sqlite3_column_text(query, column);
            }
            ++rows;
        }
        check(step == SQLITE_DONE);
        sqlite3_finalize(query);
        return rows;
    }

    /// So many events, in one commit.
    template <class Next> void insert(int count, const Next &next) const
    {
        if (m_insert == nullptr) {
            m_insert = prepared("INSERT INTO event(id, at, station, kind, text, detail, operator, alarm)"
                                " VALUES(?, ?, ?, ?, ?, ?, ?, ?)");
        }
        carryOut("BEGIN IMMEDIATE");
        for (int i = 0; i < count; ++i) {
            const ktr::EventRow event = next();
            sqlite3_bind_int64(m_insert, 1, event.id);
            sqlite3_bind_int64(m_insert, 2, event.at);
            bind(3, event.station);
            sqlite3_bind_int64(m_insert, 4, static_cast<int>(event.kind));
            sqlite3_bind_text16(m_insert, 5, event.text.constData(), static_cast<int>(2 * event.text.size()),
                                SQLITE_STATIC);
            bind(6, event.detail);
            bind(7, event.operatorName);
            bind(8, event.alarm);
            check(sqlite3_step(m_insert) == SQLITE_DONE);
            sqlite3_reset(m_insert);
        }
        carryOut("COMMIT");
    }

    void carryOut(const char *statement) const
    {
        check(sqlite3_exec(m_database, statement, nullptr, nullptr, nullptr) == SQLITE_OK);
    }

private:
    sqlite3_stmt *prepared(const char *statement) const
    {
        sqlite3_stmt *query = nullptr;
        check(sqlite3_prepare_v2(m_database, statement, -1, &query, nullptr) == SQLITE_OK);
        return query;
    }
    void bind(int place, qint64 number) const
    {
        if (number == 0) {
            sqlite3_bind_null(m_insert, place);
        } else {
            sqlite3_bind_int64(m_insert, place, number);
        }
    }
    void bind(int place, const QString &text) const
    {
        if (text.isEmpty()) {
            sqlite3_bind_null(m_insert, place);
        } else {
            sqlite3_bind_text16(m_insert, place, text.constData(), static_cast<int>(2 * text.size()),
                                SQLITE_STATIC);
        }
    }
    void check(bool isDone) const
    {
        if (!isDone) {
            std::fprintf(stderr, "the library alone: %s\n", sqlite3_errmsg(m_database));
            std::exit(1);
        }
    }

    sqlite3 *m_database = nullptr;
    mutable sqlite3_stmt *m_insert = nullptr;
};
