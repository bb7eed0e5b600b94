#include "opmode/window/add_stations_dialog.h"

#include "lang/text_table.h"
#include "look/icons.h"
#include "look/problem_label.h"
#include "opmode/lists/station_import.h"
#include "opmode/operational_mode.h"
#include "opmode/window/imported_stations_model.h"
#include "platform/table_file.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSplitter>
#include <QTableView>
#include <QTextBlock>
#include <QTimer>
#include <QVBoxLayout>

namespace ktr {

namespace {

/// Reading so much does not disturb typing; more is read when the keys rest.
constexpr int shortText = 100'000;
constexpr int restMs = 250;

} // namespace

AddStationsDialog::AddStationsDialog(OperationalMode &mode, const TextTable &texts, AskOpen askOpen,
                                     QWidget *parent)
    : QDialog(parent),
      m_mode(mode),
      m_askOpen(std::move(askOpen)),
      m_model(new ImportedStationsModel(this)),
      m_preview(new QTimer(this))
{
    setObjectName(QStringLiteral("Form_stationen"));
    m_mode.stations().forEach([this](const cStation &station) {
        m_stationsAt.insert(station.hostAddress().toLower(),
                            m_mode.tree().find(station.kennung()).data().toString());
    });
    setWindowTitle(tr("Add stations"));
    auto *sides = new QSplitter(this);
    sides->setChildrenCollapsible(false);
    sides->addWidget(listSide());
    sides->addWidget(previewSide());
    sides->setStretchFactor(0, 1);
    sides->setStretchFactor(1, 2);
    m_problem = new ProblemLabel(this);
    m_problem->setObjectName(QStringLiteral("Label_stationen_problem"));
    auto *all = new QVBoxLayout(this);
    all->setSpacing(12);
    all->addWidget(sides, 1);
    all->addWidget(m_problem);
    all->addLayout(buttons(texts));
    constexpr QSize comfortable(960, 520);
    resize(comfortable);
    m_text->setFocus();

    m_preview->setSingleShot(true);
    connect(m_preview, &QTimer::timeout, this, &AddStationsDialog::preview);
    connect(m_text, &QPlainTextEdit::textChanged, this,
            [this] { m_preview->start(m_text->document()->characterCount() < shortText ? 0 : restMs); });
    preview();
}

QLayout *AddStationsDialog::buttons(const TextTable &texts)
{
    m_online = new QCheckBox(tr("Go online at once"), this);
    m_online->setObjectName(QStringLiteral("Check_stationen_online"));
    m_online->setToolTip(tr("Connects every new station that has an address"));
    m_add = new QPushButton(texts.text(Text::AddStation), this);
    m_add->setObjectName(QStringLiteral("Cmd_stationen_add"));
    m_add->setDefault(true);
    auto *cancel = new QPushButton(texts.text(Text::Cancel), this);
    cancel->setObjectName(QStringLiteral("Cmd_stationen_cancel"));
    cancel->setAutoDefault(false);
    connect(m_add, &QPushButton::clicked, this, &AddStationsDialog::add);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto *line = new QHBoxLayout;
    line->addWidget(m_online);
    line->addStretch();
    line->addWidget(m_add);
    line->addWidget(cancel);
    return line;
}

QWidget *AddStationsDialog::listSide()
{
    auto *side = new QWidget(this);
    m_text = new QPlainTextEdit(side);
    m_text->setObjectName(QStringLiteral("Text_stationen"));
    m_text->setPlaceholderText(tr("Pumping station North;10.0.0.17\nWater tower;tower.example.org:49111"));
    m_text->setToolTip(
        tr("The address is four numbers with dots between them or a host name; \":port\" may follow"));
    m_text->setTabChangesFocus(true);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto *caption = new QLabel(tr("One station per line: name;address"), side);
    caption->setBuddy(m_text);
    m_text->setAccessibleName(caption->text());
    auto *file = new QPushButton(icon(IconName::Open), tr("Read from a file"), side);
    file->setObjectName(QStringLiteral("Cmd_stationen_file"));
    file->setAutoDefault(false);
    file->setToolTip(tr("A CSV or text file with at most %1 lines").arg(StationImport::mostLines));
    connect(file, &QPushButton::clicked, this, &AddStationsDialog::readFile);

    auto *lines = new QVBoxLayout(side);
    lines->setContentsMargins(0, 0, 6, 0);
    lines->addWidget(caption);
    lines->addWidget(m_text, 1);
    lines->addWidget(file, 0, Qt::AlignLeft);
    return side;
}

QWidget *AddStationsDialog::previewSide()
{
    auto *side = new QWidget(this);
    m_count = new QLabel(side);
    m_count->setObjectName(QStringLiteral("Label_stationen_count"));
    m_table = new QTableView(side);
    m_table->setObjectName(QStringLiteral("tbl_stationen"));
    m_table->setAccessibleName(tr("Preview of the lines"));
    m_table->setModel(m_model);
    m_table->setTabKeyNavigation(false);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setWordWrap(false);
    m_table->setShowGrid(false);
    m_table->setAlternatingRowColors(true);
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    constexpr int fewestRows = 6;
    m_table->setMinimumHeight((fewestRows + 1) * m_table->verticalHeader()->defaultSectionSize());
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    const int letter = fontMetrics().averageCharWidth();
    constexpr int lettersOfAColumn = 24;
    for (const int column : {ImportedStationsModel::Name, ImportedStationsModel::Address}) {
        m_table->setColumnWidth(column, letter * lettersOfAColumn);
    }
    auto *lines = new QVBoxLayout(side);
    lines->setContentsMargins(6, 0, 0, 0);
    lines->addWidget(m_count);
    lines->addWidget(m_table, 1);
    return side;
}

void AddStationsDialog::readFile()
{
    const QPointer<AddStationsDialog> self(this);
    const QString path = m_askOpen(tr("Lists of stations") + QLatin1String("|*.csv;*.txt|") +
                                   tr("All files") + QLatin1String("|*"));
    if (!self || path.isEmpty()) {
        return;
    }
    QString text;
    const Status read = readTableText(path, text);
    m_problem->tell(read.message());
    if (!read) {
        Q_EMIT statusMessage(read.message());
        return;
    }
    QTextCursor cursor(m_text->document()); // so that it can be undone
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
}

void AddStationsDialog::preview()
{
    m_preview->stop();
    m_model->show(readStationImport(
        m_text->toPlainText(), [this](const QString &name) { return m_mode.tree().freeName(name); },
        m_stationsAt));
    const StationImport &list = m_model->list();
    const auto leftOut = static_cast<int>(list.lines.size()) - list.usable;
    m_count->setText(tr("Stations to be added: %1; lines left out: %2")
                         .arg(locale().toString(list.usable), locale().toString(leftOut)));
    m_problem->tell(
        list.isCut
            ? tr("Only the first %1 stations are read").arg(locale().toString(StationImport::mostLines))
            : QString());
    m_add->setEnabled(list.usable > 0);
}

void AddStationsDialog::add()
{
    preview(); // typed a moment ago
    int added = 0;
    const StationImport &list = m_model->list();
    for (const StationImportLine &station : list.lines) {
        const bool isOnline = !station.address.isEmpty() && m_online->isChecked();
        if (station.isUsable && !m_mode.addStation(station.name, station.address, isOnline).isEmpty()) {
            ++added;
        }
    }
    Q_EMIT statusMessage(tr("Stations added: %1; lines left out: %2")
                             .arg(locale().toString(added), locale().toString(list.lines.size() - added)));
    accept();
}

} // namespace ktr
