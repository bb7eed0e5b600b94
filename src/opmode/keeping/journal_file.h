#pragma once

#include "platform/append_file.h"

#include <QHash>

namespace ktr {

/// The file `nodes.journal`: a header of eight fixed bytes and the checksum of the `nodes.xml` that the
/// changes belong to, and a record for each change (journal_record.h). A value may change a thousand times
/// before `nodes.xml` is written again; from time to time all but the last of such records are left out.
class JournalFile
{
public:
    static constexpr qsizetype headerSize = 16;
    /// Superseded bytes are tolerated up to this number, and up to half of the file.
    static constexpr qint64 toleratedWaste = qint64{8} << 20;

    explicit JournalFile(QString path) : m_path(std::move(path)) {}

    const QString &path() const { return m_path; }
    /// What of a journal is to be replayed on the `nodes.xml` of this checksum, with a header: all of it when
    /// its header names that file; when a mark does (the program ended after that file was written and before
    /// rebase()), what follows the mark, with the keys of that file; empty when neither does. `journal` is
    /// longer than a header.
    static QByteArray partFor(const QByteArray &journal, quint64 nodesChecksum);

    /// What a journal of the `nodes.xml` of this checksum begins with.
    static QByteArray beginningOf(quint64 nodesChecksum);
    /// Whether it begins as every journal does.
    static bool hasHeader(const QByteArray &journal);

    /// Begins a new file. After a failure append() tries it again.
    Status begin(quint64 nodesChecksum);
    /// Opens the file that is there to append behind `journal`, its usable beginning; what follows is cut
    /// off.
    Status resume(QByteArrayView journal);
    /// Appends records and waits until the disk has them. After a failure none of them is in the file.
    Status append(const QByteArray &records);
    /// Makes this the journal of the `nodes.xml` of this checksum, for which it has a mark: what stands
    /// before the mark is left out. After a failure it is as before, and partFor() still finds the mark.
    Status rebase(quint64 nodesChecksum);
    qint64 size() const { return m_size; }
    Status remove();

private:
    Status reopen();
    void count(QByteArrayView records, qint64 start);
    Status rewrite();
    Status replace(const QByteArray &journal);

    QString m_path;
    AppendFile m_file;
    quint64 m_nodesChecksum = 0;      ///< of the file that the header names
    qint64 m_size = 0;                ///< 0 for a file that is still to be begun
    qint64 m_waste = 0;               ///< bytes of superseded records
    qint64 m_mark = 0;                ///< where the last mark of a file stands; 0 for none
    qint64 m_rewriteFrom = 0;         ///< the size from which rewriting is tried, after it failed
    QHash<quint64, qsizetype> m_last; ///< by the checksum of what it sets: the size of the last record
};

} // namespace ktr
