#include "app/link_dialogs.h"

#include "app/file_dialogs.h"
#include "app/link_presenter.h"
#include "editor/info_page.h"
#include "link/service_commands.h"
#include "look/message_dialog.h"
#include "look/program_name.h"

#include <QMessageBox>
#include <QPushButton>

namespace ktr {

LinkDialogs::LinkDialogs(QWidget &window, EditorContext &context, LinkPresenter &presenter,
                         Transmitter &transmitter, FileDialogs &files)
    : m_window(window), m_context(context), m_presenter(presenter), m_transmitter(transmitter), m_files(files)
{
    connect(&m_presenter, &LinkPresenter::firmwareReady, this, [this](const QString &what) {
        if (Dialog::questionOfLoss(&m_window, m_context.texts, what)) {
            m_presenter.place(serviceCommands::firmware);
        }
    });
    connect(&m_presenter, &LinkPresenter::exportFileWanted, this, &LinkDialogs::askForExportFile);
    connect(&m_presenter, &LinkPresenter::overwritingFound, this, &LinkDialogs::offerToStop);
    connect(&m_presenter, &LinkPresenter::overwritingPassed, this, [this] {
        if (m_overwriting != nullptr) {
            m_overwriting->close();
        }
    });
    connect(&m_presenter, &LinkPresenter::messageWanted, this,
            [this](const QString &text, const QString &topic) {
                Dialog::Remedy remedy;
                if (topic == LinkPresenter::portTopic) {
                    remedy = {m_context.texts.text(Text::Connection) + QStringLiteral("..."),
                              [this] { Q_EMIT connectionWanted(); }};
                }
                Dialog::message(&m_window, m_context.texts, text, topic, remedy);
            });
    connect(&m_presenter, &LinkPresenter::messagePassed, this, &Dialog::withdraw);
    connect(&m_presenter, &LinkPresenter::lineWanted, this,
            [this](const QString &heading, const QString &line) {
                Dialog::line(&m_window, m_context.texts, heading, line);
            });
}

/// Then the fast export begins; without an answer nothing is sent.
void LinkDialogs::askForExportFile()
{
    const QString path =
        m_files.askSave(m_context.document.configuration().info.historyExportFile, InfoPage::historyFilter());
    if (path.isEmpty()) {
        return;
    }
    if (const Status usable = HistoryExport::check(path); !usable) {
        m_context.showStatus(usable.message());
        m_context.showMessage(usable.message());
        return;
    }
    m_context.history.edit({QStringLiteral("txt_historyExportFile"), 0},
                           [&path](Configuration &changed) { changed.info.historyExportFile = path; });
    m_presenter.place(serviceCommands::archive);
}

/// The transmission goes on meanwhile, unless the user stops it.
void LinkDialogs::offerToStop(const QString &text)
{
    auto *box =
        new QMessageBox(QMessageBox::Warning, QString(programName), text, QMessageBox::NoButton, &m_window);
    m_overwriting = box;
    box->setObjectName(QStringLiteral("msg_differentVersions"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setModal(false);
    auto *stop = box->addButton(tr("Stop the transmission"), QMessageBox::DestructiveRole);
    stop->setObjectName(QStringLiteral("cmd_stopTransmission"));
    auto *goOn = box->addButton(tr("Go on"), QMessageBox::RejectRole);
    box->setDefaultButton(goOn);
    box->setEscapeButton(goOn);
    connect(stop, &QPushButton::clicked, &m_transmitter, &Transmitter::cancel);
    connect(&m_transmitter, &Transmitter::ended, stop, [stop, goOn] { // it may not have been read yet
        stop->hide();
        goOn->setText(tr("Close"));
    });
    box->show();
}

} // namespace ktr
