#include "app/compare_window.h"

#include "link/conversation_log.h"
#include "look/icons.h"
#include "look/kept_place.h"
#include "look/list_views.h"
#include "look/mnemonics.h"
#include "look/outside_texts.h"
#include "look/window_place.h"
#include "platform/csv.h"
#include "platform/files.h"
#include "platform/settings_store.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace ktr {

namespace {

using Change = ComparedField::Change;

const QString compareSection = QStringLiteral("Compare");
const QString compareGeometryKey = QStringLiteral("geometry");
constexpr QSize usualCompareSize(1060, 680);
constexpr QSize leastCompareSize(720, 380);

constexpr int keyRole = Qt::UserRole;
constexpr int stepRole = Qt::UserRole + 1;

enum Column { FieldColumn, MineColumn, TheirsColumn, BaseColumn, ChangeColumn, columnCount };

QString shownValue(const QString &value)
{
    return value.trimmed().isEmpty() ? QStringLiteral("–") : shortenedLine(value);
}

/// The names of some entries begin with their page's.
QString groupTitle(const ComparedField &field)
{
    return field.entry.isEmpty()                ? field.page
           : field.entry.startsWith(field.page) ? field.entry
                                                : field.page + u" – " + field.entry;
}

} // namespace

CompareWindow::CompareWindow(Services services) : m_services(std::move(services))
{
    setObjectName(QStringLiteral("Form_compare"));
    setWindowIcon(icon(IconName::Application));
    layOut();
    m_refresh.setSingleShot(true);
    connect(&m_refresh, &QTimer::timeout, this, &CompareWindow::refresh);
    connect(&m_services.document, &Document::changed, this, &CompareWindow::refreshSoon);
    connect(&m_services.document, &Document::saved, this, &CompareWindow::followSaved);
    connect(&m_services.document, &Document::fileNameChanged, this, &CompareWindow::showState);
    connect(m_filter, &QLineEdit::textChanged, this, &CompareWindow::refresh);
    for (QCheckBox *box : {m_stamps, m_conflicts, m_asCommands}) {
        connect(box, &QCheckBox::toggled, this, &CompareWindow::refresh);
    }
    connect(m_tree, &QTreeWidget::itemActivated, this, &CompareWindow::goToField);
    connect(m_tree, &QTreeWidget::itemSelectionChanged, this, &CompareWindow::showState);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, m_filter,
            [this] { m_filter->setFocus(Qt::ShortcutFocusReason); });
    connect(new QShortcut(QKeySequence::Undo, this), &QShortcut::activated, &m_services.history,
            &EditHistory::undo);
    connect(new QShortcut(QKeySequence::Redo, this), &QShortcut::activated, &m_services.history,
            &EditHistory::redo);
    setMinimumSize(leastCompareSize);
    constexpr QSize frame(16, 56);
    resize(usualCompareSize.boundedTo(screen()->availableSize() - frame));
    restorePlace(
        *this, QByteArray::fromBase64(
                   SettingsStore().GetSetting(settingsOwner, compareSection, compareGeometryKey).toLatin1()));
    applyTexts();
}

QPushButton *CompareWindow::button(const char *name, void (CompareWindow::*clicked)())
{
    auto *made = named<QPushButton>(QLatin1String(name), this);
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, clicked);
    return made;
}

void CompareWindow::layOut()
{
    m_otherLabel = named<QLabel>(QStringLiteral("lbl_compare_other"), this);
    m_saved = button("Cmd_compare_saved", &CompareWindow::compareWithSaved);
    m_file = button("Cmd_compare_file", &CompareWindow::chooseOther);
    m_baseLabel = named<QLabel>(QStringLiteral("lbl_compare_base"), this);
    m_chooseBase = button("Cmd_compare_base", &CompareWindow::chooseBase);
    m_dropBase = button("Cmd_compare_no_base", &CompareWindow::dropBase);
    m_filter = searchField(QStringLiteral("Txt_compare_filter"), this);
    m_stamps = named<QCheckBox>(QStringLiteral("Chk_compare_stamps"), this);
    m_conflicts = named<QCheckBox>(QStringLiteral("Chk_compare_conflicts"), this);
    m_asCommands = named<QCheckBox>(QStringLiteral("Chk_compare_commands"), this);
    m_tree = named<QTreeWidget>(QStringLiteral("Tree_compare"), this);
    setUpLines(*m_tree);
    m_tree->setUniformRowHeights(true);
    m_tree->setExpandsOnDoubleClick(false);
    m_tree->setColumnCount(columnCount);
    m_tree->header()->setStretchLastSection(true);
    m_empty = new EmptyNotice(QStringLiteral("lbl_compare_empty"), *m_tree);
    goDownInto(*m_filter, *m_tree);
    m_state = named<QLabel>(QStringLiteral("lbl_compare_state"), this);
    m_goTo = button("Cmd_compare_goto", &CompareWindow::goToField);
    m_take = button("Cmd_compare_take", &CompareWindow::takeOver);
    m_keep = button("Cmd_compare_keep", &CompareWindow::keepMine);
    m_merge = button("Cmd_compare_merge", &CompareWindow::merge);
    m_export = button("Cmd_compare_export", &CompareWindow::exportTable);
    m_close = named<QPushButton>(QStringLiteral("Cmd_compare_close"), this);
    m_close->setAutoDefault(false);
    connect(m_close, &QPushButton::clicked, this, &QWidget::close);

    // The first of them takes the room that is left.
    const auto row = [](QWidget *first, std::initializer_list<QWidget *> others) {
        auto *layout = new QHBoxLayout;
        layout->addWidget(first, 1);
        for (QWidget *widget : others) {
            layout->addWidget(widget);
        }
        return layout;
    };
    auto *buttons = new QHBoxLayout;
    for (QPushButton *each : {m_goTo, m_take, m_keep, m_merge}) {
        buttons->addWidget(each);
    }
    buttons->addStretch();
    buttons->addWidget(m_export);
    buttons->addWidget(m_close);
    for (QLabel *label : {m_otherLabel, m_baseLabel, m_state}) {
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // a long name is cut off
    }
    auto *all = new QVBoxLayout(this);
    all->addLayout(row(m_otherLabel, {m_saved, m_file}));
    all->addLayout(row(m_baseLabel, {m_chooseBase, m_dropBase}));
    all->addLayout(row(m_filter, {m_conflicts, m_stamps, m_asCommands}));
    all->addWidget(m_tree, 1);
    all->addWidget(m_state);
    all->addLayout(buttons);
}

void CompareWindow::applyTexts()
{
    setWindowTitle(tr("Compare"));
    m_filter->setPlaceholderText(tr("Filter"));
    m_filter->setAccessibleName(tr("Filter"));
    m_filter->setToolTip(tr("Shows the lines that have this text"));
    m_stamps->setToolTip(tr("When each was edited, which tells nothing of what it does"));
    m_conflicts->setToolTip(tr("Only what both changed, each in another way"));
    m_asCommands->setToolTip(tr("What a transmission sends differently, by its steps"));
    m_tree->setAccessibleName(tr("Differences"));
    m_saved->setToolTip(tr("Compares with the present file as it is on the disk"));
    m_file->setToolTip(tr("Compares with another file"));
    m_chooseBase->setToolTip(tr("The file that both were made from: then it is known who changed what"));
    m_goTo->setToolTip(tr("Goes to the field (Enter)"));
    m_take->setToolTip(tr("Takes the values of the chosen lines over from the other side; can be undone"));
    m_keep->setToolTip(tr("Decides the chosen conflicts for the present values"));
    m_merge->setToolTip(tr("Takes over all that only the other side changed; can be undone"));
    const QList<QAbstractButton *> captioned{m_saved,  m_file,       m_chooseBase, m_dropBase, m_conflicts,
                                             m_stamps, m_asCommands, m_goTo,       m_take,     m_keep,
                                             m_merge,  m_export,     m_close};
    const QStringList captions = withMnemonics(
        {tr("Saved state"), tr("File..."), tr("Common ancestor..."), tr("None"), tr("Conflicts only"),
         tr("Stamps"), tr("As commands"), tr("Go to field"), tr("Take over"), tr("Keep present"),
         tr("Take all of theirs"), tr("Export..."), tr("Close")});
    for (qsizetype i = 0; i < captioned.size(); ++i) {
        captioned[i]->setText(captions[i]);
    }
    refresh();
}

// The sides

void CompareWindow::compareWith(const Configuration &other, const QString &title)
{
    m_isSaved = false;
    setOther(other, title);
}

void CompareWindow::compareWithFile(const QString &fileName)
{
    if (const auto other = read(fileName)) {
        m_isSaved = false;
        setOther(other, fileName);
    }
}

void CompareWindow::compareWithSaved()
{
    const QString &fileName = m_services.document.fileName();
    if (fileName.isEmpty()) {
        tell(tr("There is no present file"));
        return;
    }
    if (const auto other = read(fileName)) {
        m_isSaved = true;
        setOther(other, fileName);
    }
}

void CompareWindow::followSaved()
{
    if (m_isSaved) {
        compareWithSaved();
    }
}

void CompareWindow::setBase(const std::optional<Configuration> &base, const QString &title)
{
    const bool hadBase = m_base.has_value();
    m_base = base;
    m_baseTitle = title;
    m_kept.clear();
    m_told.clear();
    refresh();
    if (m_base.has_value() != hadBase) {
        spreadColumns();
    }
}

void CompareWindow::setOther(const std::optional<Configuration> &other, const QString &title)
{
    m_other = other;
    m_otherTitle = title;
    m_kept.clear();
    m_told.clear();
    refresh();
}

/// As the menu opens it; nothing, after it was told why, where it is no configuration.
std::optional<Configuration> CompareWindow::read(const QString &fileName)
{
    Document document(m_services.document.environment());
    const ReadReport report = document.load(fileName);
    if (!report.opened || !report.document) {
        tell(report.document ? tr("%1 cannot be opened").arg(fileName) : report.document.message());
        return std::nullopt;
    }
    if (!report.isConfiguration) {
        tell(tr("%1 is no configuration").arg(fileName));
        return std::nullopt;
    }
    return document.configuration();
}

void CompareWindow::chooseOther()
{
    const QString fileName = m_services.askOpen();
    raise();
    activateWindow();
    if (!fileName.isEmpty()) {
        compareWithFile(fileName);
    }
}

void CompareWindow::chooseBase()
{
    const QString fileName = m_services.askOpen();
    raise();
    activateWindow();
    if (fileName.isEmpty()) {
        return;
    }
    if (const auto base = read(fileName)) {
        setBase(base, fileName);
    }
}

void CompareWindow::dropBase()
{
    setBase(std::nullopt);
}

void CompareWindow::appear()
{
    if (!m_other && !m_services.document.fileName().isEmpty() &&
        QFileInfo(m_services.document.fileName()).isFile()) {
        compareWithSaved();
    }
    show();
    raise();
    activateWindow();
    m_tree->setFocus();
}

// What is shown

void CompareWindow::refreshSoon()
{
    m_done.clear();
    if (isVisible()) {
        m_refresh.start(0);
    }
}

void CompareWindow::refresh()
{
    m_refresh.stop();
    compare();
    const KeptPlace place(*m_tree, [](const QModelIndex &line) {
        const QString key = line.data(keyRole).toString();
        return key.isEmpty() ? u'#' + line.data().toString() : key; // a heading
    });
    const QSignalBlocker quiet(m_tree);
    m_tree->clear();
    const bool asCommands = m_asCommands->isChecked();
    m_tree->setHeaderLabels({asCommands ? tr("Step") : tr("Field"), tr("Present"), tr("Other side"),
                             tr("Ancestor"), tr("Changed by")});
    m_tree->setColumnHidden(BaseColumn, !m_base || asCommands);
    m_tree->setColumnHidden(ChangeColumn, !m_base || asCommands);
    m_tree->setRootIsDecorated(!asCommands);
    asCommands ? fillCommands() : fillFields();
    m_tree->expandAll();
    place.giveBack();
    if (m_tree->currentItem() == nullptr) {
        selectFirst();
    }
    showState();
}

void CompareWindow::compare()
{
    m_fields.clear();
    m_commands.clear();
    if (!m_other) {
        return;
    }
    const Environment &environment = m_services.document.environment();
    const Configuration &mine = m_services.document.configuration();
    const ComparisonWords words{m_services.texts, environment.locale};
    m_fields = m_base ? compareConfigurations(mine, *m_other, *m_base, words)
                      : compareConfigurations(mine, *m_other, words);
    m_commands = commandDifferences(mine, *m_other, {false, environment.locale, environment.now()});
}

bool CompareWindow::matches(const QStringList &texts) const
{
    const QString wanted = m_filter->text().trimmed();
    return wanted.isEmpty() || std::ranges::any_of(texts, [&wanted](const QString &text) {
               return text.contains(wanted, Qt::CaseInsensitive);
           });
}

bool CompareWindow::isShown(const ComparedField &field) const
{
    const bool isConflict = field.change == Change::Conflict && !m_kept.contains(field.key);
    return (!field.isStamp || m_stamps->isChecked()) &&
           (!m_base || !m_conflicts->isChecked() || (isConflict && !field.isStamp)) &&
           matches({field.page, field.entry, field.label, field.mine, field.theirs, field.base});
}

void CompareWindow::fillFields()
{
    const auto changeText = [this](const ComparedField &field) {
        switch (field.change) {
        case Change::Unknown:
            break;
        case Change::Mine:
            return tr("present");
        case Change::Theirs:
            return tr("other side");
        case Change::Both:
            return tr("both, alike");
        case Change::Conflict:
            return field.isStamp ? tr("both") : m_kept.contains(field.key) ? tr("decided") : tr("conflict");
        }
        return QString();
    };
    QTreeWidgetItem *group = nullptr;
    QString title;
    for (const ComparedField &field : m_fields) {
        if (!isShown(field)) {
            continue;
        }
        if (group == nullptr || title != groupTitle(field)) {
            title = groupTitle(field);
            group = new QTreeWidgetItem(m_tree, {shortenedLine(title)});
            QFont bold = m_tree->font();
            bold.setBold(true);
            group->setFont(FieldColumn, bold);
            group->setFirstColumnSpanned(true);
        }
        const QStringList cells{field.label, shownValue(field.mine), shownValue(field.theirs),
                                shownValue(field.base), changeText(field)};
        auto *line = new QTreeWidgetItem(group, cells);
        line->setData(FieldColumn, keyRole, field.key);
        if (field.change == Change::Conflict && !field.isStamp && !m_kept.contains(field.key)) {
            line->setIcon(ChangeColumn, style()->standardIcon(QStyle::SP_MessageBoxWarning));
        }
        for (int column = 0; column < columnCount; ++column) {
            line->setToolTip(column, cells[column]);
        }
    }
}

void CompareWindow::fillCommands()
{
    for (const CommandDifference &difference : m_commands) {
        const auto text = [](const std::optional<QString> &command) {
            return command ? logText(*command) : QString();
        };
        const QStringList cells{QString::number(difference.step), shownValue(text(difference.mine)),
                                shownValue(text(difference.theirs))};
        if (matches(cells)) {
            auto *line = new QTreeWidgetItem(m_tree, cells);
            line->setData(FieldColumn, keyRole, cells.front());
            line->setData(FieldColumn, stepRole, difference.step);
            line->setToolTip(MineColumn, cells[MineColumn]);
            line->setToolTip(TheirsColumn, cells[TheirsColumn]);
        }
    }
}

void CompareWindow::selectFirst()
{
    for (QTreeWidgetItemIterator line(m_tree); *line != nullptr; ++line) {
        if (!(*line)->data(FieldColumn, keyRole).toString().isEmpty()) {
            m_tree->setCurrentItem(*line);
            return;
        }
    }
}

/// Of groups all their lines.
QList<ComparedField> CompareWindow::chosenFields() const
{
    QSet<QString> keys;
    const QList<QTreeWidgetItem *> chosen = m_tree->selectedItems();
    for (const QTreeWidgetItem *line : chosen) {
        keys += line->data(FieldColumn, keyRole).toString();
        for (int child = 0; child < line->childCount(); ++child) {
            keys += line->child(child)->data(FieldColumn, keyRole).toString();
        }
    }
    QList<ComparedField> fields;
    std::ranges::copy_if(m_fields, std::back_inserter(fields),
                         [&keys](const ComparedField &field) { return keys.contains(field.key); });
    return fields;
}

void CompareWindow::showState()
{
    const auto sideText = [](const QString &name, const QString &title) -> QString {
        return name + QLatin1String(": ") + shortenedLine(title);
    };
    m_otherLabel->setText(sideText(m_isSaved ? tr("Saved state") : tr("Other side"),
                                   m_other ? m_otherTitle : tr("none chosen")));
    m_otherLabel->setToolTip(m_otherTitle);
    m_baseLabel->setText(sideText(tr("Common ancestor"), m_base ? m_baseTitle : tr("none chosen")));
    m_baseLabel->setToolTip(m_baseTitle);
    m_saved->setEnabled(!m_services.document.fileName().isEmpty());
    m_dropBase->setEnabled(m_base.has_value());
    m_conflicts->setVisible(m_base.has_value());
    m_keep->setVisible(m_base.has_value());
    m_merge->setVisible(m_base.has_value());
    const bool asCommands = m_asCommands->isChecked();
    const QList<ComparedField> chosen = asCommands ? QList<ComparedField>() : chosenFields();
    const auto isOpen = [this](const ComparedField &field) {
        return field.change == Change::Conflict && !field.isStamp && !m_kept.contains(field.key);
    };
    m_goTo->setEnabled(m_tree->currentItem() != nullptr);
    m_take->setEnabled(std::ranges::any_of(
        chosen, [](const ComparedField &field) { return !field.isStamp && field.change != Change::Both; }));
    m_keep->setEnabled(std::ranges::any_of(chosen, isOpen));
    m_merge->setEnabled(std::ranges::any_of(m_fields, [](const ComparedField &field) {
        return field.change == Change::Theirs && !field.isStamp;
    }));
    m_export->setEnabled(m_tree->topLevelItemCount() > 0);
    m_state->setText(!m_told.isEmpty()  ? m_told
                     : m_done.isEmpty() ? stateText()
                                        : stateText() + QLatin1String(". ") + m_done);
    m_state->setToolTip(m_told);
    m_empty->setText(emptyText());
    m_empty->setVisible(m_tree->topLevelItemCount() == 0);
}

QString CompareWindow::stateText() const
{
    if (!m_other) {
        return {};
    }
    const auto differing = std::ranges::count_if(
        m_fields, [](const ComparedField &field) { return !field.isStamp && field.change != Change::Both; });
    QString text =
        tr("Fields that differ: %1. Commands that differ: %2").arg(differing).arg(m_commands.size());
    if (m_base) {
        const auto open = std::ranges::count_if(m_fields, [this](const ComparedField &field) {
            return field.change == Change::Conflict && !field.isStamp && !m_kept.contains(field.key);
        });
        text += QLatin1String(". ") + tr("Conflicts: %1").arg(open);
    }
    return text;
}

QString CompareWindow::emptyText() const
{
    if (!m_other) {
        return tr("Choose a file to compare with");
    }
    const bool isFiltered = !m_filter->text().trimmed().isEmpty() || (m_base && m_conflicts->isChecked());
    if (isFiltered && !m_fields.isEmpty()) {
        return tr("No line fits the filter");
    }
    return m_fields.isEmpty() || m_asCommands->isChecked() ? tr("No difference")
                                                           : tr("No difference but the stamps");
}

void CompareWindow::tell(const QString &line)
{
    m_told = line;
    showState();
}

// What is done

void CompareWindow::goToField()
{
    const QTreeWidgetItem *line = m_tree->currentItem();
    if (line == nullptr) {
        return;
    }
    if (const QVariant step = line->data(FieldColumn, stepRole); step.isValid()) {
        const StepPlace place = placeOfStep(step.toInt());
        m_services.goTo({place.control, place.entry});
        return;
    }
    const QTreeWidgetItem *wanted = line->childCount() > 0 ? line->child(0) : line;
    const auto found =
        std::ranges::find(m_fields, wanted->data(FieldColumn, keyRole).toString(), &ComparedField::key);
    if (found != m_fields.end()) {
        m_services.goTo({found->control, found->index});
    }
}

void CompareWindow::takeOver()
{
    take(chosenFields());
}

void CompareWindow::merge()
{
    QList<ComparedField> theirs;
    std::ranges::copy_if(m_fields, std::back_inserter(theirs),
                         [](const ComparedField &field) { return field.change == Change::Theirs; });
    take(theirs);
}

/// All of them are one step of undo.
void CompareWindow::take(const QList<ComparedField> &fields)
{
    QList<ComparedField> wanted = fields;
    wanted.removeIf([](const ComparedField &field) { return field.isStamp; });
    if (!m_other || wanted.isEmpty()) {
        return;
    }
    m_told.clear();
    QString left;
    m_services.history.endGroup();
    m_services.history.edit(
        {wanted.front().control, wanted.front().index}, [&](Configuration &configuration) {
            QList<ComparedField> later; // holidays find room once others are removed
            for (const ComparedField &field : wanted) {
                if (!takeField(configuration, *m_other, field.key)) {
                    later += field;
                }
            }
            for (const ComparedField &field : later) {
                if (!takeField(configuration, *m_other, field.key)) {
                    left = tr("%1 was not taken over: the list of holidays is full").arg(field.label);
                }
            }
        });
    m_services.history.endGroup();
    m_told = left;
    const ComparedField &first = wanted.front();
    const QString taken = wanted.size() > 1
                              ? tr("Taken over: %1 fields").arg(wanted.size())
                              : tr("Taken over: %1, %2 in place of %3")
                                    .arg(groupTitle(first), first.label, shownValue(first.mine));
    m_services.history.describe(taken);
    m_done = taken + QLatin1String(" (") +
             QKeySequence(QKeySequence::Undo).toString(QKeySequence::NativeText) + u')';
    refresh();
}

void CompareWindow::keepMine()
{
    for (const ComparedField &field : chosenFields()) {
        if (field.change == Change::Conflict) {
            m_kept += field.key;
        }
    }
    refresh();
}

/// As it is shown: what the filter hides is left out.
void CompareWindow::exportTable()
{
    const QString path = m_services.askSave(tr("Differences"));
    raise();
    activateWindow();
    if (path.isEmpty()) {
        return;
    }
    QByteArray table = csvMark;
    if (m_asCommands->isChecked()) {
        table += csvLine({tr("Step"), tr("Present"), tr("Other side")});
        for (const CommandDifference &each : m_commands) {
            const QStringList cells{QString::number(each.step), logText(each.mine.value_or(QString())),
                                    logText(each.theirs.value_or(QString()))};
            table += matches(cells) ? csvLine(cells) : QByteArray();
        }
    } else {
        QStringList head{tr("Page"), tr("Entry"), tr("Field"), tr("Present"), tr("Other side")};
        table += csvLine(m_base ? head << tr("Ancestor") : head);
        for (const ComparedField &field : m_fields) {
            QStringList cells{field.page, field.entry, field.label, field.mine, field.theirs};
            table += isShown(field) ? csvLine(m_base ? cells << field.base : cells) : QByteArray();
        }
    }
    const Status written = replaceFile(path, table, Readers::AsUsual);
    tell(written ? tr("Saved as %1").arg(path) : written.message());
}

void CompareWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close)) {
        close();
    } else if (event->matches(QKeySequence::Copy)) {
        QList<int> columns{FieldColumn, MineColumn, TheirsColumn};
        copyLines(chosenLines(*m_tree), m_base ? columns << BaseColumn << ChangeColumn : columns);
    } else {
        QWidget::keyPressEvent(event);
    }
}

void CompareWindow::showEvent(QShowEvent *event)
{
    refresh();
    if (!event->spontaneous()) {
        spreadColumns();
    }
    QWidget::showEvent(event);
}

/// The last one takes what is left.
void CompareWindow::spreadColumns()
{
    constexpr int whole = 100;
    constexpr std::array two{24, 36, 0, 0};
    constexpr std::array three{24, 22, 22, 16};
    const auto &shares = m_base ? three : two;
    for (int column = 0; column < ChangeColumn; ++column) {
        const int share = shares[static_cast<std::size_t>(column)];
        if (share > 0) {
            m_tree->setColumnWidth(column, m_tree->viewport()->width() * share / whole);
        }
    }
}

void CompareWindow::closeEvent(QCloseEvent *event)
{
    SettingsStore().SaveSetting(settingsOwner, compareSection, compareGeometryKey,
                                QString::fromLatin1(saveGeometry().toBase64()));
    QWidget::closeEvent(event);
}

} // namespace ktr
