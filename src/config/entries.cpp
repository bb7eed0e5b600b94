#include "config/entries.h"

#include "config/fields.h"

#include <QCoreApplication>

#include <algorithm>
#include <numeric>

namespace ktr {

namespace {

auto entryAt(auto &records, int entry) -> decltype(records.data())
{
    return records.data() + entry;
}

bool isMask(double reference)
{
    return reference >= 0 && reference <= LimitValue::allReferences;
}

bool combines(const LimitValue &combination, int entry)
{
    return entry < LimitValue::firstReference && isMask(combination.reference) &&
           (static_cast<unsigned>(combination.reference) >> static_cast<unsigned>(entry) & 1U) != 0;
}

double renumbered(double reference, const NewNumbers &numbers)
{
    if (!isMask(reference)) {
        return reference;
    }
    const auto mask = static_cast<unsigned>(reference);
    unsigned result = 0;
    for (unsigned bit = 0; bit < LimitValue::firstReference; ++bit) {
        const int number = numbers[bit];
        if ((mask >> bit & 1U) != 0 && !LimitValue::isReference(number)) {
            result |= 1U << static_cast<unsigned>(number);
        }
    }
    return result == mask ? reference : result;
}

bool isNothing(const QString &number)
{
    return number.isEmpty() || number == u'0';
}

bool doesNothing(const LimitValue &value, int entry)
{
    const bool watches =
        LimitValue::isReference(entry) ? value.reference != 0 : value.channel != 0 || !isNothing(value.limit);
    return !watches && value.alarm.isEmpty();
}

bool doesNothing(const SwitchPoint &point, int)
{
    return point.target == 0 && point.type == 0 && isNothing(point.value);
}

int nextFree(const Configuration &configuration, const EntryPlace &behind)
{
    for (int step = 1; step < entriesOfList; ++step) {
        const EntryPlace place{behind.list, (behind.entry + step) % entriesOfList};
        if (isSameKind(behind.list, behind.entry, place.entry) && isFree(configuration, place) &&
            referencesTo(configuration, place).isEmpty()) {
            return place.entry;
        }
    }
    return -1;
}

} // namespace

QList<EntryPlace> referencesTo(const Configuration &configuration, const EntryPlace &named)
{
    QList<EntryPlace> places;
    if (named.list != EntryList::LimitValues) {
        return places;
    }
    for (int entry = LimitValue::firstReference; entry < LimitValue::count; ++entry) {
        if (combines(*entryAt(configuration.limitValues, entry), named.entry)) {
            places.append({EntryList::LimitValues, entry});
        }
    }
    for (int entry = 0; const SwitchPoint &point : configuration.switchPoints) {
        if (point.reactsToLimitValue() && point.limitValue == named.entry) {
            places.append({EntryList::SwitchPoints, entry});
        }
        ++entry;
    }
    return places;
}

NewNumbers unchangedNumbers()
{
    NewNumbers numbers{};
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

void renumber(Configuration &configuration, const NewNumbers &numbers)
{
    for (int entry = LimitValue::firstReference; entry < LimitValue::count; ++entry) {
        LimitValue &value = *entryAt(configuration.limitValues, entry);
        value.reference = renumbered(value.reference, numbers);
    }
    for (SwitchPoint &point : configuration.switchPoints) {
        const bool known = point.limitValue >= 0 && point.limitValue < LimitValue::count;
        if (point.reactsToLimitValue() && known) {
            point.limitValue = static_cast<qint16>(numbers[static_cast<std::size_t>(point.limitValue)]);
        }
    }
}

bool isFree(const Configuration &configuration, const EntryPlace &place)
{
    return withEntries(configuration, place.list, [&place](const auto &records) {
        return doesNothing(*entryAt(records, place.entry), place.entry);
    });
}

bool isSameKind(EntryList list, int entry, int other)
{
    return list == EntryList::SwitchPoints ||
           LimitValue::isReference(entry) == LimitValue::isReference(other);
}

void clearEntry(Configuration &configuration, const EntryPlace &place, const Environment &environment)
{
    withEntries(configuration, place.list, [&]<class Record>(std::array<Record, entriesOfList> &records) {
        Record &record = *entryAt(records, place.entry);
        record = Record();
        for (const Field<Record> &field : fieldsOf<Record>()) {
            // What "new" leaves as it was takes what a file's reader gives it.
            applyPreset(field, record, field.whenNew.keepsValue() ? field.whenEmpty : field.whenNew,
                        environment, place.entry);
        }
    });
}

Status moveEntries(Configuration &configuration, const EntryPlace &first, int count, int to)
{
    const int from = first.entry;
    const int last = std::max(from, to) + count - 1;
    if (to < 0 || last >= entriesOfList) {
        return Status::failed(
            QCoreApplication::translate("Entries", "There is no place %1").arg(to < 0 ? to + 1 : to + count));
    }
    if (!isSameKind(first.list, std::min(from, to), last)) {
        return Status::failed(QCoreApplication::translate(
            "Entries", "Limit values 1 to 16 watch a channel, 17 to 20 combine those: none of them can take "
                       "the place of the others"));
    }
    NewNumbers standing = unchangedNumbers(); // the old index of what stands at each place
    const auto rotate = [from, to, count](auto begin) {
        if (to > from) {
            std::rotate(begin + from, begin + from + count, begin + to + count);
        } else {
            std::rotate(begin + to, begin + from, begin + from + count);
        }
    };
    rotate(standing.begin());
    withEntries(configuration, first.list, [&rotate](auto &records) { rotate(records.begin()); });
    if (first.list == EntryList::LimitValues) {
        NewNumbers numbers{};
        for (int place = 0; const int old : standing) {
            numbers[static_cast<std::size_t>(old)] = place++;
        }
        renumber(configuration, numbers);
    }
    return Status::done();
}

Status duplicateEntries(Configuration &configuration, EntryList list, const QList<int> &entries,
                        int &firstCopy)
{
    Configuration changed = configuration;
    int first = -1;
    for (const int entry : entries) {
        const int copy = nextFree(changed, {list, entry});
        if (copy < 0) {
            const QString why =
                list == EntryList::SwitchPoints
                    ? QCoreApplication::translate("Entries", "No switch point is free")
                : LimitValue::isReference(entry)
                    ? QCoreApplication::translate("Entries", "None of the limit values 17 to 20 is free")
                    : QCoreApplication::translate("Entries", "None of the limit values 1 to 16 is free");
            return Status::failed(why);
        }
        withEntries(changed, list,
                    [entry, copy](auto &records) { *entryAt(records, copy) = *entryAt(records, entry); });
        first = first < 0 ? copy : first;
    }
    configuration = std::move(changed);
    firstCopy = first;
    return Status::done();
}

} // namespace ktr
