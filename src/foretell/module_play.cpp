#include "foretell/module_play.h"

#include "config/channel_use.h"
#include "config/channels.h"
#include "platform/text_rules.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ktr {

namespace {

constexpr int lessThan = 1;
constexpr int equalTo = 2;
constexpr int greaterThan = 3;

constexpr int whenExceeded = 15;
constexpr int whenUndershot = 16;

constexpr quint8 allAdministrators = 0x3F;
constexpr int firstOutput = 11;
constexpr int lastOutput = 14;

/// An empty text counts as 0, as the pages have it.
std::optional<double> numberOrZero(const QString &text)
{
    return text.trimmed().isEmpty() ? 0 : toNumber(text);
}

/// A time of so many units; one that no clock reaches where it is too long.
ModuleMs lasting(double units, ModuleMs unit)
{
    constexpr double longest = 1e14; // about 3000 years
    return static_cast<ModuleMs>(std::min(units * double(unit), longest));
}

quint32 membersOf(const LimitValue &value)
{
    const bool isMask = value.reference > 0 && value.reference <= LimitValue::allReferences;
    return isMask ? static_cast<quint32>(value.reference) : 0;
}

} // namespace

ModulePlay::ModulePlay(const Configuration &configuration, const ModuleSpan &span,
                       const Assumptions &otherwise)
    : m_span(span), m_otherwise(otherwise), m_now(span.from)
{
    configure(configuration);
}

QList<PlayEvent> ModulePlay::configure(const Configuration &configuration)
{
    const bool isCalendarNew = configuration.switchPoints != m_configuration.switchPoints ||
                               configuration.holidays != m_configuration.holidays;
    const bool isAliveNew = configuration.gsm.aliveCycle != m_configuration.gsm.aliveCycle;
    m_configuration = configuration;
    m_isStopped = false;
    m_ofMoment = 0;
    m_ofCall = 0;
    if (isCalendarNew) {
        m_calendar = planSwitchings(configuration, m_span, m_otherwise);
        const ModuleMs first = m_isBegun ? m_now + 1 : m_now; // those of this moment have been
        m_nextSwitching = std::ranges::lower_bound(m_calendar.switchings, first, {}, &Switching::at) -
                          m_calendar.switchings.begin();
    }
    if (isAliveNew) {
        const double minutes = toNumber(configuration.gsm.aliveCycle).value_or(0);
        constexpr ModuleMs msPerHour = 60 * msPerMinute;
        const ModuleMs unit = m_otherwise.contains(Assumption::AliveInMinutes) ? msPerHour : msPerMinute;
        m_aliveCycle = minutes > 0 ? lasting(std::max(minutes, 1.0), unit) : 0;
        m_alive = m_aliveCycle > 0 ? std::optional(m_now + m_aliveCycle) : std::nullopt;
    }
    for (int index = 0; index < LimitValue::count; ++index) {
        Entry made = entryOf(index);
        if (made.record == entry(index).record && made.delay == entry(index).delay) {
            made.state = entry(index).state;
            made.isFromTheBeginning = entry(index).isFromTheBeginning;
        }
        entry(index) = made;
    }
    for (int index = 0; index < LimitValue::firstReference; ++index) {
        if (entry(index).state.phase == Phase::Unknown) {
            evaluate(index);
        }
    }
    combine();
    settle();
    return std::exchange(m_events, {});
}

ModulePlay::Entry ModulePlay::entryOf(int index) const
{
    Entry made;
    made.record = m_configuration.limitValues[static_cast<std::size_t>(index)];
    const LimitValue &record = made.record;
    const double minutes = toNumber(record.repetitionInterval).value_or(0);
    made.interval = minutes > 0 ? lasting(minutes, msPerMinute) : 0;
    if (LimitValue::isReference(index)) {
        made.members = membersOf(record);
        made.isUsed = made.members != 0;
        for (int member = 0; member < LimitValue::firstReference; ++member) {
            const bool isWatched = m_configuration.limitValues[static_cast<std::size_t>(member)].channel != 0;
            if ((made.members >> member & 1U) != 0 && !isWatched) {
                made.unplayed = UnplayedWhy::NoMember;
            }
        }
        return made;
    }
    const auto limit = numberOrZero(record.limit);
    const auto hysteresis = numberOrZero(record.hysteresis);
    const auto delay = numberOrZero(record.delay);
    made.isUsed = record.channel > 0 && record.channel <= channelCount;
    made.limit = limit.value_or(0);
    made.hysteresis = std::max(hysteresis.value_or(0), 0.0);
    if (made.isUsed) {
        const bool isKnown = record.comparison >= lessThan && record.comparison <= greaterThan;
        made.unplayed = !limit                           ? std::optional(UnplayedWhy::BadLimit)
                        : !hysteresis || *hysteresis < 0 ? std::optional(UnplayedWhy::BadHysteresis)
                        : !delay || *delay < 0           ? std::optional(UnplayedWhy::BadDelay)
                        : !isKnown                       ? std::optional(UnplayedWhy::BadComparison)
                                                         : std::nullopt;
        const bool counts = channelMeasure(m_configuration, record.channel) == Measure::Pulses;
        const ModuleMs unit = m_otherwise.contains(Assumption::DelayInSeconds) ? msPerMinute : msPerSecond;
        made.delay = counts ? 0 : lasting(std::max(delay.value_or(0), 0.0), unit);
        addAssumptions(made);
    }
    return made;
}

void ModulePlay::addAssumptions(Entry &entry) const
{
    const LimitValue &record = entry.record;
    const Measure measure = channelMeasure(m_configuration, record.channel);
    const DigitalInput *const input = countingInputOf(m_configuration, record.channel);
    const OutputHours *const hours = outputHoursOf(m_configuration, record.channel);
    Assumptions &standing = entry.whenStanding;
    standing.addIf(measure == Measure::Pulses, Assumption::PerIntervalLeftOut);
    standing.addIf(measure == Measure::Hours, Assumption::CountersStandStill);
    standing.addIf((input != nullptr && input->inverted) || (hours != nullptr && hours->inverted),
                   Assumption::InversionLeftOut);
    standing.addIf(record.channel >= firstOutput && record.channel <= lastOutput,
                   Assumption::OutputsSeenAtOnce);
    standing.addIf(record.comparison == equalTo && measure != Measure::Binary, Assumption::EqualityIsExact);
    entry.whenOver = standing;
    standing.addIf(entry.delay > 0, Assumption::DelayInSeconds);
    standing.addIf(entry.delay > 0, Assumption::DelayBeginsAnew);
    entry.whenOver.addIf(entry.hysteresis > 0, Assumption::HysteresisEdge);
    entry.whenOver.add(Assumption::EndIsSilent);
}

bool ModulePlay::isMet(const Entry &entry, double value)
{
    switch (entry.record.comparison) {
    case lessThan:
        return value < entry.limit;
    case equalTo:
        return value == entry.limit;
    default:
        return value > entry.limit;
    }
}

bool ModulePlay::isBack(const Entry &entry, double value) const
{
    if (entry.record.comparison != equalTo && entry.hysteresis > 0 &&
        m_otherwise.contains(Assumption::HysteresisEdge)) {
        return entry.record.comparison == lessThan ? value > entry.limit + entry.hysteresis
                                                   : value < entry.limit - entry.hysteresis;
    }
    switch (entry.record.comparison) {
    case lessThan:
        return value >= entry.limit + entry.hysteresis;
    case equalTo:
        return std::abs(value - entry.limit) > entry.hysteresis;
    default:
        return value <= entry.limit - entry.hysteresis;
    }
}

Assumptions ModulePlay::standingOn(const Entry &entry)
{
    Assumptions all = entry.whenStanding;
    all.addIf(entry.isFromTheBeginning, Assumption::FirstValueCounts);
    return all;
}

PlayEvent &ModulePlay::tell(PlayEvent::Kind kind, const Assumptions &restsOn, int limitValue)
{
    PlayEvent event;
    event.at = m_now;
    event.kind = kind;
    event.limitValue = limitValue;
    event.restsOn = restsOn;
    m_events += event;
    ++m_ofCall;
    return m_events.back();
}

void ModulePlay::stop()
{
    if (!m_isStopped) {
        m_isStopped = true;
        m_changes.clear();
        tell(PlayEvent::Kind::Endless, {});
    }
}

/// One limit value of a channel, by the channel's present value.
void ModulePlay::evaluate(int index)
{
    Entry &each = entry(index);
    const auto value = each.isUsed && !each.unplayed ? this->value(each.record.channel) : std::nullopt;
    if (!value || m_isStopped) {
        return;
    }
    State &state = each.state;
    if (state.phase == Phase::Standing) {
        if (isBack(each, *value)) {
            finish(index);
        }
        return;
    }
    const bool met = isMet(each, *value);
    if (state.phase == Phase::Waiting) {
        if (!met) {
            state = {Phase::Normal, m_now, {}, 0};
            tell(PlayEvent::Kind::Withdrawn, standingOn(each), index);
        }
        return;
    }
    if (!met) {
        if (state.phase == Phase::Unknown) {
            state = {Phase::Normal, m_now, {}, 0};
        }
        return;
    }
    each.isFromTheBeginning = state.phase == Phase::Unknown;
    if (each.isFromTheBeginning && m_otherwise.contains(Assumption::FirstValueCounts)) {
        state = {Phase::Standing, m_now, {}, 0};
        tell(PlayEvent::Kind::Standing, standingOn(each), index);
        return;
    }
    if (each.delay == 0) {
        raise(index);
        return;
    }
    state = {Phase::Waiting, m_now, m_now + each.delay, 0};
    tell(PlayEvent::Kind::Waiting, standingOn(each), index).until = m_now + each.delay;
}

void ModulePlay::raise(int index)
{
    Entry &each = entry(index);
    each.state = {Phase::Standing, m_now, {}, 0};
    if (each.record.repetitions > 0 && each.interval > 0 && !each.record.alarm.isEmpty()) {
        each.state.next = m_now + each.interval;
    }
    Assumptions standing = standingOn(each);
    standing.addIf(each.record.alarm.isEmpty(), Assumption::EmptyTextIsSilent);
    tell(PlayEvent::Kind::Standing, standing, index);
    notify(index, PlayEvent::Kind::Notified);
    react(index, reactingType(index, true));
}

void ModulePlay::finish(int index)
{
    Entry &each = entry(index);
    each.state = {Phase::Normal, m_now, {}, 0};
    tell(PlayEvent::Kind::Over, each.whenOver, index);
    react(index, reactingType(index, false));
}

void ModulePlay::notify(int index, PlayEvent::Kind kind)
{
    const Entry &each = entry(index);
    const auto recipients = static_cast<quint8>(each.record.recipients & allAdministrators);
    const bool isSilent = isMember(index) && m_otherwise.contains(Assumption::MembersSpeakToo);
    if (each.record.alarm.isEmpty() || recipients == 0 || isSilent) {
        return;
    }
    Assumptions restsOn = standingOn(each);
    restsOn.addIf(kind == PlayEvent::Kind::Repeated, Assumption::RepeatedWhileItStands);
    restsOn.addIf(isMember(index), Assumption::MembersSpeakToo);
    PlayEvent &event = tell(kind, restsOn, index);
    event.recipients = recipients;
    event.text = each.record.alarm;
    event.repetition = each.state.repeated;
}

/// Whether a combination has it.
bool ModulePlay::isMember(int index) const
{
    return !LimitValue::isReference(index) && std::ranges::any_of(m_entries, [index](const Entry &other) {
        return (other.members >> index & 1U) != 0;
    });
}

/// The type of the switch points that react when it comes, or is over.
int ModulePlay::reactingType(int index, bool comes) const
{
    const LimitValue &record = m_entries[static_cast<std::size_t>(index)].record;
    const bool isBelow = !LimitValue::isReference(index) && record.comparison == lessThan;
    const bool isTurned = isBelow && m_otherwise.contains(Assumption::SwitchedByCondition);
    return comes != isTurned ? whenExceeded : whenUndershot;
}

/// The switch points that react to it.
void ModulePlay::react(int index, int type)
{
    for (int point = 0; point < SwitchPoint::count; ++point) {
        const SwitchPoint &each = m_configuration.switchPoints[static_cast<std::size_t>(point)];
        if (each.type != type || each.limitValue != index || each.target <= 0 || each.target >= targetCount ||
            m_isStopped) {
            continue;
        }
        const bool comes = entry(index).state.phase == Phase::Standing;
        Assumptions restsOn = comes ? standingOn(entry(index)) : entry(index).whenOver;
        restsOn.add(Assumption::SwitchedByCondition);
        restsOn.addIf(each.target >= firstAdministratorTarget, Assumption::CallOfAdministrator);
        PlayEvent &event = tell(PlayEvent::Kind::Switched, restsOn, index);
        event.point = point;
        event.target = each.target;
        event.value = valueSent(each);
        setOutput(each.target, event.value);
    }
}

/// Combinations know no delay of their own.
void ModulePlay::combine()
{
    for (int index = LimitValue::firstReference; index < LimitValue::count; ++index) {
        Entry &each = entry(index);
        if (!each.isUsed || each.unplayed || m_isStopped) {
            continue;
        }
        bool stand = true;
        bool anyStands = false;
        Assumptions standing{Assumption::CombinationNeedsAll};
        Assumptions over{Assumption::CombinationNeedsAll, Assumption::EndIsSilent};
        for (int member = 0; member < LimitValue::firstReference; ++member) {
            if ((each.members >> member & 1U) != 0) {
                const bool stands = entry(member).state.phase == Phase::Standing;
                stand = stand && stands;
                anyStands = anyStands || stands;
                standing |= standingOn(entry(member));
                over |= entry(member).whenOver;
            }
        }
        stand = m_otherwise.contains(Assumption::CombinationNeedsAll) ? anyStands : stand;
        const bool stood = each.state.phase == Phase::Standing;
        each.whenStanding = standing;
        each.whenOver = over;
        if (stand && !stood) {
            raise(index);
        } else if (!stand && stood) {
            finish(index);
        } else if (each.state.phase == Phase::Unknown) {
            each.state = {Phase::Normal, m_now, {}, 0};
        }
    }
}

/// What is set is a channel's new value, too; administrators have none.
void ModulePlay::setOutput(int target, const QString &value)
{
    const auto number = toNumber(value);
    if (target >= firstAdministratorTarget || !number ||
        m_otherwise.contains(Assumption::OutputsSeenAtOnce)) {
        return;
    }
    m_changes.emplace_back(targetCode(target), *number);
}

/// Looks at changed channels until nothing changes any more.
void ModulePlay::settle()
{
    while (!m_changes.empty() && !m_isStopped) {
        const auto [channel, value] = m_changes.front();
        m_changes.pop_front();
        if (++m_ofMoment > mostAtOnce) {
            stop();
            return;
        }
        m_values[static_cast<std::size_t>(channel)] = value;
        for (int index = 0; index < LimitValue::firstReference; ++index) {
            if (entry(index).record.channel == channel) {
                evaluate(index);
            }
        }
        combine();
    }
}

std::optional<ModuleMs> ModulePlay::nextDue() const
{
    if (m_isStopped) {
        return std::nullopt;
    }
    std::optional<ModuleMs> next = m_alive;
    const auto consider = [&next](const std::optional<ModuleMs> &due) {
        next = due && (!next || *due < *next) ? due : next;
    };
    if (m_nextSwitching < m_calendar.switchings.size()) {
        consider(m_calendar.switchings[m_nextSwitching].at);
    }
    for (const Entry &each : m_entries) {
        consider(each.state.next);
    }
    return next;
}

/// All that is due at this moment: the calendar first.
void ModulePlay::carryOut(ModuleMs due)
{
    m_ofMoment = due == m_now ? m_ofMoment : 0;
    m_now = std::max(m_now, due);
    while (m_nextSwitching < m_calendar.switchings.size() &&
           m_calendar.switchings[m_nextSwitching].at <= due) {
        const Switching &each = m_calendar.switchings[m_nextSwitching++];
        PlayEvent &event = tell(PlayEvent::Kind::Switched, each.restsOn);
        --m_ofCall; // the calendar has an end
        event.point = each.point;
        event.target = each.target;
        event.value = each.value;
        setOutput(each.target, each.value);
    }
    settle();
    if (m_alive && *m_alive <= due) {
        m_alive = *m_alive + m_aliveCycle;
        tell(PlayEvent::Kind::Alive, {Assumption::AliveInMinutes, Assumption::AliveIsSilentHere});
        --m_ofCall;
    }
    for (int index = 0; index < LimitValue::count && !m_isStopped; ++index) {
        Entry &each = entry(index);
        if (!each.state.next || *each.state.next > due) {
            continue;
        }
        if (each.state.phase == Phase::Waiting) {
            raise(index);
            combine();
            settle();
            continue;
        }
        ++each.state.repeated;
        const bool isMore = each.state.repeated < each.record.repetitions;
        each.state.next = isMore ? std::optional(due + each.interval) : std::nullopt;
        notify(index, PlayEvent::Kind::Repeated);
    }
}

QList<PlayEvent> ModulePlay::advance(ModuleMs to)
{
    m_ofCall = 0;
    for (auto due = nextDue(); due && *due <= to; due = nextDue()) {
        carryOut(*due);
        if (m_ofCall > mostOfCall) {
            stop();
        }
    }
    m_isBegun = true;
    if (to > m_now) {
        m_now = to;
        m_ofMoment = 0;
    }
    return std::exchange(m_events, {});
}

QList<PlayEvent> ModulePlay::setValue(ModuleMs at, int channel, double value)
{
    QList<PlayEvent> events = advance(at);
    if (channel >= 1 && channel <= channelCount && !m_isStopped) {
        m_ofMoment = 0;
        m_changes.emplace_back(channel, value);
        settle();
        events += std::exchange(m_events, {});
    }
    return events;
}

} // namespace ktr
