#include "platform/environment.h"

#include <QLibrary>

#include <array>
#include <windows.h>

namespace ktr {

/// By a library that is on every Windows, but that nothing else of the program needs.
QString fullUserName()
{
    using GetUserNameExFunction = BOOLEAN(WINAPI *)(int, LPWSTR, PULONG);
    constexpr int nameDisplay = 3;
    const auto getUserName = reinterpret_cast<GetUserNameExFunction>(
        QLibrary::resolve(QStringLiteral("secur32"), "GetUserNameExW"));
    std::array<wchar_t, 256> name{};
    auto size = static_cast<ULONG>(name.size());
    return getUserName != nullptr && getUserName(nameDisplay, name.data(), &size) != 0
               ? QString::fromWCharArray(name.data()).trimmed()
               : QString();
}

} // namespace ktr
