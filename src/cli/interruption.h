#pragma once

#include "link/io_thread.h"

#include <functional>
#include <memory>

namespace ktr::cli {

/// Calls back after Ctrl-C or a request to terminate, on the thread that made this object.
class Interruption
{
public:
    Interruption(IoThread &io, std::function<void()> interrupted);
    ~Interruption();
    /// Whether any called back so far.
    static bool happened();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;

private:
    struct Private;
    std::shared_ptr<Private> d;
};

} // namespace ktr::cli
