#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <functional>

namespace ktr {

/// A line of a list of stations.
struct StationImportLine
{
    int line; ///< counted from 1
    QString name;
    QString address; ///< may be empty: a station without one is never reached
    QString remark;  ///< a complaint, or what was done to the name; mostly empty
    bool isUsable;   ///< a station can be made of it
    bool operator==(const StationImportLine &) const = default;
};

struct StationImport
{
    static constexpr int mostLines = 20'000;

    QList<StationImportLine> lines;
    int usable = 0;
    bool isCut = false; ///< there are more lines; they are left out
};

/// Reads lines "name;address", with ";", tab or "," between them, in one list also mixed, quoted after RFC
/// 4180 where needed. Blank lines and a header line are passed over; a header line may also turn the order
/// round. A name that the list or the tree has already becomes "name (1)", "name (2)" and so on, as when a
/// station is added; `freeName` gives the first of these that the tree does not have. What a module sends
/// reaches one station alone: an address that another one has is remarked; `stationsAt` are those of the tree
/// by their addresses, in small letters.
StationImport readStationImport(QStringView text, const std::function<QString(const QString &)> &freeName,
                                QHash<QString, QString> stationsAt = {});

} // namespace ktr
