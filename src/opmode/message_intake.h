#pragma once

#include "opmode/delayed_answers.h"
#include "opmode/list_parts.h"
#include "opmode/station_event.h"

#include <QObject>

namespace ktr {

/// What becomes of a text that a station said: in the tree, in the trends, in the record and as an alarm; and
/// when its module gets the "OK" to it.
class MessageIntake : public QObject
{
    Q_OBJECT

public:
    explicit MessageIntake(const ListParts &parts, QObject *parent = nullptr);

    void handle(const QString &kennung, const QString &text);
    /// The same for one that another keeper heard at that time; it is written with what the caller adds next.
    void handleLate(const QString &kennung, const QString &text, qint64 at);
    /// The same for a text of the past, from the record: no signal is sent.
    void handleAgain(const QString &kennung, const QString &text, qint64 at);
    /// Whether the "OK" to the latest text waits for the disk: once the module has it, it forgets the text.
    bool answersLater(const QString &kennung);
    /// The disk has more of the record, or has refused it.
    void settled();
    /// Nobody is answered any more.
    void clear() { m_answers.clear(); }

Q_SIGNALS:
    void statusMessage(const QString &line);
    void happened(const ktr::StationEvent &event);
    /// The entry is in the tree and red.
    void alarmRaised(const QModelIndex &entry);

private:
    bool take(const QString &kennung, const QString &text, const QDateTime &now);
    qint64 keep(const QString &kennung, const QString &text, const StationMessage &message,
                const StationTree::Outcome &outcome, qint64 at);

    ListParts m_parts;
    DelayedAnswers m_answers;
};

} // namespace ktr
