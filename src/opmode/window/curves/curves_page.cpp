#include "opmode/window/curves/curves_page.h"

#include "look/list_views.h"
#include "look/palettes.h"
#include "opmode/window/curves/curve_columns.h"
#include "opmode/window/curves/curves_canvas.h"
#include "opmode/window/curves/curves_legend.h"
#include "opmode/window/curves/curves_picture.h"
#include "opmode/window/curves/range_bar.h"
#include "opmode/window/curves/series_chooser.h"
#include "platform/files.h"
#include "platform/settings_store.h"
#include "platform/time_texts.h"

#include <QBuffer>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>

#include <algorithm>

namespace ktr {

namespace {

const QString seriesKey = QStringLiteral("curves");
const QString spanKey = QStringLiteral("curvesSpan");
const QString formKey = QStringLiteral("curvesForm");
constexpr int forms = 3;

QString keptSetting(const QString &key)
{
    return SettingsStore().GetSetting(settingsOwner, settings_sections::operationalMode, key);
}

/// A plot on a card with a border that shows the focus.
class Card : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *) override
    {
        constexpr double radius = 8;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const bool focused = focusProxy() != nullptr && focusProxy()->hasFocus();
        painter.setPen(QPen(focused ? accent(palette()) : hairline(palette()), focused ? 2 : 1));
        painter.setBrush(cardColour(palette()));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
    }
};

} // namespace

CurvesPage::CurvesPage(OperationalMode &mode, const TextTable &texts, AskFileName askFileName,
                       QWidget *parent)
    : OpmodePage(mode, texts, parent),
      m_askFileName(std::move(askFileName)),
      m_store(mode),
      m_follow(new QTimer(this)),
      m_stationsTimer(new QTimer(this)),
      m_range(new RangeBar([&mode] { return mode.now().toMSecsSinceEpoch(); }, this)),
      m_form(named<QComboBox>(QStringLiteral("Combo_curves_form"), this)),
      m_choose(named<QToolButton>(QStringLiteral("Cmd_curves_choose"), this)),
      m_picture(named<QPushButton>(QStringLiteral("Cmd_curves_picture"), this)),
      m_table(named<QPushButton>(QStringLiteral("Cmd_curves_table"), this)),
      m_beside(new QSplitter(Qt::Horizontal, this)),
      m_below(new QSplitter(Qt::Vertical, this)),
      m_stack(new QStackedWidget(this)),
      m_empty(named<QLabel>(QStringLiteral("lbl_curves_empty"), this)),
      m_canvas(std::make_unique<CurvesCanvas>(
          nullptr, CurvesCanvas::Answers{[this](const CurveRange &range) { m_range->showRange(range); },
                                         [this] { tellCursor(); }})),
      m_state(named<QLabel>(QStringLiteral("lbl_curves_state"), this)),
      m_legend(new CurvesLegend(this)),
      m_list(named<QTreeView>(QStringLiteral("Table_curves"), this)),
      m_columns(new CurveColumns(*m_list, *m_legend))
{
    m_chooser = new SeriesChooser(
        mode,
        [this](const QString &kennung, const std::function<void(const QList<int> &)> &tell) {
            m_store.channelsOf(kennung, tell);
        },
        this);
    setAcceptDrops(true);
    auto *column = new QVBoxLayout(this);
    column->addWidget(createBar());
    m_below->setChildrenCollapsible(false);
    m_below->addWidget(createPlot());
    m_below->addWidget(m_list);
    m_below->setStretchFactor(0, 3);
    m_below->setStretchFactor(1, 1);
    m_empty->setWordWrap(true);
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setForegroundRole(QPalette::PlaceholderText);
    m_stack->addWidget(m_empty);
    m_stack->addWidget(m_below);
    m_beside->setChildrenCollapsible(false);
    m_beside->addWidget(m_stack);
    m_beside->addWidget(m_chooser);
    m_beside->setStretchFactor(0, 1);
    constexpr QSize sizes(700, 230);
    m_beside->setSizes({sizes.width(), sizes.height()});
    column->addWidget(m_beside, 1);
    connectParts();
    restore();
}

CurvesPage::~CurvesPage() = default;

QWidget *CurvesPage::createBar()
{
    auto *bar = new QWidget(this);
    auto *rows = new QVBoxLayout(bar);
    rows->setContentsMargins({});
    auto *row = new QHBoxLayout;
    m_choose->setCheckable(true);
    m_choose->setFocusPolicy(Qt::StrongFocus);
    m_choose->setToolButtonStyle(Qt::ToolButtonTextOnly);
    m_form->addItems(QStringList(forms));
    row->addWidget(m_form);
    row->addStretch();
    row->addWidget(m_picture);
    row->addWidget(m_table);
    row->addWidget(m_choose);
    rows->addWidget(m_range);
    rows->addLayout(row);
    return bar;
}

QWidget *CurvesPage::createPlot()
{
    m_canvas->setObjectName(QStringLiteral("Plot_curves"));
    m_canvas->installEventFilter(this);
    m_state->setContentsMargins(6, 2, 6, 2);
    m_state->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto *card = new Card(this);
    card->setFocusProxy(m_canvas.get());
    constexpr int cardMargin = 8;
    auto *column = new QVBoxLayout(card);
    column->setContentsMargins(cardMargin, cardMargin, cardMargin, cardMargin);
    column->setSpacing(2);
    column->addWidget(m_canvas.get(), 1);
    column->addWidget(m_state);

    m_list->setModel(m_legend);
    setUpLines(*m_list);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    constexpr int lowestList = 110;
    m_list->setMinimumHeight(lowestList);
    return card;
}

void CurvesPage::connectParts()
{
    m_follow->setInterval(1000);
    m_stationsTimer->setSingleShot(true);
    m_stationsTimer->setInterval(0);
    connect(m_follow, &QTimer::timeout, this, &CurvesPage::followOn);
    connect(m_stationsTimer, &QTimer::timeout, this, &CurvesPage::stationsChanged);
    connect(m_range, &RangeBar::rangeChosen, this, [this] {
        load();
        draw();
    });
    connect(m_form, &QComboBox::activated, this, [this] {
        keep();
        draw();
    });
    connect(m_choose, &QToolButton::toggled, this, &CurvesPage::showChooser);
    connect(m_picture, &QPushButton::clicked, this, &CurvesPage::savePicture);
    connect(m_table, &QPushButton::clicked, this, &CurvesPage::saveTable);
    // What arrives together is drawn together.
    auto *drawSoon = new QTimer(this);
    drawSoon->setSingleShot(true);
    drawSoon->setInterval(20);
    connect(&m_store, &CurveStore::changed, drawSoon, [drawSoon] {
        if (!drawSoon->isActive()) {
            drawSoon->start();
        }
    });
    connect(drawSoon, &QTimer::timeout, this, &CurvesPage::draw);
    connect(m_legend, &CurvesLegend::shownChosen, this, [this](int row, bool isShown) {
        const SeriesId id = m_series.value(row);
        m_hidden.removeAll(id);
        if (!isShown) {
            m_hidden += id;
        }
        draw();
    });
    connect(m_chooser, &SeriesChooser::chosen, this, [this](const SeriesId &id, bool isChosen) {
        if (isChosen) {
            add({id});
        } else {
            remove({id});
        }
    });
    connect(&mode().configurations(), &StationConfigurations::changed, m_stationsTimer,
            qOverload<>(&QTimer::start));
    const StationTree &tree = mode().tree();
    const auto soon = [this](const QModelIndex &parent) {
        if (!parent.isValid()) {
            m_stationsTimer->start();
        }
    };
    connect(&tree, &QAbstractItemModel::rowsInserted, this, soon);
    connect(&tree, &QAbstractItemModel::rowsRemoved, this, soon);
    connect(&tree, &StationTree::stationRenamed, this, [this] { m_stationsTimer->start(); });
    connect(&tree, &QAbstractItemModel::modelReset, this, [this] {
        m_store.clear();
        m_series.clear();
        m_slots.clear();
        m_away.clear();
        m_isRestored = false;
        m_stationsTimer->start();
    });
    auto *remove = new QAction(this);
    remove->setObjectName(QStringLiteral("mnu_curves_remove"));
    remove->setShortcut(QKeySequence::Delete);
    remove->setShortcutContext(Qt::WidgetShortcut);
    connect(remove, &QAction::triggered, this, &CurvesPage::removeChosen);
    auto *removeAll = new QAction(this);
    removeAll->setObjectName(QStringLiteral("mnu_curves_remove_all"));
    connect(removeAll, &QAction::triggered, this, [this] { this->remove(m_series); });
    m_list->addActions({remove, removeAll});
    offerActions(*m_list);
}

void CurvesPage::applyTexts()
{
    m_range->applyTexts();
    m_chooser->applyTexts();
    const QStringList captions{tr("As measured"), tr("Change since the begin"), tr("In % of their range")};
    for (int form = 0; form < forms; ++form) {
        m_form->setItemText(form, captions[form]);
    }
    m_form->setAccessibleName(tr("How values are shown"));
    m_form->setToolTip(tr("How values are shown: what rises alike runs alike"));
    m_choose->setText(tr("Inputs..."));
    m_choose->setToolTip(tr("Shows the list of stations and inputs to choose from (Insert)"));
    m_picture->setText(tr("Picture..."));
    m_picture->setToolTip(tr("Saves what is seen as a PNG picture or a PDF page"));
    m_table->setText(tr("CSV..."));
    m_table->setToolTip(tr("Saves the values that are seen as a table for spreadsheets"));
    m_empty->setText(
        tr("No curve is chosen. Drag stations or inputs from the tree to here, or choose them in "
           "the list that \"Inputs...\" shows."));
    const QString keys =
        tr("Plus and minus or the wheel zoom, the arrow keys or the mouse move, Shift and the mouse choose a "
           "time, Page Up and Page Down step, Home shows the time up to now, Ctrl and an arrow key go from "
           "value to value.");
    m_canvas->setAccessibleName(tr("Curves over time"));
    m_canvas->setAccessibleDescription(keys);
    m_state->setToolTip(keys);
    m_list->setAccessibleName(tr("Curves and their values"));
    m_list->actions().at(0)->setText(tr("Remove from the curves"));
    m_list->actions().at(1)->setText(tr("Remove all"));
    Q_EMIT m_legend->headerDataChanged(Qt::Horizontal, 0, CurvesLegend::ColumnCount - 1);
    m_columns->fitAnew(levelOf(m_range->range()));
    seriesChanged();
}

// Which curves there are

void CurvesPage::restore()
{
    const int span = keptSetting(spanKey).toInt();
    if (span > 0 && span <= chosenSpans) { // counted from 1
        m_range->restore(static_cast<CurveSpan>(span - 1), true);
    }
    m_form->setCurrentIndex(qBound(0, keptSetting(formKey).toInt(), forms - 1));
    m_chooser->hide();
}

void CurvesPage::keep()
{
    const int span = static_cast<int>(m_range->span()) + 1;
    SettingsStore().SaveSettings(
        settingsOwner, settings_sections::operationalMode,
        {{formKey, QString::number(m_form->currentIndex())}, {spanKey, QString::number(span)}});
}

/// Once there are stations.
void CurvesPage::restoreSeries()
{
    if (!m_isRestored && mode().tree().rowCount() > 0) {
        m_isRestored = true;
        const QList<SeriesId> kept = m_kept.restore(mode(), keptSetting(seriesKey));
        m_series.clear();
        m_slots.clear();
        for (const SeriesId &id : kept.first(qMin<qsizetype>(mostSeries, kept.size()))) {
            m_slots.insert(static_cast<int>(m_series.size()) + 1, id);
            m_series += id;
        }
    }
}

void CurvesPage::stationsChanged()
{
    if (!isVisible()) {
        return;
    }
    restoreSeries();
    QList<SeriesId> gone;
    for (const SeriesId &id : std::as_const(m_series)) {
        if (!mode().tree().find(id.kennung).isValid()) {
            gone += id;
        }
    }
    for (const SeriesId &id : std::as_const(gone)) {
        m_series.removeAll(id);
        m_away.insert(m_slots.key(id), id);
        m_slots.remove(m_slots.key(id));
    }
    takeBack();
    if (!m_chooser->isHidden()) {
        m_chooser->refresh();
    }
    seriesChanged();
}

/// A removal of stations can be undone; their curves have their places and colours again then.
void CurvesPage::takeBack()
{
    const QStringList removed = mode().removal().stations();
    m_away.removeIf([&](const auto &away) { // the older ones never come back
        return !removed.contains(away.value().kennung) && !mode().tree().find(away.value().kennung).isValid();
    });
    const QMap<int, SeriesId> away = m_away;
    for (auto each = away.cbegin(); each != away.cend(); ++each) {
        if (!mode().tree().find(each->kennung).isValid()) {
            continue;
        }
        m_away.remove(each.key());
        if (!m_series.contains(*each) && !m_slots.contains(each.key())) {
            const auto behind = std::ranges::find_if(
                m_series, [&](const SeriesId &id) { return m_slots.key(id) > each.key(); });
            m_series.insert(behind, *each);
            m_slots.insert(each.key(), *each);
        }
    }
    if (m_away.size() != away.size()) { // they are to be kept again
        SettingsStore().SaveSetting(settingsOwner, settings_sections::operationalMode, seriesKey,
                                    m_kept.save(mode(), m_series));
    }
}

void CurvesPage::add(const QList<SeriesId> &series)
{
    QStringList stations;
    QList<SeriesId> inputs;
    for (const SeriesId &id : series) {
        if (id.channel != usualChannels) {
            inputs += id;
        } else if (!stations.contains(id.kennung)) {
            stations += id.kennung;
        }
    }
    if (stations.isEmpty()) {
        addInputs(inputs, {});
        return;
    }
    restoreSeries();
    QStringList left; // those that there is no room for at all
    for (qsizetype at = mostSeries; at < stations.size(); ++at) {
        constexpr qsizetype mostNames = 3;
        left += left.size() == mostNames ? QStringLiteral("…")
                                         : mode().tree().find(stations[at]).data(Qt::EditRole).toString();
        if (left.size() > mostNames) {
            break;
        }
    }
    m_store.usualOf(stations.first(qMin<qsizetype>(mostSeries, stations.size())),
                    mostSeries - static_cast<int>(m_series.size()),
                    [this, inputs, left](const QList<SeriesId> &usual) { addInputs(inputs + usual, left); });
}

void CurvesPage::addInputs(const QList<SeriesId> &series, QStringList left)
{
    restoreSeries();
    for (const SeriesId &id : series) {
        if (m_series.contains(id)) {
            continue;
        }
        int slot = 1;
        while (slot <= mostSeries && m_slots.contains(slot)) {
            ++slot;
        }
        if (slot > mostSeries) {
            left += describedSeries(mode(), id, 0, locale()).name();
            continue;
        }
        m_slots.insert(slot, id);
        m_series += id;
    }
    if (series.isEmpty()) {
        Q_EMIT statusMessage(tr("The station has not sent any values yet."));
    } else if (!left.isEmpty()) {
        Q_EMIT statusMessage(tr("More than %1 curves cannot be told from each other: %2")
                                 .arg(mostSeries)
                                 .arg(left.join(u", ")));
    }
    seriesChanged();
    SettingsStore().SaveSetting(settingsOwner, settings_sections::operationalMode, seriesKey,
                                m_kept.save(mode(), m_series));
}

void CurvesPage::remove(const QList<SeriesId> &series)
{
    const QList<SeriesId> removed(series.begin(), series.end()); // they may be our own
    for (const SeriesId &id : removed) {
        m_series.removeAll(id);
        m_hidden.removeAll(id);
        m_slots.remove(m_slots.key(id));
    }
    seriesChanged();
    SettingsStore().SaveSetting(settingsOwner, settings_sections::operationalMode, seriesKey,
                                m_kept.save(mode(), m_series));
}

void CurvesPage::removeChosen()
{
    QList<SeriesId> chosen;
    for (const QModelIndex &line : chosenLines(*m_list)) {
        chosen += m_series.value(line.row());
    }
    remove(chosen);
}

void CurvesPage::seriesChanged()
{
    m_chooser->setChosen(m_series);
    m_stack->setCurrentIndex(m_series.isEmpty() ? 0 : 1);
    m_picture->setEnabled(!m_series.isEmpty());
    m_table->setEnabled(!m_series.isEmpty());
    load();
    draw();
}

void CurvesPage::showChooser(bool isShown)
{
    m_chooser->setVisible(isShown);
    if (isShown) {
        m_chooser->refresh();
        m_chooser->setChosen(m_series);
        m_chooser->setFocusOnSearch();
    }
}

// What is shown of them

void CurvesPage::load(bool anew)
{
    if (isVisible()) {
        m_store.want(m_series, m_range->range(), anew);
    }
}

/// What comes anew is read as often as it would be seen.
void CurvesPage::followOn()
{
    if (!m_range->follows()) {
        return;
    }
    constexpr qint64 parts = 1000;
    constexpr qint64 least = 2000;
    const qint64 now = mode().now().toMSecsSinceEpoch();
    if (now - m_readAt < std::max(least, m_range->range().length() / parts) && now >= m_readAt) {
        return;
    }
    m_readAt = now;
    m_range->goOn();
    load(true);
}

QList<ShownCurve> CurvesPage::shownCurves() const
{
    QList<ShownCurve> curves;
    for (const SeriesId &id : m_series) {
        curves += ShownCurve{describedSeries(mode(), id, m_slots.key(id), locale()), m_store.points(id)};
    }
    const auto chosen = static_cast<CurveForm>(m_form->currentIndex());
    QList<CurveSeries> measured;
    for (const ShownCurve &curve : std::as_const(curves)) {
        if (!m_hidden.contains(curve.series.id) && (curve.points == nullptr || !curve.points->areStates)) {
            measured += curve.series;
        }
    }
    const CurveForm form =
        chosen == CurveForm::Measured && axesOf(measured).size() > mostAxes ? CurveForm::Normalised : chosen;
    for (ShownCurve &curve : curves) {
        const bool areStates = curve.points != nullptr && curve.points->areStates;
        const CurveForm own = areStates ? CurveForm::Measured : form;
        curve.unit = own == CurveForm::Normalised ? QStringLiteral("%") : curve.series.unit;
        if (curve.points != nullptr) {
            curve.scale = scaleOf(own, *curve.points, m_range->range());
        }
    }
    return curves;
}

void CurvesPage::draw()
{
    if (!isVisible()) {
        return;
    }
    const QList<ShownCurve> curves = shownCurves();
    CurvesShown shown;
    QList<CurveSeries> described; // of those with an axis, which come first
    bool isNormalised = false;
    for (const bool ofStates : {false, true}) {
        for (const ShownCurve &curve : curves) {
            const bool areStates = curve.points != nullptr && curve.points->areStates;
            if (m_hidden.contains(curve.series.id) || areStates != ofStates) {
                continue;
            }
            shown.curves += curve;
            if (!areStates) {
                described += curve.series;
                described.last().unit = curve.unit;
                isNormalised = isNormalised || curve.unit != curve.series.unit;
            }
        }
    }
    for (const ShownCurve &curve : curves) {
        shown.stations.insert(mode().alarmActions().numberOf(curve.series.id.kennung), curve.series.station);
    }
    shown.axes = axesOf(described);
    shown.marks = m_store.marks();
    shown.hasLimits = !isNormalised && m_form->currentIndex() == static_cast<int>(CurveForm::Measured);
    m_legend->setMoment(m_canvas->cursor(), m_range->range());
    m_legend->setCurves(curves, m_hidden);
    const HistoryLevel level = levelOf(m_range->range());
    if (level != m_level) {
        m_level = level;
        m_columns->fitAnew(level);
    } else {
        m_columns->fit();
    }
    m_canvas->show(shown, m_range->range());
    tellState();
}

void CurvesPage::tellCursor()
{
    m_legend->setMoment(m_canvas->cursor(), m_range->range());
    m_columns->fit();
    tellState();
}

/// The time and notifications at the cursor, or what is to be known of what is shown.
void CurvesPage::tellState()
{
    const QString trouble = m_store.trouble();
    if (!trouble.isEmpty()) {
        m_state->setText(trouble);
        return;
    }
    if (m_canvas->cursor()) {
        const QStringList marks = m_canvas->marksAtCursor();
        m_state->setText(wallClockText(*m_canvas->cursor()) +
                         (marks.isEmpty() ? QString() : QLatin1String("   ") + marks.join(u"; ")));
        return;
    }
    QStringList lines;
    const CurveRange range = m_range->range();
    bool isAny = false;
    for (const SeriesId &id : std::as_const(m_series)) {
        const std::shared_ptr<const CurvePoints> points = m_store.points(id);
        const auto [first, end] =
            points == nullptr ? std::pair<std::size_t, std::size_t>() : points->within(range);
        isAny = isAny || end > first;
    }
    if (m_store.isReading()) {
        lines += tr("Reading...");
    } else if (!isAny) {
        lines += tr("Nothing was heard of these inputs in this time.");
    } else {
        const QStringList levels{tr("All values"), tr("Quarters of an hour: minimum, mean, maximum"),
                                 tr("Hours: minimum, mean, maximum"), tr("Days: minimum, mean, maximum")};
        lines += levels[static_cast<int>(levelOf(range))];
    }
    if (m_form->currentIndex() == static_cast<int>(CurveForm::Measured)) {
        const QList<ShownCurve> curves = shownCurves();
        const bool isNormalised =
            std::ranges::any_of(curves, [](const ShownCurve &each) { return each.unit != each.series.unit; });
        if (isNormalised) {
            lines += tr("There are more than %1 units: values are shown in % of their range.").arg(mostAxes);
        }
    }
    if (!m_store.areAllMarks()) {
        lines += tr("Of the notifications the newest ones are marked.");
    }
    m_state->setText(lines.join(QStringLiteral("   ")));
}

QString CurvesPage::title() const
{
    const CurveRange range = m_range->range();
    const auto text = [](qint64 at) { return QDateTime::fromMSecsSinceEpoch(at).toString(shownMinuteForm); };
    QString title = tr("Curves from %1 to %2").arg(text(range.from), text(range.to));
    if (m_form->currentIndex() != 0) {
        title += QStringLiteral(" – ") + m_form->currentText();
    }
    return title;
}

void CurvesPage::savePicture()
{
    const QString path =
        m_askFileName(tr("curves") + QLatin1String(".png"), tr("PNG picture") + QLatin1String("|*.png|") +
                                                                tr("PDF page") + QLatin1String("|*.pdf"));
    if (path.isEmpty()) {
        return;
    }
    QByteArray bytes;
    m_canvas->setCursorAt(std::nullopt);
    if (path.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) {
        bytes = curvesPdf(*m_canvas, *m_legend, title());
    } else {
        QBuffer buffer(&bytes);
        (void)curvesPicture(*m_canvas, *m_legend, title()).save(&buffer, "PNG");
    }
    const Status written = !bytes.isEmpty() ? replaceFile(path, bytes, Readers::AsUsual)
                                            : Status::failed(tr("%1: the picture is too large.").arg(path));
    Q_EMIT statusMessage(written ? tr("Saved: %1").arg(path) : written.message());
}

void CurvesPage::saveTable()
{
    const QString path =
        m_askFileName(tr("curves") + QLatin1String(".csv"), tr("CSV table") + QLatin1String("|*.csv"));
    if (path.isEmpty()) {
        return;
    }
    QList<ShownCurve> curves = shownCurves();
    curves.removeIf([this](const ShownCurve &each) { return m_hidden.contains(each.series.id); });
    const Status written = replaceFile(path, curvesCsv(curves, m_range->range()), Readers::AsUsual);
    Q_EMIT statusMessage(written ? tr("Saved: %1").arg(path) : written.message());
}

// Events

void CurvesPage::showEvent(QShowEvent *event)
{
    OpmodePage::showEvent(event);
    restoreSeries();
    m_range->goOn();
    m_follow->start();
    stationsChanged();
    if (m_series.isEmpty() && m_chooser->isHidden()) {
        m_choose->setChecked(true);
    }
}

void CurvesPage::hideEvent(QHideEvent *event)
{
    m_follow->stop();
    keep();
    OpmodePage::hideEvent(event);
}

void CurvesPage::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LocaleChange) {
        QLocale plain = locale();
        plain.setNumberOptions(QLocale::OmitGroupSeparator);
        m_canvas->setLocale(plain);
        m_legend->setLocale(locale());
        draw();
    } else if (event->type() == QEvent::FontChange) {
        m_columns->fitAnew(levelOf(m_range->range()));
    }
    OpmodePage::changeEvent(event);
}

bool CurvesPage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_canvas.get()) {
        if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
            m_canvas->takeColours(); // it has the new ones later than this
            draw();
        } else if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
            m_canvas->parentWidget()->update(); // the focus ring
        }
    }
    return OpmodePage::eventFilter(watched, event);
}

void CurvesPage::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_PageUp:
        m_range->step(-1);
        break;
    case Qt::Key_PageDown:
        m_range->step(1);
        break;
    case Qt::Key_Home:
        m_range->setFollowing(true);
        break;
    case Qt::Key_Insert:
        m_choose->setChecked(true);
        m_chooser->setFocusOnSearch();
        break;
    default:
        OpmodePage::keyPressEvent(event);
    }
}

void CurvesPage::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasFormat(seriesMimeType)) {
        event->acceptProposedAction();
    }
}

void CurvesPage::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    add(draggedSeries(mode(), event->mimeData()->data(seriesMimeType)));
}

} // namespace ktr
