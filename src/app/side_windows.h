#pragma once

#include "config/document.h"
#include "lang/text_table.h"
#include "printout/printout.h"

#include <QObject>
#include <QPointer>

class QWidget;

namespace ktr {

class frmAbout;
class frmSettings;
class frm_preview;

/// The small windows beside the main window, one of each kind: print preview, settings, "about". Each is made
/// when it is opened, and goes when it is closed.
class SideWindows : public QObject
{
    Q_OBJECT

public:
    /// All of them must outlive this.
    SideWindows(QWidget &window, const Document &document, const TextTable &texts);

    void print();
    void showPreview();
    void showSettings();
    void showAbout();

    void applyTexts();
    /// Closes those that are open.
    void close();

Q_SIGNALS:
    void languageChosen(const QString &language);

private:
    PrintoutOptions printoutOptions() const;

    QWidget &m_window;
    const Document &m_document;
    const TextTable &m_texts;
    QPointer<frm_preview> m_preview;
    QPointer<frmAbout> m_about;
    QPointer<frmSettings> m_settings;
};

} // namespace ktr
