#pragma once

#include "link/transport.h"

#include <QStringList>

namespace ktr::test {

/// A line that nobody is at.
class SilentLine : public Transport
{
public:
    Status open(const QString &address) override
    {
        opened += address;
        m_open = true;
        return Status::done();
    }
    void close() override { m_open = false; }
    bool isOpen() const override { return m_open; }
    void send(const QByteArray &bytes) override { sent += bytes; }
    void whenDrained(std::function<void()> drained) override { drained(); }

    QStringList opened;
    QByteArray sent;

private:
    bool m_open = false;
};

} // namespace ktr::test
