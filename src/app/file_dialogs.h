#pragma once

#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <utility>

namespace ktr {

/// Asks the user for file names: with the program `CommonDialog` if there is one in the program folder,
/// otherwise with the system's dialog. Events are processed meanwhile. The answer is empty when the user
/// cancels, when the program ends, and when a dialog is open already.
///
/// A filter consists of pairs "description|patterns", joined by "|"; patterns are separated by ";".
class FileDialogs
{
public:
    /// `parent` gets the dialogs that are shown in-process; `programFolder` is where the helper is looked
    /// for.
    FileDialogs(QWidget *parent, QString programFolder);

    /// The file being edited. In-process dialogs start in its folder, or in that of the former one when there
    /// is none.
    void setCurrentFile(const QString &path) { m_currentFile = path.isEmpty() ? m_currentFile : path; }

    /// Folders in which no in-process dialog starts.
    void setAvoided(std::function<bool(const QString &folder)> isAvoided)
    {
        m_isAvoided = std::move(isAvoided);
    }

    /// In-process, a name typed without a suffix gets that of the pattern, and the user is asked before a
    /// file is replaced; where there is a present file, its folder and its name are proposed. For what is no
    /// configuration it starts in the folder where such a file was saved last, by whatever window.
    QString askSave(const QString &proposedName, const QString &filter, const QString &presentFile = {});

    /// An existing file.
    QString askOpen(const QString &filter);

    /// A dialog is open. The main window must stay until it is closed.
    bool isBusy() const { return m_busy; }

private:
    enum class Purpose { Save, Export, Open };

    QString ask(Purpose purpose, const QString &proposedName, const QString &filter,
                const QString &presentFile);
    QString waitForHelper();
    QString startFolder(const QStringList &wanted) const;
    QString askInProcess(Purpose purpose, const QString &proposedName, const QString &filter,
                         const QString &presentFile);

    QPointer<QWidget> m_parent;
    QString m_programFolder;
    QString m_currentFile;
    std::function<bool(const QString &)> m_isAvoided = [](const QString &) { return false; };
    bool m_busy = false;
};

/// The filters of a dialog in-process, and the suffix of the first pattern ("xml"; empty when it names none).
struct NameFilters
{
    QStringList filters;
    QString suffix;
};
NameFilters nameFilters(const QString &filter);

} // namespace ktr
