#pragma once

#include "link/transport.h"
#include "simulator/datagram_path.h"
#include "simulator/virtual_module.h"

#include <utility>
#include <vector>

namespace ktr::test {

/// A line to a virtual module in the same process; bytes arrive one piece after the other, as sent.
class DirectLine : public Transport
{
public:
    explicit DirectLine(Timers &timers, const ModuleOptions &options = {}, const DatagramFaults &network = {})
        : module(
              timers, [this](const QByteArray &bytes) { m_toProgram.send(bytes); }, options),
          m_toProgram(timers, network, [this](const QByteArray &bytes) { m_atProgram.push_back(bytes); }),
          m_toModule(timers, network, [this](const QByteArray &bytes) { m_atModule.push_back(bytes); })
    {}

    Status open(const QString &) override { return Status::done(); }
    void close() override {}
    bool isOpen() const override { return true; }
    void send(const QByteArray &bytes) override { m_toModule.send(bytes); }
    void whenDrained(std::function<void()> drained) override { drained(); }

    /// Carries bytes both ways until nobody has anything to say.
    void carry()
    {
        while (!m_atProgram.empty() || !m_atModule.empty()) {
            for (const QByteArray &bytes : std::exchange(m_atProgram, {})) {
                Q_EMIT received(bytes);
            }
            for (const QByteArray &bytes : std::exchange(m_atModule, {})) {
                module.receive(bytes);
            }
        }
    }

    VirtualModule module;

private:
    DatagramPath m_toProgram;
    DatagramPath m_toModule;
    std::vector<QByteArray> m_atProgram;
    std::vector<QByteArray> m_atModule;
};

} // namespace ktr::test
