#pragma once

#include "record/record_rows.h"

#include <vector>

namespace ktr {

/// Rows that wait to be written, in their order. Beyond a bound the oldest are left out and counted, but none
/// of an alarm, and nothing that tells a state.
class WaitingRows
{
public:
    /// About so many bytes in memory.
    explicit WaitingRows(qint64 most) : m_most(most) {}

    void add(RecordRow row);
    bool isEmpty() const { return m_rows.empty(); }
    quint64 count() const { return m_rows.size(); }
    std::vector<RecordRow> take();
    /// Puts those that were taken last in front of what came since.
    void putBack(std::vector<RecordRow> rows);
    void dropNewest(std::size_t count);
    quint64 leftOutCount() const { return m_leftOutCount; }

private:
    void leaveOut();

    qint64 m_most;
    std::vector<RecordRow> m_rows;
    qint64 m_bytes = 0;
    quint64 m_leftOutCount = 0;
};

} // namespace ktr
