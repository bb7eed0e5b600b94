#include "app/preview_window.h"

#include "app/printing.h"
#include "look/program_name.h"
#include "look/window_place.h"

#include <QAbstractScrollArea>
#include <QAction>
#include <QActionGroup>
#include <QFileDialog>
#include <QFileInfo>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QStatusBar>
#include <QToolBar>

#include <algorithm>

namespace ktr {

namespace {

constexpr QSize startSize(900, 760);
constexpr int noticeMs = 8000;

/// What an action does, on its button, in its tool tip and for a screen reader. Some buttons show a sign.
void caption(QAction *action, const QString &text, const QString &onButton = QString())
{
    action->setText(text);
    action->setIconText(onButton.isEmpty() ? text : onButton);
    const QString keys = action->shortcut().toString(QKeySequence::NativeText);
    action->setToolTip(keys.isEmpty() ? text : QString(text + u" (" + keys + u')'));
}

} // namespace

frm_preview::frm_preview(const TextTable &texts, QWidget *parent)
    : QMainWindow(parent),
      m_texts(texts),
      m_printout(std::make_unique<Printout>(m_configuration, texts, m_options)),
      m_printer(std::make_unique<QPrinter>(QPrinter::HighResolution)),
      m_page(new QSpinBox)
{
    setObjectName(QLatin1String("frm_preview"));
    preparePrinter(*m_printer);
    m_preview = new QPrintPreviewWidget(m_printer.get(), this);
    m_preview->setObjectName(QLatin1String("preview"));
    m_preview->fitInView();
    if (auto *const view = m_preview->findChild<QAbstractScrollArea *>()) {
        m_preview->setFocusProxy(view); // the keys scroll
    }
    setCentralWidget(m_preview);
    statusBar()->setObjectName(QLatin1String("statusBar"));

    m_entriesInUse = action("act_entries_in_use", {}, [this] { showEntries(PrintedEntries::InUse); });
    m_allEntries = action("act_all_entries", {}, [this] { showEntries(PrintedEntries::All); });
    m_zoomOut = action("act_zoom_out", {QKeySequence::ZoomOut}, [this] { m_preview->zoomOut(); });
    m_zoomIn = action("act_zoom_in", {QKeySequence::ZoomIn, QKeySequence(QLatin1String("Ctrl+="))},
                      [this] { m_preview->zoomIn(); });
    m_fitPage =
        action("act_fit_page", {QKeySequence(QLatin1String("Ctrl+0"))}, [this] { m_preview->fitInView(); });
    m_fitWidth =
        action("act_fit_width", {QKeySequence(QLatin1String("Ctrl+1"))}, [this] { m_preview->fitToWidth(); });
    m_previous = action("act_previous_page", {QKeySequence(QLatin1String("Ctrl+PgUp"))},
                        [this] { turnTo(m_preview->currentPage() - 1); });
    m_next = action("act_next_page", {QKeySequence(QLatin1String("Ctrl+PgDown"))},
                    [this] { turnTo(m_preview->currentPage() + 1); });
    m_print = action("act_print", {QKeySequence::Print}, [this] { printWithDialog(this, *m_printout); });
    m_savePdf = action("act_save_pdf", {QKeySequence(QLatin1String("Ctrl+S"))}, [this] { savePdf(); });
    m_close =
        action("act_close", {QKeySequence(QLatin1String("Esc")), QKeySequence::Close}, [this] { close(); });
    m_page->setObjectName(QLatin1String("spn_page"));
    m_page->setKeyboardTracking(false);
    fillToolBar();

    connect(m_preview, &QPrintPreviewWidget::paintRequested, this,
            [this](QPrinter *printer) { showFailure(this, printTo(*printer, *m_printout)); });
    connect(m_preview, &QPrintPreviewWidget::previewChanged, this, &frm_preview::showState);
    connect(m_page, &QSpinBox::valueChanged, this, &frm_preview::turnTo);
    resize(startSize);
    keepWindowPlace(*this, objectName());
    applyTexts();
}

frm_preview::~frm_preview() = default;

QAction *frm_preview::action(const char *name, const QList<QKeySequence> &shortcuts,
                             const std::function<void()> &triggered)
{
    auto *const made = new QAction(this);
    made->setObjectName(QLatin1String(name));
    made->setShortcuts(shortcuts);
    // The preview has signals for some of its changes only.
    connect(made, &QAction::triggered, this, [this, triggered] {
        triggered();
        showState();
    });
    return made;
}

void frm_preview::fillToolBar()
{
    auto *const entries = new QActionGroup(this);
    auto *const zoom = new QActionGroup(this);
    zoom->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    for (QAction *each : {m_entriesInUse, m_allEntries}) {
        each->setCheckable(true);
        entries->addAction(each);
    }
    for (QAction *each : {m_fitPage, m_fitWidth}) {
        each->setCheckable(true);
        zoom->addAction(each);
    }
    QToolBar *const bar = addToolBar(QString());
    bar->setObjectName(QLatin1String("toolBar"));
    bar->setMovable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    bar->addActions({m_entriesInUse, m_allEntries});
    bar->addSeparator();
    bar->addActions({m_zoomOut, m_zoomIn, m_fitPage, m_fitWidth});
    bar->addSeparator();
    bar->addAction(m_previous);
    bar->addWidget(m_page);
    bar->addAction(m_next);
    bar->addSeparator();
    bar->addActions({m_print, m_savePdf});
    bar->addSeparator();
    bar->addAction(m_close);
    for (QAction *each : bar->actions()) {
        if (QWidget *const button = bar->widgetForAction(each); button != nullptr && button != m_page) {
            button->setFocusPolicy(Qt::TabFocus); // tool buttons are skipped by the keyboard otherwise
        }
    }
}

void frm_preview::showConfiguration(const Configuration &configuration, const PrintoutOptions &options)
{
    m_configuration = configuration;
    m_options = options;
    layOutAgain();
    m_preview->setFocus();
    show();
    raise();
    activateWindow();
}

void frm_preview::applyTexts()
{
    setWindowTitle(m_texts.text(Text::PrintPreview) + u" – " + programName);
    caption(m_entriesInUse, tr("Entries in use"));
    m_entriesInUse->setToolTip(tr("Only the limit values and switch points that are in use"));
    caption(m_allEntries, tr("All entries"));
    m_allEntries->setToolTip(tr("All 20 limit values and 20 switch points"));
    caption(m_zoomOut, tr("Zoom out"), QStringLiteral("−"));
    caption(m_zoomIn, tr("Zoom in"), QStringLiteral("+"));
    caption(m_fitPage, tr("Fit page"));
    caption(m_fitWidth, tr("Fit width"));
    caption(m_previous, tr("Previous page"), QStringLiteral("‹"));
    caption(m_next, tr("Next page"), QStringLiteral("›"));
    caption(m_print, m_texts.text(Text::Print), m_texts.text(Text::Print) + u'…');
    caption(m_savePdf, tr("Save as PDF"), tr("Save as PDF…"));
    caption(m_close, tr("Close"));
    m_page->setAccessibleName(tr("Page"));
    layOutAgain();
}

void frm_preview::layOutAgain()
{
    const int page = m_preview->currentPage();
    m_printout = std::make_unique<Printout>(m_configuration, m_texts, m_options);
    m_preview->updatePreview();
    turnTo(page);
}

void frm_preview::showEntries(PrintedEntries entries)
{
    m_options.entries = entries;
    layOutAgain();
}

void frm_preview::turnTo(int page)
{
    m_preview->setCurrentPage(std::clamp(page, 1, m_printout->pageCount()));
    showState();
}

void frm_preview::showState()
{
    const int count = m_printout->pageCount();
    const int page = std::clamp(m_preview->currentPage(), 1, count);
    const QSignalBlocker quiet(m_page);
    m_page->setRange(1, count);
    m_page->setSuffix(u" / " + QString::number(count));
    m_page->setToolTip(tr("Page, 1 to %1").arg(count));
    m_page->setValue(page);
    m_previous->setEnabled(page > 1);
    m_next->setEnabled(page < count);
    m_fitPage->setChecked(m_preview->zoomMode() == QPrintPreviewWidget::FitInView);
    m_fitWidth->setChecked(m_preview->zoomMode() == QPrintPreviewWidget::FitToWidth);
    m_entriesInUse->setChecked(m_options.entries == PrintedEntries::InUse);
    m_allEntries->setChecked(m_options.entries == PrintedEntries::All);
}

void frm_preview::savePdf()
{
    auto *const dialog = new QFileDialog(this, tr("Save as PDF"));
    dialog->setObjectName(QLatin1String("SavePdfDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilter(tr("PDF documents") + u" (*.pdf)");
    dialog->setDefaultSuffix(QLatin1String("pdf"));
    if (!m_options.fileName.isEmpty()) {
        const QFileInfo file(m_options.fileName);
        dialog->setDirectory(file.absolutePath());
        dialog->selectFile(file.completeBaseName() + u".pdf");
    }
    connect(dialog, &QFileDialog::fileSelected, this, &frm_preview::writePdf);
    dialog->open();
}

void frm_preview::writePdf(const QString &path)
{
    const Status written = m_printout->writePdf(path);
    showFailure(this, written);
    if (written) {
        statusBar()->showMessage(tr("Saved as %1").arg(path), noticeMs);
    }
}

} // namespace ktr
