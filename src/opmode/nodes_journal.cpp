#include "opmode/nodes_journal.h"

#include "opmode/checksum.h"
#include "opmode/nodes_file.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QtEndian>

namespace ktr {

namespace {

constexpr qint64 longestJournal = qint64{1} << 30;
constexpr quint64 mark = 0x3152'4E4A'5254'4BFF; ///< the first bytes of every journal
constexpr qsizetype headerSize = 16;
constexpr qsizetype recordHeaderSize = 12; ///< length and checksum

template <class Number> void put(QByteArray &bytes, Number number)
{
    char little[sizeof(Number)];
    qToLittleEndian(number, little);
    bytes.append(little, sizeof(Number));
}

template <class Number> Number numberAt(const char *at)
{
    return qFromLittleEndian<Number>(at);
}

/// Length, checksum; kind, colour, length of the key, key, text.
QByteArray recordOf(const NodeChange &change)
{
    QByteArray content;
    put(content, static_cast<quint8>(change.what));
    put(content, static_cast<qint32>(change.colour));
    put(content, static_cast<quint32>(change.key.size()));
    content.append(change.key.data(), static_cast<qsizetype>(change.key.size()));
    content.append(change.text.data(), static_cast<qsizetype>(change.text.size()));
    QByteArray record;
    put(record, static_cast<quint32>(content.size()));
    put(record, checksum(content));
    return record + content;
}

std::optional<NodeChange> changeOf(QByteArrayView content)
{
    constexpr qsizetype fixed = 9;
    if (content.size() < fixed) {
        return std::nullopt;
    }
    const auto what = numberAt<quint8>(content.data());
    const auto keySize = static_cast<qsizetype>(numberAt<quint32>(content.data() + 5));
    if (what < static_cast<quint8>(NodeChange::What::Added) ||
        what > static_cast<quint8>(NodeChange::What::Removed) || keySize > content.size() - fixed) {
        return std::nullopt;
    }
    const QByteArrayView key = content.sliced(fixed, keySize);
    const QByteArrayView text = content.sliced(fixed + keySize);
    return NodeChange{static_cast<NodeChange::What>(what),
                      std::string(key.data(), static_cast<std::size_t>(key.size())),
                      std::string(text.data(), static_cast<std::size_t>(text.size())),
                      numberAt<qint32>(content.data() + 1)};
}

/// The content of the record at a place, whole or not; nothing when it would reach beyond the end.
std::optional<QByteArrayView> contentAt(const QByteArray &journal, qsizetype at)
{
    if (journal.size() - at < recordHeaderSize) {
        return std::nullopt;
    }
    const auto size = static_cast<qsizetype>(numberAt<quint32>(journal.constData() + at));
    return size > journal.size() - at - recordHeaderSize
               ? std::nullopt
               : std::optional(QByteArrayView(journal).sliced(at + recordHeaderSize, size));
}

} // namespace

NodesJournal::NodesJournal(QString path, Timers &timers, std::function<void(const QString &)> told)
    : m_path(std::move(path)), m_told(std::move(told)), m_timer(timers.create())
{}

NodesJournal::~NodesJournal()
{
    flush();
}

NodesJournal::Replayed NodesJournal::replay(quint64 base,
                                            const std::function<void(const NodeChange &)> &carryOut)
{
    Replayed result;
    QByteArray journal;
    if (QFileInfo::exists(m_path)) {
        result.status = readFile(m_path, journal, longestJournal);
    }
    if (result.status && journal.size() <= headerSize) { // new, or torn before its first change
        result.status = restart(base);
        return result;
    }
    if (result.status && (numberAt<quint64>(journal.constData()) != mark ||
                          numberAt<quint64>(journal.constData() + 8) != base)) {
        result.status = Status::failed(
            m_path + QLatin1String(": ") +
            QCoreApplication::translate("Files", "does not go on from the list of stations that is there"));
    }
    if (!result.status) {
        const Status aside = keepAside(m_path);
        if (!aside) {
            result.status = aside;
            return result; // rather no journal than one that destroys another
        }
        if (const Status started = restart(base); !started) {
            result.status = started;
        }
        return result;
    }
    qsizetype at = headerSize;
    qsizetype end = at; // of the last whole record
    result.dropped = journal.size() - headerSize;
    while (const auto content = contentAt(journal, at)) {
        const bool whole = checksum(*content) == numberAt<quint64>(journal.constData() + at + 4);
        const std::optional<NodeChange> change = whole ? changeOf(*content) : std::nullopt;
        const qsizetype size = recordHeaderSize + content->size();
        at += size;
        if (change) {
            carryOut(*change);
            ++result.changes;
            result.dropped -= size;
            end = at;
        }
    }
    result.status = m_file.open(m_path, end);
    m_base = base;
    m_isUsable = static_cast<bool>(result.status); // else beginning anew would destroy what it holds
    return result;
}

Status NodesJournal::restart(quint64 base)
{
    m_waiting.clear();
    m_timer->stop();
    m_base = base;
    m_isUsable = true;
    return begin();
}

Status NodesJournal::begin()
{
    QByteArray header;
    put(header, mark);
    put(header, m_base);
    Status opened = m_file.open(m_path, 0);
    if (opened) {
        opened = m_file.append(header);
        if (!opened) {
            m_file.close();
        }
    }
    return opened;
}

void NodesJournal::add(const NodeChange &change)
{
    m_waiting += recordOf(change);
    if (!m_timer->isRunning()) {
        m_timer->start(longestDelay, [this] { flush(); });
    }
}

void NodesJournal::flush()
{
    m_timer->stop();
    if (m_waiting.isEmpty()) {
        return;
    }
    // A journal that could not be begun is tried again: a full disk may have room by now.
    Status kept = m_file.isOpen() || !m_isUsable ? Status::done() : begin();
    if (kept) {
        kept = m_file.isOpen()
                   ? m_file.append(m_waiting)
                   : Status::failed(
                         m_path + QLatin1String(": ") +
                         QCoreApplication::translate(
                             "Files",
                             "changes since the start are not kept until the list of stations is written"));
    }
    if (kept) {
        m_waiting.clear();
    } else {
        m_timer->start(longestDelay, [this] { flush(); });
    }
    if (kept.message() != std::exchange(m_trouble, kept.message())) {
        m_told(m_trouble);
    }
}

} // namespace ktr
