#include "opmode/kept_list.h"

#include "opmode/keeper_beat.h"
#include "opmode/keeping/earlier/earlier_files.h"
#include "opmode/keeping/list_replay.h"
#include "opmode/list_opener.h"
#include "opmode/tree/notifications.h"
#include "platform/files.h"

#include <QFileInfo>

namespace ktr {

namespace {

/// The list itself is the last.
QStringList filesOf(const QString &nodesPath)
{
    const EarlierFiles earlier(nodesPath);
    return {earlier.journal(), earlier.times(), nodesPath};
}

} // namespace

KeptList::KeptList(const ListParts &parts, NodesKeeper::Attributes attributes,
                   const NodesKeeper::Limits &limits, QObject *parent)
    : QObject(parent),
      m_parts(parts),
      m_attributes(std::move(attributes)),
      m_limits(limits),
      m_again(parts.timers.create())
{}

KeptList::~KeptList() = default;

Status KeptList::lock(const QString &nodesPath, bool evenIfHeld)
{
    look(nodesPath);
    switch (m_lock.take(listLockPath(m_path))) {
    case FileLock::Outcome::Taken:
        break;
    case FileLock::Outcome::Held:
        if (!evenIfHeld) {
            return Status::failed(tr("%1: the list is in use by %2").arg(m_path, m_lock.holder()));
        }
        Q_EMIT statusMessage(
            tr("%1: the list is in use by %2. Modules answer who announced last: what is told here is "
               "missing there, and the other way round")
                .arg(m_path, m_lock.holder()));
        break;
    case FileLock::Outcome::Impossible:
        m_lockTrouble = tr("%1; another program that uses the list at the same time is not noticed")
                            .arg(m_lock.trouble().message());
        Q_EMIT statusMessage(m_lockTrouble);
        break;
    }
    return Status::done();
}

NodesFile &KeptList::look(const QString &nodesPath)
{
    m_path = nodesPath;
    m_defects.clear();
    m_lockTrouble.clear();
    m_parts.record.setList(m_path);
    return m_file.emplace(m_path);
}

Status KeptList::load(ListOpener &list, bool isToBeKept)
{
    Status loaded = list.loadFile();
    const bool isKept = isToBeKept && loaded; // else nothing is written over what cannot be read
    if (isKept) {
        takeUp(list);
    }
    for (const QString &defect : list.defects()) {
        tellDefect(defect);
    }
    for (const QString &remark : list.remarks()) {
        Q_EMIT statusMessage(remark);
    }
    if (list.takenUp() > 0) {
        Q_EMIT recovered(
            tr("The program did not end properly last time; changes taken up from the record: %1")
                .arg(list.takenUp()));
    }
    nameStations();
    if (isKept && m_file->isToBeKeptAside()) { // it stands where it is until it is written
        tellDefect(tr("%1: as it is now it is kept as \"%2\" beside it when the list is written")
                       .arg(m_path, QFileInfo(ktr::asideName({m_path})).fileName()));
    }
    return loaded;
}

/// From the list as its file has it to the list as the record has it.
void KeptList::takeUp(ListOpener &list)
{
    ListRecord &record = m_parts.record;
    const EarlierFiles earlier(m_path);
    const OpenedRecord opened = record.open();
    list.takeUp(record, opened, earlier, m_parts.moment());
    Q_EMIT recordTrouble(opened.status.message());
    if (!opened.status) {
        record.await();
        openRecordLater();
    }
    beginKeeper(list.upto());
    record.add(SettingRow{beatSetting(), {}}); // what the last run heard is not this one's
    record.add(SettingRow{keeperSetting(), QString::fromUtf8(m_lock.record())});
    record.add(EventKind::Started, {}, m_parts.moment(), m_path, ListRecord::By::Program);
    m_savesSoon = list.mustSave();
}

void KeptList::beginKeeper(qint64 upto)
{
    m_keeper.emplace(
        m_parts.tree, *m_file, m_parts.record, upto, m_parts.environment, m_attributes,
        [this](const QString &trouble) { Q_EMIT statusMessage(trouble); }, m_limits);
    if (m_parts.record.isOpen()) {
        m_parts.record.writer().setSettled([this] {
            Q_EMIT settled();
            m_keeper->settled();
        });
        m_parts.record.writer().setMended([this](const OpenedRecord &mended) { takeMended(mended); });
    }
}

void KeptList::openRecordLater()
{
    m_again->start(openDelay, [this] { openRecordAgain(); });
}

void KeptList::openRecordAgain()
{
    m_isTrying = true;
    m_thread.start([this, path = m_parts.record.path()] { // the disk may take its time
        m_opened = openRecord(path);
        QMetaObject::invokeMethod(
            this, [this] { recordTried(); }, Qt::QueuedConnection);
    });
}

void KeptList::recordTried()
{
    m_thread.wait();
    if (!std::exchange(m_isTrying, false)) { // the list was let go of meanwhile
        return;
    }
    if (m_opened.status) {
        Q_EMIT recordOpened(m_opened);
    } else {
        Q_EMIT recordTrouble(m_opened.status.message());
        openRecordLater();
    }
}

void KeptList::goOnWith(const ListOpener &list)
{
    const QStringList damage = damageTold(m_parts.record.path(), m_opened);
    for (const QString &told : damage + list.remarks()) {
        Q_EMIT statusMessage(told);
    }
    if (!damage.isEmpty()) {
        Q_EMIT recordMended(damage.join(u'\n'));
    }
    nameStations();
    beginKeeper(list.upto());
    m_savesSoon = list.mustSave();
    begin();
    Q_EMIT recordTrouble({});
}

void KeptList::takeMended(const OpenedRecord &mended)
{
    QStringList told = damageTold(m_parts.record.path(), mended);
    if (told.isEmpty()) {
        told += tr("%1: the record was gone; a new one was begun").arg(m_parts.record.path());
    }
    m_parts.record.add(EventKind::Trouble, {}, m_parts.moment(), told.join(u'\n'), ListRecord::By::Program);
    if (mended.isNew || !mended.lost.isEmpty()) {
        keepState();
    }
    for (const QString &line : std::as_const(told)) {
        Q_EMIT statusMessage(line);
    }
    Q_EMIT recordMended(told.join(u'\n'));
}

/// What is known of the list goes into a record that may have lost it, and what of it only the tree has into
/// the list's file.
void KeptList::keepState()
{
    ListRecord &record = m_parts.record;
    const QHash<QString, QString> settings = record.settings();
    for (auto setting = settings.cbegin(); setting != settings.cend(); ++setting) {
        record.add(SettingRow{setting.key(), setting.value()});
    }
    for (const NodeStore::Id station : m_parts.tree.nodes().children(NodeStore::root)) {
        const NodeStore &nodes = m_parts.tree.nodes();
        const QString kennung = textOf(nodes.name(station));
        record.add(StationRow{record.number(kennung), textOf(nodes.text(station)), true,
                              toJson(m_attributes(kennung))});
        eachNotificationOf(m_parts.tree, station, [&](NodeStore::Id id) {
            record.add(record.notification(record.number(kennung), textOf(nodes.name(id)),
                                           m_parts.tree.arrivals().value(id)));
        });
    }
    for (const auto &[id, alarm] : m_parts.alarms.standing()) {
        record.add(alarm);
    }
    m_keeper->begin();
}

/// Alarms tell stations apart by their numbers, also where nothing is recorded.
void KeptList::nameStations()
{
    for (int row = 0; row < m_parts.tree.rowCount(); ++row) {
        const QString kennung = m_parts.tree.index(row, 0).data(StationTree::KeyRole).toString();
        if (m_parts.record.number(kennung) == 0) {
            m_parts.record.addStation(kennung);
        }
    }
}

void KeptList::begin()
{
    if (std::exchange(m_savesSoon, false)) {
        m_keeper->begin();
    }
}

void KeptList::saveSoon()
{
    if (m_keeper) {
        m_savesSoon = !m_keeper->mayBegin();
        m_keeper->begin();
    }
}

void KeptList::check()
{
    if (m_savesSoon && m_keeper->mayBegin()) {
        begin();
    }
    m_keeper->check();
}

Status KeptList::save()
{
    if (Status written = m_keeper->save(); !written) {
        return written;
    }
    const EarlierFiles earlier(m_path); // what they had is in the list and in the record
    if (const Status aside = keepAside({earlier.journal(), earlier.times()}); !aside) {
        Q_EMIT statusMessage(aside.message());
    }
    return Status::done();
}

void KeptList::release()
{
    m_again->stop();
    m_isTrying = false;
    m_thread.wait(); // nobody else opens the record before it is done
    m_keeper.reset();
    m_parts.record.setList(m_path);
    m_lock.release();
}

void KeptList::end()
{
    blockSignals(true);
    m_again->stop();
    m_isTrying = false;
    m_keeper.reset();
    m_parts.record.end();
}

Status KeptList::putAside() const
{
    return keepAside(filesOf(m_path));
}

QString KeptList::asideName() const
{
    return ktr::asideName(filesOf(m_path));
}

void KeptList::tellDefect(const QString &defect)
{
    m_defects += defect;
    Q_EMIT statusMessage(defect);
}

} // namespace ktr
