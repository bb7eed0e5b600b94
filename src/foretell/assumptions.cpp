#include "foretell/assumptions.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace ktr {

namespace {

struct AssumptionRow
{
    Assumption assumption;
    const char *name;
    const char *text;
    const char *otherwise = nullptr; ///< the other reading, where there is a plausible one
};

constexpr std::array assumptionRows = {
    AssumptionRow{Assumption::ModuleClock, "module-clock",
                  QT_TRANSLATE_NOOP("Foretelling",
                                    "The module's clock is set by a transmission alone and knows no "
                                    "summer time: it goes on as it is when the clocks change here.")},
    AssumptionRow{
        Assumption::StartDateHolds, "start-date-holds",
        QT_TRANSLATE_NOOP("Foretelling", "A switch point that comes back does nothing before the date of its "
                                         "start; from then on it switches at the start's time of day."),
        QT_TRANSLATE_NOOP("Foretelling", "A switch point that comes back switches at the start's time of day "
                                         "on any date, also before that of its start.")},
    AssumptionRow{
        Assumption::MondayToFriday, "monday-to-friday",
        QT_TRANSLATE_NOOP("Foretelling",
                          "\"Weekdays\" are Monday to Friday, the weekend is Saturday and Sunday.")},
    AssumptionRow{
        Assumption::HolidaysChangeNothing, "holidays-change-nothing",
        QT_TRANSLATE_NOOP("Foretelling",
                          "On a holiday the types that do not speak of holidays switch as on any other day."),
        QT_TRANSLATE_NOOP("Foretelling",
                          "On a holiday the types that do not speak of holidays do not switch.")},
    AssumptionRow{
        Assumption::WorkingDaysWithoutHolidays, "working-days-without-holidays",
        QT_TRANSLATE_NOOP("Foretelling", "Type 10 means working days: Monday to Friday, but no holiday."),
        QT_TRANSLATE_NOOP("Foretelling",
                          "Type 10 means working days with Saturday: Monday to Saturday, but no holiday.")},
    AssumptionRow{Assumption::PeriodFromStart, "period-from-start",
                  QT_TRANSLATE_NOOP("Foretelling", "Periods are counted from the start, also when the module "
                                                   "was off or was given the switch point later.")},
    AssumptionRow{
        Assumption::OrderAtEqualTimes, "order-at-equal-times",
        QT_TRANSLATE_NOOP("Foretelling", "Of several switch points with the same target at the same time the "
                                         "one with the highest number comes last and decides."),
        QT_TRANSLATE_NOOP("Foretelling", "Of several switch points with the same target at the same time the "
                                         "one with the lowest number comes last and decides.")},
    AssumptionRow{Assumption::CallOfAdministrator, "call-of-administrator",
                  QT_TRANSLATE_NOOP("Foretelling",
                                    "What an administrator gets whom a switch point calls, and what the "
                                    "switch point's value means there, is not known.")},
    AssumptionRow{Assumption::DelayInSeconds, "delay-in-seconds",
                  QT_TRANSLATE_NOOP("Foretelling", "The delay of a limit value counts seconds."),
                  QT_TRANSLATE_NOOP("Foretelling", "The delay of a limit value counts minutes.")},
    AssumptionRow{Assumption::DelayBeginsAnew, "delay-begins-anew",
                  QT_TRANSLATE_NOOP("Foretelling",
                                    "During the delay the limit must be passed all the time, without "
                                    "regard to the hysteresis; otherwise the delay begins anew.")},
    AssumptionRow{Assumption::PerIntervalLeftOut, "per-interval-left-out",
                  QT_TRANSLATE_NOOP("Foretelling",
                                    "On an input that counts pulses the value given here is compared as it "
                                    "is and at once; over which interval the module counts is not known.")},
    AssumptionRow{Assumption::EqualityIsExact, "equality-is-exact",
                  QT_TRANSLATE_NOOP("Foretelling",
                                    "\"=\" holds when value and limit are the same number; with a "
                                    "hysteresis it ends when they differ by more than that.")},
    AssumptionRow{
        Assumption::HysteresisEdge, "hysteresis-edge",
        QT_TRANSLATE_NOOP("Foretelling",
                          "A limit value is over once the value has come back by the hysteresis or more."),
        QT_TRANSLATE_NOOP(
            "Foretelling",
            "A limit value is over only once the value has come back by more than the hysteresis.")},
    AssumptionRow{Assumption::FirstValueCounts, "first-value-counts",
                  QT_TRANSLATE_NOOP("Foretelling", "What is beyond its limit from the beginning, as after a "
                                                   "start of the module, counts like what passes it later."),
                  QT_TRANSLATE_NOOP("Foretelling",
                                    "What is beyond its limit from the beginning, as after a start of "
                                    "the module, stands without anybody being told.")},
    AssumptionRow{Assumption::EndIsSilent, "end-is-silent",
                  QT_TRANSLATE_NOOP("Foretelling", "When a limit value is over, nobody is told.")},
    AssumptionRow{Assumption::EmptyTextIsSilent, "empty-text-is-silent",
                  QT_TRANSLATE_NOOP("Foretelling", "A limit value without a text sends nothing.")},
    AssumptionRow{Assumption::RepeatedWhileItStands, "repeated-while-it-stands",
                  QT_TRANSLATE_NOOP(
                      "Foretelling",
                      "A notification is repeated only as long as its limit value stands, the first time one "
                      "interval after it, and nobody deletes the module's notifications meanwhile.")},
    AssumptionRow{Assumption::CombinationNeedsAll, "combination-needs-all",
                  QT_TRANSLATE_NOOP("Foretelling",
                                    "A combination comes when all of its limit values stand, each "
                                    "after its own delay, and is over when the first of them is."),
                  QT_TRANSLATE_NOOP("Foretelling", "A combination comes when one of its limit values stands, "
                                                   "and is over when the last of them is.")},
    AssumptionRow{
        Assumption::MembersSpeakToo, "members-speak-too",
        QT_TRANSLATE_NOOP(
            "Foretelling",
            "A limit value that belongs to a combination sends its own notification all the same."),
        QT_TRANSLATE_NOOP("Foretelling",
                          "A limit value that belongs to a combination sends no notification of its own.")},
    AssumptionRow{Assumption::SwitchedByCondition, "switched-by-condition",
                  QT_TRANSLATE_NOOP("Foretelling",
                                    "Type 15 switches when its limit value comes, after the delay, and "
                                    "type 16 when it is over, whatever the comparison is."),
                  QT_TRANSLATE_NOOP(
                      "Foretelling",
                      "Type 15 switches when the value passes its limit upwards, type 16 when it does so "
                      "downwards: with the comparison \"<\" type 16 switches when the limit value comes.")},
    AssumptionRow{
        Assumption::OutputsSeenAtOnce, "outputs-seen-at-once",
        QT_TRANSLATE_NOOP(
            "Foretelling",
            "A limit value on an output sees at once what a switch point sets there, in the same unit."),
        QT_TRANSLATE_NOOP("Foretelling",
                          "A limit value on an output does not see what a switch point sets there.")},
    AssumptionRow{Assumption::InversionLeftOut, "inversion-left-out",
                  QT_TRANSLATE_NOOP("Foretelling",
                                    "The value given for an inverted input is what its limit value sees.")},
    AssumptionRow{
        Assumption::CountersStandStill, "counters-stand-still",
        QT_TRANSLATE_NOOP("Foretelling",
                          "Counters of operating hours have the value that is given here and do not run.")},
    AssumptionRow{Assumption::AliveInMinutes, "alive-in-minutes",
                  QT_TRANSLATE_NOOP("Foretelling", "The alive cycle counts minutes from the beginning of the "
                                                   "time that is played; 0 stands for none."),
                  QT_TRANSLATE_NOOP("Foretelling", "The alive cycle counts hours from the beginning of the "
                                                   "time that is played; 0 stands for none.")},
    AssumptionRow{
        Assumption::AliveIsSilentHere, "alive-is-silent-here",
        QT_TRANSLATE_NOOP("Foretelling", "What an alive report says and who gets it is not known.")},
    AssumptionRow{
        Assumption::ArchiveSecondValue, "archive-second-value",
        QT_TRANSLATE_NOOP("Foretelling",
                          "Of the two values of a record of the archive the second is the measured one.")},
};

constexpr bool areInOrder()
{
    for (std::size_t at = 0; at < assumptionRows.size(); ++at) {
        if (static_cast<std::size_t>(assumptionRows[at].assumption) != at) {
            return false;
        }
    }
    return assumptionRows.size() == assumptionCount;
}
static_assert(areInOrder());

const AssumptionRow &rowOf(Assumption assumption)
{
    return assumptionRows[static_cast<std::size_t>(assumption)];
}

} // namespace

QList<Assumption> Assumptions::list() const
{
    QList<Assumption> all;
    for (std::size_t at = 0; at < assumptionCount; ++at) {
        if (m_bits.test(at)) {
            all += static_cast<Assumption>(at);
        }
    }
    return all;
}

QString assumptionNumbers(const Assumptions &assumptions)
{
    QStringList numbers;
    for (const Assumption each : assumptions.list()) {
        numbers += QString::number(assumptionNumber(each));
    }
    return numbers.isEmpty() ? QString() : u'[' + numbers.join(QLatin1String(", ")) + u']';
}

QString assumptionName(Assumption assumption)
{
    return QLatin1String(rowOf(assumption).name);
}

std::optional<Assumption> assumptionNamed(const QString &name)
{
    const auto found = std::ranges::find_if(
        assumptionRows, [&name](const AssumptionRow &row) { return name == QLatin1String(row.name); });
    return found == assumptionRows.end() ? std::nullopt : std::optional(found->assumption);
}

bool hasOtherReading(Assumption assumption)
{
    return rowOf(assumption).otherwise != nullptr;
}

QString assumptionText(Assumption assumption, const Assumptions &otherwise)
{
    const AssumptionRow &row = rowOf(assumption);
    const bool isOther = otherwise.contains(assumption) && row.otherwise != nullptr;
    return QCoreApplication::translate("Foretelling", isOther ? row.otherwise : row.text);
}

} // namespace ktr
