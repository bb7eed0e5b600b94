#pragma once

#include <QString>

#include <array>

namespace ktr {

/// The texts by what they say, in the order of their numbers. Several say the same in one language and are
/// told apart by where they stand.
// clang-format off
enum class Text : int {
    File = 1, New, Open, Save, SaveAs, PrintPreview, Print, Exit, Transmit, Configuration, Application,
    Connection, Ethernet, ExclusiveInBrackets, PlusGsm, Offline, OperationalMode, Gsm, PhoneNumber, Admin,
    Pin, StationId, AliveCycle, Ip, Identifier, Interval, InMinutes, Delta, Counter, HoursCounter, Invert,
    Divider, StartValue, Scaling, Offset, Factor, Unit, Volt, Hours, LimitValue, LimitValueShort,
    Notification, Invalid, Hysteresis, Delay, Comparison, NotificationTo, Switchpoint, Type, OnSundays,
    OnMondays, OnTuesdays, OnWednesdays, OnThursdays, OnFridays, Weekdays, Weekend, WeekendAndHolidays,
    OnWeekdays, OnHolidays, Daily, Once, Periodic, LimitExceeded, LimitUndershot, SwitchValue, Start,
    Delete, Holidays, AddHoliday, DeleteAll, LoadHolidays, SaveHolidays, Test, ReceivedSms, Debug, SendSms,
    Send, SetTime, SendArchive, BlockArchive, DeleteNotifications, ClearDisplay, ConfigureWithAnswer,
    FileInformation, Author, ConfigurationVersion, Local, InModule, Date, Comment, LogFile, OpenLogFile,
    Subnet, Mac, Calibration, Channel, AnalogOut, Station, AddStation, DeleteStation, AllOnline, AllOffline,
    View, General, TreeView, ConfigurationMode, Export, StationConnection, Online, ExclusiveMode, On, Off,
    Exclusive, SignalQuality, NewNotification, Notifications, AcceptNotification, History, Refresh,
    ApplicationVersion, Period, Minutes, ExportOperationalMode, StationTypeKtr, Tools, Settings, Languages,
    English, German, Ok, Cancel, Apply, About, SystemInformation, Version, PukNeeded, Pulses,
    MaximalHolidays, KillingOther, SaveQuestion, SaveCaption, EstablishConnection, SavingFailed,
    SaveUnderOtherName, PortInUse, ActiveInOperationalMode, OperationalModeClosed, MessageTooLong,
    ConnectionInterrupted, Kelvin, AddressWithoutDots, AddressNumberOutOfRange, AddressNotFourNumbers,
    DifferentVersions, ConfigurationToolVersion, ModuleApplicationVersion, OperatingHoursCounter, Limit,
    HysteresisShort, DelayFirstLine, ComparisonFirstLine, DelaySecondLine, ComparisonSecondLine,
    Switchpoints, NotAcknowledged, RefreshNotPossible, BeRequested, NoSystemInformation, OnSaturdays,
    Repetitions, TimesEvery, RepetitionMinutes, DelayOfLimit, OpenHistory,
};
// clang-format on

/// The name of a switch type, 0..16, without the number that stands in front of it in lists.
Text switchTypeText(int type);

/// The texts that change with the language, numbered 1 to 200. A new table holds the English ones.
class TextTable
{
public:
    static constexpr int count = 200;

    TextTable() { fillEnglish(); }

    /// Puts the built-in English texts in place; the numbers beyond them keep what they hold.
    void fillEnglish();

    /// Empty for a number outside 1..200.
    QString text(int number) const;
    QString text(Text name) const { return text(static_cast<int>(name)); }

    /// A number outside 1..200 is ignored.
    void setText(int number, const QString &text);

private:
    std::array<QString, count + 1> m_texts; ///< the first is never used
};

} // namespace ktr
