#include "opmode/operational_mode.h"

#include "config/address.h"
#include "link/conversation_log.h"
#include "link/udp_pair.h"
#include "opmode/list_loader.h"
#include "opmode/tree/acknowledgement.h"
#include "platform/files.h"
#include "platform/overloaded.h"

#include <QFileInfo>

namespace ktr {

namespace {

/// The module sends all its input values for it.
const QString allValues = QStringLiteral("A*");

constexpr Milliseconds aMinute{60'000};
constexpr Milliseconds aSecond{1000};

/// Addresses that name the same module are the same text.
QString comparable(const QString &hostAddress)
{
    static const QString port = u':' + QString::number(UdpPair::modulePort);
    const QString address = hostAddress.trimmed().toLower();
    return withoutLeadingZeros(address.endsWith(port) ? address.chopped(port.size()) : address);
}

QString journalPath(const QString &nodesPath)
{
    const QFileInfo info(nodesPath);
    return joinPath(info.path(), info.completeBaseName() + QLatin1String(".journal"));
}

/// The list itself is the last.
QStringList filesOf(const QString &nodesPath)
{
    return {journalPath(nodesPath), NotificationTimes(nodesPath).path(), nodesPath};
}

StationEvent eventOf(const QString &kennung, StationChange what, const DatagramLoss &loss)
{
    QString text = what == StationChange::LossBegan  ? QStringLiteral("begins")
                   : what == StationChange::LossOver ? QStringLiteral("over")
                                                     : QStringLiteral("goes on");
    if (loss.dropped > 0) {
        text += QStringLiteral(": %1 datagrams dropped").arg(loss.dropped);
    }
    return {kennung, loss.isFlood ? StationEvent::Kind::Flood : StationEvent::Kind::Loss, text};
}

} // namespace

OperationalMode::OperationalMode(const Services &services, const StationCaptions &captions, QObject *parent)
    : QObject(parent),
      m_services(services),
      m_callbacks(services.callbackTimers(services.timers)),
      m_liteTimers(*m_callbacks),
      m_tree(captions),
      m_stations(m_tree, m_liteTimers, services.createLine),
      m_scheduler(m_stations, m_services.environment),
      m_answers(m_stations, services.timers),
      m_minute(services.timers.create()),
      m_tellAgain(services.timers.create())
{
    m_stations.setAnswersLater([this](const QString &kennung) { return answersLater(kennung); });
    connect(&m_stations, &cStations::message, this, &OperationalMode::applyMessage);
    connect(&m_stations, &cStations::changed, this, &OperationalMode::onStationChanged);
    connect(&m_stations, &cStations::trouble, this, [this](const QString &kennung, const QString &text) {
        Q_EMIT statusMessage(kennung + QLatin1String(": ") + text);
        Q_EMIT stationChanged(kennung);
    });
}

OperationalMode::~OperationalMode()
{
    m_stations.setAnswersLater({});
    m_stations.disconnect(this); // what they still say when they go has nowhere to be kept
    m_tree.setObserver({});
}

Status OperationalMode::open(const QString &nodesPath, Use use)
{
    clearTree();
    m_defects.clear();
    m_path = nodesPath;
    if (Status locked = takeLock(use); !locked) {
        m_hindrance = Hindrance::InUse;
        return locked;
    }
    m_file.emplace(nodesPath);
    QHash<QString, StationAttributes> attributes;
    Status loaded = load(use, attributes);
    m_hindrance = loaded ? Hindrance::None : Hindrance::Unusable;
    if (m_journal) {
        m_tree.setObserver([this](const NodeChange &change) { m_journal->add(change); });
        m_keeper.emplace(
            m_tree, *m_file, *m_times, *m_journal,
            [this](const QString &kennung) { return this->attributes(kennung); },
            [this](const QString &trouble) { Q_EMIT statusMessage(trouble); }, m_services.filesInBetween);
    }
    createStations(attributes);
    m_isOpen = true;
    return loaded;
}

Status OperationalMode::takeLock(Use use)
{
    m_lockTrouble.clear();
    switch (m_lock.take(listLockPath(m_path))) {
    case FileLock::Outcome::Taken:
        break;
    case FileLock::Outcome::Held:
        if (use != Use::WatchAnyway) {
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

Status OperationalMode::openEmpty()
{
    const QString path = m_path;
    if (Status aside = keepAside(filesOf(path)); !aside) {
        return aside;
    }
    closeWithoutFile();
    return open(path, Use::Keep);
}

Status OperationalMode::load(Use use, QHash<QString, StationAttributes> &attributes)
{
    StationTreeLoader tree(m_tree);
    ListLoader list(*m_file, tree);
    Status loaded = list.load();
    attributes = list.takeAttributes();
    for (const QString &defect : list.defects()) {
        tellDefect(defect);
    }
    if (!loaded) {
        Q_EMIT statusMessage(loaded.message());
    }
    for (const QString &remark : m_file->remarks()) {
        tellDefect(remark);
    }
    if (use == Use::Keep && loaded) { // else nothing is written over what cannot be read
        m_times.emplace(m_path);
        if (const Status times = m_times->load(tree); !times) {
            tellDefect(times.message());
        }
        const bool isChanged = replay(tree, attributes);
        // Else the journal may have brought what they are of: they are written before the list.
        if (m_times->fitsNothing() && !isChanged) {
            tellDefect(m_times->mustKeepAside().message());
        }
        tellWhereKept();
    }
    return loaded;
}

/// The files that could not be read whole: they stand where they are until the list is written.
void OperationalMode::tellWhereKept()
{
    const auto tell = [this](const QString &path, const QString &keptAs) {
        tellDefect(tr("%1: as it is now it is kept as \"%2\" beside it when the list is written")
                       .arg(path, QFileInfo(keptAs).fileName()));
    };
    const QString times = m_times->path();
    if (m_file->isToBeKeptAside()) {
        tell(m_path, asideName({times, m_path}));
    }
    if (m_times->isToBeKeptAside()) {
        tell(times, m_file->isToBeKeptAside() ? asideName({m_path, times}) : asideName({times}));
    }
}

QString OperationalMode::unusableKeptAs() const
{
    return asideName(filesOf(m_path));
}

/// In the status bar's list, and for who shows what is not to be missed.
void OperationalMode::tellDefect(const QString &defect)
{
    m_defects += defect;
    Q_EMIT statusMessage(defect);
}

/// Brings back what a run that ended by a crash had shown. Tells whether the journal goes on from the list
/// and changed it.
bool OperationalMode::replay(StationTreeLoader &tree, QHash<QString, StationAttributes> &attributes)
{
    m_journal.emplace(
        journalPath(m_path), m_services.timers,
        [this](const QString &trouble) { setKeepingTrouble(trouble); }, &m_tree.savedKeys());
    m_journal->setSettled([this] { answerKept(); });
    ForeignChanges foreign(m_tree);
    const NodesJournal::Replayed replayed = m_journal->replay(
        m_file->checksum(),
        [&](const NodeChange &change) {
            if (change.what == NodeChange::What::Station) {
                attributes.insert(textOf(change.key), change.station);
            } else if (change.what == NodeChange::What::Removed) {
                attributes.remove(textOf(change.key));
            }
            return tree.replay(change);
        },
        &foreign);
    if (!replayed.status) {
        tellDefect(replayed.status.message());
    }
    if (replayed.changes > 0) {
        Q_EMIT recovered(
            tr("The program did not end properly last time; changes taken up from the journal: %1")
                .arg(replayed.changes));
    }
    if (replayed.unfit > 0 || replayed.dropped > 0) {
        const QString leftOut =
            (replayed.damaged
                 ? tr("Not all of the journal could be used; left out: %1 changes, %2 bytes that are damaged")
                 : tr("Not all of the journal could be used; left out: %1 changes, %2 bytes at its end"))
                .arg(replayed.unfit)
                .arg(replayed.dropped);
        if (replayed.unfit > 0 || replayed.damaged) {
            tellDefect(leftOut);
        } else { // the last record, which a power cut tore: nobody was told that it is kept
            Q_EMIT statusMessage(leftOut);
        }
    }
    if (QFileInfo::exists(replayed.keptAs)) { // unless that failed, too
        tellDefect(tr("What the journal was is kept as %1").arg(replayed.keptAs));
    }
    return replayed.status && replayed.changes > 0;
}

/// The line is told once at the beginning and once at the end, also when the reason changes in between.
void OperationalMode::setKeepingTrouble(const QString &trouble)
{
    const bool isOver = trouble.isEmpty();
    if (m_keepingTrouble.isEmpty() != isOver) {
        m_unkeptSince = m_services.environment.now();
        Q_EMIT statusMessage(isOver ? tr("Changes are written to the journal again") : trouble);
    }
    m_keepingTrouble = trouble;
    tellUnkept();
}

/// Again each second, since changes are added all the time.
void OperationalMode::tellUnkept()
{
    m_tellAgain->stop();
    if (!m_keepingTrouble.isEmpty()) {
        m_tellAgain->start(aSecond, [this] { tellUnkept(); });
    }
    Q_EMIT unkeptChangesChanged();
}

std::optional<UnkeptChanges> OperationalMode::unkeptChanges() const
{
    if (m_keepingTrouble.isEmpty() || !m_journal) {
        return std::nullopt;
    }
    return UnkeptChanges{m_keepingTrouble, m_unkeptSince, m_journal->addedCount() - m_journal->onDiskCount()};
}

/// The stations of the tree come to life.
void OperationalMode::createStations(const QHash<QString, StationAttributes> &attributes)
{
    for (int row = 0; row < m_tree.rowCount(); ++row) {
        const QString kennung = m_tree.index(row, 0).data(StationTree::KeyRole).toString();
        const StationAttributes station = attributes.value(kennung);
        m_stations.addStation(kennung, station.hostAddress);
        m_scheduler.setSchedule(kennung, station.schedule);
        cStation &created = *m_stations.Item(kennung);
        created.setExclusiveMode(station.exclusiveMode);
        if (station.online) {
            created.connectStation();
        }
    }
    m_scheduler.start();
    m_stations.forEach([&](cStation &station) {
        if (station.online() && station.exclusiveMode()) {
            station.send(allValues);
        }
        m_scheduler.switchToPresentState(station);
        showStatus(station);
    });
    awaitNextMinute();
}

QString OperationalMode::addStation(const QString &name, const QString &hostAddress)
{
    const QString wanted = QString::fromStdString(storedText(name)).trimmed();
    if (wanted.isEmpty() || wanted.contains(u'/')) {
        return {};
    }
    QString kennung = m_tree.freeName(wanted);
    if (!m_stations.addStation(kennung, hostAddress)) {
        return {};
    }
    keep(kennung);
    return kennung;
}

void OperationalMode::removeStation(const QString &kennung)
{
    m_stations.Remove(kennung);
    m_scheduler.remove(kennung);
    m_trends.remove(kennung);
    m_lent.remove(kennung);
    m_tree.remove(m_tree.find(kennung));
}

void OperationalMode::setHostAddress(const QString &kennung, const QString &hostAddress)
{
    cStation *station = m_stations.Item(kennung);
    if (station == nullptr || station->hostAddress() == hostAddress) {
        return;
    }
    station->setHostAddress(hostAddress);
    if (station->online()) { // what the old address said last is no word of the new one
        letGo(*station);
        station->connectStation();
    }
    keep(kennung);
    showStatus(*station);
}

void OperationalMode::setOnline(const QString &kennung, bool online)
{
    cStation *station = m_stations.Item(kennung);
    if (station == nullptr) {
        return;
    }
    m_lent.remove(kennung);
    if (online) {
        station->connectStation();
    } else {
        letGo(*station);
    }
    keep(kennung);
    showStatus(*station);
}

/// What it has said by now is still heard.
void OperationalMode::letGo(cStation &station)
{
    station.handleWaiting();
    station.disconnect();
}

void OperationalMode::takeArrived()
{
    m_stations.forEach([](cStation &station) { station.handleWaiting(); });
}

void OperationalMode::setAllOnline(bool online)
{
    m_stations.forEach([&](cStation &station) {
        if (station.online() != online || m_lent.contains(station.kennung())) {
            setOnline(station.kennung(), online);
        }
    });
}

void OperationalMode::setExclusive(const QString &kennung, bool exclusive)
{
    if (cStation *station = m_stations.Item(kennung)) {
        station->setExclusiveMode(exclusive);
        keep(kennung);
        showStatus(*station);
    }
}

void OperationalMode::setSchedule(const QString &kennung, const ExclusiveSchedule &schedule)
{
    if (cStation *station = m_stations.Item(kennung)) {
        m_scheduler.setSchedule(kennung, schedule);
        m_scheduler.switchToPresentState(*station);
        keep(kennung);
        showStatus(*station);
    }
}

StationAttributes OperationalMode::attributes(const QString &kennung) const
{
    const cStation *station = m_stations.Item(kennung);
    return station == nullptr
               ? StationAttributes()
               : StationAttributes{station->exclusiveMode(), m_scheduler.schedule(kennung),
                                   station->hostAddress(), station->online() || m_lent.contains(kennung)};
}

bool OperationalMode::requestValues(const QString &kennung)
{
    cStation *station = m_stations.Item(kennung);
    return station != nullptr && station->send(allValues);
}

QString OperationalMode::stationAt(const QString &hostAddress) const
{
    const QString wanted = comparable(hostAddress);
    QString found;
    m_stations.forEach([&](const cStation &station) {
        if (found.isEmpty() && station.online() && comparable(station.hostAddress()) == wanted) {
            found = station.kennung();
        }
    });
    return found;
}

void OperationalMode::lend(const QString &kennung)
{
    cStation *station = m_stations.Item(kennung);
    if (station != nullptr && station->online()) {
        letGo(*station);
        m_lent.insert(kennung);
        showStatus(*station);
    }
}

void OperationalMode::takeBack()
{
    for (const QString &kennung : std::exchange(m_lent, {})) {
        setOnline(kennung, true);
    }
}

void OperationalMode::applyMessage(const QString &kennung, const QString &text)
{
    using Kind = StationEvent::Kind;
    const StationMessage message = interpretStationMessage(text);
    const StationTree::Outcome outcome = m_tree.apply(kennung, message, m_services.environment.now());
    if (const auto *report = std::get_if<InputValuesMessage>(&message)) {
        m_trends.add(kennung, report->values, m_services.environment.now());
    }
    const Kind kind = std::visit(Overloaded{[](const NotificationMessage &) { return Kind::Notification; },
                                            [](const InputValuesMessage &) { return Kind::Values; },
                                            [](const HistoryMessage &) { return Kind::History; },
                                            [](const UnusableMessage &) { return Kind::Values; },
                                            [](const NoStationMessage &) { return Kind::Message; }},
                                 message);
    Q_EMIT happened({kennung, kind, kind == Kind::Message ? withoutPin(text) : withoutMark(text)});
    if (!outcome.unusable.isEmpty()) {
        Q_EMIT statusMessage(tr("%1: not understood: %2").arg(kennung, outcome.unusable));
    }
    m_isAlarm = outcome.alarm;
    if (outcome.alarm) {
        if (m_journal) {
            m_journal->flush();
        }
        Q_EMIT alarmRaised(outcome.entry);
    }
}

/// A module that has its "OK" forgets the alarm: it gets it when the disk has the alarm.
bool OperationalMode::answersLater(const QString &kennung)
{
    if (!std::exchange(m_isAlarm, false) || !m_journal || m_journal->isFailing()) {
        return false;
    }
    m_answers.add(kennung, m_journal->addedCount());
    return true;
}

void OperationalMode::answerKept()
{
    if (m_journal && !m_journal->isFailing()) {
        m_answers.answerUpTo(m_journal->onDiskCount());
    } else {
        m_answers.answerAll();
    }
}

void OperationalMode::onStationChanged(const QString &kennung, StationChange what)
{
    using Kind = StationEvent::Kind;
    const cStation &station = *m_stations.Item(kennung);
    switch (what) {
    case StationChange::Alive:
        Q_EMIT happened({kennung, Kind::Alive, station.hostAddress()});
        break;
    case StationChange::Silent:
        Q_EMIT happened({kennung, Kind::Silent, station.hostAddress()});
        break;
    case StationChange::Quality:
        Q_EMIT happened({kennung, Kind::Quality, station.csq()});
        break;
    case StationChange::PukNeeded:
        m_services.beep();
        Q_EMIT happened({kennung, Kind::Puk, QStringLiteral("needed")});
        break;
    case StationChange::PukCleared:
        Q_EMIT happened({kennung, Kind::Puk, QStringLiteral("cleared")});
        break;
    case StationChange::LossBegan:
    case StationChange::LossOver:
        Q_EMIT statusMessage(kennung + QLatin1String(": ") + textOf(*station.loss()));
        [[fallthrough]];
    case StationChange::LossGoesOn:
        Q_EMIT happened(eventOf(kennung, what, *station.loss()));
        break;
    case StationChange::TextDelivered:
        break;
    }
    showStatus(station);
}

/// Puts a station's attributes into the journal.
void OperationalMode::keep(const QString &kennung)
{
    if (m_journal) {
        NodeChange change;
        change.what = NodeChange::What::Station;
        change.key = storedText(kennung);
        change.station = attributes(kennung);
        m_journal->add(change);
    }
}

Status OperationalMode::close()
{
    if (m_journal) {
        takeArrived();
        if (Status written = m_keeper->save(); !written) {
            return written;
        }
        m_tree.setObserver({});
        if (const Status removed = m_journal->remove(); !removed) {
            Q_EMIT statusMessage(
                removed.message()); // it does not fit the file any more and is put aside next time
        }
        m_keeper.reset();
        m_journal.reset();
    }
    removeAll();
    return Status::done();
}

void OperationalMode::closeWithoutFile()
{
    m_tree.setObserver({});
    m_keeper.reset();
    m_journal.reset();
    removeAll();
}

void OperationalMode::removeAll()
{
    m_isOpen = false;
    m_minute->stop();
    m_answers.clear();
    QStringList keys;
    m_stations.forEach([&keys](const cStation &station) { keys.prepend(station.kennung()); });
    for (const QString &kennung : keys) {
        m_stations.Remove(kennung);
    }
    m_lock.release();
    m_keepingTrouble.clear();
    tellUnkept();
}

/// Of what stayed when a list was closed.
void OperationalMode::clearTree()
{
    while (m_tree.rowCount() > 0) {
        m_tree.remove(m_tree.index(m_tree.rowCount() - 1, 0));
    }
    m_scheduler.clear();
    m_lent.clear();
}

Status OperationalMode::acknowledge(const QModelIndexList &entries)
{
    const QList<NodeChange> changes = acknowledgementOf(entries, m_tree, m_services.environment.now());
    if (m_journal) {
        for (const NodeChange &change : changes) {
            m_journal->add(change);
        }
        if (Status kept = m_journal->flushNow(); !kept) {
            // The journal may get there later: what is shown is what counts.
            for (NodeChange change : changes) {
                change.colour = StationTree::alarmColour;
                m_journal->add(change);
            }
            return kept;
        }
    }
    m_tree.carryOut(changes);
    return Status::done();
}

void OperationalMode::awaitNextMinute()
{
    const Milliseconds time(m_services.environment.now().time().msecsSinceStartOfDay());
    m_minute->start(aMinute - time % aMinute, [this] {
        m_scheduler.evaluate([this](const cStation &station) {
            keep(station.kennung());
            showStatus(station);
        });
        if (m_keeper) {
            m_keeper->check();
        }
        awaitNextMinute();
    });
}

void OperationalMode::showStatus(const cStation &station)
{
    StationStatus status;
    using Line = StationStatus::Line;
    if (station.online()) {
        status.line = station.liveness() == cStation::Liveness::Alive    ? Line::Alive
                      : station.liveness() == cStation::Liveness::Silent ? Line::Silent
                                                                         : Line::Connecting;
    }
    status.exclusive = station.exclusiveMode();
    status.pukNeeded = station.pukNeeded();
    if (station.loss() && !station.loss()->isOver) {
        status.loss = station.loss();
    }
    m_tree.setStatus(station.kennung(), status);
    Q_EMIT stationChanged(station.kennung());
}

} // namespace ktr
