#include "editor/switch_point_page.h"

#include "config/channels.h"
#include "editor/combo_items.h"
#include "editor/date_picker.h"
#include "editor/entry_chooser.h"
#include "editor/holiday_card.h"
#include "editor/switch_point_model.h"
#include "look/outside_texts.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>

namespace ktr {

namespace {

constexpr int switchPointCaption = 12; ///< of "Schaltpunkt" and a blank

/// "JJMMTThhmm" of this century; invalid for another text.
QDateTime startOf(const QString &text)
{
    return QDateTime::fromString(QLatin1String("20") + text, QStringLiteral("yyyyMMddhhmm"));
}

/// Administrators' names are as long as the user likes: they must not widen the window.
QComboBox *narrowList(QWidget *parent)
{
    auto *box = new QComboBox(parent);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(16);
    return box;
}

} // namespace

SwitchPointPage::SwitchPointPage(EditorContext &context, QWidget *parent)
    : Page(context, parent),
      m_model(new SwitchPointModel(this)),
      m_chooser(new EntryChooser(
          {QStringLiteral("Tbl_swtch"), QStringLiteral("Scr_swtch")}, m_model,
          {QStringLiteral("00 ---"), QStringLiteral("13 AnalogOut 1"), QString(), QStringLiteral("00000.00")},
          this))
{
    auto *frame = entryFrame();
    m_holidays = new HolidayCard(
        context, [this] { return entry(); }, this);
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(m_chooser, 7);
    layout->addWidget(frame, 5);
    layout->addWidget(m_holidays, 3);

    connect(m_chooser, &EntryChooser::entryChanged, this, &SwitchPointPage::load);
    onTexts([this] {
        m_chooser->setEntryName(text(Text::Switchpoints));
        m_model->setTexts(this->context());
        setItems(m_type, m_model->types());
        showMeanings();
        m_holidays->applyTexts();
        showItems();
    });
    onRecords([this] {
        showItems();
        showKind();
        showMeanings();
        m_holidays->showRecords();
    });
}

int SwitchPointPage::entry() const
{
    return m_chooser->entry();
}

const SwitchPoint &SwitchPointPage::shown() const
{
    return configuration().switchPoints[static_cast<std::size_t>(entry())];
}

FieldRef SwitchPointPage::field(Member<SwitchPoint> member) const
{
    return fieldRef(
        &Configuration::switchPoints, [this] { return entry(); }, member);
}

void SwitchPointPage::entered()
{
    load();
    m_holidays->entered();
}

void SwitchPointPage::showEntry(int entry)
{
    m_chooser->setEntry(entry);
}

void SwitchPointPage::setProblems(const QList<Problem> &problems)
{
    Page::setProblems(problems);
    m_model->setProblems(problemsByEntry<SwitchPoint>(problems));
}

QWidget *SwitchPointPage::entryFrame()
{
    m_frame = new QGroupBox(this);
    m_frame->setObjectName(QStringLiteral("Fra_swtch_nr"));
    onTexts([this] { m_frame->setTitle(text(Text::Switchpoint) + u' ' + QString::number(entry() + 1)); });
    auto *grid = new QGridLayout(m_frame);
    grid->setColumnStretch(1, 1);

    const auto addLine = [&](int row, QLabel *label, const QString &name, QWidget *control) {
        label->setObjectName(name);
        grid->addWidget(label, row, 0);
        grid->addWidget(control, row, 1);
        return label;
    };
    const auto list = [&](Member<SwitchPoint> member, const QStringList &items) {
        auto *box = narrowList(m_frame);
        setItems(box, items);
        binder().index(box, field(member));
        return box;
    };
    const auto edit = [&](Member<SwitchPoint> member) {
        auto *line = new QLineEdit(m_frame);
        binder().line(line, field(member));
        return line;
    };

    m_target = list(&SwitchPoint::target, QStringList(targetCount));
    addLine(0, labelFor(m_target, field(&SwitchPoint::target)), QStringLiteral("lbl_swtch_ip"), m_target);

    m_type = list(&SwitchPoint::type, QStringList(SwitchPoint::typeCount));
    addLine(1, labelFor(m_type, field(&SwitchPoint::type)), QStringLiteral("lbl_swtch_typ"), m_type);

    // Start and limit value stand at the same place: only one of them is shown.
    auto *start = edit(&SwitchPoint::start);
    start->setInputMethodHints(Qt::ImhPreferNumbers);
    auto *startLabel =
        addLine(2, labelFor(start, field(&SwitchPoint::start)), QStringLiteral("lbl_swtch_start_0"), start);
    auto *startForm = new QLabel(m_frame);
    startForm->setObjectName(QStringLiteral("lbl_swtch_start_1"));
    onTexts([this, startForm] {
        startForm->setText(context().isGerman() ? QStringLiteral("JJMMTThhmm")
                                                : QStringLiteral("YYMMDDhhmm"));
    });
    auto *calendar = new DatePicker(
        QStringLiteral("cmd_swtch_start_date"), DatePicker::Picks::DateAndTime, context(),
        [this] { return startOf(shown().start); }, m_frame);
    connect(calendar, &DatePicker::picked, start, [start](const QDateTime &when) {
        start->setText(when.toString(QStringLiteral("yyMMddhhmm")));
        start->setFocus();
    });
    onTexts([calendar] { calendar->applyTexts(); });
    auto *startLine = new QHBoxLayout;
    startLine->setSpacing(2);
    startLine->addWidget(start);
    startLine->addWidget(calendar);
    grid->addLayout(startLine, 2, 1);
    grid->addWidget(startForm, 2, 2);
    m_limitValue = list(&SwitchPoint::limitValue, QStringList(LimitValue::count));
    auto *limitValueLabel = addLine(2, labelFor(m_limitValue, field(&SwitchPoint::limitValue)),
                                    QStringLiteral("lbl_swtch_gw"), m_limitValue);

    auto *value = edit(&SwitchPoint::value);
    addLine(3, labelFor(value, field(&SwitchPoint::value)), QStringLiteral("lbl_swtch_wert"), value);

    auto *period = edit(&SwitchPoint::period);
    auto *periodLabel = addLine(4, labelFor(period, field(&SwitchPoint::period)),
                                QStringLiteral("Lbl_swtch_periode_0"), period);
    auto *minutes = captioned(new QLabel(m_frame), *fieldOf(&SwitchPoint::period).unitBehind);
    minutes->setObjectName(QStringLiteral("Lbl_swtch_periode_1"));
    grid->addWidget(minutes, 4, 2);
    m_meaning = new QLabel(m_frame);
    m_meaning->setObjectName(QStringLiteral("lbl_swtch_typ_meaning"));
    m_meaning->setWordWrap(true);
    grid->addWidget(m_meaning, 5, 0, 1, 3, Qt::AlignTop);
    grid->setRowStretch(5, 1);

    m_forTimes = {startLabel, start, startForm, calendar};
    m_forLimitValues = {limitValueLabel, m_limitValue};
    m_forPeriods = {periodLabel, period, minutes};
    for (const auto &controls : {m_forTimes, m_forLimitValues, m_forPeriods}) {
        for (QWidget *control : controls) {
            QSizePolicy policy = control->sizePolicy();
            policy.setRetainSizeWhenHidden(true); // or the layout would jump
            control->setSizePolicy(policy);
        }
    }
    return m_frame;
}

void SwitchPointPage::load()
{
    if (shown().start.isEmpty()) {
        const QDate today = context().document.environment().now().date();
        context().document.adjust([this, today](Configuration &configuration) {
            configuration.switchPoints[static_cast<std::size_t>(entry())].start =
                today.toString(QStringLiteral("yyMMdd")) + QLatin1String("0000");
        });
    }
    m_frame->setTitle(numberedCaption(m_frame->title(), switchPointCaption, entry() + 1));
    showRecords();
    refreshMarks();
}

void SwitchPointPage::showItems()
{
    m_model->show(context());
    setItems(m_target, m_model->targets());
    setItems(m_limitValue, m_model->limitValues());
}

/// Beside the items, which keep their texts.
void SwitchPointPage::showMeanings()
{
    const auto tipOf = [](QComboBox *box, int item, const QString &text) {
        box->setItemData(item, text.isEmpty() ? QVariant() : text, Qt::ToolTipRole);
    };
    for (int position = 0; position < m_target->count(); ++position) {
        tipOf(m_target, position, m_model->wholeTarget(position));
    }
    for (int type = 0; type < m_type->count(); ++type) {
        tipOf(m_type, type, m_model->meaning(type));
    }
    const SwitchPoint &point = shown();
    const QString target = shortenedLine(m_model->wholeTarget(point.target));
    const QString type = m_model->meaning(point.type);
    QStringList lines;
    if (!target.isEmpty()) {
        lines += tr("Switches: %1").arg(target);
    }
    if (!type.isEmpty()) {
        lines += tr("Type %1: %2").arg(QString::number(point.type), type);
    }
    m_target->setAccessibleDescription(target);
    m_type->setAccessibleDescription(type);
    m_meaning->setText(lines.join(u'\n'));
}

void SwitchPointPage::showKind()
{
    const bool reacts = shown().reactsToLimitValue();
    const auto setVisible = [](const std::vector<QWidget *> &controls, bool visible) {
        for (QWidget *control : controls) {
            control->setVisible(visible);
        }
    };
    setVisible(m_forTimes, !reacts);
    setVisible(m_forLimitValues, reacts);
    setVisible(m_forPeriods, shown().type == SwitchPoint::periodic);
}

} // namespace ktr
