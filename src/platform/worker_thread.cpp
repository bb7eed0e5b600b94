#include "platform/worker_thread.h"

#include "platform/thread_set_up.h"

namespace ktr {

WorkerThread::WorkerThread()
    : m_thread([this] {
          setUpThreads();
          run();
      })
{}

WorkerThread::~WorkerThread()
{
    wait();
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void WorkerThread::start(std::function<void()> job)
{
    {
        const std::lock_guard lock(m_mutex);
        m_job = std::move(job);
    }
    m_changed.notify_all();
}

void WorkerThread::wait()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return !m_job; });
}

bool WorkerThread::waitFor(std::chrono::milliseconds longest)
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, longest, [this] { return !m_job; });
}

void WorkerThread::run()
{
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_job || m_isEnding; });
        if (m_isEnding) {
            return;
        }
        lock.unlock();
        m_job();
        lock.lock();
        m_job = nullptr;
        m_changed.notify_all();
    }
}

} // namespace ktr
