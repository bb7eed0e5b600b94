#include "opmode/window/export_dialog.h"

#include "lang/text_table.h"
#include "look/field_width.h"
#include "look/problem_label.h"
#include "opmode/tree/station_tree.h"
#include "opmode/window/station_picker.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDir>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

namespace ktr {

namespace {

/// A few milliseconds each.
constexpr int countedAtOnce = 4000;
constexpr int exportedAtOnce = 1000;
constexpr int recountMs = 1000;

QString numbered(const char *array, std::size_t index)
{
    return QLatin1String(array) + u'_' + QString::number(index);
}

QStringList presentOf(QStringList stations, const StationTree &tree)
{
    stations.removeIf([&tree](const QString &kennung) { return !tree.find(kennung).isValid(); });
    return stations;
}

} // namespace

ExportDialog::ExportDialog(const StationTree &tree, const TextTable &texts, const QStringList &chosen,
                           Services services, QWidget *parent)
    : QDialog(parent),
      m_tree(tree),
      m_services(std::move(services)),
      m_chosen(presentOf(chosen, tree)),
      m_cards(new QWidget(this)),
      m_work(new QTimer(this)),
      m_recount(new QTimer(this))
{
    setObjectName(QStringLiteral("Form_export"));
    setWindowTitle(texts.text(Text::ExportOperationalMode));
    auto *cards = new QGridLayout(m_cards);
    cards->setContentsMargins(0, 0, 0, 0);
    cards->setSpacing(12);
    cards->addWidget(entriesCard(texts), 0, 0);
    cards->addWidget(periodCard(), 1, 0);
    cards->addWidget(stationsCard(m_chosen), 0, 1, 3, 1);
    cards->setRowStretch(2, 1);
    cards->setColumnStretch(1, 1);
    auto *all = new QVBoxLayout(this);
    all->setSpacing(12);
    all->addWidget(m_cards, 1);
    m_problem = new ProblemLabel(this);
    m_problem->setObjectName(QStringLiteral("Label_export_problem"));
    all->addWidget(m_problem);
    all->addLayout(buttons(texts));
    m_kinds[0]->setFocus();

    connect(m_work, &QTimer::timeout, this, &ExportDialog::work);
    m_recount->setSingleShot(true);
    m_recount->setInterval(recountMs);
    connect(m_recount, &QTimer::timeout, this, &ExportDialog::count);
    const auto soon = [this] {
        if (!m_recount->isActive()) {
            m_recount->start();
        }
    };
    connect(&tree, &QAbstractItemModel::rowsInserted, this, soon);
    connect(&tree, &QAbstractItemModel::rowsRemoved, this, soon);
    connect(&tree, &QAbstractItemModel::dataChanged, this, soon);
    connect(&tree, &QAbstractItemModel::modelReset, this, soon);
    showPeriod();
}

ExportDialog::~ExportDialog() = default;

QWidget *ExportDialog::entriesCard(const TextTable &texts)
{
    auto *card = new QGroupBox(tr("Entries"), m_cards);
    auto *lines = new QVBoxLayout(card);
    const std::array captions = {texts.text(Text::Notifications), texts.text(Text::History)};
    for (std::size_t i = 0; i < m_kinds.size(); ++i) {
        m_kinds[i] = new QRadioButton(captions[i], card);
        m_kinds[i]->setObjectName(numbered("Opt_export_kind", i));
        lines->addWidget(m_kinds[i]);
        connect(m_kinds[i], &QRadioButton::clicked, this, &ExportDialog::choiceChanged);
    }
    m_notAcknowledged = new QCheckBox(tr("Only not acknowledged"), card);
    m_notAcknowledged->setObjectName(QStringLiteral("Check_export_notAcknowledged"));
    m_notAcknowledged->setToolTip(tr("Leaves out notifications that are no alarm or were acknowledged"));
    connect(m_notAcknowledged, &QCheckBox::clicked, this, &ExportDialog::choiceChanged);
    // Below "notifications", which it belongs to.
    auto *indented = new QHBoxLayout;
    indented->addSpacing(24);
    indented->addWidget(m_notAcknowledged);
    lines->insertLayout(1, indented);
    m_kinds[0]->setChecked(true);
    return card;
}

QWidget *ExportDialog::periodCard()
{
    auto *card = new QGroupBox(tr("Time"), m_cards);
    auto *grid = new QGridLayout(card);
    m_period = new QComboBox(card);
    m_period->setObjectName(QStringLiteral("Combo_export_period"));
    m_period->setAccessibleName(tr("Time"));
    m_period->setToolTip(tr("Entries whose time is not known are exported with \"Everything\" only"));
    m_period->addItems(
        {tr("Everything"), tr("Today"), tr("The last 7 days"), tr("This month"), tr("From ... to ...")});
    m_from = timeField("Date_export_from", tr("From"));
    m_to = timeField("Date_export_to", tr("To"));
    auto *from = new QLabel(tr("From"), card);
    auto *to = new QLabel(tr("To"), card);
    grid->addWidget(m_period, 0, 0, 1, 2);
    grid->addWidget(from, 1, 0);
    grid->addWidget(m_from, 1, 1);
    grid->addWidget(to, 2, 0);
    grid->addWidget(m_to, 2, 1);
    grid->setColumnStretch(1, 1);
    connect(m_period, &QComboBox::activated, this, &ExportDialog::showPeriod);
    return card;
}

QDateTimeEdit *ExportDialog::timeField(const char *name, const QString &accessible)
{
    auto *field = new QDateTimeEdit(m_services.now(), m_cards);
    field->setObjectName(QLatin1String(name));
    field->setAccessibleName(accessible);
    field->setToolTip(tr("Day, month, year, hour and minute; this minute is included"));
    setUpMinuteField(*field);
    connect(field, &QDateTimeEdit::dateTimeChanged, this, &ExportDialog::choiceChanged);
    return field;
}

QWidget *ExportDialog::stationsCard(const QStringList &chosen)
{
    auto *card = new QGroupBox(tr("Stations"), m_cards);
    auto *lines = new QVBoxLayout(card);
    const QString name = chosen.size() == 1 ? m_tree.find(chosen.constFirst()).data().toString() : QString();
    const std::array captions = {tr("All (%1)").arg(locale().toString(m_tree.rowCount())),
                                 chosen.isEmpty()     ? tr("The chosen one")
                                 : chosen.size() == 1 ? tr("Only %1").arg(name)
                                                      : tr("The %L1 that are chosen").arg(chosen.size()),
                                 tr("These:")};
    for (std::size_t i = 0; i < m_stations.size(); ++i) {
        QString caption = captions[i];
        m_stations[i] = new QRadioButton(caption.replace(u'&', QLatin1String("&&")), card);
        m_stations[i]->setObjectName(numbered("Opt_export_stations", i));
        lines->addWidget(m_stations[i]);
        connect(m_stations[i], &QRadioButton::clicked, this, &ExportDialog::choiceChanged);
    }
    m_stations[chosen.size() > 1 ? ChosenStation : AllStations]->setChecked(true);
    m_stations[ChosenStation]->setEnabled(!chosen.isEmpty());
    m_stations[ChosenStation]->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed); // a name may be long
    m_stations[ChosenStation]->setToolTip(name);
    m_list = new StationPicker(m_tree, card);
    m_list->setEnabled(false);
    lines->addWidget(m_list, 1);
    connect(m_list, &StationPicker::changed, this, &ExportDialog::choiceChanged);
    return card;
}

QLayout *ExportDialog::buttons(const TextTable &texts)
{
    m_count = new QLabel(this);
    m_count->setObjectName(QStringLiteral("Label_export_count"));
    m_export = new QPushButton(texts.text(Text::Export), this);
    m_export->setObjectName(QStringLiteral("Cmd_export"));
    m_export->setDefault(true);
    auto *cancel = new QPushButton(texts.text(Text::Cancel), this);
    cancel->setObjectName(QStringLiteral("Cmd_export_cancel"));
    cancel->setAutoDefault(false);
    connect(m_export, &QPushButton::clicked, this, &ExportDialog::askAndExport);
    connect(cancel, &QPushButton::clicked, this, &ExportDialog::reject);
    auto *line = new QHBoxLayout;
    line->addWidget(m_count, 1);
    line->addWidget(m_export);
    line->addWidget(cancel);
    return line;
}

ExportChoice ExportDialog::choice() const
{
    ExportChoice choice;
    choice.kind = m_kinds[1]->isChecked() ? ExportChoice::Kind::History : ExportChoice::Kind::Notifications;
    if (m_stations[TickedStations]->isChecked()) {
        choice.stations = m_list->ticked();
    } else if (m_stations[ChosenStation]->isChecked()) {
        choice.stations = m_chosen;
    } else {
        for (int row = 0; row < m_tree.rowCount(); ++row) {
            choice.stations += m_tree.index(row, 0).data(StationTree::KeyRole).toString();
        }
    }
    if (m_period->currentIndex() != Everything) {
        choice.from = m_from->dateTime();
        choice.to = m_to->dateTime();
    }
    choice.onlyNotAcknowledged = m_notAcknowledged->isChecked();
    return choice;
}

/// Puts the times of the period into the fields; only the last one lets them be changed.
void ExportDialog::showPeriod()
{
    const int period = m_period->currentIndex();
    const QDate today = m_services.now().date();
    const QTime lastMinute(23, 59);
    if (period != FromTo) {
        constexpr int furtherDays = 6; // today is the seventh
        const QSignalBlocker quiet(m_from);
        const QSignalBlocker quietToo(m_to);
        m_from->setDateTime(period == LastDays    ? today.addDays(-furtherDays).startOfDay()
                            : period == ThisMonth ? today.addDays(1 - today.day()).startOfDay()
                                                  : today.startOfDay());
        m_to->setDateTime(QDateTime(
            period == ThisMonth ? today.addDays(today.daysInMonth() - today.day()) : today, lastMinute));
    }
    m_from->setEnabled(period == FromTo);
    m_to->setEnabled(period == FromTo);
    choiceChanged();
}

void ExportDialog::choiceChanged()
{
    m_list->setEnabled(m_stations[TickedStations]->isChecked());
    m_notAcknowledged->setEnabled(m_kinds[0]->isChecked());
    const bool isBackwards = m_period->currentIndex() == FromTo && m_from->dateTime() > m_to->dateTime();
    m_problem->tell(isBackwards ? tr("The first time is later than the second") : QString());
    count();
}

void ExportDialog::count()
{
    if (!m_exporting) {
        m_recount->stop();
        m_counting = std::make_unique<ExportEntries>(m_tree, choice());
        countOn(); // the first part at once: most trees are small
        m_work->start(0);
    }
}

void ExportDialog::work()
{
    if (m_exporting) {
        exportOn();
    } else if (m_counting) {
        countOn();
    } else {
        m_work->stop();
    }
}

void ExportDialog::countOn()
{
    if (!m_counting->walk(countedAtOnce, [](const ExportEntry &) {})) {
        showCount();
        m_export->setEnabled(m_counting->chosenCount() > 0);
        m_counting.reset();
    }
}

void ExportDialog::showCount()
{
    QString text = tr("Entries: %1").arg(locale().toString(m_counting->chosenCount()));
    if (m_counting->withoutTime() > 0) {
        text += u'\n' + tr("Left out, time not known: %1").arg(locale().toString(m_counting->withoutTime()));
    }
    m_count->setText(text);
}

void ExportDialog::askAndExport()
{
    const ExportChoice wanted = choice();
    const QString day = m_services.now().date().toString(Qt::ISODate);
    const QString proposal = wanted.kind == ExportChoice::Kind::History ? tr("history %1.csv").arg(day)
                                                                        : tr("notifications %1.csv").arg(day);
    const QPointer<ExportDialog> self(this);
    const QString path = m_services.askSave(proposal, tr("CSV table") + QLatin1String("|*.csv"));
    if (!self || path.isEmpty() || m_exporting) {
        return;
    }
    m_path = path;
    m_counting.reset();
    m_exporting = std::make_unique<NodesExport>(m_tree, wanted);
    setExporting(true);
    if (const Status opened = m_exporting->open(path); !opened) {
        fail(opened.message());
    }
}

void ExportDialog::exportOn()
{
    if (const Status written = m_exporting->step(exportedAtOnce); !written) {
        fail(written.message());
        return;
    }
    m_count->setText(tr("Exported: %1").arg(locale().toString(m_exporting->lines())));
    if (m_exporting->isDone()) {
        QString line = tr("%1: entries exported: %2")
                           .arg(QDir::toNativeSeparators(m_path), locale().toString(m_exporting->lines()));
        if (m_exporting->withoutTime() > 0) {
            line += QLatin1String("; ") +
                    tr("left out, time not known: %1").arg(locale().toString(m_exporting->withoutTime()));
        }
        setExporting(false);
        Q_EMIT statusMessage(line);
        accept();
    }
}

void ExportDialog::fail(const QString &message)
{
    setExporting(false);
    count();
    m_problem->tell(tr("The export failed: %1").arg(message));
    Q_EMIT statusMessage(m_problem->text());
}

void ExportDialog::setExporting(bool exporting)
{
    m_cards->setEnabled(!exporting);
    m_export->setEnabled(!exporting);
    if (exporting) {
        m_problem->tell({});
        m_work->start(0);
    } else {
        m_work->stop();
        m_exporting.reset();
    }
}

void ExportDialog::reject()
{
    if (!m_exporting) {
        QDialog::reject();
        return;
    }
    setExporting(false);
    count();
    m_problem->tell(tr("The export was cancelled; there is no new file"));
    Q_EMIT statusMessage(m_problem->text());
}

} // namespace ktr
