#pragma once

#include "config/channel_names.h"
#include "config/holiday_list.h"

#include <QString>

#include <array>

namespace ktr {

// Everything that the program sends to one module and keeps in one file. Plain values: copied, compared
// and kept as snapshots. Numbers that the user types stay texts and are converted where they are used.
// What each field is called in the file, what "new" makes of it and which control shows it stands in
// config/fields.h.

struct FileInfo
{
    QString author;
    QString version;
    QString date; ///< the user's short date format
    QString comment;
    QString logFile;
    QString historyExportFile;

    bool operator==(const FileInfo &) const = default;
};

struct GsmSettings
{
    QString pin;
    QString stationType = QStringLiteral("KTR"); ///< "KTR" or "NVA"
    QString stationId;
    QString aliveCycle;

    bool operator==(const GsmSettings &) const = default;
};

struct Administrator
{
    QString name;
    QString number; ///< a phone number in international form

    bool operator==(const Administrator &) const = default;
};

/// A monitored threshold. Entries 0..15 watch a channel; 16..19 combine those by their reference mask.
struct LimitValue
{
    static constexpr int count = 20;
    static constexpr int firstReference = 16;
    static constexpr bool isReference(int index) { return index >= firstReference; }
    static constexpr int allRecipients = 255;
    static constexpr int allReferences = 65535; ///< a bit for each entry that watches a channel

    qint16 channel = 0; ///< 0..18
    QString alarm;      ///< the notification's text
    QString limit;
    QString hysteresis;
    QString delay;
    qint16 comparison = 1;      ///< 1 "<", 2 "=", 3 ">"
    quint8 recipients = 255;    ///< a bit per administrator, 255 for all
    double reference = 0;       ///< a bit per combined limit value, a whole number 0..65535
    qint16 repetitions = 0;     ///< 0..15
    QString repetitionInterval; ///< minutes, 1..1440

    bool operator==(const LimitValue &) const = default;
};

/// When channel index + 1 writes into the module's archive.
struct Archiving
{
    QString interval; ///< minutes
    QString delta;

    bool operator==(const Archiving &) const = default;
};

/// Digital inputs 1 and 2 may count pulses, 3 and 4 operating hours.
struct DigitalInput
{
    bool countsPulses = false;
    QString divider; ///< 1..10000
    bool inverted = false;
    bool countsHours = false;
    QString value; ///< the counter's start value

    bool operator==(const DigitalInput &) const = default;
};

/// The operating-hours counter of a digital output (channels 15 and 16).
struct OutputHours
{
    bool inverted = false;
    QString value;

    bool operator==(const OutputHours &) const = default;
};

/// Whether start and output values are sent at all.
struct SendValues
{
    bool enabled = false;

    bool operator==(const SendValues &) const = default;
};

/// Scaling of analog inputs 1 and 2 (0, 1) and analog outputs 1 and 2 (2, 3).
struct Scaling
{
    QString offset;
    QString factor;
    QString unit;

    bool operator==(const Scaling &) const = default;
};

/// The values that digital and analog output 1 and 2 are set to.
struct OutputValue
{
    bool digital = false;
    QString analog;

    bool operator==(const OutputValue &) const = default;
};

/// Switches an output or calls a number, on a calendar rule or when a limit value is crossed.
struct SwitchPoint
{
    static constexpr int count = 20;
    static constexpr int typeCount = 17;
    static constexpr int once = 13;
    static constexpr int periodic = 14;         ///< the only type that has a period
    static constexpr int periodBound = 525'600; ///< the minutes of a year, which no period reaches
    /// Types 15 and 16 react to a limit value instead of a time.
    bool reactsToLimitValue() const { return type == 15 || type == 16; }

    qint16 target = 0; ///< position in the target list, 0..10
    qint16 type = 0;   ///< 0..16
    QString start;     ///< YYMMDDhhmm
    QString period;    ///< minutes
    QString value;
    qint16 limitValue = 0; ///< 0..19

    bool operator==(const SwitchPoint &) const = default;
};

struct EthernetSettings
{
    QString ip; ///< four groups of three digits with dots
    QString subnet;
    QString mac3; ///< two hexadecimal digits; the first three bytes are the maker's
    QString mac4;
    QString mac5;

    static constexpr std::array<const char16_t *, 3> makerBytes = {u"00", u"60", u"A9"};

    bool operator==(const EthernetSettings &) const = default;
};

struct Configuration
{
    FileInfo info;
    GsmSettings gsm;
    std::array<Administrator, 6> administrators;
    std::array<LimitValue, LimitValue::count> limitValues;
    std::array<Archiving, 18> archiving;
    std::array<DigitalInput, 4> digitalInputs;
    std::array<OutputHours, 2> outputHours;
    std::array<SendValues, 1> sendValues;
    std::array<Scaling, 4> scaling;
    std::array<OutputValue, 2> outputValues;
    std::array<SwitchPoint, SwitchPoint::count> switchPoints;
    HolidayList holidays;
    EthernetSettings ethernet;
    ChannelNames names; ///< in no command and not in the configuration's own file
    QString
        versionText; ///< the stamp of the last edit, which the module repeats when it is asked what it holds

    bool operator==(const Configuration &) const = default;
};

} // namespace ktr
