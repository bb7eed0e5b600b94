#include "record/record_writer.h"

#include "platform/files.h"
#include "record/record_address.h"
#include "record/spool_writer.h"
#include "record/writer_connection.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QUuid>

#include <algorithm>

namespace ktr {

RecordWriter::RecordWriter(QString path, const OpenedRecord &opened, Timers &timers,
                           std::function<void(const QString &)> troubleChanged, qint64 most,
                           std::unique_ptr<SpoolPlace> spool)
    : m_path(std::move(path)),
      m_troubleChanged(std::move(troubleChanged)),
      m_timer(timers.create()),
      m_lastEvent(opened.lastEvent),
      m_lastAlarm(opened.lastAlarm),
      m_waiting(most),
      m_name(QUuid::createUuid().toString(QUuid::WithoutBraces)),
      m_patience(timers.create()),
      m_spoolTimer(timers.create()),
      m_handTimer(timers.create()),
      m_workTimer(timers.create()),
      m_mendTimer(timers.create()),
      m_connection(std::make_unique<WriterConnection>())
{
    if (spool) {
        beginSpool(std::move(spool));
    }
    workLater(restDelay);
}

// NOLINTNEXTLINE(bugprone-exception-escape): nothing in it throws unless memory has run out
RecordWriter::~RecordWriter()
{
    if (isServerAddress(m_path)) {
        closeServer();
        return;
    }
    for (int tries = 0; tries < 2; ++tries) { // the first may find the record damaged
        settle();
        (void)flushNow(); // what keeps it from the disk was told
    }
    m_thread.wait();
    m_thread.start([this] {
        m_connection->end(m_name);
        m_connection.reset();
    });
    m_thread.wait();
}

void RecordWriter::add(RecordRow row)
{
    ++m_addedCount;
    m_waiting.add(std::move(row));
    if (!m_timer->isRunning()) {
        m_timer->start(longestDelay, [this] { flush(); });
    }
}

void RecordWriter::flush()
{
    m_timer->stop();
    if (m_isSpooling) {
        spool();
    } else if (m_isBusy && m_spool && !m_patience->isRunning()) {
        m_patience->start(patience, [this] { loseTime(); });
    }
    m_isDue = m_isBusy;
    if (!m_isBusy) {
        goOn();
    }
}

/// What is to be written next, now that the thread is free.
void RecordWriter::goOn()
{
    if (m_handTimer->isRunning() || (m_isSpooling && m_spooled.rows == 0 && m_spool->isBusy())) {
        return; // it goes on from there
    }
    if (m_spooled.rows > 0) {
        handOver();
        return;
    }
    if (m_isSpooling) {
        endSpooling();
    }
    if (hasRows()) {
        write();
    }
}

bool RecordWriter::hasRows() const
{
    return !m_waiting.isEmpty() || !m_pending.empty();
}

Status RecordWriter::flushNow()
{
    if (isMending()) {
        return Status::failed(m_trouble);
    }
    if (isServerAddress(m_path)) {
        settleServer();
        return hasRows() ? Status::failed(m_trouble) : Status::done();
    }
    settle();
    m_timer->stop();
    if (hasRows() && !m_isBusy) {
        write();
        settle();
    }
    return hasRows() ? Status::failed(m_trouble) : Status::done();
}

Status RecordWriter::commit(std::vector<RecordRow> rows)
{
    const std::size_t count = rows.size();
    for (RecordRow &row : rows) {
        add(std::move(row));
    }
    Status kept = flushNow();
    if (!kept) { // they are the newest, and none of them is left out before others
        m_waiting.dropNewest(count);
    }
    return kept;
}

void RecordWriter::thinOut(Retention retention)
{
    m_retention = std::move(retention);
    workLater(restDelay);
}

void RecordWriter::begin(std::function<void()> job, Job what)
{
    m_isBusy = true;
    m_job = what;
    ++m_jobs;
    m_hasEnded = false;
    m_thread.start([this, what, job = std::move(job)] {
        job();
        m_hasEnded = true;
        QMetaObject::invokeMethod(
            &m_receiver,
            [this, what] {
                collect();
                if ((what == Job::Write || what == Job::HandOver) &&
                    m_settled) { // never from inside a call of the owner's
                    m_settled();
                }
            },
            Qt::QueuedConnection);
    });
}

/// Of all that wait.
void RecordWriter::takeBatch()
{
    auto batch = std::make_shared<RowBatch>();
    batch->writer = m_name;
    batch->number = ++m_lastBatch;
    batch->keeper = m_keeper;
    batch->at = QDateTime::currentMSecsSinceEpoch();
    batch->rows = m_waiting.take();
    m_pending.push_back({std::move(batch), m_addedCount});
}

void RecordWriter::write()
{
    if (m_pending.empty()) {
        takeBatch();
    }
    m_inHand = m_pending.front();
    if (m_spool) {
        m_patience->start(patience, [this] { loseTime(); });
    }
    begin(
        [this] {
            m_kept = m_connection->open(m_path);
            if (m_kept) {
                QElapsedTimer time;
                time.start();
                m_kept = m_connection->write(*m_inHand.batch);
                m_commitTime = static_cast<double>(time.nsecsElapsed()) / 1e9;
            }
        },
        Job::Write);
}

void RecordWriter::workLater(Milliseconds delay)
{
    m_hasWork = true;
    if (!m_workTimer->isRunning()) {
        m_workTimer->start(delay, [this] { work(); });
    }
}

void RecordWriter::work()
{
    m_isWorkDue = m_isBusy;
    if (!m_isBusy) {
        begin(
            [this, retention = std::exchange(m_retention, {})] {
                m_hasMoreWork = m_connection->step(m_path, retention, m_worked);
            },
            Job::Step);
    }
}

void RecordWriter::mend()
{
    m_isMendDue = true;
    mendIfBroken();
    tell();
}

void RecordWriter::mendIfBroken()
{
    if (m_isBusy || m_mendTimer->isRunning() || !(m_isMendDue || m_connection->isBroken())) {
        return;
    }
    if (!isFailing()) {
        m_trouble = m_worked
                        ? fileFailure(m_path, QCoreApplication::translate("Record", "is damaged")).message()
                        : m_worked.message();
    }
    begin([this] { m_found = m_connection->mend(m_path); }, Job::Mend);
}

void RecordWriter::settle()
{
    m_thread.wait();
    m_isDue = false;
    if (std::exchange(m_isWorkDue, false)) {
        workLater(stepDelay);
    }
    collect();
}

void RecordWriter::collect()
{
    if (!m_isBusy || !m_hasEnded) { // the report of one that was waited for
        return;
    }
    m_thread.wait(); // it has reported, but may not be free for the next job yet
    m_isBusy = false;
    if (m_job == Job::Write) {
        collectRows();
    } else if (m_job == Job::HandOver) {
        collectHandedOver();
    } else if (m_job == Job::Mend) {
        collectMended();
    } else if (m_hasMoreWork) {
        workLater(m_worked ? stepDelay : retryDelay);
    } else {
        m_hasWork = m_workTimer->isRunning();
    }
    mendIfBroken();
    tell();
    if (std::exchange(m_isDue, false)) {
        flush();
    }
    if (!m_isBusy && std::exchange(m_isWorkDue, false)) {
        work();
    }
}

void RecordWriter::tell()
{
    const QString told = isFailing() ? m_trouble : m_worked.message();
    if (told != std::exchange(m_told, told)) {
        m_troubleChanged(told);
    }
}

void RecordWriter::collectMended()
{
    const bool isMended = static_cast<bool>(m_found.status);
    m_trouble = m_found.status.message();
    m_mendTimer->start(isMended ? mendPause : mendDelay, [this] { mendIfBroken(); });
    if (!m_waiting.isEmpty()) {
        m_timer->start(isMended ? Milliseconds(0) : retryDelay, [this] { flush(); });
    }
    if (isMended) {
        m_isMendDue = false;
        m_worked = Status::done();
        workLater(restDelay); // the index of texts begins anew
        QMetaObject::invokeMethod(
            &m_receiver,
            [this, found = std::exchange(m_found, {})] {
                if (m_mended) {
                    m_mended(found);
                }
            },
            Qt::QueuedConnection);
    }
}

void RecordWriter::collectRows()
{
    m_patience->stop();
    const Pending done = std::exchange(m_inHand, {});
    m_trouble = m_kept.message();
    if (!m_kept) {
        collectRefused(done);
        return;
    }
    if (!m_pending.empty() && m_pending.front().batch == done.batch) { // or the spool has it, too
        m_pending.pop_front();
    }
    m_onDiskCount = std::max(m_onDiskCount, done.last);
    if (!m_isSpooling) {
        m_inRecordCount = done.last;
    }
    const auto bound = std::ranges::lower_bound(CommitTimes::bounds, m_commitTime);
    ++m_commitTimes.counts[static_cast<std::size_t>(bound - CommitTimes::bounds.begin())];
    m_commitTimes.sum += m_commitTime;
    workLater(restDelay);
    if (m_isSpooling) {
        spool();
        goOn();
    } else if (hasRows() && !m_timer->isRunning()) {
        m_timer->start(Milliseconds(0), [this] { flush(); });
    }
}

/// Nobody has anything of it, unless a server may have committed it: that is given the same batch again.
void RecordWriter::collectRefused(const Pending &refused)
{
    if (!m_isSpooling && !m_connection->isUnsure()) {
        m_pending.pop_front();
        m_waiting.putBack(refused.batch->rows);
    }
    if (m_spool) {
        m_handTimer->start(retryDelay, [this] { flush(); });
        beginSpooling();
    } else {
        m_timer->start(retryDelay, [this] { flush(); });
    }
}

} // namespace ktr
