#include "app/status_line.h"

#include "link/conversation_log.h"
#include "look/icons.h"
#include "look/lamp.h"
#include "look/outside_texts.h"
#include "look/shortened_label.h"
#include "platform/text_rules.h"

#include <QEvent>
#include <QLabel>
#include <QProgressBar>
#include <QToolButton>

namespace ktr {

StatusLine::StatusLine(QWidget *parent)
    : QStatusBar(parent),
      m_lamp(new Lamp(this)),
      m_link(new QLabel(this)),
      m_event(new ShortenedLabel(this)),
      m_waiting(new QToolButton(this)),
      m_unwatched(new QToolButton(this)),
      m_notice(new QLabel(this)),
      m_modified(new QLabel(this)),
      m_progress(new QProgressBar(this))
{
    m_lamp->setObjectName(QStringLiteral("Opt_connected"));
    m_link->setObjectName(QStringLiteral("lbl_link"));
    m_event->setObjectName(QStringLiteral("lbl_event"));
    m_event->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_waiting->setObjectName(QStringLiteral("cmd_waiting"));
    m_waiting->hide();
    connect(m_waiting, &QToolButton::clicked, this, &StatusLine::takeBackWanted);
    m_unwatched->setObjectName(QStringLiteral("cmd_unwatched"));
    m_unwatched->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_unwatched->setIcon(icon(IconName::Warning));
    m_unwatched->hide();
    connect(m_unwatched, &QToolButton::clicked, this, &StatusLine::watchWanted);
    m_notice->setObjectName(QStringLiteral("lbl_notice"));
    m_notice->hide();
    m_modified->setObjectName(QStringLiteral("lbl_modified"));
    m_modified->hide();
    m_progress->setObjectName(QStringLiteral("ProgressBar1"));
    m_progress->setMaximum(stepsShown);
    m_progress->setTextVisible(false);
    m_progress->setMaximumWidth(180);
    m_progress->hide();
    addWidget(m_lamp);
    addWidget(m_link);
    addWidget(m_event, 1);
    addPermanentWidget(m_waiting);
    addPermanentWidget(m_unwatched);
    addPermanentWidget(m_notice);
    addPermanentWidget(m_modified);
    addPermanentWidget(m_progress);
    showLink(QString(), false);
    applyTexts();
}

void StatusLine::tell(const QString &line)
{
    m_events += line;
    if (m_events.size() > eventsKept) {
        m_events.removeFirst();
    }
    constexpr qsizetype widest = 1000; // characters, more than any screen shows
    m_event->tell(asSentences(firstCharacters(line, widest)));
    m_event->setToolTip(line);
}

void StatusLine::showLink(const QString &text, bool connected)
{
    m_link->setText(text);
    m_lamp->show(connected, text);
}

void StatusLine::showModified(bool modified)
{
    m_modified->setVisible(modified);
}

void StatusLine::showProgress(int done, int of)
{
    m_progress->setMaximum(of);
    m_progress->setValue(std::min(done, of));
    m_progress->setVisible(done > 0);
}

void StatusLine::showNotice(const QString &text, const QString &details)
{
    m_notice->setText(text);
    m_notice->setToolTip(details);
    m_notice->setVisible(!text.isEmpty());
}

void StatusLine::showUnwatched(int stations)
{
    m_stationsUnwatched = stations;
    m_unwatched->setVisible(stations > 0);
    applyTexts();
}

void StatusLine::showWaiting(const QString &command)
{
    m_waitingCommand = command;
    m_waiting->setVisible(!command.isEmpty());
    applyTexts();
}

void StatusLine::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        applyTexts();
    }
    QStatusBar::changeEvent(event);
}

void StatusLine::applyTexts()
{
    constexpr int widest = 160; // pixels; the tool tip has all of it
    const QString command = shortenedLine(logText(m_waitingCommand));
    QString shown = m_waiting->fontMetrics().elidedText(command, Qt::ElideRight, widest);
    shown.replace(u'&', QLatin1String("&&"));
    m_waiting->setText(tr("Waiting: %1 – take back").arg(shown));
    m_waiting->setToolTip(
        tr("%1 is sent when the module next reads an SMS; a click takes it back").arg(command));
    m_unwatched->setText(tr("Nobody watches the stations: %L1").arg(m_stationsUnwatched));
    m_unwatched->setToolTip(
        tr("The operational mode was closed: no alarm of these stations arrives. A click opens it again."));
    m_modified->setText(u"• " + tr("modified"));
    m_modified->setToolTip(tr("There are changes that are not saved"));
    m_progress->setAccessibleName(tr("Progress of the transmission"));
}

} // namespace ktr
