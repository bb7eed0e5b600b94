#include "platform/service_manager.h"

#include <sys/stat.h>
#include <systemd/sd-daemon.h>
#include <unistd.h>

namespace ktr {

/// The variable is also there for programs whose stderr was sent elsewhere since.
bool errorsGoToJournal()
{
    const QByteArray journal = qgetenv("JOURNAL_STREAM");
    struct stat errors = {};
    return !journal.isEmpty() && ::fstat(STDERR_FILENO, &errors) == 0 &&
           journal ==
               QByteArray::number(quint64{errors.st_dev}) + ':' + QByteArray::number(quint64{errors.st_ino});
}

void tellServiceManager(const QByteArray &what)
{
    (void)::sd_notify(0, what.constData());
}

Milliseconds serviceWatchdogTime()
{
    std::uint64_t microseconds = 0;
    return ::sd_watchdog_enabled(0, &microseconds) > 0
               ? std::chrono::duration_cast<Milliseconds>(std::chrono::microseconds(microseconds))
               : Milliseconds(0);
}

} // namespace ktr
