#include "app/single_instance.h"

#include "look/program_name.h"
#include "platform/files.h"
#include "platform/instances.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>

#include <algorithm>

namespace ktr {

namespace {

constexpr int connectMs = 200;
constexpr int lockMs = 1000;
constexpr Milliseconds pingEvery = std::chrono::seconds(1);

// A line each; the answer to the first is one of the two that follow, the process's number, and what else it
// does, with blanks between them.
constexpr char stateQuestion[] = "state\n";
constexpr char editing[] = "editing";
constexpr char watching[] = "watching";
constexpr char transmitting[] = "transmitting";
constexpr char uploading[] = "uploading";
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

SingleInstance::SingleInstance(Timers &timers, QString name, std::function<Works()> works, QObject *parent)
    : QObject(parent),
      m_name(name.isEmpty() ? nameForUser() : std::move(name)),
      m_works(std::move(works)),
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
    if (isClaimed()) {
        return true;
    }
    if (m_name.isEmpty()) {
        m_trouble = Status::failed(tr("there is no folder that is the user's alone"));
        return true;
    }
    // Two that start together must not both think they are alone.
    QLockFile lock(QDir(QDir::tempPath()).absoluteFilePath(m_name) + QLatin1String(".lock"));
    m_trouble = checkLockFile(lock.fileName());
    // Whoever holds the lock for longer hangs; better start than wait for that.
    [[maybe_unused]] const bool isAlone = m_trouble && lock.tryLock(lockMs);
    if (findOther()) {
        return false;
    }
    if (!m_server->listen(newSocketName(m_name))) {
        m_trouble = fileFailure(m_name, m_server->errorString());
    }
    return true;
}

void SingleInstance::bringToFront(const QString &name)
{
    for (const QString &each : socketNames(name)) {
        QLocalSocket other;
        other.connectToServer(each);
        if (other.waitForConnected(connectMs)) {
            other.write(frontRequest);
            other.waitForBytesWritten(connectMs);
        }
    }
}

void SingleInstance::passOver()
{
    forgetOther();
    m_passedOver += m_otherName;
}

// Towards the other instance

bool SingleInstance::findOther()
{
    const QStringList names = socketNames(m_name);
    return std::ranges::any_of(
        names, [this](const QString &name) { return !m_passedOver.contains(name) && connectTo(name); });
}

bool SingleInstance::connectTo(const QString &name)
{
    auto other = std::make_unique<QLocalSocket>();
    other->connectToServer(name);
    if (!other->waitForConnected(connectMs)) {
        if (other->error() == QLocalSocket::ConnectionRefusedError) {
            QLocalServer::removeServer(name); // left behind by a crash
        }
        return false;
    }
    m_other = std::move(other);
    m_otherName = name;
    m_otherWorks.reset();
    // A queued call whose socket is gone must not act on the next one.
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
    if (m_other->state() != QLocalSocket::ConnectedState) { // it ended before the signals were connected
        QMetaObject::invokeMethod(this, &SingleInstance::lost, Qt::QueuedConnection);
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
        Works works;
        works.setFlag(Work::Watching, watches);
        works.setFlag(Work::Transmitting, words.contains(transmitting));
        works.setFlag(Work::Uploading, words.contains(uploading));
        if (!m_otherWorks) {
            allowToFront(words.value(1).toLongLong());
        }
        if (std::exchange(m_otherWorks, works) != works) {
            Q_EMIT otherAnswered(works);
        }
    }
}

void SingleInstance::lost()
{
    forgetOther();
    if (++m_ends[m_otherName] >= mostEnds) {
        m_metStranger = true;
        passOver();
    }
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
        m_other->flush(); // this instance may be about to end
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
            const Works works = m_works();
            asker->write(
                QByteArray(works.testFlag(Work::Watching) ? watching : editing) + ' ' +
                QByteArray::number(QCoreApplication::applicationPid()) +
                (works.testFlag(Work::Transmitting) ? QByteArray(" ") + transmitting : QByteArray()) +
                (works.testFlag(Work::Uploading) ? QByteArray(" ") + uploading : QByteArray()) + '\n');
        } else if (line == closeRequest) {
            QMetaObject::invokeMethod(this, &SingleInstance::closeRequested, Qt::QueuedConnection);
        } else if (line == frontRequest) {
            QMetaObject::invokeMethod(this, &SingleInstance::frontRequested, Qt::QueuedConnection);
        }
    }
}

} // namespace ktr
