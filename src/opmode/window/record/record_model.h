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
    /// By which a column is put in order.
    static constexpr int OrderRole = Qt::UserRole;

    /// The queries must outlive it.
    explicit RecordModel(RecordQueries &queries, QObject *parent = nullptr);
    ~RecordModel() override;

    /// Begins anew with another search; what an earlier one would still find is not told any more.
    void search(const RecordSearch &search);
    const RecordSearch &searched() const { return m_search; }
    /// Looks whether something was committed since the last call, and takes it in.
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
    /// What isSearching(), hasMore() or status() gives is another.
    void stateChanged();
    /// There are other names of stations or operators.
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
    std::size_t m_wanted = 0; ///< lines, until which it asks on
    bool m_isSearching = false;
    Status m_status = Status::done();
    RecordStations m_stations;
    QStringList m_operators;
    qint64 m_version = 0;
    QElapsedTimer m_followed;    ///< since the last time it was looked for what is new
    qint64 m_tookMs = 0;         ///< until it was found
    const char m_namesAsker = 0; ///< their addresses are who asks
    const char m_newsAsker = 0;
};

} // namespace ktr
