#pragma once

#include "config/configuration.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <array>

namespace ktr {

/// What a module keeps: it begins neutral and holds whatever commands have put into it.
struct ModuleMemory
{
    Configuration configuration; ///< fields that no command carries keep their neutral values
    QDateTime clock;             ///< wall time without a zone (kept as UTC); invalid until it is set
    bool archiveBlocked = false;
    QStringList notifications;
    std::array<bool, 8> calibrated{}; ///< reference points that were calibrated
    bool firmwareRequested = false;   ///< a command announced a firmware image
    QString firmwareVersion = QStringLiteral("2.1.05");
    int accepted = 0; ///< commands applied
    int refused = 0;  ///< commands not applied
};

/// The archive as the module sends it, one line a channel without line end:
/// "H,key,YYMMDDhhmm,value,scaled value" and then "minutes,value,scaled value" for each further record.
/// The last record is as old as the clock; in a module whose clock was never set the first one is of
/// 2000-01-01.
QStringList archiveLines(const ModuleMemory &memory);

} // namespace ktr
