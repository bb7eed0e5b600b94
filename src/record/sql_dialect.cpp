#include "record/sql_dialect.h"

#include "record/record_sql.h"

namespace ktr {

using namespace Qt::StringLiterals;

QString SqlDialect::arrayOf(const QList<qint64> &numbers) const
{
    const QString list = listOf(numbers).mid(1).chopped(1);
    return isServer ? u'{' + list + u'}' : u'[' + list + u']';
}

const SqlDialect &fileDialect()
{
    static const SqlDialect dialect{.isServer = false,
                                    .unindexed = u" NOT INDEXED"_s,
                                    .rareIndex = u" INDEXED BY event_rare"_s,
                                    .inThisOrder = u" CROSS JOIN "_s,
                                    .like = u" LIKE "_s,
                                    .matches = u" GLOB "_s,
                                    .oneOfNumbers = u" IN (SELECT value FROM json_each(?))"_s};
    return dialect;
}

const SqlDialect &serverDialect()
{
    static const SqlDialect dialect{.isServer = true,
                                    .unindexed = {},
                                    .rareIndex = {},
                                    .inThisOrder = u" JOIN "_s,
                                    .like = u" ILIKE "_s,
                                    .matches = u" ~ "_s,
                                    .oneOfNumbers = u" = ANY(CAST(? AS bigint[]))"_s};
    return dialect;
}

} // namespace ktr
