#include "help/report_window.h"

#include "look/list_views.h"
#include "platform/environment.h"
#include "platform/files.h"

#include <QClipboard>
#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QVBoxLayout>

namespace ktr {

namespace {

/// A folder of the user's own.
QString documentsFolder()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

} // namespace

ReportWindow::ReportWindow(ReportSources sources, AskSave askSave, QWidget *parent)
    : QDialog(parent), m_sources(std::move(sources)), m_askSave(std::move(askSave))
{
    setObjectName(QStringLiteral("Form_report"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Report a problem"));
    auto *purpose =
        new QLabel(tr("This is what helps to find the cause. PINs, PUKs, passwords and phone numbers are "
                      "masked. Read it and take out what is to stay with you; nothing is sent by itself."),
                   this);
    purpose->setWordWrap(true);
    m_happened = named<QPlainTextEdit>(QStringLiteral("Txt_report_happened"), this);
    m_happened->setTabChangesFocus(true);
    m_happened->setPlaceholderText(tr("What did you do, what did you expect, what happened instead?"));
    constexpr int lines = 4;
    m_happened->setFixedHeight(m_happened->fontMetrics().lineSpacing() * lines +
                               2 * m_happened->frameWidth() + 8);
    auto *happenedLabel = new QLabel(tr("What happened"), this);
    happenedLabel->setBuddy(m_happened);
    m_text = named<QPlainTextEdit>(QStringLiteral("Txt_report"), this);
    m_text->setTabChangesFocus(true);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->setAccessibleName(tr("What is saved"));
    auto *textLabel = new QLabel(tr("What is saved"), this);
    textLabel->setBuddy(m_text);
    m_told = named<QLabel>(QStringLiteral("lbl_report_told"), this);
    m_told->setWordWrap(true);
    connect(m_happened, &QPlainTextEdit::textChanged, this, &ReportWindow::makeAnew);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_told, 1);
    const auto button = [this, buttons](const char *name, const QString &caption, auto act) {
        auto *made = named<QPushButton>(QLatin1String(name), this);
        made->setText(caption);
        made->setAutoDefault(false);
        connect(made, &QPushButton::clicked, this, act);
        buttons->addWidget(made);
    };
    button("Cmd_report_save", tr("Save..."), [this] { save(); });
    button("Cmd_report_copy", tr("Copy"), [this] { copy(); });
    button("Cmd_report_close", tr("Close"), [this] { close(); });
    auto *all = new QVBoxLayout(this);
    for (QWidget *part : QList<QWidget *>{purpose, happenedLabel, m_happened, textLabel}) {
        all->addWidget(part);
    }
    all->addWidget(m_text, 1);
    all->addLayout(buttons);
    constexpr QSize comfortable(820, 660);
    resize(comfortable);
    m_text->setPlainText(problemReport(m_sources, {}));
    m_happened->setFocus();
}

/// Puts what the user says in its place at the beginning; what was changed below it stays.
void ReportWindow::makeAnew()
{
    const QString anew = problemReport(m_sources, m_happened->toPlainText());
    const QString mark = QStringLiteral("\n\n== Program ==\n");
    const QString shown = m_text->toPlainText();
    const qsizetype rest = shown.indexOf(mark);
    const qsizetype end = anew.indexOf(mark);
    m_text->setPlainText(rest < 0 || end < 0 ? shown : anew.left(end) + shown.mid(rest));
}

void ReportWindow::save()
{
    const QString proposal =
        QStringLiteral("KTRconfig-report-%1.txt").arg(QDate::currentDate().toString(Qt::ISODate));
    const QString path =
        m_askSave(joinPath(documentsFolder(), proposal), tr("Report") + QLatin1String("|*.txt"));
    if (path.isEmpty()) {
        return;
    }
    const Status saved = replaceFile(path, m_text->toPlainText().toUtf8());
    m_told->setText(saved ? tr("Saved: %1").arg(QDir::toNativeSeparators(path)) : saved.message());
}

void ReportWindow::copy()
{
    QGuiApplication::clipboard()->setText(m_text->toPlainText());
    m_told->setText(tr("Copied"));
}

} // namespace ktr
