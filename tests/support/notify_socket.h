#pragma once

#include <QByteArrayList>
#include <QDeadlineTimer>
#include <QFile>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace ktr::test {

/// Stands in the place of the service manager: hears what a service tells it.
class NotifySocket
{
public:
    explicit NotifySocket(const QString &path) : m_path(QFile::encodeName(path))
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, m_path.constData(), sizeof address.sun_path);
        m_socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        const void *generic = &address;
        (void)::bind(m_socket, static_cast<const sockaddr *>(generic), sizeof address);
    }
    ~NotifySocket() { ::close(m_socket); }
    Q_DISABLE_COPY_MOVE(NotifySocket)

    const QByteArray &path() const { return m_path; }
    /// Waits until something is told that begins so, at most so long; gives all of it, or nothing.
    QByteArray await(const QByteArray &beginning, int milliseconds = 60'000)
    {
        const QDeadlineTimer deadline(milliseconds);
        do {
            char told[4096];
            for (ssize_t size = 0; (size = ::recv(m_socket, told, sizeof told, 0)) >= 0;) {
                if (QByteArray(told, size).startsWith(beginning)) {
                    return {told, size};
                }
            }
            pollfd wait{m_socket, POLLIN, 0};
            (void)::poll(&wait, 1, static_cast<int>(deadline.remainingTime()));
        } while (!deadline.hasExpired());
        return {};
    }
    /// Forgets what was told by now.
    void clear() { (void)await("-", 0); }

private:
    QByteArray m_path;
    int m_socket = -1;
};

} // namespace ktr::test
