#include "record/record_file.h"

#include "record/schema.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

/// The number that a statement gives; 0 for none.
Status readNumber(RecordDatabase &database, const QString &statement, qint64 &number)
{
    QSqlQuery *query = database.prepared(statement);
    if (query == nullptr || !database.run(*query)) {
        return database.failure();
    }
    number = query->next() ? query->value(0).toLongLong() : 0;
    query->finish();
    return Status::done();
}

} // namespace

OpenedRecord openRecord(const QString &path)
{
    OpenedRecord result;
    result.isNew = !QFileInfo::exists(path);
    RecordDatabase database;
    result.status = database.open(path, RecordDatabase::Use::Create);
    if (result.status) {
        result.status = bringForward(database);
    }
    qint64 open = 0;
    const std::pair<QString, qint64 *> numbers[] = {
        {u"SELECT count(*) FROM setting WHERE name = 'open' AND value = '1'"_s, &open},
        {u"SELECT max(coalesce((SELECT max(id) FROM event), 0), coalesce((SELECT max(upto) FROM list_file), 0))"_s,
         &result.lastEvent},
        {u"SELECT max(id) FROM alarm"_s, &result.lastAlarm},
    };
    for (const auto &[statement, number] : numbers) {
        if (result.status) {
            result.status = readNumber(database, statement, *number);
        }
    }
    result.endedBadly = open != 0;
    return result;
}

} // namespace ktr
