#include "support/private_postgres.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QThread>

#include <pwd.h>
#include <unistd.h>

namespace ktr::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int patienceMs = 60'000;
const QString administrator = u"administrator"_s;

/// Where Debian has the server's programs, which are in nobody's path.
QString programs()
{
    const QDir versions(u"/usr/lib/postgresql"_s);
    for (const QString &version :
         versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::Reversed)) {
        const QString folder = versions.filePath(version) + u"/bin/"_s;
        if (QFileInfo::exists(folder + u"initdb"_s)) {
            return folder;
        }
    }
    return {};
}

/// The server refuses to be run by root.
const passwd *ordinaryUser()
{
    return ::geteuid() == 0 ? ::getpwnam("nobody") : nullptr;
}

} // namespace

PrivatePostgres::~PrivatePostgres()
{
    kill();
}

bool PrivatePostgres::canBe()
{
    return true;
}

QProcess *PrivatePostgres::make() const
{
    auto *process = new QProcess;
    process->setWorkingDirectory(m_folder->path());
    process->setProcessChannelMode(QProcess::MergedChannels);
    if (const passwd *user = ordinaryUser()) {
        process->setChildProcessModifier([uid = user->pw_uid, gid = user->pw_gid] {
            if (::setgid(gid) != 0 || ::setuid(uid) != 0) {
                ::_exit(1);
            }
        });
    }
    return process;
}

QString PrivatePostgres::run(const QString &program, const QStringList &arguments) const
{
    const std::unique_ptr<QProcess> process(make());
    process->start(programs() + program, arguments);
    const bool isDone = process->waitForFinished(patienceMs) &&
                        process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0;
    const QString said = QString::fromUtf8(process->readAll()).trimmed();
    return isDone ? said : u"failed: "_s + program + u": "_s + process->errorString() + u' ' + said;
}

QString PrivatePostgres::start()
{
    if (programs().isEmpty()) {
        return u"PostgreSQL is not installed"_s;
    }
    m_folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + u"/ktr-postgres-"_s);
    if (const passwd *user = ordinaryUser();
        user != nullptr && ::chown(qPrintable(m_folder->path()), user->pw_uid, user->pw_gid) != 0) {
        return u"the folder cannot be given away"_s;
    }
    const QString made = run(u"initdb"_s, {u"-D"_s, u"data"_s, u"-U"_s, administrator, u"-A"_s, u"trust"_s,
                                           u"-E"_s, u"UTF8"_s, u"--locale=C.UTF-8"_s, u"--no-sync"_s});
    return made.startsWith(u"failed"_s) ? made : startAgain();
}

QString PrivatePostgres::startAgain()
{
    m_server.reset(make());
    m_server->start(programs() + u"postgres"_s,
                    {u"-D"_s, u"data"_s, u"-k"_s, m_folder->path(), u"-c"_s, u"listen_addresses="_s, u"-c"_s,
                     u"fsync=off"_s, u"-c"_s, u"log_min_messages=warning"_s});
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < patienceMs && m_server->state() != QProcess::NotRunning) {
        if (!run(u"pg_isready"_s, {u"-h"_s, m_folder->path()}).startsWith(u"failed"_s)) {
            return {};
        }
        QThread::msleep(20); // between two looks
    }
    return u"the server did not start: "_s + QString::fromUtf8(m_server->readAll());
}

void PrivatePostgres::kill()
{
    if (m_server && m_server->state() != QProcess::NotRunning) {
        goOn();
        (void)run(u"pg_ctl"_s, {u"-D"_s, u"data"_s, u"-m"_s, u"immediate"_s, u"-w"_s, u"stop"_s});
        m_server->waitForFinished(patienceMs);
    }
    m_server.reset();
}

void PrivatePostgres::hang()
{
    signal(u"-STOP"_s);
}

void PrivatePostgres::goOn()
{
    signal(u"-CONT"_s);
}

/// To the server, so that it begins no more processes, and to those that it began.
void PrivatePostgres::signal(const QString &name) const
{
    if (m_server) {
        const QString server = QString::number(m_server->processId());
        QProcess::execute(u"kill"_s, {name, server});
        QProcess::execute(u"pkill"_s, {name, u"-P"_s, server});
    }
}

void PrivatePostgres::endConnections()
{
    (void)sql(u"postgres"_s,
              u"SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE pid <> pg_backend_pid()"
              " AND backend_type = 'client backend'"_s);
}

QString PrivatePostgres::makeDatabase(const QString &name)
{
    (void)sql(u"postgres"_s, u"CREATE DATABASE \"%1\""_s.arg(name));
    return addressOf(name);
}

QString PrivatePostgres::addressOf(const QString &database) const
{
    return u"postgresql://%1@/%2?host=%3"_s.arg(administrator, database, m_folder->path());
}

QString PrivatePostgres::sql(const QString &database, const QString &statement) const
{
    return run(u"psql"_s, {u"-h"_s, m_folder->path(), u"-U"_s, administrator, u"-d"_s, database, u"-XAtqc"_s,
                           statement});
}

} // namespace ktr::test
