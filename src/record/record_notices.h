#pragma once

#include <QObject>
#include <QString>
#include <QThread>

#include <atomic>
#include <functional>
#include <memory>

namespace ktr {

/// Tells that somebody committed something to a server's record, as soon as that is so. It has a connection
/// and a thread of its own; while there is no connection it tells nothing, and begins one again every second.
class RecordNotices
{
public:
    /// `noticed` is called in the owner's event loop, once for what came together.
    RecordNotices(const QString &address, std::function<void()> noticed);
    ~RecordNotices();
    Q_DISABLE_COPY_MOVE(RecordNotices)

    /// Whether it would tell: otherwise the owner has to look for itself.
    bool isListening() const { return m_isListening; }

private:
    class Listener;

    std::function<void()> m_noticed;
    std::atomic<bool> m_isListening = false;
    std::atomic<bool> m_isTold = false;               ///< and not taken by the owner yet
    QObject m_receiver;                               ///< on the owner's thread
    std::unique_ptr<class RecordDatabase> m_database; ///< the thread's, but for giving it up
    QThread m_thread;
    std::unique_ptr<Listener> m_listener; ///< the thread's
};

} // namespace ktr
