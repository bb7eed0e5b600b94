#include "editor/scaling_helper.h"

#include "config/channels.h"
#include "config/fields.h"
#include "config/scaling_points.h"
#include "platform/text_rules.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace ktr {

namespace {

constexpr std::array scaledChannels = {9, 10, 13, 14};

/// With a decimal comma or point.
std::optional<double> numberIn(const QLineEdit &field)
{
    bool isNumber = false;
    const double number = field.text().trimmed().replace(u',', u'.').toDouble(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

} // namespace

ScalingHelper::ScalingHelper(EditorContext &context, int index, QWidget *parent)
    : QDialog(parent), m_context(context), m_channel(new QComboBox(this)), m_result(new QLabel(this))
{
    setObjectName(QStringLiteral("Form_scaling"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Scaling by two points"));
    m_channel->setObjectName(QStringLiteral("Cmb_scaling_channel"));
    for (const int channel : scaledChannels) {
        m_channel->addItem(namedChannel(channel, context.document.configuration().names));
    }
    m_channel->setCurrentIndex(index);
    m_result->setObjectName(QStringLiteral("lbl_scaling_result"));
    layOut();
    showResult();
    m_signals.front()->setFocus();
}

void ScalingHelper::layOut()
{
    auto *grid = new QGridLayout(this);
    auto *channel = new QLabel(tr("Channel"), this);
    channel->setBuddy(m_channel);
    grid->addWidget(channel, 0, 0);
    grid->addWidget(m_channel, 0, 1, 1, 2);
    grid->addWidget(new QLabel(tr("Signal"), this), 1, 1);
    grid->addWidget(new QLabel(tr("Value"), this), 1, 2);
    for (std::size_t point = 0; point < m_signals.size(); ++point) {
        const int row = 2 + static_cast<int>(point);
        const QString name = tr("Point %1").arg(point + 1);
        grid->addWidget(new QLabel(name, this), row, 0);
        const auto add = [&](const char *objectName, int column, const QString &what) {
            auto *field = new QLineEdit(this);
            field->setObjectName(QLatin1String(objectName) + QString::number(point));
            field->setAccessibleName(name + QLatin1String(": ") + what);
            field->setInputMethodHints(Qt::ImhPreferNumbers);
            connect(field, &QLineEdit::textChanged, this, &ScalingHelper::showResult);
            grid->addWidget(field, row, column);
            return field;
        };
        m_signals[point] = add("Txt_scaling_signal_", 1, tr("Signal"));
        m_values[point] = add("Txt_scaling_value_", 2, tr("Value"));
    }
    grid->addWidget(m_result, 4, 0, 1, 3);
    auto *explanation = new QLabel(tr("value = offset + factor × signal"), this);
    grid->addWidget(explanation, 5, 0, 1, 3);
    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(m_context.texts.text(Text::Cancel), QDialogButtonBox::RejectRole);
    m_take = buttons->addButton(tr("Take over"), QDialogButtonBox::AcceptRole);
    m_take->setObjectName(QStringLiteral("Cmd_scaling_take"));
    m_take->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &ScalingHelper::takeOver);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    grid->addWidget(buttons, 6, 0, 1, 3);
}

void ScalingHelper::showResult()
{
    std::optional<ScalingLine> line;
    bool isFull = true;
    if (m_values.back() != nullptr) {
        const std::array numbers = {numberIn(*m_signals[0]), numberIn(*m_values[0]), numberIn(*m_signals[1]),
                                    numberIn(*m_values[1])};
        isFull = std::ranges::all_of(numbers, [](const auto &number) { return number.has_value(); });
        if (isFull) {
            line = scalingThrough({*numbers[0], *numbers[1]}, {*numbers[2], *numbers[3]});
        }
    }
    m_take->setEnabled(line.has_value());
    if (!line) {
        m_result->setText(isFull ? tr("The two signals must differ") : tr("Four numbers are needed"));
        return;
    }
    m_offset = scalingNumber(line->offset);
    m_factor = scalingNumber(line->factor);
    m_result->setText(tr("Offset %1, factor %2").arg(m_offset, m_factor));
}

void ScalingHelper::takeOver()
{
    const auto index = static_cast<std::size_t>(m_channel->currentIndex());
    m_context.history.endGroup();
    m_context.history.edit({fieldOf(&Scaling::offset).control.forIndex(m_channel->currentIndex())},
                           [&](Configuration &changed) {
                               changed.scaling[index].offset = m_offset;
                               changed.scaling[index].factor = m_factor;
                           });
    m_context.history.endGroup();
    accept();
}

} // namespace ktr
