#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace ktr {

/// Tells when the system, or a user at a terminal, asks the program to end (SIGTERM, SIGINT, SIGHUP), where
/// that comes as a signal. A second request ends the program even when it hangs. There can be one of these,
/// and it calls back on the thread that made it.
class EndingSignals
{
public:
    explicit EndingSignals(std::function<void()> requested);
    ~EndingSignals();
    Q_DISABLE_COPY_MOVE(EndingSignals)

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ktr
