#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace ktr {

/// A thread that does one job at a time. It is there from the beginning: a program that has used up its file
/// descriptors can still give it work.
class WorkerThread
{
public:
    WorkerThread();
    /// Waits for the job that runs.
    ~WorkerThread();

    /// Begins a job; only when none runs.
    void start(std::function<void()> job);
    /// Waits until the job, if there is one, has ended. What it wrote can then be read.
    void wait();
    /// The same for so long at most; whether it has ended.
    bool waitFor(std::chrono::milliseconds longest);

private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::function<void()> m_job;
    bool m_isEnding = false;
    std::thread m_thread; // the last member: it uses the others
};

} // namespace ktr
