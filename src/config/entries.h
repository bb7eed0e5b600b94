#pragma once

#include "config/configuration.h"
#include "platform/environment.h"
#include "platform/status.h"

#include <QList>

#include <array>

namespace ktr {

// What can be done with limit values and switch points as wholes. Combinations and switch points name limit
// values by their numbers: they follow one that moves.

enum class EntryList { LimitValues, SwitchPoints };
inline constexpr int entriesOfList = 20; ///< of either
static_assert(LimitValue::count == entriesOfList && SwitchPoint::count == entriesOfList);

/// Calls visitor(records) with the array of a list.
template <class AnyConfiguration, class Visitor>
decltype(auto) withEntries(AnyConfiguration &configuration, EntryList list, const Visitor &visitor)
{
    return list == EntryList::LimitValues ? visitor(configuration.limitValues)
                                          : visitor(configuration.switchPoints);
}

/// An entry, by its index.
struct EntryPlace
{
    EntryList list = EntryList::LimitValues;
    int entry = 0;

    bool operator==(const EntryPlace &) const = default;
};

/// The entries that name this one: combinations, and switch points whose type reacts to it. Nothing names a
/// switch point.
QList<EntryPlace> referencesTo(const Configuration &configuration, const EntryPlace &named);

/// Which limit value each index stands for now.
using NewNumbers = std::array<int, LimitValue::count>;
NewNumbers unchangedNumbers();

/// Lets combinations and switch points name the limit values by other numbers. A combination loses one that
/// it cannot have, which is a combination itself.
void renumber(Configuration &configuration, const NewNumbers &numbers);

/// Whether an entry does nothing, and says nothing that a user would miss.
bool isFree(const Configuration &configuration, const EntryPlace &place);

/// Whether limit values of these indexes are of one kind: both watch a channel, or both combine. Switch
/// points are all of one kind.
bool isSameKind(EntryList list, int entry, int other);

/// Makes an entry one of a new configuration. Those that name it still do.
void clearEntry(Configuration &configuration, const EntryPlace &place, const Environment &environment);

/// Moves `count` entries so that the first of them stands at `to`; those between make room. Fails where an
/// entry would come to stand among those of another kind.
Status moveEntries(Configuration &configuration, const EntryPlace &first, int count, int to);

/// Copies entries, each to the next free one that nothing names, behind it or else from the beginning. Fails,
/// and nothing is copied, when there are not enough. Gives the index of the first copy.
Status duplicateEntries(Configuration &configuration, EntryList list, const QList<int> &entries,
                        int &firstCopy);

} // namespace ktr
