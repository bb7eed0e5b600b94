#include "app/third_parties.h"

#include <array>

namespace ktr {

std::span<const ThirdParty> thirdParties()
{
    using enum ThirdParty::Where;
    static constexpr std::array list = {
        ThirdParty{QLatin1StringView("Qt"), QLatin1StringView("LGPL-3.0-only OR GPL-2.0-only"), Program},
        ThirdParty{QLatin1StringView("qttranslations"),
                   QLatin1StringView("GPL-3.0-only WITH Qt-GPL-exception-1.0"), Program},
        ThirdParty{QLatin1StringView("QCustomPlot"), QLatin1StringView("GPL-3.0-or-later"), Program},
        ThirdParty{QLatin1StringView("Asio"), QLatin1StringView("BSL-1.0"), Program},
        ThirdParty{QLatin1StringView("pugixml"), QLatin1StringView("MIT"), Program},
        ThirdParty{QLatin1StringView("c-ares"), QLatin1StringView("MIT"), Program},
        ThirdParty{QLatin1StringView("libmosquitto"), QLatin1StringView("EPL-2.0 OR BSD-3-Clause"), Program},
        ThirdParty{QLatin1StringView("SQLite"), QLatin1StringView("blessing"), Program},
        ThirdParty{QLatin1StringView("libsystemd"), QLatin1StringView("LGPL-2.1-or-later"), Program},
        ThirdParty{QLatin1StringView("libpq"), QLatin1StringView("PostgreSQL"), WindowsPackage},
        ThirdParty{QLatin1StringView("zlib"), QLatin1StringView("Zlib"), WindowsPackage},
        ThirdParty{QLatin1StringView("PCRE2"), QLatin1StringView("BSD-3-Clause"), WindowsPackage},
        ThirdParty{QLatin1StringView("double-conversion"), QLatin1StringView("BSD-3-Clause"), WindowsPackage},
        ThirdParty{QLatin1StringView("libpng"), QLatin1StringView("libpng-2.0"), WindowsPackage},
        ThirdParty{QLatin1StringView("FreeType"), QLatin1StringView("FTL OR GPL-2.0-or-later"),
                   WindowsPackage},
        ThirdParty{QLatin1StringView("HarfBuzz"), QLatin1StringView("MIT"), WindowsPackage},
        ThirdParty{QLatin1StringView("MD4C"), QLatin1StringView("MIT"), WindowsPackage},
        ThirdParty{QLatin1StringView("TinyCBOR"), QLatin1StringView("MIT"), WindowsPackage},
        ThirdParty{QLatin1StringView("libstdc++, libgcc"),
                   QLatin1StringView("GPL-3.0-or-later WITH GCC-exception-3.1"), WindowsPackage},
        ThirdParty{QLatin1StringView("mingw-w64"), QLatin1StringView("ZPL-2.1 AND MIT AND BSD-3-Clause"),
                   WindowsPackage},
        ThirdParty{QLatin1StringView("NSIS"), QLatin1StringView("Zlib AND CPL-1.0"), WindowsPackage},
        ThirdParty{QLatin1StringView("Google Benchmark"), QLatin1StringView("Apache-2.0"), Development},
        ThirdParty{QLatin1StringView("DejaVu"), QLatin1StringView("Bitstream-Vera"), Development},
    };
    return list;
}

} // namespace ktr
