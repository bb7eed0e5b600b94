#pragma once

#include "foretell/module_play.h"
#include "lang/text_table.h"

#include <QAbstractTableModel>

#include <deque>

namespace ktr {

/// What has happened in a play, the newest last; of very many the newest ones. Each line stays as it was
/// told.
class PlayEventModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { TimeColumn, WhatColumn, ToColumn, TextColumn, CauseColumn, RestsOnColumn, columns };
    static constexpr int most = 5000;

    using QAbstractTableModel::QAbstractTableModel;

    void add(const QList<PlayEvent> &events, const Configuration &configuration, const TextTable &texts);
    void clear();
    /// Only notifications and switchings are added.
    void setStatesShown(bool shown) { m_statesShown = shown; }
    /// How assumptions are read that lines rest on.
    void setOtherwise(const Assumptions &otherwise) { m_otherwise = otherwise; }
    /// All lines as a table for a file.
    QByteArray csv() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Line
    {
        std::array<QString, columns> cells;
        PlayEvent::Kind kind = PlayEvent::Kind::Waiting;
        Assumptions restsOn;
    };

    std::deque<Line> m_lines;
    Assumptions m_otherwise;
    bool m_statesShown = true;
};

/// The texts of a set of assumptions, a line each, with their numbers.
QString assumptionLines(const Assumptions &assumptions, const Assumptions &otherwise = {});

} // namespace ktr
