#include "opmode/window/history/history_page.h"

#include "look/list_views.h"
#include "opmode/window/history/history_plot.h"
#include "opmode/window/history/history_table_model.h"
#include "opmode/window/history/series_style.h"
#include "opmode/window/input_caption.h"
#include "platform/files.h"
#include "platform/module_minutes.h"
#include "platform/time_texts.h"

#include <QAction>
#include <QBuffer>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QStackedWidget>
#include <QStyledItemDelegate>
#include <QTableView>

namespace ktr {

namespace {

constexpr int shownAtFirst = 6; ///< more curves at once are hard to read
constexpr QSize sampleSize(30, 14);

QString minuteText(qint32 minute)
{
    return QDateTime::fromSecsSinceEpoch(secondsAtModuleMinute(minute), Qt::UTC).toString(shownMinuteForm);
}

/// Draws an entry of another form over the whole row.
class WholeLineDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyleOptionViewItem line = option;
        const auto *table = qobject_cast<const QTableView *>(option.widget);
        if (table != nullptr && index.data(HistoryTableModel::WholeLineRole).toBool()) {
            line.rect.setLeft(table->columnViewportPosition(HistoryTableModel::Time));
        }
        QStyledItemDelegate::paint(painter, line, index);
    }
};

int channelOf(const QListWidgetItem &item)
{
    return item.data(Qt::UserRole).toInt();
}

} // namespace

HistoryPage::HistoryPage(OperationalMode &mode, const TextTable &texts, AskFileName askFileName,
                         QWidget *parent)
    : HeadedPage(mode, texts, parent),
      m_askFileName(std::move(askFileName)),
      m_model(new HistoryTableModel(mode.tree(), this)),
      m_summary(new QLabel(this)),
      m_parts(new QSplitter(this)),
      m_table(new QTableView(this)),
      m_plot(new HistoryPlot(this)),
      m_inputs(new QListWidget(this)),
      m_wholeTime(new QPushButton(this)),
      m_save(new QPushButton(this)),
      m_copy(new QAction(this)),
      m_remove(new QAction(this))
{
    setContent(createContent());

    m_model->setLocale(locale());
    connect(m_model, &HistoryTableModel::entriesReplaced, this, &HistoryPage::showAll);
    connect(m_model, &HistoryTableModel::entriesAdded, this, &HistoryPage::showAdded);
    connect(m_model, &HistoryTableModel::entriesRemoved, this, &HistoryPage::showRemaining);
    connect(m_copy, &QAction::triggered, this, &HistoryPage::copySelected);
    connect(m_remove, &QAction::triggered, this, &HistoryPage::removeSelected);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &HistoryPage::enableActions);
    enableActions();
    QScrollBar *bar = m_table->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this,
            [this, bar](int value) { m_isAtEnd = value == bar->maximum(); });
    connect(bar, &QScrollBar::rangeChanged, this, [this, bar](int, int maximum) {
        if (m_isAtEnd) {
            bar->setValue(maximum);
        }
    });
    connect(m_inputs, &QListWidget::itemChanged, this, [this](const QListWidgetItem *item) {
        m_plot->setShown(channelOf(*item), item->checkState() == Qt::Checked);
    });
    connect(m_plot, &HistoryPlot::channelsChanged, this, &HistoryPage::listInputs);
    connect(m_wholeTime, &QPushButton::clicked, m_plot, &HistoryPlot::showWholeTime);
    connect(m_save, &QPushButton::clicked, this, &HistoryPage::savePicture);
    showAll();
}

QWidget *HistoryPage::createContent()
{
    m_summary->setObjectName(QStringLiteral("Label_history_summary"));

    m_table->setObjectName(QStringLiteral("Table_history"));
    m_table->setModel(m_model);
    setUpRows(*m_table);
    m_table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_table->setItemDelegateForColumn(HistoryTableModel::Value, new WholeLineDelegate(m_table));
    m_table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    m_table->horizontalHeader()->setSectionResizeMode(HistoryTableModel::Value, QHeaderView::Stretch);
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->horizontalHeader()->setSortIndicator(HistoryTableModel::Time, Qt::AscendingOrder);
    m_table->setSortingEnabled(true);
    m_copy->setShortcut(QKeySequence::Copy);
    m_copy->setShortcutContext(Qt::WidgetShortcut);
    m_remove->setObjectName(QStringLiteral("mnu_history_remove"));
    m_table->addActions({m_copy, m_remove});
    offerActions(*m_table);

    m_plot->setObjectName(QStringLiteral("Plot_history"));
    m_inputs->setObjectName(QStringLiteral("List_history_inputs"));
    m_inputs->setIconSize(sampleSize);
    m_inputs->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_wholeTime->setObjectName(QStringLiteral("Cmd_history_whole"));
    m_save->setObjectName(QStringLiteral("Cmd_history_picture"));

    m_summary->setWordWrap(true);
    heading()->setWordWrap(true);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_wholeTime);
    buttons->addWidget(m_save);
    buttons->addStretch();
    m_top = new QBoxLayout(QBoxLayout::LeftToRight);
    m_top->addWidget(heading(), 1);
    m_top->addLayout(buttons);

    auto *curves = new QWidget(this);
    m_beside = new QBoxLayout(QBoxLayout::LeftToRight, curves);
    m_beside->setContentsMargins({});
    m_beside->addWidget(m_plot, 1);
    m_beside->addWidget(m_inputs);
    m_parts->setChildrenCollapsible(false);
    m_parts->addWidget(m_table);
    m_parts->addWidget(curves);
    m_parts->setStretchFactor(1, 1);

    constexpr int lowestTable = 130;
    m_table->setMinimumHeight(lowestTable);

    auto *scroll = new QScrollArea(this); // table and plot keep a height at which they can be read
    auto *content = new QWidget(scroll);
    auto *layout = new QVBoxLayout(content);
    layout->addLayout(m_top);
    layout->addWidget(m_summary);
    layout->addWidget(m_parts, 1);
    scroll->setWidget(content);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    QWidget *before = m_table;
    for (QWidget *next : std::initializer_list<QWidget *>{m_plot, m_inputs, m_wholeTime, m_save}) {
        setTabOrder(before, next);
        before = next;
    }
    return scroll;
}

void HistoryPage::applyTexts()
{
    m_table->setAccessibleName(text(Text::History));
    m_inputs->setAccessibleName(tr("Inputs to draw"));
    m_inputs->setToolTip(tr("The inputs that are drawn; the space bar chooses"));
    m_wholeTime->setText(tr("Whole time"));
    m_wholeTime->setToolTip(tr("Shows the whole time (double click into the plot, or Home)"));
    m_save->setText(tr("Save picture..."));
    m_save->setToolTip(tr("Saves the plot as it is shown as a PNG file"));
    m_copy->setText(tr("Copy"));
    m_remove->setText(tr("Remove entries..."));
    m_plot->applyTexts();
    Q_EMIT m_model->headerDataChanged(Qt::Horizontal, 0, HistoryTableModel::ColumnCount - 1);
    setColumnWidths();
    describe();
}

void HistoryPage::setColumnWidths()
{
    constexpr int room = 24;
    const QFontMetrics metrics(m_table->font());
    const int time = metrics.horizontalAdvance(QStringLiteral("00.00.0000 00:00")) + room;
    const int input = metrics.horizontalAdvance(QStringLiteral("Digital Out 1")) + room;
    const int value = metrics.horizontalAdvance(QStringLiteral("-000000,00")) + room;
    m_table->setColumnWidth(HistoryTableModel::Time, time);
    m_table->setColumnWidth(HistoryTableModel::Input, input);
    const int scrollBar = m_table->verticalScrollBar()->sizeHint().width();
    m_tableWidth = time + input + value + scrollBar + 2 * m_table->frameWidth();
    constexpr int check = 40;
    m_inputsWidth = input + sampleSize.width() + check;
    arrange();
}

void HistoryPage::stationChosen()
{
    m_isLoaded = false;
    if (isVisible()) {
        load();
    } else {
        m_model->show({});
    }
    describe();
}

/// Where there is not room for both side by side, the curves stand above the table.
void HistoryPage::arrange()
{
    constexpr int narrow = 860;
    constexpr int narrowest = 500; // there the buttons and the inputs go below, too
    constexpr int fewInputs = 4;
    const bool isNarrowest = width() < narrowest;
    const auto direction = isNarrowest ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight;
    m_top->setDirection(direction);
    m_beside->setDirection(direction);
    m_inputs->setMinimumWidth(isNarrowest ? 0 : m_inputsWidth);
    m_inputs->setMaximumWidth(isNarrowest ? QWIDGETSIZE_MAX : m_inputsWidth);
    m_inputs->setMaximumHeight(isNarrowest ? fewInputs * m_table->verticalHeader()->defaultSectionSize()
                                           : QWIDGETSIZE_MAX);
    const Qt::Orientation fitting = width() < narrow ? Qt::Vertical : Qt::Horizontal;
    m_table->setMinimumWidth(fitting == Qt::Vertical ? 0 : m_tableWidth);
    if (m_parts->orientation() != fitting) {
        const bool isAbove = fitting == Qt::Vertical;
        m_parts->setOrientation(fitting);
        m_parts->insertWidget(isAbove ? 1 : 0, m_table);
        m_parts->setStretchFactor(0, isAbove ? 3 : 0);
        m_parts->setStretchFactor(1, isAbove ? 2 : 1);
        m_parts->setSizes(isAbove ? QList{3 * height(), 2 * height()}
                                  : QList{m_table->minimumWidth(), width()});
    }
}

void HistoryPage::resizeEvent(QResizeEvent *event)
{
    arrange();
    OpmodePage::resizeEvent(event);
}

void HistoryPage::showEvent(QShowEvent *event)
{
    if (!m_isLoaded) {
        load();
    }
    OpmodePage::showEvent(event);
}

void HistoryPage::load()
{
    m_isLoaded = true;
    const ChannelNames names = mode().channelNames(kennung());
    m_plot->setNames(names);
    m_model->setNames(names);
    m_model->show(station() == nullptr ? QModelIndex()
                                       : mode().tree().find(branchKey(kennung(), branches::history)));
}

void HistoryPage::showAll()
{
    const QSignalBlocker quiet(m_inputs);
    m_plot->clear();
    m_inputs->clear();
    drawFrom(0);
    m_isAtEnd = true;
    m_table->scrollToBottom();
    describe();
}

void HistoryPage::showAdded(std::size_t first)
{
    drawFrom(first);
    describe();
}

/// The choice of inputs and the shown time stay as far as there is something left of them.
void HistoryPage::showRemaining()
{
    QSet<int> shown;
    for (const int channel : m_plot->channels()) {
        if (m_plot->isShown(channel)) {
            shown += channel;
        }
    }
    const std::pair<double, double> time = m_plot->timeShown();
    {
        const QSignalBlocker quiet(m_inputs);
        m_plot->clear();
        m_inputs->clear();
        drawFrom(0);
    }
    for (int row = 0; row < m_inputs->count(); ++row) {
        QListWidgetItem &input = *m_inputs->item(row);
        input.setCheckState(shown.contains(channelOf(input)) ? Qt::Checked : Qt::Unchecked);
    }
    m_plot->showTime(time);
    describe();
}

void HistoryPage::drawFrom(std::size_t first)
{
    QList<PlotPoint> points;
    const std::vector<EntryFigures> &entries = m_model->entries();
    for (std::size_t at = first; at < entries.size(); ++at) {
        const EntryFigures &entry = entries[at];
        if (entry.hasTime && entry.hasValue && entry.input >= 1 && entry.input <= channelCount) {
            points.append({entry.input, secondsAtModuleMinute(entry.minute), entry.value});
        }
    }
    if (!points.isEmpty()) {
        m_plot->add(points);
    }
}

/// Lists the inputs that got their first values.
void HistoryPage::listInputs()
{
    const QList<int> channels = m_plot->channels();
    const QSignalBlocker quiet(m_inputs);
    int shown = 0;
    for (int row = 0; row < m_inputs->count(); ++row) {
        shown += m_inputs->item(row)->checkState() == Qt::Checked ? 1 : 0;
    }
    for (int row = 0; row < channels.size(); ++row) {
        const int channel = channels[row];
        if (row < m_inputs->count() && channelOf(*m_inputs->item(row)) == channel) {
            continue;
        }
        auto *item = new QListWidgetItem(shortInputCaption(channel, m_plot->names()));
        item->setToolTip(m_plot->names().of(channel).name.isEmpty() ? QString()
                                                                    : inputCaption(channel, m_plot->names()));
        item->setData(Qt::UserRole, channel);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        const bool isShown = shown < shownAtFirst;
        shown += isShown ? 1 : 0;
        item->setCheckState(isShown ? Qt::Checked : Qt::Unchecked);
        m_inputs->insertItem(row, item);
        m_plot->setShown(channel, isShown);
    }
    drawSamples();
}

void HistoryPage::drawSamples()
{
    const QSignalBlocker quiet(m_inputs);
    for (int row = 0; row < m_inputs->count(); ++row) {
        const int channel = channelOf(*m_inputs->item(row));
        m_inputs->item(row)->setIcon(
            seriesIcon(sampleSize, devicePixelRatioF(), channel, m_plot->isSteps(channel), palette()));
    }
}

void HistoryPage::describe()
{
    const std::vector<EntryFigures> &entries = m_model->entries();
    const QString nothing = station() == nullptr ? tr("Choose a station to see its history.")
                            : entries.empty()    ? tr("%1 has not sent any history yet.").arg(stationName())
                                                 : QString();
    showContent(nothing);
    if (!nothing.isEmpty()) {
        return;
    }
    std::optional<std::pair<qint32, qint32>> span;
    for (const EntryFigures &entry : entries) {
        if (entry.hasTime) {
            span = span ? std::pair(qMin(span->first, entry.minute), qMax(span->second, entry.minute))
                        : std::pair(entry.minute, entry.minute);
        }
    }
    const QString count = tr("Records: %1").arg(locale().toString(qulonglong(entries.size())));
    m_summary->setText(
        span ? tr("%1, from %2 to %3").arg(count, minuteText(span->first), minuteText(span->second)) : count);
    m_save->setEnabled(!m_plot->channels().isEmpty());
    m_wholeTime->setEnabled(!m_plot->channels().isEmpty());
}

void HistoryPage::savePicture()
{
    QString name = stationName();
    for (QChar &c : name) {
        c = QStringView(u"\\/:*?\"<>|").contains(c) ? u'_' : c;
    }
    const QString path =
        m_askFileName(name + QLatin1String(" history.png"), tr("PNG picture") + QLatin1String("|*.png"));
    if (path.isEmpty()) {
        return;
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    const bool drawn = m_plot->picture(stationName() + QStringLiteral(" \u2013 ") + text(Text::History))
                           .save(&buffer, "PNG");
    const Status written = drawn ? replaceFile(path, bytes, Readers::AsUsual)
                                 : Status::failed(tr("%1: the picture is too large.").arg(path));
    Q_EMIT statusMessage(written ? tr("Saved: %1").arg(path) : written.message());
}

void HistoryPage::enableActions()
{
    const bool hasChosen = m_table->selectionModel()->hasSelection();
    m_copy->setEnabled(hasChosen);
    m_remove->setEnabled(hasChosen && !mode().isJoined());
}

void HistoryPage::copySelected()
{
    copyLines(chosenLines(*m_table),
              {HistoryTableModel::Time, HistoryTableModel::Input, HistoryTableModel::Value});
}

void HistoryPage::removeSelected()
{
    QModelIndexList entries;
    for (const QModelIndex &line : chosenLines(*m_table)) {
        entries += m_model->entry(line.row());
    }
    removeEntries(entries,
                  tr("Remove %L1 entries of the history from the tree and its file? The record keeps "
                     "them.")
                      .arg(entries.size()));
}

void HistoryPage::changeEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::PaletteChange:
        drawSamples();
        break;
    case QEvent::LocaleChange:
        m_model->setLocale(locale());
        describe();
        break;
    case QEvent::FontChange:
        setColumnWidths();
        break;
    default:
        break;
    }
    OpmodePage::changeEvent(event);
}

} // namespace ktr
