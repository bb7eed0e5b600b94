#include "opmode/window/timemap/time_map_page.h"

#include "look/list_views.h"
#include "look/problem_label.h"
#include "opmode/operational_mode.h"
#include "opmode/watch_summary.h"
#include "opmode/window/timemap/station_figures_model.h"
#include "opmode/window/timemap/time_map_legend.h"
#include "opmode/window/timemap/time_map_look.h"
#include "opmode/window/timemap/time_map_view.h"
#include "platform/settings_store.h"
#include "record/record_address.h"

#include <QComboBox>
#include <QCompleter>
#include <QDateEdit>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QSplitter>
#include <QStringListModel>
#include <QTableView>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace ktr {

namespace {

using namespace Qt::StringLiterals;

constexpr qint64 mapFollowMs = 60'000;
constexpr int monthsOfQuarter = 3;
constexpr int monthsOfYear = 12;
constexpr int allStations = -2;
constexpr int typingPauseMs = 300;
const QString mapTopicKey = QStringLiteral("mapTopic");
const QString mapGroupKey = QStringLiteral("mapGroup");
const QString mapLengthKey = QStringLiteral("mapLength");
const QString mapPartsKey = QStringLiteral("mapParts");
const QString noMapGroup = QStringLiteral("\t"); // is no name

QDate beginOfPart(QDate day, int months)
{
    const int month = (day.month() - 1) / months * months + 1;
    return {day.year(), month, 1};
}

} // namespace

TimeMapPage::TimeMapPage(const OperationalMode &mode, RecordQueries &queries, Services services,
                         QWidget *parent)
    : QWidget(parent), m_mode(mode), m_queries(queries), m_services(std::move(services))
{
    auto *all = new QVBoxLayout(this);
    all->addWidget(createScope());
    all->addWidget(createTop());
    m_problem = named<ProblemLabel>("Label_map_problem"_L1, this);
    m_problem->setWordWrap(true);
    all->addWidget(m_problem);
    m_parts = new QSplitter(this);
    m_parts->setChildrenCollapsible(false);
    m_parts->addWidget(createMap());
    m_parts->addWidget(createList());
    m_parts->setStretchFactor(0, 1);
    constexpr int listWidth = 420;
    constexpr int mapWidth = 640;
    m_parts->setSizes({mapWidth, listWidth});
    all->addWidget(m_parts, 1);
    m_day->setDate(m_services.now().date());
    m_pause = new QTimer(this);
    m_pause->setSingleShot(true);
    m_pause->setInterval(typingPauseMs);
    connectParts();
    applyTexts();
    restore();
}

TimeMapPage::~TimeMapPage()
{
    m_queries.withdraw(this);
    m_queries.withdraw(&m_lister);
}

// Parts

QWidget *TimeMapPage::createScope()
{
    auto *bar = new QWidget(this);
    m_alarms = named<QRadioButton>("Opt_map_alarms"_L1, bar);
    m_silence = named<QRadioButton>("Opt_map_silence"_L1, bar);
    m_alarms->setChecked(true);
    m_groups = named<QComboBox>("Combo_map_group"_L1, bar);
    m_station = named<QLineEdit>("Text_map_station"_L1, bar);
    m_station->setClearButtonEnabled(true);
    auto *completer = new QCompleter(new QStringListModel(bar), bar);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setFilterMode(Qt::MatchContains);
    m_station->setCompleter(completer);
    m_midnight = named<QPushButton>("Cmd_map_midnight"_L1, bar);
    m_midnight->setAutoDefault(false);
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_alarms);
    row->addWidget(m_silence);
    constexpr int apart = 16;
    row->addSpacing(apart);
    row->addWidget(m_groups, 1);
    row->addWidget(m_station, 1);
    row->addWidget(m_midnight);
    return bar;
}

QWidget *TimeMapPage::createTop()
{
    auto *bar = new QWidget(this);
    m_length = named<QComboBox>("Combo_map_length"_L1, bar);
    m_earlier = named<QToolButton>("Cmd_map_earlier"_L1, bar);
    m_earlier->setArrowType(Qt::LeftArrow);
    m_later = named<QToolButton>("Cmd_map_later"_L1, bar);
    m_later->setArrowType(Qt::RightArrow);
    m_day = named<QDateEdit>("Date_map_day"_L1, bar);
    m_day->setCalendarPopup(true);
    m_day->setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
    constexpr int frameAndButton = 60;
    m_day->setMinimumWidth(m_day->fontMetrics().horizontalAdvance(u"00.00.0000"_s) + frameAndButton);
    m_day->setKeyboardTracking(false); // not each digit is another day
    m_today = named<QPushButton>("Cmd_map_today"_L1, bar);
    m_today->setAutoDefault(false);
    m_state = named<QLabel>("Label_map_state"_L1, bar);
    m_state->setWordWrap(true);
    m_state->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    for (QWidget *widget : std::initializer_list<QWidget *>{m_length, m_earlier, m_day, m_later, m_today}) {
        row->addWidget(widget);
    }
    row->addWidget(m_state, 1);
    return bar;
}

QWidget *TimeMapPage::createMap()
{
    auto *part = new QWidget(this);
    m_map = new TimeMapView(part);
    m_legend = new TimeMapLegend(part);
    m_hint = named<QLabel>("Label_map_hint"_L1, part);
    m_hint->setForegroundRole(QPalette::PlaceholderText);
    m_hint->setWordWrap(true);
    auto *column = new QVBoxLayout(part);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_map, 1);
    column->addWidget(m_legend);
    column->addWidget(m_hint);
    return part;
}

QWidget *TimeMapPage::createList()
{
    auto *part = new QWidget(this);
    m_listedLabel = named<QLabel>("Label_map_listed"_L1, part);
    m_listedLabel->setWordWrap(true);
    m_figures = new StationFiguresModel(part);
    m_table = named<QTableView>("Table_map_stations"_L1, part);
    m_table->setModel(m_figures);
    setUpRows(*m_table);
    m_table->setTextElideMode(Qt::ElideMiddle); // stations often begin alike
    constexpr int stationWidth = 175;
    constexpr int amountWidth = 90;
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->setColumnWidth(StationFiguresModel::Station, stationWidth);
    m_table->setColumnWidth(StationFiguresModel::Amount, amountWidth);
    m_show = named<QPushButton>("Cmd_map_show"_L1, part);
    m_show->setAutoDefault(false);
    auto *column = new QVBoxLayout(part);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_listedLabel);
    column->addWidget(m_table, 1);
    column->addWidget(m_show);
    return part;
}

void TimeMapPage::connectParts()
{
    connect(m_alarms, &QRadioButton::toggled, this, [this] {
        keepChoices();
        read();
    });
    connect(m_groups, &QComboBox::activated, this, [this] {
        const int group = m_groups->currentData().toInt();
        m_group = group == allStations           ? QString()
                  : group == StationGroups::none ? noMapGroup
                                                 : m_groups->currentText();
        keepChoices();
        read();
    });
    connect(m_pause, &QTimer::timeout, this, &TimeMapPage::read);
    connect(m_station, &QLineEdit::textChanged, m_pause, qOverload<>(&QTimer::start));
    connect(m_station, &QLineEdit::returnPressed, this, &TimeMapPage::read);
    connect(m_station->completer(), qOverload<const QString &>(&QCompleter::activated), this,
            [this](const QString &name) {
                m_station->setText(name);
                read();
            });
    connect(m_length, &QComboBox::activated, this, [this] {
        keepChoices();
        showDays(m_day->date());
    });
    connect(m_parts, &QSplitter::splitterMoved, this, [this] {
        SettingsStore().SaveSetting(settingsOwner, settings_sections::operationalMode, mapPartsKey,
                                    QString::fromLatin1(m_parts->saveState().toBase64()));
    });
    connect(&m_mode, &OperationalMode::stationChanged, this, &TimeMapPage::tellNow);
    connect(m_day, &QDateEdit::dateChanged, this, &TimeMapPage::showDays);
    connect(m_earlier, &QToolButton::clicked, this, [this] { step(-1); });
    connect(m_later, &QToolButton::clicked, this, [this] { step(1); });
    connect(m_today, &QPushButton::clicked, this, [this] { m_day->setDate(m_services.now().date()); });
    connect(m_midnight, &QPushButton::clicked, this, &TimeMapPage::sinceMidnight);
    connect(m_map, &TimeMapView::stepWanted, this, &TimeMapPage::step);
    connect(m_map, &TimeMapView::chosenChanged, this, &TimeMapPage::showChosen);
    connect(m_map, &TimeMapView::wanted, this, [this] { go(m_stationName); });
    connect(m_map, &TimeMapView::clicked, this, [this] { // of several stations the list is beside it
        if (isOneStation() && !m_isOfAll) {
            go(m_stationName);
        }
    });
    connect(m_show, &QPushButton::clicked, this, [this] { go(m_stationName); });
    connect(m_table, &QTableView::clicked, this, &TimeMapPage::goToStation);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto *enter = new QShortcut(key, m_table);
        enter->setContext(Qt::WidgetShortcut);
        connect(enter, &QShortcut::activated, this, [this] { goToStation(m_table->currentIndex()); });
    }
}

void TimeMapPage::restore()
{
    const SettingsStore store;
    const auto kept = [&store](const QString &key) {
        return store.GetSetting(settingsOwner, settings_sections::operationalMode, key);
    };
    const QSignalBlocker quiet(m_alarms);
    (kept(mapTopicKey) == u"silence" ? m_silence : m_alarms)->setChecked(true);
    m_length->setCurrentIndex(std::clamp(kept(mapLengthKey).toInt(), 0, m_length->count() - 1));
    m_group = kept(mapGroupKey);
    m_parts->restoreState(QByteArray::fromBase64(kept(mapPartsKey).toLatin1()));
}

void TimeMapPage::keepChoices() const
{
    SettingsStore().SaveSettings(
        settingsOwner, settings_sections::operationalMode,
        {{mapTopicKey, m_alarms->isChecked() ? QStringLiteral("alarms") : QStringLiteral("silence")},
         {mapLengthKey, QString::number(m_length->currentIndex())},
         {mapGroupKey, m_group}});
}

void TimeMapPage::applyTexts()
{
    const auto name = [](QWidget *control, const QString &called, const QString &tip) {
        control->setAccessibleName(called);
        control->setToolTip(tip);
    };
    m_alarms->setText(tr("Alarms"));
    m_alarms->setToolTip(tr("When alarms came"));
    m_silence->setText(tr("Silence"));
    m_silence->setToolTip(tr("When stations were silent or offline"));
    name(m_groups, tr("Group"), tr("All stations, or those of a group of the overview"));
    m_station->setPlaceholderText(tr("Stations"));
    name(m_station, tr("Stations"),
         tr("The name of a station, or a part of several, in the place of the group"));
    m_midnight->setText(tr("Since midnight"));
    m_midnight->setToolTip(tr("Chooses the hours from midnight until now"));
    const int length = std::max(0, m_length->currentIndex());
    m_length->clear();
    m_length->addItems({tr("Month"), tr("Quarter"), tr("Year")});
    m_length->setCurrentIndex(length);
    name(m_length, tr("Time"), tr("How many days are shown"));
    name(m_earlier, tr("Earlier"), tr("The days before (Page up in the map)"));
    name(m_later, tr("Later"), tr("The days behind (Page down in the map)"));
    name(m_day, tr("Day"), tr("A day that is shown"));
    m_today->setText(tr("Today"));
    name(m_map, tr("Map of time"), {});
    m_show->setText(tr("Show in the record"));
    m_show->setToolTip(tr("What happened in the hours that are chosen (Enter in the map)"));
    name(m_table, tr("Stations"), {});
    fillScopes();
    if (m_grid.count() > 0) {
        read();
    }
}

// What is shown

TimeMapTopic TimeMapPage::topic() const
{
    return m_alarms->isChecked() ? TimeMapTopic::Alarms : TimeMapTopic::Silence;
}

void TimeMapPage::fillScopes()
{
    m_groups->clear();
    m_groups->addItem(tr("All stations"), allStations);
    const QList<StationGroup> groups = m_services.groups().list();
    for (int group = 0; group < groups.size(); ++group) {
        m_groups->addItem(groups[group].name, group);
    }
    if (!groups.isEmpty()) {
        m_groups->addItem(tr("In no group"), StationGroups::none);
    }
    m_groups->setCurrentIndex(std::max(0, m_group.isEmpty()       ? 0
                                          : m_group == noMapGroup ? m_groups->findData(StationGroups::none)
                                                                  : m_groups->findText(m_group)));
}

void TimeMapPage::fillStations()
{
    QStringList names;
    const StationTree &tree = m_mode.tree();
    for (int row = 0; row < tree.rowCount(); ++row) {
        names += tree.index(row, 0).data(Qt::EditRole).toString();
    }
    if (auto *model = qobject_cast<QStringListModel *>(m_station->completer()->model());
        model->stringList() != names) {
        model->setStringList(names);
    }
}

/// The stations that are meant now; false where there are none.
bool TimeMapPage::takeScope()
{
    const QString typed = m_station->text().trimmed();
    const int group = m_groups->currentData().toInt();
    m_groups->setEnabled(typed.isEmpty());
    m_stationName = typed;
    m_isOfAll = typed.isEmpty() && group == allStations;
    m_pause->stop();
    m_scope.clear();
    m_kennungen.clear();
    const StationGroups groups = m_services.groups();
    const StationTree &tree = m_mode.tree();
    const auto add = [&](const auto &isMeant) {
        for (int row = 0; row < tree.rowCount(); ++row) {
            const QModelIndex station = tree.index(row, 0);
            const QString called = station.data(Qt::EditRole).toString();
            if (isMeant(called)) {
                m_kennungen += station.data(StationTree::KeyRole).toString();
                m_scope += m_mode.alarmActions().numberOf(m_kennungen.constLast());
                m_stationName = typed.isEmpty() ? QString() : called;
            }
        }
    };
    if (typed.isEmpty()) {
        add([&](const QString &called) { return m_isOfAll || groups.groupOf(called) == group; });
    } else { // a whole name means that station alone
        add([&](const QString &called) { return called.compare(typed, Qt::CaseInsensitive) == 0; });
        if (m_scope.isEmpty()) {
            add([&](const QString &called) { return called.contains(typed, Qt::CaseInsensitive); });
        }
    }
    m_part = m_scope.size() > 1 ? typed : QString();
    if (m_scope.size() > 1) {
        m_stationName.clear();
    }
    m_problem->tell(!m_scope.isEmpty() ? QString()
                    : !typed.isEmpty() ? tr("No station has \"%1\" in its name").arg(typed)
                    : m_isOfAll        ? tr("There are no stations")
                                       : tr("No station is in this group"));
    return !m_scope.isEmpty();
}

void TimeMapPage::showDays(QDate date)
{
    constexpr std::array months = {1, monthsOfQuarter, monthsOfYear};
    const int length = months.at(static_cast<std::size_t>(std::max(0, m_length->currentIndex())));
    const QDate first = beginOfPart(date, length);
    const int days = static_cast<int>(first.daysTo(first.addMonths(length)));
    if (m_grid.count() == 0 || m_grid.first() != first || m_grid.days() != days) {
        m_grid = HourGrid(first, days);
        read();
    }
}

void TimeMapPage::step(int by)
{
    constexpr std::array months = {1, monthsOfQuarter, monthsOfYear};
    const int length = months.at(static_cast<std::size_t>(std::max(0, m_length->currentIndex())));
    m_day->setDate(m_grid.first().addMonths(by * length));
}

void TimeMapPage::sinceMidnight()
{
    const QDateTime present = m_services.now();
    m_day->setDate(present.date());
    showDays(present.date());
    m_map->choose(present.date().startOfDay().toMSecsSinceEpoch(), now() + 1);
    read(); // or what happened since the last time would still be to come
    m_map->setFocus();
}

void TimeMapPage::beginChoosing()
{
    m_map->setFocus();
}

void TimeMapPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    fillScopes();
    fillStations();
    if (m_grid.count() == 0) {
        showDays(m_day->date());
    } else {
        read();
    }
}

void TimeMapPage::follow()
{
    const qint64 present = now();
    if (present - m_readAt >= mapFollowMs && present >= m_grid.from() && m_readAt < m_grid.to() &&
        !m_queries.isWaitedFor(this)) {
        read();
    }
}

// Reading

void TimeMapPage::read()
{
    m_queries.withdraw(this);
    m_queries.withdraw(&m_lister);
    m_listed = {};
    m_readAt = now();
    const bool isMeant = takeScope();
    m_legend->show(topic(), isOneStation() && !m_isOfAll);
    m_hint->setText(
        isOneStation() && !m_isOfAll
            ? tr("A click, or Enter, shows what happened in that hour. Arrow keys choose an hour, "
                 "with Shift or by dragging several.")
            : tr("A click, or the arrow keys, choose an hour, dragging or Shift several: the list "
                 "has their stations. A double click, or Enter, shows what happened."));
    const bool isSame = m_map->map().grid.from() == m_grid.from() && m_map->map().grid.to() == m_grid.to() &&
                        m_map->map().topic == topic() && m_map->map().stations == m_scope.size();
    if (!isSame || !isMeant) { // else what is shown stays until the answer comes
        m_map->setMap({topic(), m_grid, {}, m_scope.size(), m_readAt});
        m_figures->show(topic(), {}, 0);
    }
    if (!isMeant) {
        m_state->clear();
        m_listedText.clear();
        m_listedLabel->clear();
        return;
    }
    m_state->setText(tr("Reading …"));
    TimeMapQuestion question;
    question.topic = topic();
    question.grid = m_grid;
    question.stations = m_isOfAll ? QList<qint64>() : m_scope;
    question.now = m_readAt;
    question.hasOneKeeper = !isServerAddress(m_queries.path());
    m_queries.ask(
        this, [question](RecordReader &reader) { return readTimeMap(reader, question); },
        [this](const TimeMapAnswer &answer) { showAnswer(answer); });
}

void TimeMapPage::showAnswer(const TimeMapAnswer &answer)
{
    m_problem->tell(answer.status ? QString() : answer.status.message());
    if (!answer.status) {
        m_state->clear();
        return;
    }
    m_begin = answer.begin;
    HourFigures all;
    for (const HourFigures &hour : answer.hours) {
        all.alarms += hour.alarms;
        all.unheardMs += hour.unheardMs;
    }
    m_map->setMap({topic(), m_grid, answer.hours, m_scope.size(), m_readAt});
    const bool isAlarms = topic() == TimeMapTopic::Alarms;
    m_state->setText(
        m_begin == 0             ? tr("The record is empty: nothing has been written down yet.")
        : m_begin >= m_grid.to() ? tr("The record begins later, on %1.")
                                       .arg(QDateTime::fromMSecsSinceEpoch(m_begin).toString(u"dd.MM.yyyy"_s))
        : m_grid.from() > m_readAt    ? tr("These days are still to come.")
        : isAlarms && all.alarms == 0 ? tr("No alarm came in these days.")
        : isAlarms                    ? tr("Alarms in these days: %1").arg(locale().toString(all.alarms))
        : all.unheardMs == 0          ? tr("No station was silent or offline in these days.")
                                      : (isOneStation() ? tr("Not heard in these days: %1")
                                                        : tr("Not heard in these days: %1, of all stations together"))
                                   .arg(durationText(all.unheardMs)));
}

/// The hours that are chosen, and their stations.
void TimeMapPage::showChosen()
{
    const auto [from, to] = m_map->chosen();
    const bool isPast = to > from;
    m_show->setEnabled(isPast && !m_scope.isEmpty());
    if (!isPast || m_map->map().hours.empty()) {
        m_queries.withdraw(&m_lister);
        m_listed = {};
        m_figures->show(topic(), {}, 0);
        m_listedText.clear();
        m_listedLabel->setText(m_map->map().hours.empty() || m_scope.isEmpty()
                                   ? QString()
                                   : tr("These hours are still to come."));
        return;
    }
    if (m_listed != std::pair(from, to)) {
        readStations();
    }
}

void TimeMapPage::readStations()
{
    m_listed = m_map->chosen();
    StationsQuestion question;
    question.topic = topic();
    question.stations = m_isOfAll ? QList<qint64>() : m_scope;
    std::tie(question.from, question.to) = m_listed;
    question.now = now() + 1; // what happens just now, too
    question.hasOneKeeper = !isServerAddress(m_queries.path());
    m_queries.ask(
        &m_lister, [question](RecordReader &reader) { return readStationsOf(reader, question); },
        [this](const StationsAnswer &answer) { showStations(answer); });
}

void TimeMapPage::showStations(const StationsAnswer &answer)
{
    if (!answer.status) {
        m_problem->tell(answer.status.message());
        return;
    }
    const auto [from, to] = m_listed;
    m_figures->show(topic(), answer.stations, to - from);
    const QString times = timesText(from, to, locale());
    const QString count = locale().toString(answer.stations.size());
    const HourFigures figures = m_map->chosenFigures();
    const bool isAlarms = topic() == TimeMapTopic::Alarms;
    QString line = answer.stations.isEmpty()
                       ? (figures.unknownMs > 0
                              ? tr("%1: nobody watched for %2").arg(times, durationText(figures.unknownMs))
                          : isAlarms ? tr("%1: no alarm").arg(times)
                                     : tr("%1: all stations were heard").arg(times))
                   : isAlarms ? tr("%1: stations with alarms: %2").arg(times, count)
                              : tr("%1: stations not heard: %2").arg(times, count);
    m_listedText = line;
    tellNow();
}

/// How the stations are at present, whatever time is chosen.
QString TimeMapPage::numbersNow() const
{
    WatchSummary summary;
    for (const QString &kennung : m_kennungen) {
        if (const cStation *station = m_mode.station(kennung)) {
            summary.addStation(lineOf(station->online(), station->liveness()));
        }
    }
    return tr("Now: silent %L1, offline %L2").arg(summary.silent).arg(summary.offline);
}

void TimeMapPage::tellNow()
{
    if (isVisible() && !m_listedText.isEmpty()) {
        m_listedLabel->setText(topic() == TimeMapTopic::Alarms ? m_listedText
                                                               : m_listedText + u'\n' + numbersNow());
    }
}

// Going there

void TimeMapPage::go(const QString &station)
{
    const auto [from, to] = m_map->chosen();
    if (to > from) {
        Q_EMIT placeWanted({topic(), from, to, station, station.isEmpty() ? m_part : QString()});
    }
}

void TimeMapPage::goToStation(const QModelIndex &line)
{
    if (line.isValid()) {
        go(m_figures->station(line.row()).name);
    }
}

} // namespace ktr
