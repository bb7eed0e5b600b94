#pragma once

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <arpa/inet.h>
#include <mosquitto.h>
#include <mutex>
#include <sys/socket.h>
#include <unistd.h>

namespace ktr::test {

/// An address of the loopback.
inline sockaddr_in loopback(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

/// A port of the loopback that nobody listened at a moment ago.
inline int freePort()
{
    const int probe = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    auto *const plain = reinterpret_cast<sockaddr *>(&address);
    const bool isBound = ::bind(probe, plain, size) == 0 && ::getsockname(probe, plain, &size) == 0;
    ::close(probe);
    return isBound ? ntohs(address.sin_port) : 0;
}

inline bool isListenedAt(int port)
{
    const int probe = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = loopback(port);
    const bool isTaken = ::connect(probe, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    ::close(probe);
    return isTaken;
}

/// An MQTT broker on the loopback that is gone with this. It keeps what it was sent while it is stopped.
class MqttBroker
{
public:
    static QString program()
    {
        return QStandardPaths::findExecutable(
            QStringLiteral("mosquitto"),
            {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/local/sbin"), QStringLiteral("/usr/bin")});
    }
    /// More lines of its configuration.
    explicit MqttBroker(const QByteArray &more = "allow_anonymous true\n")
    {
        // Started by root it becomes an ordinary user, who must get at its files.
        constexpr auto forAll = static_cast<QFile::Permissions>(0x7777);
        QFile::setPermissions(m_folder.path(), forAll);
        QFile file(m_folder.filePath(QStringLiteral("broker.conf")));
        if (file.open(QIODevice::WriteOnly)) {
            file.write("user nobody\npersistence true\nqueue_qos0_messages true\nmax_queued_messages 0\n"
                       "persistence_location " +
                       m_folder.path().toUtf8() + "/\nlistener " + QByteArray::number(port) + " 127.0.0.1\n" +
                       more);
        }
    }
    ~MqttBroker() { stop(); }
    Q_DISABLE_COPY_MOVE(MqttBroker)

    void start()
    {
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(program(), {QStringLiteral("-c"), m_folder.filePath(QStringLiteral("broker.conf"))});
        QTRY_VERIFY_WITH_TIMEOUT(isListenedAt(port), 30'000);
    }
    /// As an orderly end of its machine does.
    void stop()
    {
        m_process.terminate();
        if (!m_process.waitForFinished()) {
            m_process.kill();
            m_process.waitForFinished();
        }
    }

    const int port = freePort();

private:
    QTemporaryDir m_folder;
    QProcess m_process;
};

/// Hears all topics of a broker, on a thread of the library's, and comes again when it is lost.
class MqttListener
{
public:
    struct Heard
    {
        QString topic;
        QByteArray payload;
    };

    explicit MqttListener(int port, const char *name = "listener") : m_line(mosquitto_new(name, false, this))
    {
        mosquitto_connect_callback_set(
            m_line, [](mosquitto *line, void *, int) { mosquitto_subscribe(line, nullptr, "#", 1); });
        mosquitto_subscribe_callback_set(m_line, [](mosquitto *, void *self, int, int, const int *) {
            static_cast<MqttListener *>(self)->m_isListening = true;
        });
        mosquitto_message_callback_set(m_line, [](mosquitto *, void *self, const mosquitto_message *one) {
            auto *const listener = static_cast<MqttListener *>(self);
            const std::lock_guard lock(listener->m_mutex);
            listener->m_heard += {QString::fromUtf8(one->topic),
                                  QByteArray(static_cast<const char *>(one->payload), one->payloadlen)};
        });
        mosquitto_reconnect_delay_set(m_line, 1, 1, false);
        mosquitto_connect_async(m_line, "127.0.0.1", port, 30);
        mosquitto_loop_start(m_line);
    }
    ~MqttListener()
    {
        mosquitto_disconnect(m_line);
        mosquitto_loop_stop(m_line, true);
        mosquitto_destroy(m_line);
    }
    Q_DISABLE_COPY_MOVE(MqttListener)

    bool isListening() const { return m_isListening; }
    QList<Heard> heard() const
    {
        const std::lock_guard lock(m_mutex);
        return m_heard;
    }
    /// What came under a topic, in order.
    QByteArrayList payloads(const QString &topic) const
    {
        QByteArrayList payloads;
        for (const Heard &one : heard()) {
            if (one.topic == topic) {
                payloads += one.payload;
            }
        }
        return payloads;
    }

private:
    mosquitto *m_line;
    std::atomic<bool> m_isListening = false;
    mutable std::mutex m_mutex;
    QList<Heard> m_heard;
};

} // namespace ktr::test
