#pragma once

#include "config/configuration.h"
#include "platform/file_mark.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace ktr {

/// A configuration beside another one in its folder, as far as one must not have what the other one has.
struct Neighbour
{
    QString fileName; ///< without the folder
    QString path;     ///< without symbolic links
    QString stationId;
    QStringList mac; ///< six bytes, two hexadecimal digits each
    bool operator==(const Neighbour &) const = default;
};

/// Reads the configurations of a folder, each again only when its file has changed. To be used on one thread.
class Neighbours
{
public:
    /// Of a folder with more files these are looked at; what is longer than any configuration is passed over.
    static constexpr int mostFiles = 1'000;
    static constexpr qint64 longestFile = qint64{1} << 20;

    /// Those in the folder of a file, but for the file itself; none of a configuration without a file. What
    /// cannot be read is none. Once `goesOn` gives false it ends.
    QList<Neighbour> of(
        const QString &fileName, const std::function<bool()> &goesOn = [] { return true; });
    /// All of a folder, for who looks at several of its files: beside() gives what of() gives of each.
    QList<Neighbour> in(
        const QString &folder, const std::function<bool()> &goesOn = [] { return true; });
    static QList<Neighbour> beside(const QString &fileName, QList<Neighbour> all);

private:
    struct Known
    {
        FileStamp stamp;
        Neighbour neighbour; ///< without a file name: no configuration
    };
    QHash<QString, Known> m_known; ///< by path
};

} // namespace ktr
