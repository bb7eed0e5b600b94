#pragma once

#include "editor/editor_context.h"
#include "editor/field_ref.h"

#include <QHash>
#include <QObject>

#include <vector>

class QWidget;

namespace ktr {

/// Makes fields in rows and columns a grid: the arrow keys go up and down in a column, and between boxes also
/// along a row; a block of cells from a spreadsheet is pasted from a field on, and a value is filled down.
class InputGrid : public QObject
{
    Q_OBJECT

public:
    struct Place
    {
        int row = 0;
        int column = 0;

        bool operator==(const Place &) const = default;
    };

    explicit InputGrid(EditorContext &context, QObject *parent = nullptr);

    void add(QWidget *control, const FieldRef &field, const Place &place);

    /// Gives the fields below a control its value, as one step that undo takes back. What is no control of
    /// the grid is told.
    void fillDown(const QWidget *control);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Cell
    {
        QWidget *control;
        FieldRef field;
        Place place;

        bool isBox() const;
        /// What a control stores of a cell of a table; nothing when it cannot be understood.
        std::optional<QString> understood(const QString &text) const;
    };
    struct Value
    {
        const Cell *cell;
        QString text;
    };

    const Cell *cellOf(const QObject *control) const;
    const Cell *cellAt(const Place &place) const;
    const Cell *neighbour(const Cell &cell, int rows, int columns) const;
    bool moveOn(const Cell &cell, int key) const;
    bool pasteBlock(const Cell &first);
    QString collect(const QList<QStringList> &rows, const Cell &first, std::vector<Value> &values) const;
    int replacedBy(const std::vector<Value> &values) const;
    void tellStored(const QString &words, int replaced) const;
    void store(const Cell &first, const std::vector<Value> &values);

    EditorContext &m_context;
    std::vector<Cell> m_cells;
    int m_lastRow = 0;
    int m_lastColumn = 0;
};

} // namespace ktr
