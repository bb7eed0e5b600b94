#pragma once

#include "cli/arguments.h"
#include "link/changes.h"
#include "link/module_session.h"
#include "transmissions/transmission_memory.h"

#include <functional>

namespace ktr::cli {

/// What `transmit` may leave out: the options --changes and --changes-from.
///
///     --changes-from FROM: the module has to tell the version of FROM
///     --changes: it is asked for its version, and the memory for what was transmitted with that
class ChangesBasis
{
public:
    static void addOptions(Arguments &arguments);
    /// Complains about wrong usage and returns the exit code.
    static std::optional<int> check(const Arguments &arguments);

    /// All of them must outlive this.
    ChangesBasis(const Arguments &arguments, const Configuration &wanted, bool answer,
                 const Environment &environment, TransmissionMemory &memory);

    /// Reads FROM; false after a complaint.
    bool load();

    /// Whether it is known what has to be sent; everything, where neither option is given.
    bool isReady() const { return m_isReady; }
    /// The module reads: asks it for its version where that is needed. Calls `ready` once it is known what
    /// has to be sent, and `refused` with the reason where nothing proves what the module holds.
    void ask(ModuleSession &session, std::function<void()> ready,
             std::function<void(const QString &why)> refused);

    /// Leaves out what the module holds.
    void apply(Transmission &transmission) const;
    /// The number of the transmission that the module had proved to hold; 0 for none.
    qint64 basedOn() const { return m_basedOn; }

private:
    void hear(const ModuleDialogue::Reply &reply);
    void look(const QString &version);
    void prepare(const Changes &changes, const QString &version);
    CommandContext context() const;

    QString m_from; ///< the file's name; empty for none
    bool m_asks;
    const Configuration &m_wanted;
    bool m_answer;
    const Environment &m_environment;
    TransmissionMemory &m_memory;
    QObject m_asker; ///< ends what is connected and asked with this
    std::function<void()> m_ready;
    std::function<void(const QString &)> m_refused;
    int m_questions = 0;
    bool m_isLooking = false;
    bool m_isReady;
    std::optional<StepSet> m_leftOut;
    QString m_version;
    qint64 m_basedOn = 0;
};

} // namespace ktr::cli
