#include "look/message_dialog.h"

#include "lang/text_table.h"
#include "look/outside_texts.h"
#include "look/program_name.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>

namespace ktr {

namespace {

/// Long enough for the waiting caller to read the answer, too short to be noticed.
constexpr int unloadMs = 50;

/// A length of the window's design, given in twips, in logical pixels.
constexpr int twips(int length)
{
    return (length + 7) / 15;
}

constexpr int heightAroundLabel = twips(1400);
constexpr int widthAroundLabel = twips(640);
constexpr int belowButtons = twips(600);
constexpr int besideOkAlone = twips(220);
constexpr int okFromRight = twips(2900);
constexpr int cancelFromRight = twips(1500);
constexpr int buttonWidth = twips(1215);
constexpr int widestOk = okFromRight - cancelFromRight - twips(120); // or the two would touch
constexpr int widestCancel = cancelFromRight - twips(90);
constexpr int buttonHeight = twips(375);
constexpr int highestButton = twips(540);
constexpr int narrowestLabel = okFromRight; // the left margin and the space beside Cancel are the rest
constexpr int widestLabel = twips(6300);
constexpr int narrowestInput = twips(4200);
constexpr int aboveInput = twips(120);
constexpr QSize windowFrame(16, 56); // of the window manager, at most

/// The size at which the text wraps sensibly. A word that is wider than that stays whole.
QSize wrappedSize(const QLabel &label, QSize room)
{
    const QRect bounds(0, 0, std::min(widestLabel, room.width()), room.height());
    const QSize text = label.fontMetrics().boundingRect(bounds, Qt::TextWordWrap, label.text()).size();
    const int width = std::max(text.width() + 1, narrowestLabel);
    return {width, std::max(text.height(), label.heightForWidth(width))};
}

} // namespace

Dialog::Dialog(QWidget *parent, Kind kind, const TextTable &texts, const QString &text)
    : QWidget(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint),
      m_kind(kind),
      m_label(new QLabel(this)),
      m_scrolled(new QPlainTextEdit(this)),
      m_input(new QLineEdit(this)),
      m_ok(new QPushButton(texts.text(Text::Ok), this)),
      m_cancel(new QPushButton(texts.text(Text::Cancel), this)),
      m_remedy(new QPushButton(this)),
      m_unload(new QTimer(this))
{
    setObjectName(QLatin1String("Dialog"));
    m_label->setObjectName(QLatin1String("Label_msg"));
    m_scrolled->setObjectName(QLatin1String("txt_msg"));
    m_input->setObjectName(QLatin1String("Text_input"));
    m_ok->setObjectName(QLatin1String("OKButton"));
    m_cancel->setObjectName(QLatin1String("CancelButton"));
    m_remedy->setObjectName(QLatin1String("cmd_msg_remedy"));
    m_unload->setObjectName(QLatin1String("Timer_unload"));

    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(programName);
    m_label->setTextFormat(Qt::PlainText); // it is measured before the rule for all labels reaches it
    m_label->setWordWrap(true);
    m_label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_scrolled->setReadOnly(true);
    m_scrolled->setTabChangesFocus(true);
    m_scrolled->hide();
    setText(text);
    m_input->setVisible(kind == Kind::Input);
    makeDefault(m_ok);
    m_cancel->setVisible(kind != Kind::Message);

    m_remedy->hide();
    m_unload->setInterval(unloadMs);
    m_unload->setSingleShot(true);
    connect(m_unload, &QTimer::timeout, this, &QWidget::close);
    connect(m_ok, &QPushButton::clicked, this, [this] { answer(true); });
    connect(m_cancel, &QPushButton::clicked, this, [this] { answer(false); });
    connect(m_remedy, &QPushButton::clicked, this, [this] {
        const std::function<void()> go = m_go;
        answer(true);
        go();
    });
}

/// A message about the topic, or else one with that text, that was not answered yet; nullptr when there is
/// none.
Dialog *Dialog::openMessage(const QString &topic, const QString &text)
{
    Dialog *found = nullptr;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        auto *shown = qobject_cast<Dialog *>(window);
        if (shown == nullptr || shown->m_kind != Kind::Message || !shown->isVisible() || shown->m_answered) {
            continue;
        }
        if (!topic.isEmpty() && shown->m_topic == topic) {
            return shown;
        }
        if (!text.isEmpty() && shown->m_text == text) {
            found = shown;
        }
    }
    return found;
}

void Dialog::setText(const QString &text)
{
    m_text = text;
    QString lines = boundedText(text);
    m_label->setText(lines.replace(QLatin1String("\r\n"), QLatin1String("\n")));
    setAccessibleName(lines);
    m_scrolled->setAccessibleName(lines.section(u'\n', 0, 0));
    m_input->setAccessibleName(lines);
}

void Dialog::line(QWidget *parent, const TextTable &texts, const QString &heading, const QString &line)
{
    Dialog *const shown = openMessage(heading);
    const QString told = shortenedLine(line); // the longest ones are not kept either
    if (shown == nullptr) {
        message(parent, texts, heading + u'\n' + told, heading);
    } else if (!shown->m_text.mid(heading.size() + 1).split(u'\n').contains(told)) {
        shown->setText(shown->m_text + u'\n' + told);
        shown->arrange();
    }
}

void Dialog::message(QWidget *parent, const TextTable &texts, const QString &text, const QString &topic)
{
    message(parent, texts, text, topic, {});
}

void Dialog::message(QWidget *parent, const TextTable &texts, const QString &text, const QString &topic,
                     const Remedy &remedy)
{
    if (Dialog *const shown = openMessage(topic, text)) {
        shown->m_topic = topic;
        shown->setText(text);
        shown->setRemedy(remedy);
        shown->arrange();
        shown->raise(); // the same message may be open already, unread
        shown->activateWindow();
        return;
    }
    // Below a question that is open, this window would be blocked and might hide it; above it, it is not.
    auto *const open = qobject_cast<Dialog *>(QApplication::activeModalWidget());
    auto *const shown = new Dialog(open != nullptr ? open : parent, Kind::Message, texts, text);
    shown->m_topic = topic;
    shown->setRemedy(remedy);
    shown->appear();
}

void Dialog::setRemedy(const Remedy &remedy)
{
    m_go = remedy.go;
    m_remedy->setText(remedy.caption);
    m_remedy->setVisible(static_cast<bool>(m_go));
}

void Dialog::withdraw(const QString &topic)
{
    if (Dialog *const shown = openMessage(topic)) {
        shown->close();
    }
}

bool Dialog::question(QWidget *parent, const TextTable &texts, const QString &text)
{
    return (new Dialog(parent, Kind::Question, texts, text))->wait();
}

bool Dialog::questionOfLoss(QWidget *parent, const TextTable &texts, const QString &text)
{
    auto *dialog = new Dialog(parent, Kind::Question, texts, text);
    dialog->makeDefault(dialog->m_cancel);
    return dialog->wait();
}

bool Dialog::questionOfLoss(QWidget *parent, const TextTable &texts, const std::function<QString()> &text)
{
    constexpr int followMs = 250;
    auto *dialog = new Dialog(parent, Kind::Question, texts, text());
    dialog->makeDefault(dialog->m_cancel);
    auto *follow = new QTimer(dialog);
    connect(follow, &QTimer::timeout, dialog, [dialog, text] {
        if (const QString now = text(); !dialog->m_answered && !now.isEmpty() && now != dialog->m_text) {
            dialog->setText(now);
            dialog->arrange();
        }
    });
    follow->start(followMs);
    return dialog->wait();
}

void Dialog::makeDefault(QPushButton *button)
{
    m_default = button;
    m_ok->setDefault(button == m_ok);
    m_cancel->setDefault(button == m_cancel);
}

std::optional<QString> Dialog::input(QWidget *parent, const TextTable &texts, const QString &prompt,
                                     const QString &proposal)
{
    const QPointer<Dialog> dialog = new Dialog(parent, Kind::Input, texts, prompt);
    dialog->m_input->setText(proposal);
    dialog->m_input->selectAll();
    return dialog->wait() ? std::optional(dialog->m_input->text()) : std::nullopt;
}

void Dialog::appear()
{
    arrange();
    centre();
    (m_kind == Kind::Input ? static_cast<QWidget *>(m_input) : m_default)->setFocus();
    show();
    raise();
    activateWindow();
}

bool Dialog::wait()
{
    const QPointer<Dialog> self(this);
    setWindowModality(Qt::ApplicationModal);
    appear();
    QEventLoop loop;
    connect(this, &Dialog::answered, &loop, &QEventLoop::quit);
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    loop.exec();
    if (self && !m_answered) { // the program ends
        close();
    }
    return self && m_accepted;
}

void Dialog::answer(bool accepted)
{
    if (m_answered) {
        return;
    }
    m_answered = true;
    m_accepted = accepted;
    m_unload->start();
    Q_EMIT answered();
}

void Dialog::arrange()
{
    const bool question = m_kind != Kind::Message;
    if (m_cancel->sizeHint().width() > widestCancel && styleSheet().isEmpty()) {
        // What a style leaves free beside a caption is the first to go.
        setStyleSheet(QLatin1String("QPushButton { padding-left: 1px; padding-right: 1px; min-width: 0; }"));
    }
    const int buttonsHeight = std::clamp(m_ok->sizeHint().height(), buttonHeight, highestButton);
    const QSize ok(std::clamp(m_ok->sizeHint().width(), buttonWidth, widestOk), buttonsHeight);
    const QSize cancel(std::clamp(m_cancel->sizeHint().width(), buttonWidth, widestCancel), buttonsHeight);
    const int inputHeight = m_kind == Kind::Input ? m_input->sizeHint().height() + aboveInput : 0;
    QSize label = arrangeText(screen()->availableSize() - windowFrame -
                              QSize(widthAroundLabel, heightAroundLabel + inputHeight));
    QSize window = label + QSize(widthAroundLabel, heightAroundLabel);
    const int labelTop = (heightAroundLabel - belowButtons - buttonsHeight) / 2;
    const int left = widthAroundLabel / 2;
    if (m_kind == Kind::Input) {
        label.setWidth(std::max(label.width(), narrowestInput));
        window = {label.width() + widthAroundLabel, window.height() + inputHeight};
        m_input->setGeometry(left, labelTop + label.height() + aboveInput, label.width(),
                             inputHeight - aboveInput);
    }
    const int top = window.height() - buttonsHeight - belowButtons;
    if (m_go) {
        const int width = std::max(m_remedy->sizeHint().width(), buttonWidth);
        window.setWidth(std::max(window.width(), left + width + left / 2 + ok.width() + besideOkAlone));
        m_remedy->setGeometry(left, top, width, buttonsHeight);
    }
    m_label->setGeometry({{left, labelTop}, label});
    m_scrolled->setGeometry(m_label->geometry());
    m_ok->setGeometry({{window.width() - (question ? okFromRight : ok.width() + besideOkAlone), top}, ok});
    m_cancel->setGeometry({{window.width() - cancelFromRight, top}, cancel});
    setFixedSize(window);
    if (isVisible()) { // it has grown where it stands
        moveOnScreen(pos());
    }
}

/// Shows the text in a label, or where that would be larger than `room`, so that it scrolls; returns its
/// size.
QSize Dialog::arrangeText(QSize room)
{
    const QSize whole = wrappedSize(*m_label, room);
    const bool fits = whole.width() <= room.width() && whole.height() <= room.height();
    m_label->setVisible(fits);
    m_scrolled->setVisible(!fits);
    if (fits) {
        return whole;
    }
    if (m_scrolled->toPlainText() != m_label->text()) {
        const int place = m_scrolled->verticalScrollBar()->value(); // a line was added: the reader stays
        m_scrolled->setPlainText(m_label->text());
        m_scrolled->verticalScrollBar()->setValue(place);
    }
    return QSize(std::max(widestLabel, narrowestLabel), whole.height()).boundedTo(room);
}

void Dialog::centre()
{
    const QRect space = screen()->availableGeometry();
    const QPoint middle = parentWidget() != nullptr && parentWidget()->window()->isVisible()
                              ? parentWidget()->window()->frameGeometry().center()
                              : space.center();
    moveOnScreen(middle - rect().center());
}

/// As near to a place as the whole window is on the screen.
void Dialog::moveOnScreen(QPoint corner)
{
    const QRect space = screen()->availableGeometry();
    const QSize room = space.size() - size() - windowFrame;
    move(std::clamp(corner.x(), space.left(), space.left() + std::max(0, room.width())),
         std::clamp(corner.y(), space.top(), space.top() + std::max(0, room.height())));
}

/// A message that came up over this question is still to be read when the question is answered.
void Dialog::handOnMessages()
{
    for (Dialog *message : findChildren<Dialog *>(Qt::FindDirectChildrenOnly)) {
        if (message->isVisible()) {
            const QPoint place = message->pos();
            message->setParent(parentWidget(), message->windowFlags());
            message->move(place);
            message->show();
        }
    }
}

bool Dialog::event(QEvent *event)
{
    if (event->type() == QEvent::LayoutRequest) { // text or font of the label or a button changed
        arrange();
    }
    return QWidget::event(event);
}

void Dialog::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        arrange();
    }
    QWidget::changeEvent(event);
}

void Dialog::closeEvent(QCloseEvent *event)
{
    m_unload->stop();
    handOnMessages();
    if (!m_answered) {
        m_answered = true;
        Q_EMIT answered();
    }
    event->accept();
}

void Dialog::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        (m_cancel->hasFocus()   ? m_cancel
         : m_remedy->hasFocus() ? m_remedy
         : m_ok->hasFocus()     ? m_ok
                                : m_default)
            ->click();
        break;
    case Qt::Key_Escape:
        answer(false);
        break;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown: // with a button in focus
        QApplication::sendEvent(m_scrolled->verticalScrollBar(), event);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void Dialog::showEvent(QShowEvent *event)
{
    arrange();
    QWidget::showEvent(event);
}

} // namespace ktr
