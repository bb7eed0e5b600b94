#include "record/record_database.h"

#include "platform/files.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
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
    // Closing a file that is open as a database would end the locks that its connections in this process
    // hold: one that is there is only looked at.
    const QFileInfo info(path);
    if (info.exists() && !info.isFile()) {
        return notRegular(path);
    }
    if (!info.exists()) {
        if (use != Use::Create) {
            return fail(QCoreApplication::translate("Record", "does not exist"));
        }
        QFile file;
        if (Status made = openOwnersFile(file, path); !made) {
            return made;
        }
    }
    m_identity = identityOf(path);
    m_name = freshName();
    m_database = QSqlDatabase::addDatabase(u"QSQLITE"_s, m_name);
    m_database.setDatabaseName(addressOf(path, use));
    m_database.setConnectOptions(u"QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=2000"_s);
    if (!m_database.open()) {
        Status failed = fails(m_database.lastError()) ? Status::done() : failure();
        close();
        return failed;
    }
    QStringList pragmas{u"PRAGMA cache_size=-32768"_s, u"PRAGMA temp_store=MEMORY"_s};
    if (use == Use::Salvage) { // without which nothing of a file is read that is shorter than it says
        pragmas.prepend(u"PRAGMA writable_schema=ON"_s);
    }
    if (!isReadOnly(use)) { // what is committed is on the disk
        pragmas += u"PRAGMA synchronous=FULL"_s;
    }
    Status set = execute(pragmas);
    if (set && use == Use::Write) {
        set = useLog();
    }
    if (!set) {
        close();
    }
    return set;
}

/// The log is cut back after a burst.
Status RecordDatabase::useLog()
{
    return execute({u"PRAGMA journal_mode=WAL"_s, u"PRAGMA journal_size_limit=67108864"_s});
}

void RecordDatabase::close()
{
    m_prepared.clear();
    if (m_database.isValid()) {
        m_database.close();
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
    }
}

bool RecordDatabase::isMoved() const
{
    return isOpen() && identityOf(m_path) != m_identity;
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

bool RecordDatabase::begin()
{
    QSqlQuery *query = prepared(u"BEGIN IMMEDIATE"_s);
    return query != nullptr && run(*query);
}

bool RecordDatabase::commit()
{
    QSqlQuery *query = prepared(u"COMMIT"_s);
    return query != nullptr && run(*query);
}

void RecordDatabase::rollBack()
{
    if (m_database.isValid()) {
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
    return failure();
}

bool RecordDatabase::fails(const QSqlError &error)
{
    const QString reason = error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
    m_failure = fileFailure(m_path, reason).message();
    m_code = error.nativeErrorCode().toInt() & 0xff;
    return false;
}

} // namespace ktr
