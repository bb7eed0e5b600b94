#pragma once

#include "platform/append_file.h"

#include <QHash>

namespace ktr {

/// The file of a journal: a header that names the file of nodes which it goes on from, and records. Values
/// change for months, so what later records supersede is left out from time to time.
class JournalFile
{
public:
    static constexpr qsizetype headerSize = 16;
    /// Superseded bytes are tolerated up to this number, and up to half of the file.
    static constexpr qint64 toleratedWaste = qint64{8} << 20;

    explicit JournalFile(QString path) : m_path(std::move(path)) {}

    const QString &path() const { return m_path; }
    /// The journal of the file of this checksum that one holds: all of it, or what follows the mark that the
    /// file was begun, with the keys of that file. Empty when there is none. `journal` is longer than a
    /// header.
    static QByteArray goingOnFrom(const QByteArray &journal, quint64 base);

    /// Whether it begins as every journal does.
    static bool hasHeader(const QByteArray &journal);

    /// Begins a new file. After a failure append() tries it again.
    Status begin(quint64 base);
    /// Goes on behind the records of the file that is there; what follows them is cut off.
    Status goOn(QByteArrayView journal);
    /// Appends records and waits until the disk has them. After a failure none of them is in the file.
    Status append(const QByteArray &records);
    /// Goes on from the file of this checksum, whose mark is in the journal: what is before it goes. After a
    /// failure the journal is as before, and still goes on from that file, too.
    Status goOnFrom(quint64 base);
    qint64 size() const { return m_size; }
    Status remove();

private:
    Status reopen();
    void count(QByteArrayView records, qint64 start);
    Status rewrite();
    Status replace(const QByteArray &journal);

    QString m_path;
    AppendFile m_file;
    quint64 m_base = 0;
    qint64 m_size = 0; ///< 0 for a file that is still to be begun
    qint64 m_waste = 0;
    qint64 m_mark = 0;                ///< where the last mark of a file stands; 0 for none
    qint64 m_rewriteFrom = 0;         ///< the size from which rewriting is tried, after it failed
    QHash<quint64, qsizetype> m_last; ///< by the checksum of what it sets: the size of the last record
};

} // namespace ktr
