#include "app/welcome_window.h"

#include "look/list_views.h"
#include "platform/settings_store.h"

#include <QCommandLinkButton>
#include <QKeyEvent>
#include <QLabel>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace ktr {

namespace {

const QString welcomeKey = QStringLiteral("welcome");
const QString seen = QStringLiteral("seen");

} // namespace

WelcomeWindow::WelcomeWindow(const Commands &commands, QWidget *parent)
    : QDialog(parent),
      m_greeting(named<QLabel>(QStringLiteral("lbl_welcome"), this)),
      m_languageLabel(named<QLabel>(QStringLiteral("lbl_welcome_language"), this)),
      m_language(commands.language),
      m_again(named<QLabel>(QStringLiteral("lbl_welcome_again"), this))
{
    setObjectName(QStringLiteral("Form_welcome"));
    setAttribute(Qt::WA_DeleteOnClose);
    m_greeting->setWordWrap(true);
    m_again->setWordWrap(true);
    auto *scroller = new QScrollArea(this); // for the screen of a laptop at twice the scale
    scroller->setFrameShape(QFrame::NoFrame);
    scroller->setWidgetResizable(true);
    scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroller->setFocusPolicy(Qt::NoFocus);
    scroller->viewport()->setAutoFillBackground(false);
    auto *body = new QWidget;
    auto *all = new QVBoxLayout(body);
    auto *row = new QHBoxLayout;
    row->addWidget(m_greeting, 1);
    offerLanguages(commands, *row);
    all->addLayout(row);
    add(*all, "Cmd_welcome_new", IconName::New, QT_TR_NOOP("New station"),
        QT_TR_NOOP("Begin the configuration of a station, field by field"), commands.newStation);
    add(*all, "Cmd_welcome_open", IconName::Open, QT_TR_NOOP("Open a file"),
        QT_TR_NOOP("A configuration that you or somebody else has saved"), commands.open);
    add(*all, "Cmd_welcome_module", IconName::Connection, QT_TR_NOOP("Try with a virtual module"),
        QT_TR_NOOP("Without hardware: a second window, connected to a module inside the program"),
        commands.tryModule);
    add(*all, "Cmd_welcome_fleet", IconName::OperationalMode,
        QT_TR_NOOP("Operational mode on a virtual fleet"),
        QT_TR_NOOP("Watch twelve stations that report values and alarms; your own list is left alone"),
        commands.tryFleet);
    add(*all, "Cmd_welcome_manual", IconName::About, QT_TR_NOOP("Manual"),
        QT_TR_NOOP("F1 opens it anywhere, at what you are looking at"), commands.manual);
    all->addWidget(m_again);
    scroller->setWidget(body);
    body->setAutoFillBackground(false);
    auto *whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    whole->addWidget(scroller);
    applyTexts();
    constexpr int comfortable = 560;
    constexpr QSize frame(16, 56); // of the window manager, at most
    const QSize room = screen()->availableSize() - frame;
    const int width = std::min(comfortable, room.width());
    const int height = body->hasHeightForWidth() ? body->heightForWidth(width) : body->sizeHint().height();
    resize(width, std::min(height, room.height()));
    m_choices.front().button->setFocus();
}

void WelcomeWindow::offerLanguages(const Commands &commands, QBoxLayout &row)
{
    row.addWidget(m_languageLabel);
    for (const LanguageChoice &choice : commands.languages) {
        auto *option = named<QRadioButton>(QLatin1String("opt_welcome_") + choice.language, this);
        option->setText(choice.name);
        row.addWidget(option);
        m_languages.emplace_back(option, choice.language);
        connect(option, &QAbstractButton::clicked, this,
                [choose = commands.chooseLanguage, language = choice.language] { choose(language); });
    }
    m_languageLabel->setVisible(!m_languages.empty());
}

void WelcomeWindow::add(QBoxLayout &list, const char *name, IconName picture, const char *caption,
                        const char *description, std::function<void()> act)
{
    auto *button = named<QCommandLinkButton>(QLatin1String(name), this);
    button->setAutoDefault(false);
    button->setIcon(icon(picture));
    constexpr int pictureSize = 24;
    button->setIconSize({pictureSize, pictureSize});
    button->setEnabled(act != nullptr);
    list.addWidget(button);
    m_choices.push_back({button, caption, description});
    connect(button, &QAbstractButton::clicked, this, [this, act = std::move(act)] {
        close(); // before what it opens
        act();
    });
}

void WelcomeWindow::applyTexts()
{
    setWindowTitle(tr("Welcome"));
    m_languageLabel->setText(tr("Language:"));
    for (const auto &[option, language] : m_languages) {
        option->setChecked(m_language && m_language() == language);
    }
    m_greeting->setText(tr("What do you want to begin with?"));
    m_again->setText(tr("This page comes once. The menu Help brings it back."));
    for (const Choice &choice : m_choices) {
        choice.button->setText(tr(choice.caption));
        choice.button->setDescription(tr(choice.description));
    }
}

/// No button is the default one, which Return would press from anywhere.
void WelcomeWindow::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    auto *button = qobject_cast<QPushButton *>(focusWidget());
    if (isReturn && button != nullptr) {
        event->accept();
        button->click();
    } else {
        QDialog::keyPressEvent(event);
    }
}

void WelcomeWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        applyTexts();
    }
    QDialog::changeEvent(event);
}

bool WelcomeWindow::isDismissed()
{
    return SettingsStore().GetSetting(settingsOwner, settings_sections::startup, welcomeKey) == seen;
}

void WelcomeWindow::dismiss()
{
    SettingsStore().SaveSetting(settingsOwner, settings_sections::startup, welcomeKey, seen);
}

} // namespace ktr
