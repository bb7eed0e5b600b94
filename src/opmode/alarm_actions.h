#pragma once

#include "opmode/alarms/alarm_chatter.h"
#include "opmode/keeping/list_record.h"

namespace ktr {

/// What operators do about alarms besides acknowledging them: comments, shelves, rules. Each is an event in
/// the record, with the operator's name; what is to hold in the next run, too, is a setting there.
class AlarmActions : public QObject
{
    Q_OBJECT

public:
    static const QString shelvesSetting;

    /// `now` gives milliseconds since 1970, UTC. While `isElsewhere` another program does all of this, and
    /// nothing is done here.
    AlarmActions(AlarmBook &book, ListRecord &record, std::function<qint64()> now,
                 std::function<bool()> isElsewhere, QObject *parent = nullptr);

    using Setting = std::function<std::optional<QString>(const QString &name)>;
    /// Takes rules and limits over as the record has them, or else as they are at first.
    void load(const Setting &setting);
    /// None where there is no setting, or it cannot be read.
    static QList<Shelf> shelves(const std::optional<QString> &setting);

    /// Of those that stand; an empty text takes their comments away.
    void comment(const QList<qint64> &alarms, const QString &text);
    /// Puts aside the texts of these alarms, each at its station.
    void shelve(const QList<qint64> &alarms, qint64 until, const QString &why);
    /// The station is being maintained: all its alarms are put aside.
    void shelveStation(qint64 station, qint64 until, const QString &why);
    /// Takes back what is put aside under this station and text.
    void unshelve(qint64 station, const QString &text);
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
    void shelve(Shelf shelf, qint64 alarm);
    /// An event about a station, by its number.
    void add(EventKind kind, qint64 station, const QString &text, ListRecord::By by,
             const QString &detail = {}, qint64 alarm = 0);

    AlarmBook &m_book;
    ListRecord &m_record;
    std::function<qint64()> m_now;
    std::function<bool()> m_isElsewhere;
    AlarmChatter m_chatter;
};

} // namespace ktr
