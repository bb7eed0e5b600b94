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
    static bool goesOnFrom(QByteArrayView journal, quint64 base);

    /// Begins a new file. After a failure append() tries it again.
    Status begin(quint64 base);
    /// Goes on behind the records of the file that is there; what follows them is cut off.
    Status goOn(QByteArrayView journal);
    /// Appends records and waits until the disk has them. After a failure none of them is in the file.
    Status append(const QByteArray &records);
    Status remove();

private:
    Status reopen();
    void count(QByteArrayView records);
    Status rewrite();

    QString m_path;
    AppendFile m_file;
    quint64 m_base = 0;
    qint64 m_size = 0; ///< 0 for a file that is still to be begun
    qint64 m_waste = 0;
    qint64 m_rewriteFrom = 0;         ///< the size from which rewriting is tried, after it failed
    QHash<quint64, qsizetype> m_last; ///< by the checksum of what it sets: the size of the last record
};

} // namespace ktr
