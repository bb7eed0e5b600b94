#pragma once

#include "opmode/window/record/record_table.h"
#include "record/record_queries.h"

#include <QAbstractTableModel>
#include <QElapsedTimer>

namespace ktr {

/// What a search in the record finds, the newest first: fetched page by page as a view asks for more, and
/// by a thread. What is committed meanwhile comes in front.
class RecordModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    static constexpr int pageSize = 200;
    /// The value that a column is sorted by.
    static constexpr int OrderRole = Qt::UserRole;

    /// The queries must outlive it.
    explicit RecordModel(RecordQueries &queries, QObject *parent = nullptr);
    ~RecordModel() override;

    /// Starts another search; answers to the one before that are still to come are dropped.
    void search(const RecordSearch &search);
    const RecordSearch &searched() const { return m_search; }
    /// Fetches at least so many lines of this search and of later ones, even if no view asks for them:
    /// sorting orders only the lines that are there.
    void setLeast(std::size_t lines);
    /// Asks for what was committed since the last call and adds what the search finds of it.
    void followRecord();

    bool isSearching() const { return m_isSearching; }
    /// Whether there may be more than what is fetched.
    bool hasMore() const { return m_next.has_value(); }
    const Status &status() const { return m_status; }
    const RecordStations &stations() const { return m_stations; }
    const QStringList &operators() const { return m_operators; }
    const RecordLine &line(int row) const { return m_lines.at(static_cast<std::size_t>(row)); }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;

Q_SIGNALS:
    /// isSearching(), hasMore() or status() changed.
    void stateChanged();
    /// The names of stations or operators changed.
    void namesChanged();

private:
    struct Names
    {
        Status status = Status::done();
        RecordStations stations{};
        QStringList operators{};
    };
    struct News
    {
        qint64 version = 0;
        std::optional<RecordPage> page; ///< nothing: nobody committed anything
        Names names{};
    };

    static Names readNames(RecordReader &reader);
    void fetchUpTo(std::size_t lines);
    void askForPage();
    void takePage(RecordPage page);
    void takeNames(Names names);
    void takeNews(News news);
    void putInFront(const RecordPage &page);
    void settle();

    RecordQueries &m_queries;
    RecordSearch m_search;
    std::vector<RecordLine> m_lines;
    std::optional<RecordKey> m_next;
    std::size_t m_least = pageSize;
    std::size_t m_wanted = 0; ///< it goes on asking until it has so many lines
    bool m_isSearching = false;
    Status m_status = Status::done();
    RecordStations m_stations;
    QStringList m_operators;
    qint64 m_version = 0;
    QElapsedTimer m_followed;    ///< since followRecord() asked last
    qint64 m_tookMs = 0;         ///< the last answer to that
    const char m_namesAsker = 0; ///< its address stands for a question, as that of the next one
    const char m_newsAsker = 0;
};

} // namespace ktr
