#include "editor/calibration_page.h"

#include "link/module_text.h"
#include "link/service_commands.h"
#include "platform/text_rules.h"

#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>

namespace ktr {

namespace {

// Buttons in the order of their numbers: outputs, in each its reference points, in each two steps.
constexpr std::array codes = {6, 6, 0, 0, 7, 7, 1, 1};
constexpr std::array referencePoints = {u"0,5 V", u"9,5 V"};
constexpr int stepsEach = 2;
constexpr int outputs = 2;
constexpr std::chrono::seconds longestWait{10}; ///< for a module that has the command and does not confirm

QString command(int index)
{
    return serviceCommands::calibration(index, codes[static_cast<std::size_t>(index)]);
}

} // namespace

CalibrationPage::CalibrationPage(EditorContext &context, QWidget *parent) : Page(context, parent)
{
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, &CalibrationPage::release);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(buttonsCard());
    layout->addWidget(confirmationsCard());
    layout->addStretch();
}

QWidget *CalibrationPage::buttonsCard()
{
    auto *card = captioned(new QGroupBox(this), Text::Calibration);
    card->setMaximumWidth(640);
    auto *grid = new QGridLayout(card);
    grid->addWidget(captioned(new QLabel(card), Text::Channel), 0, 0);
    for (std::size_t point = 0; point < referencePoints.size(); ++point) {
        auto *label = new QLabel(QString::fromUtf16(referencePoints[point]), card);
        grid->addWidget(label, 0, 1 + static_cast<int>(point) * (stepsEach + 1), 1, stepsEach);
    }
    grid->setColumnMinimumWidth(1 + stepsEach, 24); // between the reference points
    for (int output = 0; output < outputs; ++output) {
        auto *label = captioned(new QLabel(card), Text::AnalogOut, u' ' + QString::number(output + 1));
        grid->addWidget(label, 1 + output, 0);
    }
    for (int index = 0; index < static_cast<int>(codes.size()); ++index) {
        addButton(grid, index);
    }
    return card;
}

void CalibrationPage::addButton(QGridLayout *grid, int index)
{
    const int step = index % stepsEach;
    const int point = index / stepsEach % static_cast<int>(referencePoints.size());
    const int output = index / (stepsEach * static_cast<int>(referencePoints.size()));
    auto *button = new QPushButton(QString::number(step + 1), this);
    button->setObjectName(QStringLiteral("cmd_kal_%1").arg(index));
    connect(button, &QPushButton::clicked, this, [this, button, index] {
        release();
        m_waiting = button;
        m_command = command(index);
        button->setEnabled(false);
        Q_EMIT commandPlaced(m_command);
    });
    m_buttons.push_back(button);
    tip(button, [index] { return tr("Sends %1").arg(command(index)); });
    onTexts([this, button, step, point, output] {
        const QString reference = QString::fromUtf16(referencePoints[static_cast<std::size_t>(point)]);
        button->setAccessibleName(QStringLiteral("%1 %2, %3, %4")
                                      .arg(text(Text::AnalogOut))
                                      .arg(output + 1)
                                      .arg(reference)
                                      .arg(step + 1));
    });
    grid->addWidget(button, 1 + output, 1 + point * (stepsEach + 1) + step);
}

QWidget *CalibrationPage::confirmationsCard()
{
    auto *card = new QGroupBox(this);
    card->setMaximumWidth(640);
    onTexts([card] { card->setTitle(tr("Confirmation of the module")); });
    auto *layout = new QHBoxLayout(card);
    m_done = new QLabel(card);
    m_done->setObjectName(QStringLiteral("lbl_kal_done"));
    m_done->setWordWrap(true);
    m_done->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_done->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_done->installEventFilter(this);
    onTexts([this] { m_done->setToolTip(tr("A double click takes all marks away")); });
    m_done->setMinimumHeight(4 * m_done->fontMetrics().lineSpacing());
    m_scroll = new QScrollBar(Qt::Vertical, card);
    m_scroll->setObjectName(QStringLiteral("VScr_kalib"));
    m_scroll->setFocusPolicy(Qt::StrongFocus);
    m_scroll->setRange(0, 0);
    m_scroll->setPageStep(1);
    connect(m_scroll, &QScrollBar::valueChanged, this,
            [this](int index) { m_done->setText(m_confirmations.value(index)); });
    onTexts([this] {
        m_scroll->setAccessibleName(tr("Earlier confirmations"));
        m_scroll->setToolTip(tr("Earlier confirmations"));
    });
    layout->addWidget(m_done, 1);
    layout->addWidget(m_scroll);
    return card;
}

/// A button that waits can be pressed again.
void CalibrationPage::release()
{
    m_patience.stop();
    if (m_waiting != nullptr) {
        m_waiting->setEnabled(true);
    }
    m_waiting = nullptr;
    m_command.clear();
}

void CalibrationPage::showWaiting(const QString &command)
{
    if (!m_command.isEmpty() && command != m_command) {
        release();
    }
}

void CalibrationPage::commandLeft(const QString &command)
{
    if (!m_command.isEmpty() && command == m_command) {
        m_command.clear();
        m_patience.start(longestWait);
    }
}

void CalibrationPage::setDone(QPushButton *button, bool done)
{
    button->setIcon(done ? style()->standardIcon(QStyle::SP_DialogApplyButton) : QIcon());
    button->setAccessibleDescription(done ? tr("confirmed by the module") : QString());
}

bool CalibrationPage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_done && event->type() == QEvent::MouseButtonDblClick) {
        clear();
        return true;
    }
    return Page::eventFilter(watched, event);
}

void CalibrationPage::confirm(const QString &text)
{
    // The module repeats the button's number; an answer without one belongs to the button pressed last.
    const auto number = toWholeNumber(text.section(u',', 0, 0), 0, static_cast<int>(m_buttons.size()) - 1);
    if (QPushButton *button = number ? m_buttons[static_cast<std::size_t>(*number)] : m_waiting) {
        setDone(button, true);
    }
    release();
    addAnswer(text);
}

void CalibrationPage::showFailure(const QString &answer)
{
    const QString named = namedInAnswer(plainText(answer).toString());
    if (m_waiting == nullptr || !m_command.isEmpty() || !(named.isEmpty() || named.startsWith(u'§'))) {
        return;
    }
    setDone(m_waiting, false);
    release();
    addAnswer(tr("Not carried out: %1").arg(onOneLine(answer)));
}

void CalibrationPage::clear()
{
    release();
    for (QPushButton *button : m_buttons) {
        setDone(button, false);
    }
    m_confirmations.clear();
    m_scroll->setRange(0, 0);
    m_done->clear();
}

void CalibrationPage::addAnswer(const QString &text)
{
    m_confirmations += text;
    m_scroll->setMaximum(static_cast<int>(m_confirmations.size()) - 1);
    m_scroll->setValue(m_scroll->maximum());
    m_done->setText(text);
}

} // namespace ktr
