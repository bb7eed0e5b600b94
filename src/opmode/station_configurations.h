#pragma once

#include "opmode/configured_inputs.h"
#include "opmode/station_links.h"
#include "platform/status.h"
#include "platform/timers.h"
#include "platform/worker_thread.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QSet>

#include <atomic>

namespace ktr {

/// The configuration file that belongs to a station, and what it says of the inputs.
struct StationConfiguration
{
    enum class Origin {
        None,        ///< no file is known, or the user wants none
        Found,       ///< it has the station's name as identifier
        Transmitted, ///< it was transmitted last to the station's address
        Chosen,      ///< by the user
    };

    Origin origin = Origin::None;
    QString file{};    ///< absolute; empty with None
    QString trouble{}; ///< why nothing is known of what is in it
    /// All that have the station's name as identifier, the one with the newest names first.
    QStringList candidates{};
    std::shared_ptr<const ConfiguredInputs> inputs{}; ///< null with None, and with a trouble

    // Empty ones where nothing is known:
    const ChannelNames &names() const; ///< with units
    QList<InputLimit> limitsOf(int channel) const;
    Measure measure(int channel) const;
    /// Whether the user has to say which one is meant before it is opened.
    bool isDoubtful() const { return origin == Origin::Found && candidates.size() > 1; }
};

/// Which configuration file is which station's: chosen by hand, else found by the identifier in it, in the
/// list's folder, in those of the files that were chosen, and in others; else the one that was transmitted
/// last to the station's address. What the files say is read on a thread, and again when they change.
class StationConfigurations : public QObject
{
    Q_OBJECT

public:
    static constexpr Milliseconds pauseBetweenLooks{30'000};
    static constexpr Milliseconds pauseAfterChange{
        200}; ///< a file is told of several times while it is written

    explicit StationConfigurations(Timers &timers, QObject *parent = nullptr);
    ~StationConfigurations() override;
    Q_DISABLE_COPY_MOVE(StationConfigurations)

    /// Begins with a list of stations, a file or the address of a record, whose choices are kept beside it.
    void open(const QString &list);
    /// Further folders with configurations.
    void setFolders(const QStringList &folders);
    /// What was transmitted last, a file for each address.
    void setTransmitted(const QHash<QString, QString> &files);
    /// Looks whether files have changed, without waiting for the system to tell. Nothing before open().
    void look();
    /// What of the user's choices cannot be read or understood, with the file's name; empty when all can.
    const QString &linksTrouble() const { return m_linksTrouble; }
    /// Whether all that was to be looked at has been.
    bool isSettled() const { return !m_isBusy && !m_isWanted; }

    /// Costs a few look-ups. Empty names give nothing.
    StationConfiguration of(const QString &station, const QString &address = {}) const;

    /// The user chooses a file; an empty one stands for none. After a failure nothing is changed.
    Status choose(const QString &station, const QString &file);
    /// Takes the choice back.
    Status forget(const QString &station);
    /// A choice goes with its station.
    void rename(const QString &before, const QString &now);

Q_SIGNALS:
    /// Another file is a station's, or what a file says has changed.
    void changed();
    /// linksTrouble() tells something else.
    void linksTroubleChanged();
    /// A line for the status bar.
    void statusMessage(const QString &line);

private:
    Status takeLinks();
    Status change(const std::function<void(StationLinks &)> &edit);
    void lookSoon();
    void begin();
    void take();
    void watch(const QStringList &folders);
    void sortByStation();

    QString m_list;
    QString m_linksFile;
    FileStamp m_linksOf; ///< when that was read
    StationLinks m_links;
    QString m_linksTrouble;
    QStringList m_folders;
    QHash<QString, QString> m_transmitted;
    ConfigurationFiles::Files m_found;
    QHash<QString, QStringList> m_byStation; ///< the paths, by identifier
    QSet<QString> m_asked;                   ///< files that the thread looks at, in folders or not
    QSet<QString> m_lookedAt;                ///< the same of the look before
    QFileSystemWatcher m_watcher;
    std::unique_ptr<OneShotTimer> m_next;
    bool m_isWanted = false;
    bool m_isBusy = false;
    std::atomic<bool> m_isEnding = false;
    // The thread's while it works:
    ConfigurationFiles m_files;
    ConfigurationFiles::Files m_read;
    WorkerThread m_thread; // the last: it uses the others
};

} // namespace ktr
