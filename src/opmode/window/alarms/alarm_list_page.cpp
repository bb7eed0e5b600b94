#include "opmode/window/alarms/alarm_list_page.h"

#include "look/list_views.h"
#include "look/message_dialog.h"
#include "opmode/window/alarm_look.h"
#include "opmode/window/alarms/shelve_dialog.h"
#include "opmode/window/view_activity.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QTreeView>

#include <numeric>

namespace ktr {

namespace {

constexpr int leastSummaryWidth = 280;

} // namespace

AlarmListPage::AlarmListPage(OperationalMode &mode, const TextTable &texts, Acknowledging &acknowledging,
                             Timers &timers, const QLocale &locale, QWidget *parent)
    : OpmodePage(mode, texts, parent),
      m_acknowledging(acknowledging),
      m_model(new AlarmListModel(mode, timers, locale, this)),
      m_list(named<QTreeView>(QStringLiteral("Tree_alarms"), this)),
      m_activity(new ViewActivity(*m_list, [] { return false; })),
      m_filter(searchField(QStringLiteral("Text_alarm_filter"), this)),
      m_onlyUnacknowledged(named<QCheckBox>(QStringLiteral("Check_alarm_open"), this)),
      m_shelved(named<QCheckBox>(QStringLiteral("Check_alarm_shelved"), this)),
      m_summary(named<QLabel>(QStringLiteral("lbl_alarms"), this)),
      m_empty(new EmptyNotice(QStringLiteral("lbl_alarms_empty"), *m_list))
{
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(createChoice());
    layout->addWidget(m_list, 1);
    layout->addWidget(createButtons());
    setUpList();
    QWidget *before = m_filter;
    for (QWidget *next : std::initializer_list<QWidget *>{
             m_onlyUnacknowledged, m_shelved, m_list, m_buttons[EditComment], m_buttons[Shelve],
             m_buttons[Unshelve], m_buttons[AcknowledgeAll], m_buttons[Acknowledge]}) {
        setTabOrder(before, next);
        before = next;
    }
    goDownInto(*m_filter, *m_list);
    connect(m_filter, &QLineEdit::textChanged, this, &AlarmListPage::choose);
    connect(m_onlyUnacknowledged, &QCheckBox::toggled, this, &AlarmListPage::choose);
    connect(m_shelved, &QCheckBox::toggled, this, &AlarmListPage::choose);
    connect(&acknowledging, &Acknowledging::acknowledged, m_model, &AlarmListModel::updateInPlace);
    connect(m_model, &AlarmListModel::modelAboutToBeReset, this, &AlarmListPage::noteView);
    connect(m_model, &AlarmListModel::modelReset, this, &AlarmListPage::restoreView);
    connect(m_model, &AlarmListModel::updated, this, &AlarmListPage::refresh);
    m_model->setHold([this] { return m_activity->isAboutToChoose(); });
    AlarmListPage::applyTexts();
}

AlarmListPage::~AlarmListPage()
{
    m_buttons[Acknowledge]->removeEventFilter(this);
    m_list->removeEventFilter(this);
    m_list->viewport()->removeEventFilter(this);
}

QWidget *AlarmListPage::createChoice()
{
    auto *choice = new QWidget(this);
    auto *row = new QHBoxLayout(choice);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_filter, 1);
    row->addWidget(m_onlyUnacknowledged);
    row->addWidget(m_shelved);
    return choice;
}

QWidget *AlarmListPage::createButtons()
{
    using Slot = void (AlarmListPage::*)();
    const std::pair<const char *, Slot> does[] = {
        {"Cmd_alarm_accept", &AlarmListPage::acknowledgeChosen}, {"Cmd_alarm_acceptAll", nullptr},
        {"Cmd_alarm_comment", &AlarmListPage::editComment},      {"Cmd_alarm_shelve", &AlarmListPage::shelve},
        {"Cmd_alarm_unshelve", &AlarmListPage::unshelve},        {"Cmd_alarm_goto", &AlarmListPage::goTo},
    };
    auto *buttons = new QWidget(this);
    auto *row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, 0, 0, 0);
    for (std::size_t i = 0; i < actions; ++i) {
        m_actions[i] = new QAction(this);
        if (does[i].second != nullptr) {
            connect(m_actions[i], &QAction::triggered, this, does[i].second);
        }
        if (i < m_buttons.size()) {
            m_buttons[i] = named<QPushButton>(QLatin1String(does[i].first), buttons);
            m_buttons[i]->setAutoDefault(false);
            connect(m_buttons[i], &QPushButton::clicked, m_actions[i], &QAction::trigger);
        }
    }
    connect(m_actions[AcknowledgeAll], &QAction::triggered, this, [this] {
        m_acknowledging.acknowledgeAlarms(this, m_model->unacknowledged());
        m_list->setFocus();
    });
    m_buttons[Acknowledge]->installEventFilter(this);
    for (const Action action : {EditComment, Shelve, Unshelve}) {
        row->addWidget(m_buttons[action]);
    }
    m_summary->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_summary->setAlignment(Qt::AlignCenter);
    row->addWidget(m_summary, 1);
    row->addWidget(m_buttons[AcknowledgeAll]);
    row->addWidget(m_buttons[Acknowledge]);
    return buttons;
}

void AlarmListPage::setUpList()
{
    m_list->setModel(m_model);
    setUpLines(*m_list);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setExpandsOnDoubleClick(true);
    QHeaderView *header = m_list->header();
    header->setStretchLastSection(false);
    header->setSortIndicator(AlarmListModel::Priority, Qt::AscendingOrder);
    m_list->setSortingEnabled(true);
    m_list->addActions({m_actions[Acknowledge], m_actions[EditComment], m_actions[Shelve],
                        m_actions[Unshelve], m_actions[GoTo]});
    offerActions(*m_list);
    chooseOnArrival(*m_list);
    m_list->installEventFilter(this);
    m_list->viewport()->setMouseTracking(true);
    m_list->viewport()->installEventFilter(this);
    connect(m_list, &QTreeView::doubleClicked, this, [this](const QModelIndex &line) {
        if (!m_model->isStorm(line)) {
            goTo();
        }
    });
    connect(
        m_list, &QTreeView::collapsed, this, [this](const QModelIndex &storm) { // none of what is not seen
            const int last = m_model->rowCount(storm) - 1;
            m_list->selectionModel()->select({m_model->index(0, 0, storm), m_model->index(last, 0, storm)},
                                             QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
        });
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &AlarmListPage::refreshButtons);
}

void AlarmListPage::applyTexts()
{
    const auto withKey = [](const QString &caption, Qt::Key key) -> QString {
        return caption + u'\t' + QKeySequence(key).toString(QKeySequence::NativeText);
    };
    m_onlyUnacknowledged->setText(tr("Only not acknowledged"));
    m_shelved->setText(tr("Shelved ones, too"));
    m_shelved->setToolTip(tr("Lists what is shelved, and stations in maintenance"));
    m_filter->setPlaceholderText(tr("Filter"));
    m_filter->setAccessibleName(tr("Filter"));
    m_filter->setToolTip(tr("Searched for in text, station, recipients and comment"));
    m_list->setAccessibleName(tr("Alarms"));
    const std::array captions = {tr("Acknowledge"), tr("%1 (all shown)").arg(tr("Acknowledge")),
                                 tr("Comment..."),  tr("Shelve..."),
                                 tr("Take back"),   tr("Show in the tree")};
    const std::array tips = {tr("Acknowledges the selected alarms (Space in the list)"),
                             tr("Acknowledges all alarms that are listed"),
                             tr("Writes a comment to the selected alarms"),
                             tr("Puts the selected alarms aside for a while, with a reason"),
                             tr("Takes the selected alarms back that are shelved"),
                             QString()};
    for (std::size_t i = 0; i < actions; ++i) {
        m_actions[i]->setText(captions[i]);
        if (i < m_buttons.size()) {
            m_buttons[i]->setText(captions[i]);
            m_buttons[i]->setToolTip(tips[i]);
        }
    }
    m_actions[Acknowledge]->setText(withKey(captions[Acknowledge], Qt::Key_Space));
    m_actions[GoTo]->setText(withKey(captions[GoTo], Qt::Key_Return));
    m_model->setTexts(text(Text::NotAcknowledged));
    fitColumns();
    refresh();
}

// What is listed, and how

void AlarmListPage::choose()
{
    m_model->choose({m_filter->text().trimmed(), m_onlyUnacknowledged->isChecked(), m_shelved->isChecked()});
}

void AlarmListPage::showAll()
{
    m_filter->clear();
    m_list->scrollToTop();
}

void AlarmListPage::fitColumns()
{
    const QFontMetrics metrics(m_list->font());
    const auto widthOf = [&metrics](const QString &sample) { return metrics.horizontalAdvance(sample) + 20; };
    constexpr int sortMark = 16;
    constexpr int branches = 24;
    const int moment = widthOf(shownMoment(sampleMoment));
    using Model = AlarmListModel;
    int samples[] = {std::max(widthOf(AlarmCells::priority(2)), widthOf(AlarmCells::header(0)) + sortMark) +
                         branches,
                     widthOf(QString(18, u'n')),
                     widthOf(QString(13, u'n')),
                     widthOf(text(Text::NotAcknowledged) + QLatin1String(": 000")) + 24,
                     moment,
                     moment,
                     widthOf(QStringLiteral("×1.000")) + sortMark,
                     widthOf(QStringLiteral("+49170123456789")),
                     widthOf(QString(14, u'n'))};
    // What it is about is to be read without scrolling.
    const int room = m_list->viewport()->width();
    samples[Model::Text] = std::max(samples[Model::Text], room * 3 / 10);
    samples[Model::Station] = std::max(samples[Model::Station], room / 8);
    int sum = 0;
    for (int column = 0; column < Model::columns; ++column) {
        m_list->setColumnWidth(column, samples[column]);
        sum += samples[column];
    }
    // The remaining room goes to the columns with the longest texts.
    if (const int rest = room - sum; rest > 0) {
        m_list->setColumnWidth(Model::Text, samples[Model::Text] + rest / 2);
        m_list->setColumnWidth(Model::State, samples[Model::State] + rest / 4);
        m_list->setColumnWidth(Model::Comment, samples[Model::Comment] + rest - rest / 2 - rest / 4);
    }
}

void AlarmListPage::resizeEvent(QResizeEvent *event)
{
    OpmodePage::resizeEvent(event);
    refresh();
}

void AlarmListPage::refresh()
{
    const int listed = m_model->listedCount();
    const int open = m_model->unacknowledgedCount();
    m_summary->setText(
        listed == 0 || m_summary->width() < leastSummaryWidth
            ? QString()
            : tr("Listed: %1, %2: %3")
                  .arg(locale().toString(listed), text(Text::NotAcknowledged), locale().toString(open)));
    m_empty->setVisible(listed == 0);
    m_empty->setText(m_filter->text().isEmpty() && !m_onlyUnacknowledged->isChecked()
                         ? tr("No alarms")
                         : tr("Nothing fits the filter"));
    m_actions[AcknowledgeAll]->setEnabled(open > 0);
    m_buttons[AcknowledgeAll]->setEnabled(open > 0);
    refreshButtons();
}

void AlarmListPage::refreshButtons()
{
    bool canAcknowledge = false;
    bool canShelve = false;
    bool isShelved = false;
    for (const qint64 id : chosen()) {
        const AlarmRow &alarm = *m_model->alarm(id);
        canAcknowledge = canAcknowledge || (!isShelfAlone(alarm) && alarm.acknowledged == 0);
        canShelve = canShelve || !isShelfAlone(alarm);
        isShelved = isShelved || alarm.shelvedUntil != 0;
    }
    m_actions[Acknowledge]->setEnabled(canAcknowledge);
    m_actions[EditComment]->setEnabled(canShelve);
    m_actions[Shelve]->setEnabled(canShelve);
    m_actions[Unshelve]->setEnabled(isShelved);
    const AlarmRow *current = m_model->alarm(m_list->currentIndex());
    m_actions[GoTo]->setEnabled(current != nullptr && current->station != 0);
    for (const Action action : {Acknowledge, EditComment, Shelve, Unshelve}) {
        m_buttons[action]->setEnabled(m_actions[action]->isEnabled());
    }
    m_buttons[Unshelve]->setVisible(m_shelved->isChecked());
}

QList<qint64> AlarmListPage::chosen() const
{
    QList<qint64> alarms;
    QSet<qint64> known; // a storm's line and one of its own may both be chosen
    for (const QModelIndex &line : chosenLines(*m_list)) {
        for (const qint64 id : m_model->alarms(line)) {
            if (!known.contains(id)) {
                known.insert(id);
                alarms += id;
            }
        }
    }
    return alarms;
}

/// A reset of the model would lose what is chosen, open and at the top.
void AlarmListPage::noteView()
{
    m_noted = {};
    for (const QModelIndex &line : chosenLines(*m_list)) {
        if (const AlarmRow *alarm = m_model->alarm(line)) {
            m_noted.alarms.insert(alarm->id);
        } else {
            m_noted.storms.insert(m_model->storm(line));
        }
    }
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QModelIndex line = m_model->index(row, 0);
        if (m_model->isStorm(line) && m_list->isExpanded(line)) {
            m_noted.open.insert(m_model->storm(line));
        }
    }
    const auto note = [this](const QModelIndex &line, qint64 &id, QString &storm) {
        if (const AlarmRow *alarm = m_model->alarm(line)) {
            id = alarm->id;
        } else {
            storm = m_model->storm(line);
        }
    };
    note(m_list->currentIndex(), m_noted.current, m_noted.currentStorm);
    m_noted.row = m_list->currentIndex().parent().isValid() ? -1 : m_list->currentIndex().row();
    if (m_list->verticalScrollBar()->value() > 0) { // at the top, the most urgent are to be seen
        note(m_list->indexAt(QPoint(0, 0)), m_noted.top, m_noted.topStorm);
    }
}

void AlarmListPage::restoreView()
{
    const auto lineOf = [this](qint64 id, const QString &storm) {
        return storm.isEmpty() ? m_model->lineOf(id) : m_model->stormOf(storm);
    };
    for (const QString &storm : std::as_const(m_noted.open)) {
        m_list->expand(m_model->stormOf(storm));
    }
    QItemSelection selection;
    const auto select = [&](const QModelIndex &line) {
        if (line.isValid()) {
            if (line.parent().isValid()) {
                m_list->expand(line.parent()); // what is chosen is seen
            }
            selection.select(line, line.siblingAtColumn(AlarmListModel::columns - 1));
        }
    };
    for (const qint64 id : std::as_const(m_noted.alarms)) {
        select(m_model->lineOf(id));
    }
    for (const QString &storm : std::as_const(m_noted.storms)) {
        select(m_model->stormOf(storm));
    }
    QItemSelectionModel &model = *m_list->selectionModel();
    QModelIndex current = lineOf(m_noted.current, m_noted.currentStorm);
    if (!current.isValid() && m_noted.row >= 0) { // it is gone: the arrow keys go on from its place
        current = m_model->index(std::min(m_noted.row, m_model->rowCount() - 1), 0);
    }
    model.setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    model.select(selection, QItemSelectionModel::ClearAndSelect);
    if (const QModelIndex top = lineOf(m_noted.top, m_noted.topStorm); top.isValid()) {
        m_list->scrollTo(top, QAbstractItemView::PositionAtTop);
    }
}

bool AlarmListPage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_list->viewport()) {
        m_activity->noteViewportEvent(*event);
        if (event->type() == QEvent::Leave && QApplication::activePopupWidget() == nullptr) {
            m_model->update(); // what was kept back
        } else if (event->type() == QEvent::Resize) {
            fitColumns();
        }
    }
    if (watched == m_buttons[Acknowledge] && event->type() == QEvent::MouseButtonDblClick) {
        return true; // the next alarm is chosen by then
    }
    if (watched == m_list && event->type() == QEvent::KeyPress) {
        m_activity->noteKeys();
        if (takeKey(*static_cast<QKeyEvent *>(event))) {
            return true;
        }
    }
    return OpmodePage::eventFilter(watched, event);
}

bool AlarmListPage::takeKey(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::Copy)) {
        copy();
        return true;
    }
    if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) {
        return false;
    }
    const QModelIndex line = m_list->currentIndex();
    switch (event.key()) {
    case Qt::Key_Space:
        if (!event.isAutoRepeat()) {
            acknowledgeChosen();
        }
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_model->isStorm(line)) {
            m_list->setExpanded(line, !m_list->isExpanded(line));
        } else {
            goTo();
        }
        return true;
    default:
        return false;
    }
}

// What the user does with it

/// A storm's line stands for alarms that may not be in view, so the user is asked.
void AlarmListPage::acknowledgeChosen()
{
    const QModelIndexList lines = chosenLines(*m_list);
    const QList<qint64> alarms = chosen();
    const QPointer<AlarmListPage> self(this);
    if (std::ranges::any_of(lines, [this](const QModelIndex &line) { return m_model->isStorm(line); })) {
        m_acknowledging.acknowledgeAlarms(this, alarms);
    } else {
        m_acknowledging.acknowledgeChosen(this, alarms);
    }
    if (self) {
        goOnAfter(alarms);
    }
}

/// In the list, with the next alarm that waits.
void AlarmListPage::goOnAfter(const QList<qint64> &acknowledged)
{
    m_list->setFocus();
    const QModelIndexList lines = chosenLines(*m_list);
    const bool isDone = std::ranges::none_of(acknowledged, [this](qint64 alarm) { return isWaiting(alarm); });
    if (lines.isEmpty() || !isDone) {
        return;
    }
    if (const QModelIndex next = nextWaiting(lines.constLast()); next.isValid()) {
        m_list->selectionModel()->setCurrentIndex(next, QItemSelectionModel::ClearAndSelect |
                                                            QItemSelectionModel::Rows);
    }
}

bool AlarmListPage::isWaiting(qint64 alarm) const
{
    const AlarmRow *row = mode().alarms().alarm(alarm);
    return row != nullptr && mode().alarms().isWaiting(*row);
}

/// Below a line, or else from the top on; of those that are to be seen.
QModelIndex AlarmListPage::nextWaiting(QModelIndex line) const
{
    const auto waits = [this](const QModelIndex &at) {
        return std::ranges::any_of(m_model->alarms(at), [this](qint64 alarm) { return isWaiting(alarm); });
    };
    for (line = m_list->indexBelow(line); line.isValid(); line = m_list->indexBelow(line)) {
        if (waits(line)) {
            return line;
        }
    }
    for (line = m_model->index(0, 0); line.isValid(); line = m_list->indexBelow(line)) {
        if (waits(line)) {
            return line;
        }
    }
    return {};
}

void AlarmListPage::editComment()
{
    const QList<qint64> alarms = chosen();
    const AlarmRow *first = alarms.isEmpty() ? nullptr : m_model->alarm(alarms.constFirst());
    if (first == nullptr) {
        return;
    }
    const QString prompt = alarms.size() == 1 ? tr("Comment on: %1").arg(first->text)
                                              : tr("Comment on %L1 alarms").arg(alarms.size());
    const QPointer<AlarmListPage> self(this);
    const std::optional<QString> comment =
        Dialog::input(window(), texts(), prompt, alarms.size() == 1 ? first->comment : QString());
    if (self && comment) {
        mode().alarmActions().comment(alarms, comment->trimmed());
        m_model->updateInPlace();
    }
    if (self) {
        m_list->setFocus();
    }
}

void AlarmListPage::shelve()
{
    QList<qint64> alarms = chosen();
    alarms.removeIf([this](qint64 id) { return isShelfAlone(*m_model->alarm(id)); });
    QSet<qint64> stations;
    for (const qint64 id : std::as_const(alarms)) {
        stations.insert(m_model->alarm(id)->station);
    }
    stations.remove(0);
    const QPointer<AlarmListPage> self(this);
    ShelveDialog dialog(texts(), mode().alarmActions().now(), static_cast<int>(alarms.size()),
                        static_cast<int>(stations.size()), window());
    if (alarms.isEmpty() || dialog.exec() != QDialog::Accepted || !self) {
        return;
    }
    AlarmActions &shelves = mode().alarmActions();
    if (dialog.isMaintenance()) {
        for (const qint64 station : std::as_const(stations)) {
            shelves.shelveStation(station, dialog.until(), dialog.why());
        }
    } else {
        shelves.shelve(alarms, dialog.until(), dialog.why());
    }
    m_model->update();
    m_list->setFocus();
    if (chosenLines(*m_list).isEmpty() && m_list->currentIndex().isValid()) { // what is at their place now
        m_list->selectionModel()->select(m_list->currentIndex(),
                                         QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
}

void AlarmListPage::unshelve()
{
    for (const qint64 id : chosen()) {
        const AlarmRow *alarm = m_model->alarm(id);
        const Shelf *shelf = alarm == nullptr ? nullptr : mode().alarms().shelfOf(*alarm);
        if (shelf != nullptr) {
            mode().alarmActions().unshelve(shelf->station, QString(shelf->text));
        }
    }
    m_model->update();
    m_list->setFocus();
}

void AlarmListPage::goTo()
{
    const AlarmRow *alarm = m_model->alarm(m_list->currentIndex());
    if (alarm == nullptr) {
        return;
    }
    if (alarm->station == 0) {
        Q_EMIT statusMessage(tr("The alarm is about no station"));
        return;
    }
    const QString kennung = mode().stationOf(*alarm);
    if (kennung.isEmpty()) {
        Q_EMIT statusMessage(tr("The station of the alarm is no longer in the list"));
        return;
    }
    const QModelIndexList entries = mode().entriesOf(*alarm);
    Q_EMIT entryWanted(kennung, entries.isEmpty() ? QModelIndex() : entries.constFirst());
}

void AlarmListPage::copy()
{
    QList<int> columns(AlarmListModel::columns);
    std::iota(columns.begin(), columns.end(), 0);
    copyLines(chosenLines(*m_list), columns);
}

} // namespace ktr
