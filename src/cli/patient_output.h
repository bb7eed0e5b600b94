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
        /// The line that standard output gets instead of so many lines that were left out.
        std::function<QByteArray(qint64 lines)> gap;
        /// Standard output cannot be written any more, for this reason. Called on the writing thread.
        std::function<void(int error)> gone = [](int) {};
        qsizetype longestQueue = qsizetype{8} << 20;
    };

    explicit PatientOutput(Options options);
    ~PatientOutput(); ///< as end()
    Q_DISABLE_COPY_MOVE(PatientOutput)

    /// Queues whole lines; does not wait.
    void put(std::FILE *stream, const QByteArray &lines);
    /// Waits until everything is written, as long as somebody reads at least once a second. False when
    /// something is left, which is then not written any more.
    bool end();

private:
    struct Shared;
    std::shared_ptr<Shared> d; ///< with the thread, which may outlive this
    std::thread thread;
};

} // namespace ktr::cli
