#include "app/about_window.h"

#include "app/third_parties.h"
#include "lang/text_table.h"
#include "look/program_name.h"
#include "platform/helper_program.h"
#include "platform/registry.h"

#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace ktr {

namespace {

constexpr int iconSize = 64;

QString versionText()
{
    return QStringLiteral("%1.%2.%3")
        .arg(KTR_VERSION_MAJOR)
        .arg(KTR_VERSION_MINOR)
        .arg(KTR_VERSION_REVISION, 2, 10, QLatin1Char('0'));
}

QString machineSetting(const char *subkey, const char *valueName)
{
    constexpr qsizetype buffer = 1024;
    return MRegistry::GetRegistryString(QLatin1String("hkey_local_machine"), QLatin1String(subkey),
                                        QLatin1String(valueName))
        .left(buffer);
}

/// Where the system's information program should be; empty when the registry names none.
QString systemInformationProgram()
{
    QString path = machineSetting("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO", "PATH");
    if (!path.isEmpty()) {
        return path;
    }
    const QString folder = machineSetting("SOFTWARE\\Microsoft\\Shared Tools Location", "MSINFO");
    return folder.isEmpty() ? QString() : QString(folder + QLatin1String("\\MSINFO32.EXE"));
}

QString namesOf(ThirdParty::Where where)
{
    QStringList names;
    for (const ThirdParty &party : thirdParties()) {
        if (party.where == where) {
            names += party.name;
        }
    }
    return names.join(QLatin1String(", "));
}

/// What is in the program, and under which licence.
QGridLayout *thirdPartyTable(QWidget *parent)
{
    auto *const table = new QGridLayout;
    table->setHorizontalSpacing(20);
    table->setVerticalSpacing(2);
    table->setColumnStretch(1, 1);
    for (const ThirdParty &party : thirdParties()) {
        if (party.where == ThirdParty::Where::Program) {
            const int row = table->rowCount();
            table->addWidget(new QLabel(party.name, parent), row, 0);
            table->addWidget(new QLabel(party.licence, parent), row, 1);
        }
    }
    return table;
}

} // namespace

frmAbout::frmAbout(const TextTable &texts, QWidget *parent)
    : QDialog(parent),
      m_texts(texts),
      m_icon(new QLabel(this)),
      m_title(new QLabel(programName, this)),
      m_version(new QLabel(this)),
      m_purpose(new QLabel(this)),
      m_others(new QLabel(this)),
      m_passingOn(new QLabel(this)),
      m_systemInformation(new QPushButton(this)),
      m_ok(new QPushButton(this))
{
    setObjectName(QLatin1String("frmAbout"));
    m_icon->setObjectName(QLatin1String("imgIcon"));
    m_title->setObjectName(QLatin1String("lblTitle"));
    m_version->setObjectName(QLatin1String("lblVersion"));
    m_purpose->setObjectName(QLatin1String("lblPurpose"));
    m_others->setObjectName(QLatin1String("lblThirdParties"));
    m_passingOn->setObjectName(QLatin1String("lblPassingOn"));
    m_systemInformation->setObjectName(QLatin1String("cmdSysInfo"));
    m_ok->setObjectName(QLatin1String("cmdOK"));

    QFont large = m_title->font();
    large.setPointSizeF(large.pointSizeF() * 1.6);
    large.setBold(true);
    m_title->setFont(large);
    m_version->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    for (QLabel *const text : {m_purpose, m_passingOn}) {
        text->setWordWrap(true);
        text->setMinimumWidth(text->fontMetrics().averageCharWidth() * 56);
    }
    m_icon->setPixmap(windowIcon().pixmap(iconSize));
    connect(this, &QWidget::windowIconChanged, this,
            [this](const QIcon &icon) { m_icon->setPixmap(icon.pixmap(iconSize)); });
    m_ok->setDefault(true);

    auto *const lines = new QVBoxLayout;
    lines->setSpacing(6);
    lines->addWidget(m_title);
    lines->addWidget(m_version);
    lines->addSpacing(6);
    lines->addWidget(m_purpose);
    lines->addSpacing(12);
    lines->addWidget(m_others);
    lines->addLayout(thirdPartyTable(this));
    lines->addSpacing(6);
    lines->addWidget(m_passingOn);
    auto *const head = new QHBoxLayout;
    head->setSpacing(20);
    head->addWidget(m_icon, 0, Qt::AlignTop);
    head->addLayout(lines, 1);
    auto *const buttons = new QHBoxLayout;
    buttons->addWidget(m_systemInformation);
    buttons->addStretch();
    buttons->addWidget(m_ok);
    auto *const all = new QVBoxLayout(this);
    all->setContentsMargins(24, 24, 24, 16);
    all->setSpacing(24);
    all->addLayout(head);
    all->addLayout(buttons);
    all->setSizeConstraint(QLayout::SetFixedSize);
    m_ok->setFocus();

    connect(m_ok, &QPushButton::clicked, this, &QWidget::close);
    connect(m_systemInformation, &QPushButton::clicked, this, &frmAbout::showSystemInformation);
    applyTexts();
}

void frmAbout::applyTexts()
{
    setWindowTitle(m_texts.text(Text::About) + u' ' + programName);
    m_version->setText(m_texts.text(Text::Version) + u' ' + versionText());
    m_systemInformation->setText(m_texts.text(Text::SystemInformation));
    m_ok->setText(m_texts.text(Text::Ok));
    m_purpose->setText(tr("Sets up and watches telemetry and alarm modules."));
    m_others->setText(tr("Works of others in it, and their licences:"));
    m_passingOn->setText(
        tr("The GPL asks of those who pass KTRconfig on that its source code, too, is to be had from them.") +
        u' ' +
        tr("The package for Windows holds %1 as well.").arg(namesOf(ThirdParty::Where::WindowsPackage)));
}

void frmAbout::showSystemInformation()
{
    const QString program = systemInformationProgram();
    if (!program.isEmpty() && QFileInfo(program).isFile() && startProgram(program)) {
        return;
    }
    auto *const box = new QMessageBox(QMessageBox::Information, programName,
                                      m_texts.text(Text::NoSystemInformation), QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->button(QMessageBox::Ok)->setText(m_texts.text(Text::Ok));
    box->open();
}

} // namespace ktr
