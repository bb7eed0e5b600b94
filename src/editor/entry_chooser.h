#pragma once

#include <QList>
#include <QWidget>

class QAction;
class QScrollBar;
class QTableView;

namespace ktr {

class EntryModel;

/// Chooses the entry that a page shows: in an overview of all entries, or with the scroll bar beside it.
/// Both always agree.
class EntryChooser : public QWidget
{
    Q_OBJECT

public:
    struct Names
    {
        QString overview;
        QString scrollBar;
    };
    /// How wide each column is: for this text; a column with an empty one takes the rest.
    using Widths = QStringList;

    EntryChooser(const Names &names, EntryModel *model, const Widths &widths, QWidget *parent = nullptr);

    int entry() const; ///< from 0
    /// An entry outside the overview is a fault of the program.
    void setEntry(int entry);

    /// The entries that are marked, from the first to the last; the one that is shown where none is.
    QList<int> chosen() const;
    /// Marks entries and shows the first of them.
    void choose(int first, int count);

    /// What can be done with entries: by keys here, and in the menu of the overview.
    void addEntryActions(const QList<QAction *> &actions);

    /// The overview's object name, by which undo finds the way back.
    QString overviewName() const;

    /// What screen readers and tool tips call an entry.
    void setEntryName(const QString &name);

Q_SIGNALS:
    void entryChanged(int entry);

private:
    void setUpOverview(const Widths &widths);
    void showEntry(int entry);

    QTableView *m_overview;
    QScrollBar *m_scrollBar;
};

/// The caption of an entry's frame: what stands in front of the number now, `length` characters, and the
/// number.
QString numberedCaption(const QString &present, int length, int number);

} // namespace ktr
