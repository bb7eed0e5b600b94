#include "link/problems.h"

#include "config/fields.h"
#include "platform/text_rules.h"

#include <QCoreApplication>

namespace ktr {

namespace {

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

/// The field that decides how long a step's command is.
QString controlOfStep(int step, int &entry)
{
    struct Range
    {
        int first;
        int last;
        const ControlName &control;
    };
    const std::array ranges = {Range{1, 1, fieldOf<GsmSettings>(&GsmSettings::stationId).control},
                               Range{2, 21, fieldOf<LimitValue>(&LimitValue::alarm).control},
                               Range{52, 71, fieldOf<SwitchPoint>(&SwitchPoint::value).control}};
    for (const Range &range : ranges) {
        if (step >= range.first && step <= range.last) {
            entry = step - range.first;
            return range.control.forIndex(entry);
        }
    }
    return {};
}

void checkCommands(Configuration configuration, const CommandContext &context, QList<Problem> &problems)
{
    CommandSequence sequence;
    sequence.start();
    while (const auto next = sequence.next(configuration, context)) {
        Problem problem;
        problem.place = told(QT_TRANSLATE_NOOP("Problems", "step %1")).arg(next->step);
        problem.control = controlOfStep(next->step, problem.entry);
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

QList<Problem> findProblems(const Configuration &configuration, const CommandContext &context)
{
    QList<Problem> problems;
    checkFields(configuration, context.locale, problems);
    checkLimitValues(configuration, problems);
    checkCommands(configuration, context, problems);
    return problems;
}

} // namespace ktr
