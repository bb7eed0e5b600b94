#include "app/changes_offer.h"

#include "app/link_presenter.h"
#include "app/main_menu.h"
#include "config/channels.h"
#include "config/comparison.h"
#include "config/document.h"
#include "lang/text_table.h"
#include "transmissions/transmission_memory.h"

#include <QAction>
#include <QApplication>

namespace ktr {

ChangesOffer::ChangesOffer(const Parts &parts, QObject *parent) : QObject(parent), m_parts(parts)
{
    for (QTimer *timer : {&m_ask, &m_count}) {
        timer->setSingleShot(true);
    }
    connect(&m_ask, &QTimer::timeout, this, &ChangesOffer::ask);
    connect(&m_count, &QTimer::timeout, this, &ChangesOffer::count);
    connect(&m_parts.presenter, &LinkPresenter::versionChanged, this, &ChangesOffer::askSoon);
    connect(&m_parts.memory, &TransmissionMemory::kept, this, &ChangesOffer::askSoon);
    const Transmitter &transmitter = m_parts.link.transmitter();
    connect(&transmitter, &Transmitter::started, this, &ChangesOffer::askSoon);
    connect(&transmitter, &Transmitter::ended, this, &ChangesOffer::askSoon);
    connect(&m_parts.link, &ModuleLink::changed, this, &ChangesOffer::show);
    connect(&m_parts.document, &Document::changed, this, [this] { m_count.start(0); });
    MainMenu &menu = m_parts.menu;
    connect(menu.transmitChanges, &QAction::triggered, this, &ChangesOffer::transmitChanges);
    connect(menu.transmitEntry, &QAction::triggered, this, &ChangesOffer::transmitEntry);
    connect(&menu, &MainMenu::transmitAboutToShow, this, &ChangesOffer::showEntry);
}

void ChangesOffer::applyTexts()
{
    show();
    showEntry();
}

bool ChangesOffer::mayTransmit() const
{
    return !m_parts.link.line().port().isEmpty() && !m_parts.link.transmitter().isTransmitting();
}

CommandContext ChangesOffer::context() const
{
    const Environment &environment = m_parts.document.environment();
    return {false, environment.locale, environment.now()};
}

// Changes

/// What was found is no longer sure until it is found again.
void ChangesOffer::askSoon()
{
    m_held.reset();
    show();
    m_ask.start(0);
}

void ChangesOffer::ask()
{
    const QString version = m_parts.presenter.lastVersion();
    m_version = version;
    if (version.isEmpty() || !m_parts.memory.isThere() || m_parts.link.transmitter().isTransmitting()) {
        return;
    }
    const auto find = [version, station = m_parts.document.configuration().gsm.stationId,
                       environment = m_parts.document.environment()](TransmissionTable &table) {
        HeldConfiguration held = whatHolds(table, station, version, environment);
        // It may be given another identifier now.
        return held.proof == HeldConfiguration::Proof::None ? whatHolds(table, {}, version, environment)
                                                            : held;
    };
    m_parts.memory.ask<HeldConfiguration>(
        this, find,
        [](const Status &why) {
            return HeldConfiguration{.proof = HeldConfiguration::Proof::Failed, .status = why};
        },
        [this, version](const HeldConfiguration &held) {
            const bool isProof =
                held.proof == HeldConfiguration::Proof::Whole && isProvedBy(held.configuration, version);
            if (version == m_version && isProof && !m_ask.isActive()) {
                m_held = held;
            }
            count();
        });
}

void ChangesOffer::count()
{
    m_count.stop();
    if (m_held) {
        const Configuration &configuration = m_parts.document.configuration();
        m_changes = changesSince(*m_held, configuration, context());
        m_isNeeded = m_changes.commands > 0 ||
                     Transmitter::versionOnLine(configuration) != m_held->transmission.versionSent;
    }
    show();
}

void ChangesOffer::show()
{
    QAction *action = m_parts.menu.transmitChanges;
    const QString number =
        m_changes.commands == 1 ? tr("1 command") : tr("%1 commands").arg(m_changes.commands);
    const bool isOffered = m_held.has_value() && m_isNeeded && mayTransmit();
    action->setEnabled(isOffered);
    action->setText(m_held ? tr("Changes (%1)").arg(number) : tr("Changes"));
    action->setIconText(m_held ? tr("Transmit changes (%1)").arg(number) : tr("Transmit changes"));
    action->setToolTip(
        isOffered ? tr("Transmits only what the module does not hold yet, as its version proves")
        : m_held
            ? tr("The module holds this configuration")
            : tr("Possible when the module has told its version and it is known what was transmitted with "
                 "it"));
}

/// The module is asked for its version once more before anything is changed in it.
void ChangesOffer::transmitChanges()
{
    m_count.stop();
    count();
    if (m_held && m_isNeeded) {
        m_parts.presenter.transmitChanges(m_changes.leftOut, m_version, m_held->transmission.id);
    }
}

// One entry

ChangesOffer::Entry ChangesOffer::shownEntry() const
{
    const auto index = static_cast<PageIndex>(m_parts.tabs.currentIndex());
    const Page *page = m_parts.tabs.builtPage(index);
    if (page == nullptr) {
        return {};
    }
    const int number = page->shownEntry() + 1;
    switch (index) {
    case PageIndex::LimitValues:
        return {stepsOfEntry(EntryKind::LimitValue, number),
                m_parts.texts.text(Text::LimitValueShort) + u' ' + QString::number(number)};
    case PageIndex::SwitchPoints:
        return {stepsOfEntry(EntryKind::SwitchPoint, number),
                m_parts.texts.text(Text::Switchpoint) + u' ' + QString::number(number)};
    case PageIndex::Ip: {
        const QWidget *field = page->window()->focusWidget();
        const int channel = field != nullptr ? channelOfControl(field->objectName()) : 0;
        return channel == 0 ? Entry()
                            : Entry{stepsOfEntry(EntryKind::Channel, channel),
                                    namedChannel(channel, m_parts.document.configuration().names)};
    }
    default:
        return {};
    }
}

void ChangesOffer::showEntry()
{
    QAction *action = m_parts.menu.transmitEntry;
    const Entry entry = shownEntry();
    // Always enabled: its shortcut asks anew which entry is shown.
    action->setText(entry.name.isEmpty() ? tr("This entry") : tr("Only %1").arg(entry.name));
    action->setToolTip(tr("The module keeps the version it had, which then no longer fits"));
}

void ChangesOffer::transmitEntry()
{
    const Entry entry = shownEntry();
    if (entry.steps.none()) {
        Q_EMIT statusMessage(tr("Choose a limit value, a switch point or a field of an input first"));
        return;
    }
    m_parts.presenter.transmitSteps(entry.steps);
    Q_EMIT statusMessage(
        tr("Only %1 is transmitted: the module's version no longer fits what it holds").arg(entry.name));
}

} // namespace ktr
