#pragma once

#include "opmode/tree/station_tree.h"

#include <QCoreApplication>
#include <QLocale>

namespace ktr {

/// What a list tells about a notification of the tree, by columns.
class NotificationCells
{
    Q_DECLARE_TR_FUNCTIONS(ktr::NotificationCells)

public:
    using Id = NodeStore::Id;
    enum Column { Received, Station, Message, State, Count, Number, columns };

    NotificationCells(const StationTree &tree, const QLocale &locale) : m_tree(tree), m_locale(locale) {}

    /// The text for "not acknowledged".
    void setNotAcknowledged(const QString &text) { m_notAcknowledged = text; }

    static QString header(int column);
    QString text(Id id, int column) const;
    /// As it was received, on one line.
    QString wholeText(Id id) const;
    QVariant data(Id id, int column, int role) const;

    /// The state of one that was acknowledged at a time, in milliseconds since 1970, UTC.
    static QString acknowledgedAt(qint64 moment);

private:
    QString stateText(Id id) const;

    const StationTree &m_tree;
    QLocale m_locale;
    QString m_notAcknowledged;
};

} // namespace ktr
