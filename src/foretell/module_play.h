#pragma once

#include "foretell/switch_plan.h"

#include <array>
#include <deque>

namespace ktr {

/// Something that a module with a configuration does, or that becomes so.
struct PlayEvent
{
    enum class Kind {
        Waiting,   ///< a limit is passed, its delay runs
        Withdrawn, ///< no longer so before the delay was over
        Standing,  ///< a limit value has come
        Over,
        Notified,
        Repeated,
        Switched, ///< by the calendar or a limit value
        Alive,    ///< the alive report
        Endless,  ///< limit values and switch points chase each other; from here on nothing is played
    };

    ModuleMs at = 0;
    Kind kind = Kind::Waiting;
    int limitValue = -1;   ///< 0..19 where it comes from one
    int point = -1;        ///< the switch point, 0..19, that switched
    int repetition = 0;    ///< counted from 1
    quint8 recipients = 0; ///< a bit for each administrator
    QString text;          ///< of the notification
    int target = 0;        ///< what was switched
    QString value;         ///< to this
    ModuleMs until = 0;    ///< when the delay is over
    Assumptions restsOn;

    bool operator==(const PlayEvent &) const = default;
};

/// Why a limit value in use is not played.
enum class UnplayedWhy { BadLimit, BadHysteresis, BadDelay, BadComparison, NoMember };

/// Plays what a module with a configuration does while time passes and its values change: limit values with
/// delay, hysteresis, repetitions and combinations, switch points by the calendar and by limit values, alive
/// reports. Time is handed in and never goes back.
class ModulePlay
{
public:
    /// Within one moment or one call; more is endless.
    static constexpr int mostAtOnce = 500;
    static constexpr int mostOfCall = 100'000;

    enum class Phase { Unknown, Normal, Waiting, Standing };
    struct State
    {
        Phase phase = Phase::Unknown;
        ModuleMs since = 0;
        std::optional<ModuleMs> next; ///< when the delay is over, or the next repetition
        int repeated = 0;
    };

    /// The calendar is planned to `end`; behind it no switch point switches by it.
    /// What is read `otherwise` holds for all of the play.
    ModulePlay(const Configuration &configuration, const ModuleSpan &span, const Assumptions &otherwise = {});

    /// An edited configuration: limit values that it leaves alone keep their state, others begin anew.
    QList<PlayEvent> configure(const Configuration &configuration);

    /// A channel (1 to 18) has this value, in its unit, from `at` on; what is due until then comes first.
    QList<PlayEvent> setValue(ModuleMs at, int channel, double value);
    /// All that is due until then, `to` included.
    QList<PlayEvent> advance(ModuleMs to);

    ModuleMs now() const { return m_now; }
    /// When something happens by itself next.
    std::optional<ModuleMs> nextDue() const;
    std::optional<double> value(int channel) const { return m_values[static_cast<std::size_t>(channel)]; }
    const State &state(int limitValue) const { return m_entries[static_cast<std::size_t>(limitValue)].state; }
    std::optional<UnplayedWhy> whyUnplayed(int limitValue) const
    {
        return m_entries[static_cast<std::size_t>(limitValue)].unplayed;
    }
    const SwitchPlan &calendar() const { return m_calendar; }
    bool isStopped() const { return m_isStopped; }

private:
    /// A limit value with its numbers.
    struct Entry
    {
        LimitValue record;
        bool isUsed = false;
        std::optional<UnplayedWhy> unplayed;
        quint32 members = 0; ///< of a combination
        double limit = 0;
        double hysteresis = 0;
        ModuleMs delay = 0;
        ModuleMs interval = 0;
        Assumptions whenStanding;
        Assumptions whenOver;
        bool isFromTheBeginning = false; ///< its first value was beyond the limit
        State state;
    };

    static bool isMet(const Entry &entry, double value);
    bool isBack(const Entry &entry, double value) const;
    static Assumptions standingOn(const Entry &entry);
    void evaluate(int index);
    void combine();
    bool isMember(int index) const;
    int reactingType(int index, bool comes) const;
    void raise(int index);
    void finish(int index);
    void notify(int index, PlayEvent::Kind kind);
    void react(int index, int type);
    void setOutput(int target, const QString &value);
    void settle();
    void carryOut(ModuleMs due);
    PlayEvent &tell(PlayEvent::Kind kind, const Assumptions &restsOn, int limitValue = -1);
    void stop();
    Entry &entry(int index) { return m_entries[static_cast<std::size_t>(index)]; }

    Entry entryOf(int index) const;
    void addAssumptions(Entry &entry) const;

    Configuration m_configuration;
    ModuleSpan m_span;
    Assumptions m_otherwise;
    SwitchPlan m_calendar;
    qsizetype m_nextSwitching = 0;
    std::array<Entry, LimitValue::count> m_entries;
    std::array<std::optional<double>, 19> m_values; ///< by channel
    std::deque<std::pair<int, double>> m_changes;   ///< of channels, not looked at yet
    std::optional<ModuleMs> m_alive;
    ModuleMs m_aliveCycle = 0;
    ModuleMs m_now = 0;
    int m_ofMoment = 0;
    int m_ofCall = 0;
    bool m_isStopped = false;
    bool m_isBegun = false;
    QList<PlayEvent> m_events;
};

} // namespace ktr
