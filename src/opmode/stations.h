#pragma once

#include "opmode/station/station.h"
#include "opmode/tree/station_tree.h"

#include <QDateTime>

#include <list>

namespace ktr {

/// All watched stations by their keys, in the order they were added. Each has its branch of the tree; what
/// any of them says comes out here.
class cStations : public QObject, public StationOwner
{
    Q_OBJECT

    struct Member;
    using List = std::list<std::unique_ptr<Member>>;

public:
    using LineFactory = std::function<std::unique_ptr<StationLine>()>;

    /// Tells whether the "OK" to a text that a station has just said waits for cStation::answer().
    using Answering = std::function<bool(const QString &kennung)>;

    cStations(StationTree &tree, MLiteTimer &timers, LineFactory createLine, QObject *parent = nullptr);
    ~cStations() override; ///< removes them, the last one first

    /// What stations were heard at is read off it.
    void setClock(std::function<QDateTime()> now) { m_now = std::move(now); }
    void setAnswersLater(Answering answersLater) { m_answersLater = std::move(answersLater); }

    /// Adds an offline station, and its branch of the tree where it is not there. False, and nothing is
    /// changed, when there is a station of that key, or none can have it.
    bool addStation(const QString &kennung, const QString &hostAddress);
    /// Null when there is none.
    cStation *Item(const QString &key) const;
    int Count() const { return static_cast<int>(m_list.size()); }
    /// Disconnects and removes a station; its branch of the tree stays. May be called by a listener.
    void Remove(const QString &key);

    /// Calls with each station, in the order they were added. The call may disconnect, not add or remove.
    template <class Call> void forEach(const Call &call) const
    {
        for (const std::unique_ptr<Member> &member : m_list) {
            call(member->station);
        }
    }

Q_SIGNALS:
    /// A text of a module: number, " --> " or " <-- ", and the text.
    void message(const QString &kennung, const QString &text);
    void changed(const QString &kennung, ktr::StationChange what);
    /// The station is not reached, or something of it was dropped.
    void trouble(const QString &kennung, const QString &text);

private:
    /// A station and its line, which outlives it.
    struct Member
    {
        Member(const QString &kennung, std::unique_ptr<StationLine> ownLine, MLiteTimer &timers,
               StationOwner &owner)
            : line(std::move(ownLine)), station(kennung, *line, timers, owner)
        {}
        std::unique_ptr<StationLine> line;
        cStation station;
    };

    void station_message(const QString &kennung, const QString &text) override;
    bool answersLater(const QString &kennung) override { return m_answersLater && m_answersLater(kennung); }
    void stationChanged(const QString &kennung, StationChange what) override;
    void stationTrouble(const QString &kennung, const QString &text) override;
    qint64 moment() const override { return m_now ? m_now().toMSecsSinceEpoch() : 0; }

    StationTree &m_tree;
    MLiteTimer &m_timers;
    LineFactory m_createLine;
    Answering m_answersLater;
    std::function<QDateTime()> m_now;
    List m_list;
    QHash<QString, List::iterator> m_byKey;
    List m_removed; ///< until no listener can be inside one of them
};

} // namespace ktr
