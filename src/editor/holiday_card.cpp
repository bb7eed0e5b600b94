#include "editor/holiday_card.h"

#include "config/fields.h"
#include "config/holiday_store.h"
#include "editor/date_picker.h"
#include "look/field_width.h"
#include "look/kept_place.h"
#include "look/outside_texts.h"
#include "platform/settings_store.h"
#include "platform/text_rules.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>

namespace ktr {

namespace {

const QString dateForm = QStringLiteral("dd.MM.yyyy");

} // namespace

HolidayCard::HolidayCard(EditorContext &context, std::function<int()> shownEntry, QWidget *parent)
    : QGroupBox(parent),
      m_context(context),
      m_shownEntry(std::move(shownEntry)),
      m_date(new QLineEdit(this)),
      m_calendar(new DatePicker(
          QStringLiteral("cmd_swtch_frei_date"), DatePicker::Picks::Date, context,
          [this] { return typedDate(); }, this)),
      m_list(nullptr),
      m_add(button(QStringLiteral("Command_switch_add"), &HolidayCard::add)),
      m_clear(nullptr),
      m_load(nullptr),
      m_save(nullptr)
{
    setObjectName(QStringLiteral("Fra_swtch_frei"));
    m_list = new QListWidget(this);
    m_clear = button(QStringLiteral("Cmd_swtch_clear"), &HolidayCard::clear);
    m_load = button(QStringLiteral("Cmd_swtch_load"), &HolidayCard::load);
    m_save = button(QStringLiteral("Cmd_swtch_save"), &HolidayCard::save);

    m_date->setObjectName(QStringLiteral("Text_switch_frei"));
    m_date->setMinimumWidth(fieldWidth(m_date, QStringLiteral("00.00.0000")));
    connect(m_date, &QLineEdit::returnPressed, this, &HolidayCard::add);

    m_list->setObjectName(holidaysControl.forIndex(0));
    connect(m_list, &QListWidget::itemClicked, this,
            [this](const QListWidgetItem *item) { remove(m_list->row(item)); });
    auto *deleting = new QShortcut(QKeySequence(Qt::Key_Delete), m_list);
    deleting->setContext(Qt::WidgetShortcut);
    connect(deleting, &QShortcut::activated, this, [this] { remove(m_list->currentRow()); });

    connect(m_calendar, &DatePicker::picked, this, [this](const QDateTime &when) {
        m_date->setText(when.date().toString(dateForm));
        m_date->setFocus();
    });

    auto *grid = new QGridLayout(this);
    auto *date = new QHBoxLayout;
    date->setSpacing(2);
    date->addWidget(m_date);
    date->addWidget(m_calendar);
    grid->addLayout(date, 0, 0);
    grid->addWidget(m_add, 0, 1);
    grid->addWidget(m_list, 1, 0, 1, 2);
    grid->addWidget(m_clear, 2, 0, 1, 2);
    grid->addWidget(m_load, 3, 0, 1, 2);
    grid->addWidget(m_save, 4, 0, 1, 2);
}

QPushButton *HolidayCard::button(const QString &name, void (HolidayCard::*action)())
{
    auto *made = new QPushButton(this);
    made->setObjectName(name);
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, action);
    return made;
}

void HolidayCard::applyTexts()
{
    const TextTable &texts = m_context.texts;
    setTitle(texts.text(Text::Holidays));
    m_add->setText(texts.text(Text::AddHoliday));
    m_clear->setText(texts.text(Text::DeleteAll));
    m_load->setText(texts.text(Text::LoadHolidays));
    m_save->setText(texts.text(Text::SaveHolidays));
    m_calendar->applyTexts();
    m_date->setAccessibleName(texts.text(Text::Date));
    m_date->setToolTip(tr("Date of a holiday, such as 24.12.2027"));
    m_list->setAccessibleName(texts.text(Text::Holidays));
    m_list->setToolTip(tr("A click or the Delete key removes a date; at most %1").arg(HolidayList::capacity));
    m_load->setToolTip(tr("Replaces the list with the one that is kept for you"));
    m_save->setToolTip(tr("Keeps the list for other configurations"));
}

void HolidayCard::showRecords()
{
    QStringList lines = holidays().lines();
    for (QString &line : lines) { // of a file it may be anything
        line = shortenedLine(line);
    }
    bool same = lines.size() == m_list->count();
    for (int row = 0; same && row < m_list->count(); ++row) {
        same = m_list->item(row)->text() == lines[row];
    }
    if (same) {
        return;
    }
    const KeptPlace place(*m_list, [](const QModelIndex &line) { return line.data().toString(); });
    m_list->clear();
    m_list->addItems(lines);
    place.giveBack();
}

void HolidayCard::entered()
{
    const QDate today = m_context.document.environment().now().date();
    m_date->setText(today.toString(dateForm));
}

/// Each change is a step of its own to undo.
EditPlace HolidayCard::newStep()
{
    m_context.history.endGroup();
    return {m_list->objectName(), m_shownEntry()};
}

QDateTime HolidayCard::typedDate() const
{
    const auto date = toDate(m_date->text(), m_context.document.environment().locale);
    return date ? date->startOfDay() : QDateTime();
}

void HolidayCard::add()
{
    const std::optional<QDate> date = toDate(m_date->text(), m_context.document.environment().locale);
    if (!date) {
        m_context.showStatus(tr("\"%1\" is no date").arg(m_date->text()));
        return;
    }
    HolidayList extended = holidays();
    switch (extended.add(*date)) {
    case HolidayList::Added::Yes:
        m_context.history.edit(newStep(),
                               [&extended](Configuration &changed) { changed.holidays = extended; });
        m_list->scrollToBottom();
        m_date->selectAll();
        break;
    case HolidayList::Added::Duplicate:
        m_context.showStatus(tr("%1 is in the list already").arg(m_date->text()));
        break;
    case HolidayList::Added::Full:
        m_context.showMessage(m_context.texts.text(Text::MaximalHolidays));
        break;
    }
}

void HolidayCard::remove(int row)
{
    const QString line = holidays().lines().value(row);
    if (!line.isEmpty()) {
        m_context.history.adjust(newStep(), [row](Configuration &changed) { changed.holidays.remove(row); });
        m_context.tellStep(tr("Holiday removed: %1").arg(line.section(u'\t', 1)));
    }
}

void HolidayCard::clear()
{
    const auto count = holidays().lines().size();
    m_context.history.adjust(newStep(), [](Configuration &changed) { changed.holidays.clear(); });
    m_context.tellStep(tr("Holidays deleted: %1").arg(count),
                       count > 0 ? EditorContext::Replaced::Something : EditorContext::Replaced::Nothing);
}

void HolidayCard::load()
{
    const bool hadSome = !holidays().lines().isEmpty();
    m_context.history.adjust(newStep(),
                             [](Configuration &changed) { loadHolidays(changed.holidays, SettingsStore()); });
    m_context.tellStep(tr("Holidays loaded: %1").arg(holidays().lines().size()),
                       hadSome ? EditorContext::Replaced::Something : EditorContext::Replaced::Nothing);
}

void HolidayCard::save()
{
    SettingsStore store;
    m_context.showStatus(saveHolidays(holidays(), store)
                             ? tr("Holidays stored: %1").arg(holidays().lines().size())
                             : tr("The holidays could not be stored in your settings"));
}

} // namespace ktr
