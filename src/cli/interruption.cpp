#include "cli/interruption.h"

#include <QObject>

#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/signal_set.hpp>

#include <atomic>
#include <csignal>
#include <future>

namespace ktr::cli {

namespace {

std::atomic<bool> hasHappened = false; // NOLINT

} // namespace

struct Interruption::Private
{
    explicit Private(asio::io_context &context) : signalSet(context, SIGINT, SIGTERM) {}

    asio::signal_set signalSet;
    QObject receiver; ///< lives on the thread that is told
};

Interruption::Interruption(IoThread &io, std::function<void()> interrupted)
    : d(std::make_shared<Private>(io.context()))
{
    d->signalSet.async_wait(
        [d = d, interrupted = std::move(interrupted)](const asio::error_code &error, int) {
            if (!error) {
                hasHappened = true;
                QMetaObject::invokeMethod(&d->receiver, interrupted, Qt::QueuedConnection);
                d->signalSet.clear(); // a second request ends the program even when it hangs
            }
        });
}

bool Interruption::happened()
{
    return hasHappened;
}

Interruption::~Interruption()
{
    // The I/O thread lets go first; the receiver then dies on its own thread.
    std::promise<void> released;
    const auto executor = d->signalSet.get_executor();
    asio::post(executor, [this, executor, &released] {
        d->signalSet.cancel(); // its handler runs before what is posted now
        asio::post(executor, [&released] { released.set_value(); });
    });
    released.get_future().wait();
}

} // namespace ktr::cli
