#pragma once

#include <QByteArray>

#include <cstdio>
#include <functional>
#include <memory>
#include <thread>

namespace ktr::cli {

/// Writes to standard output and standard error on a thread of its own, for a job that must go on while its
/// reader does not read: a pager that was stopped, a pipe that nobody empties. Lines wait in one queue, in
/// order; those that it cannot hold are left out and counted.
class PatientOutput
{
public:
    struct Options
    {
        /// The line that standard output gets instead of so many lines that were left out. Without it they
        /// count as lost.
        std::function<QByteArray(qint64 lines)> gap = {};
        /// Standard output cannot be written any more, for this reason. Called on the writing thread.
        std::function<void(int error)> gone = [](int) {};
        qsizetype longestQueue = qsizetype{8} << 20;
    };
    /// What could not be written.
    struct Rest
    {
        qint64 lines = 0;  ///< of standard output
        QByteArray errors; ///< what standard error did not get because it stood behind them
    };

    explicit PatientOutput(Options options);
    ~PatientOutput(); ///< as end()
    Q_DISABLE_COPY_MOVE(PatientOutput)

    /// Queues whole lines, or a progress bar; does not wait.
    void put(std::FILE *stream, const QByteArray &lines);
    /// Waits until everything is written, as long as somebody reads at least once a second. False when
    /// something is left.
    bool drain();
    /// drain(), then gives up what is left.
    Rest end();

private:
    struct Shared;
    std::shared_ptr<Shared> d; ///< with the thread, which may outlive this
    std::thread thread;
};

} // namespace ktr::cli
