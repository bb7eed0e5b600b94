#include "platform/terminal.h"

#include <cstdlib>
#include <fcntl.h>
#include <initializer_list>
#include <io.h>
#include <windows.h>

namespace ktr {

namespace {

UINT formerCodePage = 0;

HANDLE handleOf(std::FILE *stream)
{
    return reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
}

} // namespace

void prepareConsole()
{
    // The console belongs to the shell as well, which is to find it as it was.
    formerCodePage = ::GetConsoleOutputCP();
    if (formerCodePage != CP_UTF8 && ::SetConsoleOutputCP(CP_UTF8) != 0) {
        std::atexit([] { ::SetConsoleOutputCP(formerCodePage); });
    }
    for (std::FILE *stream : {stdout, stderr}) {
        ::_setmode(::_fileno(stream), _O_BINARY); // bytes go out as they are, here as elsewhere
    }
}

void borrowConsole()
{
    const auto isMissing = [](std::FILE *stream) { return ::_fileno(stream) < 0; }; // not so when redirected
    const bool output = isMissing(stdout);
    const bool errors = isMissing(stderr);
    if ((output || errors) && ::AttachConsole(ATTACH_PARENT_PROCESS) != 0) {
        if (output) {
            std::freopen("CONOUT$", "w", stdout);
        }
        if (errors) {
            std::freopen("CONOUT$", "w", stderr);
        }
    }
}

void drawWithoutDisplay() {} // there always is one, and without it the toolkit would find no fonts

bool isTerminal(std::FILE *stream)
{
    DWORD mode = 0;
    return ::GetConsoleMode(handleOf(stream), &mode) != 0;
}

int terminalWidth(std::FILE *stream)
{
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    const bool known = ::GetConsoleScreenBufferInfo(handleOf(stream), &info) != 0;
    const int width = info.srWindow.Right - info.srWindow.Left + 1;
    return known && width > 0 ? width : 80;
}

} // namespace ktr
