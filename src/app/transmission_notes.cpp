#include "app/transmission_notes.h"

#include "app/neighbour_watch.h"
#include "app/transmissions_window.h"
#include "config/document.h"
#include "record/record_address.h"
#include "transmissions/memory_place.h"

#include <utility>

namespace ktr {

TransmissionNotes::TransmissionNotes(ModuleLink &link, const Document &document,
                                     const NeighbourWatch &neighbours, ToldVersion told,
                                     std::function<QString()> operatorName)
    : m_link(link),
      m_document(document),
      m_neighbours(neighbours),
      m_told(std::move(told)),
      m_operator(std::move(operatorName)),
      m_memory(transmissionsPlace({}, document.environment())),
      m_keeper(m_memory, document.environment()),
      m_singles(m_memory, document.environment())
{
    for (const ModuleSession *session : m_link.line().sessions()) {
        m_singles.watch(*session, [this] {
            usePresentPlace();
            return SingleCommandKeeper::About{m_link.line().port(), m_operator(), m_told()};
        });
    }
    const Transmitter &transmitter = m_link.transmitter();
    connect(&transmitter, &Transmitter::started, this, &TransmissionNotes::begin);
    connect(&transmitter, &Transmitter::ended, &m_keeper, &TransmissionKeeper::end);
    connect(&transmitter, &Transmitter::ended, this, &TransmissionNotes::thinOut);
    m_memory.setWaitingFile(waitingTransmissionsPlace(document.environment()));
    connect(&m_memory, &TransmissionMemory::postponed, this, [this](const QString &file, const QString &why) {
        Q_EMIT statusMessage(
            tr("The transmission is kept in %1 until the server can be reached: %2").arg(file, why));
    });
    connect(&m_memory, &TransmissionMemory::handedOver, this, [this](int count) {
        Q_EMIT statusMessage(
            tr("Transmissions that waited for the server and are remembered now: %1").arg(count));
    });
    connect(&m_memory, &TransmissionMemory::mended, this, &TransmissionNotes::tellDamage);
    connect(&m_memory, &TransmissionMemory::troubled, this, [this](const QString &why) {
        Q_EMIT statusMessage(why.isEmpty() ? tr("The transmission is remembered now")
                                           : tr("The transmission is not remembered: %1").arg(why));
    });
}

/// Of the memory, which every window of this program asks.
void TransmissionNotes::tellDamage(const QStringList &told)
{
    Q_EMIT noticed(tr("The memory of transmissions:") + u'\n' + told.join(u'\n'));
}

void TransmissionNotes::setRecord(const QString &record)
{
    m_record = record;
    m_memory.setPlace(transmissionsPlace(m_record, m_document.environment()));
}

void TransmissionNotes::setYears(int years)
{
    if (!setTransmissionYears(years)) {
        Q_EMIT statusMessage(tr("The settings cannot be written"));
        return;
    }
    thinOut();
}

/// Of the user's own file alone: what is on a server is its administrator's.
void TransmissionNotes::thinOut()
{
    const int years = transmissionYears();
    if (years == 0 || !m_memory.isThere() || isServerAddress(m_memory.place())) {
        return;
    }
    const qint64 before = m_document.environment().now().addYears(-years).toMSecsSinceEpoch();
    struct Thinned
    {
        Status status = Status::done();
        qint64 removed = 0;
    };
    m_memory.ask<Thinned>(
        this,
        [before](TransmissionTable &table) {
            Thinned thinned;
            thinned.status = table.thin(before, thinned.removed);
            return thinned;
        },
        [](const Status &why) { return Thinned{why}; },
        [this](const Thinned &thinned) {
            if (!thinned.status || thinned.removed > 0) {
                Q_EMIT statusMessage(thinned.status ? tr("Old transmissions removed: %1").arg(thinned.removed)
                                                    : thinned.status.message());
            }
        });
}

void TransmissionNotes::look(const std::optional<QString> &version,
                             std::function<void(const TransmissionLook &)> looked)
{
    const Environment &environment = m_document.environment();
    TransmissionLook known = lookAt(m_document.configuration(),
                                    {false, environment.locale, environment.now()}, m_neighbours.found());
    const ModuleLine &line = m_link.line();
    known.line = line.port();
    known.isAddress = line.kind() != ModuleLine::Kind::Serial;
    known.moduleVersion = version;
    m_look = std::make_unique<QObject>();
    if (!m_memory.isThere()) {
        looked(known);
        return;
    }
    const QObject *const asker = m_look.get();
    const auto handOn = [this, asker, looked = std::move(looked)](const TransmissionLook &look) {
        if (m_look.get() == asker) {
            m_look.release()->deleteLater(); // nothing further arrives for it
            looked(look);
        }
    };
    QTimer::singleShot(longestLook, m_look.get(), [known, handOn] { handOn(known); });
    m_memory.ask<TransmissionLook>(
        m_look.get(), [known](TransmissionTable &table) { return withMemory(known, table); },
        [known](const Status &) { return known; }, handOn);
}

/// The settings may have changed.
void TransmissionNotes::usePresentPlace()
{
    m_memory.setPlace(transmissionsPlace(m_record, m_document.environment()));
}

void TransmissionNotes::begin()
{
    Transmitter &transmitter = m_link.transmitter();
    const TransmissionReport &report = transmitter.report();
    if (report.sent + report.refused.size() > 0) { // it goes on where it broke off
        m_keeper.goOn();
        return;
    }
    usePresentPlace();
    m_keeper.begin(m_link.line().session(), transmitter.transmitted(),
                   {.file = m_document.source(),
                    .line = m_link.line().port(),
                    .operatorName = m_operator(),
                    .versionBefore = m_told(),
                    .basedOn = m_link.line().session().transmission().basis(),
                    .answers = m_link.line().session().transmission().isAnswering()});
}

} // namespace ktr
