#include "opmode/tree/saved_keys.h"

#include <algorithm>

namespace ktr {

std::string withStationKey(std::string_view key, const StationKeys &keys)
{
    const std::string_view station = key.substr(0, key.find('/'));
    const auto found = keys.find(station);
    return found == keys.end() ? std::string(key) : found->second + std::string(key.substr(station.size()));
}

void SavedKeys::add(const std::string &kennung)
{
    m_inJournal.try_emplace(kennung, kennung);
}

void SavedKeys::remove(std::string_view kennung)
{
    if (const auto found = m_inJournal.find(kennung); found != m_inJournal.end()) {
        m_begun.erase(found->first);
        m_inJournal.erase(found);
    }
}

void SavedKeys::beginSaving(const std::string &kennung, const std::string &next)
{
    std::vector<std::string> &begun = m_begun[kennung];
    std::erase(begun, next);
    begun.push_back(next);
}

void SavedKeys::endSaving()
{
    for (const auto &[kennung, begun] : m_begun) {
        m_inJournal[kennung] = begun.back();
    }
    m_begun.clear();
}

StationKeys SavedKeys::renamings() const
{
    StationKeys result;
    for (const auto &[kennung, begun] : m_begun) {
        if (const std::string &before = m_inJournal.find(kennung)->second; before != begun.back()) {
            result.emplace(before, begun.back());
        }
    }
    return result;
}

std::vector<std::string> SavedKeys::inFiles(std::string_view key) const
{
    const std::string_view station = key.substr(0, key.find('/'));
    std::vector<std::string> result;
    if (m_inJournal.contains(station)) {
        result.push_back(inJournal(key));
        if (const auto begun = m_begun.find(station); begun != m_begun.end()) {
            for (const std::string &name : begun->second) {
                result.push_back(name + std::string(key.substr(station.size())));
            }
        }
    }
    return result;
}

bool SavedKeys::isInFilesAs(std::string_view kennung, std::string_view key) const
{
    return std::ranges::count(inFiles(kennung), key) > 0;
}

} // namespace ktr
