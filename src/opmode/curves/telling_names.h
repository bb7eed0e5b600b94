#pragma once

#include <QStringList>

#include <functional>

namespace ktr {

/// Whether a text has room.
using HasRoom = std::function<bool(const QString &text)>;

/// A name with "…" for what is left out in its middle, since names differ at their ends more than there.
QString shortenedInTheMiddle(const QString &name, const HasRoom &hasRoom);

/// Names for narrow places, in their order: those that have no room are shortened in the middle, and where
/// that made several the same, so that what they differ in stays.
QStringList tellingNames(const QStringList &names, const HasRoom &hasRoom);

} // namespace ktr
