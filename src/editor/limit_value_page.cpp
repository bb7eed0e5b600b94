#include "editor/limit_value_page.h"

#include "config/channel_use.h"
#include "config/channels.h"
#include "config/entry_texts.h"
#include "editor/channel_label.h"
#include "editor/combo_items.h"
#include "editor/entry_chooser.h"
#include "editor/length_counter.h"
#include "editor/limit_value_model.h"
#include "look/outside_texts.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QStackedWidget>

namespace ktr {

namespace {

constexpr int limitValueCaption = 3;                              ///< of "GW" and a blank
const QString countPerInterval = QStringLiteral("pro Intervall"); ///< in all languages

QLineEdit *numberEdit(QWidget *parent)
{
    auto *edit = new QLineEdit(parent);
    edit->setMinimumWidth(edit->fontMetrics().horizontalAdvance(u'0') * 12);
    return edit;
}

QStringList numbers(const Range &range)
{
    QStringList texts;
    for (int number = static_cast<int>(range.lowest); number <= static_cast<int>(range.highest); ++number) {
        texts += QString::number(number);
    }
    return texts;
}

} // namespace

LimitValuePage::LimitValuePage(EditorContext &context, QWidget *parent)
    : Page(context, parent),
      m_model(new LimitValueModel(this)),
      m_chooser(new EntryChooser({QStringLiteral("Tbl_gw"), QStringLiteral("Scr_gw")}, m_model,
                                 {QStringLiteral("00 ---"), QStringLiteral("16 BStZ DOut 2"),
                                  QStringLiteral("> 10000 Stunden"), QString()},
                                 this))
{
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(m_chooser, 1);
    layout->addWidget(entryFrame(), 1);

    connect(m_chooser, &EntryChooser::entryChanged, this, &LimitValuePage::load);
    onTexts([this] {
        m_chooser->setEntryName(text(Text::LimitValue));
        m_model->setTexts(this->context().texts);
        showUnits();
        showRecipients();
        showOverview();
    });
    onRecords([this] {
        showUnits();
        showRecipients();
        showOverview();
    });
}

int LimitValuePage::entry() const
{
    return m_chooser->entry();
}

const LimitValue &LimitValuePage::shown() const
{
    return configuration().limitValues[static_cast<std::size_t>(entry())];
}

FieldRef LimitValuePage::field(Member<LimitValue> member) const
{
    return fieldRef(
        &Configuration::limitValues, [this] { return entry(); }, member);
}

void LimitValuePage::entered()
{
    load();
}

void LimitValuePage::showEntry(int entry)
{
    m_chooser->setEntry(entry);
}

void LimitValuePage::setProblems(const QList<Problem> &problems)
{
    Page::setProblems(problems);
    m_model->setProblems(problemsByEntry<LimitValue>(problems));
}

// Controls

QWidget *LimitValuePage::entryFrame()
{
    m_frame = new QGroupBox(this);
    m_frame->setObjectName(QStringLiteral("Fra_gw"));
    onTexts([this] { m_frame->setTitle(text(Text::LimitValueShort) + u' ' + QString::number(entry() + 1)); });

    m_kinds = new QStackedWidget(m_frame);
    m_kinds->addWidget(thresholdPart());
    m_kinds->addWidget(referencePart());
    m_kinds->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);

    auto *layout = new QVBoxLayout(m_frame);
    layout->addWidget(m_kinds);
    layout->addLayout(notificationLine());
    layout->addWidget(recipientsPart());
    layout->addLayout(repetitionLine());
    layout->addStretch();
    onTexts([this] { alignCaptions(); });
    return m_frame;
}

ChannelLabel *LimitValuePage::fixedLabel(const QString &name)
{
    auto *label = new ChannelLabel(this);
    label->setObjectName(name);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    return label;
}

QWidget *LimitValuePage::thresholdPart()
{
    auto *part = new QWidget(m_frame);
    auto *grid = new QGridLayout(part);
    grid->setContentsMargins({});
    grid->setColumnStretch(1, 2);
    grid->setColumnStretch(2, 1);

    m_channel = new QComboBox(part);
    // Names may be long: they must not widen the window.
    m_channel->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_channel->setMinimumContentsLength(16);
    const auto showChannels = [this] {
        QStringList items;
        for (int channel = 0; channel <= channelCount; ++channel) {
            items += namedChannel(channel, configuration().names); // the same in every language
        }
        setItems(m_channel, items);
    };
    showChannels();
    onRecords(showChannels);
    const FieldRef channelField = field(&LimitValue::channel);
    binder().index(m_channel, channelField, Binder::Again::IsIgnored);
    connect(m_channel, &QComboBox::activated, this, &LimitValuePage::load);
    auto *channelLabel = labelFor(m_channel, channelField);
    channelLabel->setObjectName(QStringLiteral("lbl_gw_ip"));
    m_captions.push_back(channelLabel);
    grid->addWidget(channelLabel, 0, 0);
    grid->addWidget(m_channel, 0, 1, 1, 2);

    const auto addNumber = [&](Member<LimitValue> member, const QString &captionName, QLabel *behind) {
        auto *edit = numberEdit(part);
        const FieldRef number = field(member);
        binder().line(edit, number);
        const int row = grid->rowCount();
        auto *label = addRow(grid, number, edit);
        label->setObjectName(captionName);
        m_captions.push_back(label);
        grid->addWidget(behind, row, 2);
    };
    m_limitUnit = fixedLabel(QStringLiteral("lbl_gw_gw_0"));
    m_hysteresisUnit = fixedLabel(QStringLiteral("lbl_gw_hysterese_0"));
    m_delayMeaning = fixedLabel(QStringLiteral("lbl_gw_verzögerung_1"));
    m_delayMeaning->setMinimumWidth(m_delayMeaning->fontMetrics().horizontalAdvance(countPerInterval));
    addNumber(&LimitValue::limit, QStringLiteral("lbl_gw_gw_1"), m_limitUnit);
    addNumber(&LimitValue::hysteresis, QStringLiteral("lbl_gw_hysterese_1"), m_hysteresisUnit);
    addNumber(&LimitValue::delay, QStringLiteral("lbl_gw_verzögerung_0"), m_delayMeaning);

    const FieldRef comparisonField = field(&LimitValue::comparison);
    auto *comparison = captioned(new QGroupBox(part), comparisonField);
    tip(comparison, comparisonField);
    comparison->setObjectName(QStringLiteral("Fra_gw_vergleich"));
    auto *buttons = new QButtonGroup(comparison);
    auto *column = new QVBoxLayout(comparison);
    for (int id = 1; id <= 3; ++id) {
        auto *button = new QRadioButton(comparisonSign(id), comparison);
        buttons->addButton(button, id);
        column->addWidget(button);
    }
    binder().choice(buttons, comparisonField);
    onTexts([buttons] {
        const QStringList names{tr("less than the limit"), tr("equal to the limit"),
                                tr("greater than the limit")};
        for (int id = 1; const QString &name : names) {
            buttons->button(id)->setAccessibleName(name);
            buttons->button(id)->setToolTip(name);
            ++id;
        }
    });
    grid->addWidget(comparison, 0, 3, grid->rowCount(), 1);
    return part;
}

QWidget *LimitValuePage::referencePart()
{
    const FieldRef reference = field(&LimitValue::reference);
    auto *part = captioned(new QGroupBox(m_frame), reference);
    part->setObjectName(QStringLiteral("Frame_gw_Bezug"));
    tip(part, reference);
    auto *grid = new QGridLayout(part);
    constexpr int columns = 8;
    for (int index = 0; index < LimitValue::firstReference; ++index) {
        const int row = index / columns;
        const int column = index % columns;
        if (column == 0) {
            auto *label = new QLabel(QStringLiteral("%1 – %2").arg(index + 1).arg(index + columns), part);
            label->setObjectName(QStringLiteral("Label_gw_gwbezug_%1").arg(row));
            grid->addWidget(label, row, 0);
        }
        auto *box = new QCheckBox(QString::number(index + 1), part);
        onTexts([this, box, index] {
            box->setAccessibleName(text(Text::LimitValue) + u' ' + QString::number(index + 1));
        });
        m_references.push_back(box);
        grid->addWidget(box, row, column + 1);
        grid->setColumnStretch(column + 1, 1);
    }
    binder().bits(m_references, LimitValue::allReferences, reference);
    return part;
}

QWidget *LimitValuePage::recipientsPart()
{
    const FieldRef recipients = field(&LimitValue::recipients);
    auto *part = captioned(new QGroupBox(m_frame), recipients);
    part->setObjectName(QStringLiteral("Fra_gw_msm"));
    tip(part, recipients);
    auto *grid = new QGridLayout(part);
    constexpr int columns = 2; // of three a small window cuts ordinary names
    const int count = static_cast<int>(configuration().administrators.size());
    for (int index = 0; index < count; ++index) {
        auto *box = new QCheckBox(part);
        // Names are as long as the user likes: they must not widen the window.
        box->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        m_recipients.push_back(box);
        grid->addWidget(box, index / columns, index % columns);
        grid->setColumnStretch(index % columns, 1);
    }
    binder().bits(m_recipients, LimitValue::allRecipients, recipients);
    return part;
}

QLayout *LimitValuePage::notificationLine()
{
    auto *edit = new QLineEdit(m_frame);
    const FieldRef alarm = field(&LimitValue::alarm);
    binder().line(edit, alarm);
    auto *label = labelFor(edit, alarm);
    label->setObjectName(QStringLiteral("lbl_gw_meldung"));
    m_captions.push_back(label);
    auto *line = new QHBoxLayout;
    auto *counter = new LengthCounter(QStringLiteral("lbl_gw_length"), m_frame);
    onTexts([counter] { counter->applyTexts(); });
    onRecords([this, counter] { counter->show(commandLength()); });
    line->addWidget(label);
    line->addWidget(edit);
    line->addWidget(counter);
    return line;
}

/// Of the command that sends the entry shown.
qsizetype LimitValuePage::commandLength() const
{
    Configuration sent = configuration();
    CommandSequence sequence;
    sequence.start();
    sequence.leaveOut(~stepsOfEntry(EntryKind::LimitValue, entry() + 1));
    const Environment &environment = context().document.environment();
    const auto command = sequence.next(sent, {false, environment.locale, environment.now()});
    return command ? command->command.size() : 0;
}

QLayout *LimitValuePage::repetitionLine()
{
    auto *count = new QComboBox(m_frame);
    const FieldRef repetitions = field(&LimitValue::repetitions);
    setItems(count, numbers(*fieldOf(&LimitValue::repetitions).range));
    binder().index(count, repetitions);

    m_interval = numberEdit(m_frame);
    m_interval->setMaximumWidth(m_interval->minimumWidth());
    const FieldRef interval = field(&LimitValue::repetitionInterval);
    binder().line(m_interval, interval);
    m_interval->installEventFilter(this);

    QLabel *labels[] = {labelFor(count, repetitions), labelFor(m_interval, interval),
                        captioned(new QLabel(m_frame), *fieldOf(&LimitValue::repetitionInterval).unitBehind)};
    for (int index = 0; QLabel * label : labels) {
        label->setObjectName(QStringLiteral("lbl_gw_wiederholung_%1").arg(index++));
    }
    m_captions.push_back(labels[0]);
    auto *line = new QHBoxLayout;
    line->addWidget(labels[0]);
    line->addWidget(count);
    line->addWidget(labels[1]);
    line->addWidget(m_interval);
    line->addWidget(labels[2]);
    line->addStretch();
    return line;
}

/// The rows are in several layouts; their fields are to begin at the same place.
void LimitValuePage::alignCaptions()
{
    int width = 0;
    for (const QLabel *caption : m_captions) {
        width = std::max(width, caption->sizeHint().width());
    }
    for (QLabel *caption : m_captions) {
        caption->setMinimumWidth(width);
    }
}

// The entry shown

void LimitValuePage::load()
{
    fillDefaults();
    m_kinds->setCurrentIndex(LimitValue::isReference(entry()) ? 1 : 0);
    m_frame->setTitle(numberedCaption(m_frame->title(), limitValueCaption, entry() + 1));
    showRecords();
    refreshMarks();
}

void LimitValuePage::fillDefaults()
{
    struct Default
    {
        QString LimitValue::*member;
        QString text;
    };
    static const std::array defaults = {Default{&LimitValue::limit, QStringLiteral("0")},
                                        Default{&LimitValue::hysteresis, QStringLiteral("0")},
                                        Default{&LimitValue::delay, QStringLiteral("0")},
                                        Default{&LimitValue::repetitionInterval, QStringLiteral("30")}};
    const auto lacks = [](const LimitValue &value) {
        return std::ranges::any_of(defaults,
                                   [&value](const Default &row) { return (value.*row.member).isEmpty(); });
    };
    if (std::ranges::none_of(configuration().limitValues, lacks)) {
        return;
    }
    context().document.adjust([](Configuration &configuration) {
        for (LimitValue &value : configuration.limitValues) {
            for (const Default &row : defaults) {
                if ((value.*row.member).isEmpty()) {
                    value.*row.member = row.text;
                }
            }
        }
    });
}

void LimitValuePage::showUnits()
{
    const LimitUnits units = limitUnits(configuration(), shown().channel, context().texts);
    m_limitUnit->setText(shortenedLine(units.limit));
    m_hysteresisUnit->setText(shortenedLine(units.hysteresis));
    const QString own = countedUnit(configuration(), shown().channel);
    m_limitUnit->setName(own);
    m_hysteresisUnit->setName(own);
    const bool counts = channelMeasure(configuration(), shown().channel) == Measure::Pulses;
    m_delayMeaning->setText(counts ? countPerInterval : text(Text::DelayOfLimit));
    m_delayMeaning->setToolTip(counts ? tr("The count per interval: this input counts pulses")
                                      : tr("The notification waits so long"));
}

void LimitValuePage::showRecipients()
{
    for (std::size_t index = 0; index < m_recipients.size(); ++index) {
        QString caption = shortenedLine(configuration().administrators[index].name);
        m_recipients[index]->setText(caption.replace(u'&', QStringLiteral("&&")));
        const QString described = shortenedLine(administratorName(configuration(), index, context().texts));
        m_recipients[index]->setAccessibleName(described);
        m_recipients[index]->setToolTip(described);
    }
}

void LimitValuePage::showOverview()
{
    m_model->show(configuration(), context().texts);
    for (int entry = 0; QCheckBox * box : m_references) {
        box->setToolTip(m_model->description(entry++));
    }
}

bool LimitValuePage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_interval && event->type() == QEvent::FocusOut && m_interval->text().isEmpty()) {
        // Opening the field's menu, or going to another window, does not leave the field.
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason) {
            const FieldRef interval = field(&LimitValue::repetitionInterval);
            context().history.adjust(
                {interval.control, interval.entry()},
                [&interval](Configuration &changed) { interval.store(changed, QStringLiteral("1")); });
            showRecords();
        }
    }
    return Page::eventFilter(watched, event);
}

} // namespace ktr
