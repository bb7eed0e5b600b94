#pragma once

#include "link/module_dialogue.h"

namespace ktr {

/// The dialogue over Ethernet. Here the module has a modem of its own, whose reports come over the same line:
/// they are noted, but only lines of the module itself are echoed and answered.
///
///     module                 program
///     +..., OK, ERROR    ->  nothing; an error is shown as "failed (...)", or logged as "+CMS NO SMS"
///     donE               ->  nothing; the claim ends
///     at+cpin?           ->  config                    the module is claimed: once, if there is a reason to
///     any other          ->  echo, see ModuleDialogue
///
/// Reports in front of a line in the same piece are taken off; anything else in one piece counts as one line.
/// A line feed after the end of a line belongs to that line.
class EthernetDialogue : public ModuleDialogue
{
public:
    /// A module that asks so often in a row after it was claimed has missed that: it is claimed again.
    static constexpr int asksUntilClaimedAnew = 10;

    /// `isWanted` returns whether something is waiting for the module, so that it should be claimed.
    EthernetDialogue(NextCommand nextCommand, std::function<bool()> isWanted)
        : ModuleDialogue(std::move(nextCommand), QStringLiteral("eth")), m_isWanted(std::move(isWanted))
    {}

    std::vector<Action> lineReceived(const QString &piece) override;
    std::vector<Action> connected() override;
    void transmissionEnded() override { m_claimed = false; }

private:
    void takeReport(const QString &line);
    void takeLine(const QString &line);

    std::function<bool()> m_isWanted;
    bool m_claimed = false;
    int m_asks = 0; ///< since it was claimed, without anything else between
    bool m_isReading = false;
};

} // namespace ktr
