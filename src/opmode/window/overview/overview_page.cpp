#include "opmode/window/overview/overview_page.h"

#include "look/list_views.h"
#include "look/outside_texts.h"
#include "opmode/beside_list.h"
#include "opmode/operational_mode.h"
#include "opmode/window/curves/drop_strip.h"
#include "opmode/window/curves/series_drag.h"
#include "opmode/window/overview/groups_dialog.h"
#include "opmode/window/overview/numbers_text.h"
#include "opmode/window/overview/overview_options.h"
#include "opmode/window/overview/overview_view.h"
#include "platform/settings_store.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScreen>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace ktr {

namespace {

const QString levelKey = QStringLiteral("overviewLevel");
constexpr qsizetype longestGroup = 40; // letters that are shown of its name
const QString orderKey = QStringLiteral("overviewOrder");
const QString foldedKey = QStringLiteral("overviewFolded"); // names of groups, a line each
const QString nothingFolded = QStringLiteral("\t");         // is no name

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

OverviewPage::OverviewPage(const Services &services, QWidget *parent)
    : QWidget(parent),
      m_texts(services.texts),
      m_model(services.mode, services.timers, services.locale),
      m_urgentModel(services.mode, services.timers, services.locale)
{
    setObjectName(QStringLiteral("Page_overview"));
    auto *column = new QVBoxLayout(this);
    column->setSpacing(6);
    m_bar = createBar();
    column->addWidget(m_bar);
    m_urgentModel.setOrder(OverviewModel::Order::Newest);
    m_urgent = new OverviewView(services.mode, m_urgentModel, this);
    m_urgent->setObjectName(QStringLiteral("List_overview_urgent"));
    m_urgent->follow();
    m_urgent->hide();
    column->addWidget(m_urgent);
    m_view = new OverviewView(services.mode, m_model, this);
    m_view->follow();
    column->addWidget(m_view, 1);
    auto *curves = new DropStrip(
        services.mode, [this](const QList<SeriesId> &series) { Q_EMIT curvesWanted(series); }, this);
    column->addWidget(curves);
    new SeriesDrag(
        *m_view,
        [this, &mode = services.mode](const QModelIndex &tile) {
            return tile.isValid() && !m_model.headingAt(tile.row()) && !m_view->isOnWall()
                       ? usualSeries(mode, m_model.glance(tile.row()).kennung)
                       : QList<SeriesId>();
        },
        [curves](bool isDragging) { curves->setDragging(isDragging); });
    m_none = new EmptyNotice(QStringLiteral("lbl_overview_none"), *m_view);
    connectBar();
    restore();
}

QWidget *OverviewPage::createBar()
{
    auto *bar = new QWidget(this);
    m_search = searchField(QStringLiteral("Text_overview_search"), bar);
    m_order = named<QComboBox>(QStringLiteral("Combo_overview_order"), bar);
    m_order->addItems({QString(), QString(), QString()});
    m_group = named<QComboBox>(QStringLiteral("Combo_overview_group"), bar);
    m_group->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_options = new OverviewOptions(bar);
    m_counts = named<QLabel>(QStringLiteral("lbl_overview_counts"), bar);
    m_counts->setForegroundRole(QPalette::PlaceholderText);
    m_smaller = named<QToolButton>(QStringLiteral("Cmd_overview_smaller"), bar);
    m_larger = named<QToolButton>(QStringLiteral("Cmd_overview_larger"), bar);
    m_fit = named<QToolButton>(QStringLiteral("Cmd_overview_fit"), bar);
    m_fit->setCheckable(true);
    m_smaller->setText(QStringLiteral("−"));
    m_larger->setText(QStringLiteral("+"));
    auto *rows = new QVBoxLayout(bar);
    rows->setContentsMargins(0, 0, 0, 0);
    auto *row = new QHBoxLayout;
    rows->addLayout(row);
    rows->addWidget(m_counts);
    row->addWidget(m_search, 1);
    row->addWidget(m_group);
    row->addWidget(m_order);
    row->addWidget(m_options);
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
        m_view->scrollToTop();
        keepSetting(orderKey, order);
    });
    connect(m_group, &QComboBox::activated, this, [this](int at) {
        m_model.showGroup(m_group->itemData(at).toInt());
        m_view->scrollToTop();
        showGroups();
    });
    connect(m_options, &OverviewOptions::groupsWanted, this, &OverviewPage::editGroups);
    connect(m_options, &OverviewOptions::channelsChosen, m_view, &OverviewView::setChannels);
    connect(m_options, &OverviewOptions::groupChannelsChosen, this, &OverviewPage::chooseGroupChannels);
    connect(m_options->menu(), &QMenu::aboutToShow, this, &OverviewPage::prepareOptions);
    connect(m_view, &OverviewView::foldingChanged, this, [this] {
        SettingsStore().SaveSetting(settingsOwner, settings_sections::operationalMode, foldedKey,
                                    m_model.foldedNames().isEmpty() ? nothingFolded
                                                                    : m_model.foldedNames().join(u'\n'));
    });
    connect(m_smaller, &QToolButton::clicked, this, [this] { m_view->setLevel(m_view->level() + 1); });
    connect(m_larger, &QToolButton::clicked, this, [this] { m_view->setLevel(m_view->level() - 1); });
    connect(m_urgent, &OverviewView::levelChanged, this, &OverviewPage::showUrgent, Qt::QueuedConnection);
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
    connect(&m_urgentModel, &OverviewModel::updated, this, &OverviewPage::showUrgent);
    connect(&m_model, &OverviewModel::updated, this, [this] {
        showCounts();
        showGroups();
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
    m_options->restore();
    const int level = kept(levelKey, -1);
    level < 0 ? m_view->setFitting(true) : m_view->setLevel(level);
    const int order = std::clamp(kept(orderKey, 0), 0, m_order->count() - 1);
    if (const QString folded =
            store.GetSetting(settingsOwner, settings_sections::operationalMode, foldedKey, nothingFolded);
        folded != nothingFolded) {
        m_model.setFoldedNames(folded.split(u'\n'));
    }
    m_order->setCurrentIndex(order);
    m_model.setOrder(static_cast<OverviewModel::Order>(order));
}

void OverviewPage::search()
{
    m_model.setFilter(m_search->text().trimmed());
    m_view->scrollToTop();
}

/// The chosen one of those that were found, else the first.
void OverviewPage::goToFound()
{
    QString found = m_view->chosen();
    for (int row = 0; found.isEmpty() && row < m_model.rowCount(); ++row) {
        found = m_model.index(row).data(OverviewModel::KeyRole).toString(); // a heading has none
    }
    if (!found.isEmpty()) {
        Q_EMIT stationWanted(found);
    }
}

void OverviewPage::showCounts()
{
    const OverviewModel::Numbers all = m_model.countOf(OverviewModel::allGroups);
    QString counts = tr("Stations: %L1").arg(m_model.stationCount());
    const int shown = m_model.rowCount() - static_cast<int>(m_model.headings().size());
    if (shown != m_model.stationCount()) {
        counts += tr(", shown %L1").arg(shown);
    }
    const std::pair<QString, int> parts[] = {{tr(", in alarm %L1"), all.waiting},
                                             {tr(", silent %L1"), all.silent},
                                             {tr(", acknowledged %L1"), all.acknowledged},
                                             {tr(", not watched %L1"), all.offline}};
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
    m_options->applyTexts();
    m_group->setAccessibleName(tr("Group of stations"));
    m_order->setItemText(0, tr("The most urgent first"));
    m_order->setItemText(1, tr("By name"));
    m_order->setItemText(2, tr("By group"));
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

// Groups

void OverviewPage::openGroups(const QString &list)
{
    m_groupsFile = groupsFileOf(list);
    readGroups();
}

void OverviewPage::readGroups()
{
    QByteArray text;
    const Status read = readBesideList(m_groupsFile, text);
    takeGroups(text, read);
}

void OverviewPage::takeGroups(const QByteArray &text, const Status &read)
{
    m_groupsText = text;
    QStringList remarks;
    m_model.setGroups(StationGroups::parse(text, remarks));
    m_options->setGroupsUsable(read ? QString() : read.message());
    Q_EMIT groupsTrouble(troubleBesideList(m_groupsFile, read, remarks));
    Q_EMIT groupsChanged(m_model.groups());
    showGroups();
}

/// Another program may have written the file meanwhile.
void OverviewPage::editGroups()
{
    QByteArray present;
    if (const Status read = readBesideList(m_groupsFile, present); !read) { // it would be written over
        takeGroups({}, read);
        Q_EMIT statusMessage(read.message());
        return;
    }
    takeGroups(present);
    GroupsDialog dialog(m_model, m_groupsText, m_texts, this);
    while (dialog.exec() == QDialog::Accepted) {
        const Status written = keepGroups(dialog.text());
        if (written) {
            return;
        }
        dialog.tellProblem(written.message());
    }
}

Status OverviewPage::keepGroups(const QByteArray &text)
{
    QByteArray present;
    Status written = readBesideList(m_groupsFile, present); // what cannot be read is not written over
    if (written) {
        written = writeBesideList(m_groupsFile, text);
    }
    if (written) {
        takeGroups(text);
    }
    return written;
}

/// The values are chosen for the group that is shown alone or, where groups have headings, for that of the
/// chosen station or heading.
void OverviewPage::prepareOptions()
{
    int group = m_model.shownGroup();
    const QModelIndex current = m_view->currentIndex();
    if (group == OverviewModel::allGroups && m_model.order() == OverviewModel::Order::Group &&
        current.isValid()) {
        group = m_model.headingAt(current.row()).value_or(m_model.groupOf(m_view->chosen()));
    }
    const bool isOne = group >= 0 && group < m_model.groups().list().size();
    m_options->setGroup(m_model.groupName(isOne ? group : StationGroups::none),
                        isOne ? m_model.groups().list()[group].channels : QList<int>());
}

void OverviewPage::chooseGroupChannels(const QString &group, const QList<int> &channels)
{
    QByteArray present;
    Status done = readBesideList(m_groupsFile, present);
    if (done) {
        done = keepGroups(StationGroups::withChannels(present, group, channels));
    }
    if (!done) {
        Q_EMIT statusMessage(done.message());
    }
}

QString OverviewPage::scope() const
{
    const int group = m_model.shownGroup();
    return group == OverviewModel::allGroups ? QString()
           : group == StationGroups::none    ? tr("In no group")
                                          : shortenedLine(m_model.groups().list()[group].name, longestGroup);
}

/// Each with the number of its stations, of those in alarm and of those that are silent.
void OverviewPage::showGroups()
{
    const QList<StationGroup> &groups = m_model.groups().list();
    m_group->setVisible(!groups.isEmpty());
    if (groups.isEmpty()) {
        return;
    }
    QList<std::pair<QString, int>> items{{tr("All groups"), OverviewModel::allGroups}};
    for (int group = 0; group < groups.size(); ++group) {
        items.append({groups[group].name, group});
    }
    items.append({tr("In no group"), StationGroups::none});
    if (m_group->count() != items.size()) {
        m_group->clear();
        m_group->addItems(QStringList(items.size()));
    }
    for (int at = 0; at < items.size(); ++at) {
        const auto &[name, group] = items[at];
        const QString text = shortenedLine(name, longestGroup) + QLatin1String(" (") +
                             numbersText(m_model.countOf(group)) + u')';
        if (m_group->itemText(at) != text) {
            m_group->setItemText(at, text);
        }
        m_group->setItemData(at, group);
        if (group == m_model.shownGroup()) {
            m_group->setCurrentIndex(at);
        }
    }
}

// On a wall

void OverviewPage::showOnWall(const QFont &font)
{
    m_bar->hide();
    m_search->clear();
    m_orderInWindow = m_model.order();
    m_foldedInWindow = m_model.foldedNames();
    m_model.setFoldedNames({}); // nobody can unfold them there
    if (m_orderInWindow != OverviewModel::Order::Group || m_model.groups().list().isEmpty()) {
        m_model.setOrder(OverviewModel::Order::Newest);
    }
    m_urgentModel.setGroups(m_model.groups());
    m_urgentModel.showGroup(m_model.shownGroup());
    m_urgentModel.setActive(true);
    m_urgent->setFont(font);
    m_urgent->setOnWall(true);
    m_view->setFont(font);
    m_view->setOnWall(true);
    showUrgent();
}

void OverviewPage::showInWindow()
{
    m_urgent->setOnWall(false);
    m_urgentModel.setActive(false);
    m_view->setFont(QFont());
    m_view->setOnWall(false);
    showUrgent();
    m_model.setFoldedNames(m_foldedInWindow);
    m_model.setOrder(m_orderInWindow);
    m_bar->show();
}

/// Where names cannot be read, those of the most urgent stations stand above, the newest alarms first, in
/// three rows at most.
void OverviewPage::showUrgent()
{
    constexpr int mostRows = 3;
    const bool isOnWall = m_view->isOnWall();
    const bool isLaidOut =
        window()->height() >= screen()->size().height(); // and no longer that of the window
    if (isOnWall && isLaidOut && m_model.order() == OverviewModel::Order::Group && !m_view->showsAll()) {
        m_model.setOrder(OverviewModel::Order::Newest); // headings would leave no room for all
    }
    int urgent = 0;
    while (isOnWall && urgent < m_urgentModel.rowCount() &&
           m_urgentModel.glance(urgent).urgency <= Urgency::Standing) {
        ++urgent;
    }
    const bool isNeeded = isOnWall && m_view->showsCells() && urgent > 0;
    if (isNeeded) {
        m_urgent->showFirst(urgent, mostRows);
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
        if (!m_search->text().trimmed().isEmpty() || m_view->chosen().isEmpty()) {
            m_view->chooseFirst();
        }
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
