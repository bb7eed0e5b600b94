#pragma once

#include "link/module_dialogue.h"

namespace ktr {

/// The dialogue over Ethernet. What comes is sorted: reports of the module's own modem are only looked at,
/// lines of the module itself are echoed and answered.
///
///     module                 program
///     +..., OK, ERROR    ->  nothing; an error is told as "failed (...)", or logged as "+CMS NO SMS"
///     donE               ->  nothing; the claim ends
///     at+cpin?           ->  config                    the module is claimed: once, when it is wanted
///     any other          ->  echo, see ModuleDialogue
///
/// Reports that come in one piece with a line of the module are taken off its front; what else comes in one
/// piece is one line. A line feed behind the end of a line belongs to that line.
class EthernetDialogue : public ModuleDialogue
{
public:
    /// A claimed module that asks so often in a row has not heard of it: it is claimed anew.
    static constexpr int asksUntilClaimedAnew = 10;

    /// `isWanted` tells whether something waits for the module.
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
