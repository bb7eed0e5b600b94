#include "look/list_views.h"

#include "look/icons.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QFocusEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QTableView>
#include <QToolButton>

#include <algorithm>

namespace ktr {

namespace {

bool isAbove(const QModelIndex &one, const QModelIndex &other)
{
    const auto place = [](const QModelIndex &line) {
        const QModelIndex parent = line.parent();
        return parent.isValid() ? std::pair(parent.row(), line.row()) : std::pair(line.row(), -1);
    };
    return place(one) < place(other);
}

/// With an icon that has a text for assistive tools.
class SearchField : public QLineEdit
{
public:
    explicit SearchField(QWidget *parent)
        : QLineEdit(parent), m_icon(addAction(icon(IconName::Search), LeadingPosition))
    {
        applyTexts();
    }

protected:
    void changeEvent(QEvent *event) override
    {
        if (event->type() == QEvent::LanguageChange) {
            applyTexts();
        }
        QLineEdit::changeEvent(event);
    }

private:
    void applyTexts() { m_icon->setText(QCoreApplication::translate("SearchField", "Search")); }

    QAction *m_icon;
};

/// Gives the toolkit's button that empties a field its text.
class ClearText : public QObject
{
public:
    explicit ClearText(QLineEdit &field) : QObject(&field)
    {
        const auto *clear = field.findChild<QAction *>(QStringLiteral("_q_qlineeditclearaction"));
        for (QToolButton *button : field.findChildren<QToolButton *>()) {
            if (clear != nullptr && button->defaultAction() == clear) {
                m_button = button;
            }
        }
        field.installEventFilter(this);
        applyTexts();
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::LanguageChange) {
            applyTexts();
        }
        return false;
    }

private:
    void applyTexts()
    {
        if (m_button != nullptr) { // a text of the action would show the button beside an empty field
            m_button->setAccessibleName(QCoreApplication::translate("SearchField", "Clear"));
        }
    }

    QToolButton *m_button = nullptr;
};

/// Null where the list shows none.
QModelIndex firstLine(const QAbstractItemView &list)
{
    const QAbstractItemModel *model = list.model();
    for (int row = 0; model != nullptr && row < model->rowCount(list.rootIndex()); ++row) {
        for (int column = 0; column < model->columnCount(list.rootIndex()); ++column) {
            const QModelIndex line = model->index(row, column, list.rootIndex());
            if (!list.visualRect(line).isEmpty()) {
                return line;
            }
        }
    }
    return {};
}

class WayDown : public QObject
{
public:
    WayDown(QLineEdit &search, QAbstractItemView &list) : QObject(&search), m_list(&list)
    {
        search.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress || !m_list ||
            static_cast<const QKeyEvent *>(event)->key() != Qt::Key_Down) {
            return QObject::eventFilter(watched, event);
        }
        const QModelIndex present = m_list->currentIndex();
        const QModelIndex wanted =
            present.isValid() && !m_list->visualRect(present).isEmpty() ? present : firstLine(*m_list);
        if (wanted.isValid()) { // otherwise there is nowhere to go
            m_list->setCurrentIndex(wanted);
            m_list->scrollTo(wanted);
            m_list->setFocus(Qt::OtherFocusReason);
        }
        return true;
    }

private:
    QPointer<QAbstractItemView> m_list;
};

class Arrival : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *list = qobject_cast<QAbstractItemView *>(watched);
        if (list != nullptr && event->type() == QEvent::FocusIn && list->selectionModel() != nullptr &&
            !list->selectionModel()->hasSelection()) {
            const auto reason = static_cast<const QFocusEvent *>(event)->reason();
            const QModelIndex present = list->currentIndex();
            const QModelIndex wanted = present.isValid() ? present : firstLine(*list);
            const bool isByKey = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                                 reason == Qt::ShortcutFocusReason;
            if (isByKey && wanted.isValid()) {
                list->selectionModel()->setCurrentIndex(wanted, QItemSelectionModel::ClearAndSelect |
                                                                    QItemSelectionModel::Rows);
            }
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

void goDownInto(QLineEdit &search, QAbstractItemView &list)
{
    new WayDown(search, list); // a child of it
}

void chooseOnArrival(QAbstractItemView &list)
{
    list.installEventFilter(new Arrival(&list));
}

void offerActions(QAbstractItemView &list)
{
    list.setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(&list, &QWidget::customContextMenuRequested, &list, [&list](const QPoint &place) {
        auto *menu = new QMenu(&list);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->addActions(list.actions());
        menu->popup(list.viewport()->mapToGlobal(place));
    });
}

void addClearButton(QLineEdit &field)
{
    field.setClearButtonEnabled(true);
    new ClearText(field);
}

QLineEdit *searchField(const QString &name, QWidget *parent)
{
    constexpr int narrowest = 120;
    auto *field = named<SearchField>(name, parent);
    addClearButton(*field);
    field->setMinimumWidth(narrowest);
    return field;
}

void setUpLines(QAbstractItemView &view)
{
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.setSelectionMode(QAbstractItemView::ExtendedSelection);
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view.setAlternatingRowColors(true);
    view.setTabKeyNavigation(false);
    view.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
}

void setUpRows(QTableView &table)
{
    setUpLines(table);
    table.setShowGrid(false);
    table.setWordWrap(false);
    table.verticalHeader()->hide();
    table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    constexpr int rowHeight = 28;
    table.verticalHeader()->setDefaultSectionSize(rowHeight);
}

QModelIndexList chosenLines(const QAbstractItemView &view)
{
    QModelIndexList lines;
    for (const QItemSelectionRange &range : view.selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            lines += range.model()->index(row, 0, range.parent());
        }
    }
    if (!std::ranges::is_sorted(lines, isAbove)) {
        std::ranges::sort(lines, isAbove);
    }
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    return lines;
}

void copyLines(const QModelIndexList &lines, const QList<int> &columns)
{
    QString text;
    for (const QModelIndex &line : lines) {
        QStringList cells;
        for (const int column : columns) {
            QString cell = line.siblingAtColumn(column).data().toString();
            for (const QChar separator : {u'\t', u'\n', u'\r'}) {
                cell.replace(separator, u' ');
            }
            cells += cell;
        }
        text += cells.join(u'\t') + u'\n';
    }
    if (!text.isEmpty()) {
        QApplication::clipboard()->setText(text);
    }
}

EmptyNotice::EmptyNotice(const QString &name, QAbstractItemView &view) : QLabel(view.viewport())
{
    setObjectName(name);
    setAlignment(Qt::AlignCenter);
    setForegroundRole(QPalette::PlaceholderText);
    view.viewport()->installEventFilter(this);
}

bool EmptyNotice::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        setGeometry(parentWidget()->rect());
    }
    return QLabel::eventFilter(watched, event);
}

} // namespace ktr
