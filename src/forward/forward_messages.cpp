#include "forward/forward_messages.h"

#include "record/event_names.h"
#include "record/json_text.h"

#include <QDateTime>

namespace ktr {

namespace {

/// The members of an object in the order in which they are added.
class Members
{
public:
    void add(const char *name, const QString &text)
    {
        if (!text.isEmpty()) {
            put(name, jsonString(text));
        }
    }
    /// 0 is none.
    void add(const char *name, qint64 number)
    {
        if (number != 0) {
            put(name, QString::number(number));
        }
    }
    void addTime(const char *name, qint64 at) { add(name, at == 0 ? QString() : utcText(at)); }
    void put(const char *name, const QString &json)
    {
        m_text += (m_text.isEmpty() ? u'{' : u',') + jsonString(QLatin1String(name)) + u':' + json;
    }
    QByteArray all() const { return (m_text + u'}').toUtf8(); }

private:
    QString m_text;
};

/// What monitor prints has all four of them, empty or not.
Members begin(qint64 at, const QString &station, const QString &kind, const QString &text)
{
    Members members;
    members.addTime("time", at);
    members.put("station", jsonString(station));
    members.put("kind", jsonString(kind));
    members.put("text", jsonString(text));
    return members;
}

QString level(const QString &name)
{
    QString encoded;
    for (const char32_t letter : name.toUcs4()) {
        const QString one = QString::fromUcs4(&letter, 1);
        const QChar::Category category = QChar::category(letter);
        const bool isLetter = category < QChar::Other_Control || category > QChar::Other_NotAssigned;
        if (isLetter && !QStringView(u"/+#%").contains(one)) {
            encoded += one;
        } else {
            encoded += QString::fromLatin1(one.toUtf8().toPercentEncoding({}, "/+#%"));
        }
    }
    return encoded;
}

QString stateOf(bool isOnline, cStation::Liveness liveness)
{
    if (!isOnline) {
        return QStringLiteral("off");
    }
    switch (liveness) {
    case cStation::Liveness::Alive:
        return QStringLiteral("alive");
    case cStation::Liveness::Silent:
        return QStringLiteral("silent");
    case cStation::Liveness::Unknown:
        break;
    }
    return QStringLiteral("unknown");
}

Members state(const QString &name, const QString &state, const QString &address, const QString &csq,
              bool pukNeeded)
{
    Members members;
    members.put("station", jsonString(name));
    members.put("state", jsonString(state));
    members.add("address", address);
    members.add("csq", csq);
    if (pukNeeded) {
        members.put("puk", QStringLiteral("true"));
    }
    return members;
}

} // namespace

QString utcText(qint64 at)
{
    return QDateTime::fromMSecsSinceEpoch(at, Qt::UTC).toString(Qt::ISODateWithMs);
}

QByteArray eventJson(const EventRow &event, const QString &station)
{
    Members members = begin(event.at, station, nameOf(event.kind), event.text);
    members.add("number", event.id);
    members.add("operator", event.operatorName);
    members.add("alarm", event.alarm);
    if (const QJsonDocument detail = jsonOf(event.detail); !detail.isNull()) {
        members.put("detail", QString::fromUtf8(detail.toJson(QJsonDocument::Compact)));
    } else {
        members.add("detail", event.detail);
    }
    return members.all();
}

QByteArray alarmJson(const AlarmRow &alarm, const QString &station)
{
    Members members = begin(alarm.last, station, nameOf(alarm.kind), alarm.text);
    members.add("number", alarm.id);
    members.add("priority", alarm.priority);
    members.addTime("came", alarm.first);
    members.add("count", alarm.count);
    if (!alarm.recipients.isEmpty()) {
        members.put("recipients", jsonText(QJsonArray::fromStringList(alarm.recipients)));
    }
    members.addTime("acknowledged", alarm.acknowledged);
    members.add("by", alarm.acknowledgedBy);
    members.add("comment", alarm.comment);
    members.addTime("over", alarm.over);
    members.add("why over", alarm.overWhy);
    members.addTime("shelved until", alarm.shelvedUntil);
    members.add("shelved by", alarm.shelvedBy);
    members.add("why shelved", alarm.shelvedWhy);
    return members.all();
}

QByteArray stateJson(const cStation &station, const QString &name)
{
    Members members = state(name, stateOf(station.online(), station.liveness()), station.hostAddress(),
                            station.csq(), station.pukNeeded());
    members.add("trouble", station.trouble());
    return members.all();
}

QByteArray stateJson(const StationAttributes &attributes, const cStation::Seen &seen, const QString &name)
{
    return state(name, stateOf(attributes.online, seen.liveness), attributes.hostAddress, seen.csq,
                 seen.pukNeeded)
        .all();
}

QByteArray withTime(const QByteArray &stateJson, qint64 at)
{
    return "{\"time\":" + jsonString(utcText(at)).toUtf8() + ',' + stateJson.sliced(1);
}

QString ForwardTopics::of(const QString &station) const
{
    return station.isEmpty() ? m_prefix : m_prefix + QLatin1String("/stations/") + level(station);
}

} // namespace ktr
