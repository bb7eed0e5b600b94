#include "opmode/window/history/history_plot.h"

#include "look/palettes.h"
#include "opmode/tree/station_tree.h"
#include "opmode/window/history/history_canvas.h"
#include "opmode/window/history/history_picture.h"
#include "opmode/window/input_caption.h"
#include "platform/text_rules.h"
#include "platform/time_texts.h"

namespace ktr {

namespace {

constexpr int cardMargin = 8;

QString shownTime(double seconds)
{
    return QDateTime::fromSecsSinceEpoch(qRound64(seconds), Qt::UTC).toString(shownMinuteForm);
}

} // namespace

HistoryPlot::HistoryPlot(QWidget *parent)
    : QWidget(parent),
      m_canvas(std::make_unique<HistoryCanvas>(nullptr, [this] { m_readOut->setText(readOut()); })),
      m_readOut(new QLabel(this))
{
    m_canvas->setObjectName(QStringLiteral("Plot_history_canvas"));
    m_readOut->setObjectName(QStringLiteral("Label_history_readout"));
    m_readOut->setContentsMargins(6, 2, 6, 2);
    m_readOut->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(cardMargin, cardMargin, cardMargin, cardMargin);
    layout->setSpacing(2);
    layout->addWidget(m_canvas.get(), 1);
    layout->addWidget(m_readOut);
    setFocusProxy(m_canvas.get());
    m_canvas->installEventFilter(this);
    connect(m_canvas.get(), &QCustomPlot::mouseMove, this,
            [this](QMouseEvent *event) { m_canvas->pointAt(event->position()); });
    connect(m_canvas.get(), &QCustomPlot::mouseDoubleClick, this, &HistoryPlot::showWholeTime);
}

HistoryPlot::~HistoryPlot() = default;

void HistoryPlot::setNames(const ChannelNames &names)
{
    m_canvas->setNames(names);
}

const ChannelNames &HistoryPlot::names() const
{
    return m_canvas->names();
}

void HistoryPlot::clear()
{
    m_canvas->removeCurves();
    m_readOut->setText(readOut());
}

void HistoryPlot::add(const QList<PlotPoint> &points)
{
    if (m_canvas->add(points)) {
        Q_EMIT channelsChanged();
    }
}

void HistoryPlot::setShown(int channel, bool shown)
{
    m_canvas->setShown(channel, shown);
    m_readOut->setText(readOut());
}

bool HistoryPlot::isShown(int channel) const
{
    return m_canvas->isShown(channel);
}

bool HistoryPlot::isSteps(int channel) const
{
    return m_canvas->isSteps(channel);
}

QList<int> HistoryPlot::channels() const
{
    return m_canvas->channels();
}

void HistoryPlot::showWholeTime()
{
    m_canvas->showWholeTime();
}

std::pair<double, double> HistoryPlot::timeShown() const
{
    return {m_canvas->time().lower, m_canvas->time().upper};
}

void HistoryPlot::showTime(const std::pair<double, double> &time)
{
    m_canvas->setTime({time.first, time.second});
}

QString HistoryPlot::readOut() const
{
    const auto &place = m_canvas->place();
    if (!m_canvas->anyShown()) {
        return tr("No input with values is chosen.");
    }
    if (!place) {
        return tr("Point at a curve to read its values.");
    }
    QString text = shownTime(place->time);
    if (place->channel > 0) {
        text += QStringLiteral("   ") + inputCaption(place->channel, names()) + QStringLiteral(" = ") +
                numberText(place->value, locale());
    } else if (!qIsNaN(place->value)) {
        constexpr int digits = 4;
        text += QStringLiteral("   ") + locale().toString(place->value, 'g', digits);
    }
    return text;
}

void HistoryPlot::applyTexts()
{
    m_canvas->setTitles(tr("Values"), tr("Counters"));
    m_canvas->setAccessibleName(tr("History over time"));
    const QString keys =
        tr("Plus and minus zoom, the arrow keys move, Home shows the whole time, Ctrl and an "
           "arrow key go from record to record.");
    m_canvas->setAccessibleDescription(keys);
    m_readOut->setToolTip(keys);
    m_readOut->setText(readOut());
}

QImage HistoryPlot::picture(const QString &title) const
{
    return historyPicture(*m_canvas, title, font(), palette());
}

bool HistoryPlot::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Leave) {
        m_canvas->pointAway();
    } else if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
        m_canvas->takeColours(); // it has the new ones later than this
        update();
    } else if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        update(); // the focus ring
    } else if (event->type() == QEvent::KeyPress) {
        constexpr double zoomFactor = 0.8;
        constexpr double part = 0.1;
        const auto *key = static_cast<const QKeyEvent *>(event);
        const bool stepping = key->modifiers().testFlag(Qt::ControlModifier);
        switch (key->key()) {
        case Qt::Key_Plus:
        case Qt::Key_Up:
            m_canvas->zoom(zoomFactor);
            return true;
        case Qt::Key_Minus:
        case Qt::Key_Down:
            m_canvas->zoom(1 / zoomFactor);
            return true;
        case Qt::Key_Left:
        case Qt::Key_Right: {
            const int direction = key->key() == Qt::Key_Right ? 1 : -1;
            if (stepping) {
                m_canvas->step(direction);
            } else {
                m_canvas->move(direction * part);
            }
            return true;
        }
        case Qt::Key_Home:
            showWholeTime();
            return true;
        default:
            break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void HistoryPlot::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LocaleChange) {
        QLocale plain = locale();
        plain.setNumberOptions(QLocale::OmitGroupSeparator);
        m_canvas->setLocale(plain);
        m_canvas->replot(QCustomPlot::rpQueuedReplot);
        m_readOut->setText(readOut());
    }
    QWidget::changeEvent(event);
}

void HistoryPlot::paintEvent(QPaintEvent *)
{
    constexpr double radius = 8;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool focused = m_canvas->hasFocus();
    painter.setPen(QPen(focused ? accent(palette()) : hairline(palette()), focused ? 2 : 1));
    painter.setBrush(cardColour(palette()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
}

} // namespace ktr
