#include "link/problems.h"

#include "config/fields.h"
#include "platform/text_rules.h"

#include <QCoreApplication>
#include <QDate>

#include <algorithm>

namespace ktr {

namespace {

constexpr QLatin1String holidaysControl("lst_swtch_frei");

QString told(const char *text)
{
    return QCoreApplication::translate("Problems", text);
}

/// A switch point without a target does nothing, and one that reacts to a limit value has no start.
bool isUsed(const SwitchPoint &point, const Field<SwitchPoint> &field)
{
    const bool isStart = &field == &fieldOf<SwitchPoint>(&SwitchPoint::start);
    return point.target != 0 && !(isStart && point.reactsToLimitValue());
}

template <class Record> bool isUsed(const Record &, const Field<Record> &)
{
    return true;
}

void checkFields(const Configuration &configuration, const QLocale &locale, QList<Problem> &problems)
{
    visitRecords(configuration, [&]<class ConstRecord>(const Group &group, ConstRecord &record, int index) {
        using Record = std::remove_const_t<ConstRecord>;
        for (const Field<Record> &field : fieldsOf<Record>()) {
            if (field.check == nullptr || !field.appliesTo(index) || !isUsed(record, field)) {
                continue;
            }
            const QString text = fieldText(field, record, locale);
            const QString message = field.check(text);
            if (!message.isEmpty()) {
                const QString shown = field.secret ? QStringLiteral("****") : text;
                problems.append({group.place(field.xmlName, index), field.control.forIndex(index), index,
                                 u'"' + shown + QLatin1String("\" ") + message});
            }
        }
    });
}

void checkLimitValues(const Configuration &configuration, QList<Problem> &problems)
{
    visitRecords(configuration, [&]<class Record>(const Group &group, Record &record, int index) {
        if constexpr (std::is_same_v<Record, const LimitValue>) {
            if (!LimitValue::isReference(index) && record.channel == 0 && !record.alarm.isEmpty()) {
                const Field<LimitValue> &channel = fieldOf<LimitValue>(&LimitValue::channel);
                problems.append({group.place(channel.xmlName, index), channel.control.forIndex(index), index,
                                 told(QT_TRANSLATE_NOOP("Problems", "there is a text but no channel"))});
            }
        }
    });
}

/// Whether a line of the list begins with the date that the module is sent.
bool isHoliday(const QString &line)
{
    const QString digits = line.left(6);
    const int number = digits.toInt();
    return digits.size() == 6 && std::ranges::all_of(digits, isDecimalDigit) &&
           QDate::isValid(2000 + number / 10'000, number / 100 % 100, number % 100);
}

/// The dates that the user adds are right; those of a file may be anything.
void checkHolidays(const HolidayList &holidays, QList<Problem> &problems)
{
    for (int i = 0; i < holidays.lines().size(); ++i) {
        const QString &line = holidays.lines()[i];
        if (!isHoliday(line)) {
            problems.append({QStringLiteral("Feiertag%1").arg(i), QString(holidaysControl), i,
                             u'"' + line + QLatin1String("\" ") +
                                 told(QT_TRANSLATE_NOOP("Problems", "is no date of the form YYMMDD"))});
        }
    }
}

void checkCommands(Configuration configuration, const CommandContext &context, QList<Problem> &problems)
{
    CommandSequence sequence;
    sequence.start();
    while (const auto next = sequence.next(configuration, context)) {
        Problem problem;
        problem.place = told(QT_TRANSLATE_NOOP("Problems", "step %1")).arg(next->step);
        const StepPlace at = placeOfStep(next->step);
        problem.control = at.control;
        problem.entry = at.entry;
        if (next->command.size() > longestCommand) {
            problem.message =
                told(QT_TRANSLATE_NOOP("Problems", "the command is too long: %1 characters of %2 at most"))
                    .arg(next->command.size())
                    .arg(longestCommand);
            problems.append(problem);
        }
        if (fromWindows1252(toWindows1252(next->command)) != next->command) {
            problem.message = told(
                QT_TRANSLATE_NOOP("Problems", "the command has characters that the module does not know"));
            problems.append(problem);
        }
    }
}

} // namespace

StepPlace placeOfStep(int step)
{
    struct Range
    {
        int first;
        int last;
        const ControlName &control;
    };
    static constexpr ControlName holidays{holidaysControl.data()};
    // Of each command the field that may be long, or the one that stands for the others.
    const auto controls = std::to_array<Range>({
        {1, 1, fieldOf<GsmSettings>(&GsmSettings::stationId).control},
        {2, 21, fieldOf<LimitValue>(&LimitValue::alarm).control},
        {22, 25, fieldOf<DigitalInput>(&DigitalInput::value).control},
        {26, 29, fieldOf<Scaling>(&Scaling::offset).control},
        {30, 31, fieldOf<OutputValue>(&OutputValue::digital).control},
        {32, 33, fieldOf<OutputValue>(&OutputValue::analog).control},
        {34, 51, fieldOf<Archiving>(&Archiving::interval).control},
        {52, 71, fieldOf<SwitchPoint>(&SwitchPoint::value).control},
        {72, 72, holidays},
        {73, 74, fieldOf<OutputHours>(&OutputHours::value).control},
        {75, 75, fieldOf<GsmSettings>(&GsmSettings::aliveCycle).control},
        {76, 76, fieldOf<EthernetSettings>(&EthernetSettings::ip).control},
        {78, 78, fieldOf<FileInfo>(&FileInfo::version).control},
    });
    for (const Range &range : controls) {
        if (step >= range.first && step <= range.last) {
            const int entry = step - range.first;
            return {range.control.forIndex(entry), entry};
        }
    }
    return {};
}

QList<Problem> findProblems(const Configuration &configuration, const CommandContext &context)
{
    QList<Problem> problems;
    checkFields(configuration, context.locale, problems);
    checkLimitValues(configuration, problems);
    checkHolidays(configuration.holidays, problems);
    checkCommands(configuration, context, problems);
    return problems;
}

} // namespace ktr
