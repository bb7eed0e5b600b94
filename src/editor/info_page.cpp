#include "editor/info_page.h"

#include "look/field_width.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace ktr {

InfoPage::InfoPage(EditorContext &context, QWidget *parent) : Page(context, parent)
{
    auto *layout = new QGridLayout(this);
    layout->addWidget(informationCard(), 0, 0);
    layout->addWidget(commentCard(), 0, 1);
    layout->addWidget(filesCard(), 1, 0, 1, 2);
    layout->setColumnStretch(0, 4);
    layout->setColumnStretch(1, 5);
    layout->setRowStretch(2, 1);
}

QWidget *InfoPage::informationCard()
{
    auto *card = captioned(new QGroupBox(this), Text::FileInformation);
    auto *grid = new QGridLayout(card);

    auto *author = new QLineEdit(card);
    binder().line(author, fieldRef(&Configuration::info, &FileInfo::author));
    tip(author, [] { return tr("Who answers for this configuration"); });
    addRow(grid, Text::Author, author);

    auto *date = new QLineEdit(card);
    binder().line(date, fieldRef(&Configuration::info, &FileInfo::date));
    tip(date, [] { return tr("Any text; a new configuration is given the date of today"); });
    addRow(grid, Text::Date, date);

    auto *version = new QLineEdit(card);
    binder().line(version, fieldRef(&Configuration::info, &FileInfo::version), Binder::Counts::NotAsEdit);
    tip(version, [] { return tr("Every edit writes its date and time here"); });
    addRow(
        grid, [this]() -> QString { return text(Text::ConfigurationVersion) + u' ' + text(Text::Local); },
        version);

    m_moduleVersion = addTold(grid, QStringLiteral("txt_info_version_ktr"), [this]() -> QString {
        return text(Text::ConfigurationVersion) + u' ' + text(Text::InModule);
    });
    tip(m_moduleVersion, [] { return tr("What the module holds, as last reported"); });
    m_readVersion = addButton(grid, 2, "cmd_info_readVersion", &InfoPage::versionWanted);
    onTexts([this] { m_readVersion->setText(tr("Read version")); });
    tip(m_readVersion, [] { return tr("Asks the module what it holds: sends V,§"); });
    m_applicationVersion =
        addTold(grid, QStringLiteral("txt_info_appVer"), [this] { return text(Text::ApplicationVersion); });
    tip(m_applicationVersion, [] { return tr("The program in the module, as last reported"); });
    const auto edits = card->findChildren<QLineEdit *>();
    for (QLineEdit *edit : edits) {
        edit->setMinimumWidth(fieldWidth(edit, Document::stamp({QDate(2000, 1, 1), QTime(0, 0)})));
        edit->setMaximumWidth(400);
    }
    grid->setColumnStretch(1, 10);
    grid->setColumnStretch(2, 1);
    grid->setRowStretch(grid->rowCount(), 1);
    return card;
}

QLineEdit *InfoPage::addTold(QGridLayout *grid, const QString &name, std::function<QString()> caption)
{
    auto *edit = new QLineEdit(this);
    edit->setObjectName(name);
    edit->setReadOnly(true);
    addRow(grid, std::move(caption), edit);
    return edit;
}

QWidget *InfoPage::commentCard()
{
    auto *card = captioned(new QGroupBox(this), Text::Comment);
    auto *layout = new QVBoxLayout(card);
    auto *comment = new QPlainTextEdit(card);
    comment->setTabChangesFocus(true);
    comment->setMinimumHeight(80);
    binder().text(comment, fieldRef(&Configuration::info, &FileInfo::comment));
    onTexts([this, comment] { comment->setAccessibleName(text(Text::Comment)); });
    layout->addWidget(comment);
    return card;
}

QWidget *InfoPage::filesCard()
{
    auto *card = new QGroupBox(this);
    onTexts([card] { card->setTitle(tr("Files")); });
    auto *grid = new QGridLayout(card);
    grid->setColumnStretch(1, 10);
    grid->setColumnStretch(4, 1);

    m_logFile = addFile(grid, Text::LogFile, &FileInfo::logFile);
    tip(m_logFile, [] { return tr("The conversation with the module is appended to this file"); });
    addChooseButton(grid, "cmd_logfile", &InfoPage::chooseLogFile, [] { return tr("Choose the log file"); });
    captioned(addButton(grid, 3, "cmd_logfile_open", &InfoPage::openLogFile), Text::OpenLogFile);

    m_historyFile = addFile(grid, Text::History, &FileInfo::historyExportFile);
    tip(m_historyFile, [] { return tr("The module's archive is appended to this file (*.csv)"); });
    addChooseButton(grid, "cmd_historyExportFile", &InfoPage::chooseHistoryFile,
                    [] { return tr("Choose the history export file"); });
    captioned(addButton(grid, 3, "cmd_history_open", &InfoPage::openHistoryFile), Text::OpenHistory);
    return card;
}

QLineEdit *InfoPage::addFile(QGridLayout *grid, Text name, QString FileInfo::*member)
{
    auto *edit = new QLineEdit(this);
    edit->setMaximumWidth(720);
    binder().line(edit, fieldRef(&Configuration::info, member));
    addRow(grid, name, edit);
    return edit;
}

QPushButton *InfoPage::addButton(QGridLayout *grid, int column, const char *name, void (InfoPage::*clicked)())
{
    QPushButton *button = newButton(name, [this, clicked] { (this->*clicked)(); });
    grid->addWidget(button, grid->rowCount() - 1, column);
    return button;
}

void InfoPage::addChooseButton(QGridLayout *grid, const char *name, void (InfoPage::*clicked)(),
                               std::function<QString()> told)
{
    QPushButton *button = addButton(grid, 2, name, clicked);
    onTexts([button, told = std::move(told)] {
        button->setText(tr("Choose…"));
        button->setAccessibleName(told());
        button->setToolTip(told());
    });
}

void InfoPage::setModuleVersion(const QString &version)
{
    m_moduleVersion->setText(version);
}

void InfoPage::setApplicationVersion(const QString &version)
{
    m_applicationVersion->setText(version);
}

void InfoPage::setIdle(bool idle)
{
    m_readVersion->setEnabled(idle);
}

void InfoPage::setLogFile(const QString &path)
{
    m_logFile->setText(path);
}

void InfoPage::setHistoryFile(const QString &path)
{
    m_historyFile->setText(path);
}

} // namespace ktr
