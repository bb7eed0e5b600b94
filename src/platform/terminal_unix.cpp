#include "platform/terminal.h"

#include <QByteArray>
#include <QtGlobal>

#include <csignal>
#include <sys/ioctl.h>
#include <unistd.h>

namespace ktr {

void prepareConsole()
{
    std::signal(SIGPIPE, SIG_IGN);
}

void drawWithoutDisplay()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("QT_QPA_PLATFORMTHEME"); // a desktop's theme would look for a display
}

void borrowConsole() {} // it has its streams

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

} // namespace ktr
