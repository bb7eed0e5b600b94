#pragma once

#include "config/neighbours.h"
#include "platform/worker_thread.h"

#include <QObject>

#include <atomic>
#include <optional>

namespace ktr {

/// Knows the configurations beside the present one. They are read on a thread: a folder may be large, or on a
/// slow share.
class NeighbourWatch : public QObject
{
    Q_OBJECT

public:
    explicit NeighbourWatch(QObject *parent = nullptr) : QObject(parent) {}
    ~NeighbourWatch() override { m_isEnding = true; }
    Q_DISABLE_COPY_MOVE(NeighbourWatch)

    /// Looks at the folder of a file, again where that was done before.
    void look(const QString &fileName);
    const QList<Neighbour> &found() const { return m_found; }

Q_SIGNALS:
    void changed();

private:
    void begin();
    void take();

    QList<Neighbour> m_found;
    std::optional<QString> m_wanted; ///< to be looked at next
    bool m_isBusy = false;
    std::atomic<bool> m_isEnding = false;
    // The thread's while it works:
    Neighbours m_neighbours;
    QList<Neighbour> m_read;
    WorkerThread m_thread; // the last: it uses the others
};

} // namespace ktr
