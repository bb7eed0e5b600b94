#include "app/single_instance.h"

#include "look/program_name.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>

namespace ktr {

namespace {

constexpr int waitMs = 200;
constexpr Milliseconds retryEvery = std::chrono::seconds(1);
constexpr char closeRequest[] = "close\n";

/// The home folder tells users apart on every system; its digest is a name on every system.
QString nameForUser()
{
    const QByteArray digest = QCryptographicHash::hash(QDir::homePath().toUtf8(), QCryptographicHash::Sha256);
    return programName + u'-' + QLatin1String(digest.toHex().left(16));
}

} // namespace

SingleInstance::SingleInstance(Timers &timers, QString name, QObject *parent)
    : QObject(parent),
      m_name(name.isEmpty() ? nameForUser() : std::move(name)),
      m_server(new QLocalServer(this)),
      m_retry(timers.create())
{
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server, &QLocalServer::newConnection, this, &SingleInstance::greet);
}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::connectTo(QLocalSocket &other) const
{
    if (isClaimed()) {
        return false; // it would be this one
    }
    other.connectToServer(m_name);
    return other.waitForConnected(waitMs);
}

bool SingleInstance::otherIsRunning() const
{
    QLocalSocket other;
    return connectTo(other);
}

void SingleInstance::askOtherToClose() const
{
    QLocalSocket other;
    if (connectTo(other)) {
        other.write(closeRequest);
        other.waitForBytesWritten(waitMs);
        other.disconnectFromServer();
    }
}

void SingleInstance::claim()
{
    if (isClaimed()) {
        return;
    }
    // Listening would take the name from a living instance, too, so this is asked first.
    if (!otherIsRunning()) {
        QLocalServer::removeServer(m_name); // left by one that crashed
        m_server->listen(m_name);
    }
    if (!isClaimed()) {
        m_retry->start(retryEvery, [this] { claim(); });
    }
}

bool SingleInstance::isClaimed() const
{
    return m_server->isListening();
}

void SingleInstance::greet()
{
    while (QLocalSocket *const other = m_server->nextPendingConnection()) {
        // The request may come in at the same time as the end of the connection.
        connect(other, &QLocalSocket::readyRead, this, [this, other] { read(other); });
        connect(other, &QLocalSocket::disconnected, other, &QObject::deleteLater);
        read(other);
    }
}

void SingleInstance::read(QLocalSocket *other)
{
    if (isClaimed() && other->canReadLine() && other->readLine() == closeRequest) {
        m_retry->stop();
        m_server->close();
        Q_EMIT closeRequested();
    }
}

} // namespace ktr
