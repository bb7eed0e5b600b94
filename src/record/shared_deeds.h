#pragma once

#include "platform/status.h"
#include "platform/worker_thread.h"
#include "record/record_database.h"
#include "record/record_rows.h"

#include <QObject>

#include <optional>
#include <vector>

namespace ktr {

/// What is done for all keepers of a server's record at once, by whichever of them comes first.
struct SharedDeed
{
    qint64 request = 0; ///< that is answered by it
    qint64 at = 0;
    QString operatorName{};
    QString refusal{}; ///< why it is not done
    /// A station to be added to the list, without a number; the name becomes "name (1)" where one has it.
    std::optional<StationRow> station{};
    std::optional<SettingRow> setting{};
    std::optional<EventRow> note{};
};

/// Does it in one transaction with the answer, unless the request has one by now.
Status carryOutOnce(RecordDatabase &database, const SharedDeed &deed);

/// The same on a thread of its own. What cannot be done is left to the other keepers.
class SharedDeeds
{
public:
    explicit SharedDeeds(QString address) : m_address(std::move(address)) {}
    /// Waits for what is being done, but not for a server that does not answer.
    ~SharedDeeds();
    Q_DISABLE_COPY_MOVE(SharedDeeds)

    void carryOut(SharedDeed deed);

private:
    void begin();

    QString m_address;
    std::vector<SharedDeed> m_waiting;
    bool m_isBusy = false;
    std::vector<SharedDeed> m_inHand; ///< while busy the thread's alone
    RecordDatabase m_database;        ///< likewise
    QObject m_receiver;
    WorkerThread m_thread;
};

} // namespace ktr
