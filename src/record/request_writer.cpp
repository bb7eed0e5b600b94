#include "record/request_writer.h"

#include "record/row_writing.h"

namespace ktr {

RequestWriter::~RequestWriter()
{
    static constexpr std::chrono::milliseconds patience{700};
    const auto end = [this] {
        if (!m_thread.waitFor(patience)) {
            m_database.giveUp();
            m_thread.wait();
        }
    };
    end();
    m_thread.start([this] { carryOut(m_waiting); });
    end();
}

void RequestWriter::write(RequestRow request, Written written)
{
    m_waiting.push_back({std::move(request), std::move(written)});
    if (!m_isBusy) {
        begin();
    }
}

void RequestWriter::begin()
{
    m_isBusy = true;
    m_inHand = std::exchange(m_waiting, {});
    m_thread.start([this] {
        carryOut(m_inHand);
        QMetaObject::invokeMethod(
            &m_receiver, [this] { collect(); }, Qt::QueuedConnection);
    });
}

void RequestWriter::collect()
{
    m_thread.wait();
    m_isBusy = false;
    const std::vector<Job> done = std::exchange(m_inHand, {});
    if (!m_waiting.empty()) {
        begin();
    }
    for (const Job &job : done) {
        job.written(job.status, job.id);
    }
}

/// Each is a commit of its own: somebody may be waiting for it. By a connection that is opened anew: the file
/// may be another one by now.
void RequestWriter::carryOut(std::vector<Job> &jobs)
{
    if (jobs.empty()) {
        return;
    }
    RecordDatabase &database = m_database;
    const Status opened = database.open(m_path, RecordDatabase::Use::Write);
    RowWriting writing(database);
    for (Job &job : jobs) {
        job.status = opened;
        if (opened && !(database.begin() && writing.write(job.request))) {
            job.status = database.failure();
            database.rollBack();
        } else if (opened) {
            QSqlQuery number(database.handle());
            job.id = number.exec(database.isServer() ? QStringLiteral("SELECT lastval()")
                                                     : QStringLiteral("SELECT last_insert_rowid()")) &&
                             number.next()
                         ? number.value(0).toLongLong()
                         : 0;
            number.finish();
            if (!database.commit()) {
                job.status = database.failure();
                database.rollBack();
            }
        }
    }
    database.close();
}

} // namespace ktr
