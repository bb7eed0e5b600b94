#pragma once

#include "opmode/station/station_messages.h"
#include "opmode/tree/station_nodes.h"
#include "record/damage_told.h"
#include "record/later_check.h"
#include "record/record_writer.h"

#include <QHash>

#include <optional>

namespace ktr {

/// The record beside a list of stations: what happens to the stations goes there as rows, under the numbers
/// that they have there. Without a record all of it is passed over; while one cannot be opened it waits.
class ListRecord
{
public:
    /// Of `nodes.xml`, `record.sqlite` in its folder; of "north.xml", "north.record.sqlite". A list that is
    /// shared by the address of its record is that.
    static QString pathFor(const QString &nodesPath);

    ListRecord(Timers &timers, std::function<void(const QString &)> troubleChanged);

    /// From now on it is the record of this list, which nothing is written to before begin().
    void setList(const QString &nodesPath);
    /// Writes what waits, as far as the disk takes it, and closes the record.
    void end();

    /// What there was; begin() makes use of it.
    OpenedRecord open();
    /// From now on rows are written; the names are the stations' keys by their numbers, of which the highest
    /// one was given last.
    /// What a server does not take waits in `spoolFolder`, where one is named.
    void begin(const OpenedRecord &opened, const QHash<qint64, QString> &names, qint64 lastNumber,
               const QString &spoolFolder = {});
    /// The record cannot be opened yet: rows wait, without numbers of events and alarms, and under numbers of
    /// stations that are of this run alone.
    void await();
    bool isAwaited() const { return m_awaited.has_value(); }
    struct Awaited
    {
        std::vector<RecordRow> rows;
        QHash<qint64, QString> names{}; ///< the stations' keys by those numbers
        quint64 leftOut = 0;
    };
    /// What waited; to be called when the record was opened, before begin().
    Awaited takeAwaited();
    /// How many rows are not written yet.
    quint64 waitingCount() const;

    /// Why nothing can wait in that folder; empty when it can.
    const QString &spoolTrouble() const { return m_spoolTrouble; }

    /// The stations of a record that another program writes.
    void know(const QHash<qint64, QString> &names);
    bool isOpen() const { return m_writer.has_value(); }
    const QString &path() const { return m_path; }
    /// Only while it is open.
    RecordWriter &writer() { return *m_writer; }
    const RecordWriter &writer() const { return *m_writer; }

    /// 0 for none.
    qint64 number(const QString &kennung) const { return m_numbers.value(kennung); }
    /// Empty for none.
    QString kennung(qint64 number) const { return m_names.value(number); }
    const QHash<qint64, QString> &names() const { return m_names; }
    /// A station that has a number in the record.
    void knowStation(qint64 number, const QString &kennung);
    /// Gives a new station a number.
    qint64 addStation(const QString &kennung);
    void removeStation(const QString &kennung);

    /// Whose name what is done carries.
    void setOperator(const QString &name) { m_operator = name; }
    const QString &operatorName() const { return m_operator; }

    enum class By { Program, Operator };
    /// Adds an event about a station, or with an empty key about the whole; gives its number.
    qint64 add(EventKind kind, const QString &kennung, qint64 at, const QString &text, By by,
               const QString &detail = {}, qint64 alarm = 0);
    void add(RecordRow row);
    /// Adds that whoever is the operator now is on duty.
    void addShift(qint64 at);
    /// The number of an event that the caller adds, 0 where nothing is written.
    qint64 nextEvent();
    /// The state of a notification, by its name under its branch.
    NotificationRow notification(qint64 station, const QString &entry, const Arrival &arrival) const;
    /// The values or the history of a message, each in a row of its own.
    void addContent(const QString &kennung, qint64 at, const StationMessage &message);
    qint64 lastEvent() const { return m_lastEvent; }
    /// Events since the start.
    quint64 addedEvents() const { return m_addedEvents; }

    /// The settings that were written, and those that the record had.
    const QHash<QString, QString> &settings() const { return m_settings; }
    void knowSettings(const QHash<QString, QString> &settings);

private:
    Timers &m_timers;
    std::function<void(const QString &)> m_troubleChanged;
    QString m_path;
    std::optional<RecordWriter> m_writer;
    std::optional<LaterCheck> m_check;
    QHash<qint64, QString> m_names;
    QHash<QString, qint64> m_numbers;
    qint64 m_lastNumber = 0;
    qint64 m_lastEvent = 0;
    quint64 m_addedEvents = 0;
    QString m_operator;
    std::optional<WaitingRows> m_awaited;
    QHash<qint64, QString> m_awaitedNames;
    QHash<QString, QString> m_settings;
    QString m_spoolTrouble;
};

/// What the station of a renaming was called before it, and what the event holds so that it tells that.
QString nameBefore(const EventRow &renaming);
QString renamingDetail(const QString &before);

/// The name of the setting with the keeper of the list, in the form of the lock's file.
QString keeperSetting();

/// How the record calls a file of nodes of this content.
QString listFileMark(quint64 checksum, qint64 size);

} // namespace ktr
