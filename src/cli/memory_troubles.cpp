#include "cli/memory_troubles.h"

#include "cli/console.h"
#include "transmissions/memory_place.h"

namespace ktr::cli {

void tellHandedOver(int count)
{
    complain(
        QStringLiteral("transmissions that waited for the server and are remembered now: %1").arg(count));
}

void setUpMemory(TransmissionMemory &memory, const QString &what)
{
    memory.setWaitingFile(waitingTransmissionsPlace(systemEnvironment()));
    QObject::connect(&memory, &TransmissionMemory::troubled, &memory, [what](const QString &why) {
        if (!why.isEmpty()) {
            complain(what + QLatin1String(" is not remembered: ") + why);
        }
    });
    QObject::connect(
        &memory, &TransmissionMemory::postponed, &memory, [what](const QString &file, const QString &why) {
            complain(
                QStringLiteral("%1 is kept in %2 until the server can be reached: %3").arg(what, file, why));
        });
    QObject::connect(&memory, &TransmissionMemory::handedOver, &memory, &tellHandedOver);
    QObject::connect(&memory, &TransmissionMemory::mended, &memory, [](const QStringList &told) {
        for (const QString &line : told) {
            complain(line);
        }
    });
}

} // namespace ktr::cli
