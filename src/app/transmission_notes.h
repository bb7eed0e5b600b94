#pragma once

#include "link/module_link.h"
#include "transmissions/single_commands.h"
#include "transmissions/transmission_keeper.h"
#include "transmissions/transmission_look.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>

namespace ktr {

class Document;
class NeighbourWatch;

/// Remembers what the main window transmits. Neither the transmission nor the window waits for that; what
/// goes wrong is told in the status bar.
class TransmissionNotes : public QObject
{
    Q_OBJECT

public:
    /// What the module told over the line in use; nothing while it told nothing.
    using ToldVersion = std::function<std::optional<QString>()>;

    /// All of them must outlive this.
    /// `operatorName` gives who works here.
    TransmissionNotes(ModuleLink &link, const Document &document, const NeighbourWatch &neighbours,
                      ToldVersion told, std::function<QString()> operatorName);

    /// The record on a server that the command line names.
    void setRecord(const QString &record);

    TransmissionMemory &memory() { return m_memory; }
    /// For how many years transmissions are kept; 0: for ever.
    void setYears(int years);

    /// Looks at what a transmission of the document over the line in use would do to a module of this
    /// version, and hands that on: at once, or when the memory has answered, which is waited for half a
    /// second. Only the newest look is handed on.
    void look(const std::optional<QString> &version, std::function<void(const TransmissionLook &)> looked);

    /// The transmission that runs, or the last one.
    const RememberedTransmission &last() const { return m_keeper.transmission(); }

Q_SIGNALS:
    /// What must not be overlooked: the memory was damaged.
    void noticed(const QString &text);
    /// A line for the status bar.
    void statusMessage(const QString &line);

private:
    void begin();
    void tellDamage(const QStringList &told);
    void usePresentPlace();
    void thinOut();

    static constexpr std::chrono::milliseconds longestLook{500};

    ModuleLink &m_link;
    const Document &m_document;
    const NeighbourWatch &m_neighbours;
    ToldVersion m_told;
    std::function<QString()> m_operator;
    QString m_record;
    TransmissionMemory m_memory;
    TransmissionKeeper m_keeper;
    SingleCommandKeeper m_singles;
    std::unique_ptr<QObject> m_look; ///< asks for the newest look
};

} // namespace ktr
