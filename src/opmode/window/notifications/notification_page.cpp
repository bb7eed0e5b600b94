#include "opmode/window/notifications/notification_page.h"

#include "look/list_views.h"
#include "look/message_dialog.h"
#include "opmode/window/alarm_look.h"
#include "opmode/window/view_activity.h"

#include <QAction>
#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QEvent>
#include <QGridLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTableView>

namespace ktr {

namespace {

constexpr int twoRowsBelow = 620;
constexpr int roomForSummary = 520;

} // namespace

NotificationPage::NotificationPage(OperationalMode &mode, const TextTable &texts,
                                   Acknowledging &acknowledging, Timers &timers, const QLocale &locale,
                                   QWidget *parent)
    : OpmodePage(mode, texts, parent),
      m_acknowledging(acknowledging),
      m_model(new NotificationModel(mode.tree(), timers, locale, this)),
      m_table(named<QTableView>(QStringLiteral("Tbl_meldung"), this)),
      m_activity(new ViewActivity(*m_table, [] { return false; })),
      m_oneStation(named<QRadioButton>(QStringLiteral("Opt_meldung_0"), this)),
      m_allStations(named<QRadioButton>(QStringLiteral("Opt_meldung_1"), this)),
      m_onlyUnacknowledged(named<QCheckBox>(QStringLiteral("Check_meldung_offen"), this)),
      m_filter(searchField(QStringLiteral("Text_filter"), this)),
      m_accept(named<QPushButton>(QStringLiteral("Cmd_meldung_accept"), this)),
      m_acceptAll(named<QPushButton>(QStringLiteral("Cmd_meldung_acceptAll"), this)),
      m_copy(named<QPushButton>(QStringLiteral("Cmd_meldung_copy"), this)),
      m_summary(named<QLabel>(QStringLiteral("lbl_meldung"), this)),
      m_empty(new EmptyNotice(QStringLiteral("lbl_meldung_leer"), *m_table))
{
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(createChoice());
    layout->addWidget(m_table, 1);
    layout->addWidget(createButtons());
    setUpTable();
    setUpMenu();
    QWidget *before = m_filter;
    for (QWidget *next : std::initializer_list<QWidget *>{m_oneStation, m_allStations, m_onlyUnacknowledged,
                                                          m_table, m_copy, m_acceptAll, m_accept}) {
        setTabOrder(before, next);
        before = next;
    }

    connect(m_oneStation, &QRadioButton::toggled, this, &NotificationPage::choose);
    connect(m_onlyUnacknowledged, &QCheckBox::toggled, this, &NotificationPage::choose);
    goDownInto(*m_filter, *m_table);
    connect(m_filter, &QLineEdit::textChanged, this, &NotificationPage::choose);
    connect(m_accept, &QPushButton::clicked, this, &NotificationPage::acknowledgeSelected);
    connect(m_acceptAll, &QPushButton::clicked, this,
            [this] { m_acknowledging.acknowledgeAll(this, m_model->unacknowledged()); });
    connect(&acknowledging, &Acknowledging::acknowledged, m_model, &NotificationModel::updateInPlace);
    connect(m_copy, &QPushButton::clicked, this, &NotificationPage::copySelected);
    for (const QPushButton *button : {m_accept, m_acceptAll, m_copy}) { // one goes on in the list
        connect(button, &QPushButton::clicked, m_table, qOverload<>(&QWidget::setFocus));
    }
    m_model->setHold([this] { return m_activity->isAboutToChoose(); });
    connect(m_model, &NotificationModel::aboutToUpdate, this, &NotificationPage::keepPlace);
    connect(m_model, &NotificationModel::updated, this, [this] {
        returnToPlace();
        refresh();
    });
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &NotificationPage::refreshButtons);
    m_oneStation->setChecked(true);
    NotificationPage::applyTexts();
}

QWidget *NotificationPage::createChoice()
{
    auto *choice = new QWidget(this);
    m_choice = new QGridLayout(choice);
    m_choice->setContentsMargins(0, 0, 0, 0);
    m_choice->setColumnStretch(0, 1);
    m_scope = new QWidget(choice);
    auto *row = new QHBoxLayout(m_scope);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_oneStation);
    row->addWidget(m_allStations);
    row->addStretch();
    m_choice->addWidget(m_filter, 0, 0);
    m_choice->addWidget(m_onlyUnacknowledged, 0, 2);
    return choice;
}

/// Where there is little room the two scopes go below, and copying is left to the keys and the menu.
void NotificationPage::arrange()
{
    const bool isNarrow = width() < twoRowsBelow;
    m_choice->addWidget(m_scope, isNarrow ? 1 : 0, isNarrow ? 0 : 1, 1, isNarrow ? 3 : 1);
    int buttons = layout()->contentsMargins().left() + layout()->contentsMargins().right();
    for (const QPushButton *button : {m_copy, m_acceptAll, m_accept}) {
        buttons += button->sizeHint().width() + m_choice->horizontalSpacing();
    }
    m_copy->setVisible(buttons <= width());
}

QWidget *NotificationPage::createButtons()
{
    auto *buttons = new QWidget(this);
    auto *row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, 0, 0, 0);
    m_summary->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    row->addWidget(m_summary, 1);
    for (QPushButton *button : {m_copy, m_acceptAll, m_accept}) {
        button->setAutoDefault(false);
        row->addWidget(button);
    }
    return buttons;
}

void NotificationPage::setUpTable()
{
    m_table->setModel(m_model);
    setUpRows(*m_table);
    m_table->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    QHeaderView *header = m_table->horizontalHeader();
    header->setSortIndicator(NotificationModel::Received, Qt::DescendingOrder);
    header->setSectionsMovable(false);
    m_table->setSortingEnabled(true);
    connect(header, &QHeaderView::sortIndicatorChanged, this, [header](int column, Qt::SortOrder order) {
        if (column != NotificationModel::Received) { // the order of arrival is the only one
            header->setSortIndicator(NotificationModel::Received, order);
        }
    });
    m_table->installEventFilter(this);
    m_table->viewport()->setMouseTracking(true);
    m_table->viewport()->installEventFilter(this);
}

void NotificationPage::setUpMenu()
{
    const std::array buttons = {m_copy, m_acceptAll, m_accept};
    for (std::size_t i = 0; i < m_menu.size(); ++i) {
        m_menu[i] = new QAction(this);
        connect(m_menu[i], &QAction::triggered, buttons[i], &QPushButton::click);
    }
    m_remove = new QAction(this);
    m_remove->setObjectName(QStringLiteral("mnu_meldung_remove"));
    connect(m_remove, &QAction::triggered, this, &NotificationPage::removeSelected);
    m_table->addActions({m_menu[2], m_menu[1], m_menu[0], m_remove});
    offerActions(*m_table);
    chooseOnArrival(*m_table);
}

void NotificationPage::applyTexts()
{
    m_oneStation->setText(tr("This station"));
    m_allStations->setText(tr("All stations"));
    m_onlyUnacknowledged->setText(tr("Only not acknowledged"));
    m_filter->setPlaceholderText(tr("Filter"));
    m_filter->setAccessibleName(tr("Filter"));
    m_filter->setToolTip(tr("Searched for in text, recipient and station"));
    m_accept->setText(text(Text::AcceptNotification));
    m_accept->setToolTip(tr("Acknowledges the selected notifications (Space or Enter in the list)"));
    m_acceptAll->setText(tr("%1 (all shown)").arg(text(Text::AcceptNotification)));
    m_acceptAll->setToolTip(tr("Acknowledges all alarms that are listed"));
    m_remove->setText(tr("Remove entries..."));
    m_copy->setText(tr("Copy"));
    m_copy->setToolTip(tr("Copies the selected rows, columns separated by tabs (Ctrl+C)"));
    m_table->setAccessibleName(text(Text::Notifications));
    m_model->setTexts(text(Text::NotAcknowledged));
    m_menu[0]->setText(m_copy->text() + u'\t' +
                       QKeySequence(QKeySequence::Copy).toString(QKeySequence::NativeText));
    m_menu[1]->setText(m_acceptAll->text());
    m_menu[2]->setText(m_accept->text() + u'\t' +
                       QKeySequence(Qt::Key_Space).toString(QKeySequence::NativeText));
    // In one row, the choice would ask for more.
    const QMargins margins = layout()->contentsMargins();
    const int spacing = m_choice->horizontalSpacing();
    setMinimumWidth(margins.left() + margins.right() +
                    std::max({m_filter->minimumWidth() + spacing + m_onlyUnacknowledged->sizeHint().width(),
                              m_scope->sizeHint().width(),
                              m_acceptAll->sizeHint().width() + spacing + m_accept->sizeHint().width()}));
    arrange();
    fitColumns();
    refresh();
}

// What is listed

void NotificationPage::stationChosen()
{
    m_oneStation->setEnabled(!kennung().isEmpty());
    choose();
}

void NotificationPage::choose()
{
    m_model->choose({kennung(), m_allStations->isChecked(), m_onlyUnacknowledged->isChecked(),
                     m_filter->text().trimmed()});
    m_table->setColumnHidden(NotificationModel::Station, !m_allStations->isChecked());
    fitColumns();
}

void NotificationPage::showEntry(const QModelIndex &entry)
{
    m_model->update();
    const bool wasListed = m_model->rowOf(entry) >= 0;
    if (!wasListed && entry.data(StationTree::ColourRole).toInt() != StationTree::alarmColour) {
        m_onlyUnacknowledged->setChecked(false);
    }
    if (m_model->rowOf(entry) < 0) {
        m_filter->clear();
    }
    if (const int row = m_model->rowOf(entry); row >= 0) {
        m_table->selectRow(row);
        m_table->scrollTo(m_model->index(row, 0),
                          wasListed ? QAbstractItemView::EnsureVisible : QAbstractItemView::PositionAtCenter);
    }
}

// How it is shown

void NotificationPage::resizeEvent(QResizeEvent *event)
{
    OpmodePage::resizeEvent(event);
    arrange();
    refresh();
}

/// The text takes the room that is left; it does not get narrower than can be read.
void NotificationPage::fitColumns()
{
    const int viewport = m_table->viewport()->width();
    const QFontMetrics metrics(m_table->font());
    const auto widthOf = [&metrics](const QString &sample) { return metrics.horizontalAdvance(sample) + 20; };
    constexpr int iconWidth = 24;
    const int state = std::max(widthOf(NotificationCells::acknowledgedAt(sampleMoment)),
                               widthOf(text(Text::NotAcknowledged)) + iconWidth);
    const auto header = [this](int column) { return m_model->headerData(column, Qt::Horizontal).toString(); };
    using Model = NotificationModel;
    constexpr int sortMark = 16;
    const int number = widthOf(QStringLiteral("+49170123456789"));
    const std::pair<int, int> widths[] = {
        {Model::Received,
         std::max(widthOf(shownMoment(sampleMoment)), widthOf(header(Model::Received)) + sortMark)},
        {Model::Station, std::clamp(viewport / 6, widthOf(QString(11, u'n')), widthOf(QString(28, u'n')))},
        {Model::State, state},
        {Model::Count, std::max(widthOf(QStringLiteral("×1.000")), widthOf(header(Model::Count)))},
        {Model::Number, number}};
    int rest = viewport;
    for (const auto &[column, width] : widths) {
        m_table->setColumnWidth(column, width);
        rest -= m_table->isColumnHidden(column) && column == Model::Station ? 0 : width;
    }
    // The text gets short first, then the recipient goes; the tool tip of the text has both.
    const int narrowestText = widthOf(QString(12, u'n'));
    m_table->setColumnHidden(Model::Number, rest < narrowestText);
    rest += rest < narrowestText ? number : 0;
    m_table->setColumnWidth(Model::Message, std::max(rest, narrowestText));
}

/// With the mouse, or in the menu, which the mouse leaves the table for.
bool NotificationPage::isPointedAt() const
{
    return m_table->viewport()->underMouse() || QApplication::activePopupWidget() != nullptr;
}

void NotificationPage::keepPlace()
{
    if (!isPointedAt()) {
        returnToTop(); // where it was left while a menu was open
    }
    // At the top, the newest are to be seen; but nothing moves away from under the mouse.
    const bool isAtTop = m_table->verticalScrollBar()->value() == 0;
    m_place = isAtTop && !isPointedAt() ? QModelIndex() : m_table->indexAt(QPoint(0, 0));
    m_belongsAtTop = isPointedAt() && (isAtTop || m_belongsAtTop);
}

/// What was kept back is shown at once.
void NotificationPage::mouseLeft()
{
    if (!isPointedAt()) {
        returnToTop();
        m_model->update();
    }
}

/// Where new rows came above the first one while the mouse was over the list.
void NotificationPage::returnToTop()
{
    if (std::exchange(m_belongsAtTop, false)) {
        m_table->scrollToTop();
    }
}

void NotificationPage::returnToPlace()
{
    if (m_place.isValid()) {
        m_table->scrollTo(m_place, QAbstractItemView::PositionAtTop);
        m_place = QModelIndex();
    }
}

void NotificationPage::refresh()
{
    const int count = m_model->rowCount();
    const int open = m_model->unacknowledgedCount();
    const bool hasRoom = width() >= roomForSummary;
    m_summary->setText(
        count == 0 || !hasRoom
            ? QString()
            : tr("Listed: %1, %2: %3")
                  .arg(locale().toString(count), text(Text::NotAcknowledged), locale().toString(open)));
    const bool isFiltered = !m_model->choice().filter.isEmpty() || m_model->choice().onlyUnacknowledged;
    m_empty->setVisible(count == 0);
    m_empty->setText(kennung().isEmpty() && !m_allStations->isChecked()
                         ? tr("Choose a station to see its notifications.")
                     : isFiltered ? tr("Nothing fits the filter")
                                  : tr("No notifications"));
    m_acceptAll->setEnabled(open > 0);
    m_menu[1]->setEnabled(open > 0);
    refreshButtons();
}

void NotificationPage::refreshButtons()
{
    const QModelIndexList lines = chosenLines(*m_table);
    m_copy->setEnabled(!lines.isEmpty());
    m_accept->setEnabled(std::ranges::any_of(
        lines, [this](const QModelIndex &line) { return m_model->isUnacknowledged(line.row()); }));
    m_menu[0]->setEnabled(m_copy->isEnabled());
    m_menu[2]->setEnabled(m_accept->isEnabled());
    m_remove->setEnabled(m_copy->isEnabled() && !mode().isJoined());
}

bool NotificationPage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_table->viewport()) {
        m_activity->noteViewportEvent(*event);
    }
    if (watched == m_table->viewport() && event->type() == QEvent::Leave) {
        mouseLeft();
    } else if (watched == m_table->viewport() && event->type() == QEvent::Wheel) {
        m_belongsAtTop = false; // the user looks elsewhere
    }
    if (watched == m_table->viewport() && event->type() == QEvent::ContextMenu) {
        const auto &menu = *static_cast<QContextMenuEvent *>(event);
        if (menu.reason() == QContextMenuEvent::Mouse && !m_table->indexAt(menu.pos()).isValid()) {
            m_table->clearSelection(); // what is offered there must not be about other rows
        }
    }
    if (watched == m_table->viewport() && event->type() == QEvent::Resize) {
        fitColumns();
    }
    if (watched == m_table && event->type() == QEvent::KeyPress &&
        takeKey(*static_cast<QKeyEvent *>(event))) {
        return true;
    }
    return OpmodePage::eventFilter(watched, event);
}

// What the user does with it

bool NotificationPage::takeKey(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::Copy)) {
        copySelected();
        return true;
    }
    const bool accepts =
        event.key() == Qt::Key_Space || event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (accepts && (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier) {
        acknowledgeSelected();
        return true;
    }
    return false;
}

QModelIndexList NotificationPage::selectedEntries() const
{
    QModelIndexList entries;
    for (const QModelIndex &line : chosenLines(*m_table)) {
        entries.append(m_model->entry(line.row()));
    }
    return entries;
}

void NotificationPage::acknowledgeSelected()
{
    m_acknowledging.acknowledge(this, selectedEntries());
}

void NotificationPage::copySelected()
{
    QList<int> columns;
    for (int column = 0; column < NotificationModel::columns; ++column) {
        if (column != NotificationModel::Station || m_model->choice().allStations) {
            columns += column;
        }
    }
    copyLines(chosenLines(*m_table), columns);
}

void NotificationPage::removeSelected()
{
    const QModelIndexList entries = selectedEntries();
    removeEntries(entries, tr("Remove %L1 entries from the tree and its file? The record keeps them; what is "
                              "not acknowledged stays.")
                               .arg(entries.size()));
}

} // namespace ktr
