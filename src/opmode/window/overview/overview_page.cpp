#include "opmode/window/overview/overview_page.h"

#include "look/list_views.h"
#include "opmode/operational_mode.h"
#include "opmode/window/overview/overview_view.h"
#include "platform/settings_store.h"

#include <QKeyEvent>
#include <QToolButton>

#include <numeric>

namespace ktr {

namespace {

const QString levelKey = QStringLiteral("overviewLevel");
const QString orderKey = QStringLiteral("overviewOrder");

void keepSetting(const QString &key, int value)
{
    SettingsStore().SaveSetting(settingsOwner, settings_sections::operationalMode, key,
                                QString::number(value));
}

bool isFitKey(const QKeyEvent &event)
{
    return event.key() == Qt::Key_0 && event.modifiers() == Qt::ControlModifier;
}

} // namespace

OverviewPage::OverviewPage(OperationalMode &mode, Timers &timers, const QLocale &locale, QWidget *parent)
    : QWidget(parent), m_model(mode, timers, locale)
{
    setObjectName(QStringLiteral("Page_overview"));
    auto *column = new QVBoxLayout(this);
    column->setSpacing(6);
    m_bar = createBar();
    column->addWidget(m_bar);
    m_urgent = new OverviewView(mode, m_model, this);
    m_urgent->setObjectName(QStringLiteral("List_overview_urgent"));
    m_urgent->hide();
    column->addWidget(m_urgent);
    m_view = new OverviewView(mode, m_model, this);
    m_view->follow();
    column->addWidget(m_view, 1);
    m_none = new EmptyNotice(QStringLiteral("lbl_overview_none"), *m_view);
    connectBar();
    restore();
}

QWidget *OverviewPage::createBar()
{
    auto *bar = new QWidget(this);
    m_search = searchField(QStringLiteral("Text_overview_search"), bar);
    m_order = named<QComboBox>(QStringLiteral("Combo_overview_order"), bar);
    m_order->addItems({QString(), QString()});
    m_counts = named<QLabel>(QStringLiteral("lbl_overview_counts"), bar);
    m_counts->setForegroundRole(QPalette::PlaceholderText);
    m_smaller = named<QToolButton>(QStringLiteral("Cmd_overview_smaller"), bar);
    m_larger = named<QToolButton>(QStringLiteral("Cmd_overview_larger"), bar);
    m_fit = named<QToolButton>(QStringLiteral("Cmd_overview_fit"), bar);
    m_fit->setCheckable(true);
    m_smaller->setText(QStringLiteral("−"));
    m_larger->setText(QStringLiteral("+"));
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_search, 2);
    row->addWidget(m_order);
    row->addWidget(m_counts, 3);
    row->addWidget(m_fit);
    row->addWidget(m_smaller);
    row->addWidget(m_larger);
    return bar;
}

void OverviewPage::connectBar()
{
    connect(m_search, &QLineEdit::textChanged, this, &OverviewPage::search);
    connect(m_search, &QLineEdit::returnPressed, this, &OverviewPage::goToFound);
    connect(m_order, &QComboBox::activated, this, [this](int order) {
        m_model.setOrder(static_cast<OverviewModel::Order>(order));
        keepSetting(orderKey, order);
    });
    connect(m_smaller, &QToolButton::clicked, this, [this] { m_view->setLevel(m_view->level() + 1); });
    connect(m_larger, &QToolButton::clicked, this, [this] { m_view->setLevel(m_view->level() - 1); });
    connect(m_fit, &QToolButton::clicked, m_view, &OverviewView::setFitting);
    connect(m_view, &OverviewView::levelChanged, this, [this] {
        m_fit->setChecked(m_view->isFitting());
        showUrgent();
        if (m_view->isOnWall()) {
            return;
        }
        keepSetting(levelKey, m_view->isFitting() ? -1 : m_view->level());
    });
    connect(m_view, &OverviewView::stationWanted, this, &OverviewPage::stationWanted);
    connect(m_view, &OverviewView::typed, this, [this](const QString &text) {
        m_search->setFocus();
        m_search->insert(text);
    });
    connect(&m_model, &OverviewModel::updated, this, [this] {
        showCounts();
        showUrgent();
    });
}

void OverviewPage::restore()
{
    const SettingsStore store;
    const auto kept = [&store](const QString &key, int otherwise) {
        bool isNumber = false;
        const int number =
            store.GetSetting(settingsOwner, settings_sections::operationalMode, key).toInt(&isNumber);
        return isNumber ? number : otherwise;
    };
    const int level = kept(levelKey, -1);
    level < 0 ? m_view->setFitting(true) : m_view->setLevel(level);
    const int order = kept(orderKey, 0) == 1 ? 1 : 0;
    m_order->setCurrentIndex(order);
    m_model.setOrder(static_cast<OverviewModel::Order>(order));
}

void OverviewPage::search()
{
    m_model.setFilter(m_search->text().trimmed());
}

/// The chosen one of those that were found, else the first.
void OverviewPage::goToFound()
{
    const QModelIndex found = m_view->currentIndex().isValid() ? m_view->currentIndex() : m_model.index(0);
    if (found.isValid()) {
        Q_EMIT stationWanted(found.data(OverviewModel::KeyRole).toString());
    }
}

void OverviewPage::showCounts()
{
    const auto of = [this](Urgency urgency) { return m_model.counts()[static_cast<std::size_t>(urgency)]; };
    const int waiting = of(Urgency::HighAlarm) + of(Urgency::MediumAlarm) + of(Urgency::LowAlarm);
    QString counts = tr("Stations: %L1").arg(m_model.stationCount());
    if (m_model.rowCount() != m_model.stationCount()) {
        counts += tr(", shown %L1").arg(m_model.rowCount());
    }
    const std::pair<QString, int> parts[] = {{tr(", in alarm %L1"), waiting},
                                             {tr(", silent %L1"), of(Urgency::Silent)},
                                             {tr(", acknowledged %L1"), of(Urgency::Standing)},
                                             {tr(", not watched %L1"), of(Urgency::Offline)}};
    for (const auto &[text, count] : parts) {
        if (count > 0) {
            counts += text.arg(count);
        }
    }
    m_counts->setText(counts);
    m_none->setVisible(m_model.rowCount() == 0);
}

void OverviewPage::applyTexts()
{
    m_search->setPlaceholderText(tr("Find a station"));
    m_search->setAccessibleName(m_search->placeholderText());
    m_order->setItemText(0, tr("The most urgent first"));
    m_order->setItemText(1, tr("By name"));
    m_order->setAccessibleName(tr("Order of the stations"));
    m_fit->setText(tr("Fit"));
    m_fit->setToolTip(tr("Tiles as large as the number of stations allows (Ctrl+0)"));
    m_smaller->setToolTip(tr("Smaller tiles (Ctrl+-)"));
    m_larger->setToolTip(tr("Larger tiles (Ctrl++)"));
    m_smaller->setAccessibleName(tr("Smaller tiles"));
    m_larger->setAccessibleName(tr("Larger tiles"));
    m_view->setAccessibleName(tr("Overview of the stations"));
    m_none->setText(tr("No station has this in its name."));
    showCounts();
}

// On a wall

void OverviewPage::showOnWall(const QFont &font)
{
    m_bar->hide();
    m_search->clear();
    m_orderInWindow = m_model.order();
    m_model.setOrder(OverviewModel::Order::Urgency);
    m_urgent->setFont(font);
    m_urgent->setOnWall(true);
    m_view->setFont(font);
    m_view->setOnWall(true);
    showUrgent();
}

void OverviewPage::showInWindow()
{
    m_urgent->setOnWall(false);
    m_view->setFont(QFont());
    m_view->setOnWall(false);
    showUrgent();
    m_model.setOrder(m_orderInWindow);
    m_bar->show();
}

/// Where names cannot be read, those of the most urgent stations stand above, in three rows at most.
void OverviewPage::showUrgent()
{
    constexpr int mostRows = 3;
    int urgent = 0;
    for (int row = 0; row < m_model.rowCount() && m_model.glance(row).urgency <= Urgency::Standing; ++row) {
        ++urgent;
    }
    const bool isNeeded = m_view->isOnWall() && m_view->showsCells() && urgent > 0;
    if (isNeeded) {
        m_urgent->setRows(std::min(mostRows, (urgent + m_urgent->columns() - 1) / m_urgent->columns()));
    }
    m_urgent->setVisible(isNeeded);
}

// Keys: the window's menus have some of them, too, and yield while the overview has the focus.

bool OverviewPage::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        const auto &key = *static_cast<QKeyEvent *>(event);
        const bool isOurs = key.matches(QKeySequence::Find) || key.matches(QKeySequence::ZoomIn) ||
                            key.matches(QKeySequence::ZoomOut) || isFitKey(key);
        if (isOurs && event->type() == QEvent::ShortcutOverride) {
            event->accept();
            return true;
        }
        if (event->type() == QEvent::KeyPress && handleKey(key)) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

bool OverviewPage::handleKey(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::Find)) {
        m_search->setFocus(Qt::ShortcutFocusReason);
        m_search->selectAll();
    } else if (event.matches(QKeySequence::ZoomIn)) {
        m_view->setLevel(m_view->level() - 1);
    } else if (isFitKey(event)) {
        m_view->setFitting(true);
    } else if (event.matches(QKeySequence::ZoomOut)) {
        m_view->setLevel(m_view->level() + 1);
    } else if (m_search->hasFocus() && event.key() == Qt::Key_Down) {
        m_view->setFocus(Qt::TabFocusReason);
    } else if (m_search->hasFocus() && event.key() == Qt::Key_Escape && !m_search->text().isEmpty()) {
        m_search->clear();
        m_view->setFocus(Qt::TabFocusReason);
    } else {
        return false;
    }
    return true;
}

void OverviewPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_model.setActive(true);
}

void OverviewPage::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_model.setActive(false);
}

} // namespace ktr
