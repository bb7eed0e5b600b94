#include "config/entry_table.h"

#include "config/channels.h"
#include "config/entry_texts.h"
#include "config/fields.h"
#include "platform/tab_table.h"
#include "platform/text_rules.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>

namespace ktr {

namespace {

constexpr qsizetype longestTable = qsizetype{1} << 18;
constexpr unsigned administratorBits = 0x3F;
constexpr unsigned otherRecipients = LimitValue::allRecipients - administratorBits; ///< set by any click

QString numberHeading()
{
    return QStringLiteral("#");
}

template <class Record> QString headingOf(const Field<Record> &field, const TextTable &texts)
{
    return headingText(field.label, field.unit, texts);
}

/// The numbers of the bits, "1+3+5". Itself behind them where ticking these boxes would give another mask:
/// the same texts are to give the same one.
QString maskCell(unsigned mask, unsigned boxes, unsigned others)
{
    QStringList numbers;
    for (unsigned bit = 0; boxes >> bit != 0; ++bit) {
        if ((mask & boxes) >> bit & 1U) {
            numbers += QString::number(bit + 1);
        }
    }
    const QString text = numbers.isEmpty() ? QStringLiteral("0") : numbers.join(u'+');
    return (mask & ~boxes) == others ? text : text + QStringLiteral(" (=%1)").arg(mask);
}

std::optional<QString> maskOf(const QString &cell, unsigned boxes, unsigned others)
{
    static const QRegularExpression form(QStringLiteral(R"(^([0-9+,; ]+?)\s*(?:\(=(\d+)\))?$)"));
    const auto match = form.match(cell);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    static const QRegularExpression between(QStringLiteral("[+,; ]+"));
    // Who changes the numbers means them: the mask behind tells the bits without a box alone.
    bool isMask = false;
    const unsigned whole = match.captured(2).toUInt(&isMask);
    if (!match.captured(2).isEmpty() && (!isMask || whole > (boxes | others))) {
        return match.captured(2);
    }
    unsigned mask = isMask ? whole & ~boxes : others;
    const QStringList numbers = match.captured(1).split(between, Qt::SkipEmptyParts);
    for (const QString &number : numbers) {
        const unsigned bit = number.toUInt();
        if (bit > 32 || (bit > 0 && (boxes >> (bit - 1) & 1U) == 0)) {
            return std::nullopt;
        }
        mask |= bit > 0 ? 1U << (bit - 1) : 0;
    }
    return QString::number(mask);
}

/// The number that an item of a list begins with, as "9 AnalogIn 1".
std::optional<int> itemNumber(const QString &cell)
{
    static const QRegularExpression form(QStringLiteral(R"(^(\d{1,5})(?:\s.*)?$)"),
                                         QRegularExpression::DotMatchesEverythingOption);
    const auto match = form.match(cell);
    return match.hasMatch() ? std::optional(match.captured(1).toInt()) : std::nullopt;
}

class Cells
{
public:
    explicit Cells(const ComparisonWords &words) : m_words(words) {}

    QString write(const Field<LimitValue> &field, const LimitValue &value) const
    {
        if (field.member == Member<LimitValue>(&LimitValue::channel)) {
            return channelName(value.channel, m_words.texts);
        }
        if (field.member == Member<LimitValue>(&LimitValue::comparison)) {
            return comparisonSign(value.comparison);
        }
        if (field.member == Member<LimitValue>(&LimitValue::recipients)) {
            return maskCell(value.recipients, administratorBits, otherRecipients);
        }
        if (field.member == Member<LimitValue>(&LimitValue::reference)) {
            const bool isMask = value.reference >= 0 && value.reference <= LimitValue::allReferences;
            return isMask ? maskCell(static_cast<unsigned>(value.reference), LimitValue::allReferences, 0)
                          : QStringLiteral("0 (=%1)").arg(numberText(value.reference, QLocale::c()));
        }
        return plain(field, value);
    }

    QString write(const Field<SwitchPoint> &field, const SwitchPoint &point) const
    {
        if (field.member == Member<SwitchPoint>(&SwitchPoint::target)) {
            const QString name = targetText(point.target);
            return point.target == 0 ? channelName(0, m_words.texts)
                   : name.isEmpty()  ? QString::number(point.target)
                                     : name;
        }
        if (field.member == Member<SwitchPoint>(&SwitchPoint::type)) {
            return switchTypeName(point.type, m_words.texts);
        }
        if (field.member == Member<SwitchPoint>(&SwitchPoint::limitValue)) {
            return QString::number(point.limitValue + 1);
        }
        return plain(field, point);
    }

    /// What a field stores of a cell; nothing when it cannot be understood.
    std::optional<QString> read(const Field<LimitValue> &field, const QString &cell) const
    {
        if (field.member == Member<LimitValue>(&LimitValue::channel)) {
            return numbered(isInvalid(cell) ? std::optional(0) : itemNumber(cell), 0, channelCount);
        }
        if (field.member == Member<LimitValue>(&LimitValue::comparison)) {
            const qsizetype sign = QStringLiteral("<=>").indexOf(cell);
            return cell.size() == 1 && sign >= 0 ? QString::number(sign + 1)
                                                 : numbered(itemNumber(cell), 1, 3);
        }
        if (field.member == Member<LimitValue>(&LimitValue::recipients)) {
            return maskOf(cell, administratorBits, otherRecipients);
        }
        if (field.member == Member<LimitValue>(&LimitValue::reference)) {
            return maskOf(cell, LimitValue::allReferences, 0);
        }
        return plainValue(field, cell);
    }

    std::optional<QString> read(const Field<SwitchPoint> &field, const QString &cell) const
    {
        if (field.member == Member<SwitchPoint>(&SwitchPoint::target)) {
            return targetOf(cell);
        }
        if (field.member == Member<SwitchPoint>(&SwitchPoint::type)) {
            return numbered(itemNumber(cell), 0, SwitchPoint::typeCount - 1);
        }
        if (field.member == Member<SwitchPoint>(&SwitchPoint::limitValue)) {
            const auto number = itemNumber(cell);
            return number ? numbered(*number - 1, 0, LimitValue::count - 1) : std::nullopt;
        }
        if (field.member == Member<SwitchPoint>(&SwitchPoint::start)) {
            return withLeadingZeros(cell);
        }
        return plainValue(field, cell);
    }

private:
    template <class Record> QString plain(const Field<Record> &field, const Record &record) const
    {
        const QString text = fieldText(field, record, m_words.locale);
        // "12.5" is a date to a spreadsheet whose numbers have a comma.
        return field.isNumber() && toNumber(text) ? QString(text).replace(u'.', m_words.locale.decimalPoint())
                                                  : text;
    }

    template <class Record>
    std::optional<QString> plainValue(const Field<Record> &field, const QString &cell) const
    {
        const QString text = cellWithoutGuard(cell);
        const bool isUsable = !field.isNumber() || text.trimmed().isEmpty() || toNumber(text);
        return isUsable ? std::optional(field.isNumber() ? text.trimmed() : text) : std::nullopt;
    }

    static std::optional<QString> numbered(std::optional<int> number, int lowest, int highest)
    {
        return number && *number >= lowest && *number <= highest ? std::optional(QString::number(*number))
                                                                 : std::nullopt;
    }

    bool isInvalid(const QString &cell) const
    {
        const auto is = [&cell](const QString &text) {
            return cell.compare(text.trimmed(), Qt::CaseInsensitive) == 0;
        };
        return is(m_words.texts.text(Text::Invalid)) || is(channelText(0)) || is(QStringLiteral("invalid"));
    }

    /// By the list's item, or by the number that the module knows it by.
    std::optional<QString> targetOf(const QString &cell) const
    {
        if (isInvalid(cell) || cell == u'0') {
            return QStringLiteral("0");
        }
        for (int position = 1; position < targetCount; ++position) {
            if (cell.compare(targetText(position), Qt::CaseInsensitive) == 0) {
                return QString::number(position);
            }
        }
        return numbered(targetPosition(itemNumber(cell).value_or(0)), 1, targetCount - 1);
    }

    /// A spreadsheet takes a time for a number.
    static QString withLeadingZeros(const QString &start)
    {
        constexpr int fewestDigits = 7; // of the year 2000
        constexpr int digits = 10;
        const bool isNumber = start.size() >= fewestDigits &&
                              std::ranges::all_of(start, [](QChar c) { return isDecimalDigit(c); });
        return isNumber ? start.rightJustified(digits, u'0') : start;
    }

    const ComparisonWords &m_words;
};

/// Which field each column is of; null for one that is passed over.
template <class Record> using Columns = QList<const Field<Record> *>;

template <class Record> Columns<Record> allColumns()
{
    Columns<Record> columns{nullptr};
    for (const Field<Record> &field : fieldsOf<Record>()) {
        columns += &field;
    }
    return columns;
}

template <class Record> const Field<Record> *fieldCalled(const QString &heading, const TextTable &texts)
{
    for (const Field<Record> &field : fieldsOf<Record>()) {
        for (const QString &name : {headingOf(field, texts), labelText(field.label, texts),
                                    QStringView(field.xmlName).toString()}) {
            if (heading.compare(name.trimmed(), Qt::CaseInsensitive) == 0) {
                return &field;
            }
        }
    }
    return nullptr;
}

/// Takes the line of headings off, where there is one.
template <class Record>
Status takeHeadings(QList<QStringList> &rows, const TextTable &texts, Columns<Record> &columns)
{
    Columns<Record> found;
    QStringList unknown;
    for (const QString &cell : rows.constFirst()) {
        const QString heading = cell.trimmed();
        const Field<Record> *field = fieldCalled<Record>(heading, texts);
        if (field == nullptr && heading != numberHeading() && !heading.isEmpty()) {
            unknown += quotedInRemark(heading).trimmed();
        }
        found += field;
    }
    const auto known = std::ranges::count_if(found, [](const auto *field) { return field != nullptr; });
    if (known > unknown.size()) {
        if (!unknown.isEmpty()) {
            return Status::failed(
                QCoreApplication::translate("Entries", "There is no column %1. Nothing was pasted")
                    .arg(unknown.join(QLatin1String(", "))));
        }
        rows.removeFirst();
        columns = found;
        return Status::done();
    }
    columns = allColumns<Record>();
    const auto fits = [&columns](const QStringList &row) { return row.size() == columns.size(); };
    return std::ranges::all_of(rows, fits)
               ? Status::done()
               : Status::failed(QCoreApplication::translate(
                                    "Entries",
                                    "The clipboard has no entries: neither headings nor all %1 columns. "
                                    "Nothing was pasted")
                                    .arg(columns.size()));
}

template <class Record>
Status readRow(const QStringList &cells, const Columns<Record> &columns, int number,
               const ComparisonWords &words, EntryClip::Row &row)
{
    const Cells reader(words);
    for (qsizetype column = 0; column < std::min(cells.size(), columns.size()); ++column) {
        const Field<Record> *field = columns[column];
        if (field == nullptr) {
            continue;
        }
        const QString name = QStringView(field->xmlName).toString();
        const QString &cell = cells[column];
        const bool isChoice = field->range && field->range->kind == Range::Kind::Choice;
        if (isChoice && cell.trimmed().isEmpty()) {
            continue; // stays as it is, as do the fields that its kind of entry has not
        }
        const std::optional<QString> value = reader.read(*field, isChoice ? cell.trimmed() : cell);
        if (!value) {
            return Status::failed(
                QCoreApplication::translate("Entries", "Row %1, %2: %3 is not understood. Nothing was pasted")
                    .arg(number)
                    .arg(labelText(field->label, words.texts), quotedInRemark(cell).trimmed()));
        }
        row.values.insert(name, *value);
    }
    return Status::done();
}

template <class Record>
Status readRows(QList<QStringList> rows, const ComparisonWords &words, EntryClip &clip)
{
    Columns<Record> columns;
    if (Status headings = takeHeadings<Record>(rows, words.texts, columns); !headings) {
        return headings;
    }
    for (int number = 1; const QStringList &cells : std::as_const(rows)) {
        EntryClip::Row row;
        if (Status read = readRow(cells, columns, number++, words, row); !read) {
            return read;
        }
        clip.rows += row;
    }
    return Status::done();
}

} // namespace

QString entryTable(const Configuration &configuration, EntryList list, const QList<int> &entries,
                   const ComparisonWords &words)
{
    QList<QStringList> rows;
    withEntries(configuration, list, [&]<class Record>(const std::array<Record, entriesOfList> &records) {
        QStringList headings{numberHeading()};
        for (const Field<Record> &field : fieldsOf<Record>()) {
            headings += headingOf(field, words.texts);
        }
        rows += headings;
        const Cells cells(words);
        for (const int entry : entries) {
            QStringList row{QString::number(entry + 1)};
            for (const Field<Record> &field : fieldsOf<Record>()) {
                row += field.appliesTo(entry) ? cells.write(field, records[static_cast<std::size_t>(entry)])
                                              : QString();
            }
            rows += row;
        }
    });
    return tabTable(rows);
}

Status readEntryTable(QStringView text, EntryList list, const ComparisonWords &words, EntryClip &clip)
{
    clip = EntryClip();
    clip.list = list;
    clip.isWhole = false;
    if (text.size() > longestTable) {
        return Status::failed(QCoreApplication::translate(
            "Entries", "What is on the clipboard is too long for entries. Nothing was pasted"));
    }
    QList<QStringList> rows = readTabTable(text);
    const auto isBlank = [](const QStringList &row) {
        return std::ranges::all_of(row, [](const QString &cell) { return cell.trimmed().isEmpty(); });
    };
    rows.removeIf(isBlank);
    if (rows.isEmpty()) {
        return Status::failed(QCoreApplication::translate("Entries", "There is no entry on the clipboard"));
    }
    return list == EntryList::LimitValues ? readRows<LimitValue>(rows, words, clip)
                                          : readRows<SwitchPoint>(rows, words, clip);
}

} // namespace ktr
