#include "app/operational_mode_opener.h"

#include "app/file_dialogs.h"
#include "app/fleet/fleet_window.h"
#include "opmode/watch_summary.h"
#include "opmode/window/form_betriebsmodus.h"
#include "platform/settings_store.h"
#include "record/record_address.h"
#include "transmissions/fleet_look.h"
#include "transmissions/transmission_memory.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace ktr {

namespace {

const QString recordKey = QStringLiteral("record");

/// The place, or one near it where the whole window is visible.
QPoint onScreen(const QPoint &place, const QWidget &window)
{
    constexpr QSize frame(16, 56); // what the window manager puts around it, at most
    const QRect available = window.screen()->availableGeometry();
    const QSize rest = (available.size() - window.size() - frame).expandedTo({0, 0});
    const QRect fitting(available.topLeft(), rest + QSize(1, 1));
    return {std::clamp(place.x(), fitting.left(), fitting.right()),
            std::clamp(place.y(), fitting.top(), fitting.bottom())};
}

} // namespace

OperationalModeOpener::OperationalModeOpener(const OperationalMode::Services &services,
                                             const TextTable &texts)
    : m_services(services), m_texts(texts)
{
    m_services.diskRoom = &systemDiskRoom;
}

OperationalModeOpener::~OperationalModeOpener() = default;

void OperationalModeOpener::lookForConfigurations(const QStringList &folders)
{
    m_folders = folders;
    if (m_mode != nullptr) {
        m_mode->configurations().setFolders(folders);
        m_mode->configurations().look();
        askWhatWasTransmitted();
    }
}

void OperationalModeOpener::askWhatWasTransmitted()
{
    if (m_memory == nullptr || !m_memory->isThere()) {
        return;
    }
    using Files = QHash<QString, QString>;
    m_memory->ask<Files>(
        m_mode.get(), &filesByLine, [](const Status &) { return Files(); },
        [this](const Files &files) { m_mode->configurations().setTransmitted(files); });
}

void OperationalModeOpener::open(const std::optional<QPoint> &place,
                                 const QList<StationCaptions> &otherLanguages)
{
    if (m_mode == nullptr) {
        m_mode = std::make_unique<OperationalMode>(m_services, stationCaptions(m_texts));
        for (const StationCaptions &captions : otherLanguages) {
            m_mode->tree().knowCaptions(captions);
        }
        const Environment &environment = m_services.environment;
        m_window = std::make_unique<Form_betriebsmodus>(
            *m_mode, m_texts,
            Form_betriebsmodus::Services{m_services.timers, environment.locale,
                                         [this](const QString &proposal, const QString &filter) {
                                             return m_files->askSave(proposal, filter);
                                         },
                                         [this](const QString &filter) { return m_files->askOpen(filter); },
                                         !fixedRecord().isEmpty()});
        m_window->setLocale(QLocale()); // names are sorted by the system's, numbers shown by the language's
        m_files = std::make_unique<FileDialogs>(m_window.get(), environment.programFolder);
        connectWindow();
        Q_EMIT windowMade(*m_window);
        connect(&m_mode->configurations(), &StationConfigurations::changed, m_window.get(),
                &Form_betriebsmodus::applyTexts);
        m_mode->configurations().setFolders(m_folders);
        if (place) {
            m_window->move(onScreen(*place, *m_window));
        }
        m_window->show();
        openPlace(record());
    }
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

/// If the program folder cannot be written, the first run starts with the list in it.
QString OperationalModeOpener::nodesPath() const
{
    const QString name = QStringLiteral("nodes.xml");
    QString own = joinPath(m_services.environment.programFolder, name);
    const QString delivered = deliveredFile(name);
    if (!QFileInfo::exists(own) && QFileInfo(delivered).isFile()) {
        QFile::copy(delivered, own);
        QFile::setPermissions(own, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    }
    return own;
}

QStringList OperationalModeOpener::facts() const
{
    const auto size = [](const QString &path) -> QString {
        const QFileInfo file(path);
        return path +
               (file.exists() ? QStringLiteral(", %1 bytes").arg(file.size()) : QStringLiteral(", none"));
    };
    const QString address = record();
    const QString list = joinPath(m_services.environment.programFolder, QStringLiteral("nodes.xml"));
    QStringList facts{QStringLiteral("List of stations: ") + (address.isEmpty() ? size(list) : address)};
    if (m_mode == nullptr) {
        return facts << QStringLiteral("Operational mode: not open");
    }
    if (address.isEmpty()) {
        facts += QStringLiteral("Record: ") + size(m_mode->recordPath());
    }
    const WatchSummary summary = summaryOf(*m_mode);
    facts += QStringLiteral("Stations: %1, alive %2, silent %3, not heard yet %4, offline %5")
                 .arg(summary.stations())
                 .arg(summary.alive)
                 .arg(summary.silent)
                 .arg(summary.unheard)
                 .arg(summary.offline);
    facts += QStringLiteral("Notifications that wait: %1").arg(m_mode->tree().alarmCount());
    if (!m_mode->keeper().isEmpty()) {
        facts += QStringLiteral("Watched by: ") + m_mode->keeper();
    }
    return facts << m_mode->defects();
}

QString OperationalModeOpener::fixedRecord() const
{
    return m_record.isEmpty() ? qEnvironmentVariable(recordVariable) : m_record;
}

/// The address of the record with the stations; empty: they are in the list of this computer.
QString OperationalModeOpener::record() const
{
    const QString fixed = fixedRecord();
    return fixed.isEmpty()
               ? SettingsStore().GetSetting(settingsOwner, settings_sections::operationalMode, recordKey)
               : fixed;
}

void OperationalModeOpener::openPlace(const QString &record)
{
    if (record.isEmpty()) {
        m_window->open(nodesPath());
    } else {
        m_window->openAt(record);
    }
    m_mode->configurations().open(record.isEmpty() ? nodesPath() : record);
    askWhatWasTransmitted();
}

void OperationalModeOpener::changePlace(const QString &address)
{
    const bool isKept =
        SettingsStore().SaveSetting(settingsOwner, settings_sections::operationalMode, recordKey, address);
    openPlace(address);
    if (!isKept) {
        m_window->tell(tr("Where the stations are could not be kept for the next start"));
    }
}

void OperationalModeOpener::connectWindow()
{
    connect(m_window.get(), &Form_betriebsmodus::placeWanted, this, &OperationalModeOpener::changePlace);
    connect(m_window.get(), &Form_betriebsmodus::configurationWanted, this,
            &OperationalModeOpener::configure);
    connect(m_window.get(), &Form_betriebsmodus::fleetWanted, this, &OperationalModeOpener::showFleet);
    // Not from inside the window's own event.
    const auto endAndTell = [this](int stationsWithoutWatch) {
        end();
        Q_EMIT closed(stationsWithoutWatch);
    };
    connect(m_window.get(), &Form_betriebsmodus::closed, this, endAndTell, Qt::QueuedConnection);
}

void OperationalModeOpener::configure(const QString &hostAddress, const QString &kennung)
{
    const StationConfiguration configuration = m_mode->configuration(kennung);
    QString file = configuration.inputs == nullptr ? QString() : configuration.file;
    if (configuration.isDoubtful() && !askWhichFile(file, configuration.candidates)) {
        return;
    }
    if (!configuration.trouble.isEmpty()) {
        tell(configuration.file + QLatin1String(": ") + configuration.trouble);
    }
    Q_EMIT configurationWanted(hostAddress, file);
}

/// False when the user changed his mind. The window does not go meanwhile.
bool OperationalModeOpener::askWhichFile(QString &file, const QStringList &files)
{
    QStringList items;
    for (const QString &each : files) {
        items += QDir::toNativeSeparators(each);
    }
    const QString none = tr("None: leave open what is");
    items += none;
    QInputDialog dialog(m_window.get());
    dialog.setObjectName(QStringLiteral("Dlg_which_configuration"));
    dialog.setWindowTitle(m_texts.text(Text::ConfigurationMode));
    dialog.setLabelText(tr("Several files have the station's identifier. Which one is to be opened?"));
    dialog.setOption(QInputDialog::UseListViewForComboBoxItems);
    dialog.setComboBoxItems(items);
    dialog.setTextValue(items.first());
    dialog.setOkButtonText(m_texts.text(Text::Ok));
    dialog.setCancelButtonText(m_texts.text(Text::Cancel));
    const QPointer<QWidget> stillThere(m_window.get());
    if (dialog.exec() != QDialog::Accepted || !stillThere) {
        return false;
    }
    const qsizetype chosen = items.indexOf(dialog.textValue());
    file = files.value(chosen);
    return true;
}

void OperationalModeOpener::end()
{
    m_lastOperator = operatorName();
    m_fleet.reset();
    m_window.reset();
    m_mode.reset();
}

bool OperationalModeOpener::close(Asking asking)
{
    if (m_window != nullptr) {
        if (asking == Asking::Asks && !m_window->isBusy() && !m_window->mayEndWatching()) {
            return false; // before anything of it ends
        }
        m_window->disconnect(this); // the main window must not take its place
        m_window->hold(false);
        m_window->setAsksBeforeEnd(false);
        m_fleet.reset();
        if (!m_window->close()) {
            m_window->setAsksBeforeEnd(true);
            connectWindow();
            return false;
        }
        end();
    }
    return true;
}

QWidget *OperationalModeOpener::window() const
{
    return m_window.get();
}

bool OperationalModeOpener::isBusy() const
{
    return m_window != nullptr && m_window->isBusy();
}

bool OperationalModeOpener::mayTakeBack(const QWidget &question) const
{
    const QWidget *asker = &question;
    while (asker->parentWidget() != nullptr) {
        asker = asker->parentWidget();
    }
    const bool isOutside =
        m_files != nullptr && m_files->isBusy() && qobject_cast<const QFileDialog *>(&question) == nullptr;
    return asker == m_window.get() && !isOutside;
}

void OperationalModeOpener::setFleetMeans(IoThread &io, TransmissionMemory &memory)
{
    m_io = &io;
    m_memory = &memory;
}

bool OperationalModeOpener::isTransmitting() const
{
    return m_fleet != nullptr && m_fleet->isRunning();
}

/// One that is open comes to the front as it is.
void OperationalModeOpener::showFleet(const QStringList &stations)
{
    if (m_io == nullptr) {
        return;
    }
    if (m_fleet == nullptr || !m_fleet->isVisible()) {
        const auto askFolder = [this](const QString &present) {
            return QFileDialog::getExistingDirectory(m_fleet.get(), tr("Choose a folder"), present);
        };
        m_fleet = std::make_unique<FleetWindow>(
            FleetWindow::Services{
                {*m_mode, *m_memory, *m_io, m_services.timers, m_services.environment, m_texts},
                [this](const QString &proposal, const QString &filter) {
                    return m_files->askSave(proposal, filter);
                },
                [this](const QString &filter) { return m_files->askOpen(filter); },
                askFolder},
            stations);
        m_fleet->setLocale(m_window->locale());
        connect(m_fleet.get(), &FleetWindow::runningChanged, m_window.get(), &Form_betriebsmodus::hold);
    }
    m_fleet->show();
    m_fleet->raise();
    m_fleet->activateWindow();
}

void OperationalModeOpener::applyTexts()
{
    if (m_fleet != nullptr) {
        m_fleet->applyTexts();
    }
    if (m_window != nullptr) {
        m_window->applyTexts();
    }
}

void OperationalModeOpener::tell(const QString &line)
{
    if (m_window != nullptr) {
        m_window->tell(line);
    }
}

QString OperationalModeOpener::stationAt(const QString &hostAddress) const
{
    const QString kennung = m_mode == nullptr ? QString() : m_mode->stationAt(hostAddress);
    return kennung.isEmpty() ? QString() : m_mode->tree().find(kennung).data().toString();
}

QString OperationalModeOpener::operatorName() const
{
    return m_mode != nullptr ? m_mode->operatorName() : m_lastOperator;
}

void OperationalModeOpener::lend(const QString &hostAddress)
{
    if (m_mode != nullptr) {
        m_lent = m_mode->stationAt(hostAddress);
        m_mode->lend(m_lent);
    }
}

void OperationalModeOpener::takeBack()
{
    if (m_mode != nullptr) {
        m_mode->takeBack(std::exchange(m_lent, {}));
    }
}

} // namespace ktr
