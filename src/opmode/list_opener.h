#pragma once

#include "opmode/keeping/earlier/earlier_files.h"
#include "opmode/keeping/list_record.h"
#include "opmode/list_loader.h"
#include "record/record_reader.h"

namespace ktr {

/// Opens a list of stations: its file, and what its record says happened since the file was written. A file
/// that the record knows goes on from there; any other was edited or replaced by somebody and is followed,
/// with what no file has had yet. What the version before kept beside the list is taken over once.
class ListOpener
{
public:
    /// All must outlive it.
    ListOpener(NodesFile &file, StationTree &tree);

    /// Loads the file. A failure: the list cannot be used.
    Status loadFile();
    /// Brings the tree to where the record has it, and begins to write the record, unless this could not be
    /// opened.
    void takeUp(ListRecord &record, const OpenedRecord &opened, const EarlierFiles &earlier, qint64 now);

    /// The same for a list that another program keeps: nothing is written. A failure: the record
    /// does not know the file, or cannot be read. What is read belongs together when the reader has a
    /// snapshot.
    Status join(RecordReader &reader);

    ListLoader::Attributes takeAttributes() { return std::move(m_attributes); }
    /// What was lost or has to be looked at, a line each.
    const QStringList &defects() const { return m_defects; }
    /// What happened to the list that is worth a line.
    const QStringList &remarks() const { return m_remarks; }
    /// How many changes no file has had yet.
    qsizetype takenUp() const { return m_takenUp; }
    /// The event up to which the file is up to date.
    qint64 upto() const { return m_upto; }
    /// The keys of the stations by their numbers.
    const QHash<qint64, QString> &names() const { return m_names; }
    /// The last event that the tree has.
    qint64 lastEvent() const { return m_lastEvent; }
    /// The file does not have what was taken over, and is to be written soon.
    bool mustSave() const { return m_mustSave; }
    const QList<AlarmRow> &standing() const { return m_standing; }
    /// When the last run, which ended badly, wrote something last; 0 when it ended well.
    qint64 unwatchedSince() const { return m_unwatchedSince; }
    /// Those of the record, by their names.
    const QHash<QString, QString> &settings() const { return m_settings; }

private:
    bool takeOver(const EarlierFiles &earlier);
    Status catchUp(RecordReader &reader);
    QString mark() const;
    Status findFile(RecordReader &reader);
    Status goOn(RecordReader &reader);
    Status readNames(RecordReader &reader);
    Status readTimes(RecordReader &reader);
    void keepStations(ListRecord &record);
    void keepNotifications(ListRecord &record);

    NodesFile &m_file;
    StationTree &m_tree;
    ListLoader::Attributes m_attributes;
    QStringList m_defects;
    QStringList m_remarks;
    QHash<qint64, StationRow> m_stations; ///< of the record
    QHash<qint64, QString> m_names;       ///< of the stations in the tree, by their numbers
    QList<AlarmRow> m_standing;
    QHash<QString, QString> m_settings;
    qint64 m_unwatchedSince = 0;
    qint64 m_upto = 0;
    qint64 m_lastEvent = 0;
    qsizetype m_takenUp = 0;
    bool m_isFollowing = false;
    bool m_mustSave = false;
};

} // namespace ktr
