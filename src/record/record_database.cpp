#include "record/record_database.h"

#include "platform/files.h"
#include "record/record_address.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>
#include <QSqlDriver>
#include <QSqlError>
#include <QUrl>

#include <atomic>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

// The library's numbers for a file that is damaged, and for one that is no database.
constexpr int damagedFile = 11;
constexpr int noDatabase = 26;

bool isReadOnly(RecordDatabase::Use use)
{
    return use == RecordDatabase::Use::Read || use == RecordDatabase::Use::Salvage;
}

/// Only a URI tells the library not to create a file that is missing.
QString addressOf(const QString &path, RecordDatabase::Use use)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    return u"file://"_s + (absolute.startsWith(u'/') ? QString() : u"/"_s) +
           QString::fromLatin1(QUrl::toPercentEncoding(absolute, "/:")) +
           (isReadOnly(use) ? u"?mode=ro"_s : u"?mode=rw"_s);
}

/// A server's message without what is of no use to a user: its statement, its place in there.
QString serverReason(const QString &reason)
{
    QString first = reason.section(u'\n', 0, 0).trimmed();
    for (const QString &word : {u"ERROR:"_s, u"FATAL:"_s, u"QPSQL:"_s}) {
        first = first.startsWith(word) ? first.mid(word.size()).trimmed() : first;
    }
    return first;
}

/// A failure without a code comes from the connection. Of the others: class 08 (connection), 57P01 to 57P05
/// (the server ends, or ends this session), 25P03 (it has ended one that stood still).
bool tellsOfLoss(const QString &code)
{
    return code.isEmpty() || code.startsWith(u"08"_s) || code.startsWith(u"57P"_s) || code == u"25P03"_s;
}

/// Of classes 22 (a value), 23 (a rule of the tables) and 54 (too large).
bool tellsOfRow(const QString &code)
{
    return code.startsWith(u"22"_s) || code.startsWith(u"23"_s) || code.startsWith(u"54"_s);
}

/// Of the driver's connection; -1 where the library is another one. It is in the program already, by the
/// driver's doing, which does not tell.
int socketOf(const QSqlDatabase &database)
{
    using Ask = int (*)(const void *);
    static const auto ask = reinterpret_cast<Ask>(QLibrary(u"pq"_s, 5).resolve("PQsocket"));
    const QVariant handle = database.driver()->handle();
    const QByteArrayView type(handle.typeName()); // a name of the same, or its own
    if (ask == nullptr || (type != "PGconn*" && type != "pg_conn*")) {
        return -1;
    }
    return ask(*static_cast<void *const *>(handle.constData()));
}

QString freshName()
{
    static std::atomic<int> last = 0;
    return u"record-"_s + QString::number(++last);
}

} // namespace

RecordDatabase::~RecordDatabase()
{
    close();
}

Status RecordDatabase::open(const QString &path, Use use)
{
    close();
    m_path = path;
    m_code = 0;
    m_isLost = false;
    m_isServer = isServerAddress(path);
    return m_isServer ? openServer(use) : openFile(use);
}

Status RecordDatabase::openFile(Use use)
{
    // Closing a file that is open as a database would end the locks that its connections in this process
    // hold: one that is there is only looked at.
    const QFileInfo info(m_path);
    if (info.exists() && !info.isFile()) {
        return notRegular(m_path);
    }
    if (!info.exists()) {
        if (use != Use::Create) {
            return fail(QCoreApplication::translate("Record", "does not exist"));
        }
        QFile file;
        if (Status made = openOwnersFile(file, m_path); !made) {
            return made;
        }
    }
    m_identity = identityOf(m_path);
    m_name = freshName();
    m_database = QSqlDatabase::addDatabase(u"QSQLITE"_s, m_name);
    m_database.setDatabaseName(addressOf(m_path, use));
    m_database.setConnectOptions(u"QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=2000"_s);
    QStringList pragmas{u"PRAGMA cache_size=-32768"_s, u"PRAGMA temp_store=MEMORY"_s};
    if (use == Use::Salvage) { // without which nothing of a file is read that is shorter than it says
        pragmas.prepend(u"PRAGMA writable_schema=ON"_s);
    }
    if (!isReadOnly(use)) { // what is committed is on the disk
        pragmas += u"PRAGMA synchronous=FULL"_s;
    }
    Status set = opened(pragmas);
    if (set && use == Use::Write) {
        set = useLog();
    }
    if (!set) {
        close();
    }
    return set;
}

Status RecordDatabase::openServer(Use use)
{
    const ServerAddress address = serverAddress(m_path);
    if (!address.status) {
        m_failure = address.status.message();
        return address.status;
    }
    if (const std::lock_guard lock(m_givingUp); m_isGivenUp) {
        return fail(QCoreApplication::translate("Record", "is not waited for any longer"));
    }
    m_name = freshName();
    m_database = QSqlDatabase::addDatabase(u"QPSQL"_s, m_name);
    m_database.setConnectOptions(address.connection);
    QStringList settings{
        u"SET search_path TO ktrconfig"_s, u"SET client_min_messages TO error"_s,
        // A search for a text is planned anew for each: a rare one wants the index, a frequent one does not.
        u"SET plan_cache_mode TO force_custom_plan"_s};
    if (isReadOnly(use)) {
        settings += u"SET default_transaction_read_only TO on"_s;
    } else { // what is committed is on the disk; a server may be set to more
        // Who was stopped in the middle of a transaction must not hold up all others for as long.
        settings += u"SET idle_in_transaction_session_timeout TO 3000"_s;
        settings += lockPatience();
        settings += u"SELECT set_config('synchronous_commit', 'on', false)"
                    " WHERE current_setting('synchronous_commit') IN ('off', 'local')"_s;
    }
    Status set = opened(settings);
    if (!set) {
        close();
    }
    return set;
}

Status RecordDatabase::opened(const QStringList &settings)
{
    if (!m_database.open()) {
        m_isLost = true;
        return fails(m_database.lastError()) ? Status::done() : failure();
    }
    if (m_isServer && !holdSocket()) {
        return fail(QCoreApplication::translate("Record", "is not waited for any longer"));
    }
    return execute(settings);
}

/// False when nobody wants the connection any more.
bool RecordDatabase::holdSocket()
{
    const std::lock_guard lock(m_givingUp);
    if (!m_isGivenUp) {
        m_socket.hold(socketOf(m_database));
    }
    return !m_isGivenUp;
}

void RecordDatabase::giveUp()
{
    const std::lock_guard lock(m_givingUp);
    m_isGivenUp = true;
    m_socket.end();
}

/// The log is cut back after a burst.
Status RecordDatabase::useLog()
{
    if (m_isServer) { // which has one of its own
        return Status::done();
    }
    return execute({u"PRAGMA journal_mode=WAL"_s, u"PRAGMA journal_size_limit=67108864"_s});
}

void RecordDatabase::close()
{
    m_prepared.clear();
    if (m_database.isValid()) {
        m_database.close();
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
        const std::lock_guard lock(m_givingUp);
        m_socket.release();
    }
}

bool RecordDatabase::isMoved() const
{
    return isOpen() && !m_isServer && identityOf(m_path) != m_identity;
}

Status RecordDatabase::endLog()
{
    m_prepared.clear();
    QSqlQuery *query = prepared(u"PRAGMA journal_mode=DELETE"_s);
    if (query == nullptr || !run(*query)) {
        return failure();
    }
    const bool isDone = query->next() && query->value(0).toString() == u"delete"_s;
    const bool isRead = wasReadToItsEnd(*query);
    query->finish();
    return isDone   ? Status::done()
           : isRead ? fail(QCoreApplication::translate("Record", "is in use by another program"))
                    : failure();
}

Status RecordDatabase::execute(const QStringList &statements)
{
    for (const QString &statement : statements) {
        QSqlQuery query(m_database);
        if (!query.exec(statement)) {
            (void)fails(query.lastError());
            return failure();
        }
    }
    return Status::done();
}

QSqlQuery *RecordDatabase::prepared(const QString &statement)
{
    if (const auto found = m_prepared.constFind(statement); found != m_prepared.cend()) {
        return found->get();
    }
    auto query = std::make_shared<QSqlQuery>(m_database);
    query->setForwardOnly(true);
    if (!query->prepare(statement)) {
        (void)fails(query->lastError());
        return nullptr;
    }
    return m_prepared.insert(statement, query)->get();
}

bool RecordDatabase::run(QSqlQuery &query)
{
    return query.exec() || fails(query.lastError());
}

bool RecordDatabase::wasReadToItsEnd(const QSqlQuery &query)
{
    return !query.lastError().isValid() || fails(query.lastError());
}

QSqlQuery *RecordDatabase::carriedOut(const QString &statement, const QVariantList &values)
{
    QSqlQuery *query = prepared(statement);
    for (int place = 0; query != nullptr && place < values.size(); ++place) {
        query->bindValue(place, values[place]);
    }
    return query != nullptr && run(*query) ? query : nullptr;
}

bool RecordDatabase::begin()
{
    m_hasNumbers = !m_isServer;
    return carryOut(m_isServer ? u"BEGIN"_s : u"BEGIN IMMEDIATE"_s);
}

bool RecordDatabase::beginNumbers()
{
    // A table that a server's record has no other use for; who may only read or ask cannot lock it.
    m_hasNumbers = m_hasNumbers || carryOut(u"LOCK TABLE list_file IN EXCLUSIVE MODE"_s);
    return m_hasNumbers;
}

QString RecordDatabase::lockPatience()
{
    return u"SET lock_timeout TO 5000"_s;
}

bool RecordDatabase::commit()
{
    if (m_isServer && m_hasNumbers && !carryOut(u"NOTIFY "_s + committed)) {
        return false;
    }
    return carryOut(u"COMMIT"_s);
}

/// A server prepares no such statements.
bool RecordDatabase::carryOut(const QString &statement)
{
    if (m_isServer) {
        return static_cast<bool>(execute(statement));
    }
    QSqlQuery *query = prepared(statement);
    return query != nullptr && run(*query);
}

void RecordDatabase::rollBack()
{
    if (m_database.isValid() && !m_isLost) {
        QSqlQuery(m_database).exec(u"ROLLBACK"_s);
    }
}

bool RecordDatabase::isDamaged() const
{
    return m_code == damagedFile || m_code == noDatabase;
}

void RecordDatabase::failAsDamaged()
{
    (void)fail(QCoreApplication::translate("Record", "is damaged"));
    m_code = damagedFile;
}

Status RecordDatabase::fail(const QString &reason)
{
    m_failure = fileFailure(m_path, reason).message();
    m_code = 0;
    m_isLost = false;
    m_isRowRefused = false;
    return failure();
}

bool RecordDatabase::fails(const QSqlError &error)
{
    const QString reason = error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
    m_failure = fileFailure(m_path, m_isServer ? serverReason(reason) : reason).message();
    const QString code = error.nativeErrorCode();
    m_code = m_isServer ? 0 : code.toInt() & 0xff;
    m_isLost = m_isServer && tellsOfLoss(code);
    m_isRowRefused = m_isServer && tellsOfRow(code);
    return false;
}

} // namespace ktr
