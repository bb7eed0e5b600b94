#pragma once

#include "editor/page.h"

namespace ktr {

/// Who made the configuration and when, its version here and in the module, and the files that go with it.
class InfoPage : public Page
{
    Q_OBJECT

public:
    explicit InfoPage(EditorContext &context, QWidget *parent = nullptr);

    /// The file dialog's filter for the history export file.
    static QString historyFilter() { return QStringLiteral("*.csv|*.csv"); }

    /// The version of the configuration that the module reported.
    void setModuleVersion(const QString &version);
    /// The version of the program in the module.
    void setApplicationVersion(const QString &version);

    /// Whether no transmission runs: only then the module is asked for its version.
    void setIdle(bool idle);

    /// What was chosen; an edit like typing it.
    void setLogFile(const QString &path);
    void setHistoryFile(const QString &path);

Q_SIGNALS:
    /// The module is to be asked what it holds.
    void versionWanted();
    void chooseLogFile();
    void openLogFile();
    void chooseHistoryFile();
    void openHistoryFile();

private:
    QWidget *informationCard();
    QWidget *commentCard();
    QWidget *filesCard();
    QLineEdit *addReadOnly(QGridLayout *grid, const QString &name, std::function<QString()> caption);
    QLineEdit *addFile(QGridLayout *grid, QString FileInfo::*member);
    QPushButton *addButton(QGridLayout *grid, int column, const char *name, void (InfoPage::*clicked)());
    void addChooseButton(QGridLayout *grid, const char *name, void (InfoPage::*clicked)(),
                         std::function<QString()> purpose);

    QLineEdit *m_moduleVersion = nullptr;
    QLineEdit *m_applicationVersion = nullptr;
    QPushButton *m_readVersion = nullptr;
    QLineEdit *m_logFile = nullptr;
    QLineEdit *m_historyFile = nullptr;
};

} // namespace ktr
