#include "cli/patient_output.h"

#include <QFile>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace ktr::cli {

namespace {

constexpr std::chrono::seconds longestEnd{1};
constexpr std::chrono::milliseconds fullPause{10};
constexpr qsizetype atOnce = 4096; ///< what a pipe takes whole

/// A last one that has no end counts, too.
qint64 linesIn(QByteArrayView text)
{
    return std::ranges::count(text, '\n') + (text.empty() || text.back() == '\n' ? 0 : 1);
}

} // namespace

struct PatientOutput::Shared
{
    struct Piece
    {
        std::FILE *stream = stdout;
        QByteArray lines;
    };

    explicit Shared(Options given) : options(std::move(given)) {}

    void run();
    bool take();
    void write();
    bool hasMore() const { return !queue.empty() || leftOut > 0; }
    void append(std::FILE *stream, const QByteArray &lines);

    const Options options;
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Piece> queue;
    Piece current;                       ///< what is being written
    qsizetype size = 0;                  ///< bytes in the queue
    qint64 leftOut = 0;                  ///< lines since it was full
    bool isWriting = false;              ///< the current piece
    bool isEnded = false;                ///< nothing comes any more
    std::atomic<bool> isGivenUp = false; ///< and nothing is written any more
    std::atomic<qsizetype> at = 0;       ///< bytes of the current piece that are written
    std::atomic<qint64> written = 0;     ///< bytes of all
    std::atomic<qint64> lost = 0;        ///< lines of standard output
    bool isReported = false;             ///< that standard output is gone; by the thread alone
};

PatientOutput::PatientOutput(Options options) : d(std::make_shared<Shared>(std::move(options)))
{
    thread = std::thread([shared = d] { shared->run(); });
}

PatientOutput::~PatientOutput()
{
    end();
}

void PatientOutput::put(std::FILE *stream, const QByteArray &lines)
{
    {
        const std::lock_guard lock(d->mutex);
        if (d->leftOut > 0 || d->size + lines.size() > d->options.longestQueue) {
            if (d->options.gap) {
                d->leftOut += linesIn(lines); // until it is taken: there is one gap, at the queue's end
            } else {
                d->lost += linesIn(lines);
            }
            return;
        }
        d->append(stream, lines);
    }
    d->changed.notify_all();
}

bool PatientOutput::drain()
{
    std::unique_lock lock(d->mutex);
    const auto isDone = [this] { return !d->hasMore() && !d->isWriting; };
    for (qint64 before = -1; !isDone() && before != d->written;) {
        before = d->written;
        d->changed.wait_for(lock, longestEnd, isDone);
    }
    return isDone();
}

PatientOutput::Rest PatientOutput::end()
{
    const bool isComplete = drain();
    Rest rest;
    if (!thread.joinable()) {
        return rest; // ended before
    }
    {
        const std::lock_guard lock(d->mutex);
        d->isEnded = true;
        d->isGivenUp = !isComplete;
        if (!isComplete) {
            d->queue.push_front({d->current.stream, d->current.lines.mid(d->at)});
        }
        rest.lines = d->leftOut;
        for (const Shared::Piece &piece : std::exchange(d->queue, {})) {
            if (piece.stream == stdout) {
                rest.lines += linesIn(piece.lines);
            } else {
                rest.errors += piece.lines;
            }
        }
    }
    d->changed.notify_all();
    if (isComplete) {
        thread.join(); // it has nothing left to do
    } else {
        thread.detach(); // a reader that stands still may keep it for ever
    }
    rest.lines += d->lost;
    return rest;
}

void PatientOutput::Shared::append(std::FILE *stream, const QByteArray &lines)
{
    size += lines.size();
    if (!queue.empty() && queue.back().stream == stream) {
        queue.back().lines += lines;
    } else {
        queue.push_back({stream, lines});
    }
}

void PatientOutput::Shared::run()
{
    while (take()) {
        write();
    }
}

/// Waits for something to write; false at the end.
bool PatientOutput::Shared::take()
{
    std::unique_lock lock(mutex);
    isWriting = false;
    changed.notify_all();
    changed.wait(lock, [this] { return hasMore() || isEnded; });
    if (isGivenUp || !hasMore()) {
        return false;
    }
    if (leftOut > 0) {
        append(stdout, options.gap(std::exchange(leftOut, 0)));
    }
    current = std::move(queue.front());
    queue.pop_front();
    size -= current.lines.size();
    at = 0;
    isWriting = true;
    return true;
}

void PatientOutput::Shared::write()
{
    QFile file;
    int error = file.open(::fileno(current.stream), QIODevice::WriteOnly | QIODevice::Unbuffered) ? 0 : EBADF;
    while (error == 0 && at < current.lines.size() && !isGivenUp) {
        const qint64 count =
            file.write(current.lines.constData() + at, std::min(atOnce, current.lines.size() - at));
        if (count > 0) {
            at += count;
            written += count;
        } else if (errno == EAGAIN) { // somebody made the pipe one that does not wait
            std::this_thread::sleep_for(fullPause);
        } else {
            error = errno;
        }
    }
    if (error != 0 && current.stream == stdout && !isGivenUp) {
        lost += linesIn(QByteArrayView(current.lines).sliced(at));
        if (!std::exchange(isReported, true)) {
            options.gone(error);
        }
    }
}

} // namespace ktr::cli
