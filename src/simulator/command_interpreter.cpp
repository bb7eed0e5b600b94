#include "simulator/command_interpreter.h"

#include "config/channels.h"
#include "simulator/held_form.h"

#include <algorithm>
#include <limits>

namespace ktr {

namespace {

constexpr int combinedFrom = LimitValue::firstReference + 1;
constexpr std::array calibrationCodes = {6, 6, 0, 0, 7, 7, 1, 1}; // by the number of the reference point

/// The fields of one command while they are read. The first fault is kept as the refusal; the values read
/// after it are of no use, and nothing may be stored.
class Reading
{
public:
    explicit Reading(const QString &command)
        : m_letter(command.isEmpty() ? QChar() : command.front()), m_list(command.mid(2))
    {
        if (command.size() > 1) {
            m_fields = m_list.split(u',');
        }
        if (command.size() > 1 && command[1] != u',') {
            expect(u"\",\" after the letter", command.mid(1, 1));
        }
    }

    QChar letter() const { return m_letter; }
    bool failed() const { return !m_refusal.isEmpty(); }
    const QString &refusal() const { return m_refusal; }

    bool hasCount(qsizetype count)
    {
        if (m_fields.size() != count) {
            expect(QStringLiteral("%1 fields").arg(count), QString::number(m_fields.size()));
        }
        return !failed();
    }
    bool hasAtLeast(qsizetype count)
    {
        if (m_fields.size() < count) {
            expect(QStringLiteral("at least %1 fields").arg(count), QString::number(m_fields.size()));
        }
        return !failed();
    }

    QString text(qsizetype index) const { return m_fields.value(index); }
    /// The field and everything behind it: the last text of a command may contain commas.
    QString textFrom(int index) const { return m_list.section(u',', index); }

    /// A plain decimal number: no sign in front of a positive one, no leading zeros, no blanks.
    qint64 whole(qsizetype index, qint64 lowest, qint64 highest, QStringView name)
    {
        return whole(text(index), lowest, highest, name);
    }
    qint64 whole(const QString &field, qint64 lowest, qint64 highest, QStringView name)
    {
        bool ok = false;
        const qint64 value = field.toLongLong(&ok);
        if (!ok || value < lowest || value > highest || QString::number(value) != field) {
            expect(QStringLiteral("%1 from %2 to %3").arg(name).arg(lowest).arg(highest), field);
        }
        return value;
    }
    std::size_t index(qsizetype field, int count, QStringView name)
    {
        const qint64 position = whole(field, 1, count, name) - 1;
        return failed() ? 0 : static_cast<std::size_t>(position);
    }
    bool flag(qsizetype index, QStringView name) { return whole(index, 0, 1, name) == 1; }

    /// Two digits.
    int pair(qsizetype index, QStringView name)
    {
        const QString field = text(index);
        const bool digits =
            field.size() == 2 && std::ranges::all_of(field, [](QChar c) { return c >= u'0' && c <= u'9'; });
        if (!digits) {
            expect(QStringLiteral("%1 of two digits").arg(name), field);
        }
        return field.toInt();
    }

    void expect(QStringView what, const QString &found)
    {
        if (!failed()) {
            m_refusal = QStringLiteral("expected %1, found \"%2\"").arg(what, found);
        }
    }

private:
    QChar m_letter;
    QString m_list;
    QStringList m_fields;
    QString m_refusal;
};

template <class Array> auto &at(Array &array, qint64 index)
{
    return array[static_cast<std::size_t>(index)];
}

using Then = Understood::Then;

Then takeVersion(Reading &reading, ModuleMemory &memory)
{
    if (reading.letter() == u'v') {
        if (reading.hasAtLeast(1)) {
            memory.configuration.versionText = reading.textFrom(0);
        }
        return Then::Restart;
    }
    if (reading.hasCount(1) && reading.text(0) != u"§") {
        reading.expect(u"\"§\"", reading.text(0));
    }
    return Then::Nothing;
}

Then takeNumbers(Reading &reading, ModuleMemory &memory)
{
    constexpr int firstNumber = 2;
    auto &administrators = memory.configuration.administrators;
    if (reading.hasCount(firstNumber + std::ssize(administrators))) {
        memory.configuration.gsm.pin = reading.text(0);
        memory.configuration.gsm.stationId = reading.text(1);
        for (std::size_t i = 0; i < administrators.size(); ++i) {
            administrators[i].number = reading.text(firstNumber + static_cast<qsizetype>(i));
        }
    }
    return Then::Nothing;
}

Then takeLimitValue(Reading &reading, ModuleMemory &memory)
{
    const qint64 number = reading.whole(0, 1, LimitValue::count, u"limit value");
    const bool watchesChannel = number < combinedFrom;
    const int alarmAt = watchesChannel ? 10 : 6;
    if (!reading.hasAtLeast(alarmAt + 1)) {
        return Then::Nothing;
    }
    LimitValue value;
    reading.whole(1, 1, 1, u"fixed field");
    value.repetitions = static_cast<qint16>(reading.whole(2, 0, 15, u"repetitions"));
    value.repetitionInterval = reading.text(3);
    if (watchesChannel) {
        value.channel = static_cast<qint16>(reading.whole(4, 0, channelCount, u"channel"));
        value.limit = reading.text(5);
        value.hysteresis = reading.text(6);
        value.delay = reading.text(7);
        value.comparison = static_cast<qint16>(reading.whole(8, 1, 3, u"comparison"));
    } else {
        bool ok = false;
        value.reference = reading.text(4).toDouble(&ok);
        if (!ok || !(value.reference >= 0 && value.reference <= 65535)) {
            reading.expect(u"reference from 0 to 65535", reading.text(4));
        }
    }
    value.recipients = static_cast<quint8>(reading.whole(alarmAt - 1, 0, 255, u"recipients"));
    value.alarm = reading.textFrom(alarmAt);
    if (!reading.failed()) {
        at(memory.configuration.limitValues, number - 1) = value;
    }
    return Then::Nothing;
}

void takeDigitalInput(Reading &reading, Configuration &configuration, std::size_t index)
{
    const bool pulses = index < 2;
    if (!reading.hasCount(pulses ? 5 : 4)) {
        return;
    }
    DigitalInput input;
    (pulses ? input.countsPulses : input.countsHours) = reading.flag(1, u"counter flag");
    input.inverted = reading.flag(2, u"inversion flag");
    input.value = reading.text(3);
    input.divider = pulses ? reading.text(4) : QString();
    if (!reading.failed()) {
        configuration.digitalInputs[index] = input;
    }
}

void takeScaling(Reading &reading, Configuration &configuration, std::size_t index)
{
    if (reading.hasCount(3)) {
        configuration.scaling[index].offset = reading.text(1);
        configuration.scaling[index].factor = reading.text(2);
    }
}

void takeOutputHours(Reading &reading, Configuration &configuration, std::size_t index)
{
    if (!reading.hasCount(3)) {
        return;
    }
    const bool inverted = reading.flag(1, u"inversion flag");
    if (!reading.failed()) {
        configuration.outputHours[index] = {.inverted = inverted, .value = reading.text(2)};
    }
}

/// Which inputs and outputs have settings of their own, and where those are kept.
Then takeDataPoint(Reading &reading, ModuleMemory &memory)
{
    struct Span
    {
        int first, last, firstIndex;
        void (*take)(Reading &, Configuration &, std::size_t);
    };
    constexpr std::array spans = {Span{1, 4, 0, takeDigitalInput}, Span{9, 10, 0, takeScaling},
                                  Span{13, 14, 2, takeScaling}, Span{15, 16, 0, takeOutputHours}};

    const qint64 channel = reading.whole(0, 1, channelCount, u"channel");
    const auto span = std::ranges::find_if(
        spans, [channel](const Span &s) { return channel >= s.first && channel <= s.last; });
    if (span == spans.end()) {
        reading.expect(u"channel 1 to 4, 9, 10 or 13 to 16", reading.text(0));
    }
    if (!reading.failed()) {
        span->take(reading, memory.configuration,
                   static_cast<std::size_t>(channel - span->first + span->firstIndex));
    }
    return Then::Nothing;
}

Then takeOutputValue(Reading &reading, ModuleMemory &memory)
{
    const qint64 channel = reading.whole(0, 11, 14, u"output");
    if (!reading.hasCount(2)) {
        return Then::Nothing;
    }
    Configuration &configuration = memory.configuration;
    if (channel >= 13) {
        at(configuration.outputValues, channel - 13).analog = reading.text(1);
    } else {
        const bool on = reading.flag(1, u"output value");
        if (reading.failed()) {
            return Then::Nothing;
        }
        at(configuration.outputValues, channel - 11).digital = on;
    }
    configuration.sendValues[0].enabled = true; // only a program that sends values gets here
    return Then::Nothing;
}

Then takeArchiving(Reading &reading, ModuleMemory &memory)
{
    if (reading.text(0) == u"0") { // no channel: the archive as a whole
        if (reading.hasCount(2)) {
            const bool released = reading.flag(1, u"archive flag");
            memory.archiveBlocked = reading.failed() ? memory.archiveBlocked : !released;
        }
        return Then::Nothing;
    }
    const std::size_t index = reading.index(0, channelCount, u"channel");
    if (reading.hasCount(3)) {
        memory.configuration.archiving[index] = {.interval = reading.text(1), .delta = reading.text(2)};
    }
    return Then::Nothing;
}

Then takeSwitchPoint(Reading &reading, ModuleMemory &memory)
{
    const std::size_t index = reading.index(0, SwitchPoint::count, u"switch point");
    SwitchPoint point;
    point.type = static_cast<qint16>(reading.whole(2, 0, 16, u"type"));
    const bool limited = point.reactsToLimitValue();
    if (!reading.hasCount(limited ? 7 : 6)) {
        return Then::Nothing;
    }
    const int code = static_cast<int>(reading.whole(1, 0, 255, u"target"));
    point.target = static_cast<qint16>(targetPosition(code));
    if (targetCode(point.target) != code) {
        reading.expect(u"target 0, 11 to 14 or 64 to 69", reading.text(1));
    }
    point.value = reading.text(3);
    point.start = reading.text(4);
    if (limited) {
        point.limitValue = static_cast<qint16>(reading.index(5, LimitValue::count, u"limit value"));
    }
    point.period = reading.text(limited ? 6 : 5);
    if (!reading.failed()) {
        memory.configuration.switchPoints[index] = point;
    }
    return Then::Nothing;
}

Then takeHolidays(Reading &reading, ModuleMemory &memory)
{
    if (!reading.hasCount(HolidayList::capacity)) {
        return Then::Nothing;
    }
    HolidayList holidays;
    for (int i = 0; i < HolidayList::capacity; ++i) {
        const QString slot = reading.text(i);
        const QString line = holidayLine(slot);
        if (line.isEmpty()) {
            reading.expect(u"a date YYMMDD", slot);
        }
        if (slot != QStringView(emptyHolidaySlot)) {
            holidays.append(line);
        }
    }
    if (!reading.failed()) {
        memory.configuration.holidays = holidays;
    }
    return Then::Nothing;
}

Then takeAliveCycle(Reading &reading, ModuleMemory &memory)
{
    if (reading.hasCount(1)) {
        memory.configuration.gsm.aliveCycle = reading.text(0);
    }
    return Then::Nothing;
}

QString addressOf(Reading &reading, qsizetype index)
{
    constexpr qint64 highest = std::numeric_limits<quint32>::max();
    if (reading.text(index).isEmpty()) {
        return {};
    }
    const qint64 address = reading.whole(index, 0, highest, u"address");
    return reading.failed() ? QString() : addressForm(static_cast<quint32>(address));
}

Then takeEthernet(Reading &reading, ModuleMemory &memory)
{
    if (!reading.hasCount(3)) {
        return Then::Nothing;
    }
    QStringList mac(6);
    if (!reading.text(2).isEmpty()) {
        const QStringList parts = reading.text(2).split(u'.');
        if (parts.size() != mac.size()) {
            reading.expect(u"a MAC address of six numbers", reading.text(2));
            return Then::Nothing;
        }
        for (qsizetype i = 0; i < mac.size(); ++i) {
            if (!parts[i].isEmpty()) {
                const qint64 byte = reading.whole(parts[i], 0, 255, u"MAC byte");
                mac[i] = QStringLiteral("%1").arg(byte, 2, 16, QLatin1Char('0')).toUpper();
            }
        }
        const auto isMakers = [](const QString &byte, const char16_t *makers) {
            return byte == QStringView(makers);
        };
        if (!std::ranges::equal(mac.first(3), EthernetSettings::makerBytes, isMakers)) {
            reading.expect(u"the maker's MAC bytes first", reading.text(2));
        }
    }
    const EthernetSettings settings = {.ip = addressOf(reading, 0),
                                       .subnet = addressOf(reading, 1),
                                       .mac3 = mac[3],
                                       .mac4 = mac[4],
                                       .mac5 = mac[5]};
    if (!reading.failed()) {
        memory.configuration.ethernet = settings;
    }
    return Then::Nothing;
}

Then takeClock(Reading &reading, ModuleMemory &memory)
{
    if (!reading.hasCount(7)) {
        return Then::Nothing;
    }
    const QDate date(2000 + reading.pair(0, u"year"), reading.pair(1, u"month"), reading.pair(2, u"day"));
    const QTime time(reading.pair(3, u"hour"), reading.pair(4, u"minute"), reading.pair(5, u"second"));
    if (!date.isValid() || !time.isValid()) {
        reading.expect(u"a date and a time", reading.textFrom(0));
    } else {
        reading.whole(6, date.dayOfWeek(), date.dayOfWeek(), u"day of the week");
    }
    if (!reading.failed()) {
        memory.clock = QDateTime(date, time, Qt::UTC);
    }
    return Then::Nothing;
}

Then takeDeletion(Reading &reading, ModuleMemory &memory)
{
    if (reading.hasCount(0)) {
        memory.notifications.clear();
    }
    return Then::Nothing;
}

Then takeService(Reading &reading, ModuleMemory &memory)
{
    if (reading.textFrom(0) == u"77") {
        return Then::SendArchive;
    }
    if (reading.hasCount(2)) {
        const qint64 point = reading.whole(0, 0, std::ssize(calibrationCodes) - 1, u"reference point");
        const int code = reading.failed() ? 0 : at(calibrationCodes, point);
        reading.whole(1, code, code, u"calibration code");
        if (!reading.failed()) {
            at(memory.calibrated, point) = true;
        }
    }
    return Then::Nothing;
}

/// How a command's answer names it.
enum class Named { ByLetter, ByLetterAndNumber, InFull };

struct Format
{
    char16_t letter; ///< upper case
    Named named;
    Then (*take)(Reading &, ModuleMemory &);
};

constexpr std::array formats = {
    Format{u'V', Named::ByLetter, takeVersion},
    Format{u'N', Named::ByLetter, takeNumbers},
    Format{u'G', Named::ByLetterAndNumber, takeLimitValue},
    Format{u'D', Named::ByLetterAndNumber, takeDataPoint},
    Format{u'S', Named::ByLetterAndNumber, takeOutputValue},
    Format{u'H', Named::ByLetterAndNumber, takeArchiving},
    Format{u'Z', Named::ByLetterAndNumber, takeSwitchPoint},
    Format{u'F', Named::ByLetter, takeHolidays},
    Format{u'C', Named::ByLetter, takeAliveCycle},
    Format{u'E', Named::ByLetter, takeEthernet},
    Format{u'T', Named::ByLetter, takeClock},
    Format{u'K', Named::ByLetter, takeDeletion},
    Format{u'§', Named::InFull, takeService},
};

QString versionAnswer(const ModuleMemory &memory)
{
    const QString &type = memory.configuration.gsm.stationType;
    const qsizetype fixed = memory.firmwareVersion.size() + type.size() + 4; // the letter and three commas
    return QStringLiteral("V,%1,%2,%3")
        .arg(memory.firmwareVersion,
             memory.configuration.versionText.left(CommandInterpreter::longestSms - fixed), type);
}

QString answer(const Format &format, const QString &command, const ModuleMemory &memory)
{
    const QChar letter(format.letter);
    if (letter == u'V' && command.front() == letter) {
        return versionAnswer(memory);
    }
    switch (format.named) {
    case Named::ByLetter:
        return QStringLiteral("OK: %1").arg(letter);
    case Named::ByLetterAndNumber:
        return QStringLiteral("OK: %1,%2").arg(letter).arg(command.section(u',', 1, 1));
    case Named::InFull:
        break;
    }
    return u"OK: " + command;
}

} // namespace

Understood CommandInterpreter::apply(const QString &command)
{
    Understood understood;
    if (command == u"§88") {
        m_memory.firmwareRequested = true;
        ++m_memory.accepted;
        understood.accepted = true;
        understood.then = Then::TakeFirmware;
        return understood;
    }
    Reading reading(command);
    const auto format = std::ranges::find(formats, reading.letter().toUpper().unicode(), &Format::letter);
    if (format == formats.end()) {
        reading.expect(u"a command's letter", command.left(1));
    }
    Then then = Then::Nothing;
    if (!reading.failed()) {
        then = format->take(reading, m_memory);
    }
    understood.accepted = !reading.failed();
    if (understood.accepted) {
        ++m_memory.accepted;
        understood.then = then;
        understood.answerText = answer(*format, command, m_memory);
    } else {
        ++m_memory.refused;
        understood.answerText =
            QString(u"fail: " + command.section(u',', 0, 1) + u": " + reading.refusal()).left(longestSms);
    }
    // The archive's lines are its answer.
    understood.wantsAnswer = !reading.letter().isLower() && understood.then != Then::SendArchive;
    return understood;
}

} // namespace ktr
