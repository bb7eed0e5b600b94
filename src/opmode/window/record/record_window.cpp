#include "opmode/window/record/record_window.h"

#include "look/icons.h"
#include "opmode/operational_mode.h"
#include "platform/settings_store.h"

#include <QKeyEvent>
#include <QScreen>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace ktr {

namespace {

const QString recordSection = QStringLiteral("Record");
const QString placeKey = QStringLiteral("geometry");
constexpr QSize usualSize(1100, 680);
constexpr QSize leastSize(760, 420);
constexpr int followMs = 1000;

} // namespace

RecordWindow::RecordWindow(OperationalMode &mode, const FindPage::Services &services, QWidget *parent)
    : QWidget(parent, Qt::Window), m_queries(mode.recordPath()), m_second(new QTimer(this))
{
    setObjectName(QStringLiteral("Form_record"));
    setWindowIcon(icon(IconName::Search));
    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("TabStrip_record"));
    m_find = new FindPage(m_queries, mode.recordPath(), services, m_tabs);
    m_tabs->addTab(m_find, QString());
    auto *all = new QVBoxLayout(this);
    all->addWidget(m_tabs);
    connect(m_find, &FindPage::statusMessage, this, &RecordWindow::statusMessage);
    m_second->setInterval(followMs);
    connect(m_second, &QTimer::timeout, m_find, &FindPage::follow);
    setMinimumSize(leastSize);
    constexpr QSize frame(16, 56);
    resize(usualSize.boundedTo(screen()->availableSize() - frame));
    restoreGeometry(QByteArray::fromBase64(
        SettingsStore().GetSetting(settingsOwner, recordSection, placeKey).toLatin1()));
    applyTexts();
}

RecordWindow::~RecordWindow()
{
    qDeleteAll(findChildren<QWidget *>(Qt::FindDirectChildrenOnly)); // they use the queries to their end
}

void RecordWindow::appear()
{
    showNormal();
    raise();
    activateWindow();
    m_tabs->setCurrentWidget(m_find);
    m_find->beginTyping();
}

void RecordWindow::applyTexts()
{
    setWindowTitle(tr("Record"));
    m_tabs->setTabText(0, tr("Find"));
    m_find->applyTexts();
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
    SettingsStore().SaveSettings(settingsOwner, recordSection,
                                 {{placeKey, QString::fromLatin1(saveGeometry().toBase64())}});
}

} // namespace ktr
