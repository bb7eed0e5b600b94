#include "config/channels.h"

#include <algorithm>
#include <array>

namespace ktr {

namespace {

constexpr std::array<const char16_t *, channelCount + 1> channelTexts = {
    u"ungültig",       u"1 DigIn 1",      u"2 DigIn 2",    u"3 DigIn 3",      u"4 DigIn 4",
    u"5 DigIn 5",      u"6 DigIn 6",      u"7 DigIn 7",    u"8 DigIn 8",      u"9 AnalogIn 1",
    u"10 Analog In 2", u"11 DigOut 1",    u"12 DigOut 2",  u"13 AnalogOut 1", u"14 AnalogOut 2",
    u"15 BStZ DOut 1", u"16 BStZ DOut 2", u"17 PT 1000 1", u"18 PT 1000 2"};

struct Target
{
    const char16_t *text;
    int code; ///< an output's channel, or 64 + the administrator's index
};

constexpr std::array<Target, targetCount> targets = {{{u"ungültig", 0},
                                                      {u"11 DigOut 1", 11},
                                                      {u"12 DigOut 2", 12},
                                                      {u"13 AnalogOut 1", 13},
                                                      {u"14 AnalogOut 2", 14},
                                                      {u"GSM Num. 1", 64},
                                                      {u"GSM Num. 2", 65},
                                                      {u"GSM Num. 3", 66},
                                                      {u"GSM Num. 4", 67},
                                                      {u"GSM Num. 5", 68},
                                                      {u"GSM Num. 6", 69}}};

} // namespace

QString channelText(int channel)
{
    const bool known = channel >= 0 && channel <= channelCount;
    return known ? QString::fromUtf16(channelTexts[static_cast<std::size_t>(channel)]) : QString();
}

QString targetText(int position)
{
    const bool known = position >= 0 && position < targetCount;
    return known ? QString::fromUtf16(targets[static_cast<std::size_t>(position)].text) : QString();
}

int targetCode(int position)
{
    const bool known = position >= 0 && position < targetCount;
    return known ? targets[static_cast<std::size_t>(position)].code : 0;
}

int targetPosition(int code)
{
    const auto found = std::ranges::find(targets, code, &Target::code);
    return found == targets.end() ? 0 : static_cast<int>(found - targets.begin());
}

QStringList stationTypes()
{
    return {QStringLiteral("KTR"), QStringLiteral("NVA")};
}

bool isStationType(const QString &text)
{
    return stationTypes().contains(text);
}

} // namespace ktr
