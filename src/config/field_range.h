#pragma once

#include <QString>

#include <limits>

namespace ktr {

/// What a field's number counts.
enum class Unit {
    None,
    Minutes,
    OfChannel, ///< pulses, hours, degrees or the scaling's unit: channel_use.h knows which
};

/// The numbers that a field's text may be, for instance `Range::wholeNumbers(0, 32767).orEmpty()`.
struct Range
{
    enum class Kind {
        Number,
        WholeNumber,
        Choice, ///< of a list's items, a group's buttons or the combinations of boxes
    };
    enum class Outside {
        IsAFault,
        IsClamped,       ///< the nearest end is stored in its place
        DependsOnOthers, ///< other fields decide whether it matters: link/effect_problems
    };
    static constexpr double noEnd = std::numeric_limits<double>::max();

    double lowest = -noEnd;
    double highest = noEnd;
    Kind kind = Kind::Number;
    Outside outside = Outside::IsAFault;
    bool mayBeEmpty = false;

    static constexpr Range numbers(double lowest = -noEnd, double highest = noEnd)
    {
        return {.lowest = lowest, .highest = highest};
    }
    static constexpr Range wholeNumbers(double lowest, double highest = noEnd)
    {
        return {.lowest = lowest, .highest = highest, .kind = Kind::WholeNumber};
    }
    static constexpr Range choices(double lowest, double highest)
    {
        return {.lowest = lowest, .highest = highest, .kind = Kind::Choice};
    }
    constexpr Range orEmpty() const { return {lowest, highest, kind, outside, true}; }
    constexpr Range clamped() const { return {lowest, highest, kind, Outside::IsClamped, mayBeEmpty}; }
    constexpr Range dependingOnOthers() const
    {
        return {lowest, highest, kind, Outside::DependsOnOthers, mayBeEmpty};
    }

    /// What is stored of a text: where the range clamps, the nearest end for a number outside.
    QString stored(const QString &text) const;

    /// What is wrong with a text, as it goes on from the text in a message ("is no number"); empty when
    /// nothing.
    QString fault(const QString &text, Unit unit) const;

    /// For the user, as "whole number from 0 to 32767, in minutes"; empty for a choice.
    QString words(Unit unit) const;
};

/// What is wrong with a field, as the table of translations knows it, in the present language.
QString problemText(const char *text);

} // namespace ktr
