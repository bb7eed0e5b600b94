// Any text as what a module answers, tells and has in its archive.

#include "config/channels.h"
#include "link/history_export.h"
#include "link/reply_interpreter.h"
#include "opmode/station/station_messages.h"
#include "opmode/tree/history_entry_text.h"
#include "platform/overloaded.h"
#include "platform/text_rules.h"
#include "support/require.h"

#include <algorithm>

using namespace ktr;

namespace {

void checkLine(const ArchiveLine &line, QStringView fields)
{
    fuzz::require(3 * line.records.size() <= fields.count(u','), "each record has three fields");
    QString rest = line.key;
    for (const ArchiveRecord &record : line.records) {
        const QString text = (record.stamp.isEmpty() ? QStringLiteral("?") : record.stamp) + u" : IP1 = 0";
        fuzz::require(splitHistoryEntry(text).has_value(), "a record's time can be read");
        fuzz::require(!record.stamp.isEmpty() || !line.badTime.isEmpty(), "a time that is lost is told");
        fuzz::require(!record.second.contains(u'.'), "a value has a decimal comma");
        rest += record.first + record.second;
    }
    fuzz::require(rest.size() + line.incomplete.size() <= fields.size(), "nothing is invented");
    const QByteArray csv = historyCsv(line);
    fuzz::require(csv.isEmpty() == line.records.isEmpty() && (csv.isEmpty() || csv.endsWith("\r\n")),
                  "each record is exported");
}

void interpret(ModuleDialogue::ReplyKind kind, const QString &text)
{
    qsizetype length = 0;
    for (const ReplyEvent &event : interpretReply({kind, QStringLiteral("+49"), text})) {
        length += std::visit(Overloaded{[](const VersionReply &version) {
                                            return version.configuration.size() + version.stationType.size();
                                        },
                                        [](const HistoryReply &history) { return history.line.key.size(); },
                                        [](const OtherReply &other) { return other.text.size(); },
                                        [](const UnusableReply &unusable) { return unusable.text.size(); }},
                             event);
    }
    fuzz::require(length <= text.size(), "no part of a text counts twice");
}

void interpretMessage(const QString &message)
{
    const StationMessage understood = interpretStationMessage(message);
    if (const auto *values = std::get_if<InputValuesMessage>(&understood)) {
        for (const InputValuesMessage::Value &value : values->values) {
            fuzz::require(value.channel >= 1 && value.channel <= channelCount, "a value has a channel");
        }
    } else if (const auto *history = std::get_if<HistoryMessage>(&understood)) {
        fuzz::require(!history->entries.isEmpty() || !history->unusable.isEmpty(),
                      "what cannot be understood is told");
    }
    const qsizetype marks = message.size() - withoutMark(message).size();
    fuzz::require(marks == 0 || marks == 1, "a message loses its mark and nothing else");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = fromWindows1252(QByteArrayView(data, static_cast<qsizetype>(size)));
    using Kind = ModuleDialogue::ReplyKind;
    for (const Kind kind : {Kind::Sms, Kind::History, Kind::Message}) {
        interpret(kind, text);
    }
    checkLine(decodeArchiveLine(text), text);
    const QString shown = shownVersion(text);
    fuzz::require(shownVersion(shown) == shown, "a version as shown is shown as it is");
    interpretMessage(text);
    interpretMessage(QStringLiteral("+49 --> ") + text);
    return 0;
}
