#pragma once

#include <QList>
#include <QString>

class QWidget;

namespace ktr {

class ManualTexts;

/// Where in the manual a window, a page or a part of one is explained.
struct HelpPlace
{
    const char *widget; ///< its object name, without the index of an array
    const char *anchor;
};

/// The table of all of them. Fields need no row: their control's name is their anchor.
QList<HelpPlace> helpPlaces();

/// Whether the table has a row about it.
bool hasHelpPlace(const QString &objectName);

/// The anchor that explains a widget: its own, else that of what it stands in, up to its window and the
/// window that this belongs to; the manual's first chapter where nothing says more. A tab strip is explained
/// by its present page.
QString helpAnchor(const QWidget *widget, const ManualTexts &manual);

/// A control's name without the index of an array: "Txt_ip_interval" of "Txt_ip_interval_3".
QString withoutIndex(const QString &objectName);

} // namespace ktr
