#include "config/field_names.h"

#include "config/comparison.h"
#include "config/fields.h"
#include "lang/load_texts.h"
#include "platform/environment.h"
#include "platform/text_rules.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <type_traits>
#include <utility>
#include <vector>

namespace ktr {

namespace {

const QString macKey = QStringLiteral("Ethernet MAC");
const QString holidaysKey = QStringLiteral("Feiertage");

// Names

/// What makes no difference is made the same.
QString plain(const QString &name)
{
    return withoutUmlauts(name.simplified().toLower());
}

/// What tables of stations say; "#" stands for the number of an administrator.
struct Alias
{
    QStringView name;
    QStringView key;
};
constexpr std::array aliases = {
    Alias{u"identifier", u"Stationskennung"},
    Alias{u"station", u"Stationskennung"},
    Alias{u"station identifier", u"Stationskennung"},
    Alias{u"kennung", u"Stationskennung"},
    Alias{u"address", u"Ethernet IP"},
    Alias{u"ip address", u"Ethernet IP"},
    Alias{u"adresse", u"Ethernet IP"},
    Alias{u"ip-adresse", u"Ethernet IP"},
    Alias{u"mac address", u"Ethernet MAC"},
    Alias{u"mac-adresse", u"Ethernet MAC"},
    Alias{u"number #", u"GSM-Nummer#"},
    Alias{u"phone number #", u"GSM-Nummer#"},
    Alias{u"nummer #", u"GSM-Nummer#"},
    Alias{u"rufnummer #", u"GSM-Nummer#"},
    Alias{u"telefonnummer #", u"GSM-Nummer#"},
    Alias{u"name #", u"GSM-Name#"},
};

/// The number of letters to change, add or leave out.
int distance(QStringView one, QStringView other)
{
    std::vector<int> row(static_cast<std::size_t>(other.size()) + 1);
    for (std::size_t i = 0; i < row.size(); ++i) {
        row[i] = static_cast<int>(i);
    }
    for (const QChar c : one) {
        int diagonal = std::exchange(row[0], row[0] + 1);
        for (std::size_t i = 1; i < row.size(); ++i) {
            const int changed = diagonal + (c == other[static_cast<qsizetype>(i) - 1] ? 0 : 1);
            diagonal = std::exchange(row[i], std::min({row[i] + 1, row[i - 1] + 1, changed}));
        }
    }
    return row.back();
}

// Fields by their keys

/// Calls visitor(field, record) for the one with this key; false when there is none.
template <class AnyConfiguration, class Visitor>
bool visitField(AnyConfiguration &configuration, const QString &key, const Visitor &visitor)
{
    bool found = false;
    visitRecords(configuration, [&]<class AnyRecord>(const Group &group, AnyRecord &record, int index) {
        using Record = std::remove_const_t<AnyRecord>;
        for (const Field<Record> &field : fieldsOf<Record>()) {
            if (!found && field.appliesTo(index) && group.place(field.xmlName, index) == key) {
                found = true;
                visitor(field, record);
            }
        }
    });
    return found;
}

template <class Record> bool isBox(const Field<Record> &field)
{
    return std::holds_alternative<bool Record::*>(field.member);
}

/// "1" and "0" for what means them.
QString boxText(const QString &value)
{
    const QString word = plain(value);
    const auto isOneOf = [&word](std::initializer_list<QStringView> words) {
        return std::ranges::find(words, QStringView(word)) != words.end();
    };
    return isOneOf({u"yes", u"ja", u"on", u"ein", u"true"})      ? QStringLiteral("1")
           : isOneOf({u"no", u"nein", u"off", u"aus", u"false"}) ? QStringLiteral("0")
                                                                 : value.trimmed();
}

template <class Record> QString faultOf(const Field<Record> &field, const QString &text)
{
    if (isBox(field)) {
        return text == u"0" || text == u"1"
                   ? QString()
                   : QCoreApplication::translate("FieldNames", "is neither yes (1) nor no (0)");
    }
    QString fault = field.fault(text);
    if (fault.isEmpty() && field.range && field.range->stored(text) != text) {
        fault = QCoreApplication::translate("FieldNames", "is out of range");
    }
    if (fault.isEmpty() && field.accepts != nullptr && !field.accepts(text)) {
        fault = QCoreApplication::translate("FieldNames", "is none of the choices");
    }
    if (fault.isEmpty() || !field.range) {
        return fault;
    }
    const QString wanted = field.isNumber()
                               ? field.range->words(field.unit)
                               : QCoreApplication::translate("FieldNames", "whole number from %1 to %2")
                                     .arg(field.range->lowest)
                                     .arg(field.range->highest);
    return fault + QStringLiteral(" (%1)").arg(wanted);
}

template <class Record>
FieldSetting setOne(const Field<Record> &field, Record &record, const QString &value, bool anyway)
{
    QString text = isBox(field) ? boxText(value) : value;
    if (field.whenTyped != nullptr) {
        text = field.whenTyped(text);
    }
    // What is stored of it is within the range where that clamps, and would hide the fault.
    FieldSetting setting{.fault = faultOf(field, field.rule != nullptr ? field.rule(text) : text)};
    if (setting.fault.isEmpty() || anyway) {
        setting.isStored = setFieldText(field, record, text);
    }
    if (!setting.isStored && setting.fault.isEmpty()) {
        setting.fault = QCoreApplication::translate("FieldNames", "cannot be stored");
    }
    return setting;
}

/// The maker's three bytes may be left out. What is not six or three bytes is refused in any case.
FieldSetting setMac(Configuration &configuration, const QString &value, bool anyway)
{
    QString text = value.trimmed();
    text.replace(u':', u'-');
    QStringList bytes = text.split(u'-');
    const QStringList maker = macBytes(EthernetSettings()).first(3);
    if (bytes.size() == 2 * maker.size()) {
        const QStringList first = bytes.first(maker.size());
        if (first.join(u'-').compare(maker.join(u'-'), Qt::CaseInsensitive) != 0) {
            return {false,
                    QCoreApplication::translate("FieldNames", "does not begin with %1, as all modules' do")
                        .arg(maker.join(u'-'))};
        }
        bytes = bytes.sliced(maker.size());
    }
    if (bytes.size() != maker.size()) {
        return {false, QCoreApplication::translate("FieldNames", "is no address of six bytes, as %1-01-02-03")
                           .arg(maker.join(u'-'))};
    }
    Configuration changed = configuration;
    FieldSetting setting{true};
    for (int i = 0; i < bytes.size(); ++i) {
        const QString key = QStringLiteral("Ethernet MAC%1").arg(maker.size() + i);
        FieldSetting set = setFieldValue(changed, key, bytes[i].toUpper(), anyway);
        if (!set.fault.isEmpty()) {
            setting = set;
        }
        if (!set.isStored) {
            return set;
        }
    }
    configuration = changed;
    return setting;
}

FieldSetting setHolidays(Configuration &configuration, const QString &value)
{
    HolidayList list;
    QString text = value;
    text.replace(u';', u',').replace(u' ', u',');
    for (const QString &part : text.split(u',', Qt::SkipEmptyParts)) {
        const auto minute = part.size() == 6 ? toMinute(part + QLatin1String("0000")) : std::nullopt;
        if (!minute) {
            return {false, QCoreApplication::translate("FieldNames",
                                                       "has \"%1\", which is no date of the form YYMMDD")
                               .arg(part)};
        }
        if (list.add(minute->date()) == HolidayList::Added::Full) {
            return {false, QCoreApplication::translate("FieldNames", "are more than %1 dates")
                               .arg(HolidayList::capacity)};
        }
    }
    configuration.holidays = list;
    return {true};
}

} // namespace

QString NamedField::path() const
{
    QStringList parts{page, entry, label};
    parts.removeAll(QString());
    return parts.join(u'/');
}

QList<NamedField> namedFields(const TextTable &texts)
{
    const Configuration configuration;
    const QLocale locale = QLocale::c();
    QList<NamedField> fields;
    for (const ComparedField &row : describeConfiguration(configuration, {texts, locale})) {
        NamedField field{row.key, row.page, row.entry, row.label, row.isStamp};
        visitField(configuration, row.key,
                   [&field](const auto &described, const auto &) { field.isSecret = described.secret; });
        fields += field;
    }
    const QString ethernet = texts.text(Text::Ethernet).trimmed();
    fields += {.key = macKey,
               .page = ethernet,
               .entry = {},
               .label = texts.text(Text::Mac).trimmed(),
               .isWhole = true};
    const NamedField holidays{.key = holidaysKey,
                              .page = texts.text(Text::Switchpoint).trimmed(),
                              .entry = {},
                              .label = texts.text(Text::Holidays).trimmed()};
    const auto lastOfPage =
        std::ranges::find(fields.rbegin(), fields.rend(), holidays.page, &NamedField::page);
    fields.insert(lastOfPage.base(), holidays);
    return fields;
}

FieldNames::FieldNames(const QList<TextTable> &languages) : m_fields(namedFields(languages.first()))
{
    const auto add = [](QHash<QString, QList<int>> &names, const QString &name, int field) {
        QList<int> &fields = names[plain(name)];
        if (!fields.contains(field)) {
            fields += field;
        }
    };
    for (int i = 0; i < m_fields.size(); ++i) {
        add(m_keys, m_fields[i].key, i);
        add(m_keys, QString(m_fields[i].key).replace(u' ', u'.'), i);
    }
    for (const Alias &alias : aliases) {
        const bool isNumbered = alias.name.endsWith(u'#');
        const int last = isNumbered ? static_cast<int>(Configuration().administrators.size()) : 1;
        for (int number = 1; number <= last; ++number) {
            const QString key = alias.key.toString().replace(u'#', QString::number(number - 1));
            const auto field = std::ranges::find(m_fields, key, &NamedField::key);
            m_aliases.insert(alias.name.toString().replace(u'#', QString::number(number)),
                             {static_cast<int>(field - m_fields.begin())});
        }
    }
    for (const TextTable &texts : languages) {
        const QList<NamedField> named = namedFields(texts);
        for (int i = 0; i < named.size(); ++i) {
            const NamedField &field = named[i];
            add(m_labels, field.label, i);
            add(m_labels, field.entry.isEmpty() ? field.label : field.entry + u'/' + field.label, i);
            add(m_labels, field.page + u'/' + field.label, i);
            add(m_labels, field.path(), i);
            if (!m_all.contains(field.path())) {
                m_all += field.path();
            }
        }
    }
    for (const NamedField &field : m_fields) {
        m_all += field.key;
    }
}

FieldNames::Found FieldNames::find(const QString &name) const
{
    const QString wanted = plain(name);
    QList<int> fields;
    for (const auto *names : {&m_keys, &m_aliases, &m_labels}) {
        if (fields.isEmpty()) {
            fields = names->value(wanted);
        }
    }
    if (fields.size() == 1) {
        return {&m_fields[fields.first()]};
    }
    const QString begin =
        fields.isEmpty()
            ? QCoreApplication::translate("FieldNames", "there is no field \"%1\"; the nearest: %2")
            : QCoreApplication::translate("FieldNames", "more than one field is called \"%1\": %2");
    return {nullptr, begin.arg(name, told(fields.isEmpty() ? nearest(wanted) : fields))};
}

QString FieldNames::onPages(const QString &place) const
{
    const auto named = [this](const QString &key) {
        return std::ranges::find(m_fields, key, &NamedField::key);
    };
    if (const auto field = named(place); field != m_fields.end()) {
        return field->path();
    }
    for (int number = 0; number < HolidayList::capacity; ++number) {
        if (place == HolidayList::elementName(number)) {
            return named(holidaysKey)->path() + u'/' + QString::number(number + 1);
        }
    }
    return place;
}

QString FieldNames::told(const QList<int> &fields) const
{
    constexpr qsizetype most = 6;
    QStringList names;
    for (const int field : fields.first(std::min(most, fields.size()))) {
        names += QStringLiteral("%1 (%2)").arg(m_fields[field].path(), m_fields[field].key);
    }
    return names.join(QLatin1String(", ")) + (fields.size() > most ? QStringLiteral(", …") : QString());
}

QList<int> FieldNames::nearest(const QString &name) const
{
    constexpr qsizetype longest = 100; // no name is; what is longer costs time only
    const QStringView wanted = QStringView(name).first(std::min(longest, name.size()));
    QHash<int, int> distances; // a part of a name counts as near
    const auto look = [&](const QHash<QString, QList<int>> &names) {
        for (auto each = names.begin(); each != names.end(); ++each) {
            const bool isPart = wanted.size() >= 3 && each.key().contains(wanted);
            const int far = isPart ? 1 : distance(wanted, each.key());
            for (const int field : each.value()) {
                distances[field] = std::min(far, distances.value(field, far));
            }
        }
    };
    look(m_keys);
    look(m_aliases);
    look(m_labels);
    QList<int> fields = distances.keys();
    std::ranges::sort(fields, {}, [&](int field) { return std::pair(distances.value(field), field); });
    constexpr qsizetype told = 4;
    return fields.first(std::min(told, fields.size()));
}

FieldNames fieldNamesOfAllLanguages(const TextTable &told)
{
    QList<TextTable> languages{told, TextTable()};
    TextTable german;
    const LoadedTexts loaded =
        LoadTexts(german, QStringLiteral("deutsch"), deliveredFile(QStringLiteral("language.ini")));
    if (loaded.source == LoadedTexts::Source::File) {
        languages += german;
    }
    return FieldNames(languages);
}

QString fieldValue(const Configuration &configuration, const QString &key)
{
    if (key == macKey) {
        return macBytes(configuration.ethernet).join(u'-');
    }
    if (key == holidaysKey) {
        QStringList dates;
        for (const QString &line : configuration.holidays.lines()) {
            dates += line.section(u'\t', 0, 0);
        }
        return dates.join(QLatin1String(", "));
    }
    QString value;
    visitField(configuration, key, [&value](const auto &field, const auto &record) {
        value = fieldText(field, record, QLocale::c());
    });
    return value;
}

FieldSetting setFieldValue(Configuration &configuration, const QString &key, const QString &value,
                           bool anyway)
{
    if (key == macKey) {
        return setMac(configuration, value, anyway);
    }
    if (key == holidaysKey) {
        return setHolidays(configuration, value);
    }
    FieldSetting setting;
    visitField(configuration, key,
               [&](const auto &field, auto &record) { setting = setOne(field, record, value, anyway); });
    return setting;
}

} // namespace ktr
