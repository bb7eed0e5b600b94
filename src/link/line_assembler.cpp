#include "link/line_assembler.h"

#include <algorithm>

namespace ktr {

std::optional<QByteArray> LineAssembler::push(QByteArrayView bytes)
{
    // What was in the buffer has no line end: only the new bytes are searched.
    qsizetype end = bytes.size();
    while (end > 0 && bytes[end - 1] != '\r' && bytes[end - 1] != '\x1A') {
        --end;
    }
    std::optional<QByteArray> line;
    if (end > 0) {
        line = std::move(m_buffer);
        line->append(bytes.first(end));
        m_buffer = bytes.sliced(end).toByteArray();
    } else {
        m_buffer.append(bytes);
    }
    if (m_buffer.size() > longestLine) {
        m_dropped += m_buffer.size();
        m_buffer.clear();
    }
    return line;
}

} // namespace ktr
