#include "opmode/station_configurations.h"

#include "opmode/beside_list.h"
#include "platform/files.h"
#include "platform/text_rules.h"
#include "record/record_address.h"

#include <QDir>

#include <algorithm>
#include <tuple>
#include <utility>

namespace ktr {

namespace {

/// Each is a descriptor of the system's; what others write elsewhere is seen by the next look.
constexpr qsizetype mostWatched = 100;

QString folderOf(const QString &list)
{
    return isServerAddress(list) ? QString() : QFileInfo(list).absolutePath();
}

bool isEqual(const ConfigurationFiles::Files &one, const ConfigurationFiles::Files &other)
{
    const auto isThere = [&other](const auto &each) {
        const auto found = other.files.constFind(each.first);
        return found != other.files.cend() && found->inputs == each.second.inputs &&
               found->namesModified == each.second.namesModified && found->modified == each.second.modified;
    };
    const auto pairs = one.files.asKeyValueRange();
    return one.files.size() == other.files.size() && one.links == other.links &&
           std::all_of(pairs.begin(), pairs.end(), isThere);
}

} // namespace

const ChannelNames &StationConfiguration::names() const
{
    static const ChannelNames none;
    return inputs == nullptr ? none : inputs->names;
}

QList<InputLimit> StationConfiguration::limitsOf(int channel) const
{
    return inputs == nullptr ? QList<InputLimit>() : inputs->limitsOf(channel);
}

Measure StationConfiguration::measure(int channel) const
{
    return inputs == nullptr ? Measure::None : inputs->measure(channel);
}

StationConfigurations::StationConfigurations(Timers &timers, QObject *parent)
    : QObject(parent), m_next(timers.create())
{
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &StationConfigurations::lookSoon);
}

StationConfigurations::~StationConfigurations()
{
    m_isEnding = true;
}

void StationConfigurations::open(const QString &list)
{
    m_list = list;
    m_linksFile = fileBesideList(list, QLatin1StringView(".links"));
    m_linksOf = {};
    (void)takeLinks(); // linksTrouble() tells
    look();
    Q_EMIT changed();
}

/// Another program may write the file, too.
Status StationConfigurations::takeLinks()
{
    const QFileInfo file(m_linksFile);
    if (m_linksOf.stillHolds(file)) {
        return Status::done();
    }
    m_linksOf = FileStamp(file);
    QByteArray text;
    Status read = readBesideList(m_linksFile, text);
    if (!read) {
        m_linksOf = {};
    }
    QStringList remarks;
    const StationLinks links = StationLinks::parse(text, folderOf(m_list), remarks);
    m_links = links;
    if (std::exchange(m_linksTrouble, troubleBesideList(m_linksFile, read, remarks)) != m_linksTrouble) {
        Q_EMIT linksTroubleChanged();
    }
    return read;
}

Status StationConfigurations::change(const std::function<void(StationLinks &)> &edit)
{
    if (Status read = takeLinks(); !read) {
        return read;
    }
    StationLinks links = m_links;
    edit(links);
    if (links == m_links) {
        return Status::done();
    }
    if (Status written = writeBesideList(m_linksFile, links.text()); !written) {
        return written;
    }
    m_linksOf = {};
    m_links = links;
    look();
    Q_EMIT changed();
    return Status::done();
}

Status StationConfigurations::choose(const QString &station, const QString &file)
{
    if (!canBeLinked(file)) {
        return fileFailure(file, tr("a file whose name has a line break cannot be linked"));
    }
    return change([&](StationLinks &links) {
        links.set(station, file.isEmpty() ? file : QFileInfo(file).absoluteFilePath());
    });
}

Status StationConfigurations::forget(const QString &station)
{
    return change([&station](StationLinks &links) { links.set(station, std::nullopt); });
}

void StationConfigurations::rename(const QString &before, const QString &now)
{
    if (!m_links.fileOf(before)) {
        return;
    }
    const Status written = change([&](StationLinks &links) { links.rename(before, now); });
    if (!written) {
        Q_EMIT statusMessage(written.message());
    }
}

void StationConfigurations::setFolders(const QStringList &folders)
{
    if (std::exchange(m_folders, folders) != folders) {
        look();
    }
}

void StationConfigurations::setTransmitted(const QHash<QString, QString> &files)
{
    if (std::exchange(m_transmitted, files) != files) {
        look();
    }
}

// What stands in the files

void StationConfigurations::look()
{
    if (!m_list.isEmpty()) {
        m_isWanted = true;
        begin();
    }
}

void StationConfigurations::lookSoon()
{
    m_next->start(pauseAfterChange, [this] { look(); });
}

void StationConfigurations::begin()
{
    if (m_isBusy || !std::exchange(m_isWanted, false)) {
        return;
    }
    m_isBusy = true;
    m_next->stop();
    (void)takeLinks();
    QStringList folders = m_folders;
    const QStringList chosen = m_links.files();
    for (const QString &file : chosen) {
        folders += QFileInfo(file).path();
    }
    folders += folderOf(m_list);
    folders.removeDuplicates();
    const QStringList others = chosen + m_transmitted.values();
    m_asked = QSet<QString>(others.begin(), others.end());
    const QString own = isServerAddress(m_list) ? QString() : QFileInfo(m_list).fileName();
    m_thread.start([this, folders, others, own] {
        m_read = m_files.read(folders, others, own, [this] { return !m_isEnding; });
        if (!m_isEnding) {
            QMetaObject::invokeMethod(this, &StationConfigurations::take, Qt::QueuedConnection);
        }
    });
    watch(folders);
}

void StationConfigurations::take()
{
    m_thread.wait();
    m_isBusy = false;
    const bool wasLookedAt = std::exchange(m_lookedAt, m_asked) == m_asked;
    ConfigurationFiles::Files read = std::exchange(m_read, {});
    const bool isSame = isEqual(read, m_found);
    if (!isSame) {
        m_found = std::move(read);
        sortByStation();
    }
    if (!isSame || !wasLookedAt) {
        Q_EMIT changed();
    }
    if (!m_next->isRunning()) {
        m_next->start(pauseBetweenLooks, [this] { look(); });
    }
    begin();
}

/// The list's own comes last among the folders, and is to be among those that are watched.
void StationConfigurations::watch(const QStringList &folders)
{
    QStringList wanted = folders.last(std::min(mostWatched, folders.size()));
    wanted.removeIf([](const QString &folder) { return folder.isEmpty() || !QFileInfo(folder).isDir(); });
    QStringList left = m_watcher.directories();
    left.removeIf([&wanted](const QString &folder) { return wanted.contains(folder); });
    if (!left.isEmpty()) {
        m_watcher.removePaths(left);
    }
    const QStringList watched = m_watcher.directories();
    wanted.removeIf([&watched](const QString &folder) { return watched.contains(folder); });
    if (!wanted.isEmpty()) {
        m_watcher.addPaths(wanted);
    }
}

void StationConfigurations::sortByStation()
{
    m_byStation.clear();
    for (auto file = m_found.files.cbegin(); file != m_found.files.cend(); ++file) {
        if (!file->inputs->station.isEmpty()) {
            m_byStation[file->inputs->station] += file.key();
        }
    }
    const auto rank = [this](const QString &path) {
        const ConfigurationFiles::File &file = m_found.files[path];
        return std::tuple(file.namesModified.isValid() ? -file.namesModified.toMSecsSinceEpoch() : 0,
                          -file.modified.toMSecsSinceEpoch(), path);
    };
    for (QStringList &files : m_byStation) {
        if (files.size() > 1) {
            std::ranges::sort(files, {}, rank);
        }
    }
}

StationConfiguration StationConfigurations::of(const QString &station, const QString &address) const
{
    using Origin = StationConfiguration::Origin;
    StationConfiguration found;
    const QString name = station.trimmed();
    if (name.isEmpty()) {
        return found;
    }
    found.candidates = m_byStation.value(name);
    if (found.candidates.isEmpty()) { // no identifier has umlauts
        found.candidates = m_byStation.value(withoutUmlauts(name));
    }
    const QString transmitted = address.isEmpty() ? QString() : m_transmitted.value(address);
    const QString held = m_found.links.value(transmitted);
    if (const std::optional<QString> chosen = m_links.fileOf(station)) {
        found.origin = chosen->isEmpty() ? Origin::None : Origin::Chosen;
        found.file = *chosen;
    } else if (!held.isEmpty() && found.candidates.size() != 1 &&
               (found.candidates.isEmpty() || found.candidates.contains(held))) {
        found.origin = Origin::Transmitted;
        found.file = transmitted;
    } else if (!found.candidates.isEmpty()) {
        found.origin = Origin::Found;
        found.file = found.candidates.first();
    }
    if (found.file.isEmpty()) {
        return found;
    }
    found.inputs = m_found.files.value(m_found.links.value(found.file, found.file)).inputs;
    if (found.inputs == nullptr && m_lookedAt.contains(found.file)) {
        found.trouble = m_found.links.contains(found.file) ? tr("it is no configuration that can be read")
                                                           : tr("the file is not there");
    }
    return found;
}

} // namespace ktr
