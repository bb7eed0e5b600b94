#include "opmode/window/many_stations.h"

#include <QElapsedTimer>

namespace ktr {

ManyStations::ManyStations(QObject *parent) : QObject(parent)
{
    connect(&m_timer, &QTimer::timeout, this, &ManyStations::work);
}

void ManyStations::start(const QStringList &stations, Job job)
{
    m_stations = stations;
    m_job = std::move(job);
    m_next = 0;
    m_done = 0;
    m_failures.clear();
    m_timer.start(0);
    work();
}

void ManyStations::stop()
{
    m_stations.resize(m_next);
}

void ManyStations::work()
{
    constexpr int sliceMs = 20;
    QElapsedTimer slice;
    slice.start();
    while (m_next < m_stations.size() && !slice.hasExpired(sliceMs)) {
        const QString failure = m_job.act(m_stations[m_next]);
        ++m_next;
        if (failure.isEmpty()) {
            ++m_done;
        } else {
            m_failures += failure;
        }
    }
    Q_EMIT progressed(static_cast<int>(m_next), static_cast<int>(m_stations.size()));
    if (isIdle()) {
        m_timer.stop();
        m_job.finished(m_done);
        Q_EMIT finished();
    }
}

} // namespace ktr
