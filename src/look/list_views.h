#pragma once

#include <QLabel>
#include <QModelIndex>

class QAbstractItemView;
class QLineEdit;
class QTableView;

namespace ktr {

/// A control with the name by which it is found.
template <class Control> Control *named(const QString &name, QWidget *parent)
{
    auto *control = new Control(parent);
    control->setObjectName(name);
    return control;
}

/// A field for a text to search for.
QLineEdit *searchField(const QString &name, QWidget *parent);

/// Lets a field be emptied by a button, which assistive tools can tell.
void addClearButton(QLineEdit &field);

/// Lets Down go from a search into the list of what it found: to its current line, or the first one.
void goDownInto(QLineEdit &search, QAbstractItemView &list);

/// Lets a list that is come to by keys have a chosen line, so that its keys act on what has the focus.
void chooseOnArrival(QAbstractItemView &list);

/// Offers the actions of a list in a menu of its own. The toolkit's own way waits in an event loop until the
/// menu is closed, and crashes when the window goes meanwhile.
void offerActions(QAbstractItemView &list);

/// Sets up a table or tree whose lines are chosen as a whole and are not edited.
void setUpLines(QAbstractItemView &view);
/// The same for a table. All its rows have one height: measuring each of 100,000 would take longer than
/// anything else.
void setUpRows(QTableView &table);

/// The first columns of the chosen lines, from the top. Unlike the toolkit's own selectedRows() it does not
/// ask the model about each column of each row. Of a tree, it knows two levels.
QModelIndexList chosenLines(const QAbstractItemView &view);
/// Puts lines into the clipboard as a spreadsheet takes them: columns separated by tabs. Nothing when there
/// are none.
void copyLines(const QModelIndexList &lines, const QList<int> &columns);

/// Stands over a list that shows nothing and says why.
class EmptyNotice : public QLabel
{
public:
    EmptyNotice(const QString &name, QAbstractItemView &view);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace ktr
