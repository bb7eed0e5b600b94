#include "app/channel_inputs.h"

#include "config/channel_use.h"
#include "config/entry_texts.h"
#include "foretell/foretelling.h"
#include "look/list_views.h"
#include "look/palettes.h"
#include "look/wheel_guard.h"
#include "platform/text_rules.h"

#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace ktr {

namespace {

constexpr int sliderSteps = 1000;
constexpr int shownDigits = 6;

QString plainNumber(double value)
{
    return QString::number(value, 'g', shownDigits);
}

QString stateWords(const ModulePlay &play, int limitValue)
{
    const auto clock = [](const std::optional<ModuleMs> &at) {
        return clockText(at.value_or(0)).section(u' ', 1);
    };
    if (play.whyUnplayed(limitValue)) {
        return ChannelInputs::tr("is not played");
    }
    const ModulePlay::State &state = play.state(limitValue);
    switch (state.phase) {
    case ModulePlay::Phase::Unknown:
        return ChannelInputs::tr("has no value yet");
    case ModulePlay::Phase::Normal:
        return ChannelInputs::tr("not passed");
    case ModulePlay::Phase::Waiting:
        return ChannelInputs::tr("delay until %1").arg(clock(state.next));
    case ModulePlay::Phase::Standing:
        break;
    }
    return state.next ? ChannelInputs::tr("stands, repetition at %1").arg(clock(state.next))
                      : ChannelInputs::tr("stands");
}

/// Red where a limit value stands.
void showStateLine(QLabel &label, const QString &text, bool isStanding)
{
    if (label.text() != text) {
        label.setText(text);
    }
    QPalette colours = QApplication::palette();
    colours.setColor(QPalette::WindowText,
                     isStanding ? alarmText(colours) : colours.color(QPalette::PlaceholderText));
    if (label.palette().color(QPalette::WindowText) != colours.color(QPalette::WindowText)) {
        label.setPalette(colours);
    }
}

} // namespace

std::pair<double, double> sliderRange(const Configuration &configuration, int channel)
{
    constexpr double signalSteps = 10;
    constexpr double room = 0.1;
    const Measure measure = channelMeasure(configuration, channel);
    double lowest = 0;
    double highest = measure == Measure::Binary ? 1 : 0;
    if (const Scaling *scaling = scalingOf(configuration, channel)) {
        const double offset = toNumber(scaling->offset).value_or(0);
        const double end = offset + signalSteps * toNumber(scaling->factor).value_or(1);
        lowest = std::min(offset, end);
        highest = std::max(offset, end);
    } else if (measure == Measure::Temperature) {
        constexpr double cold = -30;
        constexpr double warm = 60;
        lowest = cold;
        highest = warm;
    }
    for (int index = 0; index < LimitValue::firstReference; ++index) {
        const LimitValue &value = configuration.limitValues[static_cast<std::size_t>(index)];
        const auto limit = toNumber(value.limit);
        if (value.channel != channel || !limit || measure == Measure::Binary) {
            continue;
        }
        const double around = toNumber(value.hysteresis).value_or(0) + std::abs(*limit) * room;
        const bool counts = measure == Measure::Pulses || measure == Measure::Hours;
        lowest = std::min(lowest, counts ? 0 : *limit - around);
        highest = std::max(highest, counts ? 2 * *limit : *limit + around);
    }
    return {lowest, highest > lowest ? highest : lowest + 1};
}

ChannelInput::ChannelInput(int channel, QWidget *parent)
    : QWidget(parent),
      m_channel(channel),
      m_name(named<QLabel>(QStringLiteral("lbl_foretell_%1").arg(channel), this)),
      m_unit(new QLabel(this)),
      m_states(named<QLabel>(QStringLiteral("lbl_foretell_states_%1").arg(channel), this)),
      m_box(named<QCheckBox>(QStringLiteral("Chk_foretell_%1").arg(channel), this)),
      m_slider(named<QSlider>(QStringLiteral("Slider_foretell_%1").arg(channel), this)),
      m_field(named<QLineEdit>(QStringLiteral("Txt_foretell_%1").arg(channel), this))
{
    m_slider->setOrientation(Qt::Horizontal);
    m_slider->setRange(0, sliderSteps);
    m_slider->setPageStep(sliderSteps / 20);
    m_slider->setSingleStep(sliderSteps / 200);
    ignoreWheelUnlessFocused(m_slider);
    constexpr int fieldWidest = 80;
    m_field->setMaximumWidth(fieldWidest);
    constexpr int unitWidth = 56;
    m_unit->setMinimumWidth(unitWidth);
    for (QLabel *label : {m_name, m_unit, m_states}) {
        label->setTextFormat(Qt::PlainText);
    }
    m_states->setWordWrap(true);
    m_states->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto *head = new QHBoxLayout;
    head->addWidget(m_name);
    head->addWidget(m_box);
    head->addWidget(m_states, 1);
    auto *setting = new QHBoxLayout;
    setting->addWidget(m_slider, 1);
    setting->addWidget(m_field);
    setting->addWidget(m_unit);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 2, 0, 2);
    layout->setSpacing(2);
    layout->addLayout(head);
    layout->addLayout(setting);
    connect(m_slider, &QSlider::valueChanged, this, &ChannelInput::takeSlider);
    connect(m_field, &QLineEdit::textEdited, this, &ChannelInput::takeText);
    connect(m_box, &QCheckBox::clicked, this, [this](bool checked) {
        m_box->setTristate(false);
        Q_EMIT valueGiven(m_channel, checked ? 1 : 0);
    });
}

void ChannelInput::describe(const Configuration &configuration, const TextTable &texts)
{
    const QString name = channelName(configuration, m_channel, texts);
    constexpr int widestName = 220;
    const QString unit = shownUnits(configuration, m_channel, texts).limit;
    const bool isBinary = channelMeasure(configuration, m_channel) == Measure::Binary;
    m_name->setText(m_name->fontMetrics().elidedText(name, Qt::ElideRight, widestName));
    m_name->setToolTip(configuration.names.of(m_channel).name);
    m_unit->setText(unit);
    for (QWidget *control : std::initializer_list<QWidget *>{m_box, m_slider, m_field}) {
        control->setAccessibleName(name + u' ' + unit);
    }
    m_box->setVisible(isBinary);
    m_name->setVisible(!isBinary);
    m_slider->setVisible(!isBinary);
    m_field->setVisible(!isBinary);
    m_unit->setVisible(!isBinary);
    m_box->setText(name);
    m_field->setPlaceholderText(tr("none"));
    const Scaling *const scaling = scalingOf(configuration, m_channel);
    m_offset = scaling != nullptr ? toNumber(scaling->offset).value_or(0) : 0;
    m_factor = scaling != nullptr ? toNumber(scaling->factor).value_or(0) : 0;
    m_range = sliderRange(configuration, m_channel);
    showValue(m_value);
}

QList<QWidget *> ChannelInput::controls() const
{
    return {m_box, m_slider, m_field};
}

double ChannelInput::shareToValue(int position) const
{
    const double share = double(position) / sliderSteps;
    return m_range.first + share * (m_range.second - m_range.first);
}

void ChannelInput::showValue(const std::optional<double> &value)
{
    m_value = value;
    const QSignalBlocker quiet(m_slider);
    const double share = value ? (*value - m_range.first) / (m_range.second - m_range.first) : 0;
    const int position = qRound(std::clamp(share, 0.0, 1.0) * sliderSteps);
    if (!m_slider->isSliderDown()) {
        m_slider->setValue(position);
    }
    const auto typed = toNumber(m_field->text());
    if (value != typed && (typed || !m_field->hasFocus())) { // half a number is still being typed
        m_field->setText(value ? plainNumber(*value) : QString());
    }
    m_box->setTristate(!value);
    m_box->setCheckState(!value ? Qt::PartiallyChecked : *value != 0 ? Qt::Checked : Qt::Unchecked);
    showSignal();
}

void ChannelInput::showSignal()
{
    const QString tip = m_factor != 0 && m_value
                            ? tr("A signal of %1").arg(plainNumber((*m_value - m_offset) / m_factor))
                            : QString();
    m_slider->setToolTip(tip);
    m_field->setToolTip(tip);
}

/// Values of a slider are rounded to what its steps can tell.
void ChannelInput::takeSlider(int position)
{
    const double step = (m_range.second - m_range.first) / sliderSteps;
    const double unit = std::pow(10, std::floor(std::log10(step)));
    const double value = std::round(shareToValue(position) / unit) * unit;
    Q_EMIT valueGiven(m_channel, toNumber(plainNumber(value)).value_or(value));
}

void ChannelInput::takeText()
{
    if (const auto value = toNumber(m_field->text())) {
        Q_EMIT valueGiven(m_channel, *value);
    }
}

void ChannelInput::showStates(const ModulePlay &play, const Configuration &configuration)
{
    QStringList states;
    bool isStanding = false;
    for (int index = 0; index < LimitValue::firstReference; ++index) {
        const LimitValue &value = configuration.limitValues[static_cast<std::size_t>(index)];
        if (value.channel != m_channel) {
            continue;
        }
        const QString condition =
            QStringLiteral("%1: %2 %3 ")
                .arg(QString::number(index + 1), comparisonSign(value.comparison), value.limit);
        isStanding = isStanding || play.state(index).phase == ModulePlay::Phase::Standing;
        states += condition + stateWords(play, index);
    }
    showStateLine(*m_states, states.join(QLatin1String("   ")), isStanding);
}

ChannelInputs::ChannelInputs(QWidget *parent)
    : QWidget(parent),
      m_layout(new QVBoxLayout(this)),
      m_none(named<QLabel>(QStringLiteral("lbl_foretell_none"), this)),
      m_combinations(named<QLabel>(QStringLiteral("lbl_foretell_combinations"), this))
{
    m_none->setWordWrap(true);
    m_combinations->setTextFormat(Qt::PlainText);
    m_combinations->setWordWrap(true);
    m_layout->addWidget(m_none);
    m_layout->addWidget(m_combinations);
    m_layout->addStretch();
}

void ChannelInputs::describe(const Configuration &configuration, const TextTable &texts)
{
    m_none->setText(tr("No limit value watches a channel"));
    const QList<int> wanted = watchedChannels(configuration);
    for (qsizetype at = m_inputs.size() - 1; at >= 0; --at) {
        if (!wanted.contains(m_inputs[at]->channel())) {
            delete m_inputs.takeAt(at);
        }
    }
    for (qsizetype at = 0; at < wanted.size(); ++at) {
        if (at == m_inputs.size() || m_inputs[at]->channel() != wanted[at]) {
            auto *input = new ChannelInput(wanted[at], this);
            connect(input, &ChannelInput::valueGiven, this, &ChannelInputs::valueGiven);
            m_inputs.insert(at, input);
            m_layout->insertWidget(static_cast<int>(at), input);
        }
        m_inputs[at]->describe(configuration, texts);
    }
    QWidget *before = m_before;
    for (const ChannelInput *input : std::as_const(m_inputs)) {
        for (QWidget *control : input->controls()) {
            if (before != nullptr) {
                setTabOrder(before, control);
            }
            before = control;
        }
    }
    m_none->setVisible(wanted.isEmpty());
}

void ChannelInputs::showPlay(const ModulePlay &play, const Configuration &configuration)
{
    for (ChannelInput *input : m_inputs) {
        input->showValue(play.value(input->channel()));
        input->showStates(play, configuration);
    }
    QStringList states;
    bool isStanding = false;
    for (int index = LimitValue::firstReference; index < LimitValue::count; ++index) {
        const double reference = configuration.limitValues[static_cast<std::size_t>(index)].reference;
        const QString members = combinedLimitValues(reference).join(QLatin1String(" + "));
        if (!members.isEmpty()) {
            states += QStringLiteral("%1 (%2): ").arg(QString::number(index + 1), members) +
                      stateWords(play, index);
            isStanding = isStanding || play.state(index).phase == ModulePlay::Phase::Standing;
        }
    }
    m_combinations->setVisible(!states.isEmpty());
    showStateLine(*m_combinations, states.join(u'\n'), isStanding);
}

} // namespace ktr
