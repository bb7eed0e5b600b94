#include "opmode/keeping/nodes_keeper.h"

#include "opmode/keeping/checksum.h"

namespace ktr {

NodesKeeper::NodesKeeper(StationTree &tree, NodesFile &file, ListRecord &record, qint64 upto,
                         const Environment &environment, Attributes attributes,
                         std::function<void(const QString &)> failed, const Limits &limits)
    : m_tree(tree),
      m_file(file),
      m_record(record),
      m_upto(upto),
      m_environment(environment),
      m_attributes(std::move(attributes)),
      m_failed(std::move(failed)),
      m_limits(limits)
{}

NodesKeeper::~NodesKeeper()
{
    m_thread.wait(); // the record knows what was written
}

void NodesKeeper::check()
{
    const qint64 events = m_record.lastEvent() - m_upto;
    if (events <= m_limits.events ||
        events <= m_limits.timesTheNodes * static_cast<qint64>(m_tree.nodes().count())) {
        return;
    }
    if (m_pause > 0) {
        --m_pause;
        return;
    }
    begin();
}

void NodesKeeper::begin()
{
    if (m_state != State::Idle || !m_record.isOpen()) {
        return;
    }
    m_tree.keepNames();
    m_document = document();
    mark(m_document);
    m_markCount = m_record.writer().addedCount();
    m_record.writer().flush();
    m_state = State::MarkWaits;
}

/// Without its mark the file would be taken for one that somebody edited.
void NodesKeeper::settled()
{
    if (m_state != State::MarkWaits || m_record.writer().onDiskCount() < m_markCount) {
        return;
    }
    m_state = State::Writing;
    m_thread.start([this] {
        m_written = m_file.save(m_document);
        QMetaObject::invokeMethod(
            &m_receiver, [this] { collect(); }, Qt::QueuedConnection);
    });
}

Status NodesKeeper::save()
{
    collect();
    m_state = State::Idle;
    const QByteArray last = document();
    if (m_record.isOpen()) {
        mark(last);
        (void)m_record.writer().flushNow(); // what keeps it from the disk was told
    }
    return m_file.save(last);
}

QByteArray NodesKeeper::document() const
{
    return writeNodes(m_tree.nodes(), m_attributes);
}

void NodesKeeper::mark(const QByteArray &document)
{
    m_upto = m_record.lastEvent();
    m_record.add(ListFileRow{listFileMark(checksum(document), document.size()), m_upto,
                             m_environment.now().toMSecsSinceEpoch()});
}

void NodesKeeper::collect()
{
    m_thread.wait();
    if (m_state != State::Writing) { // the report of one that was waited for
        return;
    }
    m_state = State::Idle;
    m_document.clear();
    if (!m_written) {
        fail(m_written);
    }
}

/// What happened since is in the record; it is tried again some time later.
void NodesKeeper::fail(const Status &why)
{
    m_pause = m_limits.pauseAfterFailure;
    m_upto = 0;
    m_failed(why.message());
}

} // namespace ktr
