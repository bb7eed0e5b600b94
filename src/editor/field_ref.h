#pragma once

#include "config/fields.h"

#include <functional>

namespace ktr {

/// A field of the configuration as a page addresses it, whatever record it stands in.
struct FieldRef
{
    QString control;                                             ///< the name of the control that shows it
    std::function<int()> entry;                                  ///< the index of its record
    std::function<QString(const Configuration &)> text;          ///< as stored
    std::function<void(Configuration &, const QString &)> store; ///< runs its rule; leaves what cannot be
    TextRule rule = nullptr;
};

namespace detail {

template <class Record>
FieldRef fieldRef(const Field<Record> &field, QString control, std::function<int()> entry,
                  std::function<Record &(Configuration &, int)> record)
{
    FieldRef ref;
    ref.control = std::move(control);
    ref.rule = field.rule;
    ref.text = [&field, entry, record](const Configuration &configuration) {
        // The accessor serves both directions; nothing is written through it here.
        return fieldText(field, std::as_const(record(const_cast<Configuration &>(configuration), entry())),
                         QLocale::c());
    };
    ref.store = [&field, entry, record](Configuration &configuration, const QString &text) {
        setFieldText(field, record(configuration, entry()), text);
    };
    ref.entry = std::move(entry);
    return ref;
}

} // namespace detail

/// A field of a record that stands alone.
template <class Record> FieldRef fieldRef(Record Configuration::*record, Member<Record> member)
{
    const Field<Record> &field = fieldOf<Record>(member);
    return detail::fieldRef<Record>(
        field, field.control.forIndex(0), [] { return 0; },
        [record](Configuration &configuration, int) -> Record & { return configuration.*record; });
}

/// A field of the record with a fixed index; each has a control of its own.
template <class Record, std::size_t N>
FieldRef fieldRef(std::array<Record, N> Configuration::*records, int index, Member<Record> member)
{
    const Field<Record> &field = fieldOf<Record>(member);
    return detail::fieldRef<Record>(
        field, field.control.forIndex(index), [index] { return index; },
        [records](Configuration &configuration, int at) -> Record & {
            return (configuration.*records)[static_cast<std::size_t>(at)];
        });
}

/// A field of the record that the page shows at the time: one control for all.
template <class Record, std::size_t N>
FieldRef fieldRef(std::array<Record, N> Configuration::*records, std::function<int()> shown,
                  Member<Record> member)
{
    const Field<Record> &field = fieldOf<Record>(member);
    return detail::fieldRef<Record>(field, field.control.forIndex(0), std::move(shown),
                                    [records](Configuration &configuration, int at) -> Record & {
                                        return (configuration.*records)[static_cast<std::size_t>(at)];
                                    });
}

} // namespace ktr
