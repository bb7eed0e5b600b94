#include "record/row_form.h"

#include "record/json_text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace ktr {

namespace {

constexpr int newestForm = 1;

const QLatin1String formMember("form");
const QLatin1String rowsMember("rows");
const QLatin1String rowMember("row");

// The fields of each kind, once for both directions. Names stand in files: new fields get new ones, and a
// fresh value where they are missing.

void fieldsOf(auto &&row,
              const auto &field) requires std::is_same_v<std::remove_cvref_t<decltype(row)>, EventRow>
{
    field("id", row.id);
    field("at", row.at);
    field("station", row.station);
    field("kind", row.kind);
    field("text", row.text);
    field("detail", row.detail);
    field("operator", row.operatorName);
    field("alarm", row.alarm);
}

void fieldsOf(auto &&row,
              const auto &field) requires std::is_same_v<std::remove_cvref_t<decltype(row)>, StationRow>
{
    field("id", row.id);
    field("name", row.name);
    field("listed", row.listed);
    field("attributes", row.attributes);
}

void fieldsOf(auto &&row,
              const auto &field) requires std::is_same_v<std::remove_cvref_t<decltype(row)>, NotificationRow>
{
    field("station", row.station);
    field("entry", row.entry);
    field("first", row.first);
    field("last", row.last);
    field("count", row.count);
    field("raised", row.raised);
    field("acknowledged", row.acknowledged);
    field("listed", row.listed);
}

void fieldsOf(auto &&row,
              const auto &field) requires std::is_same_v<std::remove_cvref_t<decltype(row)>, AlarmRow>
{
    field("id", row.id);
    field("station", row.station);
    field("kind", row.kind);
    field("text", row.text);
    field("priority", row.priority);
    field("first", row.first);
    field("last", row.last);
    field("count", row.count);
    field("recipients", row.recipients);
    field("acknowledged", row.acknowledged);
    field("acknowledged_by", row.acknowledgedBy);
    field("comment", row.comment);
    field("over", row.over);
    field("over_why", row.overWhy);
    field("shelved_until", row.shelvedUntil);
    field("shelved_by", row.shelvedBy);
    field("shelved_why", row.shelvedWhy);
}

void fieldsOf(auto &&row,
              const auto &field) requires std::is_same_v<std::remove_cvref_t<decltype(row)>, HistoryRow>
{
    field("station", row.station);
    field("channel", row.channel);
    field("at", row.at);
    field("first", row.first);
    field("second", row.second);
}

void fieldsOf(auto &&row,
              const auto &field) requires std::is_same_v<std::remove_cvref_t<decltype(row)>, ValueRow>
{
    field("station", row.station);
    field("channel", row.channel);
    field("at", row.at);
    field("value", row.value);
}

void fieldsOf(auto &&row,
              const auto &field) requires std::is_same_v<std::remove_cvref_t<decltype(row)>, ListFileRow>
{
    field("checksum", row.checksum);
    field("upto", row.upto);
    field("at", row.at);
}

void fieldsOf(auto &&row,
              const auto &field) requires std::is_same_v<std::remove_cvref_t<decltype(row)>, SettingRow>
{
    field("name", row.name);
    field("value", row.value);
}

/// Who asked, and when, the server says.
void fieldsOf(auto &&row,
              const auto &field) requires std::is_same_v<std::remove_cvref_t<decltype(row)>, RequestRow>
{
    field("id", row.id);
    field("at", row.at);
    field("operator", row.operatorName);
    field("what", row.what);
    field("detail", row.detail);
}

void fieldsOf(auto &&row,
              const auto &field) requires std::is_same_v<std::remove_cvref_t<decltype(row)>, RequestAnswerRow>
{
    field("id", row.id);
    field("at", row.at);
    field("result", row.result);
}

/// In the order of the variant.
constexpr std::array kindNames{"event", "station", "notification", "alarm",   "history",
                               "value", "file",    "setting",      "request", "answer"};
static_assert(kindNames.size() == std::variant_size_v<RecordRow>);

struct Writing
{
    QJsonObject &object;
    const QJsonObject &fresh;

    void put(const char *name, const QJsonValue &value) const
    {
        if (const QLatin1String member(name); fresh.isEmpty() || fresh[member] != value) {
            object.insert(member, value);
        }
    }
    void operator()(const char *name, qint64 value) const { put(name, value); }
    void operator()(const char *name, int value) const { put(name, value); }
    void operator()(const char *name, bool value) const { put(name, value); }
    void operator()(const char *name, const QString &value) const { put(name, value); }
    void operator()(const char *name, const QStringList &value) const
    {
        put(name, QJsonArray::fromStringList(value));
    }
    template <class Enum>
    requires std::is_enum_v<Enum>
    void operator()(const char *name, Enum value) const { put(name, static_cast<int>(value)); }
};

struct Reading
{
    const QJsonObject &object;

    QJsonValue member(const char *name) const { return object[QLatin1String(name)]; }
    void operator()(const char *name, qint64 &value) const { value = member(name).toInteger(value); }
    void operator()(const char *name, int &value) const { value = member(name).toInt(value); }
    void operator()(const char *name, bool &value) const { value = member(name).toBool(value); }
    void operator()(const char *name, QString &value) const { value = member(name).toString(); }
    void operator()(const char *name, QStringList &value) const
    {
        for (const auto &part : member(name).toArray()) {
            value += part.toString();
        }
    }
    template <class Enum>
    requires std::is_enum_v<Enum>
    void operator()(const char *name, Enum &value) const
    {
        value = static_cast<Enum>(member(name).toInt(static_cast<int>(value)));
    }
};

template <class Row> QJsonObject allFields(const Row &row)
{
    QJsonObject object;
    fieldsOf(row, Writing{object, QJsonObject()});
    return object;
}

template <class Row> QJsonObject objectOf(const Row &row, std::size_t kind)
{
    static const QJsonObject fresh = allFields(Row());
    QJsonObject object{{rowMember, QLatin1String(kindNames.at(kind))}};
    fieldsOf(row, Writing{object, fresh});
    return object;
}

template <std::size_t Kind = 0> bool readRow(const QJsonObject &object, std::vector<RecordRow> &rows)
{
    if constexpr (Kind < std::variant_size_v<RecordRow>) {
        if (object[rowMember].toString() != QLatin1String(kindNames.at(Kind))) {
            return readRow<Kind + 1>(object, rows);
        }
        std::variant_alternative_t<Kind, RecordRow> row;
        fieldsOf(row, Reading{object});
        rows.emplace_back(std::move(row));
        return true;
    } else {
        return false;
    }
}

} // namespace

QByteArray rowForm(const std::vector<RecordRow> &rows)
{
    QJsonArray objects;
    for (const RecordRow &row : rows) {
        objects += std::visit([&](const auto &kind) { return objectOf(kind, row.index()); }, row);
    }
    return QJsonDocument(QJsonObject{{formMember, newestForm}, {rowsMember, objects}})
        .toJson(QJsonDocument::Compact);
}

bool readRowForm(const QByteArray &form, std::vector<RecordRow> &rows)
{
    const QJsonObject document = QJsonDocument::fromJson(form).object();
    const int number = document[formMember].toInt();
    if (number < 1 || number > newestForm) {
        return false;
    }
    const QJsonArray objects = document[rowsMember].toArray();
    return std::ranges::all_of(
        objects, [&rows](const QJsonValue &object) { return readRow(object.toObject(), rows); });
}

} // namespace ktr
