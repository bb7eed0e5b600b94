#pragma once

#include "config/fields.h"
#include "link/problems.h"

#include <QAbstractTableModel>

#include <algorithm>
#include <vector>

namespace ktr {

/// A record in the overview of all records of its kind.
struct EntryRow
{
    QStringList cells; ///< behind the number
    bool inUse = false;

    bool operator==(const EntryRow &) const = default;
};

/// The overview of the records of which a page shows one at a time: their numbers, counted from 1, what they
/// do, and a sign at those that have problems.
class EntryModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    /// `messages` by entry; entries that are not named have no problems.
    void setProblems(const QHash<int, QString> &messages);

    /// An entry in one line, for tool tips.
    QString description(int entry) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

protected:
    void setTitles(const QStringList &titles);
    /// Tells the views only of rows that differ. Always as many rows as the first time.
    void setRows(std::vector<EntryRow> rows);

private:
    QStringList m_titles;
    std::vector<EntryRow> m_rows;
    QHash<int, QString> m_problems;
};

/// What is wrong with each record of a kind, by the record's index.
template <class Record> QHash<int, QString> problemsByEntry(const QList<Problem> &problems)
{
    QHash<int, QString> messages;
    for (const Problem &problem : problems) {
        const auto shows = [&problem](const Field<Record> &field) {
            return field.control.forIndex(problem.entry) == problem.control;
        };
        if (std::ranges::any_of(fieldsOf<Record>(), shows)) {
            QString &message = messages[problem.entry];
            message += (message.isEmpty() ? QString() : QStringLiteral("\n")) + problem.message;
        }
    }
    return messages;
}

} // namespace ktr
