#include "year/play.h"

#include "opmode/alarms/alarm_book.h"
#include "opmode/keeping/list_record.h"
#include "opmode/keeping/list_replay.h"
#include "opmode/keeping/nodes_file.h"
#include "opmode/tree/acknowledgement.h"
#include "opmode/tree/notifications.h"
#include "platform/csv.h"
#include "platform/files.h"
#include "record/record_reader.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>
#include <map>

namespace ktr::year {

namespace {

using namespace Qt::StringLiterals;
using What = Step::What;

constexpr int daysInTheTree = 30;
constexpr int archiveDaysInTheTree = 7;

AlarmRules rules()
{
    return AlarmRules({{u"fail"_s, true, true, AlarmPriority::High, true, u"ok"_s}});
}

class Play
{
public:
    Play(const QString &folder, int stations, int days)
        : m_stations(stations),
          m_days(days),
          m_list(m_timers, [this](const QString &trouble) { m_trouble = trouble; }),
          m_tree({u"Notifications"_s, u"History"_s, u"IP"_s}),
          m_book([this] { return m_list.writer().nextAlarmId(); })
    {
        m_list.setList(listOf(folder));
        QObject::connect(&m_book, &AlarmBook::changed, [this](const AlarmRow &row) { m_list.add(row); });
    }

    Status run()
    {
        const OpenedRecord opened = m_list.open();
        if (!opened.status) {
            return opened.status;
        }
        m_list.begin(opened, {}, 0);
        m_now = firstDay;
        begin();
        for (int day = 0; day < m_days && m_trouble.isEmpty(); ++day) {
            playDay(day);
        }
        end();
        Status kept = m_list.writer().flushNow();
        while (kept && !m_list.writer().isAtRest()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return m_trouble.isEmpty() ? kept : Status::failed(m_trouble);
    }

private:
    void begin()
    {
        m_book.setRules(rules());
        m_list.add(SettingRow{u"rules"_s, rules().toJson()});
        for (int i = 1; i <= m_stations; ++i) {
            const QString kennung = stationName(i);
            m_tree.addStation(kennung);
            const StationRow row{m_list.addStation(kennung), kennung, true, toJson(attributes())};
            m_list.add(row);
            m_list.add(EventKind::StationAdded, kennung, m_now, kennung, ListRecord::By::Program,
                       row.attributes);
        }
        m_list.add(EventKind::Started, {}, m_now, m_list.path(), ListRecord::By::Program);
    }

    void playDay(int day)
    {
        m_day = day;
        QList<Step> steps;
        for (int station = 1; station <= m_stations; ++station) {
            steps += everydayOf(station, day);
            if (const std::optional<Story> story = storyOf(station, day, m_days)) {
                for (const Step &step : story->steps) {
                    m_later.emplace(step.at, step);
                }
            }
        }
        const auto end = m_later.lower_bound(firstDay + (day + 1) * aDay);
        for (auto step = m_later.begin(); step != end; ++step) {
            steps += step->second;
        }
        m_later.erase(m_later.begin(), end);
        std::ranges::stable_sort(steps, {}, &Step::at);
        for (const Step &step : std::as_const(steps)) {
            carryOut(step);
        }
        forgetNotes();
    }

    void carryOut(const Step &step)
    {
        m_now = std::max(m_now, step.at);
        const QString kennung = stationName(step.station);
        m_list.setOperator(step.by);
        switch (step.what) {
        case What::Say:
            say(kennung, step);
            break;
        case What::FallSilent:
            m_list.add(EventKind::Silent, kennung, m_now, u"10.0.0.%1"_s.arg(step.station % 250),
                       ListRecord::By::Program);
            m_silent[step.station] = m_book.begin(AlarmKind::Silent, step.station, step.text, m_now);
            break;
        case What::IsHeard:
            m_list.add(EventKind::Alive, kennung, m_now, u"10.0.0.%1"_s.arg(step.station % 250),
                       ListRecord::By::Program);
            m_book.end(m_silent.take(step.station), m_now);
            break;
        case What::Comment:
            m_list.add(EventKind::Commented, kennung, m_now, step.text, ListRecord::By::Operator, {},
                       alarmOf(step));
            m_book.comment(alarmOf(step), step.text);
            break;
        case What::Acknowledge:
            acknowledge(kennung, alarmOf(step));
            break;
        }
        constexpr quint64 rowsOfACommit = 20'000;
        if (m_list.writer().addedCount() - m_flushed > rowsOfACommit) {
            m_flushed = m_list.writer().addedCount();
            (void)m_list.writer().flushNow();
        }
    }

    qint64 alarmOf(const Step &step) const
    {
        const AlarmRow *alarm = m_book.find(step.station, step.alarm);
        return alarm != nullptr ? alarm->id : m_silent.value(step.station);
    }

    /// As a message that arrives is kept.
    void say(const QString &kennung, const Step &step)
    {
        const QString text = step.number + u" --> "_s + step.text;
        const StationMessage message = interpretStationMessage(text);
        const QDateTime now = QDateTime::fromMSecsSinceEpoch(m_now);
        qint64 alarm = 0;
        EventKind kind = EventKind::Values;
        if (const auto *notification = std::get_if<NotificationMessage>(&message)) {
            kind = EventKind::Notification;
            const bool isNote = step.text.contains(u'(');
            Arrival arrival{.received = m_now};
            if (!isNote || m_day >= m_days - daysInTheTree) {
                arrival =
                    m_tree.arrivals().value(StationTree::idOf(m_tree.apply(kennung, message, now).entry));
            } else {
                m_notes.emplace(m_now, std::pair(step.station, notification->entry.key));
            }
            const NotificationText parts = splitNotification(notification->entry.text);
            alarm = m_book.addNotification(step.station, parts.number, parts.message, m_now);
            m_list.add(m_list.notification(step.station, notification->entry.key, arrival));
        } else if (std::holds_alternative<HistoryMessage>(message)) {
            kind = EventKind::History;
            if (m_day >= m_days - archiveDaysInTheTree) {
                m_tree.apply(kennung, message, now);
            }
        } else if (m_day == m_days - 1) {
            m_tree.apply(kennung, message, now);
        }
        m_list.add(kind, kennung, m_now, text, ListRecord::By::Program, {}, alarm);
        m_list.addContent(kennung, m_now, message);
    }

    void acknowledge(const QString &kennung, qint64 id)
    {
        const AlarmRow alarm = *m_book.alarm(id);
        QModelIndexList entries;
        for (const QString &number : alarm.recipients) {
            entries += m_tree.find(kennung + u'/' + QString::fromLatin1(branches::notifications) + u'/' +
                                   notificationText({number, alarm.text}));
        }
        const QList<NodeChange> changes =
            acknowledgementOf(entries, m_tree, QDateTime::fromMSecsSinceEpoch(m_now));
        for (const QModelIndex &entry : std::as_const(entries)) {
            Arrival arrival = m_tree.arrivals().value(StationTree::idOf(entry));
            arrival.acknowledged = m_now;
            const QString name = textOf(m_tree.nodes().name(StationTree::idOf(entry)));
            m_list.add(m_list.notification(alarm.station, name, arrival));
            m_list.add(EventKind::Acknowledged, kennung, m_now, name, ListRecord::By::Operator, {}, id);
        }
        if (entries.isEmpty()) {
            m_list.add(EventKind::Acknowledged, kennung, m_now, alarm.text, ListRecord::By::Operator, {}, id);
        }
        m_tree.carryOut(changes);
        m_book.acknowledge({id}, m_now, m_list.operatorName());
    }

    /// What the tree lets go after a month.
    void forgetNotes()
    {
        const auto end = m_notes.lower_bound(m_now - daysInTheTree * aDay);
        for (auto note = m_notes.begin(); note != end; ++note) {
            const auto &[station, entry] = note->second;
            NotificationRow row = m_list.notification(station, entry, {.received = note->first});
            row.listed = false;
            m_list.add(row);
            m_list.add(EventKind::EntryRemoved, stationName(station), m_now,
                       QString::fromLatin1(branches::notifications) + u'/' + entry, ListRecord::By::Program);
        }
        m_notes.erase(m_notes.begin(), end);
    }

    void end()
    {
        m_now = firstDay + m_days * aDay + anHour;
        m_day = m_days;
        while (!m_notes.empty()) { // nor does the list hold what came before its last month
            const auto note = m_notes.begin();
            NotificationRow row =
                m_list.notification(note->second.first, note->second.second, {.received = note->first});
            row.listed = false;
            m_list.add(row);
            m_notes.erase(note);
        }
        m_list.add(EventKind::Stopped, {}, m_now, m_list.path(), ListRecord::By::Program);
        NodesFile file(m_list.path().chopped(QFileInfo(m_list.path()).fileName().size()) + u"nodes.xml"_s);
        const Status saved =
            file.save(writeNodes(m_tree.nodes(), [](const QString &) { return attributes(); }));
        if (!saved) {
            m_trouble = saved.message();
        }
        m_list.add(ListFileRow{listFileMark(file.checksum(), file.size()), m_list.lastEvent(), m_now});
    }

    static StationAttributes attributes()
    {
        StationAttributes attributes;
        attributes.hostAddress = u"127.0.0.1"_s;
        attributes.online = true;
        return attributes;
    }

    int m_stations;
    int m_days;
    EventLoopTimers m_timers;
    QString m_trouble;
    qint64 m_now = 0;
    int m_day = 0;
    ListRecord m_list;
    StationTree m_tree;
    AlarmBook m_book;
    std::multimap<qint64, Step> m_later;
    std::multimap<qint64, std::pair<qint64, QString>> m_notes; ///< that the tree forgets later
    QHash<qint64, qint64> m_silent;                            ///< the alarms of stations that are silent
    quint64 m_flushed = 0;
};

/// What the events of an alarm say.
struct Tally
{
    qint64 told = 0;
    qint64 acknowledged = 0;
    QString by;
    QString wrote;
    bool operator==(const Tally &) const = default;
};

template <class Page, class Take> Status eachRow(const Page &page, const Take &take)
{
    std::optional<RecordKey> after;
    do {
        const auto found = page(after);
        if (!found.status) {
            return found.status;
        }
        for (const auto &row : found.rows) {
            take(row);
        }
        after = found.next;
    } while (after);
    return Status::done();
}

using Known = std::pair<AlarmRow, Tally>;

template <class Take> void eachOccurrence(int stations, int days, const Take &take)
{
    for (int station = 1; station <= stations; ++station) {
        for (int day = 0; day < days; ++day) {
            if (const std::optional<Story> story = storyOf(station, day, days)) {
                for (const auto &[row, told] : story->occurrences) {
                    take(row, told);
                }
            }
        }
    }
}

QString shownTime(qint64 at)
{
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(at);
    return at == 0 ? QString() : time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

QString shown(const AlarmRow &row, const Tally &tally)
{
    return u"station %1, \"%2\", came %3, last %4, %5 times to %6, acknowledged %7 by %8, \"%9\", "_s
               .arg(row.station)
               .arg(row.text)
               .arg(row.first)
               .arg(row.last)
               .arg(row.count)
               .arg(row.recipients.join(u'+'))
               .arg(row.acknowledged)
               .arg(row.acknowledgedBy, row.comment) +
           u"over %1 by \"%2\"; events: %3 messages, acknowledged %4 by %5, \"%6\""_s.arg(row.over)
               .arg(row.overWhy)
               .arg(tally.told)
               .arg(tally.acknowledged)
               .arg(tally.by, tally.wrote);
}

} // namespace

QString listOf(const QString &folder)
{
    return folder + u"/nodes.xml"_s;
}

Status play(const QString &folder, int stations, int days)
{
    return Play(folder, stations, days).run();
}

Status compare(const QString &folder, int stations, int days, qint64 &alarms)
{
    constexpr int aPage = 2000;
    std::vector<Known> expected;
    eachOccurrence(stations, days, [&](const auto &row, qint64 told) {
        expected.push_back({row, {told, row.acknowledged, row.acknowledgedBy, row.comment}});
    });
    RecordReader reader(ListRecord::pathFor(listOf(folder)));
    QHash<qint64, Tally> tallies;
    Status read =
        eachRow([&](const auto &after) { return reader.findEvents({.ofAlarms = true}, after, aPage); },
                [&](const EventRow &event) {
                    Tally &tally = tallies[event.alarm];
                    if (event.kind == EventKind::Notification) {
                        ++tally.told;
                    } else if (event.kind == EventKind::Acknowledged) {
                        tally.acknowledged = event.at;
                        tally.by = event.operatorName;
                    } else if (event.kind == EventKind::Commented) {
                        tally.wrote = event.text;
                    }
                });
    std::vector<Known> found;
    if (read) {
        read = eachRow([&](const auto &after) { return reader.findAlarms({}, after, aPage); },
                       [&](AlarmRow row) {
                           const Tally tally = tallies.value(std::exchange(row.id, 0));
                           found.push_back({row, tally});
                       });
    }
    if (!read) {
        return read;
    }
    alarms = static_cast<qint64>(expected.size());
    const auto order = [](const Known &known) {
        return std::tuple(known.first.first, known.first.station, known.first.text);
    };
    std::ranges::sort(expected, {}, order);
    std::ranges::sort(found, {}, order);
    if (expected.size() != found.size()) {
        return Status::failed(u"%1 alarms came, the record has %2"_s.arg(expected.size()).arg(found.size()));
    }
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (expected[i] != found[i]) {
            return Status::failed(u"it was: %1\nthe record has: %2"_s.arg(
                shown(expected[i].first, expected[i].second), shown(found[i].first, found[i].second)));
        }
    }
    return Status::done();
}

Status writeExpected(const QString &path, int stations, int days)
{
    QByteArrayList lines;
    eachOccurrence(stations, days, [&](const AlarmRow &row, qint64) {
        const QStringList cells{shownTime(row.first),
                                shownTime(row.last),
                                csvCell(stationName(row.station)),
                                row.kind == AlarmKind::Silent ? u"silent"_s : u"module"_s,
                                QString::number(row.priority),
                                csvCell(row.text),
                                QString::number(row.count),
                                csvCell(row.recipients.join(u", "_s)),
                                shownTime(row.acknowledged),
                                csvCell(row.acknowledgedBy),
                                csvCell(row.comment),
                                shownTime(row.over),
                                csvCell(row.overWhy),
                                {},
                                {},
                                {}};
        lines += cells.join(u';').toUtf8() + "\r\n";
    });
    std::ranges::sort(lines);
    return replaceFile(path, lines.join());
}

} // namespace ktr::year
