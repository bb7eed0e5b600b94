#pragma once

#include "opmode/tree/node_store.h"
#include "opmode/tree/stored_node.h"
#include "platform/status.h"

#include <QByteArray>
#include <QStringList>

#include <functional>

namespace ktr {

/// Hands over the nodes of a document in its order. Of a document that is not sound those are taken that are,
/// and `remarks` tells what was left out; one of which nothing can be used gives a failure and no node.
/// Numbers and truth values that cannot be read take their value of a new station. `expect` is told before
/// how many nodes there are, and about how many bytes their names and texts have.
Status readNodes(const QByteArray &document, QStringList &remarks,
                 const std::function<void(const StoredNode &)> &take,
                 const std::function<void(std::size_t nodes, std::size_t bytes)> &expect = {});

/// The document of all nodes in the order of their creation. The key of a station, and with it the keys
/// under it, becomes the station's text. `attributes` is asked by the key of this run.
QByteArray writeNodes(const NodeStore &nodes,
                      const std::function<StationAttributes(const QString &kennung)> &attributes);

/// The file `nodes.xml`: the stations with all that the tree shows of them. A file that could not be read
/// whole is never written over; it is renamed to "nodes (1).xml" first.
class NodesFile
{
public:
    explicit NodesFile(QString path) : m_path(std::move(path)) {}

    const QString &path() const { return m_path; }

    /// Reads the file; one that does not exist gives no nodes. `take` gives false for a node that has no
    /// place; a file with nodes of which none has one is a failure. After a failure, or when not all of it
    /// could be used, the file is kept aside before it is replaced.
    Status load(const std::function<bool(const StoredNode &)> &take,
                const std::function<void(std::size_t nodes, std::size_t bytes)> &expect = {});
    /// What of the file that was loaded could not be used; before its first node is taken, how the document
    /// was damaged.
    const QStringList &remarks() const { return m_remarks; }

    /// Not all of what was loaded is what it was: the file is kept aside before it is replaced.
    void mustKeepAside() { m_keepAside = true; }
    bool isToBeKeptAside() const { return m_keepAside; }
    /// Replaces the file whole or not at all.
    Status save(const QByteArray &document);

    /// The checksum of what was read or written last; of no bytes when there was no file. When the file could
    /// not be read it is one that no journal has: changes would find no stations.
    quint64 checksum() const { return m_checksum; }
    /// Bytes of what was read or written last.
    qint64 size() const { return m_size; }

private:
    QString m_path;
    quint64 m_checksum = 0;
    qint64 m_size = 0;
    bool m_keepAside = false;
    QStringList m_remarks;
};

/// The file that names who uses a list, and that is locked meanwhile.
QString listLockPath(const QString &nodesPath);

} // namespace ktr
