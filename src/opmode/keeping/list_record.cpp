#include "opmode/keeping/list_record.h"

#include "platform/environment.h"
#include "platform/overloaded.h"
#include "platform/text_rules.h"
#include "record/json_text.h"
#include "record/record_address.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>

#include <algorithm>

namespace ktr {

namespace {

const QLatin1String beforeMember("before");

/// The moments of "DD.MM.YYYY HH:MM", wall time as the module's clock shows it. A report has several records
/// of an hour, which is looked up once. The texts must outlive it.
class Moments
{
public:
    qint64 of(QStringView stamp)
    {
        constexpr qint64 aMinute = 60'000;
        if (stamp.first(13) != m_hour) {
            m_hour = stamp.first(13);
            m_begin = QDateTime(QDate(number(stamp, 6, 4), number(stamp, 3, 2), number(stamp, 0, 2)),
                                QTime(number(stamp, 11, 2), 0))
                          .toMSecsSinceEpoch();
        }
        return m_begin + number(stamp, 14, 2) * aMinute;
    }

private:
    static int number(QStringView stamp, qsizetype at, qsizetype digits)
    {
        int number = 0;
        for (const QChar digit : stamp.sliced(at, digits)) {
            number = 10 * number + digit.digitValue();
        }
        return number;
    }

    QStringView m_hour;
    qint64 m_begin = 0;
};

} // namespace

QString ListRecord::pathFor(const QString &nodesPath)
{
    if (isServerAddress(nodesPath)) {
        return nodesPath;
    }
    const QFileInfo info(nodesPath);
    const QString base = info.completeBaseName();
    const QString name = QStringLiteral("record.sqlite");
    return joinPath(info.path(), base == QLatin1String("nodes") ? name : base + u'.' + name);
}

ListRecord::ListRecord(Timers &timers, std::function<void(const QString &)> troubleChanged)
    : m_timers(timers), m_troubleChanged(std::move(troubleChanged))
{}

void ListRecord::setList(const QString &nodesPath)
{
    end();
    know({});
    m_lastNumber = 0;
    m_lastEvent = 0;
    m_path = pathFor(nodesPath);
}

void ListRecord::end()
{
    m_writer.reset(); // first: what waits for the disk does not wait for the check, too
    m_check.reset();
    m_awaited.reset();
    m_awaitedNames.clear();
    m_settings.clear();
}

void ListRecord::await()
{
    m_awaited.emplace(RecordWriter::mostWaiting);
    m_awaitedNames = m_names;
}

ListRecord::Awaited ListRecord::takeAwaited()
{
    Awaited awaited{m_awaited->take(), m_awaitedNames, m_awaited->leftOutCount()};
    m_awaited.reset();
    return awaited;
}

quint64 ListRecord::waitingCount() const
{
    return m_writer    ? m_writer->addedCount() - m_writer->onDiskCount()
           : m_awaited ? m_awaited->count() + m_awaited->leftOutCount()
                       : 0;
}

OpenedRecord ListRecord::open()
{
    return openRecord(m_path);
}

void ListRecord::begin(const OpenedRecord &opened, const QHash<qint64, QString> &names, qint64 lastNumber,
                       const QString &spoolFolder)
{
    know(names);
    m_lastNumber = lastNumber;
    m_lastEvent = opened.lastEvent;
    std::unique_ptr<SpoolPlace> place;
    Status taken = Status::done();
    if (!spoolFolder.isEmpty() && isServerAddress(m_path)) {
        place = std::make_unique<SpoolPlace>();
        taken = place->take(spoolFolder, m_path);
        if (!taken) {
            place.reset();
        }
    }
    m_writer.emplace(m_path, opened, m_timers, m_troubleChanged, RecordWriter::mostWaiting, std::move(place));
    m_spoolTrouble = taken.message();
    if (opened.isUnchecked) {
        add(SettingRow{uncheckedSetting(), QStringLiteral("1")}); // at the next start, if not before the end
        m_check.emplace(m_path, [this](const Status &sound) {
            if (!sound) {
                m_writer->mend();
            }
            add(SettingRow{uncheckedSetting(), QStringLiteral("0")});
        });
    }
}

void ListRecord::knowSettings(const QHash<QString, QString> &settings)
{
    m_settings = settings;
    for (const char *own : {"schema", "open", "unchecked", "searchable", "sorted"}) { // the record's own
        m_settings.remove(QLatin1String(own));
    }
}

void ListRecord::know(const QHash<qint64, QString> &names)
{
    m_names = names;
    m_numbers.clear();
    for (auto name = names.cbegin(); name != names.cend(); ++name) {
        m_numbers.insert(*name, name.key());
    }
}

void ListRecord::knowStation(qint64 number, const QString &kennung)
{
    m_names.insert(number, kennung);
    m_numbers.insert(kennung, number);
}

qint64 ListRecord::addStation(const QString &kennung)
{
    const qint64 number = ++m_lastNumber;
    knowStation(number, kennung);
    if (m_awaited) {
        m_awaitedNames.insert(number, kennung);
    }
    return number;
}

void ListRecord::removeStation(const QString &kennung)
{
    m_names.remove(m_numbers.take(kennung));
}

qint64 ListRecord::add(EventKind kind, const QString &kennung, qint64 at, const QString &text, By by,
                       const QString &detail, qint64 alarm)
{
    if (!m_writer && !m_awaited) {
        return 0;
    }
    add(EventRow{nextEvent(), at, number(kennung), kind, text, detail,
                 by == By::Operator ? m_operator : QString(), alarm});
    return m_lastEvent;
}

void ListRecord::addShift(qint64 at)
{
    add(EventKind::Note, {}, at, QStringLiteral("operator: ") + m_operator, By::Operator);
}

qint64 ListRecord::nextEvent()
{
    ++m_addedEvents;
    m_lastEvent = m_writer ? m_writer->nextEventId() : 0;
    return m_lastEvent;
}

void ListRecord::add(RecordRow row)
{
    if (const auto *setting = std::get_if<SettingRow>(&row)) {
        m_settings.insert(setting->name, setting->value);
    }
    if (m_writer) {
        m_writer->add(std::move(row));
    } else if (m_awaited) {
        m_awaited->add(std::move(row));
    }
}

NotificationRow ListRecord::notification(qint64 station, const QString &entry, const Arrival &arrival) const
{
    return {station,       entry,          arrival.received,     arrival.received,
            arrival.count, arrival.raised, arrival.acknowledged, true};
}

void ListRecord::addContent(const QString &kennung, qint64 at, const StationMessage &message)
{
    if (!m_writer) {
        return;
    }
    const qint64 station = number(kennung);
    std::visit(Overloaded{[&](const InputValuesMessage &report) {
                              for (const InputValuesMessage::Value &value : report.values) {
                                  m_writer->add(ValueRow{station, value.channel, at, value.text});
                              }
                          },
                          [&](const HistoryMessage &report) {
                              Moments moments;
                              for (const HistoryMessage::Record &record : report.records) {
                                  m_writer->add(HistoryRow{station, record.archive, moments.of(record.stamp),
                                                           record.input, record.value});
                              }
                          },
                          [](const auto &) {}},
               message);
}

QString nameBefore(const EventRow &renaming)
{
    return jsonOf(renaming.detail).object()[beforeMember].toString();
}

QString renamingDetail(const QString &before)
{
    return jsonText(QJsonObject{{beforeMember, before}});
}

QString keeperSetting()
{
    return QStringLiteral("keeper");
}

QString listFileMark(quint64 checksum, qint64 size)
{
    return QString::number(size) + u':' + QString::number(checksum, 16);
}

} // namespace ktr
