#pragma once

#include <QByteArray>

#include <optional>

namespace ktr {

/// Bytes in, lines out. A line ends with a carriage return or Ctrl-Z, which stays its last character.
/// Several lines that arrive in one piece are one line, as they are for the module's modem; the beginning
/// of a further line behind them waits for its rest.
class LineAssembler
{
public:
    /// A line whose end never comes is dropped when it grows beyond this many bytes.
    static constexpr qsizetype longestLine = qsizetype{64} * 1024;

    /// Adds received bytes and gives the line that they complete, if they do.
    std::optional<QByteArray> push(QByteArrayView bytes);

    void reset() { m_buffer.clear(); }

    /// Bytes dropped so far because no line end came.
    qint64 dropped() const { return m_dropped; }

private:
    QByteArray m_buffer;
    qint64 m_dropped = 0;
};

} // namespace ktr
