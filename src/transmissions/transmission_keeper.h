#pragma once

#include "config/configuration.h"
#include "link/module_session.h"
#include "transmissions/transmission_memory.h"

#include <QObject>

namespace ktr {

/// What the record says of a transmission that ended like this.
TransmissionVerdict verdictOf(const TransmissionReport &report);

/// Remembers a transmission from its first to its last command, for the main window and for ktrcli alike.
/// After each command the memory is given its newest state, so that one whose program was ended in the middle
/// is there as far as it came.
class TransmissionKeeper : public QObject
{
    Q_OBJECT

public:
    /// What the conversation itself does not tell.
    struct About
    {
        QString file{};                         ///< of the configuration; empty where it was never saved
        QString line{};                         ///< the port, or the module's address
        QString operatorName{};                 ///< who is on duty; empty where that is not known
        std::optional<QString> versionBefore{}; ///< what the module told over this line already
        qint64 basedOn = 0; ///< the number of the transmission from which only the differences are sent
        int firstStep = steps::first;
        bool answers = false;
    };

    /// The memory must outlive it.
    TransmissionKeeper(TransmissionMemory &memory, Environment environment, QObject *parent = nullptr);

    /// A transmission begins on this session. The configuration must outlive it: the sequence of commands may
    /// change it.
    void begin(const ModuleSession &session, const Configuration &configuration, const About &about);
    /// One that had ended early goes on; nothing else was begun since.
    void goOn();
    /// It has ended; may be told again, when the line broke behind it.
    void end();

    /// What was begun last, as far as it is known.
    const RememberedTransmission &transmission() const { return m_transmission; }

private:
    void noteStep(int step, const QString &command, bool isSent);
    void noteReply(const ModemDialogue::Reply &reply);
    void noteConfiguration();
    void keep();

    TransmissionMemory &m_memory;
    Environment m_environment;
    const ModuleSession *m_session = nullptr;
    const Configuration *m_configuration = nullptr;
    RememberedTransmission m_transmission;
    QDateTime m_begun;
    bool m_isRunning = false;
};

} // namespace ktr
