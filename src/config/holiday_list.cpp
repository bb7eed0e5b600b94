#include "config/holiday_list.h"

namespace ktr {

QString HolidayList::line(QDate date)
{
    return date.toString(QStringLiteral("yyMMdd")) + QLatin1String("\t(") +
           date.toString(QStringLiteral("dd.MM.yyyy")) + QLatin1Char(')');
}

HolidayList::Added HolidayList::add(QDate date)
{
    const QString text = line(date);
    if (m_lines.contains(text)) {
        return Added::Duplicate;
    }
    if (m_lines.size() >= capacity) {
        return Added::Full;
    }
    m_lines.append(text);
    return Added::Yes;
}

void HolidayList::append(const QString &line)
{
    if (!line.isEmpty() && m_lines.size() < capacity) {
        m_lines.append(line);
    }
}

void HolidayList::remove(int index)
{
    if (index >= 0 && index < m_lines.size()) {
        m_lines.removeAt(index);
    }
}

} // namespace ktr
