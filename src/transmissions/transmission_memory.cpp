#include "transmissions/transmission_memory.h"

#include "record/record_address.h"
#include "transmissions/waiting_transmissions.h"

#include <algorithm>
#include <utility>

namespace ktr {

namespace {

/// The steps that differ from how they were written before.
QList<TransmissionStepRow> changedSteps(const QList<TransmissionStepRow> &now,
                                        const QList<TransmissionStepRow> &before)
{
    QList<TransmissionStepRow> changed;
    std::ranges::copy_if(now, std::back_inserter(changed),
                         [&before](const TransmissionStepRow &step) { return !before.contains(step); });
    return changed;
}

} // namespace

TransmissionMemory::TransmissionMemory(QString place, QObject *parent)
    : QObject(parent), m_place(std::move(place))
{
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &TransmissionMemory::begin);
}

TransmissionMemory::~TransmissionMemory()
{
    m_asked.clear();
    (void)flush();
}

void TransmissionMemory::setPlace(const QString &place)
{
    m_place = place;
}

void TransmissionMemory::keep(const RememberedTransmission &transmission)
{
    if (!isThere()) {
        return;
    }
    const auto same = std::ranges::find_if(
        m_waiting, [&](const RememberedTransmission &each) { return each.row.uid == transmission.row.uid; });
    if (same != m_waiting.end()) {
        *same = transmission;
    } else {
        m_waiting.push_back(transmission);
    }
    begin();
}

void TransmissionMemory::put(Job job)
{
    m_asked.push_back(std::move(job));
    begin();
}

void TransmissionMemory::begin()
{
    if (m_isBusy || (m_waiting.empty() && m_asked.empty())) {
        return;
    }
    m_isBusy = true;
    m_inHand = std::exchange(m_waiting, {});
    m_jobs = std::exchange(m_asked, {});
    m_thread.start([this, place = m_place] {
        work(place);
        QMetaObject::invokeMethod(
            &m_receiver, [this] { collect(); }, Qt::QueuedConnection);
    });
}

/// A file that turns out to be damaged is replaced by what can be read of it, and all is done once more.
void TransmissionMemory::work(const QString &place)
{
    if (!workOnce(place)) {
        m_steps.clear(); // some of it may be lost
        (void)workOnce(place);
    }
}

/// By a connection that is opened anew: the file may be another one by now. What could not be written stays
/// in m_inHand. False after the file was mended.
bool TransmissionMemory::workOnce(const QString &place)
{
    RecordDatabase database;
    const Status opened =
        isThere() ? openForTransmissions(database, place, &m_told) : Status::failed(QString());
    TransmissionTable table(database);
    m_written = opened;
    const bool mayWait = isServerAddress(place) && !m_waitingFile.isEmpty();
    if (m_written && mayWait) { // what waited is older than what is in hand
        m_written = handOverWaiting(m_waitingFile, table, m_handedOver);
    }
    for (RememberedTransmission &each : m_inHand) {
        m_written = m_written ? table.write(each.row, changedSteps(each.steps, m_steps.value(each.row.uid)))
                              : m_written;
        if (m_written && each.row.ended == 0) {
            m_steps.insert(each.row.uid, each.steps);
        } else {
            m_steps.remove(each.row.uid);
        }
    }
    m_isPostponed = !m_written && mayWait && !m_inHand.empty() && keepWaiting(m_waitingFile, m_inHand);
    for (const Job &job : m_jobs) {
        if (opened) {
            job.work(table);
        } else {
            job.failed(opened);
        }
    }
    return !opened || !database.isDamaged() || !mendForTransmissions(database, place, m_told);
}

/// After the thread has ended its work.
void TransmissionMemory::takeNews()
{
    m_isBusy = false;
    if (const QStringList told = std::exchange(m_told, {}); !told.isEmpty()) {
        Q_EMIT mended(told);
    }
    if (const int count = std::exchange(m_handedOver, 0); count > 0) {
        Q_EMIT handedOver(count);
    }
    const std::vector<RememberedTransmission> handled = std::exchange(m_inHand, {});
    if (handled.empty()) {
        return;
    }
    if (!m_written) { // a newer state of the same transmission stays in its place
        m_steps.clear();
        for (const RememberedTransmission &each : handled) {
            const bool isNewer = std::ranges::any_of(m_waiting, [&](const RememberedTransmission &newer) {
                return newer.row.uid == each.row.uid;
            });
            if (!isNewer) {
                m_waiting.insert(m_waiting.begin(), each);
            }
        }
    }
    if (const QString trouble = m_written ? QString() : m_written.message(); trouble != m_trouble) {
        m_trouble = trouble;
        if (m_isPostponed) {
            Q_EMIT postponed(m_waitingFile, trouble);
        } else {
            Q_EMIT troubled(trouble);
        }
    }
    if (m_written) {
        for (const RememberedTransmission &each : handled) {
            Q_EMIT kept(each.row.uid, each.row.id);
        }
    }
}

void TransmissionMemory::collect()
{
    if (!m_isBusy) { // flush() was here before
        return;
    }
    m_thread.wait();
    const std::deque<Job> answered = std::exchange(m_jobs, {});
    takeNews();
    if (!m_written) {
        m_pause.start(pauseMs);
    }
    if (m_written || !m_asked.empty()) {
        begin();
    }
    for (const Job &job : answered) {
        if (job.asker != nullptr) {
            job.told();
        }
    }
}

Status TransmissionMemory::flush()
{
    m_thread.wait();
    if (m_isBusy) {
        m_asked.insert(m_asked.begin(), m_jobs.begin(), m_jobs.end());
        m_jobs.clear();
        takeNews();
    }
    if (m_waiting.empty()) {
        return Status::done();
    }
    m_inHand = std::exchange(m_waiting, {});
    m_isBusy = true;
    work(m_place);
    takeNews();
    return m_written;
}

} // namespace ktr
