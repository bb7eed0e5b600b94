#include "opmode/window/message_line.h"

#include "look/outside_texts.h"
#include "look/shortened_label.h"
#include "platform/text_rules.h"

#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QTime>
#include <QToolButton>

#include <algorithm>

namespace ktr {

namespace {

constexpr int soonMs = 50;
constexpr int expiryMs = 60'000;
constexpr QSize listSize(760, 300);

} // namespace

MessageLine::MessageLine(QWidget *parent)
    : QWidget(parent),
      m_pinned(new QToolButton(this)),
      m_latest(new ShortenedLabel(this)),
      m_button(new QToolButton(this)),
      m_popup(new QFrame(this, Qt::Popup)),
      m_list(new QPlainTextEdit(m_popup))
{
    m_pinned->setObjectName(QStringLiteral("Cmd_pinned"));
    m_pinned->setAutoRaise(true);
    m_pinned->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    m_pinned->setMinimumWidth(1); // the window may be made narrower than its text
    m_pinned->hide();
    m_latest->setObjectName(QStringLiteral("lbl_event"));
    m_button->setObjectName(QStringLiteral("Cmd_messages"));
    m_button->setAutoRaise(true);
    m_button->setEnabled(false);
    m_list->setObjectName(QStringLiteral("txt_messages"));
    m_list->setReadOnly(true);
    m_list->setTabChangesFocus(true);
    m_popup->setFrameShape(QFrame::StyledPanel);
    auto *inPopup = new QVBoxLayout(m_popup);
    inPopup->setContentsMargins(1, 1, 1, 1);
    inPopup->addWidget(m_list);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(4, 0, 4, 0);
    row->addWidget(m_button);
    row->addWidget(m_pinned);
    row->addWidget(m_latest, 1);
    m_soon.setSingleShot(true);
    m_expiry.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, &MessageLine::showLatest);
    connect(&m_expiry, &QTimer::timeout, m_latest, [this] { m_latest->tell({}); });
    connect(m_button, &QToolButton::clicked, this, &MessageLine::showList);
    connect(m_pinned, &QToolButton::clicked, m_pinned, &QWidget::hide);
    applyTexts();
}

void MessageLine::tell(const QString &line)
{
    if (line.trimmed().isEmpty()) { // what was given up has nothing to tell
        return;
    }
    m_lines.append(QTime::currentTime().toString(QStringLiteral("HH:mm:ss  ")) +
                   shortenedLine(onOneLine(asSentences(line))));
    if (m_lines.size() > kept) {
        m_lines.removeFirst();
    }
    if (!m_soon.isActive()) { // thousands may be told in a moment
        m_soon.start(soonMs);
    }
}

void MessageLine::pin(const QString &line)
{
    tell(line);
    m_pinnedText = shortenedLine(onOneLine(asSentences(line)));
    m_pinned->show();
    showPinned();
}

/// As much of it as leaves a third of the line to the latest message.
void MessageLine::showPinned()
{
    constexpr int around = 40; // of its text, and between the parts
    const int beside = width() - m_button->sizeHint().width() - around;
    const int room = std::max(0, std::min(width() * 2 / 3, beside));
    m_pinned->setText(m_pinned->fontMetrics().elidedText(m_pinnedText, Qt::ElideRight, room));
    m_pinned->setAccessibleName(m_pinnedText);
    m_pinned->setToolTip(m_pinnedText + u'\n' + tr("Click to take note"));
}

void MessageLine::showLatest()
{
    const QString latest = m_lines.isEmpty() ? QString() : m_lines.constLast();
    m_latest->tell(latest);
    m_button->setEnabled(!m_lines.isEmpty());
    m_expiry.start(expiryMs);
}

void MessageLine::showList()
{
    m_list->setPlainText(m_lines.join(u'\n'));
    m_list->moveCursor(QTextCursor::End);
    m_popup->resize(listSize.boundedTo(window()->size()));
    m_popup->move(mapToGlobal(QPoint(0, -m_popup->height())));
    m_popup->show();
    m_list->setFocus();
}

void MessageLine::applyTexts()
{
    m_button->setText(tr("Messages"));
    m_button->setToolTip(tr("Lists the messages since the operational mode was opened"));
    showPinned();
    m_list->setAccessibleName(tr("Messages"));
}

/// What was told in another language goes; what is pinned waits to be noted, whatever its language.
void MessageLine::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_lines.clear();
        showLatest();
    }
    QWidget::changeEvent(event);
}

void MessageLine::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    showPinned();
}

} // namespace ktr
