#include "config/fields.h"

#include "config/address.h"
#include "config/channels.h"
#include "config/phone_number.h"
#include "platform/overloaded.h"
#include "platform/text_rules.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <limits>

namespace ktr {

namespace {

// Storing rules

QString internationalNumber(const QString &text)
{
    return text.startsWith(u'+') ? text : u'+' + text;
}

/// The form of a 16-bit whole number where the text is one; any other text stays as typed.
QString wholeNumber(const QString &text)
{
    const auto number =
        toWholeNumber(text, std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max());
    return number ? QString::number(*number) : text;
}

QString umlautsReplaced(const QString &text)
{
    return withoutUmlauts(text);
}

// Rules for texts from files

QString pinOfFourDigits(const QString &text)
{
    return text.rightJustified(4, u'0');
}

/// Older files count the comparisons from 0 and write 4 for ">".
QString presentComparison(const QString &text)
{
    const auto number = toWholeNumber(text, 0, 4);
    return number == 0 ? QStringLiteral("1") : number == 4 ? QStringLiteral("3") : text;
}

// Checks

QString notZero(const QString &text)
{
    return toNumber(text) == 0.0 ? problemText(QT_TRANSLATE_NOOP("Problems", "makes all values the same"))
                                 : QString();
}

/// What both the module's code page and the alphabet of an SMS have. ä, ö, ü and ß, which typing writes
/// out, are left out; their capitals stay as they are.
bool isCarriedBySms(char32_t c)
{
    constexpr QStringView beyondAscii = u"£¥èéùìòÇØøÅåÆæÉ¤¡ÄÖÑÜ§¿ñà€";
    return c < 0x7F ? c >= U' ' && c != U'`' : c <= 0xFFFF && beyondAscii.contains(QChar(c));
}

QString smsText(const QString &text)
{
    const QList<uint> characters = text.toUcs4();
    const auto found = std::ranges::find_if_not(characters, isCarriedBySms);
    if (found == characters.end()) {
        return {};
    }
    const char32_t c = *found;
    const auto place = std::distance(characters.begin(), found) + 1;
    if (c == U'\t') {
        return problemText(QT_TRANSLATE_NOOP("Problems", "has a tab at place %1, which no SMS carries"))
            .arg(place);
    }
    if (QChar::category(c) == QChar::Other_Control) {
        return problemText(QT_TRANSLATE_NOOP("Problems", "has a control character at place %1")).arg(place);
    }
    const QString letter = QString::fromUcs4(&c, 1);
    const QString plain = withoutUmlauts(letter);
    return plain == letter
               ? problemText(QT_TRANSLATE_NOOP("Problems", "has \"%1\" at place %2, which no SMS carries"))
                     .arg(letter)
                     .arg(place)
               : problemText(QT_TRANSLATE_NOOP("Problems", "has \"%1\" at place %2; write \"%3\" in an SMS"))
                     .arg(letter)
                     .arg(place)
                     .arg(plain);
}

/// For fields that are sent as typed, where a comma would begin another field.
QString withoutComma(const QString &text)
{
    return text.contains(u',')
               ? problemText(QT_TRANSLATE_NOOP("Problems", "has a comma, which separates fields"))
               : QString();
}

QString smsTextWithoutComma(const QString &text)
{
    return text.contains(u',') ? withoutComma(text) : smsText(text);
}

QString simPin(const QString &text)
{
    const bool length = text.isEmpty() || (text.size() >= 4 && text.size() <= 8);
    return length && std::ranges::all_of(text, isDecimalDigit)
               ? QString()
               : problemText(QT_TRANSLATE_NOOP("Problems", "is no PIN of 4 to 8 digits"));
}

QString phoneNumber(const QString &text)
{
    const bool sound =
        text.isEmpty() || (text.startsWith(u'+') && std::ranges::all_of(text.mid(1), isDecimalDigit));
    constexpr qsizetype shortest = 7;
    constexpr qsizetype longest = 15; // by E.164
    const qsizetype digits = text.size() - 1;
    if (!sound) {
        return problemText(QT_TRANSLATE_NOOP("Problems", "is no phone number of \"+\" and digits"));
    }
    if (text.startsWith(QLatin1String("+0"))) {
        return problemText(QT_TRANSLATE_NOOP("Problems", "has no country code: none begins with 0"));
    }
    if (digits > longestCountryCode && digits < shortest) {
        return problemText(
            QT_TRANSLATE_NOOP("Problems", "is too short for a phone number with a country code"));
    }
    return digits > longest
               ? problemText(
                     QT_TRANSLATE_NOOP("Problems", "is too long: a phone number has %1 digits at most"))
                     .arg(longest)
               : QString();
}

QString dottedAddress(const QString &text)
{
    return addressDefect(text) == AddressDefect::None
               ? QString()
               : problemText(QT_TRANSLATE_NOOP("Problems", "is no address of four numbers from 0 to 255"));
}

QString hexadecimalByte(const QString &text)
{
    const bool sound = text.size() == 2 && std::ranges::all_of(text, isHexadecimalDigit);
    return sound ? QString()
                 : problemText(QT_TRANSLATE_NOOP("Problems", "is no byte of two hexadecimal digits"));
}

QString startTime(const QString &text)
{
    const bool sound = text.isEmpty() || toMinute(text);
    return sound ? QString()
                 : problemText(QT_TRANSLATE_NOOP("Problems", "is no date and time of the form YYMMDDhhmm"));
}

// Presets

QString administratorName(const Environment &, int index)
{
    return QStringLiteral("Admin %1").arg(index + 1);
}

QString today(const Environment &environment, int)
{
    return environment.locale.toString(environment.now().date(), QLocale::ShortFormat);
}

QString defaultLogFile(const Environment &environment, int)
{
    return joinPath(environment.programFolder, QStringLiteral("Log.txt"));
}

QString presentMinute(const Environment &environment, int)
{
    return environment.now().toString(QStringLiteral("yyMMddhhmm"));
}

QString randomByte(const Environment &environment, int)
{
    const int byte = static_cast<int>(255 * environment.random()) + 1;
    return QStringLiteral("%1").arg(byte, 2, 16, QLatin1Char('0')).toUpper();
}

// Which records have a field

bool watchesChannel(int index)
{
    return !LimitValue::isReference(index);
}

bool combinesLimitValues(int index)
{
    return LimitValue::isReference(index);
}

bool mayCountPulses(int index)
{
    return index < 2;
}

bool mayCountHours(int index)
{
    return index >= 2;
}

// A row a field.
// clang-format off

constexpr std::array infoFields = {
    Field<FileInfo>{.xmlName = u"Autor", .member = &FileInfo::author, .control = {"txt_info_autor"},
        .label = Text::Author, .meaning = QT_TRANSLATE_NOOP("Fields", "Who answers for this configuration"),
        .whenNew = is(u"")},
    Field<FileInfo>{.xmlName = u"Version", .member = &FileInfo::version, .control = {"txt_info_version"},
        .label = Text::ConfigurationVersion, .meaning = QT_TRANSLATE_NOOP("Fields", "Every edit writes its date and time here"),
        .whenNew = is(u"1.0")},
    Field<FileInfo>{.xmlName = u"Datum", .member = &FileInfo::date, .control = {"txt_info_datum"},
        .label = Text::Date, .meaning = QT_TRANSLATE_NOOP("Fields", "Any text; a new configuration is given the date of today"),
        .whenNew = is(today)},
    Field<FileInfo>{.xmlName = u"Kommentar", .member = &FileInfo::comment, .control = {"txt_info_kommentar"},
        .label = Text::Comment, .meaning = QT_TRANSLATE_NOOP("Fields", "Any text about this configuration"),
        .whenNew = is(u""), .severalLines = true},
    Field<FileInfo>{.xmlName = u"Logfile", .member = &FileInfo::logFile, .control = {"txt_logfile"},
        .label = Text::LogFile, .meaning = QT_TRANSLATE_NOOP("Fields", "The conversation with the module is appended to this file"),
        .whenNew = is(defaultLogFile), .whenEmpty = keep},
    Field<FileInfo>{.xmlName = u"HistoryExportFile", .member = &FileInfo::historyExportFile, .control = {"txt_historyExportFile"},
        .label = Text::History, .meaning = QT_TRANSLATE_NOOP("Fields", "The module's archive is appended to this file (*.csv)"),
        .whenEmpty = keep},
};

constexpr std::array gsmFields = {
    Field<GsmSettings>{.xmlName = u"PIN", .member = &GsmSettings::pin, .control = {"txt_gsm_pin"},
        .label = Text::Pin, .meaning = QT_TRANSLATE_NOOP("Fields", "The PIN of the SIM card in the module"),
        .form = QT_TRANSLATE_NOOP("Fields", "4 to 8 digits; may be empty"),
        .whenNew = is(u""), .inAnother = is(u""), .whenRead = pinOfFourDigits, .check = simPin, .secret = true},
    Field<GsmSettings>{.xmlName = u"Stationstyp", .member = &GsmSettings::stationType, .control = {"Combo_gsm_type"},
        .label = Text::Type, .meaning = QT_TRANSLATE_NOOP("Fields", "Which kind of module it is, as it reports by itself"),
        .whenEmpty = keep, .accepts = isStationType},
    Field<GsmSettings>{.xmlName = u"Stationskennung", .member = &GsmSettings::stationId, .control = {"txt_gsm_id"},
        .label = Text::StationId, .meaning = QT_TRANSLATE_NOOP("Fields", "Name under which the module reports; ä, ö, ü and ß become ae, oe, ue and ss"),
        .form = QT_TRANSLATE_NOOP("Fields", "text on one line without a comma"),
        .whenNew = is(u""), .inAnother = is(u""), .rule = umlautsReplaced, .check = smsTextWithoutComma},
    Field<GsmSettings>{.xmlName = u"Alivecycle", .member = &GsmSettings::aliveCycle, .control = {"txt_gsm_alive"},
        .label = Text::AliveCycle, .meaning = QT_TRANSLATE_NOOP("Fields", "Cycle in which the module reports that it is alive"),
        .range = Range::wholeNumbers(0, 32767).orEmpty(),
        .whenNew = is(u"0"), .rule = wholeNumber},
};

constexpr std::array administratorFields = {
    Field<Administrator>{.xmlName = u"GSM-Name", .member = &Administrator::name, .control = {"txt_gsm_name", 0},
        .label = Text::Identifier, .meaning = QT_TRANSLATE_NOOP("Fields", "Shown as recipient of notifications and as target of switch points"),
        .whenNew = is(administratorName), .whenEmpty = is(administratorName)},
    Field<Administrator>{.xmlName = u"GSM-Nummer", .member = &Administrator::number, .control = {"txt_gsm_num", 0},
        .label = Text::PhoneNumber, .meaning = QT_TRANSLATE_NOOP("Fields", "The number that the module notifies, in international form"),
        .form = QT_TRANSLATE_NOOP("Fields", "+ and 7 to 15 digits"),
        .whenNew = is(u"+49"), .rule = internationalNumber, .check = phoneNumber},
};

constexpr std::array limitValueFields = {
    Field<LimitValue>{.xmlName = u"Alarm", .member = &LimitValue::alarm, .control = {"Txt_gw_meldung"},
        .label = Text::Notification, .meaning = QT_TRANSLATE_NOOP("Fields", "What the module sends; ä, ö, ü and ß become ae, oe, ue and ss"),
        .form = QT_TRANSLATE_NOOP("Fields", "text on one line; the whole command has room for 160 characters"),
        .whenNew = is(u""), .beforeReading = is(u""), .whenTyped = umlautsReplaced, .check = smsText},
    Field<LimitValue>{.xmlName = u"Delay", .member = &LimitValue::delay, .control = {"Txt_gw_delay"},
        .label = Text::Delay, .meaning = QT_TRANSLATE_NOOP("Fields", "How long the limit must be passed before the module notifies; on inputs that count pulses the count per interval"),
        .range = Range::numbers(0).orEmpty(),
        .whenNew = is(u"0"), .beforeReading = is(u""), .whenEmpty = is(u"0"), .applies = watchesChannel},
    Field<LimitValue>{.xmlName = u"Grenzwert", .member = &LimitValue::limit, .control = {"Txt_gw_gw"},
        .label = Text::LimitValue, .meaning = QT_TRANSLATE_NOOP("Fields", "What the value is compared with"),
        .range = Range::numbers().orEmpty(), .unit = Unit::OfChannel,
        .whenNew = is(u"0"), .beforeReading = is(u""), .whenEmpty = is(u"0"), .applies = watchesChannel},
    Field<LimitValue>{.xmlName = u"Hysterese", .member = &LimitValue::hysteresis, .control = {"Txt_gw_hysterese"},
        .label = Text::Hysteresis, .meaning = QT_TRANSLATE_NOOP("Fields", "How far the value must fall or rise back"),
        .range = Range::numbers(0).orEmpty(), .unit = Unit::OfChannel,
        .whenNew = is(u"0"), .beforeReading = is(u""), .whenEmpty = is(u"0"), .applies = watchesChannel},
    Field<LimitValue>{.xmlName = u"IP", .member = &LimitValue::channel, .control = {"Cbo_gw_ip"},
        .label = Text::Channel, .meaning = QT_TRANSLATE_NOOP("Fields", "The input or output that is watched; \"ungültig\", so called in every language, is none"),
        .range = Range::choices(0, channelCount),
        .whenNew = is(u"0"), .beforeReading = is(u"0"), .whenEmpty = is(u"0"), .applies = watchesChannel},
    Field<LimitValue>{.xmlName = u"Vergleich", .member = &LimitValue::comparison, .control = {"Opt_gw_vergleich"},
        .label = Text::Comparison, .meaning = QT_TRANSLATE_NOOP("Fields", "How the value is compared with the limit"),
        .range = Range::choices(1, 3),
        .whenNew = is(u"1"), .beforeReading = is(u"1"), .whenEmpty = is(u"1"), .whenRead = presentComparison, .applies = watchesChannel},
    Field<LimitValue>{.xmlName = u"Bezug", .member = &LimitValue::reference, .control = {"Check_gw_Bezug"},
        .label = QT_TRANSLATE_NOOP("Fields", "Reference"), .meaning = QT_TRANSLATE_NOOP("Fields", "Which of the limit values 1 to 16 are combined"),
        .form = QT_TRANSLATE_NOOP("Fields", "a box for each"),
        .range = Range::choices(0, LimitValue::allReferences),
        .whenEmpty = is(u"0"), .applies = combinesLimitValues},
    Field<LimitValue>{.xmlName = u"MSN", .member = &LimitValue::recipients, .control = {"chk_gw_msn"},
        .label = Text::NotificationTo, .meaning = QT_TRANSLATE_NOOP("Fields", "Which of the six administrators are notified"),
        .form = QT_TRANSLATE_NOOP("Fields", "a box for each"),
        .range = Range::choices(0, LimitValue::allRecipients),
        .whenNew = is(u"255"), .beforeReading = is(u"255"), .whenEmpty = keep},
    Field<LimitValue>{.xmlName = u"Wiederholung", .member = &LimitValue::repetitions, .control = {"Combo_gw_wiederholung"},
        .label = Text::Repetitions, .meaning = QT_TRANSLATE_NOOP("Fields", "How often the message is repeated"),
        .form = QT_TRANSLATE_NOOP("Fields", "%1 to %2 times"),
        .range = Range::choices(0, 15),
        .whenEmpty = is(u"0")},
    Field<LimitValue>{.xmlName = u"Wiederholungsintervall", .member = &LimitValue::repetitionInterval, .control = {"Text_gw_wiederholungsintervall"},
        .label = Text::TimesEvery, .meaning = QT_TRANSLATE_NOOP("Fields", "Time between two messages"),
        .range = Range::numbers(1, 1440).orEmpty().clamped(), .unit = Unit::Minutes, .unitBehind = Text::RepetitionMinutes,
        .whenEmpty = is(u"30"), .check = withoutComma},
};

constexpr std::array archivingFields = {
    Field<Archiving>{.xmlName = u"Interval", .member = &Archiving::interval, .control = {"Txt_ip_interval", 0},
        .label = Text::Interval, .meaning = QT_TRANSLATE_NOOP("Fields", "Time between two archive entries, 0 for none by time"),
        .range = Range::wholeNumbers(0), .unit = Unit::Minutes,
        .whenNew = is(u"0"), .whenEmpty = is(u"0")},
    Field<Archiving>{.xmlName = u"Delta", .member = &Archiving::delta, .control = {"Txt_ip_delta", 0},
        .label = Text::Delta, .meaning = QT_TRANSLATE_NOOP("Fields", "Change that triggers an archive entry"),
        .range = Range::numbers(0), .unit = Unit::OfChannel,
        .whenNew = is(u"0"), .whenEmpty = is(u"0")},
};

constexpr std::array digitalInputFields = {
    Field<DigitalInput>{.xmlName = u"Zähler", .member = &DigitalInput::countsPulses, .control = {"Chk_ip_zaehler", 0},
        .label = Text::Counter, .meaning = QT_TRANSLATE_NOOP("Fields", "Count the pulses of this input"),
        .whenNew = is(u"0"), .whenEmpty = is(u"0"), .applies = mayCountPulses},
    Field<DigitalInput>{.xmlName = u"Teiler", .member = &DigitalInput::divider, .control = {"Txt_ip_teiler", 0},
        .label = Text::Divider, .meaning = QT_TRANSLATE_NOOP("Fields", "Pulses that count as one"),
        .range = Range::wholeNumbers(1, 10000).clamped(),
        .whenNew = is(u"1"), .whenEmpty = is(u"1"), .applies = mayCountPulses},
    Field<DigitalInput>{.xmlName = u"Invers", .member = &DigitalInput::inverted, .control = {"Chk_ip_invers", 0},
        .label = Text::Invert, .meaning = QT_TRANSLATE_NOOP("Fields", "Invert the counted signal"),
        .whenNew = is(u"0"), .whenEmpty = is(u"0")},
    Field<DigitalInput>{.xmlName = u"Betriebsstundenzähler", .member = &DigitalInput::countsHours, .control = {"Chk_ip_bstz", -2},
        .label = Text::HoursCounter, .meaning = QT_TRANSLATE_NOOP("Fields", "Count the operating hours of this input"),
        .whenNew = is(u"0"), .whenEmpty = is(u"0"), .applies = mayCountHours},
    Field<DigitalInput>{.xmlName = u"Wert", .member = &DigitalInput::value, .control = {"Txt_ip_zaehler", 0},
        .label = Text::StartValue, .meaning = QT_TRANSLATE_NOOP("Fields", "Value that a transmission sets"),
        .range = Range::numbers().orEmpty(), .unit = Unit::OfChannel,
        .whenNew = is(u"0")},
};

constexpr std::array outputHoursFields = {
    Field<OutputHours>{.xmlName = u"Invers", .member = &OutputHours::inverted, .control = {"Chk_ip_invers", 4},
        .label = Text::Invert, .meaning = QT_TRANSLATE_NOOP("Fields", "Invert the counted signal"),
        .whenNew = is(u"0"), .whenEmpty = is(u"0")},
    Field<OutputHours>{.xmlName = u"Wert", .member = &OutputHours::value, .control = {"Txt_ip_zaehler", 4},
        .label = Text::StartValue, .meaning = QT_TRANSLATE_NOOP("Fields", "Value that a transmission sets"),
        .range = Range::numbers().orEmpty(), .unit = Unit::OfChannel,
        .whenNew = is(u"0")},
};

constexpr std::array sendValuesFields = {
    Field<SendValues>{.xmlName = u"Wert", .member = &SendValues::enabled, .control = {"chk_ip_wert"},
        .label = QT_TRANSLATE_NOOP("Fields", "Send start and output values"), .meaning = QT_TRANSLATE_NOOP("Fields", "Without it a transmission leaves the inputs' counters and the outputs as they are; the outputs' operating hours are sent all the same"),
        .whenNew = is(u"1"), .whenEmpty = is(u"0")},
};

constexpr std::array scalingFields = {
    Field<Scaling>{.xmlName = u"Offset", .member = &Scaling::offset, .control = {"Txt_ip_offset", 0},
        .label = Text::Offset, .meaning = QT_TRANSLATE_NOOP("Fields", "Value shown at a signal of 0"),
        .range = Range::numbers(), .unit = Unit::OfChannel,
        .whenNew = is(u"0"), .whenEmpty = is(u"0")},
    Field<Scaling>{.xmlName = u"Faktor", .member = &Scaling::factor, .control = {"Txt_ip_faktor", 0},
        .label = Text::Factor, .meaning = QT_TRANSLATE_NOOP("Fields", "Change of the value with each step of the signal"),
        .range = Range::numbers(),
        .whenNew = is(u"1"), .whenEmpty = is(u"1"), .check = notZero},
    Field<Scaling>{.xmlName = u"Einheit", .member = &Scaling::unit, .control = {"Txt_ip_einheit", 0},
        .label = Text::Unit, .meaning = QT_TRANSLATE_NOOP("Fields", "What the scaled value is measured in, such as m"),
        .whenNew = is(u""), .whenEmpty = is(u"Volt")},
};

constexpr std::array outputValueFields = {
    Field<OutputValue>{.xmlName = u"Digital", .member = &OutputValue::digital, .control = {"Chk_ip_value", 0},
        .label = Text::StartValue, .meaning = QT_TRANSLATE_NOOP("Fields", "Value that a transmission sets"),
        .whenNew = is(u"0"), .whenEmpty = is(u"0")},
    Field<OutputValue>{.xmlName = u"Analog", .member = &OutputValue::analog, .control = {"Txt_ip_value", 0},
        .label = Text::StartValue, .meaning = QT_TRANSLATE_NOOP("Fields", "Value that a transmission sets"),
        .range = Range::numbers().orEmpty(), .unit = Unit::OfChannel,
        .whenNew = is(u"0")},
};

constexpr std::array switchPointFields = {
    Field<SwitchPoint>{.xmlName = u"IP", .member = &SwitchPoint::target, .control = {"Cmb_swtch_ip"},
        .label = QT_TRANSLATE_NOOP("Fields", "Target"), .meaning = QT_TRANSLATE_NOOP("Fields", "The output that is switched, or the number that is called; \"ungültig\", so called in every language, is none"),
        .range = Range::choices(0, targetCount - 1),
        .whenNew = is(u"0"), .whenEmpty = keep},
    // "new" gives 0, a file without a period 1: both are wanted.
    Field<SwitchPoint>{.xmlName = u"Periode", .member = &SwitchPoint::period, .control = {"Txt_swtch_periode"},
        .label = Text::Period, .meaning = QT_TRANSLATE_NOOP("Fields", "Time from one switching to the next, less than a year"),
        .range = Range::numbers(1, SwitchPoint::periodBound - 1).orEmpty().dependingOnOthers(), .unit = Unit::Minutes, .unitBehind = Text::Minutes,
        .whenNew = is(u"0"), .whenEmpty = is(u"1"), .check = withoutComma},
    Field<SwitchPoint>{.xmlName = u"Start", .member = &SwitchPoint::start, .control = {"Txt_swtch_start"},
        .label = Text::Start, .meaning = QT_TRANSLATE_NOOP("Fields", "From when on it switches, and at which time of day"),
        .form = QT_TRANSLATE_NOOP("Fields", "year, month, day, hour and minute, two digits each"),
        .whenNew = is(u""), .whenEmpty = is(presentMinute), .check = startTime},
    Field<SwitchPoint>{.xmlName = u"Typ", .member = &SwitchPoint::type, .control = {"Cmb_swtch_typ"},
        .label = Text::Type, .meaning = QT_TRANSLATE_NOOP("Fields", "On which days, in which rhythm or after which limit value it switches"),
        .range = Range::choices(0, SwitchPoint::typeCount - 1),
        .whenNew = is(u"0"), .whenEmpty = keep},
    Field<SwitchPoint>{.xmlName = u"Wert", .member = &SwitchPoint::value, .control = {"Txt_swtch_wert"},
        .label = Text::SwitchValue, .meaning = QT_TRANSLATE_NOOP("Fields", "What the target is set to"),
        .range = Range::numbers(),
        .whenNew = is(u"0"), .whenEmpty = is(u"0")},
    Field<SwitchPoint>{.xmlName = u"GW-Bezug", .member = &SwitchPoint::limitValue, .control = {"Cmb_swtch_gw"},
        .label = Text::LimitValue, .meaning = QT_TRANSLATE_NOOP("Fields", "The limit value that the switch point reacts to"),
        .range = Range::choices(0, LimitValue::count - 1),
        .whenNew = is(u"0"), .whenEmpty = keep},
};

constexpr std::array ethernetFields = {
    Field<EthernetSettings>{.xmlName = u"IP", .member = &EthernetSettings::ip, .control = {"Txt_Ethernet_IP"},
        .label = Text::Ip, .meaning = QT_TRANSLATE_NOOP("Fields", "The address that the module is to have in its network"),
        .form = QT_TRANSLATE_NOOP("Fields", "four numbers from 0 to 255 with dots between them"),
        .whenNew = is(u"010.000.000.001"), .inAnother = is(u""), .whenEmpty = is(u"010.000.000.001"), .check = dottedAddress},
    Field<EthernetSettings>{.xmlName = u"Subnet", .member = &EthernetSettings::subnet, .control = {"Txt_Ethernet_Subnet"},
        .label = Text::Subnet, .meaning = QT_TRANSLATE_NOOP("Fields", "Which part of the address names the network"),
        .form = QT_TRANSLATE_NOOP("Fields", "four numbers from 0 to 255 with dots between them"),
        .whenNew = is(u"255.255.255.000"), .whenEmpty = is(u"255.255.255.000"), .check = dottedAddress},
    Field<EthernetSettings>{.xmlName = u"MAC3", .member = &EthernetSettings::mac3, .control = {"Txt_Ethernet_MAC", 3},
        .label = Text::Mac, .meaning = QT_TRANSLATE_NOOP("Fields", "A byte of the hardware address that must be the module's own; editable in expert mode"),
        .form = QT_TRANSLATE_NOOP("Fields", "two hexadecimal digits"),
        .whenNew = is(u"00"), .inAnother = is(randomByte), .whenEmpty = is(randomByte), .check = hexadecimalByte},
    Field<EthernetSettings>{.xmlName = u"MAC4", .member = &EthernetSettings::mac4, .control = {"Txt_Ethernet_MAC", 4},
        .label = Text::Mac, .meaning = QT_TRANSLATE_NOOP("Fields", "A byte of the hardware address that must be the module's own; editable in expert mode"),
        .form = QT_TRANSLATE_NOOP("Fields", "two hexadecimal digits"),
        .whenNew = is(u"00"), .inAnother = is(randomByte), .whenEmpty = is(randomByte), .check = hexadecimalByte},
    Field<EthernetSettings>{.xmlName = u"MAC5", .member = &EthernetSettings::mac5, .control = {"Txt_Ethernet_MAC", 5},
        .label = Text::Mac, .meaning = QT_TRANSLATE_NOOP("Fields", "A byte of the hardware address that must be the module's own; editable in expert mode"),
        .form = QT_TRANSLATE_NOOP("Fields", "two hexadecimal digits"),
        .whenNew = is(u"00"), .inAnother = is(randomByte), .whenEmpty = is(randomByte), .check = hexadecimalByte},
};

// clang-format on

QString inFieldWords(const char *text)
{
    return QCoreApplication::translate("Fields", text);
}

template <class Value, class Number> bool assign(Value &target, const std::optional<Number> &number)
{
    if (number) {
        target = static_cast<Value>(*number);
    }
    return number.has_value();
}

template <class Number> bool storeWhole(Number &target, const QString &text)
{
    return assign(
        target, toWholeNumber(text, std::numeric_limits<Number>::min(), std::numeric_limits<Number>::max()));
}

template <class Record> bool store(const Field<Record> &field, Record &record, const QString &text)
{
    return std::visit(
        Overloaded{[&](QString Record::*member) {
                       record.*member = text;
                       return true;
                   },
                   [&](qint16 Record::*member) { return storeWhole(record.*member, text); },
                   [&](quint8 Record::*member) { return storeWhole(record.*member, text); },
                   [&](double Record::*member) { return assign(record.*member, toNumber(text)); },
                   [&](bool Record::*member) { return assign(record.*member, toWholeNumber(text, 0, 1)); }},
        field.member);
}

} // namespace

QString lineBreakFault(const QString &text)
{
    return std::ranges::none_of(text, isLineBreak)
               ? QString()
               : problemText(QT_TRANSLATE_NOOP("Problems", "has a line break; it is to stand on one line"));
}

QString blanksFault(const QString &text)
{
    return !text.isEmpty() && text.trimmed().isEmpty()
               ? problemText(QT_TRANSLATE_NOOP("Problems", "consists only of blanks"))
               : QString();
}

// clang-format off
template <> std::span<const Field<FileInfo>> fieldsOf<FileInfo>() { return infoFields; }
template <> std::span<const Field<GsmSettings>> fieldsOf<GsmSettings>() { return gsmFields; }
template <> std::span<const Field<Administrator>> fieldsOf<Administrator>() { return administratorFields; }
template <> std::span<const Field<LimitValue>> fieldsOf<LimitValue>() { return limitValueFields; }
template <> std::span<const Field<Archiving>> fieldsOf<Archiving>() { return archivingFields; }
template <> std::span<const Field<DigitalInput>> fieldsOf<DigitalInput>() { return digitalInputFields; }
template <> std::span<const Field<OutputHours>> fieldsOf<OutputHours>() { return outputHoursFields; }
template <> std::span<const Field<SendValues>> fieldsOf<SendValues>() { return sendValuesFields; }
template <> std::span<const Field<Scaling>> fieldsOf<Scaling>() { return scalingFields; }
template <> std::span<const Field<OutputValue>> fieldsOf<OutputValue>() { return outputValueFields; }
template <> std::span<const Field<SwitchPoint>> fieldsOf<SwitchPoint>() { return switchPointFields; }
template <> std::span<const Field<EthernetSettings>> fieldsOf<EthernetSettings>() { return ethernetFields; }
// clang-format on

template <class Record>
QString fieldText(const Field<Record> &field, const Record &record, const QLocale &locale)
{
    return std::visit(Overloaded{[&](QString Record::*member) { return record.*member; },
                                 [&](qint16 Record::*member) { return QString::number(record.*member); },
                                 [&](quint8 Record::*member) { return QString::number(record.*member); },
                                 [&](double Record::*member) { return numberText(record.*member, locale); },
                                 [&](bool Record::*member) {
                                     return record.*member ? QStringLiteral("1") : QStringLiteral("0");
                                 }},
                      field.member);
}

template <class Record> bool setFieldText(const Field<Record> &field, Record &record, const QString &text)
{
    if (field.accepts != nullptr && !field.accepts(text)) {
        return false;
    }
    return store(field, record, field.stored(text));
}

template <class Record>
void applyPreset(const Field<Record> &field, Record &record, const Preset &preset,
                 const Environment &environment, int index)
{
    if (!preset.keepsValue()) {
        store(field, record, preset.value(environment, index));
    }
}

QString labelText(const Label &label, const TextTable &texts)
{
    return std::visit(Overloaded{[&](Text name) { return texts.text(name); },
                                 [](const char *own) { return QCoreApplication::translate("Fields", own); }},
                      label);
}

QString headingText(const Label &label, Unit unit, const TextTable &texts)
{
    const QString text = labelText(label, texts);
    return unit == Unit::Minutes ? text + u' ' + texts.text(Text::InMinutes) : text;
}

template <class Record> QString meaningText(const Field<Record> &field)
{
    return inFieldWords(field.meaning);
}

template <class Record> QString valuesText(const Field<Record> &field)
{
    if (std::holds_alternative<bool Record::*>(field.member)) {
        return inFieldWords(QT_TRANSLATE_NOOP("Fields", "yes or no"));
    }
    if (field.isNumber()) {
        const QString words = field.range->words(field.unit);
        return field.range->mayBeEmpty
                   ? inFieldWords(QT_TRANSLATE_NOOP("Fields", "%1; may be empty")).arg(words)
                   : words;
    }
    if (field.form != nullptr) {
        const QString words = inFieldWords(field.form);
        return words.contains(QLatin1String("%1")) ? words.arg(field.range->lowest).arg(field.range->highest)
                                                   : words;
    }
    if (field.range || field.accepts != nullptr) {
        return inFieldWords(QT_TRANSLATE_NOOP("Fields", "one of those offered"));
    }
    return inFieldWords(field.severalLines ? QT_TRANSLATE_NOOP("Fields", "text, also of several lines")
                                           : QT_TRANSLATE_NOOP("Fields", "text on one line"));
}

template <class Record> QString tipText(const Field<Record> &field)
{
    return meaningText(field) + QLatin1String("; ") + valuesText(field);
}

QString ControlName::forIndex(int index) const
{
    const QString base = QString::fromLatin1(name);
    return first == noArray ? base : base + u'_' + QString::number(first + index);
}

QString Group::elementName(const char16_t *xmlName, int index) const
{
    const QStringView name(form == Form::Attributes ? element : xmlName);
    return numbered ? name + QString::number(index) : name.toString();
}

QString Group::place(const char16_t *xmlName, int index) const
{
    const QString name = elementName(xmlName, index);
    return form == Form::Attributes ? name + u' ' + QStringView(xmlName) : name;
}

void makeNew(Configuration &configuration, const Environment &environment)
{
    visitRecords(configuration, [&]<class Record>(const Group &, Record &record, int index) {
        for (const Field<Record> &field : fieldsOf<Record>()) {
            applyPreset(field, record, field.whenNew, environment, index);
        }
    });
    configuration.holidays.clear();
    configuration.names = {};
}

void makeAnother(Configuration &configuration, const Environment &environment)
{
    visitRecords(configuration, [&]<class Record>(const Group &, Record &record, int index) {
        for (const Field<Record> &field : fieldsOf<Record>()) {
            applyPreset(field, record, field.inAnother, environment, index);
        }
    });
}

void makeOtherMac(EthernetSettings &ethernet, const Environment &environment)
{
    for (const auto byte : {&EthernetSettings::mac3, &EthernetSettings::mac4, &EthernetSettings::mac5}) {
        const Field<EthernetSettings> &field = fieldOf<EthernetSettings>(byte);
        applyPreset(field, ethernet, field.inAnother, environment, 0);
    }
}

QStringList macBytes(const EthernetSettings &ethernet)
{
    QStringList bytes;
    for (const char16_t *byte : EthernetSettings::makerBytes) {
        bytes += QString::fromUtf16(byte);
    }
    return bytes << ethernet.mac3 << ethernet.mac4 << ethernet.mac5;
}

QStringList differences(const Configuration &expected, const Configuration &found, const QLocale &locale)
{
    // The records of both in the same order, so that they pair up without naming a field here.
    QStringList lines;
    QStringList expectedTexts;
    const auto texts = [&locale](const auto &field, const auto &record) {
        return fieldText(field, record, locale);
    };
    visitRecords(expected, [&]<class Record>(const Group &, const Record &record, int index) {
        for (const auto &field : fieldsOf<std::remove_const_t<Record>>()) {
            if (field.appliesTo(index)) {
                expectedTexts += texts(field, record);
            }
        }
    });
    qsizetype at = 0;
    const auto compare = [&](const QString &name, const QString &wanted, const QString &present,
                             bool secret = false) {
        if (wanted != present) {
            lines += secret ? QStringLiteral("%1: expected another one").arg(name)
                            : QStringLiteral("%1: expected \"%2\", found \"%3\"").arg(name, wanted, present);
        }
    };
    visitRecords(found, [&]<class Record>(const Group &group, const Record &record, int index) {
        for (const auto &field : fieldsOf<std::remove_const_t<Record>>()) {
            if (!field.appliesTo(index)) {
                continue;
            }
            compare(group.place(field.xmlName, index), expectedTexts[at++], texts(field, record),
                    field.secret);
        }
    });
    for (int index = 0; index < HolidayList::capacity; ++index) {
        compare(HolidayList::elementName(index), expected.holidays.lines().value(index),
                found.holidays.lines().value(index));
    }
    compare(QStringLiteral("Version Version"), expected.versionText, found.versionText);
    return lines;
}

// The templates above serve these record types.
// NOLINTBEGIN(bugprone-macro-parentheses): the argument is a type
#define KTR_RECORD(Record)                                                                                   \
    template QString fieldText(const Field<Record> &, const Record &, const QLocale &);                      \
    template bool setFieldText(const Field<Record> &, Record &, const QString &);                            \
    template void applyPreset(const Field<Record> &, Record &, const Preset &, const Environment &, int);    \
    template QString meaningText(const Field<Record> &);                                                     \
    template QString valuesText(const Field<Record> &);                                                      \
    template QString tipText(const Field<Record> &);
KTR_RECORD(FileInfo)
KTR_RECORD(GsmSettings)
KTR_RECORD(Administrator)
KTR_RECORD(LimitValue)
KTR_RECORD(Archiving)
KTR_RECORD(DigitalInput)
KTR_RECORD(OutputHours)
KTR_RECORD(SendValues)
KTR_RECORD(Scaling)
KTR_RECORD(OutputValue)
KTR_RECORD(SwitchPoint)
KTR_RECORD(EthernetSettings)
#undef KTR_RECORD
// NOLINTEND(bugprone-macro-parentheses)

} // namespace ktr
