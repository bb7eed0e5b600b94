#pragma once

#include "config/configuration.h"
#include "printout/printout.h"

#include <QMainWindow>

#include <memory>

class QAction;
class QPrintPreviewWidget;
class QPrinter;
class QSpinBox;

namespace ktr {

/// The configuration as it will be printed. It shows the state of the moment in which it was opened; whoever
/// opens it shows the configuration anew when that is wanted.
class frm_preview : public QMainWindow
{
    Q_OBJECT

public:
    /// `texts` must outlive the window.
    explicit frm_preview(const TextTable &texts, QWidget *parent = nullptr);
    ~frm_preview() override;

    /// Brings the window up with this configuration.
    void showConfiguration(const Configuration &configuration, const PrintoutOptions &options);

    /// Takes the captions from the table again, and the printout's texts with them.
    void applyTexts();

private:
    QAction *action(const char *name, const QList<QKeySequence> &shortcuts,
                    const std::function<void()> &triggered);
    void fillToolBar();
    void layOutAgain();
    void showEntries(PrintedEntries entries);
    void showState();
    void turnTo(int page);
    void savePdf();
    void writePdf(const QString &path);

    const TextTable &m_texts;
    Configuration m_configuration;
    PrintoutOptions m_options;
    std::unique_ptr<Printout> m_printout;
    std::unique_ptr<QPrinter> m_printer; ///< gives the preview its sheet; nothing is printed on it
    QPrintPreviewWidget *m_preview;
    QAction *m_entriesInUse;
    QAction *m_allEntries;
    QAction *m_zoomOut;
    QAction *m_zoomIn;
    QAction *m_fitPage;
    QAction *m_fitWidth;
    QAction *m_previous;
    QAction *m_next;
    QAction *m_print;
    QAction *m_savePdf;
    QAction *m_close;
    QSpinBox *m_page;
};

} // namespace ktr
