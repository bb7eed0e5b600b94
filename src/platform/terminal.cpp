#include "platform/terminal.h"

#include <QtGlobal>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/ioctl.h>
#include <unistd.h>
#else
#include <io.h>
#endif

namespace ktr {

#ifdef Q_OS_UNIX

bool isTerminal(std::FILE *stream)
{
    return ::isatty(::fileno(stream)) == 1;
}

int terminalWidth(std::FILE *stream)
{
    winsize size = {};
    const bool known = ::ioctl(::fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : 80;
}

void ignoreClosedOutput()
{
    std::signal(SIGPIPE, SIG_IGN);
}

#else

void ignoreClosedOutput() {}

bool isTerminal(std::FILE *stream)
{
    return ::_isatty(::_fileno(stream)) != 0;
}

int terminalWidth(std::FILE *)
{
    return 80;
}

#endif

} // namespace ktr
