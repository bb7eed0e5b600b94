#include "opmode/keeping_trouble.h"

namespace ktr {

namespace {

constexpr Milliseconds aSecond{1000};

} // namespace

KeepingTrouble::KeepingTrouble(Timers &timers, const Environment &environment,
                               std::function<quint64()> waiting, QObject *parent)
    : QObject(parent), m_environment(environment), m_waiting(std::move(waiting)), m_tellAgain(timers.create())
{}

KeepingTrouble::~KeepingTrouble() = default;

void KeepingTrouble::set(const QString &reason)
{
    if (m_reason.isEmpty() != reason.isEmpty()) {
        m_since = m_environment.now();
        Q_EMIT statusMessage(reason.isEmpty() ? tr("What happens is written to the record again") : reason);
    }
    m_reason = reason;
    tell();
}

void KeepingTrouble::clear()
{
    m_reason.clear();
    tell();
}

void KeepingTrouble::tell()
{
    m_tellAgain->stop();
    if (!m_reason.isEmpty()) {
        m_tellAgain->start(aSecond, [this] { tell(); });
    }
    Q_EMIT changed();
}

std::optional<UnkeptChanges> KeepingTrouble::unkept() const
{
    return m_reason.isEmpty() ? std::nullopt : std::optional(UnkeptChanges{m_reason, m_since, m_waiting()});
}

} // namespace ktr
