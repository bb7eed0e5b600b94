#include "editor/test_page.h"

#include "editor/date_picker.h"
#include "editor/length_counter.h"
#include "editor/log_view.h"
#include "link/command_sequence.h"
#include "link/conversation_log.h"
#include "link/service_commands.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace ktr {

namespace {

// The displays end with the line that holds this character, counted from 1.
constexpr int lastOfLog = 8000;
constexpr int lastOfReplies = 200000;

} // namespace

TestPage::TestPage(EditorContext &context, QWidget *parent) : Page(context, parent)
{
    auto *layout = new QGridLayout(this);
    layout->addWidget(commandCard(), 0, 0, 1, 2);
    layout->addWidget(logCard(), 1, 0);
    layout->addWidget(repliesCard(), 1, 1);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(1, 1);
}

QWidget *TestPage::commandCard()
{
    auto *card = captioned(new QGroupBox(this), Text::SendSms);
    auto *rows = new QVBoxLayout(card);

    auto *typed = new QHBoxLayout;
    m_input = new QLineEdit(card);
    m_input->setObjectName(QStringLiteral("txt_test_send"));
    m_input->setMaximumWidth(560);
    m_input->installEventFilter(this);
    onTexts([this] { m_input->setAccessibleName(text(Text::SendSms)); });
    tip(m_input, [] {
        return tr("A command, up to %1 characters; Enter sends it, Up and Down bring back earlier ones")
            .arg(longestCommand);
    });
    connect(m_input, &QLineEdit::returnPressed, this, &TestPage::send);
    auto *counter = new LengthCounter(QStringLiteral("lbl_test_length"), card);
    onTexts([counter] { counter->applyTexts(); });
    connect(m_input, &QLineEdit::textChanged, counter,
            [counter](const QString &text) { counter->show(text.size()); });
    typed->addWidget(m_input, 1);
    typed->addWidget(counter);
    m_send = captioned(addButton(typed, "cmd_test_send", [this] { send(); }), Text::Send);
    m_answer = captioned(new QCheckBox(card), Text::ConfigureWithAnswer);
    m_answer->setObjectName(QStringLiteral("chk_test_answer"));
    connect(m_answer, &QCheckBox::toggled, this, &TestPage::answerWantedChanged);
    tip(m_answer, [] { return tr("The module confirms each command of a transmission"); });
    typed->addSpacing(12);
    typed->addWidget(m_answer);
    typed->addStretch();
    rows->addLayout(typed);

    auto *ready = new QHBoxLayout;
    QPushButton *clock = addButton(ready, "cmd_test_settime", [this] { Q_EMIT clockPlaced(); });
    captioned(clock, Text::SetTime);
    tip(clock, [] { return tr("Sets the module's clock by this computer's"); });
    auto *calendar = new DatePicker(
        QStringLiteral("cmd_test_settime_date"), DatePicker::Picks::DateAndTime, context(),
        [] { return QDateTime(); }, card);
    connect(calendar, &DatePicker::picked, this,
            [this](const QDateTime &when) { Q_EMIT commandPlaced(QLatin1String("T,") + clockFields(when)); });
    onTexts([calendar] {
        calendar->applyTexts();
        calendar->setToolTip(tr("Sets the module's clock to another date and time"));
        calendar->setAccessibleName(calendar->toolTip());
    });
    ready->addWidget(calendar);
    captioned(addCommand(ready, "cmd_test_free", QStringLiteral("H,0,1")), Text::SendArchive);
    captioned(addCommand(ready, "cmd_test_block", QStringLiteral("H,0,0")), Text::BlockArchive);
    QPushButton *kill = addCommand(
        ready, "cmd_kill", [this] { return answerWanted() ? QStringLiteral("K") : QStringLiteral("k"); });
    captioned(kill, Text::DeleteNotifications);
    tip(kill, [] { return tr("Sends k, or K where an answer is wanted"); });
    QPushButton *fast = addCommand(ready, "cmd_historyFastExport", serviceCommands::archive);
    onTexts([fast] { fast->setText(tr("Fast history export")); });
    ready->addStretch();
    captioned(addButton(ready, "cmd_test_clear",
                        [this] {
                            m_log->clear();
                            m_replies->clear();
                        }),
              Text::ClearDisplay);
    rows->addLayout(ready);
    return card;
}

QWidget *TestPage::logCard()
{
    auto *card = captioned(new QGroupBox(this), Text::Debug);
    auto *layout = new QVBoxLayout(card);
    m_logOption = new QCheckBox(card);
    m_logOption->setObjectName(QStringLiteral("chk_test_debug"));
    m_logOption->hide();
    onTexts([this] { m_logOption->setText(tr("Show the conversation")); });
    m_log = newDisplay("txt_test_debug", lastOfLog);
    onTexts([this] { m_log->setAccessibleName(text(Text::Debug)); });
    connect(m_logOption, &QCheckBox::toggled, m_log, &QWidget::setVisible);
    layout->addWidget(m_logOption);
    layout->addWidget(m_log, 1);
    layout->addStretch();
    return card;
}

QWidget *TestPage::repliesCard()
{
    auto *card = captioned(new QGroupBox(this), Text::ReceivedSms);
    auto *layout = new QVBoxLayout(card);
    m_replies = newDisplay("txt_test_receive", lastOfReplies);
    onTexts([this] { m_replies->setAccessibleName(text(Text::ReceivedSms)); });
    layout->addWidget(m_replies);
    return card;
}

QPushButton *TestPage::addButton(QBoxLayout *row, const char *name, std::function<void()> clicked)
{
    QPushButton *button = newButton(name, std::move(clicked));
    row->addWidget(button);
    return button;
}

QPushButton *TestPage::addCommand(QBoxLayout *row, const char *name, std::function<QString()> command)
{
    return addButton(row, name, [this, command = std::move(command)] { Q_EMIT commandPlaced(command()); });
}

QPushButton *TestPage::addCommand(QBoxLayout *row, const char *name, const QString &command)
{
    QPushButton *button = addCommand(row, name, [command] { return command; });
    tip(button, [command] { return tr("Sends %1").arg(command); });
    return button;
}

LogView *TestPage::newDisplay(const char *name, int last)
{
    auto *display = new LogView(QLatin1String(name), last, this);
    onTexts([display] { display->applyTexts(); });
    connect(display, &LogView::saveWanted, this, &TestPage::saveWanted);
    return display;
}

void TestPage::send()
{
    const QString command = m_input->text();
    if (m_idle && !command.isEmpty()) {
        m_sent.add(command);
        Q_EMIT commandPlaced(command);
    }
}

void TestPage::setIdle(bool idle)
{
    m_idle = idle;
    m_send->setEnabled(idle);
}

void TestPage::setAnswerWanted(bool wanted)
{
    m_answer->setChecked(wanted);
}

bool TestPage::answerWanted() const
{
    return m_answer->isChecked();
}

void TestPage::showDebugOption()
{
    m_logOption->show();
    m_logOption->setChecked(true);
}

void TestPage::appendLog(const QString &line)
{
    m_log->prepend(logText(line));
}

void TestPage::showReply(const QString &text)
{
    const QDateTime now = context().document.environment().now();
    m_replies->prepend(now.toString(QStringLiteral("yy,MM,dd HH:mm:ss ")) + logText(text));
}

void TestPage::clearInput()
{
    m_input->clear();
}

bool TestPage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_input && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down) {
            if (const auto command = key == Qt::Key_Up ? m_sent.back() : m_sent.forth()) {
                m_input->setText(*command);
            }
            return true;
        }
    }
    return Page::eventFilter(watched, event);
}

} // namespace ktr
