#include "opmode/window/exclusive_card.h"

#include "look/problem_label.h"
#include "look/wheel_guard.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>

#include <array>

namespace ktr {

namespace {

/// The days of the lists; the position in the list is what is stored. The texts are the same in every
/// language.
const std::array<QString, 11> dayItems = {
    QStringLiteral("ungültig"),   QStringLiteral("täglich"),     QStringLiteral("wochentags"),
    QStringLiteral("Wochenende"), QStringLiteral("montags"),     QStringLiteral("dienstags"),
    QStringLiteral("mittwochs"),  QStringLiteral("donnerstags"), QStringLiteral("freitags"),
    QStringLiteral("samstags"),   QStringLiteral("sontags")};

} // namespace

ExclusiveCard::ExclusiveCard(OperationalMode &mode, const TextTable &texts, QWidget *parent)
    : QGroupBox(parent),
      m_mode(mode),
      m_texts(texts),
      Check_pic0_exclusive(new QCheckBox(this)),
      m_hint(new QLabel(this))
{
    auto *grid = new QGridLayout(this);
    grid->setColumnStretch(3, 1);
    Check_pic0_exclusive->setObjectName(QStringLiteral("Check_pic0_exclusive"));
    grid->addWidget(Check_pic0_exclusive, 0, 0, 1, 4);
    m_on = addRule(grid, 1, QStringLiteral("exclusiveON"));
    m_off = addRule(grid, 3, QStringLiteral("exclusiveOFF"));
    m_hint->setWordWrap(true);
    grid->addWidget(m_hint, 5, 0, 1, 4);
    connect(Check_pic0_exclusive, &QCheckBox::clicked, this,
            [this](bool checked) { m_mode.setExclusive(m_kennung, checked); });
}

ExclusiveCard::Rule ExclusiveCard::addRule(QGridLayout *grid, int row, const QString &which)
{
    const Rule rule{new QLabel(this), new QComboBox(this), new QLineEdit(this), new ProblemLabel(this)};
    rule.day->setObjectName(QLatin1String("Combo_pic0_") + which);
    rule.day->addItems(QStringList(dayItems.begin(), dayItems.end()));
    ignoreWheelUnlessFocused(rule.day);
    rule.time->setObjectName(QLatin1String("Text_pic0_") + which);
    rule.time->setMaximumWidth(rule.time->fontMetrics().horizontalAdvance(QStringLiteral("00:00:00000")));
    rule.problem->setObjectName(QLatin1String("lbl_pic0_") + which);
    rule.caption->setBuddy(rule.day);
    grid->addWidget(rule.caption, row, 0);
    grid->addWidget(rule.day, row, 1);
    grid->addWidget(rule.time, row, 2);
    grid->addWidget(rule.problem, row + 1, 1, 1, 3);
    connect(rule.day, &QComboBox::activated, this, [this, rule] {
        store();
        showTimeProblem(rule);
    });
    connect(rule.time, &QLineEdit::textEdited, this, [this, rule](const QString &typed) {
        store();
        if (minuteOfDay(typed)) { // what is being typed is not found fault with
            showTimeProblem(rule);
        }
    });
    connect(rule.time, &QLineEdit::editingFinished, this, [this, rule] {
        const QString shown = shownTime(rule.time->text());
        if (shown != rule.time->text()) {
            rule.time->setText(shown);
            store();
        }
        showTimeProblem(rule);
    });
    return rule;
}

void ExclusiveCard::showStation(const QString &kennung)
{
    m_kennung = kennung;
    refresh();
    showTimeProblem(m_on);
    showTimeProblem(m_off);
}

void ExclusiveCard::refresh()
{
    const cStation *station = m_mode.station(m_kennung);
    if (station == nullptr) {
        return;
    }
    Check_pic0_exclusive->setChecked(station->exclusiveMode());
    const ExclusiveSchedule schedule = m_mode.schedule(m_kennung);
    showRule(m_on, schedule.dayOn, schedule.hourOn);
    showRule(m_off, schedule.dayOff, schedule.hourOff);
}

void ExclusiveCard::showRule(const Rule &rule, int day, const QString &time)
{
    rule.day->setCurrentIndex(static_cast<int>(dayRule(day)));
    if (rule.time->text() != time) {
        rule.time->setText(time);
    }
}

void ExclusiveCard::showTimeProblem(const Rule &rule)
{
    const bool isSound =
        dayRule(rule.day->currentIndex()) == DayRule::Never || minuteOfDay(rule.time->text());
    rule.problem->tell(isSound ? QString()
                               : tr("This is no time of the day, 00:00 to 23:59, so nothing is switched"));
}

void ExclusiveCard::store()
{
    m_mode.setSchedule(m_kennung, {m_on.time->text(), m_on.day->currentIndex(), m_off.time->text(),
                                   m_off.day->currentIndex()});
}

void ExclusiveCard::applyTexts()
{
    setTitle(m_texts.text(Text::ExclusiveMode));
    Check_pic0_exclusive->setText(m_texts.text(Text::Exclusive));
    m_on.caption->setText(m_texts.text(Text::On));
    m_off.caption->setText(m_texts.text(Text::Off));
    const QString days = tr("The days on which exclusive mode is switched");
    const QString times = tr("The time of the day, HH:MM");
    for (const Rule &rule : {m_on, m_off}) {
        rule.day->setToolTip(days);
        rule.time->setToolTip(times);
        rule.day->setAccessibleName(rule.caption->text() + u' ' + days);
        rule.time->setAccessibleName(rule.caption->text() + u' ' + times);
        showTimeProblem(rule);
    }
    m_hint->setText(tr("While it is exclusive the module uses this connection alone: it neither sends "
                       "nor receives by GSM. What is ticked by hand stays until the next switch."));
}

} // namespace ktr
