#include "record/duties.h"

namespace ktr {

using namespace Qt::StringLiterals;

const QString livingKeepers = u"(SELECT id FROM keeper WHERE leased_until > clock_timestamp())"_s;

void Duties::note(const QString &duty, const QString &text)
{
    if (has(duty) && m_held[duty] != text) {
        m_held[duty] = text;
        m_notes[duty] = text;
    }
}

void Duties::take(const QHash<QString, QString> &duties)
{
    QHash<QString, QString> held = duties;
    for (auto [duty, text] : held.asKeyValueRange()) {
        if (m_notes.value(duty) == text) { // is there
            m_notes.remove(duty);
        }
        text = m_notes.value(duty, text);
    }
    m_notes.removeIf([&held](const auto &note) { return !held.contains(note.key()); });
    m_held = held;
}

void Duties::lose()
{
    m_held.clear();
    m_notes.clear();
}

bool claimDuties(RecordDatabase &database, qint64 keeper, const QStringList &wanted)
{
    for (const QString &duty : wanted) {
        if (database.carriedOut(u"INSERT INTO duty(name) VALUES(?) ON CONFLICT DO NOTHING"_s, {duty}) ==
                nullptr ||
            database.carriedOut(u"UPDATE duty SET keeper = ?, since = clock_timestamp() WHERE name = ?"
                                " AND (keeper IS NULL OR keeper NOT IN "_s +
                                    livingKeepers + u")"_s,
                                {keeper, duty}) == nullptr) {
            return false;
        }
    }
    return true;
}

bool noteDuties(RecordDatabase &database, qint64 keeper, const QHash<QString, QString> &notes)
{
    for (const auto [duty, text] : notes.asKeyValueRange()) {
        if (database.carriedOut(u"UPDATE duty SET state = ? WHERE name = ? AND keeper = ?"_s,
                                {text.isNull() ? QString(u""_s) : text, duty, keeper}) == nullptr) {
            return false;
        }
    }
    return true;
}

bool dutiesOf(RecordDatabase &database, qint64 keeper, QHash<QString, QString> &duties)
{
    QSqlQuery *query = database.carriedOut(u"SELECT name, state FROM duty WHERE keeper = ?"_s, {keeper});
    if (query == nullptr) {
        return false;
    }
    while (query->next()) {
        duties.insert(query->value(0).toString(), query->value(1).toString());
    }
    const bool isWhole = database.wasReadToItsEnd(*query);
    query->finish();
    return isWhole;
}

} // namespace ktr
