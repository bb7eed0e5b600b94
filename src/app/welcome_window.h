#pragma once

#include "look/icons.h"

#include <QDialog>
#include <QString>

#include <functional>
#include <utility>
#include <vector>

class QBoxLayout;
class QCommandLinkButton;
class QLabel;
class QRadioButton;

namespace ktr {

/// A language as the user is offered it: its own name, and how the program calls it.
struct LanguageChoice
{
    QString name;
    QString language;
};

/// What can be begun with, for who opens the program for the first time. Escape puts it away.
class WelcomeWindow : public QDialog
{
    Q_OBJECT

public:
    struct Commands
    {
        std::function<void()> newStation{};
        std::function<void()> open{};
        std::function<void()> tryModule{}; ///< without it the button is disabled, as for the next
        std::function<void()> tryFleet{};
        std::function<void()> manual{};
        std::vector<LanguageChoice> languages{};
        std::function<QString()> language{}; ///< the one in force
        std::function<void(const QString &language)> chooseLanguage{};
    };

    WelcomeWindow(const Commands &commands, QWidget *parent);

    /// Whether it was put away at a former start.
    static bool isDismissed();
    /// Remembers that it was.
    static void dismiss();

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    struct Choice
    {
        QCommandLinkButton *button;
        const char *caption;
        const char *description;
    };
    void add(QBoxLayout &list, const char *name, IconName picture, const char *caption,
             const char *description, std::function<void()> act);
    void offerLanguages(const Commands &commands, QBoxLayout &row);
    void applyTexts();

    QLabel *m_greeting;
    QLabel *m_languageLabel;
    std::function<QString()> m_language;
    std::vector<std::pair<QRadioButton *, QString>> m_languages;
    QLabel *m_again;
    std::vector<Choice> m_choices;
};

} // namespace ktr
