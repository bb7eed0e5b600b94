#include "editor/log_view.h"

#include "look/list_views.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QTimer>

namespace ktr {

namespace {

constexpr int frame = 33; ///< milliseconds: what comes within one is shown together

} // namespace

LogView::LogView(const QString &name, int last, QWidget *parent)
    : QWidget(parent),
      m_last(last),
      m_display(new QPlainTextEdit(this)),
      m_pause(new QPushButton(this)),
      m_search(new QLineEdit(this)),
      m_save(new QPushButton(this)),
      m_timer(new QTimer(this))
{
    m_display->setObjectName(name);
    m_display->setReadOnly(true);
    m_display->setUndoRedoEnabled(false);
    m_display->setTabChangesFocus(true);
    m_display->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_display->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_pause->setObjectName(name + QLatin1String("_pause"));
    m_pause->setCheckable(true);
    m_search->setObjectName(name + QLatin1String("_search"));
    addClearButton(*m_search);
    m_save->setObjectName(name + QLatin1String("_save"));

    auto *tools = new QHBoxLayout;
    tools->addWidget(m_search, 1);
    tools->addWidget(m_pause);
    tools->addWidget(m_save);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_display, 1);
    layout->addLayout(tools);

    m_timer->setSingleShot(true);
    m_timer->setInterval(frame);
    connect(m_timer, &QTimer::timeout, this, [this] {
        if (!m_pause->isChecked()) {
            showPending();
        }
    });
    connect(m_pause, &QPushButton::toggled, this, [this](bool held) {
        if (!held) {
            showPending();
        }
    });
    connect(m_search, &QLineEdit::textEdited, this, [this] {
        QTextCursor cursor = m_display->textCursor();
        cursor.setPosition(
            cursor.selectionStart()); // longer words are looked for where the shorter was found
        m_display->setTextCursor(cursor);
        find();
    });
    connect(m_search, &QLineEdit::returnPressed, this, &LogView::find);
    connect(m_save, &QPushButton::clicked, this, [this] {
        flush();
        Q_EMIT saveWanted(m_display->toPlainText());
    });
}

void LogView::applyTexts()
{
    m_pause->setText(tr("Pause"));
    m_pause->setToolTip(tr("Holds the display; what comes meanwhile is shown afterwards"));
    m_search->setPlaceholderText(tr("Search"));
    m_search->setAccessibleName(tr("Search"));
    m_search->setToolTip(tr("Enter goes to the next place"));
    m_save->setText(tr("Save..."));
}

void LogView::setAccessibleName(const QString &name)
{
    m_display->setAccessibleName(name);
}

void LogView::prepend(const QString &line)
{
    m_pending += line;
    m_pendingSize += line.size() + 1;
    // No more of what waits is needed than can be shown.
    while (m_pendingSize - m_pending.front().size() - 1 > m_last) {
        m_pendingSize -= m_pending.takeFirst().size() + 1;
    }
    if (!m_timer->isActive()) {
        m_timer->start();
    }
}

void LogView::flush()
{
    showPending();
}

void LogView::showPending()
{
    if (m_pending.isEmpty()) {
        return;
    }
    QString text;
    text.reserve(m_pendingSize);
    for (auto line = m_pending.crbegin(); line != m_pending.crend(); ++line) {
        text += *line + u'\n';
    }
    m_pending.clear();
    m_pendingSize = 0;

    QScrollBar *bar = m_display->verticalScrollBar();
    const bool atTop = bar->value() == bar->minimum();
    QTextCursor cursor(m_display->document());
    cursor.beginEditBlock();
    cursor.insertText(text);
    const QTextBlock block = m_display->document()->findBlock(m_last - 1);
    if (block.isValid() && block.next().isValid()) {
        cursor.setPosition(block.position() + block.length() - 1);
        cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
    }
    cursor.endEditBlock();
    if (atTop) {
        bar->setValue(bar->minimum());
    }
}

void LogView::clear()
{
    m_pending.clear();
    m_pendingSize = 0;
    m_display->clear();
}

/// Goes to the next place that holds the text; behind the last one to the first.
void LogView::find()
{
    if (m_search->text().isEmpty() || m_display->find(m_search->text())) {
        return;
    }
    const QTextCursor present = m_display->textCursor();
    m_display->moveCursor(QTextCursor::Start);
    if (!m_display->find(m_search->text())) {
        m_display->setTextCursor(present);
    }
}

} // namespace ktr
