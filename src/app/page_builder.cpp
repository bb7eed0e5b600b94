#include "app/page_builder.h"

#include "app/command_line.h"
#include "app/file_dialogs.h"
#include "app/link_presenter.h"
#include "editor/calibration_page.h"
#include "editor/connection_page.h"
#include "editor/ethernet_page.h"
#include "editor/gsm_page.h"
#include "editor/info_page.h"
#include "editor/input_page.h"
#include "editor/limit_value_page.h"
#include "editor/switch_point_page.h"
#include "editor/test_page.h"
#include "platform/files.h"

#include <QDesktopServices>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

namespace ktr {

Page *PageBuilder::build(PageIndex index)
{
    const auto attached = [this](auto *page) {
        m_link.attach(*page);
        return page;
    };
    Page *page = nullptr;
    switch (index) {
    case PageIndex::Gsm:
        page = new GsmPage(m_context);
        break;
    case PageIndex::Ip:
        page = new InputPage(m_context);
        break;
    case PageIndex::LimitValues:
        page = new LimitValuePage(m_context);
        break;
    case PageIndex::SwitchPoints:
        page = new SwitchPointPage(m_context);
        break;
    case PageIndex::Test: {
        auto *test = attached(new TestPage(m_context));
        if (m_options.debug) {
            test->showDebugOption();
        }
        connect(test, &TestPage::saveWanted, this, &PageBuilder::saveText);
        page = test;
        break;
    }
    case PageIndex::FileInformation: {
        auto *info = attached(new InfoPage(m_context));
        connectInfoPage(*info);
        page = info;
        break;
    }
    case PageIndex::Ethernet:
        page = new EthernetPage(m_context);
        break;
    case PageIndex::Connection:
        page = attached(new ConnectionPage(m_context));
        break;
    case PageIndex::Calibration:
        page = attached(new CalibrationPage(m_context));
        break;
    }
    for (QWidget *field : page->findChildren<QWidget *>()) {
        if (field->acceptDrops()) {
            field->installEventFilter(this);
        }
    }
    return page;
}

void PageBuilder::connectInfoPage(InfoPage &page)
{
    connect(&page, &InfoPage::chooseLogFile, this, [this, &page] {
        const QString &present = m_context.document.configuration().info.logFile;
        const QString path = m_files.askSave(present, QStringLiteral("*.txt|*.txt"), present);
        if (!path.isEmpty()) {
            page.setLogFile(path);
        }
    });
    connect(&page, &InfoPage::chooseHistoryFile, this, [this, &page] {
        const QString &present = m_context.document.configuration().info.historyExportFile;
        const QString path = m_files.askSave(present, InfoPage::historyFilter(), present);
        if (!path.isEmpty()) {
            page.setHistoryFile(path);
        }
    });
    connect(&page, &InfoPage::openLogFile, this,
            [this] { openFile(m_context.document.configuration().info.logFile); });
    connect(&page, &InfoPage::openHistoryFile, this,
            [this] { openFile(m_context.document.configuration().info.historyExportFile); });
}

void PageBuilder::saveText(const QString &text)
{
    const QString path = m_files.askSave(QStringLiteral("KTR_log"), QStringLiteral("*.txt|*.txt"));
    if (!path.isEmpty()) {
        const Status saved = replaceFile(path, text.toUtf8());
        m_context.showStatus(saved ? tr("Saved: %1").arg(path) : saved.message());
    }
}

/// Opens a file that a configuration names, in the system's program for it. Only texts and tables: a
/// configuration may come from anybody, and there are too many endings that make the system run a file.
void PageBuilder::openFile(const QString &path)
{
    static const QStringList opened = {QStringLiteral("txt"), QStringLiteral("log"), QStringLiteral("csv"),
                                       QStringLiteral("tsv")};
    const QFileInfo file(path);
    if (!file.isFile()) {
        m_context.showStatus(tr("There is no file %1").arg(path));
    } else if (!opened.contains(file.suffix(), Qt::CaseInsensitive) || file.isExecutable() ||
               !QDesktopServices::openUrl(QUrl::fromLocalFile(path))) {
        m_context.showStatus(tr("%1 cannot be opened").arg(path));
    }
}

bool PageBuilder::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::DragEnter && static_cast<QDragEnterEvent *>(event)->mimeData()->hasUrls()) {
        event->ignore(); // it goes on to the window
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace ktr
