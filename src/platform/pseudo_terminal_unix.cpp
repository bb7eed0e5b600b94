#include "platform/pseudo_terminal_ends.h"

#include <QFile>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace ktr::terminal {

namespace {

bool makeRaw(int descriptor)
{
    termios settings{};
    if (::tcgetattr(descriptor, &settings) != 0) {
        return false;
    }
    ::cfmakeraw(&settings);
    settings.c_cflag |= CLOCAL | CREAD;
    return ::tcsetattr(descriptor, TCSANOW, &settings) == 0;
}

template <class Count> Outcome outcome(Count count)
{
    if (count > 0) {
        return {Moved::Bytes, static_cast<qsizetype>(count)};
    }
    const bool later = count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR);
    return {later ? Moved::NothingNow : Moved::Failed};
}

} // namespace

void closeDescriptor(int descriptor)
{
    if (descriptor >= 0) {
        ::close(descriptor);
    }
}

bool openEnds(int &master, int &slave, QString &slavePath)
{
    master = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (master < 0 || ::grantpt(master) != 0) {
        return false;
    }
    makeRaw(master);
    if (::unlockpt(master) != 0) {
        return false;
    }
    const char *name = ::ptsname(master);
    if (name == nullptr) {
        return false;
    }
    slavePath = QFile::decodeName(name);
    slave = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (slave < 0 || !makeRaw(slave)) {
        return false;
    }
    const int flags = ::fcntl(master, F_GETFL);
    return flags >= 0 && ::fcntl(master, F_SETFL, flags | O_NONBLOCK) == 0 &&
           ::fcntl(master, F_SETFD, FD_CLOEXEC) == 0;
}

void releaseClaim(int slave)
{
    ::ioctl(slave, TIOCNXCL);
}

qsizetype countUnread(int slave)
{
    int count = 0;
    return ::ioctl(slave, FIONREAD, &count) == 0 ? count : 0;
}

void discardUnread(int slave)
{
    ::tcflush(slave, TCIFLUSH);
}

Outcome readSome(int descriptor, char *buffer, std::size_t size)
{
    return outcome(::read(descriptor, buffer, size));
}

Outcome writeSome(int descriptor, const QByteArray &bytes)
{
    return outcome(::write(descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

} // namespace ktr::terminal
