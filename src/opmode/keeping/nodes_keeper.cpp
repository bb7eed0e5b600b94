#include "opmode/keeping/nodes_keeper.h"

#include "opmode/keeping/checksum.h"

namespace ktr {

NodesKeeper::NodesKeeper(StationTree &tree, NodesFile &file, NotificationTimes &times, NodesJournal &journal,
                         Attributes attributes, std::function<void(const QString &)> failed,
                         const Limits &limits)
    : m_tree(tree),
      m_file(file),
      m_times(times),
      m_journal(journal),
      m_attributes(std::move(attributes)),
      m_failed(std::move(failed)),
      m_limits(limits)
{}

NodesKeeper::~NodesKeeper()
{
    m_thread.wait(); // the journal fits what was written
}

void NodesKeeper::check()
{
    if (m_isWriting || m_journal.size() <= m_limits.journal ||
        m_journal.size() <= m_limits.timesTheFile * m_file.size()) {
        return;
    }
    if (m_pause > 0) {
        --m_pause;
        return;
    }
    begin();
}

Status NodesKeeper::save()
{
    collect();
    const Documents all = documents();
    (void)m_journal.markSave(
        checksum(all.nodes)); // else it is put aside after a crash that is too near to the end
    return write(all);
}

NodesKeeper::Documents NodesKeeper::documents()
{
    m_tree.beginSaving();
    return {NotificationTimes::document(m_tree), writeNodes(m_tree.nodes(), m_attributes)};
}

/// The times first: they have the keys of the file that is there, too.
Status NodesKeeper::write(const Documents &documents)
{
    Status status = m_file.moveAsideIfDamaged(m_times.path());
    if (status) {
        status = m_times.save(documents.times);
    }
    return status ? m_file.save(documents.nodes) : status;
}

void NodesKeeper::begin()
{
    Documents written = documents();
    if (const Status begun = m_journal.markSave(checksum(written.nodes)); !begun) {
        fail(begun);
        return;
    }
    m_isWriting = true;
    m_thread.start([this, written = std::move(written)] {
        m_written = write(written);
        QMetaObject::invokeMethod(
            &m_receiver, [this] { collect(); }, Qt::QueuedConnection);
    });
}

void NodesKeeper::collect()
{
    m_thread.wait();
    if (!std::exchange(m_isWriting, false)) { // the report of one that was waited for
        return;
    }
    const Status gone = m_written ? m_journal.rebase(m_file.checksum()) : m_written;
    if (gone) {
        m_tree.endSaving();
    } else {
        fail(gone);
    }
}

/// The journal goes on as before, and is tried to be shortened some time later.
void NodesKeeper::fail(const Status &why)
{
    m_pause = m_limits.pauseAfterFailure;
    m_failed(why.message());
}

} // namespace ktr
