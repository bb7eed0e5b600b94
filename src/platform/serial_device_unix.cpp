#include "platform/files.h"
#include "platform/serial_device.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace ktr {

namespace {

/// A built-in port's device exists even where no chip answers; the system then calls its type 0.
bool hasHardware(const QString &classFolder, const QString &name)
{
    QFile type(classFolder + u'/' + name + QLatin1String("/type"));
    return !type.open(QIODevice::ReadOnly) || type.readAll().trimmed() != "0";
}

Status refused(const QString &path, int reason)
{
    const QString text = reason == EBUSY || reason == EWOULDBLOCK
                             ? QCoreApplication::translate("Files", "the port is already in use")
                         : reason == ENOENT || reason == ENXIO || reason == ENODEV || reason == EIO
                             ? QCoreApplication::translate("Files", "there is no such port")
                         : reason == ENOTTY ? QCoreApplication::translate("Files", "is no serial port")
                                            : QString::fromLocal8Bit(std::strerror(reason));
    return fileFailure(path, text);
}

bool setUp(int descriptor)
{
    termios line = {};
    if (::tcgetattr(descriptor, &line) != 0) {
        return false;
    }
    ::cfmakeraw(&line);
    line.c_cflag &= ~static_cast<tcflag_t>(CSIZE | PARENB | CSTOPB | CRTSCTS);
    line.c_cflag |= CS8 | CREAD | CLOCAL;
    line.c_iflag |= IGNPAR;
    line.c_cc[VMIN] = 1;
    line.c_cc[VTIME] = 0;
    ::cfsetispeed(&line, B9600);
    ::cfsetospeed(&line, B9600);
    return ::tcsetattr(descriptor, TCSANOW, &line) == 0;
}

} // namespace

QStringList serialPorts()
{
    return serialPorts(QStringLiteral("/dev"), QStringLiteral("/sys/class/tty"));
}

QStringList serialPorts(const QString &deviceFolder, const QString &classFolder)
{
    // Names of one pattern differ in their number alone, so the shorter comes first.
    const auto byNumber = [](const QString &a, const QString &b) {
        return a.size() != b.size() ? a.size() < b.size() : a < b;
    };
    QStringList ports;
    for (const QString &pattern :
         {QStringLiteral("ttyUSB*"), QStringLiteral("ttyACM*"), QStringLiteral("ttyS*")}) {
        QStringList names = QDir(deviceFolder).entryList({pattern}, QDir::System | QDir::Files);
        std::sort(names.begin(), names.end(), byNumber);
        for (const QString &name : names) {
            if (hasHardware(classFolder, name)) {
                ports += deviceFolder + u'/' + name;
            }
        }
    }
    return ports;
}

QString serialAdapter(const QString &port)
{
    return serialAdapter(port, QStringLiteral("/sys/class/tty"));
}

/// The device that was plugged in stands some folders above the port.
QString serialAdapter(const QString &port, const QString &classFolder)
{
    constexpr int highest = 4;
    const auto textIn = [](const QString &path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(200)).simplified() : QString();
    };
    QString folder = QFileInfo(classFolder + u'/' + QFileInfo(port).fileName() + QLatin1String("/device"))
                         .canonicalFilePath();
    for (int level = 0; level < highest && !folder.isEmpty(); ++level) {
        const QString product = textIn(folder + QLatin1String("/product"));
        if (!product.isEmpty()) {
            const QString maker = textIn(folder + QLatin1String("/manufacturer"));
            return maker.isEmpty() || product.startsWith(maker) ? product : QString(maker + u' ' + product);
        }
        folder = QFileInfo(folder).path();
    }
    return {};
}

Status openSerialDevice(const QString &path, SerialHandle &handle)
{
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return refused(path, errno);
    }
    // The lock keeps other careful programs away, the ioctl those that know no locks.
    const bool ready =
        ::isatty(descriptor) == 1 && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 && setUp(descriptor);
    if (!ready) {
        const int reason = errno;
        ::close(descriptor);
        return refused(path, reason);
    }
    ::ioctl(descriptor, TIOCEXCL);
    handle = descriptor;
    return Status::done();
}

void releaseSerialDevice(SerialHandle handle)
{
    ::ioctl(handle, TIOCNXCL);
}

qint64 bytesNotYetSent(SerialHandle handle)
{
    int count = 0;
    return ::ioctl(handle, TIOCOUTQ, &count) == 0 ? count : 0;
}

} // namespace ktr
