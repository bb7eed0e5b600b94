#pragma once

#include "platform/environment.h"
#include "platform/timers.h"

#include <QDateTime>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace ktr {

/// Changes that cannot be written at the moment, and that a crash would lose.
struct UnkeptChanges
{
    QString reason;
    QDateTime since;
    quint64 count;
};

/// What keeps changes from being written to the record, and since when.
class KeepingTrouble : public QObject
{
    Q_OBJECT

public:
    /// `waiting` gives how many changes wait to be written. What is handed over must outlive it.
    KeepingTrouble(Timers &timers, const Environment &environment, std::function<quint64()> waiting,
                   QObject *parent = nullptr);
    ~KeepingTrouble() override;

    /// The reason, or an empty text when all can be written. A line for the status bar is told once at the
    /// beginning and once at the end, also when the reason changes in between.
    void set(const QString &reason);
    /// The list was closed: nothing is said of the end.
    void clear();
    const QString &reason() const { return m_reason; }
    std::optional<UnkeptChanges> unkept() const;

Q_SIGNALS:
    void statusMessage(const QString &line);
    /// While there is trouble again each second, since changes are added all the time.
    void changed();

private:
    void tell();

    const Environment &m_environment;
    std::function<quint64()> m_waiting;
    std::unique_ptr<OneShotTimer> m_tellAgain;
    QString m_reason;
    QDateTime m_since;
};

} // namespace ktr
