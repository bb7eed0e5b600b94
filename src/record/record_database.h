#pragma once

#include "platform/held_socket.h"
#include "platform/status.h"
#include "record/sql_dialect.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStringList>

#include <memory>
#include <mutex>

namespace ktr {

/// A connection to a record, be it a file or in a PostgreSQL database (see isServerAddress()). It belongs to
/// the thread that opened it, from open() to close().
class RecordDatabase
{
public:
    /// What is said of files goes for files; a server's database is there or it is not.
    enum class Use {
        Write,  ///< of a file that is there
        Create, ///< makes the file, for its owner alone, where there is none; useLog() is left to the caller
        Read,   ///< nothing is changed
        Salvage ///< the same, of as much as there is of a file that was cut off, too
    };

    /// Under this name a server tells who listens that something was committed.
    static inline const QString committed = QStringLiteral("ktrconfig");

    RecordDatabase() = default;
    ~RecordDatabase();
    Q_DISABLE_COPY_MOVE(RecordDatabase)

    /// A failure names the file or address. What is no regular file is refused.
    Status open(const QString &path, Use use);
    void close();
    /// May be called on any thread: what is being asked of a server that does not answer fails, and nothing
    /// more is asked of it. For the end of a program. A connection that is just being made has its own time.
    void giveUp();
    bool isServer() const { return m_isServer; }
    const SqlDialect &sql() const { return m_isServer ? serverDialect() : fileDialect(); }
    /// Goes over to a write-ahead log, which is written into the file.
    Status useLog();
    /// Brings all that stands in the log into the file, so that this can be taken away by itself.
    Status endLog();
    /// For what the other functions do not offer.
    const QSqlDatabase &handle() const { return m_database; }
    bool isOpen() const { return m_database.isValid(); }
    const QString &path() const { return m_path; }
    /// Whether the file that it has open was removed, or another one stands in its place by now.
    bool isMoved() const;

    /// Carries out statements without a result, each by itself.
    Status execute(const QStringList &statements);
    Status execute(const QString &statement) { return execute(QStringList{statement}); }

    /// A statement, prepared once, to be bound by place and handed to run(); nullptr where it cannot be
    /// prepared, with the reason in failure(). After its rows were read, finish() it.
    QSqlQuery *prepared(const QString &statement);
    /// Carries out what was prepared and bound.
    bool run(QSqlQuery &query);
    /// Does all of that; nullptr after a failure.
    QSqlQuery *carriedOut(const QString &statement, const QVariantList &values);

    /// Whether next() gave false because there were no more rows, and not because one could not be read.
    bool wasReadToItsEnd(const QSqlQuery &query);

    bool begin();
    /// From here to the end of the transaction no other one gives numbers of events, changes or requests:
    /// what has a higher number was committed later. Done once in each; a file has one writer at a time
    /// anyway.
    bool beginNumbers();
    /// The statement that says how long a server's lock is waited for: who holds one for longer than that is
    /// not waited for, and what was to be done is tried again.
    static QString lockPatience();
    bool commit();
    /// Does no harm when the database has rolled back by itself; failure() stays as it was.
    void rollBack();

    /// The last failure, named by its file.
    Status failure() const { return Status::failed(m_failure); }
    /// Whether the last failure says that the file is damaged or no database at all.
    bool isDamaged() const;
    /// Marks the last failure as damage of the file.
    void failAsDamaged();
    /// Whether the last failure says that the server is not there, or this connection no more.
    bool isLost() const { return m_isLost; }
    /// Whether the last failure says that a server will not have a row, whenever it is asked: its value is
    /// out of range, or breaks a rule of the tables.
    bool isRowRefused() const { return m_isRowRefused; }
    /// Notes a failure that the caller found, and returns it with the name of the file.
    Status fail(const QString &reason);

private:
    Status openFile(Use use);
    Status openServer(Use use);
    Status opened(const QStringList &settings);
    bool holdSocket();
    bool carryOut(const QString &statement);
    bool fails(const class QSqlError &error);

    QString m_path;
    bool m_isServer = false;
    bool m_hasNumbers = false; ///< of this transaction
    bool m_isLost = false;
    bool m_isRowRefused = false;
    std::mutex m_givingUp; ///< guards what follows
    bool m_isGivenUp = false;
    HeldSocket m_socket;
    QByteArray m_identity; ///< of the file
    QString m_name;
    QSqlDatabase m_database;
    QHash<QString, std::shared_ptr<QSqlQuery>> m_prepared;
    QString m_failure;
    int m_code = 0; ///< of the library, without its extension
};

} // namespace ktr
