#include "look/window_place.h"

#include "platform/settings_store.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace ktr {

namespace {

const QString section = QStringLiteral("Places");

class PlaceKeeper : public QObject
{
public:
    PlaceKeeper(QWidget &window, const QString &name) : QObject(&window), m_window(window), m_name(name)
    {
        m_kept =
            QByteArray::fromBase64(SettingsStore().GetSetting(settingsOwner, section, m_name).toLatin1());
        restorePlace(m_window, m_kept);
        m_window.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == &m_window && event->type() == QEvent::Hide && !event->spontaneous()) {
            keep();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    void keep()
    {
        const QByteArray place = m_window.saveGeometry();
        if (place != m_kept) {
            m_kept = place;
            SettingsStore().SaveSetting(settingsOwner, section, m_name,
                                        QString::fromLatin1(place.toBase64()));
        }
    }

    QWidget &m_window;
    QString m_name;
    QByteArray m_kept;
};

} // namespace

void restorePlace(QWidget &window, const QByteArray &kept)
{
    if (!window.restoreGeometry(kept) || window.isMaximized() || window.isFullScreen()) {
        return;
    }
    const QScreen *there = QGuiApplication::screenAt(window.geometry().center());
    const QRect room = (there != nullptr ? there : window.screen())->availableGeometry();
    constexpr QSize frame(16, 56); // of the window manager, at most
    const QSize most = room.size() - frame;
    if (window.width() > most.width() || window.height() > most.height()) {
        window.resize(window.size().boundedTo(most));
        const QSize free = room.size() - frame - window.size();
        window.move(std::clamp(window.x(), room.left(), room.left() + free.width()),
                    std::clamp(window.y(), room.top(), room.top() + free.height()));
    }
}

void keepWindowPlace(QWidget &window, const QString &name)
{
    new PlaceKeeper(window, name); // a child of it
}

} // namespace ktr
