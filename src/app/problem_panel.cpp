#include "app/problem_panel.h"

#include "look/kept_place.h"

#include <QListWidget>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QToolButton>
#include <QVBoxLayout>

namespace ktr {

namespace {

constexpr int shownRows = 4;

/// Wraps a row's text at what the list shows of it; by itself it would be wrapped below the scroll bar.
class WrappingDelegate : public QStyledItemDelegate
{
public:
    explicit WrappingDelegate(QListWidget *list) : QStyledItemDelegate(list), m_list(list) {}

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyleOptionViewItem shown = option;
        shown.rect.setWidth(m_list->viewport()->width());
        return QStyledItemDelegate::sizeHint(shown, index).boundedTo({shown.rect.width(), QWIDGETSIZE_MAX});
    }

private:
    QListWidget *m_list;
};

} // namespace

ProblemPanel::ProblemPanel(Where where, QWidget *parent)
    : QWidget(parent),
      m_where(std::move(where)),
      m_header(new QToolButton(this)),
      m_list(new QListWidget(this))
{
    m_header->setObjectName(QStringLiteral("cmd_problems"));
    m_header->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_header->setAutoRaise(true);
    m_header->setCheckable(true);
    m_list->setObjectName(QStringLiteral("lst_problems"));
    m_list->setItemDelegate(new WrappingDelegate(m_list));
    m_list->setWordWrap(true);
    m_list->setTextElideMode(Qt::ElideNone);
    m_list->setResizeMode(QListView::Adjust);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setFixedHeight(shownRows * (fontMetrics().height() + 8) + 4);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 0, 12, 4);
    layout->setSpacing(2);
    layout->addWidget(m_header, 0, Qt::AlignLeft);
    layout->addWidget(m_list);

    connect(m_header, &QToolButton::toggled, this, [this](bool on) {
        unfold(on);
        Q_EMIT unfolded(on);
    });
    const auto choose = [this](QListWidgetItem *item) {
        const int row = m_list->row(item);
        if (row >= 0 && row < m_problems.size()) {
            Q_EMIT chosen(m_problems[row]);
        }
    };
    connect(m_list, &QListWidget::itemClicked, this, choose);
    connect(m_list, &QListWidget::itemActivated, this, choose);
    unfold(false);
    showSummary();
}

void ProblemPanel::show(const QList<Problem> &problems)
{
    if (problems == m_problems) {
        return;
    }
    m_problems = problems;
    applyTexts();
}

void ProblemPanel::applyTexts()
{
    const KeptPlace place(*m_list, [](const QModelIndex &line) { return line.data().toString(); });
    m_list->clear();
    for (const Problem &problem : m_problems) {
        const QString where = m_where(problem);
        auto *item = new QListWidgetItem(style()->standardIcon(QStyle::SP_MessageBoxWarning),
                                         (where.isEmpty() ? problem.place : where) + u": " + problem.message);
        item->setToolTip(problem.place + u": " + problem.message);
        m_list->addItem(item);
    }
    place.giveBack();
    showSummary();
}

void ProblemPanel::showSummary()
{
    const bool none = m_problems.isEmpty();
    m_header->setText(none ? tr("No problems") : tr("Problems: %1").arg(m_problems.size()));
    m_header->setIcon(none ? QIcon() : style()->standardIcon(QStyle::SP_MessageBoxWarning));
    m_header->setToolTip(tr(
        "What the file or the module cannot take as it is, has no effect or is dangerous; a click on a row "
        "goes to its field"));
    m_list->setAccessibleName(tr("Problems"));
}

void ProblemPanel::followInTabOrder(QWidget *control)
{
    setTabOrder(control, m_header);
    setTabOrder(m_header, m_list);
}

bool ProblemPanel::isUnfolded() const
{
    return m_header->isChecked();
}

void ProblemPanel::focusList()
{
    if (m_list->count() > 0) {
        m_list->setCurrentRow(std::max(0, m_list->currentRow()));
        m_list->setFocus(Qt::ShortcutFocusReason);
    }
}

void ProblemPanel::unfold(bool unfolded)
{
    m_header->setChecked(unfolded);
    const bool hadFocus = m_list->hasFocus();
    m_list->setVisible(unfolded);
    if (hadFocus && !unfolded) {
        Q_EMIT focusLeft();
    }
}

} // namespace ktr
