#include "config/fields.h"

#include "config/address.h"
#include "config/channels.h"
#include "platform/overloaded.h"
#include "platform/text_rules.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cmath>
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

QString clamped(const QString &text, int lowest, int highest)
{
    const double value = leadingNumber(text);
    if (text.isEmpty() || (value >= lowest && value <= highest)) {
        return text;
    }
    return QString::number(value < lowest ? lowest : highest);
}

QString minutesOfADay(const QString &text)
{
    return clamped(text, 1, 1440);
}

QString pulseDivider(const QString &text)
{
    return clamped(text, 1, 10000);
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

QString told(const char *text)
{
    return QCoreApplication::translate("Problems", text);
}

QString numeric(const QString &text)
{
    return toNumber(text) ? QString() : told(QT_TRANSLATE_NOOP("Problems", "is no number"));
}

QString numericOrEmpty(const QString &text)
{
    return text.isEmpty() ? QString() : numeric(text);
}

QString notBelowZero(const QString &text)
{
    return toNumber(text).value_or(0) < 0 ? told(QT_TRANSLATE_NOOP("Problems", "is below 0")) : numeric(text);
}

QString notBelowZeroOrEmpty(const QString &text)
{
    return text.isEmpty() ? QString() : notBelowZero(text);
}

bool isWhole(const QString &text, double lowest, double highest)
{
    const std::optional<double> number = toNumber(text);
    return number && *number == std::floor(*number) && *number >= lowest && *number <= highest;
}

QString wholeMinutes(const QString &text)
{
    return isWhole(text, 0, std::numeric_limits<double>::max())
               ? QString()
               : told(QT_TRANSLATE_NOOP("Problems", "is no whole number of minutes"));
}

template <int lowest, int highest> QString wholeFrom(const QString &text)
{
    return isWhole(text, lowest, highest)
               ? QString()
               : told(QT_TRANSLATE_NOOP("Problems", "is no whole number from %1 to %2"))
                     .arg(lowest)
                     .arg(highest);
}

template <int lowest, int highest> QString wholeFromOrEmpty(const QString &text)
{
    return text.isEmpty() ? QString() : wholeFrom<lowest, highest>(text);
}

QString scalingFactor(const QString &text)
{
    return toNumber(text) == 0.0 ? told(QT_TRANSLATE_NOOP("Problems", "makes all values the same"))
                                 : numeric(text);
}

/// What both the module's code page and the alphabet of an SMS have. ä, ö, ü and ß, which typing writes
/// out, are none of it; their capitals stay as they are.
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
        return told(QT_TRANSLATE_NOOP("Problems", "has a tab at place %1, which no SMS carries")).arg(place);
    }
    if (QChar::category(c) == QChar::Other_Control) {
        return told(QT_TRANSLATE_NOOP("Problems", "has a control character at place %1")).arg(place);
    }
    const QString letter = QString::fromUcs4(&c, 1);
    const QString plain = withoutUmlauts(letter);
    return plain == letter
               ? told(QT_TRANSLATE_NOOP("Problems", "has \"%1\" at place %2, which no SMS carries"))
                     .arg(letter)
                     .arg(place)
               : told(QT_TRANSLATE_NOOP("Problems", "has \"%1\" at place %2; write \"%3\" in an SMS"))
                     .arg(letter)
                     .arg(place)
                     .arg(plain);
}

/// For fields that are sent as typed, where a comma would begin another field.
QString withoutComma(const QString &text)
{
    return text.contains(u',') ? told(QT_TRANSLATE_NOOP("Problems", "has a comma, which separates fields"))
                               : QString();
}

QString smsTextWithoutComma(const QString &text)
{
    return text.contains(u',') ? withoutComma(text) : smsText(text);
}

QString numericWithoutComma(const QString &text)
{
    return text.contains(u',') ? withoutComma(text) : numericOrEmpty(text);
}

QString simPin(const QString &text)
{
    const bool length = text.isEmpty() || (text.size() >= 4 && text.size() <= 8);
    return length && std::ranges::all_of(text, isDecimalDigit)
               ? QString()
               : told(QT_TRANSLATE_NOOP("Problems", "is no PIN of 4 to 8 digits"));
}

QString phoneNumber(const QString &text)
{
    const bool sound =
        text.isEmpty() || (text.startsWith(u'+') && std::ranges::all_of(text.mid(1), isDecimalDigit));
    return !sound ? told(QT_TRANSLATE_NOOP("Problems", "is no phone number of \"+\" and digits"))
           : text.startsWith(QLatin1String("+0"))
               ? told(QT_TRANSLATE_NOOP("Problems", "has no country code: none begins with 0"))
               : QString();
}

QString dottedAddress(const QString &text)
{
    return addressDefect(text) == AddressDefect::None
               ? QString()
               : told(QT_TRANSLATE_NOOP("Problems", "is no address of four numbers from 0 to 255"));
}

QString hexadecimalByte(const QString &text)
{
    const bool sound = text.size() == 2 && std::ranges::all_of(text, isHexadecimalDigit);
    return sound ? QString() : told(QT_TRANSLATE_NOOP("Problems", "is no byte of two hexadecimal digits"));
}

/// The numbers of a list's items or of a group's buttons.
template <int lowest, int highest> QString chosenFrom(const QString &text)
{
    return toWholeNumber(text, lowest, highest)
               ? QString()
               : told(QT_TRANSLATE_NOOP("Problems", "is none of the choices"));
}

/// A bit per limit value, as the file has it; the module takes whole numbers only.
QString combination(const QString &text)
{
    return std::ranges::all_of(text, isDecimalDigit)
               ? chosenFrom<0, 65535>(text)
               : told(QT_TRANSLATE_NOOP("Problems", "is none of the choices"));
}

QString startTime(const QString &text)
{
    const bool sound = text.isEmpty() || toMinute(text);
    return sound ? QString()
                 : told(QT_TRANSLATE_NOOP("Problems", "is no date and time of the form YYMMDDhhmm"));
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
    Field<FileInfo>{.xmlName = u"Autor", .member = &FileInfo::author, .control = {"txt_info_autor"}, .whenNew = is(u"")},
    Field<FileInfo>{.xmlName = u"Version", .member = &FileInfo::version, .control = {"txt_info_version"}, .whenNew = is(u"1.0")},
    Field<FileInfo>{.xmlName = u"Datum", .member = &FileInfo::date, .control = {"txt_info_datum"}, .whenNew = is(today)},
    Field<FileInfo>{.xmlName = u"Kommentar", .member = &FileInfo::comment, .control = {"txt_info_kommentar"}, .whenNew = is(u"")},
    Field<FileInfo>{.xmlName = u"Logfile", .member = &FileInfo::logFile, .control = {"txt_logfile"}, .whenNew = is(defaultLogFile), .whenEmpty = keep},
    Field<FileInfo>{.xmlName = u"HistoryExportFile", .member = &FileInfo::historyExportFile, .control = {"txt_historyExportFile"}, .whenEmpty = keep},
};

constexpr std::array gsmFields = {
    Field<GsmSettings>{.xmlName = u"PIN", .member = &GsmSettings::pin, .control = {"txt_gsm_pin"}, .whenNew = is(u""), .whenRead = pinOfFourDigits, .check = simPin, .secret = true},
    Field<GsmSettings>{.xmlName = u"Stationstyp", .member = &GsmSettings::stationType, .control = {"Combo_gsm_type"}, .whenEmpty = keep, .accepts = isStationType},
    Field<GsmSettings>{.xmlName = u"Stationskennung", .member = &GsmSettings::stationId, .control = {"txt_gsm_id"}, .whenNew = is(u""), .rule = umlautsReplaced, .check = smsTextWithoutComma},
    Field<GsmSettings>{.xmlName = u"Alivecycle", .member = &GsmSettings::aliveCycle, .control = {"txt_gsm_alive"}, .whenNew = is(u"0"), .rule = wholeNumber, .check = wholeFromOrEmpty<0, 32767>, .number = true},
};

constexpr std::array administratorFields = {
    Field<Administrator>{.xmlName = u"GSM-Name", .member = &Administrator::name, .control = {"txt_gsm_name", 0}, .whenNew = is(administratorName), .whenEmpty = is(administratorName)},
    Field<Administrator>{.xmlName = u"GSM-Nummer", .member = &Administrator::number, .control = {"txt_gsm_num", 0}, .whenNew = is(u"+49"), .rule = internationalNumber, .check = phoneNumber},
};

constexpr std::array limitValueFields = {
    Field<LimitValue>{.xmlName = u"Alarm", .member = &LimitValue::alarm, .control = {"Txt_gw_meldung"}, .whenNew = is(u""), .beforeReading = is(u""), .whenTyped = umlautsReplaced, .check = smsText},
    Field<LimitValue>{.xmlName = u"Delay", .member = &LimitValue::delay, .control = {"Txt_gw_delay"}, .whenNew = is(u"0"), .beforeReading = is(u""), .whenEmpty = is(u"0"), .check = notBelowZeroOrEmpty, .number = true, .applies = watchesChannel},
    Field<LimitValue>{.xmlName = u"Grenzwert", .member = &LimitValue::limit, .control = {"Txt_gw_gw"}, .whenNew = is(u"0"), .beforeReading = is(u""), .whenEmpty = is(u"0"), .check = numericOrEmpty, .number = true, .applies = watchesChannel},
    Field<LimitValue>{.xmlName = u"Hysterese", .member = &LimitValue::hysteresis, .control = {"Txt_gw_hysterese"}, .whenNew = is(u"0"), .beforeReading = is(u""), .whenEmpty = is(u"0"), .check = notBelowZeroOrEmpty, .number = true, .applies = watchesChannel},
    Field<LimitValue>{.xmlName = u"IP", .member = &LimitValue::channel, .control = {"Cbo_gw_ip"}, .whenNew = is(u"0"), .beforeReading = is(u"0"), .whenEmpty = is(u"0"), .check = chosenFrom<0, 18>, .applies = watchesChannel},
    Field<LimitValue>{.xmlName = u"Vergleich", .member = &LimitValue::comparison, .control = {"Opt_gw_vergleich"}, .whenNew = is(u"1"), .beforeReading = is(u"1"), .whenEmpty = is(u"1"), .whenRead = presentComparison, .check = chosenFrom<1, 3>, .applies = watchesChannel},
    Field<LimitValue>{.xmlName = u"Bezug", .member = &LimitValue::reference, .control = {"Check_gw_Bezug"}, .whenEmpty = is(u"0"), .check = combination, .applies = combinesLimitValues},
    Field<LimitValue>{.xmlName = u"MSN", .member = &LimitValue::recipients, .control = {"chk_gw_msn"}, .whenNew = is(u"255"), .beforeReading = is(u"255"), .whenEmpty = keep},
    Field<LimitValue>{.xmlName = u"Wiederholung", .member = &LimitValue::repetitions, .control = {"Combo_gw_wiederholung"}, .whenEmpty = is(u"0"), .check = chosenFrom<0, 15>},
    Field<LimitValue>{.xmlName = u"Wiederholungsintervall", .member = &LimitValue::repetitionInterval, .control = {"Text_gw_wiederholungsintervall"}, .whenEmpty = is(u"30"), .rule = minutesOfADay, .check = numericWithoutComma, .number = true},
};

constexpr std::array archivingFields = {
    Field<Archiving>{.xmlName = u"Interval", .member = &Archiving::interval, .control = {"Txt_ip_interval", 0}, .whenNew = is(u"0"), .whenEmpty = is(u"0"), .check = wholeMinutes, .number = true},
    Field<Archiving>{.xmlName = u"Delta", .member = &Archiving::delta, .control = {"Txt_ip_delta", 0}, .whenNew = is(u"0"), .whenEmpty = is(u"0"), .check = notBelowZero, .number = true},
};

constexpr std::array digitalInputFields = {
    Field<DigitalInput>{.xmlName = u"Zähler", .member = &DigitalInput::countsPulses, .control = {"Chk_ip_zaehler", 0}, .whenNew = is(u"0"), .whenEmpty = is(u"0"), .applies = mayCountPulses},
    Field<DigitalInput>{.xmlName = u"Teiler", .member = &DigitalInput::divider, .control = {"Txt_ip_teiler", 0}, .whenNew = is(u"1"), .whenEmpty = is(u"1"), .rule = pulseDivider, .check = wholeFrom<1, 10000>, .number = true, .applies = mayCountPulses},
    Field<DigitalInput>{.xmlName = u"Invers", .member = &DigitalInput::inverted, .control = {"Chk_ip_invers", 0}, .whenNew = is(u"0"), .whenEmpty = is(u"0")},
    Field<DigitalInput>{.xmlName = u"Betriebsstundenzähler", .member = &DigitalInput::countsHours, .control = {"Chk_ip_bstz", -2}, .whenNew = is(u"0"), .whenEmpty = is(u"0"), .applies = mayCountHours},
    Field<DigitalInput>{.xmlName = u"Wert", .member = &DigitalInput::value, .control = {"Txt_ip_zaehler", 0}, .whenNew = is(u"0"), .check = numericOrEmpty, .number = true},
};

constexpr std::array outputHoursFields = {
    Field<OutputHours>{.xmlName = u"Invers", .member = &OutputHours::inverted, .control = {"Chk_ip_invers", 4}, .whenNew = is(u"0"), .whenEmpty = is(u"0")},
    Field<OutputHours>{.xmlName = u"Wert", .member = &OutputHours::value, .control = {"Txt_ip_zaehler", 4}, .whenNew = is(u"0"), .check = numericOrEmpty, .number = true},
};

constexpr std::array sendValuesFields = {
    Field<SendValues>{.xmlName = u"Wert", .member = &SendValues::enabled, .control = {"chk_ip_wert"}, .whenNew = is(u"1"), .whenEmpty = is(u"0")},
};

constexpr std::array scalingFields = {
    Field<Scaling>{.xmlName = u"Offset", .member = &Scaling::offset, .control = {"Txt_ip_offset", 0}, .whenNew = is(u"0"), .whenEmpty = is(u"0"), .check = numeric, .number = true},
    Field<Scaling>{.xmlName = u"Faktor", .member = &Scaling::factor, .control = {"Txt_ip_faktor", 0}, .whenNew = is(u"1"), .whenEmpty = is(u"1"), .check = scalingFactor, .number = true},
    Field<Scaling>{.xmlName = u"Einheit", .member = &Scaling::unit, .control = {"Txt_ip_einheit", 0}, .whenNew = is(u""), .whenEmpty = is(u"Volt")},
};

constexpr std::array outputValueFields = {
    Field<OutputValue>{.xmlName = u"Digital", .member = &OutputValue::digital, .control = {"Chk_ip_value", 0}, .whenNew = is(u"0"), .whenEmpty = is(u"0")},
    Field<OutputValue>{.xmlName = u"Analog", .member = &OutputValue::analog, .control = {"Txt_ip_value", 0}, .whenNew = is(u"0"), .check = numericOrEmpty, .number = true},
};

constexpr std::array switchPointFields = {
    Field<SwitchPoint>{.xmlName = u"IP", .member = &SwitchPoint::target, .control = {"Cmb_swtch_ip"}, .whenNew = is(u"0"), .whenEmpty = keep, .check = chosenFrom<0, 10>},
    // "new" gives 0, a file without a period 1: both are wanted.
    Field<SwitchPoint>{.xmlName = u"Periode", .member = &SwitchPoint::period, .control = {"Txt_swtch_periode"}, .whenNew = is(u"0"), .whenEmpty = is(u"1"), .check = numericWithoutComma, .number = true},
    Field<SwitchPoint>{.xmlName = u"Start", .member = &SwitchPoint::start, .control = {"Txt_swtch_start"}, .whenNew = is(u""), .whenEmpty = is(presentMinute), .check = startTime},
    Field<SwitchPoint>{.xmlName = u"Typ", .member = &SwitchPoint::type, .control = {"Cmb_swtch_typ"}, .whenNew = is(u"0"), .whenEmpty = keep, .check = chosenFrom<0, 16>},
    Field<SwitchPoint>{.xmlName = u"Wert", .member = &SwitchPoint::value, .control = {"Txt_swtch_wert"}, .whenNew = is(u"0"), .whenEmpty = is(u"0"), .check = numeric, .number = true},
    Field<SwitchPoint>{.xmlName = u"GW-Bezug", .member = &SwitchPoint::limitValue, .control = {"Cmb_swtch_gw"}, .whenNew = is(u"0"), .whenEmpty = keep, .check = chosenFrom<0, 19>},
};

constexpr std::array ethernetFields = {
    Field<EthernetSettings>{.xmlName = u"IP", .member = &EthernetSettings::ip, .control = {"Txt_Ethernet_IP"}, .whenNew = is(u"010.000.000.001"), .whenEmpty = is(u"010.000.000.001"), .check = dottedAddress},
    Field<EthernetSettings>{.xmlName = u"Subnet", .member = &EthernetSettings::subnet, .control = {"Txt_Ethernet_Subnet"}, .whenNew = is(u"255.255.255.000"), .whenEmpty = is(u"255.255.255.000"), .check = dottedAddress},
    Field<EthernetSettings>{.xmlName = u"MAC3", .member = &EthernetSettings::mac3, .control = {"Txt_Ethernet_MAC", 3}, .whenNew = is(u"00"), .whenEmpty = is(randomByte), .check = hexadecimalByte},
    Field<EthernetSettings>{.xmlName = u"MAC4", .member = &EthernetSettings::mac4, .control = {"Txt_Ethernet_MAC", 4}, .whenNew = is(u"00"), .whenEmpty = is(randomByte), .check = hexadecimalByte},
    Field<EthernetSettings>{.xmlName = u"MAC5", .member = &EthernetSettings::mac5, .control = {"Txt_Ethernet_MAC", 5}, .whenNew = is(u"00"), .whenEmpty = is(randomByte), .check = hexadecimalByte},
};

// clang-format on

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
    return store(field, record, field.rule != nullptr ? field.rule(text) : text);
}

template <class Record>
void applyPreset(const Field<Record> &field, Record &record, const Preset &preset,
                 const Environment &environment, int index)
{
    if (!preset.keepsValue()) {
        store(field, record, preset.value(environment, index));
    }
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
        compare(QStringLiteral("Feiertag%1").arg(index), expected.holidays.lines().value(index),
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
    template void applyPreset(const Field<Record> &, Record &, const Preset &, const Environment &, int);
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
