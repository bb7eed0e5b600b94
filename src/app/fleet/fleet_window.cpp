#include "app/fleet/fleet_window.h"

#include "config/comparison.h"
#include "config/fields_in_files.h"
#include "lang/text_table.h"
#include "link/command_room.h"
#include "link/conversation_log.h"
#include "link/problems.h"
#include "look/icons.h"
#include "look/kept_place.h"
#include "look/list_views.h"
#include "look/message_dialog.h"
#include "look/mnemonics.h"
#include "look/problem_label.h"
#include "look/window_place.h"
#include "opmode/operational_mode.h"
#include "platform/output_check.h"
#include "platform/settings_store.h"
#include "transmissions/transmission_texts.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QCompleter>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSortFilterProxyModel>
#include <QSpinBox>
#include <QSplitter>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace ktr {

namespace {

const QString fleetSection = QStringLiteral("Fleet");
const QString fleetGeometryKey = QStringLiteral("geometry");
const QString fleetFolderKey = QStringLiteral("folder");
const QString fleetReceiptsKey = QStringLiteral("receipts");
constexpr QSize usualFleetSize(1000, 640);
constexpr QSize leastFleetSize(720, 420);

QStandardItem *cellOf(const QString &text)
{
    auto *cell = new QStandardItem(shortText(text));
    cell->setEditable(false);
    cell->setToolTip(text);
    return cell;
}

QString pathOfField(const ComparedField &field)
{
    return NamedField{.key = field.key, .page = field.page, .entry = field.entry, .label = field.label}
        .path();
}

} // namespace

FleetWindow::FleetWindow(Services services, const QStringList &ticked, QWidget *parent)
    : QWidget(parent, Qt::Window),
      m_services(std::move(services)),
      m_names(fieldNamesOfAllLanguages(m_services.means.texts)),
      m_model(stationsOf(m_services.means.mode, ticked)),
      m_run(m_services.means, m_model),
      m_shown(new QSortFilterProxyModel(this)),
      m_differences(new QStandardItemModel(this))
{
    setObjectName(QStringLiteral("Form_fleet"));
    setWindowIcon(icon(IconName::Application));
    if (parent != nullptr) { // a window has the locale of no other
        setLocale(parent->locale());
    }
    m_shown->setSourceModel(&m_model);
    m_shown->setFilterKeyColumn(-1); // any
    m_shown->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_shown->setSortCaseSensitivity(Qt::CaseInsensitive);
    layOut();
    connectParts();
    applyTexts();
    setMinimumSize(leastFleetSize);
    constexpr QSize frame(16, 56); // what the window manager puts around it, at most
    resize(usualFleetSize.boundedTo(screen()->availableSize() - frame));
    const SettingsStore store;
    restorePlace(*this, QByteArray::fromBase64(
                            store.GetSetting(settingsOwner, fleetSection, fleetGeometryKey).toLatin1()));
    m_receipts->setText(store.GetSetting(settingsOwner, fleetSection, fleetReceiptsKey));
    m_folder->setText(store.GetSetting(settingsOwner, fleetSection, fleetFolderKey));
    if (m_model.rowCount() > 0) {
        m_list->setCurrentIndex(m_shown->index(0, 0));
    }
    takeFolder();
    m_list->setFocus();
}

FleetWindow::~FleetWindow()
{
    m_run.disconnect(this);
    m_model.disconnect(this);
}

std::vector<FleetRow> FleetWindow::stationsOf(const OperationalMode &mode, const QStringList &ticked)
{
    std::vector<FleetRow> rows;
    const StationTree &tree = mode.tree();
    for (int row = 0; row < tree.rowCount(); ++row) {
        const QModelIndex node = tree.index(row, 0);
        const QString key = node.data(StationTree::KeyRole).toString();
        if (const cStation *station = mode.station(key)) {
            rows.push_back({.key = key,
                            .station = {node.data(Qt::EditRole).toString(), station->hostAddress()},
                            .isTicked = ticked.contains(key)});
        }
    }
    return rows;
}

// Parts of the window

QPushButton *FleetWindow::button(const char *name, void (FleetWindow::*clicked)())
{
    auto *made = named<QPushButton>(QLatin1String(name), this);
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, clicked);
    return made;
}

void FleetWindow::layOut()
{
    m_list = named<QTableView>(QStringLiteral("Table_fleet"), this);
    m_list->setModel(m_shown);
    setUpRows(*m_list);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setSortingEnabled(true);
    m_list->sortByColumn(-1, Qt::AscendingOrder);
    m_list->horizontalHeader()->setStretchLastSection(true);
    const int letter = fontMetrics().averageCharWidth();
    const QList<int> letters{20, 20, 18, 36};
    for (int column = 0; column < letters.size(); ++column) {
        m_list->setColumnWidth(column, letter * letters[column]);
    }
    m_notice = new EmptyNotice(QStringLiteral("Label_fleet_empty"), *m_list);
    m_notice->setVisible(m_model.rowCount() == 0);

    auto *below = new QWidget(this);
    m_detailsTitle = named<QLabel>(QStringLiteral("Label_fleet_details"), below);
    m_detailsTitle->setTextFormat(Qt::PlainText);
    m_details = named<QTableView>(QStringLiteral("Table_fleet_details"), below);
    m_details->setModel(m_differences);
    setUpRows(*m_details);
    m_details->horizontalHeader()->setStretchLastSection(true);
    auto *details = new QVBoxLayout(below);
    details->setContentsMargins(0, 0, 0, 0);
    details->addWidget(m_detailsTitle);
    details->addWidget(m_details, 1);

    auto *splitter = new QSplitter(Qt::Vertical, this);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(m_list);
    splitter->addWidget(below);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);

    auto *all = new QVBoxLayout(this);
    all->addLayout(filesRow());
    all->addLayout(fieldRow());
    all->addLayout(stationsRow());
    all->addWidget(splitter, 1);
    all->addLayout(optionsRow());
    m_problem = new ProblemLabel(this);
    m_problem->setObjectName(QStringLiteral("Label_fleet_problem"));
    all->addWidget(m_problem);
    all->addLayout(buttonsRow());
}

QLayout *FleetWindow::filesRow()
{
    m_folderLabel = new QLabel(this);
    m_folder = named<QLineEdit>(QStringLiteral("Text_fleet_folder"), this);
    addClearButton(*m_folder);
    m_folderLabel->setBuddy(m_folder);
    m_chooseFolder = button("Cmd_fleet_folder", &FleetWindow::chooseFolder);
    m_chooseFile = button("Cmd_fleet_file", &FleetWindow::chooseFile);
    auto *row = new QHBoxLayout;
    row->addWidget(m_folderLabel);
    row->addWidget(m_folder, 1);
    row->addWidget(m_chooseFolder);
    row->addWidget(m_chooseFile);
    return row;
}

QLayout *FleetWindow::fieldRow()
{
    m_fieldLabel = new QLabel(this);
    m_field = named<QLineEdit>(QStringLiteral("Text_fleet_field"), this);
    auto *completer = new QCompleter(m_names.all(), this);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setFilterMode(Qt::MatchContains);
    m_field->setCompleter(completer);
    m_fieldLabel->setBuddy(m_field);
    m_value = named<QLineEdit>(QStringLiteral("Text_fleet_value"), this);
    m_set = button("Cmd_fleet_set", &FleetWindow::setField);
    auto *row = new QHBoxLayout;
    row->addWidget(m_fieldLabel);
    row->addWidget(m_field, 3);
    row->addWidget(m_value, 2);
    row->addWidget(m_set);
    return row;
}

QLayout *FleetWindow::stationsRow()
{
    m_filter = searchField(QStringLiteral("Text_fleet_filter"), this);
    m_all = named<QCheckBox>(QStringLiteral("Check_fleet_all"), this);
    m_count = named<QLabel>(QStringLiteral("Label_fleet_count"), this);
    auto *row = new QHBoxLayout;
    row->addWidget(m_filter, 1);
    row->addWidget(m_all);
    row->addWidget(m_count);
    return row;
}

QLayout *FleetWindow::optionsRow()
{
    m_changesOnly = named<QCheckBox>(QStringLiteral("Check_fleet_changes"), this);
    m_changesOnly->setChecked(true);
    m_atOnceLabel = new QLabel(this);
    m_atOnce = named<QSpinBox>(QStringLiteral("Spin_fleet_at_once"), this);
    constexpr int most = 500;
    constexpr int usual = 50;
    m_atOnce->setRange(1, most);
    m_atOnce->setValue(usual);
    m_atOnceLabel->setBuddy(m_atOnce);
    m_receiptsLabel = new QLabel(this);
    m_receipts = named<QLineEdit>(QStringLiteral("Text_fleet_receipts"), this);
    addClearButton(*m_receipts);
    m_receiptsLabel->setBuddy(m_receipts);
    m_chooseReceipts = button("Cmd_fleet_receipts", &FleetWindow::chooseReceipts);
    auto *row = new QHBoxLayout;
    row->addWidget(m_changesOnly);
    row->addWidget(m_atOnceLabel);
    row->addWidget(m_atOnce);
    row->addWidget(m_receiptsLabel);
    row->addWidget(m_receipts, 1);
    row->addWidget(m_chooseReceipts);
    return row;
}

QLayout *FleetWindow::buttonsRow()
{
    m_told = named<QLabel>(QStringLiteral("Label_fleet_told"), this);
    m_told->setTextFormat(Qt::PlainText);
    m_told->setWordWrap(true);
    m_progress = named<QProgressBar>(QStringLiteral("Progress_fleet"), this);
    m_progress->setTextVisible(false);
    constexpr int narrow = 120;
    m_progress->setFixedWidth(narrow);
    m_progress->hide();
    m_transmit = button("Cmd_fleet_transmit", &FleetWindow::transmit);
    m_transmit->setIcon(icon(IconName::Transmit));
    m_cancel = named<QPushButton>(QStringLiteral("Cmd_fleet_cancel"), this);
    m_cancel->setAutoDefault(false);
    m_retry = button("Cmd_fleet_retry", &FleetWindow::retry);
    m_results = button("Cmd_fleet_results", &FleetWindow::saveResults);
    m_close = named<QPushButton>(QStringLiteral("Cmd_fleet_close"), this);
    m_close->setAutoDefault(false);
    auto *row = new QHBoxLayout;
    row->addWidget(m_told, 1);
    row->addWidget(m_progress);
    for (QPushButton *each : {m_transmit, m_cancel, m_retry, m_results, m_close}) {
        row->addWidget(each);
    }
    return row;
}

void FleetWindow::connectParts()
{
    connect(m_cancel, &QPushButton::clicked, &m_run, &FleetRun::cancel);
    connect(m_close, &QPushButton::clicked, this, &QWidget::close);
    connect(m_folder, &QLineEdit::returnPressed, this, &FleetWindow::takeFolder);
    connect(m_value, &QLineEdit::returnPressed, this, &FleetWindow::setField);
    connect(m_field, &QLineEdit::returnPressed, m_value, [this] { m_value->setFocus(); });
    for (QLineEdit *field : {m_field, m_value}) {
        connect(field, &QLineEdit::textChanged, this, &FleetWindow::showState);
    }
    goDownInto(*m_filter, *m_list);
    connect(m_filter, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_shown->setFilterFixedString(text.trimmed());
        showState();
    });
    connect(m_all, &QCheckBox::clicked, this, &FleetWindow::tickShown);
    connect(m_changesOnly, &QCheckBox::toggled, &m_model, &FleetModel::setChangesOnly);
    connect(m_list->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &FleetWindow::showDetails);
    auto *space = new QShortcut(Qt::Key_Space, m_list);
    space->setContext(Qt::WidgetShortcut);
    connect(space, &QShortcut::activated, this, &FleetWindow::toggleTicks);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, m_filter,
            [this] { m_filter->setFocus(Qt::ShortcutFocusReason); });
    constexpr int moment = 100;
    m_stateTimer.setSingleShot(true);
    m_stateTimer.setInterval(moment);
    connect(&m_stateTimer, &QTimer::timeout, this, &FleetWindow::showState);
    const auto soon = [this] {
        if (!m_stateTimer.isActive()) {
            m_stateTimer.start();
        }
    };
    connect(&m_model, &FleetModel::ticksChanged, this, soon);
    connect(&m_model, &FleetModel::dataChanged, this, soon);
    connect(&m_run, &FleetRun::progressed, this, soon);
    connect(&m_run, &FleetRun::finished, this, &FleetWindow::finish);
    connect(&m_run, &FleetRun::troubled, this, [this](const QString &why) {
        m_trouble = why;
        m_problem->tell(why);
    });
}

void FleetWindow::applyTexts()
{
    setWindowTitle(tr("Transmit to several stations"));
    m_folderLabel->setText(tr("Files in:"));
    m_folder->setPlaceholderText(tr("a folder; without one the files transmitted last"));
    m_folder->setToolTip(tr("A station's file has its name as identifier, or its address"));
    m_chooseFile->setToolTip(tr("The file of the station that is chosen in the list"));
    m_fieldLabel->setText(tr("Set in them:"));
    m_field->setPlaceholderText(tr("Field"));
    m_field->setAccessibleName(tr("Field"));
    m_field->setToolTip(tr("As on the pages (\"LV 4/Notification\") or as in the file; \"number 1\""));
    m_value->setPlaceholderText(tr("Value"));
    m_value->setAccessibleName(tr("Value"));
    m_set->setToolTip(tr("Saves the value in the files of the ticked stations: in all of them or in none"));
    m_filter->setPlaceholderText(tr("Find stations"));
    m_filter->setAccessibleName(m_filter->placeholderText());
    m_list->setAccessibleName(tr("Stations"));
    m_list->setToolTip(tr("The space bar ticks the stations that are chosen"));
    m_notice->setText(tr("There are no stations"));
    m_details->setAccessibleName(tr("Differences"));
    m_changesOnly->setToolTip(tr("All is sent to a module of which it is not proved what it holds"));
    m_atOnceLabel->setText(tr("At a time:"));
    m_receiptsLabel->setText(tr("Receipts in:"));
    m_receipts->setPlaceholderText(tr("none"));
    m_receipts->setToolTip(tr("A PDF for each transmission"));
    m_differences->setHorizontalHeaderLabels({tr("Field"), tr("The module holds"), tr("It gets")});
    m_model.refresh();
    showState();
    showDetails();
}

// Files

QList<FleetStation> FleetWindow::stations() const
{
    QList<FleetStation> all;
    for (const FleetRow &row : m_model.rows()) {
        all += row.station;
    }
    return all;
}

void FleetWindow::chooseFolder()
{
    if (const QString folder = m_services.askFolder(m_folder->text()); !folder.isEmpty()) {
        m_folder->setText(folder);
        takeFolder();
    }
}

void FleetWindow::chooseReceipts()
{
    if (const QString folder = m_services.askFolder(m_receipts->text()); !folder.isEmpty()) {
        m_receipts->setText(folder);
    }
}

void FleetWindow::chooseFile()
{
    const int row = current();
    const QString file = row < 0 ? QString() : m_services.askOpen(QStringLiteral("*.xml|*.xml"));
    if (!file.isEmpty() && !m_run.isRunning()) {
        m_inFolders.clear();
        load(row, file);
        m_model.tick({row}, true);
        showDetails();
    }
}

void FleetWindow::takeFolder()
{
    const FleetRun::Means &means = m_services.means;
    const QString folder = m_folder->text().trimmed();
    SettingsStore().SaveSetting(settingsOwner, fleetSection, fleetFolderKey, folder);
    if (!folder.isEmpty()) {
        tell({}, QFileInfo(folder).isDir() ? QString() : tr("%1 is no folder").arg(folder));
        assign(filesOfStations(stations(), folder, means.environment));
        return;
    }
    tell({});
    means.memory.ask<QList<FileOfStation>>(
        this, [all = stations()](TransmissionTable &table) { return filesTransmittedTo(all, table); },
        [](const Status &) { return QList<FileOfStation>(); },
        [this](const QList<FileOfStation> &files) {
            if (m_folder->text().trimmed().isEmpty() && !m_run.isRunning()) {
                assign(files);
            }
        });
}

/// A folder is read once for all its files; what is assigned or changed anew is read anew.
QList<Neighbour> FleetWindow::neighboursOf(const QString &file)
{
    const QString folder = QFileInfo(file).absolutePath();
    if (!m_inFolders.contains(folder)) {
        m_inFolders.insert(folder, m_neighbours.in(folder));
    }
    return Neighbours::beside(file, m_inFolders.value(folder));
}

void FleetWindow::assign(const QList<FileOfStation> &files)
{
    m_inFolders.clear();
    for (int row = 0; row < m_model.rowCount(); ++row) {
        const FileOfStation file = files.value(row);
        if (file.file.isEmpty()) {
            m_model.change(row, [&file](FleetRow &each) {
                each.entry = {};
                each.noFile = file.trouble;
            });
        } else {
            load(row, file.file);
        }
    }
    showDetails();
}

void FleetWindow::load(int row, const QString &file)
{
    m_model.change(row, [&](FleetRow &each) {
        each.entry = {.place = each.station.name, .file = file, .address = each.station.address};
        loadEntry(each.entry, m_services.means.environment);
        each.look = each.isUsable() ? lookAtStation(each.entry.configuration, neighboursOf(file),
                                                    m_services.means.environment)
                                    : StationLook();
        each.isLooked = false;
    });
    look(row);
}

/// What the memory proves of it.
void FleetWindow::look(int row)
{
    const FleetRow &wanted = m_model.at(row);
    if (!wanted.isUsable()) {
        return;
    }
    m_services.means.memory.ask<StationLook>(
        this,
        [known = wanted.look, configuration = wanted.entry.configuration,
         environment = m_services.means.environment](TransmissionTable &table) {
            return withMemory(known, configuration, table, environment);
        },
        [known = wanted.look](const Status &) { return known; },
        [this, row, checksum = wanted.entry.checksum](const StationLook &look) {
            if (m_model.at(row).entry.checksum != checksum) {
                return; // another file meanwhile
            }
            m_model.change(row, [&look](FleetRow &each) {
                each.look = look;
                each.isLooked = true;
            });
            if (row == current()) {
                showDetails();
            }
        });
}

void FleetWindow::setField()
{
    const QList<int> rows = m_model.ticked(&FleetRow::isUsable);
    const FieldNames::Found found = m_names.find(m_field->text());
    if (found.field == nullptr) {
        tell({}, found.complaint);
        m_field->setFocus();
        return;
    }
    if (found.field->isStamp) {
        tell({}, tr("%1 is written by every edit").arg(found.field->path()));
        return;
    }
    const FieldAssignment assignment{*found.field, m_value->text()};
    FieldsInFiles files(m_services.means.environment, {assignment}, roomCheck());
    bool areSound = !rows.isEmpty() && !m_run.isRunning();
    for (const int row : rows) {
        areSound = files.add(m_model.at(row).entry.file) && areSound;
    }
    const Status saved = areSound ? files.save() : Status::failed(tr("Nothing was saved"));
    constexpr qsizetype most = 3; // the others say the same, mostly
    QStringList lines = files.told().first(std::min(most, files.told().size()));
    if (files.told().size() > most) {
        lines += QStringLiteral("…");
    }
    if (!saved) {
        lines += saved.message();
    }
    m_inFolders.clear();
    for (const int row : rows) {
        load(row, QString(m_model.at(row).entry.file));
    }
    tell(saved ? tr("Changed: %1 of %2 files").arg(files.changes().size()).arg(rows.size()) : QString(),
         lines.join(u'\n'));
    showDetails();
}

// Transmitting

void FleetWindow::transmit()
{
    begin(m_model.ticked(&FleetRow::isUsable));
}

void FleetWindow::retry()
{
    begin(m_model.ticked([](const FleetRow &row) { return row.isUsable() && row.hasFailed(); }));
}

void FleetWindow::begin(QList<int> rows)
{
    if (m_run.isRunning()) {
        return;
    }
    QList<FleetEntry> entries;
    m_inFolders.clear();
    for (const int row : std::as_const(rows)) { // as they are now
        const QString before = m_model.at(row).entry.checksum;
        FleetEntry entry = m_model.at(row).entry;
        entry.station.clear();
        loadEntry(entry, m_services.means.environment);
        if (entry.checksum != before) {
            load(row, entry.file);
        }
        entries += entry;
    }
    rows.removeIf([this](int row) { return !m_model.at(row).isUsable(); });
    const QStringList faults = faultsOfEntries(entries);
    const QString receipts = m_receipts->text().trimmed();
    if (!faults.isEmpty()) {
        constexpr qsizetype most = 4;
        tell({}, faults.first(std::min(most, faults.size())).join(u'\n'));
        return;
    }
    const Status usable = receipts.isEmpty() ? Status::done() : makeOutputFolder(receipts);
    if (!usable) {
        tell({}, usable.message());
        return;
    }
    if (rows.isEmpty() || !mayLend(rows)) {
        return;
    }
    SettingsStore().SaveSetting(settingsOwner, fleetSection, fleetReceiptsKey, receipts);
    m_trouble = doubtsAboutEntries(entries).join(u'\n');
    tell({}, m_trouble);
    m_model.setLocked(true);
    m_run.start(rows, {m_changesOnly->isChecked(), m_atOnce->value(), receipts});
    Q_EMIT runningChanged(true);
    showState();
}

/// A module answers one program at a time.
bool FleetWindow::mayLend(const QList<int> &rows)
{
    const auto watched = std::ranges::count_if(
        rows, [this](int row) { return m_services.means.mode.attributes(m_model.at(row).key).online; });
    return watched == 0 ||
           Dialog::questionOfLoss(
               this, m_services.means.texts,
               tr("%1 of %2 stations are watched in the operational mode. Each is let go of while it is "
                  "transmitted to, and watched again after that; its alarms do not arrive meanwhile.")
                   .arg(watched)
                   .arg(rows.size()));
}

void FleetWindow::finish()
{
    m_model.setLocked(false);
    const auto whole = std::ranges::count_if(
        m_model.rows(), [](const FleetRow &row) { return row.isTicked && row.result.isWhole(); });
    tell(tr("%1 of %2 stations are whole, after %3 s")
             .arg(whole)
             .arg(m_model.ticked(&FleetRow::isUsable).size())
             .arg(locale().toString(m_run.seconds(), 'f', 1)),
         m_trouble);
    for (int row = 0; row < m_model.rowCount(); ++row) {
        if (m_model.at(row).isIn(FleetRow::State::Ended)) {
            look(row);
        }
    }
    Q_EMIT runningChanged(false);
    showState();
}

void FleetWindow::saveResults()
{
    QList<FleetResult> results;
    for (const FleetRow &row : m_model.rows()) {
        if (row.isIn(FleetRow::State::Ended)) {
            results += row.result;
        }
    }
    const QString path = m_services.askSave(tr("Results"), QStringLiteral("*.csv|*.csv"));
    if (!path.isEmpty()) {
        const Status written = writeResults(path, results);
        tell(written ? tr("Written: %1").arg(path) : QString(), written ? QString() : written.message());
    }
}

// What is shown

int FleetWindow::current() const
{
    const QModelIndex index = m_shown->mapToSource(m_list->currentIndex());
    return index.isValid() ? index.row() : -1;
}

QList<int> FleetWindow::shown() const
{
    QList<int> rows;
    for (int row = 0; row < m_shown->rowCount(); ++row) {
        rows += m_shown->mapToSource(m_shown->index(row, 0)).row();
    }
    return rows;
}

void FleetWindow::toggleTicks()
{
    QList<int> rows;
    for (const QModelIndex &line : chosenLines(*m_list)) {
        rows += m_shown->mapToSource(line).row();
    }
    const bool areAll = std::ranges::all_of(rows, [this](int row) { return m_model.at(row).isTicked; });
    m_model.tick(rows, !areAll);
}

void FleetWindow::tickShown(bool on)
{
    m_model.tick(shown(), on);
    showState();
}

void FleetWindow::tell(const QString &line, const QString &problem)
{
    m_told->setText(line);
    m_problem->tell(problem);
}

void FleetWindow::showState()
{
    const bool isRunning = m_run.isRunning();
    const QList<int> rows = shown();
    const auto ticked = std::ranges::count_if(rows, [this](int row) { return m_model.at(row).isTicked; });
    const Qt::CheckState state = ticked == 0             ? Qt::Unchecked
                                 : ticked == rows.size() ? Qt::Checked
                                                         : Qt::PartiallyChecked;
    m_all->setTristate(state == Qt::PartiallyChecked); // a click gives all or none, never some
    m_all->setCheckState(state);
    const auto usable = m_model.ticked(&FleetRow::isUsable).size();
    const auto failed =
        m_model.ticked([](const FleetRow &row) { return row.isUsable() && row.hasFailed(); }).size();
    m_count->setText(tr("%1 ticked, %2 with a file").arg(m_model.ticked().size()).arg(usable));
    const QList<QAbstractButton *> captioned{m_chooseFolder, m_chooseFile,     m_set,      m_all,
                                             m_changesOnly,  m_chooseReceipts, m_transmit, m_cancel,
                                             m_retry,        m_results,        m_close};
    const QStringList captions = withMnemonics(
        {tr("Folder..."), tr("File..."), tr("Set in %1 files").arg(usable), tr("All that are shown"),
         tr("Only what differs"), tr("Folder for receipts..."), tr("Transmit to %1").arg(usable),
         tr("Cancel"), tr("Retry %1").arg(failed), tr("Results..."), tr("Close")});
    for (qsizetype i = 0; i < captioned.size(); ++i) {
        captioned[i]->setText(captions[i]);
    }
    for (QWidget *each : std::initializer_list<QWidget *>{m_folder, m_chooseFolder, m_all, m_changesOnly,
                                                          m_atOnce, m_receipts, m_chooseReceipts}) {
        each->setEnabled(!isRunning);
    }
    m_chooseFile->setEnabled(!isRunning && current() >= 0);
    m_set->setEnabled(!isRunning && usable > 0 && !m_field->text().trimmed().isEmpty());
    m_transmit->setEnabled(!isRunning && usable > 0);
    m_cancel->setEnabled(isRunning);
    m_retry->setEnabled(!isRunning && failed > 0);
    m_results->setEnabled(!isRunning && std::ranges::any_of(m_model.rows(), [](const FleetRow &row) {
        return row.isIn(FleetRow::State::Ended);
    }));
    m_progress->setVisible(isRunning);
    if (isRunning) {
        m_progress->setRange(0, m_run.all());
        m_progress->setValue(m_run.ended());
        m_told->setText(tr("%1 of %2 have ended, %3 s")
                            .arg(m_run.ended())
                            .arg(m_run.all())
                            .arg(m_run.seconds(), 0, 'f', 0));
    }
}

/// Of the chosen station the fields that differ, and its problems.
void FleetWindow::showDetails()
{
    const KeptPlace place(*m_details, [](const QModelIndex &line) { return line.data().toString(); });
    m_differences->removeRows(0, m_differences->rowCount());
    const int row = current();
    if (row < 0 || !m_model.at(row).isUsable()) {
        m_detailsTitle->setText(row < 0 ? QString() : m_model.at(row).station.name);
        return;
    }
    const FleetRow &chosen = m_model.at(row);
    const Environment &environment = m_services.means.environment;
    if (chosen.look.held) {
        for (const ComparedField &field :
             compareConfigurations(chosen.entry.configuration, *chosen.look.held,
                                   {m_services.means.texts, environment.locale})) {
            m_differences->appendRow({cellOf(pathOfField(field)), cellOf(field.theirs), cellOf(field.mine)});
        }
    }
    const int differing = m_differences->rowCount();
    for (const Problem &problem :
         findProblems(chosen.entry.configuration, {true, environment.locale, environment.now()},
                      neighboursOf(chosen.entry.file))) {
        m_differences->appendRow({cellOf(tr("Problem: %1").arg(m_names.onPages(problem.place))), cellOf({}),
                                  cellOf(problem.message)});
    }
    m_detailsTitle->setText(
        chosen.look.held
            ? tr("%1: %2 fields differ from what it holds if it tells the version %3")
                  .arg(chosen.station.name)
                  .arg(differing)
                  .arg(logText(chosen.look.version))
            : tr("%1: nothing proves what its module holds, so all is sent").arg(chosen.station.name));
    m_details->resizeColumnToContents(0);
    m_details->resizeColumnToContents(1);
    place.giveBack();
}

// Keys and the end

void FleetWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void FleetWindow::closeEvent(QCloseEvent *event)
{
    if (m_run.isRunning()) {
        event->ignore();
        QApplication::beep();
        tell(m_told->text(), tr("Stations are being transmitted to: cancel that first"));
        return;
    }
    SettingsStore().SaveSetting(settingsOwner, fleetSection, fleetGeometryKey,
                                QString::fromLatin1(saveGeometry().toBase64()));
    event->accept();
}

} // namespace ktr
