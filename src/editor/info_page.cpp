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

    addLine(grid, fieldRef(&Configuration::info, &FileInfo::author));
    addLine(grid, fieldRef(&Configuration::info, &FileInfo::date));

    auto *version = new QLineEdit(card);
    const FieldRef field = fieldRef(&Configuration::info, &FileInfo::version);
    binder().line(version, field, Binder::Counts::NotAsEdit);
    tip(version, field);
    const auto versionOf = [this, label = field.label](Text where) {
        return [this, label, where]() -> QString { return label(context().texts) + u' ' + text(where); };
    };
    addRow(grid, versionOf(Text::Local), version);

    m_moduleVersion = addReadOnly(grid, QStringLiteral("txt_info_version_ktr"), versionOf(Text::InModule));
    tip(m_moduleVersion, [] { return tr("What the module holds, as last reported"); });
    m_readVersion = addButton(grid, 2, "cmd_info_readVersion", &InfoPage::versionWanted);
    onTexts([this] { m_readVersion->setText(tr("Read version")); });
    tip(m_readVersion, [] { return tr("Asks the module what it holds: sends V,§"); });
    m_applicationVersion = addReadOnly(grid, QStringLiteral("txt_info_appVer"),
                                       [this] { return text(Text::ApplicationVersion); });
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

QLineEdit *InfoPage::addReadOnly(QGridLayout *grid, const QString &name, std::function<QString()> caption)
{
    auto *edit = new QLineEdit(this);
    edit->setObjectName(name);
    edit->setReadOnly(true);
    addRow(grid, std::move(caption), edit);
    return edit;
}

QWidget *InfoPage::commentCard()
{
    const FieldRef field = fieldRef(&Configuration::info, &FileInfo::comment);
    auto *card = captioned(new QGroupBox(this), field);
    auto *layout = new QVBoxLayout(card);
    auto *comment = new QPlainTextEdit(card);
    comment->setTabChangesFocus(true);
    comment->setMinimumHeight(80);
    binder().text(comment, field);
    tip(comment, field);
    onTexts([this, comment, label = field.label] { comment->setAccessibleName(label(context().texts)); });
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

    m_logFile = addFile(grid, &FileInfo::logFile);
    addChooseButton(grid, "cmd_logfile", &InfoPage::chooseLogFile, [] { return tr("Choose the log file"); });
    captioned(addButton(grid, 3, "cmd_logfile_open", &InfoPage::openLogFile), Text::OpenLogFile);

    m_historyFile = addFile(grid, &FileInfo::historyExportFile);
    addChooseButton(grid, "cmd_historyExportFile", &InfoPage::chooseHistoryFile,
                    [] { return tr("Choose the history export file"); });
    captioned(addButton(grid, 3, "cmd_history_open", &InfoPage::openHistoryFile), Text::OpenHistory);
    return card;
}

QLineEdit *InfoPage::addFile(QGridLayout *grid, QString FileInfo::*member)
{
    QLineEdit *edit = addLine(grid, fieldRef(&Configuration::info, member));
    edit->setMaximumWidth(720);
    return edit;
}

QPushButton *InfoPage::addButton(QGridLayout *grid, int column, const char *name, void (InfoPage::*clicked)())
{
    QPushButton *button = newButton(name, [this, clicked] { (this->*clicked)(); });
    grid->addWidget(button, grid->rowCount() - 1, column);
    return button;
}

void InfoPage::addChooseButton(QGridLayout *grid, const char *name, void (InfoPage::*clicked)(),
                               std::function<QString()> purpose)
{
    QPushButton *button = addButton(grid, 2, name, clicked);
    onTexts([button, purpose = std::move(purpose)] {
        button->setText(tr("Choose…"));
        button->setAccessibleName(purpose());
        button->setToolTip(purpose());
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
