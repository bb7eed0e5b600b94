#include "opmode/keeping/journal_file.h"

#include "opmode/keeping/byte_fields.h"
#include "opmode/keeping/checksum.h"
#include "opmode/keeping/journal_record.h"
#include "platform/files.h"

#include <QCoreApplication>

namespace ktr {

namespace {

constexpr quint64 mark = 0x3352'4E4A'5254'4BFF; ///< the first bytes of every journal

QByteArray headerOf(quint64 nodesChecksum)
{
    QByteArray header;
    putNumber(header, mark);
    putNumber(header, nodesChecksum);
    return header;
}

/// The journal without the records that later ones supersede, in the same order.
QByteArray shortened(QByteArrayView journal)
{
    const QByteArrayView records = journal.sliced(JournalFile::headerSize);
    QHash<QByteArrayView, qsizetype> last;
    for (RecordReader record(records); record.next();) {
        if (const QByteArrayView subject = subjectOf(record.content()); !subject.isEmpty()) {
            last.insert(subject, record.start());
        }
    }
    QByteArray result = journal.first(JournalFile::headerSize).toByteArray();
    for (RecordReader record(records); record.next();) {
        const QByteArrayView subject = subjectOf(record.content());
        if (subject.isEmpty() || last.value(subject) == record.start()) {
            result += records.sliced(record.start(), record.size());
        }
    }
    return result;
}

} // namespace

/// The mark names the file once more: one damaged byte of the header must not cost all changes.
QByteArray JournalFile::beginningOf(quint64 nodesChecksum)
{
    QByteArray beginning = headerOf(nodesChecksum);
    putRecord(beginning, savedMark(nodesChecksum, {}));
    return beginning;
}

QByteArray JournalFile::partFor(const QByteArray &journal, quint64 nodesChecksum)
{
    const QByteArray header = headerOf(nodesChecksum);
    if (journal.startsWith(header)) {
        return journal;
    }
    if (journal.size() < headerSize) {
        return {};
    }
    const auto records = recordsBehindMark(QByteArrayView(journal).sliced(headerSize), nodesChecksum);
    return records ? beginningOf(nodesChecksum) + *records : QByteArray();
}

bool JournalFile::hasHeader(const QByteArray &journal)
{
    return journal.size() >= headerSize && numberAt<quint64>(journal.constData()) == mark;
}

Status JournalFile::begin(quint64 nodesChecksum)
{
    m_nodesChecksum = nodesChecksum;
    m_size = 0;
    m_waste = 0;
    m_mark = 0;
    m_rewriteFrom = 0;
    m_last.clear();
    m_file.close();
    return reopen();
}

Status JournalFile::resume(QByteArrayView journal)
{
    m_nodesChecksum = numberAt<quint64>(journal.data() + 8);
    m_size = journal.size();
    m_waste = 0;
    m_mark = 0;
    m_last.clear();
    count(journal.sliced(headerSize), headerSize);
    return m_file.open(m_path, m_size);
}

Status JournalFile::reopen()
{
    if (m_size == 0) {
        // The name of the new file, too, is to outlive a power cut.
        const QByteArray beginning = beginningOf(m_nodesChecksum);
        if (Status begun = replaceFile(m_path, beginning); !begun) {
            return begun;
        }
        m_size = beginning.size();
    }
    return m_file.open(m_path, m_size);
}

Status JournalFile::append(const QByteArray &records)
{
    if (!m_file.isOpen()) { // a full disk may have room by now
        if (Status opened = reopen(); !opened) {
            return opened;
        }
    }
    if (Status appended = m_file.append(records); !appended) {
        return appended;
    }
    count(records, m_size);
    m_size += records.size();
    if (m_waste > toleratedWaste && m_waste > m_size / 2 && m_size >= m_rewriteFrom && !rewrite()) {
        m_rewriteFrom = m_size + toleratedWaste; // the records are safe in the long file
    }
    return Status::done();
}

void JournalFile::count(QByteArrayView records, qint64 start)
{
    for (RecordReader record(records); record.next();) {
        if (const QByteArrayView subject = subjectOf(record.content()); !subject.isEmpty()) {
            qsizetype &size = m_last[checksum(subject)];
            m_waste += std::exchange(size, record.size());
        } else if (isMark(record.content())) {
            m_mark = start + record.start();
        }
    }
}

Status JournalFile::rewrite()
{
    QByteArray journal;
    if (Status read = readFile(m_path, journal); !read) {
        return read;
    }
    const QByteArray kept =
        shortened(QByteArrayView(journal).first(std::min<qsizetype>(m_size, journal.size())));
    return replace(kept);
}

Status JournalFile::rebase(quint64 nodesChecksum)
{
    QByteArray journal = beginningOf(nodesChecksum);
    QFile file;
    if (m_mark != 0 && openToRead(file, m_path) && file.seek(m_mark)) {
        const QByteArray records = file.read(m_size - m_mark);
        const auto kept = recordsBehindMark(records, nodesChecksum);
        file.close();
        if (kept && records.size() == m_size - m_mark) {
            Status replaced = replace(journal + *kept);
            m_nodesChecksum = replaced ? nodesChecksum : m_nodesChecksum;
            return replaced;
        }
    }
    return fileFailure(m_path, QCoreApplication::translate("Files", "could not be shortened"));
}

/// Puts another content in the place of the journal's. What is counted is counted anew.
Status JournalFile::replace(const QByteArray &journal)
{
    m_file.close(); // some systems replace no file that is open
    Status replaced = replaceFile(m_path, journal);
    if (replaced) {
        m_size = journal.size();
        m_waste = 0;
        m_mark = 0;
        m_last.clear();
        count(QByteArrayView(journal).sliced(headerSize), headerSize);
    }
    // When it cannot be opened now it is tried again with the next records.
    (void)m_file.open(m_path, m_size);
    return replaced;
}

Status JournalFile::remove()
{
    m_file.close();
    m_size = 0;
    removeAbandoned(m_path);
    QFile file(m_path);
    return !file.exists() || file.remove() ? Status::done() : fileFailure(m_path, file.errorString());
}

} // namespace ktr
