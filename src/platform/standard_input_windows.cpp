#include "platform/standard_input.h"

#include <array>
#include <windows.h>

namespace ktr {

// Past the C library: the end of a process waits there for a stream that another thread is reading.
void readInputToItsEnd()
{
    const HANDLE input = ::GetStdHandle(STD_INPUT_HANDLE);
    std::array<char, 64> dropped{};
    DWORD size = 0;
    while (::ReadFile(input, dropped.data(), static_cast<DWORD>(dropped.size()), &size, nullptr) != 0 &&
           size > 0) {
    }
}

} // namespace ktr
