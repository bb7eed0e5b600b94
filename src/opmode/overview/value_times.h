#pragma once

#include "config/channels.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>

#include <array>
#include <memory>

namespace ktr {

class OperationalMode;
class RecordQueries;

/// When the input values that are shown came: those of this run, and those of before as the record has them.
/// It is asked on a thread, for stations that somebody wants to know it of.
class ValueTimes : public QObject
{
    Q_OBJECT

public:
    /// In s since 1970, by channel; 0: not known.
    using Times = std::array<quint32, channelCount>;

    explicit ValueTimes(const OperationalMode &mode, QObject *parent = nullptr);
    ~ValueTimes() override;
    Q_DISABLE_COPY_MOVE(ValueTimes)

    /// Of a channel 1 to 18, in ms since 1970, UTC; 0 when it is not known, or not yet.
    qint64 of(const QString &kennung, int channel) const;

Q_SIGNALS:
    /// More is known.
    void found();

private:
    void ask();
    void forget();

    const OperationalMode &m_mode;
    QHash<QString, Times> m_before; ///< of before this run
    mutable QSet<QString> m_wanted;
    mutable QTimer m_soon;
    QString m_record; ///< that is asked
    std::unique_ptr<RecordQueries> m_queries;
};

} // namespace ktr
