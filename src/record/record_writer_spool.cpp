#include "platform/files.h"
#include "record/record_writer.h"
#include "record/spool_writer.h"
#include "record/writer_connection.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>

// What a RecordWriter does with its spool.

namespace ktr {

void RecordWriter::beginSpool(std::unique_ptr<SpoolPlace> place)
{
    m_spool = std::make_unique<SpoolWriter>(std::move(place), [this] {
        collectSpooled();
        if (m_settled) {
            m_settled();
        }
    });
    m_spooled = {m_spool->path(), m_spool->found().rows, m_spool->found().since, m_spool->found().refused};
    m_spoolInHand = std::make_unique<RowSpool>(m_spool->path());
    m_spoolTrouble = m_spool->opened().message();
    for (const QString &told : {m_spool->remark(), m_spoolTrouble}) {
        if (!told.isEmpty()) { // the owner is about to say who listens
            QMetaObject::invokeMethod(
                &m_receiver, [this, told] { remark(told); }, Qt::QueuedConnection);
        }
    }
    if (m_spooled.rows > 0) { // of a run before this one
        m_isSpooling = true;
        m_handTimer->start(Milliseconds(0), [this] { flush(); });
    }
}

void RecordWriter::remark(const QString &what)
{
    if (m_remarked) {
        m_remarked(what);
    }
}

std::optional<RecordWriter::Spooled> RecordWriter::spooled() const
{
    return m_spool ? std::optional(m_spooled) : std::nullopt;
}

/// Rows wait, and the thread is still busy with the server.
void RecordWriter::loseTime()
{
    if (!m_spool || !m_isBusy || m_hasEnded || m_isSpooling) {
        return;
    }
    m_trouble =
        fileFailure(m_path, QCoreApplication::translate("Record", "the server does not answer")).message();
    beginSpooling();
    tell();
}

void RecordWriter::beginSpooling()
{
    m_isSpooling = true;
    m_patience->stop();
    spool();
}

/// What is in hand goes there, too: the server may have it, or not.
void RecordWriter::spool()
{
    if (m_spool->isBusy() || m_spoolTimer->isRunning()) {
        return;
    }
    if (!m_waiting.isEmpty() && m_spoolTrouble.isEmpty()) {
        takeBatch();
    }
    SpoolWriter::Batches batches;
    for (const Pending &pending : m_pending) {
        batches.push_back(pending.batch);
    }
    if (!batches.empty()) {
        m_spool->append(std::move(batches));
    }
}

void RecordWriter::collectSpooled()
{
    const std::optional<SpoolWriter::Outcome> outcome = m_spool->takeOutcome();
    if (!outcome) {
        return;
    }
    if (const QString trouble = outcome->status.message(); trouble != m_spoolTrouble) {
        m_spoolTrouble = trouble;
        remark(trouble.isEmpty()
                   ? QCoreApplication::translate("Record", "%1 can be written again").arg(m_spooled.path)
                   : trouble);
    }
    if (outcome->status) {
        for (const auto &batch : outcome->batches) {
            m_spooled.rows += static_cast<qint64>(batch->rows.size());
            m_spooled.since = m_spooled.since == 0 ? batch->at : m_spooled.since;
            if (!m_pending.empty() && m_pending.front().batch == batch) { // or the server has it by now
                m_onDiskCount = std::max(m_onDiskCount, m_pending.front().last);
                m_pending.pop_front();
            }
        }
        if (!m_waiting.isEmpty()) {
            spool();
        }
    } else { // it waits in memory, as without a spool
        m_spoolTimer->start(retryDelay, [this] { flush(); });
    }
    m_isDue = m_isBusy;
    if (!m_isBusy) {
        goOn();
    }
}

void RecordWriter::handOver()
{
    begin(
        [this] {
            WriterConnection::HandedOver handedOver;
            m_kept = m_connection->handOver(m_path, *m_spoolInHand, handedOver);
            m_handedOver = handedOver.rows;
            m_handedUpTo = handedOver.at;
            m_refused = handedOver.refused;
            m_refusal = handedOver.why;
        },
        Job::HandOver);
}

void RecordWriter::collectHandedOver()
{
    m_trouble = m_kept.message();
    m_spooled.rows = std::max(m_spooled.rows - m_handedOver, qint64{0});
    m_spooled.since = m_spooled.rows == 0 ? 0 : std::max(m_spooled.since, m_handedUpTo);
    if (m_refused > 0) {
        m_spooled.refused += m_refused;
        remark(QCoreApplication::translate("Record", "%1: rows that the server will not have are kept aside "
                                                     "there: %2, the last one because of: %3")
                   .arg(m_spooled.path)
                   .arg(m_refused)
                   .arg(m_refusal));
    }
    if (!m_kept) {
        m_handTimer->start(retryDelay, [this] { flush(); });
        spool();
        return;
    }
    if (m_handedOver == 0) { // somebody took them away
        m_spooled.rows = 0;
    }
    goOn();
}

/// All that was in the spool is in the record.
void RecordWriter::endSpooling()
{
    m_spooled.since = 0;
    m_isSpooling = false;
    m_inRecordCount = m_pending.empty() ? m_onDiskCount : m_inRecordCount;
    workLater(restDelay);
}

/// For a moment the server is waited for, then the spool.
void RecordWriter::settleServer()
{
    QElapsedTimer time;
    time.start();
    const auto left = [&] { return std::max(patience - Milliseconds(time.elapsed()), Milliseconds(0)); };
    m_timer->stop();
    for (int tries = 0; tries < 3 && !m_isSpooling && (m_isBusy || hasRows()); ++tries) {
        if (!m_isBusy) {
            goOn();
        }
        if (!m_thread.waitFor(m_spool ? left() : longestEnd)) {
            break;
        }
        collect();
    }
    if (m_isBusy && hasRows()) {
        loseTime();
    }
    for (int tries = 0; tries < 3 && m_spool && m_isSpooling && (m_spool->isBusy() || hasRows()); ++tries) {
        spool();
        m_spool->wait();
        collectSpooled();
    }
}

/// What is in the spool is handed over by the next one, unless that takes but a moment.
void RecordWriter::closeServer()
{
    QElapsedTimer time;
    time.start();
    settleServer();
    while (m_spool && m_isSpooling && !isFailing() && m_spooled.rows > 0 &&
           Milliseconds(time.elapsed()) < patience) {
        m_handTimer->stop();
        if (!m_isBusy) {
            handOver();
        }
        if (!m_thread.waitFor(patience)) {
            break;
        }
        collect();
    }
    const bool wasInVain = m_isSpooling && isFailing(); // it is not waited for again
    if (wasInVain || !m_thread.waitFor(patience)) {
        m_connection->giveUp();
    }
    m_thread.wait();
    const bool isWhole = m_spooled.rows == 0 && m_pending.empty() && !isFailing();
    m_thread.start([this, isWhole] {
        if (isWhole) {
            m_connection->end(m_name);
        }
        m_connection->close();
        m_spoolInHand.reset();
    });
    if (!m_thread.waitFor(patience)) {
        m_connection->giveUp();
        m_thread.wait();
    }
    if (m_spool) {
        m_spool->end();
    }
}

} // namespace ktr
