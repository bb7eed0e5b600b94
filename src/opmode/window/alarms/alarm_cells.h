#pragma once

#include "opmode/operational_mode.h"

#include <QCoreApplication>
#include <QLocale>

namespace ktr {

/// Whether a row of the list is what puts alarms aside, while no alarm stands there. (An alarm that an
/// earlier version kept may have no time.)
inline bool isShelfAlone(const AlarmRow &alarm)
{
    return alarm.id < 0;
}

/// A line of the list of alarms: one alarm, or a storm, the same text from many stations.
struct AlarmLine
{
    std::vector<qint64> alarms; ///< in the list's order
    AlarmRow sum;               ///< the one alarm, or what holds of all of them
    int waiting = 0;            ///< neither acknowledged nor shelved
    bool isStorm = false;
};

/// What the list tells about an alarm, by columns.
class AlarmCells
{
    Q_DECLARE_TR_FUNCTIONS(ktr::AlarmCells)

public:
    enum Column { Priority, Text, Station, State, First, Last, Count, Recipients, Comment, columns };

    AlarmCells(const OperationalMode &mode, const QLocale &locale) : m_mode(mode), m_locale(locale) {}

    /// The text for "not acknowledged".
    void setNotAcknowledged(const QString &text) { m_notAcknowledged = text; }

    static QString header(int column);
    static QString priority(int priority);
    /// A name; that nobody did where a removal of the station closed the alarm.
    static QString acknowledgedBy(const AlarmRow &alarm);
    QString station(const AlarmRow &alarm) const;
    QString text(const AlarmRow &alarm, int column) const;
    QString text(const AlarmLine &line, int column) const;
    QVariant data(const AlarmRow &alarm, int column, int role) const;
    QVariant data(const AlarmLine &line, int column, int role) const;

private:
    QString state(const AlarmRow &alarm) const;
    QString state(const AlarmLine &storm) const;
    QVariant look(int priority, bool isWaiting, int column, int role) const;

    const OperationalMode &m_mode;
    QLocale m_locale;
    QString m_notAcknowledged;
};

} // namespace ktr
