#include "opmode/window/list_banner.h"

#include "look/icons.h"
#include "opmode/window/alarm_look.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

namespace ktr {

namespace {

constexpr int bannerIconSize = 26;

} // namespace

ListBanner::ListBanner(QWidget *parent)
    : QWidget(parent),
      m_icon(new QLabel(this)),
      m_headline(new QLabel(this)),
      m_reason(new QLabel(this)),
      m_retry(new QPushButton(this)),
      m_empty(new QPushButton(this)),
      m_noted(new QPushButton(this)),
      m_watch(new QPushButton(this))
{
    setObjectName(QStringLiteral("ListBanner"));
    m_headline->setObjectName(QStringLiteral("lbl_list"));
    m_headline->setTextFormat(Qt::PlainText);
    m_reason->setObjectName(QStringLiteral("lbl_list_reason"));
    m_reason->setTextFormat(Qt::PlainText); // another program wrote part of it
    m_reason->setWordWrap(true);
    m_reason->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_retry->setObjectName(QStringLiteral("Cmd_list_retry"));
    m_empty->setObjectName(QStringLiteral("Cmd_list_empty"));
    m_noted->setObjectName(QStringLiteral("Cmd_list_noted"));
    m_watch->setObjectName(QStringLiteral("Cmd_list_watch"));
    for (QPushButton *button : {m_retry, m_empty, m_noted, m_watch}) {
        button->setAutoDefault(false);
    }

    auto *texts = new QVBoxLayout;
    texts->setSpacing(1);
    texts->addWidget(m_headline);
    texts->addWidget(m_reason);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(12, 6, 10, 6);
    row->setSpacing(8);
    row->addWidget(m_icon);
    row->addLayout(texts, 1);
    row->addWidget(m_retry);
    row->addWidget(m_empty);
    row->addWidget(m_noted);
    row->addWidget(m_watch);

    connect(m_retry, &QPushButton::clicked, this, &ListBanner::retryWanted);
    connect(m_empty, &QPushButton::clicked, this, &ListBanner::emptyWanted);
    connect(m_noted, &QPushButton::clicked, this, &QWidget::hide);
    connect(m_watch, &QPushButton::clicked, this, &ListBanner::watchWanted);
    takeColours();
    applyTexts();
    hide();
}

void ListBanner::appear(const QString &reason, bool canBeginEmpty)
{
    show(Topic::NotWatched, reason);
    m_empty->setVisible(canBeginEmpty);
}

void ListBanner::tellDefects(const QString &defects)
{
    show(Topic::Defects, defects);
}

void ListBanner::tellUnlocked(const QString &reason)
{
    show(Topic::Unlocked, reason);
}

void ListBanner::tellUnkept(const QString &reason)
{
    show(Topic::Unkept, reason);
}

void ListBanner::tellJoined(const QString &keeper)
{
    show(Topic::Joined, keeper);
}

void ListBanner::tellUnheard(const QString &since)
{
    show(Topic::Unheard, since);
}

void ListBanner::tellUnwatched(const QString &since, bool canWatch)
{
    show(Topic::Unwatched, since);
    m_watch->setVisible(canWatch);
}

void ListBanner::tellUnreachable(const QString &since)
{
    show(Topic::Unreachable, since);
}

void ListBanner::tellUnopened(const QString &reason)
{
    show(Topic::Unopened, reason);
}

void ListBanner::tellBeside(const QString &troubles)
{
    show(Topic::Beside, troubles);
}

void ListBanner::tellRules(const QString &reason)
{
    show(Topic::Rules, reason);
}

void ListBanner::tellOpening(const QString &address)
{
    show(Topic::Opening, address);
}

void ListBanner::show(Topic topic, const QString &reason)
{
    m_topic = topic;
    takeColours();
    m_watch->hide();
    m_retry->setVisible(topic == Topic::NotWatched || topic == Topic::Unopened || topic == Topic::Beside);
    m_empty->hide();
    m_noted->setVisible(topic == Topic::Defects || topic == Topic::Unlocked || topic == Topic::Beside);
    m_reason->setText(reason);
    setAccessibleDescription(reason);
    applyTexts();
    QWidget::show();
}

QString ListBanner::headline() const
{
    switch (m_topic) {
    case Topic::NotWatched:
        return tr("No station is watched");
    case Topic::Defects:
        return tr("Not all of the list of stations is as it was");
    case Topic::Unlocked:
        return tr("Another program could watch these stations unnoticed");
    case Topic::Joined:
        return tr("Another program watches these stations; they are shown here, too");
    case Topic::Unheard:
        return tr("The program that watches the stations is not heard");
    case Topic::Unwatched:
        return tr("Nobody watches the stations");
    case Topic::Unreachable:
        return tr("The record cannot be reached");
    case Topic::Unopened:
        return tr("The stations cannot be shown");
    case Topic::Opening:
        return tr("The record is being opened");
    case Topic::Beside:
        return tr("A file beside the list of stations cannot be used as it is");
    case Topic::Rules:
        return tr("The alarm rules of the record cannot be used");
    case Topic::Unkept:
        return tr("Alarms and changes cannot be written to the disk");
    }
    return {};
}

void ListBanner::applyTexts()
{
    m_headline->setText(headline());
    setAccessibleName(m_headline->text());
    m_retry->setText(tr("Try again"));
    m_retry->setToolTip(m_topic == Topic::Beside ? tr("Reads the file again")
                                                 : tr("Opens the list of stations again"));
    m_empty->setText(tr("Begin an empty list"));
    m_empty->setToolTip(tr("Keeps the list that cannot be used under another name and begins an empty one"));
    m_watch->setText(tr("Watch here"));
    m_watch->setToolTip(tr("Opens the list of stations again and talks with the modules from here"));
    m_noted->setText(tr("Noted"));
    m_noted->setToolTip(m_topic == Topic::Unlocked || m_topic == Topic::Beside
                            ? tr("Hides this message")
                            : tr("Hides this message; the damaged file is kept under another name"));
    for (QPushButton *button : {m_retry, m_empty, m_noted, m_watch}) {
        button->setFixedWidth(button->fontMetrics().horizontalAdvance(button->text()) + 28);
    }
}

void ListBanner::takeColours()
{
    const bool isNote = m_topic == Topic::Joined || m_topic == Topic::Opening;
    const QPalette wanted = isNote ? QApplication::palette() : alarmBarPalette(QApplication::palette());
    if (palette() != wanted) {
        setPalette(wanted);
    }
    m_icon->setPixmap(icon(isNote ? IconName::Information : IconName::Warning)
                          .pixmap(QSize(bannerIconSize, bannerIconSize), devicePixelRatioF()));
    QFont bold = font();
    bold.setBold(true);
    m_headline->setFont(bold);
}

void ListBanner::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::FontChange) {
        takeColours();
    }
    QWidget::changeEvent(event);
}

void ListBanner::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), palette().color(QPalette::Window));
}

} // namespace ktr
