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

} // namespace

struct PatientOutput::Shared
{
    struct Piece
    {
        std::FILE *stream;
        QByteArray lines;
    };

    explicit Shared(Options given) : options(std::move(given)) {}

    void run();
    std::deque<Piece> take();
    void write(const Piece &piece);

    const Options options;
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Piece> queue;
    qsizetype size = 0;              ///< bytes in the queue
    qint64 leftOut = 0;              ///< lines since it was full
    bool isWriting = false;          ///< what was taken from it
    bool isEnded = false;            ///< nothing comes any more
    bool isGivenUp = false;          ///< and nothing is written any more
    std::atomic<qint64> written = 0; ///< bytes
    bool isReported = false;         ///< that standard output is gone; by the thread alone
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
            d->leftOut += lines.count('\n'); // until it is taken: there is one gap, at its end
            return;
        }
        d->size += lines.size();
        if (!d->queue.empty() && d->queue.back().stream == stream) {
            d->queue.back().lines += lines;
        } else {
            d->queue.push_back({stream, lines});
        }
    }
    d->changed.notify_all();
}

bool PatientOutput::end()
{
    std::unique_lock lock(d->mutex);
    d->isEnded = true;
    d->changed.notify_all();
    while (!d->isGivenUp && (!d->queue.empty() || d->isWriting)) {
        const qint64 before = d->written;
        const bool isDone =
            d->changed.wait_for(lock, longestEnd, [this] { return d->queue.empty() && !d->isWriting; });
        d->isGivenUp = !isDone && d->written == before;
    }
    const bool isComplete = !d->isGivenUp;
    lock.unlock();
    if (thread.joinable() && isComplete) {
        thread.join(); // it has nothing left to do
    } else if (thread.joinable()) {
        thread.detach(); // a reader that stands still may keep it for ever
    }
    return isComplete;
}

void PatientOutput::Shared::run()
{
    for (std::deque<Piece> pieces = take(); !pieces.empty(); pieces = take()) {
        for (const Piece &piece : pieces) {
            write(piece);
        }
    }
}

/// Waits for something to write; nothing at the end.
std::deque<PatientOutput::Shared::Piece> PatientOutput::Shared::take()
{
    std::unique_lock lock(mutex);
    isWriting = false;
    changed.notify_all();
    changed.wait(lock, [this] { return !queue.empty() || isEnded; });
    std::deque<Piece> pieces = isGivenUp ? std::deque<Piece>() : std::exchange(queue, {});
    isWriting = !pieces.empty();
    size = 0;
    if (leftOut > 0 && isWriting) {
        pieces.push_back({stdout, options.gap(std::exchange(leftOut, 0))});
    }
    return pieces;
}

void PatientOutput::Shared::write(const Piece &piece)
{
    QFile file;
    int error = file.open(::fileno(piece.stream), QIODevice::WriteOnly | QIODevice::Unbuffered) ? 0 : EBADF;
    for (qsizetype at = 0; error == 0 && at < piece.lines.size();) {
        const qint64 count =
            file.write(piece.lines.constData() + at, std::min(atOnce, piece.lines.size() - at));
        if (count > 0) {
            at += count;
            written += count;
        } else if (errno == EAGAIN) { // somebody made the pipe one that does not wait
            std::this_thread::sleep_for(fullPause);
        } else {
            error = errno;
        }
    }
    if (error != 0 && piece.stream == stdout && !std::exchange(isReported, true)) {
        options.gone(error);
    }
}

} // namespace ktr::cli
