#include "opmode/leased_line.h"

#include <QCoreApplication>

namespace ktr {

LeasedLine::LeasedLine(std::unique_ptr<StationLine> line, May may)
    : m_line(std::move(line)), m_may(std::move(may))
{
    m_line->setListener(this);
}

Status LeasedLine::open(const QString &hostAddress)
{
    return m_may.begin()
               ? m_line->open(hostAddress)
               : Status::failed(QCoreApplication::translate("StationLine", "another keeper may have it"));
}

void LeasedLine::send(const QByteArray &datagram)
{
    if (m_may.answer()) {
        m_line->send(datagram);
    }
}

/// What came before and was not answered, the module says again to whoever talks to it now.
void LeasedLine::DataArrival(const QByteArray &data)
{
    if (m_listener != nullptr && m_may.answer()) {
        m_listener->DataArrival(data);
    }
}

void LeasedLine::socket_SendComplete()
{
    if (m_listener != nullptr) {
        m_listener->socket_SendComplete();
    }
}

void LeasedLine::lineTrouble(const QString &text)
{
    if (m_listener != nullptr) {
        m_listener->lineTrouble(text);
    }
}

void LeasedLine::linesLost(const DatagramLoss &loss)
{
    if (m_listener != nullptr) {
        m_listener->linesLost(loss);
    }
}

} // namespace ktr
