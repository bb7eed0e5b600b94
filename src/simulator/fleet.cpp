#include "simulator/fleet.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace ktr {

namespace {

constexpr int addressesOfABlock = 254;

constexpr std::array kinds = {u"Pumpwerk",    u"Hochbehälter", u"Regenüberlaufbecken",
                              u"Tiefbrunnen", u"Kläranlage",   u"Schieberschacht"};
constexpr std::array places = {u"Nord",   u"Süd",  u"Mühlbach", u"Am Wehr",         u"Oberdorf", u"Bahnhof",
                               u"Talweg", u"Höhe", u"West",     u"Industriegebiet", u"Unterdorf"};

constexpr std::array englishKinds = {u"Pumping station", u"Elevated tank",   u"Stormwater tank",
                                     u"Deep well",       u"Treatment plant", u"Valve chamber"};
constexpr std::array englishPlaces = {u"North",       u"South",           u"Millbrook",   u"At the Weir",
                                      u"Upper Green", u"Station Road",    u"Valley Road", u"Hilltop",
                                      u"West",        u"Industrial Park", u"Lower Green"};
static_assert(englishKinds.size() == kinds.size() && englishPlaces.size() == places.size());

constexpr Milliseconds never = Milliseconds::max();

QString textOf(const FleetSockets::Program &program)
{
    QStringList bytes;
    for (const int shift : {24, 16, 8, 0}) {
        bytes += QString::number(program.address >> shift & 0xffU);
    }
    return bytes.join(u'.') + u':' + QString::number(program.port);
}

} // namespace

QString Fleet::address(int module, const QString &network)
{
    return QStringLiteral("%1.%2.%3")
        .arg(network)
        .arg(module / addressesOfABlock + 1)
        .arg(module % addressesOfABlock + 1);
}

QString Fleet::name(int module, FieldLanguage language)
{
    // The numbers of kinds and places have no common divisor, so that all pairs come.
    static_assert(std::gcd(kinds.size(), places.size()) == 1);
    const auto number = static_cast<std::size_t>(module);
    const bool isEnglish = language == FieldLanguage::English;
    const QString kind = QString::fromUtf16((isEnglish ? englishKinds : kinds)[number % kinds.size()]);
    const bool isNamed = number < kinds.size() * places.size();
    return kind + u' ' +
           (isNamed ? QString::fromUtf16((isEnglish ? englishPlaces : places)[number % places.size()])
                    : QString::number(module + 1));
}

Milliseconds Fleet::livelyInterval(int modules)
{
    return std::max(Milliseconds(2'000), Milliseconds(modules * 1'000 / 50));
}

Fleet::Fleet(IoThread &io, Timers &timers, const FleetOptions &options, QueuedCallbackTimers::Clock clock,
             const FieldModule::Now &now)
    : m_options(options),
      m_clock(std::move(clock)),
      m_toProgram(timers, options.faults,
                  [this](const QByteArray &datagram) { m_sockets.send(m_current, datagram); }),
      m_toModule(timers, options.faults, [this](const QByteArray &datagram) { arrived(datagram); }),
      m_timer(timers.create()),
      m_sockets(io,
                [this](std::size_t module, const QByteArray &datagram, const FleetSockets::Program &program) {
                    m_current = module;
                    notice(module, datagram, program);
                    m_toModule.send(datagram);
                    startTimer();
                })
{
    const auto send = [this](const QByteArray &datagram) { m_toProgram.send(datagram); };
    for (int module = 0; module < options.modules; ++module) {
        const quint32 seed = options.seed * 10'007 + static_cast<quint32>(module);
        m_modules.emplace_back(
            FieldModuleOptions{seed, options.every, bool(m_options.ledger), options.language}, send, now,
            toldOf(module));
    }
    m_programs.resize(m_modules.size());
    m_dueAt.assign(m_modules.size(), never);
}

Status Fleet::open()
{
    for (int module = 0; module < m_options.modules; ++module) {
        if (Status opened = m_sockets.open(address(module, m_options.network), m_options.port); !opened) {
            return opened;
        }
    }
    m_sockets.start();
    return Status::done();
}

qint64 Fleet::smsSent() const
{
    return std::accumulate(m_modules.begin(), m_modules.end(), qint64{0},
                           [](qint64 sum, const FieldModule &module) { return sum + module.smsSent(); });
}

qint64 Fleet::commandsTaken() const
{
    return std::accumulate(m_modules.begin(), m_modules.end(), qint64{0},
                           [](qint64 sum, const FieldModule &each) { return sum + each.commandsTaken(); });
}

void Fleet::arrived(const QByteArray &datagram)
{
    const auto answering = m_modules.size() - static_cast<std::size_t>(m_options.silent);
    if (m_current < answering) {
        wakeIn(m_current, m_modules[m_current].receive(datagram));
    }
}

FieldModule::Told Fleet::toldOf(int module) const
{
    if (!m_options.ledger) {
        return {};
    }
    return [ledger = m_options.ledger, module](const QString &text, bool isAnswered) {
        ledger(module, isAnswered ? QLatin1String("answered") : QLatin1String("sent"), text);
    };
}

/// Each announcement, and whatever comes first of another program.
void Fleet::notice(std::size_t module, const QByteArray &datagram, const FleetSockets::Program &program)
{
    const bool isAnother = std::exchange(m_programs[module], program) != program;
    if (m_options.ledger && (isAnother || datagram == "config\r\n")) {
        m_options.ledger(static_cast<int>(module), QLatin1String("heard"), textOf(program));
    }
}

void Fleet::wakeModules()
{
    while (!m_queue.empty() && m_queue.top().at <= m_clock()) {
        const Due due = m_queue.top();
        m_queue.pop();
        if (m_dueAt[due.module] == due.at) {
            m_current = due.module;
            m_dueAt[due.module] = never;
            wakeIn(due.module, m_modules[due.module].wake());
        }
    }
    startTimer();
}

void Fleet::wakeIn(std::size_t module, std::optional<Milliseconds> wait)
{
    if (wait) {
        m_dueAt[module] = m_clock() + *wait;
        m_queue.push({m_dueAt[module], module});
    }
}

void Fleet::startTimer()
{
    if (m_queue.empty()) {
        m_timer->stop();
    } else {
        const Milliseconds wait = m_queue.top().at - m_clock();
        m_timer->start(std::max(wait, Milliseconds(0)), [this] { wakeModules(); });
    }
}

} // namespace ktr
