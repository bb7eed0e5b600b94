#include "opmode/window/values_page.h"

#include "look/outside_texts.h"
#include "opmode/overview/input_reading.h"
#include "opmode/overview/value_times.h"
#include "opmode/window/alarm_look.h"
#include "opmode/window/input_caption.h"
#include "opmode/window/value_age.h"
#include "opmode/window/value_text.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace ktr {

namespace {

constexpr int batch = 100; ///< milliseconds: reports within are shown together
constexpr int tallestTile = 280;
constexpr int pageAgesMs = 20'000; ///< ages are told in minutes

} // namespace

ValuesPage::ValuesPage(OperationalMode &mode, const TextTable &texts, QWidget *parent)
    : HeadedPage(mode, texts, parent),
      m_time(new QLabel(this)),
      m_answer(new QLabel(this)),
      m_refresh(new QPushButton(this)),
      m_scroll(new QScrollArea(this)),
      m_batch(new QTimer(this)),
      m_ageing(new QTimer(this)),
      m_times(new ValueTimes(mode, this))
{
    setContent(createContent());

    m_batch->setSingleShot(true);
    m_batch->setInterval(batch);
    connect(m_batch, &QTimer::timeout, this, &ValuesPage::showValues);
    m_ageing->setInterval(pageAgesMs);
    connect(m_ageing, &QTimer::timeout, this, &ValuesPage::showValues);
    connect(m_times, &ValueTimes::found, this, &ValuesPage::showValues);
    connect(&mode.configurations(), &StationConfigurations::changed, this, &ValuesPage::showValues);
    connect(m_refresh, &QPushButton::clicked, this, &ValuesPage::requestValues);
    connect(&mode, &OperationalMode::happened, this, [this](const StationEvent &event) {
        if (event.kind == StationEvent::Kind::Values && event.kennung == kennung()) {
            m_answer->clear();
            if (!m_batch->isActive()) {
                m_batch->start();
            }
        }
    });
    connect(&mode, &OperationalMode::stationChanged, this, [this](const QString &changed) {
        if (changed == kennung()) {
            showRefresh();
            showDelivery();
            if (!m_batch->isActive()) { // it may be silent, or alive again
                m_batch->start();
            }
        }
    });
}

QWidget *ValuesPage::createContent()
{
    m_time->setObjectName(QStringLiteral("Label_ip_time"));
    m_answer->setObjectName(QStringLiteral("Label_ip_answer"));
    m_answer->setWordWrap(true);
    m_answer->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_refresh->setObjectName(QStringLiteral("Cmd_aktualisieren"));

    auto *title = new QVBoxLayout;
    title->setSpacing(2);
    title->addWidget(heading());
    title->addWidget(m_time);
    auto *top = new QHBoxLayout;
    top->addLayout(title, 1);
    top->addWidget(m_answer, 1);
    top->addWidget(m_refresh);

    auto *tiles = new QWidget;
    m_grid = new QGridLayout;
    m_grid->setSpacing(10);
    for (int channel = 1; channel <= channelCount; ++channel) {
        auto *tile = new ValueTile(tiles);
        tile->setObjectName(QStringLiteral("Value_ip_%1").arg(channel));
        tile->setMaximumHeight(tallestTile);
        m_tiles[static_cast<std::size_t>(channel - 1)] = tile;
    }
    auto *above = new QVBoxLayout(tiles);
    above->setContentsMargins({});
    above->addLayout(m_grid, 1);
    above->addStretch(0);
    m_scroll->setWidget(tiles);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->viewport()->setAutoFillBackground(false);
    tiles->setAutoFillBackground(false);
    m_scroll->viewport()->installEventFilter(this);

    auto *content = new QWidget(this);
    auto *layout = new QVBoxLayout(content);
    layout->addLayout(top);
    layout->addWidget(m_scroll, 1);
    return content;
}

/// Six, three or two tiles in a row: every row is full.
void ValuesPage::arrangeTiles()
{
    const int wide = m_tiles.front()->minimumSizeHint().width() + m_grid->spacing();
    const int room = m_scroll->viewport()->width() + m_grid->spacing();
    const int columns = room >= 6 * wide ? 6 : room >= 3 * wide ? 3 : 2;
    if (columns == m_columns) {
        return;
    }
    m_columns = columns;
    for (int at = 0; at < channelCount; ++at) {
        m_grid->addWidget(m_tiles[static_cast<std::size_t>(at)], at / columns, at % columns);
    }
    for (int row = 0; row < channelCount / 2; ++row) {
        m_grid->setRowStretch(row, row < channelCount / columns ? 1 : 0);
    }
    for (int column = 0; column < 6; ++column) {
        m_grid->setColumnStretch(column, column < columns ? 1 : 0);
    }
    // The scroll area takes what the layout needs from before otherwise.
    m_scroll->widget()->layout()->activate();
    QCoreApplication::postEvent(m_scroll->widget(), new QEvent(QEvent::LayoutRequest));
}

bool ValuesPage::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        arrangeTiles();
    }
    return OpmodePage::eventFilter(watched, event);
}

void ValuesPage::applyTexts()
{
    m_scroll->setAccessibleName(text(Text::Ip));
    m_refresh->setText(text(Text::Refresh));
    m_answer->setText(isWaiting() ? waitingText() : QString());
    showValues();
}

void ValuesPage::stationChosen()
{
    m_isWaiting = isWaiting();
    m_answer->setText(m_isWaiting ? waitingText() : QString());
    showValues();
}

void ValuesPage::showValues()
{
    m_batch->stop();
    showContent(station() == nullptr ? tr("Choose a station to see its input values.") : QString());
    if (station() == nullptr) {
        return;
    }
    showReportTime();
    showRefresh();
    const StationConfiguration configuration = mode().configuration(kennung());
    for (int channel = 1; channel <= channelCount; ++channel) {
        ValueTile &tile = *m_tiles[static_cast<std::size_t>(channel - 1)];
        tile.show(contentOf(channel, configuration));
        tile.setToolTip(detailsOf(channel, configuration));
    }
}

QString ValuesPage::staleReason() const
{
    const QModelIndex node = mode().tree().find(kennung());
    return ktr::staleReason(node.data(StationTree::StatusRole).value<StationStatus>());
}

/// The exact time, the limits, and how far the curve reaches.
QString ValuesPage::detailsOf(int channel, const StationConfiguration &configuration) const
{
    QStringList lines;
    const ValueTile::Content &content = m_tiles[static_cast<std::size_t>(channel - 1)]->content();
    if (const qint64 at = m_times->of(kennung(), channel); at != 0 && !content.value.isEmpty()) {
        lines += tr("Value of %1").arg(shownMoment(at));
    }
    if (!content.stale.isEmpty() && !content.value.isEmpty()) {
        lines += tr("The station is not heard: %1").arg(content.stale);
    }
    for (const InputLimit &limit : configuration.limitsOf(channel)) {
        lines += limitDescription(limit, content.unit, locale());
    }
    if (const QList<QPointF> &trend = content.trend; trend.size() > 1) {
        const auto [lowest, highest] =
            std::ranges::minmax_element(trend, {}, [](const QPointF &point) { return point.y(); });
        constexpr qint64 msPerSecond = 1000;
        const QString since = shownMoment(qint64(trend.front().x()) * msPerSecond);
        const auto number = [this](double value) {
            return locale().toString(value, 'g', QLocale::FloatingPointShortest);
        };
        lines += tr("Since %1: from %2 to %3").arg(since, number(lowest->y()), number(highest->y()));
    }
    return lines.join(u'\n');
}

ValueTile::Content ValuesPage::contentOf(int channel, const StationConfiguration &configuration) const
{
    const InputReading reading = readingOf(mode(), kennung(), channel, configuration);
    ValueTile::Content content;
    content.caption = shortenedLine(inputCaption(channel, configuration.names()));
    content.name = shortenedLine(configuration.names().of(channel).name);
    content.number = text(Text::Ip) + QString::number(channel);
    content.value = shortenedLine(localValue(reading.value, locale()));
    content.unit = reading.unit;
    for (const ValueTrends::Point &point : reading.trend) {
        content.trend.append({double(point.time), double(point.value)});
    }
    using Mark = ValueTile::Content::Mark;
    content.mark = !reading.state ? Mark::None : *reading.state ? Mark::On : Mark::Off;
    content.limits = limitsText(reading.limits, reading.unit, locale());
    for (const InputLimit &limit : reading.limits) {
        content.lines += limit.limit;
    }
    if (!content.value.isEmpty()) {
        content.age = ageText(m_times->of(kennung(), channel), mode().now());
        content.stale = staleReason();
        content.beyond = reading.beyond ? beyondText(*reading.beyond, reading.unit, locale()) : QString();
    }
    return content;
}

void ValuesPage::showEvent(QShowEvent *event)
{
    HeadedPage::showEvent(event);
    showValues();
    m_ageing->start();
}

void ValuesPage::hideEvent(QHideEvent *event)
{
    HeadedPage::hideEvent(event);
    m_ageing->stop();
}

/// The node says it: "IP (HH:MM DD.MM.YYYY)".
void ValuesPage::showReportTime()
{
    const QString line = mode().tree().find(branchKey(kennung(), branches::inputValues)).data().toString();
    const qsizetype open = line.lastIndexOf(u'(');
    const QString time =
        open >= 0 && line.endsWith(u')') ? line.sliced(open + 1).chopped(1).trimmed() : QString();
    const QString reason = staleReason();
    m_time->setText(time.isEmpty() ? tr("No values reported yet")
                    : reason.isEmpty()
                        ? tr("Report of %1").arg(time)
                        : tr("Report of %1 \u2013 %2, the values are of before").arg(time, reason));
}

void ValuesPage::showRefresh()
{
    const bool online = station() != nullptr && station()->online();
    m_refresh->setEnabled(online && !mode().isIdle());
    m_refresh->setToolTip(online ? tr("Asks the station for all its input values")
                                 : tr("The station is offline and cannot be asked for its values"));
}

/// Whether the module has not fetched what it was asked.
bool ValuesPage::isWaiting() const
{
    return station() != nullptr && !station()->msgText().isEmpty();
}

QString ValuesPage::waitingText()
{
    return tr("Requested; delivered when the module next looks for an SMS");
}

void ValuesPage::requestValues()
{
    const bool waited = isWaiting();
    const bool isRequested = mode().requestValues(kennung());
    m_isWaiting = isWaiting();
    answer(isRequested ? waitingText()
           : waited    ? tr("The request still waits; it is delivered when the module next looks for an SMS")
                       : QString(text(Text::RefreshNotPossible) + u' ' + text(Text::BeRequested)));
}

void ValuesPage::showDelivery()
{
    if (std::exchange(m_isWaiting, isWaiting()) && !m_isWaiting) {
        m_answer->setText(tr("Delivered; the values follow"));
    }
}

void ValuesPage::answer(const QString &line)
{
    m_answer->setText(line);
    Q_EMIT statusMessage(line);
}

void ValuesPage::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LocaleChange) {
        showValues();
    }
    OpmodePage::changeEvent(event);
}

} // namespace ktr
