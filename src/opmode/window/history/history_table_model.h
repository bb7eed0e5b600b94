#pragma once

#include "config/channel_names.h"
#include "opmode/tree/history_entry_text.h"
#include "opmode/tree/station_tree.h"

#include <QAbstractTableModel>
#include <QLocale>

class QTimer;

namespace ktr {

/// The figures of an entry of the history, by which it is sorted and drawn; its text stays in the tree.
struct EntryFigures
{
    double value;
    qint32 minute; ///< of wall time since 2000; without a time that of the entry before, to stay beside it
    quint16 input; ///< 0 for an entry of another form
    bool hasTime;  ///< it can be drawn if it has both
    bool hasValue;
};

/// The history of one station as a table, sorted by time at first. What arrives is taken up in batches.
class HistoryTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Time, Input, Value, ColumnCount };
    static constexpr int WholeLineRole = Qt::UserRole; ///< an entry of another form: its text is its value
    static constexpr int batch = 100;                  ///< milliseconds

    explicit HistoryTableModel(const StationTree &tree, QObject *parent = nullptr);

    /// Shows the entries under a "/history" node, or with no index none.
    void show(const QModelIndex &branch);
    /// Gives the values their decimal sign.
    void setLocale(const QLocale &locale);

    /// What the user calls the station's inputs, before show().
    void setNames(const ChannelNames &names) { m_names = names; }

    /// The node of a row in the tree.
    QModelIndex entry(int row) const;
    /// In the order of their arrival.
    const std::vector<EntryFigures> &entries() const { return m_entries; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

Q_SIGNALS:
    /// Entries from this one on were added.
    void entriesAdded(std::size_t first);
    /// Some entries are gone; told once for all that go together.
    void entriesRemoved();
    /// All entries are others.
    void entriesReplaced();

private:
    void load();
    void takeUp();
    void takeRemoved(int first, int last);
    void read(int end);
    void sortRows();
    bool isBefore(quint32 left, quint32 right) const;
    QString textOf(quint32 entry) const;

    const StationTree &m_tree;
    ChannelNames m_names;
    QPersistentModelIndex m_branch;
    std::vector<EntryFigures> m_entries; ///< as many of the branch's entries as were read
    std::vector<quint32> m_rows;         ///< which entry stands in a row
    int m_column = Time;
    Qt::SortOrder m_order = Qt::AscendingOrder;
    QLocale m_locale = QLocale::c();
    QTimer *m_batch;
    bool m_lostSome = false; ///< since entriesRemoved() was emitted
};

} // namespace ktr
