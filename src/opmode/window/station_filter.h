#pragma once

#include "lang/text_table.h"
#include "opmode/tree/station_tree.h"

#include <QCoreApplication>

#include <functional>
#include <span>

namespace ktr {

/// Which stations the tree shows: those of a kind whose name or address contains a text.
class StationFilter
{
    Q_DECLARE_TR_FUNCTIONS(ktr::StationFilter)

public:
    /// A kind of stations to choose from: what it is called, and which stations are of it.
    struct Kind
    {
        QString (*caption)(const TextTable &texts);
        bool (*holds)(const StationStatus &status, int alarms); ///< null: any station
    };
    /// In the order in which they are offered; the first one holds any station.
    static std::span<const Kind> kinds();

    /// What address() a station has, for the search.
    std::function<QString(const QString &kennung)> addressOf;
    QString text;
    const Kind *kind = &kinds().front();

    bool isOfAnyKind() const { return kind->holds == nullptr; }
    /// Whether it lets all stations pass.
    bool isOff() const { return isOfAnyKind() && text.isEmpty(); }
    bool passes(const QModelIndex &station) const;
};

} // namespace ktr
