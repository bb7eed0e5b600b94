#pragma once

#include "link/history_decoder.h"
#include "link/modem_dialogue.h"
#include "link/module_text.h"

#include <QString>

#include <variant>
#include <vector>

namespace ktr {

/// "V,application version,version text,station type". The version text may hold commas.
struct VersionReply
{
    QString application;   ///< major.minor.build, the build of at least two digits; other forms as received
    QString configuration; ///< the version text of the configuration that the module holds
    QString stationType;   ///< as received
    bool operator==(const VersionReply &) const = default;
};

/// A line of the archive.
struct HistoryReply
{
    Direction direction;
    ArchiveLine line;
    bool operator==(const HistoryReply &) const = default;
};

/// A text that is nobody's here: confirmations, notifications, input values.
struct OtherReply
{
    Direction direction;
    QString text;
    bool operator==(const OtherReply &) const = default;
};

/// A version reply that lacks fields.
struct UnusableReply
{
    QString text;
    bool operator==(const UnusableReply &) const = default;
};

using ReplyEvent = std::variant<VersionReply, HistoryReply, OtherReply, UnusableReply>;

/// What a text of the module means. SMS and lines of the archive come without a marker and are answers; what
/// stands behind a marker counts as that says. Several lines that arrived as one are taken one by one; where
/// the dialogue gives a line twice, as a line of the archive and as a message, each of its parts counts once.
std::vector<ReplyEvent> interpretReply(const ModemDialogue::Reply &reply);

/// The version as shown: "2.1.5" becomes "2.1.05". A text of another form stays as it is.
QString shownVersion(const QString &version);

} // namespace ktr
