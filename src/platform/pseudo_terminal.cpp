#include "platform/pseudo_terminal.h"

#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>

#include <array>
#include <utility>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>
#endif

namespace ktr {

namespace {

enum class Moved { Bytes, NothingNow, Failed };

struct Outcome
{
    Moved moved = Moved::Failed;
    qsizetype count = 0;
};

#ifdef Q_OS_UNIX

void closeDescriptor(int descriptor)
{
    if (descriptor >= 0) {
        ::close(descriptor);
    }
}

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

/// Opens both ends. The terminal is raw before its path can be opened by anybody else: where the master
/// carries the settings, before the slave is unlocked.
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

/// A client that claims the terminal for itself and leaves would keep all others out, since the last
/// descriptor, ours, never closes.
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

template <class Count> Outcome outcome(Count count)
{
    if (count > 0) {
        return {Moved::Bytes, static_cast<qsizetype>(count)};
    }
    const bool later = count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR);
    return {later ? Moved::NothingNow : Moved::Failed};
}

Outcome readSome(int descriptor, char *buffer, std::size_t size)
{
    return outcome(::read(descriptor, buffer, size));
}

Outcome writeSome(int descriptor, const QByteArray &bytes)
{
    return outcome(::write(descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

#else

void closeDescriptor(int) {}
bool openEnds(int &, int &, QString &)
{
    return false;
}
void releaseClaim(int) {}
qsizetype countUnread(int)
{
    return 0;
}
void discardUnread(int) {}
Outcome readSome(int, char *, std::size_t)
{
    return {};
}
Outcome writeSome(int, const QByteArray &)
{
    return {};
}

#endif

/// A notifier may be dropped by what it notifies, so it outlives its own signal.
void retire(std::unique_ptr<QSocketNotifier> &notifier)
{
    if (notifier) {
        notifier->setEnabled(false);
        notifier.release()->deleteLater();
    }
}

} // namespace

PseudoTerminal::PseudoTerminal(QObject *parent) : QObject(parent) {}

PseudoTerminal::~PseudoTerminal()
{
    hangUp();
}

Status PseudoTerminal::open()
{
    if (isOpen()) {
        return Status::done();
    }
    if (!openEnds(m_master, m_slave, m_slavePath)) {
        hangUp();
        return Status::failed(QStringLiteral("No pseudo-terminal is to be had on this system."));
    }
    m_readNotifier = std::make_unique<QSocketNotifier>(m_master, QSocketNotifier::Read);
    connect(m_readNotifier.get(), &QSocketNotifier::activated, this, &PseudoTerminal::readAvailable);
    m_writeNotifier = std::make_unique<QSocketNotifier>(m_master, QSocketNotifier::Write);
    m_writeNotifier->setEnabled(false);
    connect(m_writeNotifier.get(), &QSocketNotifier::activated, this, &PseudoTerminal::writePending);
    return Status::done();
}

Status PseudoTerminal::linkAt(const QString &path)
{
    if (!isOpen()) {
        return Status::failed(QStringLiteral("%1: no terminal is open to link to.").arg(path));
    }
    const QFileInfo present(path);
    if (present.isSymbolicLink()) {
        QFile::remove(path);
    } else if (present.exists()) {
        return Status::failed(
            QStringLiteral("%1: expected a symbolic link or nothing, found another file.").arg(path));
    }
    if (!QFile::link(m_slavePath, path)) {
        return Status::failed(QStringLiteral("%1: the link could not be made.").arg(path));
    }
    if (m_linkPath != path) {
        removeLink();
    }
    m_linkPath = path;
    return Status::done();
}

/// A link that points elsewhere by now belongs to another terminal.
void PseudoTerminal::removeLink()
{
    if (!m_linkPath.isEmpty() && QFileInfo(m_linkPath).symLinkTarget() == m_slavePath) {
        QFile::remove(m_linkPath);
    }
    m_linkPath.clear();
}

QByteArray PseudoTerminal::readAll()
{
    return std::exchange(m_received, QByteArray());
}

void PseudoTerminal::readAvailable()
{
    releaseClaim(m_slave);
    // Bounded, so that a client that never stops writing does not keep the event loop.
    constexpr int readsAtOnce = 16;
    std::array<char, 4096> buffer;
    Outcome outcome{Moved::Bytes};
    for (int i = 0; i < readsAtOnce && outcome.moved == Moved::Bytes; ++i) {
        outcome = readSome(m_master, buffer.data(), buffer.size());
        m_received.append(buffer.data(), outcome.count);
    }
    if (outcome.moved == Moved::Failed) {
        lineFailed();
    }
    if (!m_received.isEmpty()) {
        Q_EMIT readyRead();
    }
}

void PseudoTerminal::write(const QByteArray &bytes)
{
    if (!isOpen()) {
        return;
    }
    releaseClaim(m_slave);
    if (m_pending.size() + bytes.size() > outputLimit) {
        Q_EMIT statusMessage(QStringLiteral("%1: nobody reads, %2 bytes were dropped.")
                                 .arg(m_slavePath, QString::number(bytes.size())));
        return;
    }
    const bool wasIdle = m_pending.isEmpty();
    m_pending += bytes;
    if (wasIdle) {
        writePending();
    }
}

qsizetype PseudoTerminal::untaken() const
{
    return isOpen() ? m_pending.size() + countUnread(m_slave) : 0;
}

void PseudoTerminal::discardUntaken()
{
    if (isOpen()) {
        m_pending.clear();
        m_writeNotifier->setEnabled(false);
        discardUnread(m_slave);
    }
}

void PseudoTerminal::writePending()
{
    Outcome outcome{Moved::Bytes};
    qsizetype written = 0;
    while (written < m_pending.size() && outcome.moved == Moved::Bytes) {
        outcome = writeSome(m_master, m_pending.mid(written, 4096));
        written += outcome.count;
    }
    m_pending.remove(0, written);
    if (outcome.moved == Moved::Failed) {
        lineFailed();
    } else {
        m_writeNotifier->setEnabled(!m_pending.isEmpty());
    }
}

void PseudoTerminal::lineFailed()
{
    // The first error ends it: a terminal that has gone reports errors without end.
    const QString path = m_slavePath;
    hangUp();
    Q_EMIT statusMessage(QStringLiteral("%1: the terminal has gone.").arg(path));
}

void PseudoTerminal::hangUp()
{
    removeLink();
    retire(m_readNotifier);
    retire(m_writeNotifier);
    closeDescriptor(std::exchange(m_slave, -1));
    closeDescriptor(std::exchange(m_master, -1));
    m_slavePath.clear();
    m_pending.clear();
}

} // namespace ktr
