#pragma once

#include "opmode/list_parts.h"
#include "opmode/watch_alarms.h"

#include <QObject>
#include <QSet>

namespace ktr {

/// What operators do with stations: it takes effect at once and is kept in the record.
class StationActions : public QObject
{
    Q_OBJECT

public:
    StationActions(const ListParts &parts, WatchAlarms &watchAlarms, QObject *parent = nullptr);

    /// A station of the tree comes to life with these; goOn() follows once all of them have.
    void begin(const QString &kennung, const StationAttributes &attributes);
    /// It does what it would do by now had it been watched all the time.
    void goOn(const QString &kennung);
    /// Adds a station; the name becomes "name (1)", "name (2)", ... where one has it. Gives its key,
    /// empty when no station can be called that.
    QString add(const QString &name, const QString &hostAddress, bool online = false);
    void remove(const QString &kennung);
    /// The same but for its node and its number, which the caller removes; and one that was taken out so,
    /// whose node is back, comes to life again with these, as it was seen last.
    void takeOut(const QString &kennung);
    void bringBack(const QString &kennung, const StationAttributes &attributes, const cStation::Seen &seen);
    /// The name that a station gets that is to be called so; empty when none can be.
    static QString nameFor(const QString &wanted);
    /// Keeps the new name of a station's node.
    void keepName(const QString &kennung, const QString &before);
    /// Takes effect at once for a station that is online.
    void setHostAddress(const QString &kennung, const QString &hostAddress);
    void setOnline(const QString &kennung, bool online);
    void setAllOnline(bool online);
    void setExclusive(const QString &kennung, bool exclusive);
    /// Also puts the station into the state that the schedule would have given it by now.
    void setSchedule(const QString &kennung, const ExclusiveSchedule &schedule);
    /// Asks a station for all input values. False when it has a text to deliver already.
    bool requestValues(const QString &kennung);

    StationAttributes attributes(const QString &kennung) const;
    /// Keeps a station's attributes.
    void keep(const QString &kennung, ListRecord::By by = ListRecord::By::Operator);

    /// The key of the online station at an address, empty when there is none.
    QString stationAt(const QString &hostAddress) const;
    /// Lets go of a station for a while; it counts as online, and takeBack() makes it so again.
    void lend(const QString &kennung);
    void takeBack();
    /// The same of one; nothing where it was not lent.
    void takeBack(const QString &kennung);
    bool isLent(const QString &kennung) const { return m_lent.contains(kennung); }
    /// Forgets what was lent.
    void clear() { m_lent.clear(); }
    void forget(const QString &kennung) { m_lent.remove(kennung); }

Q_SIGNALS:
    /// A station's state is to be shown anew.
    void changed(const QString &kennung);

private:
    void letGo(cStation &station);
    void keepLiveness(const cStation &station);
    StationRow rowOf(const QString &kennung) const;

    ListParts m_parts;
    WatchAlarms &m_watchAlarms;
    QSet<QString> m_lent;
};

/// The module sends all its input values for it.
QString allValuesCommand();

} // namespace ktr
