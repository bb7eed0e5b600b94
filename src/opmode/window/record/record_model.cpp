#include "opmode/window/record/record_model.h"

#include <QSet>

#include <algorithm>

namespace ktr {

namespace {

/// So many alarms are read again each time, since any of them may have changed.
constexpr int mostReadAgain = 1000;
/// A search that takes long is repeated less often, so that it is busy for a tenth of the time at most.
constexpr int rest = 10;

} // namespace

RecordModel::RecordModel(RecordQueries &queries, QObject *parent)
    : QAbstractTableModel(parent), m_queries(queries)
{}

RecordModel::~RecordModel()
{
    for (const void *asker : {static_cast<const void *>(this), static_cast<const void *>(&m_namesAsker),
                              static_cast<const void *>(&m_newsAsker)}) {
        m_queries.withdraw(asker);
    }
}

RecordModel::Names RecordModel::readNames(RecordReader &reader)
{
    Names names;
    names.status = readStations(reader, names.stations);
    if (names.status) {
        names.status = reader.operators(names.operators);
    }
    return names;
}

void RecordModel::search(const RecordSearch &search)
{
    m_queries.withdraw(&m_newsAsker); // its answer would belong to what was searched before
    m_tookMs = 0;
    beginResetModel();
    m_search = search;
    m_lines.clear();
    m_next.reset();
    m_status = Status::done();
    endResetModel();
    m_wanted = m_least;
    if (m_stations.isEmpty()) {
        m_queries.ask(&m_namesAsker, &readNames, [this](Names names) { takeNames(std::move(names)); });
    }
    askForPage();
}

void RecordModel::setLeast(std::size_t lines)
{
    m_least = lines;
    fetchUpTo(lines);
}

void RecordModel::fetchUpTo(std::size_t lines)
{
    m_wanted = std::max(m_wanted, lines);
    if (m_next && !m_isSearching && m_lines.size() < m_wanted) {
        m_queries.withdraw(&m_newsAsker); // two answers would both be about the lines as they are now
        askForPage();
    }
}

void RecordModel::askForPage()
{
    m_isSearching = true;
    m_queries.ask(
        this,
        [search = m_search, after = m_next](RecordReader &reader) {
            return findPage(reader, search, after, pageSize);
        },
        [this](RecordPage page) { takePage(std::move(page)); });
    Q_EMIT stateChanged();
}

void RecordModel::takePage(RecordPage page)
{
    m_status = page.status;
    m_next = page.status ? page.next : std::nullopt;
    if (!page.lines.empty()) {
        const int at = rowCount();
        beginInsertRows({}, at, at + static_cast<int>(page.lines.size()) - 1);
        m_lines.insert(m_lines.end(), std::make_move_iterator(page.lines.begin()),
                       std::make_move_iterator(page.lines.end()));
        endInsertRows();
    }
    if (m_next && m_lines.size() < m_wanted) {
        askForPage(); // the page may be short because only a part of the record was searched
    } else {
        settle();
    }
}

void RecordModel::settle()
{
    m_isSearching = false;
    Q_EMIT stateChanged();
}

void RecordModel::takeNames(Names names)
{
    if (!names.status) {
        m_status = names.status;
        Q_EMIT stateChanged();
        return;
    }
    m_stations = std::move(names.stations);
    m_operators = std::move(names.operators);
    if (!m_lines.empty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    }
    Q_EMIT namesChanged();
}

void RecordModel::followRecord()
{
    if (m_isSearching || m_queries.isWaitedFor(&m_newsAsker) ||
        (m_followed.isValid() && m_followed.elapsed() < rest * m_tookMs)) {
        return;
    }
    m_followed.start();
    const int limit = m_search.view == RecordView::Events
                          ? pageSize
                          : std::clamp(static_cast<int>(m_lines.size()), pageSize, mostReadAgain);
    m_queries.ask(
        &m_newsAsker,
        [search = m_search, limit, known = m_version](RecordReader &reader) {
            News news{reader.dataVersion(), {}};
            if (news.version != known) {
                news.page = findPage(reader, search, {}, limit);
                news.names = readNames(reader);
            }
            return news;
        },
        [this](News news) { takeNews(std::move(news)); });
}

void RecordModel::takeNews(News news)
{
    m_version = news.version;
    m_tookMs = m_followed.elapsed();
    if (!news.page) {
        return;
    }
    const bool isOtherTrouble = m_status.message() != news.page->status.message();
    m_status = news.page->status;
    if (!m_isSearching && m_status) {
        putInFront(*news.page);
    }
    if (news.names.status && (news.names.stations != m_stations || news.names.operators != m_operators)) {
        takeNames(std::move(news.names));
    }
    if (isOtherTrouble) {
        Q_EMIT stateChanged();
    }
}

/// Replaces all lines down to where the page ends by those of the page.
void RecordModel::putInFront(const RecordPage &page)
{
    auto end = m_lines.end(); // of what the page covers
    if (page.next) {
        if (page.lines.empty()) {
            return;
        }
        end = std::ranges::find(m_lines, numberOf(page.lines.back()), &numberOf);
        if (end == m_lines.end()) { // more came than a page holds
            beginResetModel();
            m_lines = page.lines;
            m_next = page.next;
            endResetModel();
            Q_EMIT stateChanged();
            return;
        }
        ++end;
    } else {
        m_next.reset();
    }
    QSet<qint64> stay;
    for (const RecordLine &line : page.lines) {
        stay += numberOf(line);
    }
    QSet<qint64> shown;
    for (auto i = end - m_lines.begin(); i-- > 0;) {
        if (stay.contains(numberOf(m_lines[static_cast<std::size_t>(i)]))) {
            shown += numberOf(m_lines[static_cast<std::size_t>(i)]);
            continue;
        }
        beginRemoveRows({}, static_cast<int>(i), static_cast<int>(i));
        m_lines.erase(m_lines.begin() + i);
        endRemoveRows();
    }
    for (std::size_t i = 0; i < page.lines.size();) {
        const RecordLine &line = page.lines[i];
        const int row = static_cast<int>(i);
        if (shown.contains(numberOf(line))) {
            if (m_lines[i] != line) {
                m_lines[i] = line;
                Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
            }
            ++i;
            continue;
        }
        std::size_t behind = i + 1;
        while (behind < page.lines.size() && !shown.contains(numberOf(page.lines[behind]))) {
            ++behind;
        }
        beginInsertRows({}, row, static_cast<int>(behind) - 1);
        m_lines.insert(m_lines.begin() + row, page.lines.begin() + row,
                       page.lines.begin() + static_cast<std::ptrdiff_t>(behind));
        endInsertRows();
        i = behind;
    }
    Q_EMIT stateChanged();
}

int RecordModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_lines.size());
}

int RecordModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : recordColumns(m_search.view);
}

QVariant RecordModel::data(const QModelIndex &index, int role) const
{
    const RecordLine &line = this->line(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return recordCell(line, index.column(), m_stations, TimeForm::Shown).replace(u'\n', u' ');
    case Qt::ToolTipRole:
        return recordCell(line, index.column(), m_stations, TimeForm::Shown);
    case OrderRole:
        return recordOrder(line, index.column(), m_stations);
    default:
        return {};
    }
}

QVariant RecordModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole) {
        return recordTitle(m_search.view, section);
    }
    return role == Qt::TextAlignmentRole ? QVariant(Qt::AlignLeft | Qt::AlignVCenter) : QVariant();
}

bool RecordModel::canFetchMore(const QModelIndex &parent) const
{
    return !parent.isValid() && m_next && !m_isSearching;
}

void RecordModel::fetchMore(const QModelIndex &parent)
{
    if (canFetchMore(parent)) {
        fetchUpTo(m_lines.size() + pageSize);
    }
}

} // namespace ktr
