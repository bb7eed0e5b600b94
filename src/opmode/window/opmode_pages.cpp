#include "opmode/window/opmode_pages.h"

#include "opmode/window/history/history_page.h"
#include "opmode/window/notifications/notification_page.h"
#include "opmode/window/station_page.h"
#include "opmode/window/station_tree_view.h"
#include "opmode/window/values_page.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace ktr {

namespace {

struct PageRow
{
    const char *objectName;
    Text caption;
    NodeKind node; ///< of a station; it and what stands under it bring the page to the front
    OpmodePage *(*create)(const OpmodePages::Services &services);
};

/// The first one also stands for nodes that no page is about.
constexpr PageRow pageTable[] = {
    {"Page_station", Text::Station, NodeKind::Station,
     [](const OpmodePages::Services &services) -> OpmodePage * {
         return new StationPage(services.mode, services.texts);
     }},
    {"Page_meldung", Text::Notifications, NodeKind::Notifications,
     [](const OpmodePages::Services &services) -> OpmodePage * {
         return new NotificationPage(services.mode, services.texts, services.acknowledging, services.timers,
                                     services.locale);
     }},
    {"Page_history", Text::History, NodeKind::History,
     [](const OpmodePages::Services &services) -> OpmodePage * {
         return new HistoryPage(services.mode, services.texts, services.askSave);
     }},
    {"Page_ip", Text::Ip, NodeKind::InputValues, [](const OpmodePages::Services &services) -> OpmodePage * {
         return new ValuesPage(services.mode, services.texts);
     }}};

NodeKind kindOf(const QModelIndex &node)
{
    return node.data(StationTree::KindRole).value<NodeKind>();
}

QModelIndex nodeOf(const QModelIndex &station, NodeKind kind)
{
    if (kindOf(station) == kind) {
        return station;
    }
    const int rows = station.isValid() ? station.model()->rowCount(station) : 0;
    for (int row = 0; row < rows; ++row) {
        const QModelIndex node = station.model()->index(row, 0, station);
        if (kindOf(node) == kind) {
            return node;
        }
    }
    return {};
}

} // namespace

OpmodePages::OpmodePages(const Services &services, QWidget *parent)
    : QTabWidget(parent), m_texts(services.texts)
{
    setObjectName(QStringLiteral("TabStrip_pages"));
    setDocumentMode(true);
    for (const PageRow &row : pageTable) {
        OpmodePage *page = row.create(services);
        page->setObjectName(QLatin1String(row.objectName));
        addTab(page, QString());
        m_pages += page;
        connect(page, &OpmodePage::statusMessage, this, &OpmodePages::statusMessage);
    }
    m_notifications = findChild<NotificationPage *>();
    connect(this, &QTabWidget::currentChanged, this, &OpmodePages::followPage);
}

void OpmodePages::applyTexts()
{
    for (int page = 0; page < m_pages.size(); ++page) {
        setTabText(page, m_texts.text(pageTable[page].caption));
        m_pages[page]->applyTexts();
    }
}

void OpmodePages::showNode(const QModelIndex &node)
{
    m_station = StationTreeView::stationOf(node);
    const QString kennung = m_station.data(StationTree::KeyRole).toString();
    for (OpmodePage *page : std::as_const(m_pages)) {
        if (page->kennung() != kennung) {
            page->showStation(kennung);
        }
    }
    if (m_isFollowing || !node.isValid()) {
        return;
    }
    const bool isEntry = node.parent().isValid() && node.parent().parent().isValid();
    const NodeKind kind = kindOf(isEntry ? node.parent() : node);
    const auto *row = std::ranges::find(pageTable, kind, &PageRow::node);
    const auto page = row == std::end(pageTable) ? 0 : static_cast<int>(row - std::begin(pageTable));
    const QScopedValueRollback following(m_isFollowing, true);
    setCurrentIndex(page);
    if (isEntry) {
        m_pages[page]->showEntry(node);
    }
}

void OpmodePages::followPage(int index)
{
    if (!m_isFollowing && m_station.isValid()) {
        const QScopedValueRollback following(m_isFollowing, true);
        Q_EMIT nodeWanted(nodeOf(m_station, pageTable[index].node));
    }
}

void OpmodePages::showAllAlarms()
{
    setCurrentWidget(m_notifications);
    m_notifications->showAllAlarms();
}

void OpmodePages::showNotification(const QModelIndex &entry)
{
    m_notifications->showEntry(entry);
}

QModelIndex OpmodePages::notificationsOf(const QModelIndex &station)
{
    return nodeOf(station, NodeKind::Notifications);
}

} // namespace ktr
