#include "opmode/keeper_beat.h"

namespace ktr {

KeeperBeat::KeeperBeat(const ListParts &parts) : m_parts(parts), m_timer(parts.timers.create()) {}

void KeeperBeat::start()
{
    beat();
}

void KeeperBeat::stop()
{
    m_timer->stop();
}

/// None waits for a disk that refuses it: they would pile up.
void KeeperBeat::beat()
{
    m_timer->start(period, [this] { beat(); });
    if (!m_parts.record.isOpen() || m_parts.record.writer().isFailing()) {
        return;
    }
    const qint64 now = m_parts.moment();
    QString text = QString::number(now);
    m_parts.stations.forEach([&](const cStation &station) {
        if (station.lastHeard() != 0) {
            text += u' ' + QString::number(m_parts.record.number(station.kennung())) + u':' +
                    QString::number(now - station.lastHeard());
        }
    });
    m_parts.record.add(SettingRow{beatSetting(), text});
}

QString beatSetting()
{
    return QStringLiteral("beat");
}

QHash<qint64, qint64> heardBy(QStringView beat)
{
    QHash<qint64, qint64> heard;
    qint64 at = 0;
    for (const QStringView part : beat.tokenize(u' ')) {
        const qsizetype colon = part.indexOf(u':');
        if (colon < 0) {
            at = part.toLongLong();
        } else {
            heard.insert(part.first(colon).toLongLong(), at - part.sliced(colon + 1).toLongLong());
        }
    }
    return heard;
}

} // namespace ktr
