#include "opmode/overview/value_times.h"

#include "opmode/operational_mode.h"
#include "record/record_queries.h"

#include <utility>

namespace ktr {

namespace {

constexpr qint64 msPerSecond = 1000;

struct Asked
{
    QString kennung;
    qint64 number;
};

/// Of those that can be read.
QHash<QString, ValueTimes::Times> timesOf(const QList<Asked> &asked, RecordReader &reader)
{
    QHash<QString, ValueTimes::Times> found;
    for (const Asked &each : asked) {
        ValueTimes::Times times{};
        Status read = Status::done();
        for (int channel = 1; channel <= channelCount && read; ++channel) {
            qint64 at = 0;
            read = reader.newestValue(each.number, channel, at);
            times[static_cast<std::size_t>(channel - 1)] = static_cast<quint32>(at / msPerSecond);
        }
        if (read) {
            found.insert(each.kennung, times);
        }
    }
    return found;
}

} // namespace

ValueTimes::ValueTimes(const OperationalMode &mode, QObject *parent) : QObject(parent), m_mode(mode)
{
    constexpr int together = 50; // milliseconds
    m_soon.setSingleShot(true);
    m_soon.setInterval(together);
    connect(&m_soon, &QTimer::timeout, this, &ValueTimes::ask);
    connect(&mode.tree(), &StationTree::modelReset, this, &ValueTimes::forget);
}

ValueTimes::~ValueTimes() = default;

void ValueTimes::forget()
{
    m_before.clear();
    m_wanted.clear();
}

qint64 ValueTimes::of(const QString &kennung, int channel) const
{
    if (const qint64 heard = m_mode.trends().heardAt(kennung, channel); heard != 0) {
        return heard * msPerSecond;
    }
    const auto before = m_before.constFind(kennung);
    if (before != m_before.cend()) {
        return qint64{(*before)[static_cast<std::size_t>(channel - 1)]} * msPerSecond;
    }
    m_wanted.insert(kennung);
    if (!m_soon.isActive()) {
        m_soon.start();
    }
    return 0;
}

/// What has no number in the record, or is not in it, is asked for again with the next look at it.
void ValueTimes::ask()
{
    const QString record = m_mode.recordPath();
    if (record != m_record || record.isEmpty()) {
        m_before.clear();
        m_queries.reset();
        m_record = record;
    }
    QList<Asked> asked;
    for (const QString &kennung : std::exchange(m_wanted, {})) {
        if (const qint64 number = m_mode.alarmActions().numberOf(kennung); number != 0) {
            asked += Asked{kennung, number};
        }
    }
    if (record.isEmpty() || asked.isEmpty()) {
        return;
    }
    if (m_queries == nullptr) {
        m_queries = std::make_unique<RecordQueries>(record);
    }
    if (m_queries->isWaitedFor(this)) { // its question would be withdrawn
        for (const Asked &each : std::as_const(asked)) {
            m_wanted.insert(each.kennung);
        }
        m_soon.start();
        return;
    }
    m_queries->ask(
        this, [asked](RecordReader &reader) { return timesOf(asked, reader); },
        [this](const QHash<QString, Times> &times) {
            m_before.insert(times);
            if (!times.isEmpty()) {
                Q_EMIT found();
            }
        });
}

} // namespace ktr
