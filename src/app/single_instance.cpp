#include "app/single_instance.h"

#include "look/program_name.h"
#include "platform/instances.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>

namespace ktr {

namespace {

constexpr int connectMs = 200;
constexpr int lockMs = 1000;
constexpr Milliseconds pingEvery = std::chrono::seconds(1);

// A line each; the answer to the first is one of the two that follow, a blank and the process's number.
constexpr char stateQuestion[] = "state\n";
constexpr char editing[] = "editing";
constexpr char watching[] = "watching";
constexpr char closeRequest[] = "close\n";
constexpr char frontRequest[] = "front\n";
constexpr qint64 longestLine = 64;

/// The home folder tells users apart on every system; its digest is a name on every system.
QString nameForUser()
{
    const QByteArray digest = QCryptographicHash::hash(QDir::homePath().toUtf8(), QCryptographicHash::Sha256);
    return privateSocketName(programName + u'-' + QLatin1String(digest.toHex().left(16)));
}

} // namespace

SingleInstance::SingleInstance(Timers &timers, QString name, std::function<bool()> watches, QObject *parent)
    : QObject(parent),
      m_name(name.isEmpty() ? nameForUser() : std::move(name)),
      m_watches(std::move(watches)),
      m_server(new QLocalServer(this)),
      m_ping(timers.create()),
      m_silence(timers.create())
{
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server, &QLocalServer::newConnection, this, &SingleInstance::greet);
}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::isClaimed() const
{
    return m_server->isListening();
}

bool SingleInstance::claim()
{
    if (m_name.isEmpty() || isClaimed()) {
        return true;
    }
    // Two that start together must not both find nobody. Listening would take the name from a living
    // instance, too, so it is looked for first.
    QLockFile lock(QDir(QDir::tempPath()).absoluteFilePath(m_name) + QLatin1String(".lock"));
    // Whoever holds it for longer hangs; to start is better than to wait for that.
    [[maybe_unused]] const bool isAlone = lock.tryLock(lockMs);
    if (findOther()) {
        return false;
    }
    listen();
    return true;
}

void SingleInstance::claimFromSilent()
{
    if (!m_name.isEmpty()) {
        listen();
    }
}

void SingleInstance::listen()
{
    QLocalServer::removeServer(m_name); // left by one that crashed
    m_server->listen(m_name);
}

// Towards the other instance

bool SingleInstance::findOther()
{
    auto other = std::make_unique<QLocalSocket>();
    other->connectToServer(m_name);
    if (!other->waitForConnected(connectMs)) {
        return false;
    }
    m_other = std::move(other);
    m_hasAnswered = false;
    // A call that is still queued when its socket is gone is not about the next one.
    const auto ofThis = [this, socket = m_other.get()](void (SingleInstance::*handle)()) {
        return [this, socket, handle] {
            if (m_other.get() == socket) {
                (this->*handle)();
            }
        };
    };
    connect(m_other.get(), &QLocalSocket::readyRead, this, ofThis(&SingleInstance::heard),
            Qt::QueuedConnection);
    connect(m_other.get(), &QLocalSocket::disconnected, this, ofThis(&SingleInstance::lost),
            Qt::QueuedConnection);
    return true;
}

void SingleInstance::askWhatOtherDoes()
{
    if (m_other == nullptr) {
        return;
    }
    if (m_other->state() != QLocalSocket::ConnectedState) { // ended before anybody listened for it
        forgetOther();
        QMetaObject::invokeMethod(this, &SingleInstance::otherEnded, Qt::QueuedConnection);
        return;
    }
    waitForSign();
    ping();
}

void SingleInstance::waitForSign()
{
    m_silence->start(longestSilence, [this] {
        forgetOther();
        Q_EMIT otherSilent();
    });
}

void SingleInstance::forgetOther()
{
    m_ping->stop();
    m_silence->stop();
    m_other.reset();
}

void SingleInstance::ping()
{
    m_other->write(stateQuestion);
    m_ping->start(pingEvery, [this] { ping(); });
}

void SingleInstance::heard()
{
    while (m_other != nullptr && m_other->canReadLine()) {
        const QList<QByteArray> words = m_other->readLine(longestLine).trimmed().split(' ');
        const bool watches = words.front() == watching;
        if (!watches && words.front() != editing) {
            continue;
        }
        waitForSign();
        if (!std::exchange(m_hasAnswered, true)) {
            allowToFront(words.value(1).toLongLong());
            Q_EMIT otherAnswered(watches);
        }
    }
}

void SingleInstance::lost()
{
    forgetOther();
    Q_EMIT otherEnded();
}

void SingleInstance::askOtherToClose()
{
    if (m_other != nullptr) {
        m_other->write(closeRequest);
    }
}

void SingleInstance::askOtherToFront()
{
    if (m_other != nullptr) {
        m_other->write(frontRequest);
        m_other->flush(); // this one may be about to end
    }
}

// Towards a new instance

void SingleInstance::greet()
{
    while (QLocalSocket *const asker = m_server->nextPendingConnection()) {
        const auto read = [this, asker] { answer(asker); };
        connect(asker, &QLocalSocket::readyRead, this, read);
        connect(asker, &QLocalSocket::disconnected, asker, &QObject::deleteLater);
        read(); // it may have come together with the connection
    }
}

void SingleInstance::answer(QLocalSocket *asker)
{
    while (asker->canReadLine()) {
        const QByteArray line = asker->readLine(longestLine);
        if (line == stateQuestion) {
            asker->write(QByteArray(m_watches() ? watching : editing) + ' ' +
                         QByteArray::number(QCoreApplication::applicationPid()) + '\n');
        } else if (line == closeRequest) {
            QMetaObject::invokeMethod(this, &SingleInstance::closeRequested, Qt::QueuedConnection);
        } else if (line == frontRequest) {
            QMetaObject::invokeMethod(this, &SingleInstance::frontRequested, Qt::QueuedConnection);
        }
    }
}

} // namespace ktr
