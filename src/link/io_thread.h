#pragma once

#include "link/name_resolver.h"

#include <functional>
#include <memory>

namespace ktr {

/// The one thread that moves bytes between the operating system and the transports. It runs no logic.
class IoThread
{
public:
    explicit IoThread(const NameResolver::Options &names = {});
    ~IoThread(); ///< all transports must be closed
    IoThread(const IoThread &) = delete;
    IoThread &operator=(const IoThread &) = delete;

    asio::io_context &context();
    /// To be used on this thread.
    NameResolver &names();

    /// Runs work on this thread and waits until it is done.
    void run(const std::function<void()> &work);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ktr
