#include "config/entry_clip.h"

#include "config/fields.h"
#include "platform/text_rules.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace ktr {

namespace {

const QString listKey = QStringLiteral("list");
const QString cutKey = QStringLiteral("cut");
const QString entriesKey = QStringLiteral("entries");
const QString numberKey = QStringLiteral("number");
const QString valuesKey = QStringLiteral("values");

/// In the words of the file.
QString listName(EntryList list)
{
    return list == EntryList::LimitValues ? QStringLiteral("Grenzwert") : QStringLiteral("Schaltpunkt");
}

/// A number that means the same stays as the user once wrote it: spreadsheets write numbers in their own way.
bool isSameNumber(const QString &a, const QString &b)
{
    const auto number = toNumber(a);
    return number && number == toNumber(b);
}

template <class Record>
Status pasteRow(const EntryClip &clip, const EntryClip::Row &row, int entry, Record &record)
{
    for (const Field<Record> &field : fieldsOf<Record>()) {
        const auto value = row.values.constFind(QStringView(field.xmlName).toString());
        if (value == row.values.constEnd()) {
            continue;
        }
        if (!clip.isWhole && !field.appliesTo(entry)) {
            if (value->isEmpty()) {
                continue;
            }
            return Status::failed(
                QCoreApplication::translate("Entries",
                                            "Limit value %1 has no %2, which the clipboard has: 1 to "
                                            "16 watch a channel, 17 to 20 combine those. Nothing was pasted")
                    .arg(entry + 1)
                    .arg(QString::fromUtf16(field.xmlName)));
        }
        if (!clip.isWhole && field.isNumber() &&
            isSameNumber(*value, fieldText(field, record, QLocale::c()))) {
            continue;
        }
        if (!setFieldText(field, record, clip.isWhole ? *value : typedText(field, *value))) {
            return Status::failed(
                QCoreApplication::translate("Entries", "%1 cannot be taken as %2. Nothing was pasted")
                    .arg(quotedInRemark(*value).trimmed(), QString::fromUtf16(field.xmlName)));
        }
    }
    return Status::done();
}

Status roomFor(const EntryClip &clip, int first)
{
    if (clip.rows.isEmpty()) {
        return Status::failed(QCoreApplication::translate("Entries", "There is no entry on the clipboard"));
    }
    if (first + clip.rows.size() > entriesOfList) {
        return Status::failed(
            QCoreApplication::translate("Entries", "%1 entries have no room from %2 on. Nothing was pasted")
                .arg(clip.rows.size())
                .arg(first + 1));
    }
    for (int entry = first; const EntryClip::Row &row : clip.rows) {
        if (row.number >= 0 && !isSameKind(clip.list, row.number, entry)) {
            return Status::failed(
                QCoreApplication::translate("Entries",
                                            "Limit value %1 has no place at %2: 1 to 16 watch a channel, "
                                            "17 to 20 combine those. Nothing was pasted")
                    .arg(row.number + 1)
                    .arg(entry + 1));
        }
        ++entry;
    }
    return Status::done();
}

} // namespace

EntryClip clipOf(const Configuration &configuration, EntryList list, const QList<int> &entries)
{
    EntryClip clip;
    clip.list = list;
    withEntries(configuration, list, [&]<class Record>(const std::array<Record, entriesOfList> &records) {
        for (const int entry : entries) {
            EntryClip::Row row{entry, {}};
            for (const Field<Record> &field : fieldsOf<Record>()) {
                row.values.insert(QString::fromUtf16(field.xmlName),
                                  fieldText(field, records[static_cast<std::size_t>(entry)], QLocale::c()));
            }
            clip.rows += row;
        }
    });
    return clip;
}

QByteArray writeClip(const EntryClip &clip)
{
    QJsonArray entries;
    for (const EntryClip::Row &row : clip.rows) {
        QJsonObject values;
        for (auto value = row.values.cbegin(); value != row.values.cend(); ++value) {
            values.insert(value.key(), value.value());
        }
        entries.append(QJsonObject{{numberKey, row.number + 1}, {valuesKey, values}});
    }
    return QJsonDocument(
               QJsonObject{{listKey, listName(clip.list)}, {cutKey, clip.cutBy}, {entriesKey, entries}})
        .toJson(QJsonDocument::Compact);
}

std::optional<EntryClip> readClip(const QByteArray &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    EntryClip clip;
    const QString name = object.value(listKey).toString();
    if (name == listName(EntryList::SwitchPoints)) {
        clip.list = EntryList::SwitchPoints;
    } else if (name != listName(EntryList::LimitValues)) {
        return std::nullopt;
    }
    clip.cutBy = object.value(cutKey).toString();
    for (const auto &entry : object.value(entriesKey).toArray()) {
        EntryClip::Row row;
        row.number = entry.toObject().value(numberKey).toInt() - 1;
        const QJsonObject values = entry.toObject().value(valuesKey).toObject();
        if (row.number < 0 || row.number >= entriesOfList || values.isEmpty()) {
            return std::nullopt;
        }
        for (auto value = values.constBegin(); value != values.constEnd(); ++value) {
            row.values.insert(value.key(), value.value().toString());
        }
        clip.rows += row;
    }
    return clip;
}

Status pasteEntries(Configuration &configuration, const EntryClip &clip, int first,
                    const Environment &environment)
{
    if (Status room = roomFor(clip, first); !room) {
        return room;
    }
    Configuration changed = configuration;
    for (int entry = first; const EntryClip::Row &row : clip.rows) {
        if (clip.isWhole) {
            clearEntry(changed, {clip.list, entry}, environment);
        }
        Status pasted = withEntries(changed, clip.list, [&](auto &records) {
            return pasteRow(clip, row, entry, records[static_cast<std::size_t>(entry)]);
        });
        if (!pasted) {
            return pasted;
        }
        ++entry;
    }
    configuration = std::move(changed);
    return Status::done();
}

} // namespace ktr
