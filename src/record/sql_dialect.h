#pragma once

#include <QList>
#include <QString>

namespace ktr {

/// What the two engines call differently in statements that are the same otherwise.
struct SqlDialect
{
    bool isServer = false;
    QString unindexed{};    ///< behind a table: to be gone through in the order of its numbers
    QString rareIndex{};    ///< behind "event": those kinds from Alive on
    QString inThisOrder{};  ///< a join whose first table is gone through first
    QString like{};         ///< without regard to the case of A to Z
    QString matches{};      ///< a text and a pattern with letters in either case
    QString oneOfNumbers{}; ///< behind a column, and a value from arrayOf() bound

    /// Numbers of which there may be many, bound as one value, so that the statement is always the same.
    QString arrayOf(const QList<qint64> &numbers) const;
};

/// Of SQLite and of PostgreSQL.
const SqlDialect &fileDialect();
const SqlDialect &serverDialect();

} // namespace ktr
