#include "opmode/window/tree_order.h"

#include "opmode/operational_mode.h"
#include "opmode/window/overview/numbers_text.h"
#include "opmode/window/station_tree_view.h"
#include "opmode/window/view_activity.h"
#include "platform/text_rules.h"

namespace ktr {

TreeOrder::TreeOrder(OperationalMode &mode, Timers &timers, const QLocale &locale, StationTreeView &view)
    : QObject(&view), m_mode(mode), m_view(view), m_model(mode, timers, locale)
{
    m_model.setOrder(OverviewModel::Order::List);
    m_model.setHold([&view] { return view.activity().isAboutToChoose(); });
    connect(&view.activity(), &ViewActivity::mouseRested, this, [this] {
        if (m_model.stationCount() > 0) {
            m_model.update();
        }
    });
    connect(&m_model, &QAbstractItemModel::modelReset, this, &TreeOrder::arrange);
    connect(&m_model, &QAbstractItemModel::layoutChanged, this, &TreeOrder::arrange);
    connect(&view, &StationTreeView::filtered, this, &TreeOrder::showSections);
}

void TreeOrder::setOrder(OverviewModel::Order order)
{
    m_model.setOrder(order);
    begin();
}

void TreeOrder::setGrouping(OverviewModel::Grouping grouping)
{
    m_model.setGrouping(grouping);
    begin();
}

void TreeOrder::begin()
{
    const bool isLists =
        m_model.order() == OverviewModel::Order::List && m_model.grouping() == OverviewModel::Grouping::None;
    m_model.setActive(!isLists);
    if (isLists) {
        m_stations.clear();
        m_view.changeInPlace([this] { m_mode.tree().arrange({}); });
        showSections();
    }
}

void TreeOrder::arrange()
{
    const NodeStore &nodes = m_mode.tree().nodes();
    m_stations.clear();
    for (int row = 0; row < m_model.rowCount(); ++row) {
        if (const auto id = nodes.find(storedText(m_model.glance(row).kennung))) {
            m_stations.push_back(*id);
        }
    }
    m_view.changeInPlace([this] { m_mode.tree().arrange(m_stations); });
    showSections();
}

/// Above the first one of each that is shown.
void TreeOrder::showSections()
{
    QHash<NodeStore::Id, QString> sections;
    if (m_model.grouping() != OverviewModel::Grouping::None && !m_stations.empty()) {
        QHash<int, OverviewModel::Numbers> numbers;
        for (int row = 0; row < m_model.rowCount(); ++row) {
            numbers[m_model.sectionOf(row)].add(m_model.glance(row));
        }
        int last = -1;
        for (int row = 0; row < m_model.rowCount(); ++row) {
            const int section = m_model.sectionOf(row);
            if (section == last) {
                continue;
            }
            const QModelIndex station = m_mode.tree().find(m_model.glance(row).kennung);
            if (station.isValid() && !m_view.isRowHidden(station.row(), {})) {
                sections.insert(StationTree::idOf(station),
                                sectionName(section) + QStringLiteral(" – ") +
                                    numbersText(worthTelling(numbers.value(section))));
                last = section;
            }
        }
    }
    m_view.setSections(sections);
}

/// What a state's name says of all is not said once more.
OverviewModel::Numbers TreeOrder::worthTelling(OverviewModel::Numbers numbers) const
{
    if (m_model.grouping() == OverviewModel::Grouping::State) {
        numbers.waiting = 0;
        numbers.silent = numbers.silent == numbers.stations ? 0 : numbers.silent;
    }
    return numbers;
}

QString TreeOrder::sectionName(int section) const
{
    if (m_model.grouping() == OverviewModel::Grouping::Groups) {
        const QList<StationGroup> &groups = m_model.groups().list();
        return section < groups.size() ? onOneLine(groups[section].name) : tr("In no group");
    }
    switch (static_cast<Urgency>(section)) {
    case Urgency::Silent:
        return tr("Silent");
    case Urgency::Standing:
        return tr("Alarms that are acknowledged");
    case Urgency::Doubtful:
        return tr("PUK or losses");
    case Urgency::Unheard:
        return tr("Not heard yet");
    case Urgency::Quiet:
        return tr("Alive");
    case Urgency::Offline:
        return tr("Not watched");
    default:
        return tr("In alarm");
    }
}

} // namespace ktr
