#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

namespace ktr {

/// Up to twenty dates on which switch points of the holiday types apply, in the order added. A line is
/// the date as the module takes it, a tab, and the date for the reader: "091224", tab, "(24.12.2009)".
class HolidayList
{
public:
    static constexpr int capacity = 20;

    enum class Added { Yes, Duplicate, Full };

    static QString line(QDate date);
    /// The element of the file that holds the line, counted from 0.
    static QString elementName(qsizetype index) { return QStringLiteral("Feiertag%1").arg(index); }

    const QStringList &lines() const { return m_lines; }

    /// Appends the line of a valid date unless it stands there already or the list is full.
    Added add(QDate date);

    /// Appends a line as a file or the settings store holds it; an empty one, or one beyond the capacity, is
    /// dropped.
    void append(const QString &line);

    void remove(int index);
    void clear() { m_lines.clear(); }

    bool operator==(const HolidayList &) const = default;

private:
    QStringList m_lines;
};

} // namespace ktr
