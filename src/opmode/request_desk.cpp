#include "opmode/request_desk.h"

#include "opmode/keeping/list_replay.h"
#include "opmode/request_sender.h"
#include "opmode/tree/notifications.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace ktr {

namespace {

const QString stationMember = QStringLiteral("station");
const QString textMember = QStringLiteral("text");
const QString untilMember = QStringLiteral("until");
const QString whyMember = QStringLiteral("why");
const QString nameKey = QStringLiteral("name");
const QString addressKey = QStringLiteral("address");
const QString onMember = QStringLiteral("on");

QList<qint64> alarmsOf(const QJsonObject &about)
{
    QList<qint64> alarms;
    for (const auto &alarm : about[QLatin1String("alarms")].toArray()) {
        alarms += alarm.toInteger();
    }
    return alarms;
}

bool is(const QString &what, const char *word)
{
    return what == QLatin1String(word);
}

} // namespace

RequestDesk::RequestDesk(const ListParts &parts, StationActions &stationActions, Acknowledger &acknowledger,
                         AlarmActions &alarmActions)
    : m_parts(parts),
      m_stationActions(stationActions),
      m_acknowledger(acknowledger),
      m_alarmActions(alarmActions),
      m_timer(parts.timers.create())
{}

void RequestDesk::start()
{
    m_start = m_parts.moment();
    m_last = 0;
    m_timer->start(period, [this] { look(); });
}

void RequestDesk::stop()
{
    m_timer->stop();
    m_reader.reset();
}

void RequestDesk::look()
{
    m_timer->start(period, [this] { look(); });
    if (!m_parts.record.isOpen()) {
        m_reader.reset(); // another one may take its place
        return;
    }
    if (!m_reader || m_reader->isStale()) {
        m_reader = std::make_unique<RecordReader>(m_parts.record.path());
        m_version = 0;
    }
    const qint64 version = m_reader->dataVersion();
    if (version == m_version && version != 0) {
        return;
    }
    QList<RequestRow> rows;
    if (!m_reader->openRequests(m_last, [&](const RequestRow &row) { rows += row; })) {
        m_reader.reset(); // the next look has a new connection
        return;
    }
    m_version = version;
    for (const RequestRow &row : std::as_const(rows)) {
        take(row);
    }
}

void RequestDesk::take(const RequestRow &row)
{
    m_last = row.id;
    const qint64 now = m_parts.moment();
    const Status done =
        row.at < m_start ? Status::failed(tr("it was asked for before the stations were watched"))
        : now - row.at > RequestSender::patienceMs
            ? Status::failed(tr("the program that watches the stations was held up for too long"))
            : carryOut(row);
    m_parts.record.add(RequestAnswerRow{row.id, now, done.message()});
    m_parts.record.writer().flush();
}

Status RequestDesk::carryOut(const RequestRow &row)
{
    const QString before = m_parts.record.operatorName();
    m_parts.record.setOperator(row.operatorName);
    Status done = carryOut(row.what, QJsonDocument::fromJson(row.detail.toUtf8()).object());
    m_parts.record.setOperator(before);
    return done;
}

Status RequestDesk::carryOut(const QString &what, const QJsonObject &about)
{
    if (is(what, requests::acknowledge)) {
        return acknowledge(about);
    }
    if (is(what, requests::add)) {
        return add(about);
    }
    if (is(what, requests::shift)) {
        m_parts.record.addShift(m_parts.moment());
        return Status::done();
    }
    bool isKnown = true;
    Status done = onAlarms(what, about, isKnown);
    if (!isKnown) {
        isKnown = true;
        done = onStation(what, about, isKnown);
    }
    return isKnown ? done : Status::failed(tr("\"%1\" is not known to the program that watches").arg(what));
}

/// What came anew since it was seen stays.
Status RequestDesk::acknowledge(const QJsonObject &about)
{
    QModelIndexList entries;
    qsizetype changed = 0;
    const QJsonArray wanted = about[QLatin1String("entries")].toArray();
    for (const auto &value : wanted) {
        const QJsonObject entry = value.toObject();
        const QString branch = m_parts.record.kennung(entry[stationMember].toInteger()) + u'/' +
                               QString::fromLatin1(branches::notifications) + u'/';
        const QModelIndex found = m_parts.tree.find(branch + entry[QLatin1String("entry")].toString());
        const bool isSame =
            found.isValid() && m_parts.tree.arrivals().value(StationTree::idOf(found)).raised ==
                                   entry[QLatin1String("raised")].toInteger();
        if (isSame) {
            entries += found;
        } else {
            ++changed;
        }
    }
    Status done = entries.isEmpty() ? Status::done() : m_acknowledger.acknowledge(entries);
    const QList<qint64> alarms = alarmsOf(about);
    if (done && !alarms.isEmpty()) {
        done = m_acknowledger.acknowledgeAlarms(alarms);
    }
    return done && changed > 0 ? Status::failed(tr("alarms that came anew meanwhile: %1").arg(changed))
                               : done;
}

Status RequestDesk::onAlarms(const QString &what, const QJsonObject &about, bool &isKnown)
{
    const qint64 station = about[stationMember].toInteger();
    const qint64 until = about[untilMember].toInteger();
    const QString why = about[whyMember].toString();
    if (is(what, requests::comment)) {
        m_alarmActions.comment(alarmsOf(about), about[textMember].toString());
    } else if (is(what, requests::shelve)) {
        m_alarmActions.shelve(alarmsOf(about), until, why);
    } else if (is(what, requests::maintain)) {
        m_alarmActions.shelveStation(station, until, why);
    } else if (is(what, requests::unshelve)) {
        m_alarmActions.unshelve(station, about[textMember].toString());
    } else {
        isKnown = false;
    }
    return Status::done();
}

Status RequestDesk::add(const QJsonObject &about)
{
    const QString kennung =
        m_stationActions.add(about[nameKey].toString(), about[addressKey].toString(), about[onMember].toBool());
    return kennung.isEmpty() ? Status::failed(tr("no station can be called that")) : Status::done();
}

Status RequestDesk::onStation(const QString &what, const QJsonObject &about, bool &isKnown)
{
    const QString kennung = m_parts.record.kennung(about[stationMember].toInteger());
    const bool on = about[onMember].toBool();
    if (is(what, requests::online) && !about.contains(stationMember)) {
        m_stationActions.setAllOnline(on);
        return Status::done();
    }
    if (m_parts.stations.Item(kennung) == nullptr) {
        return Status::failed(tr("the station is no longer in the list"));
    }
    if (is(what, requests::online)) {
        m_stationActions.setOnline(kennung, on);
    } else if (is(what, requests::exclusive)) {
        m_stationActions.setExclusive(kennung, on);
    } else if (is(what, requests::schedule)) {
        m_stationActions.setSchedule(
            kennung, stationAttributes(about[QLatin1String("attributes")].toString()).schedule);
    } else if (is(what, requests::address)) {
        m_stationActions.setHostAddress(kennung, about[addressKey].toString());
    } else if (is(what, requests::remove)) {
        m_stationActions.remove(kennung);
    } else if (is(what, requests::rename)) {
        return m_parts.tree.setData(m_parts.tree.find(kennung), about[nameKey].toString())
                   ? Status::done()
                   : Status::failed(tr("no station can be called that"));
    } else if (is(what, requests::values)) {
        return m_stationActions.requestValues(kennung)
                   ? Status::done()
                   : Status::failed(tr("%1 has a text to deliver already").arg(kennung));
    } else {
        isKnown = false;
    }
    return Status::done();
}

} // namespace ktr
