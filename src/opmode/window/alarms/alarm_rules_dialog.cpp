#include "opmode/window/alarms/alarm_rules_dialog.h"

#include "lang/text_table.h"
#include "look/list_views.h"
#include "look/problem_label.h"
#include "opmode/operational_mode.h"
#include "opmode/window/alarms/alarm_cells.h"
#include "opmode/window/alarms/alarm_rules_model.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

namespace ktr {

namespace {

/// A list to choose from, in place.
class PriorityDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        auto *box = new QComboBox(parent);
        for (const AlarmPriority priority :
             {AlarmPriority::High, AlarmPriority::Medium, AlarmPriority::Low}) {
            box->addItem(AlarmCells::priority(static_cast<int>(priority)), static_cast<int>(priority));
        }
        return box;
    }
    void setEditorData(QWidget *editor, const QModelIndex &index) const override
    {
        auto *box = static_cast<QComboBox *>(editor);
        box->setCurrentIndex(box->findData(index.data(Qt::EditRole)));
    }
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override
    {
        model->setData(index, static_cast<QComboBox *>(editor)->currentData());
    }
};

} // namespace

AlarmRulesDialog::AlarmRulesDialog(OperationalMode &mode, const TextTable &texts, QWidget *parent)
    : QDialog(parent),
      m_mode(mode),
      m_model(new AlarmRulesModel(mode.alarmActions().rules(), this)),
      m_table(new QTableView(this)),
      m_try(new QLineEdit(this)),
      m_verdict(new QLabel(this)),
      m_problem(new ProblemLabel(this)),
      m_ok(new QPushButton(texts.text(Text::Ok), this))
{
    setObjectName(QStringLiteral("Form_rules"));
    setWindowTitle(tr("Alarm rules"));
    auto *hint =
        new QLabel(tr("What a station sends is looked for in the rules from the top; the first one that "
                      "fits says what it is. What fits none is no alarm. Changes hold for what comes from "
                      "then on."),
                   this);
    hint->setWordWrap(true);
    setUpTable();
    m_try->setObjectName(QStringLiteral("Text_rule_try"));
    m_try->setPlaceholderText(tr("What a station could send, for example: Pump 1 fail"));
    addClearButton(*m_try);
    m_verdict->setObjectName(QStringLiteral("lbl_rule_try"));
    m_verdict->setWordWrap(true);
    m_verdict->setTextFormat(Qt::PlainText);
    m_verdict->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    constexpr int linesOfVerdict = 3; // it changes with every key, and nothing is to jump
    m_verdict->setMinimumHeight(linesOfVerdict * fontMetrics().lineSpacing());
    auto *form = new QFormLayout;
    form->addRow(tr("Try a text"), m_try);
    form->addRow(QString(), m_verdict);
    m_problem->setObjectName(QStringLiteral("Label_rules_problem"));
    m_ok->setObjectName(QStringLiteral("Cmd_rules_ok"));
    m_ok->setDefault(true);
    auto *cancel = new QPushButton(texts.text(Text::Cancel), this);
    cancel->setObjectName(QStringLiteral("Cmd_rules_cancel"));
    cancel->setAutoDefault(false);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_ok);
    buttons->addWidget(cancel);
    auto *all = new QVBoxLayout(this);
    all->setSpacing(12);
    all->addWidget(hint);
    all->addLayout(table(), 1);
    all->addLayout(form);
    all->addWidget(m_problem);
    all->addLayout(buttons);
    constexpr QSize comfortable(880, 520);
    resize(comfortable);
    connect(m_ok, &QPushButton::clicked, this, &AlarmRulesDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &AlarmRulesDialog::reject);
    connect(m_try, &QLineEdit::textChanged, this, &AlarmRulesDialog::refresh);
    connect(m_model, &QAbstractItemModel::dataChanged, this, &AlarmRulesDialog::refresh);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &AlarmRulesDialog::refresh);
    m_table->setCurrentIndex(m_model->index(0, 0));
    m_table->setFocus();
    refresh();
}

void AlarmRulesDialog::setUpTable()
{
    m_table->setObjectName(QStringLiteral("tbl_rules"));
    m_table->setAccessibleName(tr("Alarm rules"));
    m_table->setModel(m_model);
    m_table->setItemDelegateForColumn(AlarmRulesModel::Priority, new PriorityDelegate(m_table));
    m_table->setTabKeyNavigation(false);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                             QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    m_table->setAlternatingRowColors(true);
    m_table->setShowGrid(false);
    m_table->setWordWrap(false);
    constexpr int roomForEditor = 14;
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + roomForEditor);
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_table->installEventFilter(this);
    for (int column = 0; column < AlarmRulesModel::columns; ++column) {
        const bool isText = column == AlarmRulesModel::Pattern || column == AlarmRulesModel::Ending;
        m_table->horizontalHeader()->setSectionResizeMode(column, isText ? QHeaderView::Stretch
                                                                         : QHeaderView::ResizeToContents);
    }
}

QLayout *AlarmRulesDialog::table()
{
    auto *column = new QVBoxLayout;
    const std::pair<const char *, QString> captions[] = {{"Cmd_rule_add", tr("Add")},
                                                         {"Cmd_rule_remove", tr("Remove")},
                                                         {"Cmd_rule_up", tr("Up")},
                                                         {"Cmd_rule_down", tr("Down")}};
    const std::array keys = {QKeySequence(Qt::Key_Insert), QKeySequence(Qt::Key_Delete),
                             QKeySequence(Qt::ALT | Qt::Key_Up), QKeySequence(Qt::ALT | Qt::Key_Down)};
    for (std::size_t action = 0; action < actions; ++action) {
        auto *button = new QPushButton(captions[action].second, this);
        button->setObjectName(QLatin1String(captions[action].first));
        button->setAutoDefault(false);
        button->setToolTip(keys.at(action).toString(QKeySequence::NativeText));
        connect(button, &QPushButton::clicked, this, [this, action] { act(static_cast<Action>(action)); });
        m_buttons.at(action) = button;
        column->addWidget(button);
    }
    column->addStretch();
    auto *row = new QHBoxLayout;
    row->addWidget(m_table, 1);
    row->addLayout(column);
    return row;
}

bool AlarmRulesDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_table && event->type() == QEvent::KeyPress) {
        const auto &key = *static_cast<QKeyEvent *>(event);
        const auto isWith = [&](Qt::Key which, Qt::KeyboardModifiers modifiers) {
            return key.key() == which && (key.modifiers() & ~Qt::KeypadModifier) == modifiers;
        };
        const std::array keys = {isWith(Qt::Key_Insert, Qt::NoModifier),
                                 isWith(Qt::Key_Delete, Qt::NoModifier), isWith(Qt::Key_Up, Qt::AltModifier),
                                 isWith(Qt::Key_Down, Qt::AltModifier)};
        const auto pressed = std::ranges::find(keys, true);
        if (pressed != keys.end()) {
            act(static_cast<Action>(pressed - keys.begin()));
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void AlarmRulesDialog::act(Action action)
{
    if (!m_buttons.at(action)->isEnabled()) {
        return;
    }
    switch (action) {
    case Add:
        add();
        break;
    case Remove:
        remove();
        break;
    case Up:
        move(-1);
        break;
    default:
        move(1);
        break;
    }
}

/// Above the chosen rule, since the first that fits counts; where there is none, as the only one.
void AlarmRulesDialog::add()
{
    const int row = std::max(m_table->currentIndex().row(), 0);
    m_model->insertAt(row);
    const QModelIndex text = m_model->index(row, AlarmRulesModel::Pattern);
    m_table->setCurrentIndex(text);
    m_table->setFocus();
    m_table->edit(text);
    refresh();
}

void AlarmRulesDialog::remove()
{
    m_model->removeAt(m_table->currentIndex().row());
    m_table->setFocus();
    refresh();
}

void AlarmRulesDialog::move(int by)
{
    m_model->move(m_table->currentIndex().row(), by);
    m_table->scrollTo(m_table->currentIndex());
    refresh();
}

void AlarmRulesDialog::refresh()
{
    const int row = m_table->currentIndex().row();
    m_buttons[Remove]->setEnabled(row >= 0);
    m_buttons[Up]->setEnabled(row > 0);
    m_buttons[Down]->setEnabled(row >= 0 && row + 1 < m_model->rowCount());
    QStringList remarks;
    for (int rule = 0; rule < m_model->rowCount(); ++rule) {
        if (const QString remark = m_model->remark(rule); !remark.isEmpty()) {
            remarks += remark;
        }
    }
    if (m_model->rowCount() == 0) {
        remarks += tr("Without a rule nothing that a station sends is an alarm");
    }
    constexpr int shownAtOnce = 3;
    m_problem->tell(QStringList(remarks.mid(0, shownAtOnce)).join(u'\n'));
    m_ok->setEnabled(m_model->isUsable());
    m_ok->setToolTip(m_ok->isEnabled() ? QString() : m_problem->text());
    const QString text = m_try->text();
    m_model->mark(text.isEmpty() ? -1 : static_cast<int>(m_model->rules().placeFor(text)));
    m_verdict->setText(text.isEmpty() ? QString() : verdict(text));
}

QString AlarmRulesDialog::verdict(const QString &text) const
{
    const AlarmRules rules = m_model->rules();
    const qsizetype place = rules.placeFor(text);
    QStringList parts;
    if (place < 0) {
        parts += tr("No rule fits: it is no alarm.");
    } else if (const AlarmRule &rule = rules.list().at(place); !rule.isAlarm) {
        parts += tr("Rule %1 fits: it is no alarm.").arg(place + 1);
    } else {
        parts += (rule.sounds ? tr("Rule %1 fits: an alarm, priority %2, with sound.")
                              : tr("Rule %1 fits: an alarm, priority %2, without sound."))
                     .arg(place + 1)
                     .arg(AlarmCells::priority(static_cast<int>(rule.priority)));
        const QString end = rules.endOf(text);
        parts += end.isEmpty() ? tr("Nothing the station sends ends it.")
                               : tr("It is over when the station sends \"%1\".").arg(end);
    }
    if (isAlarmText(text) && rules.of(text) == nullptr) {
        parts += tr("In the tree it is red all the same, as every text with \"fail\".");
    }
    return parts.join(u' ');
}

void AlarmRulesDialog::accept()
{
    if (m_model->isUsable()) {
        m_mode.alarmActions().setRules(m_model->rules());
        QDialog::accept();
    }
}

} // namespace ktr
