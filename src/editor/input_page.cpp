#include "editor/input_page.h"

#include "config/channel_use.h"
#include "config/channels.h"
#include "config/comparison.h"
#include "config/entry_texts.h"
#include "editor/channel_label.h"
#include "editor/input_grid.h"
#include "editor/scaling_helper.h"
#include "editor/striped_card.h"
#include "look/field_width.h"
#include "look/outside_texts.h"
#include "platform/text_rules.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace ktr {

enum InputPage::Column : int {
    NumberColumn,
    NameColumn,
    IntervalColumn,
    DeltaColumn,
    CounterColumn,
    HoursColumn,
    InvertColumn,
    DividerColumn,
    ValueColumn,
    ValueUnitColumn,
    OffsetColumn,
    FactorColumn,
    UnitColumn,
    columnCount,
};

namespace {

// The group captions stand above the columns' own.
constexpr int groupRow = 0;
constexpr int captionRow = 1;
constexpr int firstRow = 2;

constexpr int lineWidth = 88;

QString indexed(const char *name, int index)
{
    return QLatin1String(name) + u'_' + QString::number(index);
}

/// The name and the unit of the field that a column shows.
template <auto member> QString heading(const TextTable &texts)
{
    const auto &field = fieldOf(member);
    return headingText(field.label, field.unit, texts);
}

template <Text name> QString fromTable(const TextTable &texts)
{
    return texts.text(name);
}

QString wholeNumberForm(const QString &text)
{
    return QString::number(leadingNumber(text), 'f', 0);
}

} // namespace

InputPage::InputPage(EditorContext &context, QWidget *parent)
    : Page(context, parent),
      m_card(new StripedCard(firstRow, this)),
      m_grid(m_card->grid()),
      m_cells(new InputGrid(context, this))
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->addWidget(m_card, 0, Qt::AlignTop);
    layout->addStretch();
    m_grid->setContentsMargins(10, 4, 10, 4);
    m_grid->setVerticalSpacing(2);
    onRecords([this] {
        constexpr int roomy = 14;
        constexpr int close = 8; // leaves room for names in a small window
        m_grid->setHorizontalSpacing(configuration().names.isEmpty() ? roomy : close);
    });
    addHeader();
    for (int channel = 1; channel <= channelCount; ++channel) {
        addRow(channel);
    }
}

void InputPage::fillDown()
{
    m_cells->fillDown(window()->focusWidget());
}

void InputPage::addHeader()
{
    auto *sent = new QCheckBox(m_card);
    const FieldRef sendValues = fieldRef(&Configuration::sendValues, 0, &SendValues::enabled);
    binder().check(sent, sendValues);
    captioned(sent, sendValues);
    tip(sent, sendValues);
    m_grid->addWidget(sent, groupRow, InvertColumn, 1, OffsetColumn - InvertColumn);
    auto *scaling = captioned(new QLabel(m_card), Text::Scaling);
    auto *helper = newButton("cmd_ip_scaling", [this] { openScalingHelper(); });
    onTexts([helper] { helper->setText(tr("By two points...")); });
    tip(helper,
        [] { return tr("Finds offset and factor of an analog channel by two values that are known"); });
    auto *group = new QHBoxLayout;
    group->addWidget(scaling);
    group->addWidget(helper);
    group->addStretch();
    m_grid->addLayout(group, groupRow, OffsetColumn, 1, columnCount - OffsetColumn);

    for (int at = NumberColumn; at < columnCount; ++at) {
        const auto column = static_cast<Column>(at);
        if (column == ValueUnitColumn) {
            continue;
        }
        auto *label = new QLabel(m_card);
        onTexts([this, label, column] { label->setText(caption(column)); });
        if (column == NumberColumn) {
            label->setObjectName(indexed("lbl_ip_ip", 0));
        } else if (column == NameColumn) {
            label->setObjectName(indexed("lbl_ip_bezeichnung", 0));
        }
        m_grid->addWidget(label, captionRow, column);
    }
}

void InputPage::addRow(int channel)
{
    // "10 Analog In 2": the number and the name
    const QString text = channelText(channel);
    const qsizetype blank = text.indexOf(u' ');
    auto *number = new QLabel(text.left(blank), m_card);
    number->setObjectName(indexed("lbl_ip_ip", channel));
    number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto *name = new ChannelLabel(text.mid(blank + 1), m_card);
    onRecords([this, name, channel] { name->setName(configuration().names.of(channel).name); });
    name->setObjectName(indexed("lbl_ip_bezeichnung", channel));
    m_grid->addWidget(number, firstRow + channel - 1, NumberColumn);
    m_grid->addWidget(name, firstRow + channel - 1, NameColumn);

    QLineEdit *interval = addLine(fieldRef(&Configuration::archiving, channel - 1, &Archiving::interval),
                                  channel, IntervalColumn);
    name->setBuddy(interval);
    connect(interval, &QLineEdit::textChanged, this, [this, interval] { filterInterval(interval); });
    addLine(fieldRef(&Configuration::archiving, channel - 1, &Archiving::delta), channel, DeltaColumn);

    addCounter(channel);
    addOutputValue(channel);
    addScaling(channel);
}

void InputPage::addCounter(int channel)
{
    const DigitalInput *input = countingInputOf(configuration(), channel);
    if (input == nullptr && outputHoursOf(configuration(), channel) == nullptr) {
        return;
    }
    std::vector<QWidget *> whileCounting;
    int index = channel - 1;
    if (input != nullptr) {
        const auto field = [index](auto member) {
            return fieldRef(&Configuration::digitalInputs, index, member);
        };
        if (fieldOf(&DigitalInput::countsPulses).appliesTo(index)) {
            addCheck(field(&DigitalInput::countsPulses), channel, CounterColumn);
            whileCounting.push_back(addCheck(field(&DigitalInput::inverted), channel, InvertColumn));
            whileCounting.push_back(addLine(field(&DigitalInput::divider), channel, DividerColumn));
        } else {
            addCheck(field(&DigitalInput::countsHours), channel, HoursColumn);
            whileCounting.push_back(addCheck(field(&DigitalInput::inverted), channel, InvertColumn));
        }
        whileCounting.push_back(addLine(field(&DigitalInput::value), channel, ValueColumn));
    } else {
        const int output = channel - 15;
        addCheck(fieldRef(&Configuration::outputHours, output, &OutputHours::inverted), channel,
                 InvertColumn);
        addLine(fieldRef(&Configuration::outputHours, output, &OutputHours::value), channel, ValueColumn);
        index = output + 4;
    }
    ChannelLabel *unit = addUnit(indexed("lbl_ip_digineinheit", index), channel);
    const auto refresh = [this, channel, unit, whileCounting] {
        const Measure measure = channelMeasure(configuration(), channel);
        for (QWidget *control : whileCounting) {
            control->setEnabled(measure != Measure::Binary);
        }
        unit->setText(measure == Measure::Pulses  ? text(Text::Pulses)
                      : measure == Measure::Hours ? text(Text::Hours)
                                                  : QString());
        unit->setName(countedUnit(configuration(), channel));
    };
    onTexts(refresh);
    onRecords(refresh);
}

void InputPage::addOutputValue(int channel)
{
    if (channel == 11 || channel == 12) {
        QCheckBox *on = addCheck(fieldRef(&Configuration::outputValues, channel - 11, &OutputValue::digital),
                                 channel, ValueColumn);
        captioned(on, Text::On);
    } else if (channel == 13 || channel == 14) {
        const int output = channel - 13;
        addLine(fieldRef(&Configuration::outputValues, output, &OutputValue::analog), channel, ValueColumn);
        QLabel *unit = addUnit(indexed("lbl_ip_einheit", output), channel);
        onRecords([this, unit, channel] {
            unit->setText(shortenedLine(scalingOf(configuration(), channel)->unit));
        });
    }
}

void InputPage::addScaling(int channel)
{
    const Scaling *scaling = scalingOf(configuration(), channel);
    if (scaling == nullptr) {
        return;
    }
    const int index = static_cast<int>(scaling - configuration().scaling.data());
    addLine(fieldRef(&Configuration::scaling, index, &Scaling::offset), channel, OffsetColumn);
    addLine(fieldRef(&Configuration::scaling, index, &Scaling::factor), channel, FactorColumn);
    addLine(fieldRef(&Configuration::scaling, index, &Scaling::unit), channel, UnitColumn);
}

/// Begins with the channel that the user was at.
void InputPage::openScalingHelper()
{
    const Scaling *scaling = m_scaled == 0 ? nullptr : scalingOf(configuration(), m_scaled);
    const auto index = scaling == nullptr ? 0 : static_cast<int>(scaling - configuration().scaling.data());
    auto *helper = new ScalingHelper(context(), index, this);
    helper->show();
}

bool InputPage::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn) {
        m_scaled = channelOfControl(watched->objectName());
    }
    return Page::eventFilter(watched, event);
}

void InputPage::place(QWidget *control, const FieldRef &field, int channel, Column column)
{
    m_grid->addWidget(control, firstRow + channel - 1, column);
    // The units of values have a column without fields: a table has none for them.
    m_cells->add(control, field, {channel, column < ValueUnitColumn ? column : column - 1});
    tip(control, field);
    const auto describe = [this, control, channel, heading = field.heading] {
        const QString name = namedChannel(channel, configuration().names) + u' ' + heading(context().texts);
        if (control->accessibleName() != name) { // or screen readers were told with every key
            control->setAccessibleName(name);
        }
    };
    onTexts(describe);
    onRecords(describe);
}

QLineEdit *InputPage::addLine(const FieldRef &field, int channel, Column column)
{
    auto *edit = new QLineEdit(m_card);
    edit->setMinimumWidth(fieldWidth(edit, QStringLiteral("00000000")));
    edit->setMaximumWidth(lineWidth);
    // Rows may be drawn closer than the style likes, so that all of them stay in sight.
    edit->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    edit->setMinimumHeight(edit->fontMetrics().height() + 4);
    binder().line(edit, field);
    edit->installEventFilter(this);
    place(edit, field, channel, column);
    return edit;
}

QCheckBox *InputPage::addCheck(const FieldRef &field, int channel, Column column)
{
    auto *box = new QCheckBox(m_card);
    binder().check(box, field);
    place(box, field, channel, column);
    return box;
}

ChannelLabel *InputPage::addUnit(const QString &name, int channel)
{
    auto *unit = new ChannelLabel(m_card);
    unit->setObjectName(name);
    constexpr int ownUnit = 40; // behind what it counts
    unit->setMaximumWidth(lineWidth + ownUnit);
    m_grid->addWidget(unit, firstRow + channel - 1, ValueUnitColumn);
    return unit;
}

QString InputPage::caption(Column column) const
{
    static constexpr std::array<QString (*)(const TextTable &), columnCount> captions = {
        fromTable<Text::Ip>,
        fromTable<Text::Identifier>,
        heading<&Archiving::interval>,
        heading<&Archiving::delta>,
        heading<&DigitalInput::countsPulses>,
        heading<&DigitalInput::countsHours>,
        heading<&DigitalInput::inverted>,
        heading<&DigitalInput::divider>,
        heading<&DigitalInput::value>,
        nullptr, // the units of the values stand without a caption
        heading<&Scaling::offset>,
        heading<&Scaling::factor>,
        heading<&Scaling::unit>,
    };
    return captions[static_cast<std::size_t>(column)](context().texts);
}

void InputPage::filterInterval(QLineEdit *edit)
{
    if (m_filtering || edit->text() == wholeNumberForm(edit->text())) {
        return;
    }
    m_filtering = true;
    edit->backspace();
    m_filtering = false;
}

} // namespace ktr
