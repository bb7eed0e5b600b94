#include "opmode/window/alarm_bar.h"

#include "look/outside_texts.h"
#include "opmode/window/alarm_look.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

namespace ktr {

namespace {

constexpr int bellSize = 26;
constexpr int narrow = 1100; ///< less room than that goes to the alarms' texts first
constexpr int roomForTime = 300;

QPushButton *createButton(const QString &name, QWidget *parent)
{
    auto *button = new QPushButton(parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    button->setFocusPolicy(Qt::TabFocus); // the mouse leaves the focus where the user works
    return button;
}

QLabel *createLabel(const QString &name, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    return label;
}

} // namespace

AlarmBar::AlarmBar(const AlarmCentre &centre, const AlarmBook &alarms, Acknowledging &acknowledging,
                   const TextTable &texts, QWidget *parent)
    : QWidget(parent),
      m_centre(centre),
      m_alarms(alarms),
      m_acknowledging(acknowledging),
      m_texts(texts),
      m_icon(createLabel(QStringLiteral("Img_alarm"), this)),
      m_headline(createLabel(QStringLiteral("lbl_alarm"), this)),
      m_lines{createLabel(QStringLiteral("lbl_alarm_first"), this),
              createLabel(QStringLiteral("lbl_alarm_latest"), this)},
      m_all(createButton(QStringLiteral("Cmd_alarm_all"), this)),
      m_latest(createButton(QStringLiteral("Cmd_alarm_latest"), this)),
      m_accept(createButton(QStringLiteral("Cmd_alarm_accept"), this)),
      m_mute(new QCheckBox(this))
{
    setObjectName(QStringLiteral("AlarmBar"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    m_mute->setObjectName(QStringLiteral("Check_stumm"));
    m_mute->setFocusPolicy(Qt::TabFocus);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(12, 6, 10, 6);
    row->setSpacing(8);
    row->addWidget(m_icon);
    row->addWidget(m_headline);
    row->addSpacing(8);
    row->addWidget(createLines(), 1);
    for (QWidget *control : std::initializer_list<QWidget *>{m_all, m_latest, m_accept, m_mute}) {
        row->addWidget(control);
    }

    connect(m_all, &QPushButton::clicked, this, &AlarmBar::allWanted);
    connect(m_latest, &QPushButton::clicked, this, &AlarmBar::goToLatest);
    connect(m_accept, &QPushButton::clicked, this, &AlarmBar::acknowledgeAll);
    connect(m_mute, &QCheckBox::clicked, this, &AlarmBar::muteWanted);
    connect(&centre, &AlarmCentre::changed, this, &AlarmBar::refresh);
    connect(&centre, &AlarmCentre::attention, this, &AlarmBar::announce);
    takeColours();
    applyTexts();
}

/// Two lines' room, whether there are two or one.
QWidget *AlarmBar::createLines()
{
    auto *lines = new QWidget(this);
    auto *column = new QVBoxLayout(lines);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(1);
    column->addStretch();
    for (QLabel *label : m_lines) {
        // However long the text, the window need not be wider for it.
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        column->addWidget(label);
    }
    column->addStretch();
    lines->setFixedHeight(2 * fontMetrics().height() + 4);
    return lines;
}

void AlarmBar::takeColours()
{
    const QPalette red = alarmBarPalette(QApplication::palette());
    if (palette() != red) {
        setPalette(red);
    }
    const QColor white = red.color(QPalette::WindowText);
    m_icon->setPixmap(alarmIcon(white).pixmap(QSize(bellSize, bellSize), devicePixelRatioF()));
    m_mute->setIcon(muteIcon(white));
    QFont bold = font();
    bold.setBold(true);
    m_headline->setFont(bold);
}

void AlarmBar::setMuted(bool muted)
{
    m_mute->setChecked(muted);
}

void AlarmBar::setAcceptable(const QString &why)
{
    m_accept->setEnabled(why.isEmpty());
    m_accept->setToolTip(why.isEmpty() ? tr("Acknowledges all alarms of all stations") : why);
}

void AlarmBar::applyTexts()
{
    const std::pair<QPushButton *, QString> captions[] = {
        {m_all, tr("Show all")}, {m_latest, tr("Latest")}, {m_accept, tr("Acknowledge")}};
    for (const auto &[button, caption] : captions) {
        button->setText(caption);
        button->setFixedWidth(button->fontMetrics().horizontalAdvance(caption) + 28);
    }
    m_all->setToolTip(tr("Lists the alarms of all stations that are not acknowledged"));
    m_latest->setToolTip(tr("Shows the latest alarm at its station"));
    setAcceptable(m_accept->isEnabled() ? QString() : m_accept->toolTip());
    m_mute->setAccessibleName(tr("Mute"));
    m_mute->setToolTip(
        tr("When this is not ticked, new alarms sound, and every 60 seconds as long as one is not "
           "acknowledged. It ends by itself; for how long, the menu Alarms offers. This bar and messages of "
           "the desktop stay."));
    fit();
    refresh();
}

void AlarmBar::refresh()
{
    const int count = m_centre.unacknowledged();
    auto first = m_centre.first();
    if (first) {
        first->received = first->raised; // the time to be shown of it
    }
    const auto latest = m_centre.latest();
    const QString alarms = count == 1 ? tr("1 alarm") : tr("%1 alarms").arg(locale().toString(count));
    const QString state = m_texts.text(Text::NotAcknowledged);
    m_headline->setText(alarms + (width() < narrow ? u'\n' : u' ') + state);
    const bool isOne = count == 1 || !first || !latest;
    const auto lines = [&](bool withTime) -> Lines {
        if (!latest || isOne) {
            return {latest ? line(*latest, withTime) : QString(), QString()};
        }
        return {tr("First: %1").arg(line(*first, withTime)), tr("Latest: %1").arg(line(*latest, withTime))};
    };
    m_full = lines(true);
    m_short = lines(false);
    m_lines[1]->setVisible(!isOne);
    setAccessibleName(alarms + u' ' + state);
    setAccessibleDescription(m_full.join(QStringLiteral(". ")));
    layout()->activate();
    elide();
    if (count == 0 || parentWidget() != nullptr) { // alone it would become a window
        setVisible(count > 0);
    }
}

/// The time in front: it is not what gets cut off.
QString AlarmBar::line(const Alarm &alarm, bool withTime) const
{
    const QString time = withTime ? shownMoment(alarm.received) + QStringLiteral("   ") : QString();
    const QString station =
        alarm.station.isEmpty() ? QString() : shortenedLine(alarm.station) + QStringLiteral(" · ");
    return time + station + shortenedLine(alarm.message);
}

void AlarmBar::elide()
{
    for (int i = 0; i < 2; ++i) {
        QLabel &label = *m_lines[i];
        const int room = label.parentWidget()->width();
        const QString &wanted = room < roomForTime ? m_short[i] : m_full[i];
        const QString shown = label.fontMetrics().elidedText(wanted, Qt::ElideRight, room);
        label.setText(shown);
        label.setToolTip(shown == m_full[i] ? QString() : m_full[i]);
    }
}

void AlarmBar::fit()
{
    m_mute->setText(width() < narrow ? QString() : tr("Mute"));
}

void AlarmBar::announce()
{
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void AlarmBar::goToLatest()
{
    if (const auto latest = m_centre.latest()) {
        Q_EMIT entryWanted(latest->kennung, latest->entry);
    }
}

void AlarmBar::acknowledgeAll()
{
    const std::set<qint64> &waiting = m_alarms.waiting();
    const bool hadFocus = m_accept->hasFocus();
    m_acknowledging.acknowledgeAlarms(this, QList<qint64>(waiting.begin(), waiting.end()));
    if (hadFocus && m_alarms.waitingCount() == 0) { // the bar goes
        Q_EMIT accepted();
    }
}

void AlarmBar::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::FontChange) {
        takeColours();
    }
    QWidget::changeEvent(event);
}

void AlarmBar::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), palette().color(QPalette::Window));
}

void AlarmBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fit();
    refresh();
}

} // namespace ktr
