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

/// A text that nothing is done with here: confirmations, notifications, input values.
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

/// What a text of the module means. A marker says whether it came as an answer or by itself; SMS and lines of
/// the archive have none and are answers. Several lines that arrived as one are interpreted one by one. A
/// line that the dialogue gives twice, as a line of the archive and as a message, counts once.
///
/// Example: "V,2.1.5,my version,NVA" gives a VersionReply "2.1.05", "my version", "NVA".
std::vector<ReplyEvent> interpretReply(const ModemDialogue::Reply &reply);

/// The version as shown: "2.1.5" becomes "2.1.05". A text of another form stays as it is.
QString shownVersion(const QString &version);

} // namespace ktr
