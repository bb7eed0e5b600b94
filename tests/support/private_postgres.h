#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace ktr::test {

/// A PostgreSQL server of a test's own, on a socket in a temporary folder, run by an ordinary user also where
/// the test is run by root. Gone with the object.
class PrivatePostgres
{
public:
    ~PrivatePostgres();

    /// Not on every system.
    static bool canBe();
    /// Makes a cluster and starts it; why that failed, or an empty text.
    QString start();
    /// Starts a server that was stopped.
    QString startAgain();
    /// As after a power cut: what was not committed is gone.
    void kill();
    /// All its processes stand still, and answer nobody; kill() ends them, too.
    void hang();
    void goOn();
    /// The processes that serve connections end, the server does not.
    void endConnections();

    /// Makes a database and gives its address.
    QString makeDatabase(const QString &name);
    QString addressOf(const QString &database) const;
    /// Carries out a statement as the administrator and gives its rows, columns separated by "|".
    QString sql(const QString &database, const QString &statement) const;

private:
    QString run(const QString &program, const QStringList &arguments) const;
    QProcess *make() const;
    void signal(const QString &name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QProcess> m_server;
};

} // namespace ktr::test
