#include "simulator/held_form.h"

#include "config/address.h"
#include "config/fields.h"
#include "platform/text_rules.h"

#include <QDate>

#include <limits>

namespace ktr {

namespace {

constexpr int minutesOfAYear = 525'600;

/// What arrives of a text: a byte a character, and blanks for line ends, which a command cannot hold.
QString onTheWire(const QString &text)
{
    QString arrived = fromWindows1252(toWindows1252(text));
    for (QChar &c : arrived) {
        if (c.category() == QChar::Other_Control && c != u'\t' && c < u'\x80') {
            c = u' ';
        }
    }
    return arrived;
}

QString number(const QString &text)
{
    return withDecimalPoint(onTheWire(text));
}

/// The module is sent nothing for a text that is no address.
QString address(const QString &text)
{
    const auto number = addressNumber(text);
    return number ? addressForm(*number) : QString();
}

QString macByte(const QString &text)
{
    bool ok = false;
    const uint value = text.toUInt(&ok, 16);
    if (!ok) {
        return {};
    }
    return value <= 0xFF ? QStringLiteral("%1").arg(value, 2, 16, QLatin1Char('0')).toUpper() : text;
}

LimitValue watching(const LimitValue &meant)
{
    LimitValue held = meant;
    held.alarm = onTheWire(meant.alarm);
    held.limit = number(meant.limit);
    held.hysteresis = number(meant.hysteresis);
    held.delay = number(meant.delay);
    held.repetitionInterval = number(meant.repetitionInterval);
    held.reference = LimitValue{}.reference;
    return held;
}

/// Nothing protects the fields of a combined limit value: a decimal comma in one shifts those behind it,
/// and the module takes them by their places.
LimitValue combined(const LimitValue &meant, const QLocale &locale)
{
    const QString sent = onTheWire(QStringList{meant.repetitionInterval, numberText(meant.reference, locale),
                                               QString::number(meant.recipients), meant.alarm}
                                       .join(u','));
    bool referenceOk = false;
    bool recipientsOk = false;
    LimitValue held;
    held.repetitions = meant.repetitions;
    held.repetitionInterval = sent.section(u',', 0, 0);
    held.reference = sent.section(u',', 1, 1).toDouble(&referenceOk);
    const ushort recipients = sent.section(u',', 2, 2).toUShort(&recipientsOk);
    held.recipients = static_cast<quint8>(recipients);
    held.alarm = sent.section(u',', 3);
    return referenceOk && recipientsOk && recipients <= 255 ? held : meant;
}

SwitchPoint heldSwitchPoint(const SwitchPoint &meant)
{
    SwitchPoint held = meant;
    held.start = meant.start.isEmpty() ? QStringLiteral("0001010000") : onTheWire(meant.start);
    held.period = onTheWire(meant.period);
    held.value = leadingNumber(meant.period) >= minutesOfAYear ? QStringLiteral("1") : number(meant.value);
    if (!meant.reactsToLimitValue()) {
        held.limitValue = SwitchPoint{}.limitValue;
    }
    return held;
}

QStringList textsOf(const Configuration &configuration)
{
    QStringList texts;
    visitRecords(configuration, [&texts]<class Record>(const Group &, const Record &record, int index) {
        for (const Field<Record> &field : fieldsOf<Record>()) {
            if (field.appliesTo(index)) {
                texts += fieldText(field, record, QLocale::c());
            }
        }
    });
    return texts;
}

HolidayList heldHolidays(const HolidayList &meant)
{
    HolidayList held;
    for (const QString &line : meant.lines()) {
        const QString slot = line.left(6);
        if (slot != QStringView(emptyHolidaySlot)) {
            const QString known = holidayLine(slot);
            held.append(known.isEmpty() ? line : known);
        }
    }
    return held;
}

} // namespace

Configuration asHeld(const Configuration &meant, const QLocale &locale)
{
    Configuration held;
    held.gsm.pin = onTheWire(meant.gsm.pin);
    held.gsm.stationId = onTheWire(meant.gsm.stationId);
    held.gsm.aliveCycle = number(meant.gsm.aliveCycle);
    for (std::size_t i = 0; i < held.administrators.size(); ++i) {
        held.administrators[i].number = onTheWire(meant.administrators[i].number);
    }
    for (std::size_t i = 0; i < held.limitValues.size(); ++i) {
        const LimitValue &value = meant.limitValues[i];
        held.limitValues[i] =
            LimitValue::isReference(static_cast<int>(i)) ? combined(value, locale) : watching(value);
    }
    for (std::size_t i = 0; i < held.archiving.size(); ++i) {
        held.archiving[i] = {.interval = number(meant.archiving[i].interval),
                             .delta = number(meant.archiving[i].delta)};
    }
    const bool sendsValues = meant.sendValues[0].enabled;
    for (std::size_t i = 0; i < held.digitalInputs.size(); ++i) {
        const DigitalInput &input = meant.digitalInputs[i];
        const bool pulses = i < 2;
        held.digitalInputs[i] = {.countsPulses = pulses && input.countsPulses,
                                 .divider = pulses ? number(input.divider) : QString(),
                                 .inverted = input.inverted,
                                 .countsHours = !pulses && input.countsHours,
                                 .value = sendsValues ? number(input.value) : QString()};
    }
    for (std::size_t i = 0; i < held.outputHours.size(); ++i) {
        held.outputHours[i] = {.inverted = meant.outputHours[i].inverted,
                               .value = number(meant.outputHours[i].value)};
    }
    held.sendValues = meant.sendValues;
    for (std::size_t i = 0; i < held.scaling.size(); ++i) {
        held.scaling[i].offset = number(meant.scaling[i].offset);
        held.scaling[i].factor = number(meant.scaling[i].factor);
    }
    if (sendsValues) {
        for (std::size_t i = 0; i < held.outputValues.size(); ++i) {
            held.outputValues[i] = {.digital = meant.outputValues[i].digital,
                                    .analog = number(meant.outputValues[i].analog)};
        }
    }
    for (std::size_t i = 0; i < held.switchPoints.size(); ++i) {
        held.switchPoints[i] = heldSwitchPoint(meant.switchPoints[i]);
    }
    held.holidays = heldHolidays(meant.holidays);
    held.ethernet = {.ip = address(meant.ethernet.ip),
                     .subnet = address(meant.ethernet.subnet),
                     .mac3 = macByte(meant.ethernet.mac3),
                     .mac4 = macByte(meant.ethernet.mac4),
                     .mac5 = macByte(meant.ethernet.mac5)};
    held.versionText = onTheWire(meant.versionText);
    return held;
}

void takeWhatIsNeverSent(Configuration &held, const Configuration &meant, const Configuration &meantLater)
{
    const QStringList now = textsOf(meant);
    const QStringList later = textsOf(meantLater);
    qsizetype at = 0;
    visitRecords(held, [&]<class Record>(const Group &, Record &record, int index) {
        for (const Field<Record> &field : fieldsOf<Record>()) {
            if (!field.appliesTo(index)) {
                continue;
            }
            if (now[at] != later[at]) {
                setFieldText(field, record, now[at]);
            }
            ++at;
        }
    });
    held.info = meant.info;
    held.gsm.stationType = meant.gsm.stationType;
    for (std::size_t i = 0; i < held.administrators.size(); ++i) {
        held.administrators[i].name = meant.administrators[i].name;
    }
    for (std::size_t i = 0; i < held.scaling.size(); ++i) {
        held.scaling[i].unit = meant.scaling[i].unit;
    }
    if (!meant.sendValues[0].enabled) {
        held.sendValues = meant.sendValues;
        held.outputValues = meant.outputValues;
        for (std::size_t i = 0; i < held.digitalInputs.size(); ++i) {
            held.digitalInputs[i].value = meant.digitalInputs[i].value;
        }
    }
    for (std::size_t i = 0; i < held.switchPoints.size(); ++i) {
        SwitchPoint &point = held.switchPoints[i];
        const SwitchPoint &wanted = meant.switchPoints[i];
        if (point.target == 0 && wanted.target == 0) {
            point.start = wanted.start; // never set: the minute in which some file was read
        }
        if (!wanted.reactsToLimitValue()) {
            point.limitValue = wanted.limitValue;
        }
    }
}

QString addressForm(quint32 address)
{
    QStringList groups;
    for (int shift = 24; shift >= 0; shift -= 8) {
        groups += QStringLiteral("%1").arg((address >> shift) & 0xFFU, 3, 10, QLatin1Char('0'));
    }
    return groups.join(u'.');
}

QString holidayLine(QStringView slot)
{
    bool ok = false;
    const int digits = slot.toInt(&ok);
    if (slot.size() != 6 || !ok || digits < 0 || !slot.front().isDigit()) {
        return {};
    }
    const QDate date(2000 + digits / 10'000, digits / 100 % 100, digits % 100);
    return date.isValid() ? HolidayList::line(date) : QString();
}

} // namespace ktr
