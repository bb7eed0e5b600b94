#include "record/spool_writer.h"

namespace ktr {

SpoolWriter::SpoolWriter(std::unique_ptr<SpoolPlace> place, std::function<void()> ended)
    : m_place(std::move(place)), m_ended(std::move(ended)), m_spool(m_place->path())
{
    m_thread.start([this] { open(); });
    m_thread.wait();
}

SpoolWriter::~SpoolWriter()
{
    m_thread.wait();
    m_thread.start([this] { m_spool.close(); });
    m_thread.wait();
}

void SpoolWriter::open()
{
    m_opened = m_spool.open(&m_remark);
    for (const QString &left : m_place->leftBehind()) {
        if (m_opened) {
            m_opened = m_spool.adopt(left);
        }
    }
    m_place->release();
    if (m_opened) {
        m_opened = m_spool.look(m_found);
    }
}

void SpoolWriter::append(Batches batches)
{
    m_isBusy = true;
    m_hasEnded = false;
    m_outcome = {Status::done(), std::move(batches)};
    m_thread.start([this] {
        m_outcome.status = m_spool.append(m_outcome.batches);
        m_hasEnded = true;
        QMetaObject::invokeMethod(
            &m_receiver, [this] { m_ended(); }, Qt::QueuedConnection);
    });
}

std::optional<SpoolWriter::Outcome> SpoolWriter::takeOutcome()
{
    if (!m_isBusy || !m_hasEnded) {
        return std::nullopt;
    }
    m_thread.wait(); // it has reported, but may not be free yet
    m_isBusy = false;
    return std::exchange(m_outcome, {});
}

void SpoolWriter::end()
{
    m_thread.wait();
    m_thread.start([this] { (void)m_spool.removeEmpty(); });
    m_thread.wait();
}

} // namespace ktr
