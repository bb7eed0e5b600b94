#include "platform/ending_signals.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace ktr {

namespace {

constexpr std::array endingSignals{SIGTERM, SIGINT, SIGHUP};

/// A pipe, since a signal's handler may do little but write.
std::array<int, 2> pipeEnds{-1, -1};

void noteSignal(int)
{
    const int before = errno;
    [[maybe_unused]] const auto written = ::write(pipeEnds[1], "", 1);
    errno = before;
    for (const int number : endingSignals) {
        std::signal(number, SIG_DFL); // the next one ends the program
    }
}

} // namespace

struct EndingSignals::Private
{
    std::unique_ptr<QSocketNotifier> notifier;
};

EndingSignals::EndingSignals(std::function<void()> requested) : d(std::make_unique<Private>())
{
    if (::pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // the signals end the program as they always did
    }
    d->notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    QObject::connect(d->notifier.get(), &QSocketNotifier::activated, d->notifier.get(),
                     [notifier = d->notifier.get(), requested = std::move(requested)] {
                         notifier->setEnabled(false);
                         requested();
                     });
    for (const int number : endingSignals) {
        // What is ignored from the start, as behind nohup, stays so.
        if (std::signal(number, noteSignal) == SIG_IGN) {
            std::signal(number, SIG_IGN);
        }
    }
}

EndingSignals::~EndingSignals()
{
    if (d->notifier != nullptr) {
        for (const int number : endingSignals) {
            std::signal(number, SIG_DFL);
        }
        d->notifier.reset();
        for (int &end : pipeEnds) {
            ::close(std::exchange(end, -1));
        }
    }
}

} // namespace ktr
