#include "app/neighbour_watch.h"

namespace ktr {

void NeighbourWatch::look(const QString &fileName)
{
    m_wanted = fileName;
    begin();
}

void NeighbourWatch::begin()
{
    if (m_isBusy || !m_wanted) {
        return;
    }
    m_isBusy = true;
    m_thread.start([this, fileName = *std::exchange(m_wanted, std::nullopt)] {
        m_read = m_neighbours.of(fileName, [this] { return !m_isEnding; });
        if (!m_isEnding) {
            QMetaObject::invokeMethod(this, &NeighbourWatch::take, Qt::QueuedConnection);
        }
    });
}

void NeighbourWatch::take()
{
    m_thread.wait();
    m_isBusy = false;
    if (m_read != m_found) {
        m_found = m_read;
        Q_EMIT changed();
    }
    begin();
}

} // namespace ktr
