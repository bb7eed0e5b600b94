#include "look/window_place.h"

#include "platform/settings_store.h"

#include <QEvent>
#include <QWidget>

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
        m_window.restoreGeometry(m_kept);
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

void keepWindowPlace(QWidget &window, const QString &name)
{
    new PlaceKeeper(window, name); // a child of it
}

} // namespace ktr
