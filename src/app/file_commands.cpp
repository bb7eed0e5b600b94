#include "app/file_commands.h"

#include "app/trial/trial_files.h"
#include "look/program_name.h"
#include "platform/files.h"
#include "platform/settings_store.h"
#include "platform/text_rules.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMessageBox>
#include <QPushButton>

#include <chrono>

namespace ktr {

namespace {

const QString fileNameKey = QStringLiteral("filename");
const QString configurationFilter = QStringLiteral("*.xml|*.xml");

/// Makes a question one that must be answered: Escape and the close button do nothing.
class Answered : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *, QEvent *event) override
    {
        const bool escape =
            event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape;
        if (escape || (event->type() == QEvent::Close && event->spontaneous())) {
            event->ignore();
            return true;
        }
        return false;
    }
};

bool ask(QWidget *parent, const QString &caption, const QString &question)
{
    QMessageBox box(QMessageBox::Question, caption, question, QMessageBox::Yes | QMessageBox::No, parent);
    box.setDefaultButton(QMessageBox::Yes);
    Answered answered;
    box.installEventFilter(&answered);
    return box.exec() == QMessageBox::Yes;
}

/// The name as an absolute path: the next start may be in another folder.
QString fromHere(const QString &name)
{
    return name.isEmpty() || QDir::isAbsolutePath(name)
               ? name
               : QDir::toNativeSeparators(QDir::cleanPath(QDir::current().absoluteFilePath(name)));
}

} // namespace

FileCommands::FileCommands(QWidget &window, Document &document, EditHistory &history, const TextTable &texts)
    : m_window(window),
      m_document(document),
      m_history(history),
      m_texts(texts),
      m_dialogs(&window, document.environment().programFolder),
      m_kept(document.environment()),
      m_disk(window, document, [this] { return m_dialogs.isBusy(); })
{
    constexpr std::chrono::seconds keepDelay(3); // so much of what is typed may be lost with the power
    m_keepTimer.setObjectName(QStringLiteral("tmr_keep"));
    m_keepTimer.setParent(&m_window);
    m_keepTimer.setSingleShot(true);
    m_keepTimer.setInterval(keepDelay);
    connect(&m_keepTimer, &QTimer::timeout, this, &FileCommands::keepLater);
    connect(&m_document, &Document::changed, this, [this] {
        if (!m_keepTimer.isActive()) {
            m_keepTimer.start();
        }
    });
    connect(&m_document, &Document::saved, this, [this] {
        m_kept.drop();
        noteUnread({});
    });
    connect(&m_kept, &KeptEdits::tried, this, &FileCommands::noteKeeping);
    connect(this, &FileCommands::replaced, this, [this] { noteUnread({}); });
    connect(&m_disk, &DiskWatch::loadWanted, this, [this] { load(m_document.fileName()); });
    connect(&m_disk, &DiskWatch::comparisonWanted, this, &FileCommands::comparisonWanted);
    connect(&m_document, &Document::fileNameChanged, this,
            [this](const QString &fileName) { m_dialogs.setCurrentFile(fileName); });
}

void FileCommands::setTrial(const TrialFiles *trial)
{
    m_trial = trial;
    m_dialogs.setAvoided([trial](const QString &folder) { return trial->isInside(folder); });
}

QStringList FileCommands::folders() const
{
    QStringList folders;
    for (const QString &name : m_recent.names()) {
        folders += QFileInfo(name).path();
    }
    folders.removeDuplicates();
    return folders;
}

void FileCommands::makeNew()
{
    m_history.makeNew();
    m_kept.leave();
    Q_EMIT replaced();
    reportPresentFile();
}

void FileCommands::makeAnother()
{
    m_history.makeAnother();
    m_kept.leave();
    Q_EMIT titleChanged();
    Q_EMIT replaced();
    Q_EMIT statusMessage(
        tr("A new station like the one before; Ctrl+Z goes back to that. Its identifier, PIN and address are "
           "to be filled in, the MAC address is a new one"));
}

void FileCommands::reportPresentFile()
{
    const QString &fileName = m_document.fileName();
    const bool isNew = m_document.source().isEmpty();
    Q_EMIT statusMessage(fileName.isEmpty() ? isNew ? tr("New configuration") : tr("There is no present file")
                         : isNew ? tr("New configuration. Saving it replaces %1").arg(fileName)
                                            : tr("The present file is %1").arg(fileName));
}

/// Without a file name, the dialog starts at `presentFile`, or where the configuration comes from: that is
/// known yet when a dialog was cancelled before.
void FileCommands::saveBeside(const QString &presentFile)
{
    m_failure.clear();
    if (m_dialogs.isBusy()) {
        return;
    }
    if (m_document.fileName().isEmpty()) {
        m_document.setFileName(m_dialogs.askSave(
            QLatin1String("KTR_") + pastedLine(m_document.configuration().gsm.stationId), configurationFilter,
            presentFile.isEmpty() ? m_document.source() : presentFile));
    }
    if (m_document.fileName().isEmpty()) {
        Q_EMIT titleChanged();
        Q_EMIT statusMessage(tr("Not saved: no file was chosen. The next save asks for one"));
        return;
    }
    QString backup;
    const Status saved = writePresent(backup);
    if (!saved) {
        m_failure = m_texts.text(Text::SavingFailed) + u": " + saved.message();
        Q_EMIT statusMessage(m_failure);
        return;
    }
    Q_EMIT titleChanged();
    if (!backup.isEmpty() || m_backup.first != m_document.fileName()) {
        m_backup = {m_document.fileName(), backup};
    }
    Q_EMIT statusMessage( // also when it is saved once more: that must not hide it
        m_backup.second.isEmpty() ? tr("Saved: %1").arg(m_document.fileName())
                                  : tr("Saved: %1. What stood there before is kept in %2")
                                        .arg(m_document.fileName(), m_backup.second));
    addRecent();
}

Status FileCommands::writePresent(QString &backup)
{
    const QString log = m_document.configuration().info.logFile;
    const QString archive = m_document.configuration().info.historyExportFile;
    if (m_trial != nullptr) {
        m_document.adjust([this](Configuration &written) { m_trial->giveBack(written); });
    }
    Status saved = m_document.backUp(backup);
    if (saved) {
        saved = m_document.save();
    }
    if (m_trial != nullptr) {
        m_document.adjust([&](Configuration &shown) {
            shown.info.logFile = log;
            shown.info.historyExportFile = archive;
        });
    }
    return saved;
}

void FileCommands::saveAs()
{
    if (!m_dialogs.isBusy()) {
        const QString presentFile = m_document.fileName();
        m_document.setFileName(QString());
        saveBeside(presentFile);
    }
}

void FileCommands::loadChosen()
{
    const QString fileName = m_dialogs.askOpen(configurationFilter);
    if (!fileName.isEmpty()) {
        load(fileName);
    }
}

void FileCommands::load(const QString &fileName)
{
    const bool unsaved = m_document.isModified();
    m_backup = {};
    const ReadReport report = m_history.load(fileName);
    reportReading(report, fileName);
    if (!report.opened) {
        return;
    }
    m_kept.leave();
    Q_EMIT titleChanged();
    Q_EMIT replaced();
    noteUnread(report.document.message());
    if (unsaved && report.document) {
        Q_EMIT statusMessage(
            tr("Loaded: %1. What was not saved before comes back with %2.")
                .arg(fileName, QKeySequence(QKeySequence::Undo).toString(QKeySequence::NativeText)));
    }
}

void FileCommands::openFor(const QString &fileName)
{
    if (isSameFile(fileName, m_document.source())) {
        return;
    }
    if (m_document.isModified()) {
        keepEdits();
        const QString question = m_texts.text(Text::SaveQuestion) + u' ' + m_document.fileName();
        if (ask(&m_window, m_texts.text(Text::SaveCaption), question)) {
            save();
            if (m_document.isModified()) { // told already; what is not saved stays
                return;
            }
        }
    }
    load(fileName);
}

bool FileCommands::loadFirst(const QString &fileName, const QString &asWritten)
{
    QString loaded = fromHere(fileName);
    ReadReport report = m_document.load(loaded);
    if (!report.opened) {
        loaded = fromHere(asWritten); // where "A.xml" and "a.xml" are two files
        report = m_document.load(loaded);
    }
    if (!report.opened) {
        m_document.setFileName(QString());
    }
    reportReading(report, loaded);
    noteUnread(report.document.message());
    return report.opened;
}

void FileCommands::readPresent()
{
    const QString fileName = m_document.fileName();
    const ReadReport report = m_document.readPresentFile();
    if (!fileName.isEmpty()) {
        reportReading(report, fileName);
        noteUnread(report.document.message());
    }
}

void FileCommands::reportReading(const ReadReport &report, const QString &fileName)
{
    if (!report.document) {
        Q_EMIT statusMessage(report.document.message());
        return;
    }
    addRecent();
    QString told = report.remarks.isEmpty() ? tr("Loaded: %1").arg(fileName)
                                            : tr("Loaded: %1. Not everything in it could be used: %2")
                                                  .arg(fileName, report.remarks.join(QLatin1String("; ")));
    if (!report.unknown.isEmpty()) {
        constexpr qsizetype most = 8;
        const QString names = report.unknown.mid(0, most).join(QLatin1String(", ")) +
                              (report.unknown.size() > most ? QStringLiteral(", …") : QString());
        told += QLatin1String(". ") +
                tr("What it has and this program does not know is gone when it is saved: %1").arg(names);
    }
    Q_EMIT statusMessage(told);
}

void FileCommands::addRecent()
{
    if (!m_recent.add(m_document.fileName())) {
        Q_EMIT statusMessage(tr("The list of recent files could not be kept"));
    }
    Q_EMIT recentChanged();
}

void FileCommands::askToSave()
{
    const QString caption = m_texts.text(Text::SaveCaption);
    const QString fileName = m_document.fileName(); // cancelling the file dialog clears it
    if (!m_document.isModified()) {
        return;
    }
    keepEdits();
    if (!ask(&m_window, caption, m_texts.text(Text::SaveQuestion) + u' ' + fileName)) {
        declineEdits();
        return;
    }
    save();
    // A full disk must not cost the edits: the program ends, but not without another try.
    while (!m_failure.isEmpty() &&
           ask(&m_window, caption, m_failure + u'\n' + m_texts.text(Text::SaveUnderOtherName))) {
        saveAs();
    }
    if (m_document.isModified()) {
        const Status kept = m_kept.keep(m_document, fileName);
        QMessageBox box(
            QMessageBox::Warning, caption,
            kept ? tr("The edits are not saved. They are kept in %1, and the next start offers them.")
                       .arg(m_kept.present())
                 : tr("The edits are not saved, and they could not be kept for the next start: %1")
                       .arg(kept.message()),
            QMessageBox::Ok, &m_window);
        box.exec();
    }
}

void FileCommands::keepLater()
{
    if (!m_document.isModified()) { // undone, or nothing was edited yet
        m_kept.forget();
    } else if (!m_kept.beginToKeep(m_document)) {
        m_keepTimer.start();
    }
}

void FileCommands::noteKeeping(const Status &kept)
{
    const QString &failure = kept.message();
    if (failure == m_keepFailure) {
        return;
    }
    if (m_keepFailure.isEmpty()) {
        Q_EMIT statusMessage(
            tr("Edits cannot be kept for the next start. Save them from time to time. %1").arg(failure));
    } else if (failure.isEmpty()) {
        Q_EMIT statusMessage(tr("Edits are kept for the next start again"));
    }
    m_keepFailure = failure;
    Q_EMIT noticeChanged();
}

void FileCommands::noteUnread(const QString &why)
{
    if (why != m_unread) {
        m_unread = why;
        Q_EMIT noticeChanged();
    }
}

FileCommands::Notice FileCommands::notice() const
{
    QStringList texts;
    QStringList details;
    if (!m_unread.isEmpty()) {
        texts += tr("The file was not read");
        details += m_unread;
        details += tr("What is shown stands in no file. New begins a configuration, Undo goes back.");
    }
    if (!m_keepFailure.isEmpty()) {
        texts += tr("Edits are not kept");
        details +=
            tr("Edits cannot be kept for the next start. Save them from time to time. %1").arg(m_keepFailure);
    }
    return {texts.join(QLatin1String(" · ")), details.join(u'\n')};
}

void FileCommands::declineEdits()
{
    m_keepTimer.stop();
    m_kept.drop();
}

void FileCommands::keepEdits()
{
    if (m_document.isModified()) {
        // If that fails, the question follows, and another try after it.
        [[maybe_unused]] const Status kept = m_kept.keep(m_document, m_document.fileName());
    }
}

/// What became of the file after these edits were begun.
QString FileCommands::sinceThen(const KeptEdits::Copy &copy) const
{
    const QFileInfo file(copy.fileName);
    if (copy.source.path.isEmpty()) {
        return {};
    }
    if (!file.exists()) {
        return u"\n\n" + tr("That file is not there any more.");
    }
    if (!Document::isChangedOnDisk(copy.source)) {
        return {};
    }
    return u"\n\n" +
           tr("Since then somebody else has changed that file (%1). Your edits do not have these "
              "changes; when they are saved, what stands there now is kept beside it.")
               .arg(m_document.environment().locale.toString(file.lastModified(), QLocale::ShortFormat));
}

void FileCommands::offerKept()
{
    const QList<KeptEdits::Copy> copies = m_kept.found();
    if (copies.isEmpty()) {
        return;
    }
    const KeptEdits::Copy &copy = copies.front();
    const QString when = m_document.environment().locale.toString(copy.when, QLocale::ShortFormat);
    auto *box = new QMessageBox(
        QMessageBox::Question, QString(programName),
        copy.fileName.isEmpty()
            ? tr("Edits of %1 were not saved when the program ended. They were kept.").arg(when)
            : tr("Edits of %1 in %2 were not saved when the program ended. They were kept.")
                      .arg(when, copy.fileName) +
                  sinceThen(copy),
        QMessageBox::NoButton, &m_window);
    box->setObjectName(QStringLiteral("box_keptEdits"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setModal(false);
    auto *open = box->addButton(tr("Open them"), QMessageBox::AcceptRole);
    const auto *discard = box->addButton(tr("Discard them"), QMessageBox::DestructiveRole);
    auto *later = box->addButton(tr("Later"), QMessageBox::RejectRole);
    box->setDefaultButton(open);
    box->setEscapeButton(later);
    connect(box, &QDialog::finished, this, [this, box, open, discard, copy] {
        if (box->clickedButton() == open) {
            openKept(copy);
        } else if (box->clickedButton() == discard) {
            KeptEdits::discard(copy);
            offerKept();
        }
    });
    box->show();
}

void FileCommands::openUnsaved(const Configuration &configuration, const QString &name)
{
    m_history.replace(configuration, {}, {});
    Q_EMIT titleChanged();
    Q_EMIT replaced();
    Q_EMIT statusMessage(tr("Opened: %1. Saving asks for a file.").arg(name));
}

/// As one step that undo takes back.
void FileCommands::openKept(const KeptEdits::Copy &copy)
{
    Configuration configuration;
    const ReadReport report = readConfigurationFile(copy.path, configuration, m_document.environment());
    if (!report.opened || !report.document) {
        Q_EMIT statusMessage(report.document.message());
        return;
    }
    configuration.names = copy.names;
    m_history.replace(configuration, copy.fileName, copy.source);
    m_kept.adopt(copy.path);
    Q_EMIT titleChanged();
    Q_EMIT replaced();
    Q_EMIT statusMessage(
        copy.fileName.isEmpty()
            ? tr("Opened: edits that are not saved yet")
            : tr("Opened: edits that are not saved yet. Saving replaces %1").arg(copy.fileName));
}

QString FileCommands::lastFileName()
{
    return SettingsStore().GetSetting(settingsOwner, settings_sections::startup, fileNameKey);
}

void FileCommands::keepFileName() const
{
    SettingsStore().SaveSetting(settingsOwner, settings_sections::startup, fileNameKey,
                                m_document.fileName());
}

} // namespace ktr
