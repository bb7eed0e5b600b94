#include "opmode/window/record/record_window.h"

#include "look/icons.h"
#include "look/window_place.h"
#include "opmode/operational_mode.h"
#include "opmode/window/timemap/time_map_page.h"
#include "platform/settings_store.h"

#include <QKeyEvent>
#include <QPointer>
#include <QScreen>
#include <QShortcut>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace ktr {

namespace {

const QString placeKey = QStringLiteral("geometry");
constexpr QSize usualSize(1100, 680);
constexpr QSize leastSize(760, 420);
constexpr int followMs = 1000;

} // namespace

RecordWindow::RecordWindow(OperationalMode &mode, const FindPage::Services &services)
    : m_queries(mode.recordPath()), m_second(new QTimer(this))
{
    m_queries.setFoundDamage([&mode] { mode.mendRecord(); });
    setObjectName(QStringLiteral("Form_record"));
    setWindowIcon(icon(IconName::Search));
    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("TabStrip_record"));
    FindPage::Services own = services;
    // The file dialog brings the window of the operational mode to the front.
    own.askSave = [self = QPointer<RecordWindow>(this), ask = services.askSave](const QString &proposal,
                                                                                const QString &filter) {
        QString path = ask(proposal, filter);
        if (self) {
            self->raise();
            self->activateWindow();
        }
        return path;
    };
    m_find = new FindPage(m_queries, mode.recordPath(), own, m_tabs);
    m_tabs->addTab(m_find, QString());
    for (std::size_t kind = 0; kind < m_reports.size(); ++kind) {
        m_reports[kind] = new ReportPage(static_cast<ReportKind>(kind), mode, m_queries, own, m_tabs);
        m_tabs->addTab(m_reports[kind], QString());
        connect(m_reports[kind], &ReportPage::statusMessage, this, &RecordWindow::statusMessage);
    }
    m_map = new TimeMapPage(mode, m_queries, {own.groups, own.now}, m_tabs);
    m_tabs->addTab(m_map, QString());
    connect(m_map, &TimeMapPage::placeWanted, this, [this](const TimeMapPage::Place &place) {
        m_tabs->setCurrentWidget(m_find);
        m_find->showTimes(place.topic == TimeMapTopic::Alarms, place.from, place.to,
                          place.station.isEmpty() ? place.part : u'"' + place.station + u'"');
    });
    auto *all = new QVBoxLayout(this);
    all->addWidget(m_tabs);
    connect(m_find, &FindPage::statusMessage, this, &RecordWindow::statusMessage);
    m_second->setInterval(followMs);
    connect(m_second, &QTimer::timeout, this, [this] {
        if (m_find->isVisible()) {
            m_find->follow();
        } else if (m_map->isVisible()) {
            m_map->follow();
        }
    });
    // A list with the focus would search for the tab among its items.
    for (const auto &[key, step] :
         {std::pair(Qt::CTRL | Qt::Key_Tab, 1), std::pair(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab, -1)}) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, [this, by = step] {
            m_tabs->setCurrentIndex((m_tabs->currentIndex() + m_tabs->count() + by) % m_tabs->count());
        });
    }
    setMinimumSize(leastSize);
    constexpr QSize frame(16, 56);
    resize(usualSize.boundedTo(screen()->availableSize() - frame));
    restorePlace(
        *this,
        QByteArray::fromBase64(
            SettingsStore().GetSetting(settingsOwner, settings_sections::record, placeKey).toLatin1()));
    applyTexts();
}

RecordWindow::~RecordWindow()
{
    qDeleteAll(findChildren<QWidget *>(Qt::FindDirectChildrenOnly)); // they use the queries to their end
}

void RecordWindow::comeToFront()
{
    showNormal();
    raise();
    activateWindow();
}

void RecordWindow::appearWithMap()
{
    comeToFront();
    m_tabs->setCurrentWidget(m_map);
    m_map->beginChoosing();
}

void RecordWindow::appear()
{
    comeToFront();
    m_tabs->setCurrentWidget(m_find);
    m_find->beginTyping();
}

void RecordWindow::applyTexts()
{
    setWindowTitle(tr("Record"));
    m_tabs->setTabText(0, tr("Find"));
    m_tabs->setTabText(1, tr("Shift report"));
    m_tabs->setTabText(2, tr("Figures"));
    m_tabs->setTabText(3, tr("Easily overlooked"));
    m_tabs->setTabText(4, tr("Map of time"));
    m_find->applyTexts();
    m_map->applyTexts();
    for (ReportPage *report : m_reports) {
        report->applyTexts();
    }
}

void RecordWindow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        applyTexts();
    }
}

void RecordWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Find)) {
        appear();
    } else if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close)) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void RecordWindow::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_find->follow();
    m_second->start();
}

void RecordWindow::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_second->stop();
    SettingsStore().SaveSettings(settingsOwner, settings_sections::record,
                                 {{placeKey, QString::fromLatin1(saveGeometry().toBase64())}});
}

} // namespace ktr
