#pragma once

#include "config/configuration.h"
#include "config/field_range.h"
#include "lang/text_table.h"
#include "platform/environment.h"
#include "platform/text_rules.h"

#include <QLocale>
#include <QString>

#include <algorithm>
#include <optional>
#include <span>
#include <variant>

namespace ktr {

/// A value that a field takes by itself: none (it keeps what it holds), a fixed text, or one computed
/// for the record's index in its array.
struct Preset
{
    const char16_t *text = nullptr;
    QString (*compute)(const Environment &environment, int index) = nullptr;

    constexpr bool keepsValue() const { return text == nullptr && compute == nullptr; }
    QString value(const Environment &environment, int index) const
    {
        return compute != nullptr ? compute(environment, index) : QStringView(text).toString();
    }
};

inline constexpr Preset keep{};
constexpr Preset is(const char16_t *text)
{
    return {.text = text};
}
constexpr Preset is(QString (*compute)(const Environment &, int))
{
    return {.compute = compute};
}

/// The control that shows a field; in an array of controls, the element for a record's index.
struct ControlName
{
    static constexpr int noArray = -100;

    const char *name = nullptr;
    int first = noArray; ///< the element that would show the record with index 0

    QString forIndex(int index) const;
};

/// The list of holidays, which are no fields.
inline constexpr ControlName holidaysControl{"lst_swtch_frei"};

/// What a field is called: a text of the table, or one of our own for the context "Fields".
using Label = std::variant<Text, const char *>;

/// What is wrong with a field's text for the module or the reader, in words for the user; empty when nothing.
/// The text is stored and sent all the same.
using TextCheck = QString (*)(const QString &text);

/// That of a text that nobody can see.
QString blanksFault(const QString &text);

/// That of a text which is to stand on one line.
QString lineBreakFault(const QString &text);

/// The text that a field stores when `text` is given to it.
using TextRule = QString (*)(const QString &text);

template <class Record>
using Member =
    std::variant<QString Record::*, qint16 Record::*, quint8 Record::*, double Record::*, bool Record::*>;

/// A field of a record, described once: file, "new", reader, comparison, printout and pages go by it.
template <class Record> struct Field
{
    const char16_t *xmlName;
    Member<Record> member;
    ControlName control;
    Label label;                ///< its name on its page and in the printout
    const char *meaning;        ///< for its tool tip
    const char *form = nullptr; ///< what its text is like, where it is no number; %1 and %2: its ends
    std::optional<Range> range = std::nullopt;      ///< its text is a number; none: any text
    Unit unit = Unit::None;                         ///< what the number counts
    std::optional<Text> unitBehind = std::nullopt;  ///< names the unit behind the control
    Preset whenNew = keep;                          ///< what "new" sets
    Preset inAnother = keep;                        ///< where another station must not have the same
    Preset beforeReading = keep;                    ///< what the reader sets before it opens the file
    Preset whenEmpty = is(u"");                     ///< what the reader sets when the file has no text for it
    TextRule rule = nullptr;                        ///< runs whoever sets the field, as the range's does
    TextRule whenRead = nullptr;                    ///< runs before it, on a text from a file
    TextRule whenTyped = nullptr;                   ///< runs before it, on what the user types
    bool (*accepts)(const QString &text) = nullptr; ///< the texts of a list's items; null: any text
    TextCheck check = nullptr;                      ///< runs before the range's
    bool severalLines = false;                      ///< its text may have line breaks
    bool secret = false;                            ///< its text is not to be shown outside its control
    bool (*applies)(int index) = nullptr;           ///< which records of the array have the field; null: all

    bool appliesTo(int index) const { return applies == nullptr || applies(index); }

    /// Whether its text is a number that the user types.
    bool isNumber() const { return range && range->kind != Range::Kind::Choice; }

    /// What it stores of a text from anywhere.
    QString stored(const QString &text) const
    {
        const QString ruled = rule != nullptr ? rule(text) : text;
        return range ? range->stored(ruled) : ruled;
    }

    /// What is wrong with its text, to go on from it in a message; empty when nothing.
    QString fault(const QString &text) const
    {
        const QString breaks = severalLines ? QString() : lineBreakFault(text);
        const QString special = breaks.isEmpty() && check != nullptr ? check(text) : breaks;
        return !special.isEmpty() ? special : range ? range->fault(text, unit) : blanksFault(text);
    }
};

/// The fields of a record type, in the order of the file.
template <class Record> std::span<const Field<Record>> fieldsOf();
template <> std::span<const Field<FileInfo>> fieldsOf<FileInfo>();
template <> std::span<const Field<GsmSettings>> fieldsOf<GsmSettings>();
template <> std::span<const Field<Administrator>> fieldsOf<Administrator>();
template <> std::span<const Field<LimitValue>> fieldsOf<LimitValue>();
template <> std::span<const Field<Archiving>> fieldsOf<Archiving>();
template <> std::span<const Field<DigitalInput>> fieldsOf<DigitalInput>();
template <> std::span<const Field<OutputHours>> fieldsOf<OutputHours>();
template <> std::span<const Field<SendValues>> fieldsOf<SendValues>();
template <> std::span<const Field<Scaling>> fieldsOf<Scaling>();
template <> std::span<const Field<OutputValue>> fieldsOf<OutputValue>();
template <> std::span<const Field<SwitchPoint>> fieldsOf<SwitchPoint>();
template <> std::span<const Field<EthernetSettings>> fieldsOf<EthernetSettings>();

/// The row of a record's member.
template <class Record> const Field<Record> &fieldOf(Member<Record> member)
{
    const auto fields = fieldsOf<Record>();
    return *std::ranges::find(fields, member, &Field<Record>::member);
}
template <class Record, class Value> const Field<Record> &fieldOf(Value Record::*member)
{
    return fieldOf<Record>(Member<Record>(member));
}

QString labelText(const Label &label, const TextTable &texts);

/// The label with the unit behind it, as above a column: "Interval (min.)".
QString headingText(const Label &label, Unit unit, const TextTable &texts);

/// What a field means, in a sentence.
template <class Record> QString meaningText(const Field<Record> &field);

/// What a field may be, with the unit: "number from 0, in minutes", "text on one line".
template <class Record> QString valuesText(const Field<Record> &field);

/// The tool tip: the meaning, the range and the unit.
template <class Record> QString tipText(const Field<Record> &field);

/// A field's value as text; numbers in the locale's general form, check boxes as "0" and "1".
template <class Record>
QString fieldText(const Field<Record> &field, const Record &record, const QLocale &locale);

/// What a field stores of a text that the user types.
template <class Record> QString typedText(const Field<Record> &field, const QString &text)
{
    const QString line = field.severalLines ? text : pastedLine(text);
    return field.stored(field.whenTyped != nullptr ? field.whenTyped(line) : line);
}

/// Stores a text in a field after running its rule. Gives false and leaves the field as it was when the
/// text cannot be converted to the field's type or is none of its list's items.
template <class Record> bool setFieldText(const Field<Record> &field, Record &record, const QString &text);

/// Sets a preset; the rules for texts from outside do not run on it.
template <class Record>
void applyPreset(const Field<Record> &field, Record &record, const Preset &preset,
                 const Environment &environment, int index);

enum class Form { Attributes, TextElements };
enum class Parent { Root, Konfiguration };

/// Where the file keeps the records of one type.
struct Group
{
    const char16_t *element; ///< the element's name, for text elements empty
    bool numbered;           ///< the record's index follows the name
    Form form = Form::Attributes;
    Parent parent = Parent::Konfiguration;

    /// The element that keeps a field of the record with this index.
    QString elementName(const char16_t *xmlName, int index) const;

    /// What messages call a field: the element, and the attribute where it is one.
    QString place(const char16_t *xmlName, int index) const;
};

/// Calls visitor(group, record, index) for every record of a configuration, in the order of the file.
/// Holidays and the version text, which are no records, are left out.
template <class AnyConfiguration, class Visitor>
void visitRecords(AnyConfiguration &configuration, const Visitor &visitor)
{
    const auto each = [&visitor](const Group &group, auto &records) {
        int index = 0;
        for (auto &record : records) {
            visitor(group, record, index++);
        }
    };
    visitor(Group{u"Info", false, Form::Attributes, Parent::Root}, configuration.info, 0);
    visitor(Group{u"", false, Form::TextElements}, configuration.gsm, 0);
    each(Group{u"", true, Form::TextElements}, configuration.administrators);
    each(Group{u"Grenzwert", true}, configuration.limitValues);
    each(Group{u"Archivierung", true}, configuration.archiving);
    each(Group{u"Digitaleingang", true}, configuration.digitalInputs);
    each(Group{u"BStZDigOut", true}, configuration.outputHours);
    each(Group{u"sendValue", false}, configuration.sendValues);
    each(Group{u"Skalierung", true}, configuration.scaling);
    each(Group{u"Ausgangswert", true}, configuration.outputValues);
    each(Group{u"Schaltpunkt", true}, configuration.switchPoints);
    visitor(Group{u"Ethernet", false, Form::Attributes, Parent::Root}, configuration.ethernet, 0);
}

/// The menu command "new": every field takes its value for a new configuration. What has none (the
/// station type, the history export file, a limit value's reference and repetitions) stays as it was, as
/// does the version text.
void makeNew(Configuration &configuration, const Environment &environment);

/// Makes it that of another station, which is like this one: identifier, PIN and address are to be filled in,
/// the MAC address is another one by chance.
void makeAnother(Configuration &configuration, const Environment &environment);

/// The same for the MAC address alone.
void makeOtherMac(EthernetSettings &ethernet, const Environment &environment);

/// The six two-digit bytes of the MAC address, the maker's three first.
QStringList macBytes(const EthernetSettings &ethernet);

/// The lines "element field: expected … found …" for every field in which two configurations differ.
QStringList differences(const Configuration &expected, const Configuration &found, const QLocale &locale);

} // namespace ktr
