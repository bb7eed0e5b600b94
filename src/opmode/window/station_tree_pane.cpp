#include "opmode/window/station_tree_pane.h"

#include "look/list_views.h"
#include "look/mnemonics.h"
#include "opmode/window/branch_opener.h"
#include "opmode/window/curves/series_drag.h"
#include "opmode/window/station_tree_view.h"
#include "opmode/window/tree_order.h"
#include "platform/settings_store.h"

#include <QAction>
#include <QActionGroup>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>
#include <QVBoxLayout>

namespace ktr {

namespace {

const QString treeOrderKey = QStringLiteral("treeOrder");
const QString treeGroupingKey = QStringLiteral("treeGrouping");

void keepChoice(const QString &key, const QAction &choice)
{
    SettingsStore().SaveSetting(settingsOwner, settings_sections::operationalMode, key,
                                choice.data().toString());
}

} // namespace

StationTreePane::StationTreePane(OperationalMode &mode, const TextTable &texts, Timers &timers,
                                 const QLocale &locale, QWidget *parent)
    : QWidget(parent),
      m_mode(mode),
      m_texts(texts),
      m_search(searchField(QStringLiteral("Text_filter_station"), this)),
      m_kind(new QComboBox(this)),
      m_orderButton(new QToolButton(this)),
      m_tree(new StationTreeView(mode.tree(), this)),
      m_order(new TreeOrder(mode, timers, locale, *m_tree))
{
    m_kind->setObjectName(QStringLiteral("Combo_filter_station"));
    m_kind->addItems(QStringList(static_cast<qsizetype>(StationFilter::kinds().size())));
    auto *column = new QVBoxLayout(this);
    column->addWidget(m_search);
    auto *row = new QHBoxLayout;
    row->addWidget(m_kind, 1);
    row->addWidget(m_orderButton);
    column->addLayout(row);
    column->addWidget(m_tree, 1);
    new SeriesDrag(*m_tree, [&mode](const QModelIndex &node) { return seriesOfNode(mode, node); });
    createOrderMenu();
    auto *opener = new BranchOpener(*m_tree, mode.tree());
    connect(&mode, &OperationalMode::alarmRaised, opener, &BranchOpener::reveal);
    connect(m_search, &QLineEdit::textChanged, this, &StationTreePane::applyFilter);
    m_search->installEventFilter(this);
    connect(m_kind, &QComboBox::activated, this, &StationTreePane::applyFilter);
}

/// From the search to the first that it found with Down or Enter; Escape gives it up.
bool StationTreePane::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_search || event->type() != QEvent::KeyPress) {
        return QWidget::eventFilter(watched, event);
    }
    const int key = static_cast<const QKeyEvent *>(event)->key();
    if (key != Qt::Key_Down && key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Escape) {
        return false;
    }
    if (key == Qt::Key_Escape) {
        m_search->clear();
    }
    m_tree->settleFilter();
    if (!m_search->text().trimmed().isEmpty()) {
        m_tree->chooseFirst();
    }
    m_tree->setFocus(Qt::TabFocusReason);
    return true;
}

void StationTreePane::createOrderMenu()
{
    using Order = OverviewModel::Order;
    using Grouping = OverviewModel::Grouping;
    m_orderButton->setObjectName(QStringLiteral("Cmd_tree_order"));
    m_orderButton->setPopupMode(QToolButton::InstantPopup);
    m_orderButton->setFocusPolicy(Qt::StrongFocus);
    auto *menu = new QMenu(m_orderButton);
    m_orderButton->setMenu(menu);
    m_orders = new QActionGroup(this);
    for (const Order order : {Order::List, Order::Name, Order::Urgency, Order::Heard}) {
        menu->addAction(addChoice(*m_orders, QStringLiteral("mnu_tree_order"), static_cast<int>(order)));
    }
    menu->addSeparator();
    m_groupings = new QActionGroup(this);
    for (const Grouping grouping : {Grouping::None, Grouping::State, Grouping::Groups}) {
        menu->addAction(
            addChoice(*m_groupings, QStringLiteral("mnu_tree_grouping"), static_cast<int>(grouping)));
    }
    menu->addSeparator();
    m_open = menu->addAction(QString());
    m_open->setObjectName(QStringLiteral("mnu_tree_open"));
    m_collapse = menu->addAction(QString());
    m_collapse->setObjectName(QStringLiteral("mnu_tree_collapse"));
    connect(m_orders, &QActionGroup::triggered, this, [this](const QAction *choice) {
        m_order->setOrder(static_cast<OverviewModel::Order>(choice->data().toInt()));
        m_tree->scrollTo(m_tree->currentIndex());
        keepChoice(treeOrderKey, *choice);
    });
    connect(m_groupings, &QActionGroup::triggered, this, [this](const QAction *choice) {
        m_order->setGrouping(static_cast<OverviewModel::Grouping>(choice->data().toInt()));
        m_tree->scrollTo(m_tree->currentIndex());
        keepChoice(treeGroupingKey, *choice);
    });
    connect(m_collapse, &QAction::triggered, this, [this] {
        m_tree->goTo(m_tree->chosenStation()); // what is current must not vanish
        m_tree->collapseAll();
    });
    connect(m_open, &QAction::triggered, m_tree, [this] { m_tree->expandToDepth(0); });
    restoreOrder();
}

QAction *StationTreePane::addChoice(QActionGroup &choices, const QString &name, int value)
{
    auto *choice = new QAction(&choices);
    choice->setObjectName(name + u'_' + QString::number(value));
    choice->setCheckable(true);
    choice->setChecked(choices.actions().size() == 1); // it is in the group already
    choice->setData(value);
    return choices.addAction(choice);
}

/// What was chosen in the run before.
void StationTreePane::restoreOrder()
{
    const SettingsStore store;
    const auto kept = [&store](QActionGroup &choices, const QString &key) -> QAction * {
        const QString value = store.GetSetting(settingsOwner, settings_sections::operationalMode, key);
        for (QAction *choice : choices.actions()) {
            if (choice->data().toString() == value) {
                choice->setChecked(true);
                return choice;
            }
        }
        return nullptr;
    };
    if (const QAction *order = kept(*m_orders, treeOrderKey)) {
        m_order->setOrder(static_cast<OverviewModel::Order>(order->data().toInt()));
    }
    if (const QAction *grouping = kept(*m_groupings, treeGroupingKey)) {
        m_order->setGrouping(static_cast<OverviewModel::Grouping>(grouping->data().toInt()));
    }
}

void StationTreePane::applyFilter()
{
    const auto addressOf = [this](const QString &kennung) {
        const cStation *station = m_mode.station(kennung);
        return station == nullptr ? QString() : station->hostAddress();
    };
    m_tree->setFilter({addressOf, m_search->text().trimmed(),
                       &StationFilter::kinds()[static_cast<std::size_t>(m_kind->currentIndex())]});
}

void StationTreePane::applyTexts()
{
    m_search->setPlaceholderText(tr("Find a station (name or address)"));
    m_search->setAccessibleName(m_search->placeholderText());
    int item = 0;
    for (const StationFilter::Kind &kind : StationFilter::kinds()) {
        m_kind->setItemText(item++, kind.caption(m_texts));
    }
    m_kind->setAccessibleName(tr("Stations shown"));
    m_tree->setAccessibleName(tr("Stations"));
    m_orderButton->setText(tr("Order"));
    m_orderButton->setToolTip(tr("Order and grouping of the stations"));
    m_orderButton->setAccessibleName(m_orderButton->toolTip());
    const QStringList orders{tr("In the order of the list"), tr("By name"), tr("The most urgent first"),
                             tr("The longest unheard first")};
    const QStringList groupings{tr("Not grouped"), tr("Grouped by state"),
                                tr("In the groups of the overview")};
    for (int at = 0; at < orders.size(); ++at) {
        m_orders->actions()[at]->setText(orders[at]);
    }
    for (int at = 0; at < groupings.size(); ++at) {
        m_groupings->actions()[at]->setText(groupings[at]);
    }
    m_collapse->setText(tr("Collapse all"));
    m_open->setText(tr("Open all stations"));
    giveMnemonics(m_orderButton->menu()->actions());
    m_order->applyTexts();
}

} // namespace ktr
