#pragma once

#include <QObject>

#include <functional>

namespace ktr {

class AlarmSound;
class OperationalMode;
class OpmodeMenus;
class TextTable;

/// What the menus offer about rules, limits and maintenance.
class AlarmCommands : public QObject
{
    Q_OBJECT

public:
    struct Services
    {
        OperationalMode &mode;
        const TextTable &texts;
        OpmodeMenus &menus;
        AlarmSound &sound;
        /// The key of the station that is chosen; empty for none.
        std::function<QString()> chosen;
        /// Runs what opens a dialog, during which the window stays open.
        std::function<void(const std::function<void()> &)> whileBusy;
    };

    AlarmCommands(const Services &services, QWidget &window);

private:
    void endMaintenance();

    Services m_services;
};

} // namespace ktr
