#pragma once

#include <QLatin1String>

#include <span>

namespace ktr {

/// A work of others in the program or in a package of it. docs/third-party.md says what it is for, and what
/// its licence asks of those who pass the program on.
struct ThirdParty
{
    enum class Where {
        Program,        ///< wherever it is built
        WindowsPackage, ///< elsewhere it is the system's
        Development     ///< nobody gets it with the program
    };
    QLatin1StringView name;
    QLatin1StringView licence;
    Where where = Where::Program;
};

std::span<const ThirdParty> thirdParties();

} // namespace ktr
