#pragma once

#include <QByteArray>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace ktr {

/// Keys of stations, and what stands in their place.
using StationKeys = std::map<std::string, std::string, std::less<>>;

/// The key of a node with another key of its station, when there is one.
std::string withStationKey(std::string_view key, const StationKeys &keys);

/// Under which keys the files have the stations that were renamed in this run: a file that is written has a
/// station under its text, while the run goes on with the key that it began with.
class SavedKeys
{
public:
    /// The station has another text now. Only the first time counts.
    void add(const std::string &kennung);
    void remove(std::string_view kennung);
    bool isEmpty() const { return m_inJournal.empty(); }

    /// A file is going to be written that has the station under this key.
    void beginSaving(const std::string &kennung, const std::string &next);
    /// The journal goes on from the file that was begun last.
    void endSaving();

    /// What the journal calls a node.
    std::string inJournal(std::string_view key) const { return withStationKey(key, m_inJournal); }
    /// By the journal's keys of stations: those of the file that was begun last, where they differ.
    StationKeys renamings() const;
    /// The keys that files may have for a node; none when they all have its own key.
    std::vector<std::string> inFiles(std::string_view key) const;
    /// Whether files may have this station, in the place of others, under this key.
    bool isOf(std::string_view kennung, std::string_view key) const;
    /// Calls with each station that was renamed.
    template <class Call> void forEach(const Call &call) const
    {
        for (const auto &[kennung, key] : m_inJournal) {
            call(kennung);
        }
    }

private:
    StationKeys m_inJournal;
    /// In files that were begun since the journal's, whether or not they came about; the last one last.
    std::map<std::string, std::vector<std::string>, std::less<>> m_begun;
};

} // namespace ktr
