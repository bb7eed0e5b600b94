#pragma once

#include <QList>
#include <QString>

#include <bitset>
#include <initializer_list>
#include <optional>

namespace ktr {

/// What the description of the module leaves open, and what is taken for so here. Each result names those
/// that it rests on.
enum class Assumption {
    ModuleClock,
    StartDateHolds,
    MondayToFriday,
    HolidaysChangeNothing,
    WorkingDaysWithoutHolidays,
    PeriodFromStart,
    OrderAtEqualTimes,
    CallOfAdministrator,
    DelayInSeconds,
    DelayBeginsAnew,
    PerIntervalLeftOut,
    EqualityIsExact,
    HysteresisEdge,
    FirstValueCounts,
    EndIsSilent,
    EmptyTextIsSilent,
    RepeatedWhileItStands,
    CombinationNeedsAll,
    MembersSpeakToo,
    SwitchedByCondition,
    OutputsSeenAtOnce,
    InversionLeftOut,
    CountersStandStill,
    AliveInMinutes,
    AliveIsSilentHere,
    ArchiveSecondValue,
    Last = ArchiveSecondValue,
};
inline constexpr std::size_t assumptionCount = static_cast<std::size_t>(Assumption::Last) + 1;

/// A set of them.
class Assumptions
{
public:
    Assumptions() = default;
    Assumptions(std::initializer_list<Assumption> all)
    {
        for (const Assumption each : all) {
            add(each);
        }
    }

    void add(Assumption assumption) { m_bits.set(static_cast<std::size_t>(assumption)); }
    void set(Assumption assumption, bool holds) { m_bits.set(static_cast<std::size_t>(assumption), holds); }
    void addIf(bool holds, Assumption assumption)
    {
        if (holds) {
            add(assumption);
        }
    }
    bool contains(Assumption assumption) const { return m_bits.test(static_cast<std::size_t>(assumption)); }
    bool isEmpty() const { return m_bits.none(); }
    Assumptions &operator|=(const Assumptions &other)
    {
        m_bits |= other.m_bits;
        return *this;
    }
    friend Assumptions operator|(Assumptions one, const Assumptions &other) { return one |= other; }
    bool operator==(const Assumptions &) const = default;

    /// In the order above.
    QList<Assumption> list() const;

private:
    std::bitset<assumptionCount> m_bits;
};

/// By which results refer to it: 1 for the first. Numbers stay as they are when others are added behind.
constexpr int assumptionNumber(Assumption assumption)
{
    return static_cast<int>(assumption) + 1;
}
/// The numbers of a set: "[4, 9]"; empty for none.
QString assumptionNumbers(const Assumptions &assumptions);

/// A name for programs, such as "delay-in-seconds"; it does not change.
QString assumptionName(Assumption assumption);
std::optional<Assumption> assumptionNamed(const QString &name);

/// Some can be read in another way that is plausible, too. A set of those that are read so is called
/// `otherwise`.
bool hasOtherReading(Assumption assumption);
/// A sentence or two for the user: what is assumed.
QString assumptionText(Assumption assumption, const Assumptions &otherwise = {});

} // namespace ktr
