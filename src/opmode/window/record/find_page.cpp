#include "opmode/window/record/find_page.h"

#include "look/field_width.h"
#include "look/list_views.h"
#include "look/problem_label.h"
#include "opmode/window/record/record_export.h"

#include <QAction>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDir>
#include <QGridLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QTimer>

#include <algorithm>
#include <numeric>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

constexpr int pauseMs = 300;
constexpr std::size_t linesInOrder = 10'000; ///< the newest ones, when they are not in the order of time

struct KindChoice
{
    const char *caption;
    QList<EventKind> kinds;
    bool ofAlarms = false;
};

const QList<KindChoice> &kindChoices()
{
    using enum EventKind;
    static const QList<KindChoice> choices{
        {QT_TRANSLATE_NOOP("ktr::FindPage", "All kinds"), {}},
        {QT_TRANSLATE_NOOP("ktr::FindPage", "Notifications"), {Notification, OtherMessage}},
        {QT_TRANSLATE_NOOP("ktr::FindPage", "About alarms"), {}, true},
        {QT_TRANSLATE_NOOP("ktr::FindPage", "Input values"), {Values}},
        {QT_TRANSLATE_NOOP("ktr::FindPage", "History"), {History}},
        {QT_TRANSLATE_NOOP("ktr::FindPage", "Connections"), {Alive, Silent, Quality, Puk, Flood}},
        {QT_TRANSLATE_NOOP("ktr::FindPage", "Operators' actions"), operatorsKinds()},
        {QT_TRANSLATE_NOOP("ktr::FindPage", "Program"), {Started, Stopped, ListFollowed, Trouble}},
        {QT_TRANSLATE_NOOP("ktr::FindPage", "Silent, alive, changed"),
         {Alive, Silent, Attributes, StationRemoved}},
    };
    return choices;
}

QString chosenOperator(const QComboBox &box)
{
    return box.currentIndex() <= 0 ? QString() : box.currentText();
}

} // namespace

FindPage::FindPage(RecordQueries &queries, QString recordPath, Services services, QWidget *parent)
    : QWidget(parent),
      m_services(std::move(services)),
      m_recordPath(std::move(recordPath)),
      m_model(new RecordModel(queries, this)),
      m_order(new QSortFilterProxyModel(this)),
      m_pause(new QTimer(this))
{
    m_pause->setSingleShot(true);
    m_pause->setInterval(pauseMs);
    connect(m_pause, &QTimer::timeout, this, &FindPage::searchNow);
    layOut();
    setUpTable();
    connect(m_model, &RecordModel::stateChanged, this, &FindPage::showState);
    connect(m_model, &RecordModel::namesChanged, this, &FindPage::showNames);
    connect(m_events, &QRadioButton::toggled, this, &FindPage::showView);
    connect(m_period, &QComboBox::activated, this, &FindPage::showPeriod);
    for (QComboBox *box : {m_kind, m_state, m_operator}) {
        connect(box, &QComboBox::activated, this, &FindPage::searchNow);
    }
    for (QDateTimeEdit *field : {m_from, m_to}) {
        connect(field, &QDateTimeEdit::dateTimeChanged, m_pause, qOverload<>(&QTimer::start));
    }
    for (QLineEdit *field : {m_station, m_text}) {
        connect(field, &QLineEdit::textChanged, m_pause, qOverload<>(&QTimer::start));
        connect(field, &QLineEdit::returnPressed, this, &FindPage::searchNow);
    }
    connect(m_exportButton, &QPushButton::clicked, this, &FindPage::exportFound);
    applyTexts();
    enableActions();
    showPeriod();
    showView();
}

FindPage::~FindPage() = default;

QDateTimeEdit *FindPage::timeField(const char *name)
{
    auto *field = named<QDateTimeEdit>(QLatin1String(name), this);
    setUpMinuteField(*field);
    return field;
}

void FindPage::layOut()
{
    m_events = named<QRadioButton>("Opt_record_events"_L1, this);
    m_alarms = named<QRadioButton>("Opt_record_alarms"_L1, this);
    m_events->setChecked(true);
    m_periodLabel = new QLabel(this);
    m_period = named<QComboBox>("Combo_record_period"_L1, this);
    m_from = timeField("Date_record_from");
    m_to = timeField("Date_record_to");
    m_text = searchField("Text_record_text"_L1, this);
    m_station = named<QLineEdit>("Text_record_station"_L1, this);
    addClearButton(*m_station);
    constexpr int narrowestText = 140;
    for (QLineEdit *field : {m_station, m_text}) {
        field->setMinimumWidth(narrowestText);
    }
    m_kind = named<QComboBox>("Combo_record_kind"_L1, this);
    m_state = named<QComboBox>("Combo_record_state"_L1, this);
    m_operator = named<QComboBox>("Combo_record_operator"_L1, this);
    m_operator->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_operator->setMinimumContentsLength(14);
    m_table = named<QTableView>("Table_record"_L1, this);
    m_note = named<QLabel>("Label_record_note"_L1, this);
    m_note->setWordWrap(true);
    m_problem = named<ProblemLabel>("Label_record_problem"_L1, this);
    m_count = named<QLabel>("Label_record_count"_L1, this);
    m_exportButton = named<QPushButton>("Cmd_record_export"_L1, this);
    m_showButton = named<QPushButton>("Cmd_record_goto"_L1, this);
    for (QPushButton *button : {m_exportButton, m_showButton}) {
        button->setAutoDefault(false);
    }

    auto *when = new QHBoxLayout;
    for (QWidget *widget :
         std::initializer_list<QWidget *>{m_events, m_alarms, m_periodLabel, m_period, m_from, m_to}) {
        when->addWidget(widget);
    }
    when->insertSpacing(2, 16);
    when->addStretch();
    auto *what = new QHBoxLayout;
    what->addWidget(m_text, 2);
    what->addWidget(m_station, 2);
    for (QWidget *widget : {m_kind, m_state, m_operator}) {
        what->addWidget(widget);
    }
    auto *below = new QHBoxLayout;
    below->addWidget(m_count, 1);
    below->addWidget(m_showButton);
    below->addWidget(m_exportButton);
    auto *all = new QVBoxLayout(this);
    all->addLayout(when);
    all->addLayout(what);
    all->addWidget(m_table, 1);
    all->addWidget(m_note);
    all->addWidget(m_problem);
    all->addLayout(below);
}

void FindPage::setUpTable()
{
    m_order->setSourceModel(m_model);
    m_order->setSortRole(RecordModel::OrderRole);
    m_order->setSortCaseSensitivity(Qt::CaseInsensitive);
    m_table->setModel(m_order);
    setUpRows(*m_table);
    goDownInto(*m_text, *m_table);
    QHeaderView *header = m_table->horizontalHeader();
    header->setSortIndicatorClearable(true); // a third click restores the order of time
    header->setSortIndicator(-1, Qt::AscendingOrder);
    header->setStretchLastSection(true);
    m_table->setSortingEnabled(true);
    connect(header, &QHeaderView::sortIndicatorChanged, this,
            [this](int column) { m_model->setLeast(column < 0 ? RecordModel::pageSize : linesInOrder); });
    m_table->installEventFilter(this);
    m_show = new QAction(this);
    m_copy = new QAction(this);
    connect(m_show, &QAction::triggered, this, &FindPage::showInTree);
    connect(m_copy, &QAction::triggered, this, &FindPage::copySelected);
    m_table->addActions({m_show, m_copy});
    offerActions(*m_table);
    chooseOnArrival(*m_table);
    connect(m_showButton, &QPushButton::clicked, m_show, &QAction::trigger);
    connect(m_table, &QTableView::doubleClicked, this, &FindPage::showInTree);
    const QItemSelectionModel *selection = m_table->selectionModel();
    connect(selection, &QItemSelectionModel::selectionChanged, this, &FindPage::enableActions);
    connect(selection, &QItemSelectionModel::currentChanged, this, &FindPage::enableActions);
    connect(m_order, &QSortFilterProxyModel::modelReset, this, &FindPage::enableActions);
}

void FindPage::applyTexts()
{
    const auto fill = [](QComboBox *box, const QStringList &captions, const QString &name) {
        const int chosen = std::max(0, box->currentIndex());
        box->clear();
        box->addItems(captions);
        box->setCurrentIndex(chosen);
        box->setAccessibleName(name);
        box->setToolTip(name);
    };
    m_events->setText(tr("Events"));
    m_events->setToolTip(tr("What stations said and operators did, each by itself"));
    m_alarms->setText(tr("Alarms"));
    m_alarms->setToolTip(tr("Each occurrence of an alarm, with what became of it"));
    m_periodLabel->setText(tr("Time"));
    fill(m_period,
         {tr("Everything"), tr("Today"), tr("Yesterday"), tr("The last 7 days"), tr("From ... to ...")},
         tr("Time"));
    m_from->setAccessibleName(tr("From"));
    m_to->setAccessibleName(tr("To"));
    for (QDateTimeEdit *field : {m_from, m_to}) {
        field->setToolTip(tr("Day, month, year, hour and minute; this minute is included"));
    }
    m_text->setPlaceholderText(tr("Text"));
    m_text->setAccessibleName(tr("Text"));
    m_text->setToolTip(
        tr("Contained in what was said, done and written; in input values, history and connections "
           "when these are the kind, or with stations and a time"));
    m_station->setPlaceholderText(tr("Stations"));
    m_station->setAccessibleName(tr("Stations"));
    m_station->setToolTip(
        tr("Contained in the name of the station, also of one that has left the list. Several "
           "are separated by semicolons; a whole name stands in quotation marks."));
    QStringList kinds;
    for (const KindChoice &choice : kindChoices()) {
        kinds += tr(choice.caption);
    }
    fill(m_kind, kinds, tr("Kind"));
    fill(m_state, {tr("In any state"), tr("Not acknowledged"), tr("Not over"), tr("Still open")},
         tr("State"));
    m_exportButton->setText(tr("Export..."));
    m_exportButton->setToolTip(tr("Writes all that is found as a CSV table, not only what is shown so far"));
    m_showButton->setText(tr("Show in the tree"));
    m_showButton->setToolTip(tr("The station of the chosen line (Enter or double click in the list)"));
    m_show->setText(m_showButton->text() + u'\t' +
                    QKeySequence(Qt::Key_Return).toString(QKeySequence::NativeText));
    m_copy->setText(tr("Copy") + u'\t' + QKeySequence(QKeySequence::Copy).toString(QKeySequence::NativeText));
    m_table->setAccessibleName(tr("What was found"));
    showNames();
    fitColumns();
    showState();
}

void FindPage::showTimes(bool alarms, qint64 from, qint64 to, const QString &stations)
{
    {
        const QSignalBlocker all[] = {QSignalBlocker(m_events), QSignalBlocker(m_from), QSignalBlocker(m_to),
                                      QSignalBlocker(m_station), QSignalBlocker(m_text)};
        (alarms ? m_alarms : m_events)->setChecked(true);
        m_kind->setCurrentIndex(static_cast<int>(kindChoices().size()) - 1);
        m_state->setCurrentIndex(0);
        m_operator->setCurrentIndex(0);
        m_text->clear();
        m_station->setText(stations);
        m_period->setCurrentIndex(FromTo);
        m_from->setDateTime(QDateTime::fromMSecsSinceEpoch(from));
        m_to->setDateTime(QDateTime::fromMSecsSinceEpoch(to - 1)); // whose minute is included
        m_from->show();
        m_to->show();
    }
    showView();
    m_table->setFocus();
}

void FindPage::beginTyping()
{
    m_text->setFocus();
    m_text->selectAll();
}

// What is searched for

void FindPage::period(qint64 &from, qint64 &to) const
{
    const QDate today = m_services.now().date();
    const auto begins = [](const QDate &day) { return day.startOfDay().toMSecsSinceEpoch(); };
    constexpr int furtherDays = 6; // today is the seventh
    constexpr qint64 aMinute = 60'000;
    switch (m_period->currentIndex()) {
    case Today:
        from = begins(today);
        break;
    case Yesterday:
        from = begins(today.addDays(-1));
        to = begins(today);
        break;
    case LastDays:
        from = begins(today.addDays(-furtherDays));
        break;
    case FromTo:
        from = m_from->dateTime().toMSecsSinceEpoch();
        to = m_to->dateTime().toMSecsSinceEpoch() + aMinute;
        break;
    default:
        break;
    }
}

std::optional<QList<qint64>> FindPage::stationsMeant() const
{
    const QStringList parts = m_station->text().split(u';', Qt::SkipEmptyParts);
    QStringList wanted;
    for (const QString &part : parts) {
        if (!part.trimmed().isEmpty()) {
            wanted += part.trimmed();
        }
    }
    if (wanted.isEmpty()) {
        return std::nullopt;
    }
    QList<qint64> numbers;
    const RecordStations &stations = m_model->stations();
    for (auto station = stations.begin(); station != stations.end(); ++station) {
        if (std::ranges::any_of(wanted, [&](const QString &part) {
                const bool isWhole = part.size() > 2 && part.startsWith(u'"') && part.endsWith(u'"');
                return isWhole ? station->name.compare(part.sliced(1).chopped(1), Qt::CaseInsensitive) == 0
                               : station->name.contains(part, Qt::CaseInsensitive);
            })) {
            numbers += station.key();
        }
    }
    std::ranges::sort(numbers);
    return numbers;
}

RecordSearch FindPage::wanted() const
{
    RecordSearch search;
    search.view = m_events->isChecked() ? RecordView::Events : RecordView::Alarms;
    const std::optional<QList<qint64>> stations = stationsMeant();
    search.findsNothing = stations && stations->isEmpty();
    const QString text = m_text->text().trimmed();
    if (search.view == RecordView::Events) {
        EventFilter &events = search.events;
        period(events.from, events.to);
        events.stations = stations.value_or(QList<qint64>());
        events.text = text;
        const KindChoice &kind = kindChoices().at(std::max(0, m_kind->currentIndex()));
        events.kinds = kind.kinds;
        events.ofAlarms = kind.ofAlarms;
        events.operatorName = chosenOperator(*m_operator);
    } else {
        using State = AlarmFilter::State;
        constexpr std::array states = {State::Any, State::Unacknowledged, State::NotOver, State::Open};
        AlarmFilter &alarms = search.alarms;
        period(alarms.from, alarms.to);
        alarms.stations = stations.value_or(QList<qint64>());
        alarms.text = text;
        alarms.state = states.at(static_cast<std::size_t>(std::max(0, m_state->currentIndex())));
        alarms.acknowledgedBy = chosenOperator(*m_operator);
    }
    return search;
}

void FindPage::searchNow()
{
    m_pause->stop();
    const bool isBackwards = m_period->currentIndex() == FromTo && m_from->dateTime() > m_to->dateTime();
    m_problemText = isBackwards ? tr("The first time is later than the second") : QString();
    const RecordView before = m_model->searched().view;
    m_model->search(wanted());
    if (before != m_model->searched().view) {
        m_table->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
        fitColumns();
    }
    m_table->scrollToTop();
}

void FindPage::follow()
{
    if (!m_pause->isActive() && wanted() != m_model->searched()) {
        searchNow(); // a new day, or a new station with a name that was typed
    } else {
        m_model->followRecord();
    }
}

// How it is shown

void FindPage::showView()
{
    m_kind->setVisible(m_events->isChecked());
    m_state->setVisible(!m_events->isChecked());
    searchNow();
}

void FindPage::showPeriod()
{
    const bool isChosen = m_period->currentIndex() == FromTo;
    if (isChosen && !m_from->isVisibleTo(this)) {
        const QSignalBlocker quiet(m_from);
        const QSignalBlocker quietToo(m_to);
        m_from->setDateTime(m_services.now().date().startOfDay());
        m_to->setDateTime(m_services.now());
    }
    m_from->setVisible(isChosen);
    m_to->setVisible(isChosen);
    searchNow();
}

void FindPage::showNames()
{
    const QString chosen = chosenOperator(*m_operator);
    m_operator->clear();
    m_operator->addItem(tr("All operators"));
    m_operator->addItems(m_model->operators());
    if (!chosen.isEmpty() && m_operator->findText(chosen) < 0) {
        m_operator->addItem(chosen);
    }
    m_operator->setCurrentIndex(chosen.isEmpty() ? 0 : m_operator->findText(chosen));
    m_operator->setAccessibleName(tr("Operator"));
    m_operator->setToolTip(m_events->isChecked() ? tr("Who did it") : tr("Who acknowledged it"));
}

void FindPage::showState()
{
    const QString shown = locale().toString(m_model->rowCount());
    const bool isByTime = m_table->horizontalHeader()->sortIndicatorSection() < 0;
    QString line = !m_model->hasMore() ? tr("Found: %1").arg(shown)
                   : isByTime          ? tr("Shown: %1, further ones when scrolling").arg(shown)
                                       : tr("Sorted: the newest %1, further ones when scrolling").arg(shown);
    if (m_model->isSearching()) {
        line = tr("Searching … found so far: %1").arg(shown);
    }
    if (m_export) {
        line = tr("Exported: %1").arg(locale().toString(m_export->lines()));
    }
    m_count->setText(line);
    m_exportButton->setEnabled(!m_export);
    const RecordSearch &searched = m_model->searched();
    m_note->setText(
        tr("This text is not searched for in input values, history, connections, attributes and the "
           "program's starts, unless \"Input values\", \"History\" or \"Connections\" is chosen, or "
           "stations and a time."));
    m_note->setVisible(searched.view == RecordView::Events && passesOverKinds(searched.events));
    m_problem->tell(m_model->status() ? m_problemText : m_model->status().message());
}

void FindPage::fitColumns()
{
    const int one = fontMetrics().horizontalAdvance(u'0');
    constexpr int margins = 16;
    // The last column of events, their text, takes the remaining room.
    const int fixed = m_model->columnCount() - (m_model->searched().view == RecordView::Events ? 1 : 0);
    for (int column = 0; column < fixed; ++column) {
        m_table->setColumnWidth(column, recordWidth(m_model->searched().view, column) * one + margins);
    }
}

bool FindPage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_table && event->type() == QEvent::KeyPress) {
        const auto &key = static_cast<const QKeyEvent &>(*event);
        if (key.matches(QKeySequence::Copy)) {
            copySelected();
            return true;
        }
        const bool isEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
        if (isEnter && (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier) {
            showInTree();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void FindPage::copySelected()
{
    QList<int> columns(m_model->columnCount());
    std::iota(columns.begin(), columns.end(), 0);
    copyLines(chosenLines(*m_table), columns);
}

void FindPage::enableActions()
{
    const QModelIndex current = m_order->mapToSource(m_table->currentIndex());
    const bool isAboutStation = current.isValid() && stationOf(m_model->line(current.row())) != 0;
    m_show->setEnabled(isAboutStation);
    m_showButton->setEnabled(isAboutStation);
    m_copy->setEnabled(m_table->selectionModel()->hasSelection());
}

void FindPage::showInTree()
{
    const QModelIndex current = m_order->mapToSource(m_table->currentIndex());
    if (!current.isValid()) {
        return;
    }
    const RecordLine &line = m_model->line(current.row());
    if (stationOf(line) == 0 || m_services.showInTree(line)) {
        return;
    }
    const QString name = m_model->stations().value(stationOf(line)).name;
    m_count->setText(tr("The station \"%1\" is no longer in the list").arg(name));
    Q_EMIT statusMessage(m_count->text());
}

// The export

void FindPage::exportFound()
{
    if (m_pause->isActive()) {
        searchNow();
    }
    const QString day = m_services.now().date().toString(Qt::ISODate);
    const QPointer<FindPage> self(this);
    const QString path = m_services.askSave(m_events->isChecked() ? tr("events %1.csv").arg(day)
                                                                  : tr("alarms %1.csv").arg(day),
                                            tr("CSV table") + QLatin1String("|*.csv"));
    if (!self || path.isEmpty() || m_export) {
        return;
    }
    m_export = std::make_unique<RecordExport>(m_recordPath, m_model->searched(), m_model->stations());
    connect(m_export.get(), &RecordExport::progressed, this, &FindPage::showState);
    connect(
        m_export.get(), &RecordExport::finished, this,
        [this, path](const Status &status) { exported(path, status); }, Qt::QueuedConnection);
    m_problemText.clear();
    if (const Status begun = m_export->begin(path); !begun) {
        exported(path, begun);
    }
    showState();
}

void FindPage::exported(const QString &path, const Status &status)
{
    const QString lines = locale().toString(m_export->lines());
    m_export.reset();
    m_problemText = status ? QString() : tr("The export failed: %1").arg(status.message());
    showState();
    const QString line =
        status ? tr("%1: entries exported: %2").arg(QDir::toNativeSeparators(path), lines) : m_problemText;
    if (status) {
        m_count->setText(line);
    }
    Q_EMIT statusMessage(line);
}

} // namespace ktr
