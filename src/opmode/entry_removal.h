#pragma once

#include "opmode/list_parts.h"

#include <QModelIndex>

namespace ktr {

/// Takes entries out of the tree, and so out of the list's file; the record keeps what they said.
class EntryRemoval
{
public:
    explicit EntryRemoval(const ListParts &parts) : m_parts(parts) {}

    /// What waits to be acknowledged stays, and what an alarm that stands is shown by.
    bool mayGo(NodeStore::Id notification) const;
    void remove(NodeStore::Id entry, ListRecord::By by);
    /// Entries of the history, and notifications that may go. Returns how many were removed.
    int remove(const QModelIndexList &entries);

private:
    ListParts m_parts;
};

} // namespace ktr
