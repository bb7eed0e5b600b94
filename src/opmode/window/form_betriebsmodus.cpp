#include "opmode/window/form_betriebsmodus.h"

#include "look/icons.h"
#include "look/message_dialog.h"
#include "look/mnemonics.h"
#include "look/outside_texts.h"
#include "look/program_name.h"
#include "opmode/window/add_stations_dialog.h"
#include "opmode/window/alarm_bar.h"
#include "opmode/window/export_dialog.h"
#include "opmode/window/history/history_page.h"
#include "opmode/window/list_banner.h"
#include "opmode/window/message_line.h"
#include "opmode/window/notifications/notification_page.h"
#include "opmode/window/station_page.h"
#include "opmode/window/station_tree_view.h"
#include "opmode/window/values_page.h"
#include "platform/settings_store.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScopedValueRollback>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace ktr {

namespace {

const QString storeSection = QStringLiteral("OperationalMode");
const QString geometryKey = QStringLiteral("geometry");
const QString splitterKey = QStringLiteral("splitter");
constexpr QSize comfortableSize(1180, 740);
constexpr QSize smallest(600, 360);
constexpr int countMs = 250;
constexpr int treeWidth = 320;

} // namespace

Form_betriebsmodus::Form_betriebsmodus(OperationalMode &mode, const TextTable &texts,
                                       const Services &services, QWidget *parent)
    : QMainWindow(parent),
      m_mode(mode),
      m_texts(texts),
      m_services(services),
      m_acknowledging(mode.tree(), texts,
                      [&mode](const QModelIndexList &entries) { return mode.acknowledge(entries); }),
      m_alarms(mode.tree(), services.timers),
      m_sound(m_alarms, services.timers),
      m_notifier(m_alarms, services.timers, *this)
{
    showOutsideTextsPlain(*qApp);
    setLocale(services.locale);
    setObjectName(QStringLiteral("Form_betriebsmodus"));
    keepOpenWhileAskingForFiles();
    setWindowIcon(icon(IconName::Application));
    buildMenus();
    layOut();
    connectAlarms();
    connect(&m_mode, &OperationalMode::statusMessage, this, &Form_betriebsmodus::tell);
    connect(&m_mode, &OperationalMode::recovered, m_messages, &MessageLine::pin);
    connect(&m_mode, &OperationalMode::happened, this, &Form_betriebsmodus::tellLiveness);
    connect(&m_mode, &OperationalMode::stationChanged, this, [this](const QString &kennung) {
        if (kennung == chosen()) {
            enableActions();
        }
        if (!m_countTimer.isActive()) { // counting takes longer the more stations there are
            m_countTimer.start(countMs);
        }
    });
    m_countTimer.setSingleShot(true);
    connect(&m_countTimer, &QTimer::timeout, this, &Form_betriebsmodus::showCounts);
    setMinimumSize(smallest);
    constexpr QSize frame(16, 56); // what the window manager puts around it, at most
    resize(comfortableSize.boundedTo(screen()->availableSize() - frame));
    const SettingsStore store;
    const auto kept = [&store](const QString &key) {
        return QByteArray::fromBase64(store.GetSetting(settingsOwner, storeSection, key).toLatin1());
    };
    restoreGeometry(kept(geometryKey));
    m_splitter->restoreState(kept(splitterKey));
    applyTexts();
}

Form_betriebsmodus::~Form_betriebsmodus()
{
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
    m_pages = new QTabWidget(m_splitter);
    m_pages->setObjectName(QStringLiteral("TabStrip_pages"));
    m_pages->setDocumentMode(true);
    buildPages();
    m_splitter->addWidget(layOutTree());
    m_splitter->addWidget(m_pages);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setSizes({treeWidth, comfortableSize.width() - treeWidth});
    auto *body = new QWidget(this);
    auto *column = new QVBoxLayout(body);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_alarmBar = new AlarmBar(m_alarms, m_mode.tree(), m_acknowledging, m_texts, m_services.locale, body);
    // Its room stays free without it: nothing gets away from under the mouse when an alarm comes.
    QSizePolicy barsRoom = m_alarmBar->sizePolicy();
    barsRoom.setRetainSizeWhenHidden(true);
    m_alarmBar->setSizePolicy(barsRoom);
    m_noAlarm = new QLabel(body);
    m_noAlarm->setObjectName(QStringLiteral("lbl_no_alarm"));
    m_noAlarm->setForegroundRole(QPalette::PlaceholderText);
    m_noAlarm->setContentsMargins(16, 0, 16, 0);
    auto *top = new QGridLayout;
    top->addWidget(m_noAlarm, 0, 0);
    top->addWidget(m_alarmBar, 0, 0);
    m_alarmBar->raise();
    m_listBanner = new ListBanner(body);
    connect(m_listBanner, &ListBanner::retryWanted, this, [this] {
        m_mode.closeWithoutFile();
        openList();
    });
    connect(m_listBanner, &ListBanner::emptyWanted, this, &Form_betriebsmodus::beginEmptyList);
    column->addWidget(m_listBanner);
    column->addLayout(top);
    column->addWidget(m_splitter, 1);
    setCentralWidget(body);
    connect(m_pages, &QTabWidget::currentChanged, this, &Form_betriebsmodus::showPage);

    m_counts = new QLabel(this);
    m_counts->setObjectName(QStringLiteral("lbl_counts"));
    m_counts->setContentsMargins(0, 0, 8, 0); // maximised, the corner has no grip
    m_messages = new MessageLine(this);
    statusBar()->addWidget(m_messages, 1);
    statusBar()->addPermanentWidget(m_counts);
}

void Form_betriebsmodus::buildPages()
{
    addPage(new StationPage(m_mode, m_texts));
    m_notifications =
        new NotificationPage(m_mode, m_texts, m_acknowledging, m_services.timers, m_services.locale);
    addPage(m_notifications);
    addPage(new HistoryPage(m_mode, m_texts, m_services.askSave));
    addPage(new ValuesPage(m_mode, m_texts));
}

void Form_betriebsmodus::connectAlarms()
{
    connect(&m_mode, &OperationalMode::alarmRaised, &m_alarms, &AlarmCentre::addAlarm);
    connect(&m_alarms, &AlarmCentre::changed, this, &Form_betriebsmodus::showTitle);
    connect(&m_acknowledging, &Acknowledging::statusMessage, this, &Form_betriebsmodus::tell);
    connect(&m_notifier, &DesktopNotifier::statusMessage, this, &Form_betriebsmodus::tell);
    connect(&m_notifier, &DesktopNotifier::chosen, this, [this] {
        showNormal();
        raise();
        activateWindow();
    });
    connect(m_alarmBar, &AlarmBar::muteChanged, &m_sound, &AlarmSound::setMuted);
    connect(m_alarmBar, &AlarmBar::muteChanged, mnu_stumm, &QAction::setChecked);
    connect(mnu_stumm, &QAction::triggered, m_alarmBar, &AlarmBar::setMuted);
    connect(m_alarmBar, &AlarmBar::entryWanted, this, &Form_betriebsmodus::goTo);
    connect(m_alarmBar, &AlarmBar::allWanted, this, [this] {
        showView(false);
        m_pages->setCurrentWidget(m_notifications);
        m_notifications->showAllAlarms();
    });
}

void Form_betriebsmodus::goTo(const QString &kennung, const QModelIndex &entry)
{
    showView(false);
    m_tree->setCurrentIndex(m_mode.tree().index(0, 0, m_mode.tree().find(kennung)));
    m_notifications->showEntry(entry);
}

void Form_betriebsmodus::addPage(OpmodePage *page)
{
    m_pages->addTab(page, QString());
    m_pageList += page;
    connect(page, &OpmodePage::statusMessage, this, &Form_betriebsmodus::tell);
}

QWidget *Form_betriebsmodus::layOutTree()
{
    auto *side = new QWidget(m_splitter);
    auto *column = new QVBoxLayout(side);
    m_filter = new QLineEdit(side);
    m_filter->setObjectName(QStringLiteral("Text_filter_station"));
    m_filter->setClearButtonEnabled(true);
    m_filter->addAction(icon(IconName::Search), QLineEdit::LeadingPosition);
    m_filterKind = new QComboBox(side);
    m_filterKind->setObjectName(QStringLiteral("Combo_filter_station"));
    m_filterKind->addItems(QStringList(6));
    m_tree = new StationTreeView(m_mode.tree(), side);
    m_tree->setAddressSource([this](const QString &kennung) {
        const cStation *station = m_mode.station(kennung);
        return station == nullptr ? QString() : station->hostAddress();
    });
    column->addWidget(m_filter);
    column->addWidget(m_filterKind);
    column->addWidget(m_tree, 1);
    connect(m_filter, &QLineEdit::textChanged, this, &Form_betriebsmodus::applyFilter);
    connect(m_filterKind, &QComboBox::activated, this, &Form_betriebsmodus::applyFilter);
    connect(m_tree, &StationTreeView::currentNodeChanged, this, &Form_betriebsmodus::showNode);
    connect(m_tree, &StationTreeView::nameRefused, this,
            [this](const QString &name) { tell(StationTreeView::refusalOf(name)); });
    connect(m_tree, &StationTreeView::filtered, this, &Form_betriebsmodus::showCounts);
    connect(&m_mode, &OperationalMode::alarmRaised, m_tree, &StationTreeView::reveal);
    connect(m_tree, &StationTreeView::menuWanted, this, &Form_betriebsmodus::showTreeMenu);
    return side;
}

/// Below the last row it offers nothing that would act on the station that happens to be chosen.
void Form_betriebsmodus::showTreeMenu(const QPoint &place, bool isAboutStation)
{
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("menu_tree"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions(isAboutStation ? m_stationMenu->actions()
                                    : QList{mnu_station_add, mnu_station_list, mnu_station_allonline,
                                            mnu_station_alloffline, mnu_close});
    menu->popup(place);
}

QAction *Form_betriebsmodus::add(QMenu *menu, const char *name, const std::function<void()> &triggered,
                                 const QKeySequence &shortcut)
{
    QAction *action = menu->addAction(QString());
    action->setObjectName(QLatin1String(name));
    action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, triggered);
    return action;
}

void Form_betriebsmodus::buildMenus()
{
    m_stationMenu = menuBar()->addMenu(QString());
    mnu_station_add = add(
        m_stationMenu, "mnu_station_add", [this] { addStation(); }, QKeySequence::New);
    mnu_station_list = add(m_stationMenu, "mnu_station_list", [this] { addStations(); });
    mnu_station_rename = add(
        m_stationMenu, "mnu_station_rename", [this] { renameStation(); }, QKeySequence(Qt::Key_F2));
    mnu_station_del = add(
        m_stationMenu, "mnu_station_del", [this] { deleteStation(); },
        QKeySequence(Qt::CTRL | Qt::Key_Delete));
    m_stationMenu->addSeparator();
    mnu_station_online = add(m_stationMenu, "mnu_station_online",
                             [this] { m_mode.setOnline(chosen(), mnu_station_online->isChecked()); });
    mnu_station_online->setCheckable(true);
    mnu_station_allonline =
        add(m_stationMenu, "mnu_station_allonline", [this] { m_mode.setAllOnline(true); });
    mnu_station_alloffline = add(m_stationMenu, "mnu_station_alloffline", [this] {
        if (ask(tr("Put all stations offline? Their alarms do not arrive until they are online again."))) {
            m_mode.setAllOnline(false);
        }
    });
    m_stationMenu->addSeparator();
    mnu_konfiguration = add(
        m_stationMenu, "mnu_konfiguration", [this] { configure(); }, QKeySequence(Qt::Key_F9));
    mnu_export = add(
        m_stationMenu, "mnu_export", [this] { exportEntries(); },
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E));
    m_stationMenu->addSeparator();
    mnu_close = add(
        m_stationMenu, "mnu_close", [this] { close(); }, QKeySequence::Close);

    m_viewMenu = menuBar()->addMenu(QString());
    mnu_ansicht_normal = add(
        m_viewMenu, "mnu_ansicht_normal", [this] { showView(false); }, QKeySequence(Qt::CTRL | Qt::Key_1));
    mnu_ansicht_treeview = add(
        m_viewMenu, "mnu_ansicht_treeview", [this] { showView(true); }, QKeySequence(Qt::CTRL | Qt::Key_2));
    auto *views = new QActionGroup(this);
    for (QAction *view : {mnu_ansicht_normal, mnu_ansicht_treeview}) {
        view->setCheckable(true);
        views->addAction(view);
    }
    mnu_ansicht_normal->setChecked(true);
    m_viewMenu->addSeparator();
    mnu_stumm = m_viewMenu->addAction(QString());
    mnu_stumm->setObjectName(QStringLiteral("mnu_stumm"));
    mnu_stumm->setCheckable(true);
    mnu_stumm->setChecked(AlarmSound::isMutedInSettings());
    mnu_station_add->setIcon(icon(IconName::Add));
    mnu_station_del->setIcon(icon(IconName::Delete));
}

void Form_betriebsmodus::applyTexts()
{
    const auto text = [this](Text name) { return m_texts.text(name); };
    showTitle();
    m_stationMenu->setTitle(text(Text::Station));
    mnu_station_add->setText(text(Text::AddStation));
    mnu_station_list->setText(tr("Add several..."));
    mnu_station_rename->setText(tr("Rename"));
    mnu_station_del->setText(text(Text::DeleteStation));
    mnu_station_online->setText(text(Text::Online));
    mnu_stumm->setText(tr("Mute alarms"));
    mnu_station_allonline->setText(text(Text::AllOnline));
    mnu_station_alloffline->setText(text(Text::AllOffline));
    mnu_konfiguration->setText(text(Text::ConfigurationMode));
    mnu_export->setText(text(Text::Export) + QLatin1String("..."));
    mnu_close->setText(tr("Close the operational mode"));
    m_viewMenu->setTitle(text(Text::View));
    mnu_ansicht_normal->setText(text(Text::General));
    mnu_ansicht_treeview->setText(text(Text::TreeView));
    m_mode.tree().setCaptions(stationCaptions(m_texts));
    m_alarmBar->applyTexts();
    m_noAlarm->setText(tr("All alarms are acknowledged"));
    m_listBanner->applyTexts();
    m_messages->applyTexts();
    const std::array captions = {Text::Station, Text::Notifications, Text::History, Text::Ip};
    for (int page = 0; page < m_pages->count(); ++page) {
        m_pages->setTabText(page, text(captions[static_cast<std::size_t>(page)]));
        m_pageList[page]->applyTexts();
    }
    m_filter->setPlaceholderText(tr("Find a station (name or address)"));
    m_filter->setAccessibleName(m_filter->placeholderText());
    const QStringList kinds = {tr("All"),
                               tr("In alarm"),
                               tr("Not heard"),
                               tr("Offline"),
                               text(Text::ExclusiveMode),
                               text(Text::PukNeeded)};
    for (int kind = 0; kind < kinds.size(); ++kind) {
        m_filterKind->setItemText(kind, kinds[kind]);
    }
    m_filterKind->setAccessibleName(tr("Stations shown"));
    m_tree->setAccessibleName(tr("Stations"));
    giveMnemonics(menuBar()->actions());
    giveMnemonics(m_stationMenu->actions());
    giveMnemonics(m_viewMenu->actions());
    showCounts();
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
    openList();
}

void Form_betriebsmodus::openList()
{
    showHindrance(m_mode.open(m_nodesPath, OperationalMode::Use::Keep));
}

/// Also when there is none (any more).
void Form_betriebsmodus::showHindrance(const Status &opened)
{
    using Hindrance = OperationalMode::Hindrance;
    const Hindrance hindrance = m_mode.hindrance();
    if (m_mode.stations().Count() == 0 && hindrance != Hindrance::InUse) {
        m_mode.addStation(m_texts.text(Text::NewNotification));
    }
    m_tree->setCurrentIndex(m_mode.tree().index(0, 0));
    applyFilter();
    showCounts(); // at once: until the timer's turn it would say that there are none
    const bool isUsable = hindrance == Hindrance::None;
    m_splitter->setEnabled(isUsable); // what would be done there is kept nowhere
    m_noAlarm->setVisible(isUsable);  // none arrives
    for (QAction *action : m_stationMenu->actions()) {
        action->setEnabled(isUsable || action == mnu_close);
    }
    if (isUsable) {
        m_listBanner->hide();
        enableActions();
        m_tree->setFocus();
        showDefects();
        return;
    }
    const QString reason =
        hindrance == Hindrance::InUse
            ? opened.message()
            : tr("The list of stations cannot be used. It stays as it is: %1").arg(opened.message());
    m_listBanner->appear(reason, hindrance == Hindrance::Unusable);
    tell(reason);
    showBox(tr("No station is watched") + QLatin1String(".\n\n") + reason);
}

/// What of the list was lost or rebuilt: the status bar would show its last line alone.
void Form_betriebsmodus::showDefects()
{
    if (m_mode.defects().isEmpty()) {
        return;
    }
    const QString defects = m_mode.defects().join(u'\n');
    m_listBanner->tellDefects(defects);
    showBox(tr("Not all of the list of stations is as it was. What is there is watched; the damaged file is "
               "kept under another name.") +
            QLatin1String("\n\n") + defects);
}

void Form_betriebsmodus::showBox(const QString &message)
{
    // Whoever opens this window raises it afterwards, and the message belongs above it.
    QTimer::singleShot(0, this, [this, message] { Dialog::message(this, m_texts, message); });
}

void Form_betriebsmodus::beginEmptyList()
{
    if (!ask(tr("Begin with an empty list? The one that cannot be used is kept under another name."))) {
        return;
    }
    const Status begun = m_mode.openEmpty();
    showHindrance(begun);
}

void Form_betriebsmodus::closeEvent(QCloseEvent *event)
{
    event->ignore();
    if (isBusy()) {
        QApplication::beep();
        return;
    }
    if (m_mode.isOpen()) {
        if (const Status written = m_mode.close(); !written) {
            tell(written.message());
            const QString rest =
                m_mode.keepsChanges()
                    ? tr("What changed is kept in its journal and is taken up at the next opening.")
                    : tr("The journal cannot be written either: what changed in this run is lost then.");
            if (!ask(written.message() + u"\n\n" + tr("The list of stations could not be written.") + u' ' +
                     rest + u' ' + tr("Close all the same?"))) {
                return;
            }
            m_mode.closeWithoutFile();
        }
    }
    m_countTimer.stop();
    SettingsStore().SaveSettings(settingsOwner, storeSection,
                                 {{geometryKey, QString::fromLatin1(saveGeometry().toBase64())},
                                  {splitterKey, QString::fromLatin1(m_splitter->saveState().toBase64())}});
    event->accept();
    Q_EMIT closed();
}

// The tree and the pages

QString Form_betriebsmodus::chosen() const
{
    return StationTreeView::stationOf(m_tree->currentIndex()).data(StationTree::KeyRole).toString();
}

void Form_betriebsmodus::showNode(const QModelIndex &node)
{
    const QString kennung = chosen();
    for (OpmodePage *page : m_pageList) {
        if (page->kennung() != kennung) {
            page->showStation(kennung);
        }
    }
    enableActions();
    if (m_isFollowing || !node.isValid()) {
        return;
    }
    const QModelIndex branch =
        node.parent().isValid() && node.parent().parent().isValid() ? node.parent() : node;
    const auto kind = branch.data(StationTree::KindRole).value<NodeKind>();
    const PageIndex page = kind == NodeKind::Notifications ? PageIndex::Notifications
                           : kind == NodeKind::History     ? PageIndex::History
                           : kind == NodeKind::InputValues ? PageIndex::InputValues
                                                           : PageIndex::Station;
    const QScopedValueRollback following(m_isFollowing, true);
    m_pages->setCurrentIndex(static_cast<int>(page));
    if (kind == NodeKind::Notifications && branch != node) {
        m_notifications->showEntry(node);
    }
}

/// The node that a page is about is selected, so that tree and page never tell different things.
void Form_betriebsmodus::showPage(int index)
{
    const QModelIndex station = StationTreeView::stationOf(m_tree->currentIndex());
    if (m_isFollowing || !station.isValid()) {
        return;
    }
    const QScopedValueRollback following(m_isFollowing, true);
    m_tree->setCurrentIndex(index == 0 ? station : m_mode.tree().index(index - 1, 0, station));
}

void Form_betriebsmodus::showView(bool treeOnly)
{
    m_pages->setVisible(!treeOnly);
    (treeOnly ? mnu_ansicht_treeview : mnu_ansicht_normal)->setChecked(true);
}

void Form_betriebsmodus::applyFilter()
{
    m_tree->filter(m_filter->text(), static_cast<StationTreeView::Kind>(m_filterKind->currentIndex()));
}

void Form_betriebsmodus::showCounts()
{
    int alive = 0;
    int silent = 0;
    int offline = 0;
    m_mode.stations().forEach([&](const cStation &station) {
        offline += station.online() ? 0 : 1;
        alive += station.liveness() == cStation::Liveness::Alive ? 1 : 0;
        silent += station.liveness() == cStation::Liveness::Silent ? 1 : 0;
    });
    const int all = m_mode.stations().Count();
    QString counts =
        tr("Stations: %1, alive %2, silent %3, offline %4").arg(all).arg(alive).arg(silent).arg(offline);
    if (const int waiting = all - alive - silent - offline; waiting > 0) {
        counts += tr(", not heard yet %1").arg(waiting);
    }
    if (m_tree->shownStations() != all) {
        counts = tr("shown %1").arg(m_tree->shownStations()) + QStringLiteral("  –  ") + counts;
    }
    m_counts->setText(counts);
    m_counts->setToolTip(tr("Datagrams of strangers, not looked at: %1").arg(m_mode.foreignDatagrams()));
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
    const QString title = programName + QLatin1String("  ") + m_texts.text(Text::OperationalMode);
    setWindowTitle(titleWithAlarms(title, m_alarms.unacknowledged()));
}

void Form_betriebsmodus::tell(const QString &line)
{
    m_messages->tell(line);
}

// What the menus do

void Form_betriebsmodus::enableActions()
{
    const QString kennung = m_mode.hindrance() == OperationalMode::Hindrance::None ? chosen() : QString();
    for (QAction *action : {mnu_station_rename, mnu_station_del, mnu_station_online, mnu_konfiguration}) {
        action->setEnabled(!kennung.isEmpty());
    }
    mnu_station_online->setChecked(m_mode.attributes(kennung).online);
}

bool Form_betriebsmodus::ask(const QString &question)
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
    m_tree->setCurrentIndex(m_mode.tree().find(kennung));
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
    ExportDialog dialog(m_mode.tree(), m_texts, chosen(), {m_services.askSave}, this);
    connect(&dialog, &ExportDialog::statusMessage, this, &Form_betriebsmodus::tell);
    dialog.exec();
}

void Form_betriebsmodus::renameStation()
{
    if (m_tree->isVisible()) {
        const QModelIndex station = StationTreeView::stationOf(m_tree->currentIndex());
        m_tree->setCurrentIndex(station);
        m_tree->edit(station);
    }
}

void Form_betriebsmodus::deleteStation()
{
    const QString kennung = chosen();
    const QString name = m_mode.tree().find(kennung).data().toString();
    if (ask(tr("Delete the station \"%1\" with its notifications, its history and its values?").arg(name))) {
        m_mode.removeStation(kennung);
        tell(tr("The station \"%1\" was deleted").arg(name));
    }
}

void Form_betriebsmodus::configure()
{
    const cStation *station = m_mode.station(chosen());
    if (station == nullptr || station->hostAddress().isEmpty()) {
        tell(tr("The station has no address yet"));
        return;
    }
    Q_EMIT configurationWanted(station->hostAddress());
}

} // namespace ktr
