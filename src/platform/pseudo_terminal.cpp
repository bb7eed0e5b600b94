#include "platform/pseudo_terminal.h"

#include "platform/pseudo_terminal_ends.h"

#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>

#include <array>
#include <utility>

namespace ktr {

namespace {

using terminal::Moved;

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
    if (!terminal::openEnds(m_master, m_slave, m_slavePath)) {
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
    terminal::releaseClaim(m_slave);
    // Bounded, so that a client that never stops writing does not keep the event loop.
    constexpr int readsAtOnce = 16;
    std::array<char, 4096> buffer;
    terminal::Outcome outcome{Moved::Bytes};
    for (int i = 0; i < readsAtOnce && outcome.moved == Moved::Bytes; ++i) {
        outcome = terminal::readSome(m_master, buffer.data(), buffer.size());
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
    terminal::releaseClaim(m_slave);
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
    return isOpen() ? m_pending.size() + terminal::countUnread(m_slave) : 0;
}

void PseudoTerminal::discardUntaken()
{
    if (isOpen()) {
        m_pending.clear();
        m_writeNotifier->setEnabled(false);
        terminal::discardUnread(m_slave);
    }
}

void PseudoTerminal::writePending()
{
    terminal::Outcome outcome{Moved::Bytes};
    qsizetype written = 0;
    while (written < m_pending.size() && outcome.moved == Moved::Bytes) {
        outcome = terminal::writeSome(m_master, m_pending.mid(written, 4096));
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
    terminal::closeDescriptor(std::exchange(m_slave, -1));
    terminal::closeDescriptor(std::exchange(m_master, -1));
    m_slavePath.clear();
    m_pending.clear();
}

} // namespace ktr
