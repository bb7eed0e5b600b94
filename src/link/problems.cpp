#include "link/problems.h"

#include "config/fields.h"
#include "link/effect_problems.h"
#include "link/neighbour_problems.h"
#include "platform/text_rules.h"

#include <QDate>
#include <QRegularExpression>

#include <algorithm>

namespace ktr {

namespace {

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
            if (!field.appliesTo(index) || !isUsed(record, field)) {
                continue;
            }
            const QString text = fieldText(field, record, locale);
            const QString message = field.fault(text);
            if (!message.isEmpty()) {
                const QString shown = field.secret ? QString(text.size(), u'*') : text;
                problems.append({group.place(field.xmlName, index), field.control.forIndex(index), index,
                                 quotedInRemark(shown) + message});
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

/// Dates that the user adds are valid; those of a file may be anything.
void checkHolidays(const HolidayList &holidays, QList<Problem> &problems)
{
    for (int i = 0; i < holidays.lines().size(); ++i) {
        const QString &line = holidays.lines()[i];
        const auto isSame = [&line](const QString &other) { return other.left(6) == line.left(6); };
        const auto begin = holidays.lines().begin();
        const QString fault =
            !isHoliday(line) ? problemText(QT_TRANSLATE_NOOP("Problems", "is no date of the form YYMMDD"))
            : std::any_of(begin, begin + i, isSame)
                ? problemText(QT_TRANSLATE_NOOP("Problems", "is in the list twice"))
                : QString();
        if (!fault.isEmpty()) {
            problems.append(
                {HolidayList::elementName(i), holidaysControl.forIndex(0), i, quotedInRemark(line) + fault});
        }
    }
}

QString lengthFault(const QString &command)
{
    return command.size() > longestCommand
               ? problemText(
                     QT_TRANSLATE_NOOP("Problems", "the command is too long: %1 characters of %2 at most"))
                     .arg(command.size())
                     .arg(longestCommand)
               : QString();
}

QString letterFault(const QString &command)
{
    for (const uint c : command.toUcs4()) {
        const char32_t code = c;
        const QString letter = QString::fromUcs4(&code, 1);
        if (fromWindows1252(toWindows1252(letter)) != letter) {
            return problemText(QT_TRANSLATE_NOOP("Problems",
                                                 "the command has \"%1\", which the module does not know"))
                .arg(letter);
        }
    }
    return {};
}

/// A text that looks like a service command ("§88"): a module may take it for one.
QString serviceFault(int step, const QString &command)
{
    static const QRegularExpression service(QStringLiteral("§,?[0-9]+"));
    const QRegularExpressionMatch match = service.match(command);
    return step != steps::first && match.hasMatch()
               ? problemText(QT_TRANSLATE_NOOP("Problems", "the command has \"%1\", which orders a service"))
                     .arg(match.captured())
               : QString();
}

void checkCommands(Configuration configuration, const CommandContext &context, QList<Problem> &problems)
{
    const auto isReported = [&problems](const StepPlace &at) {
        return std::ranges::any_of(problems, [&at](const Problem &problem) {
            return problem.control == at.control && problem.entry == at.entry;
        });
    };
    CommandSequence sequence;
    sequence.start();
    while (const auto next = sequence.next(configuration, context)) {
        const StepPlace at = placeOfStep(next->step);
        // The message of the field is more precise.
        const QString letter = isReported(at) ? QString() : letterFault(next->command);
        for (const QString &message :
             {lengthFault(next->command), letter, serviceFault(next->step, next->command)}) {
            if (!message.isEmpty()) {
                problems.append({problemText(QT_TRANSLATE_NOOP("Problems", "step %1")).arg(next->step),
                                 at.control, at.entry, message});
            }
        }
    }
}

} // namespace

QString commandFault(const QString &command)
{
    const QString length = lengthFault(command);
    return length.isEmpty() ? letterFault(command) : length;
}

QList<Problem> findProblems(const Configuration &configuration, const CommandContext &context,
                            const QList<Neighbour> &neighbours)
{
    QList<Problem> problems;
    checkFields(configuration, context.locale, problems);
    findEffectProblems(configuration, context.now, problems);
    checkHolidays(configuration.holidays, problems);
    checkCommands(configuration, context, problems);
    findNeighbourProblems(configuration, neighbours, problems);
    return problems;
}

} // namespace ktr
