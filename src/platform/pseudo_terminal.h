#pragma once

#include "platform/status.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

class QSocketNotifier;

namespace ktr {

/// A terminal whose other end this process holds: another program opens its path like a serial port. Bytes
/// pass unchanged both ways from the first one. The path stays usable when a client leaves.
class PseudoTerminal : public QObject
{
    Q_OBJECT

public:
    /// Whether this system has pseudo-terminals.
#ifdef Q_OS_UNIX
    static constexpr bool isSupported = true;
#else
    static constexpr bool isSupported = false;
#endif
    static constexpr qsizetype outputLimit = qsizetype{1024} * 1024; ///< bytes that no client has taken yet

    explicit PseudoTerminal(QObject *parent = nullptr);
    ~PseudoTerminal() override;

    /// Fails on systems without pseudo-terminals and when none is left.
    Status open();
    bool isOpen() const
    {
        return m_master >= 0;
    }

    /// What a client opens; empty while not open.
    const QString &slavePath() const
    {
        return m_slavePath;
    }

    /// Makes the terminal known by a name of the user's choice. A symbolic link that stands there is
    /// replaced, any other file is left alone; the link goes when the terminal does.
    Status linkAt(const QString &path);

    /// What has arrived since the last call.
    QByteArray readAll();

    /// Never blocks; what the client does not take yet is kept. Does nothing while not open. Bytes beyond
    /// the limit are dropped, whole writes at a time, with a message.
    void write(const QByteArray &bytes);

    /// Bytes written that no client has read, without those that the system has just taken over.
    qsizetype untaken() const;
    void discardUntaken();

    /// Ends the line: the client sees its device go. What is not yet taken is lost.
    void hangUp();

Q_SIGNALS:
    void readyRead();
    void statusMessage(const QString &text);

private:
    void readAvailable();
    void writePending();
    void removeLink();
    void lineFailed();

    int m_master = -1;
    int m_slave = -1; ///< kept open, so that a client leaving is no error
    QString m_slavePath;
    QString m_linkPath;
    QByteArray m_received;
    QByteArray m_pending;
    std::unique_ptr<QSocketNotifier> m_readNotifier;
    std::unique_ptr<QSocketNotifier> m_writeNotifier;
};

} // namespace ktr
