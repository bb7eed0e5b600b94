#pragma once

#include <functional>
#include <memory>

namespace asio {
class io_context;
}

namespace ktr {

/// The one thread that moves bytes between the operating system and the transports. It runs no logic.
class IoThread
{
public:
    IoThread();
    ~IoThread(); ///< all transports must be closed
    IoThread(const IoThread &) = delete;
    IoThread &operator=(const IoThread &) = delete;

    asio::io_context &context();

    /// Runs work on this thread and waits until it is done.
    void run(const std::function<void()> &work);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ktr
