#include "opmode/window/overview/wall_mode.h"

#include "opmode/window/overview/overview_page.h"
#include "opmode/window/overview/wall_header.h"
#include "platform/display_awake.h"

#include <QApplication>
#include <QMainWindow>
#include <QScreen>
#include <QShortcut>

namespace ktr {

WallMode::WallMode(QMainWindow &window, const Parts &parts)
    : QObject(&window),
      m_window(window),
      m_parts(parts),
      m_escape(new QShortcut(QKeySequence(Qt::Key_Escape), &window))
{
    m_escape->setEnabled(false);
    connect(m_escape, &QShortcut::activated, this, &WallMode::leave);
}

WallMode::~WallMode()
{
    if (m_isOn) {
        setDisplayAwake(false);
    }
}

/// Capitals of a centimetre, as far as the screen tells its size, and not too few of them.
QFont WallMode::wallFont() const
{
    constexpr double capital = 10 / 25.4; // in inches
    constexpr double capitalPart = 0.72;  // of the letters' size
    const QScreen &screen = *m_window.screen();
    const double height = screen.size().height();
    const double wanted = capital * screen.physicalDotsPerInchY() / capitalPart;
    QFont font = QApplication::font();
    font.setPixelSize(static_cast<int>(qBound(height / 45, wanted, height / 22)));
    return font;
}

void WallMode::enter()
{
    if (m_isOn) {
        return;
    }
    m_isOn = true;
    m_wereShown.clear();
    for (QWidget *part : std::as_const(m_parts.hidden)) {
        if (!part->isHidden()) {
            m_wereShown += part;
            part->hide();
        }
    }
    const QFont font = wallFont();
    QFont smaller = font;
    smaller.setPixelSize(font.pixelSize() * 2 / 3);
    for (QWidget *part : std::as_const(m_parts.enlarged)) {
        part->setFont(smaller);
    }
    m_parts.header.setFont(font);
    m_parts.header.setScope(m_parts.overview.scope());
    m_parts.header.show();
    m_parts.overview.showOnWall(font);
    m_wasMaximized = m_window.isMaximized();
    m_wasFullScreen = m_window.isFullScreen();
    m_window.showFullScreen();
    m_escape->setEnabled(true);
    setDisplayAwake(true);
}

void WallMode::leave()
{
    if (!m_isOn) {
        return;
    }
    m_isOn = false;
    m_escape->setEnabled(false);
    setDisplayAwake(false);
    m_parts.header.hide();
    for (QWidget *part : std::as_const(m_parts.enlarged)) {
        part->setFont(QFont());
    }
    m_parts.overview.showInWindow();
    for (QWidget *part : std::as_const(m_wereShown)) {
        part->show();
    }
    if (!m_wasFullScreen) {
        m_wasMaximized ? m_window.showMaximized() : m_window.showNormal();
    }
    Q_EMIT left();
}

} // namespace ktr
