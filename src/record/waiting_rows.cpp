#include "record/waiting_rows.h"

#include <algorithm>
#include <utility>

namespace ktr {

namespace {

/// About what a row takes while it waits.
qint64 bytesOf(const RecordRow &row)
{
    constexpr qint64 overhead = 64; // of the texts' own memory
    const auto texts = [](const auto &...text) {
        return ((text.isEmpty() ? 0 : overhead + 2 * text.size()) + ... + qint64{sizeof(RecordRow)});
    };
    struct Sizes
    {
        decltype(texts) of;
        qint64 operator()(const EventRow &event) const
        {
            return of(event.text, event.detail, event.operatorName);
        }
        qint64 operator()(const StationRow &station) const { return of(station.name, station.attributes); }
        qint64 operator()(const NotificationRow &notification) const { return of(notification.entry); }
        qint64 operator()(const AlarmRow &alarm) const
        {
            return of(alarm.text, alarm.comment, alarm.acknowledgedBy, alarm.overWhy, alarm.shelvedBy,
                      alarm.shelvedWhy, alarm.recipients.join(u' '));
        }
        qint64 operator()(const HistoryRow &history) const { return of(history.first, history.second); }
        qint64 operator()(const ValueRow &value) const { return of(value.value); }
        qint64 operator()(const ListFileRow &file) const { return of(file.checksum); }
        qint64 operator()(const SettingRow &setting) const { return of(setting.name, setting.value); }
        qint64 operator()(const RequestRow &request) const
        {
            return of(request.operatorName, request.what, request.detail);
        }
        qint64 operator()(const RequestAnswerRow &answer) const { return of(answer.result); }
    };
    return std::visit(Sizes{texts}, row);
}

/// What may be left out when there is no room for all: what was said, not what must be done about it.
bool isDispensable(const RecordRow &row)
{
    const auto *event = std::get_if<EventRow>(&row);
    return (event != nullptr && event->alarm == 0) || std::holds_alternative<HistoryRow>(row) ||
           std::holds_alternative<ValueRow>(row);
}

} // namespace

void WaitingRows::add(RecordRow row)
{
    m_bytes += bytesOf(row);
    m_rows.push_back(std::move(row));
    leaveOut();
}

std::vector<RecordRow> WaitingRows::take()
{
    m_bytes = 0;
    return std::exchange(m_rows, {});
}

void WaitingRows::putBack(std::vector<RecordRow> rows)
{
    for (const RecordRow &row : rows) {
        m_bytes += bytesOf(row);
    }
    rows.insert(rows.end(), std::move_iterator(m_rows.begin()), std::move_iterator(m_rows.end()));
    m_rows = std::move(rows);
    leaveOut();
}

void WaitingRows::dropNewest(std::size_t count)
{
    for (; count > 0 && !m_rows.empty(); --count) {
        m_bytes -= bytesOf(m_rows.back());
        m_rows.pop_back();
    }
}

/// A part of the room is made free, so that not each row that comes goes through all that wait.
void WaitingRows::leaveOut()
{
    if (m_bytes <= m_most) {
        return;
    }
    const qint64 wanted = m_most - m_most / 16;
    m_leftOutCount += std::erase_if(m_rows, [&](const RecordRow &row) {
        if (m_bytes <= wanted || !isDispensable(row)) {
            return false;
        }
        m_bytes -= bytesOf(row);
        return true;
    });
}

} // namespace ktr
