#include "record/shared_deeds.h"

#include "record/record_file.h"
#include "record/row_writing.h"

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

/// The first row's first value; nothing when there is no row.
bool ask(RecordDatabase &database, const QString &statement, const QVariantList &values,
         std::optional<QString> &answer)
{
    answer.reset();
    QSqlQuery *query = database.carriedOut(statement, values);
    if (query == nullptr) {
        return false;
    }
    if (query->next()) {
        answer = query->value(0).toString();
    }
    query->finish();
    return true;
}

/// No other program adds one meanwhile: the numbers are this transaction's.
bool addStation(RecordDatabase &database, RowWriting &writing, const SharedDeed &deed)
{
    StationRow station = *deed.station;
    std::optional<QString> name;
    std::optional<QString> block;
    if (!database.beginNumbers() ||
        !ask(database,
             u"SELECT name FROM (SELECT CAST(? AS text) || CASE n WHEN 0 THEN '' ELSE ' (' || n || ')' END"
             " AS name, n FROM generate_series(0, (SELECT count(*) FROM station)) AS n) AS names"
             " WHERE NOT EXISTS (SELECT 1 FROM station WHERE station.name = names.name AND listed = 1)"
             " ORDER BY n LIMIT 1"_s,
             {station.name}, name) ||
        !ask(database, u"SELECT nextval('number_block')"_s, {}, block)) {
        return false;
    }
    station.name = name.value_or(station.name);
    station.id = block.value_or(QString()).toLongLong() * numbersOfABlock + 1;
    return writing.write(station) && writing.write(EventRow{.at = deed.at,
                                                            .station = station.id,
                                                            .kind = EventKind::StationAdded,
                                                            .text = station.name,
                                                            .detail = station.attributes,
                                                            .operatorName = deed.operatorName});
}

} // namespace

Status carryOutOnce(RecordDatabase &database, const SharedDeed &deed)
{
    if (!database.begin()) {
        return database.failure();
    }
    RowWriting writing(database);
    std::optional<QString> mine;
    const bool isDone =
        ask(database,
            u"UPDATE request SET taken = ?, result = ? WHERE id = ? AND taken IS NULL RETURNING id"_s,
            {deed.at, deed.refusal.isNull() ? u""_s : deed.refusal, deed.request}, mine) &&
        (!mine || !deed.station || addStation(database, writing, deed)) &&
        (!mine || !deed.setting || writing.write(*deed.setting)) &&
        (!mine || !deed.note || writing.write(*deed.note)) && database.commit();
    Status done = isDone ? Status::done() : database.failure();
    if (!isDone) {
        database.rollBack();
    }
    return done;
}

SharedDeeds::~SharedDeeds()
{
    constexpr std::chrono::milliseconds patience{300};
    if (!m_thread.waitFor(patience)) {
        m_database.giveUp();
    }
    m_thread.wait();
}

void SharedDeeds::carryOut(SharedDeed deed)
{
    m_waiting.push_back(std::move(deed));
    if (!m_isBusy) {
        begin();
    }
}

void SharedDeeds::begin()
{
    m_isBusy = true;
    m_inHand = std::exchange(m_waiting, {});
    m_thread.start([this] {
        if (m_database.open(m_address, RecordDatabase::Use::Write)) {
            for (const SharedDeed &deed : m_inHand) {
                (void)carryOutOnce(m_database, deed);
            }
        }
        m_database.close();
        QMetaObject::invokeMethod(
            &m_receiver,
            [this] {
                m_thread.wait();
                m_isBusy = false;
                m_inHand.clear();
                if (!m_waiting.empty()) {
                    begin();
                }
            },
            Qt::QueuedConnection);
    });
}

} // namespace ktr
