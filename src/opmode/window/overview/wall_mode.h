#pragma once

#include <QFont>
#include <QObject>

class QMainWindow;
class QShortcut;
class QWidget;

namespace ktr {

class OverviewPage;
class WallHeader;

/// Shows the overview on a wall: the whole screen, without menus, in letters that are read from three metres.
/// What tells that something is not watched stays, larger. Escape leaves it.
class WallMode : public QObject
{
    Q_OBJECT

public:
    struct Parts
    {
        OverviewPage &overview;
        WallHeader &header;
        QList<QWidget *> hidden;   ///< on the wall
        QList<QWidget *> enlarged; ///< there
    };

    WallMode(QMainWindow &window, const Parts &parts);
    ~WallMode() override;

    bool isOn() const { return m_isOn; }
    void enter();
    void leave();

Q_SIGNALS:
    void left();

private:
    QFont wallFont() const;

    QMainWindow &m_window;
    Parts m_parts;
    QShortcut *m_escape;
    bool m_isOn = false;
    bool m_wasMaximized = false;
    bool m_wasFullScreen = false;
    QList<QWidget *> m_wereShown; ///< of the hidden
};

} // namespace ktr
