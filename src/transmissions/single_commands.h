#pragma once

#include "link/module_session.h"
#include "transmissions/transmission_memory.h"

#include <QObject>

#include <functional>

namespace ktr {

/// Whether a module that is given this command may hold something else than was transmitted to it. What is
/// not known counts as such.
bool mayChangeConfiguration(const QString &command);

/// Remembers the commands that a user sends one at a time and that may change what a module holds: what was
/// transmitted to it before is no proof any more.
class SingleCommandKeeper : public QObject
{
    Q_OBJECT

public:
    /// What the conversation itself does not tell.
    struct About
    {
        QString line{};                   ///< the port, or the module's address
        QString operatorName{};           ///< who is on duty; empty where that is not known
        std::optional<QString> version{}; ///< what the module told over this line
    };

    /// The memory must outlive it.
    SingleCommandKeeper(TransmissionMemory &memory, Environment environment, QObject *parent = nullptr);

    /// Notes what leaves over this session, which must outlive it. `about` is asked at each command.
    void watch(const ModuleSession &session, std::function<About()> about);

private:
    void note(const ModuleSession &session, const QString &command, const About &about);
    void noteReply(const ModuleSession &session, const ModemDialogue::Reply &reply);

    TransmissionMemory &m_memory;
    Environment m_environment;
    const ModuleSession *m_session = nullptr; ///< over which the last one left
    QString m_command;                        ///< the last one, while it is not answered
    RememberedTransmission m_noted;
};

} // namespace ktr
