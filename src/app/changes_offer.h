#pragma once

#include "app/page_tabs.h"
#include "link/changes.h"
#include "transmissions/held_configuration.h"

#include <QObject>
#include <QTimer>

namespace ktr {

class LinkPresenter;
class MainMenu;
class ModuleLink;
class TransmissionMemory;

/// Offers to transmit only what a module does not hold yet, where its version text proves what that is: the
/// menu tells how many commands differ. Also offers to transmit the entry that is shown, alone.
class ChangesOffer : public QObject
{
    Q_OBJECT

public:
    struct Parts
    {
        ModuleLink &link;
        LinkPresenter &presenter;
        Document &document;
        TransmissionMemory &memory;
        MainMenu &menu;
        PageTabs &tabs;
        const TextTable &texts;
    };

    /// All of them must outlive this.
    explicit ChangesOffer(const Parts &parts, QObject *parent = nullptr);

    void applyTexts();

Q_SIGNALS:
    /// A line for the status bar.
    void statusMessage(const QString &line);

private:
    /// The entry that the present page shows: its steps and its name.
    struct Entry
    {
        StepSet steps;
        QString name;
    };

    void askSoon();
    void ask();
    void count();
    void show();
    void showEntry();
    void transmitChanges();
    void transmitEntry();
    bool mayTransmit() const;
    Entry shownEntry() const;
    CommandContext context() const;

    Parts m_parts;
    QTimer m_ask;
    QTimer m_count;
    std::optional<HeldConfiguration> m_held; ///< what the module is known to hold
    QString m_version;                       ///< that was looked for
    Changes m_changes;
    bool m_isNeeded = false; ///< the module holds another configuration
};

} // namespace ktr
