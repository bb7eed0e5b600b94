#include "opmode/list_opener.h"

#include "opmode/keeping/list_replay.h"
#include "opmode/tree/notifications.h"
#include "platform/files.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>

namespace ktr {

namespace {

/// What happens to the list itself; a list that is followed has it as it is.
bool isAboutTheList(EventKind kind)
{
    return kind == EventKind::StationAdded || kind == EventKind::StationRemoved ||
           kind == EventKind::StationRenamed || kind == EventKind::Attributes ||
           kind == EventKind::EntryRemoved;
}

} // namespace

ListOpener::ListOpener(NodesFile &file, StationTree &tree) : m_file(file), m_tree(tree) {}

Status ListOpener::loadFile()
{
    StationTreeLoader loader(m_tree);
    ListLoader list(m_file, loader);
    Status loaded = list.load();
    m_attributes = list.takeAttributes();
    m_defects += list.defects();
    if (!loaded) {
        m_defects += loaded.message();
    }
    m_defects += m_file.remarks();
    return loaded;
}

void ListOpener::takeUp(ListRecord &record, const OpenedRecord &opened, const EarlierFiles &earlier,
                        qint64 now)
{
    const bool wasTakenOver = earlier.isThere() && takeOver(earlier);
    m_defects += damageTold(record.path(), opened);
    if (!opened.status) {
        return;
    }
    RecordReader reader(record.path());
    m_upto = opened.lastEvent;
    if (opened.endedBadly) {
        const EventPage latest = reader.findEvents({}, std::nullopt, 1);
        m_unwatchedSince = latest.rows.isEmpty() ? 0 : latest.rows.constFirst().at;
    }
    if (const Status read = catchUp(reader); !read) {
        m_defects += read.message();
    }
    qint64 lastNumber = 0;
    for (const StationRow &station : std::as_const(m_stations)) {
        lastNumber = std::max(lastNumber, station.id);
    }
    record.begin(opened, m_names, lastNumber);
    record.knowSettings(m_settings);
    keepStations(record);
    if (m_isFollowing || wasTakenOver || !opened.lost.isEmpty()) { // the tree may have more
        keepNotifications(record);
    }
    if (m_isFollowing) {
        if (opened.lastEvent > 0) {
            m_remarks += QCoreApplication::translate(
                "Files", "The list of stations was edited or replaced since it was written; it is followed");
        }
        record.add(EventKind::ListFollowed, {}, now, m_file.path(), ListRecord::By::Program);
        const bool hadNone = opened.lastEvent == 0 && opened.keptAside.isEmpty() && !wasTakenOver;
        if (hadNone && m_tree.rowCount() > 0) { // somebody may miss what it held
            m_remarks += QCoreApplication::translate(
                "Files", "There was no record of this list of stations; a new one begins");
            record.add(EventKind::Note, {}, now, m_remarks.constLast(), ListRecord::By::Program);
        }
        // With what no file has had, the one that is there is no longer the list.
        m_mustSave = m_mustSave || m_takenUp > 0;
        m_upto = m_mustSave ? m_upto : record.lastEvent();
        record.add(ListFileRow{mark(), m_upto, now});
    }
}

Status ListOpener::join(RecordReader &reader)
{
    Status read = catchUp(reader);
    if (read && m_isFollowing) {
        read = fileFailure(m_file.path(),
                           QCoreApplication::translate("Files", "its record does not know it as it is now"));
    }
    return read;
}

/// From the file to where the record is, with all that stands there.
Status ListOpener::catchUp(RecordReader &reader)
{
    Status read = readNames(reader);
    if (read) {
        read = findFile(reader);
    }
    if (read) {
        read = goOn(reader);
    }
    if (read) {
        read = readTimes(reader);
    }
    if (read) {
        read = reader.openAlarms([this](const AlarmRow &alarm) { m_standing += alarm; });
    }
    return read ? reader.settings(m_settings) : read;
}

QString ListOpener::mark() const
{
    return listFileMark(m_file.checksum(), m_file.size());
}

/// The file is to be written soon: then the files of the version before are needed no more.
bool ListOpener::takeOver(const EarlierFiles &earlier)
{
    StationTreeLoader loader(m_tree);
    if (const Status times = earlier.loadTimes(loader); !times) {
        m_defects += times.message();
    }
    const EarlierFiles::Replayed replayed = earlier.replay(m_file.checksum(), [&](const NodeChange &change) {
        const QString station = textOf(change.key);
        if (change.what == NodeChange::What::Station) {
            m_attributes.insert(station, change.station);
        } else if (change.what == NodeChange::What::Removed) {
            m_attributes.remove(station);
        }
        return loader.replay(change);
    });
    if (!replayed.status) {
        m_defects += replayed.status.message();
    }
    m_takenUp += replayed.changes;
    m_mustSave = true;
    return true;
}

Status ListOpener::readNames(RecordReader &reader)
{
    return reader.stations([this](const StationRow &station) { m_stations.insert(station.id, station); });
}

/// The event up to which the file that is there, or the one that was there last, has what happened; the
/// largest number when there was none yet.
Status ListOpener::findFile(RecordReader &reader)
{
    std::optional<qint64> upto;
    Status read = reader.lastListFile(mark(), upto);
    m_isFollowing = !upto;
    if (read && !upto) {
        read = reader.lastListFile({}, upto);
    }
    m_upto = upto.value_or(m_upto);
    return read;
}

/// From the file to what happened since. Up to where the list was edited or replaced it has its own stations.
Status ListOpener::goOn(RecordReader &reader)
{
    qint64 followed = m_isFollowing ? std::numeric_limits<qint64>::max() : 0;
    QList<EventRow> renamings;
    Status read = reader.eventsAfter(m_upto, [&](const EventRow &event) {
        if (event.kind == EventKind::ListFollowed) {
            followed = std::max(followed, event.id);
        } else if (event.kind == EventKind::StationRenamed) {
            renamings += event;
        }
        return true;
    });
    const auto isInTree = [this](const QString &name) { return m_tree.find(name).isValid(); };
    for (const StationRow &station : std::as_const(m_stations)) {
        QStringList names; // the one that it has in the file first
        for (const EventRow &renaming : std::as_const(renamings)) {
            if (renaming.station == station.id) {
                const QString before = nameBefore(renaming);
                names.insert(renaming.id > followed ? 0 : names.size(), before);
                if (renaming.id > followed) {
                    break;
                }
            }
        }
        names += station.name;
        if (m_isFollowing) { // as it is called now, when the list has that
            std::ranges::reverse(names);
        }
        const auto name = std::ranges::find_if(names, isInTree);
        if (name != names.end() && (!m_isFollowing || station.listed)) {
            m_names.insert(station.id, *name);
        }
    }
    if (!read) {
        return read;
    }
    ListReplay replay(m_tree, m_names, m_attributes);
    m_lastEvent = m_upto;
    return reader.eventsAfter(m_upto, [&](const EventRow &event) {
        m_lastEvent = event.id;
        if (!(event.id < followed && isAboutTheList(event.kind)) && replay.carryOut(event)) {
            ++m_takenUp;
        }
        return true;
    });
}

Status ListOpener::readTimes(RecordReader &reader)
{
    StationTreeLoader loader(m_tree);
    return reader.notifications([&](const NotificationRow &row) {
        const auto name = m_names.constFind(row.station);
        if (row.listed && name != m_names.cend()) {
            const Arrival arrival{row.last, row.acknowledged, static_cast<int>(row.count), row.raised};
            (void)loader.loadArrival(storedText(entryKey(*name, branches::notifications, row.entry)),
                                     arrival);
        }
    });
}

/// New stations get a number, those that are no more are marked, names and attributes are as in the list.
void ListOpener::keepStations(ListRecord &record)
{
    for (int row = 0; row < m_tree.rowCount(); ++row) {
        const QModelIndex index = m_tree.index(row, 0);
        const QString kennung = index.data(StationTree::KeyRole).toString();
        const qint64 known = record.number(kennung);
        const StationRow station{known != 0 ? known : record.addStation(kennung),
                                 index.data(Qt::EditRole).toString(), true,
                                 toJson(m_attributes.value(kennung))};
        if (m_stations.value(station.id) != station) {
            record.add(station);
        }
    }
    for (StationRow station : std::as_const(m_stations)) {
        if (station.listed && record.kennung(station.id).isEmpty()) {
            station.listed = false;
            record.add(station);
        }
    }
}

void ListOpener::keepNotifications(ListRecord &record)
{
    for (const NodeStore::Id station : m_tree.nodes().children(NodeStore::root)) {
        const qint64 number = record.number(textOf(m_tree.nodes().name(station)));
        eachNotificationOf(m_tree, station, [&](NodeStore::Id id) {
            record.add(
                record.notification(number, textOf(m_tree.nodes().name(id)), m_tree.arrivals().value(id)));
        });
    }
}

} // namespace ktr
