#pragma once

#include "platform/callback_timers.h"
#include "simulator/datagram_path.h"
#include "simulator/field_module.h"
#include "simulator/fleet_sockets.h"

#include <queue>

namespace ktr {

struct FleetOptions
{
    static constexpr int mostModules = 10'000;

    int modules = 1;
    QString network = QStringLiteral("127.0"); ///< with what the addresses of all begin
    quint16 port = 49'111;                     ///< of every module; 0 takes any free one for each
    Milliseconds every{2'000};
    int silent = 0;        ///< so many, the last ones, never answer
    DatagramFaults faults; ///< of all modules together; none is overtaken
    quint32 seed = 1;
    FieldLanguage language = FieldLanguage::German;
    /// Is told what happens to each module, whose texts then are counted.
    std::function<void(int module, QLatin1String what, const QString &text)> ledger;
};

/// Many modules in operation, each at an address of its own.
class Fleet
{
public:
    /// 127.0.1.1 for module 0, then counting up without .0 and .255; or likewise in another network.
    static QString address(int module, const QString &network = FleetOptions().network);
    /// "Pumpwerk Nord" or "Pumping station North", ..., with a number once the names are used up.
    static QString name(int module, FieldLanguage language = FieldLanguage::German);
    /// From one dialogue of a module to the next so that few modules are lively and many are bearable: 2 s,
    /// and 50 dialogues a second of all together.
    static Milliseconds livelyInterval(int modules);

    Fleet(
        IoThread &io, Timers &timers, const FleetOptions &options,
        QueuedCallbackTimers::Clock clock = &QueuedCallbackTimers::steadyTime,
        const FieldModule::Now &now = [] { return QDateTime::currentDateTime(); });

    /// Opens all sockets; fails at the first that cannot be.
    Status open();
    quint16 port(int module) const { return m_sockets.port(static_cast<std::size_t>(module)); }

    qint64 smsSent() const;
    qint64 commandsTaken() const;

private:
    struct Due
    {
        Milliseconds at;
        std::size_t module;
        bool operator>(const Due &other) const { return at > other.at; }
    };

    void arrived(const QByteArray &datagram);
    FieldModule::Told toldOf(int module) const;
    void notice(std::size_t module, const QByteArray &datagram, const FleetSockets::Program &program);
    void wakeModules();
    void wakeIn(std::size_t module, std::optional<Milliseconds> wait);
    void startTimer();

    FleetOptions m_options;
    QueuedCallbackTimers::Clock m_clock;
    std::size_t m_current = 0; ///< whose datagram is on its way
    DatagramPath m_toProgram;
    DatagramPath m_toModule;
    std::vector<FieldModule> m_modules;
    std::vector<FleetSockets::Program> m_programs; ///< who spoke to each last
    std::vector<Milliseconds> m_dueAt; ///< of each module; what the queue holds beside it does not count
    std::priority_queue<Due, std::vector<Due>, std::greater<>> m_queue;
    std::unique_ptr<OneShotTimer> m_timer;
    FleetSockets m_sockets; // the last: what it hears needs the others
};

} // namespace ktr
