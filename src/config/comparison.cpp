#include "config/comparison.h"

#include "config/channel_use.h"
#include "config/channels.h"
#include "config/entry_texts.h"
#include "config/fields.h"

#include <QCoreApplication>

#include <algorithm>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

namespace ktr {

namespace {

using Change = ComparedField::Change;

const QString stampKey = QStringLiteral("Version Version");
const QString holidayKey = QStringLiteral("Feiertag ");
const QString holidayOrderKey = QStringLiteral("Feiertage");
const QString masked = QStringLiteral("****");

template <class Record, class Value> bool isField(const Field<Record> &field, Value Record::*member)
{
    return field.member == Member<Record>(member);
}

/// The records in the order of visitRecords(), so that those of several configurations pair up.
std::vector<const void *> recordsOf(const Configuration &configuration)
{
    std::vector<const void *> records;
    visitRecords(configuration,
                 [&records](const Group &, const auto &record, int) { records.push_back(&record); });
    return records;
}

template <class Record> const Record &recordAt(const std::vector<const void *> &records, std::size_t at)
{
    return *static_cast<const Record *>(records[at]);
}

/// An empty text is what the reader of a file makes of it.
template <class Record> QString readText(const Field<Record> &field, const Record &record)
{
    const QString text = fieldText(field, record, QLocale::c());
    return text.isEmpty() && field.whenEmpty.text != nullptr ? QString::fromUtf16(field.whenEmpty.text)
                                                             : text;
}

/// That of a switch point which was never set is the minute in which its file was read.
bool isStartOfNone(const Field<SwitchPoint> &field, const SwitchPoint &one, const SwitchPoint &other)
{
    return isField(field, &SwitchPoint::start) && one.target == 0 && other.target == 0 &&
           (one.start.isEmpty() || other.start.isEmpty());
}
template <class Record> bool isStartOfNone(const Field<Record> &, const Record &, const Record &)
{
    return false;
}

template <class Record> bool isSame(const Field<Record> &field, const Record &one, const Record &other)
{
    return std::visit([&](auto member) { return one.*member == other.*member; }, field.member) ||
           readText(field, one) == readText(field, other) || isStartOfNone(field, one, other);
}

/// What the module is sent of a holiday's line.
QString dateOf(const QString &line)
{
    return line.section(u'\t', 0, 0);
}

/// Nothing when nobody changed it.
std::optional<Change> changeOf(bool mineIsBase, bool theirsAreBase, bool mineAreTheirs)
{
    if (mineIsBase && theirsAreBase) {
        return std::nullopt;
    }
    return mineAreTheirs   ? Change::Both
           : mineIsBase    ? Change::Theirs
           : theirsAreBase ? Change::Mine
                           : Change::Conflict;
}

// Where a field is

/// The input or output that a field is about; 0 for none.
template <class Record> int channelOf(const Field<Record> &, const Record &, int)
{
    return 0;
}
int channelOf(const Field<LimitValue> &, const LimitValue &value, int)
{
    return value.channel;
}
int channelOf(const Field<Archiving> &, const Archiving &, int index)
{
    return index + 1;
}
int channelOf(const Field<DigitalInput> &, const DigitalInput &, int index)
{
    return index + 1;
}
int channelOf(const Field<OutputHours> &, const OutputHours &, int index)
{
    return index + 15;
}
int channelOf(const Field<Scaling> &, const Scaling &, int index)
{
    return index + (index < 2 ? 9 : 11);
}
int channelOf(const Field<OutputValue> &field, const OutputValue &, int index)
{
    return index + (isField(field, &OutputValue::digital) ? 11 : 13);
}

/// The page of a field, and its place in the order of the pages and of their entries.
struct Place
{
    Text page;
    int pageOrder;
    int entryOrder;
    QString entry;
};

constexpr int gsmPage = 0;
constexpr int inputPage = 1;
constexpr int limitValuePage = 2;
constexpr int switchPointPage = 3;
constexpr int filePage = 4;
constexpr int ethernetPage = 5;

template <class Record>
Place placeOf(const Field<Record> &field, const Record &record, int index, const TextTable &)
{
    const int channel = channelOf(field, record, index);
    return {Text::Ip, inputPage, channel, channel == 0 ? QString() : channelText(channel)};
}
Place placeOf(const Field<FileInfo> &, const FileInfo &, int, const TextTable &)
{
    return {Text::FileInformation, filePage, 0, {}};
}
Place placeOf(const Field<GsmSettings> &, const GsmSettings &, int, const TextTable &)
{
    return {Text::Gsm, gsmPage, 0, {}};
}
Place placeOf(const Field<EthernetSettings> &, const EthernetSettings &, int, const TextTable &)
{
    return {Text::Ethernet, ethernetPage, 0, {}};
}
QString numbered(Text name, int index, const TextTable &texts)
{
    return texts.text(name).trimmed() + u' ' + QString::number(index + 1);
}
Place placeOf(const Field<Administrator> &, const Administrator &, int index, const TextTable &texts)
{
    return {Text::Gsm, gsmPage, index + 1, numbered(Text::Admin, index, texts)};
}
Place placeOf(const Field<LimitValue> &, const LimitValue &, int index, const TextTable &texts)
{
    return {Text::LimitValue, limitValuePage, index, numbered(Text::LimitValueShort, index, texts)};
}
Place placeOf(const Field<SwitchPoint> &, const SwitchPoint &, int index, const TextTable &texts)
{
    return {Text::Switchpoint, switchPointPage, index, numbered(Text::Switchpoint, index, texts)};
}

// What it is in words

/// One configuration in the user's words.
class Words
{
public:
    Words(const Configuration &configuration, const ComparisonWords &words)
        : m_configuration(configuration), m_texts(words.texts), m_locale(words.locale)
    {}

    template <class Record> QString value(const Field<Record> &field, const Record &record, int index) const
    {
        const QString text = fieldText(field, record, m_locale);
        if (field.secret) {
            return text.isEmpty() ? QString() : masked;
        }
        if (std::holds_alternative<bool Record::*>(field.member)) {
            return text == u"1" ? QCoreApplication::translate("Comparison", "yes")
                                : QCoreApplication::translate("Comparison", "no");
        }
        const std::optional<QString> words = choice(field, record);
        return words ? *words : withUnit(text, unit(field, record, index));
    }

private:
    static QString withUnit(const QString &text, const QString &unit)
    {
        return text.isEmpty() || unit.trimmed().isEmpty() ? text : text + u' ' + unit.trimmed();
    }

    template <class Record> QString unit(const Field<Record> &field, const Record &record, int index) const
    {
        switch (field.unit) {
        case Unit::None:
            return {};
        case Unit::Minutes:
            return m_texts.text(Text::Minutes);
        case Unit::OfChannel:
            break;
        }
        const LimitUnits units = shownUnits(m_configuration, channelOf(field, record, index), m_texts);
        return field.label == Label(Text::Hysteresis) ? units.hysteresis : units.limit;
    }

    /// Of a field whose value stands for something else.
    template <class Record> std::optional<QString> choice(const Field<Record> &, const Record &) const
    {
        return std::nullopt;
    }
    std::optional<QString> choice(const Field<LimitValue> &field, const LimitValue &value) const
    {
        if (isField(field, &LimitValue::channel)) {
            return channelName(m_configuration, value.channel, m_texts);
        }
        if (isField(field, &LimitValue::comparison)) {
            return comparisonSign(value.comparison);
        }
        if (isField(field, &LimitValue::reference)) {
            return combinationText(value.reference, m_locale);
        }
        if (isField(field, &LimitValue::recipients)) {
            return recipientNames(m_configuration, value.recipients, m_texts).join(QLatin1String(", "));
        }
        return std::nullopt;
    }
    std::optional<QString> choice(const Field<SwitchPoint> &field, const SwitchPoint &point) const
    {
        if (isField(field, &SwitchPoint::target)) {
            return targetName(m_configuration, point.target, m_texts);
        }
        if (isField(field, &SwitchPoint::type)) {
            return switchTypeName(point.type, m_texts);
        }
        if (isField(field, &SwitchPoint::limitValue)) {
            return watchedLimitValue(m_configuration, point.limitValue, m_texts);
        }
        if (isField(field, &SwitchPoint::start)) {
            return startText(point.start, m_locale);
        }
        return std::nullopt;
    }

    const Configuration &m_configuration;
    const TextTable &m_texts;
    const QLocale &m_locale;
};

/// The bytes of the MAC address have one name.
template <class Record> QString labelOf(const Field<Record> &field, int index, const TextTable &texts)
{
    const QString label = labelText(field.label, texts).trimmed();
    const auto fields = fieldsOf<Record>();
    const auto sharesIt = [&](const Field<Record> &other) {
        return &other != &field && other.label == field.label && other.appliesTo(index) &&
               std::string_view(other.control.name) == field.control.name;
    };
    return std::ranges::any_of(fields, sharesIt)
               ? label + u' ' + QString::number(field.control.first + index + 1)
               : label;
}

// Comparing

class Comparison
{
public:
    Comparison(const Configuration &mine, const Configuration &theirs, const Configuration *base,
               const ComparisonWords &words)
        : m_mine(mine), m_theirs(theirs), m_base(base), m_words(words)
    {}

    QList<ComparedField> fields()
    {
        compareRecords();
        compareHolidays();
        compareStamps();
        return sorted();
    }

    /// Those of records, whether they differ or not.
    QList<ComparedField> recordFields()
    {
        m_takesAll = true;
        compareRecords();
        return sorted();
    }

private:
    QList<ComparedField> sorted()
    {
        std::ranges::stable_sort(m_rows, {}, &Row::order);
        QList<ComparedField> fields;
        for (Row &row : m_rows) {
            fields += std::move(row.field);
        }
        return fields;
    }

    struct Row
    {
        std::pair<int, int> order;
        ComparedField field;
    };

    /// Nothing when the configurations do not differ there.
    template <class Same> std::optional<Change> change(const Same &isSame) const
    {
        if (m_base != nullptr) {
            return changeOf(isSame(m_mine, *m_base), isSame(m_theirs, *m_base), isSame(m_mine, m_theirs));
        }
        return isSame(m_mine, m_theirs) ? std::nullopt : std::optional(Change::Unknown);
    }

    void compareRecords()
    {
        const std::vector<const void *> theirRecords = recordsOf(m_theirs);
        const std::vector<const void *> baseRecords =
            m_base != nullptr ? recordsOf(*m_base) : std::vector<const void *>();
        std::size_t at = 0;
        visitRecords(m_mine, [&]<class ConstRecord>(const Group &group, ConstRecord &record, int index) {
            using Record = std::remove_const_t<ConstRecord>;
            const auto &theirs = recordAt<Record>(theirRecords, at);
            const Record *base = m_base != nullptr ? &recordAt<Record>(baseRecords, at) : nullptr;
            ++at;
            for (const Field<Record> &field : fieldsOf<Record>()) {
                if (field.appliesTo(index)) {
                    compareField(group, field, record, theirs, base, index);
                }
            }
        });
    }

    template <class Record>
    void compareField(const Group &group, const Field<Record> &field, const Record &mine,
                      const Record &theirs, const Record *base, int index)
    {
        const std::optional<Change> changed =
            base != nullptr               ? changeOf(isSame(field, mine, *base), isSame(field, theirs, *base),
                                                     isSame(field, mine, theirs))
            : isSame(field, mine, theirs) ? std::nullopt
                                          : std::optional(Change::Unknown);
        if (!changed && !m_takesAll) {
            return;
        }
        const Place place = placeOf(field, mine, index, m_words.texts);
        ComparedField row;
        row.key = group.place(field.xmlName, index);
        row.control = field.control.forIndex(index);
        row.index = index;
        row.entry = place.pageOrder == inputPage
                        ? withChannelName(place.entry, place.entryOrder, m_mine.names)
                        : place.entry;
        row.label = labelOf(field, index, m_words.texts);
        row.mine = Words(m_mine, m_words).value(field, mine, index);
        row.theirs = Words(m_theirs, m_words).value(field, theirs, index);
        row.base = base != nullptr ? Words(*m_base, m_words).value(field, *base, index) : QString();
        row.isStamp = row.control == fieldOf<FileInfo>(&FileInfo::version).control.forIndex(0);
        add(row, place.page, {place.pageOrder, place.entryOrder}, changed.value_or(Change::Unknown));
    }

    void add(ComparedField row, Text page, std::pair<int, int> order, Change change)
    {
        row.page = m_words.texts.text(page).trimmed();
        row.change = change;
        m_rows.push_back({order, std::move(row)});
    }

    /// Their order means nothing to the module, but it is the order of the list and of the command.
    void compareHolidays()
    {
        const QString yes = QCoreApplication::translate("Comparison", "yes");
        const QString no = QCoreApplication::translate("Comparison", "no");
        bool sameDates = true;
        for (const QString &line : allHolidays()) {
            const QString date = dateOf(line);
            const auto has = [&date](const Configuration &configuration) {
                return std::ranges::any_of(configuration.holidays.lines(),
                                           [&date](const QString &other) { return dateOf(other) == date; });
            };
            const auto changed = change([&has](const Configuration &one, const Configuration &other) {
                return has(one) == has(other);
            });
            if (changed) {
                sameDates = false;
                ComparedField row = holidayRow(holidayKey + date);
                row.label = holidayText(line, m_words.locale);
                row.mine = has(m_mine) ? yes : no;
                row.theirs = has(m_theirs) ? yes : no;
                row.base = m_base == nullptr ? QString() : has(*m_base) ? yes : no;
                add(row, Text::Switchpoint, holidayOrder, *changed);
            }
        }
        const auto changed = change([](const Configuration &one, const Configuration &other) {
            return one.holidays == other.holidays;
        });
        if (sameDates && changed) {
            ComparedField row = holidayRow(holidayOrderKey);
            row.label = QCoreApplication::translate("Comparison", "Order");
            row.mine = dates(m_mine);
            row.theirs = dates(m_theirs);
            row.base = m_base == nullptr ? QString() : dates(*m_base);
            add(row, Text::Switchpoint, holidayOrder, *changed);
        }
    }

    ComparedField holidayRow(const QString &key) const
    {
        ComparedField row;
        row.key = key;
        row.control = holidaysControl.forIndex(0);
        row.entry = m_words.texts.text(Text::Holidays).trimmed();
        return row;
    }

    QStringList allHolidays() const
    {
        QStringList lines = m_mine.holidays.lines() + m_theirs.holidays.lines();
        if (m_base != nullptr) {
            lines += m_base->holidays.lines();
        }
        // One for each date, the earliest first.
        std::ranges::sort(lines, {}, dateOf);
        const auto isSameDate = [](const QString &one, const QString &other) {
            return dateOf(one) == dateOf(other);
        };
        lines.erase(std::unique(lines.begin(), lines.end(), isSameDate), lines.end());
        return lines;
    }

    QString dates(const Configuration &configuration) const
    {
        QStringList dates;
        for (const QString &line : configuration.holidays.lines()) {
            dates += holidayText(line, m_words.locale);
        }
        return dates.join(QLatin1String(", "));
    }

    void compareStamps()
    {
        const auto changed = change([](const Configuration &one, const Configuration &other) {
            return one.versionText == other.versionText;
        });
        if (!changed) {
            return;
        }
        ComparedField row;
        row.key = stampKey;
        row.control = fieldOf<FileInfo>(&FileInfo::version).control.forIndex(0);
        row.label = QCoreApplication::translate("Comparison", "Last edit");
        row.mine = m_mine.versionText;
        row.theirs = m_theirs.versionText;
        row.base = m_base == nullptr ? QString() : m_base->versionText;
        row.isStamp = true;
        add(row, Text::FileInformation, {filePage, 1}, *changed);
    }

    static constexpr std::pair<int, int> holidayOrder{switchPointPage, SwitchPoint::count};

    const Configuration &m_mine;
    const Configuration &m_theirs;
    const Configuration *m_base;
    const ComparisonWords &m_words;
    std::vector<Row> m_rows;
    bool m_takesAll = false;
};

// Taking over

bool takeHoliday(HolidayList &to, const HolidayList &from, const QString &date)
{
    const auto isDate = [&date](const QString &line) { return dateOf(line) == date; };
    const auto wanted = std::ranges::find_if(from.lines(), isDate);
    if (wanted != from.lines().end()) {
        if (std::ranges::none_of(to.lines(), isDate)) {
            to.append(*wanted);
        }
        return std::ranges::any_of(to.lines(), isDate);
    }
    for (int index = static_cast<int>(to.lines().size()) - 1; index >= 0; --index) {
        if (isDate(to.lines()[index])) {
            to.remove(index);
        }
    }
    return true;
}

} // namespace

QList<ComparedField> compareConfigurations(const Configuration &mine, const Configuration &theirs,
                                           const ComparisonWords &words)
{
    return Comparison(mine, theirs, nullptr, words).fields();
}

QList<ComparedField> compareConfigurations(const Configuration &mine, const Configuration &theirs,
                                           const Configuration &base, const ComparisonWords &words)
{
    return Comparison(mine, theirs, &base, words).fields();
}

int channelOfControl(const QString &control)
{
    static const Configuration any;
    int channel = 0;
    visitRecords(any, [&]<class ConstRecord>(const Group &, ConstRecord &record, int index) {
        using Record = std::remove_const_t<ConstRecord>;
        for (const Field<Record> &field : fieldsOf<Record>()) {
            if (field.appliesTo(index) && field.control.forIndex(index) == control) {
                channel = channelOf(field, record, index);
            }
        }
    });
    return channel;
}

QList<ComparedField> describeConfiguration(const Configuration &configuration, const ComparisonWords &words)
{
    return Comparison(configuration, configuration, nullptr, words).recordFields();
}

bool differInMoreThanStamps(const QList<ComparedField> &fields)
{
    return std::ranges::any_of(fields, [](const ComparedField &field) { return !field.isStamp; });
}

bool takeField(Configuration &to, const Configuration &from, const QString &key)
{
    if (key == stampKey) {
        to.versionText = from.versionText;
        return true;
    }
    if (key == holidayOrderKey) {
        to.holidays = from.holidays;
        return true;
    }
    if (key.startsWith(holidayKey)) {
        return takeHoliday(to.holidays, from.holidays, key.sliced(holidayKey.size()));
    }
    const std::vector<const void *> records = recordsOf(from);
    std::size_t at = 0;
    bool taken = false;
    visitRecords(to, [&]<class Record>(const Group &group, Record &record, int index) {
        const auto &source = recordAt<Record>(records, at++);
        for (const Field<Record> &field : fieldsOf<Record>()) {
            if (field.appliesTo(index) && group.place(field.xmlName, index) == key) {
                std::visit([&](auto member) { record.*member = source.*member; }, field.member);
                taken = true;
            }
        }
    });
    return taken;
}

Merge mergeConfigurations(const Configuration &mine, const Configuration &theirs, const Configuration &base,
                          const ComparisonWords &words)
{
    Merge merge{mine, {}};
    QList<ComparedField> without; // room, until others are removed
    for (const ComparedField &field : compareConfigurations(mine, theirs, base, words)) {
        if (field.isStamp) {
            continue;
        }
        if (field.change == Change::Conflict) {
            merge.conflicts += field;
        } else if (field.change == Change::Theirs && !takeField(merge.configuration, theirs, field.key)) {
            without += field;
        }
    }
    for (const ComparedField &field : without) {
        if (!takeField(merge.configuration, theirs, field.key)) {
            merge.conflicts += field;
        }
    }
    return merge;
}

} // namespace ktr
