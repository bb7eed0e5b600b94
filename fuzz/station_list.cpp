// Any text as a list of stations: what can be made of it are stations of different names.

#include "opmode/lists/station_import.h"
#include "support/require.h"

#include <QSet>

using namespace ktr;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = QString::fromUtf8(QByteArrayView(data, static_cast<qsizetype>(size)));
    const StationImport list = readStationImport(
        text, [](const QString &name) { return name == u"Taken" ? QStringLiteral("Taken (1)") : name; });
    QSet<QString> names;
    int usable = 0;
    int before = 0;
    for (const StationImportLine &station : list.lines) {
        fuzz::require(station.line > before, "the lines are in order");
        before = station.line;
        if (station.isUsable) {
            ++usable;
            fuzz::require(!station.name.trimmed().isEmpty() && !station.name.contains(u'/'),
                          "a station has a name that it can have");
            fuzz::require(!names.contains(station.name) && station.name != u"Taken",
                          "stations have different names");
            names.insert(station.name);
        } else {
            fuzz::require(!station.remark.isEmpty(), "what cannot be used is told");
        }
    }
    fuzz::require(list.usable == usable, "the usable ones are counted");
    return 0;
}
