#include "app/transmissions_window.h"

#include "lang/text_table.h"
#include "link/conversation_log.h"
#include "look/kept_place.h"
#include "look/list_views.h"
#include "look/message_dialog.h"
#include "look/window_place.h"
#include "platform/files.h"
#include "platform/settings_store.h"
#include "platform/text_rules.h"
#include "printout/receipt.h"
#include "record/record_address.h"
#include "transmissions/held_configuration.h"
#include "transmissions/transmission_texts.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
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

const QString yearsKey = QStringLiteral("transmissionYears");
constexpr int mostYears = 100;
constexpr int idRole = Qt::UserRole;
enum ListColumn {
    BegunColumn,
    StationColumn,
    VersionColumn,
    OutcomeColumn,
    LineColumn,
    UserColumn,
    FileColumn
};

QStandardItem *cell(const QString &text)
{
    auto *item = new QStandardItem(shortText(text));
    item->setEditable(false);
    item->setToolTip(item->text() == text ? QString() : text);
    return item;
}

} // namespace

int transmissionYears()
{
    return std::clamp(SettingsStore().GetSetting(settingsOwner, settings_sections::record, yearsKey).toInt(),
                      0, mostYears);
}

bool setTransmissionYears(int years)
{
    return SettingsStore().SaveSetting(settingsOwner, settings_sections::record, yearsKey,
                                       QString::number(years));
}

TransmissionsWindow::TransmissionsWindow(Services services, QWidget *parent)
    : QWidget(parent, Qt::Window),
      m_services(std::move(services)),
      m_rows(new QStandardItemModel(this)),
      m_order(new QSortFilterProxyModel(this)),
      m_steps(new QStandardItemModel(this))
{
    setObjectName(QStringLiteral("Form_transmissions"));
    if (parent != nullptr) { // a window has the locale of no other
        setLocale(parent->locale());
    }
    m_order->setSourceModel(m_rows);
    m_order->setFilterKeyColumn(StationColumn);
    m_order->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_order->setSortCaseSensitivity(Qt::CaseInsensitive);
    layOut();
    constexpr int moment = 300;
    m_reload.setSingleShot(true);
    m_reload.setInterval(moment);
    connect(&m_reload, &QTimer::timeout, this, &TransmissionsWindow::reload);
    connect(&m_services.memory, &TransmissionMemory::kept, &m_reload, [this] { m_reload.start(); });
    connect(m_filter, &QLineEdit::textChanged, m_order, &QSortFilterProxyModel::setFilterFixedString);
    connect(m_list->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &TransmissionsWindow::choose);
    connect(m_open, &QPushButton::clicked, this, &TransmissionsWindow::open);
    connect(m_compare, &QPushButton::clicked, this, &TransmissionsWindow::compare);
    connect(m_export, &QPushButton::clicked, this, &TransmissionsWindow::exportConfiguration);
    connect(m_receipt, &QPushButton::clicked, this, &TransmissionsWindow::writeReceiptFile);
    connect(m_years, &QSpinBox::editingFinished, this, &TransmissionsWindow::chooseYears);
    applyTexts();
    enableButtons();
    reload();
    m_list->setFocus();
}

TransmissionsWindow::~TransmissionsWindow() = default;

QTableView *TransmissionsWindow::table(const QString &name, QAbstractItemModel *model)
{
    auto *view = named<QTableView>(name, this);
    view->setModel(model);
    setUpRows(*view);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->horizontalHeader()->setStretchLastSection(true);
    return view;
}

void TransmissionsWindow::layOut()
{
    m_filter = searchField(QStringLiteral("Text_transmissions_station"), this);
    m_list = table(QStringLiteral("Table_transmissions"), m_order);
    m_list->setSortingEnabled(true);
    m_list->sortByColumn(-1, Qt::AscendingOrder);
    m_notice = new EmptyNotice(QStringLiteral("Label_transmissions_empty"), *m_list);
    goDownInto(*m_filter, *m_list);
    m_commands = table(QStringLiteral("Table_transmissions_commands"), m_steps);
    m_facts = named<QLabel>(QStringLiteral("Label_transmissions_facts"), this);
    m_facts->setTextFormat(Qt::PlainText);
    m_facts->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_facts->setWordWrap(true);
    m_facts->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_told = named<QLabel>(QStringLiteral("Label_transmissions_told"), this);
    m_told->setTextFormat(Qt::PlainText);
    m_told->setWordWrap(true);
    m_told->hide();
    m_keepLabel = new QLabel(this);
    m_years = named<QSpinBox>(QStringLiteral("Spin_transmissions_years"), this);
    m_years->setRange(0, mostYears);
    m_years->setValue(transmissionYears());
    m_years->setEnabled(!isServerAddress(m_services.memory.place()));
    m_keepLabel->setBuddy(m_years);
    m_open = named<QPushButton>(QStringLiteral("Cmd_transmissions_open"), this);
    m_compare = named<QPushButton>(QStringLiteral("Cmd_transmissions_compare"), this);
    m_compare->setVisible(static_cast<bool>(m_services.compare));
    m_export = named<QPushButton>(QStringLiteral("Cmd_transmissions_export"), this);
    m_receipt = named<QPushButton>(QStringLiteral("Cmd_transmissions_receipt"), this);

    auto *facts = new QScrollArea(this);
    facts->setWidget(m_facts);
    facts->setWidgetResizable(true);
    facts->setFrameShape(QFrame::NoFrame);
    facts->viewport()->setAutoFillBackground(false);
    m_facts->setAutoFillBackground(false);
    auto *details = new QWidget(this);
    auto *beside = new QHBoxLayout(details);
    beside->setContentsMargins(0, 0, 0, 0);
    beside->addWidget(facts, 2);
    beside->addWidget(m_commands, 3);
    auto *splitter = new QSplitter(Qt::Vertical, this);
    splitter->addWidget(m_list);
    splitter->addWidget(details);
    splitter->setChildrenCollapsible(false);
    auto *below = new QHBoxLayout;
    below->addWidget(m_keepLabel);
    below->addWidget(m_years);
    below->addStretch();
    for (QPushButton *button : {m_open, m_compare, m_export, m_receipt}) {
        below->addWidget(button);
    }
    auto *all = new QVBoxLayout(this);
    all->addWidget(m_filter);
    all->addWidget(splitter, 1);
    all->addWidget(m_told);
    all->addLayout(below);
    constexpr QSize comfortable(960, 620);
    resize(comfortable);
    keepWindowPlace(*this, objectName());
}

/// What is older goes for good.
void TransmissionsWindow::chooseYears()
{
    const int years = m_years->value();
    const int before = transmissionYears();
    if (years == before) {
        return;
    }
    const QSignalBlocker quiet(m_years); // it loses the focus to the question
    const bool isShorter = years != 0 && (before == 0 || years < before);
    const bool isAgreed =
        !isShorter ||
        (isVisible() && Dialog::questionOfLoss(
                            this, m_services.texts,
                            tr("Remove transmissions that are older than %1 years for good? Of each station "
                               "the newest whole one stays.")
                                .arg(years)));
    if (!isAgreed) {
        m_years->setValue(before);
        return;
    }
    Q_EMIT yearsChosen(years);
    m_reload.start();
}

void TransmissionsWindow::applyTexts()
{
    setWindowTitle(tr("Transmissions"));
    m_filter->setPlaceholderText(tr("Station"));
    m_filter->setAccessibleName(tr("Station"));
    m_rows->setHorizontalHeaderLabels(
        {tr("Begun"), tr("Station"), tr("Version"), tr("Outcome"), tr("Line"), tr("User"), tr("File")});
    m_steps->setHorizontalHeaderLabels({tr("Step"), tr("Outcome"), tr("Command")});
    m_keepLabel->setText(tr("Keep for:"));
    m_years->setSpecialValueText(tr("ever"));
    m_years->setSuffix(tr(" years"));
    m_years->setToolTip(m_years->isEnabled()
                            ? tr("Older ones are removed; of each station the newest whole one stays")
                            : tr("Those in a record on a server stay until its administrator removes them"));
    m_open->setText(tr("Open as document"));
    m_compare->setText(tr("Compare..."));
    m_compare->setToolTip(tr("Compares with the configuration in the main window"));
    m_export->setText(tr("Export..."));
    m_receipt->setText(tr("Receipt..."));
    m_notice->setText(tr("Nothing was transmitted yet"));
    reload();
    showDetails();
}

void TransmissionsWindow::reload()
{
    m_services.memory.ask<Listed>(
        this,
        [](TransmissionTable &table) {
            constexpr qint64 most = 10'000;
            Listed listed;
            listed.status =
                table.find({.limit = most}, [&listed](const TransmissionRow &row) { listed.rows += row; });
            return listed;
        },
        [](const Status &why) {
            return Listed{why, {}};
        },
        [this](const Listed &listed) { showList(listed); });
}

void TransmissionsWindow::showList(const Listed &listed)
{
    tell(listed.status ? QString() : listed.status.message());
    if (!listed.status) {
        return;
    }
    m_notice->setVisible(listed.rows.isEmpty());
    const KeptPlace place(
        *m_list, [](const QModelIndex &line) { return QString::number(line.data(idRole).toLongLong()); });
    m_rows->removeRows(0, m_rows->rowCount());
    for (const TransmissionRow &row : listed.rows) {
        const QList<QStandardItem *> cells{
            cell(transmissionTime(row.begun)),
            cell(logText(row.station)),
            cell(logText(row.versionSent)),
            cell(verdictText(row)),
            cell(logText(row.line)),
            cell(logText(row.operatorName.isEmpty() ? row.user : row.operatorName)),
            cell(logText(row.file))};
        cells.front()->setData(row.id, idRole);
        m_rows->appendRow(cells);
    }
    place.giveBack();
    if (!m_list->currentIndex().isValid() && m_order->rowCount() > 0) {
        m_list->setCurrentIndex(m_order->index(0, BegunColumn));
    }
    for (const int column :
         {BegunColumn, StationColumn, VersionColumn, OutcomeColumn, LineColumn, UserColumn}) {
        m_list->resizeColumnToContents(column);
    }
    choose();
}

qint64 TransmissionsWindow::chosenId() const
{
    const QModelIndex current = m_list->currentIndex();
    return current.isValid() ? current.siblingAtColumn(BegunColumn).data(idRole).toLongLong() : 0;
}

void TransmissionsWindow::choose()
{
    const qint64 id = chosenId();
    if (id == 0) {
        m_chosen.reset();
        showDetails();
        return;
    }
    m_services.memory.ask<Chosen>(
        this,
        [id](TransmissionTable &table) {
            Chosen chosen;
            chosen.status = table.read(id, chosen.row, chosen.steps);
            return chosen;
        },
        [](const Status &why) {
            return Chosen{why, {}, {}};
        },
        [this](const Chosen &chosen) { showChosen(chosen); });
}

void TransmissionsWindow::showChosen(const Chosen &chosen)
{
    if (!chosen.status) {
        tell(chosen.status.message());
    }
    if (chosen.row && chosen.row->id == chosenId()) { // another may have been chosen meanwhile
        m_chosen = RememberedTransmission{*chosen.row, chosen.steps};
        showDetails();
    }
}

void TransmissionsWindow::showDetails()
{
    QStringList lines;
    const KeptPlace place(*m_commands, [](const QModelIndex &line) { return line.data().toString(); });
    m_steps->removeRows(0, m_steps->rowCount());
    if (m_chosen) {
        for (const auto &[name, value] : transmissionFacts(*m_chosen)) {
            constexpr qsizetype longest = 400; // a path may be that long
            lines += name + QLatin1String(": ") + shortText(value, longest);
        }
        for (const TransmissionStepRow &step : m_chosen->steps) {
            m_steps->appendRow(
                {cell(QString::number(step.step)), cell(outcomeText(step.outcome)), cell(step.command)});
        }
        m_commands->resizeColumnToContents(0);
        m_commands->resizeColumnToContents(1);
    }
    place.giveBack();
    m_facts->setText(lines.join(u'\n'));
    enableButtons();
}

void TransmissionsWindow::enableButtons()
{
    for (QPushButton *button : {m_open, m_compare, m_export, m_receipt}) {
        button->setEnabled(m_chosen && m_chosen->row.verdict != TransmissionVerdict::Alone);
    }
}

QString TransmissionsWindow::nameOfChosen() const
{
    return tr("%1, transmitted on %2")
        .arg(shortText(logText(m_chosen->row.station)), transmissionTime(m_chosen->row.begun));
}

std::optional<Configuration> TransmissionsWindow::configuration()
{
    Configuration configuration;
    const Status read = configurationOf(m_chosen->row, configuration, m_services.environment);
    if (!read) {
        tell(read.message());
        return std::nullopt;
    }
    return configuration;
}

void TransmissionsWindow::open()
{
    if (const auto opened = configuration()) {
        Q_EMIT openWanted(*opened, nameOfChosen());
    }
}

void TransmissionsWindow::compare()
{
    if (const auto compared = configuration()) {
        m_services.compare(*compared, nameOfChosen());
    }
}

void TransmissionsWindow::exportConfiguration()
{
    const RememberedTransmission exported = *m_chosen; // another may be chosen while the dialog is open
    const QString path = m_services.askSave(QLatin1String("KTR_") + pastedLine(exported.row.station),
                                            QStringLiteral("*.xml|*.xml"));
    if (!path.isEmpty()) {
        const Status written = exportTransmission(exported.row, path);
        tell(written ? tr("Exported: %1").arg(path) : written.message());
    }
}

void TransmissionsWindow::writeReceiptFile()
{
    tell(saveReceipt(*m_chosen, m_services.askSave, m_services.texts, m_services.environment));
}

QString saveReceipt(const RememberedTransmission &transmission,
                    const std::function<QString(const QString &proposal, const QString &filter)> &askSave,
                    const TextTable &texts, const Environment &environment)
{
    const RememberedTransmission proven = transmission; // another may be there when the dialog is closed
    QString path = askSave(TransmissionsWindow::tr("Receipt %1").arg(proven.row.station),
                           QStringLiteral("*.pdf|*.pdf|*.json|*.json"));
    if (path.isEmpty()) {
        return {};
    }
    path += isReceiptName(path) ? QString() : QStringLiteral(".pdf");
    const Status written = writeReceipt(path, proven, texts, environment);
    return written ? TransmissionsWindow::tr("Receipt written: %1").arg(path) : written.message();
}

void TransmissionsWindow::tell(const QString &line)
{
    m_told->setText(line);
    m_told->setVisible(!line.isEmpty());
    if (!line.isEmpty()) {
        Q_EMIT statusMessage(line);
    }
}

void TransmissionsWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

} // namespace ktr
