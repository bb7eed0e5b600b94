#include "record/leases.h"

#include "platform/lasting_clock.h"
#include "record/record_sql.h"

#include <algorithm>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

/// Who notices the end of its time later than that stood still: what has come meanwhile is old.
constexpr Milliseconds longestStop{3'000};

/// One keeper at a time takes stations and duties that are nobody's.
constexpr int shareLock = 0x4b5453;

QString interval(Milliseconds time)
{
    return u"interval '%1 milliseconds'"_s.arg(time.count());
}

} // namespace

Leases::Leases(QString address, QString name, Timers &timers, Listener listener, const Times &times,
               qint64 block)
    : m_address(std::move(address)),
      m_name(std::move(name)),
      m_listener(std::move(listener)),
      m_times(times),
      m_timer(timers.create()),
      m_checkTimer(timers.create()),
      m_block(block)
{
    m_timer->start(Milliseconds(0), [this] { begin(); });
}

Leases::~Leases()
{
    constexpr std::chrono::milliseconds patience{300};
    if (!m_thread.waitFor(patience)) {
        m_database.giveUp();
        m_thread.wait();
    }
    m_thread.start([this, duties = m_duties.work()] { giveBack(duties); });
    if (!m_thread.waitFor(2 * patience)) {
        m_database.giveUp();
        m_thread.wait();
    }
}

/// The stations of a keeper that is not there are anybody's. Over a new connection where the old one was
/// lost.
void Leases::giveBack(const DutyWork &duties)
{
    const auto give = [&] {
        return noteDuties(m_database, m_keeper, duties.notes) &&
               m_database.execute(u"DELETE FROM keeper WHERE id = %1"_s.arg(m_keeper));
    };
    const bool isDone = m_keeper == 0 || (m_database.isOpen() && give());
    if (!isDone && m_database.open(m_address, RecordDatabase::Use::Write)) {
        (void)give(); // or its time will be over soon
    }
    m_database.close();
}

bool Leases::isHeld() const
{
    return left() > Milliseconds(0);
}

Milliseconds Leases::left() const
{
    return m_until - lastingTime();
}

void Leases::released(const QList<qint64> &stations)
{
    for (const qint64 station : stations) {
        if (m_leaving.remove(station)) {
            m_held.remove(station);
            m_released += station;
        }
    }
}

void Leases::begin()
{
    check();
    m_inHand = std::exchange(m_released, {});
    m_thread.start([this, released = m_inHand, duties = m_duties.work(), isAnew = m_isOver,
                    mayTake = m_listener.mayTake()] {
        m_turn = Turn();
        m_turn.isAnew = isAnew;
        take(released, duties, mayTake, m_turn);
        QMetaObject::invokeMethod(
            &m_receiver, [this] { collect(); }, Qt::QueuedConnection);
    });
}

void Leases::collect()
{
    m_thread.wait();
    const Turn turn = std::exchange(m_turn, {});
    m_timer->start(turn.status ? m_times.period : m_times.period / 4, [this] { begin(); });
    if (turn.status.message() != m_trouble) {
        m_trouble = turn.status.message();
        m_listener.trouble(m_trouble);
    }
    if (!turn.status) {
        m_released += m_inHand;
        check();
        return;
    }
    if (turn.isAnew && !m_isOver) {
        lose(true);
    }
    const Milliseconds until = turn.asked + m_times.lease - m_times.reserve;
    if (until <= lastingTime()) { // it came too late
        m_isKeptUnknown = m_isKeptUnknown || turn.isAnew;
        check();
        return;
    }
    m_until = until;
    m_isOver = false;
    m_number = turn.keeper;
    if (const bool isUnknown = std::exchange(m_isKeptUnknown, false); turn.isAnew) {
        m_listener.returned(isUnknown ? QList<qint64>() : turn.kept);
    }
    m_overview = turn.overview;
    m_duties.take(turn.duties);
    const QSet<qint64> lost = m_held - turn.mine; // taken out of the list
    const QSet<qint64> gained = turn.mine - m_held - QSet(m_released.cbegin(), m_released.cend());
    m_held = (m_held | gained) - lost;
    m_leaving -= lost;
    QList<qint64> leaving;
    for (const qint64 station : turn.tooMany) {
        if (m_held.contains(station) && !m_leaving.contains(station)) {
            leaving += station;
            m_leaving += station;
        }
    }
    check();
    if (!gained.isEmpty()) {
        m_listener.gained(gained.values());
    }
    if (const QList<qint64> gone = lost.values() + leaving; !gone.isEmpty()) {
        m_listener.lost(gone);
    }
    m_listener.turned();
}

/// Nobody but this program knows that its time is over while it is cut off.
void Leases::check()
{
    if (m_isOver) {
        return;
    }
    if (isHeld()) {
        m_checkTimer->start(std::clamp(left(), Milliseconds(1), m_times.period), [this] { check(); });
    } else {
        lose(lastingTime() - m_until > longestStop);
    }
}

/// `isForSure`: others may have had the stations for a while.
void Leases::lose(bool isForSure)
{
    m_isOver = true;
    m_until = Milliseconds(-1);
    m_checkTimer->stop();
    m_released.clear();
    m_leaving.clear();
    m_duties.lose();
    const QList<qint64> lost = std::exchange(m_held, {}).values();
    if (!isForSure && m_listener.lapsed) {
        m_listener.lapsed();
    } else if (!lost.isEmpty()) {
        m_listener.lost(lost);
    }
    m_listener.turned();
}

bool Leases::numbers(const QString &statement, QList<qint64> &numbers)
{
    QSqlQuery *query = m_database.prepared(statement);
    if (query == nullptr || !m_database.run(*query)) {
        return false;
    }
    numbers.clear();
    while (query->next()) {
        numbers += query->value(0).toLongLong();
    }
    const bool isWhole = m_database.wasReadToItsEnd(*query);
    query->finish();
    return isWhole;
}

bool Leases::number(const QString &statement, qint64 &number)
{
    QList<qint64> found;
    const bool isRead = numbers(statement, found);
    number = found.isEmpty() ? 0 : found.constFirst();
    return isRead;
}

void Leases::take(const QList<qint64> &released, const DutyWork &duties, bool mayTake, Turn &turn)
{
    if (!m_database.isOpen()) {
        turn.status = m_database.open(m_address, RecordDatabase::Use::Write);
        if (!turn.status) {
            return;
        }
    }
    turn.asked = lastingTime();
    bool isDone = m_database.begin() && renew(turn);
    if (isDone && !released.isEmpty()) {
        isDone = static_cast<bool>(m_database.execute(
            u"UPDATE station SET keeper = NULL WHERE keeper = %1 AND id IN "_s.arg(m_keeper) +
            listOf(released)));
    }
    if (isDone && turn.isAnew) {
        isDone =
            numbers(u"SELECT id FROM station WHERE listed = 1 AND keeper = %1"_s.arg(m_keeper), turn.kept);
    }
    turn.keeper = m_keeper;
    isDone = isDone && (!mayTake || share(turn)) && noteDuties(m_database, m_keeper, duties.notes) &&
             (!turn.isFirst || claimDuties(m_database, m_keeper, duties.wanted)) &&
             dutiesOf(m_database, m_keeper, turn.duties) && lookOver(turn.overview);
    QList<qint64> mine;
    isDone = isDone &&
             numbers(u"SELECT id FROM station WHERE listed = 1 AND keeper = %1"_s.arg(m_keeper), mine) &&
             m_database.commit();
    if (!isDone) {
        turn.status = m_database.failure();
        m_database.rollBack();
        m_database.close();
        return;
    }
    turn.mine = QSet(mine.cbegin(), mine.cend());
}

bool Leases::renew(Turn &turn)
{
    qint64 renewed = 0;
    if (!turn.isAnew && m_keeper != 0 &&
        !number(u"UPDATE keeper SET leased_until = clock_timestamp() + "_s + interval(m_times.lease) +
                    u" WHERE leased_until > clock_timestamp() AND id = %1 RETURNING id"_s.arg(m_keeper),
                renewed)) {
        return false;
    }
    if (renewed != 0) {
        return true;
    }
    turn.isAnew = true;
    return m_keeper != 0 ? renewLate() : enter();
}

/// A keeper whose time was over keeps its number, and with it the stations that no other has taken since.
/// None is taking one at this moment.
bool Leases::renewLate()
{
    qint64 renewed = 0;
    if (!m_database.execute(u"SELECT pg_advisory_xact_lock(%1)"_s.arg(shareLock)) ||
        !number(u"UPDATE keeper SET leased_until = clock_timestamp() + "_s + interval(m_times.lease) +
                    u" WHERE id = %1 RETURNING id"_s.arg(m_keeper),
                renewed)) {
        return false;
    }
    return renewed != 0 || enter();
}

bool Leases::enter()
{
    QSqlQuery name(m_database.handle());
    name.prepare(u"INSERT INTO keeper(name, block, leased_until) VALUES(?, ?, clock_timestamp() + "_s +
                 interval(m_times.lease) + u") RETURNING id"_s);
    name.addBindValue(m_name);
    name.addBindValue(m_block);
    const QString before =
        u"DELETE FROM keeper WHERE id = %1 OR leased_until < clock_timestamp() - interval '1 day'"_s;
    if (!m_database.execute(before.arg(m_keeper)) || !m_database.run(name) || !name.next()) {
        return false;
    }
    m_keeper = name.value(0).toLongLong();
    return true;
}

/// One at a time: two that begin together would each take all. Who does not come to it looks again at the
/// next turn.
bool Leases::share(Turn &turn)
{
    qint64 isFirst = 0;
    qint64 all = 0;
    qint64 keepers = 0;
    qint64 mine = 0;
    const QString own = QString::number(m_keeper);
    if (!number(u"SELECT CAST(pg_try_advisory_xact_lock(%1) AS integer)"_s.arg(shareLock), isFirst)) {
        return false;
    }
    turn.isFirst = isFirst != 0;
    if (!turn.isFirst) {
        return true;
    }
    if (!number(u"SELECT count(*) FROM station WHERE listed = 1"_s, all) ||
        !number(u"SELECT count(*) FROM "_s + livingKeepers + u" AS alive"_s, keepers) ||
        !number(u"SELECT count(*) FROM station WHERE listed = 1 AND keeper = "_s + own, mine)) {
        return false;
    }
    const qint64 fair = (all + keepers - 1) / std::max(keepers, qint64{1});
    if (mine > fair) {
        return numbers(u"SELECT id FROM station WHERE listed = 1 AND keeper = "_s + own +
                           u" ORDER BY id DESC LIMIT %1"_s.arg(mine - fair),
                       turn.tooMany);
    }
    return mine == fair ||
           m_database.execute(u"UPDATE station SET keeper = %1 WHERE id IN (SELECT id FROM station WHERE"
                              " listed = 1 AND (keeper IS NULL OR keeper NOT IN "_s.arg(own) +
                              livingKeepers +
                              u") ORDER BY id LIMIT %1 FOR UPDATE SKIP LOCKED)"_s.arg(fair - mine));
}

bool Leases::lookOver(Overview &overview)
{
    QSqlQuery *query = m_database.prepared(
        u"SELECT floor(extract(epoch FROM clock_timestamp()) * 1000)::bigint, (SELECT count(*) FROM "_s +
        livingKeepers + u" AS alive), count(*), count(*) FILTER (WHERE keeper IS NULL OR keeper NOT IN "_s +
        livingKeepers + u") FROM station WHERE listed = 1"_s);
    if (query == nullptr || !m_database.run(*query) || !query->next()) {
        return false;
    }
    overview = {query->value(0).toLongLong(), query->value(1).toInt(), query->value(2).toInt(),
                query->value(3).toInt()};
    query->finish();
    return true;
}

} // namespace ktr
