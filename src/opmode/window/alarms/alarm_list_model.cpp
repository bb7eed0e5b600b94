#include "opmode/window/alarms/alarm_list_model.h"

#include "opmode/watch_alarms.h"

#include <algorithm>
#include <numeric>

namespace ktr {

/// What a line is sorted by; what is equal in its column, by urgency, then by who came first.
struct AlarmListModel::Key
{
    qint64 number = 0;
    QString text = {};
    int priority = 0;
    qint64 first = 0;
    qint64 id = 0;
};

AlarmListModel::AlarmListModel(const OperationalMode &mode, Timers &timers, const QLocale &locale,
                               QObject *parent)
    : QAbstractItemModel(parent), m_mode(mode), m_cells(mode, locale), m_delay(timers.create())
{
    connect(&mode.alarms(), &AlarmBook::changed, this, &AlarmListModel::note);
    connect(&mode.alarms(), &AlarmBook::shelvesChanged, this, &AlarmListModel::postpone);
    connect(&mode.alarms(), &AlarmBook::reset, this, &AlarmListModel::reload);
    connect(&mode.alarmActions(), &AlarmActions::minutePassed, this, &AlarmListModel::tellAllChanged);
    connect(&mode.tree(), &StationTree::stationRenamed, this, &AlarmListModel::postpone);
    reload();
}

AlarmListModel::~AlarmListModel() = default;

// What changes

void AlarmListModel::note(const AlarmRow &alarm)
{
    m_noted.insert(alarm.id, alarm);
    postpone();
}

void AlarmListModel::postpone()
{
    if (!m_delay->isRunning()) {
        m_delay->start(longestDelay, [this] {
            if (m_isHeld()) {
                updateInPlace();
                postpone();
            } else {
                update();
            }
        });
    }
}

void AlarmListModel::reload()
{
    m_noted.clear();
    m_alarms.clear();
    for (const auto &[id, alarm] : m_mode.alarms().standing()) {
        m_alarms.insert(id, alarm);
    }
    update();
}

void AlarmListModel::update()
{
    m_delay->stop();
    for (const AlarmRow &alarm : std::exchange(m_noted, {})) {
        if (alarm.acknowledged == 0 || alarm.over == 0) {
            m_alarms.insert(alarm.id, alarm);
        } else {
            m_alarms.remove(alarm.id);
        }
    }
    addShelves();
    show(build());
}

void AlarmListModel::updateInPlace()
{
    for (const AlarmRow &alarm : std::as_const(m_noted)) {
        if (m_places.contains(alarm.id)) {
            m_alarms.insert(alarm.id, alarm);
        }
    }
    Lines lines;
    lines.reserve(m_lines.size());
    for (const AlarmLine &line : m_lines) {
        lines.push_back(line.isStorm ? storm(line.alarms) : single(line.alarms.front()));
    }
    show(std::move(lines));
}

void AlarmListModel::choose(const AlarmChoice &choice)
{
    if (choice != m_choice) {
        m_choice = choice;
        update();
    }
}

void AlarmListModel::sort(int column, Qt::SortOrder order)
{
    if (column >= 0 && (column != m_column || order != m_order)) {
        m_column = column;
        m_order = order;
        update();
    }
}

// The lines

bool AlarmListModel::isListed(const AlarmRow &alarm) const
{
    if ((alarm.shelvedUntil != 0 && !m_choice.shelved) ||
        (alarm.acknowledged != 0 && m_choice.onlyUnacknowledged)) {
        return false;
    }
    const auto has = [this](const QString &text) {
        return text.contains(m_choice.filter, Qt::CaseInsensitive);
    };
    return m_choice.filter.isEmpty() || has(WatchAlarms::shownText(alarm)) || has(alarm.comment) ||
           std::ranges::any_of(alarm.recipients, has) || has(m_cells.station(alarm));
}

/// Shelves on which no alarm stands, so that they can be taken back.
void AlarmListModel::addShelves()
{
    m_alarms.removeIf([](const std::pair<const qint64 &, AlarmRow &> &entry) { return entry.first < 0; });
    if (!m_choice.shelved) {
        return;
    }
    QSet<const Shelf *> used;
    for (const AlarmRow &alarm : std::as_const(m_alarms)) {
        if (alarm.shelvedUntil != 0) {
            used.insert(m_mode.alarms().shelfOf(alarm));
        }
    }
    for (const Shelf &shelf : m_mode.alarms().shelves()) {
        if (!used.contains(&shelf)) {
            qint64 &number = m_shelfNumbers[{shelf.station, shelf.text}];
            number = number == 0 ? -m_shelfNumbers.size() : number;
            AlarmRow row;
            row.id = number;
            row.station = shelf.station;
            row.text = shelf.text;
            row.priority = static_cast<int>(AlarmPriority::Low) + 1;
            row.count = 0;
            row.shelvedUntil = shelf.until;
            row.shelvedBy = shelf.by;
            row.shelvedWhy = shelf.why;
            m_alarms.insert(number, row);
        }
    }
}

AlarmLine AlarmListModel::single(qint64 id) const
{
    AlarmLine line;
    line.alarms = {id};
    line.sum = m_alarms.value(id);
    line.waiting = !isShelfAlone(line.sum) && m_mode.alarms().isWaiting(line.sum) ? 1 : 0;
    return line;
}

AlarmLine AlarmListModel::storm(std::vector<qint64> alarms) const
{
    AlarmLine line = single(alarms.front());
    line.isStorm = true;
    line.waiting = 0;
    AlarmRow &sum = line.sum;
    sum.station = 0;
    sum.count = 0;
    for (const qint64 id : alarms) {
        const AlarmRow &alarm = *m_alarms.constFind(id);
        sum.priority = std::min(sum.priority, alarm.priority);
        sum.first = std::min(sum.first, alarm.first);
        sum.last = std::max(sum.last, alarm.last);
        sum.count += alarm.count;
        line.waiting += m_mode.alarms().isWaiting(alarm) ? 1 : 0;
    }
    line.alarms = std::move(alarms);
    return line;
}

AlarmListModel::Key AlarmListModel::keyOf(const AlarmLine &line) const
{
    Key key;
    const AlarmRow &sum = line.sum;
    key.priority = sum.priority;
    key.first = sum.first;
    key.id = line.alarms.front();
    switch (m_column) {
    case Priority:
        key.number = sum.priority;
        break;
    case State:
        key.number = line.waiting > 0 ? 0 : std::max<qint64>(sum.acknowledged, 1);
        break;
    case First:
        key.number = sum.first;
        break;
    case Last:
        key.number = sum.last;
        break;
    case Count:
        key.number = sum.count;
        break;
    default:
        key.text = m_cells.text(line, m_column);
        break;
    }
    return key;
}

bool AlarmListModel::isBefore(const Key &a, const Key &b) const
{
    if (a.number != b.number) {
        return (a.number < b.number) == (m_order == Qt::AscendingOrder);
    }
    if (const int order = a.text.compare(b.text, Qt::CaseInsensitive); order != 0) {
        return (order < 0) == (m_order == Qt::AscendingOrder);
    }
    return std::tie(a.priority, a.first, a.id) < std::tie(b.priority, b.first, b.id);
}

AlarmListModel::Lines AlarmListModel::build() const
{
    std::vector<std::pair<Key, AlarmLine>> singles;
    QHash<QString, QSet<qint64>> stations; ///< of each text
    for (const AlarmRow &alarm : m_alarms) {
        if (isListed(alarm)) {
            AlarmLine line = single(alarm.id);
            Key key = keyOf(line);
            singles.emplace_back(std::move(key), std::move(line));
            if (alarm.id > 0) {
                stations[WatchAlarms::shownText(alarm)].insert(alarm.station);
            }
        }
    }
    const auto isFirst = [this](const auto &a, const auto &b) { return isBefore(a.first, b.first); };
    std::ranges::sort(singles, isFirst);
    std::vector<std::pair<Key, AlarmLine>> lines;
    QHash<QString, std::vector<qint64>> storms;
    for (auto &[key, line] : singles) {
        const QString text = WatchAlarms::shownText(line.sum);
        if (line.alarms.front() > 0 && stations[text].size() >= stationsOfStorm) {
            storms[text].push_back(line.alarms.front());
        } else {
            lines.emplace_back(std::move(key), std::move(line));
        }
    }
    for (std::vector<qint64> &alarms : storms) {
        AlarmLine line = storm(std::move(alarms));
        Key key = keyOf(line);
        lines.emplace_back(std::move(key), std::move(line));
    }
    if (!storms.isEmpty()) {
        std::ranges::sort(lines, isFirst);
    }
    Lines built;
    built.reserve(lines.size());
    for (auto &[key, line] : lines) {
        built.push_back(std::move(line));
    }
    return built;
}

void AlarmListModel::show(Lines lines)
{
    const bool sameLines = std::ranges::equal(lines, m_lines, [](const AlarmLine &a, const AlarmLine &b) {
        return a.isStorm == b.isStorm && a.alarms == b.alarms;
    });
    m_unacknowledged = std::accumulate(lines.begin(), lines.end(), 0,
                                       [](int sum, const AlarmLine &line) { return sum + line.waiting; });
    Q_EMIT aboutToUpdate();
    if (sameLines) {
        m_lines = std::move(lines);
        tellAllChanged();
    } else {
        beginResetModel();
        m_lines = std::move(lines);
        m_places.clear();
        for (int line = 0; line < static_cast<int>(m_lines.size()); ++line) {
            const AlarmLine &shown = m_lines[static_cast<std::size_t>(line)];
            for (int child = 0; child < static_cast<int>(shown.alarms.size()); ++child) {
                m_places.insert(shown.alarms[static_cast<std::size_t>(child)],
                                {line, shown.isStorm ? child : -1});
            }
        }
        endResetModel();
    }
    Q_EMIT updated();
}

void AlarmListModel::tellAllChanged()
{
    const int lines = rowCount();
    if (lines == 0) {
        return;
    }
    Q_EMIT dataChanged(index(0, 0), index(lines - 1, columns - 1));
    for (int line = 0; line < lines; ++line) {
        const QModelIndex parent = index(line, 0);
        if (const int children = rowCount(parent); children > 0) {
            Q_EMIT dataChanged(index(0, 0, parent), index(children - 1, columns - 1, parent));
        }
    }
}

// What is asked of the lines

QList<qint64> AlarmListModel::alarms(const QModelIndex &line) const
{
    if (const AlarmRow *one = alarm(line)) {
        return {one->id};
    }
    if (!line.isValid()) {
        return {};
    }
    const AlarmLine &storm = m_lines[static_cast<std::size_t>(line.row())];
    return {storm.alarms.begin(), storm.alarms.end()};
}

const AlarmRow *AlarmListModel::alarm(qint64 id) const
{
    const auto found = m_alarms.constFind(id);
    return found == m_alarms.cend() ? nullptr : &*found;
}

const AlarmRow *AlarmListModel::alarm(const QModelIndex &line) const
{
    if (!line.isValid() || isStorm(line)) {
        return nullptr;
    }
    const bool isChild = line.internalId() != 0;
    const AlarmLine &shown = m_lines[static_cast<std::size_t>(isChild ? line.parent().row() : line.row())];
    return alarm(shown.alarms[isChild ? static_cast<std::size_t>(line.row()) : 0]);
}

bool AlarmListModel::isStorm(const QModelIndex &line) const
{
    return line.isValid() && line.internalId() == 0 && m_lines[static_cast<std::size_t>(line.row())].isStorm;
}

QString AlarmListModel::storm(const QModelIndex &line) const
{
    return isStorm(line) ? m_lines[static_cast<std::size_t>(line.row())].sum.text : QString();
}

QModelIndex AlarmListModel::lineOf(qint64 alarm) const
{
    const auto place = m_places.constFind(alarm);
    if (place == m_places.cend()) {
        return {};
    }
    return place->child < 0 ? index(place->line, 0) : index(place->child, 0, index(place->line, 0));
}

QModelIndex AlarmListModel::stormOf(const QString &text) const
{
    const auto found = std::ranges::find_if(
        m_lines, [&](const AlarmLine &line) { return line.isStorm && line.sum.text == text; });
    return found == m_lines.end() ? QModelIndex() : index(static_cast<int>(found - m_lines.begin()), 0);
}

QList<qint64> AlarmListModel::unacknowledged() const
{
    QList<qint64> alarms;
    for (const AlarmLine &line : m_lines) {
        for (const qint64 id : line.alarms) {
            const AlarmRow &alarm = *m_alarms.constFind(id);
            if (!isShelfAlone(alarm) && m_mode.alarms().isWaiting(alarm)) {
                alarms += id;
            }
        }
    }
    return alarms;
}

void AlarmListModel::setTexts(const QString &notAcknowledged)
{
    m_cells.setNotAcknowledged(notAcknowledged);
    tellAllChanged();
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, columns - 1);
}

// As a model; under a storm's line the number of an index is that line's, plus one

QModelIndex AlarmListModel::index(int row, int column, const QModelIndex &parent) const
{
    if (row < 0 || column < 0 || column >= columns || row >= rowCount(parent)) {
        return {};
    }
    return createIndex(row, column, static_cast<quintptr>(parent.isValid() ? parent.row() + 1 : 0));
}

QModelIndex AlarmListModel::parent(const QModelIndex &index) const
{
    return index.internalId() == 0 ? QModelIndex()
                                   : createIndex(static_cast<int>(index.internalId()) - 1, 0, quintptr(0));
}

int AlarmListModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid()) {
        return static_cast<int>(m_lines.size());
    }
    return parent.column() == 0 && isStorm(parent)
               ? static_cast<int>(m_lines[static_cast<std::size_t>(parent.row())].alarms.size())
               : 0;
}

int AlarmListModel::columnCount(const QModelIndex &) const
{
    return columns;
}

QVariant AlarmListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    if (index.internalId() == 0) {
        return m_cells.data(m_lines[static_cast<std::size_t>(index.row())], index.column(), role);
    }
    const AlarmRow *row = alarm(index);
    return row == nullptr ? QVariant() : m_cells.data(*row, index.column(), role);
}

QVariant AlarmListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    return orientation == Qt::Horizontal && role == Qt::DisplayRole ? QVariant(AlarmCells::header(section))
                                                                    : QVariant();
}

} // namespace ktr
