#include "opmode/window/opmode_pages.h"

#include "opmode/window/alarms/alarm_list_page.h"
#include "opmode/window/curves/curves_page.h"
#include "opmode/window/history/history_page.h"
#include "opmode/window/notifications/notification_page.h"
#include "opmode/window/opmode_menus.h"
#include "opmode/window/pane_keys.h"
#include "opmode/window/station_page.h"
#include "opmode/window/station_tree_view.h"
#include "opmode/window/values_page.h"

#include <QAbstractItemView>
#include <QScopedValueRollback>

#include <algorithm>

namespace ktr {

namespace {

struct PageRow
{
    const char *objectName;
    QString (*caption)(const TextTable &texts);
    /// Of a station; it and what stands under it bring the page to the front. A page about all stations has
    /// none.
    std::optional<NodeKind> node;
    OpmodePage *(*create)(const OpmodePages::Services &services);
};

template <Text text> QString captionOf(const TextTable &texts)
{
    return texts.text(text);
}

/// The first one also stands for nodes that no page is about.
const PageRow pageTable[] = {
    {"Page_station", &captionOf<Text::Station>, NodeKind::Station,
     [](const OpmodePages::Services &services) -> OpmodePage * {
         return new StationPage(services.mode, services.texts, services.askOpen);
     }},
    {"Page_meldung", &captionOf<Text::Notifications>, NodeKind::Notifications,
     [](const OpmodePages::Services &services) -> OpmodePage * {
         return new NotificationPage(services.mode, services.texts, services.acknowledging, services.timers,
                                     services.locale);
     }},
    {"Page_history", &captionOf<Text::History>, NodeKind::History,
     [](const OpmodePages::Services &services) -> OpmodePage * {
         return new HistoryPage(services.mode, services.texts, services.askSave);
     }},
    {"Page_ip", &captionOf<Text::Ip>, NodeKind::InputValues,
     [](const OpmodePages::Services &services) -> OpmodePage * {
         return new ValuesPage(services.mode, services.texts);
     }},
    {"Page_alarms", [](const TextTable &) { return OpmodePages::tr("Alarms"); }, std::nullopt,
     [](const OpmodePages::Services &services) -> OpmodePage * {
         return new AlarmListPage(services.mode, services.texts, services.acknowledging, services.timers,
                                  services.locale);
     }},
    {"Page_curves", [](const TextTable &) { return OpmodePages::tr("Curves"); }, std::nullopt,
     [](const OpmodePages::Services &services) -> OpmodePage * {
         return new CurvesPage(services.mode, services.texts, services.askSave);
     }}};

static_assert(std::size(pageTable) == OpmodeMenus::pages);

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
    m_alarms = findChild<AlarmListPage *>();
    m_curves = findChild<CurvesPage *>();
    tabBar()->setChangeCurrentOnDrag(true); // to the curves
    connect(m_alarms, &AlarmListPage::entryWanted, this, &OpmodePages::entryWanted);
    connect(this, &QTabWidget::currentChanged, this, &OpmodePages::followPage);
}

void OpmodePages::applyTexts()
{
    for (int page = 0; page < m_pages.size(); ++page) {
        setTabText(page, pageTable[page].caption(m_texts));
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
    if (m_isFollowing || !node.isValid() || currentWidget() == m_curves) {
        return;
    }
    const bool isEntry = node.parent().isValid() && node.parent().parent().isValid();
    const NodeKind kind = kindOf(isEntry ? node.parent() : node);
    if (kind == NodeKind::Station && !pageTable[currentIndex()].node) {
        return;
    }
    const auto *row = std::ranges::find(pageTable, std::optional(kind), &PageRow::node);
    const auto page = row == std::end(pageTable) ? 0 : static_cast<int>(row - std::begin(pageTable));
    bringToFront(page);
    if (isEntry) {
        m_pages[page]->showEntry(node);
    }
}

/// Because the tree says so.
void OpmodePages::bringToFront(int page)
{
    const QScopedValueRollback following(m_isFollowing, true);
    setCurrentIndex(page);
}

void OpmodePages::followPage(int index)
{
    const std::optional<NodeKind> node = pageTable[index].node;
    if (!m_isFollowing && m_station.isValid() && node) {
        const QScopedValueRollback following(m_isFollowing, true);
        Q_EMIT nodeWanted(nodeOf(m_station, *node));
    }
}

void OpmodePages::choosePage(int page)
{
    setCurrentIndex(page);
    if (QWidget *const wanted = control()) {
        wanted->setFocus(Qt::TabFocusReason);
    }
}

QWidget *OpmodePages::control() const
{
    const QWidget *page = currentWidget();
    const QList<QAbstractItemView *> lists = page->findChildren<QAbstractItemView *>();
    const auto list = std::ranges::find_if(lists, [](const QAbstractItemView *view) {
        return view->isVisible() && view->isEnabled() && (view->focusPolicy() & Qt::TabFocus) != 0;
    });
    return list != lists.end() ? *list : firstControlIn(*page);
}

QStringList OpmodePages::captionsIn(const TextTable &texts)
{
    QStringList captions;
    for (const auto &page : pageTable) {
        captions += page.caption(texts);
    }
    return captions;
}

QStringList OpmodePages::captions() const
{
    QStringList captions;
    for (int page = 0; page < count(); ++page) {
        captions += tabText(page);
    }
    return captions;
}

void OpmodePages::showAllAlarms()
{
    setCurrentWidget(m_alarms);
    m_alarms->showAll();
}

void OpmodePages::showCurves(const QList<SeriesId> *added)
{
    setCurrentWidget(m_curves);
    if (added != nullptr) {
        m_curves->add(*added);
    }
}

void OpmodePages::showNotification(const QModelIndex &entry)
{
    bringToFront(indexOf(m_notifications));
    if (entry.isValid()) {
        m_notifications->showEntry(entry);
    }
}

QModelIndex OpmodePages::notificationsOf(const QModelIndex &station)
{
    return nodeOf(station, NodeKind::Notifications);
}

} // namespace ktr
