#include "app/trial/trial_conduct.h"

#include "app/file_commands.h"
#include "app/link_presenter.h"
#include "config/configuration_file.h"
#include "link/module_link.h"
#include "look/program_name.h"
#include "platform/files.h"

#include <QMessageBox>
#include <QPushButton>

namespace ktr {

TrialConduct::TrialConduct(const Parts &parts) : m_parts(parts), m_files(parts.run.folder(), programFolder())
{
    m_parts.files.setTrial(&m_files);
    m_parts.presenter.confirmFromTheBeginning();
    connect(&m_parts.files, &FileCommands::replaced, this, &TrialConduct::leadOutputIntoFolder);
    connect(&m_parts.history, &EditHistory::moved, this, &TrialConduct::leadOutputIntoFolder);
    connect(&m_parts.link.transmitter(), &Transmitter::started, this,
            [this] { m_parts.run.deliverWith(m_parts.document.configuration()); });
}

void TrialConduct::leadOutputIntoFolder()
{
    m_parts.document.adjust([this](Configuration &configuration) { m_files.take(configuration); });
}

Status TrialConduct::prepare(const QString &folder, const Configuration &configuration,
                             const Environment &environment)
{
    const QString file = TrialRun::configurationIn(folder);
    const Status written = writeConfigurationFile(file, configuration, environment);
    return written ? replaceFile(namesFileOf(file), writeChannelNames(configuration.names)) : written;
}

bool TrialConduct::openPrepared()
{
    const QString file = TrialRun::configurationIn(m_parts.run.folder());
    Configuration configuration;
    const ReadReport report = readConfigurationFile(file, configuration, m_parts.document.environment());
    if (!report.opened || !report.document) {
        return false;
    }
    QStringList remarks;
    configuration.names = readNamesBeside(file, remarks);
    m_files.take(configuration);
    m_parts.document.restore(configuration, false);
    return true;
}

void TrialConduct::connectModule()
{
    if (!m_parts.run.moduleAddress().isEmpty()) {
        m_parts.run.deliverWith(m_parts.document.configuration());
        m_parts.link.connectEthernet(m_parts.run.moduleAddress(), false);
    }
}

bool TrialConduct::mayEnd()
{
    if (!m_parts.document.isModified() || !m_parts.document.fileName().isEmpty()) {
        return true;
    }
    QMessageBox box(QMessageBox::Question, QString(programName),
                    tr("What you have edited goes with the trial, unless you save it to a file of your own."),
                    QMessageBox::NoButton, &m_parts.window);
    box.setObjectName(QStringLiteral("box_endOfTrial"));
    auto *save = box.addButton(tr("Save as..."), QMessageBox::AcceptRole);
    const auto *end = box.addButton(tr("End the trial"), QMessageBox::DestructiveRole);
    auto *stay = box.addButton(tr("Stay"), QMessageBox::RejectRole);
    box.setDefaultButton(save);
    box.setEscapeButton(stay);
    box.exec();
    if (box.clickedButton() == save) {
        m_parts.files.saveAs();
        return !m_parts.document.isModified();
    }
    if (box.clickedButton() == end) {
        m_parts.files.declineEdits();
        m_parts.document.setModified(false);
        return true;
    }
    return false;
}

} // namespace ktr
