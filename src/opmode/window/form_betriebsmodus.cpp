#include "opmode/window/form_betriebsmodus.h"

#include "look/icons.h"
#include "look/kept_focus.h"
#include "look/message_dialog.h"
#include "look/outside_texts.h"
#include "look/program_name.h"
#include "look/text_keys.h"
#include "look/window_place.h"
#include "opmode/window/add_stations_dialog.h"
#include "opmode/window/alarm_bar.h"
#include "opmode/window/alarm_look.h"
#include "opmode/window/alarms/alarm_commands.h"
#include "opmode/window/beside_banner.h"
#include "opmode/window/configuration_card.h"
#include "opmode/window/curves/series_drag.h"
#include "opmode/window/end_of_watching.h"
#include "opmode/window/export_dialog.h"
#include "opmode/window/list_banner.h"
#include "opmode/window/list_notices.h"
#include "opmode/window/many_line.h"
#include "opmode/window/message_line.h"
#include "opmode/window/operator_bar.h"
#include "opmode/window/opmode_menus.h"
#include "opmode/window/opmode_pages.h"
#include "opmode/window/opmode_views.h"
#include "opmode/window/overview/overview_page.h"
#include "opmode/window/overview/overview_view.h"
#include "opmode/window/overview/shown_rows.h"
#include "opmode/window/overview/wall_header.h"
#include "opmode/window/overview/wall_mode.h"
#include "opmode/window/pane_keys.h"
#include "opmode/window/place_dialog.h"
#include "opmode/window/record/line_place.h"
#include "opmode/window/record/record_window.h"
#include "opmode/window/retention_dialog.h"
#include "opmode/window/sound_notice.h"
#include "opmode/window/station_commands.h"
#include "opmode/window/station_counts.h"
#include "opmode/window/station_tree_pane.h"
#include "opmode/window/station_tree_view.h"
#include "opmode/window/tree_order.h"
#include "platform/settings_store.h"
#include "record/record_address.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QGridLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScopedValueRollback>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace ktr {

namespace {

const QString geometryKey = QStringLiteral("geometry");
const QString splitterKey = QStringLiteral("splitter");
constexpr QSize comfortableSize(1180, 740);
constexpr QSize smallest(600, 360);
constexpr int treeWidth = 320;

} // namespace

Form_betriebsmodus::Form_betriebsmodus(OperationalMode &mode, const TextTable &texts,
                                       const Services &services, QWidget *parent)
    : QMainWindow(parent),
      m_mode(mode),
      m_texts(texts),
      m_services(services),
      m_acknowledging(mode, texts),
      m_alarms(
          mode.alarms(), [&mode](const AlarmRow &alarm) { return alarmOf(mode, alarm); }, services.timers),
      m_mute(services.timers, [&mode] { return mode.now(); }),
      m_sound(m_alarms, services.timers),
      m_notifier(m_alarms, services.timers, *this),
      m_openAgain(services.timers.create())
{
    showOutsideTextsPlain(*qApp);
    keepFocusOfDisabledButtons(*qApp);
    sortTextKeys(*qApp);
    setLocale(services.locale);
    setObjectName(QStringLiteral("Form_betriebsmodus"));
    keepOpenWhileAskingForFiles();
    setWindowIcon(icon(IconName::Application));
    m_menus = new OpmodeMenus(*this);
    layOut();
    connectTree();
    connectMenus();
    connectAlarms();
    connectMute();
    connectSettings();
    connect(&m_mode, &OperationalMode::statusMessage, this, &Form_betriebsmodus::tell);
    connect(&m_mode, &OperationalMode::recovered, m_messages, &MessageLine::pin);
    connect(&m_mode, &OperationalMode::keeperChanged, this, [this] {
        m_notices->showKeeper(m_isShared);
        showTitle();
        m_menus->setListUsable(m_mode.hindrance() == OperationalMode::Hindrance::None);
        enableActions();
    });
    connect(&m_mode, &OperationalMode::joinedAgain, this, &Form_betriebsmodus::showHindrance);
    connect(&m_mode, &OperationalMode::happened, this, &Form_betriebsmodus::tellLiveness);
    connect(&m_mode, &OperationalMode::stationChanged, this, [this](const QString &kennung) {
        if (kennung == chosen()) {
            enableActions();
        }
    });
    restorePlaces();
    applyTexts();
}

Form_betriebsmodus::~Form_betriebsmodus()
{
    delete m_recordWindow;
    // They look at the members to their end, for example when the focus leaves them.
    qDeleteAll(findChildren<QWidget *>(Qt::FindDirectChildrenOnly));
}

// Parts of the window

/// A dialog of a helper program blocks no window, and a page waits for its answer.
void Form_betriebsmodus::keepOpenWhileAskingForFiles()
{
    m_services.askSave = [this, ask = m_services.askSave](const QString &proposal, const QString &filter) {
        const QScopedValueRollback busy(m_busy, m_busy + 1);
        return ask(proposal, filter);
    };
    m_services.askOpen = [this, ask = m_services.askOpen](const QString &filter) {
        const QScopedValueRollback busy(m_busy, m_busy + 1);
        return ask(filter);
    };
}

void Form_betriebsmodus::layOut()
{
    m_splitter = new QSplitter(this);
    m_splitter->setChildrenCollapsible(false);
    m_pages = new OpmodePages({m_mode, m_texts, m_acknowledging, m_services.timers, m_services.locale,
                               m_services.askSave, m_services.askOpen},
                              m_splitter);
    m_treePane = new StationTreePane(m_mode, m_texts, m_services.timers, m_services.locale, m_splitter);
    m_tree = &m_treePane->tree();
    m_splitter->addWidget(m_treePane);
    m_splitter->addWidget(m_pages);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setSizes({treeWidth, comfortableSize.width() - treeWidth});
    auto *body = new QWidget(this);
    auto *column = new QVBoxLayout(body);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_alarmBar = new AlarmBar(m_alarms, m_mode.alarms(), m_acknowledging, m_texts, body);
    // Its room stays free without it: nothing gets away from under the mouse when an alarm comes.
    QSizePolicy barsRoom = m_alarmBar->sizePolicy();
    barsRoom.setRetainSizeWhenHidden(true);
    m_alarmBar->setSizePolicy(barsRoom);
    m_noAlarm = new QLabel(body);
    m_noAlarm->setObjectName(QStringLiteral("lbl_no_alarm"));
    m_noAlarm->setForegroundRole(QPalette::PlaceholderText);
    m_noAlarm->setContentsMargins(16, 0, 16, 0);
    m_noAlarm->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // however long its text
    auto *alarms = new QWidget(body);
    auto *top = new QGridLayout(alarms);
    top->setContentsMargins(0, 0, 0, 0);
    top->addWidget(m_noAlarm, 0, 0);
    top->addWidget(m_alarmBar, 0, 0);
    m_alarmBar->raise();
    auto *notice = new SoundNotice(m_sound, alarms); // beside the bar, whether there are alarms or not
    connect(notice, &QAbstractButton::clicked, m_menus->mnu_sound, &QAction::trigger);
    connect(&m_sound, &AlarmSound::troubleChanged, this, &Form_betriebsmodus::showMute);
    top->addWidget(notice, 0, 1);
    top->setColumnStretch(0, 1);
    m_notices = new ListNotices(m_mode, *body);
    connectNotices();
    for (QWidget *told : m_notices->above()) {
        column->addWidget(told);
    }
    column->addWidget(alarms);
    column->addWidget(m_splitter, 1);
    m_wallHeader = new WallHeader(m_mode, m_services.timers, body);
    column->addWidget(m_wallHeader);
    m_overview = new OverviewPage({m_mode, m_texts, m_services.timers, m_services.locale}, body);
    m_overview->hide();
    column->addWidget(m_overview, 1);
    column->addWidget(&m_notices->below());
    m_operatorBar = new OperatorBar(m_mode, body);
    column->addWidget(m_operatorBar);
    setCentralWidget(body);
    m_counts = new StationCounts(m_mode, *m_tree, this);
    m_messages = new MessageLine(this);
    statusBar()->addWidget(m_messages, 1);
    m_muted = new QLabel(this);
    m_muted->setObjectName(QStringLiteral("lbl_muted"));
    m_muted->setContentsMargins(8, 0, 8, 0);
    m_commands = new StationCommands(
        {m_mode, m_texts, *m_menus, *m_tree, m_overview->view(),
         [this](const QString &question) { return ask(question); },
         [this](const std::function<QString()> &question) { return askFollowing(question); },
         [this](const QString &line) { tell(line); }},
        *this);
    connect(m_commands, &StationCommands::removedChanged, this, [this] {
        showNoAlarm();
        if (m_overview->isVisible()) {
            m_overview->model().update();
        }
    });
    m_tree->addAction(m_menus->mnu_station_del); // its key is meant in lists of stations alone
    m_overview->view().addAction(m_menus->mnu_station_del);
    statusBar()->addPermanentWidget(&m_commands->line());
    statusBar()->addPermanentWidget(m_muted);
    statusBar()->addPermanentWidget(m_operatorBar->button());
    statusBar()->addPermanentWidget(m_counts);
    m_wall = new WallMode(*this, {*m_overview,
                                  *m_wallHeader,
                                  {menuBar(), alarms, m_operatorBar, statusBar()},
                                  m_notices->ofWatching()});
    m_views = new OpmodeViews({m_mode, *m_menus, *m_splitter, *m_tree, *m_pages, *m_overview, *m_wall}, this);
    QList<PaneKeys::Pane> panes;
    for (QWidget *told : m_notices->above()) {
        panes += PaneKeys::Pane{told};
    }
    panes += PaneKeys::Pane{alarms, [this] { return firstControlIn(*m_alarmBar); }};
    panes += {{m_treePane, [this] { return m_tree; }},
              {m_pages, [this] { return m_pages->control(); }},
              {m_overview, [this] { return &m_overview->view(); }},
              {&m_notices->below()},
              {m_operatorBar},
              {statusBar()}};
    m_paneKeys = new PaneKeys(*this, panes);
    connect(m_wall, &WallMode::left, this, [this] { m_overview->view().setFocus(); });
}

void Form_betriebsmodus::connectNotices()
{
    connect(m_notices, &ListNotices::retryWanted, this, [this] {
        delete m_recordWindow;
        m_mode.closeWithoutFile();
        openList();
    });
    connect(m_notices, &ListNotices::emptyWanted, this, &Form_betriebsmodus::beginEmptyList);
    connect(m_notices, &ListNotices::watchWanted, this, [this] {
        m_mode.closeWithoutFile();
        openList();
    });
    connect(m_notices, &ListNotices::groupsWanted, this, [this] { m_overview->readGroups(); });
    connect(m_notices, &ListNotices::statusMessage, this, &Form_betriebsmodus::tell);
}

void Form_betriebsmodus::restorePlaces()
{
    setMinimumSize(smallest);
    constexpr QSize frame(16, 56); // what the window manager puts around it, at most
    resize(comfortableSize.boundedTo(screen()->availableSize() - frame));
    const SettingsStore store;
    const auto kept = [&store](const QString &key) {
        return QByteArray::fromBase64(
            store.GetSetting(settingsOwner, settings_sections::operationalMode, key).toLatin1());
    };
    restorePlace(*this, kept(geometryKey));
    m_splitter->restoreState(kept(splitterKey));
}

/// Tree and pages follow each other.
void Form_betriebsmodus::connectTree()
{
    connect(m_tree, &StationTreeView::currentNodeChanged, this, [this](const QModelIndex &node) {
        m_pages->showNode(node);
        enableActions();
        rememberChosen();
    });
    connect(&m_mode.tree(), &StationTree::stationRenamed, this, &Form_betriebsmodus::rememberChosen);
    connect(m_tree, &StationTreeView::choiceChanged, this, &Form_betriebsmodus::enableActions);
    connect(m_pages, &OpmodePages::nodeWanted, m_tree, &StationTreeView::goTo);
    connect(m_pages, &OpmodePages::statusMessage, this, &Form_betriebsmodus::tell);
    connect(m_pages, &OpmodePages::entryWanted, m_views, &OpmodeViews::goTo);
    connect(m_tree, &StationTreeView::nameRefused, this,
            [this](const QString &name) { tell(StationTreeView::refusalOf(name)); });
    connect(m_overview, &OverviewPage::groupsChanged, &m_treePane->order(), &TreeOrder::setGroups);
    connect(m_overview, &OverviewPage::groupsTrouble, &m_notices->beside(), &BesideBanner::setGroupsTrouble);
    connect(m_overview, &OverviewPage::statusMessage, this, &Form_betriebsmodus::tell);
    connect(&m_overview->view(), &OverviewView::menuWanted, this,
            [this](const QPoint &place) { showTreeMenu(place, true); });
    connect(m_tree, &StationTreeView::menuWanted, this, &Form_betriebsmodus::showTreeMenu);
}

void Form_betriebsmodus::connectMenus()
{
    const auto does = [this](QAction *action, auto &&slot) {
        connect(action, &QAction::triggered, this, std::forward<decltype(slot)>(slot));
    };
    does(m_menus->mnu_station_add, &Form_betriebsmodus::addStation);
    does(m_menus->mnu_station_list, &Form_betriebsmodus::addStations);
    does(m_menus->mnu_station_rename, &Form_betriebsmodus::renameStation);
    does(m_menus->mnu_station_allonline, [this] { m_mode.setAllOnline(true); });
    does(m_menus->mnu_konfiguration, &Form_betriebsmodus::configure);
    does(m_menus->mnu_station_link,
         [this] { tell(linkConfiguration(m_mode, chosen(), m_services.askOpen)); });
    does(m_menus->mnu_station_unlink, [this] { tell(unlinkConfiguration(m_mode, chosen())); });
    does(m_menus->mnu_transmit_several, &Form_betriebsmodus::configureSeveral);
    does(m_menus->mnu_export, &Form_betriebsmodus::exportEntries);
    does(m_menus->mnu_record, [this] { openRecord().appear(); });
    does(m_menus->mnu_map, [this] { openRecord().appearWithMap(); });
    does(m_menus->mnu_retention, &Form_betriebsmodus::showRetention);
    does(m_menus->mnu_place, &Form_betriebsmodus::choosePlace);
    does(m_menus->mnu_close, &Form_betriebsmodus::close);
    does(m_menus->mnu_ansicht_normal, [this] { m_views->show(false); });
    does(m_menus->mnu_ansicht_treeview, [this] { m_views->show(true); });
    does(m_menus->mnu_overview, [this] { m_views->showOverview(); });
    does(m_menus->mnu_wall, [this] { m_views->toggleWall(); });
    does(m_menus->mnu_curves, [this] {
        m_views->show(false);
        m_pages->showCurves();
    });
    for (int page = 0; page < OpmodeMenus::pages; ++page) {
        does(m_menus->mnu_page[page], [this, page] { m_views->showPage(page); });
    }
    does(m_menus->mnu_station_curves, [this] { m_views->showCurves(seriesOfChosen(m_mode, *m_tree)); });
}

void Form_betriebsmodus::connectAlarms()
{
    connect(&m_alarms, &AlarmCentre::changed, this, &Form_betriebsmodus::showTitle);
    connect(&m_alarms, &AlarmCentre::changed, this, &Form_betriebsmodus::showNoAlarm);
    connect(&m_acknowledging, &Acknowledging::statusMessage, this, &Form_betriebsmodus::tell);
    connect(&m_notifier, &DesktopNotifier::statusMessage, this, &Form_betriebsmodus::tell);
    connect(&m_notifier, &DesktopNotifier::chosen, this, &Form_betriebsmodus::comeToFront);
    connect(m_alarmBar, &AlarmBar::entryWanted, m_views, &OpmodeViews::goTo);
    connect(m_alarmBar, &AlarmBar::accepted, this, [this] { // one goes on where the stations are
        m_overview->isVisible() ? m_overview->view().setFocus() : m_tree->setFocus();
    });
    connect(m_alarmBar, &AlarmBar::allWanted, this, [this] {
        m_views->show(false);
        m_pages->showAllAlarms();
    });
}

void Form_betriebsmodus::connectMute()
{
    connect(m_alarmBar, &AlarmBar::muteWanted, &m_mute, &AlarmMute::setMuted);
    connect(m_menus->mnu_stumm, &QAction::triggered, &m_mute, &AlarmMute::setMuted);
    for (int length = 0; length < AlarmMute::lengths; ++length) { // whoever chooses a time wants it now
        connect(m_menus->mnu_stumm_for[length], &QAction::triggered, &m_mute, [this, length] {
            m_mute.setLength(static_cast<AlarmMute::Length>(length));
            m_mute.setMuted(true);
        });
    }
    connect(&m_mute, &AlarmMute::changed, this, &Form_betriebsmodus::showMute);
}

/// Who is on duty, and what holds for all alarms.
void Form_betriebsmodus::connectSettings()
{
    connect(m_menus->mnu_operator, &QAction::triggered, m_operatorBar, &OperatorBar::ask);
    connect(m_operatorBar, &OperatorBar::done, m_tree, qOverload<>(&QWidget::setFocus));
    connect(&m_mode.alarms(), &AlarmBook::shelvesChanged, this, &Form_betriebsmodus::enableActions);
    new AlarmCommands({m_mode, m_texts, *m_menus, m_sound, [this] { return chosen(); },
                       [this](const std::function<void()> &open) {
                           const QScopedValueRollback busy(m_busy, m_busy + 1);
                           open();
                           m_notices->showRules();
                       }},
                      *this);
}

void Form_betriebsmodus::showMute()
{
    const bool isMuted = m_mute.isMuted();
    m_sound.setMuted(isMuted);
    m_alarmBar->setMuted(isMuted);
    m_menus->mnu_stumm->setChecked(isMuted);
    m_menus->mnu_stumm_for[static_cast<int>(m_mute.length())]->setChecked(true);
    m_muted->setVisible(isMuted);
    m_muted->setText(
        tr("Muted until %1").arg(m_mute.until().toLocalTime().toString(QStringLiteral("HH:mm"))));
    m_wallHeader->setNote(isMuted                       ? m_muted->text()
                          : m_sound.trouble().isEmpty() ? QString()
                                                        : tr("Alarms cannot be heard"));
}

bool Form_betriebsmodus::showInTree(const RecordLine &line)
{
    const LinePlace place = placeOf(line, m_mode);
    if (place.kennung.isEmpty()) {
        return false;
    }
    m_views->goTo(place.kennung, place.entry);
    comeToFront();
    return true;
}

void Form_betriebsmodus::comeToFront()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

/// Below the last row it offers nothing that would act on the station that happens to be chosen.
void Form_betriebsmodus::showTreeMenu(const QPoint &place, bool isAboutStation)
{
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("menu_tree"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setToolTipsVisible(true);
    menu->addActions(m_menus->treeActions(isAboutStation));
    menu->popup(place);
}

void Form_betriebsmodus::applyTexts()
{
    showTitle();
    m_menus->applyTexts(m_texts);
    m_mode.tree().setCaptions(stationCaptions(m_texts));
    m_alarmBar->applyTexts();
    m_operatorBar->applyTexts();
    showNoAlarm();
    showMute();
    m_notices->applyTexts(m_isShared);
    m_messages->applyTexts();
    m_commands->applyTexts();
    m_pages->applyTexts();
    m_menus->setPages(m_pages->captions());
    m_paneKeys->applyTexts();
    m_treePane->applyTexts();
    m_overview->applyTexts();
    m_counts->showNow();
}

void Form_betriebsmodus::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        applyTexts();
    }
}

// Opening and closing

void Form_betriebsmodus::open(const QString &nodesPath)
{
    m_nodesPath = nodesPath;
    m_isShared = isServerAddress(nodesPath);
    openList();
}

/// What another program keeps is joined.
void Form_betriebsmodus::openList()
{
    if (m_isShared) {
        openShared();
        return;
    }
    using Use = OperationalMode::Use;
    Status opened = m_mode.open(m_nodesPath, Use::Keep);
    if (m_mode.hindrance() == OperationalMode::Hindrance::InUse) {
        opened = m_mode.open(m_nodesPath, Use::Look);
    }
    showHindrance(opened);
}

void Form_betriebsmodus::openAt(const QString &address)
{
    m_nodesPath = address;
    m_isShared = true;
    openList();
}

/// A server may take its time, or not be there.
void Form_betriebsmodus::openShared()
{
    m_openAgain->stop();
    if (!m_notices->list().isVisible()) {
        m_notices->list().tellOpening(m_nodesPath);
    }
    showUsable(false);
    if (!isServerAddress(m_nodesPath)) { // and it never becomes one
        SharedState refused;
        refused.status = serverAddress(m_nodesPath).status;
        showHindrance(m_mode.join(m_nodesPath, refused));
        return;
    }
    m_opening = std::make_unique<RecordQueries>(m_nodesPath);
    m_opening->ask(this, &readSharedState, [this](const SharedState &state) {
        m_notices->list().hide();
        showHindrance(m_mode.join(m_nodesPath, state));
        if (!state.status) {
            m_openAgain->start(openAgainDelay, [this] { openShared(); });
        }
    });
}

/// Where the stations cannot be used, what would be done with them is kept nowhere, and no alarm arrives.
void Form_betriebsmodus::showUsable(bool isUsable)
{
    m_splitter->setEnabled(isUsable);
    m_overview->setEnabled(isUsable);
    showNoAlarm();
    m_menus->setListUsable(isUsable);
    m_menus->setRecorded(!m_mode.recordPath().isEmpty());
}

/// Behind the bar it would still be read out.
void Form_betriebsmodus::showNoAlarm()
{
    const auto number = [this](int count) -> QString { return locale().toString(count); };
    const AlarmBook &alarms = m_mode.alarms();
    QStringList parts{tr("No alarm is open")};
    if (const int shelved = alarms.shelvedCount(); shelved > 0) {
        parts += tr("put aside: %1").arg(number(shelved));
    }
    if (const int closed = m_mode.removal().closedAlarms(); closed > 0) {
        parts += tr("closed by the removal of their stations: %1").arg(number(closed));
    }
    m_noAlarm->setText(parts.join(QStringLiteral(" – ")));
    m_noAlarm->setVisible(m_splitter->isEnabled() && m_alarms.unacknowledged() == 0);
}

/// Also when there is none (any more).
void Form_betriebsmodus::showHindrance(const Status &opened)
{
    using Hindrance = OperationalMode::Hindrance;
    const Hindrance hindrance = m_mode.hindrance();
    if (m_mode.stations().Count() == 0 && hindrance != Hindrance::InUse && !m_mode.isJoined()) {
        m_mode.addStation(m_texts.text(Text::NewNotification));
    }
    m_treePane->applyFilter();
    chooseAgain();
    m_commands->listChanged();
    m_overview->openGroups(m_nodesPath);
    m_counts->showNow(); // at once: until the timer's turn it would say that there are none
    const bool isUsable = hindrance == Hindrance::None;
    showUsable(isUsable);
    m_notices->showLock(isUsable);
    m_notices->showRules();
    m_notices->showKeeper(m_isShared);
    showTitle();
    if (isUsable) {
        m_notices->list().hide();
        enableActions();
        m_tree->setFocus();
        if (!m_mode.isIdle()) {
            m_operatorBar->askAtBeginning();
        }
        showDefects();
        offerThinning();
        if (m_mode.isJoined() && m_mode.isIdle()) { // else the menus tell why
            tell(m_mode.whyNot(OperationalMode::Deed::Operate));
        }
        return;
    }
    const QString reason =
        isServerAddress(m_nodesPath)
            ? tr("Whether they are watched is not known here. It is tried again all the time. %1")
                  .arg(opened.message())
        : m_isShared ? opened.message() // what is no address never becomes one
        : hindrance == Hindrance::InUse
            ? opened.message()
            : tr("The list of stations cannot be used. It stays as it is: %1").arg(opened.message());
    if (m_isShared) {
        m_notices->list().tellUnopened(reason);
    } else {
        m_notices->list().appear(reason, hindrance == Hindrance::Unusable);
    }
    tell(reason);
    if (!m_isShared) {
        showBox(tr("No station is watched") + QLatin1String(".\n\n") + reason);
    }
}

/// What of the list was lost or rebuilt: the status bar would show its last line alone.
void Form_betriebsmodus::showDefects()
{
    if (m_mode.defects().isEmpty()) {
        return;
    }
    const QString defects = m_mode.defects().join(u'\n');
    m_notices->list().tellDefects(defects);
    showBox(tr("Not all of the list of stations is as it was. What is there is watched; what is damaged is "
               "kept under another name, which stands at the end.") +
            QLatin1String("\n\n") + defects);
}

void Form_betriebsmodus::showBox(const QString &message)
{
    // Whoever opens this window raises it afterwards, and the message belongs above it.
    QTimer::singleShot(0, this, [this, message] { Dialog::message(this, m_texts, message); });
}

void Form_betriebsmodus::beginEmptyList()
{
    if (!ask(tr("Begin with an empty list? The one that cannot be used is kept as %1.")
                 .arg(m_mode.unusableKeptAs()))) {
        return;
    }
    const Status begun = m_mode.openEmpty();
    showHindrance(begun);
}

bool Form_betriebsmodus::mayEndWatching()
{
    const bool isAgreed = !m_asksBeforeEnd || qApp->isSavingSession(); // the session's end waits for nobody
    return isAgreed || questionBeforeEnd(m_mode).isEmpty() ||
           askFollowing([this] { return questionBeforeEnd(m_mode); });
}

/// False when it could not be written and the user would rather go on.
bool Form_betriebsmodus::closeList()
{
    delete m_recordWindow;
    m_openAgain->stop();
    m_opening.reset();
    if (!m_mode.isOpen()) {
        return true;
    }
    if (const Status written = m_mode.close(); !written) {
        tell(written.message());
        const QString rest =
            m_mode.keepsChanges()
                ? tr("What changed is kept in its record and is taken up at the next opening.")
                : tr("The record cannot be written either: what changed in this run is lost then.");
        if (!ask(written.message() + u"\n\n" + tr("The list of stations could not be written.") + u' ' +
                 rest + u' ' + tr("Close all the same?"))) {
            return false;
        }
        m_mode.closeWithoutFile();
    }
    return true;
}

void Form_betriebsmodus::closeEvent(QCloseEvent *event)
{
    event->ignore();
    if (isBusy() || m_isHeld) {
        QApplication::beep();
        if (m_isHeld) {
            tell(tr("Stations are being transmitted to"));
        }
        return;
    }
    if (!mayEndWatching()) {
        return;
    }
    const int unwatched = stationsWithoutWatch(m_mode);
    if (!closeList()) {
        return;
    }
    m_counts->stop();
    m_wall->leave(); // its size is not the window's
    SettingsStore().SaveSettings(settingsOwner, settings_sections::operationalMode,
                                 {{geometryKey, QString::fromLatin1(saveGeometry().toBase64())},
                                  {splitterKey, QString::fromLatin1(m_splitter->saveState().toBase64())}});
    event->accept();
    Q_EMIT closed(unwatched);
}

void Form_betriebsmodus::choosePlace()
{
    const QScopedValueRollback busy(m_busy, m_busy + 1);
    PlaceDialog dialog(m_nodesPath, m_services.isPlaceFixed, m_texts, this);
    if (dialog.exec() == QDialog::Accepted && dialog.address() != dialog.addressBefore() &&
        mayEndWatching() && closeList()) {
        Q_EMIT placeWanted(dialog.address());
    }
}

// The tree and the pages

QModelIndex Form_betriebsmodus::chosenStation() const
{
    return m_tree->chosenStation();
}

QString Form_betriebsmodus::chosen() const
{
    return chosenStation().data(StationTree::KeyRole).toString();
}

/// That a station falls silent is no alarm of it, and yet worth knowing.
void Form_betriebsmodus::tellLiveness(const StationEvent &event)
{
    const QString name = m_mode.tree().find(event.kennung).data().toString();
    if (event.kind == StationEvent::Kind::Silent) {
        tell(tr("%1 is silent").arg(name));
    } else if (event.kind == StationEvent::Kind::Alive) {
        tell(tr("%1 is alive").arg(name));
    }
}

void Form_betriebsmodus::showTitle()
{
    QString title = programName + QLatin1String("  ") + m_texts.text(Text::OperationalMode);
    if (m_mode.unreachableSince()) {
        title += QStringLiteral(" – ") + tr("the record cannot be reached");
    } else if (m_mode.unheardSince()) {
        title += QStringLiteral(" – ") + tr("joined, but not heard: %1").arg(m_mode.keeper());
    } else if (m_mode.isJoined() && !m_mode.unwatchedSince()) {
        title += QStringLiteral(" – ") + tr("joined: %1").arg(m_mode.keeper());
    } else if (m_mode.isJoined()) {
        title += QStringLiteral(" – ") + tr("nobody watches the stations");
    }
    setWindowTitle(titleWithAlarms(title, m_alarms.unacknowledged()));
}

void Form_betriebsmodus::tell(const QString &line)
{
    m_messages->tell(line);
}

/// While the list is closed and opened again, another one is the current one for moments.
void Form_betriebsmodus::rememberChosen()
{
    if (m_mode.isOpen()) {
        m_chosenName = chosenStation().data(Qt::EditRole).toString();
    }
}

/// The station that was chosen before the list was opened again, else the first.
void Form_betriebsmodus::chooseAgain()
{
    const StationTree &tree = m_mode.tree();
    QModelIndex chosen = tree.index(0, 0);
    for (int row = 0; row < tree.rowCount() && !m_chosenName.isEmpty(); ++row) {
        const QModelIndex station = tree.index(row, 0);
        if (station.data(Qt::EditRole).toString() == m_chosenName) {
            chosen = station;
            break;
        }
    }
    m_tree->choose(chosen, StationTreeView::Chooser::Program);
}

// What the menus do

void Form_betriebsmodus::enableActions()
{
    m_alarmBar->setAcceptable(m_mode.whyNot(OperationalMode::Deed::Operate));
    using Deed = OperationalMode::Deed;
    m_menus->setHindrances(
        {m_mode.isJoined() ? tr("Done in the program that watches the stations") : QString(),
         m_mode.whyNot(Deed::Operate), m_mode.whyNot(Deed::Administer), m_mode.whyNotForAll()});
    m_commands->showChosen(m_mode.hindrance() == OperationalMode::Hindrance::None);
}

bool Form_betriebsmodus::ask(const QString &question)
{
    const QScopedValueRollback busy(m_busy, m_busy + 1);
    return Dialog::questionOfLoss(this, m_texts, question);
}

bool Form_betriebsmodus::askFollowing(const std::function<QString()> &question)
{
    const QScopedValueRollback busy(m_busy, m_busy + 1);
    return Dialog::questionOfLoss(this, m_texts, question);
}

void Form_betriebsmodus::addStation()
{
    const QString kennung = m_mode.addStation(m_texts.text(Text::NewNotification));
    if (kennung.isEmpty()) {
        tell(tr("There is no room for another station"));
        return;
    }
    if (const QModelIndex added = m_mode.tree().find(kennung); added.isValid()) {
        m_tree->choose(added);
    } else {
        tell(tr("The station is added where the stations are watched"));
    }
}

void Form_betriebsmodus::addStations()
{
    const QScopedValueRollback busy(m_busy, m_busy + 1);
    AddStationsDialog dialog(m_mode, m_texts, m_services.askOpen, this);
    connect(&dialog, &AddStationsDialog::statusMessage, this, &Form_betriebsmodus::tell);
    dialog.exec();
}

void Form_betriebsmodus::exportEntries()
{
    const QScopedValueRollback busy(m_busy, m_busy + 1);
    ExportDialog dialog(m_mode.tree(), m_texts, m_commands->chosen(), {m_services.askSave}, this);
    connect(&dialog, &ExportDialog::statusMessage, this, &Form_betriebsmodus::tell);
    dialog.exec();
}

RecordWindow &Form_betriebsmodus::openRecord()
{
    if (!m_recordWindow) {
        FindPage::Services services;
        services.askSave = m_services.askSave;
        services.isMuted = [this] { return m_mute.isMuted(); };
        services.now = [this] { return m_mode.now(); };
        services.groups = [this] { return m_overview->model().groups(); };
        services.showInTree = [this](const RecordLine &line) { return showInTree(line); };
        m_recordWindow = new RecordWindow(m_mode, services);
        m_recordWindow->setLocale(locale());
        connect(m_recordWindow, &RecordWindow::statusMessage, this, &Form_betriebsmodus::tell);
    }
    return *m_recordWindow;
}

void Form_betriebsmodus::showRetention()
{
    const QScopedValueRollback busy(m_busy, m_busy + 1);
    RetentionDialog dialog(m_mode, m_texts, m_services.askSave, this);
    connect(&dialog, &RetentionDialog::statusMessage, this, &Form_betriebsmodus::tell);
    dialog.exec();
}

/// From a million entries on the tree and its file take their time.
void Form_betriebsmodus::offerThinning()
{
    constexpr std::size_t many = 1'000'000;
    const std::size_t entries = m_mode.tree().nodes().count();
    if (entries >= many && m_mode.retention().tree == 0 && !m_mode.recordPath().isEmpty()) {
        constexpr int aYear = 365;
        tell(tr("The tree has %1 entries. Kept for a year, it would have %2 less; the menu %3 offers it.")
                 .arg(locale().toString(static_cast<qulonglong>(entries)),
                      locale().toString(m_mode.entriesOlderThan(aYear)), m_texts.text(Text::Station)));
    }
}

void Form_betriebsmodus::renameStation()
{
    if (m_overview->isVisible()) { // names are typed in the tree
        m_views->show(false);
    }
    if (m_tree->isVisible()) {
        const QModelIndex station = chosenStation();
        m_tree->choose(station);
        m_tree->edit(station);
    }
}

void Form_betriebsmodus::configure()
{
    if (m_tree->chosenCount() > 1) {
        configureSeveral();
        return;
    }
    const cStation *station = m_mode.station(chosen());
    if (station == nullptr || station->hostAddress().isEmpty()) {
        tell(tr("The station has no address yet"));
        return;
    }
    Q_EMIT configurationWanted(station->hostAddress(), station->kennung());
}

/// Those that are chosen, where several are, else those that are shown.
void Form_betriebsmodus::configureSeveral()
{
    QStringList wanted = m_tree->chosenStations();
    if (wanted.size() < 2) {
        wanted = m_overview->isVisible() ? shownKeys(m_overview->model()) : m_tree->shownKeys();
    }
    Q_EMIT fleetWanted(wanted);
}

} // namespace ktr
