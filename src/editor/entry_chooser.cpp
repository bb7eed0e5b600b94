#include "editor/entry_chooser.h"

#include "editor/entry_model.h"
#include "look/list_views.h"
#include "platform/text_rules.h"

#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>
#include <QWheelEvent>

#include <algorithm>

namespace ktr {

namespace {

/// One entry a notch of the wheel, where a scroll bar otherwise passes several lines.
class EntryScrollBar : public QScrollBar
{
public:
    using QScrollBar::QScrollBar;

protected:
    void wheelEvent(QWheelEvent *event) override
    {
        constexpr int notch = 120;
        m_turned += event->angleDelta().y();
        setValue(value() - m_turned / notch);
        m_turned %= notch;
        event->accept();
    }

private:
    int m_turned = 0;
};

} // namespace

EntryChooser::EntryChooser(const Names &names, EntryModel *model, const Widths &widths, QWidget *parent)
    : QWidget(parent), m_overview(new QTableView(this)), m_scrollBar(new EntryScrollBar(Qt::Vertical, this))
{
    m_overview->setObjectName(names.overview);
    m_overview->setModel(model);
    setUpOverview(widths);

    m_scrollBar->setObjectName(names.scrollBar);
    m_scrollBar->setRange(0, model->rowCount() - 1);
    m_scrollBar->setPageStep(5);
    m_scrollBar->setFocusPolicy(Qt::StrongFocus);

    connect(m_scrollBar, &QScrollBar::valueChanged, this, [this](int entry) {
        showEntry(entry);
        Q_EMIT entryChanged(entry);
    });
    connect(m_overview->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) {
                if (current.isValid()) {
                    setEntry(current.row());
                }
            });
    showEntry(0);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    layout->addWidget(m_overview);
    layout->addWidget(m_scrollBar);
}

void EntryChooser::setUpOverview(const Widths &widths)
{
    m_overview->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_overview->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_overview->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_overview->setTabKeyNavigation(false);
    m_overview->setShowGrid(false);
    m_overview->setWordWrap(false);
    m_overview->setCornerButtonEnabled(false);
    m_overview->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The scroll bar beside it moves through the entries, and the overview with them.
    m_overview->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_overview->setIconSize({16, 16});

    const QFontMetrics metrics = m_overview->fontMetrics();
    QHeaderView *rows = m_overview->verticalHeader();
    rows->hide();
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->setMinimumSectionSize(metrics.height() + 6);
    rows->setDefaultSectionSize(metrics.height() + 6);

    QHeaderView *columns = m_overview->horizontalHeader();
    columns->setHighlightSections(false);
    columns->setSectionsClickable(false);
    constexpr int margins = 20;
    for (int column = 0; column < widths.size(); ++column) {
        if (widths[column].isEmpty()) {
            columns->setSectionResizeMode(column, QHeaderView::Stretch);
        } else {
            m_overview->setColumnWidth(column, metrics.horizontalAdvance(widths[column]) + margins);
        }
    }
}

int EntryChooser::entry() const
{
    return m_scrollBar->value();
}

void EntryChooser::setEntry(int entry)
{
    Q_ASSERT(entry >= m_scrollBar->minimum() && entry <= m_scrollBar->maximum());
    m_scrollBar->setValue(entry);
}

QList<int> EntryChooser::chosen() const
{
    QList<int> entries;
    const QModelIndexList rows = m_overview->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows) {
        entries += row.row();
    }
    std::ranges::sort(entries);
    return entries.isEmpty() ? QList<int>{entry()} : entries;
}

void EntryChooser::choose(int first, int count)
{
    setEntry(first);
    const QAbstractItemModel *model = m_overview->model();
    m_overview->selectionModel()->select(
        {model->index(first, 0), model->index(first + count - 1, model->columnCount() - 1)},
        QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void EntryChooser::addEntryActions(const QList<QAction *> &actions)
{
    m_overview->addActions(actions);
    offerActions(*m_overview);
    m_scrollBar->addActions(actions);
}

QString EntryChooser::overviewName() const
{
    return m_overview->objectName();
}

void EntryChooser::setEntryName(const QString &name)
{
    m_overview->setAccessibleName(name);
    m_scrollBar->setAccessibleName(name);
}

void EntryChooser::showEntry(int entry)
{
    if (m_overview->currentIndex().row() != entry) {
        const int column = std::max(m_overview->currentIndex().column(), 0);
        // The view itself would go by the keys that are held at the time.
        m_overview->selectionModel()->setCurrentIndex(m_overview->model()->index(entry, column),
                                                      QItemSelectionModel::ClearAndSelect |
                                                          QItemSelectionModel::Rows);
    }
}

QString numberedCaption(const QString &present, int length, int number)
{
    QString front = present.left(length);
    while (!front.isEmpty() && isDecimalDigit(front.back())) {
        front.chop(1); // a text shorter than it should be: the number would grow
    }
    return front + QString::number(number);
}

} // namespace ktr
