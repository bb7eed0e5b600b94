#pragma once

#include "record/record_database.h"

#include <QHash>

namespace ktr {

/// What a turn with the server does about duties.
struct DutyWork
{
    QStringList wanted{};
    QHash<QString, QString> notes{}; ///< by duties
};

/// What only one of the keepers of a server's record does at a time, each thing by its name: whoever asks
/// first does it until its time is over, then another. With each goes a text that its holder alone writes:
/// how far it has come.
class Duties
{
public:
    void want(const QString &duty) { m_wanted += duty; }
    bool has(const QString &duty) const { return m_held.contains(duty); }
    QString noted(const QString &duty) const { return m_held.value(duty); }
    void note(const QString &duty, const QString &text);
    bool isWritten(const QString &duty) const { return !m_notes.contains(duty); }

    /// For the next turn.
    DutyWork work() const { return {m_wanted, m_notes}; }
    /// What it gave, the texts as the server has them.
    void take(const QHash<QString, QString> &duties);
    /// The keeper's time is over.
    void lose();

private:
    QStringList m_wanted;
    QHash<QString, QString> m_held;
    QHash<QString, QString> m_notes; ///< that the server has not got yet
};

/// The numbers of keepers whose time is not over, for statements.
extern const QString livingKeepers;

// Within a transaction, false after a failure.

/// Takes those that are nobody's. One keeper at a time may do so.
bool claimDuties(RecordDatabase &database, qint64 keeper, const QStringList &wanted);
/// Writes down how far the keeper has come with what is its own.
bool noteDuties(RecordDatabase &database, qint64 keeper, const QHash<QString, QString> &notes);
bool dutiesOf(RecordDatabase &database, qint64 keeper, QHash<QString, QString> &duties);

} // namespace ktr
