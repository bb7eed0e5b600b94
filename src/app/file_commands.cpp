#include "app/file_commands.h"

#include "platform/settings_store.h"

#include <QDir>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMessageBox>

namespace ktr {

namespace {

const QString startSection = QStringLiteral("Startup");
const QString fileNameKey = QStringLiteral("filename");
const QString configurationFilter = QStringLiteral("*.xml|*.xml");

/// A question without a way out: it must be answered.
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

/// A name that is kept must mean the same file when the program is started in another folder.
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
      m_dialogs(&window, document.environment().programFolder)
{
    connect(&m_document, &Document::fileNameChanged, this,
            [this](const QString &fileName) { m_dialogs.setCurrentFile(fileName); });
}

void FileCommands::makeNew()
{
    m_history.makeNew();
    Q_EMIT replaced();
    tellPresent();
}

void FileCommands::tellPresent()
{
    const QString &fileName = m_document.fileName();
    const bool isNew = m_document.source().isEmpty();
    Q_EMIT told(fileName.isEmpty() ? isNew ? tr("New configuration") : tr("There is no present file")
                : isNew ? tr("New configuration. Saving it replaces %1").arg(fileName)
                                   : tr("The present file is %1").arg(fileName));
}

/// Without a file name, the dialog begins at `presentFile`.
void FileCommands::saveBeside(const QString &presentFile)
{
    m_failure.clear();
    if (m_dialogs.isBusy()) {
        return;
    }
    if (m_document.fileName().isEmpty()) {
        m_document.setFileName(
            m_dialogs.askSave(QLatin1String("KTR_") + m_document.configuration().gsm.stationId,
                              configurationFilter, presentFile));
    }
    if (m_document.fileName().isEmpty()) {
        Q_EMIT told(tr("Not saved: no file was chosen. The next save asks for one"));
        return;
    }
    QString backup;
    Status saved = m_document.backUp(backup);
    if (saved) {
        saved = m_document.save();
    }
    if (!saved) {
        m_failure = m_texts.text(Text::SavingFailed) + u": " + saved.message();
        Q_EMIT told(m_failure);
        return;
    }
    Q_EMIT titleChanged();
    Q_EMIT told(
        backup.isEmpty()
            ? tr("Saved: %1").arg(m_document.fileName())
            : tr("Saved: %1. What stood there before is kept in %2").arg(m_document.fileName(), backup));
    addRecent();
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
    const ReadReport report = m_history.load(fileName);
    tellRead(report, fileName);
    if (!report.opened) {
        return;
    }
    Q_EMIT titleChanged();
    Q_EMIT replaced();
    if (unsaved && report.document) {
        Q_EMIT told(tr("Loaded: %1. What was not saved before comes back with %2.")
                        .arg(fileName, QKeySequence(QKeySequence::Undo).toString(QKeySequence::NativeText)));
    }
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
    tellRead(report, loaded);
    return report.opened;
}

void FileCommands::readPresent()
{
    const QString fileName = m_document.fileName();
    const ReadReport report = m_document.readPresentFile();
    if (!fileName.isEmpty()) {
        tellRead(report, fileName);
    }
}

void FileCommands::tellRead(const ReadReport &report, const QString &fileName)
{
    if (!report.document) {
        Q_EMIT told(report.document.message());
        return;
    }
    addRecent();
    Q_EMIT told(report.remarks.isEmpty() ? tr("Loaded: %1").arg(fileName)
                                         : tr("Loaded: %1. Not everything in it could be used: %2")
                                               .arg(fileName, report.remarks.join(QLatin1String("; "))));
}

void FileCommands::addRecent()
{
    if (!m_recent.add(m_document.fileName())) {
        Q_EMIT told(tr("The list of recent files could not be kept"));
    }
    Q_EMIT recentChanged();
}

void FileCommands::askToSave()
{
    const QString caption = m_texts.text(Text::SaveCaption);
    if (!m_document.isModified() ||
        !ask(&m_window, caption, m_texts.text(Text::SaveQuestion) + u' ' + m_document.fileName())) {
        return;
    }
    save();
    // A disk that is full must not cost the edits: the end goes on, but not without another try.
    while (!m_failure.isEmpty() &&
           ask(&m_window, caption, m_failure + u'\n' + m_texts.text(Text::SaveUnderOtherName))) {
        saveAs();
    }
}

QString FileCommands::lastFileName()
{
    return SettingsStore().GetSetting(settingsOwner, startSection, fileNameKey);
}

void FileCommands::keepFileName() const
{
    SettingsStore().SaveSetting(settingsOwner, startSection, fileNameKey, m_document.fileName());
}

} // namespace ktr
