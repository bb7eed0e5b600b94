#pragma once

#include "opmode/alarms/alarm_chatter.h"
#include "opmode/keeping/list_record.h"
#include "opmode/request.h"

namespace ktr {

/// What operators do about alarms besides acknowledging them: comments, shelves, rules. Each is an event in
/// the record, with the operator's name; what is to hold in the next run, too, is a setting there.
class AlarmActions : public QObject
{
    Q_OBJECT

public:
    static const QString shelvesSetting;
    static const QString rulesSetting;
    static const QString chatterSetting;

    /// Whether another program does all of this, and was asked to; an empty request asks for nothing.
    using Asks = std::function<bool(const Request &request)>;

    /// `now` gives milliseconds since 1970, UTC.
    AlarmActions(AlarmBook &book, ListRecord &record, std::function<qint64()> now, Asks asks,
                 QObject *parent = nullptr);

    /// Takes rules and limits over as the record's settings have them, or else as they are at first.
    void load(const QHash<QString, QString> &settings);
    /// The usual ones where there is no setting, or it cannot be read.
    static AlarmRules rules(const QString &setting);
    /// What these settings put aside; none where there is no such setting, or it cannot be read. On a server
    /// each station has a setting of its own, which its keeper writes.
    static QList<Shelf> shelves(const QHash<QString, QString> &settings);

    /// Of those that stand; an empty text takes their comments away.
    void comment(const QList<qint64> &alarms, const QString &text);
    /// Puts aside the texts of these alarms, each at its station.
    void shelve(const QList<qint64> &alarms, qint64 until, const QString &why);
    /// The station is being maintained: all its alarms are put aside.
    void shelveStation(qint64 station, qint64 until, const QString &why);
    /// Takes back what is put aside under this station and text.
    void unshelve(qint64 station, const QString &text);
    /// A station's number by its key; 0 when there is none.
    qint64 numberOf(const QString &kennung) const { return m_record.number(kennung); }
    /// The maintenance of a station; null for none.
    const Shelf *maintenanceOf(qint64 station) const;

    const AlarmRules &rules() const { return m_book.rules(); }
    void setRules(const AlarmRules &rules);

    const ChatterLimit &chatterLimit() const { return m_chatter.limit(); }
    void setChatterLimit(const ChatterLimit &limit);
    bool chatters(const AlarmRow &alarm) const { return m_chatter.chatters(alarm, m_now()); }

    qint64 now() const { return m_now(); }
    /// Shelves end in it, and alarms that chattered do so no longer.
    void minute();

Q_SIGNALS:
    void minutePassed();

private:
    void keepShelves();
    void keepSharedShelves();
    void shelve(Shelf shelf, qint64 alarm);
    /// An event about a station, by its number.
    void add(EventKind kind, qint64 station, const QString &text, ListRecord::By by,
             const QString &detail = {}, qint64 alarm = 0);

    AlarmBook &m_book;
    ListRecord &m_record;
    std::function<qint64()> m_now;
    Asks m_asks;
    AlarmChatter m_chatter;
    QHash<qint64, QString> m_keptShelves; ///< of a server's record
};

} // namespace ktr
