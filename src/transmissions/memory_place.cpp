#include "transmissions/memory_place.h"

#include "platform/settings_store.h"
#include "record/record_address.h"

namespace ktr {

QString transmissionsPlace(const QString &server, const Environment &environment)
{
    QString record = server.isEmpty() ? qEnvironmentVariable(recordVariable) : server;
    if (record.isEmpty()) {
        record = SettingsStore().GetSetting(settingsOwner, settings_sections::operationalMode,
                                            QStringLiteral("record"));
    }
    if (!record.isEmpty()) {
        return record;
    }
    return environment.dataFolder.isEmpty()
               ? QString()
               : joinPath(environment.dataFolder, QStringLiteral("transmissions.sqlite"));
}

QString waitingTransmissionsPlace(const Environment &environment)
{
    return environment.dataFolder.isEmpty()
               ? QString()
               : joinPath(environment.dataFolder, QStringLiteral("transmissions-waiting.sqlite"));
}

} // namespace ktr
