#pragma once

#include <QObject>

#include <functional>
#include <vector>

class QAction;
class QMainWindow;
class QMenu;

namespace ktr {

class HelpKeys;

/// Fills the menu "Help" of a window, which is named `mnu_help`; its title is the window's matter.
class HelpMenu : public QObject
{
    Q_OBJECT

public:
    /// What the help itself cannot do. Without one of them its entry is disabled.
    struct Commands
    {
        std::function<void()> showKeys{};
        std::function<void()> report{};
        std::function<void()> welcome{};
        std::function<void()> tryModule{};
        std::function<void()> tryFleet{};
    };

    /// The name of the menu that is filled.
    static QString menuName();

    /// The menu goes with the window. The help must outlive it.
    HelpMenu(QMainWindow &window, HelpKeys &help, const Commands &commands);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QAction *add(const char *name, const std::function<void()> &act);
    void applyTexts();

    QMainWindow &m_window;
    QMenu *m_menu;
    std::vector<std::pair<QAction *, const char *>> m_captions; ///< to be translated
};

} // namespace ktr
