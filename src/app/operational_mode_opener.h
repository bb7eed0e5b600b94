#pragma once

#include "lang/text_table.h"
#include "opmode/operational_mode.h"

#include <QMainWindow>
#include <QPointer>

namespace ktr {

class FileDialogs;
class FleetWindow;
class Form_betriebsmodus;
class IoThread;
class TransmissionMemory;

/// Opens and closes the operational mode for the main window. Lends a station to the main window while its
/// module is configured there.
class OperationalModeOpener : public QObject
{
    Q_OBJECT

public:
    OperationalModeOpener(const OperationalMode::Services &services, const TextTable &texts);
    ~OperationalModeOpener() override;

    /// The stations are those of a record on a server in this run. Empty: of the variable KTR_RECORD, else of
    /// what the user chose last, else of the list of this computer.
    void setRecord(const QString &address) { m_record = address; }
    /// What transmits to several stations uses; both must outlive this.
    void setFleetMeans(IoThread &io, TransmissionMemory &memory);
    /// Shows the window at a place of the screen, or without one where it was last, and loads the stations,
    /// unless they are loaded. Their file may have been written in another language.
    void open(const std::optional<QPoint> &place, const QList<StationCaptions> &otherLanguages);
    /// Whether closing asks first, or goes on without: see Form_betriebsmodus::setAsksBeforeEnd().
    enum class Asking { Asks, Agreed };
    /// False when the window refuses to close. Transmissions to several stations end.
    bool close(Asking asking);
    bool isOpen() const { return m_mode != nullptr; }
    /// Whether stations are being transmitted to.
    bool isTransmitting() const;
    /// Null when it is not open.
    QWidget *window() const;
    /// Whether the window refuses to close now, since it asks for something.
    bool isBusy() const;
    /// Whether it is a question of this window. Stations are mostly watched with nobody there to answer; a
    /// dialog of the helper program that asks for a file stays.
    bool mayTakeBack(const QWidget &question) const;
    void applyTexts();
    /// Looks for the stations' configurations in these folders, too.
    void lookForConfigurations(const QStringList &folders);
    /// A line for the status bar of the window, if it is open.
    void tell(const QString &line);

    /// The name of the station that is kept online at an address; empty when there is none.
    QString stationAt(const QString &hostAddress) const;
    /// Where the stations are, how many, how large and by whom they are watched: lines for a report.
    QStringList facts() const;
    /// Who is on duty, or was when it was closed; empty where nobody said so.
    QString operatorName() const;
    /// Takes that station offline until takeBack().
    void lend(const QString &hostAddress);
    /// Takes the lent station online again.
    void takeBack();

Q_SIGNALS:
    /// By the user; nobody watches so many of its stations any more.
    void closed(int stationsWithoutWatch);
    /// Its window was made and has its menus.
    void windowMade(QMainWindow &window);
    /// `file` is the station's configuration file; empty where none is known.
    void configurationWanted(const QString &hostAddress, const QString &file);

private:
    QString nodesPath() const;
    QString fixedRecord() const;
    QString record() const;
    void openPlace(const QString &record);
    void askWhatWasTransmitted();
    void changePlace(const QString &address);
    void configure(const QString &hostAddress, const QString &kennung);
    bool askWhichFile(QString &file, const QStringList &files);
    void showFleet(const QStringList &stations);
    void connectWindow();
    void end();

    OperationalMode::Services m_services;
    const TextTable &m_texts;
    QString m_record; ///< of the command line
    QString m_lastOperator;
    QStringList m_folders; ///< with configurations
    std::unique_ptr<OperationalMode> m_mode;
    std::unique_ptr<FileDialogs> m_files;
    IoThread *m_io = nullptr;
    TransmissionMemory *m_memory = nullptr;
    QString m_lent;                               ///< the station of the main window's line
    std::unique_ptr<Form_betriebsmodus> m_window; ///< goes before what it shows
    std::unique_ptr<FleetWindow> m_fleet;         ///< goes first
};

} // namespace ktr
