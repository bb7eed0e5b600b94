#include "app/file_dialogs.h"

#include "platform/helper_program.h"
#include "platform/settings_store.h"
#include "platform/text_rules.h"

#include <QDir>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileInfo>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QStandardPaths>
#include <QTimer>

namespace ktr {

namespace {

const QLatin1String helperName("CommonDialog");
constexpr char16_t endMark = u'§';
constexpr int pollMs = 1;

// The helper reads the proposal from where it puts its answer.
const QLatin1String answerSection("Filename");
const QLatin1String answerKey("LastSelectedFilename");

const QString exportFolderKey = QStringLiteral("exportFolder");
const QString configurationPattern = QStringLiteral("*.xml");

/// Where tables, pictures and so on were saved last, by any window; empty where there is none, or no longer.
QString exportFolder()
{
    const QString kept = SettingsStore().GetSetting(settingsOwner, settings_sections::files, exportFolderKey);
    return !kept.isEmpty() && QFileInfo(kept).isDir() ? kept : QString();
}

void keepExportFolder(const QString &path)
{
    const QString folder = QFileInfo(path).absolutePath();
    if (folder != exportFolder()) {
        SettingsStore().SaveSetting(settingsOwner, settings_sections::files, exportFolderKey, folder);
    }
}

/// A proposal comes from free text; it must not lead into another folder.
QString asFileName(const QString &text)
{
    static const QRegularExpression forbidden(QStringLiteral(R"([/\\:*?"<>|\x00-\x1f])"));
    constexpr qsizetype longest = 100; // file systems take 255 bytes
    return firstCharacters(text, longest).replace(forbidden, QLatin1String("_"));
}

} // namespace

NameFilters nameFilters(const QString &filter)
{
    NameFilters result;
    const QStringList parts = filter.split(u'|');
    for (qsizetype at = 0; at + 1 < parts.size(); at += 2) {
        QString patterns = parts[at + 1];
        patterns.replace(u';', u' ');
        result.filters +=
            parts[at] == parts[at + 1] ? patterns : QString(parts[at] + u" (" + patterns + u')');
    }
    static const QRegularExpression suffix(QStringLiteral(R"(^\*\.([^*?;]+))"));
    result.suffix = suffix.match(parts.value(1)).captured(1);
    return result;
}

FileDialogs::FileDialogs(QWidget *parent, QString programFolder)
    : m_parent(parent), m_programFolder(std::move(programFolder))
{}

QString FileDialogs::askSave(const QString &proposedName, const QString &filter, const QString &presentFile)
{
    const bool isExport = presentFile.isEmpty() && !filter.endsWith(configurationPattern);
    QString path = ask(isExport ? Purpose::Export : Purpose::Save, proposedName, filter, presentFile);
    if (isExport && !path.isEmpty()) {
        keepExportFolder(path);
    }
    return path;
}

QString FileDialogs::askOpen(const QString &filter)
{
    return ask(Purpose::Open, QString(), filter, m_currentFile);
}

QString FileDialogs::ask(Purpose purpose, const QString &proposedName, const QString &filter,
                         const QString &presentFile)
{
    if (m_busy) {
        return {};
    }
    const QString helper = findHelper(m_programFolder, helperName);
    // If the store cannot be written, its old content would be taken for the answer.
    const bool prepared =
        !helper.isEmpty() && SettingsStore().SaveSetting(helperName, answerSection, answerKey, proposedName);
    m_busy = true;
    const auto ended = qScopeGuard([this] { m_busy = false; });
    const QLatin1String command(purpose == Purpose::Open ? "ShowOpen" : "ShowSave");
    if (prepared && startProgram(helper, {command, filter})) {
        return waitForHelper();
    }
    return askInProcess(purpose, proposedName, filter, presentFile);
}

QString FileDialogs::waitForHelper()
{
    QString answer;
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&answer, &loop] {
        answer = SettingsStore().GetSetting(helperName, answerSection, answerKey);
        if (answer.contains(endMark)) {
            loop.quit();
        }
    });
    poll.start(pollMs);
    loop.exec();
    return answer.contains(endMark) ? answer.chopped(1) : QString();
}

/// The first that is there; else the user's documents.
QString FileDialogs::startFolder(const QStringList &wanted) const
{
    for (const QString &folder :
         wanted + QStringList{QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)}) {
        if (!folder.isEmpty() && QFileInfo(folder).isDir() && !m_isAvoided(folder)) {
            return folder;
        }
    }
    return QDir::homePath();
}

QString FileDialogs::askInProcess(Purpose purpose, const QString &proposedName, const QString &filter,
                                  const QString &presentFile)
{
    const QPointer<QFileDialog> dialog = new QFileDialog(m_parent);
    const NameFilters filters = nameFilters(filter);
    dialog->setObjectName(helperName);
    dialog->setNameFilters(filters.filters);
    const QFileInfo present(presentFile.isEmpty() ? m_currentFile : presentFile);
    dialog->setDirectory(startFolder({purpose == Purpose::Export ? exportFolder() : QString(),
                                      present.filePath().isEmpty() ? QString() : present.absolutePath()}));
    if (purpose != Purpose::Open) {
        dialog->setAcceptMode(QFileDialog::AcceptSave);
        dialog->setDefaultSuffix(filters.suffix);
        dialog->selectFile(presentFile.isEmpty() ? asFileName(proposedName) : present.fileName().trimmed());
    } else {
        dialog->setFileMode(QFileDialog::ExistingFile);
    }
    const bool accepted = dialog->exec() == QDialog::Accepted;
    // The parent may have been destroyed meanwhile, and the dialog with it.
    QString answer = accepted && dialog ? dialog->selectedFiles().value(0) : QString();
    delete dialog.data();
    return answer;
}

} // namespace ktr
