#pragma once

#include "forward/forward_messages.h"
#include "record/record_reader.h"

#include <QHash>

#include <deque>

namespace ktr {

/// How far the record was read, or a broker has it.
struct ForwardPosition
{
    qint64 event = 0;  ///< number of the last event
    qint64 change = 0; ///< number of the last change of an alarm
    bool operator==(const ForwardPosition &) const = default;
};

struct ForwardItem
{
    MqttMessage message{};
    std::optional<ForwardPosition> upTo{}; ///< what is published with this one; nothing: more belongs to it
    bool endsState = false;                ///< of a station that has this name no more
};

/// What is to be published next, in order.
struct ForwardPage
{
    Status status = Status::done();
    std::deque<ForwardItem> items{};
    ForwardPosition upTo{};
    qint64 lastEvent = 0; ///< of the record
};

/// Makes messages of what the record has behind a position. Lives on the thread that reads it.
class ForwardReading
{
public:
    static constexpr int mostOfPage = 200;

    explicit ForwardReading(const ForwardTopics &topics) : m_topics(topics) {}

    /// At most so many events and so many alarms.
    ForwardPage page(RecordReader &reader, const ForwardPosition &from);
    /// Of a list that several keepers share, what is so at this moment: the states of all stations, and the
    /// alarms that stand. From then on pages tell the states, too.
    ForwardPage present(RecordReader &reader, const ForwardPosition &from);
    /// The end of what the record has.
    static Status end(RecordReader &reader, ForwardPosition &end);

private:
    struct Station
    {
        StationAttributes attributes{};
        bool isListed = false;
        cStation::Seen seen{};
        QByteArray told{};
    };
    Status readStations(RecordReader &reader);
    void add(const EventRow &event, ForwardPage &page);
    void add(const AlarmRow &alarm, qint64 change, ForwardPage &page) const;
    void clear(const QString &name, ForwardPage &page);
    void tellState(qint64 station, qint64 at, ForwardPage &page);

    ForwardTopics m_topics;
    QHash<qint64, QString> m_names;     ///< of stations, by their numbers
    std::optional<qint64> m_statesUpTo; ///< the last event that the states had; nothing: others tell them
    QHash<qint64, Station> m_stations;  ///< likewise
};

} // namespace ktr
