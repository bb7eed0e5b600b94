#include "app/foretell_window.h"

#include "app/channel_inputs.h"
#include "app/play_event_model.h"
#include "app/switch_timeline.h"
#include "config/channels.h"
#include "config/entry_texts.h"
#include "foretell/event_texts.h"
#include "look/field_width.h"
#include "look/icons.h"
#include "look/list_views.h"
#include "look/mnemonics.h"
#include "look/outside_texts.h"
#include "look/window_place.h"
#include "platform/files.h"
#include "platform/text_rules.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <numeric>

namespace ktr {

namespace {

constexpr std::array speeds = {1, 10, 60, 600, 3600};
constexpr int usualSpeed = 2;
constexpr int tickMs = 50;
constexpr QSize usualForetellSize(1100, 720);
constexpr QSize leastForetellSize(820, 520);

/// A list of sentences.
QPlainTextEdit *sentences(const QString &name, QWidget *parent)
{
    auto *box = named<QPlainTextEdit>(name, parent);
    box->setReadOnly(true);
    box->setTabChangesFocus(true);
    box->setFrameShape(QFrame::NoFrame);
    return box;
}

/// Scrolls nowhere when it says something else.
void showSentences(QPlainTextEdit &box, const QString &text)
{
    if (box.toPlainText() != text) {
        const int place = box.verticalScrollBar()->value();
        box.setPlainText(text);
        box.verticalScrollBar()->setValue(place);
    }
}

} // namespace

ForetellWindow::ForetellWindow(Services services, QWidget *parent)
    : QWidget(parent, Qt::Window), m_services(std::move(services)), m_events(new PlayEventModel(this))
{
    setObjectName(QStringLiteral("Form_foretell"));
    setWindowIcon(icon(IconName::Application));
    layOut();
    m_ticks.setInterval(tickMs);
    m_refresh.setSingleShot(true);
    connect(&m_ticks, &QTimer::timeout, this, &ForetellWindow::tick);
    connect(&m_refresh, &QTimer::timeout, this, &ForetellWindow::follow);
    connect(&m_services.document, &Document::changed, &m_refresh, [this] { m_refresh.start(0); });
    connect(m_inputs, &ChannelInputs::valueGiven, this, &ForetellWindow::giveValue);
    connect(m_begin, &QDateTimeEdit::editingFinished, this, [this] {
        const ModuleMs begin = moduleMs(m_begin->dateTime());
        if (begin != m_span.from) {
            beginAt(begin);
        }
    });
    connect(m_states, &QCheckBox::toggled, this, [this](bool shown) { m_events->setStatesShown(shown); });
    connect(m_timeline, &SwitchTimeline::chosen, this, &ForetellWindow::showChosen);
    setMinimumSize(leastForetellSize);
    constexpr QSize frame(16, 56);
    resize(usualForetellSize.boundedTo(screen()->availableSize() - frame));
    keepWindowPlace(*this, objectName());
    applyTexts();
    const ModuleMs now = moduleMs(m_services.document.environment().now());
    beginAt(now - now % msPerMinute);
    m_playButton->setFocus();
}

ForetellWindow::~ForetellWindow() = default;

// Layout and texts

QPushButton *ForetellWindow::button(const char *name, void (ForetellWindow::*clicked)())
{
    auto *made = named<QPushButton>(QLatin1String(name), this);
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, clicked);
    return made;
}

QLayout *ForetellWindow::clockRow()
{
    m_beginLabel = new QLabel(this);
    m_begin = named<QDateTimeEdit>(QStringLiteral("Date_foretell_begin"), this);
    setUpMinuteField(*m_begin);
    m_beginLabel->setBuddy(m_begin);
    m_clock = named<QLabel>(QStringLiteral("lbl_foretell_clock"), this);
    QFont large = m_clock->font();
    large.setBold(true);
    m_clock->setFont(large);
    m_playButton = button("Cmd_foretell_play", &ForetellWindow::playPause);
    m_step = button("Cmd_foretell_step", &ForetellWindow::stepToNext);
    m_restart = button("Cmd_foretell_restart", &ForetellWindow::restart);
    m_speedLabel = new QLabel(this);
    m_speed = named<QComboBox>(QStringLiteral("Combo_foretell_speed"), this);
    for (const int speed : speeds) {
        m_speed->addItem(QStringLiteral("× %1").arg(speed), speed);
    }
    m_speed->setCurrentIndex(usualSpeed);
    m_speedLabel->setBuddy(m_speed);
    auto *row = new QHBoxLayout;
    for (QWidget *widget : std::initializer_list<QWidget *>{m_beginLabel, m_begin, m_playButton, m_step,
                                                            m_restart, m_speedLabel, m_speed}) {
        row->addWidget(widget);
    }
    row->addStretch();
    row->addWidget(m_clock);
    return row;
}

QLayout *ForetellWindow::seriesRow()
{
    m_seriesLabel = named<QLabel>(QStringLiteral("lbl_foretell_series"), this);
    m_seriesLabel->setTextFormat(Qt::PlainText);
    m_seriesLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_paste = button("Cmd_foretell_paste", &ForetellWindow::pasteSeries);
    m_open = button("Cmd_foretell_open", &ForetellWindow::openSeries);
    m_drop = button("Cmd_foretell_drop", &ForetellWindow::dropSeries);
    m_export = button("Cmd_foretell_export", &ForetellWindow::exportEvents);
    m_states = named<QCheckBox>(QStringLiteral("Chk_foretell_states"), this);
    m_states->setChecked(true);
    auto *row = new QHBoxLayout;
    row->addWidget(m_paste);
    row->addWidget(m_open);
    row->addWidget(m_drop);
    row->addWidget(m_seriesLabel, 1);
    row->addWidget(m_states);
    row->addWidget(m_export);
    return row;
}

QWidget *ForetellWindow::pages()
{
    m_list = named<QTableView>(QStringLiteral("Table_foretell"), this);
    m_list->setModel(m_events);
    setUpRows(*m_list);
    m_list->horizontalHeader()->setStretchLastSection(true);
    constexpr std::array widths = {140, 180, 140, 160, 190};
    for (int column = 0; column < static_cast<int>(widths.size()); ++column) {
        m_list->setColumnWidth(column, widths[static_cast<std::size_t>(column)]);
    }
    m_notice = new EmptyNotice(QStringLiteral("lbl_foretell_empty"), *m_list);
    QWidget *assumed = assumptionsPage();
    m_unplayed = sentences(QStringLiteral("Txt_foretell_unplayed"), this);
    m_pages = named<QTabWidget>(QStringLiteral("Tab_foretell"), this);
    for (QWidget *page : std::initializer_list<QWidget *>{m_list, assumed, m_unplayed}) {
        m_pages->addTab(page, QString());
    }
    return m_pages;
}

/// What the results rest on, and below it what may be read in another way.
QWidget *ForetellWindow::assumptionsPage()
{
    auto *page = new QWidget(this);
    m_assumed = sentences(QStringLiteral("Txt_foretell_assumed"), page);
    m_readingsLabel = new QLabel(page);
    m_readings = named<QListWidget>(QStringLiteral("List_foretell_readings"), page);
    m_readings->setWordWrap(true);
    m_readings->setTextElideMode(Qt::ElideNone);
    m_readings->setResizeMode(QListView::Adjust);
    m_readings->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_readings->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_readingsLabel->setBuddy(m_readings);
    for (std::size_t at = 0; at < assumptionCount; ++at) {
        if (const auto each = static_cast<Assumption>(at); hasOtherReading(each)) {
            auto *item = new QListWidgetItem(m_readings);
            item->setData(Qt::UserRole, int(at));
            item->setCheckState(Qt::Unchecked);
        }
    }
    connect(m_readings, &QListWidget::itemChanged, this, &ForetellWindow::takeReading);
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_assumed, 1);
    layout->addWidget(m_readingsLabel);
    layout->addWidget(m_readings, 1);
    return page;
}

void ForetellWindow::showReadings()
{
    const QSignalBlocker quiet(m_readings);
    m_readingsLabel->setText(tr("Read otherwise where ticked:"));
    m_readings->setAccessibleName(m_readingsLabel->text());
    for (int row = 0; row < m_readings->count(); ++row) {
        QListWidgetItem *item = m_readings->item(row);
        const auto each = static_cast<Assumption>(item->data(Qt::UserRole).toInt());
        item->setText(QStringLiteral("[%1] %2").arg(QString::number(assumptionNumber(each)),
                                                    assumptionText(each, Assumptions{each})));
        item->setToolTip(tr("Instead of: %1").arg(assumptionText(each)));
    }
}

/// The play begins anew, with the same values.
void ForetellWindow::takeReading(QListWidgetItem *item)
{
    m_otherwise.set(static_cast<Assumption>(item->data(Qt::UserRole).toInt()),
                    item->checkState() == Qt::Checked);
    restart();
}

void ForetellWindow::exportEvents()
{
    const QString path = m_services.askSave(tr("Events"));
    raise();
    activateWindow();
    if (!path.isEmpty()) {
        const Status written = replaceFile(path, m_events->csv(), Readers::AsUsual);
        tell(written ? tr("Saved as %1").arg(path) : written.message());
    }
}

void ForetellWindow::layOut()
{
    auto *all = new QVBoxLayout(this);
    all->addLayout(clockRow());
    all->addLayout(seriesRow());
    m_inputs = new ChannelInputs(this);
    m_inputs->setTabStart(m_states);
    auto *inputs = new QScrollArea(this);
    inputs->setWidget(m_inputs);
    inputs->setWidgetResizable(true);
    inputs->setFocusPolicy(Qt::NoFocus);
    inputs->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    inputs->viewport()->setAutoFillBackground(false);
    m_inputs->setAutoFillBackground(false);
    auto *upper = new QSplitter(Qt::Horizontal, this);
    upper->addWidget(inputs);
    upper->addWidget(pages());
    constexpr int inputsShare = 2;
    constexpr int pagesShare = 3;
    upper->setStretchFactor(0, inputsShare);
    upper->setStretchFactor(1, pagesShare);
    upper->setSizes({380, 640});
    m_timeline = named<SwitchTimeline>(QStringLiteral("Timeline_foretell"), this);
    auto *timeline = new QScrollArea(this);
    timeline->setWidget(m_timeline);
    timeline->setWidgetResizable(true);
    timeline->setFrameShape(QFrame::NoFrame);
    timeline->setFocusPolicy(Qt::NoFocus);
    m_chosen = named<QLabel>(QStringLiteral("lbl_foretell_chosen"), this);
    m_chosen->setTextFormat(Qt::PlainText);
    m_chosen->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto *lower = new QWidget(this);
    auto *below = new QVBoxLayout(lower);
    below->setContentsMargins(0, 0, 0, 0);
    below->addWidget(timeline, 1);
    below->addWidget(m_chosen);
    auto *parts = new QSplitter(Qt::Vertical, this);
    parts->addWidget(upper);
    parts->addWidget(lower);
    parts->setChildrenCollapsible(false);
    upper->setChildrenCollapsible(false);
    parts->setStretchFactor(0, 1);
    parts->setStretchFactor(1, 1);
    parts->setSizes({1, 1});
    all->addWidget(parts, 1);
    all->addWidget(remarksRow());
    m_told = named<QLabel>(QStringLiteral("lbl_foretell_told"), this);
    m_told->setTextFormat(Qt::PlainText);
    m_told->setWordWrap(true);
    m_told->hide();
    all->addWidget(m_told);
}

/// Stays until it was read, whatever is played meanwhile.
QWidget *ForetellWindow::remarksRow()
{
    m_remarksRow = new QWidget(this);
    m_remarks = named<QLabel>(QStringLiteral("lbl_foretell_remarks"), m_remarksRow);
    m_remarks->setTextFormat(Qt::PlainText);
    m_remarks->setWordWrap(true);
    m_remarks->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_dismiss = button("Cmd_foretell_dismiss", &ForetellWindow::dismissRemarks);
    auto *row = new QHBoxLayout(m_remarksRow);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_remarks, 1);
    row->addWidget(m_dismiss, 0, Qt::AlignTop);
    m_remarksRow->hide();
    return m_remarksRow;
}

void ForetellWindow::applyTexts()
{
    setWindowTitle(tr("What would happen"));
    m_speedLabel->setText(tr("Speed:"));
    m_beginLabel->setText(tr("From:"));
    m_begin->setToolTip(tr("The module's clock at the beginning; fourteen days are shown"));
    m_step->setToolTip(tr("Goes to the moment at which something happens next"));
    m_restart->setToolTip(tr("Begins anew; the values stay"));
    m_paste->setToolTip(
        tr("Takes a table from the clipboard: time, channel and value in each line (Ctrl+V)"));
    m_open->setToolTip(tr("Takes such a table, or an exported archive, from a file"));
    m_export->setToolTip(tr("Saves the list of events as a table"));
    showReadings();
    m_states->setToolTip(tr("Also lists when limits are passed and limit values are over"));
    m_speed->setAccessibleName(tr("Speed:"));
    m_timeline->setAccessibleName(tr("Switchings of fourteen days"));
    m_timeline->setToolTip(QString());
    m_list->setAccessibleName(tr("Events"));
    const QList<QAbstractButton *> captioned{m_step, m_restart, m_paste,   m_open,
                                             m_drop, m_states,  m_dismiss, m_export};
    const QStringList captions = withMnemonics(
        {tr("Next event"), tr("From the beginning"), tr("Paste values"), tr("Values from file..."),
         tr("Without the table"), tr("Limits, too"), tr("Dismiss"), tr("Export...")});
    for (qsizetype at = 0; at < captioned.size(); ++at) {
        captioned[at]->setText(captions[at]);
    }
    m_notice->setText(tr("Give the channels values and let the clock run"));
    m_timeline->setNotice(tr("In these fourteen days no switch point switches by the calendar"));
    m_events->headerDataChanged(Qt::Horizontal, 0, PlayEventModel::columns - 1);
    if (m_play != nullptr) {
        follow();
    }
}

// The play

void ForetellWindow::beginAt(ModuleMs at)
{
    pause();
    m_span = {at, at + days * msPerDay};
    restart();
}

/// The values given so far hold from the beginning, unless a table has others.
void ForetellWindow::restart()
{
    pause();
    const std::unique_ptr<ModulePlay> before = std::move(m_play);
    m_play = std::make_unique<ModulePlay>(m_services.document.configuration(), m_span, m_otherwise);
    m_events->setOtherwise(m_otherwise);
    m_events->clear();
    m_reactions.clear();
    m_restsOn = {};
    m_nextValue = 0;
    m_values = valuesIn(m_series.values, m_span);
    for (int channel = 1; before != nullptr && m_series.isEmpty() && channel <= channelCount; ++channel) {
        if (const auto value = before->value(channel)) {
            take(m_play->setValue(m_span.from, channel, *value));
        }
    }
    m_inputs->describe(m_services.document.configuration(), m_services.texts);
    advance(m_span.from);
    showAll();
}

/// The configuration was edited.
void ForetellWindow::follow()
{
    m_inputs->describe(m_services.document.configuration(), m_services.texts);
    take(m_play->configure(m_services.document.configuration()));
    showAll();
}

void ForetellWindow::playPause()
{
    if (m_ticks.isActive()) {
        pause();
    } else if (m_play->now() < m_span.to) {
        m_ticks.start();
    }
    showClock();
}

void ForetellWindow::pause()
{
    m_ticks.stop();
}

void ForetellWindow::tick()
{
    advance(m_play->now() + qint64{tickMs} * m_speed->currentData().toInt());
}

/// Of the table or of the play itself.
std::optional<ModuleMs> ForetellWindow::nextMoment() const
{
    std::optional<ModuleMs> next = m_play->nextDue();
    if (m_nextValue < m_values.size()) {
        const ModuleMs at = m_values[m_nextValue].at;
        next = next ? std::min(*next, at) : at;
    }
    return next;
}

/// Values of a table change without anything happening; those moments are passed over.
void ForetellWindow::stepToNext()
{
    const int before = m_events->rowCount();
    for (auto next = nextMoment(); m_events->rowCount() == before; next = nextMoment()) {
        const ModuleMs to = std::min(next.value_or(m_span.to), m_span.to);
        advance(to);
        if (to >= m_span.to) {
            tell(tr("Nothing more happens within the fourteen days"));
            return;
        }
    }
    tell({});
}

void ForetellWindow::advance(ModuleMs to)
{
    const ModuleMs end = std::min(to, m_span.to);
    const qsizetype given = m_nextValue;
    QList<PlayEvent> events;
    for (; m_nextValue < m_values.size() && m_values[m_nextValue].at <= end; ++m_nextValue) {
        const SeriesValue &value = m_values[m_nextValue];
        events += m_play->setValue(value.at, value.channel, value.value);
    }
    events += m_play->advance(end);
    take(events);
    if (end >= m_span.to || m_play->isStopped()) {
        pause();
    }
    m_inputs->showPlay(*m_play, m_services.document.configuration());
    showClock();
    if (m_nextValue > given) {
        showUnplayed();
    }
}

void ForetellWindow::take(const QList<PlayEvent> &events)
{
    if (events.isEmpty()) {
        return;
    }
    const QScrollBar &bar = *m_list->verticalScrollBar();
    const bool isAtEnd = bar.value() >= bar.maximum();
    m_events->add(events, m_services.document.configuration(), m_services.texts);
    if (isAtEnd) {
        m_list->scrollToBottom();
    }
    bool isSwitched = false;
    for (const PlayEvent &event : events) {
        m_restsOn |= event.restsOn;
        if (event.kind == PlayEvent::Kind::Switched && event.limitValue >= 0 &&
            m_reactions.size() < PlayEventModel::most) {
            m_reactions += event;
            isSwitched = true;
        }
    }
    m_notice->setVisible(m_events->rowCount() == 0);
    m_export->setEnabled(m_events->rowCount() > 0);
    showAssumptions();
    if (isSwitched) {
        showTimeline();
    }
}

void ForetellWindow::giveValue(int channel, double value)
{
    take(m_play->setValue(m_play->now(), channel, value));
    m_inputs->showPlay(*m_play, m_services.document.configuration());
    showClock();
    showUnplayed();
}

// Tables of values

void ForetellWindow::pasteSeries()
{
    takeSeries(QApplication::clipboard()->text(), tr("Clipboard"));
}

void ForetellWindow::openSeries()
{
    const QString path = m_services.askOpen();
    raise();
    activateWindow();
    if (path.isEmpty()) {
        return;
    }
    QByteArray content;
    const Status read = readFile(path, content);
    if (!read) {
        remark(read.message());
        return;
    }
    takeSeries(textOfFile(content), QFileInfo(path).fileName());
}

void ForetellWindow::takeSeries(const QString &text, const QString &from)
{
    ValueSeries series;
    Status read = readValueSeries(text, {}, series);
    const QString &station = m_services.document.configuration().gsm.stationId;
    if (!read && !station.isEmpty()) { // they may be of several stations, this one among them
        ValueSeries ofStation;
        if (readValueSeries(text, station, ofStation)) {
            series = ofStation;
            read = Status::done();
        }
    }
    if (!read) {
        remark(from + QLatin1String(": ") + read.message());
        return;
    }
    m_series = series;
    m_seriesName = from;
    tell({});
    remark(series.remarks.isEmpty() ? QString()
                                    : from + QLatin1String(": ") + series.remarks.join(QLatin1String("; ")));
    const ModuleMs first = series.values.front().at;
    m_play.reset(); // whose values came from elsewhere
    beginAt(first - first % msPerMinute);
}

void ForetellWindow::dropSeries()
{
    m_series = {};
    tell({});
    remark({});
    restart();
}

void ForetellWindow::remark(const QString &line)
{
    m_remarks->setText(boundedText(line));
    m_remarksRow->setVisible(!line.isEmpty());
}

void ForetellWindow::dismissRemarks()
{
    remark({});
    m_step->setFocus();
}

void ForetellWindow::tell(const QString &line)
{
    m_told->setText(boundedText(line));
    m_told->setVisible(!line.isEmpty());
}

// What is shown

void ForetellWindow::showAll()
{
    const QSignalBlocker quiet(m_begin);
    m_begin->setDateTime(QDateTime(clockOf(m_span.from).date(), clockOf(m_span.from).time()));
    m_notice->setVisible(m_events->rowCount() == 0);
    m_export->setEnabled(m_events->rowCount() > 0);
    m_inputs->showPlay(*m_play, m_services.document.configuration());
    showClock();
    showTimeline();
    showAssumptions();
    showUnplayed();
    showSeries();
}

void ForetellWindow::showClock()
{
    const ModuleMs now = m_play->now();
    m_clock->setText(shortDayName(dateOf(now)) + u' ' +
                     clockOf(now).toString(QStringLiteral("dd.MM.yyyy HH:mm:ss")));
    m_playButton->setText(m_ticks.isActive() ? tr("Pause") : tr("Run"));
    m_playButton->setEnabled(now < m_span.to && !m_play->isStopped());
    m_step->setEnabled(now < m_span.to && !m_play->isStopped());
    m_timeline->showTime(now);
}

void ForetellWindow::showTimeline()
{
    const Configuration &configuration = m_services.document.configuration();
    SwitchTimeline::Contents contents;
    contents.span = m_span;
    contents.cause = [this](const SwitchTimeline::Mark &mark) {
        PlayEvent event;
        event.point = mark.point;
        event.limitValue = mark.limitValue;
        return eventCause(event, m_services.document.configuration(), m_services.texts);
    };
    m_calendarRestsOn = {};
    std::array<QList<SwitchTimeline::Mark>, targetCount> marks;
    for (const Switching &each : m_play->calendar().switchings) {
        marks[static_cast<std::size_t>(each.target)] +=
            SwitchTimeline::Mark{each.at, each.value, each.point, -1, each.restsOn};
        m_calendarRestsOn |= each.restsOn;
    }
    for (const PlayEvent &each : m_reactions) {
        marks[static_cast<std::size_t>(each.target)] +=
            SwitchTimeline::Mark{each.at, each.value, each.point, each.limitValue, each.restsOn};
    }
    for (int target = 1; target < targetCount; ++target) {
        QList<SwitchTimeline::Mark> &ofTarget = marks[static_cast<std::size_t>(target)];
        std::ranges::stable_sort(ofTarget, {}, &SwitchTimeline::Mark::at);
        if (!ofTarget.isEmpty()) {
            contents.lanes += SwitchTimeline::Lane{targetName(configuration, target, m_services.texts),
                                                   target >= firstAdministratorTarget, ofTarget};
        }
    }
    contents.holidays = holidaysOf(configuration.holidays);
    for (const ClockChange &change : clockChanges(m_span, QTimeZone::systemTimeZone())) {
        contents.clockChanges += change.at;
    }
    m_timeline->showContents(contents);
    showChosen(m_timeline->chosenWords());
}

void ForetellWindow::showChosen(const QString &words)
{
    m_chosen->setText(words.isEmpty() ? tr("A click or the arrow keys choose a switching; weekends are grey, "
                                           "holidays tinted; dashed: not known")
                                      : words);
    m_chosen->setToolTip(m_chosen->text());
}

void ForetellWindow::showAssumptions()
{
    Assumptions all = m_restsOn | m_calendarRestsOn;
    for (const QuietPoint &quiet : m_play->calendar().quiet) {
        all.addIf(quiet.why == QuietPoint::Why::NotTheTime, Assumption::StartDateHolds);
    }
    all.addIf(!clockChanges(m_span, QTimeZone::systemTimeZone()).isEmpty(), Assumption::ModuleClock);
    all.addIf(m_series.isOfArchive, Assumption::ArchiveSecondValue);
    QString text =
        tr("The module's own behaviour is not known in these points. Where the list and the timeline "
           "rest on one of them, they name its number.") +
        QLatin1String("\n\n") + assumptionLines(all, m_otherwise);
    showSentences(*m_assumed, text);
    m_pages->setTabText(1, tr("Assumed (%1)").arg(all.list().size()));
}

void ForetellWindow::showUnplayed()
{
    const Configuration &configuration = m_services.document.configuration();
    QStringList lines;
    for (const int channel : watchedChannels(configuration)) {
        if (!m_play->value(channel)) {
            lines += tr("%1: no value yet").arg(channelName(configuration, channel, m_services.texts));
        }
    }
    for (int index = 0; index < LimitValue::count; ++index) {
        if (const auto why = m_play->whyUnplayed(index)) {
            lines += unplayedText(index, *why);
        }
    }
    for (const QuietPoint &quiet : m_play->calendar().quiet) {
        lines += quietText(quiet, configuration, m_services.texts);
    }
    for (const ClockChange &change : clockChanges(m_span, QTimeZone::systemTimeZone())) {
        lines += tr("The clocks change here: when the module's shows %1 it is %2 here")
                     .arg(clockText(change.at), clockText(shownHere(change.at, {change})).section(u' ', 1));
    }
    showSentences(*m_unplayed, lines.join(u'\n'));
    m_pages->setTabText(0, tr("Events"));
    m_pages->setTabText(2, tr("Not played (%1)").arg(lines.size()));
}

void ForetellWindow::showSeries()
{
    const bool hasSeries = !m_series.isEmpty();
    m_drop->setEnabled(hasSeries);
    m_seriesLabel->setText(hasSeries ? tr("%1: %2 values, %3 to %4")
                                           .arg(m_seriesName, QString::number(m_series.values.size()),
                                                clockText(m_series.values.front().at),
                                                clockText(m_series.values.back().at))
                                     : tr("Values by the sliders"));
    m_seriesLabel->setToolTip(m_seriesLabel->text());
}

void ForetellWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close)) {
        close();
    } else if (event->matches(QKeySequence::Paste)) {
        pasteSeries();
    } else if (event->matches(QKeySequence::Copy)) {
        QList<int> columns(PlayEventModel::columns);
        std::iota(columns.begin(), columns.end(), 0);
        copyLines(chosenLines(*m_list), columns);
    } else {
        QWidget::keyPressEvent(event);
    }
}

} // namespace ktr
