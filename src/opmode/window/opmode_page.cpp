#include "opmode/window/opmode_page.h"

namespace ktr {

OpmodePage::OpmodePage(OperationalMode &mode, const TextTable &texts, QWidget *parent)
    : QWidget(parent), m_mode(mode), m_texts(texts)
{}

void OpmodePage::showStation(const QString &kennung)
{
    m_kennung = m_mode.station(kennung) == nullptr ? QString() : kennung;
    stationChosen();
}

} // namespace ktr
