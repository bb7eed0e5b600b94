#pragma once

#include "config/fields.h"

#include <functional>
#include <optional>
#include <type_traits>

namespace ktr {

/// A field of the configuration as a page addresses it, whatever record it stands in.
struct FieldRef
{
    QString control;                                             ///< the name of the control that shows it
    std::function<int()> entry;                                  ///< the index of its record
    std::function<QString(const Configuration &)> text;          ///< as stored
    std::function<void(Configuration &, const QString &)> store; ///< runs its rule; leaves what cannot be
    std::function<QString(const QString &)> asTyped;             ///< what is stored of a text that is typed
    std::function<QString(const TextTable &)> label;             ///< its name
    std::function<QString(const TextTable &)> heading;           ///< its name and unit
    std::function<QString()> tip;                                ///< what it means, its range and unit
    std::optional<Range> range;                                  ///< its text is a number of it or a choice
    bool number = false;                                         ///< its text is a number
};

namespace detail {

/// `access(configuration, index)` gives the record, constant or not as the configuration is.
template <class Record, class Access>
FieldRef fieldRef(const Field<Record> &field, const QString &control, std::function<int()> entry,
                  Access access)
{
    FieldRef ref;
    ref.control = control;
    ref.range = field.range;
    ref.number = field.isNumber();
    ref.label = [&field](const TextTable &texts) { return labelText(field.label, texts); };
    ref.heading = [&field](const TextTable &texts) { return headingText(field.label, field.unit, texts); };
    ref.tip = [&field] { return tipText(field); };
    ref.asTyped = [&field](const QString &text) { return typedText(field, text); };
    ref.text = [&field, entry, access](const Configuration &configuration) {
        return fieldText(field, access(configuration, entry()), QLocale::c());
    };
    ref.store = [&field, entry, access](Configuration &configuration, const QString &text) {
        setFieldText(field, access(configuration, entry()), typedText(field, text));
    };
    ref.entry = std::move(entry);
    return ref;
}

} // namespace detail

/// A field of a record that stands alone.
template <class Record>
FieldRef fieldRef(Record Configuration::*record, std::type_identity_t<Member<Record>> member)
{
    const Field<Record> &field = fieldOf<Record>(member);
    const auto access = [record](auto &configuration, int) -> auto &
    {
        return configuration.*record;
    };
    return detail::fieldRef<Record>(
        field, field.control.forIndex(0), [] { return 0; }, access);
}

/// The records of an array, by index.
template <class Record, std::size_t N> auto recordOf(std::array<Record, N> Configuration::*records)
{
    return [records](auto &configuration, int index) -> auto &
    {
        return (configuration.*records)[static_cast<std::size_t>(index)];
    };
}

/// A field of the record with a fixed index; each has a control of its own.
template <class Record, std::size_t N>
FieldRef fieldRef(std::array<Record, N> Configuration::*records, int index,
                  std::type_identity_t<Member<Record>> member)
{
    const Field<Record> &field = fieldOf<Record>(member);
    return detail::fieldRef<Record>(
        field, field.control.forIndex(index), [index] { return index; }, recordOf(records));
}

/// A field of the record that the page shows at the time: one control for all.
template <class Record, std::size_t N>
FieldRef fieldRef(std::array<Record, N> Configuration::*records, std::function<int()> shown,
                  std::type_identity_t<Member<Record>> member)
{
    const Field<Record> &field = fieldOf<Record>(member);
    return detail::fieldRef<Record>(field, field.control.forIndex(0), std::move(shown), recordOf(records));
}

} // namespace ktr
