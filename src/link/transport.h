#pragma once

#include "platform/status.h"

#include <QByteArray>
#include <QObject>

#include <functional>

namespace ktr {

/// What carries the bytes between the program and one module. Signals come on the thread that owns it.
class Transport : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Opens the line at an address: a port's name.
    virtual Status open(const QString &address) = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;

    /// Sends bytes in the order of the calls; nothing happens while closed.
    virtual void send(const QByteArray &bytes) = 0;

    /// Calls back once everything sent so far has left the machine.
    virtual void whenDrained(std::function<void()> drained) = 0;

Q_SIGNALS:
    /// What one receive event brought.
    void received(const QByteArray &bytes);
    /// The line broke, and is closed by now. `everythingSent`: all that was sent before had left the machine.
    void lost(const QString &reason, bool everythingSent);
    /// Something cannot be sent at the moment, for this reason; once until it changes. The line stays open.
    void statusMessage(const QString &text);
};

} // namespace ktr
