#pragma once

#include "opmode/tree/history_entry_text.h"
#include "opmode/tree/station_tree.h"

#include <QAbstractTableModel>
#include <QLocale>

class QTimer;

namespace ktr {

/// What of an entry of the history is sorted and drawn; its text stays in the tree.
struct HistoryPoint
{
    double value;
    qint32 minute; ///< of wall time since 2000; without a time that of the entry before, to stay beside it
    quint16 input; ///< 0 for an entry of another form
    bool hasTime;  ///< it can be drawn if it has both
    bool hasValue;
};

/// The history of one station as a table, sorted by time at first. What arrives is taken up in batches.
class HistoryModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Time, Input, Value, ColumnCount };
    static constexpr int WholeLineRole = Qt::UserRole; ///< an entry of another form: its text is its value
    static constexpr int batch = 100;                  ///< milliseconds

    explicit HistoryModel(const StationTree &tree, QObject *parent = nullptr);

    /// Shows the entries under a "/history" node, or with no index none.
    void show(const QModelIndex &branch);
    /// Gives the values their decimal sign.
    void setLocale(const QLocale &locale);

    /// In the order of their arrival.
    const std::vector<HistoryPoint> &records() const { return m_records; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

Q_SIGNALS:
    /// There are further records from this one on.
    void recordsAdded(std::size_t first);
    /// All records are others.
    void recordsReplaced();

private:
    void load();
    void takeUp();
    void takeRemoved(int first);
    void read(int end);
    void sortRows();
    bool isBefore(quint32 left, quint32 right) const;
    QString textOf(quint32 record) const;

    const StationTree &m_tree;
    QPersistentModelIndex m_branch;
    std::vector<HistoryPoint> m_records; ///< as many of the branch's entries as were read
    std::vector<quint32> m_rows;         ///< which record stands in a row
    int m_column = Time;
    Qt::SortOrder m_order = Qt::AscendingOrder;
    QLocale m_locale = QLocale::c();
    QTimer *m_batch;
};

} // namespace ktr
