#pragma once

#include <QByteArray>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace ktr {

/// Keys of stations, and what each is to be replaced by.
using StationKeys = std::map<std::string, std::string, std::less<>>;

/// The key of a node with the station's part replaced: "A/ip" with {"A" -> "B"} gives "B/ip".
std::string withStationKey(std::string_view key, const StationKeys &keys);

/// Under which keys the files have the stations that were renamed in this run.
///
/// The program knows a station by the key that it had at its start or when it was added, its `kennung`; a
/// file that is written has it under its text. Example: the user gives the station "A" the text "B". In the
/// tree its nodes stay "A", "A/ip", ..., and so they do in the journal, which goes on from a file that has
/// "A". Then the files are written in the middle of the run: `nodes.xml` has "B", "B/ip", ..., and a change
/// of the node "A/ip" must now go into the journal as one of "B/ip". Until the new file is there, a crash may
/// leave the next start with either of the two; inFiles("A/ip") gives both "A/ip" and "B/ip".
class SavedKeys
{
public:
    /// The station was renamed. Only the first time counts.
    void add(const std::string &kennung);
    /// The station is gone, or was never renamed.
    void remove(std::string_view kennung);
    bool isEmpty() const { return m_inJournal.empty(); }

    /// A file is going to be written in which this station is called `next`.
    void beginSaving(const std::string &kennung, const std::string &next);
    /// The journal goes on from the file that was begun last.
    void endSaving();

    /// What the journal calls a node.
    std::string inJournal(std::string_view key) const { return withStationKey(key, m_inJournal); }
    /// What is called otherwise in the file that was begun last than in the journal: "A" -> "B".
    StationKeys renamings() const;
    /// The keys that files may have for a node; none when they all have its own key.
    std::vector<std::string> inFiles(std::string_view key) const;
    /// Whether a file may have this station under this key.
    bool isInFilesAs(std::string_view kennung, std::string_view key) const;
    /// Calls with the `kennung` of each station that was renamed.
    template <class Call> void forEachRenamed(const Call &call) const
    {
        for (const auto &[kennung, key] : m_inJournal) {
            call(kennung);
        }
    }

private:
    StationKeys m_inJournal; ///< by `kennung`: the key that the journal has
    /// By `kennung`: the keys in files that were begun later, written or not; the last one last.
    std::map<std::string, std::vector<std::string>, std::less<>> m_begun;
};

} // namespace ktr
