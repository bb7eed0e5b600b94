#pragma once

#include "app/transmissions_window.h"
#include "config/edit_history.h"
#include "lang/text_table.h"
#include "printout/printout.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

class QWidget;

namespace ktr {

class CompareWindow;
class FileDialogs;
class ForetellWindow;
class frmAbout;
class frmSettings;
class frm_preview;

/// The small windows beside the main window, one of each kind: print preview, settings, "about". Each is made
/// when it is opened, and goes when it is closed.
class SideWindows : public QObject
{
    Q_OBJECT

public:
    using GoTo = std::function<void(const EditPlace &)>;

    /// All of them must outlive this. `goTo` shows a field in the main window.
    SideWindows(QWidget &window, Document &document, EditHistory &history, const TextTable &texts, GoTo goTo);
    ~SideWindows() override;

    void print();
    void showPreview();
    void showSettings();
    void showAbout();
    void showCompare(FileDialogs &dialogs);
    /// The same beside any other configuration, such as what a module holds.
    void showCompareWith(FileDialogs &dialogs, const Configuration &other, const QString &title);

    /// Plays the configuration.
    void showForetell(FileDialogs &dialogs);

    void closeCompare();
    /// One that is open comes to the front. Whoever calls it connects what it asks for, where it `isNew`.
    TransmissionsWindow &showTransmissions(const TransmissionsWindow::Services &services, bool &isNew);

    /// The language that the command line chose for this run; empty for none.
    void setLanguageOfRun(const QString &language) { m_languageOfRun = language; }
    void applyTexts();
    /// Closes those that are open.
    void close();

Q_SIGNALS:
    void languageChosen(const QString &language);

private:
    PrintoutOptions printoutOptions() const;
    CompareWindow &compareWindow(FileDialogs &dialogs);

    QWidget &m_window;
    Document &m_document;
    EditHistory &m_history;
    const TextTable &m_texts;
    GoTo m_goTo;
    QString m_languageOfRun;
    /// Stays when it is closed, with what it compares. It may stand behind the main window, to whose fields
    /// it goes.
    std::unique_ptr<CompareWindow> m_compare;
    QPointer<frm_preview> m_preview;
    QPointer<frmAbout> m_about;
    QPointer<frmSettings> m_settings;
    QPointer<TransmissionsWindow> m_transmissions;
    QPointer<ForetellWindow> m_foretell;
};

} // namespace ktr
