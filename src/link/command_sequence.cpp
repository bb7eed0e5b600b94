#include "link/command_sequence.h"

#include "config/address.h"
#include "config/channel_use.h"
#include "config/channels.h"
#include "config/fields.h"
#include "platform/text_rules.h"

#include <algorithm>
#include <array>

namespace ktr {

namespace {

/// What a row of the table needs to build a command: which of its steps it is, and the number that the module
/// knows it by.
struct StepInput
{
    Configuration &configuration;
    const CommandContext &context;
    int index;  ///< 0 for the row's first step
    int number; ///< the channel or entry number
};

QString comma(const QString &field)
{
    return u',' + field;
}

QString commaFlag(bool flag)
{
    return flag ? QStringLiteral(",1") : QStringLiteral(",0");
}

/// A number in which the user may have typed a decimal comma.
QString commaNumber(const QString &field)
{
    return comma(withDecimalPoint(field));
}

template <class Array> auto &at(Array &array, int index)
{
    return array[static_cast<std::size_t>(index)];
}

QString versionQuery(const StepInput &)
{
    return QStringLiteral(",§");
}

QString stationNumbers(const StepInput &in)
{
    QString fields = comma(in.configuration.gsm.pin) + comma(in.configuration.gsm.stationId);
    for (const Administrator &administrator : in.configuration.administrators) {
        fields += comma(administrator.number);
    }
    return fields;
}

// The fields are texts that may hold commas, so they are first joined with a character that no field
// holds; only then is every comma in them turned into a point. The message text comes last and unchanged.
QString limitValue(const StepInput &in)
{
    const LimitValue &value = at(in.configuration.limitValues, in.number - 1);
    const QChar joint = u'°';
    QString fields;
    for (const QString &field :
         {QString::number(in.number), QStringLiteral("1"), QString::number(value.repetitions),
          value.repetitionInterval, QString::number(value.channel), value.limit, value.hysteresis,
          value.delay, QString::number(value.comparison), QString::number(value.recipients)}) {
        fields += joint + field;
    }
    fields.replace(u',', u'.');
    fields.replace(joint, u',');
    return fields + comma(value.alarm);
}

// No replacement here: under a decimal comma the reference brings a comma of its own. Modules count on it.
QString referenceValue(const StepInput &in)
{
    const LimitValue &value = at(in.configuration.limitValues, in.number - 1);
    return comma(QString::number(in.number)) + QStringLiteral(",1") +
           comma(QString::number(value.repetitions)) + comma(value.repetitionInterval) +
           comma(numberText(value.reference, in.context.locale)) + comma(QString::number(value.recipients)) +
           comma(value.alarm);
}

QString counterStart(const StepInput &in, const DigitalInput &input)
{
    return in.configuration.sendValues.front().enabled ? commaNumber(input.value) : QStringLiteral(",");
}

QString pulseCounter(const StepInput &in)
{
    const DigitalInput &input = at(in.configuration.digitalInputs, in.number - 1);
    return comma(QString::number(in.number)) + commaFlag(input.countsPulses) + commaFlag(input.inverted) +
           counterStart(in, input) + commaNumber(input.divider);
}

QString hoursCounter(const StepInput &in)
{
    const DigitalInput &input = at(in.configuration.digitalInputs, in.number - 1);
    return comma(QString::number(in.number)) + commaFlag(input.countsHours) + commaFlag(input.inverted) +
           counterStart(in, input);
}

QString scaling(const StepInput &in, int firstIndex)
{
    const Scaling &scaling = at(in.configuration.scaling, firstIndex + in.index);
    return comma(QString::number(in.number)) + commaNumber(scaling.offset) + commaNumber(scaling.factor);
}

QString inputScaling(const StepInput &in)
{
    return scaling(in, 0);
}

QString outputScaling(const StepInput &in)
{
    return scaling(in, 2);
}

QString digitalOutput(const StepInput &in)
{
    return comma(QString::number(in.number)) + commaFlag(at(in.configuration.outputValues, in.index).digital);
}

QString analogOutput(const StepInput &in)
{
    return comma(QString::number(in.number)) +
           commaNumber(at(in.configuration.outputValues, in.index).analog);
}

QString archive(const StepInput &in)
{
    const Archiving &archiving = at(in.configuration.archiving, in.index);
    return comma(QString::number(in.number)) + commaNumber(archiving.interval) + commaNumber(archiving.delta);
}

QString switchPoint(const StepInput &in)
{
    SwitchPoint &point = at(in.configuration.switchPoints, in.index);
    point.value = valueSent(point);
    QString fields = comma(QString::number(in.number)) + comma(QString::number(targetCode(point.target))) +
                     comma(QString::number(point.type)) + commaNumber(point.value) + comma(startSent(point));
    if (point.reactsToLimitValue()) {
        fields += comma(QString::number(point.limitValue + 1));
    }
    return fields + comma(point.period);
}

QString holidays(const StepInput &in)
{
    QString fields;
    for (int slot = 0; slot < HolidayList::capacity; ++slot) {
        const QString line = in.configuration.holidays.lines().value(slot);
        fields += comma(line.isEmpty() ? QStringLiteral("000101") : line.left(6));
    }
    return fields;
}

QString outputHours(const StepInput &in)
{
    const OutputHours &hours = at(in.configuration.outputHours, in.index);
    return comma(QString::number(in.number)) + commaFlag(hours.inverted) + commaNumber(hours.value);
}

QString aliveCycle(const StepInput &in)
{
    return commaNumber(in.configuration.gsm.aliveCycle);
}

/// An invalid address leaves its field empty.
QString addressField(const QString &address)
{
    const auto number = addressNumber(address);
    return comma(number ? QString::number(*number) : QString());
}

/// The MAC address as decimal numbers joined by points, empty when a part is no hexadecimal number of 16
/// bits.
QString macNumber(const QStringList &bytes)
{
    QStringList numbers;
    for (const QString &byte : bytes) {
        bool ok = false;
        const ushort value = byte.toUShort(&ok, 16);
        if (!ok || !std::ranges::all_of(byte, isHexadecimalDigit)) {
            return {}; // a sign, blanks or a prefix are refused, too
        }
        numbers += QString::number(static_cast<qint16>(value));
    }
    return numbers.join(u'.');
}

QString ethernet(const StepInput &in)
{
    const EthernetSettings &settings = in.configuration.ethernet;
    return addressField(settings.ip) + addressField(settings.subnet) + comma(macNumber(macBytes(settings)));
}

QString clock(const StepInput &in)
{
    return comma(clockFields(in.context.now));
}

QString closing(const StepInput &in)
{
    return comma(in.configuration.versionText);
}

template <class Record, class Value> const ControlName &controlOf(Value Record::*member)
{
    return fieldOf<Record>(member).control;
}

/// The control of a field.
template <auto member> const ControlName &shownBy()
{
    return controlOf(member);
}

const ControlName &holidayControl()
{
    return holidaysControl;
}

enum class Letter { AsAnswered, Fixed };
enum class Sent { Always, WithOutputValues };

/// Consecutive steps whose commands are built alike.
struct StepRow
{
    int first;
    int last;
    const char16_t *letter;
    int firstNumber; ///< the number that the first step's command carries
    QString (*fields)(
        const StepInput &);          ///< everything after the letter, each field with its comma before it
    const ControlName &(*shownBy)(); ///< the field that may be too long, or stands for the others; null: none
    Letter letterCase = Letter::AsAnswered;
    Sent sent = Sent::Always;
};

constexpr std::array table = {
    StepRow{0, 0, u"V", 0, versionQuery, nullptr, Letter::Fixed},
    StepRow{1, 1, u"N", 0, stationNumbers, shownBy<&GsmSettings::stationId>},
    StepRow{2, 17, u"G", 1, limitValue, shownBy<&LimitValue::alarm>},
    StepRow{18, 21, u"G", 17, referenceValue, shownBy<&LimitValue::alarm>},
    StepRow{22, 23, u"D", 1, pulseCounter, shownBy<&DigitalInput::value>},
    StepRow{24, 25, u"D", 3, hoursCounter, shownBy<&DigitalInput::value>},
    StepRow{26, 27, u"D", 9, inputScaling, shownBy<&Scaling::offset>},
    StepRow{28, 29, u"D", 13, outputScaling, shownBy<&Scaling::offset>},
    StepRow{30, 31, u"S", 11, digitalOutput, shownBy<&OutputValue::digital>, Letter::AsAnswered,
            Sent::WithOutputValues},
    StepRow{32, 33, u"S", 13, analogOutput, shownBy<&OutputValue::analog>, Letter::AsAnswered,
            Sent::WithOutputValues},
    StepRow{34, 51, u"H", 1, archive, shownBy<&Archiving::interval>},
    StepRow{52, 71, u"Z", 1, switchPoint, shownBy<&SwitchPoint::value>},
    StepRow{72, 72, u"F", 0, holidays, holidayControl},
    StepRow{73, 74, u"D", 15, outputHours, shownBy<&OutputHours::value>},
    StepRow{75, 75, u"C", 0, aliveCycle, shownBy<&GsmSettings::aliveCycle>},
    StepRow{76, 76, u"E", 0, ethernet, shownBy<&EthernetSettings::ip>},
    StepRow{77, 77, u"T", 0, clock, nullptr},
    StepRow{78, 78, u"v", 0, closing, shownBy<&FileInfo::version>, Letter::Fixed},
};
static_assert(table.front().first == steps::first && table.back().last == steps::last &&
              std::ranges::adjacent_find(table, [](const StepRow &row, const StepRow &next) {
                  return next.first != row.last + 1;
              }) == table.end());

/// Null when there is no step of this number.
const StepRow *rowOf(int step)
{
    const auto *row =
        std::ranges::find_if(table, [step](const StepRow &r) { return step >= r.first && step <= r.last; });
    return row == table.end() ? nullptr : row;
}

QString build(int step, Configuration &configuration, const CommandContext &context)
{
    const StepRow *row = rowOf(step);
    if (row == nullptr) {
        return {};
    }
    const int index = step - row->first;
    const QString letter = QString::fromUtf16(row->letter);
    const bool lower = row->letterCase == Letter::AsAnswered && !context.answer;
    return asOneLine((lower ? letter.toLower() : letter) +
                     row->fields({configuration, context, index, row->firstNumber + index}));
}

bool isLeftOut(int step, const Configuration &configuration)
{
    const StepRow *row = rowOf(step);
    return row != nullptr && row->sent == Sent::WithOutputValues && !configuration.sendValues.front().enabled;
}

} // namespace

QString clockFields(const QDateTime &now)
{
    return now.date().toString(QStringLiteral("yy,MM,dd,")) +
           now.time().addSecs(2).toString(QStringLiteral("HH,mm,ss,")) +
           QString::number(now.date().dayOfWeek());
}

QString asOneLine(QString text)
{
    for (QChar &c : text) {
        if ((c < u' ' && c != u'\t') || c == u'\x7F') {
            c = u' ';
        }
    }
    return text;
}

StepSet stepsOfEntry(EntryKind kind, int number)
{
    const QStringView letters = kind == EntryKind::LimitValue    ? u"G"
                                : kind == EntryKind::SwitchPoint ? u"Z"
                                                                 : u"DSH";
    StepSet found;
    for (const StepRow &row : table) {
        const int step = row.first + number - row.firstNumber;
        if (row.firstNumber > 0 && letters.contains(QChar(row.letter[0])) && step >= row.first &&
            step <= row.last) {
            found.set(static_cast<std::size_t>(step));
        }
    }
    return found;
}

StepPlace placeOfStep(int step)
{
    const StepRow *row = rowOf(step);
    if (row == nullptr || row->shownBy == nullptr) {
        return {};
    }
    // Rows of one record go on counting its entries: the reference values are the limit values behind the
    // others.
    const auto isSameRecord = [row](const StepRow &r) { return r.shownBy == row->shownBy; };
    const int entry = step - std::ranges::find_if(table, isSameRecord)->first;
    return {row->shownBy().forIndex(entry), entry};
}

std::optional<StepCommand> CommandSequence::next(Configuration &configuration, const CommandContext &context)
{
    if (!isRunning()) {
        return std::nullopt;
    }
    passOver(configuration);
    if (!isRunning()) {
        return std::nullopt;
    }
    StepCommand built{m_step, build(m_step, configuration, context)};
    ++m_step;
    passOver(configuration);
    return built;
}

/// Goes on to the next step that has a command.
void CommandSequence::passOver(const Configuration &configuration)
{
    while (m_step <= steps::last &&
           (m_leftOut.test(static_cast<std::size_t>(m_step)) || isLeftOut(m_step, configuration))) {
        ++m_step;
    }
    if (m_step > steps::last) {
        m_step = steps::idle;
    }
}

StepCommands commandsOf(Configuration configuration, const CommandContext &context)
{
    StepCommands commands;
    CommandSequence sequence;
    sequence.start();
    while (auto next = sequence.next(configuration, context)) {
        if (next->command.size() <= longestCommand) {
            commands[static_cast<std::size_t>(next->step)] = std::move(next->command);
        }
    }
    return commands;
}

} // namespace ktr
