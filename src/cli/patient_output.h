#pragma once

#include <QByteArray>

#include <cstdio>
#include <functional>
#include <memory>

namespace ktr::cli {

/// Writes to standard output and standard error on a thread of its own, for a job that has to go on while its
/// reader stands still: a pager that was stopped, a pipe that nobody empties. What it is given waits in one
/// queue, in its order; what that cannot hold is left out and counted.
class PatientOutput
{
public:
    struct Options
    {
        /// What stands on standard output in the place of so many lines that were left out.
        std::function<QByteArray(qint64 lines)> gap;
        /// Standard output cannot be written any more, for this reason. Called on the thread that writes.
        std::function<void(int error)> gone = [](int) {};
        qsizetype longestQueue = qsizetype{8} << 20;
    };

    explicit PatientOutput(Options options);
    ~PatientOutput(); ///< as end()
    Q_DISABLE_COPY_MOVE(PatientOutput)

    /// Takes whole lines; does not wait.
    void put(std::FILE *stream, const QByteArray &lines);
    /// Waits until all is written, as long as somebody reads at least once a second. False when something is
    /// left; nothing more is written then.
    bool end();

private:
    struct Shared;
    std::shared_ptr<Shared> d; ///< with the thread, which a reader that stands still may keep for ever
};

} // namespace ktr::cli
