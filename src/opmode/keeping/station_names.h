#pragma once

#include <QSet>
#include <QStringList>

#include <string_view>

namespace ktr {

/// The names of stations that a message is about, each once, in the order in which they came.
class StationNames
{
public:
    void add(const QString &name);
    /// The station of the node with this key.
    void add(std::string_view key);
    bool isEmpty() const { return m_names.isEmpty(); }
    /// So many of them as fit into a message, and how many there are more.
    QString text() const;

private:
    QStringList m_names; ///< those that are told
    QSet<QString> m_all;
};

} // namespace ktr
